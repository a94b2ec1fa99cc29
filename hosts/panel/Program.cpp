#include "hosts/panel/Program.h"

#include <exception>
#include <iostream>
#include <string>
#include <string_view>

#include <QtCore/QLocale>
#include <QtCore/QTimer>
#include <QtGui/QAction>
#include <QtWidgets/QApplication>

#include <orncore/string/SafeText.h>
#include <ornwhatsnewqt/WhatsNew.h>

#include "hosts/common/HostDescription.h"
#include "hosts/common/StateStore.h"
#include "hosts/common/TextFile.h"
#include "hosts/common/ToolError.h"
#include "hosts/console/WhatsNewLoading.h"
#include "hosts/panel/Arguments.h"
#include "hosts/panel/HostTranslator.h"

namespace hosts::panel {
namespace {

using common::ExitStatus;
using common::ToolError;
using ornwhatsnewqt::Settings;
using ornwhatsnewqt::WhatsNew;

// `WhatsNew` reads the file later. This function checks the file first, as the program
// `ornwhatsnew` does, so that both programs accept the same files and print the same error
// messages.
void RequireDataFile(const std::filesystem::path& file) {
  try {
    static_cast<void>(common::ReadTextFile(file));
  } catch (const orncore::config::ResultError& error) {
    throw ToolError(ExitStatus::kInput, common::OpenErrorMessage(file, error));
  }
}

// A display sets three strings. The event loop calls Commit after the display, so that one write
// stores all of them.
ornwhatsnew::StateSetter CommittingSetter(common::StateStore& store) {
  return [&store](const ornwhatsnew::UTF8String& key, const ornwhatsnew::UTF8String& value) {
    store.Set(key, value);
    QTimer::singleShot(0, QCoreApplication::instance(), [&store] {
      try {
        store.Commit();
      } catch (const std::exception&) {
        // The store keeps the values. The Commit at the end of the program reports the error.
      }
    });
  };
}

Settings MakeSettings(common::StateStore& store) {
  Settings settings = Settings::withoutServices();
  settings.usesTranslators = true;
  settings.stateGetter = store.Getter();
  settings.stateSetter = CommittingSetter(store);
  // With an empty store, `ornwhatsnew show` shows everything, too.
  settings.firstStart = ornwhatsnewqt::FirstStart::ShowAll;
  return settings;
}

void PrintRating(const QString& featureKey, int stars, const QString& comment) {
  std::string line = "rated " + featureKey.toStdString() + ": " + std::to_string(stars) + " of 5";
  if (!comment.isEmpty()) line += ", '" + comment.toStdString() + "'";
  std::cout << orncore::string::EscapeInvisible(line) << std::endl;
}

// Shows the panel until the user closes its window.
void ShowPanel(const Arguments& arguments, const common::HostDescription& host,
               common::StateStore& store) {
  // The settings make the German texts available, so create them before the translator.
  const Settings settings = MakeSettings(store);
  QTranslator translator;
  if (translator.load(QLocale(), QStringLiteral("ornwhatsnew"), QStringLiteral("_"),
                      QStringLiteral(":/ornwhatsnewqt"))) {
    QCoreApplication::installTranslator(&translator);
  }
  HostTranslator hostTranslator(host.dictionary);
  QCoreApplication::installTranslator(&hostTranslator);

  const WhatsNew whatsNew(QString::fromStdString(arguments.data.native()), settings);
  QObject::connect(&whatsNew, &WhatsNew::rated, &whatsNew, &PrintRating);
  // The action is disabled for 14 days after the first start. Enable it, because authors should not
  // have to wait.
  if (arguments.showsRatings) whatsNew.rateAction()->setEnabled(true);
  (arguments.showsRatings ? whatsNew.rateAction() : whatsNew.showAction())->trigger();
  QApplication::exec();
}

ExitStatus Run(const Arguments& arguments) {
  const common::HostDescription host = common::ReadHostDescription(arguments.host);
  common::InstallHost(host);
  common::StateStore store(console::StateLocation(arguments.state));
  RequireDataFile(arguments.data);
  std::string name = "ornwhatsnew-panel";
  int argc = 1;
  char* argv[] = {name.data(), nullptr};
  const QApplication application(argc, argv);
  // `QSettings` stores the filters of the panel under this name and the name of the program.
  QCoreApplication::setOrganizationName(QStringLiteral("ornwhatsnew"));
  QGuiApplication::setDesktopFileName(QStringLiteral("ornwhatsnew-panel"));
  ShowPanel(arguments, host, store);
  store.Commit();
  return ExitStatus::kDone;
}

ExitStatus RunCommandLine(int argc, const char* const* argv) {
  const std::optional<Arguments> arguments = ParseArguments(argc, argv);
  return arguments ? Run(*arguments) : ExitStatus::kDone;
}

void ReportError(std::string_view message) {
  std::cerr << "ornwhatsnew-panel: " << orncore::string::EscapeInvisible(message) << std::endl;
}

}  // namespace

int RunProgram(int argc, const char* const* argv) noexcept {
  return common::RunReportingErrors(argc, argv, &RunCommandLine, &ReportError);
}

}  // namespace hosts::panel
