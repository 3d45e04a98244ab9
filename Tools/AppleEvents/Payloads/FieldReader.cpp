#include "FieldReader.h"

#include <Formats/Unicode.h>

#include <algorithm>
#include <utility>

namespace appleevents {

namespace {

bool isWellFormed(std::string_view text) {
  return formats::isASCII(text) || formats::encodeUTF8(formats::decodeUTF8(text)) == text;
}

}  // namespace

std::size_t FieldReader::remaining() const {
  return payload_.size() - std::min(reader_.position(), payload_.size());
}

std::uint32_t FieldReader::readNumber(std::size_t size, const std::string &name, Content content) {
  const std::size_t offset = reader_.position();
  const std::uint32_t number = size == 1   ? reader_.readUInt8()
                               : size == 2 ? reader_.readUInt16()
                                           : reader_.readUInt32();
  add(offset, name, content, number, {});
  return number;
}

void FieldReader::readReserved(std::size_t size, const std::string &name) {
  const std::size_t offset = reader_.position();
  const std::string_view bytes = payload_.substr(std::min(offset, payload_.size()), size);
  reader_.skip(size);
  add(offset, name, Content::bytes, 0, bytes);
  if (bytes.find_first_not_of('\0') != std::string_view::npos) {
    odd("is reserved, and not 0");
  }
}

std::string_view FieldReader::readText(const std::string &name, Content content) {
  const std::size_t offset = reader_.position();
  const std::string_view text = reader_.readString();
  add(offset, name, content, 0, text);
  if (!isWellFormed(text)) {
    broken("is no well-formed UTF-8: what is not is read as U+FFFD");
  }
  return text;
}

std::string_view FieldReader::readRest(const std::string &name, Content content) {
  const std::size_t offset = reader_.position();
  const std::string_view rest = payload_.substr(payload_.size() - remaining());
  reader_.skip(rest.size());
  add(offset, name, content, 0, rest);
  return rest;
}

void FieldReader::expectEnd() {
  if (remaining() > 0) {
    readRest("surplus", Content::bytes);
    broken("belongs to no field");
  }
}

void FieldReader::mean(std::string meaning) {
  if (lastIsThere_) {
    explanation_.fields.back().meaning = std::move(meaning);
  }
}

void FieldReader::add(std::size_t offset, const std::string &name, Content content,
                      std::uint32_t number, std::string_view bytes) {
  const bool isCutShort = reader_.position() > payload_.size();
  lastOffset_ = std::min(offset, payload_.size());
  // A bibliography may be there and be empty; a field of which nothing is there is none.
  lastIsThere_ = offset < payload_.size() || (content == Content::rtf && !isCutShort);
  if (lastIsThere_) {
    const std::size_t end = std::min(reader_.position(), payload_.size());
    explanation_.fields.push_back({offset, end - offset, name, content, number, bytes, {}});
  }
  if (!isCutShort || isCutShort_) {
    return;
  }
  isCutShort_ = true;
  if (lastIsThere_) {
    broken(isNumber(content) || content == Content::bytes ? "is cut short"
                                                          : "has no NUL at its end");
  } else {
    explanation_.findings.push_back(
        {Severity::broken, lastOffset_, "the " + name + " is missing: the data ends before it"});
  }
}

void FieldReader::found(Severity severity, const std::string &line) {
  const std::string name = lastIsThere_ ? explanation_.fields.back().name + ' ' : std::string();
  explanation_.findings.push_back({severity, lastOffset_, name + line});
}

std::string countOf(std::size_t count, std::string_view thing) {
  return std::to_string(count) + ' ' + std::string(thing) + (count == 1 ? "" : "s");
}

}  // namespace appleevents
