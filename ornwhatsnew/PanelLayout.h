// Defines the layout of a panel: its paragraphs, and the styles and links within them. A host that
// draws a layout does not need to handle offsets in UTF-8 or overlapping style runs.
//
//     const PanelLayout layout = list->GetLayoutForDisplay(kShowOnlyNew);
//     for (const LayoutParagraph& paragraph : layout.paragraphs) {
//       BeginParagraph(paragraph.kind, paragraph.indentLevel, paragraph.bullet);
//       for (const LayoutSpan& span : paragraph.spans) {
//         Draw(layout.text.substr(span.range.begin, span.range.length), span.style, span.link);
//       }
//     }
//
// The paragraphs of a layout contain the same characters as the text of
// `GetFormattedTextForDisplay`, except for white space, U+FEFF and rating placeholders. White space
// means spaces, tabs and line ends. A line end is LF, CR, CRLF, U+2028 or U+2029.
//
// The structs own their content and do not refer to the list. Their strings can contain control
// characters and direction marks that an author or a translator wrote.
#ifndef ORNWHATSNEW_PANELLAYOUT_H_
#define ORNWHATSNEW_PANELLAYOUT_H_

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <orncore/Export.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// The role of a paragraph.
enum class ParagraphKind {
  /// The heading of the panel, with a version. The rating view has a heading only if the host's
  /// translation of the template `PanelText::kNewline` contains visible characters. That heading
  /// has no version.
  kHeader,
  /// The title of an item. The same paragraph can also contain the internal key and the unlock
  /// label, after the title.
  kTitle,
  /// The description of an item, with its links.
  kDescription,
  /// A change of an item.
  kChange,
  /// A paragraph of the notice that a panel without items shows. A blank line in the notice starts
  /// a new paragraph.
  kNotice,
  /// A request to rate a feature, after the other paragraphs of this feature. It has no text. A
  /// view puts its rating control here.
  kRatingRequest,
};

/// A range of a layout's text. The range never splits a code point. The units are UTF-16 code units
/// in a `PanelLayout` and bytes in a `PanelLayoutUTF8`.
struct TextRange {
  std::size_t begin = 0;   ///< the offset in the text
  std::size_t length = 0;  ///< the number of units

  /// Returns whether all members are equal.
  friend bool operator==(const TextRange&, const TextRange&) = default;
};

/// A part of a paragraph with at most one style and one link. The spans of a paragraph are in
/// ascending order, do not overlap, and together cover the range of the paragraph. No span is
/// empty.
template <class String>
struct BasicLayoutSpan {
  /// The range of the span in the layout's text.
  TextRange range;
  /// The style. It has no value for text between styled strings, such as the space before an unlock
  /// label. It is never `kStyleUnlockLabelBox`, because an unlock label has the style
  /// `kStyleUnlockLabel`.
  std::optional<StyleID> style;
  /// The URL of a title or of a link, or an empty string. The URL can contain any character that an
  /// author wrote in the data file, so call `orncore::string::IsSafeLink` before you open the URL.
  String link;

  /// Returns whether all members are equal.
  friend bool operator==(const BasicLayoutSpan&, const BasicLayoutSpan&) = default;
};

/// A paragraph of the panel. Its text neither begins nor ends with white space.
template <class String>
struct BasicLayoutParagraph {
  /// The role of the paragraph.
  ParagraphKind kind = ParagraphKind::kHeader;
  /// The range of the paragraph in the layout's text, without the bullet. It is empty for a rating
  /// request and for a change without any text. No other paragraph is empty.
  TextRange range;
  /// The level of indentation: 0 for a title, 1 for all other kinds.
  int indentLevel = 0;
  /// The bullet of a change in the user's language, without white space. It is empty if the
  /// translation contains no visible characters, or if the paragraph is not a change.
  String bullet;
  /// False for a change whose description is empty in the user's language. Such a change can still
  /// have other text, such as its version. True for all other paragraphs.
  bool hasText = true;
  /// The key of the item to which the paragraph belongs, for `MarkItemHasBeenRated`. It is empty
  /// for a header or a notice. An item can occur several times in a panel.
  std::string itemKey;
  /// Whether the item is one of the sections MISC, BUGFIX, INTERNAL and UNREVIEWED.
  bool isSection = false;
  /// The index in `ratingRequests` of the request that belongs to a paragraph of the kind
  /// `kRatingRequest`. Has no value for other kinds.
  std::optional<std::size_t> rating;
  /// The spans of the paragraph. An empty paragraph has none.
  std::vector<BasicLayoutSpan<String>> spans;

