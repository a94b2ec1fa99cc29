#include <ornappsupport/Services.h>

#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>

namespace ornappsupport {

void ResetServices() {
  feature::SetFeatureService(nullptr);
  analytics::SDMUsageLogger::SetLoggingQuery({});
}

}  // namespace ornappsupport
