#include "Document.h"

#include "Files.h"

#include <utility>

namespace mellel::documents {

using console::Failure;
using console::Status;
using rtf::readDocumentText;

std::expected<Document, Failure> openDocument(const std::string &path) {
  auto rtf = readFile(path);
  if (!rtf) {
    return std::unexpected(rtf.error());
  }
  auto text = readDocumentText(*rtf);
  if (!text) {
    return std::unexpected(Failure{Status::brokenDocumentOrReply, path + ": " + text.error()});
  }
  return Document{std::move(*rtf), std::move(*text)};
}

}  // namespace mellel::documents
