#include <ornwhatsnewqt/PanelWidget.h>

#include <memory>

#include <QtCore/QPointer>
#include <QtCore/QTranslator>
#include <QtGui/QDesktopServices>
#include <QtPrintSupport/QPrintDialog>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QDialog>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QScrollBar>

#include <ornwhatsnewqt/WhatsNew.h>

#include "ornwhatsnewqt/src/NewsPage.h"
#include "ornwhatsnewqt/src/RatingCard.h"
#include "ornwhatsnewqt/src/RatingPage.h"
#include "tests/ornwhatsnewqt/QtTests.h"
#include "tests/ornwhatsnewqt/TestWorld.h"

namespace {

using ornwhatsnewqt::NewsPage;
using ornwhatsnewqt::PanelWidget;
using ornwhatsnewqt::RatingCard;
using ornwhatsnewqt::RatingPage;
using ornwhatsnewqt::Settings;
using ornwhatsnewqt::WhatsNew;
using test_support::ChangeRow;
using test_support::kMapChange;
using test_support::TestWorld;

const ChangeRow kWindows{.version = "4.3",
                         .groupingID = "EPIC-1",
                         .platform = "Win",
                         .description = "Zoom with the wheel"};
const ChangeRow kLink{.version = "4.3",
                      .groupingID = "EPIC-1",
                      .url = "https://a.example/map",
                      .description = "Circles"};
const ChangeRow kRating{.version = "4.3",
                        .groupingID = "EPIC-1",
                        .ratingRequest = "RequestRating",
                        .description = "Rate it"};

const ChangeRow kScannerRating{.version = "4.3",
                               .groupingID = "EPIC-2",
                               .ratingRequest = "RequestRating",
                               .description = "Rate it, too"};

/// Returns the keys of the features whose cards `page` shows.
QStringList visibleCards(const RatingPage& page) {
  QStringList keys;
  for (const RatingCard* card : page.findChildren<RatingCard*>())
    if (card->isVisible()) keys.append(card->itemKey());
  return keys;
}

/// Presses Tab until the focus returns to the initial widget, but at most 100 times. Returns the
/// widgets that receive the focus.
QSet<QWidget*> widgetsReachedByTab() {
  constexpr int kMaximumKeys = 100;
  QSet<QWidget*> reached;
  const QWidget* const first = QApplication::focusWidget();
  for (int i = 0; i < kMaximumKeys; ++i) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    reached.insert(QApplication::focusWidget());
    if (QApplication::focusWidget() == first) break;
  }
  return reached;
}

QStringList sortedNames(const QSet<QWidget*>& widgets) {
  QStringList names;
  for (const QWidget* widget : widgets) {
    names.append(QLatin1String(widget->metaObject()->className()) + u' ' + widget->objectName());
  }
  names.sort();
  return names;
}

/// Receives the links that the panel would otherwise open in a browser.
class Browser : public QObject {
  Q_OBJECT

 public:
  Browser() { QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "open"); }
  ~Browser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }

  QList<QUrl> opened;

 public Q_SLOTS:
  void open(const QUrl& url) { opened.append(url); }
};

/// Translates two key texts into German.
class GermanTranslator : public QTranslator {
  Q_OBJECT

 public:
  QString translate(const char* context, const char* source, const char* /*disambiguation*/,
                    int /*n*/) const override {
    if (QLatin1String(context) != QLatin1String("ornwhatsnew")) return {};
    const QLatin1String key(source);
    if (key == QLatin1String("$$$/ornwhatsnewqt/Filter/OnlyNew"))
      return QStringLiteral("Nur Neues");
    if (key == QLatin1String("$$$/ornwhatsnew/Feature/Item/ViewMore/ViewMore")) {
      return QStringLiteral("Mehr");
    }
    return {};
  }
  bool isEmpty() const override { return false; }
};

class PanelWidgetTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void displaysTheNewsWhenItBecomesVisible();
  void showsTheNoticeIfNothingIsNew();
  void filtersAreAppliedAndRemembered();
  void controlAndFSearches();
  void escapeClosesTheSearchFirst();
  void controlAndPOpensThePrintDialog();
  void opensLinksInTheBrowser();
  void keyboardReachesEveryControl();
  void keyboardReachesEveryControlOfTheRatingPage();
  void reloadKeepsThePanelOpen();
  void reportsAStoreThatCannotBeWritten();
  void reportsThatTheHostCannotStoreTheState();
  void aDismissedMessageStaysDismissed();
  void aDismissedMessageStaysDismissedInANewLanguage();
  void reportsAMissingDataFile();
  void followsTheLanguage();
  void followsThePalette();
  void showsRatingsInPlaceOfTheNews();
  void theNewsRemainAfterAVisitToTheRatings();
  void storesARating();
  void twoPanelsReportOneRating();
  void aRatingInOnePanelLeavesTheNewsInAnother();
  void hasNoChoiceOfPagesWithoutRatings();
  void twoPanelsShowTheSameNews();
  void twoObjectsOfOneApplicationAreIndependent();
  void aHiddenPanelIsEmpty();
  void worksInADock();
  void offersTheSwitchOfAnnouncements();
  void outlivesItsObject();

 private:
  void open(const Settings& settings);
  void open() { open(world_->settings()); }
  Settings settingsWithRatings() const;
  template <class Widget>
  Widget& find(const char* name) const {
    return *panel_->findChild<Widget*>(QLatin1String(name));
  }
  QSet<QWidget*> visibleControls() const;
  QString news() const { return find<NewsPage>("newsPage").toPlainText(); }

  std::unique_ptr<TestWorld> world_;
  std::unique_ptr<WhatsNew> whatsNew_;
  std::unique_ptr<PanelWidget> panel_;
};

void PanelWidgetTest::init() {
  world_ = std::make_unique<TestWorld>();
  world_->writeData({kMapChange, kWindows, kLink});
  world_->storeEarlierUse();
}

void PanelWidgetTest::cleanup() {
  panel_.reset();
  whatsNew_.reset();
  world_.reset();
}

void PanelWidgetTest::open(const Settings& settings) {
  whatsNew_ = std::make_unique<WhatsNew>(world_->dataFile(), settings);
  panel_ = std::make_unique<PanelWidget>(whatsNew_.get());
  panel_->show();
  panel_->activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(panel_.get()));
}

Settings PanelWidgetTest::settingsWithRatings() const {
  world_->storeFirstStart(QDateTime::currentDateTime().addDays(-20));
  Settings settings = world_->settings();
  settings.usageLogging = [] { return true; };
  return settings;
}

QSet<QWidget*> PanelWidgetTest::visibleControls() const {
  QSet<QWidget*> controls;
  for (QWidget* const widget : panel_->findChildren<QWidget*>()) {
    const bool isControl = (widget->focusPolicy() & Qt::TabFocus) != 0;
    if (isControl && widget->isVisible()) controls.insert(widget);
  }
  return controls;
}

void PanelWidgetTest::displaysTheNewsWhenItBecomesVisible() {
  whatsNew_ = std::make_unique<WhatsNew>(world_->dataFile(), world_->settings());
  panel_ = std::make_unique<PanelWidget>(whatsNew_.get());
  QVERIFY(!news().contains(QStringLiteral("Faster map")));
  QVERIFY(world_->stored(QStringLiteral("WhatsNew.AllSeenItems")).isEmpty());
  panel_->show();
  QVERIFY(news().contains(QStringLiteral("Faster map")));
  QVERIFY(!world_->stored(QStringLiteral("WhatsNew.AllSeenItems")).isEmpty());
}

void PanelWidgetTest::showsTheNoticeIfNothingIsNew() {
  open();
  panel_->hide();
  panel_->show();
  QVERIFY(news().contains(QStringLiteral("all caught up")));
}

void PanelWidgetTest::filtersAreAppliedAndRemembered() {
  open();
  QVERIFY(!news().contains(QStringLiteral("Zoom with the wheel")));
  find<QCheckBox>("thisPlatform").click();
  QVERIFY(news().contains(QStringLiteral("Zoom with the wheel")));
  QVERIFY(news().contains(QStringLiteral("Faster map")));
  panel_.reset();
  whatsNew_.reset();
  open();
  QVERIFY(!find<QCheckBox>("thisPlatform").isChecked());
  QVERIFY(find<QCheckBox>("onlyNew").isChecked());
  QVERIFY(find<QCheckBox>("myVersions").isChecked());
}

