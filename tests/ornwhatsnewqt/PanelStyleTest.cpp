#include "ornwhatsnewqt/src/PanelStyle.h"

#include <cmath>
#include <utility>

#include <QtGui/QFontInfo>
#include <QtTest/QTest>

#include <ornwhatsnew/WhatsNewTypes.h>

#include "tests/ornwhatsnewqt/QtTests.h"

namespace {

using ornwhatsnewqt::PanelStyle;

/// Returns the contrast ratio of two colours, as WCAG 2 defines it.
double contrast(const QColor& first, const QColor& second) {
  const auto luminance = [](const QColor& color) {
    const auto linear = [](double part) {
      return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
  };
  const double light = std::max(luminance(first), luminance(second));
  const double dark = std::min(luminance(first), luminance(second));
  return (light + 0.05) / (dark + 0.05);
}

QPalette makePalette(const QColor& window, const QColor& base, const QColor& text,
                     const QColor& highlight, const QColor& link) {
  QPalette palette;
  palette.setColor(QPalette::Window, window);
  palette.setColor(QPalette::Base, base);
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::Highlight, highlight);
  palette.setColor(QPalette::Link, link);
  return palette;
}

class PanelStyleTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void textIsReadableInEveryPalette_data();
  void textIsReadableInEveryPalette();
  void cardsAreVisibleIfTheyHaveTheColorOfThePage();
  void theSizesAreDeviceIndependentPixels();
  void noTextIsSmallerThanTheDesktopFont();
};

void PanelStyleTest::textIsReadableInEveryPalette_data() {
  QTest::addColumn<QPalette>("palette");
  QTest::newRow("light") << makePalette(QColor(239, 239, 239), Qt::white, Qt::black,
                                        QColor(48, 140, 198), QColor(0, 0, 255));
  QTest::newRow("pale highlight") << makePalette(Qt::white, Qt::white, Qt::black,
                                                 QColor(250, 240, 120), QColor(90, 200, 255));
  QTest::newRow("dark") << makePalette(QColor(32, 33, 36), QColor(43, 44, 48),
                                       QColor(232, 232, 234), QColor(20, 60, 120),
                                       QColor(0, 0, 200));
  QTest::newRow("high contrast") << makePalette(Qt::black, Qt::black, Qt::white, Qt::cyan,
                                                Qt::yellow);
}

void PanelStyleTest::textIsReadableInEveryPalette() {
  QFETCH(QPalette, palette);
  const PanelStyle style(palette, QFont());
  for (const QColor& color : {style.text, style.secondary, style.link, style.warning}) {
    QVERIFY2(contrast(color, style.card) >= 4.5, qPrintable(color.name()));
    QVERIFY2(contrast(color, style.page) >= 4.5, qPrintable(color.name()));
  }
  QVERIFY(contrast(style.accent, style.accentFill) >= 4.5);
  QVERIFY(contrast(style.accentText, style.accent) >= 4.5);
}

void PanelStyleTest::cardsAreVisibleIfTheyHaveTheColorOfThePage() {
  const PanelStyle plain(
      makePalette(QColor(239, 239, 239), Qt::white, Qt::black, Qt::blue, Qt::blue), QFont());
  const PanelStyle contrasting(makePalette(Qt::black, Qt::black, Qt::white, Qt::cyan, Qt::yellow),
                               QFont());
  QVERIFY(contrast(plain.cardOutline, plain.card) < 3);
  QVERIFY(contrast(contrasting.cardOutline, contrasting.card) >= 3);
}

void PanelStyleTest::theSizesAreDeviceIndependentPixels() {
  QFont font;
  font.setPixelSize(13);
  const PanelStyle style(QPalette(), font);
  QCOMPARE(style.font(ornwhatsnew::kFontSize_Title).pixelSize(), 28);
  QCOMPARE(style.font(ornwhatsnew::kFontSize_NormalSmall).pixelSize(), 16);
}

void PanelStyleTest::noTextIsSmallerThanTheDesktopFont() {
  QFont font;
  font.setPixelSize(24);
  const PanelStyle style(QPalette(), font);
  QCOMPARE(style.font(ornwhatsnew::kFontSize_NormalSmall).pixelSize(), 24);
  QCOMPARE(style.font(ornwhatsnew::kFontSize_Title).pixelSize(), 42);
}

const test_support::RegisteredTest<PanelStyleTest> kPanelStyleTest;

}  // namespace

#include "PanelStyleTest.moc"
