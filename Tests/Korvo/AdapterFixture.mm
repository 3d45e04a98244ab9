#import "AdapterFixture.h"

#import <HostContract/HostContract.h>
#import <StandIns/Korvo/Adapter/StringConversion.h>

@implementation RecordingInterface

- (KOLibrary *)currentLibrary {
  return library_;
}

- (NSArray *)selectedReferences {
  return selection_;
}

- (void)displayEditorForReference:(KOReference *)reference {
  edited_.push_back(korvo::adapter::utf8([reference UUID]));
}

- (void)showNoticeWithHeader:(NSString *)header summary:(NSAttributedString *)summary {
  notices_.push_back(korvo::adapter::utf8(header) + ": " + korvo::adapter::utf8([summary string]));
}

@end

namespace korvo_test {

using korvo::adapter::Owned;

Owned<KOLibrary *> smallLibrary() {
  const korvo::library::NewReference references[] = {
      {.identifier = "SMI2001",
       .cslJson =
           R"({"type":"book","title":"On Heat","author":[{"family":"Smith","given":"John"}],)"
           R"("publisher":"Press","issued":{"date-parts":[[2001]]}})"},
      {.identifier = "JON1999",
       .cslJson = R"({"type":"article-journal","title":"Cold","container-title":"Annals",)"
                  R"("volume":"3","page":"1-9",)"
                  R"("author":[{"family":"Jones","given":"Ann"},{"family":"Lee","given":"Bo"}],)"
                  R"("issued":{"date-parts":[[1999]]}})"},
      {.identifier = "",
       .cslJson =
           R"({"type":"book","title":"Letters","author":[{"family":"Gogh","given":"Vincent",)"
           R"("non-dropping-particle":"van"}],"issued":{"date-parts":[[1888]]}})"},
      {.identifier = "",
       .cslJson = R"({"type":"book","title":"One","author":[{"family":"Doe"}],)"
                  R"("issued":{"date-parts":[[2005]]}})"},
      {.identifier = "",
       .cslJson = R"({"type":"book","title":"Two","author":[{"family":"Doe"}],)"
                  R"("issued":{"date-parts":[[2005]]}})"},
      {.identifier = "", .cslJson = "{}"},
  };
  auto made = korvo::library::Library::temporary("small.bib");
  EXPECT_TRUE(made);
  EXPECT_TRUE(made->add(references));
  return Owned<KOLibrary *>::taking([[KOLibrary alloc] initWithLibrary:*std::move(made)]);
}

AdapterFixture::AdapterFixture()
    : pool_([[NSAutoreleasePool alloc] init]),
      library_(smallLibrary()),
      interface_(Owned<RecordingInterface *>::taking([[RecordingInterface alloc] init])),
      shelf_(korvo::engine::StyleCatalog::installed()),
      adapter_(Owned<KOAdapter *>::taking([[KOAdapter alloc] initWithInterface:interface_.get()
                                                                        styles:shelf_])) {
  interface_.get()->library_ = library_.get();
  shelf_.setReporter(adapter_.get());
}

AdapterFixture::~AdapterFixture() { [pool_ release]; }

KOReference *AdapterFixture::reference(NSString *tag) {
  NSSet *found = [adapter_.get() referencesMatchingTag:tag inLibrary:library_.get()];
  EXPECT_EQ([found count], 1U) << utf8(tag);
  return [found count] == 1 ? [found anyObject] : nil;
}

KOCitation *AdapterFixture::citation(NSString *tag, NSString *searchString) {
  KOCitation *made = (KOCitation *)[adapter_.get() createCitation];
  [made setSearchString:searchString != nil ? searchString : tag];
  NSSet *found = [adapter_.get() referencesMatchingTag:tag inLibrary:library_.get()];
  if ([found count] == 1) {
    [made setReference:[found anyObject]];
  }
  return made;
}

KOCitationGroup *AdapterFixture::group(std::initializer_list<KOCitation *> citations) {
  KOCitationGroup *made = (KOCitationGroup *)[adapter_.get() createCitationGroup];
  for (KOCitation *member : citations) {
    [made addCitation:member];
  }
  return made;
}

NSArray *AdapterFixture::citationsOf(std::initializer_list<KOCitationGroup *> groups) {
  NSMutableArray *array = [NSMutableArray array];
  for (KOCitationGroup *member : groups) {
    [array addObject:member];
  }
  return [adapter_.get() citationArrayForCitationGroupArray:array];
}

std::string utf8(NSString *text) { return korvo::adapter::utf8(text); }

std::string markup(NSAttributedString *text) {
  std::string result;
  NSRange run = NSMakeRange(0, 0);
  while (NSMaxRange(run) < [text length]) {
    const NSUInteger start = NSMaxRange(run);
    (void)[text attributesAtIndex:start effectiveRange:&run];
    std::string piece =
        utf8([[text string] substringWithRange:NSMakeRange(start, NSMaxRange(run) - start)]);
    const auto enclose = [&](BOOL carries, const std::string &name) {
      if (carries) {
        piece = "<" + name + ">" + piece + "</" + name + ">";
      }
    };
    enclose([text isSubscriptAtIndex:start], "sub");
    enclose([text isSuperscriptAtIndex:start], "sup");
    enclose([text isBoldAtIndex:start], "b");
    enclose([text isItalicizedAtIndex:start], "i");
    enclose([text isUnderlinedAtIndex:start], "u");
    result += piece;
  }
  return result;
}

}  // namespace korvo_test
