#include "Documents.h"

#include "Files.h"

#include <StandIns/Mellel/RTF/FormattedDocument.h>

#include <random>
#include <utility>

namespace mellel {

std::expected<Document, Failure> openDocument(const std::string &path) {
  auto rtf = readFile(path);
  if (!rtf) {
    return std::unexpected(rtf.error());
  }
  auto text = readDocumentText(*rtf);
  if (!text) {
    return std::unexpected(Failure{Status::brokenDocumentOrReply, path + ": " + text.error()});
  }
  return Document{path, std::move(*rtf), std::move(*text)};
}

std::uint32_t makeDocumentID() {
  std::random_device random;
  return std::uniform_int_distribution<std::uint32_t>(1)(random);
}

std::string formattedCopy(const Document &document, const FormattedCitations &formatted) {
  return formattedDocument(document.rtf, document.text, formatted.texts,
                           formatted.bibliography.value_or(Bibliography{}));
}

}  // namespace mellel
