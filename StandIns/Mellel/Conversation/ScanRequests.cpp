#include "ScanRequests.h"

#include <Formats/EventTable.h>
#include <Formats/VerifiedMarker.h>

#include <cstdint>
#include <random>
#include <utility>

namespace mellel::conversation {

using console::Failure;
using console::Status;
using rtf::Citation;

namespace {

std::unexpected<Failure> broken(const std::string &line) {
  return std::unexpected(
      Failure{Status::brokenDocumentOrReply, "Korvo's answer is broken: " + line});
}

std::string countOf(std::span<const Citation> citations) {
  const std::size_t count = citations.size();
  return std::to_string(count) + (count == 1 ? " citation" : " citations");
}

// One cannot tell from here which styles the host knows.
std::string hintForStyle(const std::string &style) {
  return style.empty()
             ? "Korvo asks for the style in a dialog of its own, and waits until it is answered"
             : "Korvo may be showing a dialog, and wait until it is answered: it does so when it "
               "knows no style \"" +
                   style + '"';
}

std::uint32_t makeDocumentID() {
  std::random_device random;
  return std::uniform_int_distribution<std::uint32_t>(1)(random);
}

std::expected<FormattedCitations, Failure> checkedReply(const std::string &payload,
                                                        std::uint32_t documentID,
                                                        std::span<const Citation> citations,
                                                        const WantedFormatting &wanted) {
  auto formatted = readScanReply(payload, documentID, citations, wanted.bibliography);
  if (!formatted) {
    return broken(formatted.error());
  }
  return std::move(*formatted);
}

// What the host would refuse without a reason is not sent.
template <typename DecodedRequest>
std::expected<void, Failure> checkLimits(const DecodedRequest &request) {
  if (request.exceeded) {
    return std::unexpected(
        Failure{Status::brokenDocumentOrReply,
                "the document asks for more than Korvo takes: " + inWords(*request.exceeded)});
  }
  return {};
}

// Preliminary scan.
std::expected<std::string, Failure> askForResolution(Host &host,
                                                     std::span<const Citation> citations,
                                                     std::uint32_t documentID) {
  std::string payload = formats::encodePreliminaryScanRequest(documentID, citationPairs(citations));
  if (const auto fits = checkLimits(formats::decodePreliminaryScanRequest(payload)); !fits) {
    return std::unexpected(fits.error());
  }
  const Request request{formats::request::preliminaryScan,
                        std::move(payload),
                        "waiting for Korvo to look up " + countOf(citations),
                        false,
                        documentID,
                        "Korvo may be showing a dialog for an earlier request, and wait until it "
                        "is answered"};
  return host.ask(request, {formats::mellelSignature, formats::answer::citationResolution});
}

}  // namespace

std::vector<formats::CitationPair> citationPairs(std::span<const Citation> citations) {
  std::vector<formats::CitationPair> pairs;
  pairs.reserve(citations.size());
  for (const Citation &citation : citations) {
    pairs.push_back({citation.text, formats::withoutVerifiedMarkers(citation.text)});
  }
  return pairs;
}

std::expected<std::vector<CheckedCitation>, Failure> checkCitations(
    Host &host, std::span<const Citation> citations) {
  const std::uint32_t documentID = makeDocumentID();
  const auto payload = askForResolution(host, citations, documentID);
  if (!payload) {
    return std::unexpected(payload.error());
  }
  auto checked = readCitationResolution(*payload, documentID, citations.size());
  if (!checked) {
    return broken(checked.error());
  }
  return std::move(*checked);
}

std::expected<std::vector<bool>, Failure> findCitations(Host &host,
                                                        std::span<const Citation> citations) {
  const auto formatted = formatLive(host, citations, {.style = "", .bibliography = false});
  if (!formatted) {
    return std::unexpected(formatted.error());
  }
  std::vector<bool> found;
  found.reserve(formatted->texts.size());
  for (const std::optional<rtf::RichText> &text : formatted->texts) {
    found.push_back(text.has_value());
  }
  return found;
}

std::expected<FormattedCitations, Failure> formatByScan(Host &host,
                                                        std::span<const Citation> citations,
                                                        const WantedFormatting &wanted) {
  const std::uint32_t documentID = makeDocumentID();
  const auto resolution = askForResolution(host, citations, documentID);
  if (!resolution) {
    return std::unexpected(resolution.error());
  }
  if (const auto checked = checkCitationResolution(*resolution, documentID, citations.size());
      !checked) {
    return broken(checked.error());
  }
  std::string question = formats::encodeFinalScanRequest(documentID, wanted.bibliography,
                                                         wanted.style, citationPairs(citations));
  if (const auto fits = checkLimits(formats::decodeFinalScanRequest(question)); !fits) {
    return std::unexpected(fits.error());
  }
  const Request request{formats::request::finalScan,
                        std::move(question),
                        "waiting for Korvo to format " + countOf(citations),
                        true,
                        documentID,
                        hintForStyle(wanted.style)};
  const auto payload = host.ask(request, {formats::mellelSignature, formats::answer::finalScan});
  if (!payload) {
    return std::unexpected(payload.error());
  }
  return checkedReply(*payload, documentID, citations, wanted);
}

std::expected<FormattedCitations, Failure> formatLive(Host &host,
                                                      std::span<const Citation> citations,
                                                      const WantedFormatting &wanted) {
  std::string question = formats::encodeLiveBibliographyRequest(
      makeDocumentID(), wanted.bibliography, wanted.style, citationPairs(citations));
  if (const auto fits = checkLimits(formats::decodeLiveBibliographyRequest(question)); !fits) {
    return std::unexpected(fits.error());
  }
  const Request request{formats::request::liveBibliography, std::move(question),
                        "waiting for Korvo to format " + countOf(citations), false};
  const auto payload = host.askForReply(request);
  if (!payload) {
    return std::unexpected(payload.error());
  }
  if (!*payload) {
    return std::unexpected(Failure{Status::cancelledByHost, "cancelled in Korvo"});
  }
  // A live bibliography belongs to no document: it is answered with the ID 0.
  return checkedReply(**payload, 0, citations, wanted);
}

}  // namespace mellel::conversation
