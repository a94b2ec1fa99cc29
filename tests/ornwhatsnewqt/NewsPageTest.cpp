#include "ornwhatsnewqt/src/NewsPage.h"

#include <memory>

#include <QtCore/QMimeData>
#include <QtGui/QAbstractTextDocumentLayout>
#include <QtGui/QClipboard>
#include <QtGui/QHelpEvent>
#include <QtGui/QImage>
#include <QtGui/QTextBlock>
#include <QtGui/QTextLayout>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolTip>

#include "ornwhatsnewqt/src/NewsDecoration.h"
#include "tests/ornwhatsnewqt/QtTests.h"
#include "tests/ornwhatsnewqt/TestLayout.h"

namespace {

using ornwhatsnew::PanelLayout;
using ornwhatsnew::StyleID;
using ornwhatsnewqt::NewsDecoration;
using ornwhatsnewqt::NewsPage;
using ornwhatsnewqt::PanelStyle;
using test_support::longLayout;
using test_support::TestLayout;

PanelStyle applicationStyle() {
  return PanelStyle(QApplication::palette(), QApplication::font());
}

/// Returns a layout with the links "one" and "two" in its changes.
PanelLayout layoutWithLinks() {
  TestLayout layout;
  layout.title(u"Map", u"OFF");
  layout.change({{u"one", StyleID::kStyleIssueLink, u"https://a.example/1"}});
  layout.change({{u"two", StyleID::kStyleIssueLink, u"https://a.example/2"}});
  return layout.layout();
}

class NewsPageTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void tabMovesTheFocusFromLinkToLink();
  void enterActivatesTheLinkWithTheFocus();
  void aClickActivatesALink();
  void opensNoLinkItself();
  void linksHaveAHandAndATooltip();
  void theLinkWithTheFocusHasARing();
  void theLinkKeepsTheFocusInANewLayout();
  void anotherLinkDoesNotReceiveTheFocus();
  void keepingTheFocusOfALinkDoesNotScroll();
  void shiftAndArrowSelectText();
  void showsNoTextCursorBeforeItIsMoved();
  void copiesPlainText();
  void wrapsVeryLongWords();
  void rightToLeftTextFitsTheView();
  void rightToLeftLinesAreAlignedAfterTheBullet();
  void keepsTheParagraphAtTheTop();
  void laysOutTheEndAfterTheFirstPaint();
  void itemsHaveCards();
  void labelsHaveBoxes();
  void aLatinLabelInAHebrewTitleHasABox();
  void centersTheColumn();

 private:
  void show(const PanelLayout& layout);
  QRect rectOf(const QString& text) const;
  QPoint centerOf(const QString& text) const { return rectOf(text).center(); }

  std::unique_ptr<NewsPage> page_;
};

void NewsPageTest::init() {
  page_ = std::make_unique<NewsPage>();
  page_->resize(500, 400);
  page_->show();
  page_->activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(page_.get()));
  page_->setFocus();
}

void NewsPageTest::cleanup() {
  page_.reset();
}

void NewsPageTest::show(const PanelLayout& layout) {
  page_->showLayout(layout, applicationStyle());
}

/// Returns the rectangle of the first occurrence of `text`, in the coordinates of the viewport.
QRect NewsPageTest::rectOf(const QString& text) const {
  const QTextCursor found = page_->document()->find(text);
  return page_->elementRect({ornwhatsnewqt::NewsElement::Kind::Paragraph,
                             found.selectionStart(),
                             static_cast<int>(text.size()),
                             {}});
}

void NewsPageTest::tabMovesTheFocusFromLinkToLink() {
  show(layoutWithLinks());
  QCOMPARE(page_->focusedLink(), -1);
  QTest::keyClick(page_.get(), Qt::Key_Tab);
  QCOMPARE(page_->textCursor().selectedText(), QStringLiteral("one"));
  const int first = page_->focusedLink();
  QTest::keyClick(page_.get(), Qt::Key_Tab);
  QCOMPARE(page_->textCursor().selectedText(), QStringLiteral("two"));
  QTest::keyClick(page_.get(), Qt::Key_Backtab);
  QCOMPARE(page_->focusedLink(), first);
}

