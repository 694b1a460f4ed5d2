// The classifier companion of the miner: train, test, predict and cross-validate.
#include "base/console.h"
#include "rule-classify/classify_command.h"

int main(int argc, char** argv) {
  return GuardedRun([&] { return RunClassify(argc, argv); });
}