void PanelWidgetTest::controlAndFSearches() {
  open();
  QVERIFY(!find<QWidget>("searchBar").isVisible());
  QTest::keyClick(panel_.get(), Qt::Key_F, Qt::ControlModifier);
  QVERIFY(find<QLineEdit>("searchField").hasFocus());
  QTest::keyClicks(&find<QLineEdit>("searchField"), QStringLiteral("circles"));
  QCOMPARE(find<NewsPage>("newsPage").textCursor().selectedText(), QStringLiteral("Circles"));
}

void PanelWidgetTest::escapeClosesTheSearchFirst() {
  whatsNew_ = std::make_unique<WhatsNew>(world_->dataFile(), world_->settings());
  QDialog dialog;
  auto* const panel = new PanelWidget(whatsNew_.get(), &dialog);
  dialog.show();
  dialog.activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&dialog));
  panel->showNews();
  QTest::keyClick(panel, Qt::Key_F, Qt::ControlModifier);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  QVERIFY(!panel->findChild<QWidget*>(QStringLiteral("searchBar"))->isVisible());
  QVERIFY(dialog.isVisible());
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  QVERIFY(!dialog.isVisible());
}

void PanelWidgetTest::controlAndPOpensThePrintDialog() {
  open();
  QVERIFY(panel_->findChild<QPrintDialog*>() == nullptr);
  QTest::keyClick(&find<NewsPage>("newsPage"), Qt::Key_P, Qt::ControlModifier);
  const QPointer<QPrintDialog> dialog = panel_->findChild<QPrintDialog*>();
  QVERIFY(dialog != nullptr);
  QVERIFY(dialog->isVisible());
  dialog->close();
  QTRY_VERIFY(dialog.isNull());
}

void PanelWidgetTest::opensLinksInTheBrowser() {
  open();
  Browser browser;
  QSignalSpy spy(whatsNew_.get(), &WhatsNew::linkActivated);
  QTest::keyClick(&find<NewsPage>("newsPage"), Qt::Key_Tab);
  QTest::keyClick(&find<NewsPage>("newsPage"), Qt::Key_Return);
  const QUrl url(QStringLiteral("https://a.example/map"));
  QCOMPARE(browser.opened, QList<QUrl>{url});
  QCOMPARE(spy.size(), 1);
  QCOMPARE(spy.first().first().toUrl(), url);
}

void PanelWidgetTest::keyboardReachesEveryControl() {
  world_->writeData({kMapChange, kLink, kRating});
  Settings settings = settingsWithRatings();
  settings.announcesUpdates = true;
  open(settings);
  whatsNew_->setStateError(QStringLiteral("the disk is full"));
  QTest::keyClick(panel_.get(), Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("map"));
  const QSet<QWidget*> reached = widgetsReachedByTab();
  QCOMPARE(sortedNames(reached), sortedNames(visibleControls()));
  for (const char* name :
       {"announce", "closeSearch", "dismiss", "myVersions", "news", "newsPage", "nextMatch",
        "onlyNew", "previousMatch", "print", "search", "searchField", "thisPlatform"})
    QVERIFY2(reached.contains(&find<QWidget>(name)), name);
}

void PanelWidgetTest::keyboardReachesEveryControlOfTheRatingPage() {
  world_->writeData({kRating});
  open(settingsWithRatings());
  find<QWidget>("news").setFocus();
  const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
  press(Qt::Key_Right);
  auto& page = find<RatingPage>("ratingPage");
  QVERIFY(page.isVisible());
  // Move the focus to the first choice, and then select a choice. Without a selected choice, the
  // button that sends the rating is disabled, and Tab skips it.
  press(Qt::Key_Space);
  press(Qt::Key_Space);
  press(Qt::Key_Right);
  const QSet<QWidget*> reached = widgetsReachedByTab();
  QCOMPARE(sortedNames(reached), sortedNames(visibleControls()));
  for (const char* name : {"ratings", "comment", "send"})
    QVERIFY2(reached.contains(&find<QWidget>(name)), name);
  QVERIFY(reached.contains(page.findChildren<QRadioButton*>().at(1)));
}

