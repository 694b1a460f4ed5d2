// Number conversions shared by the programs and the library.
#pragma once

#include <cstddef>
#include <string>

// Converts a floating value to int as the processor's truncating conversion
// does, out-of-range and NaN values giving INT_MIN.
int TruncateToInt(double value);

// The minimum support count: the integer part of cases x fraction + 0.5,
// the product taken in single precision.
int ComputeMinSup(int maxData, float fraction);

// The longest decimal prefix of text as a float (0 without one), as the
// miner reads -s, -c and -i.
float ParseFloat(const char* text);
// The longest decimal integer prefix of text (0 without one), as -l is read.
int ParseInt(const char* text);

// The length of the decimal number text starts with (an optional sign,
// digits with an optional point, an optional exponent), 0 when it starts
// with none: hexadecimal numbers, "inf" and "nan" are no decimal numbers.
size_t DecimalLength(const char* text);

// The whole text as a finite decimal number; false for anything else.
bool ParseNumber(const std::string& text, double& value);
// The whole text as an integer from low to high; false for anything else.
bool ParseWhole(const std::string& text, long long low, long long high, long long& value);

// The whole text as a fraction from 0 to 1 (a support), in single precision;
// false for anything else.
bool ParseFraction(const char* text, float* fraction);

// The upper 25 % confidence bound of the errors among `cases` cases of which
// `errors` are wrong (binomial, normal approximation with continuity in the
// form pruned decision trees use), as a number of cases.
double PessimisticErrors(double cases, double errors);
