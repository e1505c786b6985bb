#include <gmock/gmock.h>

#include <QAction>
#include <QLabel>
#include <QStatusBar>
#include <QTextEdit>

#include <unistd.h>

#include "WindowSupport.h"

// Projects that may be looked at and not changed, as the window and the panel in it show them.
namespace AppTest {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class ReadOnlyProject : public WindowWithPanel {
 protected:
  ReadOnlyProject() { Settle(); }

  static void Settle() {
    for (int i = 0; i < 8; ++i)
      QApplication::processEvents();
  }
  QAction* Entry(const QString& text) {
    for (QAction* action : window->findChildren<QAction*>())
      if (action->text().remove(u'&') == text)
        return action;
    return nullptr;
  }
  QAction* LockEntry() { return Entry("Lock Project (Read-Only)"); }
  std::string Notice() { return window->statusBar()->currentMessage().toStdString(); }
  bool ShowsSign() { return window->findChild<QLabel*>(QStringLiteral("read-only"))->isVisible(); }
  // Of the bottom row: usable only where captions may come and go.
  bool CanAdd() {
    for (const QWidget* widget : window->findChildren<QWidget*>())
      if (widget->isVisible() && widget->accessibleName() == "Add Caption")
        return widget->isEnabled();
    ADD_FAILURE() << "no add button";
    return false;
  }
  // Opened anew from its file, which the window shows.
  void Reopen(bool readOnly) {
    const fs::path path = project()->GetPath();
    clip = nullptr;
    session().NewProjectInMemory();
    window->OpenFiles({path}, readOnly);
    Settle();
    ASSERT_TRUE(project());
    clip = project()->GetClips().at(0);
  }
};

} // namespace

TEST_F(ReadOnlyProject, LockedByTheMenuSaysSoEverywhereAndThePanelFollows) {
  ASSERT_TRUE(CanAdd());
  LockEntry()->trigger();
  Settle();
  EXPECT_TRUE(project()->IsReadOnly());
  EXPECT_TRUE(LockEntry()->isChecked());
  EXPECT_THAT(Title(), HasSubstr("(read-only)"));
  EXPECT_TRUE(ShowsSign());
  EXPECT_THAT(Notice(), HasSubstr("open for reading only"));
  EXPECT_FALSE(CanAdd());
  LockEntry()->trigger();
  Settle();
  EXPECT_FALSE(project()->IsReadOnly());
  EXPECT_FALSE(LockEntry()->isChecked());
  EXPECT_EQ(Title(), "Harbour — Captivo");
  EXPECT_FALSE(ShowsSign());
  EXPECT_TRUE(CanAdd());
}

TEST_F(ReadOnlyProject, LockedByAnotherRoadIsShownToo) {
  project()->SetReadOnly(true);
  Settle();
  EXPECT_TRUE(LockEntry()->isChecked());
  EXPECT_THAT(Title(), HasSubstr("(read-only)"));
  EXPECT_FALSE(CanAdd());
}

TEST_F(ReadOnlyProject, EntriesThatChangeItAreOff) {
  LockEntry()->trigger();
  for (const char* text : {"Import Media…", "Import Captions…", "Delete Stream"}) {
    ASSERT_TRUE(Entry(text)) << text;
    EXPECT_FALSE(Entry(text)->isEnabled()) << text;
  }
  EXPECT_TRUE(Entry("Save Project As…")->isEnabled());
  EXPECT_TRUE(Entry("Export Captions…")->isEnabled());
}

