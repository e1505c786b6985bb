#include <map>

#include "Formats/CaptionEdit.h"
#include "Formats/Text.h"
#include "Formats/Treatment.h"
#include "zebcaptioning/FormatFacts.h"

// Style and place for captions that bring none.
namespace Formats {

using zebcaptioning::CaptionState;
using zebcaptioning::ParagraphStyleAttributes;
using zebcaptioning::SharedSpan;
using zebcaptioning::TextRun;

namespace {

constexpr int kNoAnchor = 9;
constexpr int kBottomCenter = 7;
// Files with more looks than that make each of them anew.
constexpr std::size_t kMostKnown = 256;

// The fields of a style that are given, or that a caption leaves open.
struct Fields {
  bool family = false;
  bool size = false;
  bool bold = false;
  bool italic = false;
  bool text = false;
  bool background = false;
  friend auto operator<=>(const Fields&, const Fields&) = default;
  bool Any() const { return family || size || bold || italic || text || background; }
};

Fields FieldsOf(const BE::ImportStyle& style) {
  return {!style.family.empty(),
          style.size > 0,
          style.bold,
          style.italic,
          style.textColor.has_value(),
          style.backgroundColor.has_value()};
}

class Stylist {
 public:
  Stylist(const BE::ImportStyle& style, StreamFormat format)
      : mStyle(style), mFamily(zebcore::FromUTF8(style.family)), mGiven(FieldsOf(style)), mRules(format),
        mPlain(zebcaptioning::NearestLegalSpan(format, {})) {}

  bool HasStyle() const { return mGiven.Any(); }

  CaptionStatePtr Treat(const CaptionStatePtr& caption) {
    const Fields open = FindOpen(*caption);
    if (!open.Any())
      return caption;
    CaptionDraft draft = CopyCaption(*caption);
    for (TextRun& run : draft->runs)
      run.attributes = Give(run.attributes, open);
    return *draft == *caption ? caption : CaptionStatePtr(draft);
  }

  const std::vector<std::string>& GetLosses() const { return mLosses; }

 private:
  // Given fields in which no run differs from text without tags.
  Fields FindOpen(const CaptionState& caption) const {
    Fields open = mGiven;
    for (const TextRun& run : caption.runs) {
      const TextSpanAttributes& span = *run.attributes;
      open.family = open.family && span.family == mPlain.family;
      open.size = open.size && span.size == mPlain.size;
      open.bold = open.bold && span.bold == mPlain.bold;
      open.italic = open.italic && span.italic == mPlain.italic;
      open.text = open.text && span.textColor == mPlain.textColor;
      open.background = open.background && span.backgroundColor == mPlain.backgroundColor;
    }
    return open;
  }

  SharedSpan Give(const SharedSpan& span, const Fields& open) {
    const auto key = std::make_pair(span, open);
    if (const auto known = mKnown.find(key); known != mKnown.end())
      return known->second;
    TextSpanAttributes wanted = *span;
    if (open.family)
      wanted.family = mFamily;
    if (open.size)
      wanted.size = mStyle.size;
    if (open.bold)
      wanted.bold = true;
    if (open.italic)
      wanted.italic = true;
    if (open.text)
      wanted.textColor = *mStyle.textColor;
    if (open.background)
      wanted.backgroundColor = *mStyle.backgroundColor;
    if (mKnown.size() >= kMostKnown)
      mKnown.clear();
    return mKnown[key] = mRules.Fit(wanted, mLosses);
  }

  const BE::ImportStyle& mStyle;
  UString mFamily;
  Fields mGiven;
  FormatRules mRules;
  TextSpanAttributes mPlain;
  std::map<std::pair<SharedSpan, Fields>, SharedSpan> mKnown; // holds the spans, so that no address comes twice
  std::vector<std::string> mLosses;
};

} // namespace

Captions GiveStyle(Captions captions, const BE::ImportStyle& style, StreamFormat format, Problems& problems) {
  Stylist stylist(style, format);
  if (!stylist.HasStyle())
    return captions;
  for (CaptionStatePtr& caption : captions)
    caption = stylist.Treat(caption);
  std::string list;
  for (const std::string& loss : stylist.GetLosses())
    list += (list.empty() ? "" : ", ") + loss;
  if (!list.empty())
    problems.push_back(
        {0, Say("$$$/Vidra/Formats/StyleWithout=The style of the import settings is given without {0}.", {list})});
  return captions;
}

Captions GivePlace(Captions captions, int alignment, int anchor, StreamFormat format) {
  if (anchor == kBottomCenter && alignment == ParagraphStyleAttributes::kTextAlignment_Center)
    return captions;
  for (CaptionStatePtr& caption : captions) {
    const ParagraphStyleAttributes& old = caption->paragraph;
    const Placement byItself = PlaceText(format, caption->text, kNoAnchor, old.alignment);
    if (old.anchor != kNoAnchor || old.x != byItself.x || old.y != byItself.y)
      continue;
    const bool hasAlignment = old.alignment != ParagraphStyleAttributes::kTextAlignment_Center;
    const Placement placement = PlaceText(format, caption->text, anchor, hasAlignment ? old.alignment : alignment);
    CaptionDraft draft = CopyCaption(*caption);
    draft->paragraph.anchor = placement.anchor;
    draft->paragraph.alignment = static_cast<ParagraphStyleAttributes::TextAlignmentType>(placement.alignment);
    draft->paragraph.x = placement.x;
    draft->paragraph.y = placement.y;
    caption = draft;
  }
  return captions;
}

} // namespace Formats
