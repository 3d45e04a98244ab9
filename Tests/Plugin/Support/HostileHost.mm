#include "HostileHost.h"

#import "RecordingHost.h"
#include "Text.h"

#import <HostContract/HostContract.h>

#include <new>
#include <stdexcept>

using plugin_test::hostCalls;
using plugin_test::Misbehaviour;

namespace {

std::size_t aliveObjects = 0;

using ObjectToObject = id (*)(id);

NSArray *mappedArray(NSArray *array, ObjectToObject convert) {
  NSMutableArray *result = [NSMutableArray arrayWithCapacity:[array count]];
  for (NSUInteger index = 0; index < [array count]; ++index) {
    [result addObject:convert([array objectAtIndex:index])];
  }
  return result;
}

NSSet *mappedSet(NSSet *set, ObjectToObject convert) {
  NSMutableSet *result = [NSMutableSet setWithCapacity:[set count]];
  NSEnumerator *elements = [set objectEnumerator];
  while (id element = [elements nextObject]) {
    [result addObject:convert(element)];
  }
  return result;
}

bool isInterposed(id object) { return object_getClass(object) == [InterposedObject class]; }

id taken(id object) {
  if (object == nil) {
    return nil;
  }
  if (isInterposed(object)) {
    return ((InterposedObject *)object)->target;
  }
  return [object isKindOfClass:[NSArray class]] ? mappedArray(object, taken) : object;
}

bool belongsToHost(id object) {
  return [object conformsToProtocol:@protocol(KorvoLibrary)] ||
         [object conformsToProtocol:@protocol(KorvoReference)] ||
         [object conformsToProtocol:@protocol(KorvoCitation)] ||
         [object conformsToProtocol:@protocol(KorvoCitationGroup)] ||
         [object conformsToProtocol:@protocol(KorvoBibStyle)] ||
         [object isKindOfClass:[RecordingBibliography class]];
}

id interposed(id object) {
  if (object == nil || isInterposed(object)) {
    return object;
  }
  if ([object isKindOfClass:[NSArray class]]) {
    return mappedArray(object, interposed);
  }
  if ([object isKindOfClass:[NSSet class]]) {
    return mappedSet(object, interposed);
  }
  return belongsToHost(object) ? [InterposedObject before:object] : object;
}

bool isObject(const char *type) { return *type == '@'; }

bool returnsObject(NSInvocation *call) {
  return isObject([[call methodSignature] methodReturnType]);
}

id objectReturned(NSInvocation *call) {
  id object = nil;
  if (returnsObject(call)) {
    [call getReturnValue:&object];
  }
  return object;
}

void takeArguments(NSInvocation *call) {
  NSMethodSignature *signature = [call methodSignature];
  for (NSUInteger index = 2; index < [signature numberOfArguments]; ++index) {
    if (isObject([signature getArgumentTypeAtIndex:index])) {
      id argument = nil;
      [call getArgument:&argument atIndex:static_cast<NSInteger>(index)];
      argument = taken(argument);
      [call setArgument:&argument atIndex:static_cast<NSInteger>(index)];
    }
  }
}

void interposeResult(NSInvocation *call) {
  if (returnsObject(call)) {
    id result = interposed(objectReturned(call));
    [call setReturnValue:&result];
  }
}

std::string descriptionOf(NSInvocation *call) {
  return "-[" + plugin_test::str(NSStringFromClass([[call target] class])) + " " +
         plugin_test::str(NSStringFromSelector([call selector])) + "]";
}

bool goesWrong() {
  const auto &calls = hostCalls();
  return calls.misbehaviour != nullptr && calls.chosen != 0 &&
         (calls.count == calls.chosen || (calls.andAllThatFollow && calls.count > calls.chosen));
}

}  // namespace

@implementation InterposedObject

+ (id)before:(id)object {
  if (object == nil) {
    return nil;
  }
  InterposedObject *proxy = [self alloc];
  proxy->target = [object retain];
  ++aliveObjects;
  return [proxy autorelease];
}

+ (std::size_t)alive {
  return aliveObjects;
}

- (void)dealloc {
  [target release];
  --aliveObjects;
  [super dealloc];
}

- (NSMethodSignature *)methodSignatureForSelector:(SEL)selector {
  return [target methodSignatureForSelector:selector];
}

- (void)forwardInvocation:(NSInvocation *)call {
  takeArguments(call);
  [call setTarget:target];
  ++hostCalls().count;
  if (!goesWrong()) {
    [call invoke];
  } else {
    if (hostCalls().count == hostCalls().chosen) {
      hostCalls().chosenCall = descriptionOf(call);
    }
    // Before the call is settled: it may be left by an exception.
    hostCalls().wentWrong = true;
    if (!hostCalls().misbehaviour->settle(call)) {
      hostCalls().wentWrong = false;
    }
  }
  interposeResult(call);
}

@end

