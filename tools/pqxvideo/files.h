#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "codec.h"
#include "core/byte_sink.h"
#include "core/memory.h"

namespace pqxvideo {

/// How many bytes a file may have, by its first ones (64, unless it is shorter). Throws Failure for a kind of file that
/// shall not be read.
using SizeLimit = std::function<size_t(std::span<const uint8_t> head)>;

/// The bytes of a whole file, of which nothing behind the first ones is read if it is of a wrong kind or too large.
OwnedBytes read_file(const std::string& path, const SizeLimit& limit);

/// Whether a path leads to where standard output goes.
bool is_standard_output(const std::string& path);
/// Whether what is written to a path passes through: it is a device, a pipe, or standard output.
bool is_stream(const std::string& path);
/// Throws Failure if writing to a path would overwrite one of the files that are read.
void check_differs(const std::string& out, std::span<const std::string> inputs);

/// Gives the descriptors 0, 1 and 2 that are closed to /dev/null, so that no file takes their place. What is then
/// written to standard output fails.
void open_standard_descriptors();

/// A file that appears under its name only when it is complete. Until commit() it has no name, or, where a file system
/// has no such files, one of its own, and a signal that ends the program leaves nothing of it. A file that it replaces
/// hands its mode and, if that is permitted, its owner over; symbolic links are followed. Devices, pipes and open
/// descriptors of the program, such as standard output, are written to as they stand.
class OutputFile final : public ByteSink {
 public:
  explicit OutputFile(const std::string& path);
  ~OutputFile() override;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  using ByteSink::write;
  void write(std::span<const uint8_t> bytes) override;
  /// Completes the file. What cannot be kept of one that it replaces is reported.
  void commit();

 private:
  void open_aside(const std::string& directory);
  void write_now(std::span<const uint8_t> bytes);
  void hand_over();

  std::string path_;     // what it will be called; empty: written to as it stands
  std::string aside_;    // what it is called until then; empty: it has no name
  std::string pattern_;  // for names beside it
  std::optional<struct stat> replaced_;
  int fd_ = -1;
  std::vector<uint8_t> waiting_;
};

}  // namespace pqxvideo
