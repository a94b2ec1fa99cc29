#include "ornwhatsnew/src/render/ParagraphWrapper.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>

#include <orncore/string/DisplayWidth.h>
#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>

namespace ornwhatsnew {
namespace {

using orncore::string::DisplayWidth;

constexpr std::size_t kMaximumText = std::numeric_limits<std::int32_t>::max();

bool IsBreakableSpace(char16_t unit) {
  return unit == ' ' || (unit >= 0x1680 && u_isWhitespace(unit) != 0);
}

std::size_t TrimmedEnd(std::u16string_view text, std::size_t begin, std::size_t end) {
  while (end > begin && IsBreakableSpace(text[end - 1])) --end;
  return end;
}

using MakeIterator = icu::BreakIterator*(U_EXPORT2*)(const icu::Locale&, UErrorCode&);

/// Wraps an ICU break iterator. Loading its rules takes time, so one iterator is used for all
/// paragraphs.
class Boundaries {
 public:
  explicit Boundaries(MakeIterator make) {
    UErrorCode status = U_ZERO_ERROR;
    iterator_.reset(make(icu::Locale::getRoot(), status));
    if (U_FAILURE(status) || iterator_ == nullptr) throw std::bad_alloc();
  }
  ~Boundaries() { utext_close(&text_); }
  Boundaries(const Boundaries&) = delete;
  Boundaries& operator=(const Boundaries&) = delete;

  void SetText(std::u16string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    utext_openUChars(&text_, text.data(), static_cast<std::int64_t>(text.size()), &status);
    iterator_->setText(&text_, status);
    if (U_FAILURE(status)) throw std::bad_alloc();
    size_ = text.size();
  }

  /// Returns the first boundary after `position`, or the end of the text if there is none.
  std::size_t Following(std::size_t position) {
    const std::int32_t boundary = iterator_->following(static_cast<std::int32_t>(position));
    return boundary == icu::BreakIterator::DONE ? size_ : static_cast<std::size_t>(boundary);
  }

 private:
  std::unique_ptr<icu::BreakIterator> iterator_;
  UText text_ = UTEXT_INITIALIZER;
  std::size_t size_ = 0;
};

}  // namespace

struct ParagraphWrapper::Breaks {
  Boundaries lines{icu::BreakIterator::createLineInstance};
  Boundaries characters{icu::BreakIterator::createCharacterInstance};
};

namespace {

/// Collects the lines of one paragraph. Text can be added to the last line until `Finish` is
/// called.
class LineFiller {
 public:
  LineFiller(std::u16string_view text, std::size_t width, const ParagraphShape& shape)
      : text_(text),
        width_(width),
        hangingIndent_(shape.hangingIndent),
        open_{0, 0, shape.firstIndent},
        column_(shape.firstIndent) {}

  bool Fits(std::size_t columns) const { return column_ + columns <= width_; }

  /// Starts a new line at `position`, unless the current line is empty.
  void BreakAt(std::size_t position) {
    if (open_.end == open_.begin) return;
    Close();
    open_ = {position, position, hangingIndent_};
    column_ = hangingIndent_;
  }

  void AddUntil(std::size_t end, std::size_t columns) {
    open_.end = end;
    column_ += columns;
  }

  std::vector<WrappedLine> Finish() {
    Close();
    return std::move(lines_);
  }

 private:
  void Close() {
    open_.end = TrimmedEnd(text_, open_.begin, open_.end);
    lines_.push_back(open_);
  }

  std::u16string_view text_;
  std::size_t width_;
  std::size_t hangingIndent_;
  WrappedLine open_;
  std::size_t column_;
  std::vector<WrappedLine> lines_;
};

}  // namespace

ParagraphWrapper::ParagraphWrapper(std::size_t width) : width_(width) {}
ParagraphWrapper::~ParagraphWrapper() = default;

std::vector<WrappedLine> ParagraphWrapper::Wrap(std::u16string_view paragraph,
                                                ParagraphShape shape) {
  const std::size_t end = TrimmedEnd(paragraph, 0, paragraph.size());
  if (width_ == 0 || end > kMaximumText) return {{0, end, shape.firstIndent}};
  shape.firstIndent = std::min(shape.firstIndent, width_ / 2);
  shape.hangingIndent = std::min(shape.hangingIndent, width_ / 2);
  if (shape.firstIndent + DisplayWidth(paragraph.substr(0, end)) <= width_) {
    return {{0, end, shape.firstIndent}};
  }
  if (breaks_ == nullptr) breaks_ = std::make_unique<Breaks>();
  breaks_->lines.SetText(paragraph);
  breaks_->characters.SetText(paragraph);
  LineFiller filler(paragraph, width_, shape);
  std::size_t begin = 0;
  while (begin < end) {
    const std::size_t next = breaks_->lines.Following(std::max(begin, shape.unbrokenPrefix));
    const std::size_t wordEnd = TrimmedEnd(paragraph, begin, next);
    const std::size_t columns = DisplayWidth(paragraph.substr(begin, wordEnd - begin));
    if (!filler.Fits(columns)) filler.BreakAt(begin);
    if (filler.Fits(columns)) {
      filler.AddUntil(next, DisplayWidth(paragraph.substr(begin, next - begin)));
    } else {
      for (std::size_t from = begin; from < wordEnd;) {
        const std::size_t to = breaks_->characters.Following(from);
        const std::size_t characterColumns = DisplayWidth(paragraph.substr(from, to - from));
        if (!filler.Fits(characterColumns)) filler.BreakAt(from);
        filler.AddUntil(to, characterColumns);
        from = to;
      }
      filler.AddUntil(next, DisplayWidth(paragraph.substr(wordEnd, next - wordEnd)));
    }
    begin = next;
  }
  return filler.Finish();
}

}  // namespace ornwhatsnew
