#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "UIF/CommandHandler.h"
#include "zebcore/Geometry.h"
#include "zebcore/UString.h"
#include "zebui/NodeManager.h"

namespace UIF {

class DC;
struct ViewImpl;

using zebcore::geom::PointT;
using zebcore::geom::RectT;

// Modifier keys as a byte of flags: 0x02 Shift extends, 0x04 Control toggles.
class KeyModifiers {
 public:
  constexpr KeyModifiers() = default;
  constexpr explicit KeyModifiers(std::uint8_t flags) : mFlags(flags) {}
  // Those held down now.
  static KeyModifiers GetCurrent();
  // What GetCurrent answers from now on; for whoever drives the program.
  static void SetCurrent(KeyModifiers modifiers);
  // The same for a while: answers what held before, nothing for the keyboard itself, for giving it back.
  static std::optional<KeyModifiers> ReplaceCurrent(std::optional<KeyModifiers> modifiers);
  constexpr bool Has(std::uint8_t flag) const { return (mFlags & flag) != 0; }
  constexpr std::uint8_t GetFlags() const { return mFlags; }

  static constexpr std::uint8_t kExtend = 0x02;
  static constexpr std::uint8_t kToggle = 0x04;

 private:
  std::uint8_t mFlags = 0;
};

// A rectangle on screen with hooks for painting and events. A view is inert until it is created under a parent, and
// again after Destroy. Hooks end in Self; what they throw is reported at the host's boundary.
class ViewBase : public Commander {
 public:
  explicit ViewBase(Commander* super);
  ~ViewBase() override;

  virtual void Destroy();
  virtual void SetBounds(const RectT<int>& bounds);
  virtual RectT<int> GetBounds() const;
  // Own coordinates: (0, 0, width, height).
  virtual RectT<int> ClientRect() const;
  virtual void Show(bool show);
  virtual void Hide();
  virtual bool IsShown() const;
  virtual ViewBase* GetParent() const;
  // The view that answers for layout: a sub view asks its parent. Null by default.
  virtual ViewBase* GetLayoutParent() const;
  // The node under which node controls of this view are put.
  virtual zebui::ui::UI_Node* GetZEBNode() const;
  virtual void Enable(bool enable);
  virtual void Disable();
  bool IsEnabled() const;
  virtual void SetToolTipText(const UString& text);

  bool IsCreated() const;
  // Painting happens later, once for any number of calls; Redraw paints at once.
  void Invalidate();
  void Redraw();
  // The keyboard focus to the view itself.
  void SetFocus();
  bool HasFocus() const;
  void EnableDoubleBuffering(bool enable, bool opaque = false);
  void WantsDragAndDropEvents(bool wants);
  // Repeats until removed; calls TimerNotifySelf.
  void SetTimer(std::uint32_t id, int periodMilliseconds);
  void RemoveTimer(std::uint32_t id);

  // For the toolkit's side of the library only.
  ViewImpl& Impl() const { return *mImpl; }

  // Runs the hook behind each event as the toolkit would, for whoever drives the program.
  void DispatchLeftButtonDown(const PointT<int>& point, const KeyModifiers& modifiers);
  void DispatchLeftButtonUp(const PointT<int>& point, const KeyModifiers& modifiers);
  void DispatchLeftButtonMultiClick(const PointT<int>& point, const KeyModifiers& modifiers, int clicks);
  void DispatchRightButtonDown(const PointT<int>& point, const KeyModifiers& modifiers);
  void DispatchRightButtonUp(const PointT<int>& point, const KeyModifiers& modifiers);
  // Bubbles to the parent while a view answers false.
  bool DispatchMouseWheel(const PointT<int>& point, const KeyModifiers& modifiers, int delta);
  bool DispatchMousePan(const PointT<int>& point, const PointT<int>& delta);
  // key codes: see KeyDownSelf.
  bool DispatchKeyDown(wchar_t character, short keyCode, bool repeat);
  bool DispatchKeyUp(wchar_t character, short keyCode);
  bool DispatchCharacterInput(wchar_t character);
  void DispatchMouseMove(const PointT<int>& point, const KeyModifiers& modifiers);
  void DispatchMouseLeave();
  void DispatchPaint(DC& dc);
  bool DispatchTimer(std::uint32_t id);
  void DispatchFocus(bool gained);

 protected:
  virtual void CreateSelf(const RectT<int>& bounds);
  virtual void DestroySelf();
  virtual void SetBoundsSelf(const RectT<int>& bounds);
  virtual void SetFocusSelf();
  virtual void KillFocusSelf();
  virtual void PaintSelf(DC& dc);
  virtual void LeftButtonDownSelf(const PointT<int>& point, const KeyModifiers& modifiers);
  virtual void LeftButtonUpSelf(const PointT<int>& point, const KeyModifiers& modifiers);
  virtual void LeftButtonMultiClickSelf(const PointT<int>& point, const KeyModifiers& modifiers, int clicks);
  virtual void RightButtonDownSelf(const PointT<int>& point, const KeyModifiers& modifiers);
  virtual void RightButtonUpSelf(const PointT<int>& point, const KeyModifiers& modifiers);
  virtual void MouseMoveSelf(const PointT<int>& point, const KeyModifiers& modifiers);
  virtual void MouseLeaveSelf();
  // delta: notches, positive away from the user.
  virtual bool MouseWheelSelf(const PointT<int>& point, const KeyModifiers& modifiers, int delta);
  virtual bool MousePanSelf(const PointT<int>& point, const PointT<int>& delta);
  // Special keys come as negative Windows virtual key codes (Delete -46, Down -40, Up -38, Home -36, End -35, Page Down
  // -34, Page Up -33), others as their code, Backspace as 8. True if the key was used; else it goes to the parent.
  virtual bool KeyDownSelf(wchar_t character, short keyCode, bool repeat);
  virtual bool KeyUpSelf(wchar_t character, short keyCode);
  virtual bool CharacterInputSelf(wchar_t character);
  virtual bool TimerNotifySelf(std::uint32_t id);
  virtual bool WantsFocusSelf() const;
  virtual void VisibilityChangedSelf(bool shown);

 private:
  std::unique_ptr<ViewImpl> mImpl;
};

// A view inside another.
class SubView : public ViewBase {
 public:
  explicit SubView(Commander* super);
  ~SubView() override;
  // Under the parent, hidden until shown; runs CreateSelf.
  void Create(ViewBase* parent, const RectT<int>& bounds);
};

} // namespace UIF
