#import "NoticeText.h"

#import "KOReference.h"
#import "StringConversion.h"

#include <string_view>

namespace korvo::adapter {
namespace {

constexpr CGFloat textSize = 12;
constexpr CGFloat noteSize = 11;

NSDictionary *attributes(NSFont *font, NSColor *colour) {
  return [NSDictionary dictionaryWithObjectsAndKeys:font, NSFontAttributeName, colour,
                                                    NSForegroundColorAttributeName, nil];
}

void append(NSMutableAttributedString *text, const std::string &piece, NSDictionary *look) {
  NSAttributedString *attributed = [[NSAttributedString alloc] initWithString:stringFromUTF8(piece)
                                                                   attributes:look];
  [text appendAttributedString:attributed];
  [attributed release];
}

}  // namespace

NSDictionary *bodyTextAttributes() {
  return attributes([NSFont systemFontOfSize:textSize], [NSColor controlTextColor]);
}

NSDictionary *subtitleTextAttributes() {
  return attributes([NSFont boldSystemFontOfSize:textSize], [NSColor controlTextColor]);
}

NSDictionary *notesTextAttributes() {
  return attributes([NSFont systemFontOfSize:noteSize], [NSColor colorWithCalibratedWhite:0.3
                                                                                    alpha:1]);
}

NSAttributedString *summaryWithTitle(KOReference *reference) {
  NSMutableAttributedString *text = [[[NSMutableAttributedString alloc] init] autorelease];
  if (reference == nil) {
    return text;  // asked, nil would answer with garbage
  }
  const auto read = [reference summary];
  if (!read || !*read) {
    return text;
  }
  const library::ReferenceSummary &summary = **read;
  NSDictionary *body = bodyTextAttributes();
  NSDictionary *italic =
      attributes([[NSFontManager sharedFontManager] convertFont:[NSFont systemFontOfSize:textSize]
                                                    toHaveTrait:NSItalicFontMask],
                 [NSColor controlTextColor]);
  if (!summary.authors.empty()) {
    append(text, summary.authors + " ", body);
  }
  if (!summary.year.empty()) {
    append(text, "(" + summary.year + "). ", body);
  }
  if (!summary.title.empty()) {
    const bool endsItself = std::string_view("?!.").contains(summary.title.back());
    append(text, summary.title + (endsItself ? " " : ". "), italic);
  }
  if (!summary.identifier.empty()) {
    append(text, "[" + summary.identifier + "]", body);
  }
  return text;
}

}  // namespace korvo::adapter
