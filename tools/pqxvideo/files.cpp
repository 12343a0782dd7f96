#include "files.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <utility>

#include "naming.h"
#include "report.h"

namespace pqxvideo {
namespace {

[[noreturn]] void fail(const char* what, int error) {
  throw Failure(std::string(what) + ": " + std::strerror(error));
}

struct Descriptor {
  int fd;
  ~Descriptor() { ::close(fd); }
};

/// Reads up to `count` bytes, fewer only at the end of the file.
size_t read_some(int fd, uint8_t* bytes, size_t count) {
  size_t done = 0;
  while (done < count) {
    const ssize_t got = ::read(fd, bytes + done, count - done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) fail("cannot read", errno);
    if (got == 0) break;
    done += size_t(got);
  }
  return done;
}

OwnedBytes read_all(const std::string& path, const SizeLimit& limit) {
  const Descriptor file{::open(path.c_str(), O_RDONLY | O_CLOEXEC)};
  struct stat info;
  if (file.fd < 0 || ::fstat(file.fd, &info) != 0) fail("cannot read", errno);

  std::array<uint8_t, 64> head;
  OwnedBytes bytes;
  bytes.size = read_some(file.fd, head.data(), head.size());
  const size_t most = limit(std::span(head).first(bytes.size));
  const size_t stated = S_ISREG(info.st_mode) ? size_t(info.st_size) : 0;
  const auto check_size = [&](size_t size) {
    if (size > most) throw Failure("file too large: more than " + std::to_string(most) + " bytes");
  };
  check_size(stated);

  // One byte more than a regular file holds, so that the first read meets its end.
  size_t capacity = std::max(stated + 1, size_t{1} << 16);
  bytes.memory = uninitialized_memory(capacity);
  std::copy_n(head.begin(), bytes.size, bytes.memory.get());
  for (;;) {
    bytes.size += read_some(file.fd, bytes.memory.get() + bytes.size, capacity - bytes.size);
    check_size(bytes.size);
    if (bytes.size < capacity) return bytes;
    capacity = std::min(2 * capacity, most + 1);
    bytes.memory = enlarged(std::move(bytes.memory), capacity);
  }
}

bool is_same_file(const struct stat& a, const struct stat& b) { return a.st_dev == b.st_dev && a.st_ino == b.st_ino; }

/// Where a symbolic link leads by one step; the path itself if it is none.
std::filesystem::path next_of(const std::filesystem::path& path) {
  std::error_code error;
  const auto target = std::filesystem::read_symlink(path, error);
  return error ? path : path.parent_path() / target;
}

/// The path behind all symbolic links, of a file that need not exist.
std::filesystem::path followed(std::filesystem::path path) {
  for (int links = 0; links < 40; ++links) path = next_of(path);
  return path;
}

/// The open descriptor that a path stands for, such as /dev/stdout, or the name of the file where standard output or
/// standard error go; -1 if there is none.
int descriptor_of(std::filesystem::path path) {
  struct stat named, open;
  const bool exists = ::stat(path.c_str(), &named) == 0;
  for (const int fd : {STDOUT_FILENO, STDERR_FILENO})
    if (exists && S_ISREG(named.st_mode) && ::fstat(fd, &open) == 0 && is_same_file(named, open)) return fd;
  for (int links = 0; links < 40; ++links, path = next_of(path)) {
    const std::string directory = path.parent_path().string(), number = path.filename().string();
    if ((directory == "/dev/fd" || directory == "/proc/self/fd") && !number.empty() && number.size() < 9 &&
        std::ranges::all_of(number, [](char c) { return c >= '0' && c <= '9'; }))
      return std::stoi(number);
  }
  return -1;
}

/// The file that has been given a name of its own to be written, where a signal handler finds it.
char unfinished[PATH_MAX];
constexpr int ends[] = {SIGINT, SIGTERM, SIGHUP};

void end_by(int signal) {
  if (unfinished[0]) ::unlink(unfinished);
  // On a terminal, behind a line of progress.
  const std::string_view message = "\npqxvideo: interrupted\n", shown = message.substr(!::isatty(STDERR_FILENO));
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, shown.data(), shown.size());
  ::raise(signal);  // by the default action, which stands again
}

/// Keeps signals that end the program waiting for as long as it lives.
class SignalHold {
 public:
  SignalHold() {
    sigset_t held;
    ::sigemptyset(&held);
    for (const int signal : ends) ::sigaddset(&held, signal);
    ::sigprocmask(SIG_BLOCK, &held, &before_);
  }
  ~SignalHold() { ::sigprocmask(SIG_SETMASK, &before_, nullptr); }
  SignalHold(const SignalHold&) = delete;

 private:
  sigset_t before_;
};

void handle_ends() {
  struct sigaction action = {}, now;
  action.sa_handler = end_by;
  action.sa_flags = int(SA_RESETHAND);
  for (const int signal : ends)
    if (::sigaction(signal, nullptr, &now) == 0 && now.sa_handler == SIG_DFL) ::sigaction(signal, &action, nullptr);
}

}  // namespace

OwnedBytes read_file(const std::string& path, const SizeLimit& limit) {
  return naming(path, [&] { return read_all(path, limit); });
}

bool is_standard_output(const std::string& path) {
  struct stat named, open;
  return descriptor_of(path) == STDOUT_FILENO ||
         (::stat(path.c_str(), &named) == 0 && ::fstat(STDOUT_FILENO, &open) == 0 && is_same_file(named, open));
}

bool is_stream(const std::string& path) {
  struct stat info;
  return descriptor_of(path) >= 0 || (::stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode));
}

