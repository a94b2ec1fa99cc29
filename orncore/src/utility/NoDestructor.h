// Process-wide objects that are never destroyed, so that static destructors of this library or of a
// host can use them in any order.
#ifndef ORNCORE_SRC_UTILITY_NODESTRUCTOR_H_
#define ORNCORE_SRC_UTILITY_NODESTRUCTOR_H_

#include <utility>

namespace orncore::utility {

/// Holds a `T` and never destroys it. For static variables only. A `constinit` variable is usable
/// before any static constructor has run, if `T` has a constexpr constructor.
///
/// Threads: as for a `T`.
template <class T>
class NoDestructor {
 public:
  /// Constructs the `T` from `arguments`.
  template <class... Arguments>
  constexpr explicit NoDestructor(Arguments&&... arguments)
      : value_(std::forward<Arguments>(arguments)...) {}
  NoDestructor(const NoDestructor&) = delete;
  NoDestructor& operator=(const NoDestructor&) = delete;
  /// Does not destroy the `T`.
  ~NoDestructor() {}

  /// Returns the `T`.
  [[nodiscard]] T& operator*() noexcept { return value_; }
  /// Returns the `T`, for access to its members.
  [[nodiscard]] T* operator->() noexcept { return &value_; }

 private:
  union {
    T value_;
  };
};

}  // namespace orncore::utility

#endif  // ORNCORE_SRC_UTILITY_NODESTRUCTOR_H_
