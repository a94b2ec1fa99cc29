// An application with its own services, resources and settings. It loads a list, shows the badge,
// the panel and the rating view, and shuts down.
#include <future>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include <orncore/config/InitializerRegistrar.h>
#include <orncore/console/CommandRegistry.h>
#include <orncore/string/Conversion.h>
#include <orncore/string/SafeLink.h>
#include <ornwhatsnew/PanelRenderers.h>
#include <ornwhatsnew/WhatsNew.h>

#include "Preferences.h"
#include "Resources.h"
#include "Services.h"

using orncore::config::EInitializerContextFlags;
using orncore::console::CommandRegistry;
using orncore::string::UTF16to8;

// The badge and the panel use these display options.
constexpr ornwhatsnew::DisplayOptions kNews = ornwhatsnew::kShowOnlyNew |
                                              ornwhatsnew::kFilterRelevantPlatform |
                                              ornwhatsnew::kFilterRelevantVersion;

// Loads the list and returns it. The list stores its state in `preferences`.
std::shared_ptr<ornwhatsnew::FeatureListData> LoadNews(Preferences& preferences) {
  const BuiltInResources resources;  // only used while the list is loaded
  const auto getter = [&preferences](const std::string& key) { return preferences.texts[key]; };
  const auto setter = [&preferences](const std::string& key, const std::string& value) {
    preferences.texts[key] = value;
  };
  return ornwhatsnew::GetWhatsNew(u"news", &resources, getter, setter);
}

// Loads the list of a user who starts the application for the first time. Only later changes are
// new for this user.
std::shared_ptr<ornwhatsnew::FeatureListData> LoadNewsOfNewUser(Preferences& preferences) {
  auto list = LoadNews(preferences);
  list->MarkAllSeen();
  list->RefreshInternalSeenState();
  return list;
}

// Starts loading the list on another thread. Until get() of the returned future returns, only that
// thread may use the preferences, and no thread may replace a service. Afterwards, only the thread
// that called get() may use the list.
std::future<std::shared_ptr<ornwhatsnew::FeatureListData>> StartLoadingNews(
    Preferences& preferences) {
  return std::async(std::launch::async, [&preferences] { return LoadNews(preferences); });
}

// Returns the part of `panel` that `run` covers. `panel` is the panel's text in UTF-8. Clips the
// run to the text, because the run of a commit ID extends one byte past the commit ID.
std::string_view TextOf(const ornwhatsnew::StyleRun& run, std::string_view panel) {
  const auto start = static_cast<std::size_t>(run.first.first);
  const auto length = static_cast<std::size_t>(run.first.second);
  return start < panel.size() ? panel.substr(start, length) : std::string_view();
}

// Shows the panel and records that the user has seen its content. A graphical application would
// convert the runs to fonts and links, and open only safe links.
void ShowPanel(ornwhatsnew::FeatureListData& list, ornwhatsnew::DisplayOptions options) {
  ornwhatsnew::StyleRunMap runs;
  const auto text = UTF16to8(list.GetFormattedTextForDisplay(options, u"", runs, nullptr));
  std::cout << text;
  for (const ornwhatsnew::StyleRun& title : runs[ornwhatsnew::kStyleFeatureTitle]) {
    std::cout << "[title] " << TextOf(title, text) << '\n';
  }
  for (const ornwhatsnew::StyleRun& link : runs[ornwhatsnew::kStyleHotSpot]) {
    if (!orncore::string::IsSafeLink(link.second)) continue;
    std::cout << "[link] " << UTF16to8(link.second) << '\n';
  }
}

// Draws a span and its link. A graphical application would use the font and the colour of the
// style.
void DrawSpan(std::string_view text, std::optional<ornwhatsnew::StyleID> style,
              const std::string& link) {
  const std::string_view mark = style == ornwhatsnew::kStyleFeatureTitle ? "**" : "";
  std::cout << mark << text << mark;
  if (orncore::string::IsSafeLink(link)) std::cout << " <" << link << '>';
}

// Draws the panel, one line for each paragraph.
void DrawPanel(const ornwhatsnew::PanelLayout& panel) {
  const ornwhatsnew::PanelLayoutUTF8 layout = ornwhatsnew::ConvertToUTF8(panel);
  const std::string_view text = layout.text;
  for (const auto& paragraph : layout.paragraphs) {
    std::cout << (paragraph.indentLevel == 0 ? "\n" : "  ");
    if (!paragraph.bullet.empty()) std::cout << paragraph.bullet << ' ';
    for (const auto& [range, style, link] : paragraph.spans) {
      DrawSpan(text.substr(range.begin, range.length), style, link);
    }
    if (paragraph.rating) std::cout << "[five stars]";
    std::cout << '\n';
  }
}

