// Where the log of this process goes.
#pragma once

namespace korvo::application {

// Has every line that NSLog is given, by whomever in this process, written to standard error as one
// line that commands no terminal: what a host logs names references, files and texts of others.
void sendLogToTerminal();

}  // namespace korvo::application
