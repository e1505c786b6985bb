#include "App/window/MainWindow.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>

#include "App/session/Text.h"
#include "App/window/Bin.h"
#include "App/window/DockFrame.h"
#include "App/window/EditCommands.h"
#include "App/window/Help.h"
#include "App/window/Icons.h"
#include "App/window/ImportFormatWindow.h"
#include "App/window/Labels.h"
#include "App/window/Settings.h"
#include "BE/Project.h"
#include "HSL/Module.h"
#include "UIF/Workspace.h"
#include "zebcore/Localizer.h"

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

// The languages are named in themselves.
QString LanguageName(const std::string& language) {
  if (language == "en")
    return QStringLiteral("English");
  if (language == "de")
    return QStringLiteral("Deutsch");
  return QString::fromStdString(language);
}

} // namespace

void MainWindow::MakeMenus() {
  MakeFileMenu();
  MakeEditMenu();
  MakeCaptionsMenu();
  MakeWindowMenu();
  MakeHelpMenu();
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
  AddAction(menu, "$$$/Vidra/Captivo/Menu/New=&New Project", QStringLiteral("new"), QKeySequence::New,
            [this] { NewProject(); });
  AddAction(menu, "$$$/Vidra/Captivo/Menu/Open=&Open Project…", QStringLiteral("open"), QKeySequence::Open,
            [this] { ChooseProject(); });
  mRecentMenu = menu->addMenu(Label("$$$/Vidra/Captivo/Menu/OpenRecent=Open &Recent"));
  connect(mRecentMenu, &QMenu::aboutToShow, this, [this] { FillRecentMenu(); });
  menu->addSeparator();
  mImportMedia = AddAction(menu, "$$$/Vidra/Captivo/Menu/ImportMediaEntry=&Import Media…", QStringLiteral("import"),
                           Qt::CTRL | Qt::Key_M, [this] { ChooseMedia(); });
  mImportCaptions =
      AddAction(menu, "$$$/Vidra/Captivo/Menu/ImportCaptions=Import &Captions…", QStringLiteral("import-captions"),
                Qt::CTRL | Qt::SHIFT | Qt::Key_I, [this] { ChooseCaptions(); });
  mExportCaptions = AddAction(menu, "$$$/Vidra/Captivo/Menu/ExportCaptions=&Export Captions…", QStringLiteral("export"),
                              Qt::CTRL | Qt::Key_E, [this] { ExportCaptions(); });
  menu->addSeparator();
  mSaveAs = AddAction(menu, "$$$/Vidra/Captivo/Menu/SaveAs=Save Project &As…", {}, Qt::CTRL | Qt::SHIFT | Qt::Key_S,
                      [this] { SaveProjectAs(); });
  menu->addSeparator();
  AddAction(menu, "$$$/Vidra/Captivo/Menu/Quit=&Quit", {}, Qt::CTRL | Qt::Key_Q, [this] { close(); });
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
  mUndo = AddAction(menu, "$$$/Vidra/Captivo/Menu/Undo=&Undo", QStringLiteral("undo"), QKeySequence::Undo,
                    [] { Session::Instance().Undo(); });
  mRedo = AddAction(menu, "$$$/Vidra/Captivo/Menu/Redo=&Redo", QStringLiteral("redo"), {},
                    [] { Session::Instance().Redo(); });
  mRedo->setShortcuts({Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y});
  menu->addSeparator();

  struct Entry {
    EditCommand command;
    const char* text;
    QKeySequence keys;
  };
  // Delete has no shortcut of its own: the key means captions in the list and letters in a text, and goes there.
  const Entry entries[] = {
      {EditCommand::Cut, "$$$/Vidra/Captivo/Menu/Cut=Cu&t", QKeySequence::Cut},
      {EditCommand::Copy, "$$$/Vidra/Captivo/Menu/Copy=&Copy", QKeySequence::Copy},
      {EditCommand::Paste, "$$$/Vidra/Captivo/Menu/Paste=&Paste", QKeySequence::Paste},
      {EditCommand::Delete, "$$$/Vidra/Captivo/Menu/Delete=&Delete", {}},
      {EditCommand::SelectAll, "$$$/Vidra/Captivo/Menu/SelectAll=Select &All", QKeySequence::SelectAll},
  };
  std::vector<std::pair<QAction*, std::function<bool()>>> actions{
      {mUndo, [] { return CanStep(&BE::Project::CanUndo); }}, {mRedo, [] { return CanStep(&BE::Project::CanRedo); }}};
  for (const Entry& entry : entries) {
    const EditCommand command = entry.command;
    actions.emplace_back(AddAction(menu, entry.text, {}, entry.keys, [command] { ObeyEditCommand(command); }),
                         [command] { return IsEditCommandEnabled(command); });
  }
  EnableWhileOpen(menu, std::move(actions));
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
    QKeySequence keys;
    bool beginsGroup;
  };
  // Select All has its shortcut in the Edit menu.
  const Entry entries[] = {
      {CaptionCommand::SelectAll, "$$$/Vidra/Captivo/Menu/SelectAllCaptions=&Select All Captions", {}, false},
      {CaptionCommand::MusicNote, "$$$/Vidra/Captivo/Menu/MusicNote=Insert &Music Note",
       Qt::CTRL | Qt::SHIFT | Qt::Key_M, false},
      {CaptionCommand::Bold, "$$$/Vidra/Captivo/Menu/Bold=&Bold", QKeySequence::Bold, true},
      {CaptionCommand::Italic, "$$$/Vidra/Captivo/Menu/Italic=&Italic", QKeySequence::Italic, false},
      {CaptionCommand::Underline, "$$$/Vidra/Captivo/Menu/Underline=Under&line", QKeySequence::Underline, false},
      {CaptionCommand::AlignLeft, "$$$/Vidra/Captivo/Menu/AlignLeft=Align L&eft", Qt::CTRL | Qt::SHIFT | Qt::Key_L,
       true},
      {CaptionCommand::AlignCenter, "$$$/Vidra/Captivo/Menu/AlignCenter=Align &Center",
       Qt::CTRL | Qt::SHIFT | Qt::Key_E, false},
      {CaptionCommand::AlignRight, "$$$/Vidra/Captivo/Menu/AlignRight=Align &Right", Qt::CTRL | Qt::SHIFT | Qt::Key_R,
       false},
  };
  std::vector<std::pair<QAction*, std::function<bool()>>> actions;
  for (const Entry& entry : entries) {
    if (entry.beginsGroup)
      menu->addSeparator();
    const CaptionCommand command = entry.command;
    actions.emplace_back(AddAction(menu, entry.text, {}, entry.keys, [command] { ObeyCaptionCommand(command); }),
                         [command] { return IsCaptionCommandEnabled(command); });
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
}

