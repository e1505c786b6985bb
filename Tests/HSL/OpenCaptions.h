#pragma once

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "HSL/OpenTextMeasure.h"
#include "HSL/RenderOpenCaptions.h"
#include "zebcaptioning/Spans.h"

// Open captions drawn on grey, and what of them is seen where.
namespace test {

using zebcaptioning::CaptioningColor;
using zebcaptioning::CaptionStatePtr;
using zebcaptioning::ParagraphStyleAttributes;
using zebcaptioning::TextSpanAttributes;
using zebcore::UString;
using zebmediatypes::TickTime;

inline constexpr int kGrey = 128;
inline const CaptioningColor kRed{1, 0, 0, 1};
inline const CaptioningColor kGreen{0, 1, 0, 1};
inline const CaptioningColor kBlue{0, 0, 1, 1};
inline const CaptioningColor kClear{0, 0, 0, 0};
inline const CaptioningColor kBlack{0, 0, 0, 1};

// White letters of a font that is on every machine, without box and edge.
inline TextSpanAttributes Letters(float size = 18.0F, const CaptioningColor& color = {1, 1, 1, 1}) {
  TextSpanAttributes span;
  span.family = u"DejaVu Sans";
  span.size = size;
  span.textColor = color;
  span.backgroundColor = kClear;
  return span;
}
// The same, in a box.
inline TextSpanAttributes Boxed(const CaptioningColor& box = kBlack, float size = 18.0F) {
  TextSpanAttributes span = Letters(size);
  span.backgroundColor = box;
  return span;
}
// Nothing but a box, so that its pixels can be told.
inline TextSpanAttributes BoxAlone(const CaptioningColor& box, float size = 18.0F) {
  TextSpanAttributes span = Boxed(box, size);
  span.textColor = kClear;
  return span;
}

inline ParagraphStyleAttributes At(int x, int y) {
  ParagraphStyleAttributes paragraph;
  paragraph.anchor = -1;
  paragraph.x = x;
  paragraph.y = y;
  return paragraph;
}
inline ParagraphStyleAttributes InCell(int anchor) {
  ParagraphStyleAttributes paragraph;
  paragraph.anchor = anchor;
  return paragraph;
}
inline ParagraphStyleAttributes Aligned(ParagraphStyleAttributes paragraph, int alignment) {
  paragraph.alignment = static_cast<ParagraphStyleAttributes::TextAlignmentType>(alignment);
  return paragraph;
}
inline ParagraphStyleAttributes Spaced(ParagraphStyleAttributes paragraph, int percent) {
  paragraph.lineSpacing = percent;
  return paragraph;
}

using Runs = std::vector<std::pair<std::uint32_t, TextSpanAttributes>>;
inline CaptionStatePtr Caption(const UString& text, const Runs& runs, const ParagraphStyleAttributes& paragraph) {
  std::vector<zebcaptioning::TextRun> shared;
  for (const auto& [start, span] : runs)
    shared.push_back({start, zebcaptioning::Share(span)});
  return zebcaptioning::MakeCaptionState(TickTime(0), TickTime(100), text, std::move(shared), paragraph);
}
inline CaptionStatePtr Caption(const UString& text, const TextSpanAttributes& span = Letters(),
                               const ParagraphStyleAttributes& paragraph = At(400, 300)) {
  return Caption(text, Runs{{0, span}}, paragraph);
}

struct Area {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  friend bool operator==(const Area&, const Area&) = default;
};
inline std::ostream& operator<<(std::ostream& out, const Area& area) {
  return out << area.left << ',' << area.top << " to " << area.right << ',' << area.bottom;
}

struct Pixel {
  int red = 0;
  int green = 0;
  int blue = 0;
};

class Picture {
 public:
  Picture(int width, int height)
      : mFrame(MF::CreateVideoFrame(width, height, zebmediatypes::kPixelAspectRatio_Square)) {
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x)
        for (int c = 0; c < 4; ++c)
          At(x, y)[c] = c < 3 ? kGrey : 255;
  }
  int Width() const { return mWidth; }
  int Height() const { return mHeight; }
  const zebcore::classref::InterfaceRef<MF::IVideoFrame>& Frame() const { return mFrame; }

