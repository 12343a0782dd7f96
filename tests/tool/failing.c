// Preloaded into the tool, makes a call fail as FAILING says.
#define _GNU_SOURCE
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

static int fails(const char* what) {
  const char* const failing = getenv("FAILING");
  return failing && strcmp(failing, what) == 0;
}

/// "unnamed": there are no files without a name.
int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const int mode = va_arg(arguments, int);
  va_end(arguments);
  if ((flags & O_TMPFILE) == O_TMPFILE && fails("unnamed")) {
    errno = EOPNOTSUPP;
    return -1;
  }
  return (int)syscall(SYS_openat, AT_FDCWD, path, flags, mode);
}

/// "close": what has been written does not arrive.
int close(int fd) {
  struct stat file;
  const int written = (fcntl(fd, F_GETFL) & O_ACCMODE) != O_RDONLY && fstat(fd, &file) == 0 && S_ISREG(file.st_mode);
  const int result = (int)syscall(SYS_close, fd);
  if (!written || !fails("close")) return result;
  errno = EIO;
  return -1;
}

/// "small": a second write of less than 64 KiB.
ssize_t write(int fd, const void* bytes, size_t count) {
  static int small;
  if (fd > 2 && count < 65536 && fails("small") && small++) {
    errno = EIO;
    return -1;
  }
  return syscall(SYS_write, fd, bytes, count);
}
