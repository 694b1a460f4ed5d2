// The program rule-discretise, from the command line to the written pair.
#pragma once

// Reads the command line, discretises the input pair and writes the
// categorical copy; the report goes to standard output. Returns the exit
// status.
int RunDiscretise(int argc, char** argv);
