#include <gmock/gmock.h>

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTest>
#include <QTextEdit>
#include <QTreeWidget>

#include <algorithm>

#include "WindowSupport.h"
#include "zebcore/Clock.h"
#include "zebui/NodeManager.h"

// The window and the panel in it, as a user meets them.
namespace AppTest {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

using Texts = std::vector<std::string>;

constexpr const char* kThreeCaptions = "1\n00:00:01,000 --> 00:00:02,000\nOne\n\n"
                                       "2\n00:00:03,000 --> 00:00:04,000\nTwo\n\n"
                                       "3\n00:00:05,000 --> 00:00:06,000\nThree\n";

} // namespace

class PanelInWindow : public WindowWithPanel {
 protected:
  PanelInWindow() : cc2(App::GetStreamFormat("cea608", 2)) {
    window->resize(1200, 900);
    window->activateWindow();
    Settle();
  }

  // What is posted, and what that posts.
  static void Settle() {
    for (int i = 0; i < 5; ++i)
      QApplication::processEvents();
  }

  std::vector<QTextEdit*> TextFields() {
    // Those of the rows: what is typed into in the bar is one line high.
    constexpr int kOneLine = 40;
    std::vector<QTextEdit*> fields;
    for (QTextEdit* field : window->findChildren<QTextEdit*>())
      if (field->isVisible() && field->height() > kOneLine)
        fields.push_back(field);
    std::sort(fields.begin(), fields.end(), [this](const QTextEdit* a, const QTextEdit* b) {
      return a->mapTo(window.get(), QPoint()).y() < b->mapTo(window.get(), QPoint()).y();
    });
    return fields;
  }
  Texts Rows() {
    Texts rows;
    for (const QTextEdit* field : TextFields())
      rows.push_back(field->toPlainText().toStdString());
    return rows;
  }

  InterfaceRef<BE::CaptioningStream> Import(const char* text, zebcaptioning::StreamFormat format) {
    auto report = session().ImportCaptions(clip, folder.Write("more.srt", text), format);
    EXPECT_TRUE(report) << report.problem.text;
    Settle();
    return report ? report.value->stream : nullptr;
  }
  InterfaceRef<BE::CaptioningStream> First() { return clip->GetStreams().at(0); }

  // Changes a caption from elsewhere, at once and as a step of its own.
  void Retype(const InterfaceRef<BE::CaptioningStream>& stream, const std::string& text) {
    std::vector<BE::ICaptioningStream::CaptionKey> keys;
    stream->GetCaptionKeys(keys);
    const zebcaptioning::CaptionStatePtr before = stream->GetCaption(keys.at(0))->GetState();
    const boost::intrusive_ptr<zebcaptioning::CaptionState> after(new zebcaptioning::CaptionState(*before));
    after->text = zebcore::FromUTF8(text);
    project()->EditCaptions(stream, {{keys.at(0), 0, before, after}}, u"Edit");
    Settle();
  }

  // The panel looks every now and then for where the caret went.
  static void NoticeCaret() {
    auto& clock = zebcore::Clock::Instance();
    clock.UseManual();
    clock.SetNow(clock.Now() + 1000);
    zebui::ui::UI_NodeManager::Get(true)->FireDueTimers();
    clock.UseReal();
  }

  QAction* Entry(const QString& text) {
    for (QAction* action : window->findChildren<QAction*>())
      if (action->text().remove(u'&') == text)
        return action;
    return nullptr;
  }
  QTreeWidgetItem* StreamItem(int index) { return Tree()->topLevelItem(0)->child(index); }
  Texts MarkedStreams() {
    Texts marked;
    for (int i = 0; i < Tree()->topLevelItem(0)->childCount(); ++i)
      if (StreamItem(i)->font(0).bold())
        marked.push_back(StreamItem(i)->text(0).toStdString());
    return marked;
  }
  static std::string Name(zebcaptioning::StreamFormat format) {
    return App::ToQString(zebcaptioning::GetFullStreamFormatLabel(format)).toStdString();
  }

  zebcaptioning::StreamFormat cc2;
};

