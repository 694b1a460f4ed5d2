// The fixed error lines, and the guard every program's main runs in.
#pragma once

#include <cstdio>
#include <new>

#include "base/status.h"

// Prints the message of an error code as a line to out and returns:
// 0 "Can not Open File", 1 "Not enough memory", 11 and 12 the buffer messages.
void ErrorOut(int code, std::FILE* out = stdout);

// Prints a failed status's final text to standard output and gives its exit
// status; an ok status gives 0.
int Finish(const Status& status);

// Runs body() (which returns an exit status) and turns a failed allocation
// anywhere inside it into "Not enough memory" and exit status 0.
template <class F>
int GuardedRun(F body) {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    ErrorOut(1);
    std::fflush(stdout);
    return 0;
  }
}
