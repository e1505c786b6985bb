#include "HSL/OpenTextMeasure.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <exception>
#include <mutex>
#include <thread>

#include "HSL/OpenCaptionRenderer.h"
#include "HSL/OpenCaptionScript.h"
#include "zebcaptioning/Spans.h"

namespace HSL {

namespace {

using zebcaptioning::CaptionState;
using zebcaptioning::CaptionStatePtr;
using zebcaptioning::WithMeasure;
using zebmediatypes::PixelAspectRatio;

// A thread reads the fonts before its first caption, which takes as long as some hundreds of captions do.
constexpr std::size_t kWorthAThread = 1000;
constexpr std::size_t kAtOnce = 64;

// Frames that differ may share a mark, but none that videos have.
std::uint32_t GetMark(int frameWidth, int frameHeight, const PixelAspectRatio& pixelAspect) {
  std::uint32_t mark = 2166136261U;
  for (const int part : {frameWidth, frameHeight, pixelAspect.numerator, pixelAspect.denominator})
    mark = (mark ^ static_cast<std::uint32_t>(part)) * 16777619U;
  return std::max(mark, 1U);
}

// What the threads that measure together share. Each takes the next few captions until all are taken.
class Measuring {
 public:
  Measuring(const std::vector<const CaptionState*>& captions, const OpenCaptionRenderer::Frame& frame)
      : mCaptions(captions), mFrame(frame), mMeasures(captions.size()) {}

  void Run(const std::function<bool(std::size_t)>& progress) {
    std::vector<std::jthread> others;
    const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
    for (std::size_t i = 1; i < std::min(processors, mCaptions.size() / kWorthAThread); ++i)
      others.emplace_back([this] { Work({}); });
    Work(progress);
    others.clear();
    if (mFailure)
      std::rethrow_exception(mFailure);
  }

  bool IsStopped() const { return mStopped; }
  const std::vector<OpenTextMeasure>& GetMeasures() const { return mMeasures; }

 private:
  void Work(const std::function<bool(std::size_t)>& progress) {
    try {
      OpenCaptionRenderer& renderer = OpenCaptionRenderer::ForThisThread();
      while (!mStopped) {
        const std::size_t from = mNext.fetch_add(kAtOnce);
        if (from >= mCaptions.size())
          return;
        const std::size_t to = std::min(from + kAtOnce, mCaptions.size());
        for (std::size_t i = from; i < to; ++i) {
          const OpenCaptionRenderer::Size size = renderer.Measure(*mCaptions[i], mFrame);
          mMeasures[i] = {size.width, size.height};
        }
        const std::size_t done = mDone.fetch_add(to - from) + (to - from);
        if (progress && !progress(done))
          mStopped = true;
      }
    } catch (...) {
      const std::lock_guard lock(mMutex);
      mFailure = std::current_exception();
      mStopped = true;
    }
  }

  const std::vector<const CaptionState*>& mCaptions;
  const OpenCaptionRenderer::Frame mFrame;
  std::vector<OpenTextMeasure> mMeasures;
  std::atomic<std::size_t> mNext = 0;
  std::atomic<std::size_t> mDone = 0;
  std::atomic<bool> mStopped = false;
  std::mutex mMutex;
  std::exception_ptr mFailure;
};

} // namespace

OpenTextMeasure MeasureOpenText(const CaptionState& caption, int frameWidth, int frameHeight,
                                const PixelAspectRatio& pixelAspect) {
  const OpenCaptionRenderer::Size size =
      OpenCaptionRenderer::ForThisThread().Measure(caption, {frameWidth, frameHeight, pixelAspect});
  return {size.width, size.height};
}

bool MeasureOpenTexts(std::vector<CaptionStatePtr>& captions, int frameWidth, int frameHeight,
                      const PixelAspectRatio& pixelAspect, const std::function<bool(std::size_t)>& progress) {
  const std::uint32_t mark = GetMark(frameWidth, frameHeight, pixelAspect);
  std::vector<CaptionStatePtr*> places;
  std::vector<const CaptionState*> states;
  for (CaptionStatePtr& caption : captions) {
    if (caption->measured.frame == mark)
      continue;
    places.push_back(&caption);
    states.push_back(caption.get());
  }
  if (states.empty())
    return true;
  Measuring measuring(states, {frameWidth, frameHeight, pixelAspect});
  measuring.Run(progress);
  if (measuring.IsStopped())
    return false;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const OpenTextMeasure& measure = measuring.GetMeasures()[i];
    *places[i] = WithMeasure(**places[i], measure.lineWidth, measure.blockHeight, mark);
  }
  return true;
}

bool TakeMeasureFrom(CaptionStatePtr& caption, const CaptionState& measured, int frameWidth, int frameHeight,
                     const PixelAspectRatio& pixelAspect) {
  const std::uint32_t mark = GetMark(frameWidth, frameHeight, pixelAspect);
  if (measured.measured.frame != mark || !TakeSameRoom(*caption, measured))
    return false;
  caption = WithMeasure(*caption, measured.paragraph.lineWidth, measured.paragraph.blockHeight, mark);
  return true;
}

} // namespace HSL
