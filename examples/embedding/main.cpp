// The smallest host. It describes the application, loads the list and shows what is new.
#include <iostream>
#include <map>

#include <orncore/config/ClientInfo.h>
#include <orncore/string/Conversion.h>
#include <ornui/utility/ResourceManager.h>
#include <ornwhatsnew/WhatsNew.h>

int main() {
  using namespace ornwhatsnew;
  orncore::config::SetClientInfo(
      std::make_shared<orncore::config::FixedClientInfo>(u"4.3", u"118", "Mac"));
  const ornui::utility::FolderResourceManager resources("examples/herbarium");
  std::map<UTF8String, UTF8String> settings;  // the list stores three strings here
  const auto list = GetWhatsNew(
      u"whatsnew.csv", &resources, [&](const UTF8String& key) { return settings[key]; },
      [&](const UTF8String& key, const UTF8String& value) { settings[key] = value; });

  const DisplayOptions options = kShowOnlyNew | kFilterRelevantPlatform;
  if (!list->IsAnythingNew(options)) return 0;  // no badge, no panel
  StyleRunMap runs;                             // receives the titles, links and labels
  const UTF16String text = list->GetFormattedTextForDisplay(options, u"", runs, nullptr);
  std::cout << orncore::string::UTF16to8(text);
}
