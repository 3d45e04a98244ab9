#include "CitationProcessor.h"

#include "CitedItems.h"
#include "EmbeddedScripts.h"
#include "JavaScriptMachine.h"
#include "MarkedText.h"
#include "TextFile.h"

#include <Formats/Unicode.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace korvo::engine {

namespace {

// The bits of a cite's options, as Citations/request.js reads them.
constexpr unsigned yearOnlyBit = 1;
constexpr unsigned hiddenBit = 2;
constexpr unsigned stripEnclosureBit = 4;
constexpr unsigned suppressSuperscriptBit = 8;
constexpr unsigned textsBit = 16;

bool hasTexts(const Cite &cite) {
  return !cite.pageRange.empty() || !cite.prefix.empty() || !cite.suffix.empty();
}

unsigned optionBits(const Cite &cite) {
  return (cite.yearOnly ? yearOnlyBit : 0) | (cite.showInText ? 0 : hiddenBit) |
         (cite.stripEnclosure ? stripEnclosureBit : 0) |
         (cite.suppressSuperscript ? suppressSuperscriptBit : 0) | (hasTexts(cite) ? textsBit : 0);
}

void fillItems(const JavaScriptMachine &machine, JSObjectRef request, const CitedItems &cited,
               std::span<const std::string> data) {
  JSObjectRef ids = machine.makeArray(request, "ids");
  JSObjectRef items = machine.makeArray(request, "items");
  JSObjectRef listed = machine.makeArray(request, "listed");
  for (std::size_t index = 0; index < cited.ids.size(); ++index) {
    machine.append(ids, index, machine.text(formats::decodeUTF8(cited.ids[index])));
    machine.append(items, index, machine.text(formats::decodeUTF8(data[index])));
    machine.append(listed, index, machine.number(cited.listed[index] ? 1 : 0));
  }
}

void fillGroups(const JavaScriptMachine &machine, JSObjectRef request, const CitedItems &cited,
                std::size_t groupCount, const CitationProcessor::GroupLookup &groupAt) {
  JSObjectRef sizes = machine.makeArray(request, "groupSizes");
  JSObjectRef items = machine.makeArray(request, "citeItems");
  JSObjectRef options = machine.makeArray(request, "citeOptions");
  JSObjectRef texts = machine.makeArray(request, "citeTexts");
  std::size_t cites = 0;
  std::size_t textCount = 0;
  for (std::size_t index = 0; index < groupCount; ++index) {
    const CiteGroup &group = groupAt(index);
    machine.append(sizes, index, machine.number(static_cast<double>(group.size())));
    for (const Cite &cite : group) {
      const auto place = static_cast<double>(cited.places.at(cite.itemId));
      machine.append(items, cites, machine.number(place));
      machine.append(options, cites, machine.number(optionBits(cite)));
      ++cites;
      if (hasTexts(cite)) {
        for (const std::u16string *text : {&cite.pageRange, &cite.prefix, &cite.suffix}) {
          machine.append(texts, textCount, machine.text(*text));
          ++textCount;
        }
      }
    }
  }
}

SecondFieldAlign secondFieldAlign(std::u16string_view name) {
  return name == u"margin" ? SecondFieldAlign::margin
         : name.empty()    ? SecondFieldAlign::none
                           : SecondFieldAlign::flush;
}

Bibliography readBibliography(const JavaScriptMachine &machine, JSObjectRef answer,
                              const CitedItems &cited) {
  Bibliography bibliography;
  JSObjectRef entries = machine.objectProperty(answer, "entries");
  JSObjectRef items = machine.objectProperty(answer, "entryItems");
  const std::size_t count = machine.length(entries);
  for (std::size_t index = 0; index < count; ++index) {
    MarkedText marked = readMarkedText(machine.readText(machine.element(entries, index)));
    const auto item = static_cast<std::size_t>(machine.readNumber(machine.element(items, index)));
    bibliography.entries.push_back({.itemId = std::string(cited.ids.at(item)),
                                    .firstField = std::move(marked.firstField),
                                    .text = std::move(marked.text)});
  }
  const auto number = [&](const char *name) {
    return machine.readNumber(machine.property(answer, name));
  };
  bibliography.hangingIndent = number("hangingIndent") != 0;
  bibliography.secondFieldAlign =
      secondFieldAlign(machine.readText(machine.property(answer, "secondFieldAlign")));
  bibliography.firstFieldCharacters = static_cast<std::size_t>(number("firstFieldCharacters"));
  bibliography.entrySpacing = static_cast<int>(number("entrySpacing"));
  bibliography.lineSpacing = std::max(1, static_cast<int>(number("lineSpacing")));
  return bibliography;
}

void readGroups(const JavaScriptMachine &machine, JSObjectRef answer, FormattedDocument &document) {
  JSObjectRef texts = machine.objectProperty(answer, "texts");
  const std::size_t textCount = machine.length(texts);
  document.texts.reserve(textCount);
  for (std::size_t index = 0; index < textCount; ++index) {
    document.texts.push_back(readMarkedText(machine.readText(machine.element(texts, index))).text);
  }
  JSObjectRef groups = machine.objectProperty(answer, "groups");
  const std::size_t count = machine.length(groups);
  document.groups.reserve(count);
  for (std::size_t index = 0; index < count; ++index) {
    const double place = machine.readNumber(machine.element(groups, index));
    document.groups.push_back(static_cast<std::uint32_t>(place));
  }
}

// A locale by its name, or else another of the same language.
std::expected<std::filesystem::path, std::string> localeFile(const std::filesystem::path &directory,
                                                             std::string_view name) {
  const auto fileOf = [&](std::string_view locale) {
    return directory / ("locales-" + std::string(locale) + ".xml");
  };
  std::error_code error;
  if (std::filesystem::exists(fileOf(name), error)) {
    return fileOf(name);
  }
  const std::string prefix = fileOf(name.substr(0, name.find('-'))).stem().string() + "-";
  std::vector<std::filesystem::path> sameLanguage;
  for (const auto &entry : std::filesystem::directory_iterator(directory, error)) {
    if (entry.path().filename().string().starts_with(prefix)) {
      sameLanguage.push_back(entry.path());
    }
  }
  if (sameLanguage.empty()) {
    return std::unexpected("no citation locale for the language \"" + std::string(name) + "\" in " +
                           directory.string());
  }
  return *std::ranges::min_element(sameLanguage);
}

JavaScriptMachine::Text readLocaleFile(const std::filesystem::path &directory,
                                       std::string_view name) {
  const auto file = localeFile(directory, name);
  if (!file) {
    return std::unexpected(file.error());
  }
  const auto bytes = readFile(*file);
  if (!bytes) {
    return std::unexpected(bytes.error());
  }
  return formats::decodeUTF8(*bytes);
}

std::expected<std::vector<std::string>, std::string> readItems(
    const CitedItems &cited, const CitationProcessor::ItemLookup &lookUp) {
  std::vector<std::string> data;
  for (const std::string_view id : cited.ids) {
    std::optional<std::string> item = lookUp(id);
    if (!item) {
      return std::unexpected("no such item: " + std::string(id));
    }
    data.push_back(*std::move(item));
  }
  return data;
}

}  // namespace

