// Fuzzes the reader of continuous attributes and the discretiser. The input
// is a line holding the support fraction, then the names file (continuous
// attributes accepted), a line "%%", and the data file. After cutting, every
// case must be coded with items of its own columns, and the categorical copy
// written from the cuts must read back as the same cases.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/numbers.h"
#include "discretiser/discretise.h"
#include "fuzz_support.h"
#include "input/readers.h"

namespace {

// The cases as item names, column by column ("" for the unknown item).
std::vector<std::vector<std::string>> CasesByName(const DataSet& data) {
  std::vector<std::vector<std::string>> cases(static_cast<size_t>(data.MaxData));
  for (int i = 0; i < data.MaxData; ++i) {
    for (int c = 0; c < data.RealAtt; ++c) {
      const int code = data.DataSpace[i][c];
      cases[i].push_back(code == 0 ? std::string() : data.ItemRecord[code]->ValueName);
    }
  }
  return cases;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz_support::QuietOutput();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  const size_t lineEnd = input.find('\n');
  const std::string fraction = input.substr(0, lineEnd);
  std::string names, cases;
  if (lineEnd != std::string::npos) fuzz_support::SplitAt(input.substr(lineEnd + 1), "\n%%\n", names, cases);
  fuzz_support::Put("set.names", names);
  fuzz_support::Put("set.data", cases);

  std::vector<std::vector<std::string>> written;  // the cases as cut, by interval spelling
  bool exported = false;
  fuzz_support::OneRun([&] {
    DataSet cut;
    InputErrors errors;
    RETURN_IF_FAILED(GetNames(cut, fuzz_support::PathOf("set"), errors, true));
    RETURN_IF_FAILED(ReadData(cut, ".data", errors));
    const int minSup = ComputeMinSup(cut.MaxData, static_cast<float>(std::strtod(fraction.c_str(), nullptr)));
    std::vector<CutAttribute> cuts;
    RETURN_IF_FAILED(DiscretiseAttributes(cut, minSup, &cuts));

    FUZZ_CHECK(static_cast<int>(cut.DataSpace.size()) == cut.MaxData && cut.RawDataSpace.empty());
    std::vector<const CutAttribute*> cutOfColumn(static_cast<size_t>(cut.RealAtt), nullptr);
    for (const CutAttribute& attribute : cuts) {
      FUZZ_CHECK(attribute.Column >= 0 && attribute.Column < cut.RealAtt);
      cutOfColumn[attribute.Column] = &attribute;
      // Ascending intervals that join without gaps.
      for (size_t j = 1; j < attribute.Intervals.size(); ++j) {
        FUZZ_CHECK(attribute.Intervals[j].Low == attribute.Intervals[j - 1].High);
        FUZZ_CHECK(attribute.Intervals[j - 1].Mean <= attribute.Intervals[j].Mean);
      }
    }
    for (int i = 0; i < cut.MaxData; ++i) {
      for (int c = 0; c < cut.RealAtt; ++c) {
        const int code = cut.DataSpace[i][c];
        FUZZ_CHECK(code >= 0 && code <= cut.MaxItem);
        FUZZ_CHECK(code == 0 || cut.Attribute[code] == c);
      }
      FUZZ_CHECK(cut.DataSpace[i][cut.RealAtt] == 0);
    }

    // What the categorical copy must read back as: the cut columns spelt as
    // their intervals, the others by value name; a cut attribute without any
    // interval is written as ignored and has no column.
    written.assign(static_cast<size_t>(cut.MaxData), {});
    for (int c = 0; c < cut.RealAtt; ++c) {
      const CutAttribute* attribute = cutOfColumn[c];
      if (attribute && attribute->Intervals.empty()) continue;
      const std::vector<std::string> spellings =
          attribute ? IntervalSpellings(attribute->Intervals) : std::vector<std::string>();
      for (int i = 0; i < cut.MaxData; ++i) {
        const int code = cut.DataSpace[i][c];
        if (code == 0) written[i].push_back("");
        else if (attribute) written[i].push_back(spellings.at(static_cast<size_t>(code - attribute->FirstCode)));
        else written[i].push_back(cut.ItemRecord[code]->ValueName);
      }
    }
    const Status status = WriteCategoricalPair(cut, fuzz_support::PathOf("cut"), cuts);
    exported = status.ok();
    FUZZ_CHECK(exported);
    return status;
  });
  if (!exported) return 0;

  const int reread = fuzz_support::OneRun([&] {
    DataSet copy;
    InputErrors errors;
    RETURN_IF_FAILED(GetNames(copy, fuzz_support::PathOf("cut"), errors));
    RETURN_IF_FAILED(GetData(copy, ".data", errors));
    FUZZ_CHECK(CasesByName(copy) == written);
    return Status();
  });
  FUZZ_CHECK(reread == -1);
  return 0;
}