TEST_F(PanelInWindow, ShowsTheCaptionsOfTheSelectedClip) {
  EXPECT_EQ(Rows(), (Texts{"The harbour wakes.", "A gull calls."}));
}

// --- Streams that come and go while their clip is selected

TEST_F(PanelInWindow, ShowsRowsAtOnceWhenCaptionsAreImportedIntoASelectedEmptyClip) {
  clip = AddClip("Empty");
  window->ShowProject();
  Tree()->setCurrentItem(Tree()->topLevelItem(1));
  Settle();
  ASSERT_EQ(session().GetSelectedClip(), clip);
  EXPECT_THAT(Rows(), IsEmpty());
  Import(kThreeCaptions, cc1);
  EXPECT_EQ(Rows(), (Texts{"One", "Two", "Three"}));
}

TEST_F(PanelInWindow, ShowsRowsOfADroppedFileInTheFirstClipOfANewProject) {
  clip = nullptr;
  ASSERT_FALSE(session().NewProject(folder / "Second.captivo"));
  clip = AddClip("Quay");
  window->ShowProject();
  Settle();
  EXPECT_THAT(Rows(), IsEmpty());
  Drop(window->menuBar(), {folder.Write("quay.srt", kThreeCaptions)});
  Settle();
  EXPECT_EQ(Rows(), (Texts{"One", "Two", "Three"}));
}

TEST_F(PanelInWindow, FollowsTheFirstStreamOfAClipThroughUndoAndRedo) {
  EXPECT_TRUE(session().Undo());
  Settle();
  EXPECT_THAT(Rows(), IsEmpty());
  EXPECT_TRUE(session().Redo());
  Settle();
  EXPECT_EQ(Rows(), (Texts{"The harbour wakes.", "A gull calls."}));
  Retype(First(), "Retyped");
  EXPECT_EQ(Rows(), (Texts{"Retyped", "A gull calls."}));
}

TEST_F(PanelInWindow, HearsOfTheNextStreamWhenTheOneOnShowWasDeleted) {
  const auto second = Import(kThreeCaptions, cc2);
  session().DeleteStream(First());
  Settle();
  EXPECT_EQ(Rows(), (Texts{"One", "Two", "Three"}));
  Retype(second, "Eins");
  EXPECT_EQ(Rows(), (Texts{"Eins", "Two", "Three"}));
}

TEST_F(PanelInWindow, UndoAfterDeletingTheFirstOfTwoStreamsRefreshesItsRows) {
  const auto second = Import(kThreeCaptions, cc2);
  session().DeleteStream(First());
  Settle();
  Retype(second, "Eins");
  EXPECT_TRUE(session().Undo());
  Settle();
  EXPECT_EQ(Rows(), (Texts{"One", "Two", "Three"}));
  // The deletion itself: what was on show is on show again, and is heard of.
  EXPECT_TRUE(session().Undo());
  Settle();
  EXPECT_EQ(Rows(), (Texts{"The harbour wakes.", "A gull calls."}));
  Retype(First(), "Back");
  EXPECT_EQ(Rows(), (Texts{"Back", "A gull calls."}));
}

TEST_F(PanelInWindow, LeavesTheTextOfAStreamThatIsDeletedWhileSomeoneTypesInIt) {
  const auto second = Import(kThreeCaptions, cc2);
  QTextEdit* field = TextFields().at(0);
  QTest::mouseClick(field->viewport(), Qt::LeftButton);
  QTest::keyClicks(field, "x");
  session().DeleteStream(First());
  Settle();
  Retype(second, "Eins");
  EXPECT_EQ(Rows(), (Texts{"Eins", "Two", "Three"}));
}

TEST_F(PanelInWindow, StaysInTheTextWhileAnotherStreamComesAndGoes) {
  QTextEdit* field = TextFields().at(0);
  QTest::mouseClick(field->viewport(), Qt::LeftButton);
  field = TextFields().at(0);
  ASSERT_TRUE(field->hasFocus());
  const auto second = Import(kThreeCaptions, cc2);
  session().DeleteStream(second);
  Settle();
  EXPECT_TRUE(TextFields().at(0)->hasFocus());
  EXPECT_EQ(Rows(), (Texts{"The harbour wakes.", "A gull calls."}));
}

