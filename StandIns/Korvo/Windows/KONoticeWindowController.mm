#import "KONoticeWindowController.h"

#import "Controls.h"

#import <StandIns/Korvo/Adapter/Owned.h>

namespace {

constexpr NSUInteger noticesKept = 50;

void append(NSMutableAttributedString *text, NSString *piece, NSFont *font) {
  NSDictionary *look = [NSDictionary
      dictionaryWithObjectsAndKeys:font, NSFontAttributeName, [NSColor controlTextColor],
                                   NSForegroundColorAttributeName, nil];
  const auto attributed = korvo::adapter::Owned<NSAttributedString *>::taking(
      [[NSAttributedString alloc] initWithString:piece attributes:look]);
  [text appendAttributedString:attributed.get()];
}

NSString *timeOfDay() {
  return [[NSDate date] descriptionWithCalendarFormat:@"%H:%M:%S" timeZone:nil locale:nil];
}

// The summaries of plug-ins begin and end with line feeds of their own.
NSAttributedString *withoutLineFeedsAround(NSAttributedString *text) {
  NSCharacterSet *lineFeeds = [NSCharacterSet whitespaceAndNewlineCharacterSet];
  NSString *characters = [text string];
  NSUInteger begin = 0;
  NSUInteger end = [characters length];
  while (begin < end && [lineFeeds characterIsMember:[characters characterAtIndex:begin]]) {
    ++begin;
  }
  while (end > begin && [lineFeeds characterIsMember:[characters characterAtIndex:end - 1]]) {
    --end;
  }
  return [text attributedSubstringFromRange:NSMakeRange(begin, end - begin)];
}

NSAttributedString *composeNotice(NSString *header, NSAttributedString *summary) {
  NSMutableAttributedString *notice = [[[NSMutableAttributedString alloc] init] autorelease];
  append(notice, header, [NSFont boldSystemFontOfSize:14]);
  append(notice, [NSString stringWithFormat:@"   %@\n\n", timeOfDay()],
         [NSFont systemFontOfSize:11]);
  [notice appendAttributedString:withoutLineFeedsAround(summary)];
  append(notice, @"\n\n\n", [NSFont systemFontOfSize:12]);
  return notice;
}

}  // namespace

@implementation KONoticeWindowController

- (id)init {
  using namespace korvo::windows;
  const NSSize size = NSMakeSize(560, 380);
  NSWindow *window = makeWindow(@"Notices", size, NSMakeSize(320, 200));
  self = [super initWithWindow:window];
  if (self != nil) {
    notices_ = [[NSMutableArray alloc] init];
    NSView *content = [window contentView];
    const CGFloat bottom = margin + controlHeight + gap;
    NSScrollView *area = makeTextArea(
        NSMakeRect(margin, bottom, size.width - 2 * margin, size.height - margin - bottom), false);
    text_ = textOf(area);
    [text_ setTextContainerInset:NSMakeSize(6, 6)];
    add(content, area, NSViewWidthSizable | NSViewHeightSizable);

    const CGFloat buttonWidth = 96;
    CGFloat x = size.width - margin - buttonWidth;
    add(content,
        makeButton(@"Copy All", NSMakeRect(x, margin, buttonWidth, controlHeight), self,
                   @selector(copyAll:)),
        NSViewMinXMargin | NSViewMaxYMargin);
    x -= gap + buttonWidth;
    add(content,
        makeButton(@"Clear", NSMakeRect(x, margin, buttonWidth, controlHeight), self,
                   @selector(clear:)),
        NSViewMinXMargin | NSViewMaxYMargin);
  }
  return self;
}

- (void)dealloc {
  [notices_ release];
  [super dealloc];
}

- (void)showAllNotices {
  NSTextStorage *storage = [text_ textStorage];
  const auto all = korvo::adapter::Owned<NSMutableAttributedString *>::taking(
      [[NSMutableAttributedString alloc] init]);
  for (NSUInteger index = 0; index < [notices_ count]; ++index) {
    [all.get() appendAttributedString:[notices_ objectAtIndex:index]];
  }
  [storage setAttributedString:all.get()];
}

- (void)showNoticeWithHeader:(NSString *)header summary:(NSAttributedString *)summary {
  [notices_ addObject:composeNotice(header, summary)];
  if ([notices_ count] > noticesKept) {
    [notices_ removeObjectAtIndex:0];
  }
  [self showAllNotices];
  [[self window] orderFront:nil];
  // The newest notice from its beginning, not the end of a long one.
  const NSUInteger length = [[text_ string] length];
  const NSUInteger newest = [(NSAttributedString *)[notices_ lastObject] length];
  [text_ scrollRangeToVisible:NSMakeRange(length, 0)];
  [text_ scrollRangeToVisible:NSMakeRange(length - newest, 0)];
}

- (void)copyAll:(id)sender {
  (void)sender;
  NSPasteboard *pasteboard = [NSPasteboard generalPasteboard];
  [pasteboard declareTypes:[NSArray arrayWithObject:NSStringPboardType] owner:nil];
  [pasteboard setString:[text_ string] forType:NSStringPboardType];
}

- (void)clear:(id)sender {
  (void)sender;
  [notices_ removeAllObjects];
  [self showAllNotices];
}

- (NSString *)shownText {
  return [text_ string];
}

@end