namespace plugin_test {

HostCalls &hostCalls() {
  static HostCalls state;
  return state;
}

namespace {

bool leaveUndone(NSInvocation *call) {
  std::vector<char> zeros([[call methodSignature] methodReturnLength]);
  if (!zeros.empty()) {
    [call setReturnValue:zeros.data()];
  }
  return true;
}

// Makes the call and replaces what it returned by what the function makes of it; nil leaves it.
template <typename Replace>
bool replaceAnswer(NSInvocation *call, Replace replace) {
  [call invoke];
  id answer = objectReturned(call);
  id other = answer == nil ? nil : replace(answer);
  if (other == nil) {
    return false;
  }
  [call setReturnValue:&other];
  return true;
}

id emptyOfSameKind(id answer) {
  if ([answer isKindOfClass:[NSArray class]]) {
    return [NSArray array];
  }
  if ([answer isKindOfClass:[NSSet class]]) {
    return [NSSet set];
  }
  if ([answer isKindOfClass:[NSString class]]) {
    return @"";
  }
  if ([answer isKindOfClass:[NSDictionary class]]) {
    return [NSDictionary dictionary];
  }
  if ([answer isKindOfClass:[NSData class]]) {
    return [NSData data];
  }
  if ([answer isKindOfClass:[NSAttributedString class]] &&
      ![answer isKindOfClass:[RecordingBibliography class]]) {
    return [[[NSAttributedString alloc] init] autorelease];
  }
  return nil;
}

id collectionOf(id answer, NSArray *elements) {
  if ([answer isKindOfClass:[NSArray class]]) {
    return elements;
  }
  return [answer isKindOfClass:[NSSet class]] ? [NSSet setWithArray:elements] : nil;
}

id strangersInside(id answer) {
  return collectionOf(answer, array({[NSNull null], [NSNumber numberWithInt:7]}));
}

// Ten thousand of what is there; of references where nothing is.
id tenThousand(id answer) {
  NSMutableArray *elements = [NSMutableArray arrayWithCapacity:10000];
  id model =
      [answer isKindOfClass:[NSArray class]] && [answer count] > 0 ? [answer objectAtIndex:0] : nil;
  for (int index = 0; index < 10000; ++index) {
    RecordingReference *reference = nil;
    if (model == nil) {
      reference = [[[RecordingReference alloc] init] autorelease];
      reference->name = "number " + std::to_string(index);
    }
    [elements addObject:model == nil ? reference : model];
  }
  return collectionOf(answer, elements);
}

// Where the answer is text, of either kind, the text that the function makes of it.
template <typename Change>
id changedText(id answer, Change change) {
  if ([answer isKindOfClass:[NSString class]]) {
    return change(answer);
  }
  if ([answer isKindOfClass:[NSAttributedString class]] &&
      ![answer isKindOfClass:[RecordingBibliography class]]) {
    return [[[NSAttributedString alloc] initWithString:change([answer string])] autorelease];
  }
  return nil;
}

NSString *longer(NSString *text) { return [text stringByAppendingString:@" and more"]; }

NSString *shorter(NSString *text) {
  return [text length] == 0 ? nil : [text substringToIndex:[text length] - 1];
}

NSString *oneMebibyte(NSString *) {
  return [@"" stringByPaddingToLength:1 << 20 withString:@"0123456789abcdef" startingAtIndex:0];
}

NSString *withNULs(NSString *text) {
  const unichar nul = 0;
  NSString *one = [NSString stringWithCharacters:&nul length:1];
  return [NSString stringWithFormat:@"%@a%@b%@", one, one, text];
}

// GNUstep makes no such string of code units, but formats one.
NSString *withLoneSurrogates(NSString *text) {
  return [NSString
      stringWithFormat:@"%C%@%C", static_cast<unichar>(0xDC00), text, static_cast<unichar>(0xD800)];
}

Misbehaviour large(Misbehaviour misbehaviour) {
  misbehaviour.isLarge = true;
  return misbehaviour;
}

Misbehaviour answering(const std::string &name, std::function<id(id)> replace) {
  return {name, false, [replace](NSInvocation *call) { return replaceAnswer(call, replace); }};
}

Misbehaviour answeringText(const std::string &name, NSString *(*change)(NSString *)) {
  return answering(name, [change](id answer) { return changedText(answer, change); });
}

Misbehaviour throwing(const std::string &name, void (*raise)()) {
  return {name, true, [raise](NSInvocation *) {
            raise();
            return true;
          }};
}

Misbehaviour throwingAfterwards(const std::string &name, void (*raise)()) {
  return {name, true, [raise](NSInvocation *call) {
            [call invoke];
            raise();
            return true;
          }};
}

void raiseException() { [NSException raise:@"HostFailure" format:@"the host's database is gone"]; }
void throwString() { @throw @"a string"; }
void throwRuntimeError() { throw std::runtime_error("the host's database is gone"); }
void throwBadAlloc() { throw std::bad_alloc(); }
void throwInteger() { throw 42; }

std::vector<Misbehaviour> makeMisbehaviours() {
  return {
      {"leaves the call undone", false, leaveUndone},
      answering("answers with nothing in it", emptyOfSameKind),
      answering("answers with an object of another class",
                [](id) { return [NSNumber numberWithInt:7]; }),
      answering("answers with null objects inside", strangersInside),
      large(answering("answers with ten thousand", tenThousand)),
      answeringText("answers with longer text", longer),
      answeringText("answers with shorter text", shorter),
      large(answeringText("answers with a mebibyte of text", oneMebibyte)),
      answeringText("answers with NULs in the text", withNULs),
      answeringText("answers with lone surrogates", withLoneSurrogates),
      throwing("raises an NSException", raiseException),
      throwing("throws an NSString", throwString),
      throwing("throws a std::runtime_error", throwRuntimeError),
      throwing("throws a std::bad_alloc", throwBadAlloc),
      throwing("throws an int", throwInteger),
      throwingAfterwards("raises an NSException afterwards", raiseException),
      throwingAfterwards("throws a std::runtime_error afterwards", throwRuntimeError),
  };
}

}  // namespace

const std::vector<Misbehaviour> &misbehaviours() {
  static const std::vector<Misbehaviour> all = makeMisbehaviours();
  return all;
}

const Misbehaviour &misbehaviourNamed(const std::string &name) {
  for (const Misbehaviour &misbehaviour : misbehaviours()) {
    if (misbehaviour.name == name) {
      return misbehaviour;
    }
  }
  throw std::out_of_range(name);
}

}  // namespace plugin_test
