#pragma once

#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "Captions/contracts/Caption.h"
#include "zebcaptioning/FormatFacts.h"
#include "zebcaptioning/Spans.h"
#include "zebcaptioning/StreamNumbers.h"

// Captions for the tests, with as little said as a case is about.
namespace builders {

using namespace zebcaptioning;
using zebcore::UString;
using zebmediatypes::TickTime;

inline constexpr StreamFormat kCC1 = kStreamFormat_608_CC1;
inline const StreamFormat k708 = GetStreamFormat(FormatFamily::CEA708, 1);
inline const StreamFormat kTeletext = GetStreamFormat(FormatFamily::Teletext, 1);
inline const StreamFormat kEbu = GetStreamFormat(FormatFamily::EbuN19, 1);
inline const StreamFormat kAustralian = GetStreamFormat(FormatFamily::Australian, 1);
inline const StreamFormat kOpen = GetStreamFormat(FormatFamily::Open, 1);

inline const CaptioningColor kWhite{1, 1, 1, 1};
inline const CaptioningColor kRed{1, 0, 0, 1};
inline const CaptioningColor kBlack{0, 0, 0, 1};

inline TextSpanAttributes Plain() {
  return {};
}
inline TextSpanAttributes Bold() {
  TextSpanAttributes span;
  span.bold = true;
  return span;
}
inline TextSpanAttributes Italic() {
  TextSpanAttributes span;
  span.italic = true;
  return span;
}
inline TextSpanAttributes Sized(float size) {
  TextSpanAttributes span;
  span.size = size;
  return span;
}

// Runs as (start, attributes).
inline CaptionStatePtr State(const UString& text,
                             const std::vector<std::pair<std::uint32_t, TextSpanAttributes>>& runs = {}) {
  std::vector<TextRun> shared;
  for (const auto& [start, span] : runs)
    shared.push_back({start, Share(span)});
  return MakeCaptionState(TickTime(0), TickTime(100), text, std::move(shared));
}

inline boost::intrusive_ptr<Caption> Held(const CaptionStatePtr& state) {
  return new Caption(state);
}

inline constexpr TextRange kWhole{0, kTextRange_End};

inline boost::intrusive_ptr<CaptionFormatInfo> Merged(const std::vector<CaptionStatePtr>& states,
                                                      TextRange range = kWhole) {
  boost::intrusive_ptr<CaptionFormatInfo> info(new CaptionFormatInfo);
  bool first = true;
  for (const CaptionStatePtr& state : states) {
    Held(state)->GetFormatInfo(info, range, 32, 15, first);
    first = false;
  }
  return info;
}

// The attributes of each unit of the text.
inline std::vector<TextSpanAttributes> PerUnit(const CaptionState& state) {
  std::vector<TextSpanAttributes> units;
  for (std::size_t i = 0; i < state.text.size(); ++i)
    units.push_back(*state.runs[FindRun(state, i)].attributes);
  return units;
}

inline ::testing::AssertionResult IsProper(const CaptionState& state) {
  if (state.runs.empty() || state.runs.front().start != 0)
    return ::testing::AssertionFailure() << "no run at the start";
  for (std::size_t i = 0; i < state.runs.size(); ++i) {
    const std::size_t start = state.runs[i].start;
    if (!state.runs[i].attributes)
      return ::testing::AssertionFailure() << "run " << i << " is null";
    if (i == 0)
      continue;
    if (start <= state.runs[i - 1].start || start >= state.text.size())
      return ::testing::AssertionFailure() << "run " << i << " starts at " << start;
    if (*state.runs[i].attributes == *state.runs[i - 1].attributes)
      return ::testing::AssertionFailure() << "runs " << i - 1 << " and " << i << " are equal";
    const char16_t before = state.text[start - 1];
    const char16_t after = state.text[start];
    if (before >= 0xD800 && before <= 0xDBFF && after >= 0xDC00 && after <= 0xDFFF)
      return ::testing::AssertionFailure() << "run " << i << " parts a surrogate pair";
  }
  return ::testing::AssertionSuccess();
}

// Runs a property with 10,000 cases, unless RC_PARAMS says otherwise.
template <class Property> bool CheckTenThousand(const std::string& description, Property&& property) {
  rc::detail::TestMetadata metadata;
  metadata.id = description;
  metadata.description = description;
  rc::detail::TestParams parameters = rc::detail::configuration().testParams;
  if (!std::getenv("RC_PARAMS"))
    parameters.maxSuccess = 10000;
  const auto result = rc::detail::checkTestable(std::forward<Property>(property), metadata, parameters);
  if (result.template is<rc::detail::SuccessResult>())
    return true;
  rc::detail::printResultMessage(result, std::cerr);
  std::cerr << std::endl;
  return false;
}

} // namespace builders
