#include "ornwhatsnew/src/panel/TextTemplate.h"

namespace ornwhatsnew {
namespace {

constexpr std::size_t kMarkLength = 2;

}  // namespace

TextTemplate::TextTemplate(std::u16string_view text, Marks marks) : text_(text) {
  const char16_t lastNumber = marks == Marks::kBoth ? u'1' : u'0';
  std::size_t at = text.find(u'@');
  while (at != text.npos && at + 1 < text.size()) {
    const char16_t number = text[at + 1];
    if (number >= u'0' && number <= lastNumber) {
      parts_.push_back({restBegin_, at - restBegin_, static_cast<std::size_t>(number - u'0')});
      restBegin_ = at + kMarkLength;
    }
    at = text.find(u'@', at + 1);
  }
}

void TextTemplate::Fill(UTF16String& out, std::u16string_view first,
                        std::u16string_view second) const {
  const std::array arguments = {first, second};
  std::size_t size = text_.size() - kMarkLength * parts_.size();
  for (const Part& part : parts_) size += arguments[part.argument].size();

  out.clear();
  out.reserve(size);
  const std::u16string_view text = text_;
  for (const Part& part : parts_) {
    out.append(text.substr(part.begin, part.length)).append(arguments[part.argument]);
  }
  out.append(text.substr(restBegin_));
}

UTF16String TextTemplate::Filled(std::u16string_view first) const {
  UTF16String filled;
  Fill(filled, first);
  return filled;
}

}  // namespace ornwhatsnew
