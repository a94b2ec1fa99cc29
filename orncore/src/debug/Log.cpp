#include <orncore/debug/Log.h>

#include <cstdio>
#include <string>
#include <utility>

#include "orncore/src/utility/ServiceHolder.h"

namespace orncore::debug {
namespace {

utility::FunctionHolder<void(std::string_view)> sinkHolder;

// A line may quote untrusted text, whose control characters could control the user's terminal or
// imitate a second line. Control characters include C1 controls, which are C2 80 to C2 9F in UTF-8.
void ReplaceControls(std::string& line) {
  for (std::size_t i = 0; i < line.size(); ++i) {
    const auto byte = static_cast<unsigned char>(line[i]);
    const bool followsC2 = i > 0 && line[i - 1] == '\xC2';
    const bool isControl = byte < 0x20 || byte == 0x7F;
    const bool isC1Control = followsC2 && byte >= 0x80 && byte < 0xA0;
    if (isControl || isC1Control) line[i] = '?';
    if (isC1Control) line[i - 1] = '?';
  }
}

// Writes the line in one call, so that the lines of several threads are not mixed.
void WriteToStandardError(std::string_view line) {
  std::string text(line);
  ReplaceControls(text);
  text += '\n';
  // Ignore the result, because a failure of standard error cannot be reported anywhere.
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
}

bool WriteToSink(std::string_view line) noexcept {
  try {
    const auto sink = sinkHolder.Get();
    if (!sink) return false;
    (*sink)(line);
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace

void SetLogSink(std::function<void(std::string_view line)> sink) {
  sinkHolder.Set(std::move(sink));
}

void Log(std::string_view line) noexcept {
  if (WriteToSink(line)) return;
  try {
    WriteToStandardError(line);
  } catch (...) {
    // Write a constant, because memory has run out.
    static_cast<void>(std::fputs("a log line was lost: out of memory\n", stderr));
  }
}

}  // namespace orncore::debug
