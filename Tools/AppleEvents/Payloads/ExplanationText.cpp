#include "ExplanationText.h"

#include <Formats/Unicode.h>

#include <algorithm>
#include <array>

namespace appleevents {

using terminal::TerminalText;

namespace {

constexpr std::size_t longestValue = 160;  // bytes

std::string hexOf(std::string_view bytes, std::string_view separator) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    text += text.empty() ? "" : separator;
    text += digits[byte >> 4];
    text += digits[byte & 0xF];
  }
  return text;
}

// Cut between two characters.
std::string shortened(std::string_view text) {
  if (text.size() <= longestValue) {
    return std::string(text);
  }
  std::size_t end = longestValue;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
    --end;
  }
  return std::string(text.substr(0, end)) + "…";
}

std::string_view nameOf(Content content) {
  constexpr std::array<std::string_view, 8> names = {
      "number", "document ID", "bytes", "text", "citation", "records", "pidgin RTF", "RTF"};
  return names[static_cast<std::size_t>(content)];
}

TerminalText rightAligned(std::size_t number, std::size_t width) {
  const TerminalText digits = TerminalText::number(number);
  return TerminalText::blanks(width - std::min(width, digits.text().size())) + digits;
}

TerminalText padded(std::string_view text, std::size_t width) {
  return TerminalText::inOneLine(text) + TerminalText::blanks(width - std::min(width, text.size()));
}

TerminalText textOfField(const Field &field, std::size_t nameWidth) {
  constexpr std::size_t numberWidth = 8;
  TerminalText line = rightAligned(field.offset, numberWidth) +
                      rightAligned(field.size, numberWidth) + "  " + padded(field.name, nameWidth) +
                      "  " + TerminalText::inOneLine(valueInWords(field));
  if (!field.meaning.empty()) {
    line += ": " + TerminalText::inOneLine(shortened(field.meaning));
  }
  return line + "\n";
}

TerminalText jsonValue(const Field &field) {
  if (isNumber(field.content)) {
    return TerminalText::number(field.number);
  }
  const bool isText = field.content != Content::bytes &&
                      formats::encodeUTF8(formats::decodeUTF8(field.bytes)) == field.bytes;
  return TerminalText::inJSON(isText ? std::string(field.bytes) : hexOf(field.bytes, ""));
}

TerminalText jsonCode(formats::FourCharacterCode code) {
  std::string text = inQuotes(code);
  std::erase(text, '\'');
  return TerminalText::inJSON(text);
}

TerminalText jsonOfField(const Field &field) {
  return "{\"offset\": " + TerminalText::number(field.offset) +
         ", \"size\": " + TerminalText::number(field.size) +
         ", \"name\": " + TerminalText::inJSON(field.name) +
         ", \"content\": " + TerminalText::inJSON(nameOf(field.content)) +
         ", \"value\": " + jsonValue(field) +
         ", \"meaning\": " + TerminalText::inJSON(field.meaning) + "}";
}

TerminalText jsonOfFinding(const Finding &finding) {
  return "{\"severity\": " +
         TerminalText(finding.severity == Severity::broken ? terminal::Words("\"broken\"")
                                                           : terminal::Words("\"odd\"")) +
         ", \"offset\": " + TerminalText::number(finding.offset) +
         ", \"line\": " + TerminalText::inJSON(finding.line) + "}";
}

template <typename Things, typename MakeJSON>
TerminalText jsonArray(const Things &things, MakeJSON makeJSON) {
  TerminalText array("[");
  bool isFirst = true;
  for (const auto &thing : things) {
    array += isFirst ? TerminalText() : TerminalText(", ");
    array += makeJSON(thing);
    isFirst = false;
  }
  return array + "]";
}

}  // namespace

std::string valueInWords(const Field &field) {
  if (isNumber(field.content)) {
    return std::to_string(field.number);
  }
  if (field.content == Content::bytes) {
    return shortened(hexOf(field.bytes.substr(0, longestValue), " "));
  }
  return '"' + shortened(field.bytes) + '"';
}

TerminalText headline(const EventKind &kind) {
  TerminalText line = TerminalText::inOneLine(inQuotes(kind.eventClass)) + " " +
                      TerminalText::inOneLine(inQuotes(kind.eventID)) + ", " +
                      TerminalText::inOneLine(kind.name);
  line += kind.sender == Sender::host ? TerminalText(", from the host")
                                      : TerminalText(", from the word processor");
  return line;
}

TerminalText explanationText(const Explanation &explanation) {
  TerminalText text = headline(explanation.kind) + ": ";
  text += TerminalText::number(explanation.size) + " bytes\n";
  if (!explanation.summary.empty()) {
    text += TerminalText::inOneLine(shortened(explanation.summary)) + "\n";
  }
  std::size_t nameWidth = 0;
  for (const Field &field : explanation.fields) {
    nameWidth = std::max(nameWidth, field.name.size());
  }
  if (!explanation.fields.empty()) {
    text += TerminalText("\n  offset   bytes  field\n");
  }
  for (const Field &field : explanation.fields) {
    text += textOfField(field, nameWidth);
  }
  text += explanation.findings.empty() ? TerminalText("\nnothing is wrong\n") : TerminalText("\n");
  for (const Finding &finding : explanation.findings) {
    text += finding.severity == Severity::broken ? TerminalText("broken: ") : TerminalText("odd: ");
    text += "at byte " + TerminalText::number(finding.offset) + ": " +
            TerminalText::inOneLine(shortened(finding.line)) + "\n";
  }
  return text;
}

TerminalText explanationJSON(const Explanation &explanation) {
  return "{\"class\": " + jsonCode(explanation.kind.eventClass) +
         ", \"id\": " + jsonCode(explanation.kind.eventID) + ", \"reply\": " +
         TerminalText(explanation.kind.isReply ? terminal::Words("true")
                                               : terminal::Words("false")) +
         ", \"name\": " + TerminalText::inJSON(explanation.kind.name) +
         ", \"size\": " + TerminalText::number(explanation.size) +
         ", \"summary\": " + TerminalText::inJSON(explanation.summary) +
         ", \"fields\": " + jsonArray(explanation.fields, jsonOfField) +
         ", \"findings\": " + jsonArray(explanation.findings, jsonOfFinding) + "}\n";
}

}  // namespace appleevents
