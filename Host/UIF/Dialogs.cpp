#include "UIF/Dialogs.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include "UIF/ModalScope.h"
#include "zebcore/Localizer.h"
#include "zebcore/Log.h"
#include "zebcore/Trace.h"
#include "zebui/Toolkit.h"

namespace UIF {

namespace toolkit = zebui::toolkit;

namespace {

constexpr int kFlag_Acknowledge = 1;
constexpr int kIcon_Warning = 4;
constexpr int kResult_Acknowledged = 1;

MessageBoxHook& GetMessageBoxHook() {
  static MessageBoxHook hook;
  return hook;
}

int ShowMessageBox(const MessageBoxRecord& record) {
  const ModalScope modal;
  QMessageBox box(QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  box.setWindowTitle(toolkit::ToQt(record.title));
  box.setText(toolkit::ToQt(record.text));
  box.setIcon(record.icon == kIcon_Warning ? QMessageBox::Warning : QMessageBox::Information);
  const bool asks = record.flags != kFlag_Acknowledge;
  box.setStandardButtons(asks ? QMessageBox::Ok | QMessageBox::Cancel : QMessageBox::StandardButtons(QMessageBox::Ok));
  const auto name = [&box](QMessageBox::StandardButton which, std::string_view keyWithDefault) {
    if (QAbstractButton* button = box.button(which))
      button->setText(toolkit::ToQt(zebcore::config::Localizer::Get().Localize(keyWithDefault)));
  };
  name(QMessageBox::Ok, "$$$/Vidra/DLG/Settings/OK=OK");
  name(QMessageBox::Cancel, "$$$/Vidra/DLG/Settings/Cancel=Cancel");
  box.setDefaultButton(asks && record.defaultResult != kResult_Acknowledged ? QMessageBox::Cancel : QMessageBox::Ok);
  box.exec();
  return box.clickedButton() == box.button(QMessageBox::Ok) ? kResult_Acknowledged : record.defaultResult;
}

} // namespace

int MessageBoxW(const UString& text, const UString& title, int flags, int icon, int defaultResult) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("UIF::MessageBoxW", {{"text", zebcore::ToUTF8(text)},
                                                {"title", zebcore::ToUTF8(title)},
                                                {"flags", flags},
                                                {"icon", icon},
                                                {"default", defaultResult}});
  const MessageBoxRecord record{text, title, flags, icon, defaultResult};
  if (const MessageBoxHook hook = GetMessageBoxHook())
    return hook(record);
  if (toolkit::HasApplication())
    return ShowMessageBox(record);
  zebcore::log::Write(zebcore::log::Level::Warning, zebcore::ToUTF8(title) + ": " + zebcore::ToUTF8(text));
  return defaultResult;
}

void SetMessageBoxHook(MessageBoxHook hook) {
  GetMessageBoxHook() = std::move(hook);
}

} // namespace UIF
