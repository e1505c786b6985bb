#include <algorithm>

#include "Formats/CueTimes.h"
#include "Formats/Markup.h"
#include "Formats/Text.h"

namespace Formats {

namespace {

std::string NoCaptionFile() {
  return Say("$$$/Vidra/Formats/NoSubRip=This is no SubRip file: it holds no line with times such as "
             "\"00:00:01,000 --> 00:00:02,000\".");
}

class Reader {
 public:
  Reader(const Lines& lines, StreamFormat format, ProgressMeter& progress, ReadResult& result, const FrameCount& frames)
      : mLines(lines), mRules(format), mProgress(progress), mResult(result), mFrames(frames) {}

  void Run() {
    while (mAt < mLines.Count()) {
      if (!mProgress.Reach(mLines.Offset(mAt))) {
        mResult.cancelled = true;
        return;
      }
      if (IsBlank(mLines[mAt]))
        ++mAt;
      else if (LooksLikeTimes(mLines[mAt]))
        ReadCue();
      else if (IsIndexAt(mAt) && StartsCue(mAt + 1))
        ++mAt;
      else
        SkipBlock();
    }
  }

  bool HasSeenCue() const { return mHasSeenCue; }

 private:
  bool StartsCue(std::size_t line) const { return line < mLines.Count() && LooksLikeTimes(mLines[line]); }
  bool IsIndexAt(std::size_t line) const { return line < mLines.Count() && AllDigits(Trim(mLines[line])); }
  int Number(std::size_t line) const { return static_cast<int>(line) + 1; }
  void Report(std::size_t line, std::string reason) { mResult.problems.push_back({Number(line), std::move(reason)}); }

  // The text of a cue goes on to an empty line. Text behind that belongs to it still if no cue begins there: people
  // leave empty lines inside captions, and it is better shown than lost.
  std::size_t FindTextEnd(std::size_t from, bool& hasGap) const {
    std::size_t end = from;
    hasGap = false;
    for (std::size_t line = from; line < mLines.Count(); ++line) {
      if (StartsCue(line) || (IsIndexAt(line) && StartsCue(line + 1)))
        return end;
      const bool isBlank = IsBlank(mLines[line]);
      const bool isAfterGap = line > from && IsBlank(mLines[line - 1]);
      if (!isBlank && isAfterGap && StartsBrokenCue(line))
        return end;
      if (!isBlank) {
        hasGap = hasGap || end < line;
        end = line + 1;
      }
    }
    return end;
  }

  // A number with text below it and no times, or an identifier above times: a block of its own.
  bool StartsBrokenCue(std::size_t line) const {
    const bool goesOn = line + 1 < mLines.Count() && !IsBlank(mLines[line + 1]);
    return (goesOn && IsIndexAt(line)) || StartsCue(line + 1);
  }

  void ReadCue() {
    const std::size_t timesLine = mAt++;
    mHasSeenCue = true;
    const CueTimes times = ParseLooseTimes(mLines[timesLine], mFrames);
    bool hasGap = false;
    const std::size_t end = FindTextEnd(mAt, hasGap);
    if (!times.error.empty()) {
      Report(timesLine, times.error);
      mAt = end;
      return;
    }
    UString text;
    while (mAt < end && IsBlank(mLines[mAt]))
      ++mAt;
    for (std::size_t line = mAt; line < end; ++line) {
      if (line > mAt)
        text += u'\n';
      if (!IsBlank(mLines[line]))
        text += mLines[line];
    }
    mAt = end;
    CueBuilder builder(mRules);
    const std::optional<int> anchor = AppendMarkup(text, Dialect::SubRip, builder);
    if (!times.rest.empty())
      builder.Lose(Say("$$$/Vidra/Formats/LossSetting=the setting \"{0}\"", {Quote(times.rest)}));
    const int cell = anchor.value_or(9);
    const Placement placement = PlaceText(mRules.GetFormat(), builder.GetText(), cell, GetAnchorAlignment(cell));
    mResult.captions.push_back(builder.Build(times.begin, times.end, placement));
    if (const std::string losses = DescribeLosses(builder.GetLosses()); !losses.empty())
      Report(timesLine, losses);
    if (hasGap)
      Report(timesLine, Say("$$$/Vidra/Formats/EmptyLine=The caption holds an empty line; what follows it was taken as "
                            "text of the same caption."));
  }

  // Lines that belong to no cue.
  void SkipBlock() {
    const std::size_t first = mAt;
    while (mAt < mLines.Count() && !IsBlank(mLines[mAt]) && !LooksLikeTimes(mLines[mAt]))
      ++mAt;
    if (StartsCue(mAt) && IsIndexAt(mAt - 1) && mAt - 1 > first)
      --mAt;
    Report(first,
           Say("$$$/Vidra/Formats/NoTimes=The text \"{0}\" is left out: it has no times.", {Quote(mLines[first])}));
  }

  const Lines& mLines;
  FormatRules mRules;
  ProgressMeter& mProgress;
  ReadResult& mResult;
  const FrameCount& mFrames;
  std::size_t mAt = 0;
  bool mHasSeenCue = false;
};

} // namespace

ReadResult ReadSubRip(std::string_view bytes, StreamFormat format, const Progress& progress, const FrameCount& frames) {
  ReadResult result;
  result.kind = FileKind::SubRip;
  const UString text = OpenText(bytes, NoCaptionFile, result);
  if (!result.error.empty())
    return result;
  const Lines lines(text);
  ProgressMeter meter(progress, text.size());
  Reader reader(lines, format, meter, result, frames);
  reader.Run();
  if (!reader.HasSeenCue() && !result.cancelled) {
    result.problems.clear();
    result.error = NoCaptionFile();
  }
  SortByBegin(result.captions);
  return result;
}

} // namespace Formats
