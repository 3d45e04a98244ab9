// Payloads for the tests of the tool.
#pragma once

#include <Tests/Support/Files.h>
#include <Tools/AppleEvents/Payloads/HexReader.h>

#include <map>
#include <string>
#include <string_view>

namespace appleevents_test {

using namespace std::string_literals;
using namespace std::string_view_literals;

// The examples of Documentation/WireFormats.md, by their names, as they are written there.
inline std::map<std::string, std::string> writtenExamples() {
  constexpr std::string_view fence = "```hex ";
  const std::string page = test_support::readFile(WIRE_FORMATS_PAGE);
  std::map<std::string, std::string> examples;
  for (std::size_t start = page.find(fence); start != std::string::npos;
       start = page.find(fence, start + 1)) {
    const std::size_t name = start + fence.size();
    const std::size_t text = page.find('\n', name) + 1;
    examples[page.substr(name, text - 1 - name)] = page.substr(text, page.find("```", text) - text);
  }
  return examples;
}

// Their bytes.
inline std::map<std::string, std::string> examples() {
  std::map<std::string, std::string> bytes;
  for (const auto &[name, text] : writtenExamples()) {
    bytes[name] = appleevents::readHex(text).value_or("");
  }
  return bytes;
}

}  // namespace appleevents_test
