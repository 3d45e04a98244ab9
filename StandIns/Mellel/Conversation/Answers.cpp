#include "Answers.h"

#include <Formats/CitationResolution.h>
#include <Formats/CitationText.h>
#include <Formats/PayloadReader.h>
#include <Formats/RecordMarkup.h>
#include <Formats/ScanReply.h>
#include <Formats/Unicode.h>
#include <Formats/VerifiedMarker.h>
#include <StandIns/Mellel/RTF/PlainText.h>

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace mellel::conversation {

using rtf::Citation;
using rtf::isBlankText;
using rtf::plainText;
using rtf::readBibliography;
using rtf::readPidginRTF;
using rtf::RichText;

namespace {

// What is no UTF-8 becomes U+FFFD: it would swallow the characters that follow it.
std::string wellFormed(std::string_view text) {
  return formats::isASCII(text) ? std::string(text)
                                : formats::encodeUTF8(formats::decodeUTF8(text));
}

std::string countOf(std::size_t count, std::string_view things) {
  return std::to_string(count) + ' ' + std::string(things);
}

std::expected<void, std::string> checkBelongs(std::string_view answer, std::uint32_t documentID,
                                              std::uint32_t expectedID, std::size_t count,
                                              std::size_t expectedCount) {
  if (documentID != expectedID) {
    return std::unexpected(std::string(answer) + " belongs to another document");
  }
  if (count != expectedCount) {
    return std::unexpected(std::string(answer) + " holds " + countOf(count, "citations") +
                           " where " + std::to_string(expectedCount) + " were asked for");
  }
  return {};
}

// Whether there is a citation in the text and all of them ask not to be shown.
bool asksToBeHidden(std::string_view citation) {
  const std::u16string text = formats::decodeUTF8(formats::withoutVerifiedMarkers(citation));
  bool isHidden = false;
  for (const std::u16string_view component : formats::citationComponents(text)) {
    const formats::CitationText parsed = formats::parseCitationText(component);
    if (parsed.searchText.empty()) {
      continue;
    }
    if (!parsed.excludeFromBody) {
      return false;
    }
    isHidden = true;
  }
  return isHidden;
}

// A document cites the same works again and again: most of its formatted texts come several times.
class TextsOfReply {
 public:
  std::expected<RichText, std::string> read(std::string_view pidgin) {
    const auto [place, isNew] = read_.try_emplace(pidgin);
    if (isNew) {
      place->second = readPidginRTF(wellFormed(pidgin));
    }
    return place->second;
  }

 private:
  std::unordered_map<std::string_view, std::expected<RichText, std::string>> read_;
};

std::expected<formats::CitationResolution, std::string> decodeResolution(
    std::string_view payload, std::uint32_t documentID, std::size_t citationCount) {
  auto resolution = formats::decodeCitationResolution(payload);
  if (!resolution) {
    return resolution;
  }
  if (const auto belongs = checkBelongs("citation resolution", resolution->documentID, documentID,
                                        resolution->citations.size(), citationCount);
      !belongs) {
    return std::unexpected(belongs.error());
  }
  return resolution;
}

// A text that shows nothing does not take a citation's place, unless the citation asks for that.
bool isFormatted(const RichText &text, std::string_view citation) {
  const std::string plain = plainText(text);
  if (isBlankText(plain)) {
    return asksToBeHidden(citation);
  }
  return !(plain.starts_with('{') && plain.ends_with('}'));
}

}  // namespace

std::optional<std::uint32_t> documentIDOfAnswer(std::string_view payload) {
  // All of them begin with a reserved word.
  constexpr std::size_t sizeOfBeginning = 6;
  if (payload.size() < sizeOfBeginning) {
    return std::nullopt;
  }
  formats::PayloadReader reader(payload);
  reader.readUInt16();
  return reader.readUInt32();
}

std::size_t FormattedCitations::count() const {
  return static_cast<std::size_t>(
      std::count_if(texts.begin(), texts.end(), [](const auto &text) { return text.has_value(); }));
}

std::expected<FormattedCitations, std::string> readScanReply(std::string_view payload,
                                                             std::uint32_t documentID,
                                                             std::span<const Citation> citations,
                                                             bool wantsBibliography) {
  const auto reply = formats::decodeScanReply(payload);
  if (!reply) {
    return std::unexpected(reply.error());
  }
  if (const auto belongs = checkBelongs("scan reply", reply->documentID, documentID,
                                        reply->groups.size(), citations.size());
      !belongs) {
    return std::unexpected(belongs.error());
  }
  FormattedCitations formatted;
  formatted.styleName = wellFormed(reply->styleName);
  formatted.texts.reserve(citations.size());
  TextsOfReply texts;
  for (std::size_t index = 0; index < citations.size(); ++index) {
    auto text = texts.read(reply->groups[index]);
    if (!text) {
      return std::unexpected("scan reply: for {" + citations[index].text + "}: " + text.error());
    }
    const bool counts = isFormatted(*text, citations[index].text);
    formatted.texts.push_back(counts ? std::optional(std::move(*text)) : std::nullopt);
  }
  // The host may send one that was asked for earlier.
  if (wantsBibliography && reply->bibliography) {
    auto bibliography = readBibliography(*reply->bibliography);
    if (!bibliography) {
      return std::unexpected("the bibliography is broken: " + bibliography.error());
    }
    formatted.bibliography = std::move(*bibliography);
  }
  return formatted;
}

std::expected<void, std::string> checkCitationResolution(std::string_view payload,
                                                         std::uint32_t documentID,
                                                         std::size_t citationCount) {
  const auto resolution = decodeResolution(payload, documentID, citationCount);
  if (!resolution) {
    return std::unexpected(resolution.error());
  }
  return {};
}

std::expected<std::vector<CheckedCitation>, std::string> readCitationResolution(
    std::string_view payload, std::uint32_t documentID, std::size_t citationCount) {
  const auto resolution = decodeResolution(payload, documentID, citationCount);
  if (!resolution) {
    return std::unexpected(resolution.error());
  }
  std::vector<CheckedCitation> checked;
  checked.reserve(citationCount);
  for (const formats::ResolvedCitation &resolved : resolution->citations) {
    CheckedCitation &entry = checked.emplace_back();
    entry.citation = wellFormed(resolved.citation);
    for (const std::string_view record : formats::tagsInRecordMarkup(resolved.markup)) {
      entry.records.push_back(wellFormed(record));
    }
  }
  return checked;
}

}  // namespace mellel::conversation
