#include "Resources.h"

#include <string_view>

namespace {

constexpr std::string_view kNews =
    R"(App Version,Grouping ID,Jira ID,Salience,Ask User For Rating,Earliest Relevant Change Version,Only Relevant Platform,URL To Discussion Thread,Changelist ID,Public/Internal message
4.2,Changes-Since
4.3,ORN-1187,ORN-4538,Detail,,,Mac,,,Pinch on the trackpad to zoom
4.3,ORN-1187,ORN-4539,Detail,RequestRating,,Win,https://forum.tarsa.example/t/map,,$$$/herbarium/news/43/zoom=Ctrl and the wheel zoom
4.3,ORN-1320,,,,,,,,Two herbaria find each other
4.3,MISC,ORN-4750,,,,,,,"Starts faster, on every machine"
)";

}  // namespace

bool BuiltInResources::LoadResource(const std::u16string& name, const std::u16string& type,
                                    std::vector<unsigned char>& bytes) const {
  bytes.clear();
  if (name != u"news" || type != u"csv") return false;
  bytes.assign(kNews.begin(), kNews.end());
  return true;
}
