#include <gmock/gmock.h>

#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QToolButton>

#include <algorithm>

#include "App/window/MonitorDock.h"
#include "App/window/Settings.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "ML/FrameService.h"
#include "WindowSupport.h"

// The monitor in the window.
namespace AppTest {

using ::testing::HasSubstr;
using zebcore::ToUTF8;

class Monitor : public Window {
 protected:
  Monitor() {
    App::settings::SetMonitorGridShown(false);
    App::settings::SetMonitorSafeAreaShown(false);
    auto report = session().ImportCaptions(clip, folder.Write("two.srt", kTwoCaptions), cc1);
    EXPECT_TRUE(report) << report.problem.text;
    stream = report.value->stream;
    Settle();
  }

  static void Settle() {
    for (int i = 0; i < 5; ++i)
      QApplication::processEvents();
  }
  App::MonitorDock& Dock() { return *static_cast<App::MonitorDock*>(window->findChild<QDockWidget*>("monitor")); }
  boost::intrusive_ptr<zebcaptioning::Caption> Caption(std::size_t index) {
    std::vector<boost::intrusive_ptr<zebcaptioning::Caption>> captions;
    stream->GetCaptions(captions);
    return captions.at(index);
  }
  // As the panel says that a caption was clicked.
  void Select(std::size_t index) {
    HSL::CaptionSelectedMessage message;
    message.stream = stream;
    message.caption = Caption(index);
    zebcore::messaging::BroadcastMessage(HSL::kStation_CaptionSelection, message);
    Settle();
  }
  template <class Change> void Edit(std::size_t index, Change change) {
    std::vector<BE::ICaptioningStream::CaptionKey> keys;
    stream->GetCaptionKeys(keys);
    const zebcaptioning::CaptionStatePtr before = stream->GetCaption(keys.at(index))->GetState();
    const boost::intrusive_ptr<zebcaptioning::CaptionState> after(new zebcaptioning::CaptionState(*before));
    change(*after);
    project()->EditCaptions(stream, {{keys.at(index), 0, before, after}}, u"Edit");
    Settle();
  }
  void Remove(std::size_t index) {
    std::vector<BE::ICaptioningStream::CaptionKey> keys;
    stream->GetCaptionKeys(keys);
    project()->EditCaptions(stream, {{keys.at(index), 0, stream->GetCaption(keys.at(index))->GetState(), nullptr}},
                            u"Delete");
    Settle();
  }

  std::string Row(int row) {
    const auto& screen = Dock().GetView().GetScreen();
    std::string text;
    for (int column = 0; column < screen.GetColumns(); ++column)
      text += screen.At(row, column).text.empty() ? " " : ToUTF8(screen.At(row, column).text);
    return text;
  }
  bool SaysInBar(const QString& text) {
    const auto labels = Dock().findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) { return label->text().contains(text); });
  }
  QToolButton* Button(const QString& name) {
    for (QToolButton* button : Dock().findChildren<QToolButton*>())
      if (button->accessibleName() == name)
        return button;
    return nullptr;
  }
  // The first may be followed by one that was wanted meanwhile.
  static void AwaitPictures() {
    for (int i = 0; i < 3; ++i) {
      ML::FrameService::Instance().WaitUntilIdle();
      zebcore::messaging::DeliverPostedMessages();
      Settle();
    }
  }
  QImage Grab() { return Dock().GetView().grab().toImage(); }

  InterfaceRef<BE::CaptioningStream> stream;
};

TEST_F(Monitor, ShowsTheCaptionThatWasSelected) {
  Select(1);
  EXPECT_EQ(Dock().GetCaption(), Caption(1));
  EXPECT_THAT(Row(14), HasSubstr("A gull calls."));
  Select(0);
  EXPECT_THAT(Row(14), HasSubstr("The harbour wakes."));
}

TEST_F(Monitor, SaysTheFormatAndTheDisplayType) {
  Select(0);
  EXPECT_TRUE(SaysInBar(App::ToQString(zebcaptioning::GetFullStreamFormatLabel(cc1))));
  EXPECT_TRUE(SaysInBar("Pop-on"));
}

TEST_F(Monitor, TellsThoseWhoCannotSeeItWhatIsWritten) {
  Select(1);
  EXPECT_FALSE(Dock().GetView().accessibleName().isEmpty());
  EXPECT_EQ(Dock().GetView().accessibleDescription(), "A gull calls.");
}

TEST_F(Monitor, FollowsATextThatIsRetyped) {
  Select(0);
  Edit(0, [](auto& state) { state.text = u"Retyped"; });
  EXPECT_THAT(Row(14), HasSubstr("Retyped"));
  EXPECT_TRUE(session().Undo());
  Settle();
  EXPECT_THAT(Row(14), HasSubstr("The harbour wakes."));
}

TEST_F(Monitor, FollowsAPositionAndAColour) {
  Select(0);
  const QImage before = Grab();
  Edit(0, [](auto& state) {
    state.paragraph.y = 3;
    state.paragraph.x = 5;
  });
  EXPECT_THAT(Row(3), ::testing::StartsWith("     The harbour wakes."));
  const QImage moved = Grab();
  EXPECT_NE(before, moved);
  Edit(0, [](auto& state) {
    zebcaptioning::TextSpanAttributes yellow = *state.runs.front().attributes;
    yellow.textColor = {1.0F, 1.0F, 0.0F, 1.0F};
    state.runs.front().attributes = zebcaptioning::Share(yellow);
  });
  EXPECT_NE(moved, Grab());
}

