#include "LogCapture.h"

#include "Text.h"

#import <Foundation/Foundation.h>

namespace plugin_test {
namespace {

std::vector<std::string> captured;
NSLog_printf_handler *original = nullptr;

void capture(NSString *message) {
  std::string line = str(message);
  // "2026-11-21 04:00:00.000 program[1:1] text\n"
  const std::size_t start = line.find("] ");
  line = start == std::string::npos ? line : line.substr(start + 2);
  if (!line.empty() && line.back() == '\n') {
    line.pop_back();
  }
  captured.push_back(line);
}

}  // namespace

LogCapture::LogCapture() {
  captured = std::vector<std::string>();
  original = _NSLog_printf_handler;
  _NSLog_printf_handler = capture;
}

LogCapture::~LogCapture() { _NSLog_printf_handler = original; }

const std::vector<std::string> &LogCapture::lines() const { return captured; }

}  // namespace plugin_test
