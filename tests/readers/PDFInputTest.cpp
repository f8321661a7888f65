// Tokens, lines and numbers of a PDF file, with the limits that its readers have.
#include <gmock/gmock.h>

#include "Readers/PDFInput.h"
#include "support/TempFolder.h"

namespace {

using Tokens = std::vector<std::string>;
using testing::ElementsAre;

class PDFInputFixture : public ::testing::Test {
 protected:
  PDFInput& Open(const std::string& content) {
    error = 0;
    EXPECT_TRUE(input.Open(folder.Write("file", content)));
    return input;
  }
  Tokens TokensOf(const std::string& content) {
    Tokens tokens;
    Open(content);
    while (error == 0) tokens.push_back(input.ProcessToken());
    // The end of the file ends the last one, or gives an empty one.
    if (tokens.back().empty()) tokens.pop_back();
    return tokens;
  }
  test_support::TempFolder folder;
  int error = 0;
  PDFInput input{error};
};

TEST_F(PDFInputFixture, Tokens) {
  struct Case {
    std::string content;
    Tokens tokens;
  };
  const Case cases[] = {
      {"<</Type/Page/MediaBox[0 0 5 5]>>", {"<<", "/Type", "/Page", "/MediaBox", "[", "0", "0", "5", "5", "]", ">>"}},
      {"(a(b))<AB><a>>>", {"(", "a", "(", "b", ")", ")", "<", "AB", ">", "<", "a", ">>", ">"}},
      {"12 0 R\r\nobj\tx\r\r\ny", {"12", "0", "R", "obj", "x", "y"}},
      {"/a/b//", {"/a", "/b", "/", "/"}},
      {"a\\b \\ c", {"a", "b", "", "c"}},
      // Two decimal digits come out right, letters don't, and outside a name there is no escape.
      {"/A#20B /A#2DB a#20", {"/A B", "/A4B", "a#20"}},
      {"/A#2", {"/A"}},
      {"% no comment\fis known", {"%", "no", "comment\fis", "known"}},
      {std::string(256, 'x') + "y " + std::string(300, 'z'),
       {std::string(256, 'x'), "y", std::string(256, 'z'), std::string(44, 'z')}},
      // Across the blocks in which a file is read.
      {std::string(255, ' ') + "<< /" + std::string(255, ' ') + "/N", {"<<", "/", "/N"}},
      {"", {}},
  };
  for (const Case& c : cases) EXPECT_EQ(TokensOf(c.content), c.tokens) << c.content;
}

TEST_F(PDFInputFixture, LinesAndNumbers) {
  Open("one\rtwo\r\n\nthree" + std::string(300, 'x') + "\n");
  EXPECT_EQ(input.ProcessLine(), "one");
  EXPECT_EQ(input.ProcessLine(), "two");
  EXPECT_EQ(input.ProcessLine(), "");
  EXPECT_EQ(input.ProcessLine().size(), 256u);
  EXPECT_EQ(input.ProcessLine(), std::string(300 + 5 - 256, 'x'));
  Open("token\r\nline\r\n");
  input.ProcessToken();
  EXPECT_EQ(input.ProcessLine(), "line") << "a token takes the whole line end";

  Open("0012 -5 1.5 99999999999999999999 /x ");
  for (const int32_t expected : {12, 0, 0, 2147483647, 0}) EXPECT_EQ(input.GetCurrentNumber(), expected);
  int32_t value = 7;
  EXPECT_FALSE(PDFInput::IsNumber("1a", value));
  EXPECT_EQ(value, 7);
  EXPECT_TRUE(PDFInput::IsNumber("", value));
  EXPECT_EQ(value, 0);
}

TEST_F(PDFInputFixture, SkippedValues) {
  const auto rest = [&](const std::string& content, void (PDFInput::*skip)()) {
    Open(content + " end");
    (input.*skip)();
    Tokens tokens;
    while (error == 0 && (tokens.empty() || tokens.back() != "end")) tokens.push_back(input.ProcessToken());
    return tokens;
  };
  EXPECT_THAT(rest("<< /A [ (x) ] /B << >> >>", &PDFInput::SkipObject), ElementsAre("end"));
  EXPECT_THAT(rest("5 0 R", &PDFInput::SkipObject), ElementsAre("0", "R", "end"));
  EXPECT_THAT(rest("[0 0 1 1]", &PDFInput::SkipMediaBox), ElementsAre("end"));
  EXPECT_THAT(rest("[0 0 1 1 2 2]", &PDFInput::SkipMediaBox), ElementsAre("2", "]", "end"));
  EXPECT_THAT(rest("[<ab> <cd>]", &PDFInput::ReadID), ElementsAre("end"));
  EXPECT_THAT(rest("<" + std::string(300, 'a') + "]", &PDFInput::ReadID),
              ElementsAre(std::string(301 - 256, 'a'), "]", "end"));
}

TEST_F(PDFInputFixture, PlaceInTheFileIsKnown) {
  Open(std::string(300, ' ') + "<<abc>>");
  input.ProcessToken();
  EXPECT_EQ(input.GetCurrentPosition(), 302);
  EXPECT_EQ(input.ReadRange(300, 305), "<<abc");
  EXPECT_EQ(input.ProcessToken(), "abc") << "reading goes on where it was";
  EXPECT_EQ(input.ReadRange(305, 999), ">>");
  EXPECT_EQ(input.ReadRange(305, 2), "");
  input.SeekAndReadBlock(5000);
  EXPECT_NE(error, 0);
  error = 0;
  input.SeekAndReadBlock(-1);
  EXPECT_NE(error, 0);
  error = 0;
  input.SeekAndReadBlock(302);
  EXPECT_EQ(input.ProcessToken(), "abc") << "a failed seek doesn't keep the reader from the next one";
}

TEST_F(PDFInputFixture, AJumpCostsABlockAndReadingOnTwiceTheBytes) {
  constexpr int kDistance = 1000, kJumps = 2000;
  Open(std::string(size_t{kDistance} * kJumps, 'x'));
  for (int i = 0; i < kJumps; ++i) input.SeekAndReadBlock(std::streamoff{i} * 617 % kJumps * kDistance);
  EXPECT_EQ(input.GetBytesRead(), 256u * kJumps);
  input.SeekAndReadBlock(0);
  while (input.ReadCharacter() != PDFInput::kEnd) continue;
  EXPECT_LE(input.GetBytesRead(), size_t{256} * kJumps + size_t{2} * kDistance * kJumps + 16384);
}

}  // namespace