TEST_F(PanelInWindow, StaysOnAStreamWhoseFormatChanges) {
  const auto stream = First();
  Import(kThreeCaptions, cc2);
  const auto cc3 = App::GetStreamFormat("cea608", 3);
  ASSERT_FALSE(project()->ChangeStreamFormat(stream, cc3, u"Format"));
  Settle();
  EXPECT_EQ(Rows(), (Texts{"The harbour wakes.", "A gull calls."}));
  EXPECT_EQ(MarkedStreams(), Texts{Name(cc3)});
  Retype(stream, "Third");
  EXPECT_EQ(Rows(), (Texts{"Third", "A gull calls."}));
}

TEST_F(PanelInWindow, ShowsNothingOfAClipWhoseRemovalIsDoneAgain) {
  session().RemoveClip(clip);
  EXPECT_TRUE(session().Undo());
  session().SelectClip(clip);
  Settle();
  ASSERT_EQ(Rows().size(), 2u);
  EXPECT_TRUE(session().Redo());
  Settle();
  EXPECT_THAT(Rows(), IsEmpty());
  EXPECT_FALSE(session().GetSelectedClip());
}

TEST_F(PanelInWindow, SaysWhatToDoWhereThereIsNothingToShow) {
  const auto hint = [this] {
    const auto* label = window->findChild<QLabel*>("hint");
    return label->isVisible() ? label->text().toStdString() : std::string();
  };
  EXPECT_EQ(hint(), "");
  clip = AddClip("Empty");
  window->ShowProject();
  Tree()->setCurrentItem(Tree()->topLevelItem(1));
  Settle();
  EXPECT_THAT(hint(), HasSubstr("Import a caption file"));
  ASSERT_TRUE(session().NewStream(clip, cc1));
  Settle();
  EXPECT_THAT(hint(), HasSubstr("+ button"));
  session().SelectNothing();
  Settle();
  EXPECT_THAT(hint(), HasSubstr("select in the project"));
}

// --- Choosing a stream

TEST_F(PanelInWindow, ShowsTheStreamThatIsChosenInTheBinAndTheBinMarksIt) {
  Import(kThreeCaptions, cc2);
  EXPECT_EQ(MarkedStreams(), Texts{Name(cc1)});
  Tree()->setCurrentItem(StreamItem(1));
  Settle();
  EXPECT_EQ(Rows(), (Texts{"One", "Two", "Three"}));
  EXPECT_EQ(MarkedStreams(), Texts{Name(cc2)});
  Tree()->setCurrentItem(StreamItem(0));
  Settle();
  EXPECT_EQ(Rows(), (Texts{"The harbour wakes.", "A gull calls."}));
  EXPECT_EQ(MarkedStreams(), Texts{Name(cc1)});
}

TEST_F(PanelInWindow, ShowsTheStreamOfAnotherClipThatIsChosenInTheBin) {
  Import(kThreeCaptions, cc2);
  AddClip("Other");
  window->ShowProject();
  Tree()->setCurrentItem(Tree()->topLevelItem(1));
  Settle();
  EXPECT_THAT(Rows(), IsEmpty());
  EXPECT_THAT(MarkedStreams(), IsEmpty());
  Tree()->setCurrentItem(StreamItem(1));
  Settle();
  EXPECT_EQ(Rows(), (Texts{"One", "Two", "Three"}));
  EXPECT_EQ(MarkedStreams(), Texts{Name(cc2)});
}

TEST_F(PanelInWindow, ShowsAStreamThatWasImportedBesideAnother) {
  Drop(window->menuBar(), {folder.Write("more.srt", kThreeCaptions)});
  Settle();
  EXPECT_EQ(Rows(), (Texts{"One", "Two", "Three"}));
}

