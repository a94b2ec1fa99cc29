// Provides strings that are followed by unreadable memory. A read past the end of a string crashes
// the program in every build.
#ifndef TESTS_SUPPORT_TEXTATPAGEEND_H_
#define TESTS_SUPPORT_TEXTATPAGEEND_H_

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <system_error>

namespace test_support {

/// A buffer for a copy of a string. The copy ends immediately before an unreadable page. The
/// constructor throws `std::system_error` if it cannot allocate the pages.
class TextAtPageEnd {
 public:
  TextAtPageEnd() : pageSize_(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))) {
    void* const pages =
        ::mmap(nullptr, 2 * pageSize_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) throw std::system_error(errno, std::generic_category(), "mmap");
    pages_ = static_cast<char*>(pages);
    ::mprotect(pages_ + pageSize_, pageSize_, PROT_NONE);
  }
  ~TextAtPageEnd() { ::munmap(pages_, 2 * pageSize_); }
  TextAtPageEnd(const TextAtPageEnd&) = delete;
  TextAtPageEnd& operator=(const TextAtPageEnd&) = delete;

  /// Copies `text` and returns a view of the copy. The view is valid until the next call. REQUIRES:
  /// `text` is not larger than one page.
  template <class Unit>
  std::basic_string_view<Unit> Put(const std::basic_string<Unit>& text) {
    char* const start = pages_ + pageSize_ - text.size() * sizeof(Unit);
    std::memcpy(start, text.data(), text.size() * sizeof(Unit));
    return {reinterpret_cast<const Unit*>(start), text.size()};
  }

 private:
  std::size_t pageSize_;
  char* pages_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_TEXTATPAGEEND_H_
