#include <QtGui/QAccessible>

#include <memory>

#include <QtGui/private/qguiapplication_p.h>
#include <QtGui/qpa/qplatformaccessibility.h>
#include <QtGui/qpa/qplatformintegration.h>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QScrollBar>

#include <ornwhatsnewqt/PanelWidget.h>
#include <ornwhatsnewqt/WhatsNew.h>

#include "ornwhatsnewqt/src/NewsPage.h"
#include "ornwhatsnewqt/src/RatingCard.h"
#include "ornwhatsnewqt/src/RatingPage.h"
#include "ornwhatsnewqt/src/SearchBar.h"
#include "tests/ornwhatsnewqt/QtTests.h"
#include "tests/ornwhatsnewqt/TestLayout.h"
#include "tests/ornwhatsnewqt/TestWorld.h"

namespace {

using ornwhatsnew::StyleID;
using ornwhatsnewqt::NewsPage;
using ornwhatsnewqt::PanelStyle;
using ornwhatsnewqt::PanelWidget;
using ornwhatsnewqt::RatingPage;
using ornwhatsnewqt::SearchBar;
using ornwhatsnewqt::WhatsNew;
using test_support::TestLayout;

struct AccessibilityEvent {
  QAccessible::Event type;
  QObject* object;
  int child;
};

QList<AccessibilityEvent>& events() {
  static QList<AccessibilityEvent> list;
  return list;
}

void recordEvent(QAccessibleEvent* event) {
  events().append({event->type(), event->object(), event->child()});
}

bool hasEvent(QAccessible::Event type, const QObject* object) {
  return std::ranges::any_of(events(), [&](const AccessibilityEvent& event) {
    return event.type == type && event.object == object;
  });
}

class PanelAccessibilityTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void cleanupTestCase();
  void init();
  void cleanup();
  void thePageIsADocument();
  void everyItemHasAHeading();
  void everyLinkIsALink();
  void aLinkCanBePressed();
  void theFocusOfALinkIsReported();
  void elementsHaveTheirPosition();
  void elementsFollowTheLayout();
  void thePageHasAText();
  void bothHalvesOfACharacterHaveItsOffset();
  void offsetsInTheTextArePositionsInTheDocument();
  void theTextHasASelection();
  void thanksAreAnnounced();
  void missingMatchesAreAnnounced();
  void everyControlHasANameAndADescription();
  void ratingsAreRadioButtonsInANamedGroup();
  void filtersAreANamedGroup();

 private:
  QAccessibleInterface* pageInterface() const {
    return QAccessible::queryAccessibleInterface(page_.get());
  }
  QList<QAccessibleInterface*> children(QAccessible::Role role) const;

  std::unique_ptr<NewsPage> page_;
};

void PanelAccessibilityTest::initTestCase() {
  // Activate the accessibility events, because no assistive technology does this during a test.
  QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
  QAccessible::installUpdateHandler(recordEvent);
}

void PanelAccessibilityTest::cleanupTestCase() {
  QAccessible::installUpdateHandler(nullptr);
}

void PanelAccessibilityTest::init() {
  page_ = std::make_unique<NewsPage>();
  page_->setAccessibleName(QStringLiteral("News"));
  TestLayout layout;
  layout.header(u"Changes since v4.2").title(u"Map", u"UNLOCKED");
  layout.description({{u"Shows finds. ", StyleID::kStyleFeatureDescription},
                      {u"View more", StyleID::kStyleHotSpot, u"https://a.example/map"}});
  layout.change(u"Faster").title(u"Scanner");
  layout.change({{u"Smaller ", StyleID::kStyleChangeText},
                 {u"ORN-1", StyleID::kStyleIssueLink, u"https://a.example/1"},
                 {u" evil", StyleID::kStyleHotSpot, u"file:///etc/passwd"}});
  page_->showLayout(layout.layout(), PanelStyle(QApplication::palette(), QFont()));
  page_->resize(500, 600);
  page_->show();
  page_->activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(page_.get()));
  page_->setFocus();
  events().clear();
}

void PanelAccessibilityTest::cleanup() {
  page_.reset();
}

