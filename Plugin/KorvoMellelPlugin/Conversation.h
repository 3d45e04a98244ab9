// Whose turn it is with the agent's variables.
//
// While a handler waits for the user, AppKit on macOS may dispatch the next event inside its modal
// loop: that request writes the variables for a document of its own. With one of these in each
// handler that writes them, a request that was interrupted finds them again as it left them; and
// after the last handler they are as if the requests had come one after the other.
#pragma once

#import <Foundation/Foundation.h>

#include <cstdint>
#include <optional>

class Conversation {
 public:
  Conversation(uint64_t &documentID, BOOL &generateBibliography)
      : documentID_(documentID),
        generateBibliography_(generateBibliography),
        outer_(innermost),
        ofOuter_(now()) {
    innermost = this;
    if (outer_ != nullptr && outer_->later_) {
      set(*outer_->later_);
    }
  }
  ~Conversation() {
    innermost = outer_;
    if (later_) {
      set(*later_);
    }
    if (outer_ != nullptr) {
      outer_->later_ = now();
      set(ofOuter_);
    }
  }
  Conversation(const Conversation &) = delete;
  Conversation &operator=(const Conversation &) = delete;

 private:
  struct Variables {
    uint64_t documentID;
    BOOL generateBibliography;
  };

  Variables now() const { return {documentID_, generateBibliography_}; }
  void set(const Variables &variables) {
    documentID_ = variables.documentID;
    generateBibliography_ = variables.generateBibliography;
  }

  inline static Conversation *innermost = nullptr;

  uint64_t &documentID_;
  BOOL &generateBibliography_;
  Conversation *outer_;
  Variables ofOuter_;
  // What the requests that interrupted this one left behind.
  std::optional<Variables> later_{};
};
