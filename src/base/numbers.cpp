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

size_t DecimalLength(const char* text) {
  auto digits = [&](size_t at) {
    while (text[at] >= '0' && text[at] <= '9') ++at;
    return at;
  };
  size_t at = text[0] == '+' || text[0] == '-' ? 1 : 0;
  const size_t whole = digits(at);
  size_t end = whole;
  if (text[end] == '.') end = digits(end + 1);
  if (end - at <= (text[whole] == '.' ? 1u : 0u)) return 0;  // no digit at all
  if (text[end] == 'e' || text[end] == 'E') {
    const size_t sign = text[end + 1] == '+' || text[end + 1] == '-' ? end + 2 : end + 1;
    if (digits(sign) > sign) end = digits(sign);
  }
  return end;
}

bool ParseNumber(const std::string& text, double& value) {
  if (text.empty() || DecimalLength(text.c_str()) != text.size()) return false;
  errno = 0;
  value = std::strtod(text.c_str(), nullptr);
  return errno == 0 && std::isfinite(value);
}

bool ParseWhole(const std::string& text, long long low, long long high, long long& value) {
  if (text.empty()) return false;
  char* end = nullptr;
  errno = 0;
  value = std::strtoll(text.c_str(), &end, 10);
  return *end == '\0' && errno == 0 && value >= low && value <= high;
}

bool ParseFraction(const char* text, float* fraction) {
  double value = 0;
  if (!ParseNumber(text, value) || !(value >= 0.0 && value <= 1.0)) return false;
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
