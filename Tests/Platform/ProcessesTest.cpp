#include "FourCharacterCodes.h"

#include <Tests/Support/RecordingCarrier.h>

#include <ApplicationServices/ApplicationServices.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using platform_test::code;
using test_support::RecordingCarrier;

ProcessInfoRec emptyRecord() {
  ProcessInfoRec record{};
  record.processInfoLength = sizeof record;
  return record;
}

std::vector<OSType> signaturesByEnumeration() {
  std::vector<OSType> signatures;
  ProcessSerialNumber number{0, kNoProcess};
  while (GetNextProcess(&number) == noErr && signatures.size() < 100) {
    ProcessInfoRec record = emptyRecord();
    EXPECT_EQ(GetProcessInformation(&number, &record), noErr);
    signatures.push_back(record.processSignature);
  }
  return signatures;
}

TEST(Processes, EnumerationVisitsEachProcessOnceAndEnds) {
  RecordingCarrier carrier;
  EXPECT_TRUE(signaturesByEnumeration().empty());
  carrier.addProcess(code("AAAA"));
  carrier.addProcess(code("BBBB"));
  carrier.addProcess(code("CCCC"));
  EXPECT_EQ(signaturesByEnumeration(),
            (std::vector<OSType>{code("AAAA"), code("BBBB"), code("CCCC")}));
}

TEST(Processes, EnumerationAfterAProcessThatEndedFails) {
  RecordingCarrier carrier;
  ProcessSerialNumber number = carrier.addProcess(code("AAAA"));
  carrier.running.clear();
  EXPECT_EQ(GetNextProcess(&number), procNotFound);
}

TEST(Processes, EnumerationReportsTheCarriersFailure) {
  RecordingCarrier carrier;
  carrier.enumerationStatus = connectionInvalid;
  ProcessSerialNumber number{0, kNoProcess};
  EXPECT_EQ(GetNextProcess(&number), connectionInvalid);
}

TEST(Processes, InformationHoldsNumberSignatureAndName) {
  RecordingCarrier carrier;
  const ProcessSerialNumber number = carrier.addProcess(code("mLeL"));
  unsigned char name[256] = {};
  ProcessInfoRec record = emptyRecord();
  record.processName = name;
  ASSERT_EQ(GetProcessInformation(&number, &record), noErr);
  EXPECT_EQ(record.processSignature, code("mLeL"));
  EXPECT_EQ(record.processNumber.lowLongOfPSN, number.lowLongOfPSN);
  EXPECT_EQ(record.processNumber.highLongOfPSN, number.highLongOfPSN);
  EXPECT_EQ(record.processInfoLength, sizeof record);
  EXPECT_EQ(std::string(name, name + 5), "\4mLeL");
}

TEST(Processes, InformationRefusesARecordOfAnotherLength) {
  RecordingCarrier carrier;
  const ProcessSerialNumber number = carrier.addProcess(code("mLeL"));
  ProcessInfoRec record{};
  EXPECT_EQ(GetProcessInformation(&number, &record), paramErr);
}

TEST(Processes, InformationOfNobodyIsNotFound) {
  RecordingCarrier carrier;
  ProcessInfoRec record = emptyRecord();
  const ProcessSerialNumber nobody{1, 2};
  EXPECT_EQ(GetProcessInformation(&nobody, &record), procNotFound);
}

TEST(Processes, FrontingHandsOnNumberAndStatus) {
  RecordingCarrier carrier;
  const ProcessSerialNumber number = carrier.addProcess(code("mLeL"));
  EXPECT_EQ(SetFrontProcess(&number), noErr);
  carrier.activationStatus = procNotFound;
  EXPECT_EQ(SetFrontProcess(&number), procNotFound);
  ASSERT_EQ(carrier.activated.size(), 2u);
  EXPECT_EQ(carrier.activated[0].lowLongOfPSN, number.lowLongOfPSN);
}

}  // namespace
