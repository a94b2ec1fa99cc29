// What a library wants done when its host starts and ends, told to the host by a global object.
//
// A library registers by constructing an InitializerRegistrar, usually at namespace scope, so that
// loading the library is enough. A host says when it is ready, and when it ends:
//
//   orncore::config::InitializeContexts(orncore::config::EInitializerContextFlags::kConsole);
//   ...
//   orncore::config::ShutdownContexts(orncore::config::EInitializerContextFlags::kConsole);
//
// A host with start-up machinery of its own calls these two from it.
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

/// The contexts of a host that registrations belong to: a bit set.
enum class EInitializerContextFlags : std::uint32_t {
  kNone = 0,
  /// Services without which nothing else runs.
  kCore = 1,
  /// The application proper: windows, documents.
  kApplication = 2,
  /// The command console.
  kConsole = 4,
};

/// The contexts that are in either set.
constexpr EInitializerContextFlags operator|(EInitializerContextFlags a,
                                             EInitializerContextFlags b) noexcept {
  return static_cast<EInitializerContextFlags>(static_cast<std::uint32_t>(a) |
                                               static_cast<std::uint32_t>(b));
}

/// The contexts that are in both sets.
constexpr EInitializerContextFlags operator&(EInitializerContextFlags a,
                                             EInitializerContextFlags b) noexcept {
  return static_cast<EInitializerContextFlags>(static_cast<std::uint32_t>(a) &
                                               static_cast<std::uint32_t>(b));
}

/// What the registry keeps of one registration; its members are the implementation's own.
struct InitializerRegistration;

/// One registration, for as long as the object lives.
///
/// The initialise function runs when the first context of the registration becomes live; a
/// registration made while one of them is live is initialised at once. The shutdown function runs
/// when the last of them ends, or when the object is destroyed before that; never without a
/// successful initialisation, and once for each.
///
/// A function may start and end contexts. What this, or another thread meanwhile, means for its own
/// registration is done as soon as it has returned: the last word counts.
///
/// Neither function may let the registration be destroyed; an exception out of one is logged, and
/// counts as a failed initialisation. Safe as a global object, constructed and destroyed in any
/// order with others and by a library that is loaded and unloaded at run time.
///
/// Threads: safe from any. The functions run on the thread that starts or ends the context, or
/// constructs or destroys the object, without any lock held. Destruction waits for a function of
/// this registration that another thread is running.
class ORN_EXPORT InitializerRegistrar {
 public:
  /// `name` is for people and need not be unique. An empty function does nothing; an empty
  /// `initialize` counts as successful. A registration for kNone is listed and never initialised.
  InitializerRegistrar(std::string_view name, EInitializerContextFlags contexts,
                       std::function<bool()> initialize, std::function<void()> shutdown);
  ~InitializerRegistrar();

  /// Not copyable: a registration has one place and one life.
  InitializerRegistrar(const InitializerRegistrar&) = delete;
  InitializerRegistrar& operator=(const InitializerRegistrar&) = delete;

 private:
  std::shared_ptr<InitializerRegistration> registration_;
};

/// Makes the contexts live: initialises, in the order of registration, every registration of one of
/// them that is not initialised yet. True when none of those failed. A failed one does not stop the
/// others; it is logged, and tried again by the next call.
ORN_EXPORT bool InitializeContexts(EInitializerContextFlags contexts);

/// Ends the contexts: shuts down, in the reverse order of their initialisation, all registrations
/// of which no other context is live. Contexts that are not live are passed over.
ORN_EXPORT void ShutdownContexts(EInitializerContextFlags contexts);

/// The names of all registrations, in the order of registration.
ORN_EXPORT std::vector<std::string> GetRegisteredInitializers();

}  // namespace orncore::config

#endif  // ORNCORE_CONFIG_INITIALIZERREGISTRAR_H_
