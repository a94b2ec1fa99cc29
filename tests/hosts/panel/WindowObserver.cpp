// Runs in the program `ornwhatsnew-panel` of the tests. Prints what the window shows to standard
// output, rates the first feature if the window shows ratings, and closes the window.
#include <cstdio>

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
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

void observeWindow() {
  for (QWidget* const widget : QApplication::topLevelWidgets()) {
    auto* const window = qobject_cast<QDialog*>(widget);
    if (window == nullptr || !window->isVisible()) continue;
    printLine(window->windowTitle());
    auto* const news = window->findChild<QTextBrowser*>(QStringLiteral("newsPage"));
    if (news->isVisible()) {
      printLine(news->toPlainText());
    } else {
      rateFirstFeature(*window);
    }
    window->close();
  }
}

// The program calls this function when it creates the application object. The timer expires when
// the program has shown its window and waits for events.
void observeApplication() {
  QTimer::singleShot(0, &observeWindow);
}
Q_COREAPP_STARTUP_FUNCTION(observeApplication)

}  // namespace
