// The word processor's end: it has Mellel's signature and hands on whatever the plug-in sends.
#pragma once

#include <ApplicationServices/MacTypes.h>

#include <functional>
#include <string_view>

namespace load_test {

class AnswerEnd {
 public:
  using Function =
      std::function<void(FourCharCode eventClass, FourCharCode eventID, std::string_view payload)>;

  // Calls `onAnswer` from the run loop. Ends the program when the signature cannot be had.
  explicit AnswerEnd(Function onAnswer);
  ~AnswerEnd();
  AnswerEnd(const AnswerEnd &) = delete;
  AnswerEnd &operator=(const AnswerEnd &) = delete;

 private:
  Function onAnswer_;
  void *handler_;
};

}  // namespace load_test
