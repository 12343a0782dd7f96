// The whole tool on any file, with any of its standard descriptors closed: it ends with a status that it documents, and
// leaves nothing behind but, at most, a whole output.
#include <fcntl.h>
#include <stdio_ext.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <vector>

#include "commands.h"

namespace {

using Arguments = std::vector<const char*>;

const Arguments commands[] = {
    {"jpeg", "encode", "in", "out.jpg"},
    {"jpeg", "decode", "in", "out.png"},
    {"jpeg", "decode", "in", "out.ppm", "--upsampling", "nn"},
    {"jpeg", "encode", "in", "/dev/stdout", "--optimize", "--sampling", "444"},
    {"sheet", "-o", "out.png", "in", "in"},
    {"psnr", "in", "in"},
    {"h261", "encode", "in", "out.h261", "--search", "1"},
    {"h261", "decode", "in", "out.y4m", "--conceal"},
    {"pan", "in", "out.y4m", "--frames", "2", "--size", "qcif"},
    {"show", "in", "out.png", "--frame", "1", "--zoom", "3"},
    {"h261", "decode", "in", "/dev/stdout"},
    {"jpeg", "encode", "in", "in", "--format", "jpeg"},
};
const Arguments bounded{"jpeg", "sheet", "psnr", "pan", "show"};

void enter_workplace() {
  char name[] = "/tmp/pqxvideo-fuzz-XXXXXX";
  if (!mkdtemp(name) || chdir(name) != 0) std::abort();
  std::atexit([] { std::filesystem::remove_all(std::filesystem::current_path()); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const bool entered = (enter_workplace(), true);
  if (!entered || size < 2) return 0;
  const unsigned closed = data[1] & 7;
  Arguments arguments = commands[data[0] % std::size(commands)];
  const bool has_bound = std::ranges::find(bounded, std::string_view(arguments[0])) != bounded.end();
  arguments.insert(arguments.begin(), "pqxvideo");
  if (has_bound) arguments.insert(arguments.end(), {"--max-pixels", "1000000"});
  std::ofstream("in", std::ios::binary).write(reinterpret_cast<const char*>(data + 2), std::streamsize(size - 2));

  std::array<int, 3> kept;
  for (int fd = 0; fd < 3; ++fd) {
    kept[size_t(fd)] = fcntl(fd, F_DUPFD_CLOEXEC, 100);
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(null, fd);
    close(null);
    if (closed >> fd & 1) close(fd);
  }
  const int status = pqxvideo::run(int(arguments.size()), arguments.data());
  __fpurge(stdout);
  std::cout.clear();
  std::cerr.clear();
  for (int fd = 0; fd < 3; ++fd) {
    dup2(kept[size_t(fd)], fd);
    close(kept[size_t(fd)]);
  }

  if (status < 0 || status > 2) std::abort();
  for (const auto& entry : std::filesystem::directory_iterator(".")) {
    const std::string name = entry.path().filename();
    if (name == "in") continue;
    // Nothing is left of a failure, but for one of printing to what is closed.
    if (!name.starts_with("out.") || (status != 0 && !(closed & 2))) std::abort();
    std::filesystem::remove(entry.path());
  }
  return 0;
}
