#include <ornwhatsnewqt/Settings.h>

#include <QtCore/QCoreApplication>

namespace ornwhatsnewqt {
namespace {

/// Returns the platform of this build as data files name it.
QString buildPlatform() {
#if defined(Q_OS_MACOS)
  return QStringLiteral("Mac");
#elif defined(Q_OS_WIN)
  return QStringLiteral("Win");
#else
  return QStringLiteral("Linux");
#endif
}

}  // namespace

Settings::Settings()
    : applicationVersion(QCoreApplication::applicationVersion()),
      platform(buildPlatform()),
      usageLogging([] { return false; }) {}

Settings::Settings(const Settings& other) = default;
Settings& Settings::operator=(const Settings& other) = default;
Settings::~Settings() = default;

Settings Settings::withoutServices() {
  Settings settings;
  settings.applicationVersion.reset();
  settings.usageLogging = nullptr;
  settings.usesTranslators = false;
  return settings;
}

}  // namespace ornwhatsnewqt
