#include "HSL/OpenCaptionRenderer.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

extern "C" {
#include <ass/ass.h>
}

#include "HSL/OpenCaptionScript.h"
#include "zebcore/Log.h"

namespace HSL {

namespace {

using zebcaptioning::CaptionState;
using zebcaptioning::CaptionStatePtr;
using zebcaptioning::ParagraphStyleAttributes;

// Blocks that are anchored to a cell of the frame keep this share of it free at the frame's edges (SMPTE ST 2046-1, the
// safe title area of 90 percent).
constexpr double kSafeMargin = 0.05;
constexpr int kErrorsAndWarnings = 2;

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

enum StyleIndex { kStyle_Boxes, kStyle_Characters };

void AddStyle(ASS_Track& track, const char* name, int borderStyle) {
  // The index first: allocating may move the array.
  const int index = ass_alloc_style(&track);
  ASS_Style& style = track.styles[index];
  style.Name = strdup(name);
  style.FontName = strdup("Sans");
  style.FontSize = 18;
  style.ScaleX = 1.0;
  style.ScaleY = 1.0;
  style.BorderStyle = borderStyle;
  style.Encoding = -1; // the base direction of each paragraph is found out from its text
}

// Where the block stands, as an alignment of the number pad and a point.
std::string WritePlace(const CaptionState& caption, int frameWidth, int frameHeight, int blockWidth, int blockHeight) {
  const auto& paragraph = caption.paragraph;
  double left = paragraph.x;
  double top = paragraph.y;
  if (paragraph.anchor >= 0 && paragraph.anchor <= 8) {
    const double freeX = frameWidth * (1.0 - 2.0 * kSafeMargin) - blockWidth;
    const double freeY = frameHeight * (1.0 - 2.0 * kSafeMargin) - blockHeight;
    left = frameWidth * kSafeMargin + freeX * (paragraph.anchor % 3) / 2.0;
    top = frameHeight * kSafeMargin + freeY * (paragraph.anchor / 3) / 2.0;
  }
  int alignment = 7;
  if (paragraph.alignment == ParagraphStyleAttributes::kTextAlignment_Center) {
    alignment = 8;
    left += blockWidth / 2.0;
  } else if (paragraph.alignment == ParagraphStyleAttributes::kTextAlignment_Right) {
    alignment = 9;
    left += blockWidth;
  }
  char text[96];
  std::snprintf(text, sizeof text, "{\\an%d\\pos(%.2f,%.2f)}", alignment, left, top);
  return text;
}

} // namespace

struct OpenCaptionRenderer::Impl {
  std::unique_ptr<ASS_Library, LibraryCloser> library{ass_library_init()};
  std::unique_ptr<ASS_Renderer, RendererCloser> renderer;
  std::unique_ptr<ASS_Track, TrackCloser> track;

  Impl() {
    if (!library)
      throw std::runtime_error("The caption renderer could not be started: out of memory.");
    ass_set_message_cb(library.get(), &WriteLog, nullptr);
    renderer.reset(ass_renderer_init(library.get()));
    if (!renderer)
      throw std::runtime_error("The caption renderer could not be started: out of memory.");
    ass_set_fonts(renderer.get(), nullptr, "Sans", ASS_FONTPROVIDER_AUTODETECT, nullptr, 1);
    ass_set_shaper(renderer.get(), ASS_SHAPING_COMPLEX);
    track.reset(ass_new_track(library.get()));
    if (!track)
      throw std::runtime_error("The caption renderer could not be started: out of memory.");
    track->track_type = ASS_Track::TRACK_TYPE_ASS;
    track->WrapStyle = 2; // lines end where the caption's text says
    track->ScaledBorderAndShadow = 1;
    AddStyle(*track, "Boxes", 3);
    AddStyle(*track, "Characters", 1);
  }

  void Begin(int frameWidth, int frameHeight, int pictureWidth, int pictureHeight) {
    ass_flush_events(track.get());
    track->PlayResX = frameWidth;
    track->PlayResY = frameHeight;
    ass_set_storage_size(renderer.get(), frameWidth, frameHeight);
    ass_set_frame_size(renderer.get(), pictureWidth, pictureHeight);
  }

