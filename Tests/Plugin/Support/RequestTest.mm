#include "RequestTest.h"

#include <algorithm>

namespace plugin_test {
namespace {

using namespace std::string_literals;

constexpr int32_t generateCopy = 2;

std::size_t exceptionsIn(const std::vector<std::string> &lines) {
  return static_cast<std::size_t>(std::ranges::count_if(lines, [](const std::string &line) {
    return line.find("an exception") != std::string::npos;
  }));
}

}  // namespace

RequestTest::RequestTest() {
  host_->matches = {{"SMI2001", {"smith"}},
                    {"Smith 2001", {"smith"}},
                    {"Jones 1999", {"jones"}},
                    {"Müller", {"müller 1", "müller 2"}}};
  hostScript().split = [](NSString *group) {
    return [group length] == 0 ? [NSArray array] : [group componentsSeparatedByString:@";"];
  };
  host_->selection = {{"smith", "SMI2001"}, {"jones", "JON1999"}, {"untagged", ""}};
  for (const char *name : {"APA", "Chosen", "Standard"}) {
    RecordingStyle *style = [host_ addStyle:name];
    style->bibliographyRTF = "{\\rtf1 works}";
    style->superscript = name == "APA"s;
  }
  host_->standardStyle = host_->styles.at("Standard");
  chosenStyle_ = host_->styles.at("Chosen");
  dialog_.emplace(generateCopy, chosenStyle_);
  // As the platform's own does.
  assertions_->raises = YES;
}

void RequestTest::forget() {
  calls() = std::vector<std::string>();
  carrier_.sent.clear();
  carrier_.activated.clear();
  host_->notices.clear();
  assertions_->errors.clear();
  [host_->citations removeAllObjects];
  log_.reset();
  log_ = std::make_unique<LogCapture>();
}

Outcome RequestTest::deliver(std::string_view eventID, std::optional<std::string_view> payload,
                             DescType type, const Around &around) {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  setGeneratesBibliography(false);
  setDocumentID(0);
  forget();
  platform::IncomingEvent event{code("mLeL"), 0, {}, eventID == "LVBQ"};
  for (const char character : eventID) {
    event.eventID = event.eventID << 8 | static_cast<unsigned char>(character);
  }
  if (payload) {
    event.parameters.push_back(
        {keyDirectObject, type,
         *platform::SharedBytes::copyOf(std::as_bytes(std::span(*payload)))});
  }
  Answer answer;
  const auto dispatch = [&] { answer = carrier_.deliver(event); };
  if (around) {
    around(dispatch);
  } else {
    dispatch();
  }
  Outcome outcome{answer.status,
                  answer.directObject(),
                  answer.errorNumber(),
                  eventsSent(),
                  {},
                  carrier_.activated.size(),
                  calls(),
                  exceptionsIn(log_->lines())};
  for (const platform::OutgoingEvent &sent : carrier_.sent) {
    outcome.payloads.push_back(test_support::RecordingCarrier::directObject(sent));
  }
  [pool drain];
  return outcome;
}

void RequestTest::useInDialog(id<KorvoBibStyle> style) {
  dialog_.reset();
  dialog_.emplace(generateCopy, style);
}

}  // namespace plugin_test