void NewsPageTest::enterActivatesTheLinkWithTheFocus() {
  show(layoutWithLinks());
  QSignalSpy spy(page_.get(), &QTextBrowser::anchorClicked);
  QTest::keyClick(page_.get(), Qt::Key_Tab);
  QTest::keyClick(page_.get(), Qt::Key_Tab);
  QTest::keyClick(page_.get(), Qt::Key_Return);
  QCOMPARE(spy.size(), 1);
  QCOMPARE(spy.first().first().toUrl(), QUrl(QStringLiteral("https://a.example/2")));
}

void NewsPageTest::aClickActivatesALink() {
  show(layoutWithLinks());
  QSignalSpy spy(page_.get(), &QTextBrowser::anchorClicked);
  QTest::mouseClick(page_->viewport(), Qt::LeftButton, {}, centerOf(QStringLiteral("one")));
  QCOMPARE(spy.size(), 1);
  QCOMPARE(spy.first().first().toUrl(), QUrl(QStringLiteral("https://a.example/1")));
}

void NewsPageTest::opensNoLinkItself() {
  show(layoutWithLinks());
  const int length = page_->document()->characterCount();
  QTest::keyClick(page_.get(), Qt::Key_Tab);
  QTest::keyClick(page_.get(), Qt::Key_Return);
  QVERIFY(page_->source().isEmpty());
  QCOMPARE(page_->document()->characterCount(), length);
}

void NewsPageTest::linksHaveAHandAndATooltip() {
  show(layoutWithLinks());
  const QPoint link = centerOf(QStringLiteral("one"));
  QTest::mouseMove(page_->viewport(), link);
  QTRY_COMPARE(page_->viewport()->cursor().shape(), Qt::PointingHandCursor);
  QHelpEvent event(QEvent::ToolTip, link, page_->viewport()->mapToGlobal(link));
  QApplication::sendEvent(page_->viewport(), &event);
  QCOMPARE(QToolTip::text(), QStringLiteral("https://a.example/1"));
}

void NewsPageTest::theLinkWithTheFocusHasARing() {
  show(layoutWithLinks());
  const QRect link = page_->elementRect(page_->elements()[2]);
  const QPoint leftOfLink(link.left() - 4, link.center().y());
  const auto colorThere = [&] {
    return page_->viewport()->grab().toImage().pixelColor(leftOfLink);
  };
  QCOMPARE(colorThere(), applicationStyle().card);
  QTest::keyClick(page_.get(), Qt::Key_Tab);
  QCOMPARE(colorThere(), applicationStyle().accent);
}

void NewsPageTest::theLinkKeepsTheFocusInANewLayout() {
  show(layoutWithLinks());
  QTest::keyClick(page_.get(), Qt::Key_Tab);
  QTest::keyClick(page_.get(), Qt::Key_Tab);
  const int link = page_->focusedLink();
  QVERIFY(link > 0);
  const QImage before = page_->grab().toImage();
  show(layoutWithLinks());
  QCOMPARE(page_->focusedLink(), link);
  QCOMPARE(page_->grab().toImage(), before);
  QTest::keyClick(page_.get(), Qt::Key_Backtab);
  QCOMPARE(page_->textCursor().selectedText(), QStringLiteral("one"));
}

void NewsPageTest::anotherLinkDoesNotReceiveTheFocus() {
  show(layoutWithLinks());
  QTest::keyClick(page_.get(), Qt::Key_Tab);
  TestLayout other;
  other.title(u"Map", u"OFF");
  other.change({{u"one", StyleID::kStyleIssueLink, u"https://a.example/other"}});
  show(other.layout());
  QCOMPARE(page_->focusedLink(), -1);
  QVERIFY(!page_->textCursor().hasSelection());
}

