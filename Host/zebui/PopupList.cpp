#include "zebui/PopupList.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace zebui::controls {

namespace {

constexpr int kMaxRows = 20;
constexpr int kRowPadding = 6;   // above and below the text together
constexpr int kCheckColumn = 20; // where items are marked
constexpr int kPlainColumn = 6;  // where they are not
constexpr int kRightPadding = 10;

int TextLeft(bool marksValue) {
  return marksValue ? kCheckColumn : kPlainColumn;
}

class RowPainter : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
    return {option.rect.width(), option.fontMetrics.height() + kRowPadding};
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const auto& items = static_cast<const PopupItems&>(*index.model());
    const bool lit = (option.state & QStyle::State_Selected) != 0;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (lit)
      painter->fillRect(option.rect, option.palette.color(QPalette::Active, QPalette::Highlight));
    const QColor ink = option.palette.color(QPalette::Active, lit ? QPalette::HighlightedText : QPalette::Text);
    if (items.MarksValue() && items.IsValue(index.row()))
      PaintCheck(*painter, option.rect, ink);
    painter->setPen(ink);
    const QRect text = option.rect.adjusted(TextLeft(items.MarksValue()), 0, -kPlainColumn, 0);
    const QString shown = index.data(Qt::DisplayRole).toString();
    painter->drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      option.fontMetrics.elidedText(shown, Qt::ElideRight, text.width()));
    painter->restore();
  }

 private:
  static void PaintCheck(QPainter& painter, const QRect& row, const QColor& ink) {
    const QPointF middle(row.left() + kCheckColumn / 2.0, row.top() + row.height() / 2.0);
    QPainterPath check;
    check.moveTo(middle + QPointF(-4.0, 0.0));
    check.lineTo(middle + QPointF(-1.0, 3.0));
    check.lineTo(middle + QPointF(4.5, -3.5));
    painter.setPen(QPen(ink, 1.75, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(check);
  }
};

} // namespace

int PopupItems::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(mItems.size());
}

QVariant PopupItems::data(const QModelIndex& index, int role) const {
  const bool isItem = index.isValid() && index.row() < static_cast<int>(mItems.size());
  if (!isItem)
    return {};
  if (role == Qt::DisplayRole || role == Qt::AccessibleTextRole)
    return toolkit::ToQt(mItems[static_cast<std::size_t>(index.row())]);
  return {};
}

PopupList::PopupList(const Content& content, QWidget* under, Owner owner)
    : QFrame(under, Qt::Popup), mUnder(under), mView(new QListView(this)), mOwner(std::move(owner)),
      mWidestItem(content.widestItem + TextLeft(content.marksValue) + kRightPadding) {
  setFrameStyle(QFrame::Box | QFrame::Plain);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(1, 1, 1, 1);
  layout->addWidget(mView);
  mView->setFrameShape(QFrame::NoFrame);
  mView->setFont(under->font());
  mView->setUniformItemSizes(true);
  mView->setMouseTracking(true);
  mView->setEditTriggers(QAbstractItemView::NoEditTriggers);
  mView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  mView->setItemDelegate(new RowPainter(mView));
  mView->setModel(new PopupItems(content.items, content.value, content.marksValue, mView));
  mView->setAccessibleName(under->accessibleName());
  mView->installEventFilter(this);
  mView->viewport()->installEventFilter(this);
  if (content.value >= 0)
    mView->setCurrentIndex(mView->model()->index(static_cast<int>(content.value), 0));
}

void PopupList::Open() {
  Place(mWidestItem, mView->model()->rowCount());
  show();
  mView->setFocus(Qt::PopupFocusReason);
  // Now, so that the scroll bar knows the rows before it is asked to go to one.
  layout()->activate();
  mView->doItemsLayout();
  mView->scrollTo(mView->currentIndex(), QAbstractItemView::PositionAtCenter);
}

