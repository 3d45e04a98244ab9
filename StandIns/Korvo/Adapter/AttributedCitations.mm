#import "AttributedCitations.h"

#import "BodyFonts.h"
#import "Owned.h"
#import "StringConversion.h"

#include <algorithm>

namespace korvo::adapter {
namespace {

// In points.
constexpr CGFloat lineHeight = 14;
constexpr CGFloat hangingIndent = 36;
constexpr CGFloat widthOfCharacter = 7;
constexpr CGFloat gapAfterFirstField = 8;
constexpr CGFloat leastColumn = 24;

NSDictionary *attributesOfRun(const engine::Run &run, NSParagraphStyle *paragraph) {
  NSMutableDictionary *attributes = [NSMutableDictionary dictionary];
  [attributes setObject:bodyFont(run.bold, run.italic) forKey:NSFontAttributeName];
  if (run.underline) {
    [attributes setObject:[NSNumber numberWithInt:NSUnderlineStyleSingle]
                   forKey:NSUnderlineStyleAttributeName];
  }
  if (run.verticalPosition != engine::VerticalPosition::normal) {
    const bool raised = run.verticalPosition == engine::VerticalPosition::superscript;
    [attributes setObject:[NSNumber numberWithInt:raised ? 1 : -1]
                   forKey:NSSuperscriptAttributeName];
  }
  if (paragraph != nil) {
    [attributes setObject:paragraph forKey:NSParagraphStyleAttributeName];
  }
  return attributes;
}

void append(NSMutableAttributedString *text, NSString *string, NSDictionary *attributes) {
  const Owned<NSAttributedString *> piece =
      Owned<NSAttributedString *>::taking([[NSAttributedString alloc] initWithString:string
                                                                          attributes:attributes]);
  [text appendAttributedString:piece.get()];
}

void append(NSMutableAttributedString *text, const engine::FormattedText &formatted,
            NSParagraphStyle *paragraph) {
  for (const engine::Run &run : formatted.runs) {
    std::u16string characters = run.text;
    // A line break inside the paragraph, not the paragraph's end.
    std::ranges::replace(characters, u'\n', u'\u2028');
    append(text, stringFromUTF16(characters), attributesOfRun(run, paragraph));
  }
}

NSParagraphStyle *paragraphStyle(const engine::Bibliography &bibliography) {
  NSMutableParagraphStyle *style =
      [[[NSParagraphStyle defaultParagraphStyle] mutableCopy] autorelease];
  if (bibliography.secondFieldAlign != engine::SecondFieldAlign::none) {
    // A first field cannot hang out into the margin here; it stands at the margin instead.
    const CGFloat column = std::max(
        leastColumn, static_cast<CGFloat>(bibliography.firstFieldCharacters) * widthOfCharacter +
                         gapAfterFirstField);
    const Owned<NSTextTab *> tab =
        Owned<NSTextTab *>::taking([[NSTextTab alloc] initWithType:NSLeftTabStopType
                                                          location:column]);
    [style setHeadIndent:column];
    [style setTabStops:[NSArray arrayWithObject:tab.get()]];
  } else if (bibliography.hangingIndent) {
    [style setHeadIndent:hangingIndent];
  }
  [style setParagraphSpacing:lineHeight * bibliography.entrySpacing];
  if (bibliography.lineSpacing > 1) {
    [style setMinimumLineHeight:lineHeight * bibliography.lineSpacing];
  }
  return style;
}

}  // namespace

NSAttributedString *attributedText(const engine::FormattedText &text) {
  NSMutableAttributedString *result = [[[NSMutableAttributedString alloc] init] autorelease];
  append(result, text, nil);
  return result;
}

NSAttributedString *attributedBibliography(const engine::Bibliography &bibliography) {
  NSMutableAttributedString *result = [[[NSMutableAttributedString alloc] init] autorelease];
  NSParagraphStyle *paragraph = paragraphStyle(bibliography);
  NSDictionary *plain = attributesOfRun(engine::Run{}, paragraph);
  for (const engine::BibliographyEntry &entry : bibliography.entries) {
    if ([result length] > 0) {
      append(result, @"\n", plain);
    }
    if (entry.firstField) {
      append(result, *entry.firstField, paragraph);
      append(result, @"\t", plain);
    }
    append(result, entry.text, paragraph);
  }
  return result;
}

NSAttributedString *plainAttributedText(NSString *text) {
  return
      [[[NSAttributedString alloc] initWithString:text
                                       attributes:attributesOfRun(engine::Run{}, nil)] autorelease];
}

}  // namespace korvo::adapter
