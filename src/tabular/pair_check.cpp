#include "tabular/pair_check.h"

#include <map>

#include "base/files.h"
#include "input/readers.h"

namespace tabular {

namespace {

// Undeclared values of one attribute: how many, and the first one seen.
struct Undeclared {
  int Count = 0;
  std::string First;
  long FirstLine = 0;
};

}  // namespace

bool CheckNamesAndData(const std::string& stem, PairFindings* findings, std::string* error) {
  DataSet data;
  std::FILE* sink = std::tmpfile();  // the readers' own reports are not wanted here
  if (!sink) {
    *error = "cannot make a temporary file";
    return false;
  }
  FileCloser sinkCloser{sink};
  InputErrors errors{sink, 0};
  const Status names = GetNames(data, stem, errors, true);
  if (!names.ok()) {
    *error = names.message().empty() ? stem + ".names cannot be read" : names.message();
    while (!error->empty() && (error->front() == '\n' || error->back() == '\n'))
      *error = error->front() == '\n' ? error->substr(1) : error->substr(0, error->size() - 1);
    return false;
  }
  const std::string dataFile = stem + ".data";
  std::FILE* f = XFopen(dataFile, "r");
  if (!f) {
    *error = "ERROR:  cannot open file " + dataFile;
    return false;
  }
  FileCloser closer{f};
  NameReader in{f, 0};

  findings->Attributes = data.MaxAtt;
  std::map<int, Undeclared> undeclared;  // by declared attribute
  std::vector<std::string> first;        // the fields of the first case
  long line = 1;                         // line of the field being read
  long linesWithOneField = 0, lines = 0;
  long fieldsOnLine = 0;
  std::string oneFieldExample;
  int field = 0;
  std::string value;
  while (ReadName(in, value)) {
    if (findings->Cases == 0) first.push_back(value);
    const unsigned char kind = data.SpecialStatus[field];
    const bool known = value == "?" || kind == 1 || kind == 3 || GetAttCode(data, value, field) != 0;
    if (!known) {
      Undeclared& u = undeclared[field];
      if (u.Count++ == 0) {
        u.First = value;
        u.FirstLine = line;
      }
    }
    ++fieldsOnLine;
    if (in.Delimiter == '\n' || in.Delimiter == 0xFF) {
      ++lines;
      if (fieldsOnLine == 1 && data.MaxAtt > 1) {
        if (linesWithOneField++ == 0) oneFieldExample = value;
      }
      fieldsOnLine = 0;
      ++line;
    }
    if (++field == data.MaxAtt) {
      field = 0;
      ++findings->Cases;
    }
  }

  int headerMatches = 0;
  for (size_t a = 0; a < first.size() && a + 1 < data.AttName.size(); ++a) headerMatches += first[a] == data.AttName[a];
  if (headerMatches * 2 > data.MaxAtt - 1 && headerMatches > 0)
    findings->Problems.push_back("the first case looks like a header row: " + std::to_string(headerMatches) +
                                 " of its fields are attribute names; it is read as a case of unknown values");
  if (linesWithOneField > 0 && linesWithOneField * 2 >= lines)
    findings->Problems.push_back(std::to_string(linesWithOneField) + " of " + std::to_string(lines) +
                                 " lines hold a single field (first: '" + oneFieldExample +
                                 "'): are the fields separated by another character than a comma?");
  for (const auto& [attribute, u] : undeclared) {
    const std::string name = attribute == data.MaxAtt - 1 ? "the class" : "attribute " + data.AttName[attribute];
    findings->Problems.push_back(std::to_string(u.Count) + " value" + (u.Count == 1 ? "" : "s") + " of " + name +
                                 " not declared in " + stem + ".names, read as unknown (first: '" + u.First +
                                 "' on line " + std::to_string(u.FirstLine) + ")");
  }
  if (field != 0)
    findings->Problems.push_back(std::to_string(field) + " field" + (field == 1 ? "" : "s") +
                                 " after the last complete case are dropped: a case has " +
                                 std::to_string(data.MaxAtt) + " fields");
  return true;
}

}  // namespace tabular
