#include "zebui/SearchBox.h"

#include <algorithm>

#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QTextDocument>

#include "zebcore/Localizer.h"
#include "zebui/ControlWidget.h"
#include "zebui/TextWidget.h"

namespace zebui::controls {

namespace {

constexpr int kGlassWidth = 18;
constexpr int kClearWidth = 18;
constexpr int kRim = 2;
constexpr int kTipMilliseconds = 400;
constexpr int kBesideText = 4; // what the text itself keeps free
constexpr std::size_t kMaxRecent = 10;

QString Localized(const char* key) {
  return toolkit::ToQt(zebcore::config::Localizer::Get().Localize(key));
}

// The glass, and the cross that empties the box; drawn, so that they are sharp at every scale.
class Glyph : public QWidget, public Described {
 public:
  enum class Shape { Glass, Cross };
  Glyph(Shape shape, bool canPress, std::function<void()> pressed, QWidget* parent)
      : QWidget(parent), mShape(shape), mCanPress(canPress), mPressed(std::move(pressed)) {
    setCursor(Qt::ArrowCursor);
    setAttribute(Qt::WA_Hover, canPress);
  }
  void Press() const {
    const auto pressed = mPressed;
    if (pressed)
      pressed();
  }

  QAccessibleInterface* MakeAccessible() override;

 protected:
  bool event(QEvent* event) override {
    const toolkit::EventScope scope;
    return QWidget::event(event);
  }

  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool lit = mCanPress && underMouse();
    const auto group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    const QColor ink = palette().color(group, lit ? QPalette::Text : QPalette::PlaceholderText);
    painter.setPen(QPen(ink, 1.5, Qt::SolidLine, Qt::RoundCap));
    const QPointF middle = QRectF(rect()).center();
    if (mShape == Shape::Cross) {
      painter.drawLine(middle + QPointF(-3.5, -3.5), middle + QPointF(3.5, 3.5));
      painter.drawLine(middle + QPointF(-3.5, 3.5), middle + QPointF(3.5, -3.5));
      return;
    }
    painter.drawEllipse(middle + QPointF(-1.0, -1.0), 4.0, 4.0);
    painter.drawLine(middle + QPointF(2.0, 2.0), middle + QPointF(5.0, 5.0));
  }

  void mousePressEvent(QMouseEvent* event) override { event->accept(); }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (mCanPress && event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
      Press();
  }

 private:
  Shape mShape;
  bool mCanPress;
  std::function<void()> mPressed;

  friend class AccessibleGlyph;
};

class AccessibleGlyph : public QAccessibleWidget {
 public:
  explicit AccessibleGlyph(Glyph* glyph)
      : QAccessibleWidget(glyph, glyph->mCanPress ? QAccessible::Button : QAccessible::Graphic) {}
  QStringList actionNames() const override { return QStringList{pressAction()}; }
  void doAction(const QString& name) override {
    if (name == pressAction())
      static_cast<Glyph*>(widget())->Press();
  }
};

QAccessibleInterface* Glyph::MakeAccessible() {
  return new AccessibleGlyph(this);
}

// The line around the box, which says too whether it has the focus.
class Rim : public QWidget {
 public:
  explicit Rim(QWidget* box) : QWidget(box) { setAttribute(Qt::WA_TransparentForMouseEvents); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    if (toolkit::GetFocusWidget() == parentWidget()) {
      PaintFocusRing(painter, rect(), palette());
      return;
    }
    const auto group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    painter.setPen(palette().color(group, QPalette::PlaceholderText));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }
};

// What lies in the box beside the text. It follows the box's size and its tool tip, which names what is looked for.
class Furniture : public QObject {
 public:
  Furniture(TextWidget* box, bool glassOpens, std::function<void()> cleared, std::function<void()> opened)
      : QObject(box), mBox(box), mGlass(new Glyph(Glyph::Shape::Glass, glassOpens, std::move(opened), box)),
        mClear(new Glyph(Glyph::Shape::Cross, true, std::move(cleared), box)), mRim(new Rim(box)) {
    mBox->setFrameShape(QFrame::NoFrame);
    mBox->setBackgroundRole(QPalette::Base);
    mBox->setAutoFillBackground(true);
    mClear->setAccessibleName(Localized("$$$/Vidra/UI/ClearSearch=Clear search"));
    mClear->setToolTip(mClear->accessibleName());
    mClear->setProperty("toolTipDelay", kTipMilliseconds);
    mGlass->setAccessibleName(Localized("$$$/Vidra/UI/RecentSearches=Recent searches"));
    mBox->installEventFilter(this);
    QObject::connect(mBox->document(), &QTextDocument::contentsChanged, this, [this] { ShowClear(); });
    ShowClear();
    Place();
  }
  QPoint UnderGlass() const { return mGlass->mapToGlobal(QPoint(0, mGlass->height())); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Resize || event->type() == QEvent::FontChange)
      Place();
    else if (event->type() == QEvent::ToolTipChange)
      ShowPurpose();
    else if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
      mRim->update();
    return QObject::eventFilter(watched, event);
  }