void PanelWidgetTest::reloadKeepsThePanelOpen() {
  open();
  world_->writeData(
      {kMapChange, {.version = "4.3", .groupingID = "EPIC-1", .description = "Smaller"}});
  whatsNew_->refresh();
  QVERIFY(news().contains(QStringLiteral("Smaller")));
  QVERIFY(news().contains(QStringLiteral("Faster map")));
  QVERIFY(!news().contains(QStringLiteral("Circles")));
}

void PanelWidgetTest::reportsAStoreThatCannotBeWritten() {
  Settings settings = world_->settings();
  settings.settingsFile = QStringLiteral("/dev/null/settings.ini");
  settings.firstStart = ornwhatsnewqt::FirstStart::ShowAll;
  open(settings);
  QVERIFY(find<QWidget>("messageBar").isVisible());
  QVERIFY(find<QLabel>("message").text().contains(settings.settingsFile));
  QVERIFY(news().contains(QStringLiteral("Faster map")));
}

void PanelWidgetTest::reportsThatTheHostCannotStoreTheState() {
  open();
  QVERIFY(!find<QWidget>("messageBar").isVisible());
  whatsNew_->setStateError(QStringLiteral("the disk is full"));
  QVERIFY(find<QWidget>("messageBar").isVisible());
  QVERIFY(find<QLabel>("message").text().endsWith(QStringLiteral(": the disk is full")));
  whatsNew_->setStateError({});
  QVERIFY(!find<QWidget>("messageBar").isVisible());
}

void PanelWidgetTest::aDismissedMessageStaysDismissed() {
  Settings settings = world_->settings();
  settings.settingsFile = QStringLiteral("/dev/null/settings.ini");
  open(settings);
  find<QAbstractButton>("dismiss").click();
  QVERIFY(!find<QWidget>("messageBar").isVisible());
  find<QCheckBox>("onlyNew").click();
  QVERIFY(!find<QWidget>("messageBar").isVisible());
}

void PanelWidgetTest::aDismissedMessageStaysDismissedInANewLanguage() {
  QFile::remove(world_->dataFile());
  open();
  whatsNew_->setStateError(QStringLiteral("the disk is full"));
  const QString english = find<QLabel>("message").text();
  find<QAbstractButton>("dismiss").click();
  QTranslator german;
  QVERIFY(german.load(QStringLiteral(":/ornwhatsnewqt/ornwhatsnew_de.qm")));
  QCoreApplication::installTranslator(&german);
  QTRY_VERIFY(find<QLabel>("message").text() != english);
  QVERIFY(!find<QWidget>("messageBar").isVisible());
  // A different error makes the message visible again.
  whatsNew_->setStateError(QStringLiteral("the disk is read-only"));
  QVERIFY(find<QWidget>("messageBar").isVisible());
}

void PanelWidgetTest::reportsAMissingDataFile() {
  QFile::remove(world_->dataFile());
  open();
  QVERIFY(find<QWidget>("messageBar").isVisible());
  QVERIFY(find<QLabel>("message").text().contains(world_->dataFile()));
  world_->writeData({kMapChange});
  whatsNew_->refresh();
  QVERIFY(!find<QWidget>("messageBar").isVisible());
  QFile::remove(world_->dataFile());
  whatsNew_->refresh();
  QVERIFY(find<QWidget>("messageBar").isVisible());
  find<QAbstractButton>("dismiss").click();
  whatsNew_->refresh();
  QVERIFY(!find<QWidget>("messageBar").isVisible());
}

void PanelWidgetTest::followsTheLanguage() {
  open();
  QCOMPARE(find<QCheckBox>("onlyNew").text(), QStringLiteral("Only new"));
  GermanTranslator translator;
  QCoreApplication::installTranslator(&translator);
  QTRY_COMPARE(find<QCheckBox>("onlyNew").text(), QStringLiteral("Nur Neues"));
  QVERIFY(news().contains(QStringLiteral("Mehr")));
  QVERIFY(!news().contains(QStringLiteral("View more")));
  QCoreApplication::removeTranslator(&translator);
}

