#import "StyleShelf.h"

#import "StringConversion.h"

#include <utility>

namespace korvo::adapter {
namespace {

NSString *const favoritesKey = @"FavoriteStyles";
NSString *const defaultStyleKey = @"DefaultStyle";

// What a new user is offered, by the files' base names; the first is the default.
constexpr const char *wellKnownStyles[] = {
    "apa", "chicago-author-date", "ieee", "modern-language-association", "nature", "vancouver"};

}  // namespace

StyleShelf::StyleShelf(engine::StyleCatalog catalog)
    : catalog_(std::move(catalog)), formatter_(std::make_shared<DocumentFormatter>()) {}

void StyleShelf::setReporter(id<KOProblemReporter> reporter) {
  reporter_ = Owned<id>::retaining(reporter);
}

KOBibStyle *StyleShelf::style(std::string_view name) {
  if (name.empty()) {
    return nil;
  }
  if (const auto known = styles_.find(name); known != styles_.end()) {
    return known->second.get();
  }
  auto found = catalog_.find(name);
  if (!found) {
    return nil;
  }
  auto style = Owned<KOBibStyle *>::taking([[KOBibStyle alloc] initWithStyle:*std::move(found)
                                                                   formatter:formatter_
                                                                    reporter:reporter_.get()]);
  return styles_.emplace(name, std::move(style)).first->second.get();
}

const std::vector<std::string> &StyleShelf::favorites() {
  if (favorites_) {
    return *favorites_;
  }
  favorites_.emplace();
  NSArray *remembered = [[NSUserDefaults standardUserDefaults] arrayForKey:favoritesKey];
  if (remembered == nil) {
    for (const char *name : wellKnownStyles) {
      if (KOBibStyle *known = style(name)) {
        favorites_->push_back(utf8([known name]));
      }
    }
    return *favorites_;
  }
  for (NSUInteger index = 0; index < [remembered count]; ++index) {
    id title = [remembered objectAtIndex:index];
    if ([title isKindOfClass:[NSString class]]) {
      favorites_->push_back(utf8(title));
    }
  }
  return *favorites_;
}

const std::string &StyleShelf::defaultStyle() {
  if (defaultStyle_) {
    return *defaultStyle_;
  }
  NSString *remembered = [[NSUserDefaults standardUserDefaults] stringForKey:defaultStyleKey];
  if (remembered != nil) {
    defaultStyle_ = utf8(remembered);
  } else {
    KOBibStyle *known = style(wellKnownStyles[0]);
    defaultStyle_ = known != nil ? utf8([known name]) : std::string();
  }
  return *defaultStyle_;
}

bool StyleShelf::rehearse(std::string_view styleName, library::Library &library,
                          std::span<const library::ReferenceRow> rows) {
  KOBibStyle *rehearsed = style(styleName);
  if (rehearsed == nil) {
    return false;
  }
  std::vector<std::string> items;
  for (const library::ReferenceRow row : rows) {
    if (auto json = library.cslJson(row); json && *json) {
      items.push_back(**std::move(json));
    }
  }
  return [rehearsed rehearse:items];
}

void StyleShelf::endRehearsal() { formatter_->processor().giveBackMemory(); }

void StyleShelf::useFavorites(std::vector<std::string> titles) { favorites_ = std::move(titles); }

void StyleShelf::useDefaultStyle(std::string title) { defaultStyle_ = std::move(title); }

void StyleShelf::rememberFavorites(std::vector<std::string> titles) {
  NSMutableArray *strings = [NSMutableArray arrayWithCapacity:titles.size()];
  for (const std::string &title : titles) {
    [strings addObject:stringFromUTF8(title)];
  }
  [[NSUserDefaults standardUserDefaults] setObject:strings forKey:favoritesKey];
  [[NSUserDefaults standardUserDefaults] synchronize];
  useFavorites(std::move(titles));
}

void StyleShelf::rememberDefaultStyle(std::string title) {
  [[NSUserDefaults standardUserDefaults] setObject:stringFromUTF8(title) forKey:defaultStyleKey];
  [[NSUserDefaults standardUserDefaults] synchronize];
  useDefaultStyle(std::move(title));
}

engine::StyleCatalog &StyleShelf::catalog() { return catalog_; }

}  // namespace korvo::adapter
