// The CSV rule file: one line per rule with its 2x2 contingency table,
// confidence, chi-square, lift, leverage and the items by name.
#include <cstdio>

#include "output/csv.h"

#include <cerrno>

#include "base/console.h"
#include "base/files.h"

namespace {

const char kHeader[] =
    "index, sup(Pc), sup(P[nC]), sup([nP]C), sup([nP][nC]), sup(P), sup[C], confdice, chi, lift, "
    "leverage, target, value, att1, value1, att2, value2, att3, value3, att4, value4, att5, value5, "
    "att6, value 6\n";


void WriteItem(std::FILE* f, const DataSet& data, int code) {
  const ItemEntry& item = *data.ItemRecord[code];
  std::fprintf(f, "%s, %s, ", item.AttributeName.c_str(), item.ValueName.c_str());
}

}  // namespace

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
  std::FILE* f = XFopen(fileName, "w");
  if (!f) {
    ErrorOut(0, out);
    return Status(StatusKind::CannotOpen, 1, "");
  }
  FileCloser closer{f};
  std::fprintf(f, "confidence, %f, support, %f, RuleNumber, %d, \n", minConf, support, rules.NumOfRules);
  std::fputs(kHeader, f);

  const int maxData = data.MaxData;
  const double n = maxData;
  int index = 0;
  for (const RuleRecord* r = rules.First; r; r = r->Next) {
    std::fprintf(f, "%d, ", ++index);
    const int a = r->Supp;
    const int b = r->AntSupp - r->Supp;
    const int c = r->TargetSupp - r->Supp;
    const int d = maxData - a - b - c;
    if (r->AntSupp == 0 || r->TargetSupp == 0) {
      std::fclose(closer.Release());
      return Status(StatusKind::DividedByZero, 0, "Devided by zero Write2CSVfile");
    }
    const float chi = ChisquareTest(a, b, c, d, out);
    std::fprintf(f, "%d, %d, %d, %d, %d, %d, ", a, b, c, d, a + b, r->TargetSupp);
    const double antTarget = static_cast<double>(a + b) * static_cast<double>(r->TargetSupp);
    const float lift = static_cast<float>((n * a) / antTarget);
    const float leverage = static_cast<float>(a / n - antTarget / (n * n));
    std::fprintf(f, "%f, %f, %f, %f, ", r->Conf, chi, lift, leverage);
    WriteItem(f, data, r->Target);
    for (int i = 0; i < r->Len; ++i) WriteItem(f, data, r->Antecedent[i]);
    std::fprintf(f, "\n");
  }
  return CloseWritten(closer.Release(), fileName);
}
