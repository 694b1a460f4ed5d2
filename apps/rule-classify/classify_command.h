// The companion program rule-classify: train, test, predict and cv.
#pragma once

#include <cstdio>

// Runs the command line; the console output goes to out. Returns the exit
// status.
int RunClassify(int argc, char** argv, std::FILE* out = stdout);
