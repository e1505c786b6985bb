#include <gmock/gmock.h>

#include <QApplication>
#include <QDockWidget>
#include <QDropEvent>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QTest>
#include <QTextEdit>
#include <QTreeWidget>
#include <QUrl>

#include "App/window/EditCommands.h"
#include "App/window/Labels.h"
#include "App/window/MainWindow.h"
#include "App/window/ProblemsWindow.h"
#include "HSL/Module.h"
#include "Support.h"
#include "UIF/Dialogs.h"
#include "UIF/TabView.h"
#include "UIF/Theme.h"
#include "UIF/Workspace.h"

namespace AppTest {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

// One for all tests of the program; the toolkit allows no second.
void NeedApplication() {
  static int count = 1;
  static char name[] = "test";
  static char* arguments[] = {name, nullptr};
  static auto* const application = new QApplication(count, arguments);
  (void)application;
}

} // namespace

// The main window over the session of the test, without the panel's module.
class Window : public SessionTest {
 protected:
  Window() {
    NeedApplication();
    UIF::SetMessageBoxHook([this](const UIF::MessageBoxRecord& box) {
      said.push_back(zebcore::ToUTF8(box.text));
      return box.defaultResult;
    });
    App::SetProblemsPrinted(true);
    window = std::make_unique<App::MainWindow>([] {});
    window->ShowProject();
    window->show();
    QApplication::processEvents();
  }
  ~Window() override {
    window.reset();
    UIF::SetMessageBoxHook(nullptr);
  }

  QTreeWidget* Tree() { return window->findChild<QTreeWidget*>(); }
  std::string Title() { return window->windowTitle().toStdString(); }
  // As a person would drop them, on that widget.
  bool Drop(QWidget* target, const std::vector<fs::path>& files) {
    QMimeData dropped;
    QList<QUrl> urls;
    for (const fs::path& file : files)
      urls.push_back(QUrl::fromLocalFile(QString::fromStdString(file.string())));
    dropped.setUrls(urls);
    QDragEnterEvent entered(QPoint(2, 2), Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &entered);
    QDropEvent event(QPointF(2, 2), Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &event);
    QApplication::processEvents();
    return entered.isAccepted() && event.isAccepted();
  }

  std::unique_ptr<App::MainWindow> window;
  std::vector<std::string> said;
};

TEST_F(Window, SaysInItsTitleWhatIsOpen) {
  EXPECT_EQ(Title(), "Harbour — Captivo");
}

TEST_F(Window, CallsAProjectWithoutANameUntitled) {
  clip = nullptr;
  ASSERT_FALSE(session().NewProject());
  window->ShowProject();
  EXPECT_EQ(Title(), "untitled — Captivo");
}

TEST_F(Window, MarksAReadOnlyProjectInItsTitle) {
  project()->SetReadOnly(true);
  window->ShowProject();
  EXPECT_EQ(Title(), "Harbour (read-only) — Captivo");
}

TEST_F(Window, ShowsEachClipWithItsStreamsBelowIt) {
  ASSERT_TRUE(session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1));
  QApplication::processEvents();
  ASSERT_EQ(Tree()->topLevelItemCount(), 1);
  EXPECT_EQ(Tree()->topLevelItem(0)->text(0), "Harbour");
  ASSERT_EQ(Tree()->topLevelItem(0)->childCount(), 1);
  EXPECT_EQ(Tree()->topLevelItem(0)->child(0)->text(0), App::ToQString(zebcaptioning::GetFullStreamFormatLabel(cc1)));
  EXPECT_EQ(Tree()->topLevelItem(0)->child(0)->text(1), "2 captions");
}

TEST_F(Window, TakesAStreamAwayFromTheBinWhenItsImportIsUndone) {
  ASSERT_TRUE(session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1));
  QApplication::processEvents();
  session().Undo();
  QApplication::processEvents();
  EXPECT_EQ(Tree()->topLevelItem(0)->childCount(), 0);
}

TEST_F(Window, SelectsAClipForTheHostWhenItIsClickedInTheBin) {
  const auto second = AddClip("Second");
  QApplication::processEvents();
  window->ShowProject();
  Tree()->setCurrentItem(Tree()->topLevelItem(1));
  EXPECT_EQ(session().GetSelectedClip(), second);
}

