// Coding a data set with cut points learnt from part of its cases, so that a
// classifier trained on those cases and tested on the others sees intervals
// chosen without the test cases' classes.
#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>

#include "discretiser/discretise.h"
#include "discretiser/entropy_cuts.h"
#include "input/readers.h"

namespace {

constexpr float kUnknownValue = -1.0f;  // a raw continuous value that stands for "?"

// Appends a declared attribute with a column of its own, as the names
// reader opens one.
void OpenColumn(DataSet& data, const std::string& name, unsigned char status) {
  ++data.MaxAtt;
  data.AttName.push_back(name);
  data.SpecialStatus.push_back(status);
  data.AttCode.push_back(nullptr);
  if (status == 1) return;  // ignored: no column
  ++data.RealAtt;
  data.AttValue.resize(static_cast<size_t>(data.RealAtt) + 1);
  data.MaxAttVal.resize(static_cast<size_t>(data.RealAtt) + 1, 0);
}

// The interval index of x among intervals bounded by `bounds` (the first
// interval's Low, then every interval's High), the nearest one for a value
// outside them all.
int IntervalOf(const std::vector<float>& bounds, float x) {
  const int n = static_cast<int>(bounds.size()) - 1;
  const int j = static_cast<int>(std::upper_bound(bounds.begin(), bounds.end(), x) - bounds.begin()) - 1;
  return std::clamp(j, 0, n - 1);
}

}  // namespace

bool HasContinuousAttribute(const DataSet& data) {
  return std::find(data.SpecialStatus.begin(), data.SpecialStatus.end(), 3) != data.SpecialStatus.end();
}

std::vector<CutAttribute> LearnEntropyCuts(const DataSet& raw, const std::vector<int>& cases, CutPlacement placement) {
  // The class items are the last MaxClass codes of a raw data set: its
  // continuous attributes have no items yet.
  const int firstClassItem = raw.MaxItem - raw.MaxClass + 1;
  std::vector<int> classes;
  for (int i : cases) classes.push_back(static_cast<int>(raw.RawDataSpace[static_cast<size_t>(i)][raw.RealAtt - 1]) - firstClassItem);
  // Each continuous attribute's values over the cases, NaN for unknown.
  std::vector<CutAttribute> cuts;
  std::vector<std::vector<float>> columns;
  int column = 0;
  for (int a = 0; a < raw.MaxAtt; ++a) {
    if (raw.SpecialStatus[a] == 1) continue;
    const int c = column++;
    if (raw.SpecialStatus[a] != 3) continue;
    std::vector<float> values;
    for (int i : cases) {
      const float x = raw.RawDataSpace[static_cast<size_t>(i)][c];
      values.push_back(x == kUnknownValue ? std::numeric_limits<float>::quiet_NaN() : x == 0.0f ? 0.0f : x);
    }
    CutAttribute cut;
    cut.Declared = a;
    cut.Column = c;
    cuts.push_back(std::move(cut));
    columns.push_back(std::move(values));
  }
  std::vector<std::vector<double>> points;
  if (placement == CutPlacement::kInTree) points = TreeCutPoints(columns, classes, raw.MaxClass);
  std::vector<std::pair<float, int>> valueClass;
  for (size_t a = 0; a < cuts.size(); ++a) {
    valueClass.clear();
    std::vector<float> sorted;
    for (size_t i = 0; i < classes.size(); ++i) {
      const float v = columns[a][i];
      if (std::isnan(v)) continue;
      sorted.push_back(v);
      valueClass.emplace_back(v, classes[i]);
    }
    std::sort(sorted.begin(), sorted.end());
    cuts[a].Intervals = IntervalsFromCuts(
        sorted, placement == CutPlacement::kInTree ? points[a] : EntropyCutPoints(valueClass, raw.MaxClass));
  }
  return cuts;
}

