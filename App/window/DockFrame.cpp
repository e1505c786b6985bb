#include "App/window/DockFrame.h"

#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QLabel>
#include <QScrollArea>
#include <QTimer>

#include "App/window/Labels.h"
#include "UIF/MenuUtils.h"
#include "UIF/TabView.h"

namespace App {

namespace {

// Window systems count coordinates in 16 bits with a sign.
constexpr int kTallestPanel = 32000;
constexpr int kAroundFocus = 8;

} // namespace

DockFrame::DockFrame(const UIF::UString& tabID, QWidget* parent)
    : QDockWidget(parent), mTabID(tabID), mColumn(new QScrollArea(this)), mContainer(new QWidget),
      mHint(new QLabel(this)), mArrangeSoon(new QTimer(this)) {
  setObjectName(ToQString(tabID));
  setAcceptDrops(true); // as a window of its own, too
  mColumn->setObjectName(QStringLiteral("column"));
  mColumn->setFrameShape(QFrame::NoFrame);
  mColumn->setFocusPolicy(Qt::NoFocus);
  mColumn->setWidgetResizable(true);
  mColumn->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  mColumn->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  mColumn->setWidget(mContainer);
  setWidget(mColumn);
  mHint->setObjectName(QStringLiteral("hint"));
  mHint->setAttribute(Qt::WA_TransparentForMouseEvents);
  mHint->setWordWrap(true);
  mHint->setAlignment(Qt::AlignCenter);
  mHint->hide();
  mArrangeSoon->setSingleShot(true);
  connect(mArrangeSoon, &QTimer::timeout, this, [this] { Arrange(); });
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { Reveal(now); });
}

DockFrame::~DockFrame() = default;

void* DockFrame::GetContainer() {
  return mContainer;
}

void DockFrame::SetTitle(const UIF::UString& title) {
  setWindowTitle(ToQString(title));
}

void DockFrame::SetShown(bool shown) {
  setVisible(shown);
}

bool DockFrame::IsShown() const {
  return !isHidden();
}

void DockFrame::BringToFront() {
  raise();
}

bool DockFrame::IsFrontMost() const {
  return isVisible() && !visibleRegion().isEmpty();
}

// Said in the middle of what a panel does, which is not the time to resize it.
void DockFrame::StackedDimensionsChanged() {
  if (mStacked)
    mArrangeSoon->start(0);
}

void DockFrame::SetStacked(bool stacked) {
  mStacked = stacked;
  Arrange();
}

void DockFrame::Arrange() {
  UIF::TabView* view = UIF::Workspace::Instance() ? UIF::Workspace::Instance()->FindTabView(mTabID) : nullptr;
  bool stack = mStacked && view;
  const bool was = view && view->GetIsStacked();
  if (view) {
    // The height depends on whether there is a row to spare.
    view->SetIsStacked(stack);
    stack = stack && view->GetStackedDimensionHeightMin() <= kTallestPanel;
    view->SetIsStacked(stack);
  }
  mColumn->setVerticalScrollBarPolicy(stack ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
  mContainer->setMinimumHeight(stack ? view->GetStackedDimensionHeightMin() : 0);
  if (stack != was)
    view->SetBounds({0, 0, mContainer->width(), mContainer->height()});
}

// The column follows the keyboard.
void DockFrame::Reveal(QWidget* focus) {
  const bool isInside = mContainer->minimumHeight() > 0 && focus && mContainer->isAncestorOf(focus);
  if (!isInside || focus->height() > mColumn->viewport()->height())
    return;
  // All of it, and not only where its caret is.
  const int top = focus->mapTo(mContainer, QPoint()).y();
  mColumn->ensureVisible(0, top + focus->height(), 0, kAroundFocus);
  mColumn->ensureVisible(0, top, 0, kAroundFocus);
}

void DockFrame::SetHint(const QString& text) {
  mHint->setText(text);
  mHint->setVisible(!text.isEmpty());
  mHint->raise();
}

void DockFrame::resizeEvent(QResizeEvent* event) {
  constexpr int kMargin = 40;
  QDockWidget::resizeEvent(event);
  mHint->setGeometry(rect().adjusted(kMargin, height() / 4, -kMargin, -height() / 4));
}

// On the title, since the panel takes its own clicks: the panel's wing menu.
void DockFrame::contextMenuEvent(QContextMenuEvent* event) {
  UIF::TabView* view = UIF::Workspace::Instance() ? UIF::Workspace::Instance()->FindTabView(mTabID) : nullptr;
  const QPoint point = mColumn->mapFrom(this, event->pos());
  if (point.y() < 0 && view && UIF::MenuUtils::TrackWingMenu(*view, {point.x(), point.y()}))
    event->accept();
  else
    QDockWidget::contextMenuEvent(event);
}

// The panel hides, and the user's edits with it; it is there as it was when the dock is opened again.
void DockFrame::closeEvent(QCloseEvent* event) {
  if (UIF::TabView* view = UIF::Workspace::Instance() ? UIF::Workspace::Instance()->FindTabView(mTabID) : nullptr)
    view->Show(false);
  QDockWidget::closeEvent(event);
}

} // namespace App
