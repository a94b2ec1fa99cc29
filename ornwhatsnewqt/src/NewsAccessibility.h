// Describes the news page to assistive technologies.
#ifndef ORNWHATSNEWQT_SRC_NEWSACCESSIBILITY_H_
#define ORNWHATSNEWQT_SRC_NEWSACCESSIBILITY_H_

namespace ornwhatsnewqt {

/// Registers the accessible interface of `NewsPage`, once for the process. The interface has the
/// role of a document and provides the text of the page. Its children are the elements of the page:
/// headings for titles, list items for changes, other paragraphs, and links.
void installNewsAccessibility();

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_NEWSACCESSIBILITY_H_
