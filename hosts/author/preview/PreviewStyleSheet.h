// Defines the style sheet of the page that `ornwhatsnew preview` writes. The library provides the
// style sheet of the panels.
#ifndef HOSTS_AUTHOR_PREVIEW_PREVIEWSTYLESHEET_H_
#define HOSTS_AUTHOR_PREVIEW_PREVIEWSTYLESHEET_H_

#include <string_view>

namespace hosts::author {

// Each text colour has a contrast ratio of at least 4.5:1 against its background. In a large
// window, the findings are next to the panels and have their own scroll bar.
inline constexpr std::string_view kPreviewStyleSheet = R"css(:root {
  --preview-muted: #59636e;
  --preview-link: #0550ae;
  --preview-error: #a40e26;
  --preview-warning: #7d4e00;
  --preview-line: #d1d9e0;
  --preview-tint: #f3f6fa;
  --preview-mark: #fff3bf;
  color-scheme: light dark;
  scroll-padding-top: 4rem;
}
@media (prefers-color-scheme: dark) {
  :root {
    --preview-muted: #9da7b3;
    --preview-link: #79b8ff;
    --preview-error: #ff9a90;
    --preview-warning: #e3b341;
    --preview-line: #3d444d;
    --preview-tint: #1d232b;
    --preview-mark: #3d3415;
  }
}
body {
  margin: 0;
  background: var(--preview-tint);
  color: CanvasText;
  font: 1rem/1.5 system-ui, sans-serif;
  overflow-wrap: anywhere;
}
header,
nav ul,
main {
  box-sizing: border-box;
  max-width: 84rem;
  margin: 0 auto;
  padding: 0 1rem;
}
header {
  padding-block: 1.5rem 0.75rem;
}
h1,
h2,
p {
  margin: 0;
}
h1 {
  font-size: 1.7rem;
  line-height: 1.3;
}
h2 {
  margin-block-end: 0.25rem;
  font-size: 1.3rem;
  line-height: 1.3;
}
a {
  color: var(--preview-link);
  text-underline-offset: 0.15em;
}
a:focus-visible,
.preview-findings:focus-visible {
  outline: 2px solid;
  outline-offset: 2px;
}
nav {
  border-block: 1px solid var(--preview-line);
  background: Canvas;
}
nav ul {
  display: flex;
  flex-wrap: wrap;
  gap: 0.5rem 1.5rem;
  padding-block: 0.75rem;
  list-style: none;
}
main {
  padding-block: 0.5rem 3rem;
}
.preview-muted,
.preview-explanation {
  max-width: 46rem;
}
.preview-muted {
  color: var(--preview-muted);
  font-size: 0.875rem;
}
.preview-view,
.preview-findings {
  padding-block-start: 1.5rem;
}
.preview-panel {
  max-width: 46rem;
  margin-block-start: 0.75rem;
  border: 1px solid var(--preview-line);
  border-radius: 0.5rem;
  background: Canvas;
  overflow: hidden;
}
.preview-panel :target {
  background: var(--preview-mark);
}
.preview-findings ul {
  display: grid;
  gap: 0.75rem;
  margin: 0.75rem 0;
  padding: 0;
  list-style: none;
}
.preview-findings li {
  padding: 0.5rem 0.75rem;
  border: 1px solid var(--preview-line);
  border-inline-start: 4px solid var(--preview-link);
  border-radius: 0.25rem;
  background: Canvas;
  font-size: 0.9375rem;
}
.preview-findings .preview-error {
  border-inline-start-color: var(--preview-error);
}
.preview-findings .preview-warning {
  border-inline-start-color: var(--preview-warning);
}
.preview-error strong {
  color: var(--preview-error);
}
.preview-warning strong {
  color: var(--preview-warning);
}
.preview-note strong {
  color: var(--preview-link);
}
.preview-place {
  font-size: 0.875rem;
}
.preview-place code {
  color: var(--preview-muted);
  font-family: ui-monospace, monospace;
}
.preview-links {
  font-size: 0.875rem;
}
@media (min-width: 64rem) and (min-height: 30rem) {
  nav {
    position: sticky;
    top: 0;
    z-index: 1;
  }
  main {
    display: grid;
    grid-template-columns: minmax(0, 46rem) minmax(20rem, 1fr);
    gap: 2.5rem;
    align-items: start;
  }
  .preview-findings {
    position: sticky;
    top: 3.25rem;
    box-sizing: border-box;
    max-height: calc(100vh - 3.25rem);
    padding-block-end: 1.5rem;
    overflow: auto;
  }
}
@media print {
  body {
    background: Canvas;
  }
  nav {
    display: none;
  }
  main {
    display: block;
  }
  .preview-view + .preview-view,
  .preview-findings {
    break-before: page;
  }
  .preview-findings {
    position: static;
    max-height: none;
    overflow: visible;
  }
  .preview-findings li {
    break-inside: avoid;
  }
}
)css";

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_PREVIEW_PREVIEWSTYLESHEET_H_
