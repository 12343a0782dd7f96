#pragma once

#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <utility>

#include "memory.h"

namespace pqxvideo {

/// The bytes of a whole file.
class FileBytes {
 public:
  explicit FileBytes(const std::string& path);
  operator std::span<const uint8_t>() const { return {bytes_.get(), size_}; }
  /// Hands over the memory that they lie in.
  Memory release() && { return std::move(bytes_); }

 private:
  void read(const std::string& path);

  size_t size_ = 0;
  Memory bytes_;
};

/// Whether a path leads to where standard output goes.
bool is_standard_output(const std::string& path);

/// A file that appears under its name only when it is complete: it is written beside it and renamed by commit().
/// Devices and pipes are written directly.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void write(std::span<const uint8_t> bytes);
  void commit();

 private:
  std::string path_;
  std::string aside_;  // empty: written directly
  std::FILE* file_ = nullptr;
};

}  // namespace pqxvideo
