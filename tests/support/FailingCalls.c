// Preloaded into the engine alone, this lets one of its calls on files below a folder fail.
// FAULT_FOLDER: that folder; FAULT_AT: which call, from 1; FAULT_ERRNO: how; FAULT_MARK: a file for the
// call's name once it has failed.
#define _GNU_SOURCE
#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

static char folder[4096];
static char mark[4096];
static int failing_call;
static int failure;
static int calls;

__attribute__((constructor)) static void read_settings(void) {
  if (!getenv("FAULT_AT")) return;
  snprintf(folder, sizeof folder, "%s", getenv("FAULT_FOLDER"));
  snprintf(mark, sizeof mark, "%s", getenv("FAULT_MARK"));
  failing_call = atoi(getenv("FAULT_AT"));
  failure = atoi(getenv("FAULT_ERRNO"));
  unsetenv("LD_PRELOAD");
}

static int fails(const char* name, const char* path) {
  if (failing_call == 0 || !path || strncmp(path, folder, strlen(folder)) != 0) return 0;
  if (__atomic_add_fetch(&calls, 1, __ATOMIC_SEQ_CST) != failing_call) return 0;
  char text[8192];
  const int length = snprintf(text, sizeof text, "%s %s", name, path);
  const long file = syscall(SYS_openat, AT_FDCWD, mark, O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  syscall(SYS_write, file, text, length);
  syscall(SYS_close, file);
  errno = failure;
  return 1;
}

static int descriptor_fails(const char* name, int file) {
  char link[64];
  char path[4096];
  snprintf(link, sizeof link, "/proc/self/fd/%d", file);
  const int problem = errno;
  const ssize_t length = readlink(link, path, sizeof path - 1);
  errno = problem;
  if (length < 0) return 0;
  path[length] = '\0';
  return fails(name, path);
}

// Each of these has the signature of the function that it stands before.
#define NEXT(name) (__extension__(__typeof__(&name)) dlsym(RTLD_NEXT, #name))
#define BY_PATH(result, name, path, parameters, arguments) \
  result name parameters { return fails(#name, path) ? -1 : NEXT(name) arguments; }
#define BY_FILE(result, name, file, parameters, arguments) \
  result name parameters { return descriptor_fails(#name, file) ? -1 : NEXT(name) arguments; }

BY_PATH(int, mkstemp, path, (char* path), (path))
BY_PATH(int, rename, from, (const char* from, const char* to), (from, to))
BY_PATH(int, unlink, path, (const char* path), (path))
BY_PATH(int, remove, path, (const char* path), (path))
BY_PATH(int, mkdir, path, (const char* path, mode_t mode), (path, mode))
BY_FILE(ssize_t, read, file, (int file, void* bytes, size_t size), (file, bytes, size))
BY_FILE(ssize_t, write, file, (int file, const void* bytes, size_t size), (file, bytes, size))
BY_FILE(int, fsync, file, (int file), (file))
BY_FILE(int, flock, file, (int file, int how), (file, how))
BY_FILE(int, fchmod, file, (int file, mode_t mode), (file, mode))
BY_FILE(int, dup2, file, (int file, int number), (file, number))

DIR* opendir(const char* path) { return fails("opendir", path) ? NULL : NEXT(opendir)(path); }

int open(const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = flags & O_CREAT ? va_arg(more, mode_t) : 0;
  va_end(more);
  return fails("open", path) ? -1 : NEXT(open)(path, flags, mode);
}
