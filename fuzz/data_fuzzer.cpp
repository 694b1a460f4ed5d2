// Fuzzes the data file reader behind a fixed names file: the input is a
// data file. Every complete case becomes a coded row whose codes belong to
// its columns; nothing else may happen.
#include <cstddef>
#include <cstdint>

#include "fuzz_support.h"
#include "readfile.h"
#include "rule.h"

namespace {

// Declared values with periods, a backslash, a declared "?", an empty value,
// an ignored attribute between two others, and three classes.
const char kNames[] =
    "| The names every data input is read with.\n"
    "yes, no, maybe.\n"
    "outlook: sunny, overcast, rain.\n"
    "size: 1.5, 2.5, ?, .5x.\n"
    "id: ignore.\n"
    "windy: true, false, a\\,b, , x y.\n";

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz_support::QuietOutput();
  fuzz_support::Put("set.names", kNames);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz_support::Put("set.data", data, size);
  const int status = fuzz_support::OneRun([] {
    FileName = fuzz_support::PathOf("set");
    GetNames();
    GetData(".data");
    FUZZ_CHECK(MaxAtt == 5 && RealAtt == 4);
    FUZZ_CHECK(static_cast<int>(DataSpace.size()) == MaxData);
    FUZZ_CHECK(RawDataSpace.empty());
    for (int i = 0; i < MaxData; ++i) {
      const short* row = DataSpace[i];
      for (int c = 0; c < RealAtt; ++c) {
        FUZZ_CHECK(row[c] >= 0 && row[c] <= MaxItem);
        FUZZ_CHECK(row[c] == 0 || Attribute[row[c]] == c);
      }
      FUZZ_CHECK(row[RealAtt] == 0);
    }
  });
  // The data file never ends the run: unknown values are not errors.
  FUZZ_CHECK(status == -1);
  return 0;
}
