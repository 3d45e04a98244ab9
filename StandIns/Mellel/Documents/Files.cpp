#include "Files.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <optional>
#include <thread>
#include <utility>

namespace mellel::documents {

using console::Failure;
using console::Status;

namespace {

// No document is that large, but a file may claim to be, and its size is asked of the memory at
// once.
constexpr off_t greatestDocumentSize = off_t{1} << 30;

// A save takes milliseconds.
constexpr int mostAttempts = 20;
constexpr std::chrono::milliseconds timeBetweenAttempts{25};

std::unexpected<Failure> failure(const std::string &what) {
  return std::unexpected(Failure{Status::brokenDocumentOrReply, what});
}

std::unexpected<Failure> systemFailure(const std::string &what, int error) {
  return failure(what + ": " + std::strerror(error));
}

class FileDescriptor {
 public:
  explicit FileDescriptor(int number) : number_(number) {}
  ~FileDescriptor() {
    if (number_ >= 0) {
      close(number_);
    }
  }
  FileDescriptor(const FileDescriptor &) = delete;
  FileDescriptor &operator=(const FileDescriptor &) = delete;
  FileDescriptor(FileDescriptor &&) = delete;
  FileDescriptor &operator=(FileDescriptor &&) = delete;

  int number() const { return number_; }

 private:
  int number_;
};

// Keeps signals waiting that would end the process and leave a temporary file behind.
class EndingSignalsHeld {
 public:
  EndingSignalsHeld() {
    sigset_t ending;
    sigemptyset(&ending);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) {
      sigaddset(&ending, signal);
    }
    pthread_sigmask(SIG_BLOCK, &ending, &before_);
  }
  ~EndingSignalsHeld() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  EndingSignalsHeld(const EndingSignalsHeld &) = delete;
  EndingSignalsHeld &operator=(const EndingSignalsHeld &) = delete;
  EndingSignalsHeld(EndingSignalsHeld &&) = delete;
  EndingSignalsHeld &operator=(EndingSignalsHeld &&) = delete;

 private:
  sigset_t before_{};
};

// The file's path until it is kept under another name; deleted otherwise.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::filesystem::path &folder)
      : path_((folder / ".mellel-XXXXXX").string()),
        descriptor_(mkostemp(path_.data(), O_CLOEXEC)),
        exists_(descriptor_.number() >= 0) {}
  ~TemporaryFile() {
    if (exists_) {
      unlink(path_.c_str());
    }
  }
  TemporaryFile(const TemporaryFile &) = delete;
  TemporaryFile &operator=(const TemporaryFile &) = delete;
  TemporaryFile(TemporaryFile &&) = delete;
  TemporaryFile &operator=(TemporaryFile &&) = delete;

  bool exists() const { return exists_; }
  int descriptor() const { return descriptor_.number(); }

  bool keepAs(const std::string &path) {
    if (rename(path_.c_str(), path.c_str()) != 0) {
      return false;
    }
    exists_ = false;
    return true;
  }

 private:
  std::string path_;
  FileDescriptor descriptor_;
  bool exists_;
};

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) {
      continue;
    }
    if (written <= 0) {
      // A device that takes nothing, and says so without an error, would be asked for ever.
      errno = written == 0 ? EIO : errno;
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// From the beginning of the file, with one byte more than its size at most: who goes on writing may
// do so faster than it is read. False with errno.
bool readToTheEnd(int descriptor, std::size_t expectedSize, std::string &bytes) {
  bytes.resize(expectedSize + 1);
  std::size_t size = 0;
  while (size < bytes.size()) {
    const ssize_t count =
        pread(descriptor, bytes.data() + size, bytes.size() - size, static_cast<off_t>(size));
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count < 0) {
      return false;
    }
    if (count == 0) {
      break;
    }
    size += static_cast<std::size_t>(count);
  }
  bytes.resize(size);
  return true;
}

bool isSameTime(const timespec &left, const timespec &right) {
  return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

bool isUnchanged(const struct stat &before, const struct stat &after) {
  return before.st_size == after.st_size && isSameTime(before.st_mtim, after.st_mtim);
}

FileIdentity identityOf(const struct stat &status) { return {status.st_dev, status.st_ino}; }

std::optional<struct stat> statusOf(const std::string &path) {
  struct stat status{};
  return stat(path.c_str(), &status) == 0 ? std::optional(status) : std::nullopt;
}

std::unexpected<Failure> isTheDocument(const std::string &path) {
  return std::unexpected(
      Failure{Status::wrongUsage,
              path + " is the document itself, which is never changed; name another file"});
}

}  // namespace

