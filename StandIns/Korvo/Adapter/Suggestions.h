// What the host adds to the plug-in's notice about citations that match nothing: what may have been
// meant.
#pragma once

#import "KOLibrary.h"
#import "Owned.h"

#import <Foundation/Foundation.h>

#include <deque>
#include <string>

namespace korvo::adapter {

class Suggestions {
 public:
  // A text that matched nothing in the library.
  void noteUnmatched(NSString *text, KOLibrary *library);

  // The summary with a suggestion for each text in it that matched nothing; then all are forgotten.
  // Autoreleased.
  NSAttributedString *addedTo(NSAttributedString *summary);

 private:
  // The last ones, UTF-8. A notice speaks of a few dozen at most.
  std::deque<std::string> unmatched_;
  Owned<KOLibrary *> library_;
};

}  // namespace korvo::adapter
