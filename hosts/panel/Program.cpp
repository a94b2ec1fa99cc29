#include "hosts/panel/Program.h"

#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include <QtCore/QLocale>
#include <QtCore/QTimer>
#include <QtCore/QTranslator>
#include <QtGui/QAction>
#include <QtWidgets/QApplication>

#include <orncore/string/SafeText.h>
#include <ornwhatsnewqt/WhatsNew.h>

#include "hosts/common/HostDescription.h"
#include "hosts/common/StandardStreams.h"
#include "hosts/common/StateStore.h"
#include "hosts/common/TextFile.h"
#include "hosts/common/ToolError.h"
#include "hosts/common/WriteSignals.h"
#include "hosts/panel/Arguments.h"
#include "hosts/panel/HostTranslator.h"

namespace hosts::panel {
namespace {

using common::ExitStatus;
using common::ToolError;
using ornwhatsnewqt::Settings;
using ornwhatsnewqt::WhatsNew;

Settings MakeSettings(common::StateStore& store, QTimer& commitTimer) {
  Settings settings = Settings::withoutServices();
  settings.usesTranslators = true;
  settings.stateGetter = store.Getter();
  // A display sets the three strings of the state. The timer expires after the display, so that one
  // write stores all of them.
  settings.stateSetter = [&store, &commitTimer](const ornwhatsnew::UTF8String& key,
                                                const ornwhatsnew::UTF8String& value) {
    store.Set(key, value);
    commitTimer.start();
  };
  // If the store is empty, show everything, as `ornwhatsnew show` does.
  settings.firstStart = ornwhatsnewqt::FirstStart::ShowAll;
  return settings;
}

// Writes the store. If the write fails, returns the error message. Otherwise, returns an empty
// string.
QString CommitError(common::StateStore& store) {
  try {
    store.Commit();
    return {};
  } catch (const std::exception& error) {
    // The store keeps the buffered values. `Run` tries to write them again at the end.
    return QString::fromStdString(orncore::string::EscapeInvisible(error.what()));
  }
}

// Prints a rating. If the rating cannot be printed, stores the error in `outputError`, because an
// exception must not reach the event loop.
void PrintRating(const QString& featureKey, int stars, const QString& comment,
                 std::optional<ToolError>& outputError) {
  std::string line = "rated " + featureKey.toStdString() + ": " + std::to_string(stars) + " of 5";
  if (!comment.isEmpty()) line += ", '" + comment.toStdString() + "'";
  try {
    common::WriteOutput(orncore::string::EscapeInvisible(line) + '\n', "a rating was not printed");
  } catch (const ToolError& error) {
    outputError = error;
  }
}

// Installs the translation of the panel's strings for the language of the desktop, if this
// translation exists.
void InstallTranslator(QTranslator& translator) {
  if (translator.load(QLocale(), QStringLiteral("ornwhatsnew"), QStringLiteral("_"),
                      QStringLiteral(":/ornwhatsnewqt"))) {
    QCoreApplication::installTranslator(&translator);
  }
}

// Shows the panel until the user closes its window. If a rating could not be printed, returns the
// last error. Otherwise, returns `std::nullopt`.
std::optional<ToolError> ShowPanel(const Arguments& arguments, const common::HostDescription& host,
                                   common::StateStore& store) {
  QTimer commitTimer;
  commitTimer.setSingleShot(true);
  // Create the settings first. In a static build, their constructor makes the German translation
  // available to `translator`.
  const Settings settings = MakeSettings(store, commitTimer);
  QTranslator translator;
  InstallTranslator(translator);
  HostTranslator hostTranslator(host.dictionary);
  QCoreApplication::installTranslator(&hostTranslator);

  WhatsNew whatsNew(QString::fromStdString(arguments.data.native()), settings);
  QObject::connect(&commitTimer, &QTimer::timeout, &whatsNew,
                   [&] { whatsNew.setStateError(CommitError(store)); });
  std::optional<ToolError> outputError;
  QObject::connect(&whatsNew, &WhatsNew::rated, &whatsNew,
                   [&outputError](const QString& featureKey, int stars, const QString& comment) {
                     PrintRating(featureKey, stars, comment, outputError);
                   });
  // The action that opens the rating page can be disabled, for example in the first 14 days after
  // the first start. Enable it, because authors should not have to wait.
  if (arguments.showsRatings) whatsNew.rateAction()->setEnabled(true);
  (arguments.showsRatings ? whatsNew.rateAction() : whatsNew.showAction())->trigger();
  QApplication::exec();
  return outputError;
}

ExitStatus Run(const Arguments& arguments) {
  const common::HostDescription host = common::ReadHostDescription(arguments.host);
  common::InstallHost(host);
  common::StateStore store(common::StateLocation(arguments.state));
  // `WhatsNew` reads the data file later. Read the file here as the program `ornwhatsnew` does, so
  // that both programs accept the same files and print the same error messages.
  static_cast<void>(common::ReadInputFile(arguments.data));
  std::string name = "ornwhatsnew-panel";
  int argc = 1;
  char* argv[] = {name.data(), nullptr};
  const QApplication application(argc, argv);
  // `QSettings` stores values of the panel, such as its filters, under this organization name and
  // the name of the program.
  QCoreApplication::setOrganizationName(QStringLiteral("ornwhatsnew"));
  QGuiApplication::setDesktopFileName(QStringLiteral("ornwhatsnew-panel"));
  const std::optional<ToolError> outputError = ShowPanel(arguments, host, store);
  store.Commit();
  if (outputError) throw ToolError(*outputError);
  return ExitStatus::kDone;
}

ExitStatus RunCommandLine(int argc, const char* const* argv) {
  const std::optional<Arguments> arguments = ParseArguments(argc, argv);
  return arguments ? Run(*arguments) : ExitStatus::kDone;
}

void ReportError(std::string_view message) {
  common::ReportError("ornwhatsnew-panel", message);
}

}  // namespace

int RunProgram(int argc, const char* const* argv) noexcept {
  common::IgnoreWriteSignals();
  // RunReportingErrors catches all exceptions, but cppcheck does not detect this.
  // cppcheck-suppress throwInNoexceptFunction
  return common::RunReportingErrors(argc, argv, &RunCommandLine, &ReportError);
}

}  // namespace hosts::panel