void MainWindow::FillWindowMenu(QMenu* menu) {
  menu->clear();
  menu->addAction(findChild<QDockWidget*>(QStringLiteral("bin"))->toggleViewAction());
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
  AddAction(menu, "$$$/Vidra/Captivo/Menu/Keyboard=&Keyboard", {}, QKeySequence::HelpContents,
            [this] { ShowKeyboard(this); });
  AddAction(menu, "$$$/Vidra/Captivo/Menu/About=&About Captivo", {}, {}, [this] { ShowAbout(this); });
}

void MainWindow::FillBinMenu(QMenu& menu) {
  const Clip clip = mBin->GetCurrentClip();
  const Stream stream = mBin->GetCurrentStream();
  if (!clip) {
    menu.addAction(mImportMedia);
    return;
  }
  QAction* open = menu.addAction(Label("$$$/Vidra/Captivo/Menu/OpenCaptions=Open Captions"));
  connect(open, &QAction::triggered, this, [this, clip, stream] { OpenClip(clip, stream); });
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
    AddAction(&menu, "$$$/Vidra/Captivo/Menu/RemoveClip=&Remove from Project", {}, {}, [this] { RemoveClip(); });
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
  mNewStreamMenu->setEnabled(writable && hasClip);
  mDuplicateMenu->setEnabled(writable && hasStream);
  mDeleteStream->setEnabled(writable && hasStream);
  UpdateHint();
}

} // namespace App
