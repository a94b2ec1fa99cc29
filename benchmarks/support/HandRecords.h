// Implements the baseline for loading data files. It splits a file into fields, converts five of
// the ten columns to lower case, and copies the fields into records of ten strings.
#ifndef BENCHMARKS_SUPPORT_HANDRECORDS_H_
#define BENCHMARKS_SUPPORT_HANDRECORDS_H_

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace benchmarks {

inline constexpr std::size_t kColumns = 10;
using HandRecord = std::array<std::string, kColumns>;

/// Returns a record for each row except the header. REQUIRES: each row of the file has ten fields.
std::vector<HandRecord> LoadByHand(std::string_view file);

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_HANDRECORDS_H_
