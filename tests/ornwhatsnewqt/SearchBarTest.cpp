#include "ornwhatsnewqt/src/SearchBar.h"

#include <memory>

#include <QtTest/QTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTextEdit>
#include <QtWidgets/QVBoxLayout>

namespace {

using ornwhatsnewqt::SearchBar;

class SearchBarTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void selectsTheFirstMatchWhileTheUserTypes();
  void ignoresCase();
  void enterSelectsTheNextMatchAndBeginsAgain();
  void shiftAndEnterSelectThePreviousMatch();
  void theButtonsSelectMatches();
  void reportsThatThereIsNoMatch();
  void searchesANewDocument();
  void closingReturnsTheFocusToTheView();

 private:
  void type(const QString& text);
  QString result() const;
  int selectionStart() const;

  std::unique_ptr<QWidget> window_;
  QTextEdit* view_ = nullptr;
  SearchBar* bar_ = nullptr;
  QLineEdit* field_ = nullptr;
};

void SearchBarTest::init() {
  window_ = std::make_unique<QWidget>();
  view_ = new QTextEdit(window_.get());
  view_->setPlainText(QStringLiteral("Map, map and MAP"));
  bar_ = new SearchBar(view_, window_.get());
  auto* const column = new QVBoxLayout(window_.get());
  column->addWidget(bar_);
  column->addWidget(view_);
  window_->show();
  window_->activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(window_.get()));
  bar_->startSearch();
  field_ = bar_->findChild<QLineEdit*>(QStringLiteral("searchField"));
}

void SearchBarTest::cleanup() {
  window_.reset();
}

void SearchBarTest::type(const QString& text) {
  QTest::keyClicks(field_, text);
}

QString SearchBarTest::result() const {
  return bar_->findChild<QLabel*>(QStringLiteral("searchResult"))->text();
}

int SearchBarTest::selectionStart() const {
  return view_->textCursor().selectionStart();
}

void SearchBarTest::selectsTheFirstMatchWhileTheUserTypes() {
  QVERIFY(field_->hasFocus());
  type(QStringLiteral("ap a"));
  QCOMPARE(view_->textCursor().selectedText(), QStringLiteral("ap a"));
  QCOMPARE(result(), QStringLiteral("1 of 1"));
}

void SearchBarTest::ignoresCase() {
  type(QStringLiteral("MAP"));
  QCOMPARE(result(), QStringLiteral("1 of 3"));
}

void SearchBarTest::enterSelectsTheNextMatchAndBeginsAgain() {
  type(QStringLiteral("map"));
  QCOMPARE(selectionStart(), 0);
  QTest::keyClick(field_, Qt::Key_Return);
  QCOMPARE(selectionStart(), 5);
  QTest::keyClick(field_, Qt::Key_Enter);
  QCOMPARE(selectionStart(), 13);
  QTest::keyClick(field_, Qt::Key_Return);
  QCOMPARE(selectionStart(), 0);
}

void SearchBarTest::shiftAndEnterSelectThePreviousMatch() {
  type(QStringLiteral("map"));
  QTest::keyClick(field_, Qt::Key_Return, Qt::ShiftModifier);
  QCOMPARE(selectionStart(), 13);
  QCOMPARE(result(), QStringLiteral("3 of 3"));
}

void SearchBarTest::theButtonsSelectMatches() {
  type(QStringLiteral("map"));
  bar_->findChild<QAbstractButton*>(QStringLiteral("nextMatch"))->click();
  QCOMPARE(selectionStart(), 5);
  bar_->findChild<QAbstractButton*>(QStringLiteral("previousMatch"))->click();
  QCOMPARE(selectionStart(), 0);
}

void SearchBarTest::reportsThatThereIsNoMatch() {
  type(QStringLiteral("mapx"));
  QCOMPARE(result(), QStringLiteral("No matches"));
  QVERIFY(!view_->textCursor().hasSelection());
  QVERIFY(!bar_->findChild<QAbstractButton*>(QStringLiteral("nextMatch"))->isEnabled());
  QTest::keyClick(field_, Qt::Key_Return);
  QVERIFY(!view_->textCursor().hasSelection());
  field_->clear();
  QCOMPARE(result(), QString());
}

void SearchBarTest::searchesANewDocument() {
  type(QStringLiteral("map"));
  view_->setPlainText(QStringLiteral("One map"));
  bar_->refresh();
  QCOMPARE(result(), QStringLiteral("1 of 1"));
  QTest::keyClick(field_, Qt::Key_Return);
  QCOMPARE(selectionStart(), 4);
}

void SearchBarTest::closingReturnsTheFocusToTheView() {
  bar_->findChild<QAbstractButton*>(QStringLiteral("closeSearch"))->click();
  QVERIFY(!bar_->isVisible());
  QVERIFY(view_->hasFocus());
}

}  // namespace

QTEST_MAIN(SearchBarTest)
#include "SearchBarTest.moc"
