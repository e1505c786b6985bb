// Before rapidcheck, whose own FAIL this one would meet.
#include <gtest/gtest.h>

#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "Building.h"
#include "Formats/CueBuilder.h"

using namespace building;

namespace {

// Characters that mean something to a reader come often.
rc::Gen<char16_t> GenUnit() {
  static const std::vector<char16_t> kDelicate{u'<', u'>', u'&', u'{',      u'}', u'\\', u'\n', u' ',  u'-', u'/',
                                               u'b', u'i', u';', u'1',      u':', u',',  u'.',  u'\t', u'a', u'm',
                                               u'p', u'#', u'"', u'\u00A0', u'é', u'茶', u'n',  u'c',  u'v'};
  return rc::gen::elementOf(kDelicate);
}
rc::Gen<UString> GenText() {
  static const std::vector<UString> kPieces{
      u"<b>", u"</i>",    u"-->",   u"&amp;", u"{\\an8}", u"\n\n",       u"00:00:01,000 --> 00:00:02,000",
      u"1\n", u"<c.red>", u"&#65;", u"NOTE",  u"WEBVTT",  u"\U0001F600", u"<br>"};
  return rc::gen::map(
      rc::gen::container<std::vector<UString>>(rc::gen::oneOf(
          rc::gen::map(GenUnit(), [](char16_t c) { return UString(1, c); }), rc::gen::elementOf(kPieces))),
      [](const std::vector<UString>& parts) {
        UString text;
        for (const UString& part : parts)
          text += part;
        return text;
      });
}

TextSpanAttributes GenSpan(FileKind kind) {
  static const std::vector<CaptioningColor> kColors{{1, 1, 1, 1}, {0, 1, 0, 1}, {0, 1, 1, 1}, {1, 0, 0, 1},
                                                    {1, 1, 0, 1}, {1, 0, 1, 1}, {0, 0, 1, 1}, {0, 0, 0, 1}};
  TextSpanAttributes span;
  span.bold = *rc::gen::arbitrary<bool>();
  span.italic = *rc::gen::arbitrary<bool>();
  span.underline = *rc::gen::arbitrary<bool>();
  span.textColor = *rc::gen::elementOf(kColors);
  if (kind == FileKind::WebVTT)
    span.backgroundColor = *rc::gen::elementOf(kColors);
  return span;
}

CaptionStatePtr GenCaption(FileKind kind, StreamFormat format) {
  const auto begin = *rc::gen::inRange<std::int64_t>(0, 400000000);
  const auto length = *rc::gen::inRange<std::int64_t>(1, 100000);
  const UString text = *GenText();
  const int anchor = *rc::gen::inRange(0, 10);
  const int alignment = kind == FileKind::SubRip ? Formats::GetAnchorAlignment(anchor) : *rc::gen::inRange(0, 3);
  Formats::Placement place = Formats::PlaceText(format, text, anchor, alignment);
  if (kind == FileKind::WebVTT && format == k608 && anchor == 9 && *rc::gen::arbitrary<bool>()) {
    place.x = *rc::gen::inRange(0, 32);
    place.y = *rc::gen::inRange(0, 15);
  }
  auto state = Caption(begin, begin + length, text);
  state->paragraph.anchor = anchor;
  state->paragraph.alignment = static_cast<zebcaptioning::ParagraphStyleAttributes::TextAlignmentType>(alignment);
  state->paragraph.x = place.x;
  state->paragraph.y = place.y;
  state->paragraph.captionType = zebcaptioning::GetDefaultCaptionType(format);
  state->runs.clear();
  std::uint32_t start = 0;
  do {
    const TextSpanAttributes span =
        zebcaptioning::NearestLegalSpan(format, text.empty() ? TextSpanAttributes() : GenSpan(kind));
    if (state->runs.empty() || !(*state->runs.back().attributes == span))
      state->runs.push_back({start, zebcaptioning::Share(span)});
    start += static_cast<std::uint32_t>(*rc::gen::inRange(1, 8));
    // Not between the two units of one character.
    if (start < text.size() && text[start] >= 0xDC00 && text[start] < 0xE000)
      ++start;
  } while (start < text.size());
  return state;
}

void CheckRoundTrip(FileKind kind, StreamFormat format) {
  std::vector<CaptionStatePtr> captions;
  const int count = *rc::gen::inRange(0, 6);
  for (int i = 0; i < count; ++i)
    captions.push_back(GenCaption(kind, format));
  Formats::SortByBegin(captions);
  const WriteResult written = Write(kind, captions, format);
  for (const Formats::Problem& problem : written.problems)
    RC_FAIL(problem.reason);
  if (captions.empty())
    return;
  const ReadResult read = Formats::Read(written.bytes, "a", format);
  RC_LOG() << written.bytes;
  RC_ASSERT(read.error.empty());
  RC_ASSERT(read.problems.empty());
  RC_ASSERT(read.kind == kind);
  RC_ASSERT(read.captions.size() == captions.size());
  for (std::size_t i = 0; i < captions.size(); ++i) {
    RC_ASSERT(read.captions[i]->begin == captions[i]->begin);
    RC_ASSERT(read.captions[i]->end == captions[i]->end);
    RC_ASSERT(read.captions[i]->text == captions[i]->text);
    RC_ASSERT(read.captions[i]->runs == captions[i]->runs);
    RC_ASSERT(read.captions[i]->paragraph == captions[i]->paragraph);
  }
}

std::string GenDamaged(const std::string& whole) {
  std::string bytes = whole;
  const int edits = *rc::gen::inRange(0, 12);
  for (int i = 0; i < edits && !bytes.empty(); ++i) {
    const auto at = static_cast<std::size_t>(*rc::gen::inRange(0, static_cast<int>(bytes.size())));
    switch (*rc::gen::inRange(0, 3)) {
    case 0:
      bytes[at] = *rc::gen::arbitrary<char>();
      break;
    case 1:
      bytes.erase(at, static_cast<std::size_t>(*rc::gen::inRange(1, 9)));
      break;
    default:
      bytes.insert(at, bytes.substr(bytes.size() / 2, 7));
    }
  }
  return bytes;
}

void CheckSane(const std::string& bytes) {
  for (const char* name : {"a.srt", "a.vtt"}) {
    for (const StreamFormat format : {kOpen, k608, kTeletext}) {
      const ReadResult result = Formats::Read(bytes, name, format);
      RC_ASSERT(result.error.empty() || result.captions.empty());
      for (const CaptionStatePtr& state : result.captions) {
        RC_ASSERT(state->begin < state->end);
        RC_ASSERT(!state->runs.empty());
        RC_ASSERT(state->runs[0].start == 0U);
        RC_ASSERT(state->text.find(u'\r') == UString::npos);
        for (std::size_t i = 1; i < state->runs.size(); ++i) {
          RC_ASSERT(state->runs[i - 1].start < state->runs[i].start);
          RC_ASSERT(state->runs[i].start < state->text.size());
          RC_ASSERT(!(*state->runs[i - 1].attributes == *state->runs[i].attributes));
        }
      }
      for (const Formats::Problem& problem : result.problems) {
        RC_ASSERT(problem.line > 0);
        RC_ASSERT(!problem.reason.empty());
      }
    }
  }
}

} // namespace

