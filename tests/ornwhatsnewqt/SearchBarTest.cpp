#include "ornwhatsnewqt/src/SearchBar.h"

#include <memory>

#include <QtGui/QTextBlock>
#include <QtTest/QTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTextEdit>
#include <QtWidgets/QVBoxLayout>

#include "ornwhatsnewqt/src/NewsPage.h"
#include "tests/ornwhatsnewqt/QtTests.h"
#include "tests/ornwhatsnewqt/TestLayout.h"

namespace {

using ornwhatsnewqt::SearchBar;

class SearchBarTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void selectsTheFirstMatchWhileTheUserTypes();
  void ignoresCase();
  void ignoresInvisibleCharacters();
  void findsATitleWithItsLabel();
  void beginsAtTheTopOfTheView();
  void enterSelectsTheNextMatchAndBeginsAgain();
  void shiftAndEnterSelectThePreviousMatch();
  void theButtonsSelectMatches();
  void reportsThatThereIsNoMatch();
  void searchesANewDocument();
  void aNewDocumentKeepsTheTextCursorOfAViewWithTheFocus();
  void aNewDocumentDoesNotScroll();
  void aCorrectedWordIsFoundAtTheSameMatch();
  void keepsTheSelectedMatchWhenItIsOpenedAgain();
  void keepsTheSelectionIfTheFieldIsEmpty();
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

void SearchBarTest::ignoresInvisibleCharacters() {
  view_->setPlainText(QStringLiteral("\u200EMap \u2060UNLOCKED, m\u00ADap"));
  field_->setText(QStringLiteral("p unlo\u2060cked"));
  QCOMPARE(view_->textCursor().selectedText(), QStringLiteral("p \u2060UNLOCKED"));
  field_->clear();
  field_->setText(QStringLiteral("map"));
  QCOMPARE(result(), QStringLiteral("1 of 2"));
  QCOMPARE(selectionStart(), 1);
  QTest::keyClick(field_, Qt::Key_Return);
  QCOMPARE(view_->textCursor().selectedText(), QStringLiteral("m\u00ADap"));
  field_->setText(QStringLiteral("\u2060"));
  QVERIFY(!view_->textCursor().hasSelection());
}

void SearchBarTest::findsATitleWithItsLabel() {
  using ornwhatsnewqt::PanelStyle;
  ornwhatsnewqt::NewsPage page;
  page.showLayout(test_support::TestLayout().title(u"Map", u"UNLOCKED").layout(),
                  PanelStyle(page.palette(), page.font()));
  SearchBar bar(&page, nullptr);
  bar.findChild<QLineEdit*>()->setText(QStringLiteral("Map UNLOCKED"));
  QVERIFY(page.textCursor().hasSelection());
  QCOMPARE(page.textCursor().selectionEnd(), page.toPlainText().size());
}

void SearchBarTest::beginsAtTheTopOfTheView() {
  view_->setPlainText(QStringLiteral("A map\n").repeated(500));
  QScrollBar& scrollBar = *view_->verticalScrollBar();
  scrollBar.setValue(scrollBar.maximum() / 2);
  const int top = view_->cursorForPosition(QPoint(0, 0)).block().position();
  QVERIFY(top > 0);
  type(QStringLiteral("map"));
  QCOMPARE(selectionStart(), top + 2);
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
  QTest::keyClick(field_, Qt::Key_Return);
  view_->setPlainText(QStringLiteral("One map, two maps and no more maps"));
  bar_->refresh();
  QCOMPARE(result(), QStringLiteral("2 of 3"));
  QCOMPARE(selectionStart(), 13);
  QTest::keyClick(field_, Qt::Key_Return);
  QCOMPARE(selectionStart(), 30);
}

void SearchBarTest::aNewDocumentKeepsTheTextCursorOfAViewWithTheFocus() {
  type(QStringLiteral("map"));
  view_->setFocus();
  view_->setPlainText(QStringLiteral("One map, two maps and no more maps"));
  bar_->refresh();
  QCOMPARE(result(), QStringLiteral("1 of 3"));
  QVERIFY(!view_->textCursor().hasSelection());
}

void SearchBarTest::aNewDocumentDoesNotScroll() {
  const QString text = QStringLiteral("A map\n").repeated(500);
  view_->setPlainText(text);
  type(QStringLiteral("map"));
  view_->setPlainText(text);
  QScrollBar& scrollBar = *view_->verticalScrollBar();
  const int middle = scrollBar.maximum() / 2;
  scrollBar.setValue(middle);
  bar_->refresh();
  QCOMPARE(scrollBar.value(), middle);
}

void SearchBarTest::aCorrectedWordIsFoundAtTheSameMatch() {
  type(QStringLiteral("map"));
  QTest::keyClick(field_, Qt::Key_Return);
  QTest::keyClick(field_, Qt::Key_X);
  QCOMPARE(result(), QStringLiteral("No matches"));
  QTest::keyClick(field_, Qt::Key_Backspace);
  QCOMPARE(result(), QStringLiteral("2 of 3"));
  QCOMPARE(selectionStart(), 5);
}

void SearchBarTest::keepsTheSelectedMatchWhenItIsOpenedAgain() {
  type(QStringLiteral("map"));
  QTest::keyClick(field_, Qt::Key_Return);
  bar_->endSearch();
  bar_->startSearch();
  QCOMPARE(result(), QStringLiteral("2 of 3"));
  QCOMPARE(selectionStart(), 5);
  QTest::keyClick(field_, Qt::Key_Return);
  QCOMPARE(selectionStart(), 13);
}

void SearchBarTest::keepsTheSelectionIfTheFieldIsEmpty() {
  bar_->endSearch();
  view_->selectAll();
  bar_->startSearch();
  QVERIFY(view_->textCursor().hasSelection());
}

void SearchBarTest::closingReturnsTheFocusToTheView() {
  bar_->findChild<QAbstractButton*>(QStringLiteral("closeSearch"))->click();
  QVERIFY(!bar_->isVisible());
  QVERIFY(view_->hasFocus());
}

const test_support::RegisteredTest<SearchBarTest> kSearchBarTest;

}  // namespace

#include "SearchBarTest.moc"