QList<QAccessibleInterface*> PanelAccessibilityTest::children(QAccessible::Role role) const {
  QList<QAccessibleInterface*> found;
  for (int i = 0; i < pageInterface()->childCount(); ++i) {
    QAccessibleInterface* const child = pageInterface()->child(i);
    if (child->role() == role) found.append(child);
  }
  return found;
}

void PanelAccessibilityTest::thePageIsADocument() {
  QCOMPARE(pageInterface()->role(), QAccessible::Document);
  QCOMPARE(pageInterface()->text(QAccessible::Name), QStringLiteral("News"));
  QVERIFY(pageInterface()->state().readOnly);
  QVERIFY(pageInterface()->state().focused);
  QCOMPARE(pageInterface()->childCount(), 8);
  QCOMPARE(pageInterface()->child(8), nullptr);
  QCOMPARE(pageInterface()->child(-1), nullptr);
}

void PanelAccessibilityTest::everyItemHasAHeading() {
  const auto headings = children(QAccessible::Heading);
  QCOMPARE(headings.size(), 2);
  QCOMPARE(headings[0]->text(QAccessible::Name), QStringLiteral("Map UNLOCKED"));
  QCOMPARE(headings[1]->text(QAccessible::Name), QStringLiteral("Scanner"));
  QCOMPARE(headings[0]->parent(), pageInterface());
  QCOMPARE(pageInterface()->indexOfChild(headings[0]), 1);
  QCOMPARE(pageInterface()->child(1), headings[0]);
}

void PanelAccessibilityTest::everyLinkIsALink() {
  const auto links = children(QAccessible::Link);
  QCOMPARE(links.size(), 2);
  QCOMPARE(links[0]->text(QAccessible::Name), QStringLiteral("View more"));
  QCOMPARE(links[0]->text(QAccessible::Description), QStringLiteral("https://a.example/map"));
  QVERIFY(links[0]->state().linked);
  QVERIFY(links[0]->state().focusable);
  QCOMPARE(links[1]->text(QAccessible::Name), QStringLiteral("ORN-1"));
}

void PanelAccessibilityTest::aLinkCanBePressed() {
  QSignalSpy spy(page_.get(), &QTextBrowser::anchorClicked);
  QAccessibleInterface* const link = children(QAccessible::Link).first();
  link->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  QCOMPARE(spy.size(), 1);
  QCOMPARE(spy.first().first().toUrl(), QUrl(QStringLiteral("https://a.example/map")));
  QCOMPARE(children(QAccessible::Heading).first()->actionInterface(), nullptr);
}

void PanelAccessibilityTest::theFocusOfALinkIsReported() {
  QCOMPARE(pageInterface()->focusChild(), pageInterface());
  QTest::keyClick(page_.get(), Qt::Key_Tab);
  QAccessibleInterface* const link = children(QAccessible::Link).first();
  QVERIFY(link->state().focused);
  QCOMPARE(pageInterface()->focusChild(), link);
  const auto isFocusOfLink = [&](const AccessibilityEvent& event) {
    return event.type == QAccessible::Focus && event.object == page_.get() &&
           event.child == pageInterface()->indexOfChild(link);
  };
  QVERIFY(std::ranges::any_of(events(), isFocusOfLink));
}

void PanelAccessibilityTest::elementsHaveTheirPosition() {
  QAccessibleInterface* const link = children(QAccessible::Link).first();
  const QRect rect = link->rect();
  QVERIFY(rect.width() > 20);
  QVERIFY(pageInterface()->rect().contains(rect));
  for (const int x : {rect.left() + 1, rect.center().x(), rect.right() - 1})
    QCOMPARE(pageInterface()->childAt(x, rect.center().y()), link);
  QCOMPARE(pageInterface()->childAt(rect.right() + 20, rect.center().y()), nullptr);
  QVERIFY(!link->state().offscreen);
  page_->resize(500, 60);
  QVERIFY(link->state().offscreen);
}

