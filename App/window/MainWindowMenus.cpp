#include "App/window/MainWindow.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>

#include "App/session/Text.h"
#include "App/window/Bin.h"
#include "App/window/DockFrame.h"
#include "App/window/EditCommands.h"
#include "App/window/Help.h"
#include "App/window/Icons.h"
#include "App/window/ImportFormatWindow.h"
#include "App/window/Labels.h"
#include "App/window/Settings.h"
#include "App/window/Shortcuts.h"
#include "BE/Project.h"
#include "HSL/HostCommands.h"
#include "HSL/Module.h"
#include "UIF/CommandRouter.h"
#include "UIF/ShortcutManager.h"
#include "UIF/TabView.h"
#include "UIF/Workspace.h"
#include "zebcore/Localizer.h"
#include "zebui/Toolkit.h"

namespace App {

namespace {

// A menu shows an ampersand that is doubled; names may hold some.
QString Plain(QString name) {
  return name.replace(u'&', QStringLiteral("&&"));
}

bool CanStep(bool (BE::Project::*canStep)() const) {
  const InterfaceRef<BE::Project> project = Session::Instance().GetProject();
  return project && ((*project).*canStep)();
}

// The text that a shortcut is listed under serves the menus too.
QString CommandLabel(const char* name) {
  return Plain(ToQString(UIF::ShortcutManager::Instance()->GetCommandText(name)));
}

// The focus to the next open dock, or the one before.
bool MoveToPanel(const QMainWindow& window, bool backwards) {
  QList<QDockWidget*> docks;
  qsizetype current = -1;
  for (QDockWidget* dock : window.findChildren<QDockWidget*>()) {
    if (dock->isHidden())
      continue;
    const QWidget* focus = zebui::toolkit::GetFocusWidget();
    if (focus && dock->isAncestorOf(focus))
      current = docks.size();
    docks.append(dock);
  }
  if (docks.isEmpty())
    return false;
  const qsizetype count = docks.size();
  const qsizetype start = current < 0 && backwards ? 0 : current;
  QDockWidget* next = docks[(start + (backwards ? count - 1 : 1)) % count];
  next->raise();
  if (const UIF::TabView* view = UIF::Workspace::Instance()->FindTabView(FromQString(next->objectName())))
    const_cast<UIF::TabView*>(view)->BringToFront(true, false);
  else
    zebui::toolkit::MoveFocus(next->widget(), zebui::ui::kFocusChange_Program);
  return true;
}

// The languages are named in themselves.
QString LanguageName(const std::string& language) {
  if (language == "en")
    return QStringLiteral("English");
  if (language == "de")
    return QStringLiteral("Deutsch");
  if (language == "ja")
    return QStringLiteral("日本語");
  return QString::fromStdString(language);
}

} // namespace

void MainWindow::MakeMenus() {
  shortcuts::Load();
  MakeFileMenu();
  MakeEditMenu();
  MakeCaptionsMenu();
  MakeSequenceMenu();
  MakeWindowMenu();
  MakeHelpMenu();
  shortcuts::Apply(*this);
  UpdateMenus();
}

QAction* MainWindow::AddAction(QMenu* menu, std::string_view text, const QString& symbol, const QKeySequence& keys,
                               std::function<void()> act) {
  QAction* action = menu->addAction(Label(text));
  if (!symbol.isEmpty())
    action->setIcon(Symbol(symbol));
  action->setShortcut(keys);
  connect(action, &QAction::triggered, this, [this, act = std::move(act)] {
    if (!mBusy)
      act();
  });
  return action;
}

void MainWindow::MakeFileMenu() {
  QMenu* menu = menuBar()->addMenu(Label("$$$/Vidra/Captivo/Menu/File=&File"));
  const auto bind = [](QAction* action, ProgramCommand command) {
    shortcuts::Bind(*action, command);
    return action;
  };
  bind(AddAction(menu, "$$$/Vidra/Captivo/Menu/New=&New Project", QStringLiteral("new"), {}, [this] { NewProject(); }),
       ProgramCommand::New);
  bind(AddAction(menu, "$$$/Vidra/Captivo/Menu/Open=&Open Project…", QStringLiteral("open"), {},
                 [this] { ChooseProject(); }),
       ProgramCommand::Open);
  mRecentMenu = menu->addMenu(Label("$$$/Vidra/Captivo/Menu/OpenRecent=Open &Recent"));
  connect(mRecentMenu, &QMenu::aboutToShow, this, [this] { FillRecentMenu(); });
  menu->addSeparator();
  mImportMedia = bind(AddAction(menu, "$$$/Vidra/Captivo/Menu/ImportMediaEntry=&Import Media…",
                                QStringLiteral("import"), {}, [this] { ChooseMedia(); }),
                      ProgramCommand::ImportMedia);
  mImportCaptions = bind(AddAction(menu, "$$$/Vidra/Captivo/Menu/ImportCaptions=Import &Captions…",
                                   QStringLiteral("import-captions"), {}, [this] { ChooseCaptions(); }),
                         ProgramCommand::ImportCaptions);
  mExportCaptions = bind(AddAction(menu, "$$$/Vidra/Captivo/Menu/ExportCaptions=&Export Captions…",
                                   QStringLiteral("export"), {}, [this] { ExportCaptions(); }),
                         ProgramCommand::ExportCaptions);
  menu->addSeparator();
  mSaveAs =
      bind(AddAction(menu, "$$$/Vidra/Captivo/Menu/SaveAs=Save Project &As…", {}, {}, [this] { SaveProjectAs(); }),
           ProgramCommand::SaveAs);
  mReadOnly = menu->addAction(Label("$$$/Vidra/Captivo/Menu/ReadOnly=&Lock Project (Read-Only)"));
  mReadOnly->setCheckable(true);
  connect(mReadOnly, &QAction::triggered, this, [this](bool checked) {
    if (!mBusy)
      SetReadOnly(checked);
  });
  menu->addSeparator();
  bind(AddAction(menu, "$$$/Vidra/Captivo/Menu/Quit=&Quit", {}, {}, [this] { close(); }), ProgramCommand::Quit);
}

void MainWindow::FillRecentMenu() {
  mRecentMenu->clear();
  for (const std::filesystem::path& path : settings::GetRecentProjects()) {
    const QString name = Plain(QString::fromStdString(path.stem().string()));
    const QString folder = Plain(QString::fromStdString(path.parent_path().string()));
    QAction* action = mRecentMenu->addAction(QStringLiteral("%1 — %2").arg(name, folder));
    connect(action, &QAction::triggered, this, [this, path] { OpenProject(path); });
  }
  if (mRecentMenu->isEmpty()) {
    mRecentMenu->addAction(Label("$$$/Vidra/Captivo/Menu/NoRecent=No projects yet"))->setEnabled(false);
    return;
  }
  mRecentMenu->addSeparator();
  AddAction(mRecentMenu, "$$$/Vidra/Captivo/Menu/ClearRecent=&Clear List", {}, {},
            [] { settings::ClearRecentProjects(); });
}

void MainWindow::MakeEditMenu() {
  QMenu* menu = menuBar()->addMenu(Label("$$$/Vidra/Captivo/Menu/Edit=&Edit"));
  mUndo = AddAction(menu, "$$$/Vidra/Captivo/Menu/Undo=&Undo", QStringLiteral("undo"), {}, [this] {
    if (MayChange())
      Session::Instance().Undo();
  });
  mRedo = AddAction(menu, "$$$/Vidra/Captivo/Menu/Redo=&Redo", QStringLiteral("redo"), {}, [this] {
    if (MayChange())
      Session::Instance().Redo();
  });
  shortcuts::Bind(*mUndo, HSL::kCommand_Undo);
  shortcuts::Bind(*mRedo, HSL::kCommand_Redo);
  menu->addSeparator();

  struct Entry {
    EditCommand command;
    const char* text;
  };
  const Entry entries[] = {
      {EditCommand::Cut, "$$$/Vidra/Captivo/Menu/Cut=Cu&t"},
      {EditCommand::Copy, "$$$/Vidra/Captivo/Menu/Copy=&Copy"},
      {EditCommand::Paste, "$$$/Vidra/Captivo/Menu/Paste=&Paste"},
      {EditCommand::Delete, "$$$/Vidra/Captivo/Menu/Delete=&Delete"},
      {EditCommand::SelectAll, "$$$/Vidra/Captivo/Menu/SelectAll=Select &All"},
  };
  std::vector<std::pair<QAction*, std::function<bool()>>> actions{
      {mUndo, [] { return CanStep(&BE::Project::CanUndo); }}, {mRedo, [] { return CanStep(&BE::Project::CanRedo); }}};
  for (const Entry& entry : entries) {
    const EditCommand command = entry.command;
    QAction* action = AddAction(menu, entry.text, {}, {}, [command] { ObeyEditCommand(command); });
    shortcuts::Bind(*action, static_cast<int>(command));
    actions.emplace_back(action, [command] { return IsEditCommandEnabled(command); });
  }
  EnableWhileOpen(menu, std::move(actions));
  menu->addSeparator();
  QAction* find = menu->addAction(CommandLabel("cmd.find.box"));
  shortcuts::Bind(*find, HSL::kCommand_FindBox);
  connect(find, &QAction::triggered, this, [] { UIF::RouteCommand(HSL::kCommand_FindBox); });
  menu->addSeparator();
  QAction* edit = AddAction(menu, "$$$/Vidra/Captivo/Menu/EditShortcuts=&Keyboard Shortcuts…", {}, {}, [this] {
    if (shortcuts::Edit(this))
      shortcuts::Apply(*this);
  });
  shortcuts::Bind(*edit, ProgramCommand::EditShortcuts);
}

void MainWindow::EnableWhileOpen(QMenu* menu, std::vector<std::pair<QAction*, std::function<bool()>>> entries) {
  connect(menu, &QMenu::aboutToShow, this, [entries] {
    for (const auto& [action, isEnabled] : entries)
      action->setEnabled(isEnabled());
  });
  connect(menu, &QMenu::aboutToHide, this, [entries] {
    for (const auto& [action, isEnabled] : entries)
      action->setEnabled(true);
  });
}

void MainWindow::MakeCaptionsMenu() {
  QMenu* menu = menuBar()->addMenu(Label("$$$/Vidra/Captivo/Menu/Captions=&Captions"));
  AddStreamEntries(menu);
  menu->addSeparator();
  AddCaptionEntries(menu);
}

void MainWindow::AddStreamEntries(QMenu* menu) {
  mNewStreamMenu = menu->addMenu(Symbol(QStringLiteral("add")), Label("$$$/Vidra/Captivo/Menu/NewStream=&New Stream"));
  mDuplicateMenu = menu->addMenu(Symbol(QStringLiteral("duplicate")),
                                 Label("$$$/Vidra/Captivo/Menu/DuplicateStream=D&uplicate Stream As"));
  mDeleteStream = AddAction(menu, "$$$/Vidra/Captivo/Menu/DeleteStream=&Delete Stream", QStringLiteral("delete"), {},
                            [this] { DeleteStream(); });
  connect(mNewStreamMenu, &QMenu::aboutToShow, this, [this] {
    FillStreamFormats(mNewStreamMenu, Session::Instance().GetSelectedClip(),
                      [this](auto format) { NewStream(format); });
  });
  connect(mDuplicateMenu, &QMenu::aboutToShow, this, [this] {
    const Stream stream = GetCurrentStream();
    FillStreamFormats(mDuplicateMenu, stream ? stream->GetMasterClip() : Clip(),
                      [this](auto format) { DuplicateStream(format); });
  });
}

// For the captions that are selected in the panel.
void MainWindow::AddCaptionEntries(QMenu* menu) {
  struct Entry {
    CaptionCommand command;
    const char* text;
    bool beginsGroup;
  };
  const Entry entries[] = {
      {CaptionCommand::Add, "$$$/Vidra/Captivo/Menu/AddCaption=&Add Caption", false},
      {CaptionCommand::Delete, "$$$/Vidra/Captivo/Menu/DeleteCaptions=Dele&te Captions", false},
      {CaptionCommand::Next, "$$$/Vidra/Captivo/Menu/NextCaption=Ne&xt Caption", true},
      {CaptionCommand::Previous, "$$$/Vidra/Captivo/Menu/PreviousCaption=&Previous Caption", false},
      {CaptionCommand::First, "$$$/Vidra/Captivo/Menu/FirstCaption=&First Caption", false},
      {CaptionCommand::Last, "$$$/Vidra/Captivo/Menu/LastCaption=Last Captio&n", false},
      {CaptionCommand::SelectAll, "$$$/Vidra/Captivo/Menu/SelectAllCaptions=&Select All Captions", false},
      {CaptionCommand::MusicNote, "$$$/Vidra/Captivo/Menu/MusicNote=Insert &Music Note", true},
      {CaptionCommand::Bold, "$$$/Vidra/Captivo/Menu/Bold=&Bold", true},
      {CaptionCommand::Italic, "$$$/Vidra/Captivo/Menu/Italic=&Italic", false},
      {CaptionCommand::Underline, "$$$/Vidra/Captivo/Menu/Underline=Under&line", false},
      {CaptionCommand::AlignLeft, "$$$/Vidra/Captivo/Menu/AlignLeft=Align L&eft", true},
      {CaptionCommand::AlignCenter, "$$$/Vidra/Captivo/Menu/AlignCenter=Align &Center", false},
      {CaptionCommand::AlignRight, "$$$/Vidra/Captivo/Menu/AlignRight=Align &Right", false},
      {CaptionCommand::TextColor, "$$$/Vidra/HSL/Command/TextColor=Edit Text Color", true},
      {CaptionCommand::BackgroundColor, "$$$/Vidra/HSL/Command/BackgroundColor=Edit Background Color", false},
      {CaptionCommand::EdgeColor, "$$$/Vidra/HSL/Command/EdgeColor=Edit Edge Color", false},
      {CaptionCommand::ImportSettings, "$$$/Vidra/HSL/Command/ImportSettings=Import Settings…", true},
      {CaptionCommand::ExportSettings, "$$$/Vidra/HSL/Command/ExportSettings=Export Settings…", false},
  };
  std::vector<std::pair<QAction*, std::function<bool()>>> actions;
  for (const Entry& entry : entries) {
    if (entry.beginsGroup)
      menu->addSeparator();
    const CaptionCommand command = entry.command;
    QAction* action = AddAction(menu, entry.text, {}, {}, [command] { ObeyCaptionCommand(command); });
    shortcuts::Bind(*action, static_cast<int>(command));
    actions.emplace_back(action, [command] { return IsCaptionCommandEnabled(command); });
  }
  EnableWhileOpen(menu, std::move(actions));
}

// A menu for each family, with the channels that the clip does not hold yet.
void MainWindow::FillStreamFormats(QMenu* menu, const Clip& clip,
                                   const std::function<void(zebcaptioning::StreamFormat)>& choose) {
  menu->clear();
  if (!clip)
    return;
  std::set<zebcaptioning::StreamFormat> held;
  BE::QueryAvailableCaptionStreamFormats(clip, held);
  constexpr int kChannelsShown = 8;
  for (const std::string& family : GetStreamFamilies()) {
    QMenu* channels = menu->addMenu(FamilyLabel(family));
    for (int channel = 1; channel <= kChannelsShown; ++channel) {
      const zebcaptioning::StreamFormat format = GetStreamFormat(family, channel);
      if (format == zebcaptioning::kStreamFormat_None)
        break;
      QAction* action = channels->addAction(Plain(ToQString(zebcaptioning::GetFullStreamFormatLabel(format))));
      action->setEnabled(!held.contains(format));
      connect(action, &QAction::triggered, this, [this, format, choose] {
        if (!mBusy)
          choose(format);
      });
    }
  }
}

void MainWindow::MakeWindowMenu() {
  QMenu* menu = menuBar()->addMenu(Label("$$$/Vidra/Captivo/Menu/Window=&Window"));
  connect(menu, &QMenu::aboutToShow, this, [this, menu] { FillWindowMenu(menu); });

  // The panel is asked first, through its handler; it hands the movement back to the program.
  const QPointer<MainWindow> window = this;
  HSL::Handler::SetPanelMovementHook([window](HSL::Handler::PanelMovement movement) {
    if (!window || movement == HSL::Handler::PanelMovement::FindBox)
      return false;
    return MoveToPanel(*window, movement == HSL::Handler::PanelMovement::PreviousPanel);
  });
  for (const int command : {HSL::kCommand_NextPanel, HSL::kCommand_PreviousPanel}) {
    auto* move = new QAction(this);
    addAction(move);
    shortcuts::Bind(*move, command);
    connect(move, &QAction::triggered, this, [this, command] {
      if (!UIF::RouteCommand(command) && mCaptionsHandler)
        mCaptionsHandler->ObeyCommand(UIF::Command(command));
    });
  }
}

void MainWindow::FillWindowMenu(QMenu* menu) {
  menu->clear();
  menu->addAction(findChild<QDockWidget*>(QStringLiteral("bin"))->toggleViewAction());
  menu->addAction(findChild<QDockWidget*>(QStringLiteral("timeline"))->toggleViewAction());
  menu->addAction(findChild<QDockWidget*>(QStringLiteral("monitor"))->toggleViewAction());
  for (const UIF::WindowMenuEntry& entry : UIF::GetWindowMenu()) {
    QAction* action = menu->addAction(Plain(ToQString(entry.title)));
    const auto frame = mFrames.find(HSL::kCaptionsHandlerID);
    const bool shown = frame != mFrames.end() && frame->second->IsShown();
    action->setCheckable(true);
    action->setChecked(shown);
    connect(action, &QAction::triggered, this, [this, shown] {
      if (shown)
        mFrames.at(HSL::kCaptionsHandlerID)->close();
      else
        OpenPanel();
    });
  }
  menu->addSeparator();
  QAction* stacked = menu->addAction(Label("$$$/Vidra/Captivo/Menu/StackPanels=Captions in a &Column"));
  stacked->setCheckable(true);
  stacked->setChecked(settings::ArePanelsStacked());
  connect(stacked, &QAction::triggered, this, [this](bool checked) { SetPanelsStacked(checked); });
  AddAction(menu, "$$$/Vidra/Captivo/Menu/ResetWorkspace=&Reset Workspace", {}, {}, [this] { ResetWorkspace(); });
  menu->addSeparator();
  QMenu* themes = menu->addMenu(Label("$$$/Vidra/Captivo/Menu/Theme=&Theme"));
  auto* themeGroup = new QActionGroup(themes);
  for (const bool dark : {false, true}) {
    QAction* action = themes->addAction(dark ? Label("$$$/Vidra/Captivo/Menu/Dark=&Dark")
                                             : Label("$$$/Vidra/Captivo/Menu/Light=&Light"));
    action->setCheckable(true);
    action->setChecked(settings::IsDark() == dark);
    themeGroup->addAction(action);
    connect(action, &QAction::triggered, this, [this, dark] { SetDark(dark); });
  }
  QMenu* languages = menu->addMenu(Label("$$$/Vidra/Captivo/Menu/Language=&Language"));
  auto* languageGroup = new QActionGroup(languages);
  const auto& localizer = zebcore::config::Localizer::Get();
  for (const std::string& language : localizer.GetLanguages()) {
    QAction* action = languages->addAction(LanguageName(language));
    action->setCheckable(true);
    action->setChecked(localizer.GetLanguage() == language);
    languageGroup->addAction(action);
    connect(action, &QAction::triggered, this, [this, language] { SetLanguage(language); });
  }
}

void MainWindow::SetDark(bool dark) {
  settings::SetDark(dark);
  mAskRebuild();
}

void MainWindow::SetLanguage(const std::string& language) {
  settings::SetLanguage(language);
  mAskRebuild();
}

void MainWindow::MakeHelpMenu() {
  QMenu* menu = menuBar()->addMenu(Label("$$$/Vidra/Captivo/Menu/Help=&Help"));
  QAction* keyboard =
      AddAction(menu, "$$$/Vidra/Captivo/Menu/Keyboard=&Keyboard", {}, {}, [this] { ShowKeyboard(this); });
  shortcuts::Bind(*keyboard, ProgramCommand::Keyboard);
  AddAction(menu, "$$$/Vidra/Captivo/Menu/About=&About Captivo", {}, {}, [this] { ShowAbout(this); });
}

void MainWindow::FillBinMenu(QMenu& menu) {
  if (FillSequenceMenu(menu))
    return;
  const Clip clip = mBin->GetCurrentClip();
  const Stream stream = mBin->GetCurrentStream();
  if (!clip) {
    menu.addAction(mImportMedia);
    return;
  }
  QAction* open = menu.addAction(Label("$$$/Vidra/Captivo/Menu/OpenCaptions=Open Captions"));
  connect(open, &QAction::triggered, this, [this, clip, stream] { OpenClip(clip, stream); });
  AddClipEntries(menu, clip);
  menu.addSeparator();
  menu.addAction(mImportCaptions);
  if (stream)
    menu.addAction(mExportCaptions);
  menu.addSeparator();
  menu.addMenu(mNewStreamMenu);
  if (stream) {
    menu.addMenu(mDuplicateMenu);
    menu.addAction(mDeleteStream);
  } else {
    menu.addSeparator();
    AddAction(&menu, "$$$/Vidra/Captivo/Menu/RemoveClip=&Remove from Project", {}, {}, [this] {
      RemoveClip();
    })->setEnabled(!clip->GetProject()->IsReadOnly());
  }
}

void MainWindow::UpdateMenus() {
  if (!mRedo || !mDeleteStream)
    return;
  const InterfaceRef<BE::Project> project = Session::Instance().GetProject();
  const bool writable = project && !project->IsReadOnly();
  const bool hasClip = static_cast<bool>(Session::Instance().GetSelectedClip());
  const bool hasStream = static_cast<bool>(GetCurrentStream());
  const auto undo = project ? project->GetUndoNames() : std::vector<zebcore::UString>();
  const auto redo = project ? project->GetRedoNames() : std::vector<zebcore::UString>();
  mUndo->setText(undo.empty()
                     ? Label("$$$/Vidra/Captivo/Menu/Undo=&Undo")
                     : Plain(Label("$$$/Vidra/Captivo/Menu/UndoStep=Undo {1}", {zebcore::ToUTF8(undo.front())})));
  mRedo->setText(redo.empty()
                     ? Label("$$$/Vidra/Captivo/Menu/Redo=&Redo")
                     : Plain(Label("$$$/Vidra/Captivo/Menu/RedoStep=Redo {1}", {zebcore::ToUTF8(redo.front())})));
  mImportMedia->setEnabled(writable);
  mImportCaptions->setEnabled(writable);
  mExportCaptions->setEnabled(hasStream);
  mSaveAs->setEnabled(static_cast<bool>(project));
  mReadOnly->setEnabled(static_cast<bool>(project));
  mReadOnly->setChecked(project && project->IsReadOnly());
  mNewStreamMenu->setEnabled(writable && hasClip);
  mDuplicateMenu->setEnabled(writable && hasStream);
  mDeleteStream->setEnabled(writable && hasStream);
  UpdateHint();
}

} // namespace App
