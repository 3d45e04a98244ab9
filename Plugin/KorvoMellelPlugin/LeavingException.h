// The one place that catches C++ exceptions by type. It is compiled as plain C++: GCC's
// Objective-C++ mishandles typed catch clauses as it does typed @catch.
#pragma once

using Work = void (*)(void *context);

// Hears what an exception says of itself: text that is gone after the call. It must not throw.
using Listener = void (*)(const char *what, void *context);

// Calls `work(context)`. Whether a C++ exception left it; the listener has then heard of it.
bool isLeftByCPPException(Work work, void *context, Listener listener, void *listenersContext);