void PanelAccessibilityTest::elementsFollowTheLayout() {
  QAccessibleInterface* const heading = pageInterface()->child(1);
  QAccessibleInterface* const last = pageInterface()->child(7);
  TestLayout layout;
  layout.header(u"Changes").title(u"Other");
  page_->showLayout(layout.layout(), PanelStyle(QApplication::palette(), QFont()));
  QCOMPARE(pageInterface()->childCount(), 2);
  QCOMPARE(heading->text(QAccessible::Name), QStringLiteral("Other"));
  QVERIFY(!last->isValid());
  QCOMPARE(last->role(), QAccessible::NoRole);
  QCOMPARE(last->text(QAccessible::Name), QString());
  QVERIFY(last->rect().isNull());
  QVERIFY(hasEvent(QAccessible::ObjectReorder, page_.get()));
}

void PanelAccessibilityTest::thePageHasAText() {
  QAccessibleTextInterface* const text = pageInterface()->textInterface();
  QVERIFY(text != nullptr);
  QCOMPARE(text->text(0, 7), QStringLiteral("Changes"));
  // A word joiner, which has no width, is before the label.
  QVERIFY(text->text(0, 1000)
              .remove(QChar(0x2060))
              .startsWith(QStringLiteral("Changes since v4.2\nMap UNLOCKED\n")));
  int begin = -1;
  int end = -1;
  QCOMPARE(text->textAtOffset(1, QAccessible::WordBoundary, &begin, &end),
           QStringLiteral("Changes"));
  text->attributes(1, &begin, &end);
  QCOMPARE(begin, 0);
  QCOMPARE(end, 18);
}

void PanelAccessibilityTest::bothHalvesOfACharacterHaveItsOffset() {
  TestLayout layout;
  layout.header(u"Map \U0001F389");  // an emoji, which has two UTF-16 code units
  page_->showLayout(layout.layout(), PanelStyle(QApplication::palette(), QFont()));
  QAccessibleTextInterface* const text = pageInterface()->textInterface();
  for (const int offset : {0, 1, 4}) {
    const QRect rect = text->characterRect(offset);
    const QPoint quarter(rect.width() / 4, 0);
    QCOMPARE(text->offsetAtPoint(rect.center() - quarter), offset);
    QCOMPARE(text->offsetAtPoint(rect.center() + quarter), offset);
  }
  QCOMPARE(text->offsetAtPoint(text->characterRect(4).center() + QPoint(100, 0)), -1);
  QCOMPARE(text->offsetAtPoint(text->characterRect(0).center() + QPoint(0, 100)), -1);
}

// The document has an invisible character before each label.
void PanelAccessibilityTest::offsetsInTheTextArePositionsInTheDocument() {
  QAccessibleTextInterface* const text = pageInterface()->textInterface();
  QCOMPARE(text->text(0, text->characterCount()).size(), text->characterCount());
  const int position = page_->document()->find(QStringLiteral("Shows")).selectionStart();
  int begin = -1;
  int end = -1;
  QCOMPARE(text->textAtOffset(position, QAccessible::WordBoundary, &begin, &end),
           QStringLiteral("Shows"));
  QCOMPARE(begin, position);
}

void PanelAccessibilityTest::theTextHasASelection() {
  QAccessibleTextInterface* const text = pageInterface()->textInterface();
  QCOMPARE(text->selectionCount(), 0);
  text->setSelection(0, 0, 7);
  QCOMPARE(page_->textCursor().selectedText(), QStringLiteral("Changes"));
  int begin = -1;
  int end = -1;
  text->selection(0, &begin, &end);
  QCOMPARE(begin, 0);
  QCOMPARE(end, 7);
  text->removeSelection(0);
  QCOMPARE(text->selectionCount(), 0);
  text->setCursorPosition(100000);
  QCOMPARE(text->cursorPosition(), text->characterCount());
  page_->resize(500, 100);
  text->scrollToSubstring(text->characterCount() - 3, text->characterCount() - 1);
  QVERIFY(page_->verticalScrollBar()->value() > 0);
}

