#include "base/console.h"

void ErrorOut(int code, std::FILE* out) {
  switch (code) {
    case 0: std::fprintf(out, "Can not Open File\n"); break;
    case 1: std::fprintf(out, "Not enough memory\n"); break;
    case 11: std::fprintf(out, "error in Filling the buff\n"); break;
    case 12: std::fprintf(out, "error in Reading Next Transaation\n"); break;
    default: break;
  }
}

int Finish(const Status& status) {
  if (status.ok()) return 0;
  std::fputs(status.message().c_str(), stdout);
  std::fflush(stdout);
  return status.exit_status();
}
