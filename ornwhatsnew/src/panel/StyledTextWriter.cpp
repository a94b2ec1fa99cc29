#include "ornwhatsnew/src/panel/StyledTextWriter.h"

#include <cstdint>
#include <utility>

#include <orncore/string/Conversion.h>

namespace ornwhatsnew {
namespace {

// What a pair of surrogates takes less than its halves do as replacement characters.
constexpr std::size_t kBytesSavedByPairing = 2;

constexpr bool IsHighSurrogate(char16_t unit) {
  return (unit & 0xFC00) == 0xD800;
}
constexpr bool IsLowSurrogate(char16_t unit) {
  return (unit & 0xFC00) == 0xDC00;
}

int WrappingSum(std::size_t bytes, int adjustment) {
  return static_cast<int>(static_cast<std::uint32_t>(bytes) +
                          static_cast<std::uint32_t>(adjustment));
}

void RecordRun(std::size_t bytesBefore, std::size_t pieceBytes, RunAdjustment adjustment,
               UTF16String&& runString, std::vector<StyleRun>& runs) {
  runs.emplace_back(std::pair(WrappingSum(bytesBefore, adjustment.start),
                              WrappingSum(pieceBytes, adjustment.length)),
                    std::move(runString));
}

}  // namespace

void RecordStyleRun(StyleID style, std::size_t bytesBefore, std::size_t pieceBytes,
                    RunAdjustment adjustment, UTF16String runString, StyleRunMap& runs) {
  RecordRun(bytesBefore, pieceBytes, adjustment, std::move(runString), runs[style]);
}

void StyledTextWriter::Append(std::u16string_view piece) {
  const std::size_t unitsBefore = text_.size();
  text_ += piece;
  CountAppended(unitsBefore);
}

void StyledTextWriter::Append(StyleID style, std::u16string_view piece, UTF16String runString,
                              RunAdjustment adjustment) {
  const std::size_t bytesBefore = bytes_;
  const std::size_t unitsBefore = text_.size();
  text_ += piece;
  RecordRun(bytesBefore, CountAppended(unitsBefore), adjustment, std::move(runString),
            RunsOf(style));
}

void StyledTextWriter::AppendUTF8(StyleID style, std::string_view piece) {
  const std::size_t bytesBefore = bytes_;
  const std::size_t unitsBefore = text_.size();
  orncore::string::AppendUTF8to16(piece, text_);
  RecordRun(bytesBefore, CountAppended(unitsBefore), {}, {}, RunsOf(style));
}

void StyledTextWriter::RecordRunBefore(StyleID style, std::u16string_view piece) {
  RecordRun(bytes_, orncore::string::UTF8Length(piece), {}, {}, RunsOf(style));
}

UTF16String StyledTextWriter::TakeText() {
  bytes_ = 0;
  return std::exchange(text_, {});
}

std::vector<StyleRun>& StyledTextWriter::RunsOf(StyleID style) {
  const auto place = static_cast<std::size_t>(style);
  if (runsByStyle_[place] == nullptr) {
    runsByStyle_[place] = &runs_[style];
    runsByStyle_[place]->reserve(expectedRuns_[place]);
  }
  return *runsByStyle_[place];
}

std::size_t StyledTextWriter::CountAppended(std::size_t unitsBefore) {
  const std::u16string_view piece = std::u16string_view(text_).substr(unitsBefore);
  const std::size_t pieceBytes = orncore::string::UTF8Length(piece);
  bytes_ += pieceBytes;
  // Halves that meet here count as the character that they now are.
  if (!piece.empty() && unitsBefore > 0 && IsHighSurrogate(text_[unitsBefore - 1]) &&
      IsLowSurrogate(piece.front())) {
    bytes_ -= kBytesSavedByPairing;
  }
  return pieceBytes;
}

}  // namespace ornwhatsnew
