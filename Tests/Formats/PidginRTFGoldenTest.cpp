// Whole texts as files, for eyes: what goes in and what comes out, side by side. In a file of runs
// each line is the letters of a run's attributes ("biu^_"), a tab and its text.

#include <Formats/PidginRTFReader.h>
#include <Formats/PidginRTFWriter.h>
#include <Formats/Unicode.h>

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

namespace {

std::string golden(const std::string &name) {
  std::ifstream file(GOLDEN_FILES "/" + name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  std::ostringstream contents;
  contents << file.rdbuf();
  return contents.str();
}

TEST(PidginRTFGolden, RunsOfEveryAttributeAreWrittenAsInTheFile) {
  std::istringstream runs(golden("PidginRTFWriter.runs"));
  formats::PidginRTFWriter writer;
  for (std::string line; std::getline(runs, line);) {
    const std::size_t tab = line.find('\t');
    ASSERT_NE(tab, std::string::npos) << line;
    const std::string styles = line.substr(0, tab);
    writer.append(formats::decodeUTF8(line.substr(tab + 1)), {.bold = styles.contains('b'),
                                                              .italic = styles.contains('i'),
                                                              .underline = styles.contains('u'),
                                                              .superscript = styles.contains('^'),
                                                              .subscript = styles.contains('_')});
  }
  EXPECT_EQ(formats::encodeUTF8(writer.finish()) + "\n", golden("PidginRTFWriter.rtf"));
}

TEST(PidginRTFGolden, ADocumentOfAHostIsReadAsInTheFile) {
  const std::string rtf = golden("PidginRTFReader.rtf");
  EXPECT_EQ(formats::encodeUTF8(formats::textOfPidginRTF(formats::decodeUTF8(rtf))),
            golden("PidginRTFReader.txt"));
}

}  // namespace
