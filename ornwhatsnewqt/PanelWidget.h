// Declares `PanelWidget`, the panel of a `WhatsNew`. `WhatsNew` shows a panel in a window. An
// application can also put a panel into a dock widget or into one of its own windows:
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

/// A panel with a news page and a rating page.
///
/// The panel uses the colours and the font of the desktop, and the language of the application. If
/// one of these changes, the panel adapts. Ctrl+F searches the news, and Ctrl+P prints the news.
/// Escape closes an open search. If no search is open, the panel ignores Escape, so that a dialog
/// that contains the panel closes.
///
/// When the panel becomes visible without an open page, it displays the news, which then counts as
/// seen. When the panel is hidden, it closes its page and frees the memory of both pages. A
/// minimised panel keeps its page.
class ORNWHATSNEWQT_EXPORT PanelWidget : public QWidget {
  Q_OBJECT
 public:
  /// Creates a panel for `whatsNew`, which must not be null. After `whatsNew` is destroyed, the
  /// panel can no longer open a page.
  explicit PanelWidget(WhatsNew* whatsNew, QWidget* parent = nullptr);
  ~PanelWidget() override;

  /// Displays the news and moves the focus to it. A hidden panel remains hidden.
  void showNews();

  /// Shows the rating requests and moves the focus to the first request that the user has not
  /// answered. If there are no requests, shows a notice. A hidden panel remains hidden. The news
  /// does not count as seen.
  void showRatings();

  /// Returns 720 x 760 device-independent pixels.
  QSize sizeHint() const override;

 protected:
  /// Redraws the panel after a change of the palette, the font or the style.
  void changeEvent(QEvent* event) override;
  /// Closes the open page. If the window system hides the window, for example because the user
  /// minimises it, keeps the page open.
  void hideEvent(QHideEvent* event) override;
  /// Ends an open search if the key is Escape.
  void keyPressEvent(QKeyEvent* event) override;
  /// Keeps the bars above the page centred.
  void resizeEvent(QResizeEvent* event) override;
  /// Displays the news if no page is open.
  void showEvent(QShowEvent* event) override;

 private:
  struct Impl;
  const std::unique_ptr<Impl> impl_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_PANELWIDGET_H_
