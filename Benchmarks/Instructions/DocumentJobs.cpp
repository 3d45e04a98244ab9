// A word processor's document: its citations found, and a copy written with formatted ones.

#include "Job.h"

#include <StandIns/Mellel/RTF/DocumentRewriting.h>

#include <string>
#include <vector>

namespace benchmarks {

namespace {

using mellel::rtf::RichText;

constexpr std::size_t citationCount = 1'000;

// Paragraphs as a word processor writes them, some citations broken up by formatting.
std::string draft() {
  std::string rtf = "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Times;}}\\f0\\fs24\n";
  for (std::size_t index = 0; index < citationCount; ++index) {
    const std::string name = index % 3 == 0 ? "{\\loch\\f0 Sm}{\\i ith}" : "M\\'fcller";
    rtf += "{\\b The} weather of the year was observed at length and measured \\{" + name +
           " 1999#KEY" + std::to_string(index) + "@45\\} in several places.\\par\n";
  }
  return rtf + "\\{bibliography\\}\\par}";
}

std::function<void()> findCitations() {
  return [rtf = draft()] {
    const auto document = mellel::rtf::readDocumentText(rtf);
    require(document && document->citations.size() == citationCount, "find citations");
  };
}

std::function<void()> writeCopy() {
  const std::string rtf = draft();
  const auto document = mellel::rtf::readDocumentText(rtf);
  const auto text = mellel::rtf::readPidginRTF("(Smith, {\\i 1999})");
  require(document && text, "read a draft");
  const std::vector<std::optional<RichText>> texts(citationCount, *text);
  return [rtf, document = *document, texts] {
    require(mellel::rtf::formattedDocument(rtf, document, texts, {}).size() > rtf.size() / 2,
            "write a copy");
  };
}

}  // namespace

std::vector<Job> documentJobs() {
  return {{"find 1,000 citations in an RTF document", findCitations},
          {"write 1,000 formatted citations into it", writeCopy}};
}

}  // namespace benchmarks
