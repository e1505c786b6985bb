#pragma once

#include <memory>

#include <boost/function.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include "zebcore/Geometry.h"
#include "zebcore/Messaging.h"
#include "zebcore/UString.h"
#include "zebui/Keyboard.h"

namespace zebui::drawbot {
class Drawbot;
}

namespace zebui::ui {

using zebcore::UString;
using zebcore::geom::PointT;
using zebcore::geom::RectT;

// Why the focus changed.
using FocusChangeReason = int;
inline constexpr FocusChangeReason kFocusChange_None = 0;
inline constexpr FocusChangeReason kFocusChange_Advance = 1; // Tab
inline constexpr FocusChangeReason kFocusChange_GoBack = 2;  // Shift-Tab
inline constexpr FocusChangeReason kFocusChange_Program = 3;
inline constexpr FocusChangeReason kFocusChange_Pointer = 4; // a click
inline constexpr FocusChangeReason kFocusChange_Window = 5;  // the window was left or came back

struct NodeImpl;

// An element of the user interface inside a view. It comes on screen when it is put under a node that is. Children are
// held by their parent.
class UI_Node : public boost::intrusive_ref_counter<UI_Node> {
 public:
  UI_Node();
  virtual ~UI_Node();
  UI_Node(const UI_Node&) = delete;
  UI_Node& operator=(const UI_Node&) = delete;

  void ChildPushBack(const boost::intrusive_ptr<UI_Node>& child);
  // Off the screen; nothing if it is no child of this node.
  void ChildRemove(const boost::intrusive_ptr<UI_Node>& child);

  // In pixels of the parent.
  void UI_SetLocalRectF(const RectT<float>& rect);
  RectT<float> UI_GetLocalRectF() const;
  void UI_Show(bool show);
  bool UI_IsShown() const;
  void UI_SetEnabled(bool enabled);
  bool UI_IsEnabled() const;
  void UI_SetToolTip(const UString& text, int delayMilliseconds);
  UString UI_GetToolTip() const;
  // What assistive technology calls it; without one, its label or tool tip.
  void UI_SetAccessibleName(const UString& name);

  // orChild: true also counts the focus of a node below it.
  bool UI_HasKeyboardFocus(bool orChild) const;
  void UI_GainKeyboardFocus(FocusChangeReason reason);
  // The size that shows all of the content in the current font and language.
  PointT<float> UI_GetRecommendedSize(drawbot::Drawbot& drawbot) const;

  // A keyboard event before anyone sees it, for nodes that the node manager was told of; true swallows it.
  virtual bool UI_DoPreKeyboardEvent(UI_Node* focus, const KeyboardEvent& event);
  // A keyboard event of the focus; true if it was used.
  virtual bool UI_DoKeyboardEvent(UI_Node* focus, const KeyboardEvent& event);
  // The focus came (UI_HasKeyboardFocus) or went.
  virtual void UI_FocusChanged(FocusChangeReason reason);

  // For the toolkit's side of the library only.
  NodeImpl& Impl() const { return *mImpl; }

 private:
  std::unique_ptr<NodeImpl> mImpl;
};

struct UI_ControlChangedMessage : zebcore::messaging::MessageOf<UI_ControlChangedMessage> {
  static constexpr const char* kTypeName = "zebui::ui::UI_ControlChangedMessage";
};

struct UI_InteractiveControlChangedMessage : zebcore::messaging::MessageOf<UI_InteractiveControlChangedMessage> {
  static constexpr const char* kTypeName = "zebui::ui::UI_InteractiveControlChangedMessage";
  enum ChangeMessage : int { kChange_Started = 0, kChange_Changed = 1, kChange_Finished = 2, kChange_Cancelled = 3 };

  UI_InteractiveControlChangedMessage() = default;
  explicit UI_InteractiveControlChangedMessage(ChangeMessage message) : mChange(message) {}
  ChangeMessage GetChangeMessage() const { return mChange; }

 private:
  ChangeMessage mChange = kChange_Started;
};

// A node with a value that a person can change.
class UI_ControlView : public UI_Node {
 public:
  UI_ControlView();
  ~UI_ControlView() override;
  void SetDisabled(bool disabled);
  bool IsDisabled() const;
  void SetWantsKeyboardFocus(bool wants);
  // The control shows its unknown-state text until its next SetValue.
  virtual void SetValueUnknown();
  // One callback each; called after each change by a person, and after a SetValue whose notify flag is true.
  void NotifyWhenChanged(const boost::function<void(const UI_ControlChangedMessage&)>& callback);

 protected:
  void Changed();

 private:
  boost::function<void(const UI_ControlChangedMessage&)> mWhenChanged;
};

// A control whose changes have a beginning and an end. A change starts when a person enters the control and ends when
// they leave it; it reports started, changed any number of times, then finished or cancelled.
class UI_InteractiveControlView : public UI_ControlView {
 public:
  UI_InteractiveControlView();
  ~UI_InteractiveControlView() override;
  void
  NotifyWhenChangedInteractively(const boost::function<void(const UI_InteractiveControlChangedMessage&)>& callback);
  void StartInteractiveChange();
  // Both report nothing when no change is under way.
  void FinishInteractiveChange();
  void CancelInteractiveChange();
  bool IsInteractiveChangeUnderWay() const { return mUnderWay; }

 protected:
  void InteractivelyChanged();

 private:
  void Report(UI_InteractiveControlChangedMessage::ChangeMessage change);
  boost::function<void(const UI_InteractiveControlChangedMessage&)> mWhenChangedInteractively;
  bool mUnderWay = false;
};

} // namespace zebui::ui
