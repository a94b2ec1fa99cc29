// A host that loads a list with its own resource manager and fails unless the list can be
// displayed.
#ifdef EVERY_HEADER
#include <every_header.h>
// Public headers must not include Boost or ICU, because a host may use other versions of these
// libraries or configure them with other macros.
#if defined(BOOST_CONFIG_HPP) || defined(U_ICU_VERSION_SHORT)
#error "a public header includes Boost or ICU"
#endif
#endif

#include <cstdio>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <ornui/utility/ResourceManager.h>
#include <ornwhatsnew/Version.h>
#include <ornwhatsnew/WhatsNew.h>

bool AnyRunOf(const ornwhatsnew::StyleRunMap& runs, ornwhatsnew::StyleID style);

class BuiltInResources final : public ornui::utility::ResourceManager {
 public:
  bool LoadResource(const std::u16string&, const std::u16string&,
                    std::vector<unsigned char>& bytes) const override {
    constexpr std::string_view kData =
        "Version,Group,Story,Salience,Rating,First,Platform,URL,SHA,Text\n"
        "25.1,MISC,,,,,,,,Found from outside\n";
    bytes.assign(kData.begin(), kData.end());
    return true;
  }
};

int main() {
  const BuiltInResources resources;
  std::map<std::string, std::string> settings;
  const auto list = ornwhatsnew::GetWhatsNew(
      u"news", &resources, [&](const std::string& key) { return settings[key]; },
      [&](const std::string& key, const std::string& value) { settings[key] = value; });
  ornwhatsnew::StyleRunMap runs;
  const std::u16string text = list->GetFormattedTextForDisplay({}, u"", runs, nullptr);

  const bool isShown = text.find(u"Found from outside") != std::u16string::npos;
  const bool isStyled = AnyRunOf(runs, ornwhatsnew::kStyleFeatureTitle);
  const bool isRemembered = !settings["WhatsNew.AllSeenItems"].empty();
  std::printf("%s: shown %d, styled %d, remembered %d\n",
              std::string(ornwhatsnew::kVersionText).c_str(), isShown, isStyled, isRemembered);
  return isShown && isStyled && isRemembered ? 0 : 1;
}
