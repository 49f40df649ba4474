#include "FailingCalls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>

namespace tarvik::test {

namespace {

thread_local std::vector<std::string> g_arrNames;
thread_local bool g_fArmed = false, g_fForEver = false, g_fFailed = false;
thread_local int g_intFailsAt = 0, g_intError = 0;

/// Writes the call down, and answers the error that it has to fail with; 0 for none.
int ErrorOf(const char *strName) {
  if (!g_fArmed) return 0;
  g_arrNames.emplace_back(strName);
  if (g_intFailsAt == 0) return 0;
  const int intNumber = static_cast<int>(g_arrNames.size());
  const bool fFails = g_fForEver ? intNumber >= g_intFailsAt : intNumber == g_intFailsAt;
  g_fFailed = g_fFailed || fFails;
  return fFails ? g_intError : 0;
}

/// The C library's own.
template <class Function>
Function *Real(const char *strName) {
  return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, strName));
}

template <class Result, class... Arguments>
Result Run(const char *strName, Result failed, Arguments... arguments) {
  // Errors only: what can be short is told apart before.
  if (const int intError = ErrorOf(strName); intError > 0) {
    errno = intError;
    return failed;
  }
  return Real<Result(Arguments...)>(strName)(arguments...);
}

}  // namespace

void FailingCalls::FailAt(int intNumber, int intError, bool fForEver) {
  g_arrNames.clear();
  g_intFailsAt = intNumber;
  g_intError = intError;
  g_fForEver = fForEver;
  g_fFailed = false;
  g_fArmed = true;
}

std::vector<std::string> FailingCalls::Stop() {
  g_fArmed = false;
  return std::move(g_arrNames);
}

bool FailingCalls::HasFailed() { return g_fFailed; }

}  // namespace tarvik::test

// Visible, so that the standard library calls them too.
#pragma GCC visibility push(default)
extern "C" {

using tarvik::test::ErrorOf;
using tarvik::test::FailingCalls;
using tarvik::test::Real;
using tarvik::test::Run;

int open(const char *path, int flags, ...) {
  mode_t mode = 0;
  if ((flags & O_CREAT) != 0) {
    va_list arguments;
    va_start(arguments, flags);
    mode = va_arg(arguments, mode_t);
    va_end(arguments);
  }
  if (const int intError = ErrorOf("open"); intError > 0) {
    errno = intError;
    return -1;
  }
  return Real<int(const char *, int, ...)>("open")(path, flags, mode);
}

ssize_t write(int file, const void *bytes, size_t count) {
  const int intError = ErrorOf("write");
  if (intError > 0) {
    errno = intError;
    return -1;
  }
  const size_t taken = intError == FailingCalls::Short && count > 1 ? 1 : count;
  return Real<ssize_t(int, const void *, size_t)>("write")(file, bytes, taken);
}

ssize_t read(int file, void *bytes, size_t count) {
  const int intError = ErrorOf("read");
  if (intError > 0) {
    errno = intError;
    return -1;
  }
  const size_t asked = intError == FailingCalls::Short && count > 1 ? 1 : count;
  return Real<ssize_t(int, void *, size_t)>("read")(file, bytes, asked);
}

int close(int file) {
  // Closed all the same, as the system does it.
  const int intError = ErrorOf("close");
  const int intResult = Real<int(int)>("close")(file);
  if (intError <= 0) return intResult;
  errno = intError;
  return -1;
}

FILE *fopen64(const char *path, const char *mode) { return Run<FILE *>("fopen64", nullptr, path, mode); }
int fsync(int file) { return Run("fsync", -1, file); }
int fchmod(int file, mode_t mode) { return Run("fchmod", -1, file, mode); }
// Another name here, since the system has a structure of that name.
int TakenFlock(int file, int operation) asm("flock");
int TakenFlock(int file, int operation) { return Run("flock", -1, file, operation); }
int rename(const char *from, const char *to) { return Run("rename", -1, from, to); }
int mkdir(const char *path, mode_t mode) { return Run("mkdir", -1, path, mode); }
int access(const char *path, int mode) { return Run("access", -1, path, mode); }
int stat(const char *path, struct stat *status) { return Run("stat", -1, path, status); }
int lstat(const char *path, struct stat *status) { return Run("lstat", -1, path, status); }
int mkostemp(char *path, int flags) { return Run("mkostemp", -1, path, flags); }
}
#pragma GCC visibility pop
