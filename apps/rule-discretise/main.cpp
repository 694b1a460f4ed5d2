// Cuts the continuous attributes of a data set into intervals and writes a
// categorical copy that the miner reads.
#include "base/console.h"
#include "base/staged_file.h"
#include "rule-discretise/run_discretise.h"

int main(int argc, char** argv) {
  CheckedStandardOutput out;
  return out.Finish("rule-discretise", GuardedRun([&] { return RunDiscretise(argc, argv); }));
}
