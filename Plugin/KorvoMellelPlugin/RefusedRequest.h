// The line in the log for a request that asks for more than a host should give.
#pragma once

#include <Formats/RequestLimits.h>

#import <Foundation/Foundation.h>

// Under the name of the handler, without its arguments.
void logRefusal(SEL handler, formats::RequestLimit limit);
