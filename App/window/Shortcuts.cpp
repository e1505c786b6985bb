#include "App/window/Shortcuts.h"

#include <QAction>
#include <QMainWindow>
#include <QSettings>
#include <QVariant>

#include <set>

#include "App/window/ShortcutsWindow.h"
#include "HSL/HostCommands.h"
#include "UIF/ShortcutManager.h"

namespace App::shortcuts {

namespace {

constexpr const char* kCommandProperty = "captivo.command";

struct Entry {
  ProgramCommand command;
  const char* name;
  const char* text;
  std::initializer_list<const char*> keys;
};

const Entry kEntries[] = {
    {ProgramCommand::New, "cmd.file.new", "$$$/Vidra/Captivo/Command/New=New Project", {"Ctrl+N"}},
    {ProgramCommand::Open, "cmd.file.open", "$$$/Vidra/Captivo/Command/Open=Open Project", {"Ctrl+O"}},
    {ProgramCommand::ImportMedia,
     "cmd.file.import.media",
     "$$$/Vidra/Captivo/Command/ImportMedia=Import Media",
     {"Ctrl+M"}},
    {ProgramCommand::ImportCaptions,
     "cmd.file.import.captions",
     "$$$/Vidra/Captivo/Command/ImportCaptions=Import Captions",
     {"Ctrl+Shift+I"}},
    {ProgramCommand::ExportCaptions,
     "cmd.file.export.captions",
     "$$$/Vidra/Captivo/Command/ExportCaptions=Export Captions",
     {"Ctrl+E"}},
    {ProgramCommand::SaveAs, "cmd.file.saveas", "$$$/Vidra/Captivo/Command/SaveAs=Save Project As", {"Ctrl+Shift+S"}},
    {ProgramCommand::Quit, "cmd.file.quit", "$$$/Vidra/Captivo/Command/Quit=Quit", {"Ctrl+Q"}},
    {ProgramCommand::EditShortcuts,
     "cmd.edit.shortcuts",
     "$$$/Vidra/Captivo/Command/EditShortcuts=Keyboard Shortcuts",
     {"Ctrl+Alt+K"}},
    {ProgramCommand::Keyboard, "cmd.help.keyboard", "$$$/Vidra/Captivo/Command/Keyboard=Keyboard Help", {"F1"}},
};

QSettings OpenStore() {
  return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("captivo"), QStringLiteral("captivo"));
}

constexpr const char* kGroup = "shortcuts";

std::map<std::string, UIF::KeysList> ReadStore() {
  QSettings store = OpenStore();
  store.beginGroup(QLatin1String(kGroup));
  std::map<std::string, UIF::KeysList> chosen;
  for (const QString& name : store.childKeys()) {
    UIF::KeysList& keys = chosen[name.toStdString()];
    for (const QString& one : store.value(name).toStringList())
      if (!one.isEmpty())
        keys.push_back(one.toStdString());
  }
  return chosen;
}

// A command that was left without keys is stored too, as an empty text.
void WriteStore(const std::map<std::string, UIF::KeysList>& chosen) {
  QSettings store = OpenStore();
  store.remove(QLatin1String(kGroup));
  store.beginGroup(QLatin1String(kGroup));
  for (const auto& [name, keys] : chosen) {
    QStringList list;
    for (const UIF::Keys& one : keys)
      list.append(QString::fromStdString(one));
    store.setValue(QString::fromStdString(name), list.isEmpty() ? QVariant(QString()) : QVariant(list));
  }
}

UIF::KeysList KeysOf(int number) {
  const auto* manager = UIF::ShortcutManager::Instance();
  for (const auto& context : manager->GetContexts()) {
    for (const UIF::CommandDeclaration& command : context->GetCommands()) {
      if (command.number == number)
        return manager->GetKeys(command.name);
    }
  }
  return {};
}

} // namespace

void Load() {
  HSL::HostCommands::Install();
  auto* manager = UIF::ShortcutManager::Instance();
  UIF::CommandContext& global = *manager->GetContext("global");
  for (const Entry& entry : kEntries) {
    manager->SetCommandDefaults(entry.name, entry.text, {entry.keys.begin(), entry.keys.end()});
    global.DeclareCommand(entry.name, static_cast<int>(entry.command), 0, "", {}, false);
  }
  manager->SetUserKeys(ReadStore());
}

void Bind(QAction& action, int command) {
  action.setProperty(kCommandProperty, command);
}

// Of two actions with one key the toolkit would run neither.
void Apply(QMainWindow& window) {
  std::set<QKeySequence> taken;
  for (QAction* action : window.findChildren<QAction*>()) {
    const QVariant command = action->property(kCommandProperty);
    if (!command.isValid())
      continue;
    QList<QKeySequence> sequences;
    for (const UIF::Keys& one : KeysOf(command.toInt())) {
      const auto keys = QKeySequence::fromString(QString::fromStdString(one), QKeySequence::PortableText);
      if (taken.insert(keys).second)
        sequences.append(keys);
    }
    action->setShortcuts(sequences);
  }
}

bool Edit(QWidget* parent) {
  auto* manager = UIF::ShortcutManager::Instance();
  const auto before = manager->GetUserKeys();
  if (!ShortcutsWindow(parent).Run()) {
    manager->SetUserKeys(before);
    return false;
  }
  WriteStore(manager->GetUserKeys());
  return true;
}

} // namespace App::shortcuts
