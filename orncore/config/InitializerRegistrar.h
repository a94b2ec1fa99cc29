// Functions of a library that run when its host starts and ends.
//
// A library registers them by constructing an InitializerRegistrar, usually at namespace scope, so
// that loading the library is enough. A host starts and ends contexts:
//
//   orncore::config::InitializeContexts(orncore::config::EInitializerContextFlags::kConsole);
//   ...
//   orncore::config::ShutdownContexts(orncore::config::EInitializerContextFlags::kConsole);
//
// A host that loads and unloads the library at run time calls ShutdownContexts before it unloads
// it.
#ifndef ORNCORE_CONFIG_INITIALIZERREGISTRAR_H_
#define ORNCORE_CONFIG_INITIALIZERREGISTRAR_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <orncore/Export.h>

namespace orncore::config {

/// The contexts of a host, a bit set. A registration belongs to one or more of them.
enum class EInitializerContextFlags : std::uint32_t {
  kNone = 0,
  /// Services that everything else needs.
  kCore = 1,
  /// The application proper: windows, documents.
  kApplication = 2,
  /// The command console.
  kConsole = 4,
};

/// Returns the contexts that are in either set.
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

/// Private to the implementation.
struct InitializerRegistration;

/// A registration, valid as long as the object exists.
///
/// The initialise function runs when the first context of the registration becomes live. If a
/// context is live already, it runs at once. The shutdown function runs when the last of the
/// contexts ends, or when the object is destroyed before that; once for each successful
/// initialisation.
///
/// A function may start and end contexts, and so may other threads meanwhile. The effect on its own
/// registration is deferred until the function has returned; the latest call wins.
///
/// A function must not destroy its own registration. An exception that escapes from a function is
/// logged and counts as a failed initialisation. Global registrars may be constructed and destroyed
/// in any order, also by a library that is loaded and unloaded at run time.
///
/// Threads: safe to use from any thread. The functions run on the thread that starts or ends the
/// context, or that constructs or destroys the object, without a lock. Destruction waits for a
/// function that another thread is running.
class ORN_EXPORT InitializerRegistrar {
 public:
  /// `name` appears in lists and log lines; it need not be unique. An empty function does nothing,
  /// and an empty `initialize` counts as successful. A registration for kNone is listed, but never
  /// initialised.
  InitializerRegistrar(std::string_view name, EInitializerContextFlags contexts,
                       std::function<bool()> initialize, std::function<void()> shutdown);
  ~InitializerRegistrar();

  /// Not copyable, because each object is one registration.
  InitializerRegistrar(const InitializerRegistrar&) = delete;
  InitializerRegistrar& operator=(const InitializerRegistrar&) = delete;

 private:
  std::unique_ptr<InitializerRegistration> registration_;
};

/// Makes the contexts live: initialises, in the order of registration, every registration of one of
/// them that is not initialised yet. Leaves a registration to the thread that is running one of its
/// functions. Returns true if none failed. A failure is logged and does not stop the others; the
/// next call retries it.
ORN_EXPORT bool InitializeContexts(EInitializerContextFlags contexts);

/// Ends the contexts: shuts down, in the reverse order of initialisation, all registrations without
/// another live context. Ignores contexts that are not live.
ORN_EXPORT void ShutdownContexts(EInitializerContextFlags contexts);

/// Returns the names of all registrations, in the order of registration.
ORN_EXPORT std::vector<std::string> GetRegisteredInitializers();

}  // namespace orncore::config

#endif  // ORNCORE_CONFIG_INITIALIZERREGISTRAR_H_
