#include <gmock/gmock.h>

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QTest>
#include <QTimer>

#include <algorithm>

#include "App/window/Settings.h"
#include "App/window/TimeDisplays.h"
#include "App/window/TimelineDock.h"
#include "App/window/TimelineMeasures.h"
#include "App/window/TimelineView.h"
#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "WindowSupport.h"

// The timeline in the window, and what the host's listeners hear of it.
namespace AppTest {

using App::TimelineSelection;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using What = TimelineSelection::What;
using zebcore::messaging::MessageCast;
using zebmediatypes::TickTime;

namespace {

// The messages of selection, opening and display, by name.
class Hearer : public zebcore::messaging::Listener {
 public:
  Hearer() {
    for (const auto& station :
         {MZ::kStation_Info, MZ::kStation_MasterClipActivation, MZ::kStation_SequenceActivation,
          MZ::kStation_BinActivation, MZ::kStation_ClosedCaptionsActivation, HSL::kStation_CaptionSelection,
          zebcore::utility::ImmutableString(UIF::kStation_SourceTimeDisplayChanged),
          zebcore::utility::ImmutableString(UIF::kStation_SequenceTimeDisplayChanged)})
      zebcore::messaging::AddListener(station, this);
  }
  void HandleMessage(const zebcore::messaging::Message& message) override {
    Note<MZ::VideoTrackItemInfoMessage>(message, "video");
    Note<MZ::AudioVideoTrackItemInfoMessage>(message, "audio and video");
    Note<MZ::AudioTrackItemInfoMessage>(message, "audio");
    Note<MZ::TransitionTrackItemInfoMessage>(message, "transition");
    Note<MZ::EmptyTrackItemInfoMessage>(message, "empty");
    Note<MZ::NothingInfoMessage>(message, "nothing");
    Note<MZ::SequenceSelectedMessage>(message, "sequence");
    Note<MZ::BinSelectedMessage>(message, "bin");
    Note<MZ::SequenceSettingsChangedMessage>(message, "settings");
    if (const auto* clip = MessageCast<MZ::MasterClipSelectedMessage>(message))
      heard.push_back(clip->clip ? "clip" : "no clip");
    if (const auto* source = MessageCast<HSL::SourceClipSelectedMessage>(message))
      heard.push_back("source " + std::to_string(source->kind));
    if (const auto* opened = MessageCast<MZ::CaptioningTrackItemOpenedMessage>(message)) {
      heard.push_back("opened");
      openedAt = opened->time;
    }
    if (const auto* display = MessageCast<UIF::HotTimecodeVideoTimeDisplayChangedMessage>(message))
      heard.push_back("display " + std::to_string(display->display.GetNumber()));
  }
  std::vector<std::string> heard;
  TickTime openedAt;

 private:
  template <class M> void Note(const zebcore::messaging::Message& message, const char* name) {
    if (MessageCast<M>(message))
      heard.push_back(name);
  }
};

App::TimelineDock& FindTimeline(const App::MainWindow& window) {
  return dynamic_cast<App::TimelineDock&>(*window.findChild<QDockWidget*>(QStringLiteral("timeline")));
}

} // namespace

class TimelineInWindow : public Window {
 protected:
  TimelineInWindow() {
    App::timedisplays::Choose(App::timedisplays::Which::Source, zebmediatypes::kTimeDisplay_Invalid);
    App::timedisplays::Choose(App::timedisplays::Which::Sequence, zebmediatypes::kTimeDisplay_Invalid);
    length = clip->GetMediaInfo().duration;
    sequence = session().NewSequence(clip);
    second = session().PutClip(sequence, clip, length, 0);
    session().PutClip(sequence, clip, TickTime(3 * length.GetTicks()), 0);
    session().AddDissolve(sequence, sequence->GetItems().at(0), second);
    window->resize(1200, 800);
    Dock().RefreshNow();
    QApplication::processEvents();
    View().ZoomToFit();
  }
  App::TimelineDock& Dock() { return FindTimeline(*window); }
  App::TimelineView& View() { return Dock().GetView(); }
  // On V1, at a time in lengths of the clip; below the names, where dissolves are.
  QPoint Place(double lengths, int lane = 1, bool onName = true) {
    const QRect rect = View().LaneRect(lane);
    return {View().XOf(TickTime(static_cast<std::int64_t>(lengths * static_cast<double>(length.GetTicks())))),
            onName ? rect.top() + 6 : rect.bottom() - 8};
  }
  void Click(const QPoint& point) { QTest::mouseClick(View().viewport(), Qt::LeftButton, {}, point); }

