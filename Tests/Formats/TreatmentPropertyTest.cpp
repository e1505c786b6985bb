// Before rapidcheck, whose own FAIL this one would meet.
#include <gtest/gtest.h>

#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>

#include "Building.h"
#include "Formats/Treatment.h"

using namespace building;
using namespace Formats;
using BE::LongLines;
using BE::Overlaps;

namespace {

rc::Gen<CaptionStatePtr> GenCaption() {
  return rc::gen::map(
      rc::gen::tuple(rc::gen::inRange(0, 40), rc::gen::inRange(1, 20),
                     rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 12)), rc::gen::inRange(0, 3)),
      [](const std::tuple<int, int, std::vector<int>, int>& parts) {
        const auto& [begin, length, units, italics] = parts;
        UString text;
        for (const int unit : units)
          text += unit < 3 ? u' ' : unit == 3 ? u'\n' : static_cast<char16_t>(u'a' + unit);
        const auto caption = Caption(begin * 100, (begin + length) * 100, text);
        TextSpanAttributes italic;
        italic.italic = true;
        if (italics > 0 && text.size() > 1)
          caption->runs.push_back({static_cast<std::uint32_t>(text.size() / 2), zebcaptioning::Share(italic)});
        return CaptionStatePtr(caption);
      });
}
rc::Gen<Captions> GenCaptions() {
  return rc::gen::container<Captions>(GenCaption());
}

// Each character that is to be seen, with its slant, in order.
std::string Seen(const Captions& captions) {
  std::string seen;
  for (const CaptionStatePtr& caption : captions) {
    for (std::size_t i = 0; i < caption->text.size(); ++i) {
      const char16_t c = caption->text[i];
      if (c == u' ' || c == u'\n')
        continue;
      bool isItalic = false;
      for (const TextRun& run : caption->runs)
        isItalic = run.start <= i ? run.attributes->italic : isItalic;
      seen += static_cast<char>(isItalic ? c - u'a' + u'A' : c);
    }
  }
  return seen;
}

// The same where captions may change their order.
std::string Sorted(std::string seen) {
  std::sort(seen.begin(), seen.end());
  return seen;
}

bool IsSound(const Captions& captions) {
  return std::all_of(captions.begin(), captions.end(), [](const CaptionStatePtr& caption) {
    const auto& runs = caption->runs;
    bool isSound = caption->begin < caption->end && !runs.empty() && runs[0].start == 0;
    for (std::size_t i = 1; i < runs.size(); ++i)
      isSound = isSound && runs[i - 1].start < runs[i].start && runs[i].start < caption->text.size() &&
                !(*runs[i - 1].attributes == *runs[i].attributes);
    return isSound;
  });
}

bool IsOrdered(const Captions& captions) {
  return std::is_sorted(captions.begin(), captions.end(),
                        [](const auto& a, const auto& b) { return a->begin < b->begin; });
}
bool HasNoOverlap(const Captions& captions) {
  for (std::size_t i = 1; i < captions.size(); ++i) {
    if (captions[i - 1]->end > captions[i]->begin)
      return false;
  }
  return true;
}
bool AreSame(const Captions& a, const Captions& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) { return *x == *y; });
}

} // namespace

RC_GTEST_PROP(Treatments, BreakingLinesLosesNoWordAndBreaksNothingTwice, ()) {
  const Captions captions = *GenCaptions();
  const auto how = *rc::gen::element(LongLines::Wrap, LongLines::Reflow);
  const auto length = static_cast<std::size_t>(*rc::gen::inRange(1, 12));
  Problems problems;
  const Captions broken = BreakLines(captions, how, length, k608, problems);
  RC_ASSERT(Seen(broken) == Seen(captions));
  RC_ASSERT(IsSound(broken));
  RC_ASSERT(AreSame(BreakLines(broken, how, length, k608, problems), broken));
  // A line that is still too long is one word.
  for (const CaptionStatePtr& caption : broken) {
    std::size_t line = 0;
    for (std::size_t i = 0; i <= caption->text.size(); ++i) {
      if (i < caption->text.size() && caption->text[i] != u'\n')
        continue;
      std::u16string_view words = std::u16string_view(caption->text).substr(line, i - line);
      while (!words.empty() && words.back() == u' ')
        words.remove_suffix(1);
      while (words.size() > length && words.front() == u' ')
        words.remove_prefix(1);
      RC_ASSERT(words.size() <= length || words.find(u' ') == std::u16string_view::npos);
      line = i + 1;
    }
  }
}

RC_GTEST_PROP(Treatments, SplittingLosesNoWordAndLeavesNoCaptionWithTooManyLines, ()) {
  Captions captions = *GenCaptions();
  std::stable_sort(captions.begin(), captions.end(), [](const auto& a, const auto& b) { return a->begin < b->begin; });
  const auto lines = static_cast<std::size_t>(*rc::gen::inRange(1, 4));
  Problems problems;
  const Captions split = SplitCaptions(captions, lines, k608, problems);
  RC_ASSERT(Sorted(Seen(split)) == Sorted(Seen(captions)));
  RC_ASSERT(IsSound(split));
  RC_ASSERT(IsOrdered(split));
  for (const CaptionStatePtr& caption : split)
    RC_ASSERT(static_cast<std::size_t>(std::count(caption->text.begin(), caption->text.end(), u'\n')) < lines);
  RC_ASSERT(AreSame(SplitCaptions(split, lines, k608, problems), split));
}

