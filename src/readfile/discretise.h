// The discretiser as the companion program and the tests see it: the
// intervals each continuous attribute was cut into, and the categorical
// names/data pair written from them.
#pragma once

#include <string>
#include <vector>

#include "readfile.h"

// One continuous attribute after discretisation.
struct CutAttribute {
  int Declared = 0;   // declared attribute index
  int Column = 0;     // real attribute index: its column in a coded row
  int FirstCode = 0;  // item code of its lowest interval (0 when it has none)
  std::vector<ContValue> Intervals;  // ascending; Prev and Next are null
};

// Cuts the known values of one attribute, sorted ascending, into one
// interval per distinct value and merges neighbours while one of them holds
// at most minSup cases. The intervals come back in ascending order with
// their final counts, means and stored merge costs; Prev and Next are null.
std::vector<ContValue> CutIntervals(const std::vector<float>& sorted, int minSup);

// Discretion, also handing back what each continuous attribute became (in
// declared order) when cuts is not null.
int DiscretiseAttributes(std::vector<CutAttribute>* cuts);

// printf-style formatting into a string of whatever length the text needs.
std::string FormatText(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The name of an interval item: "[%.2f, %.2f]" with its bounds.
std::string IntervalItemName(float low, float high);

// How the intervals of one attribute are spelt as values of a categorical
// names file: "LOW..HIGH" with two decimals, more where two intervals would
// otherwise read the same.
std::vector<std::string> IntervalSpellings(const std::vector<ContValue>& intervals);

// Writes the tables and the coded data as the categorical pair
// outStem.names / outStem.data. Returns false with a message in *error when
// a file cannot be written.
bool WriteCategoricalPair(const std::string& outStem, const std::vector<CutAttribute>& cuts,
                          std::string* error);

// The program rule-discretise, from the command line to the written pair.
// Returns the exit status.
int RunDiscretise(int argc, char** argv);
