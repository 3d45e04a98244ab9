#include "Conversation.h"

#include <Formats/EventTable.h>

#include <algorithm>
#include <iterator>

namespace appleevents {

namespace {

using formats::FourCharacterCode;
using Kind = RecordedMessage::Kind;

struct Pair {
  FourCharacterCode answer;
  FourCharacterCode request;
};

constexpr Pair pairs[] = {
    {formats::answer::preferences, formats::request::handshake},
    {formats::answer::citation, formats::request::insertCitation},
    {formats::answer::citationResolution, formats::request::preliminaryScan},
    {formats::answer::finalScan, formats::request::finalScan},
    {formats::answer::cancel, formats::request::preliminaryScan},
    {formats::answer::cancel, formats::request::finalScan},
    {formats::answer::cancel, formats::request::liveBibliography},
};

// Reads a recording from its beginning, and remembers which requests wait for an answer.
class ConversationReader {
 public:
  explicit ConversationReader(const Recording &recording) : recording_(recording) {}

  std::vector<Turn> read() {
    turns_.reserve(recording_.messages.size());
    for (const RecordedMessage &message : recording_.messages) {
      turns_.push_back(turnOf(message));
    }
    return std::move(turns_);
  }

 private:
  Turn turnOf(const RecordedMessage &message) {
    Turn turn{.message = &message, .from = message.from, .to = message.to};
    if (message.kind == Kind::activation) {
      return turn;
    }
    const bool isEvent = message.kind == Kind::event;
    const RecordedMessage &event = isEvent ? message : recording_.event(message.number);
    if (!isEvent) {
      turn.from = event.to;
      turn.to = event.from;
      setAnswered(turn, event);
    }
    const auto kind = findEventKind(event.eventClass, event.eventID, !isEvent);
    if (kind && message.kind != Kind::error) {
      turn.explanation = explain(*kind, message.directObject());
    }
    if (isEvent && turn.explanation) {
      findRequest(turn);
      waiting_.push_back(turns_.size());
    }
    return turn;
  }

  // Looks for the latest request that waits for such an answer.
  void findRequest(Turn &turn) {
    const auto document = documentOf(*turn.explanation);
    for (auto place = waiting_.rbegin(); place != waiting_.rend(); ++place) {
      const Turn &request = turns_[*place];
      const auto requested = documentOf(*request.explanation);
      // The live bibliography is about no document.
      const bool isSameDocument = !document || document == requested || *document == 0;
      if (request.from == turn.to && isSameDocument &&
          appleevents::answers(turn.explanation->kind, request.explanation->kind)) {
        setAnswered(turn, *request.message);
        waiting_.erase(std::next(place).base());
        return;
      }
    }
  }

  static void setAnswered(Turn &turn, const RecordedMessage &request) {
    turn.answers = request.number;
    if (turn.message->time && request.time) {
      turn.delay = *turn.message->time - *request.time;
    }
  }

  const Recording &recording_;
  std::vector<Turn> turns_;
  std::vector<std::size_t> waiting_;  // of turns
};

}  // namespace

std::vector<Turn> turnsOf(const Recording &recording) {
  return ConversationReader(recording).read();
}

bool answers(const EventKind &answer, const EventKind &request) {
  return std::ranges::any_of(pairs, [&](const Pair &pair) {
    return pair.answer == answer.eventID && pair.request == request.eventID &&
           answer.sender == Sender::host && request.sender == Sender::wordProcessor;
  });
}

std::optional<std::uint32_t> documentOf(const Explanation &explanation) {
  const auto field = std::ranges::find(explanation.fields, Content::documentID, &Field::content);
  return field == explanation.fields.end() ? std::nullopt : std::optional(field->number);
}

}  // namespace appleevents
