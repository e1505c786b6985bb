#include "UIF/ColorPickerControl.h"

#include <algorithm>

#include <QDropEvent>
#include <QMimeData>

#include "UIF/DecalPainter.h"
#include "UIF/Eyedropper.h"
#include "UIF/ViewWidget.h"
#include "zebcore/Localizer.h"
#include "zebui/PaintedButton.h"

namespace UIF {

namespace toolkit = zebui::toolkit;
using zebui::ui::KeyboardEvent;
using zebui::ui::UI_Node;

namespace {

constexpr int kToolTipDelay = 400; // milliseconds
constexpr int kPictureSide = 16;
unsigned sStations = 0;

QString NameOf(const Color& color) {
  return ToQt(color).name();
}

// Takes a colour that is dropped on it.
class HalfWidget : public toolkit::PaintedButton {
 public:
  using PaintedButton::PaintedButton;
  std::function<void(const Color&)> dropped;

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override {
    if (dropped && event->mimeData()->hasColor())
      event->acceptProposedAction();
  }
  void dropEvent(QDropEvent* event) override {
    const QColor color = event->mimeData()->colorData().value<QColor>();
    if (!dropped || !color.isValid())
      return;
    event->acceptProposedAction();
    dropped({static_cast<std::uint8_t>(color.red()), static_cast<std::uint8_t>(color.green()),
             static_cast<std::uint8_t>(color.blue())});
  }
};

} // namespace

// One of the two buttons that the control is made of. Has a name of its own for the trace's sake.
class ColorPickerHalf : public zebui::ui::UI_ControlView {
 public:
  using Paint = std::function<void(QPainter&, const QRectF&, const QPalette&, const toolkit::ButtonLook&)>;

  ColorPickerHalf(Paint paint, std::function<void()> pressed) : mPaint(std::move(paint)), mPressed(std::move(pressed)) {
    Impl().makeWidget = [this](QWidget* parent) {
      auto* button = new HalfWidget(
          *this,
          [this](QPainter& painter, const QRectF& rect, const toolkit::ButtonLook& look) {
            mPaint(painter, rect, Impl().widget->palette(), look);
          },
          parent);
      // A click leaves the focus in a caption's text.
      button->setFocusPolicy(Qt::TabFocus);
      button->dropped = mDropped;
      button->setAcceptDrops(mDropped != nullptr);
      button->setAccessibleDescription(mDescription);
      QObject::connect(button, &QPushButton::clicked, button, [this] { Press(); });
      return button;
    };
    Impl().widgetGoes = [this] {
      if (auto* button = dynamic_cast<HalfWidget*>(Impl().widget.data())) {
        button->dropped = nullptr;
        button->Orphan();
      }
    };
  }
  ~ColorPickerHalf() override { Impl().widgetGoes(); }

  void WhenDropped(std::function<void(const Color&)> dropped) { mDropped = std::move(dropped); }
  void Describe(const QString& description) {
    mDescription = description;
    if (!Impl().widget)
      return;
    Impl().widget->setAccessibleDescription(description);
    Impl().widget->update();
  }
  void Press() {
    const toolkit::KeepAlive alive(*this);
    const toolkit::WidgetScope scope;
    if (const auto pressed = mPressed)
      pressed();
  }
  // The control goes before its nodes do.
  void Forget() {
    mPressed = nullptr;
    mDropped = nullptr;
    Impl().widgetGoes();
  }

  bool UI_DoKeyboardEvent(UI_Node*, const KeyboardEvent& event) override {
    if (!toolkit::IsPressKey(event))
      return false;
    if (event.GetType() == zebui::ui::kKeyboardEvent_KeyDown)
      Press();
    return true;
  }

 private:
  Paint mPaint;
  std::function<void()> mPressed;
  std::function<void(const Color&)> mDropped;
  QString mDescription;
};

struct ColorPickerControl::Impl {
  unsigned id = 0;
  Color color;
  PointT<int> extent;
  RectT<int> bounds;
  bool active = false;
  zebcore::utility::ImmutableString station;
  boost::intrusive_ptr<UI_Node> node;
  boost::intrusive_ptr<ColorPickerHalf> swatch;
  boost::intrusive_ptr<ColorPickerHalf> dropper;
  std::unique_ptr<Eyedropper> eyedropper;

  ~Impl() {
    swatch->Forget();
    dropper->Forget();
    if (UI_Node* const parent = node->Impl().parent)
      parent->ChildRemove(node);
  }

