#include <ornwhatsnewqt/PanelWidget.h>

#include <algorithm>

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtGui/QKeyEvent>
#include <QtGui/QShortcut>
#include <QtPrintSupport/QPrintDialog>
#include <QtPrintSupport/QPrinter>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QVBoxLayout>

#include <ornwhatsnewqt/WhatsNew.h>

#include "ornwhatsnewqt/src/FilterBar.h"
#include "ornwhatsnewqt/src/LocalizedText.h"
#include "ornwhatsnewqt/src/MessageBar.h"
#include "ornwhatsnewqt/src/NewsFormats.h"
#include "ornwhatsnewqt/src/NewsPage.h"
#include "ornwhatsnewqt/src/PanelController.h"
#include "ornwhatsnewqt/src/PanelHeader.h"
#include "ornwhatsnewqt/src/PanelStrings.h"
#include "ornwhatsnewqt/src/PillButton.h"
#include "ornwhatsnewqt/src/RatingPage.h"
#include "ornwhatsnewqt/src/SearchBar.h"

namespace ornwhatsnewqt {

struct PanelWidget::Impl {
  Impl(PanelWidget* owner, PanelController* panelController)
      : panel(owner), controller(panelController) {}
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  void createWidgets();
  void layOutWidgets();
  void centerTop();
  void connectWidgets();
  void openPage(PanelPage newPage);
  void closePages();
  void draw();
  void drawRatings(const PanelStyle& style);
  void retranslate();
  void updateHeader();
  QString errorText() const;
  void startSearch();
  void print();

  PanelWidget* panel;
  QPointer<PanelController> controller;
  MessageBar* message = nullptr;
  PanelHeader* header = nullptr;
  FilterBar* filters = nullptr;
  NewsPage* news = nullptr;
  RatingPage* ratings = nullptr;
  SearchBar* search = nullptr;
  QStackedWidget* pages = nullptr;
  QCheckBox* announce = nullptr;
  QVBoxLayout* top = nullptr;
  PanelPage page = PanelPage::News;
  bool isOpen = false;
};

// These functions change the widgets to which the members point.
// NOLINTBEGIN(readability-make-member-function-const)

void PanelWidget::Impl::createWidgets() {
  message = new MessageBar(panel);
  header = new PanelHeader(panel);
  filters = new FilterBar(controller, panel);
  news = new NewsPage(panel);
  ratings = new RatingPage(panel);
  search = new SearchBar(news, panel);
  pages = new QStackedWidget(panel);
  announce = new QCheckBox(panel);
  header->setObjectName(QStringLiteral("header"));
  filters->setObjectName(QStringLiteral("filters"));
  message->setObjectName(QStringLiteral("messageBar"));
  news->setObjectName(QStringLiteral("newsPage"));
  ratings->setObjectName(QStringLiteral("ratingPage"));
  search->setObjectName(QStringLiteral("searchBar"));
  announce->setObjectName(QStringLiteral("announce"));
}

void PanelWidget::Impl::layOutWidgets() {
  pages->addWidget(news);
  pages->addWidget(ratings);
  top = new QVBoxLayout;
  centerTop();
  top->setSpacing(6);
  for (QWidget* bar : {static_cast<QWidget*>(message), static_cast<QWidget*>(header),
                       static_cast<QWidget*>(filters), static_cast<QWidget*>(search)})
    top->addWidget(bar);
  auto* const column = new QVBoxLayout(panel);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addLayout(top);
  column->addWidget(pages, 1);
  auto* const bottom = new QVBoxLayout;
  bottom->setContentsMargins(kPageMargin, 0, kPageMargin, 0);
  announce->setMinimumHeight(40);
  bottom->addWidget(announce);
  column->addLayout(bottom);
}

// Makes the bars as wide as the page below them.
void PanelWidget::Impl::centerTop() {
  if (top == nullptr) return;
  const int beside = std::max(0, (panel->width() - kMaximumColumnWidth) / 2);
  // Subtract the space that the buttons reserve for their focus ring, so that their visible edges
  // are aligned with the page.
  const int side = beside + kPageMargin - kRingSpace;
  top->setContentsMargins(side, kPageMargin / 2, side, kPageMargin / 2);
}

void PanelWidget::Impl::connectWidgets() {
  connect(controller, &PanelController::changed, panel, [this] {
    retranslate();
    draw();
  });
  connect(controller, &PanelController::countChanged, panel, [this] { updateHeader(); });
  connect(controller, &PanelController::ratingsChanged, panel, [this] {
    if (page == PanelPage::Ratings) draw();
  });
  connect(controller, &PanelController::errorsChanged, panel,
          [this] { message->setMessage(errorText()); });
  connect(header, &PanelHeader::newsRequested, panel, &PanelWidget::showNews);
  connect(header, &PanelHeader::ratingsRequested, panel, &PanelWidget::showRatings);
  connect(header, &PanelHeader::searchRequested, panel, [this] { startSearch(); });
  connect(header, &PanelHeader::printRequested, panel, [this] { print(); });
  connect(news, &QTextBrowser::anchorClicked, controller, &PanelController::activateLink);
  connect(ratings, &RatingPage::rated, controller, &PanelController::rate);
  connect(announce, &QCheckBox::clicked, controller, &PanelController::setAnnouncesUpdates);
  connect(ratings, &RatingPage::finished, header, &PanelHeader::focusPage);
  const auto addShortcut = [this](QKeySequence::StandardKey key, void (Impl::*function)()) {
    auto* const shortcut = new QShortcut(key, panel);
    // If the panel is in a dock widget and does not have the focus, leave the shortcuts to the main
    // window.
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, panel, [this, function] { (this->*function)(); });
  };
  addShortcut(QKeySequence::Find, &Impl::startSearch);
  addShortcut(QKeySequence::Print, &Impl::print);
}

