#include "CslHead.h"

#include <expat.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string_view>
#include <vector>

namespace korvo::engine {

namespace {

using Attributes = const XML_Char **;

std::string_view attribute(Attributes attributes, std::string_view name) {
  for (; attributes[0] != nullptr; attributes += 2) {
    if (attributes[0] == name) {
      return attributes[1];
    }
  }
  return {};
}

CitationFormat citationFormatNamed(std::string_view name) {
  return name == "note"      ? CitationFormat::note
         : name == "numeric" ? CitationFormat::numeric
         : name == "label"   ? CitationFormat::label
         : name == "author"  ? CitationFormat::author
                             : CitationFormat::authorDate;
}

std::string withSingleBlanks(std::string_view text) {
  std::string result;
  for (const char character : text) {
    const bool blank = static_cast<unsigned char>(character) <= ' ';
    if (!blank) {
      result += character;
    } else if (!result.empty() && result.back() != ' ') {
      result += ' ';
    }
  }
  while (result.ends_with(' ')) {
    result.pop_back();
  }
  return result;
}

class HeadParser {
 public:
  explicit HeadParser(CslPart part)
      : part_(part), parser_(XML_ParserCreate(nullptr), &XML_ParserFree) {
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(parser_.get(), &HeadParser::onStart, &HeadParser::onEnd);
    XML_SetCharacterDataHandler(parser_.get(), &HeadParser::onText);
  }

  std::expected<CslHead, std::string> parse(const std::filesystem::path &path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(path.c_str(), "rb"),
                                                                &std::fclose);
    std::array<char, 8192> buffer{};
    bool atEnd = file == nullptr;
    while (!atEnd && !done_) {
      const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file.get());
      atEnd = count < buffer.size();
      if (XML_Parse(parser_.get(), buffer.data(), static_cast<int>(count), atEnd) !=
              XML_STATUS_OK &&
          !done_) {
        return std::unexpected(
            path.string() + ":" + std::to_string(XML_GetCurrentLineNumber(parser_.get())) +
            ": no readable citation style: " + XML_ErrorString(XML_GetErrorCode(parser_.get())));
      }
    }
    if (file == nullptr || std::ferror(file.get()) != 0) {
      return std::unexpected(path.string() + ": cannot be read");
    }
    head_.title = withSingleBlanks(head_.title);
    if (!isStyle_ || head_.title.empty()) {
      return std::unexpected(path.string() + ": no citation style: it has no title");
    }
    return std::move(head_);
  }

 private:
  static void onStart(void *self, const XML_Char *name, Attributes attributes) {
    static_cast<HeadParser *>(self)->start(name, attributes);
  }
  static void onEnd(void *self, const XML_Char *name) {
    static_cast<HeadParser *>(self)->end(name);
  }
  static void onText(void *self, const XML_Char *text, int length) {
    static_cast<HeadParser *>(self)->text({text, static_cast<std::size_t>(length)});
  }

  bool isInside(std::string_view parent) const { return !path_.empty() && path_.back() == parent; }

  void start(std::string_view name, Attributes attributes) {
    if (path_.empty()) {
      isStyle_ = name == "style";
      head_.locale = attribute(attributes, "default-locale");
      isNote_ = attribute(attributes, "class") == "note";
    } else if (isInside("info")) {
      readInfo(name, attributes);
    } else if (isInside("citation") && name == "layout") {
      head_.usesSuperscript = attribute(attributes, "vertical-align") == "sup";
    } else if (name == "bibliography") {
      head_.hasBibliography = true;
    }
    path_.emplace_back(name);
  }

  void readInfo(std::string_view name, Attributes attributes) {
    if (name == "category" && !attribute(attributes, "citation-format").empty()) {
      head_.citationFormat = citationFormatNamed(attribute(attributes, "citation-format"));
    } else if (name == "link" && attribute(attributes, "rel") == "independent-parent") {
      const std::string_view address = attribute(attributes, "href");
      head_.parent = address.substr(address.rfind('/') + 1);
    }
  }

  void end(std::string_view name) {
    path_.pop_back();
    if (part_ == CslPart::title && name == "title" && isInside("info")) {
      done_ = true;
      XML_StopParser(parser_.get(), XML_FALSE);
    }
    if (path_.empty() && isNote_) {
      head_.citationFormat = CitationFormat::note;
    }
  }

  void text(std::string_view characters) {
    if (isInside("title") && path_.size() == 3) {
      head_.title += characters;
    }
  }

  CslPart part_;
  std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser_;
  CslHead head_;
  std::vector<std::string> path_;
  bool isStyle_ = false;
  bool isNote_ = false;
  bool done_ = false;
};

}  // namespace

std::expected<CslHead, std::string> readCslHead(const std::filesystem::path &file, CslPart part) {
  return HeadParser(part).parse(file);
}

}  // namespace korvo::engine
