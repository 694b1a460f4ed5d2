// The categorical copy of a data set with continuous attributes: every
// continuous attribute is declared with its intervals as values, the other
// attributes, the ignored ones and the class as they were, and every case is
// written with the spelling of its items.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <set>

#include "base/files.h"
#include "base/staged_file.h"
#include "discretiser/discretise.h"

namespace {

// True when the name, written as it is, would end in a backslash that
// escapes the character after it. Names as the tokenizer stores them keep
// their escapes ("\," or ".,"), so they read back identically when written
// verbatim; only a final lone backslash (what is left of "\ " once trailing
// blanks are removed) would swallow the delimiter that follows.
bool EndsInLoneBackslash(const std::string& name) {
  size_t i = 0;
  while (i < name.size()) {
    if (name[i] == '\\' || name[i] == '.') {
      if (i + 1 == name.size()) return name[i] == '\\';
      i += 2;
    } else {
      ++i;
    }
  }
  return false;
}

// Writes a name so that the tokenizer reads it back as it is; a blank after
// a lone final backslash is taken into the escape and then dropped as a
// trailing blank. Every byte is written, NUL bytes included: the tokenizer
// keeps them as ordinary characters.
void WriteName(std::FILE* f, const std::string& name) {
  std::fwrite(name.data(), 1, name.size(), f);
  if (EndsInLoneBackslash(name)) std::fputc(' ', f);
}

// Ends a line of names. The period keeps an empty last name from letting
// the tokenizer run on into the next line.
void EndLine(std::FILE* f) { std::fputs(".\n", f); }

// A field value no declared value of the attribute equals, so that it reads
// back as the unknown item: "?" unless the attribute declares "?" itself.
std::string UnknownSpelling(const DataSet& data, int declared) {
  std::string text = "?";
  while (GetAttCode(data, text, declared) != 0) text += "?";
  return text;
}

// The file could not be opened for writing.
Status CannotWrite(const std::string& path, const std::string& reason) {
  return Status(StatusKind::CannotOpen, 1, "rule-discretise: cannot write " + path + ": " + reason + "\n");
}

void WriteNamesFile(const DataSet& data, std::FILE* f, const std::vector<const CutAttribute*>& cutOf,
                    const std::vector<std::vector<std::string>>& spellings, const std::string& classAttribute) {
  if (!classAttribute.empty()) std::fprintf(f, "| class attribute: %s\n", classAttribute.c_str());
  std::fputs("| Continuous attributes cut into intervals LOW..HIGH by rule-discretise.\n\n", f);
  for (int k = 0; k < data.MaxClass; ++k) {
    if (k > 0) std::fputs(", ", f);
    WriteName(f, data.ClassName[k]);
  }
  EndLine(f);
  std::fputs("\n", f);
  for (int a = 0; a + 1 < data.MaxAtt; ++a) {
    WriteName(f, data.AttName[a]);
    std::fputs(": ", f);
    if (data.SpecialStatus[a] == 1 || (cutOf[a] && cutOf[a]->Intervals.empty())) {
      // An attribute without a known value has no interval: its column
      // holds only unknowns, so it is kept as an ignored field.
      std::fputs("ignore", f);
    } else if (cutOf[a]) {
      const std::vector<std::string>& names = spellings[a];
      for (size_t j = 0; j < names.size(); ++j) {
        if (j > 0) std::fputs(", ", f);
        WriteName(f, names[j]);
      }
    } else {
      bool first = true;
      for (const AttCodeEntry* e = data.AttCode[a]; e; e = e->Next) {
        if (!first) std::fputs(", ", f);
        WriteName(f, e->Name);
        first = false;
      }
    }
    EndLine(f);
  }
}

void WriteDataFile(const DataSet& data, std::FILE* f, const std::vector<const CutAttribute*>& cutOf,
                   const std::vector<std::vector<std::string>>& spellings) {
  std::vector<std::string> unknown(data.MaxAtt);
  for (int a = 0; a < data.MaxAtt; ++a) unknown[a] = UnknownSpelling(data, a);

  for (int i = 0; i < data.MaxData; ++i) {
    const short* row = data.DataSpace[i];
    int column = 0;
    const std::string* last = nullptr;
    for (int a = 0; a < data.MaxAtt; ++a) {
      if (a > 0) std::fputc(',', f);
      const std::string* text = &unknown[a];
      if (data.SpecialStatus[a] != 1) {
        const int code = row[column++];
        if (code != 0) {
          if (cutOf[a]) {
            text = &spellings[a][static_cast<size_t>(code - cutOf[a]->FirstCode)];
          } else {
            text = &data.ItemRecord[code]->ValueName;
          }
        }
      }
      WriteName(f, *text);
      last = text;
    }
    if (last && last->empty()) std::fputc('.', f);
    std::fputc('\n', f);
    // A device that is full stays full: stop at the first failed write.
    if (std::ferror(f)) break;
  }
}

}  // namespace

std::vector<std::string> IntervalSpellings(const std::vector<ContValue>& intervals) {
  std::vector<std::string> names(intervals.size());
  // Two decimals as in the item names; more when two intervals of the
  // attribute would read the same, and in the end nine significant digits,
  // which tell any two single-precision bounds apart.
  for (int decimals = 2; decimals <= 7; ++decimals) {
    const bool shortest = decimals == 7;
    std::set<std::string> seen;
    bool distinct = true;
    for (size_t j = 0; j < intervals.size(); ++j) {
      const double low = intervals[j].Low;
      const double high = intervals[j].High;
      names[j] = shortest ? FormatText("%.9g..%.9g", low, high)
                          : FormatText("%.*f..%.*f", decimals, low, decimals, high);
      distinct = seen.insert(names[j]).second && distinct;
    }
    if (distinct) break;
  }
  return names;
}

Status WriteCategoricalPair(const DataSet& data, const std::string& outStem, const std::vector<CutAttribute>& cuts,
                            const std::string& classAttribute) {
  std::vector<const CutAttribute*> cutOf(data.MaxAtt, nullptr);
  std::vector<std::vector<std::string>> spellings(data.MaxAtt);
  for (const CutAttribute& cut : cuts) {
    cutOf[cut.Declared] = &cut;
    spellings[cut.Declared] = IntervalSpellings(cut.Intervals);
  }
  // Both files are complete before either replaces anything.
  const std::string namesPath = outStem + ".names", dataPath = outStem + ".data";
  PendingFile names, cases;
  std::string reason;
  if (!names.Open(namesPath, reason)) return CannotWrite(namesPath, reason);
  WriteNamesFile(data, names.stream(), cutOf, spellings, classAttribute);
  if (!names.Finish(reason)) return WriteFailure(namesPath, names.error());
  if (!cases.Open(dataPath, reason)) return CannotWrite(dataPath, reason);
  WriteDataFile(data, cases.stream(), cutOf, spellings);
  if (!cases.Finish(reason)) return WriteFailure(dataPath, cases.error());
  if (!names.Commit(reason)) return WriteFailure(namesPath, names.error());
  if (!cases.Commit(reason)) return WriteFailure(dataPath, cases.error());
  return Status();
}
