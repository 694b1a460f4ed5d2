// The options of a mining run: every option of the miner's command line,
// with its default.
#pragma once

#include <string>

#include "base/parallel.h"

struct MiningOptions {
  std::string FileName;      // -f: stem of the names and data files
  float Support = 0.1f;      // -s: minimum support as a fraction of the cases
  float MinConf = 0.999999f;  // -c: minimum confidence
  int MaxLayer = 4;          // -l: largest itemset mined; layer 3 is always built
  float MinImp = 0.0f;       // -i: improvement threshold, echoed and stored in rule files
  int Ass = 0;               // -a: complete rule set, no pruning, no CSV file
  int Opt = 0;               // -o: echoed only
  int Complete = 1;          // -r sets 2: two-complete rule selection
  int NonRedundant = 0;      // -n: echoed only
  int CostSensitive = 0;     // -e: echoed only
  int Default = 1;           // -u sets 0: echoed only
  int Debug = 0;             // -x: debug dumps
  int Discard = 0;           // -d: trim rules left over by the ordering
  int Time = 0;              // -t: echoed only
  float IMP = 0.0f;          // improvement margin of rule selection (no option)
  // Only the class values are targets (no option; the classifier sets it):
  // only class rules are written, and the tree keeps only the itemsets that
  // can still lead to a class rule. The class items are the last MaxClass
  // item codes.
  int ClassTargetsOnly = 0;
  // Threads that count the pairs and the candidates (no option; the miner
  // takes the hardware's). The results do not depend on it.
  int Threads = 1;
  // Work (in basic steps) below which one thread does it all (no option;
  // checks of the sharing set 0).
  double ThreadWork = kThreadWork;
  // > 0: the candidates of layer 3 on are always made first and counted in
  // blocks of this many rows (no option; for checking the block counting).
  int CountBlockRows = 0;
  // Keep the pair table after the second layer is built (no option; an
  // analysis that reads pair counts after mining sets it).
  bool KeepPairCounts = false;
};
