// The categorical copy of a data set with continuous attributes, and the
// program rule-discretise that makes it: every continuous attribute is
// declared with its intervals as values, the other attributes, the ignored
// ones and the class as they were, and every case is written with the
// spelling of its items.
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>

#include "readfile/discretise.h"
#include "rule.h"

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
std::string UnknownSpelling(int declared) {
  std::string text = "?";
  while (GetAttCode(text, declared) != 0) text += "?";
  return text;
}

bool WriteNamesFile(const std::string& path, const std::vector<const CutAttribute*>& cutOf,
                    const std::vector<std::vector<std::string>>& spellings) {
  std::FILE* f = XFopen(path, "w");
  if (!f) return false;
  FileCloser closer{f};
  std::fputs("| Continuous attributes cut into intervals LOW..HIGH by rule-discretise.\n\n", f);
  for (int k = 0; k < MaxClass; ++k) {
    if (k > 0) std::fputs(", ", f);
    WriteName(f, ClassName[k]);
  }
  EndLine(f);
  std::fputs("\n", f);
  for (int a = 0; a + 1 < MaxAtt; ++a) {
    WriteName(f, AttName[a]);
    std::fputs(": ", f);
    if (SpecialStatus[a] == 1 || (cutOf[a] && cutOf[a]->Intervals.empty())) {
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
      for (const AttCodeEntry* e = AttCode[a]; e; e = e->Next) {
        if (!first) std::fputs(", ", f);
        WriteName(f, e->Name);
        first = false;
      }
    }
    EndLine(f);
  }
  return std::fclose(closer.Release()) == 0;
}

bool WriteDataFile(const std::string& path, const std::vector<const CutAttribute*>& cutOf,
                   const std::vector<std::vector<std::string>>& spellings) {
  std::FILE* f = XFopen(path, "w");
  if (!f) return false;
  FileCloser closer{f};
  std::vector<std::string> unknown(MaxAtt);
  for (int a = 0; a < MaxAtt; ++a) unknown[a] = UnknownSpelling(a);

  for (int i = 0; i < MaxData; ++i) {
    const short* row = DataSpace[i];
    int column = 0;
    const std::string* last = nullptr;
    for (int a = 0; a < MaxAtt; ++a) {
      if (a > 0) std::fputc(',', f);
      const std::string* text = &unknown[a];
      if (SpecialStatus[a] != 1) {
        const int code = row[column++];
        if (code != 0) {
          if (cutOf[a]) {
            text = &spellings[a][static_cast<size_t>(code - cutOf[a]->FirstCode)];
          } else {
            text = &ItemRecord[code]->ValueName;
          }
        }
      }
      WriteName(f, *text);
      last = text;
    }
    if (last && last->empty()) std::fputc('.', f);
    std::fputc('\n', f);
  }
  return std::fclose(closer.Release()) == 0;
}

// The path with every directory resolved, also when the file itself does
// not exist yet.
std::string CanonicalPath(const std::string& path) {
  char resolved[PATH_MAX];
  if (realpath(path.c_str(), resolved)) return resolved;
  const size_t slash = path.rfind('/');
  const std::string dir = slash == std::string::npos ? "." : (slash == 0 ? "/" : path.substr(0, slash));
  const std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
  if (realpath(dir.c_str(), resolved)) return std::string(resolved) + "/" + base;
  return path;
}

// True when two paths name the same file: the same inode when both exist,
// otherwise the same resolved path.
bool SameFile(const std::string& x, const std::string& y) {
  struct stat sx, sy;
  if (stat(x.c_str(), &sx) == 0 && stat(y.c_str(), &sy) == 0) {
    return sx.st_dev == sy.st_dev && sx.st_ino == sy.st_ino;
  }
  return CanonicalPath(x) == CanonicalPath(y);
}

const char kUsage[] =
    "Usage: rule-discretise -f STEM [-s FRACTION] -o OUTSTEM\n"
    "Reads STEM.names and STEM.data, cuts every continuous attribute into intervals and\n"
    "writes the categorical pair OUTSTEM.names and OUTSTEM.data, which rule can mine.\n"
    "  -f STEM      stem of the input files\n"
    "  -s FRACTION  minimum support as a fraction of the cases, from 0 to 1 (default 0.1):\n"
    "               an interval holding at most that many cases is merged with a neighbour\n"
    "  -o OUTSTEM   stem of the output files; it must not name the input files\n"
    "  --help       show this text\n";

