// The messages of a few fixed bytes: taken only in their own length, and written as they were read.

#include <Formats/SmallMessages.h>
#include <Fuzzing/Support/Target.h>
#include <Tests/Support/SlowReader.h>

#include <algorithm>

namespace fuzzing {

namespace {

template <typename Bytes>
std::string_view view(const Bytes &bytes) {
  return {bytes.data(), bytes.size()};
}

void readPreferences(std::string_view payload) {
  const auto fields = formats::decodePreferences(payload);
  require(fields.has_value() == (payload.size() == 14));
  test_support::SlowReader reader(payload);
  for (std::size_t index = 0; fields && index < fields->size(); ++index) {
    require(fields->at(index) == reader.integer(2));
  }
}

void readCancel(std::string_view payload) {
  const auto documentID = formats::decodeCancel(payload);
  require(documentID.has_value() == (payload.size() == 6));
  if (documentID) {
    const std::uint64_t wide = 0xFFFFFFFF00000000 | *documentID;
    const auto again = formats::encodeCancel(wide);
    require(view(again).substr(2) == payload.substr(2));
  }
}

void readHandshake(std::string_view payload) {
  const auto again = formats::encodeHandshake(formats::decodeHandshake(payload));
  std::string expected(payload.substr(0, 4));
  expected.resize(4);
  require(view(again) == expected);
}

}  // namespace

void run(std::string_view bytes) {
  readPreferences(bytes);
  readCancel(bytes);
  readHandshake(bytes);
}

}  // namespace fuzzing
