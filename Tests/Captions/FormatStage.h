#pragma once

#include <functional>
#include <vector>

#include "Captions/contracts/ParagraphStyleAttributes.h"
#include "Captions/contracts/TextSpanAttributes.h"
#include "FormatBar.h"

namespace Captivo::Testing {

// What a caption of a test has that the others have not.
using SetLook = std::function<void(zebcaptioning::TextSpanAttributes&)>;
using SetPlace = std::function<void(zebcaptioning::ParagraphStyleAttributes&)>;

// The bar over captions that differ in one respect. They begin at the seconds 1, 3, 5 and so on; the first is selected.
class FormatStage : public FormatBarTest {
 protected:
  static constexpr StreamFormat k608 = zebcaptioning::kStreamFormat_608_CC1;
  static constexpr StreamFormat kAustralianPage1 = 0x41555331; // "AUS1"

  static std::vector<boost::intrusive_ptr<Caption>> MakeLooks(const std::vector<SetLook>& looks) {
    std::vector<boost::intrusive_ptr<Caption>> captions;
    for (const SetLook& set : looks) {
      Span look;
      set(look);
      captions.push_back(MakeLook(static_cast<double>(2 * captions.size() + 1), look));
    }
    return captions;
  }
  static std::vector<boost::intrusive_ptr<Caption>> MakePlaces(const std::vector<SetPlace>& places) {
    std::vector<boost::intrusive_ptr<Caption>> captions;
    for (const SetPlace& set : places) {
      zebcaptioning::ParagraphStyleAttributes place;
      set(place);
      captions.push_back(MakeLook(static_cast<double>(2 * captions.size() + 1), Span(), place));
    }
    return captions;
  }

  bool Command(int number) { return View().ObeyCommand(UIF::Command(number)); }
  void SelectAll() { Command(32020); }
  const zebcaptioning::ParagraphStyleAttributes& PlaceOf(double begin) { return Stored(begin).paragraph; }

  // The parameters that were applied since the last time, in their order.
  std::vector<int> TakeApplied() {
    std::vector<int> parameters;
    for (const Application& application : TakeApplications())
      parameters.push_back(application.parameter);
    return parameters;
  }
};

} // namespace Captivo::Testing
