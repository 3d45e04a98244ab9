// Pidgin RTF in the eyes of programs that have never heard of it.
//
// All cases go into one document, a paragraph each, since starting such a program takes seconds.
// One thing these programs read by RTF's rules: the blank behind a hexadecimal escape is text. In
// two things they differ, which a Reader names.

#include <Formats/PidginRTFWriter.h>
#include <Tests/Support/ChildProcess.h>
#include <Tests/Support/Files.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <expat.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using formats::PidginAttributes;
using test_support::readFile;
using test_support::Result;
using test_support::run;
using test_support::TemporaryDirectory;

// These programs take seconds to start.
constexpr std::chrono::seconds limit{100};

// A character as UTF-8, and how it is shown: the letters of "biu^_" that apply.
struct ShownCharacter {
  std::string character;
  std::string styles;
  bool operator==(const ShownCharacter &) const = default;
};
using Paragraph = std::vector<ShownCharacter>;

void PrintTo(const ShownCharacter &shown, std::ostream *output) {
  *output << shown.character << '/' << shown.styles;
}

struct Case {
  std::u16string rtf;
  Paragraph expected;
};

// What a program can show.
struct Reader {
  bool joinsSurrogatePairs;  // pandoc makes two replacement characters of a pair
  bool showsBothPositions;   // LibreOffice lets the inner one of superscript and subscript count
};

struct Sample {
  std::u16string units;
  std::string shown;
};

std::string stylesOf(const PidginAttributes &attributes) {
  std::string styles;
  styles += attributes.bold ? "b" : "";
  styles += attributes.italic ? "i" : "";
  styles += attributes.underline ? "u" : "";
  styles += attributes.superscript ? "^" : "";
  styles += attributes.subscript ? "_" : "";
  return styles;
}

PidginAttributes attributesOf(unsigned pattern) {
  return {.bold = (pattern & 1) != 0,
          .italic = (pattern & 2) != 0,
          .underline = (pattern & 4) != 0,
          .superscript = (pattern & 8) != 0,
          .subscript = (pattern & 16) != 0};
}

Case makeCase(const Reader &reader,
              const std::vector<std::pair<Sample, PidginAttributes>> &samples) {
  Case result;
  formats::PidginRTFWriter writer;
  for (const auto &[sample, attributes] : samples) {
    writer.append(sample.units, attributes);
    PidginAttributes visible = attributes;
    visible.superscript &= reader.showsBothPositions || !attributes.subscript;
    result.expected.push_back({sample.shown, stylesOf(visible)});
    if (sample.shown == "{" || sample.shown == "}" || sample.shown == "\\") {
      result.expected.push_back({" ", stylesOf(visible)});
    }
  }
  result.rtf = writer.finish();
  return result;
}

// Each pair of attribute sets side by side, then random texts, always the same ones.
std::vector<Case> makeCases(const Reader &reader) {
  std::vector<Sample> samples = {{u"a", "a"},   {u"Z", "Z"},   {u"'", "'"},      {u"{", "{"},
                                 {u"}", "}"},   {u"\\", "\\"}, {u"é", "é"},      {u"\u2019", "’"},
                                 {u"中", "中"}, {u"7", "7"},   {u"\uFB01", "ﬁ"}, {u"-", "-"}};
  if (reader.joinsSurrogatePairs) {
    samples.push_back({u"\U0001F600", "😀"});
  }
  std::vector<Case> cases;
  for (unsigned first = 0; first < 32; ++first) {
    for (unsigned second = 0; second < 32; ++second) {
      cases.push_back(makeCase(
          reader, {{{u"A", "A"}, attributesOf(first)}, {{u"B", "B"}, attributesOf(second)}}));
    }
  }
  std::mt19937 random(4);  // NOLINT: the same texts at every run
  for (int number = 0; number < 200; ++number) {
    std::vector<std::pair<Sample, PidginAttributes>> text;
    for (int character = 0; character < 12; ++character) {
      text.emplace_back(samples[random() % samples.size()],
                        attributesOf(static_cast<unsigned>(random() % 32)));
    }
    // A blank at a paragraph's end may be dropped.
    text.emplace_back(samples[0], PidginAttributes{});
    cases.push_back(makeCase(reader, text));
  }
  return cases;
}

bool isInstalled(const std::string &program) {
  return run({"sh", "-c", "command -v " + program}).status == 0;
}

// The document is ASCII, as all that the writer makes.
void writeDocument(const std::filesystem::path &path, const std::vector<Case> &cases) {
  std::ofstream file(path);
  file << "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Times New Roman;}}\n";
  for (const Case &each : cases) {
    file << "\\pard\\plain " << std::string(each.rtf.begin(), each.rtf.end()) << "\\par\n";
  }
  file << "}\n";
}

void appendShown(Paragraph &paragraph, const std::string &text, const std::string &styles) {
  for (const char byte : text) {
    if ((static_cast<unsigned char>(byte) & 0xC0) == 0x80 && !paragraph.empty()) {
      paragraph.back().character += byte;
    } else {
      paragraph.push_back({std::string(1, byte), styles});
    }
  }
}

void expectShown(const std::vector<Paragraph> &shown, const std::vector<Case> &cases) {
  ASSERT_EQ(shown.size(), cases.size());
  for (std::size_t index = 0; index < cases.size(); ++index) {
    ASSERT_EQ(shown[index], cases[index].expected)
        << std::string(cases[index].rtf.begin(), cases[index].rtf.end());
  }
}