int BadUsage(const std::string& message) {
  std::printf("rule-discretise: %s\n%s", message.c_str(), kUsage);
  return 1;
}

// The support fraction: a whole decimal number from 0 to 1.
bool ParseFraction(const char* text, float* fraction) {
  errno = 0;
  char* end = nullptr;
  const double value = std::strtod(text, &end);
  if (end == text || *end != '\0' || errno == ERANGE || !(value >= 0.0 && value <= 1.0)) return false;
  *fraction = static_cast<float>(value);
  return true;
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

bool WriteCategoricalPair(const std::string& outStem, const std::vector<CutAttribute>& cuts,
                          std::string* error) {
  std::vector<const CutAttribute*> cutOf(MaxAtt, nullptr);
  std::vector<std::vector<std::string>> spellings(MaxAtt);
  for (const CutAttribute& cut : cuts) {
    cutOf[cut.Declared] = &cut;
    spellings[cut.Declared] = IntervalSpellings(cut.Intervals);
  }
  const std::string namesPath = outStem + ".names";
  const std::string dataPath = outStem + ".data";
  if (!WriteNamesFile(namesPath, cutOf, spellings)) {
    *error = "cannot write " + namesPath + ": " + std::strerror(errno);
    return false;
  }
  if (!WriteDataFile(dataPath, cutOf, spellings)) {
    *error = "cannot write " + dataPath + ": " + std::strerror(errno);
    return false;
  }
  return true;
}

int RunDiscretise(int argc, char** argv) {
  std::string stem, outStem;
  bool haveStem = false, haveOut = false;
  float fraction = 0.1f;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--help" || arg == "-h") {
      std::fputs(kUsage, stdout);
      return 0;
    }
    if (arg != "-f" && arg != "-s" && arg != "-o") return BadUsage("unknown option " + arg);
    if (i + 1 >= argc) return BadUsage("option " + arg + " needs an argument");
    const char* value = argv[++i];
    if (arg == "-f") {
      stem = value;
      haveStem = true;
    } else if (arg == "-o") {
      outStem = value;
      haveOut = true;
    } else if (!ParseFraction(value, &fraction)) {
      return BadUsage(std::string("the support fraction must be a number from 0 to 1, not ") + value);
    }
  }
  if (!haveStem) return BadUsage("no input stem (-f)");
  if (!haveOut) return BadUsage("no output stem (-o)");
  for (const char* out : {".names", ".data"}) {
    for (const char* in : {".names", ".data"}) {
      if (SameFile(outStem + out, stem + in)) {
        std::printf("rule-discretise: %s%s would overwrite the input file %s%s\n", outStem.c_str(), out,
                    stem.c_str(), in);
        return 1;
      }
    }
  }

  ResetRun();
  FileName = stem;
  GetNames(true);
  ReadData(".data");
  GMinSup = ComputeMinSup(MaxData, fraction);
  std::printf("Read %d cases of %d attributes from %s; an interval of at most %d cases is merged\n",
              MaxData, MaxAtt - 1, stem.c_str(), GMinSup);

  std::vector<CutAttribute> cuts;
  DiscretiseAttributes(&cuts);
  for (const CutAttribute& cut : cuts) {
    const std::vector<std::string> names = IntervalSpellings(cut.Intervals);
    std::printf("%s: %d interval%s\n", AttName[cut.Declared].c_str(), static_cast<int>(names.size()),
                names.size() == 1 ? "" : "s");
    for (size_t j = 0; j < names.size(); ++j) {
      const int cases = cut.Intervals[j].Count;
      std::printf("\t%s\t%d case%s\n", names[j].c_str(), cases, cases == 1 ? "" : "s");
    }
  }

  std::string error;
  if (!WriteCategoricalPair(outStem, cuts, &error)) {
    std::printf("rule-discretise: %s\n", error.c_str());
    return 1;
  }
  std::printf("Wrote %s.names and %s.data\n", outStem.c_str(), outStem.c_str());
  return 0;
}
