// Implements the baseline for splitting data files. If the compiler generates code for SSE2, a
// hand-written loop searches 64 bytes at a time for line feeds, commas and quotes.
#ifndef BENCHMARKS_SUPPORT_HANDCUT_H_
#define BENCHMARKS_SUPPORT_HANDCUT_H_

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace benchmarks {

/// Splits a data file. Calls `sink.Field(column, text)` for each field. `text` has no quotes and is
/// valid only during the call. After the fields of each row, calls `sink.Row(columns)` with the
/// number of these fields. An empty row has no fields. If the file ends with a newline, an empty
/// row follows it.
template <class Sink>
class HandCutter {
 public:
  HandCutter(std::string_view text, Sink& sink) : text_(text), sink_(sink) {}

  void Run() {
    std::size_t at = 0;
#if defined(__SSE2__)
    for (; at + 64 <= text_.size(); at += 64) {
      std::uint64_t specials = 0;
      for (std::size_t part = 0; part < 4; ++part) {
        specials |= SpecialsIn16(text_.data() + at + 16 * part) << (16 * part);
      }
      for (; specials != 0; specials &= specials - 1) {
        HandleSpecial(at + static_cast<std::size_t>(std::countr_zero(specials)));
      }
    }
#endif
    for (; at < text_.size(); ++at) {
      if (text_[at] == '\n' || text_[at] == ',' || text_[at] == '"') HandleSpecial(at);
    }
    if (rowBegin_ != text_.size()) CloseField(text_.size());
    sink_.Row(columns_);
  }

 private:
#if defined(__SSE2__)
  static std::uint64_t SpecialsIn16(const char* from) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    const __m128i hits = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('\n')),
                                                   _mm_cmpeq_epi8(bytes, _mm_set1_epi8(','))),
                                      _mm_cmpeq_epi8(bytes, _mm_set1_epi8('"')));
    return static_cast<unsigned>(_mm_movemask_epi8(hits));
  }
#endif

  void HandleSpecial(std::size_t at) {
    if (text_[at] == ',') {
      if (inQuotes_) return;
      CloseField(at);
      fieldBegin_ = at + 1;
    } else if (text_[at] == '"') {
      inQuotes_ = !inQuotes_;
      hasQuotes_ = true;
    } else {
      if (at != rowBegin_) CloseField(at);
      sink_.Row(columns_);
      columns_ = 0;
      inQuotes_ = false;
      hasQuotes_ = false;
      rowBegin_ = fieldBegin_ = at + 1;
    }
  }

  void CloseField(std::size_t end) {
    std::string_view field = text_.substr(fieldBegin_, end - fieldBegin_);
    if (hasQuotes_) {
      unquoted_.assign(field);
      std::erase(unquoted_, '"');
      field = unquoted_;
      hasQuotes_ = false;
    }
    sink_.Field(columns_++, field);
  }

  const std::string_view text_;
  Sink& sink_;
  std::string unquoted_;
  std::size_t rowBegin_ = 0;
  std::size_t fieldBegin_ = 0;
  std::size_t columns_ = 0;
  bool inQuotes_ = false;
  bool hasQuotes_ = false;
};

/// Counts rows, fields and bytes. It does no other work, so that the benchmark measures mainly the
/// splitting.
struct CountingSink {
  std::size_t fields = 0;
  std::size_t bytes = 0;
  std::size_t rows = 0;

  void Field(std::size_t, std::string_view text) {
    ++fields;
    bytes += text.size();
  }
  void Row(std::size_t) { ++rows; }
};

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_HANDCUT_H_
