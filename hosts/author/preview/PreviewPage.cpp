#include "hosts/author/preview/PreviewPage.h"

#include <filesystem>
#include <set>
#include <string_view>

#include <ornwhatsnew/PanelRenderers.h>

#include "hosts/author/lint/Lint.h"
#include "hosts/author/lint/LintConfig.h"
#include "hosts/author/lint/LintOutput.h"
#include "hosts/author/preview/PreviewStyleSheet.h"
#include "hosts/common/HtmlPage.h"

namespace hosts::author {
namespace {

using common::EscapeHtml;

LintReport Lint(const PreviewInput& input) {
  const LintHost host = InstallLintHost(input.hostName, input.host);
  LintReport report = LintDataFile(input.data.name, input.data.text, &host);
  ApplySeverities(report, ConfiguredSeverities(input.data.name));
  FinishReport(report);
  return report;
}

std::string FileName(const std::string& path) {
  return std::filesystem::path(path).filename().native();
}

std::string Paragraph(std::string_view paragraphClass, std::string_view html) {
  return "<p class=\"" + std::string(paragraphClass) + "\">" + std::string(html) + "</p>\n";
}

std::string Link(std::string_view id, std::string_view text) {
  return "<a href=\"#" + std::string(id) + "\">" + EscapeHtml(text) + "</a>";
}

/// Returns the start of a section with its heading. The heading is the name of the section for
/// screen readers. `attributes` is empty or begins with a space.
std::string SectionStart(const std::string& sectionClass, const std::string& id,
                         std::string_view title, const std::string& attributes = "") {
  return "<section class=\"" + sectionClass + "\" id=\"" + id + "\" aria-labelledby=\"" + id +
         "-title\"" + attributes + ">\n<h2 id=\"" + id + "-title\">" + EscapeHtml(title) +
         "</h2>\n";
}

/// Writes the page. All strings that come from files pass through `EscapeHtml` or `RenderHTML`.
class PageWriter {
 public:
  explicit PageWriter(const PreviewInput& input) : input_(input), report_(Lint(input)) {
    const LintedFile file(input.data.name, input.data.text);
    for (const LintRow& row : file.Rows()) {
      if (row.change != nullptr) changeLines_.insert(row.data.lineNumber);
    }
    views_ = MakePreviewViews(input, file);
  }

  std::string Write() const {
    std::string body = Header() + Navigation() + "<main>\n<div class=\"preview-views\">\n";
    for (const PreviewView& view : views_) body += View(view);
    body += "</div>\n" + Findings() + "</main>\n";
    const std::string style =
        std::string(kPreviewStyleSheet) + std::string(ornwhatsnew::GetHTMLStyleSheet());
    return common::HtmlPage("Preview of " + FileName(input_.data.name), style, body);
  }

 private:
  std::string Header() const {
    const common::HostDescription& host = input_.host;
    return "<header>\n<h1>Preview of " + EscapeHtml(FileName(input_.data.name)) + "</h1>\n" +
           Paragraph("preview-muted", EscapeHtml("Host description: " + FileName(input_.hostName) +
                                                 PhraseWith(", version ", host.clientVersion) +
                                                 PhraseWith(", build ", host.buildNumber) +
                                                 PhraseWith(", platform ", host.platform))) +
           "</header>\n";
  }

  std::string Navigation() const {
    std::string html = "<nav aria-label=\"Sections\">\n<ul>\n";
    for (const PreviewView& view : views_) html += "<li>" + Link(view.id, view.title) + "</li>\n";
    const std::string count = std::to_string(report_.findings.size());
    return html + "<li>" + Link("findings", "Findings (" + count + ")") + "</li>\n</ul>\n</nav>\n";
  }

  static std::string View(const PreviewView& view) {
    const std::string prefix = view.id + "-item-";
    const std::string count =
        Counted(view.count.items, "item") + ", " + Counted(view.count.changes, "change");
    return SectionStart("preview-view", view.id, view.title) +
           Paragraph("preview-explanation", EscapeHtml(view.explanation)) +
           Paragraph("preview-muted", EscapeHtml(count)) +
           "<div class=\"preview-panel\" lang=\"\">\n" +
           ornwhatsnew::RenderHTML(
               view.layout,
               {.idPrefix = prefix, .headingLevel = 3, .paragraphIDs = view.paragraphIDs}) +
           "</div>\n</section>\n";
  }

  std::string Findings() const {
    // The section can have its own scroll bar, but does not always contain a link. Without a tab
    // stop, users could then not scroll the section with the keyboard.
    std::string html = SectionStart("preview-findings", "findings", "Findings", " tabindex=\"0\"") +
                       Paragraph("preview-muted", EscapeHtml(LintSummary(report_)));
    if (!report_.findings.empty()) html += "<ul>\n";
    for (const Finding& finding : report_.findings) html += FindingItem(finding);
    if (!report_.findings.empty()) html += "</ul>\n";
    for (const std::string& reason : report_.notJudged) {
      html += Paragraph("preview-muted", EscapeHtml(reason));
    }
    return html + "</section>\n";
  }

  std::string FindingItem(const Finding& finding) const {
    const std::string severity(SeverityName(finding.severity));
    return "<li class=\"preview-" + severity + "\">\n" +
           Paragraph("preview-place", "<strong>" + severity + "</strong> " +
                                          EscapeHtml(PlaceText(finding)) + " <code>" +
                                          EscapeHtml(InfoOf(finding.code).name) + "</code>") +
           Paragraph("preview-message", EscapeHtml(finding.message)) + PanelLinks(finding) +
           "</li>\n";
  }

  static bool IsOnRow(const Finding& finding) {
    const Place& place = finding.place;
    return place.column != place.endColumn || place.line != place.endLine || place.line > 1;
  }

  static std::string PlaceText(const Finding& finding) {
    if (!IsOnRow(finding)) return FileName(finding.file);
    return "line " + std::to_string(finding.place.line) + ", column " +
           std::to_string(finding.place.column);
  }

  /// Returns a paragraph with links to the places where the panels show the change of a finding. If
  /// no panel shows the change, or if the row is not a change, the paragraph says so. Returns an
  /// empty string if the finding is not about a row of the data file.
  std::string PanelLinks(const Finding& finding) const {
    if (!IsOnRow(finding)) return {};
    const std::size_t line = finding.place.line;
    if (!changeLines_.contains(line)) {
      return Paragraph("preview-muted", "This row is not a change.");
    }
    std::string links;
    for (const PreviewView& view : views_) {
      const auto found = view.idsByLine.find(line);
      if (found == view.idsByLine.end()) continue;
      links += (links.empty() ? "Shown in: " : ", ") + Link(found->second, view.title);
    }
    return links.empty() ? Paragraph("preview-muted", "No panel on this page shows the change.")
                         : Paragraph("preview-links", links);
  }

  const PreviewInput& input_;
  const LintReport report_;
  /// The line numbers of the changes in the data file.
  std::set<std::size_t> changeLines_;
  std::vector<PreviewView> views_;
};

}  // namespace

std::string PreviewPage(const PreviewInput& input) {
  return PageWriter(input).Write();
}

}  // namespace hosts::author
