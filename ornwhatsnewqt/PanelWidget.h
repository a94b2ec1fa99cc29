// Declares `PanelWidget`, the panel of a `WhatsNew`. `WhatsNew` shows one in a window. An
// application can put one into a dock widget or a window of its own:
//
//     auto* dock = new QDockWidget(tr("What's New"), &mainWindow);
//     dock->setWidget(new ornwhatsnewqt::PanelWidget(whatsNew, dock));
#ifndef ORNWHATSNEWQT_PANELWIDGET_H_
#define ORNWHATSNEWQT_PANELWIDGET_H_

#include <memory>

#include <QtWidgets/QWidget>

#include <ornwhatsnewqt/Export.h>

namespace ornwhatsnewqt {

class WhatsNew;

/// A panel with a page of news and a page of ratings.
///
/// The panel is drawn in the colours and the font of the desktop and follows their changes, and it
/// follows changes of the application's language. Ctrl+F searches the news, and Ctrl+P prints them.
/// Escape closes the search. If there is no search, the panel ignores the key, so that a dialog
/// around it closes.
///
/// The news are displayed when the panel becomes visible, and count as seen from then on. When the
/// panel is hidden, it frees the memory of its pages.
class ORNWHATSNEWQT_EXPORT PanelWidget : public QWidget {
  Q_OBJECT
 public:
  /// Creates a panel for `whatsNew`, which must not be null. After the destruction of `whatsNew`,
  /// the panel can only be destroyed.
  explicit PanelWidget(WhatsNew* whatsNew, QWidget* parent = nullptr);
  ~PanelWidget() override;

  /// Displays the news and moves the focus to them. Does not show the panel itself if it is hidden.
  void showNews();

  /// Shows the rating requests and moves the focus to the first one. Does not show the panel itself
  /// if it is hidden. The news do not count as seen.
  void showRatings();

  /// Returns 720 x 760 device-independent pixels.
  QSize sizeHint() const override;

 protected:
  /// Draws the panel again after a change of the palette, the font or the style.
  void changeEvent(QEvent* event) override;
  /// Closes the display, unless the window system has hidden the window.
  void hideEvent(QHideEvent* event) override;
  /// Ends an open search if the key is Escape.
  void keyPressEvent(QKeyEvent* event) override;
  /// Centres the content.
  void resizeEvent(QResizeEvent* event) override;
  /// Displays the news, unless a page is already open.
  void showEvent(QShowEvent* event) override;

 private:
  struct Impl;
  const std::unique_ptr<Impl> impl_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_PANELWIDGET_H_