void PanelWidgetTest::followsThePalette() {
  open();
  auto& page = find<NewsPage>("newsPage");
  const QPalette before = QApplication::palette();
  QPalette dark;
  dark.setColor(QPalette::Base, QColor(20, 20, 22));
  dark.setColor(QPalette::Window, QColor(30, 30, 32));
  dark.setColor(QPalette::Text, QColor(230, 230, 230));
  QApplication::setPalette(dark);
  const auto titleColor = [&page] {
    return page.document()->find(QStringLiteral("Map")).charFormat().foreground().color();
  };
  QTRY_COMPARE(titleColor(), QColor(230, 230, 230));
  const QColor corner = page.viewport()->grab().toImage().pixelColor(2, 2);
  QCOMPARE(corner, QColor(30, 30, 32));
  QApplication::setPalette(before);
}

void PanelWidgetTest::showsRatingsInPlaceOfTheNews() {
  world_->writeData({kRating});
  open(settingsWithRatings());
  find<QRadioButton>("ratings").click();
  QVERIFY(find<RatingPage>("ratingPage").isVisible());
  QVERIFY(!find<QWidget>("filters").isVisible());
  QVERIFY(!find<QWidget>("search").isVisible());
  QVERIFY(!find<QWidget>("print").isVisible());
  find<QRadioButton>("news").click();
  QVERIFY(find<NewsPage>("newsPage").isVisible());
  QVERIFY(find<QWidget>("search").isVisible());
  QVERIFY(find<QWidget>("print").isVisible());
  QVERIFY(find<QWidget>("filters").isVisible());
}

void PanelWidgetTest::theNewsRemainAfterAVisitToTheRatings() {
  world_->writeData({kMapChange, kRating});
  open(settingsWithRatings());
  find<QRadioButton>("ratings").click();
  find<QRadioButton>("news").click();
  QVERIFY(news().contains(QStringLiteral("Faster map")));
}

void PanelWidgetTest::storesARating() {
  world_->writeData({kRating});
  open(settingsWithRatings());
  QSignalSpy spy(whatsNew_.get(), &WhatsNew::rated);
  find<QRadioButton>("ratings").click();
  find<QWidget>("choices").findChildren<QRadioButton*>().at(4)->click();
  find<QPushButton>("send").click();
  QCOMPARE(spy.size(), 1);
  QCOMPARE(spy.first(), (QVariantList{QStringLiteral("EPIC-1"), 5, QString()}));
  QVERIFY(find<QLabel>("thanks").isVisible());
  QCOMPARE(QApplication::focusWidget(), &find<QWidget>("ratings"));
  find<QRadioButton>("news").click();
  find<QRadioButton>("ratings").click();
  QVERIFY(find<QLabel>("thanks").isVisible());
}

void PanelWidgetTest::twoPanelsReportOneRating() {
  world_->addScanner();
  world_->writeData({kRating, kScannerRating});
  open(settingsWithRatings());
  const QSignalSpy spy(whatsNew_.get(), &WhatsNew::rated);
  PanelWidget second(whatsNew_.get());
  second.show();
  second.showRatings();
  panel_->showRatings();
  auto& firstPage = find<RatingPage>("ratingPage");
  auto& secondPage = *second.findChild<RatingPage*>();
  auto& obsoleteSend = *secondPage.findChild<QPushButton*>(QStringLiteral("send"));
  secondPage.findChildren<QRadioButton*>().at(1)->click();
  firstPage.findChildren<QRadioButton*>().at(4)->click();
  firstPage.findChild<QPushButton*>(QStringLiteral("send"))->click();
  QVERIFY(firstPage.findChild<QLabel*>(QStringLiteral("thanks"))->isVisible());
  QCOMPARE(visibleCards(firstPage),
           (QStringList{QStringLiteral("EPIC-1"), QStringLiteral("EPIC-2")}));
  QCOMPARE(visibleCards(secondPage), QStringList{QStringLiteral("EPIC-2")});
  // The widgets of the obsolete card exist until the event loop runs.
  obsoleteSend.click();
  QCOMPARE(spy.size(), 1);
}

