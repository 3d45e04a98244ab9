#include "Explanation.h"

#include "FieldReader.h"
#include "TextMeanings.h"

#include <Formats/RecordMarkup.h>
#include <Formats/ScanRequest.h>
#include <Formats/SmallMessages.h>
#include <Formats/Unicode.h>
#include <Formats/VerifiedMarker.h>

#include <algorithm>

namespace appleevents {

namespace {

constexpr std::uint32_t set = 0xFF;

std::string inQuotationMarks(std::string_view text) { return '"' + std::string(text) + '"'; }

std::string numbered(std::string_view thing, std::size_t number) {
  return std::string(thing) + ' ' + std::to_string(number);
}

std::uint32_t readDocumentID(FieldReader &reader) {
  return reader.readNumber(4, "document ID", Content::documentID);
}

void checkCount(FieldReader &reader, std::uint32_t announced, std::size_t count,
                std::string_view thing) {
  if (announced != count) {
    reader.broken("announces " + countOf(announced, thing) + ", but " + std::to_string(count) +
                  (count == 1 ? " is there" : " are there"));
  }
}

// The receiver's own opinion: the limits of a request.
template <typename Request>
void checkLimits(const Request &request, Explanation &explanation) {
  if (request.exceeded) {
    explanation.findings.push_back(
        {Severity::broken, 0, "refused as a whole: " + inWords(*request.exceeded)});
  }
}

void explainHandshake(FieldReader &reader, Explanation &explanation) {
  reader.readNumber(2, "first value");
  reader.readNumber(2, "second value");
  if (!reader.atEnd()) {
    reader.readRest("surplus", Content::bytes);
    reader.odd("is not read");
  }
  explanation.summary = "asks for the preferences";
}

void explainPreferences(FieldReader &reader, Explanation &explanation) {
  for (std::size_t index = 0; index < formats::preferenceFields.size(); ++index) {
    const std::uint32_t value = reader.readNumber(2, numbered("value", index + 1));
    const std::uint32_t expected = formats::preferenceFields[index];
    if (value != expected) {
      reader.broken("is " + std::to_string(value) + ", and " + std::to_string(expected) +
                    " in this version");
    }
  }
  reader.expectEnd();
  explanation.summary = explanation.isBroken() ? "not those of this version" : "as always";
}

void explainCancel(FieldReader &reader, Explanation &explanation) {
  reader.readReserved(2, "reserved");
  explanation.summary = numbered("document", readDocumentID(reader)) + ", no answer will come";
  reader.expectEnd();
}

// The text of a citation, with what the host reads in it.
std::string_view readCitation(FieldReader &reader, const std::string &name) {
  const std::string_view citation = reader.readText(name, Content::citation);
  reader.mean(meaningOfCitation(formats::withoutVerifiedMarkers(citation)));
  return citation;
}

void explainFind(FieldReader &reader, Explanation &explanation) {
  const std::string_view citation = readCitation(reader, "citation");
  if (!reader.atEnd()) {
    reader.readRest("surplus", Content::bytes);
    reader.odd("is not read");
  }
  explanation.summary = inQuotationMarks(citation);
}

// The records of a text, and whether they are what the rules make of the citation.
void readRecords(FieldReader &reader, const std::string &name, std::u16string_view expected) {
  const std::string_view records = reader.readText(name, Content::records);
  std::string tags;
  for (const std::string_view tag : formats::tagsInRecordMarkup(records)) {
    tags.append(tags.empty() ? "" : ", ").append(inQuotationMarks(tag));
  }
  reader.mean(tags.empty() ? "no record" : "records of " + tags);
  if (formats::decodeUTF8(records) != expected) {
    reader.broken("is not the record text of its citation");
  }
}

void explainInsertion(FieldReader &reader, Explanation &explanation) {
  const std::string_view citation = readCitation(reader, "citation");
  const bool hasRecord = !reader.atEnd();
  readRecords(reader, "record",
              hasRecord ? formats::recordMarkupForInsertion(formats::decodeUTF8(citation)) : u"");
  reader.expectEnd();
  explanation.summary = inQuotationMarks(citation);
}

void explainPreliminaryScan(FieldReader &reader, Explanation &explanation,
                            std::string_view payload) {
  reader.readReserved(2, "reserved");
  const std::uint32_t documentID = readDocumentID(reader);
  const std::uint32_t announced = reader.readNumber(4, "number of pairs");
  std::size_t count = 0;
  while (!reader.atEnd()) {
    ++count;
    readCitation(reader, numbered("pair", count) + ", citation");
    reader.readText(numbered("pair", count) + ", second text", Content::citation);
    reader.mean("ignored");
  }
  checkCount(reader, announced, count, "pair");
  checkLimits(formats::decodePreliminaryScanRequest(payload), explanation);
  explanation.summary = numbered("document", documentID) + ", " + countOf(count, "citation");
}

void explainPair(FieldReader &reader, std::size_t number) {
  const std::string pair = numbered("pair", number);
  const std::string_view first = reader.readText(pair + ", A", Content::citation);
  const bool takesSecond = first.empty() || first.starts_with("verified");
  reader.mean(takesSecond ? "not taken: B is"
                          : "taken: " + meaningOfCitation(formats::withoutVerifiedMarkers(first)));
  const std::string_view second = reader.readText(pair + ", B", Content::citation);
  reader.mean(takesSecond ? "taken: " + meaningOfCitation(formats::withoutVerifiedMarkers(second))
                          : "not taken: A is");
}

void explainScanRequest(FieldReader &reader, Explanation &explanation, std::string_view payload) {
  reader.readReserved(2, "reserved");
  const std::uint32_t documentID = readDocumentID(reader);
  const std::uint32_t bibliography = reader.readNumber(1, "bibliography");
  reader.mean(bibliography == set ? "wanted" : "as an earlier request left it");
  if (bibliography != set && bibliography != 0) {
    reader.odd("is neither 0 nor 255, and counts as 0");
  }
  reader.readReserved(3, "unused");
  const std::string_view style = reader.readText("style", Content::text);
  const std::uint32_t announced = reader.readNumber(4, "number of pairs");
  std::size_t count = 0;
  while (!reader.atEnd()) {
    explainPair(reader, ++count);
  }
  checkCount(reader, announced, count, "pair");
  checkLimits(formats::decodeFinalScanRequest(payload), explanation);
  explanation.summary =
      numbered("document", documentID) + ", " + countOf(count, "citation") +
      (style.empty() ? ", no style named" : ", style " + inQuotationMarks(style)) +
      (bibliography == set ? ", with a bibliography" : "");
}

void explainCitationResolution(FieldReader &reader, Explanation &explanation) {
  reader.readReserved(2, "reserved");
  const std::uint32_t documentID = readDocumentID(reader);
  const std::uint32_t announced = reader.readNumber(4, "number of entries");
  std::uint32_t count = 0;
  while (count < announced && !reader.atEnd()) {
    ++count;
    const std::string_view citation = readCitation(reader, numbered("citation", count));
    const bool hasRecords = !reader.atEnd();
    readRecords(
        reader, numbered("records", count),
        hasRecords ? formats::recordMarkupForComponents(formats::decodeUTF8(citation)) : u"");
  }
  checkCount(reader, announced, count, "citation");
  reader.expectEnd();
  explanation.summary = numbered("document", documentID) + ", " + countOf(count, "citation");
}

bool readFlag(FieldReader &reader, const std::string &name, std::string_view meaning) {
  const std::uint32_t value = reader.readNumber(1, name);
  reader.mean(value != 0 ? std::string(meaning) : "");
  if (value != 0 && value != set) {
    reader.broken("is neither 0 nor 255");
  }
  return value != 0;
}

void explainScanReply(FieldReader &reader, Explanation &explanation) {
  reader.readReserved(2, "reserved");
  const std::uint32_t documentID = readDocumentID(reader);
  reader.readReserved(4, "reserved");
  reader.readReserved(1, "reserved");
  readFlag(reader, "superscript", "the style sets its citations in superscript");
  const bool hasBibliography = readFlag(reader, "bibliography flag", "one follows");
  reader.readReserved(1, "reserved");
  const std::string_view style = reader.readText("style", Content::text);
  const std::uint32_t announced = reader.readNumber(4, "number of groups");
  const bool isPossible = announced <= reader.remaining();
  std::uint32_t count = 0;
  while (isPossible && count < announced && !reader.atEnd()) {
    const std::string_view text =
        reader.readText(numbered("text of group", ++count), Content::pidginRTF);
    reader.mean(inQuotationMarks(textOfPidgin(text)));
    if (const std::string fault = faultOfPidgin(text); !fault.empty()) {
      reader.broken(fault);
    }
  }
  checkCount(reader, announced, count, "group");
  if (hasBibliography) {
    reader.readRest("bibliography", Content::rtf);
  }
  reader.expectEnd();
  explanation.summary = numbered("document", documentID) + ", " + countOf(count, "text") +
                        ", style " + inQuotationMarks(style) +
                        (hasBibliography ? ", with a bibliography" : "");
}

void explainPayload(std::string_view payload, Explanation &explanation) {
  FieldReader reader(payload, explanation);
  switch (explanation.kind.layout) {
    case Layout::nothing:
      if (!payload.empty()) {
        reader.readRest("data", Content::bytes);
        reader.odd("is not read");
      }
      return;
    case Layout::handshake:
      return explainHandshake(reader, explanation);
    case Layout::preferences:
      return explainPreferences(reader, explanation);
    case Layout::insertion:
      return explainInsertion(reader, explanation);
    case Layout::find:
      return explainFind(reader, explanation);
    case Layout::preliminaryScan:
      return explainPreliminaryScan(reader, explanation, payload);
    case Layout::citationResolution:
      return explainCitationResolution(reader, explanation);
    case Layout::scanRequest:
      return explainScanRequest(reader, explanation, payload);
    case Layout::scanReply:
      return explainScanReply(reader, explanation);
    case Layout::cancel:
      return explainCancel(reader, explanation);
  }
}

}  // namespace

bool isNumber(Content content) {
  return content == Content::number || content == Content::documentID;
}

bool Explanation::isBroken() const {
  return std::ranges::any_of(
      findings, [](const Finding &finding) { return finding.severity == Severity::broken; });
}

Explanation explain(const EventKind &kind, std::optional<std::string_view> payload) {
  Explanation explanation;
  explanation.kind = kind;
  if (!payload) {
    // The reply is the place for the answer to a live bibliography; without data it was cancelled.
    explanation.summary = kind.layout == Layout::nothing ? "" : "without data";
    if (kind.layout != Layout::nothing && !kind.isReply) {
      explanation.findings.push_back({Severity::broken, 0, "there is no data at all"});
    }
    return explanation;
  }
  explanation.size = payload->size();
  explainPayload(*payload, explanation);
  return explanation;
}

std::optional<EventKind> guessKind(std::string_view payload) {
  const auto fits = [&](const EventKind &kind) {
    return kind.layout != Layout::nothing && explain(kind, payload).findings.empty();
  };
  const auto kinds = eventKinds();
  const auto found = std::ranges::find_if(kinds, fits);
  return found == kinds.end() ? std::nullopt : std::optional(*found);
}

}  // namespace appleevents
