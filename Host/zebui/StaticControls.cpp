#include "zebui/StaticControls.h"

#include <cmath>

#include <QPainter>

#include "zebcore/Trace.h"
#include "zebui/ControlWidget.h"

namespace zebui::controls {

namespace {

constexpr float kDividerWidth = 2.0F;
constexpr float kDividerHeight = 20.0F;

// One line; what the room doesn't hold ends in dots.
class TextLine : public QWidget, public Described {
 public:
  TextLine(QWidget* parent, const UString* text, const int* alignment)
      : QWidget(parent), mText(text), mAlignment(alignment) {}
  void Orphan() { mText = nullptr; }
  QString Text() const { return mText ? toolkit::ToQt(*mText) : QString(); }

  QAccessibleInterface* MakeAccessible() override { return new QAccessibleWidget(this, QAccessible::StaticText); }

 protected:
  void paintEvent(QPaintEvent*) override {
    if (!mText)
      return;
    QPainter painter(this);
    const auto group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    painter.setPen(palette().color(group, QPalette::WindowText));
    const Qt::Alignment side = *mAlignment == kControlAlignment_Right    ? Qt::AlignRight
                               : *mAlignment == kControlAlignment_Center ? Qt::AlignHCenter
                                                                         : Qt::AlignLeft;
    const QString shown = fontMetrics().elidedText(Text(), Qt::ElideRight, width());
    painter.drawText(rect(), static_cast<int>(side | Qt::AlignVCenter) | Qt::TextSingleLine, shown);
  }

 private:
  const UString* mText;
  const int* mAlignment;
};

class DividerLine : public QWidget, public Described {
 public:
  using QWidget::QWidget;
  QAccessibleInterface* MakeAccessible() override { return new QAccessibleWidget(this, QAccessible::Separator); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    QColor line = palette().color(QPalette::Active, QPalette::WindowText);
    line.setAlphaF(0.35F);
    const int middle = (width() - 1) / 2;
    painter.fillRect(QRectF(middle, 0, 1, height()), line);
  }
};

} // namespace

struct UI_StaticText::Text {
  UString value;
  int alignment = kControlAlignment_Left;
  QPointer<TextLine> line;
};

UI_StaticText::UI_StaticText() : mText(std::make_unique<Text>()) {
  Impl().wantsFocus = false;
  Impl().label = [this] { return mText->value; };
  Impl().makeWidget = [this](QWidget* parent) {
    return mText->line = new TextLine(parent, &mText->value, &mText->alignment);
  };
  Impl().recommend = [this] {
    return PointT<float>{TextWidth(toolkit::ToQt(mText->value), mText->line), TextHeight(mText->line)};
  };
}

UI_StaticText::~UI_StaticText() {
  if (mText->line)
    mText->line->Orphan();
  Impl().makeWidget = nullptr;
  Impl().label = nullptr;
  Impl().recommend = nullptr;
}

void UI_StaticText::SetValue(const UString& text) {
  toolkit::TraceNode("UI_StaticText::SetValue", *this, "text", zebcore::ToUTF8(text));
  mText->value = text;
  if (!mText->line)
    return;
  if (Impl().accessibleName.empty())
    mText->line->setAccessibleName(toolkit::ToQt(text));
  mText->line->update();
}

UString UI_StaticText::GetValue() const {
  return mText->value;
}

void UI_StaticText::SetAlignment(int alignment) {
  mText->alignment = alignment;
  if (mText->line)
    mText->line->update();
}

int UI_StaticText::GetAlignment() const {
  return mText->alignment;
}

UI_Divider::UI_Divider() {
  Impl().wantsFocus = false;
  Impl().makeWidget = [](QWidget* parent) { return new DividerLine(parent); };
  Impl().recommend = [] { return PointT<float>{kDividerWidth, kDividerHeight}; };
}

UI_Divider::~UI_Divider() = default;

} // namespace zebui::controls
