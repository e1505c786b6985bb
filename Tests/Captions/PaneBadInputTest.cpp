#include <random>
#include <set>

#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Fading.h"
#include "Support.h"

// What a host should not send, and what it sends too much of.
namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;
using zebcore::messaging::BroadcastMessage;

class PaneBadInput : public PanelTest {
 protected:
  static boost::intrusive_ptr<Caption> At(const TickTime& begin, const TickTime& end, const UString& text = u"Text") {
    const boost::intrusive_ptr<zebcaptioning::CaptionState> state(
        new zebcaptioning::CaptionState(*MakeCaption(0, 1, text)->GetState()));
    state->begin = begin;
    state->end = end;
    return new Caption(zebcaptioning::CaptionStatePtr(state));
  }
  void Add(const std::vector<boost::intrusive_ptr<Caption>>& captions) {
    BE::CaptionsAddedMessage message;
    for (const auto& caption : captions)
      message.captions.emplace_back(stream, caption);
    Pane().HandleMessage(message);
  }
  // Puts them into the stream itself, which reports them.
  void Store(const std::vector<boost::intrusive_ptr<Caption>>& captions) {
    std::vector<BE::CaptionDelta> deltas;
    for (const auto& caption : captions) {
      BE::CaptionDelta delta;
      delta.after = caption->GetState();
      deltas.push_back(delta);
    }
    project->EditCaptions(stream, deltas, u"Add");
  }
  UString TextOf(double begin) {
    UString text;
    Row(begin)->GetCaption()->GetCaptionText(text, true);
    return text;
  }
  static Times BeginsIn(const BE::CaptioningStream& ofStream) {
    std::vector<boost::intrusive_ptr<Caption>> captions;
    ofStream.GetCaptions(captions);
    std::set<double> begins; // equal ones make one row
    for (const auto& caption : captions)
      begins.insert(zebmediatypes::ToSeconds(caption->GetBeginTime()));
    return {begins.begin(), begins.end()};
  }
  // Everything a person does to a list, over all of it.
  void UseEveryRow() {
    Paint();
    for (const double begin : Begins())
      Click(begin);
    for (const short key : {-36, -40, -34, -35, -38, -33})
      PressKey(key);
    Pane().SelectAllCaptions();
    Pane().SetFilterText(u"Text");
    Pane().SetFilterText(u"");
    Paint();
  }
  InterfaceRef<BE::MasterClip> AddOtherClip(const Times& begins) {
    const auto other = AddClip(u"Other");
    AddStream(other, MakeCaptions(begins));
    return other;
  }
};

} // namespace

TEST_F(PaneBadInput, CaptionsOfEqualTimesMakeOneRowThatHoldsTheLastOfThem) {
  OpenPanelOn({});
  Store({MakeCaption(1, 2, u"first"), MakeCaption(1, 2, u"second"), MakeCaption(3, 4, u"other")});
  EXPECT_EQ(Begins(), (Times{1, 3}));
  EXPECT_EQ(TextOf(1), u"second");
  Pane().ReloadCaptions();
  EXPECT_EQ(Begins(), (Times{1, 3}));
  EXPECT_EQ(TextOf(1), u"second");
  UseEveryRow();
  Click(1);
  Pane().DeleteSelectedCaptions();
  Pane().ReloadCaptions();
  EXPECT_EQ(TextOf(1), u"first");
}

TEST_F(PaneBadInput, ACaptionAtATimeThatHasARowMakesNoSecondOne) {
  OpenPanelOn({MakeCaption(1, 2, u"held")});
  Add({MakeCaption(1, 5, u"sent")});
  EXPECT_EQ(Begins(), (Times{1}));
  EXPECT_EQ(TextOf(1), u"held");
}

TEST_F(PaneBadInput, NegativeTimesComeFirst) {
  OpenPanelOn(MakeCaptions({1}));
  Store({MakeCaption(-5, -4), MakeCaption(-3, 2), MakeCaption(0, 1)});
  EXPECT_EQ(Begins(), (Times{-5, -3, 0, 1}));
  UseEveryRow();
  EXPECT_EQ(Begins(), (Times{-5, -3, 0, 1}));
  Pane().ReloadCaptions();
  EXPECT_EQ(Begins(), (Times{-5, -3, 0, 1}));
}

TEST_F(PaneBadInput, ACaptionThatEndsBeforeItBeginsIsARowLikeAnyOther) {
  OpenPanelOn(MakeCaptions({1, 9}));
  Store({MakeCaption(5, 2), MakeCaption(7, 7)});
  EXPECT_EQ(Begins(), (Times{1, 5, 7, 9}));
  UseEveryRow();
  Click(5);
  Pane().AddNewCaption();
  EXPECT_TRUE(boxes.empty());
  EXPECT_EQ(Begins(), (Times{1, 2, 5, 7, 9}));
  EXPECT_EQ(SelectedBegins(), (Times{2}));
}

