#include "WrittenName.h"

#include "FoldedText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <span>
#include <utility>

namespace korvo::library {
namespace {

using Words = std::span<const std::string>;

// Nobody writes more into running text; a text that has more is not worth the time.
constexpr std::size_t mostPieces = 12;
constexpr std::size_t mostWords = 12;

constexpr std::array<std::string_view, 6> suffixes = {"jr", "sr", "ii", "iii", "iv", "v"};
constexpr std::array<std::string_view, 4> wordsForNoDate = {"n.d.", "n.d", "n. d.", "no date"};

bool isDigit(char byte) { return std::isdigit(static_cast<unsigned char>(byte)) != 0; }

bool isYear(std::string_view word) {
  const std::string_view digits = word.substr(word.starts_with('-') ? 1 : 0);
  return !digits.empty() && digits.size() <= 9 && std::ranges::all_of(digits, isDigit);
}

bool isSuffix(std::string_view word) { return std::ranges::find(suffixes, word) != suffixes.end(); }

std::string withoutFullStops(std::string_view text) {
  std::string result(text);
  std::erase(result, '.');
  return result;
}

std::string_view trimmedEnd(std::string_view text) {
  const std::size_t last = text.find_last_not_of(" ,");
  return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

// "j.r.r.tolkien" is written closely, but two words; "i.b.m." is one.
std::string spread(std::string_view text) {
  std::string result;
  for (std::size_t index = 0; index < text.size(); ++index) {
    result += text[index];
    const std::string_view rest = text.substr(index + 1);
    if (text[index] == '.' && rest.size() > 1 && !std::string_view(". ,-").contains(rest[0]) &&
        !std::string_view(". ,-").contains(rest[1])) {
      result += ' ';
    }
  }
  return result;
}

std::vector<std::string> split(std::string_view text, std::string_view separators) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const std::size_t end = text.find_first_of(separators);
    if (end != 0) {
      parts.emplace_back(text.substr(0, end));
    }
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return parts;
}

std::string joined(Words words) {
  std::string text;
  for (const std::string &word : words) {
    text += (text.empty() ? "" : " ") + withoutFullStops(word);
  }
  return text;
}

std::string comparable(std::string_view name) { return withoutFullStops(foldedText(name)); }

// "J.-P." is two initials, "Martin Luther" two names.
std::vector<std::string> givenNamesIn(std::string_view text) { return split(text, " .-"); }

bool areSame(std::string_view left, std::string_view right) {
  return left == right || (left.size() == 1 && right.starts_with(left)) ||
         (right.size() == 1 && left.starts_with(right));
}

// "jrr" for "John Ronald Reuel".
bool areInitialsOf(std::string_view letters, const std::vector<std::string> &names) {
  return letters.size() > 1 && letters.size() <= names.size() &&
         std::equal(letters.begin(), letters.end(), names.begin(),
                    [](char letter, const std::string &name) { return name.front() == letter; });
}

bool haveSameGivenNames(Words written, const PersonName &person) {
  if (written.empty()) {
    return true;
  }
  std::vector<std::string> names;
  for (const std::string &word : written) {
    std::ranges::move(givenNamesIn(word), std::back_inserter(names));
  }
  const std::vector<std::string> known = givenNamesIn(foldedText(person.given));
  if (names.empty() || known.empty()) {
    return false;
  }
  if ((names.size() == 1 && areInitialsOf(names.front(), known)) ||
      (known.size() == 1 && areInitialsOf(known.front(), names))) {
    return true;
  }
  const std::size_t both = std::min(names.size(), known.size());
  return std::equal(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(both), known.begin(),
                    areSame);
}

// What stands before the family name, if the words end with it, a particle apart.
std::optional<Words> wordsBeforeFamily(Words words, const PersonName &person) {
  const auto before = [&](std::string_view name) -> std::optional<Words> {
    const std::size_t count = split(name, " ").size();
    return count > 0 && count <= words.size() && joined(words.last(count)) == name
               ? std::optional(words.first(words.size() - count))
               : std::nullopt;
  };
  if (const auto rest = before(comparable(person.familyWithParticle()))) {
    return rest;
  }
  return before(comparable(person.family));
}

bool isSuffixOf(std::string_view word, const PersonName &person) {
  return withoutFullStops(word) == comparable(person.suffix);
}

// "john smith", "king jr."
bool isWholeName(Words words, const PersonName &person) {
  if (const auto given = wordsBeforeFamily(words, person)) {
    return haveSameGivenNames(*given, person);
  }
  if (words.size() < 2 || !isSuffixOf(words.back(), person)) {
    return false;
  }
  const auto given = wordsBeforeFamily(words.first(words.size() - 1), person);
  return given && haveSameGivenNames(*given, person);
}

bool isFamilyName(Words words, const PersonName &person) {
  const auto before = wordsBeforeFamily(words, person);
  return before && before->empty();
}

// How many pieces one person may take: "smith", "smith, j.", "king, martin luther, jr."
bool isPerson(std::span<const std::vector<std::string>> pieces, const PersonName &person) {
  const auto isSuffixPiece = [&](const std::vector<std::string> &piece) {
    return piece.size() == 1 && isSuffixOf(piece.front(), person);
  };
  switch (pieces.size()) {
    case 1:
      return isWholeName(pieces[0], person);
    case 2:
      return (isSuffixPiece(pieces[1]) && isWholeName(pieces[0], person)) ||
             (isFamilyName(pieces[0], person) && haveSameGivenNames(pieces[1], person));
    default:
      return isFamilyName(pieces[0], person) && haveSameGivenNames(pieces[1], person) &&
             isSuffixPiece(pieces[2]);
  }
}

// How many of the authors the pieces are, beginning with the first; nothing if they are not.
bool arePeople(std::span<const std::vector<std::string>> pieces,
               std::span<const PersonName> authors, std::size_t named, bool hasEtAl) {
  if (pieces.empty()) {
    return hasEtAl ? !authors.empty() : authors.empty() || named == 1;
  }
  if (authors.empty()) {
    return false;
  }
  for (std::size_t count = 1; count <= std::min<std::size_t>(3, pieces.size()); ++count) {
    if (isPerson(pieces.first(count), authors.front()) &&
        arePeople(pieces.subspan(count), authors.subspan(1), named + 1, hasEtAl)) {
      return true;
    }
  }
  return false;
}

// Cuts off "et al."; says whether it stood there.
bool cutEtAl(std::string_view &people) {
  for (const std::string_view words : {"et al.", "et al", "et. al.", "and others"}) {
    if (people.ends_with(words) && people.size() > words.size() &&
        std::string_view(" ,").contains(people[people.size() - words.size() - 1])) {
      people = trimmedEnd(people.substr(0, people.size() - words.size()));
      return true;
    }
  }
  return false;
}

std::vector<std::vector<std::string>> piecesOf(std::string_view people) {
  std::vector<std::vector<std::string>> pieces(1);
  const auto endPiece = [&] {
    if (!pieces.back().empty()) {
      pieces.emplace_back();
    }
  };
  std::string text;
  for (const char byte : spread(people)) {
    text += byte == '&' ? " and " : byte == ',' ? " , " : std::string(1, byte);
  }
  for (std::string &word : split(text, " ")) {
    if (word == "and" || word == ",") {
      endPiece();
    } else if (!withoutFullStops(word).empty()) {
      pieces.back().push_back(std::move(word));
    }
  }
  if (pieces.back().empty()) {
    pieces.pop_back();
  }
  return pieces;
}

}  // namespace

std::optional<WrittenName> readWrittenName(std::string_view visibleText) {
  std::string unbracketed(visibleText);
  std::ranges::replace_if(
      unbracketed, [](char byte) { return std::string_view("()[]").contains(byte); }, ' ');
  const std::string folded = foldedText(unbracketed);
  std::string_view text = trimmedEnd(folded);
  WrittenName name;
  const std::size_t lastWord = text.find_last_of(" ,") + 1;
  const auto noDate = std::ranges::find_if(
      wordsForNoDate, [&](std::string_view words) { return text.ends_with(words); });
  if (isYear(text.substr(lastWord))) {
    name.year = text.substr(lastWord);
    text = trimmedEnd(text.substr(0, lastWord));
  } else if (noDate != wordsForNoDate.end()) {
    const std::string_view people = text.substr(0, text.size() - noDate->size());
    text = trimmedEnd(people);
    if (text.size() == people.size()) {
      return std::nullopt;  // the end of a longer word
    }
  } else {
    return std::nullopt;
  }
  name.textBeforeYear = text;
  name.hasEtAl = cutEtAl(text);
  name.pieces = piecesOf(text);
  const bool isTooLong =
      name.pieces.size() > mostPieces ||
      std::ranges::any_of(name.pieces, [](const auto &piece) { return piece.size() > mostWords; });
  if (name.textBeforeYear.empty()) {
    return std::nullopt;
  }
  if (isTooLong) {
    name.pieces.clear();
  }
  return name;
}

std::vector<std::string> possibleFamilyNames(const WrittenName &name) {
  std::vector<std::string> families;
  if (name.pieces.empty()) {
    return families;
  }
  Words words = name.pieces.front();
  for (std::size_t count = 1; count <= words.size(); ++count) {
    families.push_back(joined(words.last(count)));
  }
  if (words.size() > 1 && isSuffix(withoutFullStops(words.back()))) {
    words = words.first(words.size() - 1);
    for (std::size_t count = 1; count <= words.size(); ++count) {
      families.push_back(joined(words.last(count)));
    }
  }
  return families;
}

bool mayMean(const WrittenName &name, const BibliographicRecord &record) {
  return !name.pieces.empty() && record.year == name.year &&
         arePeople(name.pieces, record.authors, 0, name.hasEtAl);
}

}  // namespace korvo::library