void PopupList::Place(int widestItem, int count) {
  const QPoint below = mUnder->mapToGlobal(QPoint(0, mUnder->height()));
  const QPoint above = mUnder->mapToGlobal(QPoint(0, 0));
  const QScreen* screen = mUnder->screen();
  const QRect room = screen ? screen->availableGeometry() : QRect(0, 0, 4096, 4096);
  const int rowHeight = mView->fontMetrics().height() + kRowPadding;
  const int frame = 2 * (frameWidth() + 1);
  const int wanted = std::min(count, kMaxRows) * rowHeight + frame;
  const int roomBelow = room.bottom() + 1 - below.y();
  const int roomAbove = above.y() - room.top();
  const bool opensAbove = wanted > roomBelow && roomAbove > roomBelow;
  const int height =
      std::clamp(wanted, rowHeight + frame, std::max(rowHeight + frame, opensAbove ? roomAbove : roomBelow));
  const int bar = height < count * rowHeight + frame ? mView->verticalScrollBar()->sizeHint().width() : 0;
  const int width = std::min(std::max(mUnder->width(), widestItem + bar + frame), room.width());
  const int left = std::max(room.left(), std::min(below.x(), room.right() + 1 - width));
  setGeometry(left, opensAbove ? above.y() - height : below.y(), width, height);
}

void PopupList::ChooseCurrent() {
  const QModelIndex current = mView->currentIndex();
  const auto chosen = mOwner.chosen;
  hide();
  if (chosen && current.isValid())
    chosen(current.row());
}

bool PopupList::FilterKey(const QKeyEvent& key) {
  const bool withAlt = (key.modifiers() & Qt::AltModifier) != 0;
  switch (key.key()) {
  case Qt::Key_Return:
  case Qt::Key_Enter:
  case Qt::Key_Tab:
  case Qt::Key_Select:
    ChooseCurrent();
    return true;
  case Qt::Key_Escape:
  case Qt::Key_F4:
    hide();
    return true;
  case Qt::Key_Up:
  case Qt::Key_Down:
    if (withAlt)
      ChooseCurrent();
    return withAlt;
  default:
    return false;
  }
}

bool PopupList::FilterMouse(QMouseEvent& mouse) {
  const QModelIndex under = mView->indexAt(mouse.position().toPoint());
  const bool inside = mView->viewport()->rect().contains(mouse.position().toPoint());
  switch (mouse.type()) {
  case QEvent::MouseButtonPress:
  case QEvent::MouseMove:
    mMouseCame = mMouseCame || inside;
    if (inside && under.isValid())
      mView->setCurrentIndex(under);
    return true;
  case QEvent::MouseButtonRelease:
    if (mMouseCame && inside && under.isValid())
      ChooseCurrent();
    return true;
  default:
    return false;
  }
}

bool PopupList::eventFilter(QObject* watched, QEvent* event) {
  const toolkit::EventScope scope;
  if (watched == mView && event->type() == QEvent::KeyPress)
    return FilterKey(*static_cast<QKeyEvent*>(event));
  if (watched == mView && event->type() == QEvent::ShortcutOverride) {
    event->accept();
    return true;
  }
  if (watched != mView && (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseMove ||
                           event->type() == QEvent::MouseButtonRelease))
    return FilterMouse(*static_cast<QMouseEvent*>(event));
  return QFrame::eventFilter(watched, event);
}

void PopupList::hideEvent(QHideEvent* event) {
  QFrame::hideEvent(event);
  const Owner owner = std::exchange(mOwner, {});
  if (owner.closed)
    owner.closed();
  deleteLater();
}

void PopupList::mousePressEvent(QMouseEvent* event) {
  // A press on the popup closes the list; it doesn't open it again.
  const QPoint at = mUnder->mapFromGlobal(event->globalPosition().toPoint());
  setAttribute(Qt::WA_NoMouseReplay, mUnder->rect().contains(at));
  QFrame::mousePressEvent(event);
}

} // namespace zebui::controls
