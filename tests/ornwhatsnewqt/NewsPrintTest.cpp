#include "ornwhatsnewqt/src/NewsPage.h"

#include <QtCore/QHash>
#include <QtCore/QVariant>
#include <QtGui/QPageLayout>
#include <QtGui/QPaintEngine>
#include <QtGui/QPainter>
#include <QtPrintSupport/QPrintEngine>
#include <QtPrintSupport/QPrinter>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include "tests/ornwhatsnewqt/QtTests.h"
#include "tests/ornwhatsnewqt/TestLayout.h"

namespace {

using ornwhatsnew::StyleID;
using test_support::longLayout;
using test_support::TestLayout;

/// Records the text that is painted, and its colours.
class RecordingPaintEngine : public QPaintEngine {
 public:
  RecordingPaintEngine() : QPaintEngine(AllFeatures) {}

  bool begin(QPaintDevice* /*device*/) override { return true; }
  bool end() override { return true; }
  void updateState(const QPaintEngineState& /*state*/) override {}
  void drawPath(const QPainterPath& /*path*/) override {}
  void drawPolygon(const QPointF* /*points*/, int /*count*/, PolygonDrawMode /*mode*/) override {}
  void drawPixmap(const QRectF& /*to*/, const QPixmap& /*pixmap*/,
                  const QRectF& /*from*/) override {}
  void drawTextItem(const QPointF& /*position*/, const QTextItem& item) override {
    const QColor color = painter()->pen().color();
    text_ += item.text();
    for (const QChar character : item.text()) colors_.insert(character, color);
  }
  Type type() const override { return User; }

  const QString& text() const { return text_; }
  const QHash<QChar, QColor>& colors() const { return colors_; }

 private:
  QString text_;
  QHash<QChar, QColor> colors_;  // the last colour of each character
};

/// Simulates a printer with A4 paper and 96 dots per inch. Counts the pages.
class RecordingPrintEngine : public QPrintEngine {
 public:
  void setProperty(PrintEnginePropertyKey /*key*/, const QVariant& /*value*/) override {}
  QVariant property(PrintEnginePropertyKey key) const override {
    return key == PPK_QPageLayout ? QVariant::fromValue(layout_) : QVariant();
  }
  bool newPage() override {
    ++pages_;
    return true;
  }
  bool abort() override { return true; }
  int metric(QPaintDevice::PaintDeviceMetric metric) const override;
  QPrinter::PrinterState printerState() const override { return QPrinter::Active; }

  /// Returns the number of pages.
  int pages() const { return pages_; }

 private:
  static constexpr int kResolution = 96;

  QPageLayout layout_{QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF()};
  int pages_ = 1;
};

int RecordingPrintEngine::metric(QPaintDevice::PaintDeviceMetric metric) const {
  switch (metric) {
    case QPaintDevice::PdmWidth:
      return layout_.fullRectPixels(kResolution).width();
    case QPaintDevice::PdmHeight:
      return layout_.fullRectPixels(kResolution).height();
    case QPaintDevice::PdmDpiX:
    case QPaintDevice::PdmDpiY:
    case QPaintDevice::PdmPhysicalDpiX:
    case QPaintDevice::PdmPhysicalDpiY:
      return kResolution;
    case QPaintDevice::PdmDevicePixelRatioScaled:
      return qRound(QPaintDevice::devicePixelRatioFScale());
    default:
      return 1;
  }
}

/// A printer that records its pages instead of printing them.
class RecordingPrinter : public QPrinter {
 public:
  RecordingPrinter() { setEngines(&printEngine_, &paintEngine_); }

  const RecordingPrintEngine& printed() const { return printEngine_; }
  const RecordingPaintEngine& painted() const { return paintEngine_; }

 private:
  RecordingPrintEngine printEngine_;
  RecordingPaintEngine paintEngine_;
};

class NewsPrintTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void printsBlackOnWhite();
  void printsAllPages();
};

void NewsPrintTest::printsBlackOnWhite() {
  TestLayout layout;
  layout.title(u"Map", u"OFF");
  layout.change({{u"link", StyleID::kStyleIssueLink, u"https://a.example/1"}});
  const QPalette before = QApplication::palette();
  QApplication::setPalette(QPalette(Qt::black));  // a dark desktop with white text
  RecordingPrinter printer;
  ornwhatsnewqt::printNews(layout.layout(), QFont(), printer);
  QApplication::setPalette(before);
  // A word joiner, which has no width, is before the label. The page number is at the end.
  QString text = printer.painted().text();
  QCOMPARE(text.remove(QChar(0x2060)).remove(u'\t'), QStringLiteral("Map OFF\u2022link1"));
  QCOMPARE(printer.painted().colors().value(u'M'), QColor(Qt::black));
  for (const QColor& color : printer.painted().colors())
    QVERIFY2(color.lightness() < 150, qPrintable(color.name()));
}

void NewsPrintTest::printsAllPages() {
  RecordingPrinter printer;
  ornwhatsnewqt::printNews(longLayout(200), QFont(), printer);
  QVERIFY(printer.printed().pages() > 2);
  QCOMPARE(printer.painted().text().count(QStringLiteral("A change")), 200);
}

const test_support::RegisteredTest<NewsPrintTest> kNewsPrintTest;

}  // namespace

#include "NewsPrintTest.moc"
