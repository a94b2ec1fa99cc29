// The stream that console commands write to, on standard output.
#ifndef HOSTS_CONSOLE_CONSOLESTREAM_H_
#define HOSTS_CONSOLE_CONSOLESTREAM_H_

#include <streambuf>
#include <string>

namespace hosts::console {

/// Turns UTF-16 units into UTF-8 on standard output, with nothing in it that acts on a terminal.
/// Text is written line by line and when the stream is flushed. A failure to write makes the stream
/// bad. One thread at a time.
class ConsoleStreamBuffer final : public std::basic_streambuf<char16_t> {
 public:
  ConsoleStreamBuffer() = default;
  ~ConsoleStreamBuffer() override;
  ConsoleStreamBuffer(const ConsoleStreamBuffer&) = delete;
  ConsoleStreamBuffer& operator=(const ConsoleStreamBuffer&) = delete;

 protected:
  int_type overflow(int_type unit) override;
  std::streamsize xsputn(const char16_t* units, std::streamsize count) override;
  int sync() override;

 private:
  bool WriteUntil(std::size_t end);

  std::u16string pending_;
};

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_CONSOLESTREAM_H_
