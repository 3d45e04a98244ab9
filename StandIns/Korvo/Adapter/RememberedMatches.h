// Which references match a tag, remembered for as long as the library does not change.
//
// A document asks for each of its citations twice a scan, and the author scans it again and again.
#pragma once

#import "KOLibrary.h"
#import "Owned.h"

#import <Foundation/Foundation.h>

#include <expected>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>

namespace korvo::adapter {

class RememberedMatches {
 public:
  // How many tags are remembered at most. Then all are forgotten.
  explicit RememberedMatches(std::size_t capacity = 65'536);

  // NSSet of KOReference, autoreleased.
  std::expected<NSSet *, library::LibraryError> matching(NSString *tag, KOLibrary *library);

 private:
  void forgetUnless(KOLibrary *library, std::optional<library::Library::Version> version);
  void forget();
  NSSet *referencesAt(std::span<const library::ReferenceRow> rows);

  std::size_t capacity_;
  // What follows is true of this library in this version.
  Owned<KOLibrary *> library_;
  std::optional<library::Library::Version> version_;
  std::unordered_map<std::u16string, Owned<NSSet *>> sets_;
  // The sets of one reference each.
  std::unordered_map<library::ReferenceRow, Owned<NSSet *>> singles_;
  Owned<NSSet *> none_;
};

}  // namespace korvo::adapter
