#pragma once

#include <cstdint>
#include <cstdio>
#include <span>
#include <string>

#include "codec.h"
#include "core/byte_sink.h"
#include "core/memory.h"

namespace pqxvideo {

/// The bytes of a whole file.
OwnedBytes read_file(const std::string& path);

/// Whether a path leads to where standard output goes.
bool is_standard_output(const std::string& path);

/// A file that appears under its name only when it is complete: it is written beside it and renamed by commit().
/// Devices and pipes are written directly.
class OutputFile final : public ByteSink {
 public:
  explicit OutputFile(const std::string& path);
  ~OutputFile() override;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  using ByteSink::write;
  void write(std::span<const uint8_t> bytes) override;
  void commit();

 private:
  std::string path_;
  std::string aside_;  // empty: written directly
  std::FILE* file_ = nullptr;
};

}  // namespace pqxvideo
