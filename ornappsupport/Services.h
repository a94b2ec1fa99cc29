// The services of this module that a host replaces, and the way back.
//
// | service       | how a host replaces it                     | without                         |
// |---------------|--------------------------------------------|---------------------------------|
// | beta features | feature::SetFeatureService                 | an empty table, nothing allowed |
// | usage logging | analytics::SDMUsageLogger::SetLoggingQuery | on                              |
#ifndef ORNAPPSUPPORT_SERVICES_H_
#define ORNAPPSUPPORT_SERVICES_H_

#include <orncore/Export.h>

namespace ornappsupport {

/// Puts every service above back to what it was at the start. Not while another thread uses one.
ORN_EXPORT void ResetServices();

}  // namespace ornappsupport

#endif  // ORNAPPSUPPORT_SERVICES_H_