TEST_F(Monitor, FollowsACaptionThatIsRetimed) {
  Select(0);
  Edit(0, [](auto& state) { state.begin = zebmediatypes::TickTime(state.begin.GetTicks() / 2); });
  EXPECT_EQ(Dock().GetCaption(), Caption(0));
  EXPECT_THAT(Row(14), HasSubstr("The harbour wakes."));
}

TEST_F(Monitor, IsEmptyOnceTheCaptionIsDeletedAndShowsItAgainAfterUndo) {
  Select(1);
  Remove(1);
  EXPECT_EQ(Dock().GetCaption(), nullptr);
  EXPECT_TRUE(Dock().GetView().GetPictureRect().isEmpty());
  EXPECT_TRUE(session().Undo());
  Settle();
  EXPECT_THAT(Row(14), HasSubstr("A gull calls."));
}

TEST_F(Monitor, LetsGoOfAStreamThatIsDeleted) {
  Select(0);
  session().DeleteStream(stream);
  Settle();
  EXPECT_EQ(Dock().GetCaption(), nullptr);
}

TEST_F(Monitor, BeginsOnTheFirstCaptionAndComesBackToTheLastOneSelected) {
  Dock().SetStreamOnShow(nullptr);
  Settle();
  EXPECT_EQ(Dock().GetCaption(), nullptr);
  Dock().SetStreamOnShow(stream);
  Settle();
  EXPECT_EQ(Dock().GetCaption(), Caption(0));
  Select(1);
  Dock().SetStreamOnShow(nullptr);
  Dock().SetStreamOnShow(stream);
  Settle();
  EXPECT_EQ(Dock().GetCaption(), Caption(1));
}

TEST_F(Monitor, SaysHowManyCharactersAreCutOff) {
  Select(0);
  EXPECT_FALSE(SaysInBar("Cut off"));
  Edit(0, [](auto& state) { state.text = zebcore::UString(40, u'x'); });
  EXPECT_TRUE(SaysInBar("Cut off: 8"));
}

TEST_F(Monitor, DrawsOpenCaptionsAsTheThumbnailsDo) {
  const auto open = session().DuplicateStream(stream, App::GetStreamFormat("open", 1));
  ASSERT_TRUE(open);
  stream = *open.value;
  Settle();
  Select(0);
  EXPECT_EQ(Dock().GetView().GetScreen().GetRows(), 0);
  const QImage with = Grab();
  Edit(0, [](auto& state) { state.text = u"Else"; });
  EXPECT_NE(with, Grab());
}

TEST_F(Monitor, RemembersThatTheGridAndTheSafeAreasAreShown) {
  Select(0);
  const QImage plain = Grab();
  Button("Rows and columns")->click();
  const QImage grid = Grab();
  EXPECT_NE(plain, grid);
  EXPECT_TRUE(App::settings::IsMonitorGridShown());
  Button("Safe areas")->click();
  EXPECT_NE(grid, Grab());
  EXPECT_TRUE(App::settings::IsMonitorSafeAreaShown());
  Button("Rows and columns")->click();
  Button("Safe areas")->click();
  EXPECT_EQ(plain, Grab());
}

TEST_F(Monitor, ShowsThePictureHalfwayThroughTheCaption) {
  const auto media = session().ImportMedia(fs::path(CAPTIVO_SOURCE_DIR) / "Samples" / "harbour.mp4");
  ASSERT_TRUE(media) << media.problem.text;
  clip = *media.value;
  auto report = session().ImportCaptions(clip, folder.Write("two.srt", kTwoCaptions), cc1);
  ASSERT_TRUE(report);
  stream = report.value->stream;
  Select(1);
  AwaitPictures();
  const QPoint centre = Dock().GetView().GetPictureRect().center();
  const QColor colour(Grab().pixel(centre));
  EXPECT_NE(colour, QColor(48, 48, 48)) << "the colour where there is no picture";
  Edit(1, [](auto& state) { state.text = u"Retyped"; });
  EXPECT_EQ(QColor(Grab().pixel(centre)), colour) << "typing asks for no other picture";
}

TEST_F(Monitor, EndsOnTheLastPictureHoweverFastCaptionsAreSelected) {
  const auto media = session().ImportMedia(fs::path(CAPTIVO_SOURCE_DIR) / "Samples" / "harbour.mp4");
  ASSERT_TRUE(media) << media.problem.text;
  clip = *media.value;
  auto report = session().ImportCaptions(clip, folder.Write("two.srt", kTwoCaptions), cc1);
  ASSERT_TRUE(report);
  stream = report.value->stream;
  Select(0);
  AwaitPictures();
  const QImage first = Grab();
  Select(1);
  AwaitPictures();
  EXPECT_NE(Grab(), first);
  Select(0);
  Select(1);
  Select(0);
  AwaitPictures();
  EXPECT_EQ(Grab(), first);
}

TEST_F(Monitor, CanBeClosedAndBroughtBackByTheWindowMenu) {
  QAction* toggle = Dock().toggleViewAction();
  for (QAction* menu : window->menuBar()->actions())
    if (menu->menu())
      QMetaObject::invokeMethod(menu->menu(), "aboutToShow");
  bool isOffered = false;
  for (QAction* menu : window->menuBar()->actions())
    isOffered = isOffered || (menu->menu() && menu->menu()->actions().contains(toggle));
  EXPECT_TRUE(isOffered);
  Dock().close();
  toggle->trigger();
  EXPECT_TRUE(Dock().isVisible());
}

} // namespace AppTest