Status CodeWithCuts(const DataSet& raw, const std::vector<CutAttribute>& cuts, DataSet& coded) {
  coded = DataSet();
  coded.FileName = raw.FileName;
  coded.ClassName = raw.ClassName;
  coded.ItemRecord.resize(static_cast<size_t>(coded.Item_Id_Ceiling));
  coded.Attribute.assign(static_cast<size_t>(coded.Item_Id_Ceiling), 0);
  coded.MaxAtt = -1;
  coded.RealAtt = -1;
  coded.ItemRecord[0] = AddItemRecord("?", "unknown attribute");

  std::vector<const CutAttribute*> cutOf(static_cast<size_t>(raw.MaxAtt), nullptr);
  for (const CutAttribute& cut : cuts) cutOf[static_cast<size_t>(cut.Declared)] = &cut;

  // How each raw column becomes a coded one: -1 for a column that goes, and
  // for a categorical column the new code of every raw code.
  std::vector<int> rawCode(static_cast<size_t>(raw.MaxItem) + 1, 0);
  struct Column {
    int Raw;
    const CutAttribute* Cut;  // null for a categorical column
    int FirstCode;
    std::vector<float> Bounds;
  };
  std::vector<Column> columns;
  int rawColumn = 0;
  for (int a = 0; a < raw.MaxAtt; ++a) {
    const unsigned char status = raw.SpecialStatus[a];
    if (status == 1) {
      OpenColumn(coded, raw.AttName[a], 1);
      continue;
    }
    const int c = rawColumn++;
    const CutAttribute* cut = status == 3 ? cutOf[static_cast<size_t>(a)] : nullptr;
    if (status == 3 && (!cut || cut->Intervals.empty())) {
      // No interval to code it with: an ignored field, as the written pair declares it.
      OpenColumn(coded, raw.AttName[a], 1);
      continue;
    }
    OpenColumn(coded, raw.AttName[a], 0);
    Column column{c, cut, coded.MaxItem + 1, {}};
    if (cut) {
      for (const std::string& name : IntervalSpellings(cut->Intervals)) AddItem(coded, coded.MaxAtt, coded.RealAtt, name);
      column.Bounds.push_back(cut->Intervals.front().Low);
      for (const ContValue& v : cut->Intervals) column.Bounds.push_back(v.High);
    } else {
      for (const AttCodeEntry* e = raw.AttCode[a]; e; e = e->Next) {
        AddItem(coded, coded.MaxAtt, coded.RealAtt, e->Name);
        rawCode[static_cast<size_t>(e->Code)] = coded.MaxItem;
      }
    }
    columns.push_back(std::move(column));
  }
  coded.MaxClass = raw.MaxClass;
  ++coded.MaxAtt;
  ++coded.RealAtt;
  coded.AttValue.resize(static_cast<size_t>(coded.RealAtt));
  coded.MaxAttVal.resize(static_cast<size_t>(coded.RealAtt));
  RETURN_IF_FAILED(CheckItemLimit(coded, raw.FileName + ".data"));

  // The coded rows, RealAtt+1 codes each, the last one 0.
  coded.MaxData = raw.MaxData;
  const size_t width = static_cast<size_t>(coded.RealAtt) + 1;
  coded.DataSpace.assign(static_cast<size_t>(raw.MaxData), nullptr);
  auto& blocks = coded.Rows->DataBlocks;
  for (int i = 0; i < raw.MaxData; ++i) {
    const size_t slot = static_cast<size_t>(i) % kRowsPerBlock;
    if (slot == 0) {
      const size_t rows = std::min<size_t>(kRowsPerBlock, static_cast<size_t>(raw.MaxData - i));
      std::unique_ptr<short[]> block(new short[width * rows]());
      blocks.push_back(std::move(block));
    }
    short* row = blocks.back().get() + slot * width;
    const float* rawRow = raw.RawDataSpace[static_cast<size_t>(i)];
    for (size_t j = 0; j < columns.size(); ++j) {
      const Column& column = columns[j];
      const float x = rawRow[column.Raw];
      if (column.Cut) {
        row[j] = x == kUnknownValue ? 0 : static_cast<short>(column.FirstCode + IntervalOf(column.Bounds, x));
      } else {
        const int code = static_cast<int>(x);
        row[j] = static_cast<short>(code > 0 && code <= raw.MaxItem ? rawCode[static_cast<size_t>(code)] : 0);
      }
    }
    coded.DataSpace[static_cast<size_t>(i)] = row;
  }
  return Status();
}
