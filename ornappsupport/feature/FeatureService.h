// The host's beta features: their table, and what is switched on, available and allowed.
//
// A host implements FeatureService over its own switches and registers it once, at start:
//
//   ornappsupport::feature::SetFeatureService(std::make_shared<MySwitches>());
//
// or fills a FixedFeatureService. Without one there are no beta features, and nothing is allowed.
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

/// What the host knows of its beta features: the interface that it implements.
///
/// Threads: called on whatever thread owns the list that asks.
class ORN_EXPORT FeatureService {
 public:
  FeatureService() = default;
  FeatureService(const FeatureService&) = delete;
  FeatureService& operator=(const FeatureService&) = delete;
  virtual ~FeatureService();

  /// The table. It stays where it is, and unchanged during a call into a list; between calls the
  /// host may change it.
  virtual const BetaFeatureMap& GetBetaFeatures() const = 0;

  /// Whether the feature is switched on for this user. Asked for keys of the table only.
  virtual bool IsEnabled(std::string_view internalKey) const = 0;

  /// Whether the user may switch the feature on. Asked for keys of the table only.
  virtual bool IsAvailableForUser(std::string_view internalKey) const = 0;

  /// Whether the user has the internal-features permission.
  virtual bool AreInternalFeaturesAllowed() const = 0;
};

/// Beta features in memory. What it overrides is described at the interface.
///
/// Threads: filled before it is registered, or on the thread of the lists; reading is safe from any
/// thread while nobody writes.
class ORN_EXPORT FixedFeatureService final : public FeatureService {
 public:
  /// An empty table; nothing is allowed.
  FixedFeatureService();
  ~FixedFeatureService() override;

  /// Adds a feature, in place of one with the same internal key.
  void Add(std::string internalKey, BetaFeature feature, bool enabled, bool availableForUser);

  /// Sets the internal-features permission; false at first.
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

/// Replaces the service; null: an empty table and nothing allowed, as at the start. Not while a
/// list, or another thread, is asking: references to the old table end with the old service.
ORN_EXPORT void SetFeatureService(std::shared_ptr<const FeatureService> service);

/// The host's table of the moment. The reference leads into the service, which nobody holds for the
/// caller: it ends when the service is replaced, even by a query of the service itself.
ORN_EXPORT const BetaFeatureMap& GetConstBetaFeatureMap();

/// Whether the feature is switched on; false for a key that the table lacks, and for null.
ORN_EXPORT bool IsFeatureEnabled(const char* internalKey);

/// Whether the user may switch the feature on; false for a key that the table lacks, and for null.
ORN_EXPORT bool IsAvailableForUserEnablement(const char* internalKey);

/// Whether the user has the internal-features permission.
ORN_EXPORT bool IsEntitlementSetToInternalFeaturesAllowed();

}  // namespace ornappsupport::feature

#endif  // ORNAPPSUPPORT_FEATURE_FEATURESERVICE_H_