void PanelWidget::Impl::openPage(PanelPage newPage) {
  if (!controller || top == nullptr) return;
  page = newPage;
  if (!isOpen) controller->openPanel();
  isOpen = true;
  search->hide();
  updateHeader();
  if (page == PanelPage::News) {
    // display() emits changed(), and the panel then draws the page.
    controller->display();
    news->setFocus();
  } else {
    draw();
    if (!ratings->focusNextCard()) news->setFocus();
  }
}

void PanelWidget::Impl::closePages() {
  if (!isOpen) return;
  isOpen = false;
  search->hide();
  news->showLayout({}, PanelStyle(panel->palette(), panel->font()));
  ratings->clear();
  page = PanelPage::News;
  if (controller) controller->closePanel();
}

void PanelWidget::Impl::draw() {
  if (!isOpen || !controller) return;
  const PanelStyle style(panel->palette(), panel->font());
  if (page == PanelPage::Ratings) {
    drawRatings(style);
  } else {
    pages->setCurrentWidget(news);
    news->showLayout(controller->layout(), style);
  }
  if (search->isVisible()) search->refresh();
}

// If there is nothing to rate, the news page shows the notice of the rating view.
void PanelWidget::Impl::drawRatings(const PanelStyle& style) {
  const ornwhatsnew::PanelLayout layout = controller->ratingLayout();
  ratings->showRequests(layout.ratingRequests);
  if (ratings->isEmpty()) news->showLayout(layout, style);
  pages->setCurrentWidget(ratings->isEmpty() ? static_cast<QWidget*>(news) : ratings);
}

void PanelWidget::Impl::retranslate() {
  news->setAccessibleName(localizedText(strings::kNews));
  news->setAccessibleDescription(localizedText(strings::kNewsDescription));
  ratings->setAccessibleName(localizedText(strings::kRatings));
  ratings->setAccessibleDescription(localizedText(strings::kRatingsDescription));
  header->retranslate();
  filters->refresh();
  message->retranslate(errorText());
  announce->setText(localizedText(strings::kAnnounce));
  announce->setAccessibleDescription(localizedText(strings::kAnnounceDescription));
  announce->setChecked(controller->announcesUpdates());
}

void PanelWidget::Impl::updateHeader() {
  header->setPage(page, controller && controller->canRate());
  filters->setVisible(page == PanelPage::News);
  announce->setVisible(page == PanelPage::News && controller && controller->offersAnnouncements());
}

QString PanelWidget::Impl::errorText() const {
  QStringList errors;
  if (!controller->isLoaded()) {
    errors.append(localizedText(strings::kDataError, {controller->errorString()}));
  }
  if (!controller->stateError().isEmpty()) {
    errors.append(localizedText(strings::kStateError, {controller->stateError()}));
  }
  return errors.join(u'\n');
}

void PanelWidget::Impl::startSearch() {
  if (page == PanelPage::News) search->startSearch();
}

void PanelWidget::Impl::print() {
  if (page != PanelPage::News || !controller) return;
  auto* const dialog = new QPrintDialog(panel);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setOption(QAbstractPrintDialog::PrintToFile);
  connect(dialog, qOverload<QPrinter*>(&QPrintDialog::accepted), panel, [this](QPrinter* printer) {
    if (controller) printNews(controller->layout(), panel->font(), *printer);
  });
  dialog->open();
}

// NOLINTEND(readability-make-member-function-const)

PanelWidget::PanelWidget(WhatsNew* whatsNew, QWidget* parent)
    : QWidget(parent), impl_(std::make_unique<Impl>(this, whatsNew->controller())) {
  // Create the widgets after `impl_`, because Qt can call the event handlers of this object as soon
  // as this object has a child. The handlers use `impl_`, and ignore null widgets.
  impl_->createWidgets();
  impl_->layOutWidgets();
  impl_->connectWidgets();
  // Call setMessage before retranslate. After retranslate, the bar would already contain the
  // message, and setMessage would not make the bar visible.
  impl_->message->setMessage(impl_->errorText());
  impl_->retranslate();
  impl_->updateHeader();
}

PanelWidget::~PanelWidget() {
  impl_->closePages();
}

void PanelWidget::showNews() {
  impl_->openPage(PanelPage::News);
}

void PanelWidget::showRatings() {
  impl_->openPage(PanelPage::Ratings);
}

QSize PanelWidget::sizeHint() const {
  return QSize(720, 760);
}

void PanelWidget::changeEvent(QEvent* event) {
  if (changesPanelStyle(*event)) impl_->draw();
  QWidget::changeEvent(event);
}

void PanelWidget::hideEvent(QHideEvent* event) {
  // The event is spontaneous if the user has minimised the window. The panel then keeps its
  // content.
  if (!event->spontaneous()) impl_->closePages();
  QWidget::hideEvent(event);
}

void PanelWidget::keyPressEvent(QKeyEvent* event) {
  const SearchBar* const search = impl_->search;
  if (event->key() == Qt::Key_Escape && search != nullptr && search->isVisible()) {
    impl_->search->endSearch();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void PanelWidget::resizeEvent(QResizeEvent* event) {
  impl_->centerTop();
  QWidget::resizeEvent(event);
}

void PanelWidget::showEvent(QShowEvent* event) {
  if (!event->spontaneous() && !impl_->isOpen) showNews();
  QWidget::showEvent(event);
}

}  // namespace ornwhatsnewqt
