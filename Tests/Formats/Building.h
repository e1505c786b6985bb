#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "Formats/Formats.h"
#include "zebcaptioning/FormatFacts.h"
#include "zebcaptioning/StreamNumbers.h"

// Captions and files in few words.
namespace building {

using Formats::FileKind;
using Formats::ReadResult;
using Formats::WriteResult;
using zebcaptioning::CaptioningColor;
using zebcaptioning::CaptionState;
using zebcaptioning::CaptionStatePtr;
using zebcaptioning::StreamFormat;
using zebcaptioning::TextRun;
using zebcaptioning::TextSpanAttributes;
using zebcore::UString;
using zebmediatypes::TickTime;

inline const StreamFormat kOpen = zebcaptioning::GetStreamFormat(zebcaptioning::FormatFamily::Open, 1);
inline const StreamFormat k608 = zebcaptioning::kStreamFormat_608_CC1;
inline const StreamFormat kTeletext = zebcaptioning::GetStreamFormat(zebcaptioning::FormatFamily::Teletext, 1);

inline TickTime Ms(std::int64_t milliseconds) {
  return TickTime(milliseconds * 254016000);
}

inline const CaptioningColor kWhite{1, 1, 1, 1};
inline const CaptioningColor kRed{1, 0, 0, 1};
inline const CaptioningColor kYellow{1, 1, 0, 1};
inline const CaptioningColor kBlue{0, 0, 1, 1};

// A cue around a text.
inline std::string SubRip(const std::string& text) {
  return "1\n00:00:01,000 --> 00:00:02,000\n" + text + "\n";
}
inline std::string WebVTT(const std::string& text, const std::string& settings = "") {
  return "WEBVTT\n\n00:01.000 --> 00:02.000" + (settings.empty() ? "" : " " + settings) + "\n" + text + "\n";
}

inline std::string Text(const CaptionStatePtr& state) {
  return zebcore::ToUTF8(state->text);
}
inline std::vector<std::string> Texts(const ReadResult& result) {
  std::vector<std::string> texts;
  for (const CaptionStatePtr& state : result.captions)
    texts.push_back(Text(state));
  return texts;
}

// "b:One|:two|i#ff0000:three": each run as its flags, its colours where they are not white on black, and its text.
inline std::string Runs(const CaptionStatePtr& state) {
  std::string runs;
  static const TextSpanAttributes plain;
  for (std::size_t i = 0; i < state->runs.size(); ++i) {
    const TextSpanAttributes& span = *state->runs[i].attributes;
    const std::size_t start = state->runs[i].start;
    const std::size_t end = i + 1 < state->runs.size() ? state->runs[i + 1].start : state->text.size();
    const auto hex = [](const CaptioningColor& color) {
      char text[8];
      std::snprintf(text, sizeof text, "#%02x%02x%02x", static_cast<int>(color.red * 255 + 0.5F),
                    static_cast<int>(color.green * 255 + 0.5F), static_cast<int>(color.blue * 255 + 0.5F));
      return std::string(text);
    };
    runs += i > 0 ? "|" : "";
    runs += (span.bold ? "b" : "") + std::string(span.italic ? "i" : "") + (span.underline ? "u" : "");
    if (span.textColor != plain.textColor)
      runs += hex(span.textColor);
    if (span.backgroundColor != plain.backgroundColor)
      runs += "on" + hex(span.backgroundColor);
    runs += ":" + zebcore::ToUTF8(std::u16string_view(state->text).substr(start, end - start));
  }
  return runs;
}

// The one caption of a file, with everything else in order.
inline CaptionStatePtr Only(const ReadResult& result) {
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.captions.size(), 1U);
  return result.captions.empty() ? CaptionStatePtr(new CaptionState) : result.captions[0];
}

inline int ProblemLine(const ReadResult& result) {
  EXPECT_EQ(result.problems.size(), 1U);
  return result.problems.empty() ? -1 : result.problems[0].line;
}
inline std::string ProblemReason(const ReadResult& result) {
  EXPECT_EQ(result.problems.size(), 1U);
  return result.problems.empty() ? "" : result.problems[0].reason;
}
inline bool Says(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

inline boost::intrusive_ptr<CaptionState> Caption(std::int64_t begin, std::int64_t end, const UString& text) {
  boost::intrusive_ptr<CaptionState> state(new CaptionState);
  state->begin = Ms(begin);
  state->end = Ms(end);
  state->text = text;
  state->paragraph.alignment = zebcaptioning::ParagraphStyleAttributes::kTextAlignment_Center;
  state->runs.push_back({0, zebcaptioning::Share(TextSpanAttributes())});
  return state;
}
inline WriteResult Write(FileKind kind, const std::vector<CaptionStatePtr>& captions, StreamFormat format) {
  return Formats::Write(kind, captions, format);
}

} // namespace building
