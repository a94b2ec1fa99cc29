// Walks a text in runs instead of bytes, so that Boost's tokenizer and splitter, which decide byte
// by byte, decide a tenth as often.
//
// A run is either one of the special bytes alone, or all ordinary bytes up to the next special one.
// To the algorithms a run looks like its first byte: a special byte is itself, and for everything
// that they ask of ordinary bytes ("is it a separator? a quote?") all bytes of a run answer alike.
// That holds as long as every byte that the algorithm treats specially is named as special here.
#ifndef ORNWHATSNEW_SRC_DATAFILE_RUNITERATOR_H_
#define ORNWHATSNEW_SRC_DATAFILE_RUNITERATOR_H_

#include <cstddef>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace ornwhatsnew {

/// The bytes of one run; converts to its first byte.
struct Run {
  const char* first = nullptr;
  const char* last = nullptr;

  operator char() const { return *first; }
  std::size_t Size() const { return static_cast<std::size_t>(last - first); }
};

/// Finds the first byte in [first, last) that is one of two. `readable` is the end of the memory
/// that may be read, at or behind `last`: sixteen bytes are looked at together where they are
/// there.
template <char kOne, char kOther>
const char* FindEither(const char* first, const char* last, const char* readable) {
  if constexpr (kOne == kOther) {
    const void* found =
        first == last ? nullptr : std::memchr(first, kOne, static_cast<std::size_t>(last - first));
    return found == nullptr ? last : static_cast<const char*>(found);
  }
#if defined(__SSE2__)
  const __m128i one = _mm_set1_epi8(kOne);
  const __m128i other = _mm_set1_epi8(kOther);
  while (first < last && readable - first >= 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(first));
    const __m128i hits = _mm_or_si128(_mm_cmpeq_epi8(bytes, one), _mm_cmpeq_epi8(bytes, other));
    const int mask = _mm_movemask_epi8(hits);
    if (mask != 0) {
      const char* found = first + __builtin_ctz(static_cast<unsigned>(mask));
      return found < last ? found : last;
    }
    first += 16;
  }
  if (first >= last) return last;
#else
  static_cast<void>(readable);
#endif
  while (first < last && *first != kOne && *first != kOther) ++first;
  return first;
}

/// A forward iterator over the runs of a text with one or two special bytes.
template <char kOne, char kOther = kOne>
class RunIterator {
 public:
  using iterator_category = std::forward_iterator_tag;
  using value_type = Run;
  using difference_type = std::ptrdiff_t;
  using pointer = const Run*;
  using reference = Run;

  RunIterator() = default;

  /// Stands at `position` of a text that ends at `last`; see `FindEither` for `readable`.
  RunIterator(const char* position, const char* last, const char* readable)
      : position_(position), runEnd_(position), last_(last), readable_(readable) {
    MeasureRun();
  }

  Run operator*() const { return {position_, runEnd_}; }
  const char* Position() const { return position_; }

  RunIterator& operator++() {
    position_ = runEnd_;
    MeasureRun();
    return *this;
  }
  RunIterator operator++(int) {
    RunIterator before = *this;
    ++*this;
    return before;
  }

  friend bool operator==(const RunIterator& a, const RunIterator& b) {
    return a.position_ == b.position_;
  }

 private:
  void MeasureRun() {
    if (position_ == last_) return;
    const bool special = *position_ == kOne || *position_ == kOther;
    runEnd_ = special ? position_ + 1 : FindEither<kOne, kOther>(position_, last_, readable_);
  }

  const char* position_ = nullptr;
  const char* runEnd_ = nullptr;
  const char* last_ = nullptr;
  const char* readable_ = nullptr;
};

/// The runs of a whole text, begin and end.
template <char kOne, char kOther = kOne>
std::pair<RunIterator<kOne, kOther>, RunIterator<kOne, kOther>> RunsOf(std::string_view text,
                                                                       const char* readable) {
  const char* const last = text.data() + text.size();
  return {{text.data(), last, readable}, {last, last, readable}};
}

/// A token that copies nothing: where its first and last kept byte stand, and how many were kept.
/// Fewer than stand there means that quotes between them were dropped.
class SpanToken {
 public:
  void operator+=(Run run) {
    if (kept_ == 0) first_ = run.first;
    last_ = run.last;
    kept_ += run.Size();
  }

  /// The tokenizer writes single characters only for escape sequences, and there is no escape
  /// character; it has to compile all the same.
  void operator+=(char) {}

  bool IsContiguous() const { return static_cast<std::size_t>(last_ - first_) == kept_; }

  /// First to last kept byte, dropped quotes between them included.
  std::string_view Extent() const { return {first_, static_cast<std::size_t>(last_ - first_)}; }

  /// The kept bytes: a view of the text where they stand together, else of `buffer`, which is
  /// overwritten.
  std::string_view Text(std::string& buffer) const {
    if (IsContiguous()) return Extent();
    buffer.assign(Extent());
    std::erase(buffer, '"');
    return buffer;
  }

 private:
  const char* first_ = nullptr;
  const char* last_ = nullptr;
  std::size_t kept_ = 0;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_DATAFILE_RUNITERATOR_H_
