// Fuzzes the data file reader behind a fixed names file: the input is a
// data file. Every complete case becomes a coded row whose codes belong to
// its columns; nothing else may happen.
#include <cstddef>
#include <cstdint>

#include "fuzz_support.h"
#include "input/readers.h"

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
    DataSet read;
    InputErrors errors;
    RETURN_IF_FAILED(GetNames(read, fuzz_support::PathOf("set"), errors));
    RETURN_IF_FAILED(GetData(read, ".data", errors));
    FUZZ_CHECK(read.MaxAtt == 5 && read.RealAtt == 4);
    FUZZ_CHECK(static_cast<int>(read.DataSpace.size()) == read.MaxData);
    FUZZ_CHECK(read.RawDataSpace.empty());
    for (int i = 0; i < read.MaxData; ++i) {
      const short* row = read.DataSpace[i];
      for (int c = 0; c < read.RealAtt; ++c) {
        FUZZ_CHECK(row[c] >= 0 && row[c] <= read.MaxItem);
        FUZZ_CHECK(row[c] == 0 || read.Attribute[row[c]] == c);
      }
      FUZZ_CHECK(row[read.RealAtt] == 0);
    }
    return Status();
  });
  // The data file never ends the reading: unknown values are not errors.
  FUZZ_CHECK(status == -1);
  return 0;
}
