// Registers initialise and shutdown functions. Libraries register the functions, and the host runs
// them.
//
// A library registers a pair of functions by constructing an InitializerRegistrar. The object is
// usually a variable at namespace scope, so that loading the library registers the functions. A
// host starts and ends contexts:
//
//   orncore::config::InitializeContexts(orncore::config::EInitializerContextFlags::kConsole);
//   ...
//   orncore::config::ShutdownContexts(orncore::config::EInitializerContextFlags::kConsole);
//
// Before a host unloads a library at run time, it must call ShutdownContexts for the contexts of
// the library's registrations.
#ifndef ORNCORE_CONFIG_INITIALIZERREGISTRAR_H_
#define ORNCORE_CONFIG_INITIALIZERREGISTRAR_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include <orncore/Export.h>

namespace orncore::config {

/// The contexts of a host. The values are bits and can be combined. A registration can belong to
/// several contexts, or to none. A context is live from the `InitializeContexts` call that starts
/// it to the `ShutdownContexts` call that ends it.
enum class EInitializerContextFlags : std::uint32_t {
  /// No context.
  kNone = 0,
  /// The context of services that the other contexts need.
  kCore = 1,
  /// The context of the application itself, with its windows and documents.
  kApplication = 2,
  /// The context of the command console.
  kConsole = 4,
};

/// Returns the contexts that are in at least one of the two sets.
constexpr EInitializerContextFlags operator|(EInitializerContextFlags a,
                                             EInitializerContextFlags b) noexcept {
  return static_cast<EInitializerContextFlags>(static_cast<std::uint32_t>(a) |
                                               static_cast<std::uint32_t>(b));
}

/// Returns the contexts that are in both sets.
constexpr EInitializerContextFlags operator&(EInitializerContextFlags a,
                                             EInitializerContextFlags b) noexcept {
  return static_cast<EInitializerContextFlags>(static_cast<std::uint32_t>(a) &
                                               static_cast<std::uint32_t>(b));
}

/// The content of a registration. Only the implementation uses this type.
struct InitializerRegistration;

/// Registers a pair of functions for any number of contexts. The registration ends when the object
/// is destroyed.
///
/// The initialise function runs when the first context of the registration becomes live. If one of
/// the contexts is already live, the constructor runs the function.
///
/// The shutdown function runs once for each successful initialisation. It runs when the last live
/// context of the registration ends, or when the object is destroyed before that.
///
/// An exception that escapes from a function is logged. In an initialise function, it also counts
/// as a failure.
///
/// A function may start and end contexts, and other threads may do so while it runs. The effect on
/// the function's own registration is deferred until the function returns. The latest call wins. A
/// function must not destroy its own registration.
///
/// Registrars at namespace scope may be constructed and destroyed in any order. Libraries that
/// define them may be loaded and unloaded at run time.
///
/// Threads: safe to use from any thread. The functions run without a lock, on the thread that calls
/// `InitializeContexts`, `ShutdownContexts`, the constructor or the destructor. If another thread
/// is running a function of the registration, the destructor waits for it.
class ORN_EXPORT InitializerRegistrar {
 public:
  /// Registers the functions, and calls `initialize` if one of `contexts` is live. If this call
  /// fails, the constructor logs the failure, and the object is still registered. The next
  /// `InitializeContexts` for one of its contexts calls `initialize` again.
  ///
  /// `name` appears in log lines and need not be unique. `initialize` returns whether it succeeded.
  /// An empty function does nothing, and an empty `initialize` succeeds. The functions of a
  /// registration for `kNone` never run.
  ///
  /// If memory runs out, throws `std::bad_alloc` and registers nothing.
  InitializerRegistrar(std::string_view name, EInitializerContextFlags contexts,
                       std::function<bool()> initialize, std::function<void()> shutdown);

  /// Ends the registration. Runs the shutdown function if the registration is initialised.
  ~InitializerRegistrar();

  /// Not copyable, because each object represents one registration.
  InitializerRegistrar(const InitializerRegistrar&) = delete;
  InitializerRegistrar& operator=(const InitializerRegistrar&) = delete;

 private:
  std::unique_ptr<InitializerRegistration> registration_;
};

/// Starts `contexts`. Initialises all registrations of these contexts that are not initialised yet,
/// in the order of registration.
///
/// Returns true if all initialise functions that it called succeeded. Logs each failure and
/// continues with the next registration. The next call for a context of a failed registration
/// retries its function.
///
/// If another call is running a function of a registration, does not wait for that function and
/// does not report its failure. The other call finishes the initialisation of that registration.
/// Safe to call from any thread.
ORN_EXPORT bool InitializeContexts(EInitializerContextFlags contexts);

/// Ends `contexts`. Shuts down all registrations that have no other live context, in the reverse
/// order of initialisation. Contexts that are not live are ignored.
///
/// If another call is running a function of a registration, does not wait for that function. The
/// other call finishes the shutdown of that registration. Safe to call from any thread.
ORN_EXPORT void ShutdownContexts(EInitializerContextFlags contexts);

}  // namespace orncore::config

#endif  // ORNCORE_CONFIG_INITIALIZERREGISTRAR_H_
