#include "HSL/OpenCaptionRenderer.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>

extern "C" {
#include <ass/ass.h>
}

#include "HSL/OpenCaptionLayout.h"
#include "HSL/OpenCaptionScript.h"
#include "zebcaptioning/OpenPlacement.h"
#include "zebcore/Log.h"

namespace HSL {

namespace {

using zebcaptioning::CaptionState;
using zebcaptioning::CaptionStatePtr;
using Line = OpenCaptionLayout::Line;
using Patch = OpenCaptionRenderer::Patch;

constexpr int kErrorsAndWarnings = 2;
constexpr int kGlyphsKept = 4096;
constexpr int kBitmapMegabytesKept = 32;
constexpr std::size_t kLinesKept = 1024;
// Lines are measured in a picture with a frame of this height, so that the measure does not depend on the frame's size,
// and with room beyond the frame's edges for lines that are wider or higher than it.
constexpr int kMeasureHeight = 1080;
constexpr int kMeasureRoom = 4;
// Boxes reach a pixel beyond what they hold even without a border, and have to find it.
constexpr double kBoxReach = 1.0;
constexpr double kMeasureOffset = 8.0;
constexpr int kRowsStep = 2;
constexpr int kAnchorsAtTop = 3;

struct LibraryCloser {
  void operator()(ASS_Library* library) const { ass_library_done(library); }
};
struct RendererCloser {
  void operator()(ASS_Renderer* renderer) const { ass_renderer_done(renderer); }
};
struct TrackCloser {
  void operator()(ASS_Track* track) const { ass_free_track(track); }
};
void WriteLog(int level, const char* format, va_list arguments, void*) {
  if (level >= kErrorsAndWarnings)
    return;
  char text[512];
  std::vsnprintf(text, sizeof text, format, arguments);
  zebcore::log::Write(zebcore::log::Level::Warning, text);
}

int AddStyle(ASS_Track& track, const char* name, int borderStyle) {
  // The index first: allocating may move the array.
  const int index = ass_alloc_style(&track);
  ASS_Style& style = track.styles[index];
  style.Name = strdup(name);
  style.FontName = strdup("Sans");
  style.FontSize = 18;
  style.ScaleX = 1.0;
  style.ScaleY = 1.0;
  style.BorderStyle = borderStyle;
  style.Encoding = -1; // the base direction of each line is found out from its text
  return index;
}

// The frame as it is shown: as high as it is, and as wide as its pixels make it.
double ShownWidth(const OpenCaptionRenderer::Frame& frame) {
  return frame.width * frame.pixelAspect.ToDouble();
}

bool IsUsable(const OpenCaptionRenderer::Frame& frame) {
  return frame.width > 0 && frame.height > 0 && frame.pixelAspect.ToDouble() > 0.0;
}

// Lines that were measured, the latest used at the front.
class MeasuredLines {
 public:
  const Line* Find(const std::string& key) {
    const auto found = mPlaces.find(key);
    if (found == mPlaces.end())
      return nullptr;
    mLines.splice(mLines.begin(), mLines, found->second);
    return &mLines.front().second;
  }
  const Line& Add(std::string key, Line line) {
    if (mLines.size() >= kLinesKept) {
      mPlaces.erase(mLines.back().first);
      mLines.pop_back();
    }
    mLines.emplace_front(std::move(key), std::move(line));
    mPlaces[mLines.front().first] = mLines.begin();
    return mLines.front().second;
  }

