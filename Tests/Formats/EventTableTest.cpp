#include <Formats/EventTable.h>

#include <gtest/gtest.h>

namespace {

using namespace formats;

TEST(EventTable, FourCharacterCodesHoldTheFirstCharacterInTheHighestByte) {
  static_assert(fourCharacterCode("mLeL") == 0x6D4C654C);
  EXPECT_EQ(korvoSignature, 0x4B52564Fu);
  EXPECT_EQ(mellelSignature, 0x6D4C654Cu);
  EXPECT_EQ(insertionEventClass, 0x42455242u);
  EXPECT_EQ(directObjectKeyword, 0x2D2D2D2Du);
  EXPECT_EQ(textDescriptorType, 0x54455854u);
  EXPECT_EQ(bufferDescriptorType, 0x42554646u);
}

TEST(EventTable, RequestsHaveTheirCodes) {
  EXPECT_EQ(request::insertCitation, 0x46494E44u);    // FIND
  EXPECT_EQ(request::findCitation, 0x464E444Eu);      // FNDN
  EXPECT_EQ(request::handshake, 0x494D4852u);         // IMHR
  EXPECT_EQ(request::liveBibliography, 0x4C564251u);  // LVBQ
  EXPECT_EQ(request::preliminaryScan, 0x50525351u);   // PRSQ
  EXPECT_EQ(request::scanCitations, 0x526D6369u);     // Rmci
  EXPECT_EQ(request::finalScan, 0x53434E51u);         // SCNQ
  EXPECT_EQ(request::importCitations, 0x53594E43u);   // SYNC
}

TEST(EventTable, AnswersHaveTheirCodes) {
  EXPECT_EQ(answer::preferences, 0x50524546u);         // PREF
  EXPECT_EQ(answer::cancel, 0x526D6372u);              // Rmcr
  EXPECT_EQ(answer::citationResolution, 0x50525352u);  // PRSR
  EXPECT_EQ(answer::finalScan, 0x53434E52u);           // SCNR
  EXPECT_EQ(answer::citation, 0x63697465u);            // cite
}

}  // namespace
