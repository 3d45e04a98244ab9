#include "LibraryImporter.h"

#include "CaseFolding.h"
#include "EmbeddedScripts.h"
#include "JavaScriptMachine.h"
#include "TextFile.h"

#include <Formats/OneLine.h>
#include <Formats/Unicode.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace korvo::engine {

namespace {

// An abstract has some kilobytes. What is larger than this was made to be.
constexpr std::size_t largestRecord = 16 * 1'048'576;

struct Kind {
  std::string_view extension;
  std::string_view reader;  // as the script calls it
};

constexpr std::array<Kind, 5> kinds = {{{".bib", "bib"},
                                        {".bibtex", "bib"},
                                        {".biblatex", "bib"},
                                        {".ris", "ris"},
                                        {".json", "json"}}};

// The script's reader for the file; nothing if its extension is none that is known.
std::optional<std::string_view> readerFor(const std::filesystem::path &file) {
  const std::string extension = caseFolded(file.extension().string());
  const auto *const kind = std::ranges::find(kinds, extension, &Kind::extension);
  return kind != kinds.end() ? std::optional(kind->reader) : std::nullopt;
}

std::string knownExtensions() {
  std::string names;
  for (const Kind &kind : kinds) {
    const bool isLast = &kind == &kinds.back();
    names += names.empty() ? "" : isLast ? " and " : ", ";
    names += kind.extension;
  }
  return names;
}

ImportResult readAnswer(const JavaScriptMachine &machine, JSObjectRef answer,
                        const std::filesystem::path &file) {
  ImportResult result;
  const auto textAt = [&](JSObjectRef array, std::size_t index) {
    return formats::encodeUTF8(machine.readText(machine.element(array, index)));
  };
  JSObjectRef keys = machine.objectProperty(answer, "keys");
  JSObjectRef items = machine.objectProperty(answer, "items");
  const std::size_t count = machine.length(items);
  result.references.reserve(count);
  for (std::size_t index = 0; index < count; ++index) {
    ImportedReference reference{textAt(keys, index), textAt(items, index)};
    if (reference.cslJson.size() > largestRecord) {
      result.problems.push_back({file, 0,
                                 reference.citationKey + ": it is larger than " +
                                     std::to_string(largestRecord / 1'048'576) +
                                     " MiB, and left out"});
      continue;
    }
    result.references.push_back(std::move(reference));
  }
  JSObjectRef lines = machine.objectProperty(answer, "problemLines");
  JSObjectRef reasons = machine.objectProperty(answer, "problemReasons");
  for (std::size_t index = 0; index < machine.length(reasons); ++index) {
    const double line = machine.readNumber(machine.element(lines, index));
    result.problems.push_back({file, static_cast<std::size_t>(line), textAt(reasons, index)});
  }
  return result;
}

bool isBlank(std::u16string_view text) {
  return text.find_first_not_of(u" \t\r\n\f\v") == std::u16string_view::npos;
}

}  // namespace

std::string ImportProblem::message() const {
  return formats::inOneLine(file.string() + ":" + (line > 0 ? std::to_string(line) + ": " : " ") +
                            reason);
}

bool isImportable(const std::filesystem::path &file) { return readerFor(file).has_value(); }

struct LibraryImporter::Machine {
  std::unique_ptr<JavaScriptMachine> script;
};

LibraryImporter::LibraryImporter() = default;
LibraryImporter::~LibraryImporter() = default;
LibraryImporter::LibraryImporter(LibraryImporter &&) noexcept = default;
LibraryImporter &LibraryImporter::operator=(LibraryImporter &&) noexcept = default;

std::expected<ImportResult, std::string> LibraryImporter::importFile(
    const std::filesystem::path &file, const ImportProgress &progress) {
  const auto reader = readerFor(file);
  if (!reader) {
    return std::unexpected(file.string() + ": not a library that can be read (known are " +
                           knownExtensions() + ")");
  }
  const auto bytes = readFile(file);
  if (!bytes) {
    return std::unexpected(bytes.error());
  }
  if (!machine_) {
    auto started = JavaScriptMachine::start(importScript());
    if (!started) {
      return std::unexpected(std::move(started.error()));
    }
    machine_ = std::make_unique<Machine>(std::move(*started));
  }
  const TextFile decoded = decodeText(*bytes);
  JavaScriptMachine &machine = *machine_->script;
  const JavaScriptMachine::TextFunction tell =
      [&](std::u16string_view soFar) -> JavaScriptMachine::Text {
    if (progress) {
      progress(file, formats::encodeUTF8(soFar));
    }
    return std::u16string();
  };
  const std::array<JSValueRef, 3> arguments = {machine.text(formats::decodeUTF8(*reader)),
                                               machine.text(decoded.text),
                                               machine.makeFunction(tell)};
  const auto answer = machine.call("readLibrary", arguments);
  if (!answer) {
    return std::unexpected(file.string() + ": cannot be read: " + answer.error());
  }
  ImportResult result = readAnswer(machine, *answer, file);
  if (decoded.isGuessed) {
    result.problems.insert(
        result.problems.begin(),
        {file, 0, "the file is not in UTF-8; it is read as Windows-1252, so look at its accents"});
  }
  if (result.references.empty() && !isBlank(decoded.text)) {
    if (!result.problems.empty()) {
      return std::unexpected(result.problems.back().message());
    }
    if (*reader != "json") {
      return std::unexpected(file.string() + ": no entry of a library is in it");
    }
  }
  return result;
}

}  // namespace korvo::engine
