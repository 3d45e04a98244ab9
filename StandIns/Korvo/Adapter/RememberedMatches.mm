#import "RememberedMatches.h"

#import "KOReference.h"
#import "StringConversion.h"

#include <utility>

namespace korvo::adapter {

RememberedMatches::RememberedMatches(std::size_t capacity)
    : capacity_(capacity), none_(Owned<NSSet *>::taking([[NSSet alloc] init])) {}

std::expected<NSSet *, library::LibraryError> RememberedMatches::matching(NSString *tag,
                                                                          KOLibrary *library) {
  library::Library &searched = [library libraryOfThisTurn];
  forgetUnless(library, searched.version());
  const std::u16string text = utf16(tag);
  if (const auto known = sets_.find(text); known != sets_.end()) {
    return [[known->second.get() retain] autorelease];
  }
  const auto rows = searched.matching(utf8(tag));
  if (!rows) {
    return std::unexpected(rows.error());
  }
  NSSet *found = referencesAt(*rows);
  if (version_) {
    if (sets_.size() >= capacity_) {
      forget();
    }
    sets_.emplace(text, Owned<NSSet *>::retaining(found));
  }
  return [[found retain] autorelease];
}

// Where the version is not known, nothing is known to be still true.
void RememberedMatches::forgetUnless(KOLibrary *library,
                                     std::optional<library::Library::Version> version) {
  if (version && version == version_ && library == library_.get()) {
    return;
  }
  forget();
  library_ = Owned<KOLibrary *>::retaining(library);
  version_ = version;
}

void RememberedMatches::forget() {
  sets_.clear();
  singles_.clear();
}

NSSet *RememberedMatches::referencesAt(std::span<const library::ReferenceRow> rows) {
  if (rows.empty()) {
    return none_.get();
  }
  if (rows.size() == 1) {
    const auto [single, isNew] = singles_.try_emplace(rows.front());
    if (isNew) {
      single->second = Owned<NSSet *>::retaining(
          [NSSet setWithObject:[library_.get() referenceAtRow:rows.front()]]);
    }
    return single->second.get();
  }
  NSMutableSet *references = [NSMutableSet setWithCapacity:rows.size()];
  for (const library::ReferenceRow row : rows) {
    [references addObject:[library_.get() referenceAtRow:row]];
  }
  return [[references copy] autorelease];
}

}  // namespace korvo::adapter
