#include <algorithm>

#include <QApplication>
#include <QFontMetricsF>
#include <QPushButton>
#include <QStyleOptionButton>
#include <QStylePainter>

#include "zebcore/Trace.h"
#include "zebui/ControlWidget.h"
#include "zebui/Controls.h"
#include "zebui/Toolkit.h"

namespace zebui::controls {

namespace {

constexpr float kPadding = 20.0F;
constexpr float kHeight = 18.0F;
constexpr int kMargin = 3;
constexpr int kSmallestFont = 10; // pixels

class ButtonWidget : public QPushButton {
 public:
  using QPushButton::QPushButton;

 protected:
  // A text that is too wide for the place that it is given is written smaller, and shortened only then.
  void paintEvent(QPaintEvent*) override {
    QStyleOptionButton option;
    initStyleOption(&option);
    QFont fitted = font();
    const int room = std::max(0, width() - 2 * kMargin);
    for (int size = QFontInfo(fitted).pixelSize();
         size > kSmallestFont && QFontMetricsF(fitted).horizontalAdvance(option.text) > room; fitted.setPixelSize(size))
      --size;
    option.fontMetrics = QFontMetrics(fitted);
    option.text = QFontMetricsF(fitted).elidedText(option.text, Qt::ElideRight, room);
    QStylePainter painter(this);
    painter.setFont(fitted);
    painter.drawControl(QStyle::CE_PushButton, option);
    if (toolkit::GetFocusWidget() == this)
      PaintFocusRing(painter, rect(), palette());
  }
  void keyPressEvent(QKeyEvent* event) override {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && !event->isAutoRepeat())
      click();
    else
      QPushButton::keyPressEvent(event);
  }
  bool event(QEvent* event) override {
    const toolkit::EventScope scope;
    return QPushButton::event(event);
  }
};

} // namespace

UI_TextButton::UI_TextButton() {
  Impl().makeWidget = [this](QWidget* parent) {
    auto* button = new ButtonWidget(parent);
    if (Impl().label)
      button->setText(toolkit::ToQt(Impl().label()));
    QObject::connect(button, &QPushButton::clicked, button, [this] { Changed(); });
    return button;
  };
  Impl().recommend = [this] {
    const QString text = toolkit::ToQt(GetText());
    if (!toolkit::HasApplication())
      return PointT<float>{kPadding + 7.0F * static_cast<float>(text.size()), kHeight};
    const QFontMetricsF metrics{QApplication::font()};
    return PointT<float>{static_cast<float>(metrics.horizontalAdvance(text)) + kPadding,
                         static_cast<float>(metrics.height()) + 4.0F};
  };
}

UI_TextButton::~UI_TextButton() {
  // No more than that: assistive technology wants to hear of the widget's end.
  if (auto* button = qobject_cast<QPushButton*>(Impl().widget.data()))
    QObject::disconnect(button, &QPushButton::clicked, nullptr, nullptr);
  Impl().makeWidget = nullptr;
}

void UI_TextButton::SetText(const UString& text) {
  toolkit::TraceNode("UI_TextButton::SetText", *this, "text", zebcore::ToUTF8(text));
  Impl().label = [text] { return text; };
  if (auto* button = qobject_cast<QPushButton*>(Impl().widget.data())) {
    button->setText(toolkit::ToQt(text));
    if (Impl().accessibleName.empty())
      button->setAccessibleName(toolkit::ToQt(text));
  }
}

UString UI_TextButton::GetText() const {
  return Impl().label ? Impl().label() : UString();
}

void UI_TextButton::Press() {
  const bool canPress = UI_IsEnabled() && !IsDisabled();
  if (!canPress)
    return;
  const toolkit::WidgetScope scope;
  Changed();
}

} // namespace zebui::controls