 private:
  std::list<std::pair<std::string, Line>> mLines;
  std::unordered_map<std::string_view, std::list<std::pair<std::string, Line>>::iterator> mPlaces;
};

// The covered part of a row or column of pixels, edges that cover a pixel in part by their share of it.
template <class CoverageAt, class Report> void ForEachStretch(int size, CoverageAt coverageAt, Report report) {
  for (int at = 0; at < size;) {
    if (coverageAt(at) == 0) {
      ++at;
      continue;
    }
    int end = at;
    while (end < size && coverageAt(end) != 0)
      ++end;
    const bool isOnePixel = end - at == 1;
    const double left = at + 1.0 - coverageAt(at) / 255.0;
    const double right = isOnePixel ? at + 1.0 : end - 1.0 + coverageAt(end - 1) / 255.0;
    report(left, right);
    at = end;
  }
}

} // namespace

struct OpenCaptionRenderer::Impl {
  std::unique_ptr<ASS_Library, LibraryCloser> library{ass_library_init()};
  std::unique_ptr<ASS_Renderer, RendererCloser> renderer;
  std::unique_ptr<ASS_Track, TrackCloser> track;
  int characterStyle = 0;
  int boxStyle = 0;
  MeasuredLines measured;
  std::vector<std::vector<std::uint8_t>> drawn; // coverage of the characters of the last patches
  std::vector<std::uint8_t> solid;              // and of their boxes: one full row

  Impl() {
    if (!library)
      throw std::runtime_error("The caption renderer could not be started: out of memory.");
    ass_set_message_cb(library.get(), &WriteLog, nullptr);
    renderer.reset(ass_renderer_init(library.get()));
    if (!renderer)
      throw std::runtime_error("The caption renderer could not be started: out of memory.");
    ass_set_fonts(renderer.get(), nullptr, "Sans", ASS_FONTPROVIDER_AUTODETECT, nullptr, 1);
    ass_set_shaper(renderer.get(), ASS_SHAPING_COMPLEX);
    ass_set_cache_limits(renderer.get(), kGlyphsKept, kBitmapMegabytesKept);
    track.reset(ass_new_track(library.get()));
    if (!track)
      throw std::runtime_error("The caption renderer could not be started: out of memory.");
    track->track_type = ASS_Track::TRACK_TYPE_ASS;
    track->WrapStyle = 2; // lines end where the caption's text says
    track->ScaledBorderAndShadow = 1;
    // A line is one text across its runs: letters join and directions hold where the colour changes.
    ass_track_set_feature(track.get(), ASS_FEATURE_WHOLE_TEXT_LAYOUT, 1);
    ass_track_set_feature(track.get(), ASS_FEATURE_BIDI_BRACKETS, 1);
    characterStyle = AddStyle(*track, "Characters", 1);
    boxStyle = AddStyle(*track, "Boxes", 3);
  }

  void Begin(int frameWidth, int frameHeight, int pictureWidth, int pictureHeight) {
    ass_flush_events(track.get());
    track->PlayResX = frameWidth;
    track->PlayResY = frameHeight;
    ass_set_storage_size(renderer.get(), frameWidth, frameHeight);
    ass_set_frame_size(renderer.get(), pictureWidth, pictureHeight);
  }

  // A line with its top left at a point of the frame.
  void AddEvent(int style, double left, double top, const std::string& text) {
    char place[80];
    std::snprintf(place, sizeof place, "{\\an7\\q2\\pos(%.3f,%.3f)}", left, top);
    const int index = ass_alloc_event(track.get());
    ASS_Event& event = track->events[index];
    event.Start = 0;
    event.Duration = 1000;
    event.ReadOrder = index;
    event.Style = style;
    event.Name = strdup("");
    event.Effect = strdup("");
    event.Text = strdup((place + text).c_str());
  }

  // Good until the next call.
  const ASS_Image* Draw() {
    int changed = 0;
    return ass_render_frame(renderer.get(), track.get(), 0, &changed);
  }

  const Line& MeasureLine(const std::string& boxes, double frameWidth, int frameHeight) {
    std::string key = std::to_string(frameHeight) + ' ' + boxes;
    if (const Line* known = measured.Find(key))
      return *known;
    const double scale = static_cast<double>(kMeasureHeight) / frameHeight;
    const int width = static_cast<int>(std::ceil(frameWidth)) * kMeasureRoom;
    const int height = frameHeight * kMeasureRoom;
    Begin(width, height, static_cast<int>(std::lround(width * scale)), kMeasureHeight * kMeasureRoom);
    AddEvent(boxStyle, kMeasureOffset / scale, kMeasureOffset / scale, boxes);
    return measured.Add(std::move(key), ReadBoxes(*this, 1.0 / scale));
  }