void NewsPageTest::keepingTheFocusOfALinkDoesNotScroll() {
  TestLayout layout;
  layout.title(u"Map");
  layout.change({{u"one", StyleID::kStyleIssueLink, u"https://a.example/1"}});
  for (int i = 0; i < 100; ++i) layout.change(u"Faster");
  show(layout.layout());
  QTest::keyClick(page_.get(), Qt::Key_Tab);
  QScrollBar& bar = *page_->verticalScrollBar();
  for (const int value : {bar.maximum(), 10}) {
    bar.setValue(value);
    show(layout.layout());
    QCOMPARE(bar.value(), value);
    QVERIFY(page_->focusedLink() > 0);
  }
}

void NewsPageTest::shiftAndArrowSelectText() {
  show(layoutWithLinks());
  for (int i = 0; i < 3; ++i) QTest::keyClick(page_.get(), Qt::Key_Right, Qt::ShiftModifier);
  QCOMPARE(page_->textCursor().selectedText(), QStringLiteral("Map"));
}

void NewsPageTest::showsNoTextCursorBeforeItIsMoved() {
  show(layoutWithLinks());
  QCOMPARE(page_->cursorWidth(), 0);
  QTest::keyClick(page_.get(), Qt::Key_Tab);
  QCOMPARE(page_->cursorWidth(), 0);
  QTest::keyClick(page_.get(), Qt::Key_Right);
  QVERIFY(page_->cursorWidth() > 0);
}

void NewsPageTest::copiesPlainText() {
  show(layoutWithLinks());
  page_->selectAll();
  page_->copy();
  const QMimeData* const copied = QApplication::clipboard()->mimeData();
  QCOMPARE(copied->text(), QStringLiteral("Map OFF\n\u2022 one\n\u2022 two"));
  QVERIFY(!copied->hasHtml());
}

void NewsPageTest::wrapsVeryLongWords() {
  TestLayout layout;
  layout.title(std::u16string(300, u'W'), u"OFF").change(std::u16string(3000, u'x'));
  show(layout.layout());
  const QRect word = page_->elementRect(page_->elements().back());
  QVERIFY(word.left() >= 0);
  QVERIFY(word.right() < page_->viewport()->width());
  QVERIFY(page_->document()->begin().layout()->lineCount() > 5);
}

void NewsPageTest::rightToLeftTextFitsTheView() {
  TestLayout layout;
  layout.change(
      u"\u0633\u064A\u062A\u0645 \u0645\u0633\u062D \u0627\u0644\u0635\u0648\u0631 "
      u"\u0641\u064A \u0646\u0635\u0641 \u0627\u0644\u0648\u0642\u062A "
      u"\u0648\u0628\u062C\u0648\u062F\u0629 \u0623\u0639\u0644\u0649");
  page_->setLayoutDirection(Qt::RightToLeft);
  show(layout.layout());
  for (int width = 150; width < 400; width += 10) {
    page_->resize(width, 400);
    const QRect text = page_->elementRect(page_->elements().front());
    QVERIFY2(page_->viewport()->rect().contains(text), qPrintable(QString::number(width)));
    const int textEnd = page_->viewport()->width() - 16 - 26;
    QVERIFY2(qAbs(text.right() - textEnd) <= 2, qPrintable(QString::number(text.right())));
  }
}

void NewsPageTest::rightToLeftLinesAreAlignedAfterTheBullet() {
  TestLayout layout;
  std::u16string words;
  for (int i = 0; i < 30; ++i) words += u"\u05DE\u05E4\u05D4 ";
  layout.change(words);
  show(layout.layout());
  const int end = page_->document()->characterCount() - 1;
  // The first two characters are the bullet and a tab.
  const QList<QRectF> lines = NewsDecoration::textRects(*page_->document(), 2, end);
  QVERIFY(lines.size() > 1);
  QVERIFY2(qAbs(lines[0].right() - lines[1].right()) < 1,
           qPrintable(QString::number(lines[0].right() - lines[1].right())));
  const QRectF bullet = NewsDecoration::textRects(*page_->document(), 0, 1).constFirst();
  QVERIFY(bullet.left() > lines[0].right() + 5);
}

