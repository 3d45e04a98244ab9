// A host whose n-th call goes wrong.
//
// InterposedObject stands before an object of the host and passes every message on. What the host
// returns is interposed in its turn (libraries, references, citations, groups, styles and the
// bibliography, alone or in arrays and sets), and taken out again where it comes back as an
// argument: so every message that the plug-in sends to anything of the host goes through one place,
// where it is numbered, and where the chosen one meets with a misbehaviour.
//
//   [agentClass setAdapter:[InterposedObject before:host]];
//   hostCalls().begin();                              // a good run counts the calls
//   ... deliver a request ...
//   const std::size_t calls = hostCalls().count;
//   for (std::size_t call = 1; call <= calls; ++call)
//     for (const Misbehaviour &misbehaviour : misbehaviours()) {
//       hostCalls().begin(call, &misbehaviour);
//       ... deliver the request; see what became of it ...
//     }
//
// Forwarding costs about 2 microseconds a call. Exceptions of both languages pass through it.
#pragma once

#import <Foundation/Foundation.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace plugin_test {

// One way in which a call to the host can go wrong.
struct Misbehaviour {
  std::string name;
  // Whether the call is left by an exception.
  bool throws = false;
  // Settles a call that is ready to be invoked. Returns false, with the call made as it should be,
  // where the misbehaviour cannot be had from such a call (an empty set from one that returns
  // BOOL).
  std::function<bool(NSInvocation *)> settle;
  // Whether it takes milliseconds rather than microseconds.
  bool isLarge = false;
};

// All there are: answers of nothing, of nothing in it, of other classes, of too much and of odd
// text; calls that are not carried out; and exceptions of every kind, before and after the work.
const std::vector<Misbehaviour> &misbehaviours();
// The one of that name.
const Misbehaviour &misbehaviourNamed(const std::string &name);

// The calls to interposed objects. One for the process.
struct HostCalls {
  // Since begin().
  std::size_t count = 0;
  // The number of the call that goes wrong, from 1; 0 for none.
  std::size_t chosen = 0;
  const Misbehaviour *misbehaviour = nullptr;
  // Every one from the chosen call on goes wrong.
  bool andAllThatFollow = false;
  // Whether one did, and which it was ("-[RecordingStyle name]").
  bool wentWrong = false;
  std::string chosenCall;

  void begin(std::size_t chosenNumber = 0, const Misbehaviour *chosenMisbehaviour = nullptr,
             bool all = false) {
    *this = {0, chosenNumber, chosenMisbehaviour, all, false, {}};
  }
};
HostCalls &hostCalls();

}  // namespace plugin_test

@interface InterposedObject : NSProxy {
 @public
  id target;
}
// Autoreleased; holds the object. nil for nil.
+ (id)before:(id)object;
// How many there are at this moment.
+ (std::size_t)alive;
@end
