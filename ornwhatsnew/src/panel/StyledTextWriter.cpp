#include "ornwhatsnew/src/panel/StyledTextWriter.h"

#include <cstdint>

#include <orncore/string/Conversion.h>
#include <unicode/utf16.h>

namespace ornwhatsnew {
namespace {

// A surrogate pair has 4 bytes in UTF-8. Two unpaired surrogates become two U+FFFD, which have 6
// bytes together.
constexpr std::size_t kBytesSavedByPairing = 2;

int WrappingSum(std::size_t bytes, int adjustment) {
  return static_cast<int>(static_cast<std::uint32_t>(bytes) +
                          static_cast<std::uint32_t>(adjustment));
}

}  // namespace

void RecordStyleRun(StyleID style, std::size_t start, std::size_t length, RunAdjustment adjustment,
                    UTF16String runString, StyleRunMap& runs) {
  runs[style].emplace_back(
      std::pair(WrappingSum(start, adjustment.start), WrappingSum(length, adjustment.length)),
      std::move(runString));
}

void StyledTextWriter::AppendTemplate(std::u16string_view string) {
  const std::size_t begin = text_.size();
  text_ += string;
  CountAppended(begin);
}

void StyledTextWriter::AppendRun(StyleID style, std::u16string_view string, UTF16String link,
                                 RunAdjustment adjustment) {
  const std::size_t begin = text_.size();
  text_ += string;
  RecordAppended(begin, style, std::move(link), adjustment);
}

void StyledTextWriter::AppendChangeTextUTF8(std::string_view text) {
  const std::size_t begin = text_.size();
  orncore::string::AppendUTF8to16(text, text_);
  RecordAppended(begin, kStyleChangeText, {}, {});
}

void StyledTextWriter::AppendUnlockLabel(std::u16string_view label) {
  RecordStyleRun(kStyleUnlockLabel, bytes_, orncore::string::UTF8Length(label), {}, {}, runs_);
  AppendStyled(kStyleUnlockLabelBox, label);
}

void StyledTextWriter::RecordAppended(std::size_t begin, StyleID style, UTF16String runString,
                                      RunAdjustment adjustment) {
  const std::size_t start = bytes_;
  RecordStyleRun(style, start, CountAppended(begin), adjustment, std::move(runString), runs_);
}

std::size_t StyledTextWriter::CountAppended(std::size_t begin) {
  const std::u16string_view appended = std::u16string_view(text_).substr(begin);
  const std::size_t length = orncore::string::UTF8Length(appended);
  bytes_ += length;
  // A high surrogate before the appended string and a low surrogate at its start form one
  // character. So far, `bytes_` counts each of them as U+FFFD.
  if (!appended.empty() && begin > 0 && U16_IS_LEAD(text_[begin - 1]) &&
      U16_IS_TRAIL(appended.front())) {
    bytes_ -= kBytesSavedByPairing;
  }
  return length;
}

}  // namespace ornwhatsnew
