// Fuzzes rule-import's reading of a table: the input is the CSV text. A
// table that imports must give a names/data pair that the miner's readers
// take without an input error, holding every row, each field coded as the
// value the import gave it.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz_support.h"
#include "input/readers.h"
#include "tabular/csv_import.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz_support::QuietOutput();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::string stem = fuzz_support::PathOf("table");
  const int status = fuzz_support::OneRun([&] {
    tabular::ImportOptions options;
    tabular::ImportResult result;
    std::string error;
    if (!tabular::ImportTable(text, options, &result, &error)) {
      FUZZ_CHECK(!error.empty());
      return Status();
    }
    fuzz_support::Put("table.names", tabular::NamesFileText(result));
    fuzz_support::Put("table.data", tabular::DataFileText(result));
    DataSet cases;
    InputErrors errors;
    RETURN_IF_FAILED(GetNames(cases, stem, errors));
    RETURN_IF_FAILED(GetData(cases, ".data", errors));
    FUZZ_CHECK(errors.Messages == 0);
    FUZZ_CHECK(cases.MaxData == result.Rows);
    // The columns in the names file's order: the attributes, then the class.
    std::vector<const tabular::ImportedColumn*> order;
    for (size_t c = 0; c < result.Columns.size(); ++c)
      if (static_cast<int>(c) != result.ClassColumn) order.push_back(&result.Columns[c]);
    order.push_back(&result.Columns[static_cast<size_t>(result.ClassColumn)]);
    for (long r = 0; r < result.Rows; ++r) {
      int column = 0;
      for (const tabular::ImportedColumn* c : order) {
        if (c->Kind == tabular::ColumnKind::kIgnored || c->Kind == tabular::ColumnKind::kNoKnownValue) continue;
        const int code = cases.DataSpace[static_cast<size_t>(r)][column++];
        const int value = c->Codes[static_cast<size_t>(r)];
        if (value < 0) {
          FUZZ_CHECK(code == 0);
        } else {
          FUZZ_CHECK(code > 0 && cases.ItemRecord[static_cast<size_t>(code)]->ValueName ==
                                     c->Values[static_cast<size_t>(value)]);
        }
      }
      FUZZ_CHECK(column == cases.RealAtt);
    }
    return Status();
  });
  FUZZ_CHECK(status == -1);
  return 0;
}