  TickTime length;
  InterfaceRef<BE::Sequence> sequence;
  InterfaceRef<BE::TrackItem> second;
};

TEST_F(TimelineInWindow, AClickSaysWhatLiesThere) {
  Hearer hearer;
  Click(Place(0.5));
  Click(Place(1.0, 1, false));
  Click(Place(2.5));
  Click(Place(0.5, 0));
  EXPECT_THAT(hearer.heard, ElementsAre("video", "transition", "empty", "nothing"));
}

TEST_F(TimelineInWindow, AnItemSaysWhichOfItsMediaItHas) {
  auto item = App::MakeSequenceItem(clip, TickTime(), 1);
  item.audio = true;
  project()->InsertItem(sequence, item, u"Add");
  item.video = false;
  item.start = length + length;
  project()->InsertItem(sequence, item, u"Add");
  Dock().RefreshNow();
  Hearer hearer;
  Click(Place(0.5, 1));
  Click(Place(2.5, 4, true));
  EXPECT_THAT(hearer.heard, ElementsAre("audio and video", "audio"));
  EXPECT_FALSE(session().GetSelectedClip());
}

TEST_F(TimelineInWindow, TheKeyboardReachesItemsDissolvesEmptySpotsAndNothing) {
  Hearer hearer;
  for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Escape})
    QTest::keyClick(&View(), key);
  EXPECT_THAT(hearer.heard, ElementsAre("video", "transition", "video", "empty", "nothing"));
}

TEST_F(TimelineInWindow, ASelectedItemIsSaidAgainToAPanelThatWasMade) {
  Click(Place(0.5));
  Hearer hearer;
  session().RepeatSelection();
  EXPECT_THAT(hearer.heard, ElementsAre("video"));
  EXPECT_EQ(session().GetSelectedClip(), clip);
}

TEST_F(TimelineInWindow, DeletingTakesTheItemAndUndoBringsItBack) {
  Click(Place(1.5));
  QTest::keyClick(&View(), Qt::Key_Delete);
  EXPECT_EQ(sequence->GetItems().size(), 2U);
  EXPECT_THAT(sequence->GetTransitions(), IsEmpty());
  session().Undo();
  EXPECT_EQ(sequence->GetItems().size(), 3U);
  EXPECT_EQ(sequence->GetTransitions().size(), 1U);
}

TEST_F(TimelineInWindow, DraggingAnItemMovesItInOneStepAndEscapeLeavesIt) {
  const std::size_t steps = project()->GetUndoNames().size();
  const QPoint from = Place(3.5);
  const QPoint to = Place(4.5);
  QTest::mousePress(View().viewport(), Qt::LeftButton, {}, from);
  QTest::mouseMove(View().viewport(), to);
  QTest::keyClick(&View(), Qt::Key_Escape);
  QTest::mouseRelease(View().viewport(), Qt::LeftButton, {}, to);
  EXPECT_EQ(project()->GetUndoNames().size(), steps);

  QTest::mousePress(View().viewport(), Qt::LeftButton, {}, from);
  QTest::mouseMove(View().viewport(), to);
  QTest::mouseRelease(View().viewport(), Qt::LeftButton, {}, to);
  EXPECT_EQ(project()->GetUndoNames().size(), steps + 1);
  EXPECT_GT(sequence->GetItems().at(2)->GetStart(), length + length + length);
  EXPECT_EQ(sequence->GetItems().at(2)->GetStart().GetTicks() % zebmediatypes::kFrameRate_25.GetTicksPerFrame(), 0);
}

