#include "ornwhatsnewqt/src/NewsDocument.h"

#include <QtGui/QTextBlock>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <ornwhatsnew/WhatsNewTypes.h>

#include "tests/ornwhatsnewqt/QtTests.h"
#include "tests/ornwhatsnewqt/TestLayout.h"

namespace {

using ornwhatsnew::StyleID;
using ornwhatsnewqt::NewsDocument;
using ornwhatsnewqt::NewsElement;
using ornwhatsnewqt::PanelStyle;
using test_support::TestLayout;

PanelStyle defaultStyle() {
  return PanelStyle(QPalette(), QFont());
}

/// Returns the format of the first occurrence of `text` in `document`.
QTextCharFormat formatOf(const NewsDocument& document, const QString& text) {
  QTextCursor cursor(document.find(text));
  return cursor.charFormat();
}

QString plainText(NewsDocument& document) {
  QTextCursor cursor(&document);
  cursor.select(QTextCursor::Document);
  return NewsDocument::plainText(cursor);
}

/// Returns the targets of the links in `document`.
QStringList linksOf(const NewsDocument& document) {
  QStringList links;
  for (const NewsElement& element : document.elements()) {
    if (element.kind == NewsElement::Kind::Link) links.append(element.href);
  }
  return links;
}

class NewsDocumentTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyStyleHasItsSizeAndColor_data();
  void everyStyleHasItsSizeAndColor();
  void stylesBeginAtTheirPosition();
  void onlySafeLinksAreLinks();
  void linksAreUnderlinedExceptTitles();
  void aTitleIsNoLinkIfItsDescriptionRepeatsTheLink();
  void changesHaveAHangingIndent();
  void paragraphsFollowTheDirectionOfTheirText();
  void surrogatesHaveNoDirection();
  void controlCharactersAddNoBlocks();
  void textsCannotChangeTheDirectionOfOtherText();
  void changesWithoutTextAreLeftOut();
  void aLineEndInAParagraphKeepsItsBlock();
  void plainTextContainsNoInvisibleUnits();
  void labelsStayInOneLine();
  void viewMoreStaysInOneLine();
  void elementsAreHeadingsListItemsAndLinks();
  void itemsBeginWithTheirTitle();
};

void NewsDocumentTest::everyStyleHasItsSizeAndColor_data() {
  const PanelStyle colors = defaultStyle();
  QTest::addColumn<int>("id");
  QTest::addColumn<int>("size");
  QTest::addColumn<QColor>("color");
  const auto add = [](const char* name, StyleID id, float size, const QColor& color) {
    QTest::newRow(name) << static_cast<int>(id) << qRound(size) << color;
  };
  using namespace ornwhatsnew;
  add("title", kStyleFeatureTitle, kFontSize_Title, colors.text);
  add("description", kStyleFeatureDescription, kFontSize_Normal, colors.text);
  add("change", kStyleChangeText, kFontSize_NormalSmall, colors.text);
  add("header", kStyleHeader, kFontSize_Header, colors.secondary);
  add("internal code", kStyleInternalCode, kFontSize_NormalSmall, colors.secondary);
  add("commit without link", kStyleCommitLink, kFontSize_HotSpotCopy, colors.secondary);
  add("hot spot without link", kStyleHotSpot, kFontSize_HotSpot, colors.text);
  add("issue without link", kStyleIssueLink, kFontSize_HotSpotCopy, colors.secondary);
  add("label", kStyleUnlockLabel, 12, colors.accent);
  add("warning", kStyleInternalWarning, kFontSize_NormalSmall, colors.warning);
}

void NewsDocumentTest::everyStyleHasItsSizeAndColor() {
  QFETCH(int, id);
  QFETCH(int, size);
  QFETCH(QColor, color);
  TestLayout layout;
  layout.change({{u"before "}, {u"styled", static_cast<StyleID>(id)}});
  const NewsDocument document(layout.layout(), defaultStyle());
  const QTextCharFormat format = formatOf(document, QStringLiteral("styled"));
  QCOMPARE(format.font().pixelSize(), size);
  QCOMPARE(format.foreground().color(), color);
}

void NewsDocumentTest::stylesBeginAtTheirPosition() {
  TestLayout layout;
  // The first character is encoded as two UTF-16 code units. Positions in the layout and in the
  // document count code units, not characters.
  layout.change({{u"\U0001F389 party ", StyleID::kStyleChangeText},
                 {u"(v4.3)", StyleID::kStyleInternalCode}});
  const NewsDocument document(layout.layout(), defaultStyle());
  const QColor secondary = defaultStyle().secondary;
  QTextCursor cursor = document.find(QStringLiteral("(v4.3)"));
  cursor.setPosition(cursor.selectionStart());
  QVERIFY(cursor.charFormat().foreground().color() != secondary);
  cursor.movePosition(QTextCursor::NextCharacter);
  QCOMPARE(cursor.charFormat().foreground().color(), secondary);
}

