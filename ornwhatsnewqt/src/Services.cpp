#include "ornwhatsnewqt/src/Services.h"

#include <memory>

#include <QtCore/QtGlobal>

#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>
#include <orncore/config/ClientInfo.h>
#include <orncore/config/Localizer.h>

#include "ornwhatsnewqt/src/LocalizedText.h"

namespace ornwhatsnewqt {

void installServices(const Settings& settings) {
  if (settings.applicationVersion) {
    if (settings.applicationVersion->isEmpty()) {
      qWarning(
          "ornwhatsnewqt: the application has no version; call "
          "QCoreApplication::setApplicationVersion before you create Settings");
    }
    orncore::config::SetClientInfo(std::make_shared<orncore::config::FixedClientInfo>(
        settings.applicationVersion->toStdU16String(), settings.buildNumber.toStdU16String(),
        settings.platform.toStdString()));
  }
  if (settings.features) ornappsupport::feature::SetFeatureService(settings.features);
  if (settings.usageLogging) {
    ornappsupport::analytics::SDMUsageLogger::SetLoggingQuery(settings.usageLogging);
  }
  if (settings.usesTranslators) {
    orncore::config::Localizer::Get().SetDictionary(std::make_shared<TranslatorDictionary>());
  }
}

}  // namespace ornwhatsnewqt
