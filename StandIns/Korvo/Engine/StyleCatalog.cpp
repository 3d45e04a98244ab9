#include "StyleCatalog.h"

#include "CaseFolding.h"
#include "CslHead.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <system_error>
#include <tuple>
#include <utility>

namespace korvo::engine {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view indexVersion = "korvo style index 1";

// The first line of an index: what it was made from. A directory's time changes with
// every file that comes or goes; packages replace files, so that it changes with contents.
std::string stampOf(const std::vector<fs::path> &directories) {
  std::string stamp(indexVersion);
  for (const fs::path &directory : directories) {
    std::error_code error;
    const auto time = fs::last_write_time(directory, error);
    stamp += '\t' + directory.string() + '\t' + std::to_string(time.time_since_epoch().count());
  }
  return stamp;
}

std::vector<StyleName> readTitles(const std::vector<fs::path> &directories) {
  std::vector<StyleName> names;
  for (const fs::path &directory : directories) {
    std::error_code error;
    for (const auto &entry : fs::directory_iterator(directory, error)) {
      // A pipe would be waited for without end.
      if (entry.path().extension() != ".csl" || !entry.is_regular_file(error)) {
        continue;
      }
      // A style that cannot be read has no title to be found by; by its file name it is
      // found, and then said to be broken.
      if (auto head = readCslHead(entry.path(), CslPart::title)) {
        names.push_back({entry.path().stem().string(), std::move(head->title)});
      }
    }
  }
  return names;
}

std::optional<std::vector<StyleName>> readIndex(const fs::path &file, std::string_view stamp) {
  std::ifstream stream(file, std::ios::binary);
  std::string line;
  if (!std::getline(stream, line) || line != stamp) {
    return std::nullopt;
  }
  std::vector<StyleName> names;
  while (std::getline(stream, line)) {
    const std::size_t tab = line.find('\t');
    if (tab == std::string::npos) {
      return std::nullopt;
    }
    names.push_back({line.substr(0, tab), line.substr(tab + 1)});
  }
  return names;
}

// Whole or not at all, and without complaint: the index only saves time.
void writeIndex(const fs::path &file, std::string_view stamp, const std::vector<StyleName> &names) {
  std::error_code error;
  fs::create_directories(file.parent_path(), error);
  fs::path unfinished = file;
  unfinished += "." + std::to_string(getpid());
  {
    std::ofstream stream(unfinished, std::ios::binary);
    stream << stamp << '\n';
    for (const StyleName &name : names) {
      stream << name.baseName << '\t' << name.title << '\n';
    }
    stream.close();
    if (!stream) {
      fs::remove(unfinished, error);
      return;
    }
  }
  fs::rename(unfinished, file, error);
}

fs::path cacheDirectory() {
  const char *cache = std::getenv("XDG_CACHE_HOME");
  if (cache != nullptr && *cache == '/') {
    return cache;
  }
  const char *home = std::getenv("HOME");
  return home != nullptr && *home == '/' ? fs::path(home) / ".cache" : fs::path();
}

}  // namespace

StyleCatalog::StyleCatalog(fs::path styles, fs::path indexFile)
    : styles_(std::move(styles)), indexFile_(std::move(indexFile)) {}

StyleCatalog StyleCatalog::installed() {
  const fs::path cache = cacheDirectory();
  return {"/usr/share/citation-style-language/styles",
          cache.empty() ? fs::path() : cache / "korvo" / "style-index"};
}

std::vector<fs::path> StyleCatalog::directories() const { return {styles_, styles_ / "dependent"}; }

fs::path StyleCatalog::fileOf(std::string_view baseName) const {
  // A name from a document must not lead out of the directories.
  const bool plain = !baseName.empty() && baseName.find('/') == std::string_view::npos &&
                     baseName.find('\0') == std::string_view::npos;
  for (const fs::path &directory : plain ? directories() : std::vector<fs::path>()) {
    fs::path file = directory / (std::string(baseName) + ".csl");
    std::error_code error;
    if (fs::is_regular_file(file, error)) {
      return file;
    }
  }
  return {};
}

const std::vector<StyleName> &StyleCatalog::all() {
  if (names_) {
    return *names_;
  }
  const std::string stamp = stampOf(directories());
  if (!indexFile_.empty()) {
    names_ = readIndex(indexFile_, stamp);
  }
  if (!names_) {
    names_ = readTitles(directories());
    if (!indexFile_.empty()) {
      writeIndex(indexFile_, stamp, *names_);
    }
  }
  std::vector<std::pair<std::string, StyleName>> sorted;
  for (StyleName &name : *names_) {
    // Titles that differ in the case of letters only are one.
    sorted.emplace_back(caseFolded(name.title), std::move(name));
  }
  std::ranges::sort(sorted, {},
                    [](const auto &entry) { return std::tie(entry.first, entry.second.baseName); });
  for (std::size_t index = 0; index < sorted.size(); ++index) {
    byTitle_.try_emplace(std::move(sorted[index].first), index);
    (*names_)[index] = std::move(sorted[index].second);
  }
  return *names_;
}

const StyleName *StyleCatalog::findInList(std::string_view foldedName) {
  const std::vector<StyleName> &names = all();
  if (const auto found = byTitle_.find(foldedName); found != byTitle_.end()) {
    return &names[found->second];
  }
  // Few names get here: no index of their own.
  const auto found = std::ranges::find_if(
      names, [&](const StyleName &name) { return caseFolded(name.baseName) == foldedName; });
  return found == names.end() ? nullptr : &*found;
}

std::expected<Style, std::string> StyleCatalog::find(std::string_view name) {
  fs::path file = fileOf(name);
  if (file.empty()) {
    const StyleName *found = findInList(caseFolded(name));
    if (found == nullptr) {
      return std::unexpected("no citation style named \"" + std::string(name) + "\" is installed");
    }
    file = fileOf(found->baseName);
  }
  if (file.empty()) {
    return std::unexpected("the citation style \"" + std::string(name) +
                           "\" is not installed any more");
  }
  auto head = readCslHead(file, CslPart::everything);
  if (!head) {
    return std::unexpected(head.error());
  }
  Style style{.name = {file.stem().string(), head->title}, .file = file, .locale = {}};
  if (!head->parent.empty()) {
    style.locale = head->locale;
    style.file = fileOf(head->parent);
    if (style.file.empty()) {
      return std::unexpected("the style \"" + head->title + "\" follows \"" + head->parent +
                             "\", which is not installed");
    }
    head = readCslHead(style.file, CslPart::everything);
    if (!head) {
      return std::unexpected(head.error());
    }
  }
  style.citationFormat = head->citationFormat;
  style.hasBibliography = head->hasBibliography;
  style.usesSuperscript = head->usesSuperscript;
  return style;
}

}  // namespace korvo::engine
