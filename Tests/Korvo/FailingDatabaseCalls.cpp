#include "FailingDatabaseCalls.h"

#include <fcntl.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

namespace {

DatabaseFault *current = nullptr;

bool strikes(const char *call) { return current != nullptr && current->strikes(call); }

int failingOpen(const char *path, int flags, int mode) {
  // Where it takes its random numbers from is no part of the library.
  const bool isOfLibrary = std::string_view(path) != "/dev/urandom";
  return isOfLibrary && strikes("open") ? -1 : open(path, flags, mode);
}

int failingAccess(const char *path, int mode) {
  return strikes("access") ? -1 : access(path, mode);
}

int failingStat(const char *path, struct stat *status) {
  return strikes("stat") ? -1 : stat(path, status);
}

int failingFstat(int descriptor, struct stat *status) {
  return strikes("fstat") ? -1 : fstat(descriptor, status);
}

int failingFtruncate(int descriptor, off_t length) {
  return strikes("ftruncate") ? -1 : ftruncate(descriptor, length);
}

int failingFcntl(int descriptor, int command, void *argument) {
  return strikes("fcntl") ? -1 : fcntl(descriptor, command, argument);
}

ssize_t failingRead(int descriptor, void *bytes, std::size_t size) {
  return strikes("read") ? -1 : read(descriptor, bytes, size);
}

ssize_t failingPread(int descriptor, void *bytes, std::size_t size, off_t offset) {
  return strikes("pread") ? -1 : pread(descriptor, bytes, size, offset);
}

ssize_t failingWrite(int descriptor, const void *bytes, std::size_t size) {
  return strikes("write") ? -1 : write(descriptor, bytes, size);
}

ssize_t failingPwrite(int descriptor, const void *bytes, std::size_t size, off_t offset) {
  return strikes("pwrite") ? -1 : pwrite(descriptor, bytes, size, offset);
}

int failingUnlink(const char *path) { return strikes("unlink") ? -1 : unlink(path); }

template <typename Function>
void replace(const char *name, Function *replacement) {
  sqlite3_vfs *const system = sqlite3_vfs_find("unix");
  system->xSetSystemCall(system, name, reinterpret_cast<sqlite3_syscall_ptr>(replacement));
}

void replaceAll() {
  replace("open", failingOpen);
  replace("access", failingAccess);
  replace("stat", failingStat);
  replace("fstat", failingFstat);
  replace("ftruncate", failingFtruncate);
  replace("fcntl", failingFcntl);
  replace("read", failingRead);
  replace("write", failingWrite);
  replace("unlink", failingUnlink);
  // Which of the two it uses depends on how it was built.
  replace("pread", failingPread);
  replace("pread64", failingPread);
  replace("pwrite", failingPwrite);
  replace("pwrite64", failingPwrite);
}

}  // namespace

// Visible to SQLite's shared library.
extern "C" {
__attribute__((visibility("default"))) int fsync(int) { return strikes("fsync") ? -1 : 0; }
__attribute__((visibility("default"))) int fdatasync(int) { return strikes("fsync") ? -1 : 0; }
}

DatabaseFault::DatabaseFault(const DatabaseFaultPlan &plan) : plan_(plan) {
  static const bool areReplaced = (replaceAll(), true);
  (void)areReplaced;
  current = this;
}

DatabaseFault::~DatabaseFault() { current = nullptr; }

bool DatabaseFault::strikes(const char *call) {
  if (!plan_.only.empty() && std::ranges::find(plan_.only, call) == plan_.only.end()) {
    return false;
  }
  const std::size_t number = calls_++;
  if (number < plan_.firstFailure || number - plan_.firstFailure >= plan_.failures) {
    return false;
  }
  if (plan_.killsProcess) {
    kill(getpid(), SIGKILL);
  }
  if (struck_.empty()) {
    struck_ = call;
  }
  errno = plan_.error;
  return true;
}
