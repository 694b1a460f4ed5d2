// The item coding tables and the coded data space.
#include <cmath>
#include <deque>

#include "readfile.h"
#include "readfile/internal.h"
#include "rule.h"

std::vector<std::string> AttName;
std::vector<unsigned char> SpecialStatus;
std::vector<AttCodeEntry*> AttCode;
std::vector<std::unique_ptr<ItemEntry>> ItemRecord;
std::vector<int> Attribute;
std::vector<std::vector<int>> AttValue;
std::vector<int> MaxAttVal;
std::vector<std::string> ClassName;
int MaxAtt = 0;
int RealAtt = 0;
int MaxItem = 0;
int MaxClass = 0;
int Item_Id_Ceiling = 50;
int MaxData = 0;
std::vector<float*> RawDataSpace;
std::vector<short*> DataSpace;

namespace readfile_detail {

// Value entries live in a pool so that chains of any length are released
// without recursion; AttCode and Next only point into it.
std::deque<AttCodeEntry> AttCodePool;
// Per declared attribute: the last entry of its chain, where the next
// declared value is linked.
std::vector<AttCodeEntry*> AttCodeTail;
// Per declared attribute: value name -> code of its first declaration.
std::vector<ValueTable> AttLookup;

unsigned ValueTable::Hash(const std::string& name) {
  unsigned h = 2166136261u;
  for (unsigned char c : name) h = (h ^ c) * 16777619u;
  return h;
}

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

int ValueTable::Find(const std::string& name) const {
  if (slots_.empty()) return 0;
  const unsigned hash = Hash(name);
  const size_t mask = slots_.size() - 1;
  for (size_t at = hash & mask; slots_[at]; at = (at + 1) & mask) {
    const Entry& e = entries_[slots_[at] - 1];
    if (e.hash == hash && e.name == name) return e.code;
  }
  return 0;
}
// Storage of the rows: blocks of consecutive rows that RawDataSpace and
// DataSpace point into.
std::vector<std::unique_ptr<float[]>> RawBlocks;
std::vector<std::unique_ptr<short[]>> DataBlocks;

void GrowItemTables() {
  if (Item_Id_Ceiling - 1 <= MaxItem) {
    Item_Id_Ceiling += 50;
    ItemRecord.resize(Item_Id_Ceiling);
    Attribute.resize(Item_Id_Ceiling, 0);
  }
}

void AddItem(int declared, int real, const std::string& value) {
  ++MaxItem;
  AttCodeEntry* entry = AddAttCode(value, MaxItem);
  if (AttCodeTail.size() <= static_cast<size_t>(declared)) AttCodeTail.resize(declared + 1, nullptr);
  if (!AttCode[declared]) {
    AttCode[declared] = entry;
  } else {
    AttCodeTail[declared]->Next = entry;
  }
  AttCodeTail[declared] = entry;
  if (AttLookup.size() <= static_cast<size_t>(declared)) AttLookup.resize(declared + 1);
  AttLookup[declared].Insert(value, MaxItem);
  AttValue[real].push_back(MaxItem);
  ++MaxAttVal[real];
  Attribute[MaxItem] = real;
  GrowItemTables();
  ItemRecord[MaxItem] = AddItemRecord(AttName[declared], value);
}

float* NewRawRow(int index) {
  const size_t width = static_cast<size_t>(RealAtt) + 2;
  const size_t slot = static_cast<size_t>(index) % kRowsPerBlock;
  if (slot == 0) {
    // Owned before the list grows, so that a failed growth frees it.
    std::unique_ptr<float[]> block(new float[width * kRowsPerBlock]());
    RawBlocks.push_back(std::move(block));
  }
  float* row = RawBlocks.back().get() + slot * width;
  if (RawDataSpace.size() <= static_cast<size_t>(index)) RawDataSpace.resize(index + 1);
  RawDataSpace[index] = row;
  return row;
}

void ReleaseRawRows() {
  RawBlocks.clear();
  RawBlocks.shrink_to_fit();
  RawDataSpace.clear();
  RawDataSpace.shrink_to_fit();
}

}  // namespace readfile_detail

using namespace readfile_detail;

std::unique_ptr<ItemEntry> AddItemRecord(const std::string& attName, const std::string& valueName) {
  auto entry = std::make_unique<ItemEntry>();
  entry->ValueName = CopyString(valueName);
  entry->AttributeName = CopyString(attName);
  return entry;
}

AttCodeEntry* AddAttCode(const std::string& name, int code) {
  AttCodePool.emplace_back();
  AttCodeEntry* entry = &AttCodePool.back();
  entry->Name = CopyString(name);
  entry->Code = code;
  entry->Next = nullptr;
  return entry;
}

std::string CopyString(const std::string& s) { return s; }

int GetAttCode(const std::string& value, int attIndex) {
  if (attIndex < 0 || static_cast<size_t>(attIndex) >= AttCode.size()) return 0;
  if (static_cast<size_t>(attIndex) < AttLookup.size()) {
    return AttLookup[attIndex].Find(value);
  }
  for (AttCodeEntry* e = AttCode[attIndex]; e; e = e->Next)
    if (e->Name == value) return e->Code;
  return 0;
}

int GetNameCode(const std::string& className) {
  for (int k = 0; k < MaxClass && static_cast<size_t>(k) < ClassName.size(); ++k)
    if (ClassName[k] == className) return k;
  return -1;
}

int ConvertDataSpace() {
  DataSpace.assign(MaxData, nullptr);
  DataBlocks.clear();
  const size_t width = static_cast<size_t>(RealAtt) + 1;
  for (int i = 0; i < MaxData; ++i) {
    const size_t slot = static_cast<size_t>(i) % kRowsPerBlock;
    if (slot == 0) {
      size_t rows = std::min<size_t>(kRowsPerBlock, static_cast<size_t>(MaxData - i));
      std::unique_ptr<short[]> block(new short[width * rows]());
      DataBlocks.push_back(std::move(block));
      // The raw block before this one is coded: release it.
      size_t done = static_cast<size_t>(i) / kRowsPerBlock;
      if (done > 0) RawBlocks[done - 1].reset();
    }
    short* row = DataBlocks.back().get() + slot * width;
    const float* raw = RawDataSpace[i];
    for (size_t j = 0; j < width; ++j) {
      // Truncation toward zero, as a C conversion of a float to an integer.
      row[j] = static_cast<short>(TruncateToInt(std::trunc(raw[j])));
    }
    DataSpace[i] = row;
  }
  ReleaseRawRows();
  return 1;
}

void CheckItemLimit(const std::string& source) {
  if (MaxItem > MaxCodableItem) {
    std::printf("\nERROR:  %s declares %d items; at most %d can be coded\n", source.c_str(), MaxItem,
                MaxCodableItem);
    EndRun(1);
  }
}

void ResetReadfile() {
  AttName.clear();
  SpecialStatus.clear();
  AttCode.clear();
  AttCodePool.clear();
  AttCodeTail.clear();
  AttLookup.clear();
  ItemRecord.clear();
  Attribute.clear();
  AttValue.clear();
  MaxAttVal.clear();
  ClassName.clear();
  MaxAtt = RealAtt = MaxItem = MaxClass = 0;
  Item_Id_Ceiling = 50;
  MaxData = 0;
  ReleaseRawRows();
  DataSpace.clear();
  DataSpace.shrink_to_fit();
  DataBlocks.clear();
  Delimiter = 0;
  ResetErrorCount();
}
