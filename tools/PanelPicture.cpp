// Part of panel_picture, a variant of the program `ornwhatsnew-panel` that ./dev picture builds.
// Saves a screenshot of the window and closes the window. The environment variable PANEL_PICTURE
// contains the path of the screenshot. PANEL_COLORS selects the palette: "light" or "dark".
#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>
#include <QtGui/QPalette>
#include <QtGui/QPixmap>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

namespace {

constexpr QSize kWindowSize(760, 900);
// The time to wait before the screenshot, in milliseconds. After this time, the window has the
// focus, its final size and its final colours.
constexpr int kPatience = 1500;

QPalette darkPalette() {
  QPalette palette(QColor(0x2b2d33), QColor(0x25272c));
  palette.setColor(QPalette::Base, QColor(0x1e1f24));
  palette.setColor(QPalette::Highlight, QColor(0x4a8cff));
  palette.setColor(QPalette::Link, QColor(0x7db0ff));
  return palette;
}

QPalette lightPalette() {
  QPalette palette(QColor(0xefeff1), QColor(0xf5f5f6));
  palette.setColor(QPalette::Base, Qt::white);
  palette.setColor(QPalette::Highlight, QColor(0x2a6fdb));
  palette.setColor(QPalette::Link, QColor(0x1a5fc8));
  return palette;
}

QWidget* openWindow() {
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->isVisible()) return window;
  }
  qFatal("no window is open");
}

void saveWindow() {
  QWidget* const window = openWindow();
  const QString file = qEnvironmentVariable("PANEL_PICTURE");
  // For PNG files, the quality 0 selects the best compression.
  if (!window->grab().save(file, "PNG", 0)) qFatal("cannot write '%s'", qUtf8Printable(file));
  window->close();
}

void prepareWindow() {
  const bool isDark = qEnvironmentVariable("PANEL_COLORS") == QStringLiteral("dark");
  QApplication::setPalette(isDark ? darkPalette() : lightPalette());
  openWindow()->resize(kWindowSize);
  QTimer::singleShot(kPatience, &saveWindow);
}

// Qt calls this function when the program creates the application object. The timer expires when
// the program has shown its window and waits for events.
void observeApplication() {
  QTimer::singleShot(0, &prepareWindow);
}
Q_COREAPP_STARTUP_FUNCTION(observeApplication)

}  // namespace
