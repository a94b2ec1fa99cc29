#include "ornwhatsnewqt/src/RatingPolicy.h"

#include <QtTest/QTest>

#include "ornwhatsnewqt/src/SettingsStore.h"
#include "tests/ornwhatsnewqt/QtTests.h"
#include "tests/ornwhatsnewqt/TestWorld.h"

namespace {

using ornwhatsnewqt::RatingPolicy;
using ornwhatsnewqt::SettingsStore;

QDateTime onDay(int day) {
  return QDateTime(QDate(2026, 3, 1).addDays(day), QTime(12, 0), Qt::UTC);
}

class RatingPolicyTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void asksOnlyFromThe14thDay();
  void remembersTheFirstStart();
  void startsAgainAfterAClockThatWasAhead();
  void asksOnceInASession();
};

void RatingPolicyTest::asksOnlyFromThe14thDay() {
  const test_support::TestWorld world;
  SettingsStore store(world.settings());
  QDateTime now = onDay(0);
  const RatingPolicy policy(store, [&now] { return now; });
  QVERIFY(!policy.allowsRequest());
  now = onDay(14).addSecs(-1);
  QVERIFY(!policy.allowsRequest());
  now = onDay(14);
  QVERIFY(policy.allowsRequest());
}

void RatingPolicyTest::remembersTheFirstStart() {
  const test_support::TestWorld world;
  SettingsStore store(world.settings());
  {
    const RatingPolicy first(store, [] { return onDay(0); });
  }
  const RatingPolicy later(store, [] { return onDay(20); });
  QVERIFY(later.allowsRequest());
}

void RatingPolicyTest::startsAgainAfterAClockThatWasAhead() {
  const test_support::TestWorld world;
  SettingsStore store(world.settings());
  {
    const RatingPolicy wrong(store, [] { return onDay(5000); });
  }
  {
    const RatingPolicy corrected(store, [] { return onDay(0); });
  }
  const RatingPolicy later(store, [] { return onDay(14); });
  QVERIFY(later.allowsRequest());
}

void RatingPolicyTest::asksOnceInASession() {
  const test_support::TestWorld world;
  world.storeFirstStart(onDay(0));
  SettingsStore store(world.settings());
  RatingPolicy policy(store, [] { return onDay(100); });
  policy.close();  // the panel showed only the news
  QVERIFY(policy.allowsRequest());
  policy.open();
  QVERIFY(policy.allowsRequest());
  policy.close();
  QVERIFY(!policy.allowsRequest());
  QVERIFY(RatingPolicy(store, [] { return onDay(100); }).allowsRequest());
}

const test_support::RegisteredTest<RatingPolicyTest, QCoreApplication> kRatingPolicyTest;

}  // namespace

#include "RatingPolicyTest.moc"
