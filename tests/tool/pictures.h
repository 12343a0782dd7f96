/// Pictures and programs that the tests of the tool work with.
#pragma once

#include <filesystem>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "h261/encoder.h"
#include "picture/image.h"
#include "picture/y4m.h"

namespace tool_test {

using Bytes = std::vector<uint8_t>;

enum class Content { smooth, edges, noise };

/// A picture that is the same for the same arguments.
pqx_codec::Image make_picture(int width, int height, int channels, Content content = Content::edges);

using Pictures = std::vector<pqx_codec::YuvPicture>;

/// Pictures that a window moving over a larger one shows.
Pictures make_pan(bool cif, int frames);
/// QCIF pictures of a square that wanders over what stands still.
Pictures make_wandering(int frames);

Bytes encode(const Pictures& clip, const pqx_codec::h261::EncoderOptions& options,
             Pictures* reconstruction = nullptr);
Bytes y4m_of(const Pictures& clip, pqx_codec::FrameRate rate = {});
Bytes text(const std::string& s);

/// A directory of its own for each object, removed with it.
class Workplace {
 public:
  Workplace();
  ~Workplace() { std::filesystem::remove_all(path_); }
  Workplace(const Workplace&) = delete;

  std::string operator/(const std::string& name) const { return (path_ / name).string(); }
  std::vector<std::string> files() const;

 private:
  std::filesystem::path path_;
};

/// The most memory that the process has held so far, in MiB.
int peak_memory();

Bytes read_bytes(const std::string& path);
void write_bytes(const std::string& path, const Bytes& bytes);
void write_files(const Workplace& place, const std::vector<std::pair<std::string, Bytes>>& files);

/// Changes, loses or repeats some of the bytes.
void damage(Bytes& bytes, std::mt19937& random);

struct Outcome {
  int status;
  std::string out, errors;
  int memory;  // the most that a process of it has held, in MiB
};

/// Runs a shell command; "{name}" in it stands for that file of the workplace.
Outcome run(const Workplace& place, std::string command);

/// Runs one without which the test cannot go on.
void must_run(const Workplace& place, const std::string& command);

/// Expects that the tool does all of this and complains of nothing.
void expect_successes(const Workplace& place, std::initializer_list<const char*> commands);

/// A command that must fail, with the file and the reason that its one line of error names.
struct FailingCommand {
  const char* command;
  int status;
  const char *file, *reason;
};
/// Expects each to fail as told, in one line, and to leave no file behind.
void expect_failure(const Workplace& place, const std::string& command, int status, const std::string& file,
                    const std::string& reason);
void expect_failures(const Workplace& place, std::span<const FailingCommand> commands);

/// What djpeg -dct float makes of a JPEG file.
pqx_codec::Image judge(const Bytes& jpeg, bool smooth);
/// What cjpeg makes of a picture.
Bytes encode_outside(const pqx_codec::Image& image, const std::string& options);

/// A JPEG file of several components, each in a scan of its own, put together from grey ones made with equal tables.
/// Factors are written as in the file: 0x21 is 2 horizontally, 1 vertically. A transform of -1 leaves the Adobe
/// marker out.
Bytes assemble(int width, int height, const std::vector<Bytes>& grey, const std::vector<int>& factors,
               int adobe_transform);

}  // namespace tool_test
