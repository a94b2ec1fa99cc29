// Data files for benchmarks: made up, but with the mix of fields, lengths and letters that files of
// real applications have.
#ifndef BENCHMARKS_SUPPORT_SAMPLEFILE_H_
#define BENCHMARKS_SUPPORT_SAMPLEFILE_H_

#include <cstddef>
#include <string>

namespace benchmarks {

/// The epics of the sample host: "EPIC-100" and so on.
inline constexpr std::size_t kFirstEpic = 100;
inline constexpr std::size_t kEpicCount = 100;

/// A header row and `rows` changes, about 195 bytes each; the same text at every call. All hang on
/// features of the sample host or on the bug fixes, and nothing hides any, so that a panel without
/// filters shows every one. A quarter of the descriptions stand in quotes and hold commas, one in
/// eight holds letters beyond ASCII. Kept for the next call.
const std::string& SampleFile(std::size_t rows);

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_SAMPLEFILE_H_
