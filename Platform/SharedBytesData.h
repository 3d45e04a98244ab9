// NSData over shared bytes, without a copy.
#pragma once

#include "SharedBytes.h"

#import <Foundation/Foundation.h>

namespace platform {

// Autoreleased. The bytes live as long as the object.
NSData *dataSharing(SharedBytes bytes);

}  // namespace platform
