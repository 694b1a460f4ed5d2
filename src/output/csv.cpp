// The CSV rule file: one line per rule with its 2x2 contingency table,
// confidence, chi-square, lift, leverage and the items by name.
#include "output/csv.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

#include "base/console.h"
#include "base/files.h"
#include "base/staged_file.h"

namespace {

const char kHeader[] =
    "index, sup(Pc), sup(P[nC]), sup([nP]C), sup([nP][nC]), sup(P), sup[C], confdice, chi, lift, "
    "leverage, target, value, att1, value1, att2, value2, att3, value3, att4, value4, att5, value5, "
    "att6, value 6\n";


// The rule lines are assembled in a block and handed to the file a block at
// a time: the numbers are formatted as printf's %d and %f format them
// (to_chars is exact and rounds as they do), without parsing a format per
// field.
class LineBuffer {
 public:
  explicit LineBuffer(std::FILE* f) : f_(f) {}

  void Int(int value) {
    Room(16);
    used_ = static_cast<size_t>(std::to_chars(block_ + used_, block_ + kSize, value).ptr - block_);
    Separator();
  }
  // A single-precision value as %f shows it.
  void Fixed(float value) {
    const double wide = value;
    if (std::isfinite(wide) && std::fabs(wide) < 1e30) {
      Room(48);
      used_ = static_cast<size_t>(FormatFixed(block_ + used_, value) - block_);
    } else {
      // Infinities, NaN and huge values: printf itself, into the file.
      Flush();
      std::fprintf(f_, "%f", wide);
    }
    Separator();
  }
  // A name as %s shows it: up to its first NUL.
  void Name(const std::string& name) {
    Text(name.c_str(), std::strlen(name.c_str()));
    Separator();
  }
  void Item(const DataSet& data, int code) {
    const ItemEntry& item = *data.ItemRecord[code];
    Name(item.AttributeName);
    Name(item.ValueName);
  }
  void EndLine() {
    Room(1);
    block_[used_++] = '\n';
  }
  void Flush() {
    if (used_) std::fwrite(block_, 1, used_, f_);
    used_ = 0;
  }

 private:
  static constexpr size_t kSize = 64 * 1024;
  void Room(size_t n) {
    if (kSize - used_ < n) Flush();
  }
  void Separator() {
    Room(2);
    block_[used_++] = ',';
    block_[used_++] = ' ';
  }
  void Text(const char* text, size_t n) {
    if (n > kSize / 2) {
      Flush();
      std::fwrite(text, 1, n, f_);
      return;
    }
    Room(n);
    std::memcpy(block_ + used_, text, n);
    used_ += n;
  }
  std::FILE* f_;
  size_t used_ = 0;
  char block_[kSize];
};

}  // namespace

char* FormatFixed(char* out, float value) {
  std::uint32_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  const int biased = static_cast<int>((bits >> 23) & 0xFF);
  // Beyond 2^24 (and infinities, NaN) the general conversion; 64 bytes hold
  // any finite float with six decimals.
  if (biased >= 127 + 24) return std::to_chars(out, out + 64, static_cast<double>(value), std::chars_format::fixed, 6).ptr;
  // value = m * 2^-shift exactly, m below 2^24, shift from 0 to 149.
  const std::uint64_t m = biased ? (bits & 0x7FFFFFu) | 0x800000u : bits & 0x7FFFFFu;
  const int shift = biased ? 150 - biased : 149;
  // Millionths, rounded to nearest with ties to even as printf rounds.
  const std::uint64_t scaled = m * 1000000u;  // below 2^44
  std::uint64_t millionths = 0;
  if (shift == 0) {
    millionths = scaled;
  } else if (shift < 64) {
    millionths = scaled >> shift;
    const std::uint64_t rest = scaled & ((std::uint64_t{1} << shift) - 1);
    const std::uint64_t half = std::uint64_t{1} << (shift - 1);
    if (rest > half || (rest == half && (millionths & 1))) ++millionths;
  }  // beyond: below half a millionth, 0
  if (bits >> 31) *out++ = '-';
  out = std::to_chars(out, out + 16, millionths / 1000000u).ptr;
  *out++ = '.';
  std::uint64_t fraction = millionths % 1000000u;
  for (int i = 5; i >= 0; --i) {
    out[i] = static_cast<char>('0' + fraction % 10);
    fraction /= 10;
  }
  return out + 6;
}

float ChisquareTest(int a, int b, int c, int d, std::FILE* out) {
  const double A = a, B = b, C = c, D = d;
  const double n = A + B + C + D;
  if (n < 1e-7) {
    std::fprintf(out, "exit 1 \n");
    return 10000.0f;
  }
  const double ea = (A + B) * (A + C) / n;
  const double eb = (A + B) * (B + D) / n;
  const double ec = (A + C) * (C + D) / n;
  const double ed = (B + D) * (C + D) / n;
  if (ea < 1e-7 || eb < 1e-7 || ec < 1e-7 || ed < 1e-7) {
    std::fprintf(out, "exit 2 %f, %f, %f, %f \n", ea, eb, ec, ed);
    return 10000.0f;
  }
  double chi = (A - ea) * (A - ea) / ea;
  chi += (B - eb) * (B - eb) / eb;
  chi += (C - ec) * (C - ec) / ec;
  chi += (D - ed) * (D - ed) / ed;
  return static_cast<float>(chi);
}

Status Write2CSVfile(const std::string& fileName, float support, float minConf, const RuleSet& rules,
                     const DataSet& data, std::FILE* out) {
  PendingFile file;
  std::string reason;
  if (!file.Open(fileName, reason)) {
    ErrorOut(0, out);
    return Status(StatusKind::CannotOpen, 1, "");
  }
  std::FILE* f = file.stream();
  std::fprintf(f, "confidence, %f, support, %f, RuleNumber, %d, \n", minConf, support, rules.NumOfRules);
  std::fputs(kHeader, f);

  const int maxData = data.MaxData;
  const double n = maxData;
  int index = 0;
  std::unique_ptr<LineBuffer> line = std::make_unique<LineBuffer>(f);
  for (const RuleRecord* r = rules.First; r; r = r->Next) {
    line->Int(++index);
    const int a = r->Supp;
    const int b = r->AntSupp - r->Supp;
    const int c = r->TargetSupp - r->Supp;
    const int d = maxData - a - b - c;
    if (r->AntSupp == 0 || r->TargetSupp == 0) {
      line->Flush();  // the file keeps what was written, the rule number last
      if (!file.Commit(reason)) return WriteFailure(fileName, file.error());
      return Status(StatusKind::DividedByZero, 0, "Devided by zero Write2CSVfile");
    }
    const float chi = ChisquareTest(a, b, c, d, out);
    line->Int(a);
    line->Int(b);
    line->Int(c);
    line->Int(d);
    line->Int(a + b);
    line->Int(r->TargetSupp);
    const double antTarget = static_cast<double>(a + b) * static_cast<double>(r->TargetSupp);
    const float lift = static_cast<float>((n * a) / antTarget);
    const float leverage = static_cast<float>(a / n - antTarget / (n * n));
    line->Fixed(r->Conf);
    line->Fixed(chi);
    line->Fixed(lift);
    line->Fixed(leverage);
    line->Item(data, r->Target);
    for (int i = 0; i < r->Len; ++i) line->Item(data, r->Antecedent[i]);
    line->EndLine();
  }
  line->Flush();
  if (!file.Commit(reason)) return WriteFailure(fileName, file.error());
  return Status();
}
