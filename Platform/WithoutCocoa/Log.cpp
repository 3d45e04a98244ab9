#include "LogOutput.h"

#include <Platform/Log.h>

#include <errno.h>

#include <iostream>
#include <string>

namespace platform {

namespace {

void writeToStandardError(std::string_view line) {
  // In one piece, so that it stays one line beside those of other processes.
  std::cerr << program_invocation_short_name + (": " + std::string(line) + '\n') << std::flush;
}

LogWriter &logWriter() {
  static LogWriter writer = writeToStandardError;
  return writer;
}

}  // namespace

void sendLogTo(LogWriter writer) { logWriter() = writer; }

void logLine(std::string_view line) { logWriter()(line); }

}  // namespace platform