void NewsPageTest::keepsTheParagraphAtTheTop() {
  show(longLayout(400));
  const auto topBlock = [this] {
    return NewsDecoration::blockAt(*page_->document(), page_->verticalScrollBar()->value())
        .blockNumber();
  };
  page_->verticalScrollBar()->setValue(page_->verticalScrollBar()->maximum() / 2);
  const int before = topBlock();
  QVERIFY(before > 0);
  show(longLayout(500));
  QCOMPARE(topBlock(), before);
}

void NewsPageTest::laysOutTheEndAfterTheFirstPaint() {
  page_->hide();
  show(longLayout(1000));
  QTextDocument* const document = page_->document();
  const auto isEndLaidOut = [document] { return document->lastBlock().layout()->lineCount() > 0; };
  QCoreApplication::sendPostedEvents(document);
  QVERIFY(!isEndLaidOut());
  page_->grab();
  QVERIFY(!isEndLaidOut());
  QCoreApplication::sendPostedEvents(document);
  QVERIFY(isEndLaidOut());
}

void NewsPageTest::itemsHaveCards() {
  QPalette colors;
  colors.setColor(QPalette::Window, Qt::lightGray);
  colors.setColor(QPalette::Base, Qt::white);
  page_->setPalette(colors);
  TestLayout layout;
  layout.header(u"Changes").title(u"Map").change(u"Faster");
  page_->showLayout(layout.layout(), PanelStyle(colors, QFont()));
  const QImage image = page_->viewport()->grab().toImage();
  const int right = page_->viewport()->width() - 40;
  const auto color = [&](const QString& text) {
    return image.pixelColor(right, centerOf(text).y());
  };
  QCOMPARE(color(QStringLiteral("Map")), QColor(Qt::white));
  QCOMPARE(color(QStringLiteral("Faster")), QColor(Qt::white));
  QVERIFY(color(QStringLiteral("Changes")) != QColor(Qt::white));
}

void NewsPageTest::labelsHaveBoxes() {
  show(layoutWithLinks());
  const QRect rect = rectOf(QStringLiteral("OFF"));
  const QImage image = page_->viewport()->grab().toImage();
  QCOMPARE(image.pixelColor(rect.right() + 3, rect.center().y()), applicationStyle().accentFill);
  QCOMPARE(image.pixelColor(rect.right() + 20, rect.center().y()), applicationStyle().card);
}

void NewsPageTest::aLatinLabelInAHebrewTitleHasABox() {
  show(layoutWithLinks());
  const int width = rectOf(QStringLiteral("OFF")).width();
  show(TestLayout().title(u"\u05DE\u05E4\u05D4", u"OFF").layout());
  const QRect label = rectOf(QStringLiteral("OFF"));
  QVERIFY(label.right() < rectOf(QStringLiteral("\u05DE\u05E4\u05D4")).left());
  QVERIFY2(qAbs(label.width() - width) <= 1, qPrintable(QString::number(label.width())));
  const QImage image = page_->viewport()->grab().toImage();
  for (const int x : {label.left() - 3, label.right() + 3})
    QCOMPARE(image.pixelColor(x, label.center().y()), applicationStyle().accentFill);
  for (const int x : {label.left() - 20, label.right() + 20})
    QCOMPARE(image.pixelColor(x, label.center().y()), applicationStyle().card);
}

void NewsPageTest::centersTheColumn() {
  page_->resize(1400, 400);
  QCOMPARE(page_->viewport()->x(), (1400 - 820) / 2);
  page_->resize(500, 400);
  QCOMPARE(page_->viewport()->x(), 0);
}

const test_support::RegisteredTest<NewsPageTest> kNewsPageTest;

}  // namespace

#include "NewsPageTest.moc"