  static Line ReadBoxes(Impl& impl, double scale) {
    Line line;
    for (const ASS_Image* image = impl.Draw(); image; image = image->next) {
      if (image->type != ASS_Image::IMAGE_TYPE_OUTLINE || image->w < 1 || image->h < 1)
        continue;
      const std::size_t run = image->color >> 8;
      const int middle = FindFullRow(*image);
      const auto across = [image, middle](int x) { return image->bitmap[middle * image->stride + x]; };
      int inside = 0;
      ForEachStretch(image->w, across, [&](double left, double right) {
        inside = static_cast<int>((left + right) / 2.0);
        const double end = (image->dst_x + right - kBoxReach - kMeasureOffset) * scale;
        line.stretches.push_back({run, (image->dst_x + left + kBoxReach - kMeasureOffset) * scale, end});
        line.width = std::max(line.width, end);
      });
      const auto down = [image, inside](int y) { return image->bitmap[y * image->stride + inside]; };
      ForEachStretch(image->h, down, [&](double, double bottom) {
        line.height = std::max(line.height, (image->dst_y + bottom - kBoxReach - kMeasureOffset) * scale);
      });
    }
    std::sort(line.stretches.begin(), line.stretches.end(),
              [](const auto& a, const auto& b) { return a.left < b.left; });
    return line;
  }

  // Eight pixels at a time: boxes have many, and of a pixel that is covered by half the uppermost bit is set.
  static int CountHalfCovered(const std::uint8_t* pixels, int count) {
    constexpr std::uint64_t kOnes = 0x0101010101010101;
    constexpr int kStep = 8;
    int covered = 0;
    int at = 0;
    for (; at + kStep <= count; at += kStep) {
      std::uint64_t eight = 0;
      std::memcpy(&eight, pixels + at, sizeof eight);
      covered += static_cast<int>(((eight >> 7 & kOnes) * kOnes) >> 56);
    }
    for (; at < count; ++at)
      covered += pixels[at] >> 7;
    return covered;
  }

  // The row that crosses most of the box: pieces of a run in another font may be lower than the rest.
  static int FindFullRow(const ASS_Image& image) {
    int best = 0;
    int most = -1;
    for (int y = 0; y < image.h; y += kRowsStep) {
      const int covered = CountHalfCovered(image.bitmap + static_cast<std::ptrdiff_t>(y) * image.stride, image.w);
      if (covered > most) {
        most = covered;
        best = y;
      }
    }
    return best;
  }

  OpenCaptionLayout LayOut(const OpenCaptionScript& script, const CaptionState& caption, const Frame& frame) {
    OpenCaptionLayout layout;
    for (const OpenCaptionLine& line : script.lines) {
      layout.lines.push_back(MeasureLine(line.boxes, ShownWidth(frame), frame.height));
      if (line.characters.empty()) {
        layout.lines.back().width = 0.0;
        layout.lines.back().stretches.clear();
      }
    }
    if (!layout.lines.empty())
      ArrangeLines(layout, caption.paragraph, script.margin);
    return layout;
  }

  void AddBoxes(const OpenCaptionScript& script, const OpenCaptionLayout& layout, const PlacedBlock& place,
                double scaleX, double scaleY, std::vector<Patch>& patches);
  void AddCharacters(const OpenCaptionScript& script, const OpenCaptionLayout& layout, const PlacedBlock& place,
                     std::vector<Patch>& patches);
};

namespace {

std::uint8_t ToByte(float channel) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(channel, 0.0F, 1.0F) * 255.0F));
}