TEST_F(PaneBadInput, CaptionsThatOverlapAreShownAndEachCanBeDeleted) {
  OpenPanelOn({});
  Store({MakeCaption(1, 10), MakeCaption(2, 9), MakeCaption(3, 4), MakeCaption(3.5, 20)});
  EXPECT_EQ(Begins(), (Times{1, 2, 3, 3.5}));
  UseEveryRow();
  for (const double begin : {2.0, 1.0, 3.5, 3.0}) {
    Click(begin);
    Pane().DeleteSelectedCaptions();
  }
  EXPECT_EQ(Begins(), Times{});
  EXPECT_EQ(stream->GetCaptionCount(), 0U);
}

TEST_F(PaneBadInput, CaptionsAtTheEndsOfTimeAreShown) {
  OpenPanelOn(MakeCaptions({1}));
  Store({At(kTime_Min, kTime_Max), At(kTime_Max, kTime_Min), At(kTime_Zero, kTime_Min)});
  EXPECT_EQ(Pane().GetRowCount(), 4U);
  EXPECT_EQ(List().GetFirstTime(), kTime_Min);
  EXPECT_EQ(List().GetLastTime(), kTime_Max);
  Paint();
  Pane().ReloadCaptions();
  Pane().SelectAllCaptions();
  Pane().DeleteSelectedCaptions();
  EXPECT_EQ(Pane().GetRowCount(), 0U);
  EXPECT_EQ(stream->GetCaptionCount(), 0U);
}

TEST_F(PaneBadInput, AShiftThatWrapsTimeIsFollowed) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Click(3);
  BE::CaptionsMovedMessage message;
  message.ranges.push_back({stream, kTime_Max, kTime_Min, kTime_Max});
  message.ranges.push_back({stream, Seconds(1), Seconds(5), kTime_Min});
  Pane().HandleMessage(message);
  EXPECT_EQ(Begins(), (Times{1, 3}));
  EXPECT_EQ(SelectedBegins(), (Times{3}));
}

TEST_F(PaneBadInput, ACaptionWithoutAnObjectIsPassedOver) {
  OpenPanelOn(MakeCaptions({1}));
  Add({nullptr, MakeCaption(3, 4), nullptr});
  EXPECT_EQ(Begins(), (Times{1, 3}));
  BE::CaptionsChangedMessage message;
  message.captions.emplace_back(stream, nullptr);
  message.captions.emplace_back(stream, MakeCaption(5, 6));
  Pane().HandleMessage(message);
  EXPECT_EQ(Begins(), (Times{1, 3, 5}));
}

TEST_F(PaneBadInput, AStreamWhoseCaptionsVanishWhileTheyAreReadThrowsTheHostsExceptionAndTheNextReloadMendsIt) {
  OpenPanel();
  const auto real = AddClip();
  const InterfaceRef<FadingStream> fading(new FadingStream(AddStream(real, MakeCaptions({1, 3, 5}))));
  const InterfaceRef<FadingClip> holder(new FadingClip(real));
  holder->stream = fading;
  fading->captionsThatAreThere = 2;
  EXPECT_THROW(Pane().SetSource(CaptionsSource(InterfaceRef<>(holder))), zebcore::classref::NullInterfaceException);
  EXPECT_EQ(fading->fetched, 3);
  Paint();
  fading->captionsThatAreThere = INT_MAX;
  Pane().ReloadCaptions();
  EXPECT_EQ(Begins(), (Times{1, 3, 5}));
  EXPECT_EQ(SelectedBegins(), (Times{1}));
}

// However often the pane has found the stream before it is gone, the rows are those of the stream or none.
TEST_F(PaneBadInput, AStreamThatVanishesBetweenAnyTwoCallsLeavesAPaneThatGoesOn) {
  OpenPanel();
  const auto real = AddClip();
  const auto realStream = AddStream(real, MakeCaptions({1, 3}));
  const InterfaceRef<FadingClip> fading(new FadingClip(real));
  CaptionsSource source{InterfaceRef<>(fading)};
  fading->looks = 0;
  Pane().SetSource(source);
  const int looks = fading->looks;
  ASSERT_GT(looks, 4);
  for (int found = 0; found < looks; ++found) {
    fading->looksThatFindStreams = INT_MAX;
    Pane().SetSource(CaptionsSource());
    ASSERT_EQ(Begins(), Times{});
    source = CaptionsSource(InterfaceRef<>(fading));
    fading->looks = 0;
    fading->looksThatFindStreams = found;
    Pane().SetSource(source);
    EXPECT_TRUE(Begins().empty() || Begins() == BeginsIn(*realStream)) << found;
    fading->looks = INT_MAX / 2; // gone for good
    Pane().ReloadCaptions();
    EXPECT_EQ(Begins(), Times{}) << found;
    Paint();
    PressKey(-40);
    Pane().AddNewCaption();
    Pane().ReloadCaptions();
    fading->looks = 0;
  }
}

