#include "HSL/CaptioningStreamUpdaterSteps.h"

#include <algorithm>
#include <array>

#include "HSL/OpenTextMeasure.h"
#include "zebcaptioning/LineEnds.h"
#include "zebcaptioning/Spans.h"
#include "zebcore/Localizer.h"

namespace HSL::steps {

namespace {

using zebcaptioning::CaptionFormatParameter;
using zebmediatypes::TickTime;

zebcore::UString Localize(const char* key) {
  return zebcore::config::Localizer::Get().Localize(key);
}

// By CaptionFormatParameter.
constexpr std::array kFormatNames = {
    "$$$/Vidra/Undo/CaptionType=Display type",
    "$$$/Vidra/Undo/Underline=Underline",
    "$$$/Vidra/Undo/Italic=Italic",
    "$$$/Vidra/Undo/Bold=Bold",
    "$$$/Vidra/Undo/FontFamily=Font",
    "$$$/Vidra/Undo/FontSize=Font size",
    "$$$/Vidra/Undo/Anchor=Anchor",
    "$$$/Vidra/Undo/Alignment=Alignment",
    "$$$/Vidra/Undo/TextColor=Text colour",
    "$$$/Vidra/Undo/BackgroundColor=Background colour",
    "$$$/Vidra/Undo/EdgeColor=Edge colour",
    "$$$/Vidra/Undo/TextOpacity=Text opacity",
    "$$$/Vidra/Undo/BackgroundOpacity=Background opacity",
    "$$$/Vidra/Undo/EdgeOpacity=Edge opacity",
    "$$$/Vidra/Undo/EdgeWidth=Edge width",
    "$$$/Vidra/Undo/Position=Position",
    "$$$/Vidra/Undo/Position=Position",
    "$$$/Vidra/Undo/LineSpacing=Line spacing",
};

void GetGrid(const BE::CaptioningStream& stream, const TickTime& time, int& columns, int& rows) {
  zebcaptioning::CaptionDisplaySettings settings;
  stream.GetDisplaySettings(time, settings);
  settings.GetRegionBaseDimensions(columns, rows);
}

// The frame in whose pixels open captions stand.
struct Frame {
  int width = 0;
  int height = 0;
  zebmediatypes::PixelAspectRatio pixelAspect = zebmediatypes::kPixelAspectRatio_Square;
};

Frame GetFrame(const BE::CaptioningStream& stream) {
  Frame frame;
  GetGrid(stream, TickTime(), frame.width, frame.height);
  const auto clip = stream.GetMasterClip();
  if (clip && clip->GetMediaInfo().width > 0)
    frame.pixelAspect = clip->GetMediaInfo().pixelAspect;
  return frame;
}

// Whether the new text has just one music note more, at this place. The panel's command for it tells where the caret
// stood before, and typing where it stands afterwards, which is another place among notes.
bool IsNoteAt(const zebcore::UString& oldText, const zebcore::UString& newText, std::size_t place) {
  constexpr char16_t kNote = 0x266A;
  return newText.size() == oldText.size() + 1 && place < newText.size() && newText[place] == kNote &&
         newText.compare(0, place, oldText, 0, place) == 0 &&
         newText.compare(place + 1, zebcore::UString::npos, oldText, place, zebcore::UString::npos) == 0;
}

// Undo and redo measure what they bring back.
[[maybe_unused]] const bool kIsMeasurerSet = (BE::SetCaptionMeasurer(&Measure), true);

} // namespace

zebcore::UString AddName() {
  return Localize("$$$/Vidra/Undo/AddCaption=Add caption");
}
zebcore::UString DeleteName() {
  return Localize("$$$/Vidra/Undo/DeleteCaption=Delete caption");
}
zebcore::UString TypeName() {
  return Localize("$$$/Vidra/Undo/Type=Type");
}
zebcore::UString MoveName() {
  return Localize("$$$/Vidra/Undo/MoveCaption=Move caption");
}

zebcore::UString FormatName(CaptionFormatParameter parameter) {
  const auto index = static_cast<std::size_t>(parameter);
  return Localize(index < kFormatNames.size() ? kFormatNames[index] : "$$$/Vidra/Undo/EditCaptions=Edit captions");
}

CaptionStatePtr Retype(const CaptionStatePtr& state, const zebcore::UString& oldText, const zebcore::UString& newText,
                       const zebcaptioning::TextRange& caret) {
  // The two texts tell what was changed only if the lines of what is stored end as theirs do.
  const std::size_t place = caret.second;
  const bool isNote = IsNoteAt(oldText, newText, place);
  return zebcaptioning::ReplaceText(zebcaptioning::TakeLineEnds(state, oldText), newText,
                                    isNote ? zebcaptioning::TextRange(place + 1, place + 1)
                                           : zebcaptioning::ToTextUnits(newText, caret));
}

CaptionStatePtr Reformat(const BE::CaptioningStream& stream, const CaptionStatePtr& state,
                         CaptionFormatParameter parameter, const zebcaptioning::CaptionFormatInfo& info,
                         const zebcaptioning::TextRange& range) {
  int columns = 0;
  int rows = 0;
  GetGrid(stream, state->begin, columns, rows);
  return zebcaptioning::ApplyToRange(state, parameter, info, zebcaptioning::ToTextUnits(state->text, range),
                                     stream.GetStreamFormat(), columns, rows);
}

void Measure(const BE::CaptioningStream& stream, std::vector<CaptionStatePtr>& states) {
  const Frame frame = GetFrame(stream);
  MeasureOpenTexts(states, frame.width, frame.height, frame.pixelAspect);
}

void MeasureChanged(const BE::CaptioningStream& stream, std::vector<BE::CaptionDelta>& deltas) {
  if (!zebcaptioning::IsOpenCaptions(stream.GetStreamFormat()))
    return;
  const Frame frame = GetFrame(stream);
  std::vector<CaptionStatePtr*> places;
  std::vector<CaptionStatePtr> states;
  for (BE::CaptionDelta& delta : deltas) {
    if (!delta.after || delta.after == delta.before ||
        (delta.before && TakeMeasureFrom(delta.after, *delta.before, frame.width, frame.height, frame.pixelAspect)))
      continue;
    places.push_back(&delta.after);
    states.push_back(delta.after);
  }
  Measure(stream, states);
  for (std::size_t i = 0; i < places.size(); ++i)
    *places[i] = std::move(states[i]);
}

void CloseGaps(const BE::CaptioningStream& stream, std::vector<BE::CaptionDelta>& deltas) {
  std::vector<BE::ICaptioningStream::CaptionKey> keys;
  stream.GetCaptionKeys(keys);
  const auto isRemoved = [removed = deltas](const auto& key) {
    return std::any_of(removed.begin(), removed.end(), [&key](const auto& delta) { return delta.key == key; });
  };
  TickTime gap;
  for (const auto& key : keys) {
    const CaptionStatePtr state = stream.GetCaption(key)->GetState();
    if (isRemoved(key)) {
      gap = gap + (state->end - state->begin);
    } else if (gap != TickTime()) {
      auto* moved = new CaptionState(*state);
      moved->begin = state->begin - gap;
      moved->end = state->end - gap;
      deltas.push_back({key, 0, state, moved});
    }
  }
}

} // namespace HSL::steps
