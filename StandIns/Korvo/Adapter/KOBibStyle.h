// A citation style that formats whole documents.
//
// What a citation looks like depends on all others of the document, so the document is
// formatted once, when the style is shown all its citations; the text of each group and the
// bibliography are then handed out. Asked without that, the style formats what it is asked
// for by itself.
#pragma once

#import "DocumentFormatter.h"
#import "KOProblemReporter.h"

#import <HostContract/HostContract.h>

#include <memory>
#include <span>
#include <string>

@class KOFormattedDocument;

@interface KOBibStyle : NSObject <KorvoBibStyle> {
  korvo::engine::Style style_;
  std::shared_ptr<korvo::adapter::DocumentFormatter> formatter_;
  id<KOProblemReporter> reporter_;
}
// The reporter (retained; may be nil) is told what kept a document from being formatted. Its
// citations are then shown as their author wrote them.
- (id)initWithStyle:(korvo::engine::Style)described
          formatter:(std::shared_ptr<korvo::adapter::DocumentFormatter>)formatter
           reporter:(id<KOProblemReporter>)reporter;
// Formats these works, CSL-JSON objects (UTF-8), for practice (see CitationProcessor::rehearse).
// False where the style cannot be used.
- (bool)rehearse:(std::span<const std::string>)items;
@end