TEST_F(TimelineInWindow, AClipDraggedFromTheBinLiesWhereItIsDropped) {
  QMimeData dragged;
  dragged.setData(QLatin1String(App::kClipMimeType), QByteArray::fromStdString(clip->GetID()));
  const QPoint place = Place(2.0, 0);
  QDragEnterEvent entered(place, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(View().viewport(), &entered);
  QDropEvent event(place, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(View().viewport(), &event);
  EXPECT_TRUE(event.isAccepted());
  ASSERT_EQ(sequence->GetItems().size(), 4U);
  EXPECT_EQ(sequence->GetItems().at(3)->GetTrack(), 1);
  EXPECT_EQ(sequence->GetItems().at(3)->GetStart(), length + length); // snapped to the cut
}

TEST_F(TimelineInWindow, ZoomKeepsWhatIsUnderTheMouseAndFitShowsAll) {
  const double fitting = View().GetTicksPerPixel();
  EXPECT_LE(View().XOf(TickTime(4 * length.GetTicks())), View().viewport()->width());
  const QPoint place = Place(2.0);
  QWheelEvent event(place, View().viewport()->mapToGlobal(place), {}, {0, 120}, Qt::NoButton, Qt::ControlModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(View().viewport(), &event);
  EXPECT_LT(View().GetTicksPerPixel(), fitting);
  EXPECT_NEAR(Place(2.0).x(), place.x(), 2);
  QTest::keyClick(&View(), Qt::Key_Plus);
  QTest::keyClick(&View(), Qt::Key_Minus);
  QTest::keyClick(&View(), Qt::Key_0);
  EXPECT_DOUBLE_EQ(View().GetTicksPerPixel(), fitting);
}

TEST_F(TimelineInWindow, WhatIsSelectedIsToldToThoseWhoDoNotSeeIt) {
  EXPECT_FALSE(View().accessibleName().isEmpty());
  const QString before = View().accessibleDescription();
  Click(Place(0.5));
  EXPECT_NE(View().accessibleDescription(), before);
  EXPECT_TRUE(View().accessibleDescription().contains(App::ToQString(clip->GetName())));
}

TEST_F(TimelineInWindow, AChosenDisplayGoesOutOnItsStationIsKeptAndWritesTheRuler) {
  Hearer hearer;
  App::timedisplays::Choose(App::timedisplays::Which::Source, zebmediatypes::kTimeDisplay_Milliseconds);
  App::timedisplays::Choose(App::timedisplays::Which::Sequence, zebmediatypes::kTimeDisplay_Frames);
  EXPECT_THAT(hearer.heard, ElementsAre("display 15", "display 12"));
  EXPECT_EQ(App::settings::GetTimeDisplay(true), 15);
  Dock().UpdateTimeDisplay();
  EXPECT_EQ(View().WriteTime(TickTime(zebmediatypes::kTicksPerSecond)), QStringLiteral("25"));
  App::timedisplays::SayAgain();
  EXPECT_EQ(hearer.heard.size(), 4U);
}

TEST_F(TimelineInWindow, TheSettingsDialogChangesRateAndDisplaysAndSaysSo) {
  Hearer hearer;
  QTimer::singleShot(0, window.get(), [] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_TRUE(dialog);
    auto* rate = dialog->findChild<QComboBox*>(QStringLiteral("rate"));
    rate->setCurrentIndex(rate->findText(QStringLiteral("24"), Qt::MatchStartsWith));
    dialog->accept();
  });
  ASSERT_TRUE(Dock().whenSettingsAsked);
  Dock().whenSettingsAsked();
  EXPECT_EQ(sequence->GetVideoFrameRate(), zebmediatypes::kFrameRate_24);
  EXPECT_EQ(sequence->GetVideoTimeDisplay(), zebmediatypes::kTimeDisplay_Timecode24);
  EXPECT_THAT(hearer.heard, ElementsAre("settings"));
}

TEST_F(TimelineInWindow, TheBinShowsSequencesAndSaysWhatIsSelectedInIt) {
  QApplication::processEvents();
  QTreeWidget* tree = Tree();
  ASSERT_EQ(tree->topLevelItemCount(), 2);
  Hearer hearer;
  const auto click = [&](QTreeWidgetItem* item) {
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualItemRect(item).center());
  };
  click(tree->topLevelItem(1));
  click(tree->topLevelItem(0));
  QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, QPoint(5, tree->viewport()->height() - 2));
  EXPECT_THAT(hearer.heard, ElementsAre("sequence", "clip", "bin"));
}

TEST_F(TimelineInWindow, AClipSelectedAgainAfterAnItemIsSaidAgain) {
  session().SelectClip(clip);
  Click(Place(0.5));
  Hearer hearer;
  window->SelectClipByNumber(1);
  EXPECT_THAT(hearer.heard, ElementsAre("clip"));
}

