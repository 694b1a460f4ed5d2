#include "base/numbers.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>

int TruncateToInt(double value) {
  // The processor's conversion yields INT_MIN for NaN and out-of-range values.
  if (!(value > -2147483649.0 && value < 2147483648.0)) return INT_MIN;
  return static_cast<int>(value);
}

int ComputeMinSup(int maxData, float fraction) {
  float product = static_cast<float>(maxData) * fraction;
  return TruncateToInt(static_cast<double>(product) + 0.5);
}

float ParseFloat(const char* text) { return static_cast<float>(std::strtod(text, nullptr)); }

int ParseInt(const char* text) { return static_cast<int>(std::strtol(text, nullptr, 10)); }

bool ParseNumber(const std::string& text, double& value) {
  if (text.empty()) return false;
  char* end = nullptr;
  errno = 0;
  value = std::strtod(text.c_str(), &end);
  return *end == '\0' && errno == 0 && std::isfinite(value);
}

bool ParseWhole(const std::string& text, long long low, long long high, long long& value) {
  if (text.empty()) return false;
  char* end = nullptr;
  errno = 0;
  value = std::strtoll(text.c_str(), &end, 10);
  return *end == '\0' && errno == 0 && value >= low && value <= high;
}

bool ParseFraction(const char* text, float* fraction) {
  errno = 0;
  char* end = nullptr;
  const double value = std::strtod(text, &end);
  if (end == text || *end != '\0' || errno == ERANGE || !(value >= 0.0 && value <= 1.0)) return false;
  *fraction = static_cast<float>(value);
  return true;
}

double PessimisticErrors(double cases, double errors) {
  if (cases <= 0) return 0.0;
  const double z = 0.6744897501960817;  // one-sided 25 % confidence
  const double f = errors / cases;
  const double z2 = z * z;
  const double upper =
      (f + z2 / (2 * cases) + z * std::sqrt(std::max(0.0, f / cases - f * f / cases + z2 / (4 * cases * cases)))) /
      (1 + z2 / cases);
  return cases * upper;
}
