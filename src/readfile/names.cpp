// The tokenizer shared by the names and data files, input error reports, and
// the names file reader.
#include <cstdio>
#include <cstring>

#include "readfile.h"
#include "readfile/internal.h"
#include "rule.h"

unsigned char Delimiter = 0;

namespace {

constexpr unsigned char kEndOfFile = 0xFF;
signed char Messages = 0;  // input errors reported so far

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

namespace readfile_detail {
void ResetErrorCount() { Messages = 0; }
}  // namespace readfile_detail

int ReadName(std::FILE* f, std::string& name) {
  int c;
  // Blanks and comments before the name.
  for (;;) {
    c = getc_unlocked(f);
    if (c == EOF) {
      Delimiter = kEndOfFile;
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
      Delimiter = kEndOfFile;
      break;
    }
    if (c == ',' || c == ':' || c == '\n') {
      Delimiter = static_cast<unsigned char>(c);
      break;
    }
    if (c == '|') {
      SkipLine(f);
      Delimiter = '\n';
      break;
    }
    if (c == '.') {
      int next = getc_unlocked(f);
      if (next == ' ' || next == '\n' || next == '\t') {
        Delimiter = static_cast<unsigned char>(next);
        break;
      }
      if (next == '|') {
        SkipLine(f);
        Delimiter = '\n';
        break;
      }
      if (next == EOF) {
        Delimiter = kEndOfFile;
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
        Delimiter = kEndOfFile;
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

void Error(int code, const std::string& text1, const std::string& text2) {
  std::printf("\nERROR:  ");
  switch (code) {
    case 0:
      std::printf("cannot open file %s%s\n", text1.c_str(), text2.c_str());
      EndRun(1);
    case 1: std::printf("colon expected after attribute name %s\n", text1.c_str()); break;
    case 2: std::printf("unexpected eof while reading attribute %s\n", text1.c_str()); break;
    case 3: std::printf("attribute %s has only one value\n", text1.c_str()); break;
    case 4:
      std::printf("case %d's value of '%s' for attribute %s is illegal\n", MaxData + 1, text2.c_str(),
                  text1.c_str());
      break;
    case 5: std::printf("case %d's class of '%s' is illegal\n", MaxData + 1, text2.c_str()); break;
    default: break;
  }
  if (++Messages > 10) {
    std::printf("Error limit exceeded\n");
    EndRun(1);
  }
}

namespace {

// Appends a declared attribute (declared index MaxAtt, real index RealAtt).
void OpenAttribute(const std::string& name) {
  ++MaxAtt;
  AttName.push_back(name);
  SpecialStatus.push_back(0);
  AttCode.push_back(nullptr);
  ++RealAtt;
  if (AttValue.size() <= static_cast<size_t>(RealAtt)) {
    AttValue.resize(RealAtt + 1);
    MaxAttVal.resize(RealAtt + 1, 0);
  }
  AttValue[RealAtt].clear();
  MaxAttVal[RealAtt] = 0;
}

// Drops the attribute just opened from the real attributes (ignored or
// continuous-without-column).
void DropRealAttribute() {
  AttValue[RealAtt].clear();
  MaxAttVal[RealAtt] = 0;
  --RealAtt;
}

}  // namespace

int GetNames(bool acceptContinuous) {
  using namespace readfile_detail;
  const std::string fileName = FileName + ".names";
  std::FILE* f = XFopen(fileName, "r");
  if (!f) Error(0, fileName, "");
  FileCloser closer{f};

  std::string name;
  ClassName.clear();
  // The class list: names as long as each ends with a comma.
  do {
    if (!ReadName(f, name)) break;
    ClassName.push_back(name);
  } while (Delimiter == ',');
  if (ClassName.empty()) {
    std::printf("\nERROR:  %s declares no class\n", fileName.c_str());
    EndRun(1);
  }
  MaxItem = 0;

  Item_Id_Ceiling = 50;
  ItemRecord.clear();
  ItemRecord.resize(Item_Id_Ceiling);
  Attribute.assign(Item_Id_Ceiling, 0);
  MaxAtt = -1;
  RealAtt = -1;
  ItemRecord[0] = AddItemRecord("?", "unknown attribute");

  while (ReadName(f, name)) {
    const std::string attName = name;
    if (Delimiter != ':') Error(1, attName, "");
    OpenAttribute(attName);

    std::string value;
    if (!ReadName(f, value)) {
      // End of file where the first value was expected: the attribute ends
      // without values.
      Error(2, attName, "");
      continue;
    }
    if (value == "continuous") {
      SpecialStatus[MaxAtt] = 3;
      if (!acceptContinuous) {
        std::printf("\n I do not process continuous attribute, discretize it first \n");
        EndRun(0);
      }
      continue;  // a column of its own; its items come from the discretiser
    }
    if (value.compare(0, 8, "discrete") == 0) {
      SpecialStatus[MaxAtt] = 2;
      std::printf("I find the discrete value in %s.naame\n", FileName.c_str());
      EndRun(0);
    }
    if (value == "ignore") {
      SpecialStatus[MaxAtt] = 1;
      DropRealAttribute();
      continue;
    }
    AddItem(MaxAtt, RealAtt, value);
    while (Delimiter == ',') {
      if (!ReadName(f, value)) {
        Error(2, attName, "");
        break;
      }
      AddItem(MaxAtt, RealAtt, value);
    }
  }

  // The class attribute, last, holding the class values.
  OpenAttribute("Class");
  for (const std::string& cls : ClassName) AddItem(MaxAtt, RealAtt, cls);

  MaxClass = static_cast<int>(ClassName.size());
  ++MaxAtt;
  ++RealAtt;
  AttValue.resize(RealAtt);
  MaxAttVal.resize(RealAtt);
  CheckItemLimit(fileName);
  return 1;
}
