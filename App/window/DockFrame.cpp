#include "App/window/DockFrame.h"

#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QLabel>

#include "App/window/Labels.h"
#include "UIF/MenuUtils.h"
#include "UIF/TabView.h"

namespace App {

DockFrame::DockFrame(const UIF::UString& tabID, QWidget* parent)
    : QDockWidget(parent), mTabID(tabID), mContainer(new QWidget(this)), mHint(new QLabel(this)) {
  setObjectName(ToQString(tabID));
  setWidget(mContainer);
  mHint->setObjectName(QStringLiteral("hint"));
  mHint->setAttribute(Qt::WA_TransparentForMouseEvents);
  mHint->setWordWrap(true);
  mHint->setAlignment(Qt::AlignCenter);
  mHint->hide();
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

void DockFrame::StackedDimensionsChanged() {
  if (const UIF::TabView* view = UIF::Workspace::Instance()->FindTabView(mTabID))
    mContainer->setMinimumHeight(view->GetIsStacked() ? view->GetStackedDimensionHeightMin() : 0);
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
  const QPoint point = mContainer->mapFrom(this, event->pos());
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
