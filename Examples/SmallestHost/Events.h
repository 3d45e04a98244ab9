// How the word processor's events come to this process: the one thing that is not the same on every
// platform. EventsOnLinux.mm and EventsOnDarwin.mm define it.
#pragma once

// From now on the process is the one of the host's signature, 'KRVO', to which the word processor
// sends its events. False, with one line on standard error, if it cannot be.
bool receiveEvents();
