#include "FourCharacterCodes.h"

#include <Platform/Bus/BusNames.h>

#include <ApplicationServices/MacErrors.h>
#include <gtest/gtest.h>

namespace {

using namespace platform;
using platform_test::code;

TEST(BusNames, SignatureIsEightUpperCaseHexadecimalDigits) {
  EXPECT_EQ(busName(code("mLeL")), "org.korvo.AppleEvents.S6D4C654C");
  EXPECT_EQ(busName(code("KRVO")), "org.korvo.AppleEvents.S4B52564F");
  EXPECT_EQ(busName(0xAB), "org.korvo.AppleEvents.S000000AB");
}

TEST(BusNames, SignatureIsReadBackFromItsOwnSpellingOnly) {
  EXPECT_EQ(signatureInBusName("org.korvo.AppleEvents.S6D4C654C"), code("mLeL"));
  for (const char *name :
       {"org.korvo.AppleEvents.S6d4c654c", "org.korvo.AppleEvents.S6D4C654",
        "org.korvo.AppleEvents.S6D4C654C0", "org.korvo.AppleEvents.S6D4C654G",
        "org.korvo.AppleEvents.S-D4C654C", "org.korvo.AppleEvents", ":1.5", ""}) {
    EXPECT_EQ(signatureInBusName(name), std::nullopt) << name;
  }
}

TEST(BusNames, StatusAndErrorNameAreEachOthersInverse) {
  EXPECT_EQ(errorName(errAEEventNotHandled), "org.korvo.AppleEvents1.Error.S1708");
  for (const OSStatus status :
       {OSStatus{-1}, OSStatus{procNotFound}, OSStatus{errAEEventFailed}, OSStatus{-2147483647}}) {
    EXPECT_EQ(statusOfError(errorName(status)), status);
  }
}

TEST(BusNames, ErrorsThatOtherProgramsMayMakeUpAreStillFailures) {
  for (const char *name :
       {"org.korvo.AppleEvents1.Error.S", "org.korvo.AppleEvents1.Error.S0",
        "org.korvo.AppleEvents1.Error.S-5", "org.korvo.AppleEvents1.Error.S99999999999",
        "org.korvo.AppleEvents1.Error.S12x", "com.example.Error", ""}) {
    EXPECT_EQ(statusOfError(name), errAEEventFailed) << name;
  }
}

TEST(BusNames, ErrorsOfTheBusItselfHaveStatuses) {
  EXPECT_EQ(statusOfError("org.freedesktop.DBus.Error.ServiceUnknown"), procNotFound);
  EXPECT_EQ(statusOfError("org.freedesktop.DBus.Error.NameHasNoOwner"), procNotFound);
  EXPECT_EQ(statusOfError("org.freedesktop.DBus.Error.UnknownMethod"), errAEEventNotHandled);
  EXPECT_EQ(statusOfError("org.freedesktop.DBus.Error.AccessDenied"), errAEEventNotPermitted);
  EXPECT_EQ(statusOfError("org.freedesktop.DBus.Error.NoReply"), connectionInvalid);
}

}  // namespace
