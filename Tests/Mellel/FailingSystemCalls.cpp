#include "FailingSystemCalls.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>

namespace mellel_test {

namespace {

Fault *current = nullptr;

bool strikes(const char *call) { return current != nullptr && current->strikes(call); }

std::size_t transfer(std::size_t size) {
  return current == nullptr ? size : std::min(size, current->largestTransfer());
}

ssize_t failedTransfer() { return current->movesNothing() ? 0 : -1; }

}  // namespace

Fault::Fault(const FaultPlan &plan) : plan_(plan) { current = this; }

Fault::~Fault() { current = nullptr; }

bool Fault::strikes(const char *call) {
  const std::size_t number = calls_.size();
  calls_.emplace_back(call);
  const bool fails = number >= plan_.firstFailure && number - plan_.firstFailure < plan_.failures;
  if (fails) {
    errno = plan_.error;
  }
  return fails;
}

extern "C" {

int __real_open(const char *path, int flags, ...);
int __real_mkostemp(char *pattern, int flags);
int __real_fstat(int descriptor, struct stat *status);
int __real_fchmod(int descriptor, mode_t mode);
ssize_t __real_pread(int descriptor, void *bytes, std::size_t size, off_t offset);
ssize_t __real_write(int descriptor, const void *bytes, std::size_t size);
int __real_fsync(int descriptor);
int __real_rename(const char *from, const char *to);
int __real_unlink(const char *path);

int __wrap_open(const char *path, int flags, ...) {
  if (strikes("open")) {
    return -1;
  }
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return __real_open(path, flags, mode);
}

int __wrap_mkostemp(char *pattern, int flags) {
  return strikes("mkostemp") ? -1 : __real_mkostemp(pattern, flags);
}

int __wrap_fstat(int descriptor, struct stat *status) {
  return strikes("fstat") ? -1 : __real_fstat(descriptor, status);
}

int __wrap_fchmod(int descriptor, mode_t mode) {
  return strikes("fchmod") ? -1 : __real_fchmod(descriptor, mode);
}

ssize_t __wrap_pread(int descriptor, void *bytes, std::size_t size, off_t offset) {
  if (strikes("pread")) {
    return failedTransfer();
  }
  const ssize_t count = __real_pread(descriptor, bytes, transfer(size), offset);
  if (current != nullptr) {
    current->tellOfReading();
  }
  return count;
}

ssize_t __wrap_write(int descriptor, const void *bytes, std::size_t size) {
  return strikes("write") ? failedTransfer() : __real_write(descriptor, bytes, transfer(size));
}

int __wrap_fsync(int descriptor) { return strikes("fsync") ? -1 : __real_fsync(descriptor); }

int __wrap_rename(const char *from, const char *to) {
  return strikes("rename") ? -1 : __real_rename(from, to);
}

int __wrap_unlink(const char *path) { return strikes("unlink") ? -1 : __real_unlink(path); }

}  // extern "C"

}  // namespace mellel_test
