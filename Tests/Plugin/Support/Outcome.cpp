#include "Outcome.h"

#include <Formats/CitationResolution.h>
#include <Formats/CitationText.h>
#include <Formats/Insertion.h>
#include <Formats/ScanReply.h>
#include <Formats/Unicode.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <unordered_set>

namespace plugin_test {
namespace {

using Bytes = std::string_view;
using namespace std::string_literals;

// Bytes as if endless NULs followed them.
class Endless {
 public:
  explicit Endless(Bytes bytes) : bytes_(bytes) {}

  std::uint32_t number(std::size_t offset) const {
    std::uint32_t value = 0;
    for (std::size_t index = offset; index < offset + 4; ++index) {
      value = value << 8 | at(index);
    }
    return value;
  }
  unsigned char at(std::size_t index) const {
    return index < bytes_.size() ? static_cast<unsigned char>(bytes_[index]) : 0;
  }
  // Moves behind the text's NUL.
  std::string text(std::size_t &offset) const {
    std::string result;
    while (at(offset) != 0) {
      result += static_cast<char>(at(offset++));
    }
    ++offset;
    return result;
  }
  bool isBelowEnd(std::size_t offset) const { return offset < bytes_.size(); }

 private:
  Bytes bytes_;
};

std::string scrubbed(std::string text) {
  while (text.starts_with("verified ")) {
    text.erase(0, 9);
  }
  return text;
}

std::string wellFormed(const std::string &text) {
  return formats::encodeUTF8(formats::decodeUTF8(text));
}

std::vector<std::string> preliminaryCitations(const Endless &payload) {
  std::vector<std::string> citations;
  for (std::size_t offset = 10; payload.isBelowEnd(offset);) {
    citations.push_back(wellFormed(scrubbed(payload.text(offset))));
    payload.text(offset);
  }
  return citations;
}

struct Scan {
  std::uint32_t documentID = 0;
  bool wantsBibliography = false;
  std::string style;
  std::vector<std::string> citations;
};

Scan readScan(const Endless &payload) {
  Scan scan{payload.number(2), payload.at(6) == 0xFF, {}, {}};
  std::size_t offset = 10;
  scan.style = wellFormed(payload.text(offset));
  offset += 4;
  while (payload.isBelowEnd(offset)) {
    const std::string first = payload.text(offset);
    const std::string second = payload.text(offset);
    scan.citations.push_back(
        wellFormed(first.empty() || first.starts_with("verified") ? second : first));
  }
  return scan;
}

// "[2]" where two of the group's parts have something to search for.
std::string formattedGroup(const std::string &citation) {
  if (citation.empty()) {
    return "[0]";
  }
  const std::u16string text = formats::decodeUTF8(citation);
  int count = 0;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(u';', start), text.size());
    const std::u16string part = text.substr(start, end - start);
    count += formats::parseCitationText(part).searchText.empty() ? 0 : 1;
    start = end + 1;
  }
  return "[" + std::to_string(count) + "]";
}

bool begins(std::string_view text, std::initializer_list<std::string_view> words) {
  return std::ranges::any_of(words, [&](std::string_view word) { return text.starts_with(word); });
}

std::size_t countOf(const Outcome &outcome, std::string_view word) {
  return static_cast<std::size_t>(std::ranges::count_if(
      outcome.calls, [word](const std::string &call) { return call.starts_with(word); }));
}

// A call that begins with none of the words.
std::string unexpectedCall(const Outcome &outcome, std::initializer_list<std::string_view> words) {
  // Half a million groups make the same few calls.
  const std::unordered_set<std::string_view> calls(outcome.calls.begin(), outcome.calls.end());
  for (const std::string_view call : calls) {
    if (!begins(call, words)) {
      return "unexpected call: " + std::string(call);
    }
  }
  return {};
}

std::string cancelPayload(std::uint32_t documentID) {
  std::string payload(6, '\0');
  for (int index = 0; index < 4; ++index) {
    payload[2 + static_cast<std::size_t>(index)] =
        static_cast<char>(documentID >> (24 - 8 * index));
  }
  return payload;
}

bool isCancel(const Outcome &outcome) {
  return outcome.events == std::vector<std::string>{"Rmcr"} && outcome.activations >= 1;
}

