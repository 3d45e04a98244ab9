// The order in which a host takes up its plug-in.
#pragma once

#import <Foundation/Foundation.h>

// Loads the bundle, prints what the plug-in says of itself, hands it an adapter and starts it.
// False, with one line on standard error, if the bundle is none or no events can be received.
bool startHosting(NSString *bundlePath);
