// The tokenizer shared by the names and data files, and input error reports.
#include <cstdio>

#include "input/readers.h"

namespace {

constexpr unsigned char kEndOfFile = 0xFF;

// Skips the rest of a comment line, the line end included.
void SkipLine(std::FILE* f) {
  int c;
  do c = getc_unlocked(f);
  while (c != '\n' && c != EOF);
}

bool IsBlank(int c) { return c == ' ' || c == '\t' || c == '\n'; }

// The characters that end a name or need a look at the next one; every other
// character is stored as it comes.
struct SpecialCharacters {
  bool table[256] = {};
  constexpr SpecialCharacters() {
    for (unsigned char c : {',', ':', '\n', '|', '.', '\\', ' '}) table[c] = true;
  }
};
constexpr SpecialCharacters kSpecial;

}  // namespace

int ReadName(NameReader& in, std::string& name) {
  std::FILE* f = in.File;
  int c;
  // Blanks and comments before the name.
  for (;;) {
    c = getc_unlocked(f);
    if (c == EOF) {
      in.Delimiter = kEndOfFile;
      return 0;
    }
    if (c == '|') {
      SkipLine(f);
      continue;
    }
    if (!IsBlank(c)) break;
  }

  name.clear();
  for (;; c = getc_unlocked(f)) {
    if (c != EOF && !kSpecial.table[c]) {
      name.push_back(static_cast<char>(c));
      continue;
    }
    if (c == EOF) {
      in.Delimiter = kEndOfFile;
      break;
    }
    if (c == ',' || c == ':' || c == '\n') {
      in.Delimiter = static_cast<unsigned char>(c);
      break;
    }
    if (c == '|') {
      SkipLine(f);
      in.Delimiter = '\n';
      break;
    }
    if (c == '.') {
      int next = getc_unlocked(f);
      if (next == ' ' || next == '\n' || next == '\t') {
        in.Delimiter = static_cast<unsigned char>(next);
        break;
      }
      if (next == '|') {
        SkipLine(f);
        in.Delimiter = '\n';
        break;
      }
      if (next == EOF) {
        in.Delimiter = kEndOfFile;
        break;
      }
      name.push_back('.');
      name.push_back(static_cast<char>(next));
      continue;
    }
    if (c == '\\') {
      name.push_back('\\');
      int next = getc_unlocked(f);
      if (next == EOF) {
        in.Delimiter = kEndOfFile;
        break;
      }
      name.push_back(static_cast<char>(next));
      continue;
    }
    if (c == ' ' && !name.empty() && name.back() == ' ') continue;  // a run of blanks is one blank
    name.push_back(static_cast<char>(c));
  }

  size_t keep = name.size();
  while (keep > 1 && IsBlank(static_cast<unsigned char>(name[keep - 1]))) --keep;
  name.resize(keep);
  return 1;
}

Status Error(InputErrors& errors, int code, const std::string& text1, const std::string& text2, int caseNumber) {
  if (code == 0)
    return Status(StatusKind::CannotOpen, 1, "\nERROR:  cannot open file " + text1 + text2 + "\n");
  std::FILE* out = errors.Out;
  std::fprintf(out, "\nERROR:  ");
  switch (code) {
    case 1: std::fprintf(out, "colon expected after attribute name %s\n", text1.c_str()); break;
    case 2: std::fprintf(out, "unexpected eof while reading attribute %s\n", text1.c_str()); break;
    case 3: std::fprintf(out, "attribute %s has only one value\n", text1.c_str()); break;
    case 4:
      std::fprintf(out, "case %d's value of '%s' for attribute %s is illegal\n", caseNumber, text2.c_str(),
                   text1.c_str());
      break;
    case 5: std::fprintf(out, "case %d's class of '%s' is illegal\n", caseNumber, text2.c_str()); break;
    default: break;
  }
  if (++errors.Messages > 10) return Status(StatusKind::InputError, 1, "Error limit exceeded\n");
  return Status();
}
