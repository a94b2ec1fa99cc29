#include <ornappsupport/links/PanelLinks.h>

#include <memory>
#include <string_view>
#include <utility>

#include <orncore/string/CaseMapping.h>
#include <orncore/string/SafeLink.h>

#include "orncore/src/utility/ServiceHolder.h"

namespace ornappsupport::links {
namespace {

using orncore::string::IsSafeLink;

orncore::utility::ServiceHolder<const PanelLinks> panelLinksHolder;

bool IsLinkTemplate(std::u16string_view text) noexcept {
  // The host name of a safe link contains no "@", so each `@0` is after it. The string that
  // replaces `@0` therefore cannot change the host name.
  return IsSafeLink(text) && text.find(u"@0") != std::u16string_view::npos;
}

// Accepts the default of a member even if it is not a valid link. The build sets the defaults, and
// a host may set only some members of `PanelLinks`.
bool IsEmptyOrDefaultOr(bool (*isValid)(std::u16string_view) noexcept, const UTF16String& link,
                        const UTF16String& defaultLink) {
  return link.empty() || link == defaultLink || isValid(link);
}

}  // namespace

PanelLinks::PanelLinks()
    : issueLink(u"" ORNWHATSNEW_ISSUE_TRACKER u"/browse/@0"),
      commitLink(u"" ORNWHATSNEW_COMMIT_BROWSER u"/ORN/orn/commit/@0"),
      privacyPage(u"" ORNWHATSNEW_PRIVACY_PAGE),
      issuePrefix(u"ORN") {}

bool AreValid(const PanelLinks& links) {
  const PanelLinks defaults;
  return IsEmptyOrDefaultOr(IsLinkTemplate, links.issueLink, defaults.issueLink) &&
         IsEmptyOrDefaultOr(IsLinkTemplate, links.commitLink, defaults.commitLink) &&
         IsEmptyOrDefaultOr(IsSafeLink, links.privacyPage, defaults.privacyPage);
}

bool SetPanelLinks(PanelLinks links) {
  if (!AreValid(links)) return false;
  links.issuePrefix = orncore::string::UpperCase(links.issuePrefix);
  panelLinksHolder.Set(std::make_shared<const PanelLinks>(std::move(links)));
  return true;
}

PanelLinks GetPanelLinks() {
  const auto links = panelLinksHolder.Get();
  return links ? *links : PanelLinks();
}

}  // namespace ornappsupport::links