void PanelAccessibilityTest::thanksAreAnnounced() {
  RatingPage ratings(nullptr);
  ratings.showRequests({{"EPIC-1", u"Map", u"", u""}});
  ratings.show();
  ratings.findChildren<QRadioButton*>().at(2)->click();
  QVERIFY(!hasEvent(QAccessible::Alert, ratings.findChild<QWidget*>(QStringLiteral("thanks"))));
  ratings.findChild<QPushButton*>()->click();
  auto* const thanks = ratings.findChild<QWidget*>(QStringLiteral("thanks"));
  QVERIFY(hasEvent(QAccessible::Alert, thanks));
  QCOMPARE(QAccessible::queryAccessibleInterface(thanks)->text(QAccessible::Name),
           QStringLiteral("Thank you for your rating."));
}

void PanelAccessibilityTest::missingMatchesAreAnnounced() {
  SearchBar search(page_.get(), nullptr);
  search.show();
  search.startSearch();
  QTest::keyClicks(search.findChild<QLineEdit*>(), QStringLiteral("zzz"));
  QVERIFY(hasEvent(QAccessible::Alert, search.findChild<QWidget*>(QStringLiteral("searchResult"))));
}

void PanelAccessibilityTest::everyControlHasANameAndADescription() {
  test_support::TestWorld world;
  world.writeData({{.version = "4.3",
                    .groupingID = "EPIC-1",
                    .ratingRequest = "RequestRating",
                    .description = "Faster"}});
  world.storeEarlierUse();
  world.storeFirstStart(QDateTime::currentDateTime().addDays(-20));
  ornwhatsnewqt::Settings settings = world.settings();
  settings.usageLogging = [] { return true; };
  settings.announcesUpdates = true;
  WhatsNew whatsNew(world.dataFile(), settings);
  PanelWidget panel(&whatsNew);
  // Display the news first, because only features that the user has seen can be rated.
  panel.show();
  panel.showRatings();
  panel.findChild<SearchBar*>()->startSearch();
  int controls = 0;
  for (QWidget* widget : panel.findChildren<QWidget*>()) {
    const bool isPart = qobject_cast<QLineEdit*>(widget->parent()) != nullptr;
    if (widget->focusPolicy() == Qt::NoFocus || isPart) continue;
    if (widget->objectName().startsWith(QStringLiteral("qt_"))) continue;
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(widget);
    const QString what = widget->objectName() + u' ' + interface->text(QAccessible::Name);
    QVERIFY2(!interface->text(QAccessible::Name).isEmpty(), qPrintable(what));
    QVERIFY2(!interface->text(QAccessible::Description).isEmpty(), qPrintable(what));
    ++controls;
  }
  QVERIFY2(controls >= 18, qPrintable(QString::number(controls)));
}

void PanelAccessibilityTest::ratingsAreRadioButtonsInANamedGroup() {
  RatingPage ratings(nullptr);
  ratings.showRequests({{"EPIC-1", u"Map", u"Do you like it?", u""}});
  auto* const button = ratings.findChildren<QRadioButton*>().at(3);
  QAccessibleInterface* const choice = QAccessible::queryAccessibleInterface(button);
  QCOMPARE(choice->role(), QAccessible::RadioButton);
  QCOMPARE(choice->text(QAccessible::Name), QStringLiteral("Very good"));
  QCOMPARE(choice->text(QAccessible::Description), QStringLiteral("4 of 5 stars, Map"));
  QCOMPARE(choice->parent()->role(), QAccessible::Grouping);
  QCOMPARE(choice->parent()->text(QAccessible::Name), QStringLiteral("Do you like it?"));
}

void PanelAccessibilityTest::filtersAreANamedGroup() {
  test_support::TestWorld world;
  world.writeData({});
  WhatsNew whatsNew(world.dataFile(), world.settings());
  const PanelWidget panel(&whatsNew);
  QAccessibleInterface* const filter =
      QAccessible::queryAccessibleInterface(panel.findChild<QWidget*>(QStringLiteral("onlyNew")));
  QCOMPARE(filter->parent()->role(), QAccessible::Grouping);
  QCOMPARE(filter->parent()->text(QAccessible::Name), QStringLiteral("Filters"));
}

const test_support::RegisteredTest<PanelAccessibilityTest> kPanelAccessibilityTest;

}  // namespace

#include "PanelAccessibilityTest.moc"
