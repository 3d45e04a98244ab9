// A host made of objects that log every message (see CallLog.h) and answer as a script says.
#pragma once

#import <Tests/Support/PassiveHost.h>

#import <Cocoa/Cocoa.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace plugin_test {

// What the host and its styles answer, where a test wants another answer than the usual one.
// (Beside the objects, because Objective-C cannot describe a std::function as an instance
// variable.)
struct HostScript {
  // Splits a group string; else it is split at ";" without trimming.
  std::function<NSArray *(NSString *)> split;
  // Else the plain text.
  std::function<NSString *(NSAttributedString *)> pidginRTF;
  // The formatted text of a group; else "[N]" with the number of citations.
  std::function<NSAttributedString *(NSArray *)> formatGroup;
  // The bibliography; else a RecordingBibliography.
  std::function<NSAttributedString *()> formatBibliography;
};
HostScript &hostScript();

}  // namespace plugin_test

@interface RecordingReference : NSObject <KorvoReference> {
 @public
  std::string name;
}
@end

@interface RecordingLibrary : PassiveLibrary
@end

@interface RecordingCitation : NSObject <KorvoCitation> {
 @public
  id<KorvoReference> citedReference;
  // What was set, by setter without "set" ("PageRange"); booleans are "YES" and "NO".
  std::map<std::string, std::string> options;
}
@end

@interface RecordingGroup : PassiveGroup
@end

// A bibliography whose conversion to RTF is logged and gives the scripted bytes.
@interface RecordingBibliography : TextWithRTF
@end

@interface RecordingStyle : NSObject <KorvoBibStyle> {
 @public
  std::string styleName;
  BOOL superscript;
  // The RTF of the bibliography; empty with `hasNoBibliography` gives nil in its place.
  std::string bibliographyRTF;
  BOOL hasNoBibliography;
}
@end

@interface RecordingHost : NSObject <KorvoWordProcessorIntegrationAdapter> {
 @public
  // Names of the references that a text matches; several are named with blanks between.
  std::map<std::string, std::vector<std::string>> matches;
  // Selected references with their tags; "(nil)" for none, "(null)" puts NSNull in place of one.
  std::vector<std::pair<std::string, std::string>> selection;
  std::map<std::string, RecordingStyle *> styles;
  RecordingStyle *standardStyle;
  NSArray *favorites;
  RecordingLibrary *library;
  // When set, the object is not created.
  BOOL createsNoGroups;
  BOOL createsNoCitations;
  BOOL knowsNoCitationArray;
  BOOL selectionIsNil;
  // What was posted.
  std::vector<std::pair<std::string, std::string>> notices;
  NSAttributedString *lastSummary;
  // Every citation created, in order; retained.
  NSMutableArray *citations;
}
// Known by name: the same object each time.
- (RecordingReference *)referenceNamed:(const std::string &)name;
- (RecordingStyle *)addStyle:(const std::string &)name;
@end
