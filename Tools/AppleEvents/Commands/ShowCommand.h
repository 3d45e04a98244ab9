// appleevents show
#pragma once

#include "Failure.h"
#include "Options.h"

#include <Tools/AppleEvents/Recordings/Recording.h>

#include <expected>
#include <string>

namespace appleevents {

// Status::differs where something in the recording breaks a rule.
std::expected<Status, Failure> runShow(const ShowOptions &options);

// "-" is standard input.
std::expected<Recording, Failure> readRecordingFile(const std::string &path);

}  // namespace appleevents
