// Where a module keeps a service that the host can replace.
#ifndef ORNCORE_SRC_UTILITY_SERVICEHOLDER_H_
#define ORNCORE_SRC_UTILITY_SERVICEHOLDER_H_

#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include <orncore/src/utility/NoDestructor.h>

namespace orncore::utility {

/// Holds a service, null at first. Declare it as a variable of a namespace. The service is never
/// destroyed. The variable is usable before any static constructor has run, on systems where
/// std::mutex has a constexpr constructor; not `constinit`, because others would not compile then.
///
/// Threads: safe to use from any thread.
template <class Service>
class ServiceHolder {
 public:
  constexpr ServiceHolder() noexcept = default;

  /// Returns the service. The caller shares ownership, because the service may be replaced during a
  /// call to it, even by the service itself.
  [[nodiscard]] std::shared_ptr<Service> Get() const {
    const std::lock_guard lock(mutex_);
    return *service_;
  }

  /// Replaces the service.
  void Set(std::shared_ptr<Service> service) {
    // The parameter is destroyed after the lock is released: the destructor of the previous service
    // may use the holder.
    const std::lock_guard lock(mutex_);
    service_->swap(service);
  }

 private:
  mutable std::mutex mutex_;
  mutable NoDestructor<std::shared_ptr<Service>> service_;
};

/// Holds a function of the host. An empty function counts as none.
template <class Signature>
class FunctionHolder : public ServiceHolder<const std::function<Signature>> {
 public:
  /// Replaces the function. Throws `std::bad_alloc` without effect.
  void Set(std::function<Signature> function) {
    using Function = const std::function<Signature>;
    ServiceHolder<Function>::Set(function ? std::make_shared<Function>(std::move(function))
                                          : nullptr);
  }
};

}  // namespace orncore::utility

#endif  // ORNCORE_SRC_UTILITY_SERVICEHOLDER_H_
