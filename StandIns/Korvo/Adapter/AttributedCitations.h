// What a citation style printed, as Cocoa's attributed text.
//
// Runs become fonts, underlines and superscripts; an entry of the bibliography becomes a
// paragraph with the indents that the style asks for. Small capitals stay ordinary letters:
// the text system has no attribute for them.
#pragma once

#include <StandIns/Korvo/Engine/FormattedText.h>

#import <Cocoa/Cocoa.h>

namespace korvo::adapter {

// Autoreleased, both.
NSAttributedString *attributedText(const engine::FormattedText &text);
NSAttributedString *attributedBibliography(const engine::Bibliography &bibliography);
// In the plain body font.
NSAttributedString *plainAttributedText(NSString *text);

}  // namespace korvo::adapter
