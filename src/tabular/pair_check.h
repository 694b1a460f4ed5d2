// A check of a names/data pair written by hand: the mistakes that the miner
// reads past without a word (a header row left in the data, fields that are
// separated by another character than the comma, values the names file does
// not declare, cases cut short) reported with their counts.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace tabular {

// What the check found; every finding is one line of text.
struct PairFindings {
  int Cases = 0;        // complete cases, as the miner reads them
  int Attributes = 0;   // declared attributes, the class included
  std::vector<std::string> Problems;
};

// Reads stem.names and stem.data as the miner does and reports what the
// miner would silently take for unknown values or shifted cases. Returns
// false with *error set when the names or data file cannot be read at all.
bool CheckNamesAndData(const std::string& stem, PairFindings* findings, std::string* error);

}  // namespace tabular