  Pixel operator()(int x, int y) const {
    const std::uint8_t* pixel = mPixels + static_cast<std::ptrdiff_t>(y) * mRowBytes + 4L * x;
    return {pixel[2], pixel[1], pixel[0]};
  }
  template <class Predicate> int Count(Predicate predicate) const {
    int count = 0;
    for (int y = 0; y < Height(); ++y)
      for (int x = 0; x < Width(); ++x)
        count += predicate((*this)(x, y)) ? 1 : 0;
    return count;
  }
  template <class Predicate> Area Find(Predicate predicate) const {
    Area area{Width(), Height(), 0, 0};
    for (int y = 0; y < Height(); ++y)
      for (int x = 0; x < Width(); ++x)
        if (predicate((*this)(x, y)))
          area = {std::min(area.left, x), std::min(area.top, y), std::max(area.right, x + 1),
                  std::max(area.bottom, y + 1)};
    return area.right > area.left ? area : Area{};
  }
  bool Equals(const Picture& other) const {
    for (int y = 0; y < Height(); ++y)
      for (int x = 0; x < Width(); ++x) {
        const Pixel a = (*this)(x, y);
        const Pixel b = other(x, y);
        if (a.red != b.red || a.green != b.green || a.blue != b.blue)
          return false;
      }
    return true;
  }

 private:
  std::uint8_t* At(int x, int y) { return mPixels + static_cast<std::ptrdiff_t>(y) * mRowBytes + 4L * x; }
  zebcore::classref::InterfaceRef<MF::IVideoFrame> mFrame;
  // Asked once: a picture has two million pixels.
  int mWidth = mFrame->GetRect().width;
  int mHeight = mFrame->GetRect().height;
  int mRowBytes = mFrame->GetRowBytes();
  std::uint8_t* mPixels = mFrame->GetWritablePixels();
};

struct Video {
  int width = 1920;
  int height = 1080;
  zebmediatypes::PixelAspectRatio aspect = zebmediatypes::kPixelAspectRatio_Square;
};

inline Picture Draw(const std::vector<CaptionStatePtr>& captions, int width = 1920, int height = 1080,
                    const Video& video = {}, double opacity = 1.0) {
  Picture picture(width, height);
  const boost::intrusive_ptr<zebcaptioning::CaptioningRenderableModel> model(
      new zebcaptioning::CaptioningRenderableModel(captions, video.width, video.height, video.aspect));
  const zebcore::geom::RectT<int> source{0, 0, video.width, video.height};
  HSL::RenderOpenCaptions(model, {0, 0, width, height}, zebmediatypes::kPixelAspectRatio_Square, picture.Frame(),
                          source, source, -1, -1, opacity);
  return picture;
}
inline Picture Draw(const CaptionStatePtr& caption) {
  return Draw(std::vector<CaptionStatePtr>{caption});
}

inline HSL::OpenTextMeasure Measure(const CaptionStatePtr& caption, const Video& video = {}) {
  return HSL::MeasureOpenText(*caption, video.width, video.height, video.aspect);
}

// Anything drawn.
inline bool IsInk(const Pixel& pixel) {
  return std::abs(pixel.red - kGrey) + std::abs(pixel.green - kGrey) + std::abs(pixel.blue - kGrey) > 60;
}
inline bool IsRed(const Pixel& pixel) {
  return pixel.red > 180 && pixel.green < 80 && pixel.blue < 80;
}
inline bool IsGreen(const Pixel& pixel) {
  return pixel.green > 180 && pixel.red < 80 && pixel.blue < 80;
}
inline bool IsBlue(const Pixel& pixel) {
  return pixel.blue > 180 && pixel.red < 80 && pixel.green < 80;
}
inline Area Ink(const CaptionStatePtr& caption) {
  return Draw(caption).Find(IsInk);
}

} // namespace test
