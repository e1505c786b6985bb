#include "UIF/PictureButton.h"

#include "UIF/DecalPainter.h"
#include "UIF/ViewWidget.h"
#include "zebcore/Boundary.h"
#include "zebui/PaintedButton.h"

namespace UIF {

namespace toolkit = zebui::toolkit;
using zebui::ui::KeyboardEvent;
using zebui::ui::UI_Node;

namespace {

constexpr int kToolTipDelay = 400; // milliseconds, as for the panel's other controls
constexpr int kPictureSide = 16;

// To the commander, and up from it until one obeys.
void GiveCommand(Commander* commander, int id) {
  const Command command(id);
  bool obeyed = false;
  while (commander && !obeyed) {
    Commander* const super = commander->GetSuperCommander();
    zebcore::boundary::Guard("CommandHandler::ObeyCommand", [&] { obeyed = commander->ObeyCommand(command); });
    commander = super;
  }
}

// A button whose press does one thing leaves nothing on; all others show a state.
bool ShowsState(DecalID decal) {
  return decal != kCaptionMusicNoteDecal;
}

} // namespace

// Has a name of its own for the trace's sake.
class PictureButtonNode : public zebui::ui::UI_ControlView {
 public:
  PictureButtonNode(Commander* super, int command, DecalID decal) : mSuper(super), mCommand(command), mDecal(decal) {
    toolkit::SetTraceName(*this, "command " + std::to_string(command));
    Impl().makeWidget = [this](QWidget* parent) { return MakeWidget(parent); };
    Impl().widgetGoes = [this] {
      if (toolkit::PaintedButton* button = Button())
        button->Orphan();
    };
  }
  ~PictureButtonNode() override { Impl().widgetGoes(); }

  void Press() {
    if (!UI_IsEnabled())
      return;
    const toolkit::KeepAlive alive(*this);
    const toolkit::WidgetScope scope;
    GiveCommand(mSuper, mCommand);
  }
  void SetOn(bool on) {
    mOn = on;
    if (toolkit::PaintedButton* button = Button())
      ShowOn(*button);
  }
  void SetTakesFocusOnPress(bool takes) {
    mTakesFocusOnPress = takes;
    if (toolkit::PaintedButton* button = Button())
      button->setFocusPolicy(Policy());
  }
  bool IsOn() const { return mOn; }
  int GetCommand() const { return mCommand; }

  bool UI_DoKeyboardEvent(UI_Node*, const KeyboardEvent& event) override {
    if (!toolkit::IsPressKey(event))
      return false;
    if (event.GetType() == zebui::ui::kKeyboardEvent_KeyDown)
      Press();
    return true;
  }

 private:
  toolkit::PaintedButton* Button() const { return dynamic_cast<toolkit::PaintedButton*>(Impl().widget.data()); }
  Qt::FocusPolicy Policy() const { return mTakesFocusOnPress ? Qt::StrongFocus : Qt::TabFocus; }

  QWidget* MakeWidget(QWidget* parent) {
    auto* button = new toolkit::PaintedButton(
        *this,
        [this](QPainter& painter, const QRectF& rect, const toolkit::ButtonLook& look) { Paint(painter, rect, look); },
        parent);
    button->setFocusPolicy(Policy());
    ShowOn(*button);
    QObject::connect(button, &QPushButton::clicked, button, [this] { Press(); });
    return button;
  }

  void ShowOn(toolkit::PaintedButton& button) const {
    button.setCheckable(mOn || ShowsState(mDecal));
    button.setChecked(mOn);
    button.update();
  }

  void Paint(QPainter& painter, const QRectF& rect, const toolkit::ButtonLook& look) const {
    const toolkit::ControlColors colors = toolkit::ColorsFor(Impl().widget->palette(), look);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (colors.fill.isValid()) {
      painter.setPen(Qt::NoPen);
      painter.setBrush(colors.fill);
      painter.drawRoundedRect(rect, 3.5, 3.5);
    }
    painter.restore();
    if (colors.border.isValid())
      toolkit::PaintFrame(painter, rect, colors.border, 1, 3);
    const qreal side = std::min<qreal>(kPictureSide, std::min(rect.width(), rect.height()));
    const QRectF picture(rect.center().x() - side / 2, rect.center().y() - side / 2, side, side);
    PaintDecal(painter, mDecal, picture, colors.ink, colors.accent);
  }

  Commander* mSuper;
  int mCommand;
  DecalID mDecal;
  bool mOn = false;
  bool mTakesFocusOnPress = true;
};

struct PictureButton::Impl {
  boost::intrusive_ptr<PictureButtonNode> node;
  RectT<int> bounds;
};

PictureButton::PictureButton(Commander* super) : mSuper(super) {}

PictureButton::~PictureButton() {
  Destroy();
}

void PictureButton::Create(ViewBase* parent, const RectT<int>& bounds, int command, const Bitmap& picture) {
  if (mImpl || !parent || !parent->GetZEBNode())
    return;
  mImpl = std::make_unique<Impl>();
  mImpl->node = new PictureButtonNode(mSuper, command, picture.GetDecal());
  SetBounds(bounds);
  Show(false);
  parent->GetZEBNode()->ChildPushBack(mImpl->node);
}

void PictureButton::Destroy() {
  if (!mImpl)
    return;
  const boost::intrusive_ptr<PictureButtonNode> node = mImpl->node;
  mImpl.reset();
  if (UI_Node* const parent = node->Impl().parent)
    parent->ChildRemove(node);
}

void PictureButton::SetTakesFocusOnPress(bool takes) {
  if (mImpl)
    mImpl->node->SetTakesFocusOnPress(takes);
}

void PictureButton::SetToolTipText(const UString& text) {
  if (mImpl)
    mImpl->node->UI_SetToolTip(text, kToolTipDelay);
}

UString PictureButton::GetToolTipText() const {
  return mImpl ? mImpl->node->UI_GetToolTip() : UString();
}

void PictureButton::SetBounds(const RectT<int>& bounds) {
  if (!mImpl)
    return;
  mImpl->bounds = bounds;
  mImpl->node->UI_SetLocalRectF({static_cast<float>(bounds.x), static_cast<float>(bounds.y),
                                 static_cast<float>(bounds.width), static_cast<float>(bounds.height)});
}

RectT<int> PictureButton::GetBounds() const {
  return mImpl ? mImpl->bounds : RectT<int>();
}

void PictureButton::Show(bool show) {
  if (mImpl)
    mImpl->node->UI_Show(show);
}

bool PictureButton::IsShown() const {
  return mImpl && mImpl->node->UI_IsShown();
}

void PictureButton::Enable(bool enable) {
  if (mImpl)
    mImpl->node->UI_SetEnabled(enable);
}

bool PictureButton::IsEnabled() const {
  return mImpl && mImpl->node->UI_IsEnabled();
}

void PictureButton::SetValue(bool on) {
  if (!mImpl)
    return;
  toolkit::TraceValue("PictureButton::SetValue", *mImpl->node, on);
  mImpl->node->SetOn(on);
}

bool PictureButton::GetValue() const {
  return mImpl && mImpl->node->IsOn();
}

int PictureButton::GetCommandID() const {
  return mImpl ? mImpl->node->GetCommand() : 0;
}

bool PictureButton::HasFocus() const {
  return mImpl && mImpl->node->UI_HasKeyboardFocus(true);
}

void PictureButton::Press() {
  if (mImpl)
    mImpl->node->Press();
}

UI_Node* PictureButton::GetNode() const {
  return mImpl ? mImpl->node.get() : nullptr;
}

} // namespace UIF
