// Describes the news page and the groups of controls to assistive technologies.
#ifndef ORNWHATSNEWQT_SRC_PANELACCESSIBILITY_H_
#define ORNWHATSNEWQT_SRC_PANELACCESSIBILITY_H_

namespace ornwhatsnewqt {

/// Registers the following accessible interfaces, once for the process. The interface of `NewsPage`
/// has the role of a document and provides the text of the page. Its children are the elements of
/// the page: headings for titles, list items for changes, other paragraphs, and links. The
/// interfaces of `FilterBar` and of the choices of a `RatingCard` have the role of a group.
void installPanelAccessibility();

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_PANELACCESSIBILITY_H_
