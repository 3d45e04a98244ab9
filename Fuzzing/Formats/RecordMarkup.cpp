// The XML texts beside citations: written and taken apart like the slow reference does it, and the
// tags that were written are the tags that are read.

#include <Formats/RecordMarkup.h>
#include <Formats/Unicode.h>
#include <Fuzzing/Support/FuzzedData.h>
#include <Fuzzing/Support/Target.h>
#include <Tests/Support/ReferenceRecordMarkup.h>

namespace fuzzing {

namespace {

template <typename View, typename Text>
bool sameTexts(const std::vector<View> &views, const std::vector<Text> &texts) {
  return std::vector<Text>(views.begin(), views.end()) == texts;
}

}  // namespace

void run(std::string_view bytes) {
  const std::string text(bytes);
  require(sameTexts(formats::tagsInRecordMarkup(bytes), reference::tagsInRecordMarkup(text)));

  const std::u16string citation = codeUnits(bytes);
  const auto components = formats::citationComponents(citation);
  require(sameTexts(components, reference::citationComponents(citation)));
  const std::u16string markup = formats::recordMarkupForComponents(citation);
  require(markup == reference::recordMarkupForComponents(citation));
  const std::string onTheWire = formats::encodeUTF8(markup);
  const auto tags = formats::tagsInRecordMarkup(onTheWire);
  // Nothing is escaped: only tags without markup of their own can be told apart.
  if (!citation.empty() && citation.find(u'<') == std::u16string::npos) {
    require(tags.size() == components.size());
    for (std::size_t index = 0; index < tags.size(); ++index) {
      const std::u16string component(components[index]);
      require(tags[index] == formats::encodeUTF8(reference::withoutVerifiedMarkers(component)));
    }
  }
}

}  // namespace fuzzing