  void ShowColor() { swatch->Describe(NameOf(color)); }

  // Swatch on the left, eyedropper on the right, half each.
  void LayOut() {
    const int middle = bounds.width / 2;
    const auto half = static_cast<float>(middle);
    const auto height = static_cast<float>(bounds.height);
    node->UI_SetLocalRectF(
        {static_cast<float>(bounds.x), static_cast<float>(bounds.y), static_cast<float>(bounds.width), height});
    swatch->UI_SetLocalRectF({0, 0, half, height});
    dropper->UI_SetLocalRectF({half, 0, static_cast<float>(bounds.width) - half, height});
  }

  void PaintSwatch(QPainter& painter, const QRectF& rect, const QPalette& palette,
                   const toolkit::ButtonLook& look) const {
    QRectF outer = rect;
    if (extent.x > 0 && extent.y > 0) {
      const QSizeF size(std::min<qreal>(extent.x, rect.width()), std::min<qreal>(extent.y, rect.height()));
      outer = QRectF(QPointF(0, std::floor((rect.height() - size.height()) / 2)), size);
    }
    const toolkit::ControlColors colors = toolkit::ColorsFor(palette, look);
    const bool strong = look.hovered || look.pressed;
    painter.save();
    painter.setOpacity(look.enabled ? 1.0 : 0.4);
    // The ring of the focus takes the place of the frame and wants a gap inside it.
    const qreal inset = look.focused ? 3 : 2;
    const QRectF inner = outer.adjusted(inset, inset, -inset, -inset);
    painter.fillRect(inner, ToQt(color));
    painter.restore();
    toolkit::PaintFrame(painter, inner.adjusted(-1, -1, 1, 1), palette.color(QPalette::Active, QPalette::Window), 1, 0);
    if (look.focused)
      return;
    toolkit::PaintFrame(painter, outer,
                        strong ? colors.accent : palette.color(QPalette::Disabled, QPalette::WindowText),
                        strong ? 2 : 1, 2);
  }

  void PaintDropper(QPainter& painter, const QRectF& rect, const QPalette& palette, toolkit::ButtonLook look) const {
    look.on = active;
    const toolkit::ControlColors colors = toolkit::ColorsFor(palette, look);
    if (colors.fill.isValid()) {
      painter.save();
      painter.setRenderHint(QPainter::Antialiasing);
      painter.setPen(Qt::NoPen);
      painter.setBrush(colors.fill);
      painter.drawRoundedRect(rect, 3.5, 3.5);
      painter.restore();
    }
    if (colors.border.isValid())
      toolkit::PaintFrame(painter, rect, colors.border, 1, 3);
    const qreal side = std::min<qreal>(kPictureSide, std::min(rect.width(), rect.height()));
    PaintEyedropper(painter, {rect.center().x() - side / 2, rect.center().y() - side / 2, side, side}, colors.ink);
  }

