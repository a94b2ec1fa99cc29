#include "hosts/console/ConsoleStream.h"

#include <orncore/string/Conversion.h>

#include "hosts/console/StandardStreams.h"
#include "hosts/console/TerminalText.h"

namespace hosts::console {

ConsoleStreamBuffer::~ConsoleStreamBuffer() {
  sync();
}

ConsoleStreamBuffer::int_type ConsoleStreamBuffer::overflow(int_type unit) {
  if (traits_type::eq_int_type(unit, traits_type::eof())) return traits_type::not_eof(unit);
  const char16_t character = traits_type::to_char_type(unit);
  return xsputn(&character, 1) == 1 ? unit : traits_type::eof();
}

std::streamsize ConsoleStreamBuffer::xsputn(const char16_t* units, std::streamsize count) {
  pending_.append(units, static_cast<std::size_t>(count));
  // Whole lines only: a character may still lack its second unit.
  const std::size_t lastLineEnd = pending_.rfind(u'\n');
  if (lastLineEnd == std::u16string::npos) return count;
  return WriteUntil(lastLineEnd + 1) ? count : 0;
}

int ConsoleStreamBuffer::sync() {
  return WriteUntil(pending_.size()) ? 0 : -1;
}

bool ConsoleStreamBuffer::WriteUntil(std::size_t end) {
  const std::u16string text = pending_.substr(0, end);
  pending_.erase(0, end);
  try {
    WriteOutput(orncore::string::UTF16to8(SafeForTerminal(text, Whitespace::kKeep)));
  } catch (const ToolError&) {
    return false;
  }
  return true;
}

}  // namespace hosts::console
