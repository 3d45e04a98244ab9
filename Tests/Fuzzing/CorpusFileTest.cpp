#include <Fuzzing/Support/CorpusFile.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace {

using fuzzing::CorpusError;
using fuzzing::CorpusInput;
using fuzzing::decodeInput;
using fuzzing::encodeInput;
using testing::ElementsAre;

class CorpusFile : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = testing::TempDir() + "CorpusFile.XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    directory_ = pattern;
  }
  void TearDown() override { std::filesystem::remove_all(directory_); }

  std::filesystem::path path(const std::string &name) const { return directory_ / name; }

  std::filesystem::path write(const std::string &name, const std::string &content) {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
  }

  std::string read(const std::string &name) const {
    std::ifstream stream(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  // What readCorpus says of a file with this content; "read" where it reads it.
  std::string outcome(const std::string &content) {
    try {
      fuzzing::readCorpus(write("Corpus.txt", content));
      return "read";
    } catch (const CorpusError &error) {
      return std::string(error.what()).substr(directory_.string().size() + 1);
    }
  }

 private:
  std::filesystem::path directory_;
};

std::string everyByte() {
  std::string bytes;
  for (int value = 0; value < 256; ++value) {
    bytes += static_cast<char>(value);
  }
  return bytes;
}

TEST_F(CorpusFile, SpellsBytesInPrintableASCII) {
  EXPECT_EQ(encodeInput({"", ""}), R"("")");
  EXPECT_EQ(encodeInput({"", "a b~"}), R"("a b~")");
  EXPECT_EQ(encodeInput({"", "\\par \"x\"\r\n\t"}), R"("\\par \"x\"\r\n\t")");
  EXPECT_EQ(encodeInput({"found-it", std::string("\0\x1F\x7F\x80\xFF", 5)}),
            R"(found-it "\x00\x1f\x7f\x80\xff")");
}

TEST_F(CorpusFile, GivesEveryPairOfBytesBack) {
  for (const char first : everyByte()) {
    for (const char second : everyByte()) {
      const CorpusInput input{"", {first, second}};
      const std::string line = encodeInput(input);
      ASSERT_EQ(decodeInput(line), input);
      ASSERT_EQ(line.find_first_of("\n\r"), std::string::npos);
    }
  }
  const CorpusInput named{"every-byte", everyByte()};
  EXPECT_EQ(decodeInput(encodeInput(named)), named);
}

// Each input has one spelling, so that a file that was read and written is the same.
TEST_F(CorpusFile, RefusesWhatItDoesNotWrite) {
  for (const std::string line : {"",          "a",         "\"",           "\"a",
                                 "a\"",       "x\"a\"",    " \"a\"",       "two words \"a\"",
                                 "0af \"a\"", "a/b \"\"",  R"("a"b")",     R"("\")",
                                 R"("\a")",   R"("\x")",   R"("\x0")",     R"("\x0g")",
                                 R"("\xFF")", R"("\x41")", R"("\x0a")",    R"("\x5c")",
                                 "\"\t\"",    "\"\x7F\"",  "\"\xC3\xA9\"", "\"a\" "}) {
    EXPECT_THROW(decodeInput(line), CorpusError) << line;
  }
  for (const std::string name : {"0123456789abcdef", "a b", "a.b", "\xC3\xA9"}) {
    EXPECT_THROW(encodeInput({name, ""}), CorpusError) << name;
  }
}

TEST_F(CorpusFile, SaysWhereItIsWrong) {
  EXPECT_EQ(outcome("\"a\"\nname \"\\n\"\n"), "read");
  EXPECT_EQ(outcome("\"a\"\nb\n"), "Corpus.txt:2: no input between quotes");
  EXPECT_EQ(outcome("\"a\""), "Corpus.txt: the last line has no end");
  EXPECT_THROW(fuzzing::readCorpus(path("absent")), CorpusError);
}

TEST_F(CorpusFile, HasNamedInputsFirstAndEachOnce) {
  fuzzing::writeCorpus(path("Corpus.txt"),
                       {{"", "b"}, {"", "a"}, {"zebra", "b"}, {"", "b"}, {"yak", "c"}});
  EXPECT_EQ(read("Corpus.txt"), "yak \"c\"\nzebra \"b\"\n\"a\"\n\"b\"\n");
}

TEST_F(CorpusFile, IsUnpackedAndPackedWithoutADifference) {
  const std::string content = "every-byte " + encodeInput({"", everyByte()}) + "\n\"\"\n\"a\"\n";
  fuzzing::unpackCorpus(write("Corpus.txt", content), path("files"));
  EXPECT_EQ(read("files/every-byte"), everyByte());
  fuzzing::packCorpus(path("files"), path("Again.txt"));
  EXPECT_EQ(read("Again.txt"), content);
}

// libFuzzer calls its files by the digest of what is in them.
TEST_F(CorpusFile, TakesHexadecimalFileNamesForNone) {
  std::filesystem::create_directory(path("files"));
  write("files/86f7e437faa5a7fce15d1ddcb9eaeaea377667b8", "a");
  write("files/found-a", "b");
  fuzzing::packCorpus(path("files"), path("Corpus.txt"));
  EXPECT_THAT(fuzzing::readCorpus(path("Corpus.txt")),
              ElementsAre(CorpusInput{"found-a", "b"}, CorpusInput{"", "a"}));
}

TEST_F(CorpusFile, IsNotReplacedByNothing) {
  std::filesystem::create_directory(path("files"));
  write("Corpus.txt", "\"a\"\n");
  EXPECT_THROW(fuzzing::packCorpus(path("files"), path("Corpus.txt")), CorpusError);
  EXPECT_THROW(fuzzing::packCorpus(path("absent"), path("Corpus.txt")), CorpusError);
  write("files/no name", "a");
  EXPECT_THROW(fuzzing::packCorpus(path("files"), path("Corpus.txt")), CorpusError);
  EXPECT_EQ(read("Corpus.txt"), "\"a\"\n");
}

TEST_F(CorpusFile, TakesAFindingUnderANewName) {
  write("Corpus.txt", "\"a\"\n");
  const auto finding = write("crash-1", "\n");
  fuzzing::addInput(path("Corpus.txt"), "found-a-line-break", finding);
  EXPECT_EQ(read("Corpus.txt"), "found-a-line-break \"\\n\"\n\"a\"\n");
  EXPECT_THROW(fuzzing::addInput(path("Corpus.txt"), "found-a-line-break", finding), CorpusError);
  EXPECT_THROW(fuzzing::addInput(path("Corpus.txt"), "", finding), CorpusError);
  EXPECT_THROW(fuzzing::addInput(path("Corpus.txt"), "abad1dea", finding), CorpusError);
  EXPECT_EQ(read("Corpus.txt"), "found-a-line-break \"\\n\"\n\"a\"\n");
}

}  // namespace
