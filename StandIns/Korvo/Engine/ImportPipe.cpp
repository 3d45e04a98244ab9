#include "ImportPipe.h"

#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <utility>

namespace korvo::engine {

namespace {

constexpr char progressFrame = 'P';
constexpr char referenceFrame = 'R';
constexpr char problemFrame = 'W';
constexpr char errorFrame = 'E';
constexpr char endFrame = 'D';

struct Head {
  std::uint64_t firstSize;
  std::uint64_t secondSize;
  char kind;
};

constexpr std::size_t bytesAtOnce = 65'536;

}  // namespace

bool ImportWriter::writeProgress(std::string_view soFar) {
  return writeFrame(progressFrame, soFar, {}) && flush();
}

bool ImportWriter::write(const std::expected<ImportResult, std::string> &imported) {
  if (!imported) {
    return writeFrame(errorFrame, imported.error(), {}) && writeFrame(endFrame, {}, {}) && flush();
  }
  for (const ImportedReference &reference : imported->references) {
    if (!writeFrame(referenceFrame, reference.citationKey, reference.cslJson)) {
      return false;
    }
  }
  for (const ImportProblem &problem : imported->problems) {
    if (!writeFrame(problemFrame, std::to_string(problem.line), problem.reason)) {
      return false;
    }
  }
  return writeFrame(endFrame, {}, {}) && flush();
}

bool ImportWriter::writeFrame(char kind, std::string_view first, std::string_view second) {
  Head head{};
  head.firstSize = first.size();
  head.secondSize = second.size();
  head.kind = kind;
  waiting_.append(reinterpret_cast<const char *>(&head), sizeof head);
  waiting_.append(first).append(second);
  return waiting_.size() < bytesAtOnce || flush();
}

bool ImportWriter::flush() {
  std::string_view bytes = waiting_;
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) {
      return false;
    }
    bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
  }
  waiting_.clear();
  return true;
}

bool ImportReading::take(std::string_view bytes) {
  waiting_ += bytes;
  std::string_view rest = waiting_;
  Head head{};
  while (rest.size() >= sizeof head) {
    std::memcpy(&head, rest.data(), sizeof head);
    // A record is bounded where it is read; a frame that says more is none of ours.
    constexpr std::uint64_t largestPart = std::uint64_t{1} << 30;
    if (head.firstSize > largestPart || head.secondSize > largestPart) {
      return false;
    }
    const std::size_t size = sizeof head + head.firstSize + head.secondSize;
    if (rest.size() < size) {
      break;
    }
    const std::string_view first = rest.substr(sizeof head, head.firstSize);
    if (!takeFrame(head.kind, first, rest.substr(sizeof head + head.firstSize, head.secondSize))) {
      return false;
    }
    rest.remove_prefix(size);
  }
  waiting_.erase(0, waiting_.size() - rest.size());
  return true;
}

bool ImportReading::takeFrame(char kind, std::string_view first, std::string_view second) {
  if (isWhole_) {
    return false;
  }
  switch (kind) {
    case progressFrame:
      if (progress_) {
        progress_(file_, first);
      }
      return true;
    case referenceFrame:
      if (result_) {
        result_->references.push_back({std::string(first), std::string(second)});
      }
      return result_.has_value();
    case problemFrame: {
      std::size_t line = 0;
      const auto read = std::from_chars(first.data(), first.data() + first.size(), line);
      if (!result_ || read.ec != std::errc()) {
        return false;
      }
      result_->problems.push_back({file_, line, std::string(second)});
      return true;
    }
    case errorFrame:
      result_ = std::unexpected(std::string(first));
      return true;
    case endFrame:
      isWhole_ = true;
      return true;
    default:
      return false;
  }
}

}  // namespace korvo::engine
