#include "ScanRequests.h"

#include <Formats/EventTable.h>
#include <Formats/ScanRequest.h>

namespace mellel {

namespace {

std::unexpected<Failure> broken(const std::string &line) {
  return std::unexpected(
      Failure{Status::brokenDocumentOrReply, "Korvo's answer is broken: " + line});
}

std::string citationsOf(const Document &document) {
  const std::size_t count = document.text.citations.size();
  return std::to_string(count) + (count == 1 ? " citation" : " citations");
}

std::expected<FormattedCitations, Failure> checkedReply(const std::string &payload,
                                                        std::uint32_t documentID,
                                                        const Document &document,
                                                        const FormatOptions &options) {
  auto formatted =
      readScanReply(payload, documentID, document.text.citations, options.wantsBibliography);
  if (!formatted) {
    return broken(formatted.error());
  }
  return std::move(*formatted);
}

// Preliminary scan.
std::expected<std::string, Failure> askForResolution(Host &host, const Document &document,
                                                     std::uint32_t documentID) {
  const Request request{
      formats::request::preliminaryScan,
      formats::encodePreliminaryScanRequest(documentID, citationPairs(document.text.citations)),
      "waiting for Korvo to look up " + citationsOf(document), false, documentID};
  return host.ask(request, {formats::mellelSignature, formats::answer::citationResolution});
}

std::expected<FormattedCitations, Failure> formatByScan(Host &host, const Document &document,
                                                        const FormatOptions &options) {
  const std::uint32_t documentID = makeDocumentID();
  const auto resolution = askForResolution(host, document, documentID);
  if (!resolution) {
    return std::unexpected(resolution.error());
  }
  if (const auto checked =
          checkCitationResolution(*resolution, documentID, document.text.citations.size());
      !checked) {
    return broken(checked.error());
  }
  const Request request{
      formats::request::finalScan,
      formats::encodeFinalScanRequest(documentID, options.wantsBibliography, options.style,
                                      citationPairs(document.text.citations)),
      "waiting for Korvo to format " + citationsOf(document), true, documentID};
  const auto payload = host.ask(request, {formats::mellelSignature, formats::answer::finalScan});
  if (!payload) {
    return std::unexpected(payload.error());
  }
  return checkedReply(*payload, documentID, document, options);
}

std::expected<FormattedCitations, Failure> formatLive(Host &host, const Document &document,
                                                      const FormatOptions &options) {
  const Request request{
      formats::request::liveBibliography,
      formats::encodeLiveBibliographyRequest(makeDocumentID(), options.wantsBibliography,
                                             options.style, citationPairs(document.text.citations)),
      "waiting for Korvo to format " + citationsOf(document), false};
  const auto payload = host.askForReply(request);
  if (!payload) {
    return std::unexpected(payload.error());
  }
  if (!*payload) {
    return std::unexpected(Failure{Status::cancelledByHost, "cancelled in Korvo"});
  }
  // A live bibliography belongs to no document: it is answered with the ID 0.
  return checkedReply(**payload, 0, document, options);
}

}  // namespace

std::expected<std::vector<CheckedCitation>, Failure> checkCitations(Host &host,
                                                                    const Document &document,
                                                                    std::uint32_t documentID) {
  const auto payload = askForResolution(host, document, documentID);
  if (!payload) {
    return std::unexpected(payload.error());
  }
  auto checked = readCitationResolution(*payload, documentID, document.text.citations.size());
  if (!checked) {
    return broken(checked.error());
  }
  return std::move(*checked);
}

std::expected<FormattedCitations, Failure> formatCitations(Host &host, const Document &document,
                                                           const FormatOptions &options) {
  return options.isLive ? formatLive(host, document, options)
                        : formatByScan(host, document, options);
}

}  // namespace mellel
