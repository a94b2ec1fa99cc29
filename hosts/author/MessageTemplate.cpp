#include "hosts/author/MessageTemplate.h"

#include <algorithm>
#include <functional>

#include <orncore/string/SafeText.h>
#include <ornwhatsnew/DataFileReader.h>
#include <ornwhatsnew/PanelText.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "hosts/author/ColumnNames.h"

namespace hosts::author {
namespace {

constexpr std::string_view kPrivatePrefix = "$$$/private/";
constexpr std::string_view kCommentMark = "#{comment}";

/// The header entry of the template. Programs such as msginit replace the placeholders, for
/// example "FULL NAME".
constexpr std::string_view kProperties = R"(#, fuzzy
msgid ""
msgstr ""
"Project-Id-Version: PACKAGE VERSION\n"
"PO-Revision-Date: YEAR-MO-DA HO:MI+ZONE\n"
"Last-Translator: FULL NAME <EMAIL@ADDRESS>\n"
"Language-Team: LANGUAGE <LL@li.org>\n"
"Language: \n"
"MIME-Version: 1.0\n"
"Content-Type: text/plain; charset=UTF-8\n"
"Content-Transfer-Encoding: 8bit\n"
)";

/// Returns `text` as a quoted string of a PO file, with escapes for double quotes, backslashes and
/// ASCII control characters.
std::string PoString(std::string_view text) {
  constexpr unsigned char kDelete = 0x7F;
  std::string result = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      result += {'\\', c};
    } else if (c == '\t') {
      result += "\\t";
    } else if (c == '\n') {
      result += "\\n";
    } else if (byte < ' ' || byte == kDelete) {
      result += {'\\', static_cast<char>('0' + byte / 64), static_cast<char>('0' + byte / 8 % 8),
                 static_cast<char>('0' + byte % 8)};
    } else {
      result += c;
    }
  }
  return result + "\"";
}

/// Returns a reference to a line of a file, or to the whole file if `line` is 0. As gettext does,
/// puts a name with spaces between U+2068 and U+2069.
std::string Reference(std::string_view name, std::size_t line) {
  std::string file = orncore::string::EscapeInvisible(name);
  if (file.find(' ') != std::string::npos) file = "\u2068" + file + "\u2069";
  return line == 0 ? file : file + ":" + std::to_string(line);
}

using LinesByKey = std::map<std::string, std::size_t, std::less<>>;

/// Returns each localisation key at the start of a JSON string in `content`, and the number of the
/// first line with this key. Does not decode JSON escapes in keys.
LinesByKey FindKeys(std::string_view content) {
  constexpr std::string_view kStart = "\"$$$/";
  LinesByKey lines;
  std::size_t line = 1;
  std::size_t position = 0;
  for (;;) {
    const std::size_t quote = content.find(kStart, position);
    if (quote == std::string_view::npos) return lines;
    const auto newlines = std::ranges::count(content.substr(position, quote - position), '\n');
    line += static_cast<std::size_t>(newlines);
    position = std::min(content.find_first_of("=\"", quote + 1), content.size());
    lines.emplace(content.substr(quote + 1, position - quote - 1), line);
  }
}

void AddUnlessLast(std::vector<std::string>& list, const std::string& element) {
  if (list.empty() || list.back() != element) list.push_back(element);
}

}  // namespace

void MessageTemplate::AddDataFile(std::string_view name, std::string_view dataFile) {
  ornwhatsnew::DataFileReader reader(dataFile);
  while (const ornwhatsnew::DataRow* const row = reader.Next()) {
    if (row->kind != ornwhatsnew::DataRowKind::kChange) continue;
    for (const ornwhatsnew::DataColumn column : kLocalizedColumns) {
      AddKeyText(Reference(name, row->lineNumber), LocalizedText(column, row->Value(column)));
    }
  }
}

void MessageTemplate::AddFeatureTable(std::string_view name, std::string_view json,
                                      const common::HostDescription& host) {
  const LinesByKey lines = FindKeys(json);
  for (const common::BetaFeatureDescription& feature : host.betaFeatures) {
    for (const std::string& text : {feature.name, feature.description}) {
      const auto found = lines.find(std::string_view(text).substr(0, text.find('=')));
      AddKeyText(Reference(name, found == lines.end() ? 0 : found->second), text);
    }
  }
}

void MessageTemplate::AddPanelTexts() {
  for (const std::string_view text : ornwhatsnew::kPanelTexts) {
    AddKeyText("ornwhatsnew/PanelText.h", text);
  }
}

void MessageTemplate::AddKeyText(const std::string& reference, std::string_view text) {
  if (!ornwhatsnew::IsZString(text) || text.starts_with(kPrivatePrefix)) return;
  const std::size_t equals = std::min(text.find('='), text.size());
  const std::string key(text.substr(0, equals));
  const std::string_view rest = text.substr(std::min(equals + 1, text.size()));
  const std::size_t mark = rest.find(kCommentMark);
  const std::string defaultText(rest.substr(0, mark));
  if (defaultText.empty()) return;
  if (text.find('\0') != std::string_view::npos) {
    warnings_.push_back(
        reference + ": the key text '" + std::string(text) +
        "' contains a NUL character, so the template omits it; remove the character");
    return;
  }
  const auto [index, isNew] = indexes_.emplace(key, entries_.size());
  if (isNew) entries_.push_back({key, defaultText, {}, {}});
  Entry& entry = entries_[index->second];
  if (entry.defaultText != defaultText) {
    warnings_.push_back(reference + ": the key '" + key + "' has a different default text in " +
                        entry.references.front() +
                        "; the template contains only that text, so use the same text or another "
                        "key");
    return;
  }
  if (mark != std::string_view::npos) {
    AddUnlessLast(entry.comments,
                  orncore::string::EscapeInvisible(rest.substr(mark + kCommentMark.size())));
  }
  AddUnlessLast(entry.references, reference);
}

std::string MessageTemplate::Format() const {
  std::string text(kProperties);
  for (const Entry& entry : entries_) {
    text += "\n";
    for (const std::string& comment : entry.comments) text += "#. " + comment + "\n";
    for (const std::string& reference : entry.references) text += "#: " + reference + "\n";
    text += "msgctxt " + PoString(entry.key) + "\n";
    text += "msgid " + PoString(entry.defaultText) + "\n";
    text += "msgstr \"\"\n";
  }
  return text;
}

}  // namespace hosts::author
