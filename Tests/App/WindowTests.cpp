#include <gmock/gmock.h>

#include <QDialog>
#include <QDockWidget>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <QTextEdit>
#include <QTimer>

#include <sys/wait.h>

#include <thread>

#include "App/session/Background.h"
#include "App/window/ProblemsWindow.h"
#include "App/window/ProgressWindow.h"
#include "UIF/Theme.h"
#include "WindowSupport.h"

namespace AppTest {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

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
  // A module stays in the process into which another test has loaded it.
  if (HSL::Module::CreateModule(HSL::kCaptionsModuleID, u"captions"))
    GTEST_SKIP() << "the panel's module is there";
  window->RestoreLayout(false);
  bool found = false;
  for (const QLabel* label : window->statusBar()->findChildren<QLabel*>())
    found = found || (!label->isHidden() && label->text().contains("Captions panel"));
  EXPECT_TRUE(found);
}

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

// --- Progress of what takes long

// Without a wait before it shows itself. Its button is pressed as soon as the program is free to hear of it.
class Progress : public Window {
 protected:
  QDialog* Dialog() {
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (auto* dialog = qobject_cast<QDialog*>(widget); dialog && dialog->isVisible())
        return dialog;
    return nullptr;
  }
  void PressCancelSoon() {
    QTimer::singleShot(0, [this] {
      ASSERT_TRUE(Dialog());
      Dialog()->findChild<QPushButton*>()->click();
    });
  }
};

TEST_F(Progress, ShowsHowFarItIsAndGoesWhenDone) {
  {
    App::ProgressWindow progress(window.get(), 0);
    EXPECT_TRUE(progress.GetProgress()(0.25, "Importing a file"));
    ASSERT_TRUE(Dialog());
    EXPECT_EQ(Dialog()->findChild<QLabel*>()->text(), "Importing a file");
    EXPECT_EQ(Dialog()->findChild<QProgressBar*>()->value(), Dialog()->findChild<QProgressBar*>()->maximum() / 4);
  }
  EXPECT_FALSE(Dialog());
}

TEST_F(Progress, OfSomethingShortIsNotShown) {
  App::ProgressWindow progress(window.get(), 1000000);
  EXPECT_TRUE(progress.GetProgress()(0.25, "Importing a file"));
  EXPECT_FALSE(Dialog());
}

TEST_F(Progress, OfASecondStageIsShownAtOnce) {
  App::ProgressWindow progress(window.get(), 1000000);
  EXPECT_TRUE(progress.GetProgress()(0.25, "Importing a file"));
  EXPECT_TRUE(progress.GetProgress()(0.85, "Storing a file"));
  ASSERT_TRUE(Dialog());
  EXPECT_EQ(Dialog()->findChild<QLabel*>()->text(), "Storing a file");
}

TEST_F(Progress, StopsAnImportByItsButtonAndLeavesEverythingAsItWas) {
  const Picture before = TakePicture();
  App::ProgressWindow progress(window.get(), 0);
  PressCancelSoon();
  const auto result =
      session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1, progress.GetProgress());
  EXPECT_FALSE(result);
  EXPECT_TRUE(progress.WasStopped());
  EXPECT_THAT(result.problem.text, HasSubstr("Nothing was changed"));
  EXPECT_EQ(TakePicture(), before);
}

// A job that goes on until it is told to stop.
TEST_F(Progress, StopsAJobThatIsUnderWayByItsButton) {
  App::ProgressWindow progress(window.get(), 0);
  int reports = 0;
  const auto watch = [&](double fraction, const std::string& what) {
    if (++reports == 3)
      PressCancelSoon();
    return progress.GetProgress()(fraction, what);
  };
  const auto result = App::RunInBackground<int>(
      [](App::JobState& state) {
        while (state.Report(0.5))
          std::this_thread::yield();
        return 1;
      },
      watch, "Reading", App::Stopping::ByItself);
  EXPECT_FALSE(result);
  EXPECT_TRUE(progress.WasStopped());
  EXPECT_GE(reports, 3);
}

TEST_F(Window, TellsThatALongImportIsBeingStored) {
  std::string many;
  for (int i = 0; i < 20000; ++i)
    many += std::to_string(i + 1) + "\n00:00:01," + std::to_string(100 + i % 900) + " --> 00:00:02,000\nx\n\n";
  std::vector<std::string> stages;
  const auto watch = [&](double, const std::string& what) {
    if (stages.empty() || stages.back() != what)
      stages.push_back(what);
    return true;
  };
  const auto report = session().ImportCaptions(clip, folder.Write("many.srt", many), cc1, watch);
  ASSERT_TRUE(report) << report.problem.text;
  ASSERT_EQ(stages.size(), 2u);
  EXPECT_THAT(stages[0], HasSubstr("Importing"));
  EXPECT_THAT(stages[1], HasSubstr("Storing"));
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

TEST_F(Program, OpensAFileThatIsNamedOnItsCommandLineAndComplainsOfNothing) {
  std::error_code error;
  fs::copy_file(fs::path(CAPTIVO_SOURCE_DIR) / "Samples" / "harbour.srt", folder / "harbour.srt", error);
  ASSERT_EQ(Run("--picture '" + (folder / "window.png").string() + "' '" CAPTIVO_SOURCE_DIR "/Samples/harbour.mp4' '" +
                (folder / "harbour.srt").string() + "'"),
            0);
  EXPECT_EQ(ReadFile(folder / "err"), "");
}

TEST_F(Program, ExplainsItselfWithoutADisplay) {
  const std::string noDisplay =
      "env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM '" CAPTIVO_BINARY_DIR "/captivo' ";
  const std::string output = " >'" + (folder / "out").string() + "' 2>'" + (folder / "err").string() + "'";
  ASSERT_EQ(std::system((noDisplay + "--help" + output).c_str()), 0) << ReadFile(folder / "err");
  EXPECT_THAT(ReadFile(folder / "out"), HasSubstr("--picture"));
  ASSERT_EQ(std::system((noDisplay + "--version" + output).c_str()), 0) << ReadFile(folder / "err");
  EXPECT_THAT(ReadFile(folder / "out"), HasSubstr("captivo "));
}

TEST_F(Program, SaysInWordsThatItNeedsADisplay) {
  const std::string call = "env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM '" CAPTIVO_BINARY_DIR "/captivo' 2>'" +
                           (folder / "err").string() + "'";
  EXPECT_EQ(WEXITSTATUS(std::system(call.c_str())), 2);
  EXPECT_THAT(ReadFile(folder / "err"), HasSubstr("no display"));
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
