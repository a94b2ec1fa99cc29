// Observes the window of `panel_observed`, which is `ornwhatsnew-panel` linked with this file.
// Prints the title of the window and any message to standard output. If the window shows the news
// page, prints the text of this page. Otherwise, rates the first feature on the rating page. Then
// closes the window.
#include <cstdio>

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QTextBrowser>

namespace {

void printLine(const QString& line) {
  std::puts(line.toUtf8().constData());
  std::fflush(stdout);
}

void rateFirstFeature(const QDialog& window) {
  auto* const choices = window.findChild<QWidget*>(QStringLiteral("choices"));
  choices->findChildren<QRadioButton*>().at(3)->click();
  window.findChild<QLineEdit*>(QStringLiteral("comment"))->setText(QStringLiteral("Very good"));
  window.findChild<QPushButton*>(QStringLiteral("send"))->click();
}

void printMessage(const QDialog& window) {
  const auto* const bar = window.findChild<QWidget*>(QStringLiteral("messageBar"));
  if (bar->isVisible()) printLine(bar->findChild<QLabel*>(QStringLiteral("message"))->text());
}

void observeWindow() {
  for (QWidget* const widget : QApplication::topLevelWidgets()) {
    auto* const window = qobject_cast<QDialog*>(widget);
    if (window == nullptr || !window->isVisible()) continue;
    printLine(window->windowTitle());
    printMessage(*window);
    auto* const news = window->findChild<QTextBrowser*>(QStringLiteral("newsPage"));
    if (news->isVisible()) {
      printLine(news->toPlainText());
    } else {
      rateFirstFeature(*window);
    }
    window->close();
  }
}

// Qt calls this function when the program creates its application object. The first timer expires
// after the program has shown its window. The second timer expires after the program's own timer,
// which stores the state.
void observeApplication() {
  QTimer::singleShot(0, [] { QTimer::singleShot(0, &observeWindow); });
}
Q_COREAPP_STARTUP_FUNCTION(observeApplication)

}  // namespace
