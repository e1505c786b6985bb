#include "Formats/CueWriter.h"

#include <algorithm>

#include "Formats/CueTimes.h"
#include "Formats/Text.h"
#include "zebcaptioning/FormatFacts.h"

namespace Formats {

using zebcaptioning::CaptionState;

namespace {

constexpr std::int64_t kMaxMilliseconds = (std::int64_t{10000} * 3600 * 1000) - 1;

// "<c.yellow>" is closed by "</c>".
std::string Closing(const std::string& tag) {
  return "</" + tag.substr(1, tag.find_first_of(". >", 1) - 1) + ">";
}

class CueText {
 public:
  CueText(const Syntax& syntax, const CaptionState& state, Losses& losses)
      : mSyntax(syntax), mState(state), mLosses(losses) {}

  std::string Print() {
    const std::u16string_view text = mState.text;
    StartLine(0);
    for (std::size_t run = 0; run < mState.runs.size(); ++run) {
      const std::size_t begin = mState.runs[run].start;
      const std::size_t end = run + 1 < mState.runs.size() ? mState.runs[run + 1].start : text.size();
      if (begin >= end || begin >= text.size())
        continue;
      SetTags(mSyntax.tags(*mState.runs[run].attributes, mLosses));
      PrintRun(begin, std::min(end, text.size()));
    }
    SetTags({});
    return mOut;
  }

 private:
  void PrintRun(std::size_t begin, std::size_t end) {
    const std::u16string_view text = mState.text;
    while (begin < end) {
      const std::size_t stop = std::min(text.find_first_of(u"\r\n", begin), end);
      mOut += mSyntax.escape(text.substr(begin, stop - begin));
      begin = stop;
      if (begin == end)
        break;
      const bool isFirstOfTwo = text[begin] == u'\r' && begin + 1 < text.size() && text[begin + 1] == u'\n';
      ++begin;
      if (isFirstOfTwo)
        continue;
      mOut += '\n';
      StartLine(begin);
    }
  }

  void StartLine(std::size_t at) {
    const std::u16string_view text = mState.text;
    const std::size_t end = std::min(text.find_first_of(u"\r\n", at), text.size());
    if (!text.empty() && IsBlank(text.substr(at, end - at)))
      mOut += mSyntax.nothing;
  }

  void SetTags(const std::vector<std::string>& tags) {
    const auto same = static_cast<std::size_t>(
        std::mismatch(tags.begin(), tags.end(), mOpen.begin(), mOpen.end()).first - tags.begin());
    while (mOpen.size() > same) {
      mOut += Closing(mOpen.back());
      mOpen.pop_back();
    }
    for (std::size_t i = same; i < tags.size(); ++i) {
      mOut += tags[i];
      mOpen.push_back(tags[i]);
    }
  }

  const Syntax& mSyntax;
  const CaptionState& mState;
  Losses& mLosses;
  std::vector<std::string> mOpen;
  std::string mOut;
};

// What neither kind of file has words for.
void LoseCommon(const CaptionState& state, const TextSpanAttributes& plain, StreamFormat format, Losses& losses) {
  const zebcaptioning::CaptionType type = state.paragraph.captionType;
  if (type != zebcaptioning::kCaptionType_None && type != zebcaptioning::GetDefaultCaptionType(format))
    AddLoss(losses, Say("$$$/Vidra/Formats/LossType=the display type \"{0}\"",
                        {zebcore::ToUTF8(zebcaptioning::GetCaptionTypeDescription(type))}));
  if (!state.paragraph.region.IsNull())
    AddLoss(losses, Say("$$$/Vidra/Formats/LossRegionName=the region \"{0}\"", {state.paragraph.region.Text()}));
  if (!state.paragraph.style.IsNull())
    AddLoss(losses, Say("$$$/Vidra/Formats/LossStyleName=the style \"{0}\"", {state.paragraph.style.Text()}));
  if (state.paragraph.lineSpacing != 0)
    AddLoss(losses, Say("$$$/Vidra/Formats/LossLineSpacing=the line spacing"));
  for (const zebcaptioning::TextRun& run : state.runs) {
    const TextSpanAttributes& span = *run.attributes;
    if (span.family != plain.family)
      AddLoss(losses, Say("$$$/Vidra/Formats/LossFamily=the font \"{0}\"", {Quote(span.family)}));
    if (span.size != plain.size)
      AddLoss(losses, Say("$$$/Vidra/Formats/LossSize=the text size"));
    if (span.edgeWidth != plain.edgeWidth || span.edgeColor != plain.edgeColor)
      AddLoss(losses, Say("$$$/Vidra/Formats/LossEdge=the text edge"));
    if (span.textColor.alpha != 1.0F)
      AddLoss(losses, Say("$$$/Vidra/Formats/LossOpacity=the opacity of the text"));
  }
}

} // namespace

void AddLoss(Losses& losses, const std::string& what) {
  if (std::find(losses.begin(), losses.end(), what) == losses.end())
    losses.push_back(what);
}

WriteResult WriteCues(const Syntax& syntax, std::span<const CaptionStatePtr> captions, const Progress& progress) {
  WriteResult result;
  result.bytes = syntax.head;
  int line = 1 + static_cast<int>(std::count(result.bytes.begin(), result.bytes.end(), '\n'));
  int number = 0;
  // What readers give to text without tags.
  const TextSpanAttributes plain = zebcaptioning::NearestLegalSpan(syntax.format, TextSpanAttributes());
  ProgressMeter meter(progress, captions.size());
  std::size_t done = 0;
  for (const CaptionStatePtr& state : captions) {
    if (!meter.Reach(done++))
      break;
    std::int64_t begin = ToMilliseconds(state->begin);
    std::int64_t end = ToMilliseconds(state->end);
    if (state->end <= state->begin || end <= 0 || begin > kMaxMilliseconds) {
      result.problems.push_back(
          {line, Say("$$$/Vidra/Formats/NotWritten=The caption \"{0}\" is left out: its times cannot be written.",
                     {Quote(state->text)})});
      continue;
    }
    Losses losses;
    if (begin < 0)
      AddLoss(losses, Say("$$$/Vidra/Formats/LossBegin=the part of its time before zero"));
    begin = std::max<std::int64_t>(begin, 0);
    end = std::min(std::max(end, begin + 1), kMaxMilliseconds + 1);
    LoseCommon(*state, plain, syntax.format, losses);
    std::string cue;
    if (syntax.hasNumbers)
      cue += std::to_string(++number) + "\n";
    cue += PrintCueTime(begin, syntax.decimalMark) + " --> " + PrintCueTime(end, syntax.decimalMark) +
           syntax.settings(*state, losses) + "\n";
    const std::string text = syntax.prefix(*state, losses) + CueText(syntax, *state, losses).Print();
    if (!text.empty())
      cue += text + "\n";
    cue += "\n";
    if (!losses.empty()) {
      std::string list;
      for (const std::string& loss : losses)
        list += (list.empty() ? "" : ", ") + loss;
      result.problems.push_back(
          {line, Say("$$$/Vidra/Formats/WrittenWithout=The caption is written without {0}.", {list})});
    }
    line += static_cast<int>(std::count(cue.begin(), cue.end(), '\n'));
    result.bytes += cue;
  }
  return result;
}

} // namespace Formats
