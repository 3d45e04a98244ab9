// A small library, a user interface that writes down what it is asked, and the adapter
// between them.
#pragma once

#import <StandIns/Korvo/Adapter/KOAdapter.h>
#import <StandIns/Korvo/Adapter/KOCitation.h>
#import <StandIns/Korvo/Adapter/KOCitationGroup.h>
#import <StandIns/Korvo/Adapter/KOLibrary.h>
#import <StandIns/Korvo/Adapter/KOReference.h>
#import <StandIns/Korvo/Adapter/Owned.h>
#import <StandIns/Korvo/Adapter/StyleShelf.h>

#import <Cocoa/Cocoa.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

@interface RecordingInterface : NSObject <KOUserInterface> {
 @public
  KOLibrary *library_;
  NSArray *selection_;
  std::vector<std::string> edited_;   // UUIDs
  std::vector<std::string> notices_;  // "header: text"
}
@end

namespace korvo_test {

// SMI2001 (book by Smith), JON1999 (article by Jones and Lee, title with markup), a book by
// van Gogh of 1888 without an identifier, two books of Doe 2005 without identifiers, and a
// reference with nothing in it.
korvo::adapter::Owned<KOLibrary *> smallLibrary();

class AdapterFixture : public testing::Test {
 protected:
  AdapterFixture();
  ~AdapterFixture() override;

  // The reference of the small library that the tag names; nil when it is not exactly one.
  KOReference *reference(NSString *tag);
  KOCitation *citation(NSString *tag, NSString *searchString = nil);
  KOCitationGroup *group(std::initializer_list<KOCitation *> citations);
  // All citations of the groups, as the plug-in collects them.
  NSArray *citationsOf(std::initializer_list<KOCitationGroup *> groups);

  NSAutoreleasePool *pool_;
  korvo::adapter::Owned<KOLibrary *> library_;
  korvo::adapter::Owned<RecordingInterface *> interface_;
  korvo::adapter::StyleShelf shelf_;
  korvo::adapter::Owned<KOAdapter *> adapter_;
};

std::string utf8(NSString *text);
// With <b>, <i>, <u>, <sup> and <sub>, as the predicates tell.
std::string markup(NSAttributedString *text);

}  // namespace korvo_test
