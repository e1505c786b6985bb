#pragma once

#include <array>
#include <cstddef>
#include <limits>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include "Captions/contracts/CaptioningColor.h"
#include "Captions/contracts/ParagraphStyleAttributes.h"
#include "Captions/contracts/TextSpanAttributes.h"
#include "zebcore/Geometry.h"

namespace zebcaptioning {

// Which attribute of a CaptionFormatInfo is to be applied. A colour is 8 plus its type, an opacity 11 plus its type.
enum CaptionFormatParameter : int {
  kFormatCaptionType = 0,
  kFormatUnderline = 1,
  kFormatItalic = 2,
  kFormatBold = 3,
  kFormatFontFamily = 4,
  kFormatFontSize = 5,
  kFormatAnchor = 6,
  kFormatTextAlignment = 7,
  kFormatTextColor = 8,
  kFormatBackgroundColor = 9,
  kFormatEdgeColor = 10,
  kFormatTextOpacity = 11,
  kFormatBackgroundOpacity = 12,
  kFormatEdgeOpacity = 13,
  kFormatEdgeWidth = 14,
  kFormatPositionX = 15,
  kFormatPositionY = 16,
  kFormatLineSpacing = 17,
};

// The merged format of captions or of spans: a value for each attribute, and whether it is uniform, that is, holds for
// everything the info was gathered from. Of a mixed attribute the value is that of the first source.
class CaptionFormatInfo : public boost::intrusive_ref_counter<CaptionFormatInfo> {
 public:
  using ColorType = CaptioningColor::ColorType;
  using TextAlignmentType = ParagraphStyleAttributes::TextAlignmentType;
  using AnchorID = ParagraphStyleAttributes::AnchorID;
  using UString = zebcore::UString;

  CaptionFormatInfo();
  CaptionFormatInfo(const CaptionFormatInfo&) = default;
  CaptionFormatInfo& operator=(const CaptionFormatInfo&) = default;
  virtual ~CaptionFormatInfo();

  CaptionType GetCaptionType(bool& uniform);
  void SetCaptionType(CaptionType type, bool uniform);
  bool GetIsUnderlined(bool& uniform) const;
  void SetIsUnderlined(bool underlined, bool uniform);
  bool GetIsItalicized(bool& uniform) const;
  void SetIsItalicized(bool italicized, bool uniform);
  bool GetIsBolded(bool& uniform) const;
  void SetIsBolded(bool bolded, bool uniform);
  // Write bold, or italic, too when another parameter is applied.
  void SetForceBolded(bool force);
  bool GetForceBolded() const;
  void SetForceItalicized(bool force);
  bool GetForceItalicized() const;
  void GetFontFamily(UString& family, bool& uniform) const;
  void SetFontFamily(const UString& family, bool uniform);
  float GetFontSize(bool& uniform) const;
  void SetFontSize(float size, bool uniform);
  float GetTextEdgeWidth(bool& uniform) const;
  void SetTextEdgeWidth(float width, bool uniform);
  int GetLineSpacing(bool& uniform) const;
  void SetLineSpacing(int spacing, bool uniform);
  // The colour comes with its opacity as alpha; its uniform flag is that of red, green and blue and of the opacity.
  void GetColor(ColorType type, CaptioningColor& color, bool& uniform) const;
  void SetColor(ColorType type, const CaptioningColor& color, bool uniform);
  float GetOpacity(ColorType type, bool& uniform) const;
  void SetOpacity(ColorType type, float opacity, bool uniform);
  TextAlignmentType GetTextAlignment(bool& uniform);
  void SetTextAlignment(TextAlignmentType alignment, bool uniform);
  // 9 where captions differ.
  AnchorID GetAnchorID();
  // Whether that is the anchor of all of them, be it none.
  bool IsAnchorUniform() const;
  void SetAnchorID(AnchorID anchor, bool uniform);
  int GetPositionX(bool& uniform) const;
  void SetPositionX(int x);
  int GetPositionY(bool& uniform) const;
  void SetPositionY(int y);
  // The area of the captions' region. False without one. percent: in percent of the frame, else in the stream's units;
  // known: all captions agree.
  bool GetRegionArea(zebcore::geom::RectT<float>& area, bool& percent, bool& known) const;
  void SetRegionArea(const zebcore::geom::RectT<float>& area, bool percent, bool known);
  // The widest line and the highest block of all; 0 if none was computed.
  int GetMaxLineWidth() const;
  int GetMaxBlockHeight() const;
  const UString& GetRegionName(bool& uniform) const;
  const UString& GetStyleName(bool& uniform) const;

 private:
  friend class Caption;
  template <class T> struct Attribute {
    T value{};
    bool uniform = true;
  };

  void Reset();
  void MergeSpan(const TextSpanAttributes& span, bool first);
  void MergeSpan(const SharedSpan& span, bool first);
  void MergeParagraph(const ParagraphStyleAttributes& paragraph, bool first);
  // area is null for a caption without one.
  void MergeRegionArea(const zebcore::geom::RectT<float>* area, bool percent, bool first);

  Attribute<CaptionType> mCaptionType{kCaptionType_None};
  Attribute<bool> mUnderlined;
  Attribute<bool> mItalicized;
  Attribute<bool> mBolded;
  bool mForceBolded = false;
  bool mForceItalicized = false;
  Attribute<UString> mFontFamily;
  Attribute<float> mFontSize;
  Attribute<float> mEdgeWidth;
  Attribute<int> mLineSpacing;
  std::array<Attribute<CaptioningColor>, 3> mColors;
  std::array<Attribute<float>, 3> mOpacities;
  Attribute<TextAlignmentType> mAlignment;
  Attribute<AnchorID> mAnchor{9};
  Attribute<int> mX;
  Attribute<int> mY;
  Attribute<UString> mRegionName;
  Attribute<UString> mStyleName;
  bool mHasRegionArea = false;
  bool mRegionAreaPercent = false;
  bool mRegionAreaKnown = false;
  zebcore::geom::RectT<float> mRegionArea;
  int mMaxLineWidth = 0;
  int mMaxBlockHeight = 0;
  // Merged lately: most captions look alike, and what is equal is one object.
  std::array<SharedSpan, 4> mMergedSpans;
  std::size_t mNextMergedSpan = 0;
  zebcore::utility::ImmutableString mLastRegion;
  zebcore::utility::ImmutableString mLastStyle;
};

} // namespace zebcaptioning
