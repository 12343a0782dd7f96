#include "files.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "naming.h"

namespace pqxvideo {
namespace {

// Any picture of max_pixels fits, stored without compression and with alpha.
constexpr size_t max_file_bytes = size_t{1} << 31;

[[noreturn]] void fail(const char* what, int error) {
  throw Failure(std::string(what) + ": " + std::strerror(error));
}

struct Descriptor {
  int fd;
  ~Descriptor() { ::close(fd); }
};

/// The file that is being written aside, where a signal handler finds it.
char unfinished[PATH_MAX];
constexpr int ends[] = {SIGINT, SIGTERM, SIGHUP};

void end_by(int signal) {
  ::unlink(unfinished);
  // On a terminal, behind a line of progress.
  const std::string_view message = "\npqxvideo: interrupted\n", shown = message.substr(!::isatty(STDERR_FILENO));
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, shown.data(), shown.size());
  ::raise(signal);  // by the default action, which stands again
}

/// Makes a file beside others and sees to it that a signal that ends the program removes it.
int make_unfinished(std::string& name) {
  sigset_t all_of_them, before;
  ::sigemptyset(&all_of_them);
  for (const int signal : ends) ::sigaddset(&all_of_them, signal);
  ::sigprocmask(SIG_BLOCK, &all_of_them, &before);
  const int fd = ::mkostemp(name.data(), O_CLOEXEC);
  const int error = errno;
  if (fd >= 0 && name.size() < sizeof unfinished) {
    std::strcpy(unfinished, name.c_str());
    struct sigaction action = {}, now;
    action.sa_handler = end_by;
    action.sa_flags = int(SA_RESETHAND);
    for (const int signal : ends)
      if (::sigaction(signal, nullptr, &now) == 0 && now.sa_handler == SIG_DFL) ::sigaction(signal, &action, nullptr);
  }
  ::sigprocmask(SIG_SETMASK, &before, nullptr);
  errno = error;
  return fd;
}

OwnedBytes read_all(const std::string& path) {
  const Descriptor file{::open(path.c_str(), O_RDONLY | O_CLOEXEC)};
  struct stat info;
  if (file.fd < 0 || ::fstat(file.fd, &info) != 0) fail("cannot read", errno);

  OwnedBytes bytes;
  auto& [memory, size] = bytes;
  // One byte more than a regular file holds, so that the first read meets its end.
  size_t capacity = S_ISREG(info.st_mode) ? size_t(info.st_size) + 1 : size_t{1} << 16;
  for (;;) {
    if (size > max_file_bytes || capacity > 2 * max_file_bytes) throw Failure("cannot read: file too large");
    Memory grown = uninitialized_memory(capacity);
    std::copy_n(memory.get(), size, grown.get());
    memory = std::move(grown);
    while (size < capacity) {
      const ssize_t got = ::read(file.fd, memory.get() + size, capacity - size);
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) fail("cannot read", errno);
      if (got == 0) return bytes;
      size += size_t(got);
    }
    capacity *= 2;
  }
}

}  // namespace

OwnedBytes read_file(const std::string& path) {
  return naming(path, [&] { return read_all(path); });
}

bool is_standard_output(const std::string& path) {
  struct stat named, standard;
  return ::stat(path.c_str(), &named) == 0 && ::fstat(STDOUT_FILENO, &standard) == 0 &&
         named.st_dev == standard.st_dev && named.st_ino == standard.st_ino;
}

OutputFile::OutputFile(const std::string& path) : path_(path) {
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  const bool exists = std::filesystem::exists(status);
  if (exists && !std::filesystem::is_regular_file(status)) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) fail("cannot write", errno);
    file_ = ::fdopen(fd, "wb");
  } else {
    if (exists) {
      if (::access(path.c_str(), W_OK) != 0) fail("cannot write", errno);
      path_ = std::filesystem::canonical(path, error);  // a link stays one
    }
    aside_ = (std::filesystem::path(path_).parent_path() / ".pqxvideo-XXXXXX").string();
    const int fd = make_unfinished(aside_);
    if (fd < 0) {
      aside_.clear();
      fail("cannot write", errno);
    }
    const mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(fd, exists ? mode_t(status.permissions()) & 0777 : 0666 & ~mask);
    file_ = ::fdopen(fd, "wb");
  }
  std::setvbuf(file_, nullptr, _IOFBF, size_t{1} << 16);
}

OutputFile::~OutputFile() {
  if (file_) std::fclose(file_);
  if (!aside_.empty()) ::unlink(aside_.c_str());
}

void OutputFile::write(std::span<const uint8_t> bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size()) fail("cannot write", errno);
}

void OutputFile::commit() {
  if (std::fclose(std::exchange(file_, nullptr)) != 0) fail("cannot write", errno);
  if (aside_.empty()) return;
  if (std::rename(aside_.c_str(), path_.c_str()) != 0) fail("cannot write", errno);
  aside_.clear();
}

}  // namespace pqxvideo
