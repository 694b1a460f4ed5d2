// Shared state of the readfile module's source files.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace readfile_detail {

// Rows are stored in blocks of this many consecutive rows.
constexpr size_t kRowsPerBlock = 4096;

extern std::vector<std::unordered_map<std::string, int>> AttLookup;
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
