#include "Jobs.h"

#include "MixedText.h"

#include <Formats/CitationResolution.h>
#include <Formats/CitationText.h>
#include <Formats/Insertion.h>
#include <Formats/PayloadWriter.h>
#include <Formats/PidginRTFReader.h>
#include <Formats/PidginRTFWriter.h>
#include <Formats/RecordMarkup.h>
#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>
#include <Formats/Unicode.h>

#include <iconv.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace benchmarks {

namespace {

constexpr std::string_view citation =
    "{Watson and Crick 1953#WC1953@737\xE2\x80\x93"
    "738; G\xC3\xB6"
    "del 1931#G1931}";
constexpr std::string_view groupText = "({\\b Watson} & Crick, 1953; G\\uc0\\u246 del, {\\i 1931})";

// A function that owns its input.
template <typename Input, typename Use>
Job job(const std::string &name, Input input, std::size_t bytes, Use use) {
  return {name, bytes,
          [held = std::make_shared<const Input>(std::move(input)), use] { return use(*held); }};
}

Job fromBytes(const std::string &name, std::string input, std::size_t (*use)(const std::string &)) {
  const std::size_t bytes = input.size();
  return job(name, std::move(input), bytes, use);
}

Job fromText(const std::string &name, std::u16string input,
             std::size_t (*use)(const std::u16string &)) {
  const std::size_t bytes = input.size() * sizeof(char16_t);
  return job(name, std::move(input), bytes, use);
}

// What a program that has no Formats would call.
std::size_t convertWithIconv(const std::string &input) {
  const iconv_t converter = iconv_open("UTF-16LE", "UTF-8");
  if (converter == reinterpret_cast<iconv_t>(-1)) {
    throw std::runtime_error("iconv does not know UTF-16LE");
  }
  std::u16string output;
  std::size_t units = 0;
  output.resize_and_overwrite(input.size(), [&](char16_t *start, std::size_t) {
    char *from = const_cast<char *>(input.data());
    char *to = reinterpret_cast<char *>(start);
    std::size_t fromLeft = input.size();
    std::size_t toLeft = input.size() * sizeof(char16_t);
    iconv(converter, &from, &fromLeft, &to, &toLeft);
    units = input.size() - toLeft / sizeof(char16_t);
    return fromLeft == 0 ? units : 0;
  });
  iconv_close(converter);
  if (output.empty()) {
    throw std::runtime_error("iconv did not convert the text");
  }
  return output.size();
}

std::size_t copyBytes(const std::string &input) {
  std::string output;
  output.resize_and_overwrite(input.size(), [&](char *start, std::size_t) {
    std::memcpy(start, input.data(), input.size());
    return input.size();
  });
  return static_cast<unsigned char>(output.back()) + output.size();
}

std::vector<formats::CitationPair> citationPairs(std::size_t bytes) {
  return std::vector<formats::CitationPair>(bytes / (2 * citation.size() + 2),
                                            formats::CitationPair{citation, citation});
}

using Citations = std::vector<std::u16string>;

Citations citations(std::size_t bytes) {
  const std::u16string text = u"Watson and Crick 1953#WC1953@737\u2013738|see |^";
  return Citations(bytes / (text.size() * sizeof(char16_t)), text);
}

std::string scanReply(const std::vector<std::string_view> &groups) {
  std::size_t size = formats::scanReplyFixedSize + formats::sizeOfString(u"APA");
  for (const std::string_view group : groups) {
    size += group.size() + 1;
  }
  std::string payload(size, '\0');
  formats::PayloadWriter writer(payload);
  formats::writeScanReplyHeader(
      writer, {.styleName = u"APA", .groupCount = static_cast<std::uint32_t>(groups.size())});
  for (const std::string_view group : groups) {
    writer.writeStringUTF8(group);
  }
  payload.resize(writer.stored());
  return payload;
}

std::string resolution(std::size_t count) {
  const std::u16string text = formats::decodeUTF8(citation);
  const std::u16string markup = formats::recordMarkupForComponents(text);
  const std::size_t size = formats::citationResolutionFixedSize +
                           count * (formats::sizeOfString(text) + formats::sizeOfString(markup));
  std::string payload(size, '\0');
  formats::PayloadWriter writer(payload);
  formats::writeCitationResolutionHeader(writer, 1, static_cast<std::uint32_t>(count));
  for (std::size_t index = 0; index < count; ++index) {
    writer.writeString(text);
    writer.writeString(markup);
  }
  payload.resize(writer.stored());
  return payload;
}

std::string insertion(const std::u16string &text) {
  std::string payload(formats::sizeOfInsertion(text, text), '\0');
  formats::PayloadWriter writer(payload);
  formats::writeInsertion(writer, text, text);
  return payload;
}

std::u16string pidginOf(const std::u16string &text) {
  constexpr std::size_t runLength = 32;
  formats::PidginRTFWriter writer(text.size());
  for (std::size_t start = 0; start < text.size(); start += runLength) {
    const std::size_t pattern = start / runLength;
    writer.append(
        std::u16string_view(text).substr(start, runLength),
        {.bold = pattern % 2 != 0, .italic = pattern % 4 > 1, .superscript = pattern % 16 == 7});
  }
  return writer.finish();
}

void addConversions(std::vector<Job> &list, std::size_t bytes) {
  const std::u16string ascii = plainASCII(bytes);
  const std::u16string mixed = mixedText(bytes);
  const std::string asciiBytes = formats::encodeUTF8(ascii);
  const std::string mixedBytes = formats::encodeUTF8(mixed);
  const auto decode = [](const std::string &input) { return formats::decodeUTF8(input).size(); };
  const auto encode = [](const std::u16string &text) { return formats::encodeUTF8(text).size(); };
  list.push_back(fromBytes("memcpy", asciiBytes, copyBytes));
  list.push_back(fromBytes("iconv, ASCII", asciiBytes, convertWithIconv));
  list.push_back(fromBytes("iconv, mixed text", mixedBytes, convertWithIconv));
  list.push_back(fromBytes("decode UTF-8, ASCII", asciiBytes, decode));
  list.push_back(fromBytes("decode UTF-8, mixed text", mixedBytes, decode));
  list.push_back(fromText("encode UTF-8, ASCII", ascii.substr(0, bytes / 2), encode));
  list.push_back(fromText("encode UTF-8, mixed text", mixed.substr(0, bytes / 2), encode));
}

void addPidginRTF(std::vector<Job> &list, std::size_t bytes) {
  list.push_back(fromBytes(
      "RTF bytes to UTF-8 text", documentOfPidginRTF(bytes), [](const std::string &document) {
        return formats::encodeUTF8(formats::textOfPidginRTF(formats::decodeUTF8(document))).size();
      }));
  list.push_back(fromText("read pidgin RTF", mixedRTF(bytes / 2), [](const std::u16string &rtf) {
    return formats::textOfPidginRTF(rtf).size();
  }));
  list.push_back(fromText("write pidgin RTF, runs of 32 units", mixedText(bytes / 2),
                          [](const std::u16string &text) { return pidginOf(text).size(); }));
  list.push_back(
      fromText("escape pidgin RTF", mixedText(bytes / 2), [](const std::u16string &text) {
        return formats::pidginRTF(text, formats::ControlCharacters::escaped).size();
      }));
}

void addRequests(std::vector<Job> &list, std::size_t bytes) {
  using namespace formats;
  list.push_back(job("encode scan request", citationPairs(bytes), bytes, [](const auto &pairs) {
    return encodeFinalScanRequest(1, true, "APA", pairs).size();
  }));
  list.push_back(fromBytes("decode preliminary scan request",
                           encodePreliminaryScanRequest(1, citationPairs(bytes)),
                           [](const std::string &payload) {
                             return decodePreliminaryScanRequest(payload).citations.size();
                           }));
  list.push_back(fromBytes(
      "decode final scan request", encodeFinalScanRequest(1, true, "APA", citationPairs(bytes)),
      [](const std::string &payload) { return decodeFinalScanRequest(payload).citations.size(); }));
  list.push_back(job("parse citation", citations(bytes), bytes, [](const Citations &texts) {
    std::size_t sum = 0;
    for (const std::u16string &text : texts) {
      sum += parseCitationText(text).searchText.size();
    }
    return sum;
  }));
}

void addReplies(std::vector<Job> &list, std::size_t bytes) {
  using namespace formats;
  const std::vector<std::string_view> groups(bytes / (groupText.size() + 1), groupText);
  list.push_back(job("write scan reply", groups, bytes,
                     [](const auto &texts) { return scanReply(texts).size(); }));
  list.push_back(fromBytes("decode scan reply", scanReply(groups), [](const std::string &payload) {
    const auto reply = decodeScanReply(payload);
    return reply ? reply->groups.size() : 0;
  }));
  const std::size_t size = resolution(1).size() - citationResolutionFixedSize;
  list.push_back(job("write citation resolution", bytes / size, bytes,
                     [](std::size_t count) { return resolution(count).size(); }));
  list.push_back(fromBytes("decode citation resolution", resolution(bytes / size),
                           [](const std::string &payload) {
                             const auto decoded = decodeCitationResolution(payload);
                             return decoded ? decoded->citations.size() : 0;
                           }));
  list.push_back(job("make record markup", citations(bytes), bytes, [](const Citations &texts) {
    std::size_t sum = 0;
    for (const std::u16string &text : texts) {
      sum += recordMarkupForComponents(text).size();
    }
    return sum;
  }));
  list.push_back(fromText("write insertion", mixedText(bytes / 2),
                          [](const std::u16string &text) { return insertion(text).size(); }));
  list.push_back(fromBytes("decode insertion", insertion(mixedText(bytes / 2)),
                           [](const std::string &payload) {
                             const auto decoded = decodeInsertion(payload);
                             return decoded ? decoded->citation.size() : 0;
                           }));
}

}  // namespace

std::string documentOfPidginRTF(std::size_t bytes) {
  // Up to the end of a line, where no group is open: pandoc refuses others.
  std::string text = formats::encodeUTF8(mixedRTF(bytes));
  text.resize(text.rfind('\n') + 1);
  return "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Times New Roman;}}\n" + text + "}\n";
}

std::vector<Job> jobs(std::size_t bytes) {
  std::vector<Job> list;
  addConversions(list, bytes);
  addPidginRTF(list, bytes);
  addRequests(list, bytes);
  addReplies(list, bytes);
  return list;
}

}  // namespace benchmarks
