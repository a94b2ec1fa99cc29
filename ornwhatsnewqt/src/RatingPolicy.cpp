#include "ornwhatsnewqt/src/RatingPolicy.h"

#include <utility>

#include "ornwhatsnewqt/src/SettingsStore.h"

namespace ornwhatsnewqt {
namespace {

constexpr int kDaysBeforeFirstRequest = 14;

}  // namespace

RatingPolicy::RatingPolicy(SettingsStore& store, Clock clock) : clock_(std::move(clock)) {
  const QString key = QStringLiteral("WhatsNew.FirstStart");
  const QDateTime now = clock_();
  firstStart_ = QDateTime::fromString(store.value(key).toString(), Qt::ISODate);
  if (firstStart_.isValid() && firstStart_ <= now) return;
  firstStart_ = now;
  store.setValue(key, now.toString(Qt::ISODate));
}

bool RatingPolicy::allowsRequest() const {
  return !isUsed_ && firstStart_.addDays(kDaysBeforeFirstRequest) <= clock_();
}

}  // namespace ornwhatsnewqt
