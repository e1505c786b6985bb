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

constexpr char16_t kNote = 0x266A;

// Whether the new text has a music note in the place of what was selected, or just one more where nothing was. The
// panel's command for it tells the selection of before, and typing that of afterwards, which is another place among
// notes.
bool IsNoteOver(const zebcore::UString& oldText, const zebcore::UString& newText,
                const zebcaptioning::TextRange& selection) {
  const auto [start, end] = selection;
  return oldText != newText && start <= end && end <= oldText.size() &&
         newText.size() == start + 1 + oldText.size() - end && newText[start] == kNote &&
         newText.compare(0, start, oldText, 0, start) == 0 &&
         newText.compare(start + 1, zebcore::UString::npos, oldText, end, zebcore::UString::npos) == 0;
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
  const CaptionStatePtr lined = zebcaptioning::TakeLineEnds(state, oldText);
  if (!IsNoteOver(oldText, newText, caret))
    return zebcaptioning::ReplaceText(lined, newText, zebcaptioning::ToTextUnits(newText, caret));
  // The note first and then what was selected, so that what stays keeps its look among equal characters too.
  const zebcaptioning::TextRange behind(caret.first + 1, caret.first + 1);
  zebcore::UString both = oldText;
  both.insert(caret.first, 1, kNote);
  return zebcaptioning::ReplaceText(zebcaptioning::ReplaceText(lined, both, behind), newText, behind);
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
