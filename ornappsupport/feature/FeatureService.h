// Gives the library access to the beta features of the host, to their switches, and to the
// internal-features permission.
//
// A host implements FeatureService with its own switches and registers it once at startup:
//
//   ornappsupport::feature::SetFeatureService(std::make_shared<MySwitches>());
//
// A host can also fill a FixedFeatureService. By default, there are no beta features and no
// permission.
#ifndef ORNAPPSUPPORT_FEATURE_FEATURESERVICE_H_
#define ORNAPPSUPPORT_FEATURE_FEATURESERVICE_H_

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include <ornappsupport/feature/BetaFeature.h>
#include <orncore/Export.h>

namespace ornappsupport::feature {

/// The interface that a host implements to describe its beta features. A list creates its items
/// from the feature table when it loads a data file. It queries the switches and the permission
/// during each call that uses them, and caches neither. It also reads the visibilities from the
/// table whenever it determines an unlock label or the key order. Exceptions that an
/// implementation throws propagate to the caller of the list.
///
/// Threads: the library calls the methods on the thread that uses a list. The console command
/// `ValidateWhatsNew` uses a list on a background thread while the thread that runs the command
/// waits. If a host uses lists on several threads, the methods must be safe to call from all of
/// them at the same time.
class ORN_EXPORT FeatureService {
 public:
  FeatureService() = default;
  FeatureService(const FeatureService&) = delete;
  FeatureService& operator=(const FeatureService&) = delete;
  virtual ~FeatureService();

  /// Returns the feature table. The table must not change, move or be destroyed during a call to a
  /// method of a list. The host may change the table between these calls.
  virtual const BetaFeatureMap& GetBetaFeatures() const = 0;

  /// Returns whether the feature is switched on for the user. `internalKey` is always a key of the
  /// table.
  virtual bool IsEnabled(std::string_view internalKey) const = 0;

  /// Returns whether the user can switch the feature on. `internalKey` is always a key of the
  /// table.
  virtual bool IsAvailableForUser(std::string_view internalKey) const = 0;

  /// Returns whether the user has the internal-features permission. A list shows the sections
  /// INTERNAL and UNREVIEWED, internal keys, issue keys, commit IDs and notes only to a user with
  /// this permission.
  virtual bool AreInternalFeaturesAllowed() const = 0;
};

/// Stores a feature table, the switches of its features, and the permission in memory.
/// `FeatureService` documents the overridden methods.
///
/// Threads: reading is safe from any thread while no thread calls `Add` or
/// `SetInternalFeaturesAllowed`. Call these two methods only while no method of a list runs.
class ORN_EXPORT FixedFeatureService final : public FeatureService {
 public:
  /// Creates a service with an empty feature table. The user does not have the permission.
  FixedFeatureService();
  ~FixedFeatureService() override;

  /// Adds a feature, or replaces the feature with the same internal key. `enabled` is the result of
  /// `IsEnabled`, and `availableForUser` is the result of `IsAvailableForUser`.
  void Add(std::string internalKey, BetaFeature feature, bool enabled, bool availableForUser);

  /// Sets whether the user has the internal-features permission. By default, the user does not have
  /// it.
  void SetInternalFeaturesAllowed(bool allowed) noexcept { internalFeaturesAllowed_ = allowed; }

  const BetaFeatureMap& GetBetaFeatures() const override;
  bool IsEnabled(std::string_view internalKey) const override;
  bool IsAvailableForUser(std::string_view internalKey) const override;
  bool AreInternalFeaturesAllowed() const override;

 private:
  using Keys = std::set<std::string, std::less<>>;

  BetaFeatureMap features_;
  Keys enabled_;
  Keys available_;
  bool internalFeaturesAllowed_ = false;
};

/// Replaces the service. The library shares ownership of `service`. Null restores the default: an
/// empty table and no permission.
///
/// Do not call this function while a method of a list runs. The list may use a reference to the
/// table of the previous service. At other times, the function is safe to call from any thread.
ORN_EXPORT void SetFeatureService(std::shared_ptr<const FeatureService> service);

/// Returns the feature table of the host, or an empty table if no service is set. The reference is
/// valid until the service is replaced or the host changes its table. Queries the service on the
/// calling thread.
ORN_EXPORT const BetaFeatureMap& GetConstBetaFeatureMap();

/// Returns whether the feature is switched on for the user. Returns false if `internalKey` is null
/// or not a key of the table. Queries the service on the calling thread.
ORN_EXPORT bool IsFeatureEnabled(const char* internalKey);

/// Returns whether the user can switch the feature on. Returns false if `internalKey` is null or
/// not a key of the table. Queries the service on the calling thread.
ORN_EXPORT bool IsAvailableForUserEnablement(const char* internalKey);

/// Returns whether the user has the internal-features permission. Returns false if no service is
/// set. Queries the service on the calling thread.
ORN_EXPORT bool IsEntitlementSetToInternalFeaturesAllowed();

}  // namespace ornappsupport::feature

#endif  // ORNAPPSUPPORT_FEATURE_FEATURESERVICE_H_
