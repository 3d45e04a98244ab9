// A host that answers as the fuzz bytes say: mostly as a host should, sometimes with nothing, with
// an exception of either language, or with an answer that no host should give.
#pragma once

#include <Fuzzing/Support/FuzzedData.h>
#import <Tests/Support/PassiveHost.h>

#include <string_view>

namespace fuzzing {

struct HostScript {
  // Where the answers come from; null for a host without fault.
  FuzzedData *data = nullptr;
  // Whether it has given an answer that it should not have given.
  bool hasMisbehaved = false;
};
HostScript &hostScript();

// Any code units, unpaired surrogates too.
NSString *stringOf(std::u16string_view units);

// What a host without fault makes of things.
inline constexpr std::string_view goodStyleName = "Good";
inline constexpr std::string_view goodBibliography = "{\\rtf1 works}";

}  // namespace fuzzing

@interface FuzzedHost : PassiveHost
// The one style that it has.
- (id<KorvoBibStyle>)style;
@end