// Returns an HTML page with the panel, for a web view.
std::string NewsPage(const ornwhatsnew::PanelLayout& panel) {
  return "<!DOCTYPE html>\n<meta charset=\"utf-8\">\n<title>What's New</title>\n<style>\n" +
         std::string(ornwhatsnew::GetHTMLStyleSheet()) + "</style>\n" +
         ornwhatsnew::RenderHTML(panel);
}

// If a feature needs a rating, draws the rating view and marks each feature in this view as rated.
void AskForRatings(ornwhatsnew::FeatureListData& list) {
  if (!list.IsAnythingNeedingRating()) return;
  const ornwhatsnew::PanelLayout panel =
      list.GetLayoutForDisplay(ornwhatsnew::kRatingView | ornwhatsnew::kFilterRelevantPlatform |
                               ornwhatsnew::kFilterRelevantVersion);
  DrawPanel(panel);
  for (const ornwhatsnew::RatingRequest& request : panel.ratingRequests) {
    list.MarkItemHasBeenRated(request.itemKey);  // after the user has rated it
  }
}

// Runs the command that `line` names and prints its output. If the library's registry does not
// contain the command, prints a message.
void RunConsoleLine(std::u16string_view line) {
  std::basic_ostringstream<char16_t> output;
  const auto result = CommandRegistry::Instance().RunLine(line, output);
  std::cout << (result ? UTF16to8(output.str()) : "There is no such command.\n");
}

// Registers an initializer of the application. The initializer fails, so that this example writes a
// log entry.
const orncore::config::InitializerRegistrar kCloud(
    "Herbarium.Cloud", EInitializerContextFlags::kApplication, [] { return false; }, [] {});

void Run(Preferences& preferences) {
  auto loading = StartLoadingNews(preferences);
  const auto list = loading.get();
  if (list->GetDataFileSummary().isFound == false) std::cout << "the data file is missing\n";
  std::cout << "badge: " << list->IsAnythingNew(kNews) << '\n';
  ShowPanel(*list, kNews);

  // The displayed content counts as seen after the list has read its state again.
  list->RefreshInternalSeenState();
  std::cout << "badge: " << list->IsAnythingNew(kNews) << '\n';

  preferences.logsUsage = false;
  std::cout << "to be rated without usage logging: " << list->IsAnythingNeedingRating() << '\n';
  preferences.logsUsage = true;
  preferences.isQuitting = true;
  std::cout << "to be rated while quitting: " << list->IsAnythingNeedingRating() << '\n';
  preferences.isQuitting = false;
  AskForRatings(*list);
  std::cout << "to be rated after that: " << list->IsAnythingNeedingRating() << '\n';

  Preferences newUser;
  std::cout << "badge of a new user: " << LoadNewsOfNewUser(newUser)->IsAnythingNew(kNews) << '\n';

  // The next display queries the services again, so it uses the new permission and the new debug
  // switch.
  preferences.isStaff = true;
  preferences.texts["debug/ornappsupport.betafeature.SimulateShowingAllUnlockCodesInWhatsNew"] =
      "true";
  std::cout << "all items: " << list->CountNew({}).items << '\n';
  DrawPanel(list->GetLayoutForDisplay({}));
  std::cout << ornwhatsnew::RenderMarkdown(list->PreviewLayout({}));
  const std::string page = NewsPage(list->PreviewLayout({}));
  std::cout << "page: " << page.substr(0, page.find('\n')) << '\n';
  std::cout << "opened in " << preferences.texts["WhatsNew.AllVersionSeenWhatsNew"] << '\n';
  RunConsoleLine(u"ValidateWhatsNew");
}

int main() {
  std::cout << std::boolalpha;
  Preferences preferences;
  preferences.switchedOn = {"herbarium.map"};
  ReplaceServices(preferences);
  orncore::config::InitializeContexts(EInitializerContextFlags::kApplication |
                                      EInitializerContextFlags::kConsole);
  Run(preferences);
  orncore::config::ShutdownContexts(EInitializerContextFlags::kApplication |
                                    EInitializerContextFlags::kConsole);
  RestoreServices();
}
