#include "Keywords.h"

#include <initializer_list>
#include <unordered_map>

namespace mellel::rtf {

namespace {

using KeywordTable = std::unordered_map<std::string_view, KeywordMeaning>;

void add(KeywordTable &table, Keyword keyword, std::initializer_list<std::string_view> words) {
  for (const std::string_view word : words) {
    table.emplace(word, KeywordMeaning{keyword, 0});
  }
}

void addDestinations(KeywordTable &table) {
  add(table, Keyword::fontTable, {"fonttbl"});
  add(table, Keyword::hiddenDestination, {"filetbl",      "colortbl",   "stylesheet",
                                          "info",         "listtable",  "listoverridetable",
                                          "revtbl",       "rsidtbl",    "generator",
                                          "objdata",      "pntext",     "pntxta",
                                          "pntxtb",       "pnseclvl",   "fldinst",
                                          "datafield",    "xe",         "tc",
                                          "tcn",          "rxe",        "txe",
                                          "template",     "nextfile",   "ftnsep",
                                          "ftnsepc",      "ftncn",      "aftnsep",
                                          "aftnsepc",     "aftncn",     "atnid",
                                          "atnauthor",    "annotation", "atrfstart",
                                          "atrfend",      "atndate",    "shprslt",
                                          "sp",           "private",    "nonesttables",
                                          "bkmkstart",    "bkmkend",    "xmlnstbl",
                                          "mmathPr",      "themedata",  "colorschememapping",
                                          "latentstyles", "datastore",  "userprops",
                                          "pgdsctbl",     "background"});
  add(table, Keyword::listText, {"listtext"});
  add(table, Keyword::embeddedObject, {"pict", "nonshppict", "shppict"});
  add(table, Keyword::storyDestination,
      {"footnote", "header", "headerl", "headerr", "headerf", "footer", "footerl", "footerr",
       "footerf", "shptxt", "dptxbxtext"});
  add(table, Keyword::unicodePair, {"upr"});
  add(table, Keyword::unicodeText, {"ud"});
}

void addCharacters(KeywordTable &table) {
  const std::initializer_list<std::pair<std::string_view, char32_t>> characters = {
      {"tab", '\t'},         {"line", 0x2028},    {"lbr", 0x2028},     {"emdash", 0x2014},
      {"endash", 0x2013},    {"emspace", 0x2003}, {"enspace", 0x2002}, {"qmspace", 0x2005},
      {"bullet", 0x2022},    {"lquote", 0x2018},  {"rquote", 0x2019},  {"ldblquote", 0x201C},
      {"rdblquote", 0x201D}, {"zwj", 0x200D},     {"zwnj", 0x200C},    {"zwbo", 0x200B},
      {"zwnbo", 0x2060},     {"ltrmark", 0x200E}, {"rtlmark", 0x200F}};
  for (const auto &[word, value] : characters) {
    table.emplace(word, KeywordMeaning{Keyword::character, value});
  }
  add(table, Keyword::unicodeCharacter, {"u"});
  add(table, Keyword::unicodeFallbackCount, {"uc"});
  table.emplace("par", KeywordMeaning{Keyword::paragraphEnd, '\n'});
  add(table, Keyword::paragraphEnd,
      {"cell", "row", "nestcell", "nestrow", "sect", "page", "column"});
}

void addFormatting(KeywordTable &table) {
  add(table, Keyword::resetCharacters, {"plain"});
  add(table, Keyword::resetParagraph, {"pard"});
  add(table, Keyword::font, {"f"});
  add(table, Keyword::fontSize, {"fs"});
  add(table, Keyword::bold, {"b"});
  add(table, Keyword::italic, {"i"});
  add(table, Keyword::underline,
      {"ul", "uld", "uldash", "uldashd", "uldashdd", "uldb", "ulhwave", "ulldash", "ulth", "ulthd",
       "ulthdash", "ulthdashd", "ulthdashdd", "ulthldash", "ululdbwave", "ulw", "ulwave"});
  add(table, Keyword::noUnderline, {"ulnone"});
  add(table, Keyword::superscript, {"super"});
  add(table, Keyword::subscript, {"sub"});
  add(table, Keyword::noSuperscriptOrSubscript, {"nosupersub"});
  add(table, Keyword::smallCapitals, {"scaps"});
  add(table, Keyword::deleted, {"deleted"});
  add(table, Keyword::paragraphStyle, {"s"});
  add(table, Keyword::leftIndent, {"li"});
  add(table, Keyword::firstLineIndent, {"fi"});
  add(table, Keyword::spaceBefore, {"sb"});
  add(table, Keyword::spaceAfter, {"sa"});
  add(table, Keyword::lineSpacing, {"sl"});
  add(table, Keyword::lineSpacingRule, {"slmult"});
  add(table, Keyword::tabStop, {"tx"});
}

KeywordTable makeKeywordTable() {
  KeywordTable table;
  table.emplace("ansi", KeywordMeaning{Keyword::codePageOfHeader, 1252});
  table.emplace("mac", KeywordMeaning{Keyword::codePageOfHeader, 10000});
  table.emplace("pc", KeywordMeaning{Keyword::codePageOfHeader, 437});
  table.emplace("pca", KeywordMeaning{Keyword::codePageOfHeader, 850});
  add(table, Keyword::ansiCodePage, {"ansicpg"});
  add(table, Keyword::defaultFont, {"deff"});
  add(table, Keyword::fontCharacterSet, {"fcharset"});
  add(table, Keyword::fontCodePage, {"cpg"});
  addDestinations(table);
  addCharacters(table);
  addFormatting(table);
  return table;
}

}  // namespace

KeywordMeaning meaningOfControlWord(std::string_view word) {
  static const KeywordTable table = makeKeywordTable();
  const auto found = table.find(word);
  return found == table.end() ? KeywordMeaning{} : found->second;
}

}  // namespace mellel::rtf
