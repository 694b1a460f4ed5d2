// The data file reader: a stream of fields, every MaxAtt fields one case.
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "base/files.h"
#include "input/readers.h"

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

Status ReadData(DataSet& data, const std::string& extension, InputErrors& errors) {
  const std::string fileName = data.FileName + extension;
  std::FILE* f = XFopen(fileName, "r");
  if (!f) return Error(errors, 0, fileName, "");
  FileCloser closer{f};
  NameReader in{f, 0};

  ReleaseRawRows(data);
  data.MaxData = 0;
  float* row = NewRawRow(data, 0);
  int field = 0;   // declared index of the field within its case
  int column = 0;  // real index of its column
  std::string value;
  while (ReadName(in, value)) {
    const unsigned char status = data.SpecialStatus[field];
    if (status == 1) {
      ++field;  // ignored: nothing stored, the column stays
      continue;
    }
    if (status == 3) {
      row[column] = ContinuousValue(value);
    } else {
      row[column] = static_cast<float>(GetAttCode(data, value, field));
    }
    if (++field < data.MaxAtt) {
      ++column;
      continue;
    }
    // The case is complete.
    ++data.MaxData;
    row = NewRawRow(data, data.MaxData);
    field = 0;
    column = 0;
  }
  // The row made for the next case holds no complete case: drop it.
  data.RawDataSpace.resize(data.MaxData);
  return Status();
}

Status GetData(DataSet& data, const std::string& extension, InputErrors& errors) {
  RETURN_IF_FAILED(ReadData(data, extension, errors));
  ConvertDataSpace(data);
  return Status();
}
