#include "uci/uci_output.h"

#include <cstdarg>
#include <mutex>

namespace vorlek::uci {

namespace {

FILE* output = stdout;
std::mutex outputMutex;

}  // namespace

void SetOutput(FILE* out) { output = out; }

void Send(const char* format, ...) {
  const std::lock_guard<std::mutex> lock(outputMutex);
  va_list args;
  va_start(args, format);
  std::vfprintf(output, format, args);
  va_end(args);
  std::fputc('\n', output);
  std::fflush(output);
}

}  // namespace vorlek::uci