void NewsDocumentTest::onlySafeLinksAreLinks() {
  TestLayout layout;
  for (const std::u16string link :
       {u"https://a.example/x", u"http://a.example/", u"javascript:alert(1)", u"file:///etc/passwd",
        u"https://a.example@b.example/", u"HTTPS://a.example/"}) {
    layout.change({{u"View more", StyleID::kStyleHotSpot, link}});
  }
  const NewsDocument document(layout.layout(), defaultStyle());
  QCOMPARE(linksOf(document), QStringList(QStringLiteral("https://a.example/x")));
  int anchors = 0;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    for (auto part = block.begin(); !part.atEnd(); ++part)
      anchors += part.fragment().charFormat().isAnchor() ? 1 : 0;
  }
  QCOMPARE(anchors, 1);
}

void NewsDocumentTest::linksAreUnderlinedExceptTitles() {
  TestLayout layout;
  layout.title(u"Map", {}, u"https://a.example/map");
  layout.change({{u"ORN-1", StyleID::kStyleIssueLink, u"https://a.example/1"}});
  const NewsDocument document(layout.layout(), defaultStyle());
  const QTextCharFormat title = formatOf(document, QStringLiteral("Map"));
  QVERIFY(title.isAnchor());
  QVERIFY(!title.fontUnderline());
  QCOMPARE(title.foreground().color(), defaultStyle().text);
  const QTextCharFormat issue = formatOf(document, QStringLiteral("ORN-1"));
  QVERIFY(issue.fontUnderline());
  QCOMPARE(issue.foreground().color(), defaultStyle().link);
}

void NewsDocumentTest::aTitleIsNoLinkIfItsDescriptionRepeatsTheLink() {
  const std::u16string link = u"https://a.example/map";
  TestLayout layout;
  layout.title(u"Map", {}, link).description({{u"View more", StyleID::kStyleHotSpot, link}});
  layout.title(u"Scanner", {}, link).change(u"Faster");
  const NewsDocument document(layout.layout(), defaultStyle());
  QVERIFY(!formatOf(document, QStringLiteral("Map")).isAnchor());
  QVERIFY(formatOf(document, QStringLiteral("View more")).isAnchor());
  QVERIFY(formatOf(document, QStringLiteral("Scanner")).isAnchor());
}

void NewsDocumentTest::changesHaveAHangingIndent() {
  TestLayout layout;
  layout.change(u"Faster").change({{u"Smaller", StyleID::kStyleChangeText}}, u"");
  const NewsDocument document(layout.layout(), defaultStyle());
  const QTextBlock block = document.begin();
  QCOMPARE(block.text(), QStringLiteral("\u2022\tFaster"));
  const QTextBlockFormat format = block.blockFormat();
  QVERIFY(format.textIndent() < 0);
  QCOMPARE(format.tabPositions().first().position, -format.textIndent());
  QVERIFY(format.leftMargin() > format.rightMargin());
  QCOMPARE(block.next().text(), QStringLiteral("Smaller"));
  QCOMPARE(block.next().blockFormat().textIndent(), 0.0);
}

void NewsDocumentTest::paragraphsFollowTheDirectionOfTheirText() {
  TestLayout layout;
  layout.change(u"1. \u05D4\u05E1\u05D5\u05E8\u05E7 A4").change(u"1. A4 \u05D4\u05E1");
  const NewsDocument document(layout.layout(), defaultStyle());
  const QTextBlockFormat hebrew = document.begin().blockFormat();
  QCOMPARE(hebrew.layoutDirection(), Qt::RightToLeft);
  QVERIFY(hebrew.rightMargin() > hebrew.leftMargin());
  QCOMPARE(document.begin().next().blockFormat().layoutDirection(), Qt::LeftToRight);
}

void NewsDocumentTest::surrogatesHaveNoDirection() {
  TestLayout layout;
  layout.change(u"\U0001F389 \u05D4\u05E1");  // an emoji, which has no direction, and Hebrew
  layout.change(u"\U0001E900 A4");            // a letter of Adlam, a right-to-left script
  layout.change(u"\U00020000 \u05D4\u05E1");  // an ideograph, which is left-to-right
  const NewsDocument document(layout.layout(), defaultStyle());
  QList<Qt::LayoutDirection> directions;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
    directions.append(block.blockFormat().layoutDirection());
  QCOMPARE(directions,
           (QList<Qt::LayoutDirection>{Qt::RightToLeft, Qt::RightToLeft, Qt::LeftToRight}));
}

void NewsDocumentTest::controlCharactersAddNoBlocks() {
  TestLayout layout;
  layout.change({{u"a\u2029b\uFDD0c\uFDD1d\uFFFCe\rf\u0007g\u0085h", StyleID::kStyleChangeText}},
                u"\u0007");
  const NewsDocument document(layout.layout(), defaultStyle());
  QCOMPARE(document.blockCount(), 1);
  const QString replacement(QChar::ReplacementCharacter);
  QCOMPARE(document.begin().text(), QStringLiteral("%1\ta%1b%1c%1d%1e%1f%1g%1h").arg(replacement));
}

