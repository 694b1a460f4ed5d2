// The data file reader: a stream of fields, every MaxAtt fields one case.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "base/files.h"
#include "base/numbers.h"
#include "input/readers.h"

namespace {

// The number a continuous field holds; -1.0 (unknown) for "?" and for a
// field that is no finite decimal number (hexadecimal, "inf", "nan", text).
float ContinuousValue(const std::string& field) {
  double number = 0;
  if (!ParseNumber(field, number)) return -1.0f;
  const float value = static_cast<float>(number);
  return std::isfinite(value) ? value : -1.0f;
}

// The refusal of a data file with more cases than a case number can count.
Status TooManyCases(const std::string& fileName) {
  return Status(StatusKind::InputError, 1,
                "\nERROR:  " + fileName + " holds more than 2147483647 cases, the most a case number can count\n");
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
    if (data.MaxData == INT_MAX) return TooManyCases(fileName);
    ++data.MaxData;
    row = NewRawRow(data, data.MaxData);
    field = 0;
    column = 0;
  }
  // The row made for the next case holds no complete case: drop it.
  data.RawDataSpace.resize(data.MaxData);
  return Status();
}

namespace {

// Hands out the coded rows of a data set being read, in blocks: small ones
// first, so that a small file takes little memory, then blocks of
// kRowsPerBlock rows.
class CodedRows {
 public:
  explicit CodedRows(DataSet& data) : data_(data), width_(static_cast<size_t>(data.RealAtt) + 1) {}

  // A zero-filled row for the next case (its last column stays 0).
  short* Next() {
    if (free_ == 0) {
      rows_ = rows_ == 0 ? 64 : std::min(rows_ * 2, kRowsPerBlock);
      // Owned before the list grows, so that a failed growth frees it.
      std::unique_ptr<short[]> block(new short[width_ * rows_]());
      data_.Rows->DataBlocks.push_back(std::move(block));
      next_ = data_.Rows->DataBlocks.back().get();
      free_ = rows_;
    }
    short* row = next_;
    next_ += width_;
    --free_;
    return row;
  }

 private:
  DataSet& data_;
  const size_t width_;
  size_t rows_ = 0;  // rows of the last block
  size_t free_ = 0;  // rows of it not handed out
  short* next_ = nullptr;
};

}  // namespace

Status GetData(DataSet& data, const std::string& extension, InputErrors& errors) {
  for (unsigned char status : data.SpecialStatus) {
    if (status == 3) {
      // Continuous columns hold numbers: read them raw, then code them.
      RETURN_IF_FAILED(ReadData(data, extension, errors));
      ConvertDataSpace(data);
      return Status();
    }
  }

  // Every field is a value name: its item code goes straight into the row.
  const std::string fileName = data.FileName + extension;
  std::FILE* f = XFopen(fileName, "r");
  if (!f) return Error(errors, 0, fileName, "");
  FileCloser closer{f};
  NameReader in{f, 0};

  ReleaseRawRows(data);
  data.MaxData = 0;
  data.DataSpace.clear();
  data.Rows->DataBlocks.clear();
  CodedRows rows(data);
  const size_t tables = data.AttLookup.size();
  short* row = nullptr;  // the row of the case being read
  int field = 0;         // declared index of the field within its case
  int column = 0;        // real index of its column
  std::string text;
  std::string_view value;
  while (ReadNameView(in, text, value)) {
    if (data.SpecialStatus[field] == 1) {
      ++field;  // ignored: nothing stored, the column stays
      continue;
    }
    if (!row) row = rows.Next();
    // An attribute without a table declares no value: every field is unknown.
    row[column] = static_cast<short>(static_cast<size_t>(field) < tables ? data.AttLookup[field].Find(value) : 0);
    if (++field < data.MaxAtt) {
      ++column;
      continue;
    }
    // The case is complete.
    if (data.MaxData == INT_MAX) return TooManyCases(fileName);
    data.DataSpace.push_back(row);
    ++data.MaxData;
    row = nullptr;
    field = 0;
    column = 0;
  }
  // A row begun for fields that complete no case stays unused.
  return Status();
}
