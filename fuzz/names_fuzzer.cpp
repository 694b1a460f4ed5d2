// Fuzzes the names file reader: the input is a names file. Whatever it
// holds, the reader either fills consistent item tables or ends the run
// with its own message and status.
#include <cstddef>
#include <cstdint>

#include "fuzz_support.h"
#include "readfile.h"
#include "rule.h"


namespace {

// The item tables a successful read leaves.
void CheckTables() {
  FUZZ_CHECK(MaxClass >= 1 && static_cast<int>(ClassName.size()) == MaxClass);
  FUZZ_CHECK(RealAtt >= 1 && RealAtt <= MaxAtt);
  FUZZ_CHECK(static_cast<int>(AttName.size()) == MaxAtt && static_cast<int>(SpecialStatus.size()) == MaxAtt);
  FUZZ_CHECK(AttName[MaxAtt - 1] == "Class");
  FUZZ_CHECK(MaxItem >= MaxClass && MaxItem <= MaxCodableItem);
  FUZZ_CHECK(Item_Id_Ceiling - 1 > MaxItem);
  FUZZ_CHECK(static_cast<int>(ItemRecord.size()) >= MaxItem + 1);
  FUZZ_CHECK(ItemRecord[0] && ItemRecord[0]->AttributeName == "?");

  // Codes 1..MaxItem are handed out column by column, each value once.
  int values = 0;
  int code = 0;
  for (int r = 0; r < RealAtt; ++r) {
    FUZZ_CHECK(static_cast<int>(AttValue[r].size()) == MaxAttVal[r]);
    for (int k = 0; k < MaxAttVal[r]; ++k) {
      FUZZ_CHECK(AttValue[r][k] == ++code);
      FUZZ_CHECK(Attribute[code] == r);
      FUZZ_CHECK(ItemRecord[code] != nullptr);
    }
    values += MaxAttVal[r];
  }
  FUZZ_CHECK(values == MaxItem);
  // The class values come last, in class list order.
  for (int k = 0; k < MaxClass; ++k) {
    const int c = MaxItem - MaxClass + 1 + k;
    FUZZ_CHECK(ItemRecord[c]->AttributeName == "Class" && ItemRecord[c]->ValueName == ClassName[k]);
    FUZZ_CHECK(Attribute[c] == RealAtt - 1);
  }
  // Every declared value is found again by name (the first declaration of a
  // repeated name wins), and ignored attributes have none.
  int real = 0;
  for (int a = 0; a < MaxAtt; ++a) {
    FUZZ_CHECK(SpecialStatus[a] == 0 || SpecialStatus[a] == 1);
    if (SpecialStatus[a] == 1) {
      FUZZ_CHECK(AttCode[a] == nullptr);
      continue;
    }
    for (const AttCodeEntry* e = AttCode[a]; e; e = e->Next) {
      const int found = GetAttCode(e->Name, a);
      FUZZ_CHECK(found >= 1 && found <= e->Code && Attribute[found] == real);
      FUZZ_CHECK(ItemRecord[found]->ValueName == e->Name);
    }
    ++real;
  }
  FUZZ_CHECK(real == RealAtt);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz_support::QuietOutput();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz_support::Put("set.names", data, size);
  fuzz_support::OneRun([] {
    FileName = fuzz_support::PathOf("set");
    GetNames();
    CheckTables();
  });
  return 0;
}
