#include <ornwhatsnew/WhatsNewTypes.h>

#include <orncore/config/ClientInfo.h>
#include <orncore/string/Replace.h>

#include "ornwhatsnew/src/rules/DebugSwitches.h"
#include "ornwhatsnew/src/rules/Keywords.h"

namespace ornwhatsnew {

const UTF8String kMiscKey{keywords::kMisc};
const UTF8String kBugfixKey{keywords::kBugfix};
const UTF8String kInternalKey{keywords::kInternal};
const UTF8String kUnreviewedKey{keywords::kUnreviewedSection};

bool ShowingAllOffFeaturesInternally() {
  return IsInternalDebugSwitchOn(kShowAllOffFeatures);
}

UTF16String GetFullClientVersionString() {
  UTF16String version = orncore::config::GetClientVersion();
  UTF16String withoutDots = version;
  orncore::string::ReplaceAllStringInString(withoutDots, u".", u"");
  if (withoutDots.size() + 1 == version.size()) version += u".0";
  version += u'.';
  version += orncore::config::GetClientBuildNumber();
  return version;
}

}  // namespace ornwhatsnew
