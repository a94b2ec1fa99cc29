// Implements the baseline for identities, in which libmurmurhash computes the hash of one
// contiguous string.
#ifndef BENCHMARKS_SUPPORT_ONESHOTHASH_H_
#define BENCHMARKS_SUPPORT_ONESHOTHASH_H_

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <murmurhash.h>

#include <ornwhatsnew/FeatureListDetail.h>

namespace benchmarks {

using HashWords = std::array<std::uint64_t, 2>;

inline HashWords HashOnce(std::string_view bytes) {
  HashWords words{};
  lmmh_x64_128(bytes.data(), static_cast<unsigned>(bytes.size()), 0, words.data());
  return words;
}

/// Returns the bytes whose hash is the seen identity of `change`. The fields of `change` must not
/// be key texts.
inline std::string HashedBytes(const ornwhatsnew::FeatureListDetail& change) {
  std::string bytes = "FeatureChangeList";
  bytes += change.GetDescription();
  bytes += change.GetChangeAddedVersion();
  bytes += change.GetJIRAEpicID();
  bytes += change.GetJIRAStoryBugTaskID();
  bytes += change.GetSalienceOptional();
  bytes += change.GetRelevantFirstVersionOptional();
  bytes += change.GetRelevantPlatformOptional();
  bytes += change.GetViewMoreURLOptional();
  bytes += change.GetSHAOptional();
  return bytes;
}

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_ONESHOTHASH_H_
