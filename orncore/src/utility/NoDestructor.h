// Defines a wrapper for process-wide objects that are never destroyed. Static destructors of this
// library and of a host can use these objects in any order.
#ifndef ORNCORE_SRC_UTILITY_NODESTRUCTOR_H_
#define ORNCORE_SRC_UTILITY_NODESTRUCTOR_H_

#include <utility>

namespace orncore::utility {

/// Contains a `T` and never destroys it. Use it for static variables only. If `T` has a constexpr
/// constructor, the variable can be `constinit` and is then usable before any static constructor
/// runs.
///
/// Threads: the rules of `T` apply.
template <class T>
class NoDestructor {
 public:
  /// Constructs the `T` with `arguments`.
  template <class... Arguments>
  constexpr explicit NoDestructor(Arguments&&... arguments)
      : value_(std::forward<Arguments>(arguments)...) {}
  NoDestructor(const NoDestructor&) = delete;
  NoDestructor& operator=(const NoDestructor&) = delete;
  /// Does not destroy the `T`.
  // "= default" would delete the destructor, because the destructor of `T` is usually not trivial.
  ~NoDestructor() {}  // NOLINT(modernize-use-equals-default)

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
