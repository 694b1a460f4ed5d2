// Reading in blocks: a name, an escape, a period, a comment or a line end
// split between two blocks reads as it does within one block, through
// ReadName and through ReadNameView (the texts of fixtures/tokens.txt among
// them); and cases read alike wherever the block boundary falls.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "miner_fixture.h"

namespace {

std::string Unescape(const std::string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i] == '\\' && i + 1 < text.size() ? text[++i] : '\0';
    out += c == 'n' ? '\n' : c == 't' ? '\t' : c == 'r' ? '\r' : c ? c : text[i];
  }
  return out;
}

// Every name of text as [name] and its delimiter ($ at the end of the file),
// read in blocks of blockSize bytes; "unchanged" when there is none.
std::string Tokens(const std::string& path, size_t blockSize, bool view) {
  std::FILE* f = std::fopen(path.c_str(), "r");
  NameReader in(f, 0, blockSize);
  std::string tokens, name = "unchanged";
  std::string_view shown;
  auto next = [&] {
    if (!view) return ReadName(in, name);
    const int got = ReadNameView(in, name, shown);
    if (got) name.assign(shown.data(), shown.size());
    return got;
  };
  while (next()) tokens += "[" + name + "]" + (in.Delimiter == 0xFF ? '$' : static_cast<char>(in.Delimiter));
  EXPECT_EQ(in.Delimiter, 0xFF);
  std::fclose(f);
  return tokens.empty() ? name : tokens;
}

// The tokenizer's fixture texts and texts with long names, comments and
// Windows line ends, each read with every block size from 1 byte to beyond
// its length: the boundary falls once at every position.
TEST(BlockReading, EveryBoundaryReadsTheSameNames) {
  std::vector<std::pair<std::string, std::string>> cases;
  std::istringstream fixture(testing_support::ReadFile(std::string(SOURCE_DIR) + "/tests/fixtures/tokens.txt"));
  for (std::string line; std::getline(fixture, line);) {
    if (line[0] == '#') continue;
    const size_t tab = line.find('\t');
    cases.emplace_back(Unescape(line.substr(0, tab)), Unescape(line.substr(tab + 1)));
  }
  const std::string longName(300, 'q');
  cases.emplace_back(longName + "," + longName + "x\n", "[" + longName + "],[" + longName + "x]\n");
  cases.emplace_back("a  \t  b\t\t,c\\ ,d. e", "[a \t b],[c\\],[d] [e]$");
  cases.emplace_back("red\t,blue\t\t\n\tx\t:y", "[red],[blue]\n[x]:[y]$");  // trailing tabs are trimmed
  cases.emplace_back("x,| a comment, long enough to cross blocks: " + longName + "\ny\n", "[x],[y]\n");
  // Line ends of CR LF: the carriage return stays in the name.
  cases.emplace_back("red,blue\r\ngreen,yes\r\n", "[red],[blue\r]\n[green],[yes\r]\n");
  cases.emplace_back("red,blue\r\ngreen,yes\r", "[red],[blue\r]\n[green],[yes\r]$");

  testing_support::TempDir dir;
  for (const auto& [text, expected] : cases) {
    testing_support::WriteFile(dir / "t", text);
    for (size_t block = 1; block <= text.size() + 1; ++block) {
      ASSERT_EQ(Tokens(dir / "t", block, false), expected) << "block " << block << ": " << text;
      ASSERT_EQ(Tokens(dir / "t", block, true), expected) << "block " << block << " (view): " << text;
    }
  }
}

using BlockData = testing_support::MinerTest;

// Items: a=1 d=2 | bb=3 ee=4 | c.c=5 f\,f=6 | yes=7 no=8.
const char kNames[] = "yes, no.\nA: a, d.\nB: bb, ee.\nC: c.c, f\\,f.\n";

// Cases written in front of a tail so that the first read block ends `at`
// bytes into the tail (at 0: the block ends just before it).
std::string Padded(const std::string& tail, size_t at) {
  const std::string filler = "a,bb,c.c,yes\n";  // one case of 13 bytes
  const size_t room = kReadBlockSize - at;
  std::string text;
  // A comment line takes the bytes whole cases leave over.
  const size_t rest = room % filler.size();
  if (rest) text += std::string(rest - 1, '|') + "\n";
  while (text.size() < room) text += filler;
  return text + tail;
}

TEST_F(BlockData, CasesAcrossTheBlockBoundary) {
  const struct {
    std::string tail;
    std::vector<std::vector<int>> last;  // the rows the tail gives
  } tails[] = {
      {"d,ee,f\\,f,no\n", {{2, 4, 6, 8, 0}}},
      {"a , bb\t,c.c. yes.\n", {{1, 3, 5, 7, 0}}},
      {"d,ee,f\\,f,no", {{2, 4, 6, 8, 0}}},               // a last line without line end
      {"d,ee,f\\,f,no\r\na,bb,c.c,yes\r\n", {{2, 4, 6, 0, 0}, {1, 3, 5, 0, 0}}},  // CR LF: "no\r" is no class
      {"d,ee,| a remark, with: separators\nf\\,f,no\n", {{2, 4, 6, 8, 0}}},
      {"d,ee,xx", {}},                                       // a case left incomplete is dropped
  };
  for (const auto& t : tails) {
    for (size_t at = 0; at <= t.tail.size(); ++at) {
      const std::string text = Padded(t.tail, at);
      Load(kNames, text);
      const int before = static_cast<int>((kReadBlockSize - at) / 13);
      ASSERT_EQ(data.MaxData, before + static_cast<int>(t.last.size())) << t.tail << " at " << at;
      ASSERT_EQ(Row(0), (std::vector<int>{1, 3, 5, 7, 0}));
      ASSERT_EQ(Row(before - 1), (std::vector<int>{1, 3, 5, 7, 0}));
      for (size_t i = 0; i < t.last.size(); ++i)
        ASSERT_EQ(Row(before + static_cast<int>(i)), t.last[i]) << t.tail << " at " << at;
    }
  }
}

}  // namespace