void NewsDocumentTest::textsCannotChangeTheDirectionOfOtherText() {
  TestLayout layout;
  layout.change({{u"a\u202Eb", StyleID::kStyleChangeText},
                 {u"\u2066", StyleID::kStyleIssueLink, u"https://a.example/"},
                 {u" (v4.3\u202C)", StyleID::kStyleInternalCode}},
                u"\u2067\u2022");
  const NewsDocument document(layout.layout(), defaultStyle());
  QCOMPARE(document.begin().text(), QStringLiteral("\u2022\tab (v4.3)"));
  QCOMPARE(formatOf(document, QStringLiteral("(v4.3)")).foreground().color(),
           defaultStyle().secondary);
  QVERIFY(linksOf(document).isEmpty());
}

void NewsDocumentTest::changesWithoutTextAreLeftOut() {
  TestLayout layout;
  layout.change({}).change(u"Faster");
  NewsDocument document(layout.layout(), defaultStyle());
  QCOMPARE(plainText(document), QStringLiteral("\u2022 Faster"));
}

void NewsDocumentTest::aLineEndInAParagraphKeepsItsBlock() {
  TestLayout layout;
  layout.change(u"first\u2028second");
  NewsDocument document(layout.layout(), defaultStyle());
  QCOMPARE(document.blockCount(), 1);
  QCOMPARE(plainText(document), QStringLiteral("\u2022 first\nsecond"));
}

void NewsDocumentTest::plainTextContainsNoInvisibleUnits() {
  TestLayout layout;
  layout.header(u"Changes since v4.2").title(u"Map", u"IN DEVELOPMENT");
  layout.description({{u"Shows finds.", StyleID::kStyleFeatureDescription}}).change(u"Faster");
  NewsDocument document(layout.layout(), defaultStyle());
  QCOMPARE(plainText(document),
           QStringLiteral("Changes since v4.2\nMap IN DEVELOPMENT\nShows finds.\n\u2022 Faster"));
}

void NewsDocumentTest::labelsStayInOneLine() {
  TestLayout layout;
  layout.title(u"Map", u"IN DEVELOPMENT");
  const NewsDocument document(layout.layout(), defaultStyle());
  QVERIFY(document.begin().text().endsWith(QStringLiteral("IN\u00A0DEVELOPMENT")));
  QVERIFY(formatOf(document, QStringLiteral("DEVELOPMENT")).boolProperty(NewsDocument::IsLabel));
}

void NewsDocumentTest::viewMoreStaysInOneLine() {
  TestLayout layout;
  layout.description({{u"Shows finds.", StyleID::kStyleFeatureDescription},
                      {u" "},
                      {u"View more", StyleID::kStyleHotSpot, u"https://a.example/"}});
  NewsDocument document(layout.layout(), defaultStyle());
  QCOMPARE(document.begin().text(), QStringLiteral("Shows finds. View\u00A0more"));
  QCOMPARE(plainText(document), QStringLiteral("Shows finds. View more"));
}

void NewsDocumentTest::elementsAreHeadingsListItemsAndLinks() {
  TestLayout layout;
  layout.header(u"Changes")
      .title(u"Map")
      .change({{u"Faster ", StyleID::kStyleChangeText},
               {u"ORN-1", StyleID::kStyleIssueLink, u"https://a.example/1"}});
  const NewsDocument document(layout.layout(), defaultStyle());
  QList<NewsElement::Kind> kinds;
  for (const NewsElement& element : document.elements()) kinds.append(element.kind);
  using Kind = NewsElement::Kind;
  QCOMPARE(kinds, (QList<Kind>{Kind::Paragraph, Kind::Heading, Kind::ListItem, Kind::Link}));
  const NewsElement& change = document.elements()[2];
  const NewsElement& link = document.elements()[3];
  QCOMPARE(change.length, 14);  // bullet, tab and twelve characters
  QCOMPARE(link.length, 5);
  QVERIFY(change.contains(link.position));
  QVERIFY(!link.contains(link.position + link.length));
}

void NewsDocumentTest::itemsBeginWithTheirTitle() {
  TestLayout layout;
  layout.header(u"Changes").title(u"Map").change(u"Faster").title(u"Map").change(u"Smaller");
  const NewsDocument document(layout.layout(), defaultStyle());
  QList<int> parts;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
    parts.append(block.blockFormat().intProperty(NewsDocument::Part));
  const int first = NewsDocument::FirstBlock;
  const int later = NewsDocument::LaterBlock;
  QCOMPARE(parts, (QList<int>{0, first, later, first, later}));
}

const test_support::RegisteredTest<NewsDocumentTest> kNewsDocumentTest;

}  // namespace

#include "NewsDocumentTest.moc"
