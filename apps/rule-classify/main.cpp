// The classifier companion of the miner: train, test, predict and cross-validate.
#include "base/console.h"
#include "base/staged_file.h"
#include "rule-classify/classify_command.h"

int main(int argc, char** argv) {
  CheckedStandardOutput out;
  return out.Finish("rule-classify", GuardedRun([&] { return RunClassify(argc, argv); }));
}
