#include "BusNames.h"

#include <ApplicationServices/MacErrors.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <utility>

namespace platform {
namespace {

constexpr std::string_view namePrefix = "org.korvo.AppleEvents.S";
constexpr std::string_view errorPrefix = "org.korvo.AppleEvents1.Error.S";
constexpr std::size_t signatureDigits = 8;

constexpr std::pair<std::string_view, OSStatus> busErrors[] = {
    {"org.freedesktop.DBus.Error.ServiceUnknown", procNotFound},
    {"org.freedesktop.DBus.Error.NameHasNoOwner", procNotFound},
    {"org.freedesktop.DBus.Error.UnknownObject", errAEEventNotHandled},
    {"org.freedesktop.DBus.Error.UnknownInterface", errAEEventNotHandled},
    {"org.freedesktop.DBus.Error.UnknownMethod", errAEEventNotHandled},
    {"org.freedesktop.DBus.Error.NoReply", connectionInvalid},
    {"org.freedesktop.DBus.Error.Disconnected", connectionInvalid},
    {"org.freedesktop.DBus.Error.NoMemory", memFullErr},
    {"org.freedesktop.DBus.Error.LimitsExceeded", memFullErr},
    {"org.freedesktop.DBus.Error.AccessDenied", errAEEventNotPermitted},
    {"org.freedesktop.DBus.Error.InvalidArgs", paramErr},
};

constexpr std::pair<OSStatus, const char *> words[] = {
    {paramErr, "A parameter of the event is not allowed"},
    {memFullErr, "There is not enough memory, or too many events are waiting"},
    {procNotFound, "No running process has this signature"},
    {connectionInvalid, "The other process is gone"},
    {errAECorruptData, "A parameter's file is no memory file with all four seals"},
    {errAEWrongDataType, "A parameter's data is neither bytes nor a file"},
    {errAEEventNotHandled, "There is no handler for this event"},
    {errAETimeout, "There was no reply in time"},
    {errAEEventFailed, "The handler of the event failed"},
};

template <typename Number>
std::optional<Number> parseWhole(std::string_view digits, int base) {
  Number value{};
  const char *end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
  if (error != std::errc() || stop != end) {
    return std::nullopt;
  }
  return value;
}

}  // namespace

std::string busName(FourCharCode signature) {
  constexpr char hexadecimal[] = "0123456789ABCDEF";
  std::string name(namePrefix);
  for (int shift = 28; shift >= 0; shift -= 4) {
    name += hexadecimal[signature >> shift & 0xF];
  }
  return name;
}

std::optional<FourCharCode> signatureInBusName(std::string_view name) {
  if (!name.starts_with(namePrefix) || name.size() != namePrefix.size() + signatureDigits) {
    return std::nullopt;
  }
  const auto signature = parseWhole<FourCharCode>(name.substr(namePrefix.size()), 16);
  if (!signature || busName(*signature) != name) {
    return std::nullopt;
  }
  return signature;
}

std::string errorName(OSStatus status) {
  return std::string(errorPrefix) + std::to_string(-std::int64_t{status});
}

OSStatus statusOfError(std::string_view errorName) {
  if (errorName.starts_with(errorPrefix)) {
    const auto number = parseWhole<OSStatus>(errorName.substr(errorPrefix.size()), 10);
    return number && *number > 0 ? -*number : OSStatus{errAEEventFailed};
  }
  const auto known =
      std::ranges::find(busErrors, errorName, &std::pair<std::string_view, OSStatus>::first);
  return known == std::end(busErrors) ? OSStatus{errAEEventFailed} : known->second;
}

const char *inWords(OSStatus status) {
  const auto known = std::ranges::find(words, status, &std::pair<OSStatus, const char *>::first);
  return known == std::end(words) ? "The event was refused" : known->second;
}

}  // namespace platform
