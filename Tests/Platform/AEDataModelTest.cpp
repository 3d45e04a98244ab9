#include "FourCharacterCodes.h"

#include <Tests/Support/RecordingCarrier.h>

#include <ApplicationServices/ApplicationServices.h>
#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

using platform_test::code;

// Disposes at the end of the scope.
struct Descriptor : AEDesc {
  Descriptor() : AEDesc{typeNull, nullptr} {}
  ~Descriptor() { AEDisposeDesc(this); }
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;
};

std::string dataOf(const AEDesc &descriptor) {
  std::string data(static_cast<std::size_t>(AEGetDescDataSize(&descriptor)), '?');
  EXPECT_EQ(AEGetDescData(&descriptor, data.data(), static_cast<Size>(data.size())), noErr);
  return data;
}

class AEDataModel : public testing::Test {
 protected:
  AEDataModel() {
    const OSType signature = code("Test");
    EXPECT_EQ(AECreateDesc(typeApplSignature, &signature, sizeof signature, &target_), noErr);
    EXPECT_EQ(AECreateAppleEvent(code("clas"), code("evnt"), &target_, kAutoGenerateReturnID,
                                 kAnyTransactionID, &event_),
              noErr);
  }

  Descriptor target_;
  Descriptor event_;
};

TEST_F(AEDataModel, DescriptorKeepsACopyOfItsBytes) {
  std::string bytes("a\0b", 3);
  Descriptor descriptor;
  ASSERT_EQ(AECreateDesc(code("BUFF"), bytes.data(), 3, &descriptor), noErr);
  bytes = "xyz";
  EXPECT_EQ(descriptor.descriptorType, code("BUFF"));
  EXPECT_EQ(dataOf(descriptor), std::string("a\0b", 3));
}

TEST_F(AEDataModel, DescriptorOfNothingIsAllowed) {
  Descriptor descriptor;
  ASSERT_EQ(AECreateDesc(typeChar, nullptr, 0, &descriptor), noErr);
  EXPECT_EQ(descriptor.descriptorType, DescType{typeChar});
  EXPECT_EQ(AEGetDescDataSize(&descriptor), 0);
}

TEST_F(AEDataModel, NegativeSizeOrMissingBytesAreRefused) {
  Descriptor descriptor;
  EXPECT_EQ(AECreateDesc(typeChar, "a", -1, &descriptor), paramErr);
  EXPECT_EQ(AECreateDesc(typeChar, nullptr, 1, &descriptor), paramErr);
  EXPECT_EQ(descriptor.descriptorType, DescType{typeNull});
  EXPECT_EQ(AEPutParamPtr(&event_, keyDirectObject, typeChar, nullptr, 5), paramErr);
  EXPECT_EQ(AESizeOfParam(&event_, keyDirectObject, nullptr, nullptr), errAEDescNotFound);
}

TEST_F(AEDataModel, DisposingTwiceIsHarmless) {
  Descriptor descriptor;
  ASSERT_EQ(AECreateDesc(typeChar, "a", 1, &descriptor), noErr);
  EXPECT_EQ(AEDisposeDesc(&descriptor), noErr);
  EXPECT_EQ(descriptor.dataHandle, nullptr);
  EXPECT_EQ(AEDisposeDesc(&descriptor), noErr);
}

TEST_F(AEDataModel, ParameterComesBackWithTypeAndRealSize) {
  ASSERT_EQ(AEPutParamPtr(&event_, keyDirectObject, typeChar, "hello", 5), noErr);
  DescType type = 0;
  Size size = 0;
  std::array<char, 3> start{};
  EXPECT_EQ(AEGetParamPtr(&event_, keyDirectObject, typeWildCard, &type, start.data(), 3, &size),
            noErr);
  EXPECT_EQ(type, DescType{typeChar});
  EXPECT_EQ(size, 5);
  EXPECT_EQ(std::string(start.data(), 3), "hel");
  EXPECT_EQ(AESizeOfParam(&event_, keyDirectObject, &type, &size), noErr);
  EXPECT_EQ(size, 5);
}

TEST_F(AEDataModel, PuttingAgainReplaces) {
  ASSERT_EQ(AEPutParamPtr(&event_, keyDirectObject, typeChar, "old", 3), noErr);
  ASSERT_EQ(AEPutParamPtr(&event_, keyDirectObject, code("BUFF"), "newer", 5), noErr);
  Descriptor parameter;
  ASSERT_EQ(AEGetParamDesc(&event_, keyDirectObject, typeWildCard, &parameter), noErr);
  EXPECT_EQ(parameter.descriptorType, code("BUFF"));
  EXPECT_EQ(dataOf(parameter), "newer");
}

TEST_F(AEDataModel, MissingParameterAndOtherTypeAreToldApart) {
  ASSERT_EQ(AEPutParamPtr(&event_, keyDirectObject, typeChar, "a", 1), noErr);
  Descriptor parameter;
  EXPECT_EQ(AEGetParamDesc(&event_, code("none"), typeWildCard, &parameter), errAEDescNotFound);
  EXPECT_EQ(AEGetParamDesc(&event_, keyDirectObject, code("long"), &parameter), errAECoercionFail);
  EXPECT_EQ(AEGetParamDesc(&event_, keyDirectObject, typeChar, &parameter), noErr);
}

TEST_F(AEDataModel, DeletedParameterIsGone) {
  ASSERT_EQ(AEPutParamPtr(&event_, keyDirectObject, typeChar, "a", 1), noErr);
  EXPECT_EQ(AEDeleteParam(&event_, keyDirectObject), noErr);
  EXPECT_EQ(AEDeleteParam(&event_, keyDirectObject), errAEDescNotFound);
}