struct CitationProcessor::Machine {
  std::unique_ptr<JavaScriptMachine> script;
};

CitationProcessor::CitationProcessor()
    : CitationProcessor("/usr/share/citation-style-language/locales") {}

CitationProcessor::CitationProcessor(std::filesystem::path locales)
    : CitationProcessor(std::move(locales), citationScript()) {}

CitationProcessor::CitationProcessor(std::filesystem::path locales, std::string_view script)
    : locales_(std::move(locales)), script_(script) {}

CitationProcessor::~CitationProcessor() = default;
CitationProcessor::CitationProcessor(CitationProcessor &&) noexcept = default;
CitationProcessor &CitationProcessor::operator=(CitationProcessor &&) noexcept = default;

std::expected<void, std::string> CitationProcessor::start() {
  if (machine_) {
    return {};
  }
  auto started = JavaScriptMachine::start(script_);
  if (!started) {
    return std::unexpected(std::move(started.error()));
  }
  machine_ = std::make_unique<Machine>(std::move(*started));
  return {};
}

struct CitationProcessor::Request {
  const Style &style;
  std::string_view styleText;
  const ItemLookup &lookUp;
  std::size_t groupCount;
  const GroupLookup &groupAt;
  bool wantsBibliography;
};

struct CitationProcessor::Answer {
  CitedItems cited;
  JSObjectRef object = nullptr;
};

