// Generates long inputs for the growth probes.
#ifndef BENCHMARKS_SUPPORT_NUMBEREDCOPIES_H_
#define BENCHMARKS_SUPPORT_NUMBEREDCOPIES_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace benchmarks {

/// Appends copies of `item` to `text` until `text` has at least `size` bytes. In each copy, the
/// index of the copy replaces each "#".
inline void AppendNumberedCopies(std::string& text, std::string_view item, std::size_t size) {
  for (std::size_t number = 0; text.size() < size; ++number) {
    for (const char character : item) {
      if (character == '#') {
        text += std::to_string(number);
      } else {
        text += character;
      }
    }
  }
}

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_NUMBEREDCOPIES_H_
