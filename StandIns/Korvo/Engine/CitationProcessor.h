// Formats the citations and the bibliography of a whole document in a citation style.
//
// A style decides about a citation by what stands elsewhere in the document: two works
// of one author and year get letters, a number counts first mentions, a note says
// "ibid.". So a document is always formatted as a whole. The rules of the style language
// are carried out by citeproc-js in a JavaScript machine, which stays warm between
// documents while the engine inside it is made afresh for each; time grows in proportion
// to the citations.
#pragma once

#include "FormattedText.h"
#include "StyleCatalog.h"
#include "WorkLimit.h"

#include <chrono>
#include <cstddef>
#include <expected>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvo::engine {

// What a document may take before its style is held to be one that never ends: macros can double
// what they print at every step. An ordinary style takes at most a twentieth of the time, and
// a third of the memory.
struct DocumentLimits {
  WorkLimit document{.time = std::chrono::seconds(30), .bytes = std::size_t{1} << 30U};
  WorkLimit cite{.time = std::chrono::milliseconds(10), .bytes = std::size_t{16} << 10U};  // each

  WorkLimit forCites(std::size_t count) const {
    return {.time = document.time + cite.time * count,
            .bytes = document.bytes + cite.bytes * count};
  }
};

// One cited work at one place of the document, with what the author asked for there.
// Texts are UTF-16; lone surrogates are printed as U+FFFD, control characters not at all.
struct Cite {
  std::string itemId;
  std::u16string pageRange;  // as written: "45-47", or with its own label: "ch. 3"
  std::u16string prefix;     // printed before the cite, set off by a blank
  std::u16string suffix;     // printed after the cite, likewise unless punctuation comes first
  bool yearOnly = false;     // without the author, who stands in the sentence already
  bool showInText = true;    // false: listed in the bibliography, not shown here
  bool includeInBibliography = true;  // false: shown here; listed only if cited elsewhere too
  bool stripEnclosure = false;        // without the style's brackets around the whole group
  bool suppressSuperscript = false;   // on the line, where the style would raise it
};

using CiteGroup = std::vector<Cite>;

struct CitedItems;

class CitationProcessor {
 public:
  // Gives the CSL-JSON object (UTF-8) of an item, or nothing when there is no such item.
  using ItemLookup = std::function<std::optional<std::string>(std::string_view itemId)>;

  // Gives a group of a document, valid until the next one is asked for: a million of them need
  // not be there at once. Asked twice for each.
  using GroupLookup = std::function<const CiteGroup &(std::size_t group)>;

  // Nothing is started until the first document.
  CitationProcessor();
  explicit CitationProcessor(std::filesystem::path locales);
  // With another script than the built-in one; its text must outlive the processor.
  CitationProcessor(std::filesystem::path locales, std::string_view script);
  ~CitationProcessor();
  CitationProcessor(CitationProcessor &&) noexcept;
  CitationProcessor &operator=(CitationProcessor &&) noexcept;

  // A text for each group, in order (empty where nothing is to be shown), and the
  // bibliography when it is wanted and the style has one. stripEnclosure and
  // suppressSuperscript hold for a group as soon as one of its cites asks for them.
  // An error is one line that names the style and, where there is one, the item.
  std::expected<FormattedDocument, std::string> formatDocument(const Style &style,
                                                               const ItemLookup &lookUp,
                                                               std::span<const CiteGroup> groups,
                                                               bool wantsBibliography);

  // The same with a style whose file was read before, of so many groups.
  std::expected<FormattedDocument, std::string> formatDocument(
      const Style &style, std::string_view styleText, const ItemLookup &lookUp,
      std::size_t groupCount, const GroupLookup &groupAt, bool wantsBibliography);

  void setLimits(const DocumentLimits &limits) { limits_ = limits; }

  // Formats these works, CSL-JSON objects (UTF-8), so that a later document that cites them takes
  // less time; no answer changes.
  std::expected<void, std::string> rehearse(const Style &style, std::span<const std::string> items);

  // Frees what earlier documents left behind. For moments of rest: some tens of milliseconds.
  void giveBackMemory() const;

 private:
  struct Machine;
  struct Request;
  struct Answer;
  std::expected<void, std::string> start();
  std::expected<Answer, std::string> ask(const char *function, const Request &request);

  std::filesystem::path locales_;
  std::string_view script_;
  DocumentLimits limits_;
  std::unique_ptr<Machine> machine_;
};

}  // namespace korvo::engine