namespace {

CitationProcessor::GroupLookup lookupIn(std::span<const CiteGroup> groups) {
  return [groups](std::size_t group) -> const CiteGroup & { return groups[group]; };
}

}  // namespace

std::expected<CitationProcessor::Answer, std::string> CitationProcessor::ask(const char *function,
                                                                             const Request &asked) {
  CitedItems cited(asked.groupCount, asked.groupAt);
  const auto items = readItems(cited, asked.lookUp);
  if (!items) {
    return std::unexpected(items.error());
  }
  if (auto started = start(); !started) {
    return std::unexpected(std::move(started.error()));
  }
  const JavaScriptMachine &machine = *machine_->script;
  JSObjectRef request = machine.makeObject();
  machine.set(request, "style", machine.text(formats::decodeUTF8(asked.styleText)));
  machine.set(request, "locale", machine.text(formats::decodeUTF8(asked.style.locale)));
  machine.set(request, "wantsBibliography", machine.number(asked.wantsBibliography ? 1 : 0));
  fillItems(machine, request, cited, *items);
  fillGroups(machine, request, cited, asked.groupCount, asked.groupAt);
  const JavaScriptMachine::TextFunction readLocale =
      [this](std::u16string_view name) -> JavaScriptMachine::Text {
    return readLocaleFile(locales_, formats::encodeUTF8(name));
  };
  const std::array<JSValueRef, 2> arguments = {request, machine.makeFunction(readLocale)};
  const auto answer =
      machine_->script->call(function, arguments, limits_.forCites(cited.citeCount));
  if (!answer) {
    if (machine.isSpent()) {
      machine_.reset();
    }
    return std::unexpected("style \"" + asked.style.name.title + "\": " + answer.error());
  }
  return Answer{.cited = std::move(cited), .object = *answer};
}

std::expected<FormattedDocument, std::string> CitationProcessor::formatDocument(
    const Style &style, const ItemLookup &lookUp, std::span<const CiteGroup> groups,
    bool wantsBibliography) {
  const auto styleText = readFile(style.file);
  if (!styleText) {
    return std::unexpected(styleText.error());
  }
  return formatDocument(style, *styleText, lookUp, groups.size(), lookupIn(groups),
                        wantsBibliography);
}

std::expected<FormattedDocument, std::string> CitationProcessor::formatDocument(
    const Style &style, std::string_view styleText, const ItemLookup &lookUp,
    std::size_t groupCount, const GroupLookup &groupAt, bool wantsBibliography) {
  const auto answer =
      ask("formatDocument", {style, styleText, lookUp, groupCount, groupAt, wantsBibliography});
  if (!answer) {
    return std::unexpected(answer.error());
  }
  FormattedDocument document;
  readGroups(*machine_->script, answer->object, document);
  document.bibliography = readBibliography(*machine_->script, answer->object, answer->cited);
  return document;
}

std::expected<void, std::string> CitationProcessor::rehearse(const Style &style,
                                                             std::span<const std::string> items) {
  const auto styleText = readFile(style.file);
  if (!styleText) {
    return std::unexpected(styleText.error());
  }
  std::vector<CiteGroup> groups(items.size(), CiteGroup(1));
  for (std::size_t index = 0; index < items.size(); ++index) {
    groups[index].front().itemId = std::to_string(index);
  }
  const ItemLookup lookUp = [&](std::string_view id) { return items[std::stoul(std::string(id))]; };
  const GroupLookup groupAt = lookupIn(groups);
  const auto answer =
      ask("rehearseDocument", {style, *styleText, lookUp, groups.size(), groupAt, true});
  if (!answer) {
    return std::unexpected(answer.error());
  }
  return {};
}

void CitationProcessor::giveBackMemory() const {
  if (machine_) {
    machine_->script->collectGarbage();
  }
}

}  // namespace korvo::engine
