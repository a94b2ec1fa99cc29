// Decides when a user may be asked to rate features.
#ifndef ORNWHATSNEWQT_SRC_RATINGPOLICY_H_
#define ORNWHATSNEWQT_SRC_RATINGPOLICY_H_

#include <functional>

#include <QtCore/QDateTime>

namespace ornwhatsnewqt {

class SettingsStore;

/// Allows one request to rate features in a session, and none in the first 14 days after the first
/// start. A session lasts until the program ends.
class RatingPolicy {
 public:
  using Clock = std::function<QDateTime()>;

  /// Reads the time of the first start from `store`. If the time is missing, malformed, or in the
  /// future because a clock was wrong, stores the current time instead. Does not use `store` after
  /// construction.
  explicit RatingPolicy(SettingsStore& store, Clock clock = &QDateTime::currentDateTimeUtc);

  /// Returns whether the user may be asked to rate features now.
  bool allowsRequest() const;

  /// Records that the rating page was opened. The page remains available until the panel is closed.
  void open() { isOpen_ = true; }

  /// Records that the panel was closed. If the rating page was opened, `allowsRequest` returns
  /// false for the rest of the session.
  void close() { isUsed_ = isUsed_ || isOpen_; }

 private:
  Clock clock_;
  QDateTime firstStart_;
  bool isOpen_ = false;
  bool isUsed_ = false;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_RATINGPOLICY_H_
