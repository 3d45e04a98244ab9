// The least that the contract allows: the messages that a scan sends to the host and to what the
// host returns, one after the other. Nothing is taken apart, nothing converted, no answer made. The
// strings are there in advance, which no plug-in can have; or each is made when it is needed, and
// nothing else.
#pragma once

#import "PreparedHost.h"

#include <cstddef>
#include <string>
#include <vector>

namespace benchmarks {

// A text and its string, which is never freed; none where a citation has no such part.
struct PreparedString {
  std::string bytes;
  NSString *string = nil;
};

// What a scan sends of one citation.
struct PreparedCitation {
  explicit PreparedCitation(const std::string &text);

  PreparedString group;
  PreparedString searchText;
  PreparedString tag;
  PreparedString pageRange;
  PreparedString prependText;
  PreparedString appendText;
  bool usesYearOnly = false;  // the only flag in these documents
};

enum class Strings { inAdvance, madeWhenNeeded };

class BareLoop {
 public:
  BareLoop(PreparedHost *host, Strings strings, std::size_t citationCount);

  // Puts the next document into the host.
  void prepareNext();

  void finalScan();
  void preliminaryScan();

 private:
  const PreparedCitation &citationOfDocument(std::size_t index) const;
  NSString *stringOf(const PreparedString &prepared) const;
  id<KorvoCitationGroup> group(const PreparedCitation &prepared, id<KorvoLibrary> library) const;
  id<KorvoCitation> citation(const PreparedCitation &prepared, id<KorvoLibrary> library) const;

  PreparedHost *host_;
  Strings strings_;
  std::size_t citationCount_;
  std::size_t first_ = 0;
};

}  // namespace benchmarks
