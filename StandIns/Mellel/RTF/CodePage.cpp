#include "CodePage.h"

#include <Formats/Unicode.h>
#include <Formats/Windows1252.h>

#include <iconv.h>

#include <algorithm>
#include <utility>

namespace mellel::rtf {

namespace {

constexpr char32_t replacementCharacter = 0xFFFD;
constexpr int westernCodePage = 1252;
constexpr int utf8CodePage = 65001;

// An open conversion to UTF-32 in this machine's byte order.
class Conversion {
 public:
  explicit Conversion(const std::string &encoding)
      : descriptor_(iconv_open(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? "UTF-32LE" : "UTF-32BE",
                               encoding.c_str())) {}
  Conversion(const Conversion &) = delete;
  Conversion &operator=(const Conversion &) = delete;
  Conversion(Conversion &&) = delete;
  Conversion &operator=(Conversion &&) = delete;
  ~Conversion() {
    if (isOpen()) {
      iconv_close(descriptor_);
    }
  }

  bool isOpen() const {
    return descriptor_ != reinterpret_cast<iconv_t>(-1);  // NOLINT: the interface's own value
  }

  char32_t convert(std::string_view sequence) const {
    std::string bytes(sequence);
    char *input = bytes.data();
    std::size_t inputLeft = bytes.size();
    char32_t character = replacementCharacter;
    char *output = reinterpret_cast<char *>(&character);
    std::size_t outputLeft = sizeof character;
    iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);
    const std::size_t converted = iconv(descriptor_, &input, &inputLeft, &output, &outputLeft);
    // Some conversions hold a letter back, in case that a combining accent follows.
    iconv(descriptor_, nullptr, nullptr, &output, &outputLeft);
    const bool isWhole = converted != static_cast<std::size_t>(-1) && inputLeft == 0;
    return isWhole && outputLeft == 0 ? character : replacementCharacter;
  }

 private:
  iconv_t descriptor_;
};

class SingleByteCodePage final : public CodePage {
 public:
  explicit SingleByteCodePage(const std::array<char32_t, 128> &upperHalf) : upperHalf_(upperHalf) {}
  std::size_t sequenceLength(std::uint8_t) const override { return 1; }
  char32_t decode(std::string_view sequence) const override {
    const auto byte = static_cast<std::uint8_t>(sequence.front());
    return byte < 128 ? byte : upperHalf_.at(byte - 128U);
  }

 private:
  std::array<char32_t, 128> upperHalf_;
};

class DoubleByteCodePage final : public CodePage {
 public:
  DoubleByteCodePage(int number, const std::string &encoding)
      : number_(number), conversion_(encoding) {}
  std::size_t sequenceLength(std::uint8_t first) const override {
    if (number_ == 932) {  // 0xA1 to 0xDF are half-width letters, one byte each
      return (first >= 0x81 && first <= 0x9F) || (first >= 0xE0 && first <= 0xFC) ? 2 : 1;
    }
    return first >= 0x81 && first <= 0xFE ? 2 : 1;
  }
  char32_t decode(std::string_view sequence) const override {
    const auto first = static_cast<std::uint8_t>(sequence.front());
    if (sequence.size() == 1 && first < 128) {
      return first;
    }
    return conversion_.isOpen() ? conversion_.convert(sequence) : replacementCharacter;
  }

 private:
  int number_;
  Conversion conversion_;
};

class UTF8CodePage final : public CodePage {
 public:
  std::size_t sequenceLength(std::uint8_t first) const override {
    if (first >= 0xC2 && first <= 0xDF) {
      return 2;
    }
    if (first >= 0xE0 && first <= 0xEF) {
      return 3;
    }
    return first >= 0xF0 && first <= 0xF4 ? 4 : 1;
  }
  char32_t decode(std::string_view sequence) const override {
    return formats::decodeUTF8Character(sequence);
  }
};

std::array<char32_t, 128> westernUpperHalf() {
  std::array<char32_t, 128> characters{};
  for (std::size_t index = 0; index < characters.size(); ++index) {
    characters.at(index) = formats::characterOfWindows1252(static_cast<std::uint8_t>(128 + index));
  }
  return characters;
}

std::unique_ptr<CodePage> makeSingleByteCodePage(const std::string &encoding) {
  std::array<char32_t, 128> characters = westernUpperHalf();
  const Conversion conversion(encoding);
  if (conversion.isOpen()) {
    for (std::size_t index = 0; index < characters.size(); ++index) {
      const char byte = static_cast<char>(128 + index);
      characters.at(index) = conversion.convert(std::string_view(&byte, 1));
    }
  }
  return std::make_unique<SingleByteCodePage>(characters);
}

bool isKnown(int number) {
  static constexpr auto known = std::to_array<int>(
      {437,  720,  737,  775,  850,  852,  855,  857,  858,   860,         861,  862,
       863,  864,  865,  866,  869,  874,  932,  936,  949,   950,         1250, 1251,
       1252, 1253, 1254, 1255, 1256, 1257, 1258, 1361, 10000, utf8CodePage});
  return std::find(known.begin(), known.end(), number) != known.end();
}

std::unique_ptr<CodePage> makeCodePage(int number) {
  switch (number) {
    case westernCodePage:
      return std::make_unique<SingleByteCodePage>(westernUpperHalf());
    case utf8CodePage:
      return std::make_unique<UTF8CodePage>();
    case 932:
    case 936:
    case 949:
    case 950:
      return std::make_unique<DoubleByteCodePage>(number, "CP" + std::to_string(number));
    case 1361:
      return std::make_unique<DoubleByteCodePage>(number, "JOHAB");
    case 10000:
      return makeSingleByteCodePage("MACINTOSH");
    default:
      return makeSingleByteCodePage("CP" + std::to_string(number));
  }
}

}  // namespace

const CodePage &CodePages::codePage(int number) {
  if (!isKnown(number)) {
    number = westernCodePage;
  }
  std::unique_ptr<CodePage> &page = pages_[number];
  if (!page) {
    page = makeCodePage(number);
  }
  return *page;
}

int codePageOfCharacterSet(int characterSet) {
  static const std::map<int, int> codePages = {
      {0, westernCodePage}, {2, westernCodePage}, {77, 10000}, {128, 932},  {129, 949},
      {130, 1361},          {134, 936},           {136, 950},  {161, 1253}, {162, 1254},
      {163, 1258},          {177, 1255},          {178, 1256}, {186, 1257}, {204, 1251},
      {222, 874},           {238, 1250},          {254, 437},  {255, 850}};
  const auto found = codePages.find(characterSet);
  return found == codePages.end() ? 0 : found->second;
}

}  // namespace mellel::rtf
