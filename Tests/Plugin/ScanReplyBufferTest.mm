// The scan reply buffer as the agent fills it.

#import "Support/AgentTest.h"

namespace plugin_test {
namespace {

using testing::ElementsAre;
using namespace std::string_literals;

class ScanReplyBuffer : public AgentTest {
 protected:
  ScanReplyBuffer() {
    setDocumentID(0x9000000011223344);
    style_ = [host_ addStyle:"abc"];
  }

  static id attributed(NSString *text) {
    return [[[NSAttributedString alloc] initWithString:text] autorelease];
  }

  std::string assemble(NSArray *groupStrings, NSData *rtfData) {
    std::vector<char> buffer(200);
    formats::PayloadWriter writer(buffer);
    const int64_t written = [agent_ assembleScanBuffer:writer
                              withCitationGroupStrings:groupStrings
                                               rtfData:rtfData
                                              forStyle:style_];
    return std::string(buffer.data(), static_cast<std::size_t>(written));
  }

  RecordingStyle *style_;
};

TEST_F(ScanReplyBuffer, SmallestReplyHasTwentyTwoBytes) {
  EXPECT_EQ(assemble([NSArray array], nil), "\0\0\x11\x22\x33\x44\0\0\0\0\0\0\0\0"
                                            "abc\0\0\0\0\0"s);
}

TEST_F(ScanReplyBuffer, SuperscriptAndBibliographyAreFlagsAndTheRTFEndsTheBuffer) {
  style_->superscript = YES;
  NSData *rtf = [NSData dataWithBytes:"{rtf}" length:5];
  EXPECT_EQ(assemble([NSArray array], rtf), "\0\0\x11\x22\x33\x44\0\0\0\0\0\xFF\xFF\0"
                                            "abc\0\0\0\0\0{rtf}"s);
}

TEST_F(ScanReplyBuffer, EmptyRTFSetsTheFlagAndAddsNoBytes) {
  EXPECT_EQ(assemble([NSArray array], [NSData data]), "\0\0\x11\x22\x33\x44\0\0\0\0\0\0\xFF\0"
                                                      "abc\0\0\0\0\0"s);
}

TEST_F(ScanReplyBuffer, GroupWithEmptyPidginRTFIsOneNUL) {
  EXPECT_EQ(assemble(array({attributed(@""), attributed(@"x"), attributed(@"")}), nil).substr(18),
            "\0\0\0\3\0x\0\0"s);
  EXPECT_THAT(calls(), ElementsAre("pidginRTF ", "pidginRTF x", "pidginRTF "));
}

TEST_F(ScanReplyBuffer, HostWithoutPidginRTFCountsAsAnEmptyGroup) {
  hostScript().pidginRTF = [](NSAttributedString *) -> NSString * { return nil; };
  EXPECT_EQ(assemble(array({attributed(@"x")}), nil).substr(18), "\0\0\0\1\0"s);
}

TEST_F(ScanReplyBuffer, NameIsWrittenInUTF8) {
  style_->styleName = "ñ漢";
  EXPECT_EQ(assemble([NSArray array], nil).substr(14), "ñ漢\0\0\0\0\0"s);
}

}  // namespace
}  // namespace plugin_test
