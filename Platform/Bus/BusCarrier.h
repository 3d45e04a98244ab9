// Apple Events over the session bus.
#pragma once

#include <Platform/Carrier.h>

namespace platform {

// The carrier of a running program. It opens the bus with the first use.
Carrier &busCarrier();

}  // namespace platform
