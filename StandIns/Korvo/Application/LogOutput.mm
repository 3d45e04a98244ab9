#include "LogOutput.h"

#import <StandIns/Korvo/Adapter/StringConversion.h>
#include <StandIns/Terminal/Output.h>

#import <Foundation/Foundation.h>

#include <string>

namespace korvo::application {

namespace {

void writeLogLine(NSString *message) {
  std::string line = adapter::utf8(message);
  if (line.ends_with('\n')) {
    line.pop_back();
  }
  terminal::printError(terminal::TerminalText::inOneLine(line) + "\n");
}

}  // namespace

void sendLogToTerminal() { _NSLog_printf_handler = writeLogLine; }

}  // namespace korvo::application
