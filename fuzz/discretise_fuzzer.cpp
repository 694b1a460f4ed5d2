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

#include "fuzz_support.h"
#include "readfile.h"
#include "readfile/discretise.h"
#include "rule.h"

namespace {

// The cases as item names, column by column ("" for the unknown item).
std::vector<std::vector<std::string>> CasesByName() {
  std::vector<std::vector<std::string>> cases(static_cast<size_t>(MaxData));
  for (int i = 0; i < MaxData; ++i) {
    for (int c = 0; c < RealAtt; ++c) {
      const int code = DataSpace[i][c];
      cases[i].push_back(code == 0 ? std::string() : ItemRecord[code]->ValueName);
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
    FileName = fuzz_support::PathOf("set");
    GetNames(true);
    ReadData(".data");
    GMinSup = ComputeMinSup(MaxData, static_cast<float>(std::strtod(fraction.c_str(), nullptr)));
    std::vector<CutAttribute> cuts;
    DiscretiseAttributes(&cuts);

    FUZZ_CHECK(static_cast<int>(DataSpace.size()) == MaxData && RawDataSpace.empty());
    std::vector<const CutAttribute*> cutOfColumn(static_cast<size_t>(RealAtt), nullptr);
    for (const CutAttribute& cut : cuts) {
      FUZZ_CHECK(cut.Column >= 0 && cut.Column < RealAtt);
      cutOfColumn[cut.Column] = &cut;
      // Ascending intervals that join without gaps.
      for (size_t j = 1; j < cut.Intervals.size(); ++j) {
        FUZZ_CHECK(cut.Intervals[j].Low == cut.Intervals[j - 1].High);
        FUZZ_CHECK(cut.Intervals[j - 1].Mean <= cut.Intervals[j].Mean);
      }
    }
    for (int i = 0; i < MaxData; ++i) {
      for (int c = 0; c < RealAtt; ++c) {
        const int code = DataSpace[i][c];
        FUZZ_CHECK(code >= 0 && code <= MaxItem);
        FUZZ_CHECK(code == 0 || Attribute[code] == c);
      }
      FUZZ_CHECK(DataSpace[i][RealAtt] == 0);
    }

    // What the categorical copy must read back as: the cut columns spelt as
    // their intervals, the others by value name; a cut attribute without any
    // interval is written as ignored and has no column.
    written.assign(static_cast<size_t>(MaxData), {});
    for (int c = 0; c < RealAtt; ++c) {
      const CutAttribute* cut = cutOfColumn[c];
      if (cut && cut->Intervals.empty()) continue;
      const std::vector<std::string> spellings = cut ? IntervalSpellings(cut->Intervals) : std::vector<std::string>();
      for (int i = 0; i < MaxData; ++i) {
        const int code = DataSpace[i][c];
        if (code == 0) written[i].push_back("");
        else if (cut) written[i].push_back(spellings.at(static_cast<size_t>(code - cut->FirstCode)));
        else written[i].push_back(ItemRecord[code]->ValueName);
      }
    }
    std::string error;
    exported = WriteCategoricalPair(fuzz_support::PathOf("cut"), cuts, &error);
    FUZZ_CHECK(exported);
  });
  if (!exported) return 0;

  const int reread = fuzz_support::OneRun([&] {
    FileName = fuzz_support::PathOf("cut");
    GetNames();
    GetData(".data");
    FUZZ_CHECK(CasesByName() == written);
  });
  FUZZ_CHECK(reread == -1);
  return 0;
}
