// A process that takes part in Apple Events without a message bus: linked into a test program, this
// takes the place of the functions of <Platform/AppleEventsProcess.h>, and of the wait for late
// events (<StandIns/Mellel/Conversation/LateEvents.h>), which would be most of a run's time.
// Nothing arrives but what the test delivers; the test also says when somebody brings the process
// to the front, and when another one ends.
#pragma once

#include <ApplicationServices/MacTypes.h>

namespace mellel_test {

// Whether the code under test receives events at this moment.
bool isReceiving();

// As if another process wanted this one in front.
void activateThisProcess();

// As if every watched process had ended.
void endWatchedProcesses();

}  // namespace mellel_test