TEST_F(AEDataModel, PlainDescriptorIsNoEventAndAnEventIsNoParameter) {
  EXPECT_EQ(AEPutParamPtr(&target_, keyDirectObject, typeChar, "a", 1), errAENotAppleEvent);
  EXPECT_EQ(AESizeOfParam(&target_, keyDirectObject, nullptr, nullptr), errAENotAppleEvent);
  EXPECT_EQ(AEPutParamDesc(&event_, keyDirectObject, &event_), errAENotAEDesc);
  EXPECT_EQ(AEGetDescDataSize(&event_), 0);
}

TEST_F(AEDataModel, SendHandsTheCarrierEverythingTheCallerGave) {
  test_support::RecordingCarrier carrier;
  ASSERT_EQ(AEPutParamPtr(&event_, keyDirectObject, code("BUFF"), "\0\1", 2), noErr);
  Descriptor reply;
  EXPECT_EQ(AESendMessage(&event_, &reply, kAENoReply, kNoTimeOut), noErr);
  ASSERT_EQ(carrier.sent.size(), 1u);
  const platform::OutgoingEvent &sent = carrier.sent.front();
  EXPECT_EQ(sent.targetSignature, code("Test"));
  EXPECT_EQ(sent.eventClass, code("clas"));
  EXPECT_EQ(sent.eventID, code("evnt"));
  EXPECT_EQ(sent.returnID, kAutoGenerateReturnID);
  EXPECT_EQ(sent.transactionID, kAnyTransactionID);
  EXPECT_FALSE(sent.wantsReply);
  EXPECT_EQ(sent.timeOutInTicks, kNoTimeOut);
  ASSERT_EQ(sent.parameters.size(), 1u);
  EXPECT_EQ(sent.parameters[0].keyword, AEKeyword{keyDirectObject});
  EXPECT_EQ(sent.parameters[0].type, code("BUFF"));
  EXPECT_EQ(test_support::RecordingCarrier::directObject(sent), std::string("\0\1", 2));
  EXPECT_EQ(reply.descriptorType, DescType{typeNull});
}

TEST_F(AEDataModel, AwaitedReplyIsAnEventWithItsParameters) {
  test_support::RecordingCarrier carrier;
  const auto data = platform::SharedBytes::copyOf(std::as_bytes(std::span("yes", 3)));
  carrier.sendResult = platform::Parameters{{keyDirectObject, typeChar, *data}};
  Descriptor reply;
  ASSERT_EQ(AESendMessage(&event_, &reply, kAEWaitReply, 60), noErr);
  EXPECT_TRUE(carrier.sent.at(0).wantsReply);
  EXPECT_EQ(carrier.sent.at(0).timeOutInTicks, 60);
  EXPECT_EQ(reply.descriptorType, DescType{typeAppleEvent});
  Descriptor answer;
  ASSERT_EQ(AEGetParamDesc(&reply, keyDirectObject, typeChar, &answer), noErr);
  EXPECT_EQ(dataOf(answer), "yes");
}

TEST_F(AEDataModel, CarriersStatusIsTheSendsStatus) {
  test_support::RecordingCarrier carrier;
  carrier.sendResult = std::unexpected(OSStatus{procNotFound});
  EXPECT_EQ(AESendMessage(&event_, nullptr, kAENoReply, kNoTimeOut), procNotFound);
}

TEST_F(AEDataModel, AQueuedReplyIsNotWaitedForAndNeedsNoPlace) {
  test_support::RecordingCarrier carrier;
  EXPECT_EQ(AESendMessage(&event_, nullptr, kAEQueueReply, kNoTimeOut), noErr);
  ASSERT_EQ(carrier.sent.size(), 1U);
  EXPECT_TRUE(carrier.sent[0].queuesReply);
  EXPECT_FALSE(carrier.sent[0].wantsReply);
}

TEST_F(AEDataModel, SendRefusesWhatItCannotMean) {
  test_support::RecordingCarrier carrier;
  Descriptor reply;
  EXPECT_EQ(AESendMessage(&target_, &reply, kAENoReply, kNoTimeOut), errAENotAppleEvent);
  EXPECT_EQ(AESendMessage(nullptr, &reply, kAENoReply, kNoTimeOut), errAENotAppleEvent);
  EXPECT_EQ(AESendMessage(&event_, &reply, 0, kNoTimeOut), paramErr);
  EXPECT_EQ(AESendMessage(&event_, &reply, kAENoReply, -3), paramErr);
  EXPECT_EQ(AESendMessage(&event_, nullptr, kAEWaitReply, kNoTimeOut), paramErr);
  Descriptor nowhere;
  ASSERT_EQ(AECreateAppleEvent(1, 2, nullptr, kAutoGenerateReturnID, kAnyTransactionID, &nowhere),
            noErr);
  EXPECT_EQ(AESendMessage(&nowhere, &reply, kAENoReply, kNoTimeOut), errAEWrongDataType);
  Descriptor oddTarget;
  Descriptor odd;
  ASSERT_EQ(AECreateDesc(typeApplSignature, "abc", 3, &oddTarget), noErr);
  ASSERT_EQ(AECreateAppleEvent(1, 2, &oddTarget, kAutoGenerateReturnID, kAnyTransactionID, &odd),
            noErr);
  EXPECT_EQ(AESendMessage(&odd, &reply, kAENoReply, kNoTimeOut), errAEWrongDataType);
  EXPECT_TRUE(carrier.sent.empty());
}

}  // namespace