  /// Returns whether all members are equal.
  friend bool operator==(const BasicLayoutParagraph&, const BasicLayoutParagraph&) = default;
};

/// A request to rate a feature. Only the rating view contains requests. The title, the question and
/// the description are in the user's language, and neither begin nor end with white space. The
/// library replaces each line end in them with U+2028 and each tab with a space, and removes
/// U+FEFF.
template <class String>
struct BasicRatingRequest {
  /// The key of the feature, for `MarkItemHasBeenRated`.
  std::string itemKey;
  /// The title of the feature, or its key if it has no title.
  String title;
  /// The custom question of the last shown change. It is empty if this change requests a rating
  /// with the keyword `kRequestRating`. The view then shows its own question.
  String question;
  /// The description of the feature. It is empty if the feature has none, or if the author hides it
  /// with `RatingHidesBetaFeatureDescription`.
  String description;

  /// Returns whether all members are equal.
  friend bool operator==(const BasicRatingRequest&, const BasicRatingRequest&) = default;
};

/// The layout of a panel.
template <class String>
struct BasicPanelLayout {
  /// The paragraphs, joined by line feeds. Within a paragraph, each line end is U+2028, and each
  /// tab is a space. The text contains no U+FEFF and is well-formed.
  String text;
  /// The paragraphs, in the order of the text.
  std::vector<BasicLayoutParagraph<String>> paragraphs;
  /// The rating requests, in the order of their paragraphs.
  std::vector<BasicRatingRequest<String>> ratingRequests;
  /// Whether the panel shows an item. If false, the layout contains at most a header and the
  /// paragraphs of a notice.
  bool hasItems = false;

  /// Returns whether all members are equal.
  friend bool operator==(const BasicPanelLayout&, const BasicPanelLayout&) = default;
};

using LayoutSpan = BasicLayoutSpan<UTF16String>;            ///< a span in UTF-16
using LayoutParagraph = BasicLayoutParagraph<UTF16String>;  ///< a paragraph in UTF-16
using RatingRequest = BasicRatingRequest<UTF16String>;      ///< a rating request in UTF-16
using PanelLayout = BasicPanelLayout<UTF16String>;          ///< a layout in UTF-16
using PanelLayoutUTF8 = BasicPanelLayout<UTF8String>;       ///< a layout in UTF-8

/// Returns the same layout in UTF-8, with ranges in bytes. The caller must not have changed the
/// text, the paragraphs or the spans of `layout` after a list returned the layout. Takes linear
/// time. Throws `std::bad_alloc` if memory runs out. Safe to call from any thread.
ORN_EXPORT PanelLayoutUTF8 ConvertToUTF8(const PanelLayout& layout);

/// The numbers of items and changes that a display would show.
struct NewCount {
  /// The number of items, including sections. It is greater than 0 if and only if `IsAnythingNew`
  /// returns true for the same options.
  std::size_t items = 0;
  /// The number of changes. It can be 0 even if `items` is not, because an item can be new without
  /// a new change.
  std::size_t changes = 0;

  /// Returns whether all members are equal.
  friend bool operator==(const NewCount&, const NewCount&) = default;
};

/// Describes the data file that the constructor of a list or `InitWithData` loaded last.
struct DataFileSummary {
  /// Whether the resource manager loaded the data file. Has no value if the list was loaded from a
  /// string.
  std::optional<bool> isFound;
  /// The number of changes in the file, including the unmatched changes.
  std::size_t changes = 0;
  /// The number of changes that match no item. Only internal users see them.
  std::size_t unmatched = 0;
  /// The number of rows of the kind `DataRowKind::kSkipped`, except blank rows. `DataRowSkipReason`
  /// lists the reasons.
  std::size_t skippedRows = 0;

  /// Returns whether all members are equal.
  friend bool operator==(const DataFileSummary&, const DataFileSummary&) = default;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_PANELLAYOUT_H_