TEST_F(Window, IsOnTheClipAgainThatWasSelectedWhenTheProjectWasLastOpen) {
  const auto second = AddClip("Second");
  window->ShowProject();
  Tree()->setCurrentItem(Tree()->topLevelItem(1));
  const std::string id = second->GetID();
  clip = nullptr;
  session().CloseProject();
  ASSERT_FALSE(session().OpenProject(folder / "Harbour.captivo"));
  window->ShowProject();
  ASSERT_TRUE(session().GetSelectedClip());
  EXPECT_EQ(session().GetSelectedClip()->GetID(), id);
}

TEST_F(Window, UndoesTheProjectsLastStepWhileATextFieldHasTheFocus) {
  ASSERT_TRUE(session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1));
  auto* line = new QLineEdit;
  window->statusBar()->addPermanentWidget(line);
  line->show();
  window->activateWindow();
  line->setFocus();
  QTest::keyClicks(line, "gull");
  QTest::keyClick(line, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_THAT(clip->GetStreams(), IsEmpty());
  EXPECT_EQ(line->text(), "gull");
  QTest::keyClick(line, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(clip->GetStreams().size(), 1u);
}

TEST_F(Window, TakesACaptionFileThatIsDroppedAnywhere) {
  const fs::path path = folder.Write("good.srt", kTwoCaptions);
  EXPECT_TRUE(Drop(window->menuBar(), {path}));
  ASSERT_EQ(clip->GetStreams().size(), 1u);
  EXPECT_EQ(clip->GetStreams()[0]->GetCaptionCount(), 2u);
  EXPECT_THAT(said, IsEmpty());
}

TEST_F(Window, TakesACaptionFileThatIsDroppedOnATextAsAFileAndNotAsItsName) {
  auto* text = new QTextEdit;
  window->statusBar()->addPermanentWidget(text);
  text->show();
  EXPECT_TRUE(Drop(text->viewport(), {folder.Write("good.srt", kTwoCaptions)}));
  EXPECT_EQ(clip->GetStreams().size(), 1u);
  EXPECT_TRUE(text->toPlainText().isEmpty());
}

TEST_F(Window, GivesDroppedCaptionsToTheClipOfTheirName) {
  const auto other = project()->AddClip(u"Quay", folder / "quay.mp4", clip->GetMediaInfo(), false);
  Drop(window->menuBar(), {folder.Write("quay.srt", kTwoCaptions)});
  EXPECT_EQ(other->GetStreams().size(), 1u);
  EXPECT_THAT(clip->GetStreams(), IsEmpty());
}

TEST_F(Window, SaysOnceWhatIsWrongWithADroppedFolder) {
  const Picture before = TakePicture();
  fs::create_directory(folder / "things");
  Drop(window->menuBar(), {folder / "things"});
  ASSERT_EQ(said.size(), 1u);
  EXPECT_THAT(said[0], HasSubstr("things"));
  EXPECT_EQ(TakePicture(), before);
}

TEST_F(Window, SaysOnceThatABrokenProjectCannotBeOpened) {
  const Picture before = TakePicture();
  Drop(window->menuBar(), {folder.Write("letter.captivo", "Dear reader")});
  ASSERT_EQ(said.size(), 1u);
  EXPECT_THAT(said[0], HasSubstr("letter"));
  EXPECT_EQ(TakePicture(), before);
  EXPECT_EQ(Title(), "Harbour — Captivo");
}

TEST_F(Window, MarksAClipWhoseFileHasGoneAsOffline) {
  project()->AddClip(u"Gone", folder / "gone.mp4", clip->GetMediaInfo(), false);
  window->ShowProject();
  EXPECT_THAT(Tree()->topLevelItem(1)->text(1).toStdString(), HasSubstr("Offline"));
}

TEST_F(Window, SaysThatThePanelIsMissingWhenItsModuleIsNotThere) {
  window->RestoreLayout(false);
  bool found = false;
  for (const QLabel* label : window->statusBar()->findChildren<QLabel*>())
    found = found || (!label->isHidden() && label->text().contains("Captions panel"));
  EXPECT_TRUE(found);
}

// The same with the panel, loaded as the program loads it.
class WindowWithPanel : public Window {
 protected:
  WindowWithPanel() {
    EXPECT_GE(HSL::ModuleLoader::LoadAll(fs::path(CAPTIVO_BINARY_DIR) / "modules"), 1);
    module = HSL::Module::CreateModule(HSL::kCaptionsModuleID, u"captions");
    EXPECT_TRUE(session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1));
    MakeWindow();
  }
  ~WindowWithPanel() override { window.reset(); }
  void MakeWindow() {
    window.reset();
    window = std::make_unique<App::MainWindow>([] {});
    window->RestoreLayout(false);
    window->ShowProject();
    window->show();
    QApplication::processEvents();
  }
  UIF::TabView* Panel() {
    return UIF::Workspace::Instance() ? UIF::Workspace::Instance()->FindTabView(HSL::kCaptionsHandlerID) : nullptr;
  }

  std::unique_ptr<HSL::Module> module;
};

