// The tokenizer shared by the names and data files: delimiters, comments,
// the period rule, escapes, blanks and the end of the file, for the texts
// of fixtures/tokens.txt.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>

#include "input/readers.h"
#include "test_support.h"

namespace {

std::string Unescape(const std::string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i] == '\\' && i + 1 < text.size() ? text[++i] : '\0';
    out += c == 'n' ? '\n' : c == 't' ? '\t' : c == 'r' ? '\r' : c ? c : text[i];
  }
  return out;
}

// Every name of the text as [name] followed by its delimiter, until ReadName
// reports the end; with no name, what is left in the buffer.
std::string Tokens(const std::string& text) {
  testing_support::TempDir dir;
  testing_support::WriteFile(dir / "t", text);
  std::FILE* f = std::fopen((dir / "t").c_str(), "r");
  NameReader in{f, 0};
  std::string tokens, name = "unchanged";
  while (ReadName(in, name)) tokens += "[" + name + "]" + (in.Delimiter == 0xFF ? '$' : static_cast<char>(in.Delimiter));
  EXPECT_EQ(in.Delimiter, 0xFF) << "the end of the file sets the end delimiter";
  std::fclose(f);
  return tokens.empty() ? name : tokens;
}

TEST(Tokenizer, NamesAndTheirDelimiters) {
  std::istringstream cases(testing_support::ReadFile(std::string(SOURCE_DIR) + "/tests/fixtures/tokens.txt"));
  int count = 0;
  for (std::string line; std::getline(cases, line);) {
    const size_t tab = line.find('\t');
    if (line[0] == '#') continue;
    EXPECT_EQ(Tokens(Unescape(line.substr(0, tab))), Unescape(line.substr(tab + 1))) << line;
    ++count;
  }
  EXPECT_EQ(count, 27);
}

}  // namespace
