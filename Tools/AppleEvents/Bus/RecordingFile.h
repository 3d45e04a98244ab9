// A recording while it is being made: every message stands in the file at once.
#pragma once

#include <Tools/AppleEvents/Recordings/LookAlikes.h>
#include <Tools/AppleEvents/Recordings/Recording.h>
#include <Tools/AppleEvents/Recordings/RecordingText.h>

#include <cstddef>
#include <expected>
#include <memory>
#include <string>
#include <string_view>

namespace appleevents {

class RecordingFile {
 public:
  // In place of what is there. Readable by its owner alone: it holds what authors wrote.
  static std::expected<std::unique_ptr<RecordingFile>, std::string> create(const std::string &path,
                                                                           bool isAnonymous,
                                                                           bool hasTimes);
  ~RecordingFile();
  RecordingFile(const RecordingFile &) = delete;
  RecordingFile &operator=(const RecordingFile &) = delete;
  RecordingFile(RecordingFile &&) = delete;
  RecordingFile &operator=(RecordingFile &&) = delete;

  void add(RecordedMessage message);
  void finish();
  std::size_t events() const { return lines_.events(); }
  // One line; empty while everything was written.
  const std::string &error() const { return error_; }

 private:
  RecordingFile(int descriptor, std::string path, bool isAnonymous, bool hasTimes)
      : descriptor_(descriptor),
        path_(std::move(path)),
        isAnonymous_(isAnonymous),
        hasTimes_(hasTimes) {}

  void write(std::string_view text);

  int descriptor_;
  std::string path_;
  bool isAnonymous_;
  bool hasTimes_;
  LookAlikes lookAlikes_;
  RecordingLines lines_;
  std::string error_;
};

}  // namespace appleevents
