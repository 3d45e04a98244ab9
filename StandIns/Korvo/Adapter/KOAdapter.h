// The service object that the host hands to its word-processor plug-ins.
#pragma once

#import "KOProblemReporter.h"
#include "RememberedMatches.h"
#include "Suggestions.h"

#import <HostContract/HostContract.h>

@class KOLibrary;
@class KOReference;

namespace korvo::adapter {
class StyleShelf;
}

// What the adapter needs of the application around it.
@protocol KOUserInterface <NSObject>
// The library that the user works with; nil when there is none.
- (KOLibrary *)currentLibrary;
// NSArray of KOReference, in the order shown.
- (NSArray *)selectedReferences;
- (void)displayEditorForReference:(KOReference *)reference;
- (void)showNoticeWithHeader:(NSString *)header summary:(NSAttributedString *)summary;
@end

@interface KOAdapter : NSObject <KorvoWordProcessorIntegrationAdapter, KOProblemReporter> {
  id<KOUserInterface> interface_;      // not retained: it owns the adapter
  korvo::adapter::StyleShelf *shelf_;  // likewise
  NSMutableSet *reportedProblems_;
  korvo::adapter::RememberedMatches matches_;
  korvo::adapter::Suggestions suggestions_;
}
- (id)initWithInterface:(id<KOUserInterface>)interface styles:(korvo::adapter::StyleShelf &)shelf;

// Shows the user what went wrong; the same problem only once, so that a damaged library does
// not make a notice for every citation.
- (void)reportProblem:(NSString *)problem;
@end
