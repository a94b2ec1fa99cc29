#include <ornwhatsnew/PanelRenderers.h>

namespace ornwhatsnew {
namespace {

// The system colours Canvas and CanvasText follow the user's preferred colour scheme. The media
// query `prefers-color-scheme` selects matching values for all other colours. Each of the other
// text colours has a contrast ratio of at least 4.5:1 against Canvas and `--ornwhatsnew-tint`, as
// the Web Content Accessibility Guidelines require. Links are underlined and labels have a border,
// so that no meaning depends on a colour alone.
constexpr std::string_view kStyleSheet = R"css(.ornwhatsnew {
  --ornwhatsnew-muted: #59636e;
  --ornwhatsnew-link: #0550ae;
  --ornwhatsnew-label: #0550ae;
  --ornwhatsnew-note: #a40e26;
  --ornwhatsnew-line: #d1d9e0;
  --ornwhatsnew-tint: #f3f6fa;
  color-scheme: light dark;
  box-sizing: border-box;
  max-width: 46rem;
  padding: 1rem;
  background: Canvas;
  color: CanvasText;
  font: 1rem/1.5 system-ui, sans-serif;
  overflow-wrap: anywhere;
}
@media (prefers-color-scheme: dark) {
  .ornwhatsnew {
    --ornwhatsnew-muted: #9da7b3;
    --ornwhatsnew-link: #79b8ff;
    --ornwhatsnew-label: #79b8ff;
    --ornwhatsnew-note: #ff9a90;
    --ornwhatsnew-line: #3d444d;
    --ornwhatsnew-tint: #1d232b;
  }
}
.ornwhatsnew a {
  color: var(--ornwhatsnew-link);
  text-underline-offset: 0.15em;
}
.ornwhatsnew a:focus-visible {
  outline: 2px solid;
  outline-offset: 2px;
}
.ornwhatsnew-header,
.ornwhatsnew-notice,
.ornwhatsnew-title,
.ornwhatsnew-description,
.ornwhatsnew-change,
.ornwhatsnew-question {
  margin: 0;
  unicode-bidi: plaintext;
}
.ornwhatsnew-header {
  color: var(--ornwhatsnew-muted);
  font-size: 1rem;
  font-weight: 600;
}
.ornwhatsnew-notice {
  margin-block-start: 1rem;
}
.ornwhatsnew-item {
  margin-block-start: 1rem;
  padding-block-start: 1rem;
  border-block-start: 1px solid var(--ornwhatsnew-line);
}
.ornwhatsnew-item:first-child {
  margin-block-start: 0;
  padding-block-start: 0;
  border-block-start: 0;
}
.ornwhatsnew-title {
  font-size: 1.2rem;
  line-height: 1.3;
}
.ornwhatsnew-title .ornwhatsnew-code {
  font-size: 0.875rem;
  font-weight: 400;
}
.ornwhatsnew-label {
  display: inline-block;
  margin-inline-start: 0.3em;
  padding: 0 0.5em;
  border: 1px solid;
  border-radius: 0.3em;
  color: var(--ornwhatsnew-label);
  font-size: 0.7rem;
  line-height: 1.6;
  letter-spacing: 0.04em;
  vertical-align: 0.15em;
}
.ornwhatsnew-description {
  margin-block-start: 0.25rem;
}
.ornwhatsnew-changes {
  margin: 0.5rem 0 0;
  padding: 0;
  padding-inline-start: 1.4em;
}
.ornwhatsnew-change + .ornwhatsnew-change {
  margin-block-start: 0.3rem;
}
.ornwhatsnew-change::marker,
.ornwhatsnew-code {
  color: var(--ornwhatsnew-muted);
}
.ornwhatsnew-note {
  color: var(--ornwhatsnew-note);
  font-style: italic;
}
.ornwhatsnew-issue,
.ornwhatsnew-commit {
  font-size: 0.875em;
}
.ornwhatsnew-commit {
  font-family: ui-monospace, monospace;
}
.ornwhatsnew-rating {
  margin-block-start: 0.75rem;
  padding: 0.5rem 0.75rem;
  border-inline-start: 4px solid var(--ornwhatsnew-link);
  background: var(--ornwhatsnew-tint);
}
.ornwhatsnew-rating .ornwhatsnew-description {
  margin: 0 0 0.25rem;
  color: var(--ornwhatsnew-muted);
}
.ornwhatsnew-question {
  font-weight: 600;
}
)css";

}  // namespace

std::string_view GetHTMLStyleSheet() noexcept {
  return kStyleSheet;
}

}  // namespace ornwhatsnew
