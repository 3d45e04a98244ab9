// Reads a payload that must be complete, for the receivers of answers: a field that
// reaches past the end of the data is an error, told with the field's name.
#pragma once

#include "PayloadReader.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

namespace formats {

// Remembers the first field that was cut short. Reading goes on harmlessly (zeros, empty
// strings), so the caller may look once, after a number of fields.
class StrictReader {
 public:
  // Borrows both; the name ("scan reply") begins every error line.
  StrictReader(std::string_view payload, std::string_view payloadName)
      : payload_(payload), payloadName_(payloadName), reader_(payload) {}

  std::uint16_t readUInt16(std::string_view field);
  std::uint32_t readUInt32(std::string_view field);
  std::string_view readString(std::string_view field);
  // All that is left; never an error.
  std::string_view readRest();

  std::size_t remaining() const;
  bool failed() const { return !error_.empty(); }
  // An error that the caller found.
  void fail(std::string_view what);
  // Refuses bytes that belong to no field.
  void expectEnd();
  // The first error, one line. Empty while there is none.
  const std::string &error() const { return error_; }

 private:
  void checkNotPastEnd(std::size_t start, std::string_view field);

  std::string_view payload_;
  std::string_view payloadName_;
  PayloadReader reader_;
  std::string error_;
};

}  // namespace formats