TEST_F(PanelInWindow, IsOnTheChosenStreamAgainInAWindowThatWasMadeAnew) {
  Import(kThreeCaptions, cc2);
  Tree()->setCurrentItem(StreamItem(1));
  MakeWindow();
  window->resize(1200, 900);
  Settle();
  EXPECT_EQ(Rows(), (Texts{"One", "Two", "Three"}));
  EXPECT_EQ(MarkedStreams(), Texts{Name(cc2)});
}

// --- Commands

TEST_F(PanelInWindow, InsertsAMusicNoteWhereTheCaretIs) {
  QTextEdit* field = TextFields().at(0);
  QTest::mouseClick(field->viewport(), Qt::LeftButton);
  field = TextFields().at(0);
  QTest::keyClick(field, Qt::Key_Home);
  NoticeCaret();
  QTest::keyClick(field, Qt::Key_M, Qt::ControlModifier | Qt::ShiftModifier);
  Settle();
  EXPECT_EQ(Rows().at(0), "\u266AThe harbour wakes.");
}

TEST_F(PanelInWindow, MakesTheSelectedTextItalicByItsShortcut) {
  QTextEdit* field = TextFields().at(0);
  QTest::mouseClick(field->viewport(), Qt::LeftButton);
  field = TextFields().at(0);
  QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
  NoticeCaret();
  QTest::keyClick(field, Qt::Key_I, Qt::ControlModifier);
  project()->CommitOpenChanges();
  Settle();
  EXPECT_EQ(project()->GetUndoNames().size(), 2u);
}

TEST_F(PanelInWindow, HasEveryCommandOfTheMenuAndNoShortcutTwice) {
  std::map<QString, int> uses;
  for (const QAction* action : window->findChildren<QAction*>())
    for (const QKeySequence& keys : action->shortcuts())
      ++uses[keys.toString()];
  for (const auto& [keys, count] : uses)
    EXPECT_EQ(count, 1) << keys.toStdString();
  for (const char* text : {"Select All Captions", "Insert Music Note", "Bold", "Italic", "Underline", "Align Left",
                           "Align Center", "Align Right"})
    EXPECT_TRUE(Entry(text)) << text;
}

TEST_F(PanelInWindow, AnswersTheCaptionCommandsOnlyWhileTheUserWorksInIt) {
  auto* menu = qobject_cast<QMenu*>(Entry("Bold")->parent());
  Tree()->setFocus();
  Q_EMIT menu->aboutToShow();
  const bool before = Entry("Bold")->isEnabled();
  Q_EMIT menu->aboutToHide();
  QTest::mouseClick(TextFields().at(0)->viewport(), Qt::LeftButton);
  Q_EMIT menu->aboutToShow();
  EXPECT_FALSE(before);
  EXPECT_TRUE(Entry("Bold")->isEnabled());
  Q_EMIT menu->aboutToHide();
}

// --- A file that cannot be written any more

TEST_F(PanelInWindow, SaysInTheStatusBarAtOnceThatTheFileCannotBeWrittenAndTypingGoesOn) {
  QTextEdit* field = TextFields().at(0);
  QTest::mouseClick(field->viewport(), Qt::LeftButton);
  field = TextFields().at(0);
  fs::permissions(folder / "Harbour.captivo", fs::perms::owner_read);
  QTest::keyClick(field, Qt::Key_End);
  QTest::keyClicks(field, "!");
  Texts shown;
  for (const QLabel* label : window->statusBar()->findChildren<QLabel*>())
    if (!label->isHidden() && !label->text().isEmpty())
      shown.push_back(label->text().toStdString());
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_THAT(shown[0], HasSubstr("Harbour"));
  EXPECT_THAT(said, IsEmpty());
  EXPECT_TRUE(field->hasFocus());
  QTest::keyClicks(field, "?");
  EXPECT_EQ(Rows().at(0), "The harbour wakes.!?");

  fs::permissions(folder / "Harbour.captivo", fs::perms::owner_all);
  QTest::keyClicks(field, "!");
  for (const QLabel* label : window->statusBar()->findChildren<QLabel*>())
    EXPECT_TRUE(label->isHidden() || label->text().isEmpty()) << label->text().toStdString();
}

} // namespace AppTest
