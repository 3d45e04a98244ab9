#include "CorpusFile.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>
#include <tuple>
#include <utility>

namespace fuzzing {
namespace {

constexpr std::string_view hexadecimalDigits = "0123456789abcdef";
constexpr std::string_view otherCharactersOfNames =
    "ghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ-";

// The letters behind a backslash and the bytes they stand for.
struct ShortEscape {
  char letter;
  char byte;
};
constexpr ShortEscape shortEscapes[] = {
    {'\\', '\\'}, {'"', '"'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}};

bool isPlain(char byte) { return byte >= ' ' && byte <= '~' && byte != '\\' && byte != '"'; }

std::string escape(char byte) {
  for (const ShortEscape &known : shortEscapes) {
    if (known.byte == byte) {
      return {'\\', known.letter};
    }
  }
  const auto value = static_cast<unsigned char>(byte);
  return {'\\', 'x', hexadecimalDigits[value >> 4U], hexadecimalDigits[value & 0xFU]};
}

// The byte at the beginning of the text; takes it away.
char takeByte(std::string_view &text) {
  const char first = text.front();
  text.remove_prefix(1);
  if (isPlain(first)) {
    return first;
  }
  if (first != '\\' || text.empty()) {
    throw CorpusError("a character between the quotes that must be escaped");
  }
  const char letter = text.front();
  text.remove_prefix(1);
  for (const ShortEscape &known : shortEscapes) {
    if (known.letter == letter) {
      return known.byte;
    }
  }
  const std::size_t high = text.empty() ? std::string::npos : hexadecimalDigits.find(text[0]);
  const std::size_t low = text.size() < 2 ? std::string::npos : hexadecimalDigits.find(text[1]);
  if (letter != 'x' || high == std::string::npos || low == std::string::npos) {
    throw CorpusError(
        "an escape other than \\\\, \\\", \\n, \\r, \\t and \\x with two digits 0-9 a-f");
  }
  text.remove_prefix(2);
  const char byte = static_cast<char>(static_cast<unsigned char>(high << 4U | low));
  if (isPlain(byte) || escape(byte).size() == 2) {
    throw CorpusError("a byte in hexadecimal digits that has a shorter spelling");
  }
  return byte;
}

std::string readFile(const std::filesystem::path &file) {
  std::ifstream stream(file, std::ios::binary);
  std::string content{std::istreambuf_iterator<char>(stream), {}};
  if (!stream.is_open() || stream.bad()) {
    throw CorpusError(file.string() + ": cannot be read");
  }
  return content;
}

void writeFile(const std::filesystem::path &file, std::string_view content) {
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream.write(content.data(), static_cast<std::streamsize>(content.size()));
  stream.close();
  if (!stream) {
    throw CorpusError(file.string() + ": cannot be written");
  }
}

}  // namespace

bool isInputName(std::string_view name) {
  return name.find_first_of(otherCharactersOfNames) != std::string_view::npos &&
         std::ranges::all_of(name, [](char character) {
           return hexadecimalDigits.contains(character) ||
                  otherCharactersOfNames.contains(character);
         });
}

std::string encodeInput(const CorpusInput &input) {
  std::string line;
  if (!input.name.empty()) {
    if (!isInputName(input.name)) {
      throw CorpusError("\"" + input.name +
                        "\" is no name of an input: letters, digits and hyphens, and not "
                        "hexadecimal digits alone");
    }
    line = input.name + ' ';
  }
  line += '"';
  for (const char byte : input.bytes) {
    if (isPlain(byte)) {
      line += byte;
    } else {
      line += escape(byte);
    }
  }
  line += '"';
  return line;
}

CorpusInput decodeInput(std::string_view line) {
  CorpusInput input;
  const std::size_t quote = line.find('"');
  if (quote == std::string_view::npos || line.size() < quote + 2 || line.back() != '"') {
    throw CorpusError("no input between quotes");
  }
  if (quote > 0) {
    input.name = line.substr(0, quote - 1);
    if (line[quote - 1] != ' ' || !isInputName(input.name)) {
      throw CorpusError("something other than a name and a blank before the quotes");
    }
  }
  std::string_view text = line.substr(quote + 1, line.size() - quote - 2);
  while (!text.empty()) {
    input.bytes += takeByte(text);
  }
  return input;
}

void sortInputs(std::vector<CorpusInput> &inputs) {
  const auto key = [](const CorpusInput &input) { return std::tie(input.name, input.bytes); };
  std::ranges::sort(inputs, [&](const CorpusInput &left, const CorpusInput &right) {
    if (left.name.empty() != right.name.empty()) {
      return right.name.empty();
    }
    return key(left) < key(right);
  });
  const auto again = std::ranges::unique(inputs);
  inputs.erase(again.begin(), again.end());
}

std::vector<CorpusInput> readCorpus(const std::filesystem::path &file) {
  const std::string content = readFile(file);
  if (!content.empty() && content.back() != '\n') {
    throw CorpusError(file.string() + ": the last line has no end");
  }
  std::vector<CorpusInput> inputs;
  for (std::size_t begin = 0; begin < content.size();) {
    const std::size_t end = content.find('\n', begin);
    try {
      inputs.push_back(decodeInput(std::string_view(content).substr(begin, end - begin)));
    } catch (const CorpusError &error) {
      throw CorpusError(file.string() + ":" + std::to_string(inputs.size() + 1) + ": " +
                        error.what());
    }
    begin = end + 1;
  }
  return inputs;
}

void writeCorpus(const std::filesystem::path &file, std::vector<CorpusInput> inputs) {
  sortInputs(inputs);
  std::string content;
  for (const CorpusInput &input : inputs) {
    content += encodeInput(input) + '\n';
  }
  writeFile(file, content);
}

void unpackCorpus(const std::filesystem::path &file, const std::filesystem::path &directory) {
  const std::vector<CorpusInput> inputs = readCorpus(file);
  std::filesystem::create_directories(directory);
  for (std::size_t index = 0; index < inputs.size(); ++index) {
    const CorpusInput &input = inputs[index];
    writeFile(directory / (input.name.empty() ? std::to_string(index) : input.name), input.bytes);
  }
}

void packCorpus(const std::filesystem::path &directory, const std::filesystem::path &file) {
  std::vector<CorpusInput> inputs;
  std::error_code error;
  for (const auto &entry : std::filesystem::directory_iterator(directory, error)) {
    const std::string name = entry.path().filename().string();
    const bool isNumber = name.find_first_not_of(hexadecimalDigits) == std::string::npos;
    inputs.push_back({isNumber ? "" : name, readFile(entry.path())});
  }
  if (inputs.empty()) {
    throw CorpusError(directory.string() + ": no inputs there");
  }
  writeCorpus(file, std::move(inputs));
}

void addInput(const std::filesystem::path &corpus, const std::string &name,
              const std::filesystem::path &input) {
  std::vector<CorpusInput> inputs;
  if (std::filesystem::exists(corpus)) {
    inputs = readCorpus(corpus);
  }
  if (std::ranges::find(inputs, name, &CorpusInput::name) != inputs.end()) {
    throw CorpusError(corpus.string() + ": has an input " + name + " already");
  }
  if (!isInputName(name)) {
    throw CorpusError("a finding goes into a corpus under a name in words joined by hyphens");
  }
  inputs.push_back({name, readFile(input)});
  writeCorpus(corpus, std::move(inputs));
}

}  // namespace fuzzing