// How far boxes reach into the gap between two lines. They meet halfway where their padding would overlap, for what
// covers twice is darker.
double ReachInto(double gap, double padding) {
  return std::min(gap / 2.0, padding);
}

double GapBelow(const OpenCaptionLayout& layout, std::size_t line) {
  return layout.lines[line + 1].top - layout.lines[line].top - layout.lines[line].height;
}

// A trace of a pixel, which is what a measure may be off by, does not count.
int RoundUp(double length) {
  constexpr double kTrace = 0.1;
  return static_cast<int>(std::ceil(std::max(0.0, length - kTrace)));
}

int Snap(double position) {
  return static_cast<int>(std::lround(position));
}

} // namespace

void OpenCaptionRenderer::Impl::AddBoxes(const OpenCaptionScript& script, const OpenCaptionLayout& layout,
                                         const PlacedBlock& place, double scaleX, double scaleY,
                                         std::vector<Patch>& patches) {
  const double padding = script.boxPadding;
  for (std::size_t i = 0; i < layout.lines.size(); ++i) {
    const Line& line = layout.lines[i];
    const bool touchesAbove = i > 0 && !layout.lines[i - 1].stretches.empty();
    const bool touchesBelow = i + 1 < layout.lines.size() && !layout.lines[i + 1].stretches.empty();
    const double top = line.top - (touchesAbove ? ReachInto(GapBelow(layout, i - 1), padding) : padding);
    const double bottom = line.top + line.height + (touchesBelow ? ReachInto(GapBelow(layout, i), padding) : padding);
    for (std::size_t s = 0; s < line.stretches.size(); ++s) {
      const OpenCaptionLayout::Stretch& stretch = line.stretches[s];
      const auto& color = script.runs[std::min(stretch.run, script.runs.size() - 1)]->backgroundColor;
      if (color.IsTransparent())
        continue;
      const bool isFirst = s == 0;
      const bool isLast = s + 1 == line.stretches.size();
      const double left = line.left + stretch.left - (isFirst ? padding : 0.0);
      const double right = line.left + (isLast ? stretch.right + padding : line.stretches[s + 1].left);
      Patch patch;
      patch.x = Snap((place.left + left) * scaleX);
      patch.y = Snap((place.top + top) * scaleY);
      patch.width = Snap((place.left + right) * scaleX) - patch.x;
      patch.height = Snap((place.top + bottom) * scaleY) - patch.y;
      if (patch.width < 1 || patch.height < 1)
        continue;
      patch.red = ToByte(color.red);
      patch.green = ToByte(color.green);
      patch.blue = ToByte(color.blue);
      patch.alpha = ToByte(color.alpha);
      patches.push_back(patch);
    }
  }
}

void OpenCaptionRenderer::Impl::AddCharacters(const OpenCaptionScript& script, const OpenCaptionLayout& layout,
                                              const PlacedBlock& place, std::vector<Patch>& patches) {
  ass_flush_events(track.get());
  for (std::size_t i = 0; i < script.lines.size(); ++i)
    if (!script.lines[i].characters.empty())
      AddEvent(characterStyle, place.left + layout.lines[i].left, place.top + layout.lines[i].top,
               script.lines[i].characters);
  for (const ASS_Image* image = Draw(); image; image = image->next) {
    if (image->w < 1 || image->h < 1)
      continue;
    std::vector<std::uint8_t>& coverage = drawn.emplace_back();
    coverage.reserve(static_cast<std::size_t>(image->w) * static_cast<std::size_t>(image->h));
    for (int y = 0; y < image->h; ++y) {
      const std::uint8_t* row = image->bitmap + static_cast<std::ptrdiff_t>(y) * image->stride;
      coverage.insert(coverage.end(), row, row + image->w);
    }
    Patch patch;
    patch.x = image->dst_x;
    patch.y = image->dst_y;
    patch.width = image->w;
    patch.height = image->h;
    patch.rowBytes = image->w;
    patch.coverage = coverage.data();
    patch.red = static_cast<std::uint8_t>(image->color >> 24);
    patch.green = static_cast<std::uint8_t>(image->color >> 16);
    patch.blue = static_cast<std::uint8_t>(image->color >> 8);
    patch.alpha = static_cast<std::uint8_t>(255 - (image->color & 0xFF));
    patches.push_back(patch);
  }
}

