#include "ornwhatsnewqt/src/FlowLayout.h"

#include <algorithm>

#include <QtWidgets/QStyle>
#include <QtWidgets/QWidget>

namespace ornwhatsnewqt {

FlowLayout::FlowLayout(int spacing) {
  setContentsMargins(0, 0, 0, 0);
  setSpacing(spacing);
}

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem* item) {
  items_.emplace_back(item);
}

int FlowLayout::count() const {
  return static_cast<int>(items_.size());
}

QLayoutItem* FlowLayout::itemAt(int index) const {
  const bool isValid = index >= 0 && index < count();
  return isValid ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
  if (itemAt(index) == nullptr) return nullptr;
  const auto position = items_.begin() + index;
  QLayoutItem* const item = position->release();
  items_.erase(position);
  return item;
}

std::vector<QRect> FlowLayout::arrange(int width) const {
  std::vector<QRect> rects;
  QPoint position;
  int rowHeight = 0;
  for (const auto& item : items_) {
    const QSize size = item->isEmpty() ? QSize(0, 0) : item->sizeHint();
    if (position.x() > 0 && position.x() + size.width() > width) {
      position = QPoint(0, position.y() + rowHeight + spacing());
      rowHeight = 0;
    }
    rects.emplace_back(position, size);
    if (!item->isEmpty()) position.rx() += size.width() + spacing();
    rowHeight = std::max(rowHeight, size.height());
  }
  return rects;
}

int FlowLayout::heightForWidth(int width) const {
  int height = 0;
  for (const QRect& rect : arrange(width)) height = std::max(height, rect.bottom() + 1);
  return height;
}

QSize FlowLayout::minimumSize() const {
  QSize size;
  for (const auto& item : items_) size = size.expandedTo(item->minimumSize());
  return size;
}

QSize FlowLayout::sizeHint() const {
  QSize size;
  for (const QRect& rect : arrange(QLAYOUTSIZE_MAX)) {
    size = size.expandedTo(QSize(rect.right() + 1, rect.bottom() + 1));
  }
  return size;
}

void FlowLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  const std::vector<QRect> rects = arrange(rect.width());
  const QWidget* const widget = parentWidget();
  const Qt::LayoutDirection direction =
      widget != nullptr ? widget->layoutDirection() : Qt::LeftToRight;
  for (std::size_t i = 0; i < items_.size(); ++i) {
    items_[i]->setGeometry(
        QStyle::visualRect(direction, rect, rects[i].translated(rect.topLeft())));
  }
}

}  // namespace ornwhatsnewqt
