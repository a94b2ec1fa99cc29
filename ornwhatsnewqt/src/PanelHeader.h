// Declares the top row of a panel.
#ifndef ORNWHATSNEWQT_SRC_PANELHEADER_H_
#define ORNWHATSNEWQT_SRC_PANELHEADER_H_

#include <QtWidgets/QWidget>

QT_BEGIN_NAMESPACE
class QLabel;
class QRadioButton;
QT_END_NAMESPACE

namespace ornwhatsnewqt {

class FlowLayout;
class GlyphButton;

/// The pages of a panel.
enum class PanelPage { News, Ratings };

/// The top row of a panel: a radio button for each page, and buttons for searching and printing. If
/// only the news page is available, shows a title instead of the radio buttons. Hides the buttons
/// for searching and printing on the rating page.
class PanelHeader : public QWidget {
  Q_OBJECT
 public:
  explicit PanelHeader(QWidget* parent);

  /// Sets the current page. Shows the radio buttons of the pages if `hasRatings` is true or `page`
  /// is `Ratings`. Otherwise, shows the title. Does not emit signals.
  void setPage(PanelPage page, bool hasRatings);

  /// Sets the labels, and the names and descriptions for assistive technologies, in the current
  /// language.
  void retranslate();

  /// Moves the keyboard focus to the button of the current page.
  void focusPage();

 Q_SIGNALS:
  void newsRequested();     ///< the user has chosen the news page
  void ratingsRequested();  ///< the user has chosen the rating page
  void searchRequested();   ///< the user wants to search
  void printRequested();    ///< the user wants to print

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QRadioButton* addPageButton(const char* name);
  void applyStyle();

  FlowLayout* pages_ = nullptr;
  QLabel* title_ = nullptr;
  QRadioButton* newsButton_ = nullptr;
  QRadioButton* ratingsButton_ = nullptr;
  GlyphButton* searchButton_ = nullptr;
  GlyphButton* printButton_ = nullptr;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_PANELHEADER_H_
