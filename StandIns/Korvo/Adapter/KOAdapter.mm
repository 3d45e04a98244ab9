#import "KOAdapter.h"

#import "CitationGroupString.h"
#import "KOCitation.h"
#import "KOCitationGroup.h"
#import "KOConvertedText.h"
#import "KOLibrary.h"
#import "KOReference.h"
#import "NoticeText.h"
#import "PidginRTFText.h"
#import "StringConversion.h"
#import "StyleShelf.h"

namespace {

KOReference *ownReference(id reference) {
  return [reference isKindOfClass:[KOReference class]] ? reference : nil;
}

}  // namespace

@implementation KOAdapter

- (id)initWithInterface:(id<KOUserInterface>)interface styles:(korvo::adapter::StyleShelf &)shelf {
  self = [super init];
  if (self != nil) {
    interface_ = interface;
    shelf_ = &shelf;
    reportedProblems_ = [[NSMutableSet alloc] init];
  }
  return self;
}

- (void)dealloc {
  [reportedProblems_ release];
  [super dealloc];
}

- (void)reportProblem:(NSString *)problem {
  NSLog(@"%@", problem);
  if ([reportedProblems_ containsObject:problem]) {
    return;
  }
  [reportedProblems_ addObject:problem];
  NSAttributedString *summary = [[[NSAttributedString alloc]
      initWithString:problem
          attributes:korvo::adapter::bodyTextAttributes()] autorelease];
  [interface_ showNoticeWithHeader:@"Something went wrong" summary:summary];
}

- (NSArray *)selectedReferences {
  return [interface_ selectedReferences];
}

- (NSString *)inTextCitationTagForReference:(id<KorvoReference>)reference {
  KOReference *own = ownReference(reference);
  if (own == nil) {
    return nil;
  }
  const auto tag = [own citationTag];
  if (!tag) {
    [self reportProblem:korvo::adapter::stringFromUTF8(tag.error())];
  }
  return tag && *tag ? korvo::adapter::stringFromUTF8(**tag) : nil;
}

- (void)displayEditorForReference:(id<KorvoReference>)reference {
  if (KOReference *own = ownReference(reference)) {
    [interface_ displayEditorForReference:own];
  }
}

- (NSAttributedString *)summaryWithTitleForReference:(id<KorvoReference>)reference {
  return korvo::adapter::summaryWithTitle(ownReference(reference));
}

- (id<KorvoLibrary>)currentLibrary {
  return [interface_ currentLibrary];
}

- (NSSet *)referencesMatchingTag:(NSString *)tag inLibrary:(id<KorvoLibrary>)library {
  static const Class libraryClass = [KOLibrary class];
  if (![(id)library isKindOfClass:libraryClass]) {
    return [NSSet set];
  }
  const auto found = matches_.matching(tag, (KOLibrary *)library);
  if (!found) {
    [self reportProblem:korvo::adapter::stringFromUTF8(found.error())];
    return [NSSet set];
  }
  if ([*found count] == 0) {
    suggestions_.noteUnmatched(tag, (KOLibrary *)library);
  }
  return *found;
}

- (id<KorvoCitationGroup>)createCitationGroup {
  static const Class groupClass = [KOCitationGroup class];
  return [[[groupClass alloc] init] autorelease];
}

- (id<KorvoCitation>)createCitation {
  static const Class citationClass = [KOCitation class];
  return [[[citationClass alloc] init] autorelease];
}

- (NSArray *)citationStringArrayForCitationGroupString:(NSString *)groupString {
  const std::u16string text = korvo::adapter::utf16(groupString);
  const std::vector<std::u16string_view> pieces = korvo::adapter::citationStrings(text);
  static const Class arrayClass = [NSMutableArray class];
  NSMutableArray *strings = [arrayClass arrayWithCapacity:pieces.size()];
  for (const std::u16string_view piece : pieces) {
    [strings addObject:korvo::adapter::stringFromUTF16(piece)];
  }
  return strings;
}

- (NSArray *)citationArrayForCitationGroupArray:(NSArray *)groups {
  NSMutableArray *citations = [NSMutableArray array];
  for (NSUInteger index = 0; index < [groups count]; ++index) {
    [citations addObjectsFromArray:[(KOCitationGroup *)[groups objectAtIndex:index] citations]];
  }
  return citations;
}

- (NSString *)pidginRTFForAttributedString:(NSAttributedString *)text {
  static const Class formattedClass = [KOConvertedText class];
  return [text isKindOfClass:formattedClass] ? [(KOConvertedText *)text pidginRTF]
                                             : korvo::adapter::pidginRTF(text);
}

- (NSDictionary *)bodyTextAttributes {
  return korvo::adapter::bodyTextAttributes();
}

- (NSDictionary *)subtitleTextAttributes {
  return korvo::adapter::subtitleTextAttributes();
}

- (NSDictionary *)notesTextAttributes {
  return korvo::adapter::notesTextAttributes();
}

- (void)postNoticeWithHeader:(NSString *)header attributedSummary:(NSAttributedString *)summary {
  [interface_ showNoticeWithHeader:header summary:suggestions_.addedTo(summary)];
}

- (id<KorvoBibStyle>)bibStyleNamed:(NSString *)name {
  return shelf_->style(korvo::adapter::utf8(name));
}

- (id<KorvoBibStyle>)defaultStyle {
  return shelf_->style(shelf_->defaultStyle());
}

- (NSArray *)favoriteBibStyleNames {
  NSMutableArray *names = [NSMutableArray array];
  for (const std::string &title : shelf_->favorites()) {
    [names addObject:korvo::adapter::stringFromUTF8(title)];
  }
  return names;
}

@end
