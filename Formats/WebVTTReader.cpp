#include <algorithm>

#include "Formats/CueSettings.h"
#include "Formats/CueTimes.h"
#include "Formats/Markup.h"
#include "Formats/Text.h"

namespace Formats {

namespace {

constexpr std::u16string_view kSignature = u"WEBVTT";
constexpr std::u16string_view kArrow = u"-->";

std::string NoCaptionFile() {
  return Say("$$$/Vidra/Formats/NoWebVTT=This is no WebVTT file: it does not begin with \"WEBVTT\".");
}

bool HasSignature(std::u16string_view line) {
  return line.starts_with(kSignature) &&
         (line.size() == kSignature.size() || line[kSignature.size()] == u' ' || line[kSignature.size()] == u'\t');
}

class Reader {
 public:
  Reader(const Lines& lines, StreamFormat format, ProgressMeter& progress, ReadResult& result)
      : mLines(lines), mRules(format), mProgress(progress), mResult(result) {}

  void Run() {
    ReadHeader();
    while (mAt < mLines.Count()) {
      if (!mProgress.Reach(mLines.Offset(mAt))) {
        mResult.cancelled = true;
        return;
      }
      if (mLines[mAt].empty())
        ++mAt;
      else
        ReadBlock();
    }
  }

 private:
  bool HasArrow(std::size_t line) const {
    return line < mLines.Count() && mLines[line].find(kArrow) != std::u16string_view::npos;
  }
  void Report(std::size_t line, std::string reason) {
    mResult.problems.push_back({static_cast<int>(line) + 1, std::move(reason)});
  }

  // The signature's line, and lines below it up to an empty one, which say things about the file.
  void ReadHeader() {
    mAt = 1;
    const std::u16string_view title = Trim(mLines[0].substr(kSignature.size()));
    bool hasText = !title.empty();
    while (mAt < mLines.Count() && !mLines[mAt].empty() && !HasArrow(mAt)) {
      // What is no "name: value" was meant as something else: the empty line behind the signature is missing.
      if (HasArrow(mAt + 1) && mLines[mAt].find(u':') == std::u16string_view::npos)
        break;
      hasText = hasText || !IsBlank(mLines[mAt]);
      ++mAt;
    }
    if (hasText)
      Report(0, Say("$$$/Vidra/Formats/LossHeader=The text at the head of the file is left out."));
  }

  void ReadBlock() {
    const std::size_t first = mAt;
    if (HasArrow(first)) {
      ReadCue(first);
      return;
    }
    if (HasArrow(first + 1)) {
      ReadCue(first + 1);
      return;
    }
    while (mAt < mLines.Count() && !mLines[mAt].empty() && !HasArrow(mAt))
      ++mAt;
    ReportBlock(first);
  }

  void ReportBlock(std::size_t first) {
    const std::u16string_view line = mLines[first];
    const std::u16string_view word = Trim(line);
    const bool isComment = line.starts_with(u"NOTE") && (line.size() == 4 || IsSpace(line[4]));
    if (isComment)
      Report(first, Say("$$$/Vidra/Formats/LossComment=A comment is left out."));
    else if (word == u"STYLE")
      Report(first, Say("$$$/Vidra/Formats/LossStyle=A style sheet is left out; colours of classes other than the "
                        "usual ones go with it."));
    else if (word == u"REGION")
      Report(first, Say("$$$/Vidra/Formats/LossRegion=A region is left out."));
    else if (!IsBlank(line))
      Report(first, Say("$$$/Vidra/Formats/NoTimes=The text \"{0}\" is left out: it has no times.", {Quote(line)}));
  }

  // A line of blanks is text; but above the next cue it was meant to be empty.
  bool EndsCue(std::size_t line) const {
    const std::u16string_view text = mLines[line];
    if (text.empty() || HasArrow(line))
      return true;
    if (!IsBlank(text))
      return false;
    return HasArrow(line + 1) || (line + 1 < mLines.Count() && !mLines[line + 1].empty() && HasArrow(line + 2));
  }

  void ReadCue(std::size_t timesLine) {
    const bool hasName = timesLine > mAt && !AllDigits(Trim(mLines[mAt])) && !IsBlank(mLines[mAt]);
    const std::u16string_view name = mLines[mAt];
    mAt = timesLine + 1;
    UString text;
    for (bool isFirst = true; mAt < mLines.Count() && !EndsCue(mAt); ++mAt, isFirst = false) {
      if (!isFirst)
        text += u'\n';
      text += mLines[mAt];
    }
    const CueTimes times = ParseStrictTimes(mLines[timesLine]);
    if (!times.error.empty()) {
      Report(timesLine, times.error);
      return;
    }
    CueBuilder builder(mRules);
    AppendMarkup(text, Dialect::WebVTT, builder);
    if (hasName)
      builder.Lose(Say("$$$/Vidra/Formats/LossName=the cue's name \"{0}\"", {Quote(name)}));
    const Placement placement = ReadCueSettings(times.rest, mRules.GetFormat(), builder);
    mResult.captions.push_back(builder.Build(times.begin, times.end, placement));
    if (const std::string losses = DescribeLosses(builder.GetLosses()); !losses.empty())
      Report(timesLine, losses);
  }

  const Lines& mLines;
  FormatRules mRules;
  ProgressMeter& mProgress;
  ReadResult& mResult;
  std::size_t mAt = 0;
};

} // namespace

ReadResult ReadWebVTT(std::string_view bytes, StreamFormat format, const Progress& progress) {
  ReadResult result;
  result.kind = FileKind::WebVTT;
  const UString text = OpenText(bytes, NoCaptionFile, result);
  if (!result.error.empty())
    return result;
  const Lines lines(text);
  if (lines.Count() == 0 || !HasSignature(lines[0])) {
    result.error = NoCaptionFile();
    return result;
  }
  ProgressMeter meter(progress, text.size());
  Reader(lines, format, meter, result).Run();
  SortByBegin(result.captions);
  return result;
}

} // namespace Formats
