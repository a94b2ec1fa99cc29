// Lets the processor fetch the changes that a walk comes to next.
//
// A change is six lines of the processor's cache and some more for its longer texts, and in a large
// list each of them is a wait for memory that takes longer than all that is done with it. The
// changes of an item lie wherever the file's order put them, so the processor cannot guess the
// next one; the walk knows it.
#ifndef ORNWHATSNEW_SRC_RULES_READAHEAD_H_
#define ORNWHATSNEW_SRC_RULES_READAHEAD_H_

#include <algorithm>
#include <cstddef>

#include <ornwhatsnew/FeatureListDetail.h>

namespace ornwhatsnew {

// Inlined by order: g++ takes a function that only fetches for one without effect, and drops the
// calls of those that it has not inlined before it looks. The rest of a long text the processor
// finds by itself.
[[gnu::always_inline]] inline void FetchLines(const void* begin, std::size_t bytes) {
  constexpr std::size_t kLineBytes = 64;
  constexpr std::size_t kMostLines = 8;
  const char* const from = static_cast<const char*>(begin);
  const std::size_t end = std::min(bytes, kMostLines * kLineBytes);
  for (std::size_t at = 0; at < end; at += kLineBytes) __builtin_prefetch(from + at);
}

/// Called at each place `at` of a walk over `count` changes; `changeAt(place)` answers a reference
/// to one of them. Has no effect but on the time that the walk takes.
template <class ChangeAt>
[[gnu::always_inline]] inline void ReadAhead(std::size_t at, std::size_t count, ChangeAt changeAt) {
  // A change comes first, and its texts when it is there to tell where they are.
  constexpr std::size_t kChangesAhead = 8;
  constexpr std::size_t kTextsAhead = 4;
  if (at + kChangesAhead < count) {
    FetchLines(&changeAt(at + kChangesAhead), sizeof(FeatureListDetail));
  }
  if (at + kTextsAhead < count) {
    const FeatureListDetail& change = changeAt(at + kTextsAhead);
    FetchLines(change.GetDescription().data(), change.GetDescription().size());
    FetchLines(change.GetSHAOptional().data(), change.GetSHAOptional().size());
  }
}

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RULES_READAHEAD_H_
