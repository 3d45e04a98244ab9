#import "Suggestions.h"

#import "KOReference.h"
#import "NoticeText.h"
#import "StringConversion.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace korvo::adapter {
namespace {

constexpr std::size_t mostTexts = 64;
constexpr std::size_t longestText = 200;

void append(NSMutableAttributedString *text, NSString *piece, NSDictionary *look) {
  const auto attributed =
      Owned<NSAttributedString *>::taking([[NSAttributedString alloc] initWithString:piece
                                                                          attributes:look]);
  [text appendAttributedString:attributed.get()];
}

}  // namespace

void Suggestions::noteUnmatched(NSString *text, KOLibrary *library) {
  const std::string tag = utf8(text);
  // What has markers was looked up as a whole, before it was taken apart.
  if (tag.empty() || tag.size() > longestText || tag.find_first_of("#@\\") != std::string::npos ||
      std::ranges::find(unmatched_, tag) != unmatched_.end()) {
    return;
  }
  unmatched_.push_back(tag);
  if (unmatched_.size() > mostTexts) {
    unmatched_.pop_front();
  }
  library_ = Owned<KOLibrary *>::retaining(library);
}

NSAttributedString *Suggestions::addedTo(NSAttributedString *summary) {
  NSMutableAttributedString *text = [[summary mutableCopy] autorelease];
  const std::string shown = utf8([summary string]);
  bool hasTitle = false;
  for (const std::string &tag : std::exchange(unmatched_, {})) {
    if (shown.find(" " + tag + ":") == std::string::npos) {
      continue;
    }
    const auto rows = [library_.get() library].similar(tag);
    if (!rows || rows->empty()) {
      continue;
    }
    if (!std::exchange(hasTitle, true)) {
      append(text, @"\n\nPerhaps another is meant:\n", subtitleTextAttributes());
    }
    for (const library::ReferenceRow row : *rows) {
      append(text, [NSString stringWithFormat:@"%@: ", stringFromUTF8(tag)], bodyTextAttributes());
      [text appendAttributedString:summaryWithTitle([library_.get() referenceAtRow:row])];
      append(text, @"\n", bodyTextAttributes());
    }
  }
  return text;
}

}  // namespace korvo::adapter
