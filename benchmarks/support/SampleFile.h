// Generates data files for benchmarks, with a mix of fields, lengths and letters as in the files of
// real applications.
#ifndef BENCHMARKS_SUPPORT_SAMPLEFILE_H_
#define BENCHMARKS_SUPPORT_SAMPLEFILE_H_

#include <cstddef>
#include <string>

namespace benchmarks {

/// The epics of the sample host: "EPIC-100" and so on.
inline constexpr std::size_t kFirstEpic = 100;
inline constexpr std::size_t kEpicCount = 100;

/// Returns a header row and `rows` changes of about 195 bytes each; the same text in every call.
/// All changes belong to features of the sample host or to the bug fixes, and none hides a feature,
/// so a panel without filters shows them all. A quarter of the descriptions are quoted and contain
/// commas; one in eight contains letters outside ASCII. The reference is valid until the program
/// ends.
const std::string& SampleFile(std::size_t rows);

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_SAMPLEFILE_H_
