#include "Report.h"

#include <Formats/OneLine.h>
#include <Formats/Unicode.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace mellel::commands {

using conversation::CheckedCitation;
using conversation::FormattedCitations;
using rtf::DocumentText;

using formats::inOneLine;

namespace {

std::string counted(std::size_t count, std::string_view one, std::string_view several) {
  return std::to_string(count) + ' ' + std::string(count == 1 ? one : several);
}

// In characters: good enough to line up columns of Latin, Greek and Cyrillic text.
std::size_t widthOf(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80;
  }));
}

std::string padded(std::string_view text, std::size_t width) {
  const std::size_t own = widthOf(text);
  return std::string(text) + std::string(own < width ? width - own : 0, ' ');
}

std::string joined(const std::vector<std::string> &texts, std::string_view separator) {
  std::string result;
  for (const std::string &text : texts) {
    if (&text != &texts.front()) {
      result += separator;
    }
    result += text;
  }
  return result;
}

void appendJSONString(std::string &json, std::string_view text) {
  json += '"';
  for (const char byte : text) {
    if (byte == '"' || byte == '\\') {
      json += '\\';
      json += byte;
    } else if (static_cast<unsigned char>(byte) < 0x20) {
      std::array<char, 7> escape{};
      std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(byte));
      json += escape.data();
    } else {
      json += byte;
    }
  }
  json += '"';
}

std::string bibliographyLine(const FormattedCitations &formatted, const DocumentText &document) {
  if (!formatted.bibliography) {
    return "bibliography: none came with the answer\n";
  }
  if (formatted.bibliography->empty()) {
    return "bibliography: it has no entries\n";
  }
  return "bibliography: " + counted(formatted.bibliography->size(), "entry", "entries") +
         (document.bibliographyPlace ? " in place of {bibliography}\n" : " at the end\n");
}

}  // namespace

std::string formattingReport(std::string_view outputPath, const FormattedCitations &formatted,
                             const DocumentText &document, bool wantsBibliography) {
  std::string report = "wrote: " + std::string(outputPath) +
                       "\nstyle: " + inOneLine(formatted.styleName) +
                       "\nformatted: " + std::to_string(formatted.count()) + " of " +
                       counted(formatted.texts.size(), "citation", "citations") + '\n';
  for (std::size_t index = 0; index < formatted.texts.size(); ++index) {
    if (!formatted.texts[index]) {
      report += "not formatted: {" + inOneLine(document.citations[index].text) + "}\n";
    }
  }
  if (wantsBibliography) {
    report += bibliographyLine(formatted, document);
  }
  return report;
}

std::string checkTable(std::span<const CheckedCitation> citations) {
  constexpr std::string_view numberTitle = "#";
  constexpr std::string_view citationTitle = "Citation";
  constexpr std::size_t greatestColumn = 60;
  const std::size_t numberWidth = std::to_string(citations.size()).size();
  std::size_t citationWidth = citationTitle.size();
  for (const CheckedCitation &entry : citations) {
    citationWidth = std::max(citationWidth, std::min(widthOf(entry.citation), greatestColumn));
  }
  std::string table = std::string(numberWidth - numberTitle.size(), ' ') +
                      std::string(numberTitle) + "  " + padded(citationTitle, citationWidth) +
                      "  Looked up as\n";
  for (std::size_t index = 0; index < citations.size(); ++index) {
    const std::string number = std::to_string(index + 1);
    table += std::string(numberWidth - number.size(), ' ') + number + "  " +
             padded(inOneLine(citations[index].citation), citationWidth) + "  " +
             inOneLine(joined(citations[index].records, " | ")) + '\n';
  }
  return table;
}

std::string checkJSON(std::span<const CheckedCitation> citations) {
  std::string json = "[";
  for (const CheckedCitation &entry : citations) {
    json += &entry == &citations.front() ? "\n  {\"citation\": " : ",\n  {\"citation\": ";
    appendJSONString(json, entry.citation);
    json += ", \"records\": [";
    for (const std::string &record : entry.records) {
      if (&record != &entry.records.front()) {
        json += ", ";
      }
      appendJSONString(json, record);
    }
    json += "]}";
  }
  return json + (citations.empty() ? "]\n" : "\n]\n");
}

}  // namespace mellel::commands
