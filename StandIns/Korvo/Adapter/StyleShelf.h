// The styles that the host offers: all that are installed, of which the user has picked a few
// favourites and one default.
//
// The picks are remembered in the user's defaults (keys "FavoriteStyles" and "DefaultStyle",
// titles of styles); picks made for one run only, on the command line, are not.
#pragma once

#import "KOBibStyle.h"
#import "Owned.h"

#include <StandIns/Korvo/Engine/CitationProcessor.h>
#include <StandIns/Korvo/Engine/StyleCatalog.h>
#include <StandIns/Korvo/Library/Library.h>

#import <Foundation/Foundation.h>

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvo::adapter {

class StyleShelf {
 public:
  explicit StyleShelf(engine::StyleCatalog catalog);

  // Who is told what kept a document from being formatted. To be set before styles are asked
  // for.
  void setReporter(id<KOProblemReporter> reporter);

  // By title or by the file's base name; nil when no such style is installed. The same name
  // gives the same object.
  KOBibStyle *style(std::string_view name);

  // Titles, UTF-8, in the user's order. Without any picks: a few well-known styles, as far
  // as they are installed.
  const std::vector<std::string> &favorites();
  // Empty: none.
  const std::string &defaultStyle();

  // Formats the references in a style for practice (see KORehearsal.h). False where that cannot be:
  // the style is not there, or one that cannot be used.
  bool rehearse(std::string_view styleName, library::Library &library,
                std::span<const library::ReferenceRow> rows);
  // Frees what that left behind.
  void endRehearsal();

  // For this run.
  void useFavorites(std::vector<std::string> titles);
  void useDefaultStyle(std::string title);
  // For this run and all later ones.
  void rememberFavorites(std::vector<std::string> titles);
  void rememberDefaultStyle(std::string title);

  engine::StyleCatalog &catalog();

 private:
  engine::StyleCatalog catalog_;
  Owned<id> reporter_;
  std::shared_ptr<DocumentFormatter> formatter_;
  std::map<std::string, Owned<KOBibStyle *>, std::less<>> styles_;
  std::optional<std::vector<std::string>> favorites_;
  std::optional<std::string> defaultStyle_;
};

}  // namespace korvo::adapter