RC_GTEST_PROP(RoundTrip, WhatIsWrittenAsSubRipForOpenCaptionsIsReadAsItWas, ()) {
  CheckRoundTrip(FileKind::SubRip, kOpen);
}
RC_GTEST_PROP(RoundTrip, WhatIsWrittenAsSubRipForCEA608IsReadAsItWas, ()) {
  CheckRoundTrip(FileKind::SubRip, k608);
}
RC_GTEST_PROP(RoundTrip, WhatIsWrittenAsWebVTTForOpenCaptionsIsReadAsItWas, ()) {
  CheckRoundTrip(FileKind::WebVTT, kOpen);
}
RC_GTEST_PROP(RoundTrip, WhatIsWrittenAsWebVTTForCEA608IsReadAsItWas, ()) {
  CheckRoundTrip(FileKind::WebVTT, k608);
}

RC_GTEST_PROP(Readers, AnyBytesGiveCaptionsInOrderOrAnError, ()) {
  CheckSane(*rc::gen::container<std::string>(rc::gen::arbitrary<char>()));
}
RC_GTEST_PROP(Readers, ADamagedSubRipFileGivesCaptionsInOrderOrAnError, ()) {
  CheckSane(GenDamaged("1\n00:00:01,000 --> 00:00:02,000\n{\\an8}<b>One</b> <font color=red>two</font> &amp;\n\n2\n"
                       "00:00:02,000 --> 00:00:03,500\n<i>Three\nfour\n\n3\n00:00:05,000 --> 00:00:06,000\nFive\n"));
}
RC_GTEST_PROP(Readers, ADamagedWebVTTFileGivesCaptionsInOrderOrAnError, ()) {
  CheckSane(
      GenDamaged("WEBVTT\n\nNOTE x\n\na\n00:01.000 --> 00:02.000 line:10% position:5%,line-left align:end\n"
                 "<v Bob>One <c.red.bg_blue>two</c>&lt;<00:01.500>\n\n00:03.000 --> 00:04.000\n<ruby>a<rt>b</ruby>\n"));
}
