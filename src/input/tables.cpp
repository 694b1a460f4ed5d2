// The item coding tables and the coded data space.
#include <algorithm>
#include <cmath>

#include "base/numbers.h"
#include "input/dataset.h"

void ValueTable::Grow() {
  size_t size = slots_.empty() ? 16 : slots_.size() * 2;
  slots_.assign(size, 0);
  for (size_t e = 0; e < entries_.size(); ++e) {
    size_t at = entries_[e].hash & (size - 1);
    while (slots_[at]) at = (at + 1) & (size - 1);
    slots_[at] = static_cast<unsigned>(e + 1);
  }
}

void ValueTable::Insert(const std::string& name, int code) {
  if (Find(name) != 0) return;  // the first declaration wins
  if ((entries_.size() + 1) * 2 > slots_.size()) Grow();
  const unsigned hash = Hash(name);
  entries_.push_back({name, code, hash});
  size_t at = hash & (slots_.size() - 1);
  while (slots_[at]) at = (at + 1) & (slots_.size() - 1);
  slots_[at] = static_cast<unsigned>(entries_.size());
}

DataSet::DataSet() : Rows(std::make_shared<RowStore>()) {}

DataSet::DataSet(const DataSet& other)
    : FileName(other.FileName),
      AttName(other.AttName),
      SpecialStatus(other.SpecialStatus),
      Attribute(other.Attribute),
      AttValue(other.AttValue),
      MaxAttVal(other.MaxAttVal),
      ClassName(other.ClassName),
      MaxAtt(other.MaxAtt),
      RealAtt(other.RealAtt),
      MaxItem(other.MaxItem),
      MaxClass(other.MaxClass),
      Item_Id_Ceiling(other.Item_Id_Ceiling),
      MaxData(other.MaxData),
      RawDataSpace(other.RawDataSpace),
      DataSpace(other.DataSpace),
      AttLookup(other.AttLookup),
      Rows(other.Rows) {
  ItemRecord.reserve(other.ItemRecord.size());
  for (const auto& entry : other.ItemRecord)
    ItemRecord.push_back(entry ? std::make_unique<ItemEntry>(*entry) : nullptr);
  // The value chains are rebuilt in this copy's own pool, in declared order.
  AttCode.assign(other.AttCode.size(), nullptr);
  AttCodeTail.assign(other.AttCodeTail.size(), nullptr);
  for (size_t a = 0; a < other.AttCode.size(); ++a) {
    AttCodeEntry* last = nullptr;
    for (const AttCodeEntry* e = other.AttCode[a]; e; e = e->Next) {
      AttCodeEntry* copy = AddAttCode(*this, e->Name, e->Code);
      if (last) last->Next = copy;
      else AttCode[a] = copy;
      last = copy;
    }
    if (a < AttCodeTail.size()) AttCodeTail[a] = last;
  }
}

DataSet DataSet::Subset(const std::vector<int>& cases) const {
  DataSet subset(*this);
  subset.DataSpace.clear();
  subset.DataSpace.reserve(cases.size());
  for (int i : cases) subset.DataSpace.push_back(DataSpace[static_cast<size_t>(i)]);
  subset.MaxData = static_cast<int>(cases.size());
  subset.RawDataSpace.clear();
  return subset;
}

void GrowItemTables(DataSet& data) {
  if (data.Item_Id_Ceiling - 1 <= data.MaxItem) {
    data.Item_Id_Ceiling += 50;
    data.ItemRecord.resize(data.Item_Id_Ceiling);
    data.Attribute.resize(data.Item_Id_Ceiling, 0);
  }
}

void AddItem(DataSet& data, int declared, int real, const std::string& value) {
  ++data.MaxItem;
  const int code = data.MaxItem;
  AttCodeEntry* entry = AddAttCode(data, value, code);
  if (data.AttCodeTail.size() <= static_cast<size_t>(declared)) data.AttCodeTail.resize(declared + 1, nullptr);
  if (!data.AttCode[declared]) data.AttCode[declared] = entry;
  else data.AttCodeTail[declared]->Next = entry;
  data.AttCodeTail[declared] = entry;
  if (data.AttLookup.size() <= static_cast<size_t>(declared)) data.AttLookup.resize(declared + 1);
  data.AttLookup[declared].Insert(value, code);
  data.AttValue[real].push_back(code);
  ++data.MaxAttVal[real];
  data.Attribute[code] = real;
  GrowItemTables(data);
  data.ItemRecord[code] = AddItemRecord(data.AttName[declared], value);
}

