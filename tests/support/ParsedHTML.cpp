#include <algorithm>
#include <array>
#include <set>
#include <stdexcept>

#include <orncore/string/SafeLink.h>

#include "tests/support/RenderedPanel.h"

namespace test_support {
namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kReferences = {
    {{"&amp;", "&"}, {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&#39;", "'"}}};

[[noreturn]] void Fail(const std::string& message) {
  throw std::runtime_error(message);
}

bool IsHeading(std::string_view name) {
  return name.size() == 2 && name[0] == 'h' && name[1] >= '1' && name[1] <= '6';
}

bool IsOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::ranges::find(names, name) != names.end();
}

/// Removes the first byte or character reference from `rest` and returns the text that it
/// represents. Throws `std::runtime_error` if the byte must be escaped in HTML.
std::string ReadText(std::string_view& rest) {
  for (const auto& [reference, character] : kReferences) {
    if (!rest.starts_with(reference)) continue;
    rest.remove_prefix(reference.size());
    return std::string(character);
  }
  const std::string text(1, rest.front());
  if (IsOneOf(text, {"&", "<", ">", "\"", "'"})) Fail("not escaped: " + std::string(rest));
  rest.remove_prefix(1);
  return text;
}

struct Tag {
  std::string name;
  bool isEnd = false;
  std::string elementClass;
  std::string href;
};

class HTMLParser {
 public:
  explicit HTMLParser(std::string_view fragment) : rest_(fragment) {}

  std::vector<RenderedBlock> Parse() {
    while (!rest_.empty()) {
      if (rest_.front() == '<') {
        HandleTag(ReadTag());
      } else {
        AddText(ReadText(rest_));
      }
    }
    if (!open_.empty()) Fail("an element has no end: " + open_.back());
    return std::move(blocks_);
  }

 private:
  Tag ReadTag() {
    rest_.remove_prefix(1);
    Tag tag;
    tag.isEnd = Skip("/");
    tag.name = ReadName();
    while (!tag.isEnd && Skip(" ")) ReadAttribute(tag);
    if (!Skip(">")) Fail("a tag has no end: " + tag.name);
    return tag;
  }

  void ReadAttribute(Tag& tag) {
    const std::string name = ReadName();
    if (!Skip("=\"")) Fail("an attribute has no value: " + name);
    std::string value;
    while (!rest_.starts_with('"')) {
      if (rest_.empty()) Fail("an attribute has no end: " + name);
      value += ReadText(rest_);
    }
    Skip("\"");
    if (name == "class" && value.starts_with("ornwhatsnew")) {
      tag.elementClass = value;
    } else if (name == "href" && tag.name == "a") {
      if (!orncore::string::IsSafeLink(value)) Fail("the link is not safe: " + value);
      tag.href = value;
    } else if (name == "id" && !IsOneOf(tag.name, {"section", "ul", "a", "span", "br"})) {
      const bool isValid = !value.empty() && value.find_first_of(" \t\n\f\r") == std::string::npos;
      if (!isValid || !ids_.insert(value).second) Fail("invalid id: " + value);
    } else if (name != "dir" || value != "auto" || tag.name != "section") {
      Fail("unexpected attribute: " + name + "=" + value);
    }
  }

  void HandleTag(const Tag& tag) {
    if (tag.name == "br") {
      if (tag.isEnd || !IsInBlock()) Fail("unexpected br");
      AddText("\n");
      return;
    }
    if (tag.isEnd) {
      if (open_.empty() || open_.back() != tag.name) Fail("unexpected end of " + tag.name);
      open_.pop_back();
      return;
    }
    RequireParent(tag.name);
    open_.push_back(tag.name);
    const bool isRatingText = tag.name == "p" && open_[open_.size() - 2] == "div";
    if (tag.name == "div") blocks_.push_back({"rating", {}, {}});
    const bool isBlock = IsHeading(tag.name) || IsOneOf(tag.name, {"li", "p"});
    if (isBlock && !isRatingText) {
      blocks_.push_back({tag.name, {}, {}});
    }
    if (tag.name == "a") {
      if (tag.href.empty()) Fail("a link has no target");
      blocks_.back().links.emplace_back(std::string(), tag.href);
    }
  }

  void RequireParent(std::string_view name) const {
    const std::string_view parent = open_.empty() ? "" : std::string_view(open_.back());
    const bool isInBlock = IsHeading(parent) || IsOneOf(parent, {"p", "li"});
    const bool isValid =
        (name == "section" && parent.empty()) ||
        (parent == "section" && (IsHeading(name) || IsOneOf(name, {"p", "article"}))) ||
        (parent == "article" && (IsHeading(name) || IsOneOf(name, {"p", "ul", "div"}))) ||
        (name == "li" && parent == "ul") || (name == "p" && parent == "div") ||
        (IsOneOf(name, {"a", "span"}) && isInBlock);
    if (!isValid) Fail(std::string(name) + " in " + std::string(parent));
  }

  bool IsInBlock() const {
    if (open_.empty()) return false;
    return IsHeading(open_.back()) || IsOneOf(open_.back(), {"p", "li", "a", "span"});
  }

  void AddText(const std::string& text) {
    if (!IsInBlock()) {
      if (text != "\n") Fail("text outside of a block: " + text);
      return;
    }
    blocks_.back().text += text;
    if (open_.back() == "a") blocks_.back().links.back().first += text;
  }

  bool Skip(std::string_view expected) {
    if (!rest_.starts_with(expected)) return false;
    rest_.remove_prefix(expected.size());
    return true;
  }

  std::string ReadName() {
    const std::size_t end = rest_.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789");
    const std::string name(rest_.substr(0, end));
    rest_.remove_prefix(name.size());
    return name;
  }

  std::string_view rest_;
  std::vector<std::string> open_;
  std::set<std::string> ids_;
  std::vector<RenderedBlock> blocks_;
};

}  // namespace

std::vector<RenderedBlock> ParseHTML(std::string_view fragment) {
  return HTMLParser(fragment).Parse();
}

}  // namespace test_support
