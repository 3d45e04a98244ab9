// An object that throws when it is asked what it is: the worst thing to be thrown.
#pragma once

#import <Foundation/Foundation.h>

@interface Unspeakable : NSObject
@end
