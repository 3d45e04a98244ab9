// An assertion handler that notes what is reported, and returns or raises as told.
#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <vector>

namespace plugin_test {

struct ReportedError {
  std::string method;
  id object = nil;
  std::string file;
  long lineNumber = 0;
  std::string description;
};

}  // namespace plugin_test

@interface RecordingAssertionHandler : NSAssertionHandler {
 @public
  BOOL raises;
  std::vector<plugin_test::ReportedError> errors;
}
@end
