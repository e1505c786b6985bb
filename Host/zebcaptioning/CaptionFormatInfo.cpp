#include "Captions/contracts/CaptionFormatInfo.h"

#include <algorithm>

namespace zebcaptioning {

namespace {

// The first source sets the value; a later one that differs leaves it and makes it mixed.
template <class Attribute, class T> void Merge(Attribute& attribute, const T& value, bool first) {
  if (first) {
    attribute.value = value;
    attribute.uniform = true;
  } else if (attribute.uniform && !(attribute.value == value)) {
    attribute.uniform = false;
  }
}

// A colour is kept without its opacity, which is an attribute of its own.
CaptioningColor WithAlpha(CaptioningColor color, float alpha) {
  color.alpha = alpha;
  return color;
}

} // namespace

// What a caption has that nobody has formatted.
CaptionFormatInfo::CaptionFormatInfo() {
  Reset();
}
CaptionFormatInfo::~CaptionFormatInfo() = default;

void CaptionFormatInfo::Reset() {
  MergeSpan(TextSpanAttributes(), true);
  MergeParagraph(ParagraphStyleAttributes(), true);
  MergeRegionArea(nullptr, false, true);
  mForceBolded = false;
  mForceItalicized = false;
  mMergedSpans = {};
}

CaptionType CaptionFormatInfo::GetCaptionType(bool& uniform) {
  uniform = mCaptionType.uniform;
  return mCaptionType.value;
}
void CaptionFormatInfo::SetCaptionType(CaptionType type, bool uniform) {
  mCaptionType = {type, uniform};
}

bool CaptionFormatInfo::GetIsUnderlined(bool& uniform) const {
  uniform = mUnderlined.uniform;
  return mUnderlined.value;
}
void CaptionFormatInfo::SetIsUnderlined(bool underlined, bool uniform) {
  mUnderlined = {underlined, uniform};
}

bool CaptionFormatInfo::GetIsItalicized(bool& uniform) const {
  uniform = mItalicized.uniform;
  return mItalicized.value;
}
void CaptionFormatInfo::SetIsItalicized(bool italicized, bool uniform) {
  mItalicized = {italicized, uniform};
}

bool CaptionFormatInfo::GetIsBolded(bool& uniform) const {
  uniform = mBolded.uniform;
  return mBolded.value;
}
void CaptionFormatInfo::SetIsBolded(bool bolded, bool uniform) {
  mBolded = {bolded, uniform};
}

void CaptionFormatInfo::SetForceBolded(bool force) {
  mForceBolded = force;
}
bool CaptionFormatInfo::GetForceBolded() const {
  return mForceBolded;
}
void CaptionFormatInfo::SetForceItalicized(bool force) {
  mForceItalicized = force;
}
bool CaptionFormatInfo::GetForceItalicized() const {
  return mForceItalicized;
}

void CaptionFormatInfo::GetFontFamily(UString& family, bool& uniform) const {
  family = mFontFamily.value;
  uniform = mFontFamily.uniform;
}
void CaptionFormatInfo::SetFontFamily(const UString& family, bool uniform) {
  mFontFamily = {family, uniform};
}

float CaptionFormatInfo::GetFontSize(bool& uniform) const {
  uniform = mFontSize.uniform;
  return mFontSize.value;
}
void CaptionFormatInfo::SetFontSize(float size, bool uniform) {
  mFontSize = {size, uniform};
}

float CaptionFormatInfo::GetTextEdgeWidth(bool& uniform) const {
  uniform = mEdgeWidth.uniform;
  return mEdgeWidth.value;
}
void CaptionFormatInfo::SetTextEdgeWidth(float width, bool uniform) {
  mEdgeWidth = {width, uniform};
}

int CaptionFormatInfo::GetLineSpacing(bool& uniform) const {
  uniform = mLineSpacing.uniform;
  return mLineSpacing.value;
}
void CaptionFormatInfo::SetLineSpacing(int spacing, bool uniform) {
  mLineSpacing = {spacing, uniform};
}

void CaptionFormatInfo::GetColor(ColorType type, CaptioningColor& color, bool& uniform) const {
  color = WithAlpha(mColors[type].value, mOpacities[type].value);
  uniform = mColors[type].uniform && mOpacities[type].uniform;
}
void CaptionFormatInfo::SetColor(ColorType type, const CaptioningColor& color, bool uniform) {
  mColors[type] = {WithAlpha(color, 0.0F), uniform};
  mOpacities[type] = {color.alpha, uniform};
}

float CaptionFormatInfo::GetOpacity(ColorType type, bool& uniform) const {
  uniform = mOpacities[type].uniform;
  return mOpacities[type].value;
}
void CaptionFormatInfo::SetOpacity(ColorType type, float opacity, bool uniform) {
  mOpacities[type] = {opacity, uniform};
}

CaptionFormatInfo::TextAlignmentType CaptionFormatInfo::GetTextAlignment(bool& uniform) {
  uniform = mAlignment.uniform;
  return mAlignment.value;
}
void CaptionFormatInfo::SetTextAlignment(TextAlignmentType alignment, bool uniform) {
  mAlignment = {alignment, uniform};
}

CaptionFormatInfo::AnchorID CaptionFormatInfo::GetAnchorID() {
  return mAnchor.value;
}
bool CaptionFormatInfo::IsAnchorUniform() const {
  return mAnchor.uniform;
}
void CaptionFormatInfo::SetAnchorID(AnchorID anchor, bool uniform) {
  mAnchor = {anchor, uniform};
}

int CaptionFormatInfo::GetPositionX(bool& uniform) const {
  uniform = mX.uniform;
  return mX.value;
}
void CaptionFormatInfo::SetPositionX(int x) {
  mX = {x, true};
}

int CaptionFormatInfo::GetPositionY(bool& uniform) const {
  uniform = mY.uniform;
  return mY.value;
}
void CaptionFormatInfo::SetPositionY(int y) {
  mY = {y, true};
}

bool CaptionFormatInfo::GetRegionArea(zebcore::geom::RectT<float>& area, bool& percent, bool& known) const {
  if (!mHasRegionArea)
    return false;
  area = mRegionArea;
  percent = mRegionAreaPercent;
  known = mRegionAreaKnown;
  return true;
}
void CaptionFormatInfo::SetRegionArea(const zebcore::geom::RectT<float>& area, bool percent, bool known) {
  mHasRegionArea = true;
  mRegionArea = area;
  mRegionAreaPercent = percent;
  mRegionAreaKnown = known;
}

int CaptionFormatInfo::GetMaxLineWidth() const {
  return mMaxLineWidth;
}
int CaptionFormatInfo::GetMaxBlockHeight() const {
  return mMaxBlockHeight;
}

const CaptionFormatInfo::UString& CaptionFormatInfo::GetRegionName(bool& uniform) const {
  uniform = mRegionName.uniform;
  return mRegionName.value;
}
const CaptionFormatInfo::UString& CaptionFormatInfo::GetStyleName(bool& uniform) const {
  uniform = mStyleName.uniform;
  return mStyleName.value;
}

// Merging the same attributes twice changes nothing, unless a setter came between; infos that are merged into are not
// set.
void CaptionFormatInfo::MergeSpan(const SharedSpan& span, bool first) {
  if (!first) {
    for (const SharedSpan& merged : mMergedSpans) {
      if (span == merged)
        return;
    }
  }
  MergeSpan(*span, first);
  mMergedSpans[mNextMergedSpan++ % mMergedSpans.size()] = span;
}

void CaptionFormatInfo::MergeSpan(const TextSpanAttributes& span, bool first) {
  Merge(mUnderlined, span.underline, first);
  Merge(mItalicized, span.italic, first);
  Merge(mBolded, span.bold, first);
  Merge(mFontFamily, span.family, first);
  Merge(mFontSize, span.size, first);
  Merge(mEdgeWidth, span.edgeWidth, first);
  const std::array<const CaptioningColor*, 3> colors{&span.textColor, &span.backgroundColor, &span.edgeColor};
  for (std::size_t type = 0; type < colors.size(); ++type) {
    Merge(mColors[type], WithAlpha(*colors[type], 0.0F), first);
    Merge(mOpacities[type], colors[type]->alpha, first);
  }
}

void CaptionFormatInfo::MergeParagraph(const ParagraphStyleAttributes& paragraph, bool first) {
  Merge(mCaptionType, paragraph.captionType, first);
  Merge(mAlignment, paragraph.alignment, first);
  Merge(mLineSpacing, paragraph.lineSpacing, first);
  Merge(mX, paragraph.x, first);
  Merge(mY, paragraph.y, first);
  if (first || paragraph.region != mLastRegion) {
    Merge(mRegionName, zebcore::FromUTF8(paragraph.region.Text()), first);
    mLastRegion = paragraph.region;
  }
  if (first || paragraph.style != mLastStyle) {
    Merge(mStyleName, zebcore::FromUTF8(paragraph.style.Text()), first);
    mLastStyle = paragraph.style;
  }
  // An anchor has no uniform flag to be told by: no cell is what differing captions have in common.
  constexpr AnchorID kNoCell = 9;
  Merge(mAnchor, paragraph.anchor, first);
  if (!mAnchor.uniform)
    mAnchor.value = kNoCell;
  mMaxLineWidth = std::max(first ? 0 : mMaxLineWidth, paragraph.lineWidth);
  mMaxBlockHeight = std::max(first ? 0 : mMaxBlockHeight, paragraph.blockHeight);
}

void CaptionFormatInfo::MergeRegionArea(const zebcore::geom::RectT<float>* area, bool percent, bool first) {
  if (first) {
    mHasRegionArea = area != nullptr;
    mRegionAreaKnown = true; // without an area: that none has one
    mRegionArea = area ? *area : zebcore::geom::RectT<float>();
    mRegionAreaPercent = percent;
    return;
  }
  const bool agrees = area ? mHasRegionArea && mRegionArea == *area && mRegionAreaPercent == percent : !mHasRegionArea;
  mRegionAreaKnown = mRegionAreaKnown && agrees;
  if (area && !mHasRegionArea) {
    mHasRegionArea = true;
    mRegionArea = *area;
    mRegionAreaPercent = percent;
  }
}

} // namespace zebcaptioning
