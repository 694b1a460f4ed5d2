// A data set: the item coding tables read from a names file and the cases of
// a data file coded as rows of item codes.
#pragma once

#include <cstring>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// One item: the attribute and value it codes.
struct ItemEntry {
  std::string ValueName;
  std::string AttributeName;
};

// One declared value of an attribute, chained in declared order.
struct AttCodeEntry {
  std::string Name;
  int Code = 0;
  AttCodeEntry* Next = nullptr;
};

// Value name -> item code of one attribute: open addressing over FNV-1a
// hashes; the first declaration of a name wins. Find is inline: the data
// reader calls it once per field.
class ValueTable {
 public:
  void Insert(const std::string& name, int code);
  // The code of the name, or 0 when the attribute does not declare it.
  int Find(std::string_view name) const {
    if (slots_.empty()) return 0;
    const unsigned hash = Hash(name);
    const size_t mask = slots_.size() - 1;
    for (size_t at = hash & mask; slots_[at]; at = (at + 1) & mask) {
      const Entry& e = entries_[slots_[at] - 1];
      if (e.hash == hash && SameText(e.name, name)) return e.code;
    }
    return 0;
  }

 private:
  struct Entry {
    std::string name;
    int code;
    unsigned hash;
  };
  static unsigned Hash(std::string_view name) {
    unsigned h = 2166136261u;
    for (unsigned char c : name) h = (h ^ c) * 16777619u;
    // The low bits of FNV-1a depend only on the low bits of the characters
    // ('c' and 's' agree in their last four), and the slot is taken from the
    // low bits: mix the high bits down.
    h ^= h >> 15;
    h *= 0x2c1b3c6du;
    h ^= h >> 12;
    return h;
  }
  // Values are mostly a few characters long: compared without a library
  // call.
  static bool SameText(const std::string& stored, std::string_view name) {
    const size_t n = name.size();
    if (stored.size() != n) return false;
    if (n > 16) return std::memcmp(stored.data(), name.data(), n) == 0;
    for (size_t i = 0; i < n; ++i)
      if (stored[i] != name[i]) return false;
    return true;
  }
  void Grow();
  std::vector<unsigned> slots_;  // entry index + 1; 0 marks a free slot
  std::vector<Entry> entries_;
};

// The largest item code the 16-bit data space can hold.
constexpr int MaxCodableItem = 32767;

// Rows are stored in blocks of this many consecutive rows.
constexpr size_t kRowsPerBlock = 4096;

// The memory the rows point into; shared by a data set and the subsets made
// from it, and released with the last of them.
struct RowStore {
  std::vector<std::unique_ptr<float[]>> RawBlocks;
  std::vector<std::unique_ptr<short[]>> DataBlocks;
};

struct DataSet {
  DataSet();
  // A copy shares the rows and copies the tables.
  DataSet(const DataSet& other);
  DataSet(DataSet&&) = default;
  DataSet& operator=(const DataSet&) = delete;
  DataSet& operator=(DataSet&&) = default;

  // The cases at the given positions, in that order, with the same tables.
  DataSet Subset(const std::vector<int>& cases) const;

  std::string FileName;  // stem the names and data files were read from

  // ---- Item coding tables ----
  std::vector<std::string> AttName;                   // declared index
  std::vector<unsigned char> SpecialStatus;           // 0 values, 1 ignore, 2 discrete, 3 continuous
  std::vector<AttCodeEntry*> AttCode;                 // declared index -> chain head
  std::vector<std::unique_ptr<ItemEntry>> ItemRecord;  // item code -> names
  std::vector<int> Attribute;                         // item code -> real attribute index
  std::vector<std::vector<int>> AttValue;             // real index -> item codes of its values
  std::vector<int> MaxAttVal;                         // real index -> number of values
  std::vector<std::string> ClassName;                 // class index -> class name
  int MaxAtt = 0;
  int RealAtt = 0;
  int MaxItem = 0;
  int MaxClass = 0;
  int Item_Id_Ceiling = 50;
  int MaxData = 0;

  // ---- Data space ----
  // Raw rows: RealAtt+2 floats per case, item codes (or numbers read for
  // continuous attributes, -1.0 for unknown) before coding.
  std::vector<float*> RawDataSpace;
  // Coded rows: RealAtt+1 16-bit item codes per case; column RealAtt is 0
  // (the evaluation writes the class index there).
  std::vector<short*> DataSpace;

  // ---- Storage behind the tables and rows ----
  std::deque<AttCodeEntry> AttCodePool;   // the entries AttCode chains through
  std::vector<AttCodeEntry*> AttCodeTail;  // per declared attribute: its last entry
  std::vector<ValueTable> AttLookup;       // per declared attribute: name -> code
  std::shared_ptr<RowStore> Rows;
};

// Builds an item entry holding copies of both names (attribute name first).
std::unique_ptr<ItemEntry> AddItemRecord(const std::string& attName, const std::string& valueName);
// Builds a value entry in the data set's pool with a copy of the name, the
// code and no successor.
AttCodeEntry* AddAttCode(DataSet& data, const std::string& name, int code);
std::string CopyString(const std::string& s);
// Item code of a value of a declared attribute; 0 when not declared.
int GetAttCode(const DataSet& data, const std::string& value, int attIndex);
// Class index of a class name; -1 when unknown.
int GetNameCode(const DataSet& data, const std::string& className);

// Grows ItemRecord and Attribute by 50 entries when the item code just
// handed out leaves no free entry beyond it.
void GrowItemTables(DataSet& data);
// Hands out the next item code to a value of a declared attribute (real
// column `real`), with its chain entry, lookup entry and names.
void AddItem(DataSet& data, int declared, int real, const std::string& value);

// Makes zero-filled raw row `index` (RealAtt+2 floats).
float* NewRawRow(DataSet& data, int index);
void ReleaseRawRows(DataSet& data);
// Builds DataSpace from RawDataSpace and releases the raw rows.
int ConvertDataSpace(DataSet& data);
