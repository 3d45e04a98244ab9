// All three requests begin with two reserved bytes and the document ID and end with pairs of
// strings up to the end of the data. Nobody tells their number reliably, so it is the
// data's end that ends the list; a pair that has begun is read whole.

#include "ScanRequest.h"

#include "PayloadReader.h"
#include "PayloadWriter.h"
#include "VerifiedMarker.h"

#include <algorithm>
#include <utility>

namespace formats {

namespace {

constexpr std::uint8_t bibliographyWanted = 0xFF;

template <typename Request, typename Choose>
void readCitations(PayloadReader &reader, std::size_t payloadSize, RequestMeasure measure,
                   Request &request, Choose choose) {
  request.exceeded = measure.exceeded();
  if (request.exceeded) {
    return;
  }
  std::vector<std::string_view> citations;
  // The announcement saves the vector from growing, but it may be wrong: it must not make a small
  // payload claim more memory than the payload itself takes.
  citations.reserve(std::min({std::size_t{request.announcedCount},
                              payloadSize / sizeof(std::string_view), mostCitations}));
  bool isFitting = true;
  while (isFitting && !reader.atEnd()) {
    const std::string_view first = reader.readString();
    const std::string_view second = reader.readString();
    const std::string_view citation = choose(first, second);
    citations.push_back(citation);
    isFitting = measure.addCitation(citation);
  }
  request.exceeded = measure.exceeded();
  if (!request.exceeded) {
    request.citations = std::move(citations);
  }
}

std::size_t sizeOfCitations(std::span<const CitationPair> citations) {
  std::size_t size = 0;
  for (const CitationPair &pair : citations) {
    size += pair.first.size() + 1 + pair.second.size() + 1;
  }
  return size;
}

void writeCitations(PayloadWriter &writer, std::span<const CitationPair> citations) {
  for (const CitationPair &pair : citations) {
    writer.writeStringUTF8(pair.first);
    writer.writeStringUTF8(pair.second);
  }
}

// The size is an upper bound: a text that a NUL cuts short takes less.
template <typename Write>
std::string encode(std::size_t size, Write write) {
  std::string payload(size, '\0');
  PayloadWriter writer(payload);
  write(writer);
  payload.resize(writer.stored());
  return payload;
}

}  // namespace

std::uint32_t documentIDOfScanRequest(std::string_view payload) {
  PayloadReader reader(payload);
  reader.skip(2);
  return reader.readUInt32();
}

PreliminaryScanRequest decodePreliminaryScanRequest(std::string_view payload) {
  PayloadReader reader(payload);
  PreliminaryScanRequest request;
  reader.skip(2);
  request.documentID = reader.readUInt32();
  request.announcedCount = reader.readUInt32();
  readCitations(
      reader, payload.size(), RequestMeasure(payload.size()), request,
      [](std::string_view first, std::string_view) { return withoutVerifiedMarkers(first); });
  return request;
}

FinalScanRequest decodeFinalScanRequest(std::string_view payload) {
  PayloadReader reader(payload);
  FinalScanRequest request;
  reader.skip(2);
  request.documentID = reader.readUInt32();
  request.wantsBibliography = reader.readUInt8() == bibliographyWanted;
  reader.skip(3);
  request.styleName = reader.readString();
  request.announcedCount = reader.readUInt32();
  RequestMeasure measure(payload.size());
  measure.addStyleName(request.styleName);
  readCitations(reader, payload.size(), measure, request,
                [](std::string_view first, std::string_view second) {
                  return first.empty() || first.starts_with("verified") ? second : first;
                });
  return request;
}

LiveBibliographyRequest decodeLiveBibliographyRequest(std::string_view payload) {
  return decodeFinalScanRequest(payload);
}

std::string encodePreliminaryScanRequest(std::uint32_t documentID,
                                         std::span<const CitationPair> citations) {
  constexpr std::size_t fixedSize = 10;
  return encode(fixedSize + sizeOfCitations(citations), [&](PayloadWriter &writer) {
    writer.writeUInt16(0);
    writer.writeUInt32(documentID);
    writer.writeUInt32(static_cast<std::uint32_t>(citations.size()));
    writeCitations(writer, citations);
  });
}

std::string encodeFinalScanRequest(std::uint32_t documentID, bool wantsBibliography,
                                   std::string_view styleName,
                                   std::span<const CitationPair> citations) {
  constexpr std::size_t fixedSize = 14;
  const std::size_t size = fixedSize + styleName.size() + 1 + sizeOfCitations(citations);
  return encode(size, [&](PayloadWriter &writer) {
    writer.writeUInt16(0);
    writer.writeUInt32(documentID);
    writer.writeUInt32(wantsBibliography ? std::uint32_t{bibliographyWanted} << 24 : 0);
    writer.writeStringUTF8(styleName);
    writer.writeUInt32(static_cast<std::uint32_t>(citations.size()));
    writeCitations(writer, citations);
  });
}

std::string encodeLiveBibliographyRequest(std::uint32_t documentID, bool wantsBibliography,
                                          std::string_view styleName,
                                          std::span<const CitationPair> citations) {
  return encodeFinalScanRequest(documentID, wantsBibliography, styleName, citations);
}

}  // namespace formats
