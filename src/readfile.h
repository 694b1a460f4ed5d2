// Data input: the item coding tables, the names and data file readers, the
// coded data space and the discretiser of continuous attributes.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <unordered_map>
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

// ---- Item coding tables ----
extern std::vector<std::string> AttName;                  // declared index
extern std::vector<unsigned char> SpecialStatus;          // 0 values, 1 ignore, 2 discrete, 3 continuous
extern std::vector<AttCodeEntry*> AttCode;                // declared index -> chain head
extern std::vector<std::unique_ptr<ItemEntry>> ItemRecord;  // item code -> names
extern std::vector<int> Attribute;                        // item code -> real attribute index
extern std::vector<std::vector<int>> AttValue;            // real index -> item codes of its values
extern std::vector<int> MaxAttVal;                        // real index -> number of values
extern std::vector<std::string> ClassName;                // class index -> class name
extern int MaxAtt;
extern int RealAtt;
extern int MaxItem;
extern int MaxClass;
extern int Item_Id_Ceiling;
extern int MaxData;

// The largest item code the 16-bit data space can hold.
constexpr int MaxCodableItem = 32767;

// ---- Data space ----
// Raw rows: RealAtt+2 floats per case, item codes (or numbers read for
// continuous attributes, -1.0 for unknown) before coding.
extern std::vector<float*> RawDataSpace;
// Coded rows: RealAtt+1 16-bit item codes per case; column RealAtt is 0.
extern std::vector<short*> DataSpace;

// ---- Tokenizer state ----
extern unsigned char Delimiter;  // what ended the last name; 0xFF at end of file

// Builds an item entry holding copies of both names (attribute name first).
std::unique_ptr<ItemEntry> AddItemRecord(const std::string& attName, const std::string& valueName);
// Builds a value entry with a copy of the name, the code and no successor.
AttCodeEntry* AddAttCode(const std::string& name, int code);
std::string CopyString(const std::string& s);
// Item code of a value of a declared attribute; 0 when not declared.
int GetAttCode(const std::string& value, int attIndex);
// Class index of a class name; -1 when unknown.
int GetNameCode(const std::string& className);

// Reads the next name of a names or data file into name. Returns 1 when a
// name was read (possibly empty), 0 at end of file (Delimiter 0xFF).
int ReadName(std::FILE* f, std::string& name);

// Reports an input error; code 0 ends the run with status 1, the others are
// counted and the eleventh ends it.
void Error(int code, const std::string& text1, const std::string& text2);

// Reads FileName + ".names" into the item tables. With acceptContinuous, a
// "continuous" attribute is kept (status 3, a column of its own, no items)
// instead of ending the run.
int GetNames(bool acceptContinuous = false);

// Reads FileName + extension into RawDataSpace without coding it.
int ReadData(const std::string& extension);
// Reads the data file and codes it into DataSpace.
int GetData(const std::string& extension);
// Builds DataSpace from RawDataSpace and releases the raw rows.
int ConvertDataSpace();

// Refuses tables with more items than the data space can code.
void CheckItemLimit(const std::string& source);

// ---- Discretisation of continuous attributes ----
struct ContValue {
  float Low = 0;
  float High = 0;
  float Mean = 0;
  int Count = 0;
  float MergeCost = 0;
  ContValue* Prev = nullptr;
  ContValue* Next = nullptr;
};

int Discretion();
int QuickSort(float* values, int n);
ContValue* AddContValue(ContValue* prev);
ContValue* DeleteContValue(ContValue* interval);

// Releases the tables and rows and sets the globals of this module back to
// their start values.
void ResetReadfile();
