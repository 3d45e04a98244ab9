// What a style made of a document: one object a group, shared by the citations of the group,
// and one for the whole, shared by the groups.
#pragma once

#import <Cocoa/Cocoa.h>

@class KOBibStyle;

@interface KOFormattedDocument : NSObject {
  KOBibStyle *style_;
  NSAttributedString *bibliography_;
  NSUInteger citationCount_;
}
- (id)initWithStyle:(KOBibStyle *)style
       bibliography:(NSAttributedString *)bibliography
      citationCount:(NSUInteger)count;

- (KOBibStyle *)style;
- (NSAttributedString *)bibliography;
- (NSUInteger)citationCount;
@end

@interface KOFormattedGroup : NSObject {
  KOFormattedDocument *document_;
  NSAttributedString *text_;
  NSUInteger citationCount_;
}
- (id)initWithDocument:(KOFormattedDocument *)document
                  text:(NSAttributedString *)text
         citationCount:(NSUInteger)count;

- (KOFormattedDocument *)document;
- (NSAttributedString *)text;
- (NSUInteger)citationCount;
@end
