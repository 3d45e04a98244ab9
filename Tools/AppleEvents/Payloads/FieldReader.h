// Reads a payload field by field and keeps what it read.
#pragma once

#include "Explanation.h"

#include <Formats/PayloadReader.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace appleevents {

// A field that reaches past the end is a finding, the first time; what follows reads as NUL bytes
// and makes no field.
class FieldReader {
 public:
  // Borrows both.
  FieldReader(std::string_view payload, Explanation &explanation)
      : payload_(payload), explanation_(explanation), reader_(payload) {}

  bool atEnd() const { return reader_.atEnd(); }
  std::size_t position() const { return reader_.position(); }
  std::size_t remaining() const;

  // Of one, two or four bytes.
  std::uint32_t readNumber(std::size_t size, const std::string &name,
                           Content content = Content::number);
  // Reserved bytes: odd where they are not 0.
  void readReserved(std::size_t size, const std::string &name);
  std::string_view readText(const std::string &name, Content content);
  std::string_view readRest(const std::string &name, Content content);
  // What belongs to no field.
  void expectEnd();

  // Of the field that was read last, if it is there.
  void mean(std::string meaning);
  // Of the same field.
  void broken(const std::string &line) { found(Severity::broken, line); }
  void odd(const std::string &line) { found(Severity::odd, line); }

 private:
  void add(std::size_t offset, const std::string &name, Content content, std::uint32_t number,
           std::string_view bytes);
  void found(Severity severity, const std::string &line);

  std::string_view payload_;
  Explanation &explanation_;
  formats::PayloadReader reader_;
  std::size_t lastOffset_ = 0;
  bool lastIsThere_ = false;
  bool isCutShort_ = false;
};

// "1 citation", "2 citations".
std::string countOf(std::size_t count, std::string_view thing);

}  // namespace appleevents
