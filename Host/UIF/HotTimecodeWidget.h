// The toolkit's side of the hot timecode, for UIF's own sources.
#pragma once

#include <functional>

#include <QLineEdit>
#include <QWidget>

namespace UIF {

// Text that can be dragged, clicked and stepped. It knows nothing of time: what it shows and what is done with a
// gesture is its owner's.
class HotTimecodeWidget : public QWidget {
 public:
  struct Owner {
    std::function<QString()> text;
    std::function<void()> clicked;
    // Steps away from where the drag began, ten times as many with Shift held.
    std::function<void(int steps)> dragged;
    std::function<void()> dragEnded;
    std::function<void()> dragCancelled;
    std::function<void(int steps)> stepped;
  };
  static constexpr int kPixelsPerStep = 4;
  static constexpr int kShiftFactor = 10;

  HotTimecodeWidget(Owner owner, bool readOnly, QWidget* parent);
  QString GetText() const { return mOwner.text ? mOwner.text() : QString(); }
  bool IsReadOnly() const { return mReadOnly; }
  void Orphan();

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  enum class Drag { None, Pressed, Moving };
  // A copy, since what it leads to may take the owner's side away.
  template <class Call, class... Arguments> void Tell(const Call& call, Arguments... arguments) {
    const Call copy = call;
    if (copy)
      copy(arguments...);
  }

  Owner mOwner;
  bool mReadOnly;
  bool mHovered = false;
  Drag mDrag = Drag::None;
  int mPressedAt = 0;
  int mLastSteps = 0;
  int mWheelRest = 0;
};

// The editor that a click opens over the text.
class InlineEditor : public QLineEdit {
 public:
  struct Owner {
    std::function<void()> entered;
    std::function<void()> cancelled;
    std::function<void(bool backwards)> tabbed;
    std::function<void()> left;
    std::function<void(int steps)> stepped;
  };

  InlineEditor(Owner owner, const QString& text, QWidget* parent);
  // The sign that a text is no time.
  void Shake();
  void Orphan() { mOwner = {}; }

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  Owner mOwner;
};

// So that assistive technology reads it as a field with a value.
void InstallTimecodeAccessibility();

} // namespace UIF
