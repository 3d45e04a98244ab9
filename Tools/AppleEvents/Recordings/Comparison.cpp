#include "Comparison.h"

#include <Formats/EventTable.h>
#include <Tools/AppleEvents/Payloads/Explanation.h>
#include <Tools/AppleEvents/Payloads/ExplanationText.h>

#include <algorithm>
#include <cstddef>

namespace appleevents {

namespace {

constexpr std::size_t mostDifferences = 6;

std::string codesOf(const RecordedParameter &parameter) {
  return inQuotes(parameter.keyword) + ' ' + inQuotes(parameter.type);
}

// The surroundings of a place in a text, in quotation marks.
std::string excerpt(std::string_view text, std::size_t place) {
  constexpr std::size_t before = 24;
  constexpr std::size_t size = 64;
  const std::size_t start = place > before ? place - before : 0;
  return (start > 0 ? "…\"" : "\"") + std::string(text.substr(std::min(start, text.size()), size)) +
         (start + size < text.size() ? "\"…" : "\"");
}

std::string differenceOf(const Field &recorded, const Field &arrived) {
  const std::string place = recorded.name + " (byte " + std::to_string(arrived.offset) + ")";
  if (recorded.content == Content::bytes || isNumber(recorded.content)) {
    return place + ": was " + valueInWords(recorded) + ", is " + valueInWords(arrived);
  }
  const auto first = std::ranges::mismatch(recorded.bytes, arrived.bytes);
  const auto index = static_cast<std::size_t>(first.in1 - recorded.bytes.begin());
  return place + ": was " + excerpt(recorded.bytes, index) + ", is " +
         excerpt(arrived.bytes, index);
}

bool isSame(const Field &recorded, const Field &arrived) {
  return recorded.number == arrived.number && recorded.bytes == arrived.bytes;
}

class Comparer {
 public:
  Comparison finish() {
    if (found_ > mostDifferences) {
      comparison_.differences.push_back("and " + std::to_string(found_ - mostDifferences) +
                                        " more differences");
    }
    return std::move(comparison_);
  }

  void add(std::string line) {
    if (++found_ <= mostDifferences) {
      comparison_.differences.push_back(std::move(line));
    }
  }

  void comparePayloads(const EventKind &kind, std::string_view recorded, std::string_view arrived) {
    const Explanation before = explain(kind, recorded);
    const Explanation now = explain(kind, arrived);
    const std::size_t both = std::min(before.fields.size(), now.fields.size());
    const std::size_t foundBefore = found_;
    for (std::size_t index = 0; index < both; ++index) {
      compareFields(before.fields[index], now.fields[index]);
    }
    for (std::size_t index = both; index < before.fields.size(); ++index) {
      add(before.fields[index].name + " is missing");
    }
    for (std::size_t index = both; index < now.fields.size(); ++index) {
      add(now.fields[index].name + " was not recorded: " + valueInWords(now.fields[index]));
    }
    // The end of a text without its NUL, for one, is in no field.
    if (found_ == foundBefore && !comparison_.documents && recorded != arrived) {
      add(std::to_string(recorded.size()) + " bytes were recorded, and " +
          std::to_string(arrived.size()) + " bytes came");
    }
  }

 private:
  void compareFields(const Field &recorded, const Field &arrived) {
    if (recorded.name != arrived.name) {
      add("in place of " + recorded.name + " stands " + arrived.name);
    } else if (isSame(recorded, arrived)) {
      return;
    } else if (recorded.content == Content::documentID) {
      comparison_.documents = {recorded.number, arrived.number};
    } else {
      add(differenceOf(recorded, arrived));
    }
  }

  Comparison comparison_;
  std::size_t found_ = 0;
};

}  // namespace

Comparison compare(const std::optional<EventKind> &kind,
                   const std::vector<RecordedParameter> &recorded,
                   const std::vector<RecordedParameter> &arrived) {
  Comparer comparer;
  const std::size_t both = std::min(recorded.size(), arrived.size());
  for (std::size_t index = 0; index < both; ++index) {
    const RecordedParameter &before = recorded[index];
    const RecordedParameter &now = arrived[index];
    if (before.keyword != now.keyword || before.type != now.type) {
      comparer.add("in place of parameter " + codesOf(before) + " stands " + codesOf(now));
    } else if (before.bytes == now.bytes) {
      continue;
    } else if (kind && before.keyword == formats::directObjectKeyword) {
      comparer.comparePayloads(*kind, before.bytes, now.bytes);
    } else {
      comparer.add("the data of parameter " + codesOf(before) + " is another");
    }
  }
  for (std::size_t index = both; index < recorded.size(); ++index) {
    comparer.add("parameter " + codesOf(recorded[index]) + " is missing");
  }
  for (std::size_t index = both; index < arrived.size(); ++index) {
    comparer.add("parameter " + codesOf(arrived[index]) + " was not recorded");
  }
  return comparer.finish();
}

}  // namespace appleevents