bool isSilent(const Outcome &outcome) {
  return outcome.events.empty() && !outcome.reply && outcome.activations == 0;
}

std::string faultInHandshake(const Outcome &outcome) {
  const bool isRight = outcome.status == noErr && !outcome.reply &&
                       outcome.calls == std::vector<std::string>{"send PREF"} &&
                       outcome.payloads.at(0) == "\0\0\0\5\0\0\xFF\xFF\0\0\0\0\0\1"s;
  return isRight ? "" : "no preferences, or something else";
}

std::string faultInInsertion(const Outcome &outcome) {
  const bool isRight =
      outcome.status == noErr && !outcome.reply && outcome.activations == 1 &&
      outcome.calls == std::vector<std::string>{"selectedReferences",
                                                "inTextCitationTag smith",
                                                "inTextCitationTag jones",
                                                "inTextCitationTag untagged",
                                                "notice Notice for Mellel Users",
                                                "send cite",
                                                "activate"} &&
      outcome.payloads.at(0).value_or("").starts_with("{SMI2001;JON1999;}\0<?xml"s);
  return isRight ? "" : "no insertion, or something else";
}

std::string faultInLookup(std::optional<Bytes> payload, const Outcome &outcome) {
  if (outcome.status != noErr || outcome.reply || !outcome.events.empty()) {
    return "a lookup is not answered";
  }
  if (!payload) {
    return outcome.calls.empty() ? "" : "something was done for nothing";
  }
  const std::size_t citations = countOf(outcome, "addCitation");
  if (outcome.activations != (citations > 0 ? 1 : 0)) {
    return "Mellel is brought to the front exactly if there is a citation";
  }
  if (countOf(outcome, "displayEditor") > std::min<std::size_t>(citations, 1)) {
    return "more than one editor, or one for no citation";
  }
  std::size_t offset = 0;
  const std::string text = wellFormed(Endless(*payload).text(offset));
  if (formattedGroup(text) != "[" + std::to_string(citations) + "]") {
    return "not the citations of the text";
  }
  return unexpectedCall(
      outcome, {"currentLibrary", "split " + text, "createCitation", "match ", "set", "addCitation",
                "notice Mellel Refresh Issues", "displayEditor", "activate"});
}

std::string faultInResolution(const Endless &payload, const Outcome &outcome) {
  const auto resolution = formats::decodeCitationResolution(*outcome.payloads.at(0));
  if (!resolution) {
    return resolution.error();
  }
  const std::vector<std::string> citations = preliminaryCitations(payload);
  if (resolution->documentID != payload.number(2) ||
      resolution->citations.size() != citations.size()) {
    return "another document or number of citations";
  }
  for (std::size_t index = 0; index < citations.size(); ++index) {
    const formats::ResolvedCitation &resolved = resolution->citations[index];
    if (resolved.citation != citations[index] ||
        resolved.markup.empty() != citations[index].empty()) {
      return "another citation: " + std::string(resolved.citation);
    }
  }
  return {};
}

std::string faultInPreliminaryScan(const Endless &payload, const Outcome &outcome) {
  if (payload.number(6) != preliminaryCitations(payload).size()) {
    const bool isRight = isCancel(outcome) && outcome.activations == 1 && !outcome.reply &&
                         outcome.payloads.at(0) == cancelPayload(payload.number(2)) &&
                         outcome.calls == std::vector<std::string>{"send Rmcr", "activate"};
    return isRight ? "" : "a wrong count is not cancelled, or not that alone";
  }
  if (outcome.events != std::vector<std::string>{"PRSR"} || outcome.activations != 0 ||
      outcome.reply || outcome.status != noErr) {
    return "not answered, or not that alone";
  }
  const std::string fault = faultInResolution(payload, outcome);
  return fault.empty() ? unexpectedCall(outcome, {"currentLibrary", "match ", "send PRSR"}) : fault;
}

// Whose reply it is and what it must hold.
struct ExpectedReply {
  std::uint32_t documentID = 0;
  std::string style;
  bool hasBibliography = false;
  std::vector<std::string> groups;
};

