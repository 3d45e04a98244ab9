#include <SubstituteHostApplication/Effects.h>

#include <cstdio>
#include <string>

namespace application {
namespace {

void appendInOneLine(std::string &output, std::string_view line) {
  for (const char byte : line) output += byte == '\n' || byte == '\r' ? ' ' : byte;
  output += '\n';
}

std::string_view withoutLineBreaksAround(std::string_view text) {
  const std::size_t begin = text.find_first_not_of("\r\n");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of("\r\n") - begin + 1);
}

// Whole lines in one piece. A reader that has gone is no concern of the host's.
void write(const std::string &output) {
  (void)std::fwrite(output.data(), 1, output.size(), stdout);
  (void)std::fflush(stdout);
}

}  // namespace

void announce(std::string_view line) {
  std::string output;
  appendInOneLine(output, line);
  write(output);
}

void announceNotice(std::string_view header, std::string_view text) {
  std::string output;
  appendInOneLine(output, "notice: " + std::string(header));
  text = withoutLineBreaksAround(text);
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    output += ' ';
    appendInOneLine(output, text.substr(0, end));
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  }
  write(output);
}

}  // namespace application
