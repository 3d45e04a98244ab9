#include "Effects.h"

#include <Formats/OneLine.h>

#include <cstdio>
#include <string>

namespace korvo::application {

using formats::inOneLine;

namespace {

std::string_view withoutLineBreaksAround(std::string_view text) {
  const std::size_t begin = text.find_first_not_of("\r\n");
  if (begin == std::string_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of("\r\n") - begin + 1);
}

// Whole lines in one piece. A reader that has gone is no concern of the host's.
void write(const std::string &output, std::FILE *stream = stdout) {
  (void)std::fwrite(output.data(), 1, output.size(), stream);
  (void)std::fflush(stream);
}

}  // namespace

void announce(std::string_view line) { write(inOneLine(line) + '\n'); }

void announceNotice(std::string_view header, std::string_view text) {
  std::string output = "notice: " + inOneLine(header) + '\n';
  text = withoutLineBreaksAround(text);
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    output += ' ' + inOneLine(text.substr(0, end)) + '\n';
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  }
  write(output);
}

void complain(std::string_view line) { write("korvo: " + inOneLine(line) + '\n', stderr); }

}  // namespace korvo::application
