#include "RefusalLog.h"

#include "BusNames.h"

#include <Platform/Log.h>

#include <chrono>
#include <string>

namespace platform {
namespace {

constexpr std::chrono::seconds quiet{1};

}  // namespace

RefusalLog::RefusalLog() : endOfQuiet_([this] { tellTheRest(); }) {}

void RefusalLog::refused(std::string_view sender, OSStatus status) {
  if (isQuiet_) {
    ++untold_;
    return;
  }
  logLine("An event from " + std::string(sender) + " was refused with status " +
          std::to_string(status) + ": " + inWords(status));
  isQuiet_ = true;
  endOfQuiet_.callAfter(quiet);
}

void RefusalLog::tellTheRest() {
  isQuiet_ = untold_ > 0;
  if (!isQuiet_) {
    return;
  }
  logLine(std::to_string(untold_) + (untold_ == 1 ? " more event was" : " more events were") +
          " refused since");
  untold_ = 0;
  endOfQuiet_.callAfter(quiet);
}

}  // namespace platform
