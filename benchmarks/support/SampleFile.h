// Generates data files for benchmarks. The lengths and the characters of their fields are similar
// to those in the data files of real applications.
#ifndef BENCHMARKS_SUPPORT_SAMPLEFILE_H_
#define BENCHMARKS_SUPPORT_SAMPLEFILE_H_

#include <cstddef>
#include <string>

namespace benchmarks {

/// The epic keys of the sample host are "EPIC-100" to "EPIC-199".
inline constexpr std::size_t kFirstEpic = 100;
inline constexpr std::size_t kEpicCount = 100;

/// Returns a data file with a header and `rows` changes of about 195 bytes each. For each number of
/// rows, the content is the same in every run. The reference is valid until the program ends.
///
/// Each change belongs to a feature of the sample host or to the section BUGFIX. No change hides a
/// feature, so a panel without display options shows all changes. About a quarter of the
/// descriptions are quoted and contain commas. About one in eight descriptions contains characters
/// outside ASCII.
const std::string& SampleFile(std::size_t rows);

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_SAMPLEFILE_H_
