// The importer as a whole, with its JavaScript machine: any file of another program's library is
// read or refused with one line; what was read is readable, and the same when it is read once more.

#include <Fuzzing/Support/FuzzedData.h>
#include <Fuzzing/Support/Target.h>
#include <StandIns/Korvo/Engine/LibraryImporter.h>
#include <StandIns/Korvo/Library/BibliographicRecord.h>
#include <StandIns/Korvo/Library/Library.h>
#include <Tests/Support/TemporaryDirectory.h>

namespace fuzzing {

namespace {

korvo::engine::LibraryImporter &importer() {
  // Never destroyed: the machine's threads are at work until the process ends.
  static korvo::engine::LibraryImporter &kept = *new korvo::engine::LibraryImporter;
  return kept;
}

}  // namespace

void run(std::string_view bytes) {
  static const test_support::TemporaryDirectory directory;
  static const std::vector<std::string> names = {"fuzzed.bib", "fuzzed.ris", "fuzzed.json"};
  FuzzedData data(bytes);
  const std::string &name = names[data.choice(names.size())];
  const auto file = directory.write(name, std::string(data.rest()));
  const auto result = importer().importFile(file);
  const auto again = importer().importFile(file);
  require(result.has_value() == again.has_value());
  if (!result) {
    require(result.error().find(name) != std::string::npos);
    require(result.error().find('\n') == std::string::npos);
    return;
  }
  require(result->references == again->references);
  std::vector<korvo::library::NewReference> references;
  for (const korvo::engine::ImportedReference &reference : result->references) {
    require(korvo::library::readBibliographicRecord(reference.cslJson).has_value());
    references.push_back({reference.citationKey, reference.cslJson});
  }
  auto kept = korvo::library::Library::temporary(file);
  require(kept.has_value());
  const auto added = kept->add(references);
  require(added.has_value());
  require(added->added + added->alreadyThere == references.size());
  for (const korvo::engine::ImportProblem &problem : result->problems) {
    require(problem.message().find(name) != std::string::npos);
    require(problem.message().find('\n') == std::string::npos);
  }
}

}  // namespace fuzzing
