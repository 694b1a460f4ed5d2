// The tokenizer shared by the names and data files, and input error reports.
#include <cstdio>
#include <cstring>

#include "input/readers.h"

namespace {

constexpr unsigned char kEndOfFile = 0xFF;
constexpr int kEnd = -1;  // what Take gives at the end of the file

// Reads the next block; false at the end of the file or on a read error,
// which ends the reading for good.
bool Refill(NameReader& in) {
  if (in.Exhausted) return false;
  if (!in.Block) in.Block.reset(new char[in.BlockSize]);
  const std::size_t got = std::fread(in.Block.get(), 1, in.BlockSize, in.File);
  if (got == 0) {
    in.Exhausted = true;
    in.Next = in.End = nullptr;
    return false;
  }
  in.Next = in.Block.get();
  in.End = in.Next + got;
  return true;
}

// The next character as an unsigned char, or kEnd.
inline int Take(NameReader& in) {
  if (in.Next == in.End && !Refill(in)) return kEnd;
  return static_cast<unsigned char>(*in.Next++);
}

// Skips the rest of a comment line, the line end included.
void SkipLine(NameReader& in) {
  for (;;) {
    if (in.Next == in.End && !Refill(in)) return;
    const void* lineEnd = std::memchr(in.Next, '\n', static_cast<std::size_t>(in.End - in.Next));
    if (lineEnd) {
      in.Next = static_cast<const char*>(lineEnd) + 1;
      return;
    }
    in.Next = in.End;
  }
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

// Appends c, taken last from the block, and the run of ordinary characters
// after it in the block; the block is left at the first one not appended.
inline void TakeOrdinaryRun(NameReader& in, std::string& name) {
  const char* from = in.Next - 1;
  const char* to = in.Next;
  while (to != in.End && !kSpecial.table[static_cast<unsigned char>(*to)]) ++to;
  name.append(from, to);
  in.Next = to;
}

}  // namespace

int ReadNameAssembled(NameReader& in, std::string& text, std::string_view& name) {
  int c;
  // Blanks and comments before the name.
  for (;;) {
    c = Take(in);
    if (c == kEnd) {
      in.Delimiter = kEndOfFile;
      return 0;
    }
    if (c == '|') {
      SkipLine(in);
      continue;
    }
    if (!IsBlank(c)) break;
  }

  text.clear();
  for (;; c = Take(in)) {
    if (c != kEnd && !kSpecial.table[c]) {
      TakeOrdinaryRun(in, text);
      continue;
    }
    if (c == kEnd) {
      in.Delimiter = kEndOfFile;
      break;
    }
    if (c == ',' || c == ':' || c == '\n') {
      in.Delimiter = static_cast<unsigned char>(c);
      break;
    }
    if (c == '|') {
      SkipLine(in);
      in.Delimiter = '\n';
      break;
    }
    if (c == '.') {
      const int next = Take(in);
      if (next == ' ' || next == '\n' || next == '\t') {
        in.Delimiter = static_cast<unsigned char>(next);
        break;
      }
      if (next == '|') {
        SkipLine(in);
        in.Delimiter = '\n';
        break;
      }
      if (next == kEnd) {
        in.Delimiter = kEndOfFile;
        break;
      }
      text.push_back('.');
      text.push_back(static_cast<char>(next));
      continue;
    }
    if (c == '\\') {
      text.push_back('\\');
      const int next = Take(in);
      if (next == kEnd) {
        in.Delimiter = kEndOfFile;
        break;
      }
      text.push_back(static_cast<char>(next));
      continue;
    }
    if (c == ' ' && !text.empty() && text.back() == ' ') continue;  // a run of blanks is one blank
    text.push_back(static_cast<char>(c));
  }

  size_t keep = text.size();
  while (keep > 1 && IsBlank(static_cast<unsigned char>(text[keep - 1]))) --keep;
  text.resize(keep);
  name = text;
  return 1;
}

int ReadName(NameReader& in, std::string& name) {
  std::string_view view;
  if (!ReadNameView(in, name, view)) return 0;
  if (view.data() != name.data()) name.assign(view.data(), view.size());
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