void PanelWidgetTest::aRatingInOnePanelLeavesTheNewsInAnother() {
  world_->writeData({kMapChange, kRating});
  open(settingsWithRatings());
  PanelWidget second(whatsNew_.get());
  second.show();
  auto& page = find<NewsPage>("newsPage");
  page.selectAll();
  second.showRatings();
  auto& ratingPage = *second.findChild<RatingPage*>();
  ratingPage.findChildren<QRadioButton*>().at(4)->click();
  ratingPage.findChild<QPushButton*>(QStringLiteral("send"))->click();
  QVERIFY(ratingPage.findChild<QLabel*>(QStringLiteral("thanks"))->isVisible());
  QVERIFY(page.textCursor().hasSelection());
}

void PanelWidgetTest::hasNoChoiceOfPagesWithoutRatings() {
  open();
  QVERIFY(!find<QWidget>("ratings").isVisible());
  QVERIFY(!find<QWidget>("news").isVisible());
  QCOMPARE(find<QWidget>("header").findChild<QLabel*>()->text(), QStringLiteral("What's New"));
}

void PanelWidgetTest::twoPanelsShowTheSameNews() {
  open();
  PanelWidget second(whatsNew_.get());
  second.show();
  find<QCheckBox>("onlyNew").click();
  auto* const otherFilter = second.findChild<QCheckBox*>(QStringLiteral("onlyNew"));
  QVERIFY(!otherFilter->isChecked());
  QCOMPARE(second.findChild<NewsPage*>()->toPlainText(), news());
  second.hide();
  QVERIFY(news().contains(QStringLiteral("Faster map")));
  // After the second panel is hidden, the first panel still reacts to its filters.
  find<QCheckBox>("thisPlatform").click();
  QVERIFY(news().contains(QStringLiteral("Zoom with the wheel")));
}

void PanelWidgetTest::twoObjectsOfOneApplicationAreIndependent() {
  open();
  Settings settings = Settings::withoutServices();
  settings.settingsFile = world_->filePath(QStringLiteral("other.ini"));
  settings.firstStart = ornwhatsnewqt::FirstStart::ShowAll;
  WhatsNew other(world_->dataFile(), settings);
  PanelWidget panel(&other);
  panel.show();
  QVERIFY(panel.findChild<NewsPage*>()->toPlainText().contains(QStringLiteral("Faster map")));
  panel.findChild<QCheckBox*>(QStringLiteral("onlyNew"))->click();
  QVERIFY(find<QCheckBox>("onlyNew").isChecked());
}

void PanelWidgetTest::aHiddenPanelIsEmpty() {
  open();
  panel_->hide();
  QCOMPARE(news(), QString());
  QVERIFY(find<NewsPage>("newsPage").elements().empty());
}

void PanelWidgetTest::worksInADock() {
  whatsNew_ = std::make_unique<WhatsNew>(world_->dataFile(), world_->settings());
  QMainWindow window;
  window.setCentralWidget(new QLineEdit(&window));
  auto* const dock = new QDockWidget(&window);
  auto* const panel = new PanelWidget(whatsNew_.get(), dock);
  dock->setWidget(panel);
  window.addDockWidget(Qt::RightDockWidgetArea, dock);
  window.show();
  auto* const page = panel->findChild<NewsPage*>();
  QVERIFY(page->toPlainText().contains(QStringLiteral("Faster map")));
  QTest::keyClick(page, Qt::Key_Escape);
  QVERIFY(dock->isVisible());
  dock->close();
  QCOMPARE(page->toPlainText(), QString());
}

void PanelWidgetTest::offersTheSwitchOfAnnouncements() {
  open();
  QVERIFY(!find<QWidget>("announce").isVisible());
  panel_.reset();
  whatsNew_.reset();
  Settings settings = world_->settings();
  settings.announcesUpdates = true;
  open(settings);
  QVERIFY(find<QCheckBox>("announce").isVisible());
  QVERIFY(find<QCheckBox>("announce").isChecked());
  find<QCheckBox>("announce").click();
  panel_.reset();
  whatsNew_.reset();
  open(settings);
  QVERIFY(!find<QCheckBox>("announce").isChecked());
}

void PanelWidgetTest::outlivesItsObject() {
  open();
  whatsNew_.reset();
  panel_->hide();
  panel_->show();
  find<QCheckBox>("onlyNew").click();
  find<QAbstractButton>("print").click();
}

const test_support::RegisteredTest<PanelWidgetTest> kPanelWidgetTest;

}  // namespace

#include "PanelWidgetTest.moc"
