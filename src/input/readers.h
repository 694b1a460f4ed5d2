// The names and data file readers and the tokenizer they share.
#pragma once

#include <cstdio>
#include <string>

#include "base/status.h"
#include "input/dataset.h"

// A file being read name by name, and what ended the last name: a comma,
// colon, line end, blank or tab; 0xFF at the end of the file.
struct NameReader {
  std::FILE* File = nullptr;
  unsigned char Delimiter = 0;
};

// Reads the next name into name. Returns 1 when a name was read (possibly
// empty), 0 at end of file (Delimiter 0xFF).
int ReadName(NameReader& in, std::string& name);

// The input errors of one reading: where their reports go and how many were
// reported; the eleventh ends the reading.
struct InputErrors {
  std::FILE* Out = stdout;
  int Messages = 0;
};

// Reports an input error ("\nERROR:  " and a message). Code 0 (a file that
// cannot be opened) gives a failed status with exit status 1; the other
// codes are printed at once and counted, and the eleventh gives a failed
// status "Error limit exceeded". caseNumber is the case codes 4 and 5 name.
Status Error(InputErrors& errors, int code, const std::string& text1, const std::string& text2,
             int caseNumber = 0);

// Reads stem + ".names" into the item tables of data. With acceptContinuous,
// a "continuous" attribute is kept (status 3, a column of its own, no items)
// instead of ending the reading.
Status GetNames(DataSet& data, const std::string& stem, InputErrors& errors, bool acceptContinuous = false);

// Reads data.FileName + extension into RawDataSpace without coding it.
Status ReadData(DataSet& data, const std::string& extension, InputErrors& errors);
// Reads the data file and codes it into DataSpace.
Status GetData(DataSet& data, const std::string& extension, InputErrors& errors);

// Refuses tables with more items than the data space can code.
Status CheckItemLimit(const DataSet& data, const std::string& source);