 private:
  void ShowClear() {
    const bool isEmpty = mBox->document()->isEmpty();
    mClear->setVisible(!isEmpty);
    mBox->SetRoomAtSides(kGlassWidth, isEmpty ? kRim : kClearWidth);
  }
  // On one line, cut off with dots.
  void ShowPurpose() {
    const int room = mBox->width() - kGlassWidth - kRim - kBesideText;
    mBox->setPlaceholderText(mBox->fontMetrics().elidedText(mBox->toolTip(), Qt::ElideRight, room));
  }
  void Place() {
    mRim->setGeometry(mBox->rect());
    mGlass->setGeometry(1, 0, kGlassWidth, mBox->height());
    mClear->setGeometry(mBox->width() - kClearWidth - 1, 0, kClearWidth, mBox->height());
    ShowPurpose();
  }

  TextWidget* mBox;
  Glyph* mGlass;
  Glyph* mClear;
  Rim* mRim;
};

} // namespace

struct UI_SearchBox::Search {
  bool hasMenu = false;
  bool onEnter = false;
  std::vector<UString> recent;
  QPointer<Furniture> furniture;

  void Remember(const UString& text) {
    if (text.empty())
      return;
    std::erase(recent, text);
    recent.insert(recent.begin(), text);
    if (recent.size() > kMaxRecent)
      recent.pop_back();
  }
};

UI_SearchBox::UI_SearchBox(bool hasMenu, bool searchOnEnter)
    : UI_TextEdit(0, 0), mSearch(std::make_unique<Search>(Search{hasMenu, searchOnEnter, {}, {}})) {
  Impl().makeWidget = [this, makeText = Impl().makeWidget](QWidget* parent) {
    auto* box = static_cast<TextWidget*>(makeText(parent));
    mSearch->furniture = new Furniture(
        box, mSearch->hasMenu, [this] { Clear(); }, [this] { OpenRecent(); });
    return box;
  };
}

UI_SearchBox::~UI_SearchBox() {
  Impl().makeWidget = nullptr;
}

void UI_SearchBox::Clear() {
  const bool canClear = !GetValue().empty() && UI_IsEnabled() && !IsDisabled();
  if (!canClear)
    return;
  const toolkit::KeepAlive alive(*this);
  const toolkit::EventScope scope;
  SetValue({}, false);
  InteractivelyChanged();
  Changed();
  if (!UI_HasKeyboardFocus(false))
    FinishInteractiveChange();
}

// Nobody is to look for the text that is about to go.
void UI_SearchBox::BeginEdit() {}

void UI_SearchBox::ReportEdit() {
  if (!mSearch->onEnter)
    InteractivelyChanged();
}

// What is looked for from now on.
void UI_SearchBox::Commit() {
  mSearch->Remember(GetValue());
  if (mSearch->onEnter)
    InteractivelyChanged();
  Changed();
}

void UI_SearchBox::OpenRecent() {
  if (mSearch->recent.empty() || !mSearch->furniture)
    return;
  const toolkit::KeepAlive alive(*this);
  const toolkit::EventScope scope;
  QMenu menu;
  for (const UString& text : mSearch->recent)
    menu.addAction(toolkit::ToQt(text).replace(QLatin1Char('&'), QLatin1String("&&")))->setData(toolkit::ToQt(text));
  const QAction* const chosen = menu.exec(mSearch->furniture->UnderGlass());
  if (!chosen)
    return;
  SetValue(toolkit::FromQt(chosen->data().toString()), true);
  Commit();
}

bool UI_SearchBox::UI_DoKeyboardEvent(UI_Node* focus, const ui::KeyboardEvent& event) {
  const bool isEscape = event.CompareShortcut(ui::kKeyboardCode_Escape, ui::kModKey_None) && !GetValue().empty();
  const bool isEnter = event.CompareShortcut(ui::kKeyboardCode_Enter, ui::kModKey_None);
  if (event.GetType() == ui::kKeyboardEvent_Shortcut && (isEscape || isEnter))
    return true;
  if (event.GetType() == ui::kKeyboardEvent_KeyDown && isEscape) {
    Clear();
    return true;
  }
  if (event.GetType() == ui::kKeyboardEvent_KeyDown && isEnter) {
    const toolkit::KeepAlive alive(*this);
    Commit();
    FinishInteractiveChange();
    return true;
  }
  return UI_TextEdit::UI_DoKeyboardEvent(focus, event);
}

void UI_SearchBox::UI_FocusChanged(ui::FocusChangeReason reason) {
  if (!UI_HasKeyboardFocus(false))
    mSearch->Remember(GetValue());
  UI_TextEdit::UI_FocusChanged(reason);
}

} // namespace zebui::controls
