// The toolkit's side of UI_TextEdit, for zebui's own sources.
#pragma once

#include <functional>

#include <QTextEdit>

#include "zebui/LineEndText.h"
#include "zebui/Toolkit.h"

namespace zebui::controls {

class TextWidget : public QTextEdit {
 public:
  struct Owner {
    ui::UI_Node* node = nullptr;
    LineEndText* text = nullptr;
    bool severalLines = true;
    // After the text on screen changed and the kept text followed it.
    std::function<void()> edited;
    // Before a person changes it; the node may go in there.
    std::function<void()> editing;
  };

  TextWidget(const Owner& owner, Qt::Alignment alignment, QWidget* parent);

  // Shows the kept text; not an edit.
  void ShowKeptText();
  // Pixels beside the text for what else lies in the field.
  void SetRoomAtSides(int left, int right) { setViewportMargins(left, 0, right, 0); }
  void Select(std::size_t start, std::size_t end); // shown units
  // What the toolkit does with a key on its own; true if it used it.
  bool RunDefaultKey(const QKeyEvent& event);
  // True for a key that edits or moves here, and so is no shortcut.
  static bool IsEditingKey(const QKeyEvent& event, bool severalLines);
  void InsertShown(const QString& text);
  // What a person is about to change is begun. False if there is no node any more.
  bool BeginEdit();
  // The node goes before the widget does.
  void Orphan() { mOwner = {}; }

 protected:
  bool event(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  QMimeData* createMimeDataFromSelection() const override;
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;

 private:
  void PaintRim();
  void FollowEdit(int position, int removed, int added);

  Owner mOwner;
  bool mShowing = false;
};

} // namespace zebui::controls
