#include "LostDisplay.h"

#include "Effects.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>

namespace korvo::application {
namespace {

// As X11 declares them: this program knows the display through AppKit alone.
using Handler = int (*)(void *display);
using SetHandler = Handler (*)(Handler);

// The handler may not return. Nothing is left to be tidied up: a library is whole at any moment,
// and the bus gives the name away.
int endProcess(void *) {
  complain("the display is gone");
  _exit(EXIT_FAILURE);
}

}  // namespace

void tellLossOfDisplay() {
  // Only where AppKit has loaded it.
  void *library = dlopen("libX11.so.6", RTLD_LAZY | RTLD_NOLOAD);
  if (library == nullptr) {
    return;
  }
  const auto setHandler = reinterpret_cast<SetHandler>(dlsym(library, "XSetIOErrorHandler"));
  if (setHandler != nullptr) {
    setHandler(endProcess);
  }
}

}  // namespace korvo::application
