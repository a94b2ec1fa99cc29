// Lets the host set the URLs of the library's own links: to issues, to commits, and to the page on
// which users allow usage logging.
//
// The host sets the links once at startup:
//
//   ornappsupport::links::PanelLinks links;
//   links.issueLink = u"https://issues.example/browse/@0";
//   links.issuePrefix = u"MAP-";
//   links.commitLink.clear();  // commits have no page
//   ornappsupport::links::SetPanelLinks(links);
#ifndef ORNAPPSUPPORT_LINKS_PANELLINKS_H_
#define ORNAPPSUPPORT_LINKS_PANELLINKS_H_

#include <orncore/Export.h>
#include <orncore/string/Conversion.h>

namespace ornappsupport::links {

using orncore::string::UTF16String;

/// The links of a panel. If a link template is empty, the panel shows the issue key or the commit
/// ID without a link.
struct PanelLinks {
  /// Sets each member to its default. Build options of the library determine the base URLs in the
  /// default link templates, and the default `privacyPage`.
  ORN_EXPORT PanelLinks();

  /// The link template for issues. The list replaces each `@0` in it with the key of the issue in
  /// upper case. The panel shows issue links only to internal users.
  UTF16String issueLink;
  /// The link template for commits. The list replaces each `@0` in it with the commit ID, which is
  /// the field in column 9 of a change. The panel shows commit links only to internal users.
  UTF16String commitLink;
  /// The URL of the page on which users allow usage logging. If usage logging is off, the rating
  /// view shows the URL to external users. The URL is both the target and the text of the link. If
  /// this member is empty, replace the strings before and after the URL through the dictionary,
  /// because they refer to the URL. These strings are `kOptedOutPart1` and `kOptedOutPart2` in
  /// `ornwhatsnew/PanelText.h`.
  UTF16String privacyPage;
  /// The prefix of issue keys, "ORN" by default. Letter case does not matter. The panel shows story
  /// IDs and item keys that begin with this prefix as issues. Only internal users see issues. If
  /// the prefix is empty, the panel shows no issues.
  UTF16String issuePrefix;
};

/// Returns whether all links in `links` are valid. `issueLink` and `commitLink` must be safe links
/// (`orncore::string::IsSafeLink`) that contain `@0`. The host name of a safe link contains no `@`,
/// so each `@0` is after the host name. `privacyPage` must be a safe link. An empty string and the
/// default of a member are always valid. Safe to call from any thread.
ORN_EXPORT bool AreValid(const PanelLinks& links);

/// Replaces the links of all panels that lists create afterwards, and returns true. A
/// default-constructed `PanelLinks` restores the defaults.
///
/// If `AreValid(links)` is false, returns false and keeps the previous links. If memory runs out,
/// throws `std::bad_alloc` and keeps the previous links. Safe to call from any thread.
ORN_EXPORT bool SetPanelLinks(PanelLinks links);

/// Returns the current links, with the issue prefix in upper case. Safe to call from any thread.
ORN_EXPORT PanelLinks GetPanelLinks();

}  // namespace ornappsupport::links

#endif  // ORNAPPSUPPORT_LINKS_PANELLINKS_H_
