#include "ornwhatsnewqt/src/RatingPage.h"

#include <memory>

#include <QtCore/QPointer>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>

#include "ornwhatsnewqt/src/RatingCard.h"
#include "tests/ornwhatsnewqt/QtTests.h"

namespace {

using ornwhatsnew::RatingRequest;
using ornwhatsnewqt::RatingCard;
using ornwhatsnewqt::RatingPage;

const RatingRequest kMap{"EPIC-1", u"Map", u"Do you find your way?", u"Shows finds."};
const RatingRequest kScanner{"EPIC-2", u"Scanner", u"", u""};
const RatingRequest kExport{"EPIC-3", u"Export", u"", u""};

class RatingPageTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void showsTheQuestionOrTheGeneralOne();
  void textsCannotChangeTheDirectionOfOtherText();
  void hasFiveNamedButtonsInAGroup();
  void aRatingNeedsAChoice();
  void reportsOnceAndThanks();
  void movesTheFocusToTheNextRequest();
  void movesTheFocusFromTheLastRequestToTheFirst();
  void reportsThatAllFeaturesAreRated();
  void worksWithTheKeyboardAlone();
  void keepsTheChoicesWhenRequestsAreShownAgain();
  void removesRequestsThatAreGone();
  void mayBeClearedWhenItReportsARating();
  void fitsANarrowPanel();

 private:
  RatingCard& card(int index) const { return *page_->findChildren<RatingCard*>().at(index); }
  QRadioButton& choice(int index, int stars) const {
    return *card(index).findChildren<QRadioButton*>().at(stars - 1);
  }
  QPushButton& sendButton(int index) const {
    return *card(index).findChild<QPushButton*>(QStringLiteral("send"));
  }
  QLabel& label(int index, const char* name) const {
    return *card(index).findChild<QLabel*>(QLatin1String(name));
  }

  std::unique_ptr<RatingPage> page_;
};

void RatingPageTest::init() {
  page_ = std::make_unique<RatingPage>(nullptr);
  page_->showRequests({kMap, kScanner});
  page_->resize(600, 600);
  page_->show();
  page_->activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(page_.get()));
}

void RatingPageTest::cleanup() {
  page_.reset();
}

void RatingPageTest::showsTheQuestionOrTheGeneralOne() {
  QCOMPARE(label(0, "title").text(), QStringLiteral("Map"));
  QCOMPARE(label(0, "question").text(), QStringLiteral("Do you find your way?"));
  QCOMPARE(label(0, "description").text(), QStringLiteral("Shows finds."));
  QCOMPARE(label(1, "question").text(), QStringLiteral("How do you like it?"));
  QVERIFY(!label(1, "description").isVisible());
}

void RatingPageTest::textsCannotChangeTheDirectionOfOtherText() {
  page_->showRequests({{"EPIC-1", u"\u202EMap", u"\u2066Good?\u0007", u"Shows\u202B finds."}});
  QCOMPARE(label(0, "title").text(), QStringLiteral("Map"));
  QCOMPARE(label(0, "question").text(), QStringLiteral("Good?\uFFFD"));
  QCOMPARE(label(0, "description").text(), QStringLiteral("Shows finds."));
}

void RatingPageTest::hasFiveNamedButtonsInAGroup() {
  QStringList names;
  for (const QRadioButton* button : card(0).findChildren<QRadioButton*>())
    names.append(button->text());
  QCOMPARE(names,
           (QStringList{QStringLiteral("Poor"), QStringLiteral("Fair"), QStringLiteral("Good"),
                        QStringLiteral("Very good"), QStringLiteral("Excellent")}));
  choice(0, 2).click();
  choice(0, 4).click();
  QVERIFY(!choice(0, 2).isChecked());
  choice(1, 1).click();
  QVERIFY(choice(0, 4).isChecked());
}

void RatingPageTest::aRatingNeedsAChoice() {
  QSignalSpy spy(page_.get(), &RatingPage::rated);
  QVERIFY(!sendButton(0).isEnabled());
  QTest::keyClick(card(0).findChild<QLineEdit*>(), Qt::Key_Return);
  QCOMPARE(spy.size(), 0);
  choice(0, 1).click();
  QVERIFY(sendButton(0).isEnabled());
}