  void AddEvent(int layer, StyleIndex style, const std::string& text) {
    const int index = ass_alloc_event(track.get());
    ASS_Event& event = track->events[index];
    event.Start = 0;
    event.Duration = 1000;
    event.Layer = layer;
    event.ReadOrder = track->n_events;
    event.Style = style;
    event.Name = strdup("");
    event.Effect = strdup("");
    event.Text = strdup(text.c_str());
  }

  ASS_Image* Draw() {
    int changed = 0;
    return ass_render_frame(renderer.get(), track.get(), 0, &changed);
  }
};

OpenCaptionRenderer::OpenCaptionRenderer() : mImpl(std::make_unique<Impl>()) {}

OpenCaptionRenderer::~OpenCaptionRenderer() = default;

OpenCaptionRenderer::Size OpenCaptionRenderer::Measure(const CaptionState& caption, int frameWidth, int frameHeight) {
  if (caption.text.empty() || frameWidth < 1 || frameHeight < 1)
    return {};
  // Room for lines longer than the frame: the block is measured, not what the frame shows of it.
  const int width = frameWidth * 4;
  const int height = frameHeight * 4;
  mImpl->Begin(width, height, width, height);
  mImpl->AddEvent(0, kStyle_Characters,
                  "{\\an5\\pos(" + std::to_string(width / 2) + "," + std::to_string(height / 2) + ")}" +
                      WriteOpenCaptionScript(caption, frameHeight).characters);
  int left = width;
  int top = height;
  int right = 0;
  int bottom = 0;
  for (const ASS_Image* image = mImpl->Draw(); image; image = image->next) {
    left = std::min(left, image->dst_x);
    top = std::min(top, image->dst_y);
    right = std::max(right, image->dst_x + image->w);
    bottom = std::max(bottom, image->dst_y + image->h);
  }
  if (right <= left || bottom <= top)
    return {};
  return {right - left, bottom - top};
}

std::vector<OpenCaptionRenderer::Patch> OpenCaptionRenderer::Render(const std::vector<CaptionStatePtr>& captions,
                                                                    int frameWidth, int frameHeight, int pictureWidth,
                                                                    int pictureHeight) {
  std::vector<Patch> patches;
  if (frameWidth < 1 || frameHeight < 1 || pictureWidth < 1 || pictureHeight < 1)
    return patches;
  std::vector<Size> sizes;
  for (const auto& caption : captions)
    sizes.push_back(Measure(*caption, frameWidth, frameHeight));
  mImpl->Begin(frameWidth, frameHeight, pictureWidth, pictureHeight);
  for (std::size_t i = 0; i < captions.size(); ++i) {
    const OpenCaptionScript script = WriteOpenCaptionScript(*captions[i], frameHeight);
    const std::string place = WritePlace(*captions[i], frameWidth, frameHeight, sizes[i].width, sizes[i].height);
    if (!script.boxes.empty())
      mImpl->AddEvent(0, kStyle_Boxes, place + script.boxes);
    if (!script.characters.empty())
      mImpl->AddEvent(1, kStyle_Characters, place + script.characters);
  }
  for (const ASS_Image* image = mImpl->Draw(); image; image = image->next) {
    Patch patch;
    patch.x = image->dst_x;
    patch.y = image->dst_y;
    patch.width = image->w;
    patch.height = image->h;
    patch.rowBytes = image->stride;
    patch.coverage = image->bitmap;
    patch.red = static_cast<std::uint8_t>(image->color >> 24);
    patch.green = static_cast<std::uint8_t>(image->color >> 16);
    patch.blue = static_cast<std::uint8_t>(image->color >> 8);
    patch.alpha = static_cast<std::uint8_t>(255 - (image->color & 0xFF));
    patches.push_back(patch);
  }
  return patches;
}

} // namespace HSL
