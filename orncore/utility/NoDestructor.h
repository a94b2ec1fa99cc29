// A holder for process-wide objects that are never destroyed, so that static destructors, of this
// library or of a host, can still use them, in whatever order they run.
#ifndef ORNCORE_UTILITY_NODESTRUCTOR_H_
#define ORNCORE_UTILITY_NODESTRUCTOR_H_

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace orncore::utility {

/// Holds a `T` in place and leaves it alone at the end. Meant for statics of functions, which the
/// language makes once, on first use, whatever the thread:
///
///     Registry& Registry::Instance() {
///       static NoDestructor<Registry> instance;
///       return *instance;
///     }
///
/// Threads: as for a `T`; a function's static may be asked for by any number of threads at once.
template <class T>
class NoDestructor {
 public:
  /// Makes the `T` from `arguments`; what its constructor throws passes through.
  template <class... Arguments>
  explicit NoDestructor(Arguments&&... arguments) {
    ::new (static_cast<void*>(storage_)) T(std::forward<Arguments>(arguments)...);
  }
  /// Not copyable: what it holds has one place.
  NoDestructor(const NoDestructor&) = delete;
  NoDestructor& operator=(const NoDestructor&) = delete;
  /// Leaves the `T` as it is.
  ~NoDestructor() = default;

  /// What it holds, in the same place for ever.
  [[nodiscard]] T& operator*() noexcept { return *std::launder(reinterpret_cast<T*>(storage_)); }
  /// The same, for its members.
  [[nodiscard]] T* operator->() noexcept { return std::addressof(**this); }

 private:
  alignas(T) std::byte storage_[sizeof(T)];
};

}  // namespace orncore::utility

#endif  // ORNCORE_UTILITY_NODESTRUCTOR_H_
