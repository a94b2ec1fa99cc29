// A floor for the loading of data files: cut, lowered and copied into records of ten texts, in one
// go and with nothing around it.
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

/// The rows of a well-formed file in columns' order, without the header.
std::vector<HandRecord> LoadByHand(std::string_view file);

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_HANDRECORDS_H_
