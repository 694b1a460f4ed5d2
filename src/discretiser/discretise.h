// The discretiser: the intervals each continuous attribute of a data set is
// cut into, the interval items that replace its values, and the categorical
// names/data pair written from them.
#pragma once

#include <string>
#include <vector>

#include "base/status.h"
#include "input/dataset.h"

// One interval of a continuous attribute while it is being cut: its bounds,
// the mean and number of the values it holds, and the stored cost of merging
// it with its upper neighbour.
struct ContValue {
  float Low = 0;
  float High = 0;
  float Mean = 0;
  int Count = 0;
  float MergeCost = 0;
  ContValue* Prev = nullptr;
  ContValue* Next = nullptr;
};

// One continuous attribute after discretisation.
struct CutAttribute {
  int Declared = 0;   // declared attribute index
  int Column = 0;     // real attribute index: its column in a coded row
  int FirstCode = 0;  // item code of its lowest interval (0 when it has none)
  std::vector<ContValue> Intervals;  // ascending; Prev and Next are null
};

// Sorts n values ascending.
int QuickSort(float* values, int n);
// A new zero-filled interval after prev (not linked into prev).
ContValue* AddContValue(ContValue* prev);
// Unlinks an interval from its neighbours and frees it; returns the next one.
ContValue* DeleteContValue(ContValue* interval);

// Cuts the known values of one attribute, sorted ascending, into one
// interval per distinct value and merges neighbours while one of them holds
// at most minSup cases. The intervals come back in ascending order with
// their final counts, means and stored merge costs; Prev and Next are null.
std::vector<ContValue> CutIntervals(const std::vector<float>& sorted, int minSup);

// Cuts every continuous attribute of a data set read with its raw rows
// (ReadData) into intervals of more than gMinSup cases where it can, adds
// one item per interval, recodes the columns and codes the rows into
// DataSpace. What each continuous attribute became is handed back, in
// declared order, when cuts is not null. Fails when the interval items pass
// the item limit of the data space.
//
// With CutMethod::kEntropy the intervals come from the class instead: each
// attribute is cut by class entropy with the minimum-description-length
// stopping rule (EntropyCutPoints), and gMinSup plays no part; cases of
// unknown class count only towards the interval counts. With
// CutMethod::kTree the cut points are those of a pruned class-entropy tree
// over all the continuous attributes (TreeCutPoints); an attribute the tree
// does not split stays one interval.
enum class CutMethod { kMerge, kEntropy, kTree };
Status DiscretiseAttributes(DataSet& data, int gMinSup, std::vector<CutAttribute>* cuts,
                            CutMethod method = CutMethod::kMerge);
// DiscretiseAttributes without the cuts.
Status Discretion(DataSet& data, int gMinSup);

// printf-style formatting into a string of whatever length the text needs.
std::string FormatText(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The name of an interval item: "[%.2f, %.2f]" with its bounds.
std::string IntervalItemName(float low, float high);

// How the intervals of one attribute are spelt as values of a categorical
// names file: "LOW..HIGH" with two decimals, more where two intervals would
// otherwise read the same.
std::vector<std::string> IntervalSpellings(const std::vector<ContValue>& intervals);

// Writes the tables and the coded data of a discretised data set as the
// categorical pair outStem.names / outStem.data. A file that cannot be
// opened gives "rule-discretise: cannot write PATH: REASON" (exit status 1);
// one that cannot be written completely names the file and the reason
// (WriteFailure).
Status WriteCategoricalPair(const DataSet& data, const std::string& outStem, const std::vector<CutAttribute>& cuts,
                            const std::string& classAttribute = "");

// ---- Coding cases with cuts learnt from some of them ----
// The class-entropy cuts (EntropyCutPoints, IntervalsFromCuts) of every
// continuous attribute of a data set read with its raw rows (ReadData, not
// coded), learnt from the cases at the given positions only: the values and
// classes of the other cases play no part. In declared order; FirstCode is
// 0 (the codes are handed out when the cases are coded).
//
// kPerAttribute cuts every attribute by its own values (EntropyCutPoints);
// kInTree takes the cut points of a pruned tree over all the continuous
// attributes (TreeCutPoints), each cut placed within the region the cuts
// above it mark out.
enum class CutPlacement { kPerAttribute, kInTree };
std::vector<CutAttribute> LearnEntropyCuts(const DataSet& raw, const std::vector<int>& cases,
                                           CutPlacement placement = CutPlacement::kPerAttribute);

// The categorical data set that the raw data set becomes with the given
// cuts, with the tables that reading the pair written by WriteCategoricalPair
// would give: each continuous attribute declares its intervals (spelt
// LOW..HIGH) as values, one without any interval is ignored, the class items
// are the last codes. Every case is coded into rows of its own: a value
// takes the interval LOW <= x < HIGH holding it, a value below the first
// interval the first one and a value at or beyond the last one the last one
// (the nearest interval), an unknown value the unknown item 0. The raw data
// set is only read, so several threads may code it at once. Fails when the
// items pass the limit of the data space.
Status CodeWithCuts(const DataSet& raw, const std::vector<CutAttribute>& cuts, DataSet& coded);

// True when the data set declares a continuous attribute.
bool HasContinuousAttribute(const DataSet& data);
