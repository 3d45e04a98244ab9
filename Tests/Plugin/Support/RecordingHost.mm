#import "RecordingHost.h"

#include "Text.h"

#include <Tests/Support/CallLog.h>

using plugin_test::ns;
using plugin_test::str;
using test_support::logCall;

namespace plugin_test {

HostScript &hostScript() {
  static HostScript script;
  return script;
}

namespace {

// Of whatever the plug-in takes for a reference.
std::string nameOf(id reference) {
  if (reference == nil) {
    return "(nil)";
  }
  return [reference isKindOfClass:[RecordingReference class]]
             ? ((RecordingReference *)reference)->name
             : "a stranger";
}

}  // namespace
}  // namespace plugin_test

using plugin_test::hostScript;
using plugin_test::nameOf;

@implementation RecordingReference
- (NSString *)UUID {
  return ns("uuid-" + name);
}
@end

@implementation RecordingLibrary
@end

@implementation RecordingCitation

- (void)dealloc {
  [citedReference release];
  [super dealloc];
}

- (void)note:(const char *)option text:(const std::string &)value {
  options[option] = value;
  logCall(std::string("set") + option + " " + value);
}

- (id<KorvoReference>)reference {
  return citedReference;
}
- (void)setReference:(id<KorvoReference>)reference {
  [reference retain];
  [citedReference release];
  citedReference = reference;
  [self note:"Reference" text:nameOf(reference)];
}
- (void)setSearchString:(NSString *)text {
  [self note:"SearchString" text:str(text)];
}
- (void)setPageRange:(NSString *)text {
  [self note:"PageRange" text:str(text)];
}
- (void)setInTextPrependString:(NSString *)text {
  [self note:"InTextPrependString" text:str(text)];
}
- (void)setInTextAppendString:(NSString *)text {
  [self note:"InTextAppendString" text:str(text)];
}
- (void)setIncludeInBibliography:(BOOL)flag {
  [self note:"IncludeInBibliography" text:flag ? "YES" : "NO"];
}
- (void)setIncludeInBody:(BOOL)flag {
  [self note:"IncludeInBody" text:flag ? "YES" : "NO"];
}
- (void)setStripEnclosure:(BOOL)flag {
  [self note:"StripEnclosure" text:flag ? "YES" : "NO"];
}
- (void)setSuppressSuperscript:(BOOL)flag {
  [self note:"SuppressSuperscript" text:flag ? "YES" : "NO"];
}
- (void)setUseYearOnly:(BOOL)flag {
  [self note:"UseYearOnly" text:flag ? "YES" : "NO"];
}
@end

@implementation RecordingGroup
- (void)addCitation:(id<KorvoCitation>)citation {
  logCall("addCitation");
  [super addCitation:citation];
}
@end

@implementation RecordingBibliography
- (NSData *)RTFFromRange:(NSRange)range documentAttributes:(NSDictionary *)attributes {
  logCall("RTFFromRange " + std::to_string(range.location) + " " + std::to_string(range.length) +
          " " + str([[attributes objectForKey:@"DocumentType"] description]) + ", margin " +
          str([attributes objectForKey:@"LeftMargin"]));
  return rtf;
}
@end

@implementation RecordingStyle
- (NSString *)name {
  return ns(styleName);
}
- (BOOL)useSuperscriptInInTextCitations {
  return superscript;
}
- (void)setPropertiesInCitationArray:(NSArray *)citationArray {
  logCall("setPropertiesInCitationArray " +
          (citationArray == nil ? "(nil)" : std::to_string([citationArray count])));
}
- (NSAttributedString *)attributedBibliographyStringForCitationArray:(NSArray *)citationArray
                                                          attributes:
                                                              (NSMutableDictionary *)attributes {
  const bool isMutable = [attributes isKindOfClass:[NSMutableDictionary class]];
  logCall("bibliography of " + std::to_string([citationArray count]) + ", attributes " +
          std::to_string([attributes count]) + (isMutable ? " mutable" : " fixed"));
  if (isMutable) {
    [attributes setObject:@"of the style" forKey:@"LeftMargin"];
  }
  if (hostScript().formatBibliography) {
    return hostScript().formatBibliography();
  }
  if (hasNoBibliography) {
    return nil;
  }
  NSData *rtf = [NSData dataWithBytes:bibliographyRTF.data() length:bibliographyRTF.size()];
  return [[[RecordingBibliography alloc] initWithText:@"works" rtf:rtf] autorelease];
}
- (NSAttributedString *)attributedGroupStringForCitationArray:(NSArray *)citationArray {
  logCall("format " + std::to_string([citationArray count]));
  if (hostScript().formatGroup) {
    return hostScript().formatGroup(citationArray);
  }
  NSString *text = [NSString stringWithFormat:@"[%d]", static_cast<int>([citationArray count])];
  return [[[NSAttributedString alloc] initWithString:text] autorelease];
}
@end

@implementation RecordingHost

- (id)init {
  self = [super init];
  library = [[RecordingLibrary alloc] init];
  citations = [[NSMutableArray alloc] init];
  return self;
}

