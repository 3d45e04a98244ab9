#include "WaitingNews.h"

#include "Effects.h"

#include <string>

namespace korvo::application {
namespace {

// So that what is told has been read by half a second.
constexpr std::chrono::milliseconds patience{400};
constexpr std::chrono::seconds interval{2};

}  // namespace

WaitingNews::WaitingNews(Clock::time_point beginning) : next_(beginning + patience) {}

bool WaitingNews::isDue(Clock::time_point now) {
  if (now < next_) {
    return false;
  }
  next_ = now + interval;
  return true;
}

engine::ImportProgress WaitingNews::ofImport() {
  return [this](const std::filesystem::path &file, std::string_view soFar) {
    if (isDue()) {
      complain("reading " + file.string() + ": " + std::string(soFar) + " ...");
    }
  };
}

}  // namespace korvo::application
