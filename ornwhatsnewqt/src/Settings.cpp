#include <ornwhatsnewqt/Settings.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>

// Q_INIT_RESOURCE must not be in a namespace.
static void initializeResources() {
#if defined(ORNWHATSNEW_STATIC)
  // Without this reference, the linker would omit the resources of the static library.
  Q_INIT_RESOURCE(ornwhatsnewqt);
#endif
}

namespace ornwhatsnewqt {
namespace {

/// Returns the platform of this build, in the form of `Settings::platform`.
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
      usageLogging([] { return false; }) {
  initializeResources();
}

Settings Settings::withoutServices() {
  Settings settings;
  settings.applicationVersion.reset();
  settings.usageLogging = nullptr;
  settings.usesTranslators = false;
  return settings;
}

}  // namespace ornwhatsnewqt
