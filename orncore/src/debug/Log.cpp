#include <orncore/debug/Log.h>

#include <cstddef>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include <orncore/utility/NoDestructor.h>

namespace orncore::debug {
namespace {

// The sink in use, null for the default. Shared, so that a thread can log without holding the lock.
struct SinkHolder {
  std::mutex mutex;
  std::shared_ptr<const LogSink> sink;
};

SinkHolder& Holder() {
  static utility::NoDestructor<SinkHolder> holder;
  return *holder;
}

// A message may quote text from outside: what would move a terminal's cursor, or forge a second
// line, is taken out, in UTF-8 the C1 controls (C2 80 to C2 9F) as well.
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

// One write, so that lines of several threads do not run into each other.
void WriteToStandardError(std::string_view line) {
  std::string text(line);
  ReplaceControls(text);
  text += '\n';
  // Nobody is left to tell when even this fails.
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
}

bool WriteToSink(std::string_view line) noexcept {
  try {
    std::shared_ptr<const LogSink> sink;
    {
      SinkHolder& holder = Holder();
      const std::scoped_lock lock(holder.mutex);
      sink = holder.sink;
    }
    if (!sink) return false;
    (*sink)(line);
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace

void SetLogSink(LogSink sink) {
  std::shared_ptr<const LogSink> shared;
  if (sink) shared = std::make_shared<const LogSink>(std::move(sink));
  SinkHolder& holder = Holder();
  // Swapped, so that the sink before is released after the lock is: its destructor may log.
  const std::scoped_lock lock(holder.mutex);
  holder.sink.swap(shared);
}

void Log(std::string_view line) noexcept {
  if (WriteToSink(line)) return;
  try {
    WriteToStandardError(line);
  } catch (...) {
    // Out of memory: say that much, which needs none.
    static_cast<void>(std::fputs("A line of the log was lost for want of memory\n", stderr));
  }
}

}  // namespace orncore::debug
