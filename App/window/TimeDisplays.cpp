#include "App/window/TimeDisplays.h"

#include <QActionGroup>
#include <QMenu>

#include <algorithm>

#include "App/window/Labels.h"
#include "App/window/Settings.h"
#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"

namespace App::timedisplays {

using zebmediatypes::TimeDisplay;

namespace {

void Say(Which which, TimeDisplay display) {
  UIF::HotTimecodeVideoTimeDisplayChangedMessage message;
  message.display = display;
  zebcore::messaging::BroadcastMessage(which == Which::Source ? UIF::kStation_SourceTimeDisplayChanged
                                                              : UIF::kStation_SequenceTimeDisplayChanged,
                                       message);
}

bool IsSource(Which which) {
  return which == Which::Source;
}

} // namespace

const std::vector<TimeDisplay>& GetAll() {
  using namespace zebmediatypes;
  static const std::vector<TimeDisplay> displays = {
      kTimeDisplay_Timecode23976,       kTimeDisplay_Timecode24,          kTimeDisplay_Timecode25,
      kTimeDisplay_Timecode2997Drop,    kTimeDisplay_Timecode2997NonDrop, kTimeDisplay_Timecode30,
      kTimeDisplay_Timecode48,          kTimeDisplay_Timecode50,          kTimeDisplay_Timecode5994Drop,
      kTimeDisplay_Timecode5994NonDrop, kTimeDisplay_Timecode60,          kTimeDisplay_Frames,
      kTimeDisplay_FeetAndFrames35mm,   kTimeDisplay_FeetAndFrames16mm,   kTimeDisplay_Milliseconds,
      kTimeDisplay_AudioSamples};
  return displays;
}

QString GetName(TimeDisplay display) {
  using namespace zebmediatypes;
  const auto timecode = [](const char* rate) {
    return Label("$$$/Vidra/Captivo/TimeDisplay/Timecode={1} Timecode", {rate});
  };
  const auto dropFrame = [](const char* rate) {
    return Label("$$$/Vidra/Captivo/TimeDisplay/DropFrame={1} Drop-Frame Timecode", {rate});
  };
  const auto nonDropFrame = [](const char* rate) {
    return Label("$$$/Vidra/Captivo/TimeDisplay/NonDropFrame={1} Non-Drop-Frame Timecode", {rate});
  };
  switch (display.GetNumber()) {
  case kTimeDisplay_Timecode23976.GetNumber():
    return timecode("23.976");
  case kTimeDisplay_Timecode24.GetNumber():
    return timecode("24");
  case kTimeDisplay_Timecode25.GetNumber():
    return timecode("25");
  case kTimeDisplay_Timecode2997Drop.GetNumber():
    return dropFrame("29.97");
  case kTimeDisplay_Timecode2997NonDrop.GetNumber():
    return nonDropFrame("29.97");
  case kTimeDisplay_Timecode30.GetNumber():
    return timecode("30");
  case kTimeDisplay_Timecode48.GetNumber():
    return timecode("48");
  case kTimeDisplay_Timecode50.GetNumber():
    return timecode("50");
  case kTimeDisplay_Timecode5994Drop.GetNumber():
    return dropFrame("59.94");
  case kTimeDisplay_Timecode5994NonDrop.GetNumber():
    return nonDropFrame("59.94");
  case kTimeDisplay_Timecode60.GetNumber():
    return timecode("60");
  case kTimeDisplay_Frames.GetNumber():
    return Label("$$$/Vidra/Captivo/TimeDisplay/Frames=Frames");
  case kTimeDisplay_FeetAndFrames35mm.GetNumber():
    return Label("$$$/Vidra/Captivo/TimeDisplay/Feet35=Feet and Frames 35 mm");
  case kTimeDisplay_FeetAndFrames16mm.GetNumber():
    return Label("$$$/Vidra/Captivo/TimeDisplay/Feet16=Feet and Frames 16 mm");
  case kTimeDisplay_Milliseconds.GetNumber():
    return Label("$$$/Vidra/Captivo/TimeDisplay/Milliseconds=Milliseconds");
  case kTimeDisplay_AudioSamples.GetNumber():
    return Label("$$$/Vidra/Captivo/TimeDisplay/Samples=Audio Samples");
  default:
    return Label("$$$/Vidra/Captivo/TimeDisplay/Automatic=As the Clip or Sequence Has It");
  }
}

TimeDisplay Get(Which which) {
  const TimeDisplay display(settings::GetTimeDisplay(IsSource(which)));
  const bool isKnown = std::find(GetAll().begin(), GetAll().end(), display) != GetAll().end();
  return isKnown ? display : zebmediatypes::kTimeDisplay_Invalid;
}

void Choose(Which which, TimeDisplay display) {
  settings::SetTimeDisplay(IsSource(which), display.GetNumber());
  Say(which, display);
}

void SayAgain() {
  for (const Which which : {Which::Source, Which::Sequence})
    if (const TimeDisplay display = Get(which); display != zebmediatypes::kTimeDisplay_Invalid)
      Say(which, display);
}

void FillMenu(QMenu& menu, Which which, const std::function<void()>& whenChosen) {
  menu.clear();
  auto* group = new QActionGroup(&menu);
  const TimeDisplay current = Get(which);
  const auto add = [&](TimeDisplay display) {
    QAction* action = menu.addAction(GetName(display));
    action->setCheckable(true);
    action->setChecked(display == current);
    group->addAction(action);
    QObject::connect(action, &QAction::triggered, &menu, [which, display, whenChosen] {
      Choose(which, display);
      if (whenChosen)
        whenChosen();
    });
  };
  add(zebmediatypes::kTimeDisplay_Invalid);
  menu.addSeparator();
  for (const TimeDisplay display : GetAll())
    add(display);
}

} // namespace App::timedisplays
