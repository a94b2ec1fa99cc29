// Cuts the text of a data file into rows and fields, by Boost's tokenizer at both levels.
//
// The tokenizer walks in runs of ordinary bytes and its tokens are views, so nothing is copied and
// it decides a tenth as often as byte by byte; see RunIterator.h.
#ifndef ORNWHATSNEW_SRC_DATAFILE_DATAFILECUTTER_H_
#define ORNWHATSNEW_SRC_DATAFILE_DATAFILECUTTER_H_

#include <string>
#include <string_view>

#include <boost/tokenizer.hpp>

#include "ornwhatsnew/src/datafile/RunIterator.h"

namespace ornwhatsnew {

/// Goes through the rows of a text, which must outlive it.
class DataFileCutter {
 public:
  explicit DataFileCutter(std::string_view text)
      : end_(text.data() + text.size()),
        rows_(RowTokenizer(RowRuns(text.data(), end_, end_), RowRuns(end_, end_, end_),
                           SeparatorReference{&rowSeparator_})
                  .begin()),
        fields_(FieldRuns(end_, end_, end_), FieldRuns(end_, end_, end_),
                SeparatorReference{&fieldSeparator_}) {}
  DataFileCutter(const DataFileCutter&) = delete;
  DataFileCutter& operator=(const DataFileCutter&) = delete;

  /// Overwrites `row` with the next row, without its line feed; false behind the last one.
  bool NextRow(std::string_view& row) {
    if (rows_.at_end()) return false;
    row = rows_->Extent();
    ++rows_;
    return true;
  }

  /// Calls `take(field, begin)` for each field of a row of the text, in order. `begin` is where the
  /// field begins, a quote included; an empty row has no field.
  template <class Take>
  void CutRow(std::string_view row, Take take) {
    const char* const rowEnd = row.data() + row.size();
    fields_.assign(FieldRuns(row.data(), rowEnd, end_), FieldRuns(rowEnd, rowEnd, end_));
    const char* begin = row.data();
    for (auto field = fields_.begin(); !field.at_end(); ++field) {
      take(*field, begin);
      begin = field.base().Position();
    }
  }

 private:
  using Separator = boost::escaped_list_separator<char>;

  // Tokenizer and iterators hold their separator by value, and copying one copies three strings.
  // One for all rows will do, since only one iterator at a time stands in the fields.
  struct SeparatorReference {
    Separator* separator;

    void reset() const { separator->reset(); }
    template <class Iterator, class Token>
    bool operator()(Iterator& next, Iterator end, Token& token) {
      return (*separator)(next, end, token);
    }
  };

  using RowRuns = RunIterator<'\n'>;
  using FieldRuns = RunIterator<',', '"'>;
  using RowTokenizer = boost::tokenizer<SeparatorReference, RowRuns, SpanToken>;
  using FieldTokenizer = boost::tokenizer<SeparatorReference, FieldRuns, SpanToken>;

  // From strings, because only this constructor can do without an escape character; with the
  // default one a backslash would be special, and a wrong escape an exception.
  Separator rowSeparator_{std::string(), std::string("\n"), std::string()};
  Separator fieldSeparator_{std::string(), std::string(","), std::string("\"")};
  const char* const end_;
  RowTokenizer::iterator rows_;
  FieldTokenizer fields_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_DATAFILE_DATAFILECUTTER_H_