TEST_F(WindowWithPanel, DocksTheCaptionsPanel) {
  ASSERT_TRUE(Panel());
  EXPECT_TRUE(Panel()->IsShown());
}

TEST_F(WindowWithPanel, CanBeMadeAnewInAnotherThemeWithItsPanel) {
  UIF::ApplyTheme(UIF::Theme::Dark);
  MakeWindow();
  ASSERT_TRUE(Panel());
  EXPECT_TRUE(Panel()->IsShown());
}

TEST_F(WindowWithPanel, HidesThePanelWithItsDockAndShowsItAgain) {
  ASSERT_TRUE(Panel());
  auto* dock = dynamic_cast<QDockWidget*>(Panel()->GetFrame());
  ASSERT_TRUE(dock);
  dock->close();
  EXPECT_FALSE(Panel()->IsShown());
  session().OpenCaptions();
  EXPECT_TRUE(Panel()->IsShown());
}

TEST(ProblemsAsText, HasALineForEachProblemAndADashWhereThereIsNoLine) {
  EXPECT_EQ(App::ProblemsAsText({{12, "no end time"}, {0, "colours"}}).toStdString(), "12\tno end time\n–\tcolours\n");
}

// The program as a whole, on the sample, in a home of its own.
class Program : public ::testing::Test {
 protected:
  int Run(const std::string& arguments) {
    const std::string call = "XDG_DATA_HOME='" + (folder / "data").string() + "' XDG_CONFIG_HOME='" +
                             (folder / "config").string() +
                             "' QT_QPA_PLATFORM=offscreen '" CAPTIVO_BINARY_DIR "/captivo' " + arguments + " >'" +
                             (folder / "out").string() + "' 2>'" + (folder / "err").string() + "'";
    return std::system(call.c_str());
  }
  Folder folder;
};

TEST_F(Program, RendersItsWindowIntoAPictureOfTheSizeAskedFor) {
  const fs::path picture = folder / "window.png";
  ASSERT_EQ(Run("--picture '" + picture.string() + "' --size 1000x600 --theme dark"), 0) << ReadFile(folder / "err");
  EXPECT_EQ(ReadFile(folder / "out"), picture.string() + "\n");
  const QImage image(QString::fromStdString(picture.string()));
  EXPECT_EQ(image.size(), QSize(1000, 600));
  EXPECT_LT(image.pixelColor(500, 590).lightness(), 128);
}

TEST_F(Program, RefusesAnOptionItDoesNotKnow) {
  EXPECT_NE(Run("--no-such-thing"), 0);
  EXPECT_NE(Run("--picture x.png --size huge"), 0);
  EXPECT_THAT(ReadFile(folder / "err"), HasSubstr("--size"));
}

TEST_F(Program, SaysWhatIsWrongWithAFileAndGoesOn) {
  ASSERT_EQ(Run("--picture '" + (folder / "window.png").string() + "' '" + (folder / "gone.mp4").string() + "'"), 0);
  EXPECT_THAT(ReadFile(folder / "err"), HasSubstr("gone.mp4"));
}

} // namespace AppTest
