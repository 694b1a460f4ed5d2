// Coverage counting of the perfect-rule nodes over a set of cases.
#include "rulegen.h"

int LooseCov = 0;
int ToughCov = 0;
