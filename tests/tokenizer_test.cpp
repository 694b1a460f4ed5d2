// The tokenizer shared by the names and data files: delimiters, comments,
// the period rule, escapes, blanks and the end of the file.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "readfile.h"
#include "test_support.h"

namespace {

using testing_support::TempDir;
using testing_support::WriteFile;

constexpr int kEof = 0xFF;

struct Token {
  std::string name;
  int delimiter;
  bool operator==(const Token& o) const { return name == o.name && delimiter == o.delimiter; }
};

std::ostream& operator<<(std::ostream& out, const Token& t) {
  return out << "{\"" << t.name << "\", " << t.delimiter << "}";
}

// Every name of the text with its delimiter, until ReadName reports the end.
std::vector<Token> Tokens(const std::string& text) {
  TempDir dir;
  const std::string path = dir / "tokens";
  WriteFile(path, text);
  std::FILE* f = std::fopen(path.c_str(), "r");
  std::vector<Token> tokens;
  std::string name;
  while (ReadName(f, name)) tokens.push_back({name, Delimiter});
  EXPECT_EQ(Delimiter, kEof) << "the end of the file sets the end delimiter";
  std::fclose(f);
  return tokens;
}

using Tokens_t = std::vector<Token>;

TEST(TokenizerComments, OnTheirOwnLinesAndAfterNames) {
  EXPECT_EQ(Tokens("| a heading\n  | indented\na, b | note\nc\n"),
            (Tokens_t{{"a", ','}, {"b", '\n'}, {"c", '\n'}}));
}

TEST(TokenizerComments, LastLineCommentWithoutLineEnd) {
  EXPECT_EQ(Tokens("a, b\n| the end"), (Tokens_t{{"a", ','}, {"b", '\n'}}));
  EXPECT_EQ(Tokens("a | trailing remark without line end"), (Tokens_t{{"a", '\n'}}));
}

TEST(TokenizerDelimiters, CommaColonAndLineEnd) {
  EXPECT_EQ(Tokens("colour: red, green\n"), (Tokens_t{{"colour", ':'}, {"red", ','}, {"green", '\n'}}));
}

TEST(TokenizerDelimiters, EmptyNamesBetweenCommas) {
  EXPECT_EQ(Tokens("a,,b\n"), (Tokens_t{{"a", ','}, {"", ','}, {"b", '\n'}}));
  EXPECT_EQ(Tokens("a, ,b\n"), (Tokens_t{{"a", ','}, {"", ','}, {"b", '\n'}}));
}

TEST(TokenizerPeriod, FinalPeriodIsDroppedWithTheCharacterAfterItAsDelimiter) {
  EXPECT_EQ(Tokens("colour: red, green, blue.\n"),
            (Tokens_t{{"colour", ':'}, {"red", ','}, {"green", ','}, {"blue", '\n'}}));
  EXPECT_EQ(Tokens("colour: red, green, blue\n"),
            (Tokens_t{{"colour", ':'}, {"red", ','}, {"green", ','}, {"blue", '\n'}}));
  EXPECT_EQ(Tokens("red. blue.\tgreen\n"), (Tokens_t{{"red", ' '}, {"blue", '\t'}, {"green", '\n'}}));
}

TEST(TokenizerPeriod, InnerPeriodsAreKept) {
  EXPECT_EQ(Tokens("size: 1.5, 2.5.\n"), (Tokens_t{{"size", ':'}, {"1.5", ','}, {"2.5", '\n'}}));
  EXPECT_EQ(Tokens("a.b\n"), (Tokens_t{{"a.b", '\n'}}));
  // The character after a period is stored literally, even a delimiter.
  EXPECT_EQ(Tokens("x.,y\n"), (Tokens_t{{"x.,y", '\n'}}));
  EXPECT_EQ(Tokens("x.:y..z,w\n"), (Tokens_t{{"x.:y..z", ','}, {"w", '\n'}}));
}

TEST(TokenizerPeriod, PeriodBeforeACommentEndsTheName) {
  EXPECT_EQ(Tokens("red.| note, not a name\nblue\n"), (Tokens_t{{"red", '\n'}, {"blue", '\n'}}));
}

TEST(TokenizerPeriod, PeriodAtTheEndOfTheFile) {
  EXPECT_EQ(Tokens("red."), (Tokens_t{{"red", kEof}}));
  EXPECT_EQ(Tokens("colour: red, green."), (Tokens_t{{"colour", ':'}, {"red", ','}, {"green", kEof}}));
}

TEST(TokenizerEscape, BackslashIsKeptWithTheNextCharacter) {
  EXPECT_EQ(Tokens("a\\,b,c\n"), (Tokens_t{{"a\\,b", ','}, {"c", '\n'}}));
  EXPECT_EQ(Tokens("a\\|b\n"), (Tokens_t{{"a\\|b", '\n'}}));
  EXPECT_EQ(Tokens("a\\\\,b\n"), (Tokens_t{{"a\\\\", ','}, {"b", '\n'}}));
}

TEST(TokenizerEscape, BackslashAtTheEndOfTheFile) {
  EXPECT_EQ(Tokens("ab\\"), (Tokens_t{{"ab\\", kEof}}));
}

TEST(TokenizerBlanks, RunsOfBlanksBecomeOneAndTabsStay) {
  EXPECT_EQ(Tokens("light  blue,dark     red\n"), (Tokens_t{{"light blue", ','}, {"dark red", '\n'}}));
  EXPECT_EQ(Tokens("a\tb,a\t\tb\n"), (Tokens_t{{"a\tb", ','}, {"a\t\tb", '\n'}}));
}

TEST(TokenizerBlanks, LeadingAndTrailingBlanksAreRemoved) {
  EXPECT_EQ(Tokens("   red \t ,\n\n  green  \n"), (Tokens_t{{"red", ','}, {"green", '\n'}}));
}

TEST(TokenizerBlanks, CarriageReturnIsKeptAsLastCharacter) {
  EXPECT_EQ(Tokens("yes, no\r\nred\r\n"), (Tokens_t{{"yes", ','}, {"no\r", '\n'}, {"red\r", '\n'}}));
}

TEST(TokenizerEnd, EndOfFileEndsTheLastName) {
  EXPECT_EQ(Tokens("a,b"), (Tokens_t{{"a", ','}, {"b", kEof}}));
}

TEST(TokenizerEnd, NothingLeftLeavesTheBufferUntouched) {
  for (const std::string text : {"", "  \n\t\n", "| only a comment\n", "\n| comment\n   "}) {
    TempDir dir;
    WriteFile(dir / "t", text);
    std::FILE* f = std::fopen((dir / "t").c_str(), "r");
    std::string name = "unchanged";
    Delimiter = ',';
    EXPECT_EQ(ReadName(f, name), 0) << text;
    EXPECT_EQ(name, "unchanged");
    EXPECT_EQ(Delimiter, kEof);
    std::fclose(f);
  }
}

}  // namespace
