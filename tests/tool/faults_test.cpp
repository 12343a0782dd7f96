#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <regex>

#include "picture_file.h"
#include "pictures.h"

using namespace pqx_codec;
using namespace pqxvideo;
using namespace tool_test;

namespace {

/// Every command that writes a file, with "OUT" and an ending in its place.
constexpr const char* writers[] = {"jpeg encode {in.png} OUT.jpg",     "jpeg decode {in.jpg} OUT.png",
                                   "jpeg decode {in.jpg} OUT.ppm",     "sheet OUT.ppm {in.png} {in.png}",
                                   "h261 encode {in.y4m} OUT.h261",    "h261 decode {in.h261} OUT.y4m",
                                   "pan {in.png} OUT.y4m --size qcif", "show {in.y4m} OUT.png"};

class Faults : public testing::Test {
 protected:
  Faults() {
    write_picture(place / "in.png", make_picture(360, 300, 3));
    expect_successes(place, {"jpeg encode {in.png} {in.jpg}", "pan {in.png} {in.y4m} --size qcif --frames 4",
                             "h261 encode {in.y4m} {in.h261}", "pan {in.png} {long.y4m} --frames 90"});
    for (const char* const kind : {"jpg", "png", "ppm", "h261", "y4m"}) {
      std::filesystem::create_symlink("/dev/full", place / (std::string("full.") + kind));
      std::filesystem::create_symlink("/dev/stdout", place / (std::string("pipe.") + kind));
    }
    std::filesystem::create_directory(place / "closed");
    std::filesystem::permissions(place / "closed", std::filesystem::perms(0555));
  }

  /// The command with its output named, run by a shell as `around` says, must fail with that status and one line.
  void expect_failure(const std::string& around, std::string command, const std::string& out, int status,
                      const std::string& reason) {
    command = std::regex_replace(command, std::regex("OUT(\\S*)"), "{" + out + "$1}");
    command = std::regex_replace("(" + around + ")", std::regex("TOOL"), PQXVIDEO " " + command);
    tool_test::expect_failure(place, command, status, "", reason + "\n");
    EXPECT_TRUE(std::filesystem::is_empty(place / "closed")) << command;
  }

  const Workplace place;
};

}  // namespace

TEST_F(Faults, AtWritingAreReportedAndLeaveNothing) {
  // The superuser writes everywhere until that right is given up.
  const std::string without_rights = geteuid() ? "" : "setpriv --inh-caps=-all --bounding-set=-all ";
  for (const char* const command : writers) {
    expect_failure("TOOL", command, "full", 1, ": cannot write: No space left on device");
    expect_failure("ulimit -f 2; TOOL", command, "out", 1, ": cannot write: File too large");
    expect_failure(without_rights + "TOOL", command, "closed/out", 1, ": cannot write: Permission denied");
  }
  for (const char* const command : {writers[2], writers[3], writers[5], writers[6]})  // more than a pipe holds
    expect_failure("(TOOL; [ $? = 1 ] || echo >&2) | true", command, "pipe", 0, ": cannot write: Broken pipe");
  for (const char* const command :
       {"psnr {in.png} {in.jpg}", "--help", "--version", "jpeg encode {in.png} /dev/null --time"})
    expect_failure("TOOL >/dev/full", command, "", 1, "pqxvideo: cannot write to standard output");
}

TEST_F(Faults, InterruptionLeavesNothing) {
  for (const auto& [name, number] : {std::pair{"INT", 2}, {"TERM", 15}, {"HUP", 1}})
    expect_failure(
        std::string("env --default-signal=INT TOOL & while kill -0 $! && ! ls -A {} | grep -q pqxvideo-; do "
                    "sleep 0.01; done; kill -") +
            name + " $!; wait $! 2>/dev/null",
        "h261 encode {long.y4m} OUT.h261", "out", 128 + number, "pqxvideo: interrupted");
}