TEST_F(PaneBadInput, AStreamThatIsDeletedWhileItsReloadWaitsLeavesTheClipsFirstOne) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto second = AddStream(clip, MakeCaptions({5}), zebcaptioning::kStreamFormat_608_CC1 + 1);
  Pane().SelectStreamFormat(1);
  second->SetBusy(true);
  Pane().ReloadCaptions();
  project->RemoveStream(second, u"Remove");
  second->SetBusy(false);
  Tick(500);
  EXPECT_EQ(Begins(), (Times{1, 3}));
  EXPECT_FALSE(Pane().IsUnavailable());
  project->RemoveStream(stream, u"Remove");
  Tick(500);
  EXPECT_EQ(Begins(), Times{});
  EXPECT_TRUE(Pane().IsUnavailable());
  ASSERT_TRUE(project->Undo());
  EXPECT_EQ(Begins(), (Times{1, 3}));
}

TEST_F(PaneBadInput, AStreamThatIsDeletedWhileASwitchToItWaitsShowsWhatIsLeftOfItsClip) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddOtherClip({5});
  stream->SetBusy(true);
  SelectClip(other);
  project->RemoveStream(other->GetStreams().front(), u"Remove");
  stream->SetBusy(false);
  Tick(500);
  EXPECT_EQ(Begins(), Times{});
  EXPECT_FALSE(Inspector::SourcePending(Pane()));
  EXPECT_TRUE(Pane().IsUnavailable());
}

TEST_F(PaneBadInput, AStreamThatIsDeletedWithAChangeOpenTakesItsRowsAlong) {
  OpenPanelOn({MakeCaption(1, 2, u"One"), MakeCaption(3, 4, u"Two")});
  FocusText(1);
  Text(1).SetValue(u"Other", true);
  project->RemoveStream(stream, u"Remove");
  EXPECT_EQ(Begins(), Times{});
  Pane().CommitChanges();
  Pane().AddNewCaption();
  PressKey(-46);
  Pane().ReloadCaptions();
  EXPECT_EQ(Begins(), Times{});
}

TEST_F(PaneBadInput, AClipThatIsRemovedWhileItsRowsStandIsLeftWhenTheHostSaysSo) {
  OpenPanelOn(MakeCaptions({1, 3}));
  project->RemoveClip(clip);
  MZ::MasterClipClosedMessage message;
  message.clip = clip;
  Pane().HandleMessage(message);
  EXPECT_EQ(Begins(), Times{});
}

