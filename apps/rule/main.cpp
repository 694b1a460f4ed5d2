// The association-rule miner.
#include "base/console.h"
#include "base/staged_file.h"
#include "rule/run_miner.h"

int main(int argc, char** argv) {
  CheckedStandardOutput out;
  return out.Finish("rule", GuardedRun([&] { return RunMiner(argc, argv); }));
}
