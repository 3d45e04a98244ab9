// The hex examples of Documentation/WireFormats.md, read from the page itself and compared
// with what the encoders make: documentation that goes out of date fails here.

#include "Payloads.h"

#include <Formats/CitationResolution.h>
#include <Formats/Insertion.h>
#include <Formats/PidginRTFWriter.h>
#include <Formats/RecordMarkup.h>
#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>
#include <Formats/SmallMessages.h>

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace formats;

// A line of an example: hex bytes with single blanks between them, then two blanks and a remark.
std::string bytesOfLine(const std::string &line) {
  return fromHex(line.substr(0, line.find("  ")));
}

// The examples of the page by name. One begins with "```hex NAME".
std::map<std::string, std::string> examplesOfThePage() {
  constexpr std::string_view fence = "```hex ";
  std::ifstream page(WIRE_FORMATS_PAGE);
  std::map<std::string, std::string> examples;
  std::string line;
  while (std::getline(page, line)) {
    if (!line.starts_with(fence)) {
      continue;
    }
    std::string &bytes = examples[line.substr(fence.size())];
    while (std::getline(page, line) && line != "```") {
      bytes += bytesOfLine(line);
    }
  }
  return examples;
}

template <std::size_t size>
std::string bytesOf(const std::array<char, size> &payload) {
  return {payload.begin(), payload.end()};
}

template <typename Write>
std::string written(std::size_t size, Write write) {
  std::string payload(size, '?');
  PayloadWriter writer(payload);
  write(writer);
  EXPECT_EQ(writer.written(), size);
  return payload;
}

std::string insertion() {
  const std::u16string markup = recordMarkupForInsertion(u"A");
  return written(sizeOfInsertion(u"A", markup),
                 [&](PayloadWriter &writer) { writeInsertion(writer, u"A", markup); });
}

std::string citationResolution() {
  const std::u16string markup = recordMarkupForComponents(u"A");
  return written(citationResolutionFixedSize + 2 + sizeOfInsertion(u"A", markup),
                 [&](PayloadWriter &writer) {
                   writeCitationResolutionHeader(writer, 7, 2);
                   writer.writeString(u"");
                   writer.writeString(recordMarkupForComponents(u""));
                   writer.writeString(u"A");
                   writer.writeString(markup);
                 });
}

std::string scanReply() {
  PidginRTFWriter group;
  group.append(u"1", {.bold = true});
  const std::u16string first = group.finish();
  const std::string bibliography = "{\\rtf1 x}";
  const std::size_t size = scanReplyFixedSize + sizeOfString(u"APA") + sizeOfString(first) +
                           sizeOfString(u"") + bibliography.size();
  return written(size, [&](PayloadWriter &writer) {
    writeScanReplyHeader(writer, {.documentID = 7,
                                  .usesSuperscript = true,
                                  .hasBibliography = true,
                                  .styleName = u"APA",
                                  .groupCount = 2});
    writer.writeString(first);
    writer.writeString(u"");
    writer.writeBytes(bibliography);
  });
}

TEST(WireFormatsPage, EveryExampleIsWhatTheEncodersMake) {
  const std::vector<CitationPair> preliminaryPairs = {{"Smith", ""}, {"verified A;B", ""}};
  const std::vector<CitationPair> finalPairs = {{"Smith", "x"}, {"verified A", "Müller"}};
  const std::map<std::string, std::string> expected = {
      {"handshake", bytesOf(encodeHandshake({.first = 1, .second = 2}))},
      {"preferences", bytesOf(encodePreferences())},
      {"insertion", insertion()},
      {"find", "Smith#A\0"s},
      {"preliminary-scan", encodePreliminaryScanRequest(7, preliminaryPairs)},
      {"citation-resolution", citationResolution()},
      {"final-scan", encodeFinalScanRequest(7, true, "APA", finalPairs)},
      {"scan-reply", scanReply()},
      {"cancel", bytesOf(encodeCancel(7))}};
  EXPECT_EQ(examplesOfThePage(), expected);
}

}  // namespace