void check_differs(const std::string& out, std::span<const std::string> inputs) {
  struct stat written, read;
  if (::stat(out.c_str(), &written) != 0 || !(S_ISREG(written.st_mode) || S_ISBLK(written.st_mode))) return;
  for (const std::string& in : inputs)
    if (::stat(in.c_str(), &read) == 0 && is_same_file(written, read))
      throw NamedFailure(out + ": cannot write: it is the file that is read, " + in);
}

void open_standard_descriptors() {
  for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (::fcntl(fd, F_GETFD) < 0 && errno == EBADF)  // the lowest that is free
      if (::open("/dev/null", fd == STDERR_FILENO ? O_RDWR : O_RDONLY) != fd) std::exit(1);
}

OutputFile::OutputFile(const std::string& path) {
  if (const int open = descriptor_of(path); open >= 0) {
    fd_ = ::fcntl(open, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (fd_ < 0) fail("cannot write", errno);
    return;
  }
  struct stat info;
  const bool exists = ::stat(path.c_str(), &info) == 0;
  if (exists && !S_ISREG(info.st_mode)) {
    fd_ = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd_ < 0) fail("cannot write", errno);
    return;
  }
  if (exists && ::access(path.c_str(), W_OK) != 0) fail("cannot write", errno);
  if (exists) replaced_ = info;
  const std::filesystem::path whole = followed(path);
  path_ = whole.string();
  open_aside(whole.parent_path().string());
}

void OutputFile::open_aside(const std::string& directory) {
  pattern_ = (std::filesystem::path(directory) / ".pqxvideo-XXXXXX").string();
  const mode_t mode = replaced_ ? 0600 : 0666;
  const SignalHold hold;
  handle_ends();
  // It is linked by its entry there, without which it could never get a name.
  if (::access("/proc/self/fd", X_OK) == 0)
    fd_ = ::open(directory.empty() ? "." : directory.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode);
  else
    errno = EOPNOTSUPP;
  if (fd_ >= 0) return;
  if (errno != EOPNOTSUPP && errno != EISDIR) fail("cannot write", errno);

  aside_ = pattern_;
  fd_ = ::mkostemp(aside_.data(), O_CLOEXEC);
  if (fd_ < 0) {
    const int error = errno;
    aside_.clear();
    fail("cannot write", error);
  }
  const mode_t mask = ::umask(0);
  ::umask(mask);
  ::fchmod(fd_, mode & ~mask);
  if (aside_.size() < sizeof unfinished) std::strcpy(unfinished, aside_.c_str());
}

OutputFile::~OutputFile() {
  if (fd_ >= 0) ::close(fd_);
  const SignalHold hold;
  if (!aside_.empty()) ::unlink(aside_.c_str());
  unfinished[0] = 0;
}

void OutputFile::write(std::span<const uint8_t> bytes) {
  constexpr size_t least = size_t{1} << 16;  // that a write takes, but for the last one
  if (waiting_.empty() && bytes.size() >= least) return write_now(bytes);
  const size_t taken = std::min(bytes.size(), least - waiting_.size());
  waiting_.insert(waiting_.end(), bytes.begin(), bytes.begin() + ptrdiff_t(taken));
  if (waiting_.size() < least) return;
  write_now(waiting_);
  waiting_.clear();
  if (taken < bytes.size()) write(bytes.subspan(taken));
}

void OutputFile::write_now(std::span<const uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(fd_, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) fail("cannot write", errno);
    bytes = bytes.subspan(size_t(std::max<ssize_t>(written, 0)));
  }
}

void OutputFile::commit() {
  write_now(waiting_);
  if (replaced_) hand_over();
  const SignalHold hold;
  // A file that is called by its descriptor has to be open.
  if (aside_.empty() && !path_.empty()) {
    const std::string open = "/proc/self/fd/" + std::to_string(fd_);
    const auto link_to = [&](const std::string& name) {
      return ::linkat(AT_FDCWD, open.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
    };
    if (!replaced_ && link_to(path_)) {
      path_.clear();
    } else if (!replaced_ && errno != EEXIST) {
      fail("cannot write", errno);
    } else {
      // As there is no unused name for sure, one is tried after the other.
      std::string name;
      for (int tries = 0; tries < 100 && aside_.empty(); ++tries) {
        name = pattern_.substr(0, pattern_.size() - 6) + std::to_string(::getpid()) + '-' + std::to_string(tries);
        if (link_to(name))
          aside_ = name;
        else if (errno != EEXIST)
          break;
      }
      if (aside_.empty()) fail("cannot write", errno);
    }
  }
  if (::close(std::exchange(fd_, -1)) != 0) fail("cannot write", errno);
  if (path_.empty()) return;
  if (::rename(aside_.c_str(), path_.c_str()) != 0) fail("cannot write", errno);
  aside_.clear();
  unfinished[0] = 0;
}

/// Takes mode and owner of the file that is replaced.
void OutputFile::hand_over() {
  struct stat own;
  if (::fstat(fd_, &own) != 0) fail("cannot write", errno);
  const uid_t uid = replaced_->st_uid;
  const gid_t gid = replaced_->st_gid;
  const bool same = own.st_uid == uid && own.st_gid == gid;
  const bool owned = same || ::fchown(fd_, uid, gid) == 0, grouped = owned || ::fchown(fd_, uid_t(-1), gid) == 0;
  // Rights of another owner are not for this one.
  if (::fchmod(fd_, replaced_->st_mode & (owned ? 07777 : 0777)) != 0) fail("cannot write", errno);
  if (!owned) report(path_ + (grouped ? ": its owner could not be kept" : ": its owner and group could not be kept"));
}

}  // namespace pqxvideo
