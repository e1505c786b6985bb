#include "ML/FrameService.h"

#include <atomic>
#include <condition_variable>
#include <list>
#include <map>
#include <mutex>
#include <thread>
#include <tuple>
#include <vector>

#include <sys/resource.h>
#include <unistd.h>

#include "ML/FrameDecoder.h"
#include "zebcore/Boundary.h"

namespace ML {

namespace {

// Thumbnails are about 30 KB: this many are 60 MB at most.
constexpr std::size_t kFramesKept = 2000;
// Larger pictures weigh more, so that fewer of them are kept.
constexpr std::size_t kBytesKept = std::size_t{64} * 1024 * 1024;
// The worker steps back behind whoever types while it decodes.
constexpr int kWorkerNiceness = 5;
// Files that stay open at once; each holds a decoder.
constexpr std::size_t kDecodersKept = 4;

using FrameRef = zebcore::classref::InterfaceRef<MF::IVideoFrame>;
using FrameKey = std::tuple<zebcore::utility::Guid, zebmediatypes::TickTime, int, int>;

FrameKey KeyOf(const FrameOrder& order) {
  return {order.content, order.time, order.width, order.height};
}

std::size_t BytesOf(const FrameRef& frame) {
  return static_cast<std::size_t>(frame->GetRowBytes()) * static_cast<std::size_t>(frame->GetRect().height);
}

} // namespace

struct FrameService::Impl {
  struct Waiting {
    FrameOrder order;
    Done done;
  };

  std::mutex mutex;
  std::condition_variable wake;
  std::condition_variable idle;
  std::vector<Waiting> waiting; // served from the back
  bool serving = false;
  std::atomic<bool> stopping{false}; // set under the lock

  std::list<std::pair<FrameKey, FrameRef>> kept; // the one used last in front
  std::map<FrameKey, std::list<std::pair<FrameKey, FrameRef>>::iterator> keptByKey;
  std::size_t bytesKept = 0;

  // Worker only.
  std::list<std::pair<std::filesystem::path, std::unique_ptr<FrameDecoder>>> decoders;

  std::thread worker;

  FrameRef FindKept(const FrameKey& key) {
    const auto found = keptByKey.find(key);
    if (found == keptByKey.end())
      return nullptr;
    kept.splice(kept.begin(), kept, found->second);
    return found->second->second;
  }

  void Keep(const FrameKey& key, const FrameRef& frame) {
    if (keptByKey.contains(key))
      return;
    kept.emplace_front(key, frame);
    keptByKey.emplace(key, kept.begin());
    bytesKept += BytesOf(frame);
    while (kept.size() > kFramesKept || (bytesKept > kBytesKept && kept.size() > 1)) {
      bytesKept -= BytesOf(kept.back().second);
      keptByKey.erase(kept.back().first);
      kept.pop_back();
    }
  }

  FrameDecoder& DecoderFor(const std::filesystem::path& media) {
    for (auto i = decoders.begin(); i != decoders.end(); ++i) {
      if (i->first == media) {
        decoders.splice(decoders.begin(), decoders, i);
        return *decoders.front().second;
      }
    }
    decoders.emplace_front(media, std::make_unique<FrameDecoder>(media, &stopping));
    if (decoders.size() > kDecodersKept)
      decoders.pop_back();
    return *decoders.front().second;
  }

  void Serve(const Waiting& next) {
    FrameRef frame;
    {
      const std::lock_guard lock(mutex);
      frame = FindKept(KeyOf(next.order));
    }
    if (!frame) {
      zebcore::boundary::Guard("FrameService::Decode", [&] {
        frame = DecoderFor(next.order.media).Decode(next.order.time, next.order.width, next.order.height);
      });
    }
    if (frame) {
      const std::lock_guard lock(mutex);
      Keep(KeyOf(next.order), frame);
    }
    zebcore::boundary::Guard("FrameService::Done", [&] { next.done(frame); });
  }

  void Run() {
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), kWorkerNiceness);
    std::unique_lock lock(mutex);
    for (;;) {
      if (waiting.empty()) {
        serving = false;
        idle.notify_all();
      }
      wake.wait(lock, [this] { return stopping || !waiting.empty(); });
      if (stopping)
        return;
      const Waiting next = std::move(waiting.back());
      waiting.pop_back();
      serving = true;
      lock.unlock();
      Serve(next);
      lock.lock();
    }
  }
};

FrameService::FrameService() : mImpl(std::make_unique<Impl>()) {
  mImpl->worker = std::thread([this] { mImpl->Run(); });
}

FrameService::~FrameService() {
  {
    const std::lock_guard lock(mImpl->mutex);
    mImpl->stopping = true;
  }
  mImpl->wake.notify_all();
  mImpl->worker.join();
}

FrameService& FrameService::Instance() {
  static FrameService instance;
  return instance;
}

FrameRef FrameService::Find(const FrameOrder& order) {
  const std::lock_guard lock(mImpl->mutex);
  return mImpl->FindKept(KeyOf(order));
}

void FrameService::Order(const FrameOrder& order, Done done) {
  {
    const std::lock_guard lock(mImpl->mutex);
    mImpl->waiting.push_back({order, std::move(done)});
  }
  mImpl->wake.notify_one();
}

std::size_t FrameService::CountWaiting() const {
  const std::lock_guard lock(mImpl->mutex);
  return mImpl->waiting.size();
}

void FrameService::WaitUntilIdle() {
  std::unique_lock lock(mImpl->mutex);
  mImpl->idle.wait(lock, [this] { return mImpl->waiting.empty() && !mImpl->serving; });
}

} // namespace ML
