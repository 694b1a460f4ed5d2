// Cuts the continuous attributes of a data set into intervals and writes a
// categorical copy that the miner reads.
#include "base/console.h"
#include "rule-discretise/run_discretise.h"

int main(int argc, char** argv) {
  return GuardedRun([&] { return RunDiscretise(argc, argv); });
}