void RatingPageTest::reportsOnceAndThanks() {
  QSignalSpy spy(page_.get(), &RatingPage::rated);
  choice(0, 4).click();
  QTest::keyClicks(card(0).findChild<QLineEdit*>(), QStringLiteral("  fine "));
  sendButton(0).click();
  sendButton(0).click();
  QCOMPARE(spy.size(), 1);
  QCOMPARE(spy.first(), (QVariantList{QStringLiteral("EPIC-1"), 4, QStringLiteral("fine")}));
  QVERIFY(label(0, "thanks").isVisible());
  QVERIFY(!sendButton(0).isVisible());
  QVERIFY(!choice(0, 4).isVisible());
}

void RatingPageTest::movesTheFocusToTheNextRequest() {
  page_->showRequests({kMap, kScanner, kExport});
  choice(1, 4).click();
  sendButton(1).setFocus();
  sendButton(1).click();
  QCOMPARE(QApplication::focusWidget(), &choice(2, 1));
  QVERIFY(!choice(2, 1).isChecked());
}

void RatingPageTest::movesTheFocusFromTheLastRequestToTheFirst() {
  page_->showRequests({kMap, kScanner, kExport});
  choice(2, 4).click();
  sendButton(2).click();
  QCOMPARE(QApplication::focusWidget(), &choice(0, 1));
  choice(0, 4).click();
  sendButton(0).click();
  QCOMPARE(QApplication::focusWidget(), &choice(1, 1));
}

void RatingPageTest::reportsThatAllFeaturesAreRated() {
  QSignalSpy spy(page_.get(), &RatingPage::finished);
  choice(1, 5).click();
  sendButton(1).click();
  QCOMPARE(QApplication::focusWidget(), &choice(0, 1));
  QCOMPARE(spy.size(), 0);
  choice(0, 5).click();
  sendButton(0).click();
  QCOMPARE(spy.size(), 1);
}

void RatingPageTest::worksWithTheKeyboardAlone() {
  QSignalSpy spy(page_.get(), &RatingPage::rated);
  const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
  QVERIFY(page_->focusNextCard());
  press(Qt::Key_Space);
  press(Qt::Key_Right);
  press(Qt::Key_Right);
  QVERIFY(choice(0, 3).isChecked());
  press(Qt::Key_Tab);
  QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("ok"));
  press(Qt::Key_Tab);
  press(Qt::Key_Space);
  QCOMPARE(spy.size(), 1);
  QCOMPARE(spy.first(), (QVariantList{QStringLiteral("EPIC-1"), 3, QStringLiteral("ok")}));
  QCOMPARE(QApplication::focusWidget(), &choice(1, 1));
}

void RatingPageTest::keepsTheChoicesWhenRequestsAreShownAgain() {
  choice(0, 2).click();
  sendButton(0).click();
  choice(1, 5).click();
  RatingRequest translated = kScanner;
  translated.title = u"Leser";
  page_->showRequests({translated});
  QVERIFY(label(0, "thanks").isVisible());
  QVERIFY(choice(1, 5).isChecked());
  QCOMPARE(label(1, "title").text(), QStringLiteral("Leser"));
}

void RatingPageTest::removesRequestsThatAreGone() {
  page_->showRequests({kScanner});
  QTRY_COMPARE(page_->findChildren<RatingCard*>().size(), 1);
  QCOMPARE(card(0).itemKey(), QStringLiteral("EPIC-2"));
  page_->showRequests({});
  QVERIFY(page_->isEmpty());
  QVERIFY(!page_->focusNextCard());
}

void RatingPageTest::mayBeClearedWhenItReportsARating() {
  const QPointer<RatingCard> rated = &card(0);
  bool isAliveAfterwards = false;
  connect(page_.get(), &RatingPage::rated, page_.get(), [&] {
    page_->clear();
    isAliveAfterwards = !rated.isNull();
  });
  choice(0, 4).click();
  sendButton(0).click();
  QVERIFY(isAliveAfterwards);
  QVERIFY(page_->isEmpty());
  QTRY_VERIFY(rated.isNull());
}

void RatingPageTest::fitsANarrowPanel() {
  page_->resize(320, 600);
  QTRY_VERIFY(page_->widget()->width() <= page_->viewport()->width());
  QVERIFY(choice(0, 5).y() > choice(0, 1).y());
}

const test_support::RegisteredTest<RatingPageTest> kRatingPageTest;

}  // namespace

#include "RatingPageTest.moc"
