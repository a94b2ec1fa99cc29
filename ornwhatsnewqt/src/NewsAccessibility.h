// Describes the page of news to assistive tools.
#ifndef ORNWHATSNEWQT_SRC_NEWSACCESSIBILITY_H_
#define ORNWHATSNEWQT_SRC_NEWSACCESSIBILITY_H_

namespace ornwhatsnewqt {

/// Registers the accessible interface of `NewsPage`, once for the process. The interface is a
/// document with a text, and its children are the elements of the page: a heading for each title,
/// an object for each other paragraph, and a link for each link.
void installNewsAccessibility();

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_NEWSACCESSIBILITY_H_
