// Shared state of the readfile module's source files.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace readfile_detail {

// Rows are stored in blocks of this many consecutive rows.
constexpr size_t kRowsPerBlock = 4096;

// Value name -> item code of one attribute: open addressing over FNV-1a
// hashes; the first declaration of a name wins.
class ValueTable {
 public:
  void Insert(const std::string& name, int code);
  // The code of the name, or 0 when the attribute does not declare it.
  int Find(const std::string& name) const;

 private:
  struct Entry {
    std::string name;
    int code;
    unsigned hash;
  };
  static unsigned Hash(const std::string& name);
  void Grow();
  std::vector<unsigned> slots_;  // entry index + 1; 0 marks a free slot
  std::vector<Entry> entries_;
};

extern std::vector<ValueTable> AttLookup;
extern std::vector<std::unique_ptr<float[]>> RawBlocks;

// Grows ItemRecord and Attribute by 50 entries when the item code just
// handed out leaves no free entry beyond it.
void GrowItemTables();
// Hands out the next item code to a value of a declared attribute (real
// column `real`), with its chain entry, lookup entry and names.
void AddItem(int declared, int real, const std::string& value);
// Makes zero-filled raw row `index` (RealAtt+2 floats).
float* NewRawRow(int index);
void ReleaseRawRows();
void ResetErrorCount();

}  // namespace readfile_detail
