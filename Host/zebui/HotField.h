// Text that can be scrubbed, stepped, and clicked and typed over: what the hot number and the hot timecode have in
// common. For the sources of zebui and UIF only.
#pragma once

#include <functional>

#include <QLineEdit>
#include <QWidget>

#include "zebui/ControlWidget.h"

namespace zebui::controls {

// What a key means to such a field while its editor is closed.
struct HotKey {
  enum class Does { Nothing, Step, Page, ToMinimum, ToMaximum, Open, Type };
  Does does = Does::Nothing;
  int steps = 0; // Step and Page: how many, with their sign; ten times as many with Shift
  QString typed; // Type: what the editor begins with
};
HotKey ReadHotKey(const QKeyEvent& event);
// Notches of the wheel, ten times as many with Shift; what is short of a notch is kept in rest.
int ReadWheelSteps(const QWheelEvent& event, int& rest);

// It knows nothing of values: what it shows and what is done with a gesture is its owner's.
class HotFieldWidget : public QWidget, public Described {
 public:
  struct Owner {
    // The node it is the widget of; null for a field that is none's, whose keys only pass the keyboard filters.
    ui::UI_Node* node = nullptr;
    std::function<QString()> text;
    std::function<void()> clicked;
    // True if the key was of use.
    std::function<bool(const HotKey&)> key;
    // Steps away from where the drag began: ten times as many while Shift is held, a tenth with Control.
    std::function<void(int steps)> dragged;
    std::function<void()> dragEnded;
    std::function<void()> dragCancelled;
    std::function<void(int steps)> stepped;
    // For assistive technology, of a field whose value is a number.
    std::function<double()> number;
    std::function<void(double)> setNumber;
    std::function<std::pair<double, double>()> bounds;
    std::function<double()> increment;

    int pixelsPerStep = 4;
    int margin = 4; // left of the text
  };
  static constexpr int kDragThreshold = 4; // pixels; a press that moves less is a click
  static constexpr int kShiftFactor = 10;

  HotFieldWidget(Owner owner, bool readOnly, QWidget* parent);
  QString GetText() const { return mOwner.text ? mOwner.text() : QString(); }
  bool IsReadOnly() const { return mReadOnly; }
  const Owner& GetOwner() const { return mOwner; }
  void Orphan();
  // True if the key, a key going down, was used.
  bool RunKey(const QKeyEvent& event);
  // True for a key that is this field's and so no shortcut.
  bool WantsKey(const QKeyEvent& event) const;
  // The sign that a gesture cannot be done.
  void Shake();

  QAccessibleInterface* MakeAccessible() override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  enum class Drag { None, Pressed, Moving };
  // A copy, since what it leads to may take the owner's side away.
  template <class Call, class... Arguments> void Tell(const Call& call, Arguments... arguments) {
    const Call copy = call;
    if (copy)
      copy(arguments...);
  }
  void FollowDrag(const QMouseEvent& event);
  void LetGo();

  Owner mOwner;
  bool mReadOnly;
  bool mHovered = false;
  Drag mDrag = Drag::None;
  int mPressedAt = 0;
  int mDraggedTo = 0;
  double mTravel = 0.0; // pixels, weighed by the modifiers held meanwhile
  int mLastSteps = 0;
  int mWheelRest = 0;
  double mSwing = 0.0; // pixels aside while it shakes
};

// The editor that a click opens over the text.
class InlineEditor : public QLineEdit {
 public:
  struct Owner {
    ui::UI_Node* node = nullptr; // as the field's
    std::function<void()> entered;
    std::function<void()> cancelled;
    std::function<void(bool backwards)> tabbed;
    std::function<void()> left;
    std::function<void(int steps)> stepped;
    int margin = 0; // left of the text, so that it stays where it is as the editor opens
  };

  // All of the text selected, but what was typed already stands with the caret behind it.
  InlineEditor(Owner owner, const QString& text, const QString& typed, QWidget* parent);
  // The sign that a text is no value.
  void Shake();
  void Orphan() { mOwner = {}; }
  // True if the key, a key going down, was used.
  bool RunKey(const QKeyEvent& event);
  // True for a key that edits or moves here, and so is no shortcut.
  static bool WantsKey(const QKeyEvent& event);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  bool RunTab(const QKeyEvent& event);

  Owner mOwner;
  int mWheelRest = 0;
};

// The text in its row, smaller where the room is too small for it, with dots where that is not enough.
void DrawFittingText(QPainter& painter, const QRect& room, const QFont& font, const QString& text);

} // namespace zebui::controls
