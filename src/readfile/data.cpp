// The data file reader: a stream of fields, every MaxAtt fields one case.
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "readfile.h"
#include "readfile/internal.h"
#include "rule.h"

namespace {

// The number a continuous field holds; -1.0 (unknown) for "?" and for text
// that converts to a non-finite number.
float ContinuousValue(const std::string& field) {
  if (field == "?") return -1.0f;
  float value = static_cast<float>(std::strtod(field.c_str(), nullptr));
  if (!std::isfinite(value)) return -1.0f;
  return value;
}

}  // namespace

int ReadData(const std::string& extension) {
  using namespace readfile_detail;
  const std::string fileName = FileName + extension;
  std::FILE* f = XFopen(fileName, "r");
  if (!f) Error(0, fileName, "");
  FileCloser closer{f};

  ReleaseRawRows();
  MaxData = 0;
  float* row = NewRawRow(0);
  int field = 0;   // declared index of the field within its case
  int column = 0;  // real index of its column
  std::string value;
  while (ReadName(f, value)) {
    const unsigned char status = SpecialStatus[field];
    if (status == 1) {
      ++field;  // ignored: nothing stored, the column stays
      continue;
    }
    if (status == 3) {
      row[column] = ContinuousValue(value);
    } else {
      row[column] = static_cast<float>(GetAttCode(value, field));
    }
    if (++field < MaxAtt) {
      ++column;
      continue;
    }
    // The case is complete.
    ++MaxData;
    row = NewRawRow(MaxData);
    field = 0;
    column = 0;
  }
  // The row made for the next case holds no complete case: drop it.
  RawDataSpace.resize(MaxData);
  return 1;
}

int GetData(const std::string& extension) {
  ReadData(extension);
  ConvertDataSpace();
  return 1;
}
