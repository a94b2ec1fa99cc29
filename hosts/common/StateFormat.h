// Converts the values of a state store to the JSON text of its file and back.
//
//   {
//     "format": "ornwhatsnew state",
//     "formatVersion": 1,
//     "values": {
//       "WhatsNew.LastVersionSeenWhatsNew": "4.3.0.118"
//     }
//   }
#ifndef HOSTS_COMMON_STATEFORMAT_H_
#define HOSTS_COMMON_STATEFORMAT_H_

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include "hosts/common/StateStore.h"

namespace hosts::common {

/// The maximum size of a state file in bytes. A million identities take 37 MB. `FormatState` writes
/// each non-ASCII character as an escape of 6 or 12 bytes. Another program may write these
/// characters without escapes. `ParseState` can then accept a file whose values `FormatState`
/// cannot write within this limit.
inline constexpr std::size_t kMaximumStateSize = std::size_t{64} << 20;

/// Returns the values in the text of a state file. Throws `StateStoreError` if the text is empty,
/// if it is not a state store, or if a newer version of this program wrote it. The message names
/// `file`.
StateValues ParseState(std::string_view text, const std::filesystem::path& file);

/// Returns the text of a state file with `values`, in ASCII. Throws `StateStoreError` if a key or a
/// value is not well-formed UTF-8, which JSON cannot represent, or if the text is longer than
/// `kMaximumStateSize`. The message names `file`.
std::string FormatState(const StateValues& values, const std::filesystem::path& file);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_STATEFORMAT_H_
