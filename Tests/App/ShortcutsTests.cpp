#include <QAction>
#include <QContextMenuEvent>
#include <QDialog>
#include <QDockWidget>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include "App/window/Help.h"
#include "App/window/Shortcuts.h"
#include "App/window/ShortcutsWindow.h"
#include "HSL/HostCommands.h"
#include "UIF/MenuUtils.h"
#include "UIF/ShortcutManager.h"
#include "WindowSupport.h"
#include "zebcore/Localizer.h"

namespace AppTest {

namespace {

class Shortcuts : public WindowWithPanel {
 protected:
  ~Shortcuts() override { UIF::ShortcutManager::Instance()->ResetAllKeys(); }

  QAction* ActionWith(const QKeySequence& keys) {
    for (QAction* action : window->findChildren<QAction*>())
      if (action->shortcuts().contains(keys))
        return action;
    return nullptr;
  }
  static QTreeWidgetItem* Find(QTreeWidget& tree, const QString& text) {
    for (QTreeWidgetItemIterator at(&tree); *at; ++at)
      if ((*at)->text(0) == text)
        return *at;
    return nullptr;
  }
  static void Press(QWidget& widget, int key, Qt::KeyboardModifiers modifiers) {
    QKeyEvent press(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(&widget, &press);
  }
};

} // namespace

TEST_F(Shortcuts, AreThoseOfTheCommandsOnTheEntriesOfTheMenus) {
  ASSERT_NE(ActionWith(Qt::CTRL | Qt::Key_B), nullptr);
  EXPECT_NE(ActionWith(Qt::CTRL | Qt::Key_Z), nullptr);
  EXPECT_NE(ActionWith(Qt::CTRL | Qt::Key_Y), nullptr) << "a command may have several keys";
  EXPECT_NE(ActionWith(Qt::CTRL | Qt::SHIFT | Qt::Key_S), nullptr);
  UIF::ShortcutManager::Instance()->SetKeys("cmd.captions.bold", {"F9"});
  App::shortcuts::Apply(*window);
  EXPECT_EQ(ActionWith(Qt::CTRL | Qt::Key_B), nullptr);
  EXPECT_NE(ActionWith(Qt::Key_F9), nullptr);
}

TEST_F(Shortcuts, OfOneKeyGoToOneEntryOnly) {
  std::set<QKeySequence> seen;
  for (const QAction* action : window->findChildren<QAction*>())
    for (const QKeySequence& keys : action->shortcuts())
      EXPECT_TRUE(seen.insert(keys).second) << keys.toString().toStdString();
}

TEST_F(Shortcuts, AreFoundByTheirCommandAndByTheirKeys) {
  App::ShortcutsWindow dialog(window.get());
  auto& tree = *dialog.findChild<QTreeWidget*>();
  auto& search = *dialog.findChild<QLineEdit*>(QStringLiteral("search"));
  QTreeWidgetItem* bold = Find(tree, QStringLiteral("Bold"));
  QTreeWidgetItem* italic = Find(tree, QStringLiteral("Italic"));
  ASSERT_TRUE(bold && italic);
  EXPECT_EQ(bold->parent()->text(0), QStringLiteral("Captions Panel"));
  search.setText(QStringLiteral("bol"));
  EXPECT_FALSE(bold->isHidden());
  EXPECT_TRUE(italic->isHidden());
  EXPECT_EQ(tree.currentItem(), bold);
  search.setText(QStringLiteral("ctrl+i"));
  EXPECT_TRUE(bold->isHidden());
  EXPECT_FALSE(italic->isHidden());
}

TEST_F(Shortcuts, AreRecordedWithAWarningOfWhatTheyAreTakenFrom) {
  auto& manager = *UIF::ShortcutManager::Instance();
  App::ShortcutsWindow dialog(window.get());
  auto& tree = *dialog.findChild<QTreeWidget*>();
  auto& recorder = *dialog.findChild<QLineEdit*>(QStringLiteral("recorder"));
  auto& assign = *dialog.findChild<QPushButton*>(QStringLiteral("assign"));
  auto& warning = *dialog.findChild<QLabel*>(QStringLiteral("warning"));
  tree.setCurrentItem(Find(tree, QStringLiteral("Bold")));
  EXPECT_FALSE(assign.isEnabled()) << "it has these keys already";

  Press(recorder, Qt::Key_F9, Qt::NoModifier);
  EXPECT_EQ(warning.text(), QString());
  assign.click();
  EXPECT_EQ(manager.GetKeys("cmd.captions.bold"), UIF::KeysList{"F9"});

  Press(recorder, Qt::Key_I, Qt::ControlModifier);
  EXPECT_TRUE(warning.text().contains(QStringLiteral("Italic"))) << warning.text().toStdString();
  EXPECT_EQ(manager.GetKeys("cmd.captions.italicize"), UIF::KeysList{"Ctrl+I"}) << "not before it is assigned";
  assign.click();
  EXPECT_EQ(manager.GetKeys("cmd.captions.bold"), UIF::KeysList{"Ctrl+I"});
  EXPECT_TRUE(manager.GetKeys("cmd.captions.italicize").empty());

  Press(recorder, Qt::Key_B, Qt::NoModifier);
  EXPECT_FALSE(assign.isEnabled()) << "letters are for typing";
  EXPECT_FALSE(warning.text().isEmpty());

  dialog.findChild<QPushButton*>(QStringLiteral("reset"))->click();
  EXPECT_EQ(manager.GetKeys("cmd.captions.bold"), UIF::KeysList{"Ctrl+B"});
  dialog.findChild<QPushButton*>(QStringLiteral("resetAll"))->click();
  EXPECT_EQ(manager.GetKeys("cmd.captions.italicize"), UIF::KeysList{"Ctrl+I"});
  dialog.findChild<QPushButton*>(QStringLiteral("remove"))->click();
  EXPECT_TRUE(manager.GetKeys("cmd.captions.bold").empty());
}

TEST_F(Shortcuts, StayAsTheyWereWhenTheWindowIsLeftAndAreThereAgainWhenTheyWereStored) {
  auto& manager = *UIF::ShortcutManager::Instance();
  const auto leave = [&](bool accept) {
    QTimer::singleShot(0, window.get(), [&manager, accept] {
      manager.SetKeys("cmd.captions.bold", {"F9"});
      manager.SetKeys("cmd.captions.italicize", {});
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      accept ? dialog->accept() : dialog->reject();
    });
    return App::shortcuts::Edit(window.get());
  };
  EXPECT_FALSE(leave(false));
  EXPECT_EQ(manager.GetKeys("cmd.captions.bold"), UIF::KeysList{"Ctrl+B"});
  EXPECT_TRUE(leave(true));
  manager.ResetAllKeys();
  App::shortcuts::Load();
  EXPECT_EQ(manager.GetKeys("cmd.captions.bold"), UIF::KeysList{"F9"});
  EXPECT_TRUE(manager.GetKeys("cmd.captions.italicize").empty()) << "no keys is a choice as well";
  MakeWindow();
  EXPECT_NE(ActionWith(Qt::Key_F9), nullptr);
}

TEST_F(Shortcuts, AreShownInTheMenuBehindThePanelsTitle) {
  std::vector<std::string> keys;
  UIF::MenuUtils::SetMenuHook([&](const std::string& name, const auto& items) {
    EXPECT_EQ(name, "Captivo_Wing_Menu");
    for (const auto& item : items)
      if (item.command == HSL::kCommand_SelectAllCaptions)
        keys.push_back(item.keys);
    return 0;
  });
  auto* dock = window->findChild<QDockWidget*>(QString::fromStdU16String(HSL::kCaptionsHandlerID));
  ASSERT_NE(dock, nullptr);
  const QRect panel = dock->widget()->geometry();
  ASSERT_GT(panel.top(), 3);
  for (const int y : {3, panel.top() + 3}) {
    QContextMenuEvent click(QContextMenuEvent::Mouse, {20, y}, dock->mapToGlobal(QPoint(20, y)));
    QApplication::sendEvent(dock, &click);
  }
  UIF::MenuUtils::SetMenuHook({});
  EXPECT_EQ(keys, std::vector<std::string>{"Ctrl+A"}) << "on the title, and not in the panel";
}

// --- Where they are told

TEST_F(Shortcuts, OfTheKeyboardHelpAreThoseThatHoldNow) {
  UIF::ShortcutManager::Instance()->SetUserKeys({{"cmd.captions.bold", {"F9"}}, {"cmd.file.new", {}}});
  QStringList told;
  QTimer::singleShot(0, [&told] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_TRUE(dialog);
    for (const QLabel* label : dialog->findChildren<QLabel*>())
      told.append(label->text());
    dialog->reject();
  });
  App::ShowKeyboard(window.get());
  const auto keysOf = [&told](const char* meaning) {
    const qsizetype at = told.indexOf(QLatin1String(meaning));
    return at > 0 ? told[at - 1].toStdString() : std::string("not told");
  };
  EXPECT_EQ(keysOf("Bold"), "F9");
  EXPECT_EQ(keysOf("Italic"), "Ctrl+I");
  EXPECT_EQ(keysOf("New project"), "–");
  EXPECT_EQ(keysOf("Redo, also while typing"), "Ctrl+Shift+Z, Ctrl+Y");
  EXPECT_EQ(keysOf("Next Panel"), "F6");
}

TEST_F(Shortcuts, OfUndoThatWereChangedAreKeptFromTextFieldsTooAndTheOldOnesAreNot) {
  UIF::ShortcutManager::Instance()->SetKeys("cmd.edit.undo", {"Ctrl+Backspace"});
  QLineEdit field(window.get());
  const auto isKept = [&field](int key) {
    QKeyEvent asked(QEvent::ShortcutOverride, key, Qt::ControlModifier);
    asked.accept();
    // The window's own filter alone, without what the field makes of it.
    field.setEnabled(false);
    QApplication::sendEvent(&field, &asked);
    return !asked.isAccepted();
  };
  EXPECT_TRUE(isKept(Qt::Key_Backspace));
  EXPECT_FALSE(isKept(Qt::Key_Z));
}

TEST_F(Shortcuts, StandUnderContextsThatAreNamedInTheLanguageOfTheMoment) {
  auto& localizer = zebcore::config::Localizer::Get();
  const auto nameOf = [](const char* id) {
    return zebcore::ToUTF8(UIF::ShortcutManager::Instance()->GetContext(id)->GetName());
  };
  EXPECT_EQ(nameOf("captions"), "Captions Panel");
  ASSERT_TRUE(localizer.SetLanguage("de"));
  const std::string captions = nameOf("captions");
  const std::string global = nameOf("global");
  localizer.SetLanguage("en");
  EXPECT_NE(captions, "Captions Panel");
  EXPECT_NE(global, "Application");
}

} // namespace AppTest
