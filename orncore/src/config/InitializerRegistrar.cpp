#include <orncore/config/InitializerRegistrar.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <utility>

#include <orncore/config/TopLevel.h>
#include <orncore/debug/Log.h>

#include "orncore/src/utility/NoDestructor.h"

namespace orncore::config {

// The mutex of the registry guards `id` and the members after it.
struct InitializerRegistration {
  std::string name;
  EInitializerContextFlags contexts;
  std::function<bool()> initialize;
  std::function<void()> shutdown;
  std::uint64_t id = 0;
  std::uint64_t initializationOrder = 0;  // 0 if not initialised
  bool isRegistered = true;
  bool isRunning = false;  // whether a thread is running one of the functions
};

namespace {

using Lock = std::unique_lock<std::mutex>;

constexpr EInitializerContextFlags Without(EInitializerContextFlags flags,
                                           EInitializerContextFlags removed) {
  return static_cast<EInitializerContextFlags>(static_cast<std::uint32_t>(flags) &
                                               ~static_cast<std::uint32_t>(removed));
}

constexpr bool Overlap(EInitializerContextFlags a, EInitializerContextFlags b) {
  return (a & b) != EInitializerContextFlags::kNone;
}

bool CallInitialize(const InitializerRegistration& registration) {
  bool succeeded = false;
  ExecuteTopLevelFunction(
      [&] { succeeded = !registration.initialize || registration.initialize(); });
  if (!succeeded) {
    ExecuteTopLevelFunction(
        [&] { debug::Log("initializer \"" + registration.name + "\" failed"); });
  }
  return succeeded;
}

void CallShutdown(const InitializerRegistration& registration) {
  ExecuteTopLevelFunction([&] {
    if (registration.shutdown) registration.shutdown();
  });
}

// The registered functions run without the lock of the registry, because they may register
// functions, start contexts and load libraries. A thread that registers from a static constructor
// already holds the lock of the dynamic loader. If another thread loaded a library while it held
// the lock of the registry, the two threads could deadlock.
class Registry {
 public:
  static Registry& Instance() {
    static utility::NoDestructor<Registry> registry;
    return *registry;
  }

  void Add(InitializerRegistration& registration) {
    Lock lock(mutex_);
    registration.id = ++lastId_;
    registrations_.emplace(registration.id, &registration);
    Update(lock, registration);
  }

  void Remove(InitializerRegistration& registration) {
    Lock lock(mutex_);
    registrations_.erase(registration.id);
    registration.isRegistered = false;
    idle_.wait(lock, [&registration] { return !registration.isRunning; });
    Update(lock, registration);
  }

  bool Initialize(EInitializerContextFlags contexts) {
    Lock lock(mutex_);
    liveContexts_ = liveContexts_ | contexts;
    bool succeeded = true;
    // Find the next registration by the ID of the current one, because the map may change while a
    // registered function runs.
    for (auto next = registrations_.begin(); next != registrations_.end();) {
      const auto [id, registration] = *next;
      if (Overlap(registration->contexts, contexts) && !Update(lock, *registration)) {
        succeeded = false;
      }
      next = registrations_.upper_bound(id);
    }
    return succeeded;
  }

  void Shutdown(EInitializerContextFlags contexts) {
    Lock lock(mutex_);
    liveContexts_ = Without(liveContexts_, contexts);
    while (InitializerRegistration* const last = FindLastWithoutLiveContext()) Update(lock, *last);
  }

 private:
  bool ShouldBeInitialized(const InitializerRegistration& registration) const {
    return registration.isRegistered && Overlap(registration.contexts, liveContexts_);
  }

  // Initialises the registration if one of its contexts is live. Shuts it down if none of them is
  // live or if the registration has ended. Then checks again, because the live contexts may change
  // while a function runs without the lock. Returns false if the initialise function failed.
  //
  // If another call is running a function of the registration, does nothing and returns true. The
  // other call then checks the live contexts again.
  bool Update(Lock& lock, InitializerRegistration& registration) {
    while (!registration.isRunning &&
           ShouldBeInitialized(registration) != (registration.initializationOrder != 0)) {
      const bool initializes = registration.initializationOrder == 0;
      registration.initializationOrder = 0;
      registration.isRunning = true;
      lock.unlock();
      const bool succeeded = initializes && CallInitialize(registration);
      if (!initializes) CallShutdown(registration);
      lock.lock();
      registration.isRunning = false;
      idle_.notify_all();
      if (succeeded) registration.initializationOrder = ++lastOrder_;
      if (initializes && !succeeded) return false;
    }
    return true;
  }

  InitializerRegistration* FindLastWithoutLiveContext() const {
    InitializerRegistration* last = nullptr;
    std::uint64_t order = 0;
    for (const auto& [id, registration] : registrations_) {
      const bool isLater = registration->initializationOrder > order;
      if (!isLater || Overlap(registration->contexts, liveContexts_)) continue;
      last = registration;
      order = registration->initializationOrder;
    }
    return last;
  }

  std::mutex mutex_;
  std::condition_variable idle_;
  std::map<std::uint64_t, InitializerRegistration*> registrations_;
  EInitializerContextFlags liveContexts_ = EInitializerContextFlags::kNone;
  std::uint64_t lastId_ = 0;
  std::uint64_t lastOrder_ = 0;
};

}  // namespace

InitializerRegistrar::InitializerRegistrar(std::string_view name, EInitializerContextFlags contexts,
                                           std::function<bool()> initialize,
                                           std::function<void()> shutdown)
    : registration_(std::make_unique<InitializerRegistration>(InitializerRegistration{
          std::string(name), contexts, std::move(initialize), std::move(shutdown)})) {
  Registry::Instance().Add(*registration_);
}

InitializerRegistrar::~InitializerRegistrar() {
  Registry::Instance().Remove(*registration_);
}

bool InitializeContexts(EInitializerContextFlags contexts) {
  return Registry::Instance().Initialize(contexts);
}

void ShutdownContexts(EInitializerContextFlags contexts) {
  Registry::Instance().Shutdown(contexts);
}

}  // namespace orncore::config
