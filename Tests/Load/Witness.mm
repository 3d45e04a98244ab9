// A plug-in for the real host that is the real plug-in and a witness beside it, which tells the
// load tests how the process is: korvo itself needs no means to be looked at.
#import "LoadEventsHandler.h"

#import <HostContract/HostContract.h>

@interface NSObject (LoadWitnessInstance)
+ (id)defaultInstance;
@end

@interface LoadWitness : NSObject
@end

@implementation LoadWitness

+ (Class)plugIn {
  return [[NSBundle bundleWithPath:[NSString stringWithUTF8String:PLUGIN_BUNDLE]] principalClass];
}

+ (id)defaultInstance {
  // Kept for the life of the process, as the plug-in is.
  [[[LoadEventsHandler alloc] init] serveAll];
  return [[self plugIn] defaultInstance];
}

// The rest of what korvo asks of a plug-in's class.

+ (BOOL)conformsToProtocol:(Protocol *)protocol {
  return [[self plugIn] conformsToProtocol:protocol];
}

+ (NSString *)registrationName {
  return [[self plugIn] registrationName];
}

+ (NSString *)protocolType {
  return [[self plugIn] protocolType];
}

+ (int64_t)version {
  return [[self plugIn] version];
}

+ (BOOL)isAvailable {
  return [[self plugIn] isAvailable];
}

+ (BOOL)isEnabledByDefault {
  return [[self plugIn] isEnabledByDefault];
}

+ (void)setAdapter:(id<KorvoWordProcessorIntegrationAdapter>)adapter {
  [[self plugIn] setAdapter:adapter];
}

@end
