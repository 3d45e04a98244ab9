// A library of references: found by identifier or by what an author writes, listed, searched,
// changed.
//
// It is a SQLite database. Everything that is looked up during a scan has an index, so that
// a library of 100,000 references opens at once and answers within microseconds.
// What other programs do to the file meanwhile is seen by the next look-up.
#pragma once

#include <cstdint>
#include <expected>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvo::library {

// Errors are one line that begins with the library's file.
using LibraryError = std::string;

// Names a reference within its library, for as long as that exists.
using ReferenceRow = std::int64_t;

// A reference that is not in a library yet. Texts are UTF-8.
struct NewReference {
  std::string identifier;  // the citation identifier; may be empty
  std::string cslJson;     // a CSL-JSON object
};

// What lists show of a reference. Texts are UTF-8.
struct ReferenceSummary {
  std::string uuid;
  std::string identifier;  // may be empty
  std::string authors;     // "Smith, John; Jones, Ann"
  std::string year;
  std::string title;
  std::string kind;  // CSL's type: "article-journal"
  std::string containerTitle;

  bool operator==(const ReferenceSummary &) const = default;
};

enum class SortColumn { authors, year, title, kind, identifier };

struct ListOrder {
  SortColumn column = SortColumn::authors;
  bool ascending = true;
};

class Library {
 public:
  // A library's own file. Only one that is whole so far as opening it can tell is opened;
  // any other is left as it is.
  static std::expected<Library, LibraryError> open(const std::filesystem::path &file);
  static std::expected<Library, LibraryError> openOrCreate(const std::filesystem::path &file);
  // In memory; `name` stands for it in errors.
  static std::expected<Library, LibraryError> temporary(const std::filesystem::path &name);

  Library(Library &&) noexcept;
  Library &operator=(Library &&) noexcept;
  ~Library();

  // The file it was opened from, or the name of a temporary one.
  const std::filesystem::path &name() const;
  // Whether changes last only until the program ends.
  bool isTemporary() const;

  struct Addition {
    std::size_t added = 0;
    std::size_t alreadyThere = 0;  // with the same identifier and the same content: left out
  };
  // Reads all of the file: an error where a page of it is damaged. What opens may still be.
  std::expected<void, LibraryError> checkWhole();

  // All or, on an error, none.
  std::expected<Addition, LibraryError> add(std::span<const NewReference> references);

  // Every reference whose identifier is exactly the tag; if there is none, every reference
  // that an author may name by this text ("Smith 2001", "Smith & Jones, 2001", "Smith et
  // al. 2001"); if there is none, also by longer ways of writing ("John Smith (2001)", "Smith
  // n.d.", the title of a work without author). UTF-8. An empty tag matches nothing.
  std::expected<std::vector<ReferenceRow>, LibraryError> matching(std::string_view tag);

  // A few references that an author may have meant by a text that matches nothing. Where there are
  // such, that is most often a misspelling or another year.
  std::expected<std::vector<ReferenceRow>, LibraryError> similar(std::string_view visibleText);

  std::expected<std::size_t, LibraryError> count();
  // All of them, or those that hold every word of the search text somewhere in authors,
  // year, title, kind, identifier or container title.
  std::expected<std::vector<ReferenceRow>, LibraryError> list(ListOrder order,
                                                              std::string_view searchText);

  // Whether a reference bears exactly this identifier.
  std::expected<bool, LibraryError> hasIdentifier(std::string_view identifier);

  // Nothing, when the reference is gone.
  std::expected<std::optional<ReferenceSummary>, LibraryError> summary(ReferenceRow row);
  std::expected<std::optional<std::string>, LibraryError> cslJson(ReferenceRow row);
  // The identifier or else the first author and year; nothing when the reference has
  // neither.
  std::expected<std::optional<std::string>, LibraryError> citationTag(ReferenceRow row);

  // Until stopReading() or the next change of this library all questions see the same state of
  // the file, and the file's lock is taken once for all of them, which makes a small question
  // several times faster. Meanwhile other programs cannot write to the file: not for long.
  void keepReading();
  void stopReading();

  // The number of a state of the library. Equal numbers: nobody, here or in another program, has
  // written to it between the one and the other.
  struct Version {
    std::int64_t ofOtherPrograms = 0;
    std::int64_t ofThisOne = 0;

    bool operator==(const Version &) const = default;
  };
  // The state that all questions see since keepReading(); nothing where they may see several.
  std::optional<Version> version() const;

  // What can be edited of a reference; nothing when it is gone.
  std::expected<std::optional<NewReference>, LibraryError> reference(ReferenceRow row);

  // Makes new content of what is there, or says in one line why it cannot.
  using Edit = std::function<std::expected<NewReference, std::string>(const NewReference &present)>;
  // Reads, changes and writes while nobody else can write. The reference's UUID stays. An
  // identifier that another reference bears is refused: a citation by it would find both.
  std::expected<void, LibraryError> edit(ReferenceRow row, const Edit &change);

  // Puts new content in the reference's place; its UUID stays.
  std::expected<void, LibraryError> replace(ReferenceRow row, const NewReference &reference);

 private:
  struct State;
  explicit Library(std::unique_ptr<State> state);
  static std::expected<Library, LibraryError> opened(std::unique_ptr<State> state);

  std::unique_ptr<State> state_;
};

}  // namespace korvo::library
