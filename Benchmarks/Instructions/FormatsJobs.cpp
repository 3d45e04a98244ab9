// What travels between the two applications, decoded and encoded.

#include "Citations.h"
#include "Job.h"
#include "MixedText.h"

#include <Formats/CitationText.h>
#include <Formats/PidginRTFReader.h>
#include <Formats/PidginRTFWriter.h>
#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>
#include <Formats/Unicode.h>

#include <string>
#include <vector>

namespace benchmarks {

namespace {

constexpr std::size_t citationCount = 10'000;
constexpr std::size_t textLength = 200'000;  // UTF-16 code units

std::string request() {
  std::vector<std::string> texts(citationCount);
  std::vector<formats::CitationPair> citations(citationCount);
  for (std::size_t index = 0; index < citationCount; ++index) {
    texts[index] = citationAt(index);
    citations[index] = {texts[index], {}};
  }
  return formats::encodeFinalScanRequest(7, true, "apa", citations);
}

std::function<void()> decodeRequest() {
  return [payload = request()] {
    require(formats::decodeFinalScanRequest(payload).citations.size() == citationCount,
            "decode a final scan");
  };
}

std::function<void()> parseCitations() {
  std::vector<std::u16string> texts;
  for (std::size_t index = 0; index < citationCount; ++index) {
    texts.push_back(formats::decodeUTF8(citationAt(index)));
  }
  return [texts] {
    std::size_t tags = 0;
    for (const std::u16string &text : texts) {
      tags += formats::parseCitationText(text).tag.has_value();
    }
    require(tags == citationCount, "parse citations");
  };
}

std::function<void()> escapeText() {
  return [text = mixedText(textLength)] {
    require(formats::pidginRTF(text, formats::ControlCharacters::escaped).size() > text.size(),
            "escape a text");
  };
}

std::function<void()> readRTF() {
  return [rtf = mixedRTF(textLength)] {
    const std::size_t length = formats::textOfPidginRTF(rtf).size();
    require(length > 0 && length < rtf.size(), "read RTF");
  };
}

std::function<void()> convertUTF8() {
  return [text = mixedText(textLength)] {
    require(formats::decodeUTF8(formats::encodeUTF8(text)) == text, "to UTF-8 and back");
  };
}

// Sized, written, and read by the other side.
std::function<void()> assembleReply() {
  std::vector<std::u16string> groups;
  for (std::size_t index = 0; index < citationCount; ++index) {
    groups.push_back(formats::decodeUTF8("(" + citationAt(index) + ")"));
  }
  return [groups] {
    const std::u16string_view styleName = u"apa";
    std::size_t size = formats::scanReplyFixedSize + formats::sizeOfString(styleName);
    for (const std::u16string &group : groups) {
      size += formats::sizeOfString(group);
    }
    std::string bytes(size, '\0');
    formats::PayloadWriter writer(bytes);
    formats::writeScanReplyHeader(writer,
                                  {.documentID = 7,
                                   .styleName = styleName,
                                   .groupCount = static_cast<std::uint32_t>(groups.size())});
    for (const std::u16string &group : groups) {
      writer.writeString(group);
    }
    const auto reply = formats::decodeScanReply(bytes);
    require(writer.written() == size && reply && reply->groups.size() == groups.size(),
            "assemble a reply");
  };
}

}  // namespace

std::vector<Job> formatsJobs() {
  return {{"decode a final scan of 10,000 citations", decodeRequest},
          {"parse 10,000 citations", parseCitations},
          {"escape 200,000 characters to pidgin RTF", escapeText},
          {"read 200,000 characters of pidgin RTF", readRTF},
          {"200,000 characters to UTF-8 and back", convertUTF8},
          {"assemble and decode a reply of 10,000 groups", assembleReply}};
}

}  // namespace benchmarks