float* NewRawRow(DataSet& data, int index) {
  const size_t width = static_cast<size_t>(data.RealAtt) + 2;
  const size_t slot = static_cast<size_t>(index) % kRowsPerBlock;
  auto& blocks = data.Rows->RawBlocks;
  if (slot == 0) {
    // Owned before the list grows, so that a failed growth frees it.
    std::unique_ptr<float[]> block(new float[width * kRowsPerBlock]());
    blocks.push_back(std::move(block));
  }
  float* row = blocks.back().get() + slot * width;
  if (data.RawDataSpace.size() <= static_cast<size_t>(index)) data.RawDataSpace.resize(index + 1);
  data.RawDataSpace[index] = row;
  return row;
}

void ReleaseRawRows(DataSet& data) {
  data.Rows->RawBlocks.clear();
  data.Rows->RawBlocks.shrink_to_fit();
  data.RawDataSpace.clear();
  data.RawDataSpace.shrink_to_fit();
}

std::unique_ptr<ItemEntry> AddItemRecord(const std::string& attName, const std::string& valueName) {
  auto entry = std::make_unique<ItemEntry>();
  entry->ValueName = CopyString(valueName);
  entry->AttributeName = CopyString(attName);
  return entry;
}

AttCodeEntry* AddAttCode(DataSet& data, const std::string& name, int code) {
  data.AttCodePool.emplace_back();
  AttCodeEntry* entry = &data.AttCodePool.back();
  entry->Name = CopyString(name);
  entry->Code = code;
  entry->Next = nullptr;
  return entry;
}

std::string CopyString(const std::string& s) { return s; }

int GetAttCode(const DataSet& data, const std::string& value, int attIndex) {
  if (attIndex < 0 || static_cast<size_t>(attIndex) >= data.AttCode.size()) return 0;
  if (static_cast<size_t>(attIndex) < data.AttLookup.size()) return data.AttLookup[attIndex].Find(value);
  for (const AttCodeEntry* e = data.AttCode[attIndex]; e; e = e->Next)
    if (e->Name == value) return e->Code;
  return 0;
}

int GetNameCode(const DataSet& data, const std::string& className) {
  for (int k = 0; k < data.MaxClass && static_cast<size_t>(k) < data.ClassName.size(); ++k)
    if (data.ClassName[k] == className) return k;
  return -1;
}

int ConvertDataSpace(DataSet& data) {
  data.DataSpace.assign(data.MaxData, nullptr);
  auto& raw = data.Rows->RawBlocks;
  auto& coded = data.Rows->DataBlocks;
  coded.clear();
  const size_t width = static_cast<size_t>(data.RealAtt) + 1;
  for (int i = 0; i < data.MaxData; ++i) {
    const size_t slot = static_cast<size_t>(i) % kRowsPerBlock;
    if (slot == 0) {
      size_t rows = std::min<size_t>(kRowsPerBlock, static_cast<size_t>(data.MaxData - i));
      std::unique_ptr<short[]> block(new short[width * rows]());
      coded.push_back(std::move(block));
      // The raw block before this one is coded: release it.
      size_t done = static_cast<size_t>(i) / kRowsPerBlock;
      if (done > 0) raw[done - 1].reset();
    }
    short* row = coded.back().get() + slot * width;
    const float* rawRow = data.RawDataSpace[i];
    for (size_t j = 0; j < width; ++j) {
      // Truncation toward zero, as a C conversion of a float to an integer.
      row[j] = static_cast<short>(TruncateToInt(std::trunc(rawRow[j])));
    }
    data.DataSpace[i] = row;
  }
  ReleaseRawRows(data);
  return 1;
}