TEST_F(TimelineInWindow, SourcesAreSaidWithTheirKind) {
  Hearer hearer;
  session().SelectSourceClip(clip);
  session().SelectSourceClip(second);
  EXPECT_THAT(hearer.heard, ElementsAre("source 1", "source 2"));
  EXPECT_EQ(session().GetSelectedClip(), clip);
}

TEST_F(TimelineInWindow, NothingOfAReadOnlyProjectIsMovedOrDropped) {
  project()->SetReadOnly(true);
  QMimeData dragged;
  dragged.setData(QLatin1String(App::kClipMimeType), QByteArray::fromStdString(clip->GetID()));
  QDropEvent event(Place(2.0, 0), Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(View().viewport(), &event);
  EXPECT_FALSE(event.isAccepted());
  Click(Place(0.5));
  QTest::keyClick(&View(), Qt::Key_Right, Qt::AltModifier);
  QTest::keyClick(&View(), Qt::Key_Delete);
  EXPECT_EQ(sequence->GetItems().size(), 3U);
  EXPECT_EQ(sequence->GetItems().at(0)->GetStart(), TickTime());
}

// What is drawn is what drawing costs.
TEST_F(TimelineInWindow, DrawingManyItemsTakesNoMoreCallsThanTheViewHasPixels) {
  std::vector<BE::Project::SequenceItem> items;
  for (int at = 0; at < 5000; ++at) {
    items.push_back(App::MakeSequenceItem(clip, TickTime(at * length.GetTicks()), 0));
    items.back().duration = length;
  }
  const auto many = project()->AddSequence(u"Many", zebmediatypes::kFrameRate_25,
                                           zebmediatypes::FrameRate::FromRational(48000, 1), items);
  Dock().ShowSequence(many);
  View().ZoomToFit();
  EXPECT_EQ(View().GetModel().GetLanes().at(1).pieces.size(), 5000U);
  EXPECT_LT(View().FindPiecesDrawn(1).size(), static_cast<std::size_t>(View().viewport()->width()));
  for (int step = 0; step < 14; ++step)
    View().ZoomIn();
  EXPECT_LT(View().FindPiecesDrawn(1).size(), 40U);
  EXPECT_GT(View().FindPiecesDrawn(1).size(), 0U);
}

// The ruler above its ticks.
TEST_F(TimelineInWindow, NoTimeOfTheRulerIsCutAtTheRightEdge) {
  for (int width = 1200; width < 1260; width += 4) {
    window->resize(width, 800);
    QApplication::processEvents();
    View().ZoomToFit();
    const QImage picture = View().viewport()->grab().toImage();
    const QColor ground = View().palette().color(QPalette::Window);
    for (int y = 2; y < App::timeline::kRulerHeight - 10; ++y)
      EXPECT_EQ(picture.pixelColor(picture.width() - 1, y), ground) << width << " " << y;
  }
}

TEST_F(TimelineInWindow, SequencesOfOneClipAreToldApartByTheirNames) {
  const auto other = session().NewSequence(clip);
  const auto third = session().NewSequence(clip);
  EXPECT_EQ(other->GetName(), sequence->GetName() + u" 2");
  EXPECT_EQ(third->GetName(), sequence->GetName() + u" 3");
}

class TimelineWithPanel : public WindowWithPanel {};

TEST_F(TimelineWithPanel, OpeningAnItemSelectsItAndOpensItsCaptionsAtThatTime) {
  const auto sequence = session().NewSequence(clip);
  App::TimelineDock& dock = FindTimeline(*window);
  dock.RefreshNow();
  QApplication::processEvents();
  dock.GetView().ZoomToFit();
  Hearer hearer;
  const auto* piece = dock.GetView().GetModel().FindPiece(1, TickTime());
  ASSERT_TRUE(piece);
  // Between the two captions, so at the second.
  dock.GetView().whenItemOpened(App::TimelineModel::Piece(*piece), TickTime(5 * zebmediatypes::kTicksPerSecond / 2));
  EXPECT_THAT(hearer.heard, ElementsAre("video", "opened"));
  EXPECT_EQ(hearer.openedAt, TickTime(3 * zebmediatypes::kTicksPerSecond));
  ASSERT_TRUE(Panel());
  EXPECT_TRUE(Panel()->IsShown());
}

} // namespace AppTest