std::expected<FileContents, Failure> readFile(const std::string &path) {
  // Without O_NONBLOCK a pipe would wait for a writer.
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat before{};
  if (file.number() < 0 || fstat(file.number(), &before) != 0) {
    return systemFailure("cannot read " + path, errno);
  }
  if (!S_ISREG(before.st_mode)) {
    return failure("cannot read " + path + ": it is no file");
  }
  for (int attempt = 0; attempt < mostAttempts; ++attempt) {
    if (before.st_size > greatestDocumentSize) {
      return failure("cannot read " + path + ": it is larger than 1 GiB");
    }
    std::string bytes;
    struct stat after{};
    if (!readToTheEnd(file.number(), static_cast<std::size_t>(before.st_size), bytes) ||
        fstat(file.number(), &after) != 0) {
      return systemFailure("cannot read " + path, errno);
    }
    if (isUnchanged(before, after) && bytes.size() == static_cast<std::size_t>(after.st_size)) {
      return FileContents{std::move(bytes), identityOf(after)};
    }
    before = after;
    std::this_thread::sleep_for(timeBetweenAttempts);
  }
  return failure("cannot read " + path + ": another program is writing to it");
}

std::string defaultOutputPath(const std::string &inputPath) {
  const std::filesystem::path path(inputPath);
  std::filesystem::path name = path.stem();
  name += " formatted";
  name += path.has_extension() ? path.extension() : std::filesystem::path(".rtf");
  return (path.parent_path() / name).string();
}

std::expected<std::string, Failure> resolveOutput(const std::string &inputPath,
                                                  const std::string &outputPath) {
  const std::optional<struct stat> input = statusOf(inputPath);
  const std::optional<struct stat> output = statusOf(outputPath);
  if (!output) {
    return outputPath;
  }
  if (input && identityOf(*input) == identityOf(*output)) {
    return isTheDocument(outputPath);
  }
  if (!S_ISREG(output->st_mode)) {
    return std::unexpected(Failure{Status::wrongUsage, outputPath + " is no file"});
  }
  std::error_code error;
  const std::filesystem::path target = std::filesystem::canonical(outputPath, error);
  return error ? outputPath : target.string();
}

std::expected<void, Failure> checkWritable(const std::string &path) {
  const std::filesystem::path parent = std::filesystem::path(path).parent_path();
  const std::string folder = parent.empty() ? "." : parent.string();
  const std::optional<struct stat> status = statusOf(folder);
  if (!status) {
    return systemFailure("cannot write " + path, errno);
  }
  if (!S_ISDIR(status->st_mode)) {
    return systemFailure("cannot write " + path, ENOTDIR);
  }
  if (access(folder.c_str(), W_OK | X_OK) != 0) {
    return systemFailure("cannot write " + path, errno);
  }
  return {};
}

std::expected<void, Failure> writeFile(const std::string &path, std::string_view bytes,
                                       const std::string &inputPath, const FileIdentity &input) {
  const std::string what = "cannot write " + path;
  const std::filesystem::path parent = std::filesystem::path(path).parent_path();
  const std::filesystem::path folder = parent.empty() ? std::filesystem::path(".") : parent;
  std::optional<struct stat> permissions = statusOf(path);
  if (!permissions) {
    permissions = statusOf(inputPath);
  }
  const EndingSignalsHeld signalsHeld;
  TemporaryFile temporary(folder);
  if (!temporary.exists()) {
    return systemFailure(what, errno);
  }
  constexpr mode_t permissionBits = S_IRWXU | S_IRWXG | S_IRWXO;
  const bool isReady =
      (!permissions ||
       fchmod(temporary.descriptor(), permissions->st_mode & permissionBits) == 0) &&
      writeAll(temporary.descriptor(), bytes) && fsync(temporary.descriptor()) == 0;
  if (!isReady) {
    return systemFailure(what, errno);
  }
  // As late as can be: between this look and the renaming nobody moves a file by hand.
  if (const auto target = statusOf(path); target && identityOf(*target) == input) {
    return isTheDocument(path);
  }
  if (!temporary.keepAs(path)) {
    return systemFailure(what, errno);
  }
  // The new name must last too. Where a folder cannot be synchronised the file is there all the
  // same.
  const FileDescriptor folderDescriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folderDescriptor.number() >= 0) {
    fsync(folderDescriptor.number());
  }
  return {};
}

}  // namespace mellel::documents
