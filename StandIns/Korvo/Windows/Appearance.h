// How the windows look, as far as the user of the desktop has not said otherwise.
#pragma once

namespace korvo::windows {

// Before the application is connected to its display.
void registerAppearance();

}  // namespace korvo::windows