TEST_F(ReadOnlyProject, RefusesWhatComesByOtherRoadsAndSaysWhy) {
  const fs::path captions = folder.Write("more.srt", kTwoCaptions);
  LockEntry()->trigger();
  Settle();
  const auto before = TakePicture();
  window->OpenFiles({captions, captions});
  EXPECT_THAT(said, ElementsAre(HasSubstr("open for reading only"))) << "once for all files";
  const auto imported = session().ImportCaptions(clip, captions, cc1);
  EXPECT_FALSE(imported);
  EXPECT_THAT(imported.problem.text, HasSubstr("open for reading only"));
  EXPECT_THAT(session().ImportMediaReport(captions).problem.text, HasSubstr("open for reading only"));
  EXPECT_THAT(session().NewStream(clip, cc1).problem.text, HasSubstr("open for reading only"));
  EXPECT_THAT(session().DuplicateStream(clip->GetStreams().at(0), cc1).problem.text,
              HasSubstr("open for reading only"));
  session().DeleteStream(clip->GetStreams().at(0));
  session().RemoveClip(clip);
  EXPECT_EQ(session().GetSelectedClip(), clip) << "a clip that stays, stays selected";
  EXPECT_FALSE(session().NewSequence(clip));
  EXPECT_EQ(TakePicture(), before);
}

TEST_F(ReadOnlyProject, UndoAndRedoAreRefusedWithANotice) {
  LockEntry()->trigger();
  Settle();
  window->statusBar()->clearMessage();
  const auto before = TakePicture();
  for (QAction* action : window->findChildren<QAction*>())
    if (action->shortcuts().contains(QKeySequence(Qt::CTRL | Qt::Key_Z)))
      action->trigger();
  EXPECT_EQ(TakePicture(), before);
  EXPECT_THAT(Notice(), HasSubstr("open for reading only"));
  LockEntry()->trigger();
  EXPECT_TRUE(session().Undo());
}

TEST_F(ReadOnlyProject, OpenedForReadingOnlyCanBeUnlockedAndIsThenWrittenToItsFile) {
  Reopen(true);
  ASSERT_TRUE(project()->IsReadOnly());
  EXPECT_TRUE(LockEntry()->isChecked());
  EXPECT_FALSE(CanAdd());
  clip = nullptr;
  LockEntry()->trigger();
  Settle();
  EXPECT_THAT(said, IsEmpty());
  ASSERT_FALSE(project()->IsReadOnly());
  clip = project()->GetClips().at(0);
  session().DeleteStream(clip->GetStreams().at(0));
  EXPECT_THAT(clip->GetStreams(), IsEmpty());
  Reopen(false);
  EXPECT_THAT(clip->GetStreams(), IsEmpty()) << "the change went into a copy";
}

TEST_F(ReadOnlyProject, OfAFileThatMayOnlyBeReadStaysLockedAndSaysWhatToDo) {
  if (geteuid() == 0)
    GTEST_SKIP() << "root may write everything";
  const fs::path path = project()->GetPath();
  clip = nullptr;
  session().NewProjectInMemory();
  fs::permissions(path, fs::perms::owner_read);
  window->OpenFiles({path});
  Settle();
  ASSERT_TRUE(project()->IsReadOnly());
  LockEntry()->trigger();
  Settle();
  EXPECT_TRUE(project()->IsReadOnly());
  EXPECT_TRUE(LockEntry()->isChecked());
  EXPECT_THAT(said, ElementsAre(HasSubstr("may only be read")));
}

TEST_F(ReadOnlyProject, SavedUnderAnotherNameIsACopyThatCanBeChanged) {
  Reopen(true);
  const fs::path original = project()->GetPath();
  const std::string bytes = ReadFile(original);
  ASSERT_FALSE(session().SaveProjectAs(folder / "Copy.captivo"));
  Settle();
  EXPECT_FALSE(project()->IsReadOnly());
  EXPECT_FALSE(LockEntry()->isChecked());
  EXPECT_FALSE(ShowsSign());
  EXPECT_TRUE(CanAdd());
  session().DeleteStream(clip->GetStreams().at(0));
  EXPECT_EQ(ReadFile(original), bytes);
  // Locking and unlocking the copy goes without reading it anew.
  const auto same = project();
  LockEntry()->trigger();
  LockEntry()->trigger();
  EXPECT_EQ(project(), same);
  EXPECT_FALSE(project()->IsReadOnly());
}

} // namespace AppTest
