// Start values of the evaluation module's globals.
#include "ruletest.h"

std::vector<float> Dist;

void ResetRuletest() { Dist.clear(); }
