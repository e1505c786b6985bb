#include "UIF/ScrollBar.h"

#include <algorithm>

#include <QApplication>
#include <QScrollBar>
#include <QStyle>

#include "UIF/ViewWidget.h"
#include "zebcore/Localizer.h"
#include "zebcore/Trace.h"

namespace UIF {

namespace toolkit = zebui::toolkit;

namespace {

constexpr int kWidthWithoutStyle = 14;
constexpr int kOrientation_Vertical = 1;
unsigned sStations = 0;

class BarWidget : public QScrollBar {
 public:
  using QScrollBar::QScrollBar;

 protected:
  bool event(QEvent* event) override {
    const toolkit::EventScope scope;
    return QScrollBar::event(event);
  }
};

} // namespace

struct ScrollBar::Impl {
  const ScrollBar* owner = nullptr;
  unsigned id = 0;
  int min = 0;
  int max = 0;
  int page = 0;
  int step = 1;
  int position = 0;
  bool shown = false;
  RectT<int> bounds;
  zebcore::utility::ImmutableString station;
  QPointer<QScrollBar> widget;

  ~Impl() {
    if (!widget)
      return;
    // No more than that: assistive technology wants to hear of the widget's end.
    QObject::disconnect(widget, &QScrollBar::valueChanged, nullptr, nullptr);
    toolkit::Dispose(widget);
  }

  int Last() const { return static_cast<int>(std::max<std::int64_t>(min, std::int64_t{max} - std::max(0, page))); }

  void ShowRange() {
    if (!widget)
      return;
    const QSignalBlocker quiet(widget.data());
    widget->setRange(min, Last());
    widget->setPageStep(std::max(0, page));
    widget->setSingleStep(std::max(0, step));
    widget->setValue(position);
  }

  // The message last: a listener may take the bar away.
  void Report() {
    ScrollVerticalMessage message;
    message.position = position;
    const auto where = station;
    const toolkit::WidgetScope scope;
    zebcore::messaging::BroadcastMessage(where, message);
  }

  void Trace(const char* call, nlohmann::json args) const {
    args["id"] = id;
    zebcore::trace::Record(call, std::move(args), owner);
  }
};

ScrollBar::ScrollBar(Commander* super) : mSuper(super) {}

ScrollBar::~ScrollBar() = default;

void ScrollBar::Create(ViewBase* parent, const RectT<int>& bounds, int orientation, unsigned id) {
  if (mImpl || !parent || !WidgetOf(parent))
    return;
  mImpl = std::make_unique<Impl>();
  mImpl->owner = this;
  mImpl->id = id;
  mImpl->station = zebcore::utility::ImmutableString(("scrollBar:" + std::to_string(++sStations)).c_str());
  mImpl->bounds = bounds;
  mImpl->widget = new BarWidget(orientation == kOrientation_Vertical ? Qt::Vertical : Qt::Horizontal, WidgetOf(parent));
  mImpl->widget->setGeometry(ToQt(bounds));
  mImpl->widget->setFocusPolicy(Qt::NoFocus);
  mImpl->widget->setAccessibleName(
      toolkit::ToQt(zebcore::config::Localizer::Get().Localize("$$$/Vidra/UIF/ScrollBar=Scroll")));
  mImpl->widget->hide();
  mImpl->ShowRange();
  Impl* const impl = mImpl.get();
  QObject::connect(impl->widget, &QScrollBar::valueChanged, impl->widget, [impl](int value) {
    impl->position = value;
    impl->Report();
  });
}

void ScrollBar::Destroy() {
  mImpl.reset();
}

int ScrollBar::GetDefaultSize() {
  return toolkit::HasApplication() ? QApplication::style()->pixelMetric(QStyle::PM_ScrollBarExtent)
                                   : kWidthWithoutStyle;
}

void ScrollBar::SetScrollParameters(int min, int max, int page, int step) {
  if (!mImpl)
    return;
  if (zebcore::trace::IsOn())
    mImpl->Trace("ScrollBar::SetScrollParameters", {{"min", min}, {"max", max}, {"page", page}, {"step", step}});
  mImpl->min = min;
  mImpl->max = max;
  mImpl->page = page;
  mImpl->step = step;
  mImpl->position = std::clamp(mImpl->position, min, mImpl->Last());
  mImpl->ShowRange();
}

void ScrollBar::GetScrollParameters(int& min, int& max, int& page, int& step) const {
  min = mImpl ? mImpl->min : 0;
  max = mImpl ? mImpl->max : 0;
  page = mImpl ? mImpl->page : 0;
  step = mImpl ? mImpl->step : 0;
}

void ScrollBar::SetScrollBarPosition(int position, bool notify) {
  if (!mImpl)
    return;
  if (zebcore::trace::IsOn())
    mImpl->Trace("ScrollBar::SetScrollBarPosition", {{"position", position}, {"notify", notify}});
  const bool moved = position != mImpl->position;
  mImpl->position = position;
  mImpl->ShowRange();
  if (moved && notify)
    mImpl->Report();
}

int ScrollBar::GetScrollBarPosition() const {
  return mImpl ? mImpl->position : 0;
}

int ScrollBar::GetStep() const {
  return mImpl ? mImpl->step : 0;
}

zebcore::utility::ImmutableString ScrollBar::GetStationID() const {
  return mImpl ? mImpl->station : zebcore::utility::ImmutableString();
}

void ScrollBar::SetBounds(const RectT<int>& bounds) {
  if (!mImpl)
    return;
  if (zebcore::trace::IsOn())
    mImpl->Trace("ScrollBar::SetBounds", {{"bounds", TraceRect(bounds)}});
  mImpl->bounds = bounds;
  if (mImpl->widget)
    mImpl->widget->setGeometry(ToQt(bounds));
}

RectT<int> ScrollBar::GetBounds() const {
  return mImpl ? mImpl->bounds : RectT<int>();
}

void ScrollBar::Show(bool show) {
  if (!mImpl)
    return;
  if (zebcore::trace::IsOn())
    mImpl->Trace("ScrollBar::Show", {{"show", show}});
  mImpl->shown = show;
  if (mImpl->widget)
    mImpl->widget->setVisible(show);
}

bool ScrollBar::IsShown() const {
  return mImpl && mImpl->shown;
}

UString ScrollBar::GetAccessibleName() const {
  return mImpl && mImpl->widget ? toolkit::FromQt(mImpl->widget->accessibleName()) : UString();
}

} // namespace UIF
