// The association-rule miner.
#include "base/console.h"
#include "rule/run_miner.h"

int main(int argc, char** argv) {
  return GuardedRun([&] { return RunMiner(argc, argv); });
}
