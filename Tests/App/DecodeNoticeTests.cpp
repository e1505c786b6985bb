#include <gmock/gmock.h>

#include <QLabel>
#include <QStatusBar>

#include "ML/FrameService.h"
#include "ML/RenderFrame.h"
#include "WindowSupport.h"

// A video that cannot be decoded, as it is told of in the window.
namespace AppTest {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class DecodeNotice : public WindowWithPanel {
 protected:
  // What the status bar says and shows to a person.
  std::vector<std::string> Notices() {
    std::vector<std::string> texts;
    for (const QLabel* label : window->statusBar()->findChildren<QLabel*>()) {
      if (label->isVisible() && !label->text().isEmpty())
        texts.push_back(label->text().toStdString());
    }
    return texts;
  }
  static void Settle() {
    ML::FrameService::Instance().WaitUntilIdle();
    zebcore::messaging::DeliverPostedMessages();
    QApplication::processEvents();
  }
  // A file that is media by no one's reckoning, in the project all the same, since it was whole when it came there.
  InterfaceRef<BE::MasterClip> AddDamagedClip(const std::string& name) {
    BE::MediaInfo info;
    info.width = 640;
    info.height = 360;
    info.frameRate = zebmediatypes::kFrameRate_25;
    info.duration = zebmediatypes::TickTime(60 * zebmediatypes::kTicksPerSecond);
    return project()->AddClip(zebcore::FromUTF8(name), folder.Write(name, "no pictures"), info, false);
  }
  void ShowRowsOf(const InterfaceRef<BE::MasterClip>& shown) {
    ASSERT_TRUE(session().ImportCaptions(shown, folder.Write("two.srt", kTwoCaptions), cc1));
    session().SelectClip(shown);
    Settle();
  }
};

TEST_F(DecodeNotice, StandsOnceInTheStatusBarForAllRowsOfAClip) {
  EXPECT_THAT(Notices(), IsEmpty());
  const auto damaged = AddDamagedClip("storm.mp4");
  ShowRowsOf(damaged);
  EXPECT_THAT(Notices(), ElementsAre(AllOf(HasSubstr("storm.mp4"), HasSubstr("cannot be decoded"))));
  EXPECT_EQ(damaged->GetStreams().at(0)->GetCaptionCount(), 2U);
  EXPECT_EQ(said, std::vector<std::string>()) << "no box on top of it";
}

TEST_F(DecodeNotice, IsStillOneForSeveralClips) {
  ShowRowsOf(AddDamagedClip("storm.mp4"));
  ShowRowsOf(AddDamagedClip("calm.mp4"));
  EXPECT_THAT(Notices(), ElementsAre(HasSubstr("2 files")));
}

TEST_F(DecodeNotice, LeavesFilesThatAreNotThereToTheBin) {
  const auto gone = AddDamagedClip("storm.mp4");
  fs::remove(gone->GetMediaPath());
  ShowRowsOf(gone);
  EXPECT_THAT(Notices(), IsEmpty());
}

TEST_F(DecodeNotice, GoesWithTheProject) {
  ShowRowsOf(AddDamagedClip("storm.mp4"));
  clip = nullptr;
  ASSERT_FALSE(session().NewProject());
  window->ShowProject();
  QApplication::processEvents();
  EXPECT_THAT(Notices(), IsEmpty());
}

} // namespace AppTest
