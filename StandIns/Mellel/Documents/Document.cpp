#include "Document.h"

#include <utility>

namespace mellel::documents {

using console::Failure;
using console::Progress;
using console::Status;
using rtf::readDocumentText;

std::expected<Document, Failure> openDocument(const std::string &path, Progress &progress) {
  progress.begin("reading " + path);
  auto file = readFile(path);
  if (!file) {
    return std::unexpected(file.error());
  }
  auto text = readDocumentText(file->bytes);
  if (!text) {
    return std::unexpected(Failure{Status::brokenDocumentOrReply, path + ": " + text.error()});
  }
  return Document{std::move(file->bytes), std::move(*text), file->identity};
}

}  // namespace mellel::documents