// Random messages, of which only those of the stream on show may leave a trace. Every tenth or so falls into a wait.
TEST_F(PaneBadInput, MessagesOfManyStreamsInAnyOrderLeaveTheRowsOfTheOneOnShow) {
  zebcore::trace::SetOn(false);
  for (unsigned seed = 1; seed <= 10; ++seed) {
    std::mt19937 random(seed);
    const auto pick = [&random](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    OpenPanelOn({});
    zebcore::trace::SetOn(false);
    const std::vector<InterfaceRef<BE::CaptioningStream>> streams{stream, AddStream(AddClip(), {}),
                                                                  AddStream(AddClip(), {}), nullptr};
    std::set<double> model;
    bool waits = false;
    for (int step = 0; step < 500; ++step) {
      const auto& ofStream = streams[static_cast<std::size_t>(pick(4))];
      const double begin = pick(60) - 10;
      const auto caption = MakeCaption(begin, begin + pick(7) - 3);
      switch (pick(7)) {
      case 0:
      case 1: {
        BE::CaptionsAddedMessage message;
        message.captions.emplace_back(ofStream, caption);
        Pane().HandleMessage(message);
        if (ofStream == stream)
          model.insert(begin);
        break;
      }
      case 2: {
        BE::CaptionsChangedMessage message;
        message.captions.emplace_back(ofStream, caption);
        Pane().HandleMessage(message);
        if (ofStream == stream)
          model.insert(begin);
        break;
      }
      case 3:
      case 4: {
        BE::CaptionsRemovedMessage message;
        message.captions.emplace_back(ofStream, Seconds(begin));
        Pane().HandleMessage(message);
        if (ofStream == stream)
          model.erase(begin);
        break;
      }
      case 5: {
        BE::CaptionsMovedMessage message;
        message.ranges.push_back({ofStream, Seconds(begin), Seconds(begin + 5), Seconds(pick(3))});
        Pane().HandleMessage(message);
        break;
      }
      default:
        if (!waits) {
          stream->SetBusy(true);
          // A switch that is taken back again before it can run.
          SelectClip(AddClip());
          SelectClip(clip);
        } else {
          stream->SetBusy(false);
          Tick(250);
          ASSERT_FALSE(Inspector::DeferActive(Pane()));
        }
        waits = !waits;
        break;
      }
      if (pick(4) == 0)
        Paint();
      ASSERT_EQ(Begins(), Times(model.begin(), model.end())) << "seed " << seed << " step " << step;
      for (const double selected : SelectedBegins())
        ASSERT_TRUE(model.contains(selected)) << "seed " << seed << " step " << step;
    }
    if (waits)
      stream->SetBusy(false);
    Tick(250);
    SelectClip(nullptr);
  }
}

TEST_F(PaneBadInput, AHundredThousandAddedCaptionsInAsManyMessagesAreRowsInOrder) {
  OpenPanelOn({});
  zebcore::trace::SetOn(false);
  constexpr int kMessages = 100000;
  for (int i = 0; i < kMessages; ++i) {
    const double begin = (i * 7919LL) % kMessages; // every second once, in no order
    BE::CaptionsAddedMessage message;
    message.captions.emplace_back(stream, MakeCaption(begin, begin + 1));
    Pane().HandleMessage(message);
  }
  ASSERT_EQ(Pane().GetRowCount(), static_cast<std::size_t>(kMessages));
  for (int i = 0; i < kMessages; ++i)
    ASSERT_EQ(List().GetTimeAtIndex(i), Seconds(i));
  int realised = 0;
  boost::shared_ptr<CaptionsItem> item;
  for (int i = 0; i < kMessages; ++i) {
    if (List().GetRowAtIndex(i, item) && item->HasControls())
      ++realised;
  }
  EXPECT_LE(realised, 20);
  for (int i = 0; i < kMessages; ++i) {
    BE::CaptionsRemovedMessage message;
    message.captions.emplace_back(stream, Seconds((i * 7919LL) % kMessages));
    Pane().HandleMessage(message);
  }
  EXPECT_EQ(Pane().GetRowCount(), 0U);
}

TEST_F(PaneBadInput, AHundredThousandMessagesOfAnotherStreamDuringAWaitLeaveTheRows) {
  OpenPanelOn(MakeCaptions({1, 3}));
  zebcore::trace::SetOn(false);
  const auto other = AddStream(AddClip(), MakeCaptions({1}));
  stream->SetBusy(true);
  Pane().ReloadCaptions();
  BE::CaptionsAddedMessage added;
  added.captions.emplace_back(other, MakeCaption(5, 6));
  BE::CaptionsRemovedMessage removed;
  removed.captions.emplace_back(other, Seconds(1));
  BE::CaptioningStreamChangedMessage changed;
  changed.stream = other;
  for (int i = 0; i < 100000; ++i) {
    switch (i % 3) {
    case 0:
      Pane().HandleMessage(added);
      break;
    case 1:
      Pane().HandleMessage(removed);
      break;
    default:
      Pane().HandleMessage(changed);
      break;
    }
  }
  EXPECT_EQ(Begins(), (Times{1, 3}));
  stream->SetBusy(false);
  Tick(250);
  EXPECT_EQ(Begins(), (Times{1, 3}));
}

TEST_F(PaneBadInput, OfAHundredThousandClipsThatAreSelectedDuringAWaitTheLastIsShown) {
  OpenPanelOn(MakeCaptions({1, 3}));
  zebcore::trace::SetOn(false);
  const auto second = AddOtherClip({5});
  const auto third = AddOtherClip({7});
  stream->SetBusy(true);
  for (int i = 0; i < 50000; ++i) {
    SelectClip(third);
    SelectClip(second);
  }
  EXPECT_EQ(Begins(), (Times{1, 3}));
  stream->SetBusy(false);
  Tick(250);
  EXPECT_EQ(Begins(), (Times{5}));
}

TEST_F(PaneBadInput, ClipsThatAreSelectedInTurnsAThousandTimesLeaveNoStationJoinedTwice) {
  OpenPanelOn(MakeCaptions({1, 3}));
  zebcore::trace::SetOn(false);
  const auto second = AddOtherClip({5});
  const auto count = [](const InterfaceRef<BE::MasterClip>& of) {
    return zebcore::messaging::CountListeners(of.Query<BE::INotification>()->GetStationID());
  };
  const std::size_t joined = count(clip);
  const std::size_t left = count(second);
  for (int i = 0; i < 500; ++i) {
    SelectClip(second);
    SelectClip(clip);
  }
  EXPECT_EQ(Begins(), (Times{1, 3}));
  EXPECT_EQ(count(clip), joined);
  EXPECT_EQ(count(second), left);
}

} // namespace Captivo::Testing
