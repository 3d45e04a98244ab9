// The first click after the start, which GNUstep would leave without an end.
#pragma once

namespace korvo::application {

// Once the application is connected to its display. The X back end connects to the server of
// notifications (gdnc) only in the midst of the first press of a mouse button. The run loop turns
// while it waits for the server, and hears that the button is up again before the press stands in
// the queue: who tracks the mouse then waits for an end that has been. Connected beforehand, the
// events stay in their order.
void prepareForFirstClick();

}  // namespace korvo::application
