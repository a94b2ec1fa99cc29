// Declares the bar that searches the news.
#ifndef ORNWHATSNEWQT_SRC_SEARCHBAR_H_
#define ORNWHATSNEWQT_SRC_SEARCHBAR_H_

#include <cstddef>
#include <optional>
#include <vector>

#include <QtWidgets/QWidget>

QT_BEGIN_NAMESPACE
class QLabel;
class QLineEdit;
class QTextEdit;
QT_END_NAMESPACE

namespace ornwhatsnewqt {

class GlyphButton;

/// Searches the text of a view and selects a match. Ignores letter case and invisible characters.
/// Shows the number of the selected match and the number of matches. Enter selects the next match,
/// and Shift+Enter selects the previous one.
class SearchBar : public QWidget {
  Q_OBJECT
 public:
  /// Creates a hidden bar for `view`, which must outlive the bar.
  SearchBar(QTextEdit* view, QWidget* parent);

  /// Shows the bar, repeats the search, and moves the focus to the field of the bar.
  void startSearch();

  /// Hides the bar, and moves the focus to the view. The current match remains selected.
  void endSearch();

  /// Sets the strings of the bar in the current language, and repeats the search. The current match
  /// keeps its index; if there are now fewer matches, the last match becomes the current match.
  /// Selects the current match if the view does not have the focus. Does not scroll. Call this
  /// function after the language or the document of the view has changed.
  void refresh();

  /// Select the next and the previous match. The first match follows the last one. If there is no
  /// match, do nothing.
  void selectNext();
  void selectPrevious();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  /// The positions of a match in the document.
  struct Match {
    int begin;
    int end;
  };

  QString pattern() const;
  void findMatches();
  int startOfSearch() const;
  void search();
  void searchWhileTyping();
  void step(std::size_t matches);
  void select(std::size_t match);
  void selectWithoutScrolling();
  void showResult();

  QTextEdit* view_;
  QLineEdit* field_;
  QLabel* result_;
  GlyphButton* previousButton_;
  GlyphButton* nextButton_;
  GlyphButton* closeButton_;
  std::vector<Match> matches_;  // in the order of the document
  std::size_t current_ = 0;     // the index of the selected match
  // The position in the document at which the search begins while the user types. Has no value
  // until the search finds a match.
  std::optional<int> start_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_SEARCHBAR_H_
