#import "PlugInLoader.h"

#include <Formats/EventTable.h>
#include <Platform/AppleEventsProcess.h>
#import <StandIns/Korvo/Adapter/StringConversion.h>

// How a plug-in hands out the one instance that it keeps for itself.
@interface NSObject (KorvoPlugInInstance)
+ (id)defaultInstance;
@end

namespace korvo::application {

std::expected<void, std::string> startPlugIn(const std::filesystem::path &path,
                                             id<KorvoWordProcessorIntegrationAdapter> adapter) {
  const auto failure = [&](const char *reason) {
    return std::unexpected("plug-in " + path.string() + ": " + reason);
  };
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(path, error);
  NSBundle *bundle =
      error ? nil : [NSBundle bundleWithPath:adapter::stringFromUTF8(absolute.string())];
  if (bundle == nil) {
    return failure("there is no such bundle");
  }
  if (![bundle load]) {
    return failure("it cannot be loaded");
  }
  // The plug-in claims its events with the first message to its class.
  Class plugIn = [bundle principalClass];
  if (plugIn == Nil) {
    return failure("it has no principal class");
  }
  if (![plugIn conformsToProtocol:@protocol(KorvoWordProcessorIntegrationPlugin)]) {
    return failure("its principal class is no word-processor plug-in");
  }
  // The plug-in has just tried to greet it, and its own line about that looks like a failure.
  if (!platform::ProcessWatch(formats::mellelSignature, [](bool) {}).isRunning()) {
    NSLog(@"Mellel is not running yet: that is all that -600 means, and nothing to worry about");
  }
  NSLog(@"plug-in %@ (%@), version %lld%@", [plugIn registrationName], [plugIn protocolType],
        static_cast<long long>([plugIn version]),
        [plugIn isEnabledByDefault] ? @"" : @", started although it is not enabled by default");
  if (![plugIn isAvailable]) {
    return failure("it is not available on this machine");
  }
  [plugIn setAdapter:adapter];
  id instance = [plugIn respondsToSelector:@selector(defaultInstance)]
                    ? [plugIn defaultInstance]
                    : [[plugIn alloc] init];  // kept for the life of the process
  [instance start];
  return {};
}

}  // namespace korvo::application