- (void)dealloc {
  for (auto &style : styles) {
    [style.second release];
  }
  [library release];
  [citations release];
  [lastSummary release];
  [super dealloc];
}

- (RecordingReference *)referenceNamed:(const std::string &)name {
  static std::map<std::string, RecordingReference *> known;
  RecordingReference *&reference = known[name];
  if (reference == nil) {
    reference = [[RecordingReference alloc] init];
    reference->name = name;
  }
  return reference;
}

- (RecordingStyle *)addStyle:(const std::string &)name {
  RecordingStyle *style = [[RecordingStyle alloc] init];
  style->styleName = name;
  styles[name] = style;
  return style;
}

- (NSArray *)selectedReferences {
  logCall("selectedReferences");
  if (selectionIsNil) {
    return nil;
  }
  NSMutableArray *references = [NSMutableArray array];
  for (const auto &[name, tag] : selection) {
    [references addObject:name == "(null)" ? (id)[NSNull null] : [self referenceNamed:name]];
  }
  return references;
}

- (NSString *)inTextCitationTagForReference:(id<KorvoReference>)reference {
  const std::string wanted = nameOf(reference);
  logCall("inTextCitationTag " + wanted);
  for (const auto &[name, tag] : selection) {
    if (name == wanted) {
      return tag == "(nil)" ? nil : ns(tag);
    }
  }
  return nil;
}

- (void)displayEditorForReference:(id<KorvoReference>)reference {
  logCall("displayEditor " + nameOf(reference));
}

- (NSAttributedString *)summaryWithTitleForReference:(id<KorvoReference>)reference {
  const std::string text = "<" + nameOf(reference) + ">";
  NSDictionary *ofHost = [NSDictionary dictionaryWithObject:@"description" forKey:@"role"];
  return [[[NSAttributedString alloc] initWithString:ns(text) attributes:ofHost] autorelease];
}

- (id<KorvoLibrary>)currentLibrary {
  logCall("currentLibrary");
  return library;
}

- (NSSet *)referencesMatchingTag:(NSString *)tag inLibrary:(id<KorvoLibrary>)wanted {
  logCall("match " + str(tag) + (wanted == library ? "" : " in another library"));
  const auto found = matches.find(str(tag));
  if (found == matches.end()) {
    return [NSSet set];
  }
  NSMutableSet *references = [NSMutableSet set];
  for (const std::string &name : found->second) {
    [references addObject:[self referenceNamed:name]];
  }
  return references;
}

- (id<KorvoCitationGroup>)createCitationGroup {
  logCall("createCitationGroup");
  return createsNoGroups ? nil : [[[RecordingGroup alloc] init] autorelease];
}

- (id<KorvoCitation>)createCitation {
  logCall("createCitation");
  if (createsNoCitations) {
    return nil;
  }
  RecordingCitation *citation = [[[RecordingCitation alloc] init] autorelease];
  [citations addObject:citation];
  return citation;
}

- (NSArray *)citationStringArrayForCitationGroupString:(NSString *)groupString {
  logCall("split " + str(groupString));
  return hostScript().split ? hostScript().split(groupString)
                            : [groupString componentsSeparatedByString:@";"];
}

- (NSArray *)citationArrayForCitationGroupArray:(NSArray *)groups {
  logCall("citationArray of " + std::to_string([groups count]));
  if (knowsNoCitationArray) {
    return nil;
  }
  NSMutableArray *all = [NSMutableArray array];
  for (NSUInteger index = 0; index < [groups count]; ++index) {
    [all addObjectsFromArray:[[groups objectAtIndex:index] citations]];
  }
  return all;
}

- (NSString *)pidginRTFForAttributedString:(NSAttributedString *)text {
  logCall("pidginRTF " + str([text string]));
  return hostScript().pidginRTF ? hostScript().pidginRTF(text) : [text string];
}

- (NSDictionary *)bodyTextAttributes {
  return [NSDictionary dictionaryWithObject:@"body" forKey:@"role"];
}
- (NSDictionary *)subtitleTextAttributes {
  return [NSDictionary dictionaryWithObject:@"subtitle" forKey:@"role"];
}
- (NSDictionary *)notesTextAttributes {
  return [NSDictionary dictionaryWithObject:@"notes" forKey:@"role"];
}

- (void)postNoticeWithHeader:(NSString *)header attributedSummary:(NSAttributedString *)summary {
  logCall("notice " + str(header));
  notices.emplace_back(str(header), str([summary string]));
  NSAttributedString *copy = [summary copy];
  [lastSummary release];
  lastSummary = copy;
}

- (id<KorvoBibStyle>)bibStyleNamed:(NSString *)name {
  logCall("bibStyleNamed " + str(name));
  const auto found = styles.find(str(name));
  return found == styles.end() ? nil : found->second;
}

- (id<KorvoBibStyle>)defaultStyle {
  logCall("defaultStyle");
  return standardStyle;
}

- (NSArray *)favoriteBibStyleNames {
  logCall("favoriteBibStyleNames");
  return favorites;
}
@end