std::string faultInReply(Bytes payload, const ExpectedReply &expected) {
  const auto reply = formats::decodeScanReply(payload);
  if (!reply) {
    return reply.error();
  }
  if (reply->documentID != expected.documentID || reply->styleName != expected.style) {
    return "another document or style";
  }
  if (reply->bibliography.has_value() != expected.hasBibliography ||
      reply->usesSuperscript != (expected.style == "APA")) {
    return "wrong flags";
  }
  return std::ranges::equal(reply->groups, expected.groups) ? "" : "wrong groups";
}

ExpectedReply expectedReply(const Scan &scan, std::uint32_t documentID,
                            const std::string &otherwise) {
  const bool isKnown = scan.style == "APA" || scan.style == "Chosen" || scan.style == "Standard";
  ExpectedReply expected{documentID, isKnown ? scan.style : otherwise, scan.wantsBibliography, {}};
  std::ranges::transform(scan.citations, std::back_inserter(expected.groups), formattedGroup);
  return expected;
}

std::string faultInFinalScan(std::optional<Bytes> payload, const Outcome &outcome) {
  if (outcome.status != noErr || outcome.reply || outcome.activations != 1) {
    return "a reply, or Mellel not brought to the front once";
  }
  if (!payload) {
    const bool isRight =
        isCancel(outcome) && outcome.calls == std::vector<std::string>{"send Rmcr", "activate"};
    return isRight ? "" : "a scan of nothing is not cancelled, or not that alone";
  }
  if (outcome.events != std::vector<std::string>{"SCNR"}) {
    return "not answered, or not that alone";
  }
  Scan scan = readScan(Endless(*payload));
  std::ranges::transform(scan.citations, scan.citations.begin(), scrubbed);
  const ExpectedReply expected = expectedReply(scan, scan.documentID, "Chosen");
  if (countOf(outcome, "openDialog") != (expected.style == scan.style ? 0 : 1)) {
    return "the dialog opens exactly if no style is known";
  }
  const std::string fault = faultInReply(*outcome.payloads.at(0), expected);
  return fault.empty() ? unexpectedCall(outcome, {"bibStyleNamed",
                                                  "isHidden",
                                                  "activateIgnoringOtherApps",
                                                  "openDialog",
                                                  "center",
                                                  "makeKeyAndOrderFront",
                                                  "orderFrontRegardless",
                                                  "runModal",
                                                  "chosenAction",
                                                  "close",
                                                  "deactivate",
                                                  "selectedBibStyle",
                                                  "currentLibrary",
                                                  "split",
                                                  "createCitation",
                                                  "match ",
                                                  "set",
                                                  "addCitation",
                                                  "notice Mellel Refresh Issues",
                                                  "citationArray",
                                                  "format",
                                                  "pidginRTF",
                                                  "bibliography",
                                                  "RTFFromRange",
                                                  "send SCNR",
                                                  "activate"})
                       : fault;
}

std::string faultInLiveBibliography(std::optional<Bytes> payload, const Outcome &outcome) {
  if (outcome.status != noErr || !outcome.events.empty() || outcome.activations != 1 ||
      !outcome.reply) {
    return "no reply, or not that alone";
  }
  const ExpectedReply expected =
      expectedReply(readScan(Endless(payload.value_or(""))), 0, "Standard");
  const std::string fault = faultInReply(*outcome.reply, expected);
  return fault.empty()
             ? unexpectedCall(outcome, {"bibStyleNamed", "defaultStyle", "currentLibrary", "split",
                                        "createCitation", "match ", "set", "addCitation",
                                        "notice Mellel Refresh Issues", "citationArray", "format",
                                        "pidginRTF", "bibliography", "RTFFromRange", "activate"})
             : fault;
}

bool isCancelOf(std::uint32_t documentID, const Outcome &outcome) {
  return isCancel(outcome) && !outcome.reply && outcome.payloads.at(0) == cancelPayload(documentID);
}

std::string faultInFormOfInsertion(const Outcome &outcome, bool hostThrew) {
  if (outcome.activations != 1 || outcome.reply) {
    return "Mellel was not brought to the front once, or got a reply";
  }
  if (outcome.events.empty()) {
    return {};
  }
  if (hostThrew || outcome.events != std::vector<std::string>{"cite"}) {
    return "an insertion without a selection, or something else";
  }
  const auto insertion = formats::decodeInsertion(*outcome.payloads.at(0));
  return insertion ? "" : insertion.error();
}

