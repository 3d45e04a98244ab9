#include "Report.h"

#include <algorithm>

namespace mellel::commands {

using conversation::CheckedCitation;
using conversation::FormattedCitations;
using rtf::DocumentText;
using terminal::TerminalText;
using terminal::Words;

namespace {

TerminalText counted(std::size_t count, Words one, Words several) {
  return TerminalText::number(count) + " " + (count == 1 ? one : several);
}

// In characters: good enough to line up columns of Latin, Greek and Cyrillic text.
std::size_t widthOf(const TerminalText &text) {
  return static_cast<std::size_t>(
      std::count_if(text.text().begin(), text.text().end(),
                    [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80; }));
}

TerminalText blanksUpTo(std::size_t width, const TerminalText &text) {
  const std::size_t own = widthOf(text);
  return TerminalText::blanks(own < width ? width - own : 0);
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

TerminalText bibliographyLine(const FormattedCitations &formatted, const DocumentText &document) {
  if (!formatted.bibliography) {
    return Words("bibliography: none came with the answer\n");
  }
  if (formatted.bibliography->empty()) {
    return Words("bibliography: it has no entries\n");
  }
  return "bibliography: " + counted(formatted.bibliography->size(), "entry", "entries") +
         (document.bibliographyPlace ? Words(" in place of {bibliography}\n")
                                     : Words(" at the end\n"));
}

Words truth(bool isTrue) { return isTrue ? Words("true") : Words("false"); }

TerminalText jsonOrNull(std::string_view text) {
  return text.empty() ? TerminalText("null") : TerminalText::inJSON(text);
}

}  // namespace

TerminalText formattingReport(const FormattedCopy &copy) {
  const FormattedCitations &formatted = copy.formatted;
  TerminalText report;
  if (!copy.output.empty()) {
    report = "wrote: " + TerminalText::inOneLine(copy.output) + "\n";
  }
  report += "style: " + TerminalText::inOneLine(formatted.styleName) +
            "\nformatted: " + TerminalText::number(formatted.count()) + " of " +
            counted(formatted.texts.size(), "citation", "citations") + "\n";
  for (std::size_t index = 0; index < formatted.texts.size(); ++index) {
    if (!formatted.texts[index]) {
      report +=
          "not formatted: {" + TerminalText::inOneLine(copy.document.citations[index].text) + "}\n";
    }
  }
  if (copy.footnotes > 0) {
    report += "footnotes: " + TerminalText::number(copy.footnotes) + "\n";
  }
  if (copy.wantsBibliography) {
    report += bibliographyLine(formatted, copy.document);
  }
  return report;
}

TerminalText formattingJSON(const FormattedCopy &copy) {
  const FormattedCitations &formatted = copy.formatted;
  TerminalText json = "{\"wrote\": " + jsonOrNull(copy.output) +
                      ",\n \"style\": " + TerminalText::inJSON(formatted.styleName) +
                      ",\n \"askedStyle\": " + jsonOrNull(copy.askedStyle) + ",\n \"citations\": [";
  for (std::size_t index = 0; index < formatted.texts.size(); ++index) {
    json += (index == 0 ? Words("\n  {\"citation\": ") : Words(",\n  {\"citation\": ")) +
            TerminalText::inJSON(copy.document.citations[index].text) +
            ", \"formatted\": " + truth(formatted.texts[index].has_value()) + "}";
  }
  json += "],\n \"footnotes\": " + TerminalText::number(copy.footnotes) + ",\n \"bibliography\": ";
  json += formatted.bibliography ? TerminalText::number(formatted.bibliography->size())
                                 : TerminalText("null");
  return json + "}\n";
}

TerminalText checkTable(std::span<const CheckedCitation> citations,
                        const std::vector<bool> &found) {
  const TerminalText numberTitle("#");
  const TerminalText citationTitle("Citation");
  constexpr std::size_t greatestColumn = 60;
  const std::size_t numberWidth = std::to_string(citations.size()).size();
  std::size_t citationWidth = widthOf(citationTitle);
  std::vector<TerminalText> texts;
  texts.reserve(citations.size());
  for (const CheckedCitation &entry : citations) {
    texts.push_back(TerminalText::inOneLine(entry.citation));
    citationWidth = std::max(citationWidth, std::min(widthOf(texts.back()), greatestColumn));
  }
  TerminalText table = blanksUpTo(numberWidth, numberTitle) + numberTitle + "  " + citationTitle +
                       blanksUpTo(citationWidth, citationTitle) + "  Found  Looked up as\n";
  for (std::size_t index = 0; index < citations.size(); ++index) {
    const TerminalText number = TerminalText::number(index + 1);
    table += blanksUpTo(numberWidth, number) + number + "  ";
    table += texts[index];
    table += blanksUpTo(citationWidth, texts[index]) +
             (found[index] ? Words("  yes    ") : Words("  no     ")) +
             TerminalText::inOneLine(joined(citations[index].records, " | ")) + "\n";
  }
  return table;
}

TerminalText checkJSON(std::span<const CheckedCitation> citations, const std::vector<bool> &found) {
  TerminalText json("[");
  for (std::size_t index = 0; index < citations.size(); ++index) {
    const CheckedCitation &entry = citations[index];
    json += index == 0 ? Words("\n  {\"citation\": ") : Words(",\n  {\"citation\": ");
    json += TerminalText::inJSON(entry.citation) + ", \"found\": " + truth(found[index]) +
            ", \"records\": [";
    for (const std::string &record : entry.records) {
      if (&record != &entry.records.front()) {
        json += Words(", ");
      }
      json += TerminalText::inJSON(record);
    }
    json += Words("]}");
  }
  return json + (citations.empty() ? Words("]\n") : Words("\n]\n"));
}

}  // namespace mellel::commands