RC_GTEST_PROP(Treatments, MovingTimesApartLosesNoWordAndLeavesNoOverlap, ()) {
  const Captions captions = *GenCaptions();
  const auto how = *rc::gen::element(Overlaps::EndEarlier, Overlaps::BeginLater);
  Problems problems;
  const Captions apart = ResolveOverlaps(captions, how, k608, problems);
  RC_ASSERT(Sorted(Seen(apart)) == Sorted(Seen(captions)));
  RC_ASSERT(IsSound(apart));
  RC_ASSERT(HasNoOverlap(apart));
  RC_ASSERT(AreSame(ResolveOverlaps(apart, how, k608, problems), apart));
}

// At each moment the characters on show are those that were on show before.
RC_GTEST_PROP(Treatments, MergingShowsTheSameTextAtEachMoment, ()) {
  const Captions captions = *GenCaptions();
  Problems problems;
  const Captions merged = ResolveOverlaps(captions, Overlaps::Merge, k608, problems);
  RC_ASSERT(IsSound(merged));
  RC_ASSERT(IsOrdered(merged));
  const auto at = [](const Captions& all, TickTime time) {
    Captions shown;
    std::copy_if(all.begin(), all.end(), std::back_inserter(shown),
                 [time](const auto& caption) { return caption->begin <= time && time < caption->end; });
    return shown;
  };
  std::size_t most = 0;
  for (int tenth = 0; tenth < 60; ++tenth) {
    const Captions before = at(captions, Ms(tenth * 100));
    most = std::max(most, before.size());
    RC_ASSERT(Sorted(Seen(at(merged, Ms(tenth * 100)))) == Sorted(Seen(before)));
  }
  if (most <= kMostMerged) {
    RC_ASSERT(HasNoOverlap(merged));
    RC_ASSERT(AreSame(ResolveOverlaps(merged, Overlaps::Merge, k608, problems), merged));
  }
}

RC_GTEST_PROP(Treatments, LengtheningMakesNoNewOverlapAndNothingShorter, ()) {
  Captions captions = *GenCaptions();
  std::stable_sort(captions.begin(), captions.end(), [](const auto& a, const auto& b) { return a->begin < b->begin; });
  const TickTime minimum = Ms(*rc::gen::inRange(0, 3000));
  Problems problems;
  const Captions longer = LengthenCaptions(captions, minimum, problems);
  RC_ASSERT(Seen(longer) == Seen(captions));
  for (std::size_t i = 0; i < longer.size(); ++i) {
    RC_ASSERT(longer[i]->begin == captions[i]->begin);
    RC_ASSERT(longer[i]->end >= captions[i]->end);
    if (i + 1 < longer.size() && longer[i]->end != captions[i]->end)
      RC_ASSERT(longer[i]->end <= longer[i + 1]->begin);
  }
  RC_ASSERT(AreSame(LengthenCaptions(longer, minimum, problems), longer));
}

RC_GTEST_PROP(Treatments, ShiftingThereAndBackLeavesTimesAsTheyWere, ()) {
  const Captions captions = *GenCaptions();
  const TickTime offset = Ms(*rc::gen::inRange(0, 5000));
  Problems problems;
  const Captions there = ShiftTimes(captions, offset, problems);
  RC_ASSERT(AreSame(ShiftTimes(there, TickTime() - offset, problems), captions));
  RC_ASSERT(problems.empty());
}

RC_GTEST_PROP(Treatments, AllOfThemTogetherLoseNoWord, ()) {
  BE::CaptionsImportSettings settings;
  settings.longLines = *rc::gen::element(LongLines::Keep, LongLines::Wrap, LongLines::Reflow);
  settings.lineLength = *rc::gen::inRange(1, 12);
  settings.longCaptions = *rc::gen::element(BE::LongCaptions::Keep, BE::LongCaptions::Split);
  settings.lineCount = *rc::gen::inRange(1, 4);
  settings.overlaps = *rc::gen::element(Overlaps::Keep, Overlaps::EndEarlier, Overlaps::BeginLater);
  settings.minimumDuration = Ms(*rc::gen::inRange(0, 2000));
  settings.anchor = *rc::gen::inRange(0, 9);
  ReadResult result;
  result.captions = *GenCaptions();
  const std::string before = Sorted(Seen(result.captions));
  Treat(result, settings, k608, 32);
  RC_ASSERT(Sorted(Seen(result.captions)) == before);
  RC_ASSERT(IsSound(result.captions));
  RC_ASSERT(IsOrdered(result.captions));
  RC_ASSERT(settings.overlaps == Overlaps::Keep || HasNoOverlap(result.captions));
}
