// Mouse, keyboard, focus and clipboard, as a person uses them.

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QKeySequence>

#include "Drive/CaptionsInspector.h"
#include "Drive/ControlJson.h"
#include "Drive/Driver.h"
#include "Drive/PanelInput.h"
#include "Drive/PanelJson.h"
#include "UIF/ColorPickerControl.h"
#include "UIF/CommandRouter.h"
#include "UIF/HotTimecodeControl.h"
#include "UIF/PictureButton.h"
#include "UIF/ScrollBar.h"
#include "UIF/ShortcutManager.h"
#include "UIF/TabView.h"
#include "zebui/Controls.h"
#include "zebui/Driver.h"
#include "zebui/NodeManager.h"
#include "zebui/Toolkit.h"

namespace Drive {

namespace {

using Captivo::CaptionsInspector;
using UIF::KeyModifiers;
using zebui::ui::KeyboardCode;
using zebui::ui::UI_NodeManager;

UIF::ViewBase& Pane(Driver& driver) {
  driver.CreatedView();
  return *CaptionsInspector(driver.Handler()).GetPane();
}

UIF::ViewBase& ShownPane(Driver& driver) {
  UIF::ViewBase& pane = Pane(driver);
  if (!pane.IsShown())
    throw RequestError("the pane is hidden");
  return pane;
}

Json UseMouse(Driver& driver, const Fields& fields) {
  const UIF::PointT<int> point{fields.Int("x"), fields.Int("y")};
  const std::string button = fields.Text("button", "left");
  if (button != "left" && button != "right")
    fields.Refuse("button", "must be left or right");
  const std::uint8_t flags = fields.Modifiers();
  const int clicks = static_cast<int>(fields.Integer("clicks", 1, 3, 1));
  UIF::ViewBase& pane = ShownPane(driver);
  const HeldKeys held(flags);
  const KeyModifiers modifiers(flags);
  if (button == "right") {
    pane.DispatchRightButtonDown(point, modifiers);
    pane.DispatchRightButtonUp(point, modifiers);
    return Json::object();
  }
  for (int click = 1; click <= clicks; ++click) {
    if (click == 1)
      pane.DispatchLeftButtonDown(point, modifiers);
    else
      pane.DispatchLeftButtonMultiClick(point, modifiers, click);
    pane.DispatchLeftButtonUp(point, modifiers);
  }
  return Json::object();
}

Json TurnWheel(Driver& driver, const Fields& fields) {
  const int delta = fields.Int("delta");
  const HeldKeys held(fields.Modifiers());
  return {{"handled", Pane(driver).DispatchMouseWheel({0, 0}, KeyModifiers(fields.Modifiers()), delta)}};
}

Json Pan(Driver& driver, const Fields& fields) {
  return {{"handled", Pane(driver).DispatchMousePan({0, 0}, {fields.Int("dx", 0), fields.Int("dy")})}};
}

Json Scroll(Driver& driver, const Fields& fields) {
  const int position = fields.Int("position");
  driver.CreatedView();
  for (const auto& control : CaptionsInspector(driver.Handler()).GetControls()) {
    if (UIF::ScrollBar* const* bar = std::get_if<UIF::ScrollBar*>(&control.pointer)) {
      (*bar)->SetScrollBarPosition(position, true);
      return {{"position", (*bar)->GetScrollBarPosition()}};
    }
  }
  throw RequestError("the panel has no scroll bar");
}

Json PressPaneKey(Driver& driver, const Fields& fields) {
  const auto code = static_cast<short>(fields.Integer("code", INT16_MIN, INT16_MAX));
  UIF::ViewBase& pane = Pane(driver);
  const HeldKeys held(fields.Modifiers());
  return {{"handled", pane.DispatchKeyDown(code > 0 ? static_cast<wchar_t>(code) : L'\0', code, false)}};
}

Json SendNodeKey(Driver&, const Fields& fields) {
  const int code = fields.Int("code");
  const auto type = static_cast<zebui::ui::KeyboardEventType>(fields.Integer(
      "type", zebui::ui::kKeyboardEvent_Shortcut, zebui::ui::kKeyboardEvent_KeyUp, zebui::ui::kKeyboardEvent_KeyDown));
  const zebcore::UString character = zebcore::FromUTF8(fields.Text("character", ""));
  const HeldKeys held(fields.Modifiers());
  const auto result = UI_NodeManager::Get()->DispatchKeyboardEvent(
      {type, KeyboardCode(code), fields.Modifiers(), character.empty() ? u'\0' : character.front()});
  return {{"filtered", result.filtered}, {"handled", result.handled}};
}

void FocusRow(Driver& driver, const Fields& fields, zebui::ui::FocusChangeReason reason) {
  const auto row = RealizedRow(driver, fields);
  const std::string part = fields.Text("part", "text");
  if (part == "text")
    row.textEdit->UI_GainKeyboardFocus(reason);
  else if (part == "in")
    row.in->OpenInlineEditor();
  else if (part == "out")
    row.out->OpenInlineEditor();
  else
    fields.Refuse("part", "must be text, in or out");
}

void FocusControl(Driver& driver, const Fields& fields, zebui::ui::FocusChangeReason reason) {
  const auto control = FindControl(driver, fields, "control");
  if (zebui::ui::UI_Node* const* node = std::get_if<zebui::ui::UI_Node*>(&control.pointer))
    (*node)->UI_GainKeyboardFocus(reason);
  else if (UIF::ViewBase* const* view = std::get_if<UIF::ViewBase*>(&control.pointer))
    (*view)->SetFocus();
  else if (UIF::PictureButton* const* button = std::get_if<UIF::PictureButton*>(&control.pointer))
    (*button)->GetNode()->UI_GainKeyboardFocus(reason);
  else if (UIF::ColorPickerControl* const* picker = std::get_if<UIF::ColorPickerControl*>(&control.pointer))
    (*picker)->GetNode()->UI_GainKeyboardFocus(reason);
  else
    fields.Refuse("control", control.name + " takes no focus");
}

Json MoveFocus(Driver& driver, const Fields& fields) {
  const int kPointer = zebui::ui::kFocusChange_Pointer;
  if (fields.Has("row"))
    FocusRow(driver, fields, fields.Int("reason", kPointer));
  else if (fields.Has("control"))
    FocusControl(driver, fields, fields.Int("reason", kPointer));
  else if (fields.Has("pane"))
    Pane(driver).SetFocus();
  else if (fields.Mentions("none"))
    zebui::toolkit::MoveFocus(nullptr, fields.Int("reason", zebui::ui::kFocusChange_None));
  else
    throw RequestError("row: give row, control, pane or none");
  return {{"focus", DescribeFocus(driver)}};
}

KeyboardCode FindKey(const Fields& fields, zebcore::UString& typed) {
  using namespace zebui::ui;
  static const std::map<std::string, KeyboardCode> keys = {
      {"enter", kKeyboardCode_Enter},   {"return", kKeyboardCode_Enter},   {"backspace", kKeyboardCode_Backspace},
      {"tab", kKeyboardCode_Tab},       {"delete", kKeyboardCode_Delete},  {"insert", kKeyboardCode_Insert},
      {"escape", kKeyboardCode_Escape}, {"left", kKeyboardCode_Left},      {"right", kKeyboardCode_Right},
      {"up", kKeyboardCode_Up},         {"down", kKeyboardCode_Down},      {"home", kKeyboardCode_Home},
      {"end", kKeyboardCode_End},       {"page_up", kKeyboardCode_PageUp}, {"page_down", kKeyboardCode_PageDown},
      {"space", KeyboardCode(' ')},
  };
  static const std::map<std::string, zebcore::UString> texts = {
      {"enter", u"\r"}, {"return", u"\r"}, {"tab", u"\t"}, {"space", u" "}, {"backspace", u"\b"}};
  const std::string name = fields.Text("key_name");
  const auto found = keys.find(name);
  if (found == keys.end()) {
    const zebcore::UString letter = zebcore::FromUTF8(name);
    if (letter.size() != 1)
      fields.Refuse("key_name", "there is no key " + name);
    const bool plain = (fields.Modifiers() & (zebui::ui::kModKey_Control | zebui::ui::kModKey_Alt)) == 0;
    typed = plain ? letter : zebcore::UString();
    const char16_t upper = letter[0] >= u'a' && letter[0] <= u'z' ? static_cast<char16_t>(letter[0] - 32) : letter[0];
    return KeyboardCode(upper);
  }
  const auto text = texts.find(name);
  typed = text == texts.end() ? zebcore::UString() : text->second;
  return found->second;
}

// As the toolkit does with a key press: a shortcut is one unless whatever has the focus wants the key for itself. True
// if the key was one and its command was obeyed.
bool PressShortcut(Driver& driver, KeyboardCode code, zebui::ui::ModKey modifiers) {
  if ((modifiers & (zebui::ui::kModKey_Control | zebui::ui::kModKey_Alt | zebui::ui::kModKey_Meta)) == 0)
    return false;
  const QKeyCombination keys(zebui::toolkit::ToQtModifiers(modifiers),
                             static_cast<Qt::Key>(zebui::toolkit::ToQtKey(code)));
  const bool isPanels = UIF::GetTabViewOnDuty() && UIF::GetTabViewOnDuty() == driver.View();
  const std::string context = isPanels ? driver.Handler()->GetShortcutContextName() : "global";
  const int command = UIF::ShortcutManager::Instance()->FindCommand(
      context, QKeySequence(keys).toString(QKeySequence::PortableText).toStdString());
  if (command == 0)
    return false;
  if (QWidget* const widget = zebui::toolkit::GetFocusWidget()) {
    QKeyEvent asked(QEvent::ShortcutOverride, keys.key(), keys.keyboardModifiers());
    asked.ignore();
    QCoreApplication::sendEvent(widget, &asked);
    if (asked.isAccepted())
      return false;
  }
  return UIF::RouteCommand(command);
}

Json Type(Driver& driver, const Fields& fields) {
  bool used = false;
  if (fields.Has("key_name")) {
    zebcore::UString typed;
    const KeyboardCode code = FindKey(fields, typed);
    const HeldKeys held(fields.Modifiers());
    used = PressShortcut(driver, code, fields.Modifiers()) || zebui::driver::PressKey(code, fields.Modifiers(), typed);
  } else {
    used = zebui::driver::TypeText(zebcore::FromUTF8(fields.Text("text")));
  }
  return {{"used", used}, {"focus", DescribeFocus(driver)}};
}

// The text that has the focus, else that of the only selected row.
zebui::controls::UI_TextEdit& TextInUse(Driver& driver, const Fields& fields) {
  if (fields.Has("row"))
    return *RealizedRow(driver, fields).textEdit;
  driver.CreatedView();
  if (auto* edit = dynamic_cast<zebui::controls::UI_TextEdit*>(UI_NodeManager::Get()->GetFocusNode()))
    return *edit;
  const CaptionsInspector inspector(driver.Handler());
  const auto selected = inspector.GetSelectedTimes();
  const auto row = selected.size() == 1 ? inspector.FindRow(selected.front()) : std::nullopt;
  if (!row || !row->textEdit)
    throw RequestError("no text has the focus, and no single row in view is selected");
  return *row->textEdit;
}

Json SetCaret(Driver& driver, const Fields& fields) {
  const std::size_t start = fields.Position("start");
  const std::size_t end = fields.Has("end") ? fields.Position("end") : start;
  auto& edit = TextInUse(driver, fields);
  edit.SetSelection({start, end});
  return {{"text_selection", FromRange(edit.GetSelection())}};
}

Json UseClipboard(Driver&, const Fields& fields) {
  QClipboard* clipboard = QApplication::clipboard();
  if (fields.Has("text"))
    clipboard->setText(zebui::toolkit::ToQt(zebcore::FromUTF8(fields.Text("text"))));
  return {{"text", FromText(zebui::toolkit::FromQt(clipboard->text()))}};
}

} // namespace

void AddInputRequests(RequestTable& table) {
  table["mouse"] = {&UseMouse};
  table["wheel"] = {&TurnWheel};
  table["pan"] = {&Pan};
  table["scroll"] = {&Scroll};
  table["key"] = {&PressPaneKey};
  table["node_key"] = {&SendNodeKey};
  table["focus"] = {&MoveFocus};
  table["type"] = {&Type};
  table["caret"] = {&SetCaret};
  table["clipboard"] = {&UseClipboard};
}

} // namespace Drive