std::string faultInFormOfScan(Bytes payload, const Outcome &outcome, bool hostThrew) {
  const Scan scan = readScan(Endless(payload));
  if (isCancelOf(scan.documentID, outcome)) {
    return {};
  }
  if (hostThrew || outcome.status != noErr || outcome.reply || outcome.activations != 1 ||
      outcome.events != std::vector<std::string>{"SCNR"}) {
    return "neither answered nor cancelled, or both";
  }
  const auto reply = formats::decodeScanReply(*outcome.payloads.at(0));
  if (!reply) {
    return reply.error();
  }
  return reply->documentID == scan.documentID && reply->groups.size() == scan.citations.size()
             ? ""
             : "another document's answer";
}

std::string faultInFormOfLiveBibliography(Bytes payload, const Outcome &outcome, bool hostThrew) {
  const bool failed = outcome.errorNumber == errAEEventFailed && outcome.events.empty();
  if (failed || (isCancelOf(0, outcome) && !hostThrew)) {
    return outcome.reply ? "a reply of a request that failed" : "";
  }
  if (hostThrew || outcome.status != noErr || !outcome.reply || !outcome.events.empty() ||
      outcome.activations != 1) {
    return "neither answered nor failed, or both";
  }
  const auto reply = formats::decodeScanReply(*outcome.reply);
  if (!reply) {
    return reply.error();
  }
  return reply->documentID == 0 &&
                 reply->groups.size() == readScan(Endless(payload)).citations.size()
             ? ""
             : "another document's answer";
}

}  // namespace

std::ostream &operator<<(std::ostream &stream, const Outcome &outcome) {
  stream << "status " << outcome.status << ", " << outcome.activations << " activations, "
         << outcome.exceptionsLogged << " exceptions logged, error number "
         << testing::PrintToString(outcome.errorNumber) << ", reply "
         << testing::PrintToString(outcome.reply) << ", events "
         << testing::PrintToString(outcome.events) << ", calls";
  for (const std::string &call : outcome.calls) {
    stream << "\n  " << call;
  }
  return stream;
}

std::string fault(std::string_view eventID, std::optional<std::string_view> payload,
                  const Outcome &outcome) {
  if (eventID == "IMHR") {
    return faultInHandshake(outcome);
  }
  if (eventID == "FIND") {
    return faultInInsertion(outcome);
  }
  if (eventID == "FNDN") {
    return faultInLookup(payload, outcome);
  }
  if (eventID == "PRSQ") {
    return faultInPreliminaryScan(Endless(payload.value_or("")), outcome);
  }
  if (eventID == "SCNQ") {
    return faultInFinalScan(payload, outcome);
  }
  if (eventID == "LVBQ") {
    return faultInLiveBibliography(payload, outcome);
  }
  return outcome.status == noErr && isSilent(outcome) && outcome.calls.empty()
             ? ""
             : "a retired request does something";
}

std::string faultInForm(std::string_view eventID, std::optional<std::string_view> payload,
                        const Outcome &outcome, bool hostThrew) {
  if (outcome.status != noErr) {
    return "an exception left the handler";
  }
  if (outcome.exceptionsLogged > 1 || (hostThrew && outcome.exceptionsLogged == 0)) {
    return "not one line in the log for an exception";
  }
  const Bytes bytes = payload.value_or("");
  if (eventID == "FIND") {
    return faultInFormOfInsertion(outcome, hostThrew);
  }
  if (eventID == "FNDN") {
    return outcome.events.empty() && !outcome.reply && outcome.activations <= 1
               ? ""
               : "a lookup is not answered";
  }
  if (eventID == "PRSQ") {
    return isCancelOf(Endless(bytes).number(2), outcome)
               ? ""
               : faultInPreliminaryScan(Endless(bytes), outcome);
  }
  if (eventID == "SCNQ") {
    return faultInFormOfScan(bytes, outcome, hostThrew);
  }
  if (eventID == "LVBQ") {
    return faultInFormOfLiveBibliography(bytes, outcome, hostThrew);
  }
  return "a request that asks the host for nothing";
}

}  // namespace plugin_test
