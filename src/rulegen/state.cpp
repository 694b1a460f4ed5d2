// Release of everything the mining built, for a miner that runs again.
#include <cstdlib>

#include "rulegen.h"

void ResetRulegen() {
  AllSet = FreeTree(AllSet);
  TreeSize = 0;
  FreeCount();
  std::free(Counter1);
  Counter1 = nullptr;
  FreeRuleSet();
  LooseCov = 0;
  ToughCov = 0;
}