// What pandoc makes of a document: nested elements, one for each style.
void collectPandoc(const nlohmann::json &inlines, const PidginAttributes &around,
                   Paragraph &paragraph) {
  for (const auto &element : inlines) {
    const std::string type = element["t"];
    if (type == "Str") {
      appendShown(paragraph, element["c"], stylesOf(around));
      continue;
    }
    if (type == "Space") {
      appendShown(paragraph, " ", stylesOf(around));
      continue;
    }
    PidginAttributes inside = around;
    inside.bold |= type == "Strong";
    inside.italic |= type == "Emph";
    inside.underline |= type == "Underline";
    inside.superscript |= type == "Superscript";
    inside.subscript |= type == "Subscript";
    ASSERT_NE(inside, around) << type;
    collectPandoc(element["c"], inside, paragraph);
  }
}

TEST(PidginRTFInOtherPrograms, PandocShowsTheSameTextAndAttributes) {
  if (!isInstalled("pandoc")) {
    GTEST_SKIP() << "pandoc is not installed";
  }
  const TemporaryDirectory directory;
  const std::vector<Case> cases =
      makeCases({.joinsSurrogatePairs = false, .showsBothPositions = true});
  writeDocument(directory / "cases.rtf", cases);
  const Result pandoc = run({"pandoc", "-f", "rtf", "-t", "json", directory / "cases.rtf"}, limit);
  ASSERT_EQ(pandoc.status, 0) << pandoc.standardError;
  const auto document = nlohmann::json::parse(pandoc.standardOutput);
  std::vector<Paragraph> shown;
  for (const auto &block : document["blocks"]) {
    collectPandoc(block["c"], {}, shown.emplace_back());
  }
  expectShown(shown, cases);
}

// What LibreOffice makes of it: paragraphs with spans, whose looks are styles of their own.
class FlatDocument {
 public:
  explicit FlatDocument(const std::string &xml) {
    XML_Parser parser = XML_ParserCreate("UTF-8");
    XML_SetUserData(parser, this);
    XML_SetElementHandler(
        parser,
        [](void *self, const char *name, const char **attributes) {
          static_cast<FlatDocument *>(self)->start(name, attributes);
        },
        [](void *self, const char *name) { static_cast<FlatDocument *>(self)->end(name); });
    XML_SetCharacterDataHandler(parser, [](void *self, const char *text, int length) {
      static_cast<FlatDocument *>(self)->text({text, static_cast<std::size_t>(length)});
    });
    isWellFormed_ = XML_Parse(parser, xml.data(), static_cast<int>(xml.size()), 1) == XML_STATUS_OK;
    XML_ParserFree(parser);
  }

  bool isWellFormed() const { return isWellFormed_; }
  const std::vector<Paragraph> &paragraphs() const { return paragraphs_; }

 private:
  void start(const std::string &name, const char **list) {
    std::map<std::string, std::string> attributes;
    for (; *list != nullptr; list += 2) {
      attributes[list[0]] = list[1];
    }
    if (name == "style:style") {
      style_ = attributes["style:name"];
    } else if (name == "style:text-properties") {
      const std::string position = attributes["style:text-position"];
      const std::string underline = attributes["style:text-underline-style"];
      looks_[style_] = {.bold = attributes["fo:font-weight"] == "bold",
                        .italic = attributes["fo:font-style"] == "italic",
                        .underline = !underline.empty() && underline != "none",
                        .superscript = position.starts_with("super"),
                        .subscript = position.starts_with("sub")};
    } else if (name == "office:text") {
      isInText_ = true;
    } else if (isInText_ && name == "text:p") {
      paragraphs_.emplace_back();
      around_ = {looks_[attributes["text:style-name"]]};
    } else if (name == "text:span") {
      PidginAttributes look = around_.back();
      const PidginAttributes &own = looks_[attributes["text:style-name"]];
      look.bold |= own.bold;
      look.italic |= own.italic;
      look.underline |= own.underline;
      look.superscript |= own.superscript;
      look.subscript |= own.subscript;
      around_.push_back(look);
    } else if (name == "text:s") {
      text(" ");
    }
  }

  void end(const std::string &name) {
    if (name == "text:span") {
      around_.pop_back();
    } else if (name == "text:p") {
      around_.clear();
    }
  }

  void text(const std::string &characters) {
    if (!around_.empty()) {
      appendShown(paragraphs_.back(), characters, stylesOf(around_.back()));
    }
  }

  bool isWellFormed_ = false;
  bool isInText_ = false;
  std::string style_;
  std::map<std::string, PidginAttributes> looks_;
  std::vector<PidginAttributes> around_;  // of the open paragraph and its open spans
  std::vector<Paragraph> paragraphs_;
};

TEST(PidginRTFInOtherPrograms, LibreOfficeShowsTheSameTextAndAttributes) {
  if (!isInstalled("soffice")) {
    GTEST_SKIP() << "LibreOffice is not installed";
  }
  const TemporaryDirectory directory;
  const std::vector<Case> cases =
      makeCases({.joinsSurrogatePairs = true, .showsBothPositions = false});
  writeDocument(directory / "cases.rtf", cases);
  const std::string folder = directory.path();
  const Result office =
      run({"soffice", "--headless", "-env:UserInstallation=file://" + folder + "/profile",
           "--convert-to", "fodt", "--outdir", folder, folder + "/cases.rtf"},
          limit);
  ASSERT_EQ(office.status, 0) << office.standardOutput << office.standardError;
  const FlatDocument document(readFile(directory / "cases.fodt"));
  ASSERT_TRUE(document.isWellFormed());
  expectShown(document.paragraphs(), cases);
}

}  // namespace
