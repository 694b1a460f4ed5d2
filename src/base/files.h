// Opening, writing and closing files, with every failure reported.
#pragma once

#include <cstdio>
#include <string>

#include "base/status.h"

// Closes a file when the reading or writing ends, however it ends; a
// writer that needs the status of closing takes the file back with Release.
struct FileCloser {
  std::FILE* f;
  ~FileCloser() {
    if (f) std::fclose(f);
  }
  std::FILE* Release() {
    std::FILE* file = f;
    f = nullptr;
    return file;
  }
};

// Opens a file as fopen does. An open that fails for want of memory throws
// std::bad_alloc like any failed allocation; a folder is no file to read;
// any other failure gives null with errno set, for the caller to report.
std::FILE* XFopen(const std::string& path, const char* mode);

// Closes a file that was written, after checking that every write reached
// it: the status names the file and the reason when one did not.
Status CloseWritten(std::FILE* f, const std::string& path);

// The failed status of a file that could not be written completely:
// "\nERROR:  cannot write file PATH: REASON\n", exit status 1.
Status WriteFailure(const std::string& path, int error);
