#pragma once

#include <functional>
#include <vector>

#include "Captions/contracts/TextSpanAttributes.h"
#include "Support.h"
#include "zebcore/Trace.h"

namespace Captivo::Testing {

// What a caption of a test has that the others have not.
using SetLook = std::function<void(zebcaptioning::TextSpanAttributes&)>;
using SetPlace = std::function<void(zebcaptioning::ParagraphStyleAttributes&)>;

// The panel on one stream, whose format is changed from the bar. Captions begin at the seconds 1, 3, 5 and so on; the
// first is selected.
class FormatStage : public PanelTest {
 protected:
  static constexpr StreamFormat k608 = zebcaptioning::kStreamFormat_608_CC1;
  static constexpr StreamFormat k708 = 0x37535631;        // "7SV1"
  static constexpr StreamFormat kTeletext = 0x54545831;   // "TTX1"
  static constexpr StreamFormat kEbuN19 = 0x45424E31;     // "EBN1"
  static constexpr StreamFormat kAustralian = 0x41555331; // "AUS1"

  static boost::intrusive_ptr<Caption> MakeFormatted(double begin, const SetLook& look, const SetPlace& place) {
    const boost::intrusive_ptr<zebcaptioning::CaptionState> state(new zebcaptioning::CaptionState);
    state->begin = Seconds(begin);
    state->end = Seconds(begin + 1);
    state->text = u"Text";
    zebcaptioning::TextSpanAttributes span;
    if (look)
      look(span);
    state->runs.push_back({0, zebcaptioning::Share(span)});
    if (place)
      place(state->paragraph);
    return new Caption(zebcaptioning::CaptionStatePtr(state));
  }
  static std::vector<boost::intrusive_ptr<Caption>> MakeLooks(const std::vector<SetLook>& looks) {
    std::vector<boost::intrusive_ptr<Caption>> captions;
    for (std::size_t i = 0; i < looks.size(); ++i)
      captions.push_back(MakeFormatted(static_cast<double>(2 * i + 1), looks[i], nullptr));
    return captions;
  }
  static std::vector<boost::intrusive_ptr<Caption>> MakePlaces(const std::vector<SetPlace>& places) {
    std::vector<boost::intrusive_ptr<Caption>> captions;
    for (std::size_t i = 0; i < places.size(); ++i)
      captions.push_back(MakeFormatted(static_cast<double>(2 * i + 1), nullptr, places[i]));
    return captions;
  }

  void Show(StreamFormat format, const std::vector<boost::intrusive_ptr<Caption>>& captions) {
    clip = AddClip();
    stream = AddStream(clip, captions, format);
    OpenPanel(1000, 700);
    SelectClip(clip);
    zebcore::trace::Take();
  }
  bool Command(int number) { return View().ObeyCommand(UIF::Command(number)); }
  void SelectAll() { Command(32020); }

  // The look, or the place, of the caption in the list.
  const zebcaptioning::TextSpanAttributes& LookOf(double begin) {
    return *Row(begin)->GetCaption()->GetState()->runs.front().attributes;
  }
  const zebcaptioning::ParagraphStyleAttributes& PlaceOf(double begin) {
    return Row(begin)->GetCaption()->GetState()->paragraph;
  }

  // The parameters that were applied since the last time, in their order.
  std::vector<int> TakeApplied() {
    std::vector<int> parameters;
    for (const auto& call : zebcore::trace::Take()) {
      if (call.call == "CaptioningStreamUpdater::ApplyFormatParameter")
        parameters.push_back(call.args.at("parameter").get<int>());
    }
    return parameters;
  }
};

} // namespace Captivo::Testing