  // Messages last: a listener may take the control away.
  void ReportPicked() const {
    ColorPickerControlChangedMessage message;
    message.red = color.red;
    message.green = color.green;
    message.blue = color.blue;
    message.id = id;
    const auto where = station;
    zebcore::messaging::BroadcastMessage(where, message);
  }
};

ColorPickerControl::ColorPickerControl(Commander* super) : mSuper(super) {}

ColorPickerControl::~ColorPickerControl() {
  Destroy();
}

void ColorPickerControl::Create(ViewBase* parent, const RectT<int>& bounds, unsigned id, const PointT<int>& extent,
                                const UString& name) {
  if (mImpl || !parent || !parent->GetZEBNode())
    return;
  mImpl = std::make_unique<Impl>();
  Impl* const impl = mImpl.get();
  impl->id = id;
  impl->extent = extent;
  impl->bounds = bounds;
  impl->station = zebcore::utility::ImmutableString(("colorPicker:" + std::to_string(++sStations)).c_str());
  impl->node = new UI_Node;
  impl->swatch =
      new ColorPickerHalf([impl](QPainter& painter, const QRectF& rect, const QPalette& palette,
                                 const toolkit::ButtonLook& look) { impl->PaintSwatch(painter, rect, palette, look); },
                          [this] { ClickSwatch(); });
  impl->dropper =
      new ColorPickerHalf([impl](QPainter& painter, const QRectF& rect, const QPalette& palette,
                                 const toolkit::ButtonLook& look) { impl->PaintDropper(painter, rect, palette, look); },
                          [this] { StartEyedropper(); });
  impl->swatch->WhenDropped([this](const Color& color) { SetColor(color, true); });
  toolkit::SetTraceName(*impl->node, "colorPicker");
  const zebcore::config::Localizer& localizer = zebcore::config::Localizer::Get();
  impl->node->UI_SetAccessibleName(localizer.Localize("$$$/Vidra/UIF/ColorPicker/Swatch=Choose a color"));
  impl->swatch->UI_SetToolTip(localizer.Localize("$$$/Vidra/UIF/ColorPicker/Swatch=Choose a color"), kToolTipDelay);
  impl->dropper->UI_SetToolTip(localizer.Localize("$$$/Vidra/UIF/ColorPicker/Eyedropper=Pick a color from the screen"),
                               kToolTipDelay);
  if (!name.empty())
    impl->swatch->UI_SetAccessibleName(name);
  impl->LayOut();
  impl->ShowColor();
  impl->node->UI_Show(false);
  impl->node->ChildPushBack(impl->swatch);
  impl->node->ChildPushBack(impl->dropper);
  parent->GetZEBNode()->ChildPushBack(impl->node);
}

void ColorPickerControl::Destroy() {
  const std::unique_ptr<Impl> impl = std::move(mImpl);
}

zebcore::utility::ImmutableString ColorPickerControl::GetStationID() const {
  return mImpl ? mImpl->station : zebcore::utility::ImmutableString();
}

Color ColorPickerControl::GetColor() const {
  return mImpl ? mImpl->color : Color();
}

void ColorPickerControl::SetColor(const Color& color, bool notify) {
  if (!mImpl)
    return;
  // What a person picked is no call of the panel's.
  if (!notify)
    toolkit::TraceValue("ColorPickerControl::SetColor", *mImpl->node, {color.red, color.green, color.blue});
  const toolkit::WidgetScope scope;
  mImpl->color = color;
  mImpl->ShowColor();
  if (notify)
    mImpl->ReportPicked();
}

void ColorPickerControl::SetBounds(const RectT<int>& bounds) {
  if (!mImpl)
    return;
  mImpl->bounds = bounds;
  mImpl->LayOut();
}

RectT<int> ColorPickerControl::GetBounds() const {
  return mImpl ? mImpl->bounds : RectT<int>();
}

void ColorPickerControl::Show(bool show) {
  if (mImpl)
    mImpl->node->UI_Show(show);
}

bool ColorPickerControl::IsShown() const {
  return mImpl && mImpl->node->UI_IsShown();
}

void ColorPickerControl::Enable(bool enable) {
  if (mImpl)
    mImpl->node->UI_SetEnabled(enable);
}

bool ColorPickerControl::IsEnabled() const {
  return mImpl && mImpl->node->UI_IsEnabled();
}

bool ColorPickerControl::HasFocus() const {
  return mImpl && mImpl->node->UI_HasKeyboardFocus(true);
}

void ColorPickerControl::ClickSwatch() {
  if (!IsEnabled())
    return;
  const toolkit::WidgetScope scope;
  const auto where = mImpl->station;
  zebcore::messaging::BroadcastMessage(where, ColorPickerSwatchClickedMessage());
}

void ColorPickerControl::StartEyedropper() {
  if (!IsEnabled() || mImpl->active)
    return;
  const toolkit::WidgetScope scope;
  const auto where = mImpl->station;
  mImpl->active = true;
  mImpl->dropper->Describe({});
  zebcore::messaging::BroadcastMessage(where, ColorPickerSwatchStartEyedropperModeMessage());
  if (mImpl && mImpl->active && toolkit::WidgetOf(mImpl->node.get()))
    mImpl->eyedropper = std::make_unique<Eyedropper>(
        [this](std::optional<Color> picked) { EndEyedropper(picked ? &*picked : nullptr); });
}

void ColorPickerControl::EndEyedropper(const Color* picked) {
  if (!mImpl || !mImpl->active)
    return;
  const toolkit::WidgetScope scope;
  const auto where = mImpl->station;
  mImpl->eyedropper.reset();
  mImpl->active = false;
  mImpl->dropper->Describe({});
  if (picked)
    SetColor(*picked, true);
  zebcore::messaging::BroadcastMessage(where, ColorPickerSwatchEndEyedropperModeMessage());
}

bool ColorPickerControl::IsEyedropperActive() const {
  return mImpl && mImpl->active;
}

UI_Node* ColorPickerControl::GetNode() const {
  return mImpl ? mImpl->node.get() : nullptr;
}

} // namespace UIF
