// Fuzzes the names file reader: the input is a names file. Whatever it
// holds, the reader either fills consistent item tables or ends the reading
// with its own message and status.
#include <cstddef>
#include <cstdint>

#include "fuzz_support.h"
#include "input/readers.h"

namespace {

// The item tables a successful read leaves.
void CheckTables(const DataSet& data) {
  FUZZ_CHECK(data.MaxClass >= 1 && static_cast<int>(data.ClassName.size()) == data.MaxClass);
  FUZZ_CHECK(data.RealAtt >= 1 && data.RealAtt <= data.MaxAtt);
  FUZZ_CHECK(static_cast<int>(data.AttName.size()) == data.MaxAtt &&
             static_cast<int>(data.SpecialStatus.size()) == data.MaxAtt);
  FUZZ_CHECK(data.AttName[data.MaxAtt - 1] == "Class");
  FUZZ_CHECK(data.MaxItem >= data.MaxClass && data.MaxItem <= MaxCodableItem);
  FUZZ_CHECK(data.Item_Id_Ceiling - 1 > data.MaxItem);
  FUZZ_CHECK(static_cast<int>(data.ItemRecord.size()) >= data.MaxItem + 1);
  FUZZ_CHECK(data.ItemRecord[0] && data.ItemRecord[0]->AttributeName == "?");

  // Codes 1..MaxItem are handed out column by column, each value once.
  int values = 0;
  int code = 0;
  for (int r = 0; r < data.RealAtt; ++r) {
    FUZZ_CHECK(static_cast<int>(data.AttValue[r].size()) == data.MaxAttVal[r]);
    for (int k = 0; k < data.MaxAttVal[r]; ++k) {
      FUZZ_CHECK(data.AttValue[r][k] == ++code);
      FUZZ_CHECK(data.Attribute[code] == r);
      FUZZ_CHECK(data.ItemRecord[code] != nullptr);
    }
    values += data.MaxAttVal[r];
  }
  FUZZ_CHECK(values == data.MaxItem);
  // The class values come last, in class list order.
  for (int k = 0; k < data.MaxClass; ++k) {
    const int c = data.MaxItem - data.MaxClass + 1 + k;
    FUZZ_CHECK(data.ItemRecord[c]->AttributeName == "Class" && data.ItemRecord[c]->ValueName == data.ClassName[k]);
    FUZZ_CHECK(data.Attribute[c] == data.RealAtt - 1);
  }
  // Every declared value is found again by name (the first declaration of a
  // repeated name wins), and ignored attributes have none.
  int real = 0;
  for (int a = 0; a < data.MaxAtt; ++a) {
    FUZZ_CHECK(data.SpecialStatus[a] == 0 || data.SpecialStatus[a] == 1);
    if (data.SpecialStatus[a] == 1) {
      FUZZ_CHECK(data.AttCode[a] == nullptr);
      continue;
    }
    for (const AttCodeEntry* e = data.AttCode[a]; e; e = e->Next) {
      const int found = GetAttCode(data, e->Name, a);
      FUZZ_CHECK(found >= 1 && found <= e->Code && data.Attribute[found] == real);
      FUZZ_CHECK(data.ItemRecord[found]->ValueName == e->Name);
    }
    ++real;
  }
  FUZZ_CHECK(real == data.RealAtt);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz_support::QuietOutput();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz_support::Put("set.names", data, size);
  fuzz_support::OneRun([] {
    DataSet read;
    InputErrors errors;
    RETURN_IF_FAILED(GetNames(read, fuzz_support::PathOf("set"), errors));
    CheckTables(read);
    return Status();
  });
  return 0;
}
