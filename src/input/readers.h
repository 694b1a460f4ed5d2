// The names and data file readers and the tokenizer they share.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "base/status.h"
#include "input/dataset.h"

// The size of the blocks a names or data file is read in.
constexpr std::size_t kReadBlockSize = 64 * 1024;

// A file being read name by name, and what ended the last name: a comma,
// colon, line end, blank or tab; 0xFF at the end of the file. The file is
// read in blocks of BlockSize bytes (allocated at the first read); nothing
// else should read from File meanwhile.
struct NameReader {
  explicit NameReader(std::FILE* file, unsigned char delimiter = 0, std::size_t blockSize = kReadBlockSize)
      : File(file), Delimiter(delimiter), BlockSize(blockSize ? blockSize : 1) {}

  std::FILE* File;
  unsigned char Delimiter;
  std::size_t BlockSize;
  // The block read last, and the part of it not yet taken.
  std::unique_ptr<char[]> Block;
  const char* Next = nullptr;
  const char* End = nullptr;
  bool Exhausted = false;  // a read found the end of the file (or failed)
};

// Reads the next name into name. Returns 1 when a name was read (possibly
// empty), 0 at end of file (Delimiter 0xFF).
int ReadName(NameReader& in, std::string& name);
// ReadName without a copy where it can: name shows the name where it lies in
// the block read, or in text when it had to be assembled (escapes, blanks,
// periods, comments or a block boundary inside it). name stays valid until
// the next read or a change of text.
inline int ReadNameView(NameReader& in, std::string& text, std::string_view& name);
// ReadNameView for every name; what the inline part does not take.
int ReadNameAssembled(NameReader& in, std::string& text, std::string_view& name);

namespace name_characters {
// 1: stored as it comes; 2: a comma, colon or line end, which ends a name;
// 0: a character that needs a closer look (a blank, '|', '.', '\\').
struct Classes {
  unsigned char of[256] = {};
  constexpr Classes() {
    for (int c = 0; c < 256; ++c) of[c] = 1;
    for (unsigned char c : {' ', '|', '.', '\\'}) of[c] = 0;
    for (unsigned char c : {',', ':', '\n'}) of[c] = 2;
  }
};
inline constexpr Classes kClasses;
}  // namespace name_characters

inline int ReadNameView(NameReader& in, std::string& text, std::string_view& name) {
  // Most names are a run of stored characters ended by a comma, colon or
  // line end within the block: they are taken where they lie. The run
  // starts with a character other than a tab (a leading blank) and holds no
  // blank but tabs, which end no name but are trimmed from its end.
  const unsigned char* const classes = name_characters::kClasses.of;
  const char* from = in.Next;
  if (from != in.End && classes[static_cast<unsigned char>(*from)] == 1 && *from != '\t') {
    const char* to = from + 1;
    while (to != in.End && classes[static_cast<unsigned char>(*to)] == 1) ++to;
    if (to != in.End && classes[static_cast<unsigned char>(*to)] == 2) {
      in.Delimiter = static_cast<unsigned char>(*to);
      in.Next = to + 1;
      while (to - from > 1 && to[-1] == '\t') --to;
      name = std::string_view(from, static_cast<size_t>(to - from));
      return 1;
    }
  }
  return ReadNameAssembled(in, text, name);
}

// The input errors of one reading: where their reports go and how many were
// reported; the eleventh ends the reading.
struct InputErrors {
  std::FILE* Out = stdout;
  int Messages = 0;
};

// Reports an input error ("\nERROR:  " and a message). Code 0 (a file that
// cannot be opened) gives a failed status with exit status 1; the other
// codes are printed at once and counted, and the eleventh gives a failed
// status "Error limit exceeded". caseNumber is the case codes 4 and 5 name.
Status Error(InputErrors& errors, int code, const std::string& text1, const std::string& text2,
             int caseNumber = 0);

// Reads stem + ".names" into the item tables of data. With acceptContinuous,
// a "continuous" attribute is kept (status 3, a column of its own, no items)
// instead of ending the reading.
Status GetNames(DataSet& data, const std::string& stem, InputErrors& errors, bool acceptContinuous = false);

// Reads data.FileName + extension into RawDataSpace without coding it.
Status ReadData(DataSet& data, const std::string& extension, InputErrors& errors);
// Reads the data file and codes it into DataSpace.
Status GetData(DataSet& data, const std::string& extension, InputErrors& errors);

// Refuses tables with more items than the data space can code.
Status CheckItemLimit(const DataSet& data, const std::string& source);
