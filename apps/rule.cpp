// The association-rule miner.
#include "rule.h"

int main(int argc, char** argv) {
  return GuardedRun([&] { return RunMiner(argc, argv); });
}
