// The classifier companion of the miner: train, test and cross-validate.
#include "rule.h"
#include "ruletest.h"

int main(int argc, char** argv) {
  return GuardedRun([&] { return RunClassify(argc, argv); });
}
