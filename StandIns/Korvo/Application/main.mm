#include "CommandLine.h"
#include "Effects.h"
#include "ImportCommand.h"
#include "LogOutput.h"
#include "RunCommand.h"

#include <StandIns/Terminal/Output.h>
#include <StandIns/Terminal/Version.h>

#import <Foundation/Foundation.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <vector>

namespace {

constexpr int badArgument = 2;

int carryOut(const korvo::application::Command &command, const std::filesystem::path &program) {
  if (std::holds_alternative<korvo::application::ShowHelp>(command)) {
    terminal::print(korvo::application::helpText());
    return EXIT_SUCCESS;
  }
  if (std::holds_alternative<korvo::application::ShowVersion>(command)) {
    terminal::print(terminal::versionLine("korvo"));
    return EXIT_SUCCESS;
  }
  if (const auto *import = std::get_if<korvo::application::ImportFiles>(&command)) {
    return korvo::application::runImport(*import);
  }
  return korvo::application::runHost(std::get<korvo::application::RunHost>(command), program);
}

}  // namespace

int main(int argc, char **argv, char **environment) {
  // A script that stops reading must not end the host.
  std::signal(SIGPIPE, SIG_IGN);
  // A library that the limits of the user do not allow is a failed write, to be told.
  std::signal(SIGXFSZ, SIG_IGN);
  // AppKit takes words among the arguments for files to open: it gets to see none of them.
  [NSProcessInfo initializeWithArguments:argv count:1 environment:environment];
  // Before the first line of GNUstep's own.
  korvo::application::sendLogToTerminal();
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  const std::vector<std::string_view> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  const auto command = korvo::application::parseCommandLine(arguments);
  int status = badArgument;
  if (command) {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    status = carryOut(*command, program);
  } else {
    korvo::application::complain(command.error());
  }
  [pool release];
  return status;
}
