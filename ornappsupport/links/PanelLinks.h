// Lets the host choose the pages to which the library's own links lead: issues, commits, and the
// page on which users allow usage logging.
//
// The host sets the links once at start:
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

/// The links of a panel. If a link template is empty, the panel shows the same text without a link.
struct PanelLinks {
  /// Sets each member to its default. The default URLs are build options of the library.
  ORN_EXPORT PanelLinks();

  /// The link template for issues. The list replaces each `@0` in it by the key of the issue. The
  /// panel shows issue links only to internal users.
  UTF16String issueLink;
  /// The link template for commits. The list replaces each `@0` in it by the commit ID, which is
  /// the field in column 9 of a change. The panel shows commit links only to internal users.
  UTF16String commitLink;
  /// The URL of the page on which users allow usage logging. The rating view shows it to users who
  /// do not allow usage logging. It is both the target and the text of the link. If you set it to
  /// an empty string, replace the texts before and after the URL through the dictionary, because
  /// they refer to the URL. These texts are `kOptedOutPart1` and `kOptedOutPart2` in
  /// `ornwhatsnew/PanelText.h`.
  UTF16String privacyPage;
  /// The beginning of the keys of issues, "ORN" by default. Letter case does not matter. The panel
  /// shows story IDs and the keys of features as issues if they begin with the prefix. If the
  /// prefix is empty, the panel shows no issues.
  UTF16String issuePrefix;
};

/// Returns whether all links in `links` are valid. The members `issueLink` and `commitLink` must be
/// link templates: safe links (`orncore::string::IsSafeLink`) that contain `@0`. Such a URL begins
/// with `https://`, and has no `@0` in its host. `privacyPage` must be a safe link. Empty strings
/// and the defaults are always valid. Safe to call from any thread.
ORN_EXPORT bool AreValid(const PanelLinks& links);

/// Replaces the links of all panels that lists create afterwards, and returns true. A
/// default-constructed `PanelLinks` restores the defaults.
///
/// If `links` are not valid (`AreValid`), returns false and keeps the previous links. If memory
/// runs out, throws `std::bad_alloc` and keeps the previous links. Safe to call from any thread.
ORN_EXPORT bool SetPanelLinks(PanelLinks links);

/// Returns the current links, with the issue prefix in upper case. Safe to call from any thread.
ORN_EXPORT PanelLinks GetPanelLinks();

}  // namespace ornappsupport::links

#endif  // ORNAPPSUPPORT_LINKS_PANELLINKS_H_
