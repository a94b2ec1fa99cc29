#include <ornwhatsnew/utility/PersistedList.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "ornwhatsnew/src/rules/JoinPersistedList.h"
#include "ornwhatsnew/src/rules/Keywords.h"

namespace ornwhatsnew {

const UTF8String kAllSeenItemsKey{keywords::kAllSeenItems};
const UTF8String kLastVersionSeenKey{keywords::kLastVersionSeen};
const UTF8String kAllVersionsSeenKey{keywords::kAllVersionsSeen};

std::vector<std::string_view> SplitPersistedList(std::string_view list) {
  std::vector<std::string_view> elements;
  if (list.empty()) return elements;
  elements.reserve(static_cast<std::size_t>(std::ranges::count(list, ' ')) + 1);
  std::size_t begin = 0;
  for (std::size_t end = list.find(' '); end != list.npos; end = list.find(' ', begin)) {
    elements.push_back(list.substr(begin, end - begin));
    begin = end + 1;
  }
  elements.push_back(list.substr(begin));
  return elements;
}

UTF8String MergePersistedValue(std::string_view key, std::string_view stored, std::string_view read,
                               std::string_view written) {
  const bool isList = key == keywords::kAllSeenItems || key == keywords::kAllVersionsSeen;
  if (!isList) return UTF8String(written);
  std::vector<std::string_view> known = SplitPersistedList(read);
  std::vector<std::string_view> added = SplitPersistedList(written);
  std::ranges::sort(known);
  std::ranges::sort(added);
  std::vector<std::string_view> elements = SplitPersistedList(stored);
  std::ranges::set_difference(added, known, std::back_inserter(elements));
  return JoinPersistedList(std::move(elements));
}

}  // namespace ornwhatsnew
