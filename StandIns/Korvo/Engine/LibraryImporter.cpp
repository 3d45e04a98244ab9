#include "LibraryImporter.h"

#include "EmbeddedScripts.h"
#include "JavaScriptMachine.h"
#include "TextFile.h"

#include <Formats/Unicode.h>

#include <algorithm>
#include <array>
#include <utility>

namespace korvo::engine {

namespace {

// The kinds that the script reads, by the file's extension without its point.
std::expected<std::u16string, std::string> kindOf(const std::filesystem::path &file) {
  std::string extension = file.extension().string();
  std::ranges::transform(extension, extension.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  if (extension == ".bib" || extension == ".ris" || extension == ".json") {
    return formats::decodeUTF8(extension.substr(1));
  }
  return std::unexpected(file.string() +
                         ": not a library that can be read (known are .bib, .ris and .json)");
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
    result.references.push_back({textAt(keys, index), textAt(items, index)});
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
  std::string text = file.string() + ":" + (line > 0 ? std::to_string(line) + ": " : " ") + reason;
  std::ranges::replace_if(
      text, [](char letter) { return static_cast<unsigned char>(letter) < 0x20; }, ' ');
  return text;
}

struct LibraryImporter::Machine {
  std::unique_ptr<JavaScriptMachine> script;
};

LibraryImporter::LibraryImporter() = default;
LibraryImporter::~LibraryImporter() = default;
LibraryImporter::LibraryImporter(LibraryImporter &&) noexcept = default;
LibraryImporter &LibraryImporter::operator=(LibraryImporter &&) noexcept = default;

std::expected<ImportResult, std::string> LibraryImporter::importFile(
    const std::filesystem::path &file) {
  const auto kind = kindOf(file);
  if (!kind) {
    return std::unexpected(kind.error());
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
  const std::array<JSValueRef, 2> arguments = {machine.text(*kind), machine.text(decoded.text)};
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
    if (*kind != u"json") {
      return std::unexpected(file.string() + ": no entry of a library is in it");
    }
  }
  return result;
}

}  // namespace korvo::engine
