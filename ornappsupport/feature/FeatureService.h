// The host's beta features, their switches, and the internal-features permission.
//
// A host implements FeatureService with its own switches and registers it once, at start:
//
//   ornappsupport::feature::SetFeatureService(std::make_shared<MySwitches>());
//
// or uses a FixedFeatureService. By default there are no beta features and no permission.
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

/// The interface that a host implements to describe its beta features.
///
/// Threads: called on the thread that uses a list.
class ORN_EXPORT FeatureService {
 public:
  FeatureService() = default;
  FeatureService(const FeatureService&) = delete;
  FeatureService& operator=(const FeatureService&) = delete;
  virtual ~FeatureService();

  /// Returns the table. It must neither move nor change during a call into a list; the host may
  /// change it between calls.
  virtual const BetaFeatureMap& GetBetaFeatures() const = 0;

  /// Returns whether the feature is switched on for this user. Called only with keys of the table.
  virtual bool IsEnabled(std::string_view internalKey) const = 0;

  /// Returns whether the user may switch the feature on. Called only with keys of the table.
  virtual bool IsAvailableForUser(std::string_view internalKey) const = 0;

  /// Returns whether the user has the internal-features permission.
  virtual bool AreInternalFeaturesAllowed() const = 0;
};

/// Beta features in memory. `FeatureService` documents the overridden methods.
///
/// Threads: add features before it is registered, or on the thread that uses the lists. Reading is
/// safe from any thread while no thread writes.
class ORN_EXPORT FixedFeatureService final : public FeatureService {
 public:
  /// Creates an empty table without the permission.
  FixedFeatureService();
  ~FixedFeatureService() override;

  /// Adds a feature. Replaces one with the same internal key.
  void Add(std::string internalKey, BetaFeature feature, bool enabled, bool availableForUser);

  /// Sets the internal-features permission, which is false by default.
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

/// Replaces the service. Null restores the default: an empty table without the permission. Must not
/// be called during a call into a list: references to the table of the old service become invalid.
ORN_EXPORT void SetFeatureService(std::shared_ptr<const FeatureService> service);

/// Returns the current table of the host. The reference is valid until the service is replaced.
ORN_EXPORT const BetaFeatureMap& GetConstBetaFeatureMap();

/// Returns whether the feature is switched on. False for null and for a key that is not in the
/// table.
ORN_EXPORT bool IsFeatureEnabled(const char* internalKey);

/// Returns whether the user may switch the feature on. False for null and for a key that is not in
/// the table.
ORN_EXPORT bool IsAvailableForUserEnablement(const char* internalKey);

/// Returns whether the user has the internal-features permission.
ORN_EXPORT bool IsEntitlementSetToInternalFeaturesAllowed();

}  // namespace ornappsupport::feature

#endif  // ORNAPPSUPPORT_FEATURE_FEATURESERVICE_H_
