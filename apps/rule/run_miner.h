// The whole run of the miner `rule`, from the command line to the CSV file.
#pragma once

#include <cstdio>

// Runs the miner on the command line; the console output goes to out.
// Returns the exit status.
int RunMiner(int argc, char** argv, std::FILE* out = stdout);
