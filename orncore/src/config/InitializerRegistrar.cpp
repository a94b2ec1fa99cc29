#include <orncore/config/InitializerRegistrar.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include <orncore/config/TopLevel.h>
#include <orncore/debug/Log.h>
#include <orncore/utility/NoDestructor.h>

namespace orncore::config {

// Everything but the functions' calls happens under the registry's lock.
struct InitializerRegistration {
  std::string name;
  EInitializerContextFlags contexts;
  std::function<bool()> initialize;
  std::function<void()> shutdown;
  bool registered = true;
  // Position in the order of initialisation; 0: not initialised.
  std::uint64_t order = 0;
  // The thread that is in one of the functions.
  std::optional<std::thread::id> runner;
};

namespace {

using RegistrationPtr = std::shared_ptr<InitializerRegistration>;
using Lock = std::unique_lock<std::mutex>;

constexpr EInitializerContextFlags Without(EInitializerContextFlags flags,
                                           EInitializerContextFlags removed) {
  return static_cast<EInitializerContextFlags>(static_cast<std::uint32_t>(flags) &
                                               ~static_cast<std::uint32_t>(removed));
}

constexpr bool Meet(EInitializerContextFlags a, EInitializerContextFlags b) {
  return (a & b) != EInitializerContextFlags::kNone;
}

// The functions run without the lock: they register and run commands, load libraries, and may take
// the loader's lock, which a thread that registers from a static constructor already holds.
class Registry {
 public:
  static Registry& Instance() {
    static utility::NoDestructor<Registry> registry;
    return *registry;
  }

  void Add(const RegistrationPtr& registration) {
    Lock lock(mutex_);
    registrations_.push_back(registration);
    if (Meet(registration->contexts, live_)) Start(lock, *registration);
  }

  // The functions are let go here, not with the last reference, because their code may be unloaded
  // as soon as the registrar is destroyed.
  void Remove(const RegistrationPtr& registration) {
    Lock lock(mutex_);
    std::erase(registrations_, registration);
    registration->registered = false;
    WaitForOthers(lock, *registration);
    Settle(lock, *registration);
    if (registration->runner) return;
    registration->initialize = nullptr;
    registration->shutdown = nullptr;
  }

  bool Initialize(EInitializerContextFlags contexts) {
    Lock lock(mutex_);
    live_ = live_ | contexts;
    bool allStarted = true;
    // A registration that comes meanwhile sees the live context and starts itself.
    const std::vector<RegistrationPtr> snapshot = registrations_;
    for (const RegistrationPtr& registration : snapshot) {
      if (!Meet(registration->contexts, contexts)) continue;
      if (!Start(lock, *registration)) allStarted = false;
    }
    return allStarted;
  }

  void Shutdown(EInitializerContextFlags contexts) {
    Lock lock(mutex_);
    live_ = Without(live_, contexts);
    while (const RegistrationPtr last = LastWithoutContext()) Settle(lock, *last);
  }

  std::vector<std::string> Names() {
    const Lock lock(mutex_);
    std::vector<std::string> names;
    names.reserve(registrations_.size());
    for (const RegistrationPtr& registration : registrations_) names.push_back(registration->name);
    return names;
  }

 private:
  void WaitForOthers(Lock& lock, const InitializerRegistration& registration) {
    idle_.wait(lock, [&registration] {
      return !registration.runner || *registration.runner == std::this_thread::get_id();
    });
  }

  bool IsWanted(const InitializerRegistration& registration) const {
    return registration.registered && Meet(registration.contexts, live_);
  }

  // False only when the initialise function failed.
  bool Start(Lock& lock, InitializerRegistration& registration) {
    WaitForOthers(lock, registration);
    const bool started = registration.order != 0 || registration.runner;
    if (started || !IsWanted(registration)) return true;
    return Settle(lock, registration);
  }

  // Contexts that end or become live while a function runs, by its own hand or on another thread,
  // pass its registration over; hence the look at what is wanted after each function. False only
  // when the initialise function failed.
  bool Settle(Lock& lock, InitializerRegistration& registration) {
    while (IsWanted(registration) != (registration.order != 0)) {
      if (registration.order != 0) {
        RunShutdown(lock, registration);
      } else if (!RunInitialize(lock, registration)) {
        return false;
      }
    }
    return true;
  }

  bool RunInitialize(Lock& lock, InitializerRegistration& registration) {
    bool succeeded = false;
    Run(lock, registration,
        [&] { succeeded = !registration.initialize || registration.initialize(); });
    if (succeeded) {
      registration.order = ++lastOrder_;
      return true;
    }
    lock.unlock();
    ExecuteTopLevelFunction(
        [&] { debug::Log("initializer \"" + registration.name + "\" failed"); });
    lock.lock();
    return false;
  }

  void RunShutdown(Lock& lock, InitializerRegistration& registration) {
    registration.order = 0;
    Run(lock, registration, [&] {
      if (registration.shutdown) registration.shutdown();
    });
  }

  template <class Function>
  void Run(Lock& lock, InitializerRegistration& registration, const Function& function) {
    registration.runner = std::this_thread::get_id();
    lock.unlock();
    ExecuteTopLevelFunction(std::cref(function));
    lock.lock();
    registration.runner.reset();
    idle_.notify_all();
  }

  RegistrationPtr LastWithoutContext() const {
    RegistrationPtr last;
    for (const RegistrationPtr& registration : registrations_) {
      const bool done = registration->order == 0 || Meet(registration->contexts, live_);
      if (!done && (!last || last->order < registration->order)) last = registration;
    }
    return last;
  }

  std::mutex mutex_;
  std::condition_variable idle_;
  std::vector<RegistrationPtr> registrations_;
  EInitializerContextFlags live_ = EInitializerContextFlags::kNone;
  std::uint64_t lastOrder_ = 0;
};

}  // namespace

InitializerRegistrar::InitializerRegistrar(std::string_view name, EInitializerContextFlags contexts,
                                           std::function<bool()> initialize,
                                           std::function<void()> shutdown)
    : registration_(std::make_shared<InitializerRegistration>()) {
  registration_->name = name;
  registration_->contexts = contexts;
  registration_->initialize = std::move(initialize);
  registration_->shutdown = std::move(shutdown);
  Registry::Instance().Add(registration_);
}

InitializerRegistrar::~InitializerRegistrar() {
  Registry::Instance().Remove(registration_);
}

bool InitializeContexts(EInitializerContextFlags contexts) {
  return Registry::Instance().Initialize(contexts);
}

void ShutdownContexts(EInitializerContextFlags contexts) {
  Registry::Instance().Shutdown(contexts);
}

std::vector<std::string> GetRegisteredInitializers() {
  return Registry::Instance().Names();
}

}  // namespace orncore::config
