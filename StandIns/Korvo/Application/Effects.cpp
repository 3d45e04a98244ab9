#include "Effects.h"

#include <StandIns/Terminal/Output.h>

namespace korvo::application {

using terminal::TerminalText;

namespace {

std::string_view withoutLineBreaksAround(std::string_view text) {
  const std::size_t begin = text.find_first_not_of("\r\n");
  if (begin == std::string_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of("\r\n") - begin + 1);
}

}  // namespace

void announce(std::string_view line) { terminal::print(TerminalText::inOneLine(line) + "\n"); }

void announceNotice(std::string_view header, std::string_view text) {
  TerminalText output = "notice: " + TerminalText::inOneLine(header) + "\n";
  text = withoutLineBreaksAround(text);
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    output += " " + TerminalText::inOneLine(text.substr(0, end)) + "\n";
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  }
  terminal::print(output);
}

void complain(std::string_view line) {
  terminal::printError("korvo: " + TerminalText::inOneLine(line) + "\n");
}

}  // namespace korvo::application
