// A library's own file with bytes changed by who knows what: it is opened and used, or refused with
// one line and left as it is.

#include <Formats/OneLine.h>
#include <Fuzzing/Support/FuzzedData.h>
#include <Fuzzing/Support/Target.h>
#include <StandIns/Korvo/Library/Library.h>
#include <Tests/Support/Files.h>
#include <Tests/Support/TemporaryDirectory.h>

namespace fuzzing {

namespace {

using korvo::library::Library;

const test_support::TemporaryDirectory &directory() {
  static const test_support::TemporaryDirectory own;
  return own;
}

std::string wholeDatabase() {
  const auto file = directory() / "whole.korvo";
  auto references = Library::openOrCreate(file);
  require(references.has_value());
  const std::vector<korvo::library::NewReference> content = {
      {"SMI2001", R"({"type":"book","title":"A title","author":[{"family":"Smith","given":"Ann"}],)"
                  R"("issued":{"date-parts":[[2001]]}})"},
      {"", R"({"type":"article-journal","title":"Die Wärme","author":[{"literal":"van Gogh"}],)"
           R"("issued":{"raw":"3 May 1888"}})"}};
  require(references->add(content).has_value());
  return test_support::readFile(file);
}

template <typename Result>
void requireOneLine(const Result &result) {
  require(result.has_value() || (result.error().find("fuzzed.korvo") != std::string::npos &&
                                 result.error() == formats::inOneLine(result.error())));
}

void list(Library &references, std::string_view searchText) {
  using enum korvo::library::SortColumn;
  for (const korvo::library::SortColumn column : {authors, year, title, kind, identifier}) {
    requireOneLine(references.list({.column = column}, searchText));
    requireOneLine(references.list({.column = column, .ascending = false}, searchText));
  }
}

void use(Library &references) {
  references.keepReading();
  requireOneLine(references.count());
  requireOneLine(references.matching("SMI2001"));
  requireOneLine(references.matching("van Gogh 1888"));
  const auto rows = references.list({.column = korvo::library::SortColumn::year}, "a");
  requireOneLine(rows);
  for (const korvo::library::ReferenceRow row :
       rows.value_or(std::vector<korvo::library::ReferenceRow>())) {
    requireOneLine(references.summary(row));
    requireOneLine(references.cslJson(row));
    requireOneLine(references.citationTag(row));
  }
  list(references, "");
  references.stopReading();
  const korvo::library::NewReference added{"NEW", R"({"title":"New"})"};
  if (rows && !rows->empty()) {
    requireOneLine(references.replace(rows->front(), added));
  }
  requireOneLine(references.add({&added, 1}));
  requireOneLine(references.checkWhole());
}

}  // namespace

void run(std::string_view bytes) {
  static const std::string whole = wholeDatabase();
  FuzzedData data(bytes);
  std::string content = whole;
  if (data.flag()) {
    content.resize(data.number() % (whole.size() + 1));
  }
  while (!data.isAtEnd() && !content.empty()) {
    const std::size_t position = data.number() % content.size();
    const std::string_view change = data.text().substr(0, content.size() - position);
    content.replace(position, change.size(), change);
  }
  const auto file = directory().write("fuzzed.korvo", content);
  auto references = Library::open(file);
  requireOneLine(references);
  if (references) {
    use(*references);
  } else {
    require(test_support::readFile(file) == content);
  }
}

}  // namespace fuzzing
