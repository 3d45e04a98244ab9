// The end of the display under a running host.
#pragma once

namespace korvo::application {

// From now on a display that goes away ends the process with a line and EXIT_FAILURE. Left to
// itself, the display's library writes two lines of its own, for programmers. To be called once
// the display is open.
void tellLossOfDisplay();

}  // namespace korvo::application
