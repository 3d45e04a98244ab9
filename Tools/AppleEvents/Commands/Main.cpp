// The process `appleevents`.
#include "Commands.h"

#include <csignal>

int main(int argc, char *argv[]) {
  // A file that the limits of the user do not allow is a failed write, to be told.
  std::signal(SIGXFSZ, SIG_IGN);
  return appleevents::run(argc, argv);
}
