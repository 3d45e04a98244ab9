// The lines of a recording. Documentation/Recordings.md tells the format.
#pragma once

#include "Recording.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace appleevents {

inline constexpr int recordingVersion = 1;

// Makes the lines of a recording, one message after the other. All of them are ASCII and end with
// "\n".
class RecordingLines {
 public:
  std::string beginning(bool isAnonymous);
  std::string add(const RecordedMessage &message);
  // Without it a recording was cut short.
  std::string end() const;

  std::size_t events() const { return events_; }

 private:
  std::size_t events_ = 0;
  std::size_t messages_ = 0;
  // Of all lines but the times.
  std::uint32_t sum_ = 0;
};

// The lines of a whole recording.
std::string linesOf(const Recording &recording);

// Single lines, for the reader to compare with.
std::string headLine(const RecordedMessage &message);
std::string timeLine(std::chrono::microseconds time);
std::string parameterLine(const RecordedParameter &parameter);
std::vector<std::string> dataLines(std::string_view bytes);

// Takes nothing but what linesOf writes: each line to the letter. The error is one line.
std::expected<Recording, std::string> readRecording(std::string_view text);

}  // namespace appleevents
