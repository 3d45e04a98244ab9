#include "DocumentQuestion.h"

#include <cstdint>

namespace korvo::engine {

namespace {

class Writer {
 public:
  void number(std::uint64_t value) {
    question_.append(reinterpret_cast<const char *>(&value), sizeof value);
  }
  void text(std::string_view bytes) {
    number(bytes.size());
    question_ += bytes;
  }
  void text(std::u16string_view units) {
    text(std::string_view(reinterpret_cast<const char *>(units.data()),
                          units.size() * sizeof(char16_t)));
  }
  void cite(const Cite &cite) {
    text(cite.itemId);
    text(cite.pageRange);
    text(cite.prefix);
    text(cite.suffix);
    for (const bool option : {cite.yearOnly, cite.showInText, cite.includeInBibliography,
                              cite.stripEnclosure, cite.suppressSuperscript}) {
      question_ += option ? '1' : '0';
    }
  }
  std::string finish() { return std::move(question_); }

 private:
  std::string question_;
};

}  // namespace

std::string documentQuestion(std::string_view styleText, std::string_view locale,
                             bool wantsBibliography, std::span<const std::string> items,
                             std::span<const CiteGroup> groups) {
  Writer writer;
  writer.text(styleText);
  writer.text(locale);
  writer.number(wantsBibliography ? 1 : 0);
  writer.number(items.size());
  for (const std::string &item : items) {
    writer.text(item);
  }
  writer.number(groups.size());
  for (const CiteGroup &group : groups) {
    writer.number(group.size());
    for (const Cite &cite : group) {
      writer.cite(cite);
    }
  }
  return writer.finish();
}

}  // namespace korvo::engine
