#include "Sending.h"

namespace load_test {
namespace {

constexpr long patience = 120 * 60;

class Descriptor : public AEDesc {
 public:
  Descriptor() : AEDesc{typeNull, nullptr} {}
  ~Descriptor() { AEDisposeDesc(this); }
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;
};

OSStatus send(OSType target, AEEventClass eventClass, AEEventID eventID, std::string_view payload,
              AESendMode mode, Descriptor &reply) {
  Descriptor address;
  Descriptor event;
  OSStatus status = AECreateDesc(typeApplSignature, &target, sizeof target, &address);
  if (status == noErr) {
    status = AECreateAppleEvent(eventClass, eventID, &address, kAutoGenerateReturnID,
                                kAnyTransactionID, &event);
  }
  if (status == noErr) {
    status = AEPutParamPtr(&event, keyDirectObject, typeChar, payload.data(),
                           static_cast<Size>(payload.size()));
  }
  return status == noErr ? AESendMessage(&event, &reply, mode, patience) : status;
}

}  // namespace

Outcome sendAndWait(OSType target, AEEventClass eventClass, AEEventID eventID,
                    std::string_view payload) {
  Descriptor reply;
  Outcome outcome{send(target, eventClass, eventID, payload, kAEWaitReply, reply), {}};
  Size size = 0;
  if (outcome.status == noErr && AESizeOfParam(&reply, keyDirectObject, nullptr, &size) == noErr) {
    outcome.reply.resize(static_cast<std::size_t>(size));
    AEGetParamPtr(&reply, keyDirectObject, typeWildCard, nullptr, outcome.reply.data(), size,
                  nullptr);
  }
  return outcome;
}

OSStatus sendOneWay(OSType target, AEEventClass eventClass, AEEventID eventID,
                    std::string_view payload) {
  Descriptor reply;
  return send(target, eventClass, eventID, payload, kAENoReply, reply);
}

}  // namespace load_test