namespace {

PlacedBlock PlaceBlock(const OpenCaptionLayout& layout, const zebcaptioning::ParagraphStyleAttributes& paragraph,
                       const OpenCaptionRenderer::Frame& frame) {
  const double pixelAspect = frame.pixelAspect.ToDouble();
  const zebcaptioning::OpenPlace place =
      zebcaptioning::GetOpenPlace(paragraph, layout.width / pixelAspect, layout.height, frame.width, frame.height);
  return {place.x * pixelAspect,
          place.y,
          layout.width,
          layout.height,
          zebcaptioning::StandsAtY(paragraph),
          paragraph.anchor >= 0 && paragraph.anchor < kAnchorsAtTop};
}

} // namespace

OpenCaptionRenderer::OpenCaptionRenderer() : mImpl(std::make_unique<Impl>()) {}

OpenCaptionRenderer::~OpenCaptionRenderer() = default;

OpenCaptionRenderer& OpenCaptionRenderer::ForThisThread() {
  thread_local OpenCaptionRenderer renderer;
  return renderer;
}

OpenCaptionRenderer::Size OpenCaptionRenderer::Measure(const CaptionState& caption, const Frame& frame) {
  if (!IsUsable(frame))
    return {};
  const OpenCaptionScript script = WriteOpenCaptionScript(caption, frame.height);
  const OpenCaptionLayout layout = mImpl->LayOut(script, caption, frame);
  return {RoundUp(layout.width / frame.pixelAspect.ToDouble()), RoundUp(layout.height)};
}

std::vector<Patch> OpenCaptionRenderer::Render(const std::vector<CaptionStatePtr>& captions, const Frame& frame,
                                               int pictureWidth, int pictureHeight) {
  std::vector<Patch> patches;
  mImpl->drawn.clear();
  if (!IsUsable(frame) || pictureWidth < 1 || pictureHeight < 1)
    return patches;
  const double shownWidth = ShownWidth(frame);
  std::vector<OpenCaptionScript> scripts;
  std::vector<OpenCaptionLayout> layouts;
  std::vector<PlacedBlock> blocks;
  for (const CaptionStatePtr& caption : captions) {
    OpenCaptionScript script = WriteOpenCaptionScript(*caption, frame.height);
    if (script.lines.empty())
      continue;
    OpenCaptionLayout layout = mImpl->LayOut(script, *caption, frame);
    blocks.push_back(PlaceBlock(layout, caption->paragraph, frame));
    scripts.push_back(std::move(script));
    layouts.push_back(std::move(layout));
  }
  StackBlocks(blocks, frame.height);

  mImpl->solid.assign(static_cast<std::size_t>(pictureWidth), 255);
  const int playWidth = std::max(1, static_cast<int>(std::lround(shownWidth)));
  mImpl->Begin(playWidth, frame.height, pictureWidth, pictureHeight);
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    mImpl->AddBoxes(scripts[i], layouts[i], blocks[i], pictureWidth / shownWidth,
                    static_cast<double>(pictureHeight) / frame.height, patches);
    mImpl->AddCharacters(scripts[i], layouts[i], blocks[i], patches);
  }
  for (Patch& patch : patches) {
    if (patch.coverage)
      continue;
    // A box may be wider than the picture, its row of coverage not.
    const int left = std::clamp(patch.x, 0, pictureWidth);
    const int right = std::clamp(patch.x + patch.width, 0, pictureWidth);
    patch.x = left;
    patch.width = right - left;
    patch.coverage = mImpl->solid.data();
  }
  return patches;
}

} // namespace HSL
