// Stores a service that the host can replace.
#ifndef ORNCORE_SRC_UTILITY_SERVICEHOLDER_H_
#define ORNCORE_SRC_UTILITY_SERVICEHOLDER_H_

#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include "orncore/src/utility/NoDestructor.h"

namespace orncore::utility {

/// Stores a service, which is null at first. Declare the holder as a variable at namespace scope.
/// The last service is not destroyed when the process ends.
///
/// If `std::mutex` has a constexpr constructor, the variable is usable before any static
/// constructor runs. The library does not declare these variables `constinit`, because its code
/// would not compile on systems without such a constructor.
///
/// Threads: safe to use from any thread.
template <class Service>
class ServiceHolder {
 public:
  constexpr ServiceHolder() noexcept = default;

  /// Returns the service, or null. The caller shares ownership, because another thread or the
  /// service itself may replace the service while the caller uses it.
  [[nodiscard]] std::shared_ptr<Service> Get() const {
    const std::lock_guard lock(content_->mutex);
    return content_->service;
  }

  /// Replaces the service. Null removes it.
  void Set(std::shared_ptr<Service> service) {
    // Swap, so that the parameter owns the previous service and destroys it after the lock is
    // released. The destructor of that service may use the holder.
    const std::lock_guard lock(content_->mutex);
    content_->service.swap(service);
  }

 private:
  struct Content {
    std::mutex mutex;
    std::shared_ptr<Service> service;
  };

  // Neither the mutex nor the service is destroyed, because static destructors of the host may use
  // them.
  mutable NoDestructor<Content> content_;
};

/// Stores a function that the host can replace.
template <class Signature>
class FunctionHolder : public ServiceHolder<const std::function<Signature>> {
 public:
  /// Replaces the function. An empty function removes it. If memory runs out, throws
  /// `std::bad_alloc` and keeps the previous function.
  void Set(std::function<Signature> function) {
    using Function = const std::function<Signature>;
    ServiceHolder<Function>::Set(function ? std::make_shared<Function>(std::move(function))
                                          : nullptr);
  }
};

}  // namespace orncore::utility

#endif  // ORNCORE_SRC_UTILITY_SERVICEHOLDER_H_
