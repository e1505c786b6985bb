#pragma once

#include <utility>
#include <vector>

#include "Captions/contracts/Stations.h"
#include "Support.h"
#include "TD/TitlerFontList.h"

namespace Captivo::Testing {

inline constexpr StreamFormat kTeletextPage1 = 0x54545831; // "TTX1"
inline constexpr StreamFormat kEbuTrack1 = 0x45424E31;     // "EBN1"
inline constexpr StreamFormat kService1 = 0x37535631;      // "7SV1"

// One call of the updater by which a format reaches captions.
struct Application {
  int parameter;
  std::vector<double> times; // seconds
  std::pair<std::int64_t, std::int64_t> range;

  friend bool operator==(const Application&, const Application&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Application& application) {
    out << "parameter " << application.parameter << " in (" << application.range.first << ", "
        << application.range.second << ") of";
    for (const double time : application.times)
      out << ' ' << time;
    return out;
  }
};
using Applications = std::vector<Application>;
inline constexpr std::pair<std::int64_t, std::int64_t> kWholeText{0, -1};

// The format bar over a stream of captions, worked as a person would.
class FormatBarTest : public PanelTest {
 protected:
  using Info = boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo>;
  using Span = zebcaptioning::TextSpanAttributes;

  ~FormatBarTest() override { TD::SetTitlerFontList({}); }

  void ShowStream(StreamFormat format, const std::vector<boost::intrusive_ptr<Caption>>& captions) {
    clip = AddClip();
    stream = AddStream(clip, captions, format);
    OpenPanel(1000, 700);
    SelectClip(clip);
    zebcore::trace::Take();
  }
  void ShowOpen(const std::vector<boost::intrusive_ptr<Caption>>& captions) { ShowStream(kOpenTrack1, captions); }
  void ShowClosed(const std::vector<boost::intrusive_ptr<Caption>>& captions) {
    ShowStream(zebcaptioning::kStreamFormat_608_CC1, captions);
  }
  void SelectNothing() { Pane().DispatchLeftButtonUp({10, 600}, UIF::KeyModifiers()); }
  // The text has the focus with this part selected, and the pane has seen it.
  void SelectPart(double begin, const TextRange& range) {
    FocusText(begin);
    Text(begin).SetSelection(range);
    Tick(100);
    zebcore::trace::Take();
  }

  // What was applied since the last time anybody took the trace.
  Applications TakeApplications() {
    Applications applications;
    for (const auto& call : zebcore::trace::Take()) {
      if (call.call != "CaptioningStreamUpdater::ApplyFormatParameter")
        continue;
      Application application{call.args["parameter"], {}, {call.args["range"][0], call.args["range"][1]}};
      for (const std::int64_t time : call.args["times"])
        application.times.push_back(zebmediatypes::ToSeconds(TickTime(time)));
      applications.push_back(application);
    }
    return applications;
  }

  const zebcaptioning::CaptionState& Stored(double begin) { return *stream->FindByBegin(Seconds(begin))->GetState(); }
  // Of the first character.
  const Span& Look(double begin) { return *Stored(begin).runs.front().attributes; }
  const Info& Shown() { return Inspector::FormatInfo(View()); }

  // A caption whose looks change at the given places of its text.
  static boost::intrusive_ptr<Caption> MakeLook(double begin, const UString& text,
                                                const std::vector<std::pair<unsigned, Span>>& looks,
                                                const zebcaptioning::ParagraphStyleAttributes& paragraph = {}) {
    const boost::intrusive_ptr<zebcaptioning::CaptionState> state(new zebcaptioning::CaptionState);
    state->begin = Seconds(begin);
    state->end = Seconds(begin + 1);
    state->text = text;
    state->paragraph = paragraph;
    for (const auto& [start, look] : looks)
      state->runs.push_back({start, zebcaptioning::Share(look)});
    return new Caption(zebcaptioning::CaptionStatePtr(state));
  }
  static boost::intrusive_ptr<Caption> MakeLook(double begin, const Span& look,
                                                const zebcaptioning::ParagraphStyleAttributes& paragraph = {}) {
    return MakeLook(begin, u"Hello", {{0U, look}}, paragraph);
  }

  static constexpr auto kOngoing = zebui::ui::UI_InteractiveControlChangedMessage::kChange_Changed;
};

} // namespace Captivo::Testing
