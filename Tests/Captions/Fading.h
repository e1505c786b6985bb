#pragma once

#include <climits>
#include <string>
#include <utility>
#include <vector>

#include "BE/Project.h"
#include "Captions/contracts/CaptionDisplaySettings.h"
#include "Captions/contracts/CaptioningRenderableModel.h"
#include "Captions/shell/HostTypes.h"

// Host objects that vanish between two calls.
namespace Captivo::Testing {

// A clip whose streams are gone after it was asked for them so many times, and which can be given another stream.
class FadingClip : public BE::MasterClip {
 public:
  explicit FadingClip(InterfaceRef<BE::MasterClip> clip) : mClip(std::move(clip)) {}
  std::vector<InterfaceRef<BE::CaptioningStream>> GetStreams() const override {
    if (looks++ >= looksThatFindStreams)
      return {};
    return stream ? std::vector<InterfaceRef<BE::CaptioningStream>>{stream} : mClip->GetStreams();
  }
  UString GetName() const override { return mClip->GetName(); }
  InterfaceRef<BE::IClip> GetClip(BE::MediaType type, int index) const override { return mClip->GetClip(type, index); }
  TickTime GetMediaOffset(int index) const override { return mClip->GetMediaOffset(index); }
  bool IsMerged() const override { return mClip->IsMerged(); }
  bool IsStill() const override { return mClip->IsStill(); }
  ImmutableString GetStationID() const override { return "fading"; }
  std::string GetID() const override { return mClip->GetID(); }
  std::filesystem::path GetMediaPath() const override { return mClip->GetMediaPath(); }
  const BE::MediaInfo& GetMediaInfo() const override { return mClip->GetMediaInfo(); }
  InterfaceRef<BE::Project> GetProject() const override { return mClip->GetProject(); }
  bool IsOffline() const override { return mClip->IsOffline(); }

  InterfaceRef<BE::CaptioningStream> stream; // shown in place of the clip's own
  mutable int looks = 0;
  int looksThatFindStreams = INT_MAX;

 private:
  InterfaceRef<BE::MasterClip> mClip;
};

// A stream whose captions are gone after so many of them were fetched, though their keys were handed out.
class FadingStream : public BE::CaptioningStream {
 public:
  explicit FadingStream(InterfaceRef<BE::CaptioningStream> stream) : mStream(std::move(stream)) {}
  StreamFormat GetStreamFormat() const override { return mStream->GetStreamFormat(); }
  std::size_t GetCaptionCount() const override { return mStream->GetCaptionCount(); }
  void GetCaptionKeys(std::vector<CaptionKey>& keys) const override { mStream->GetCaptionKeys(keys); }
  boost::intrusive_ptr<Caption> GetCaption(const CaptionKey& key) const override {
    return fetched++ < captionsThatAreThere ? mStream->GetCaption(key) : nullptr;
  }
  void GetCaptions(std::vector<boost::intrusive_ptr<Caption>>& captions) const override {
    mStream->GetCaptions(captions);
  }
  void GetDisplaySettings(const TickTime& time, zebcaptioning::CaptionDisplaySettings& settings) const override {
    mStream->GetDisplaySettings(time, settings);
  }
  zebcore::utility::Guid GetGuid() const override { return mStream->GetGuid(); }
  boost::intrusive_ptr<zebcaptioning::CaptioningRenderableModel>
  GetRenderableModel(const TickTime& time) const override {
    return mStream->GetRenderableModel(time);
  }
  const void* GetIdentity() const override { return this; }
  ImmutableString GetStationID() const override { return "fading.stream"; }
  std::string GetID() const override { return mStream->GetID(); }
  InterfaceRef<BE::MasterClip> GetMasterClip() const override { return mStream->GetMasterClip(); }
  const BE::StreamDescription& GetDescription() const override { return mStream->GetDescription(); }
  boost::intrusive_ptr<Caption> FindByBegin(TickTime begin) const override { return mStream->FindByBegin(begin); }
  std::optional<CaptionKey> FindKeyByBegin(TickTime begin) const override { return mStream->FindKeyByBegin(begin); }
  std::vector<boost::intrusive_ptr<Caption>> FindAt(TickTime time) const override { return mStream->FindAt(time); }
  void SetBusy(bool busy) override { mStream->SetBusy(busy); }
  bool IsBusy() const override { return mStream->IsBusy(); }
  std::shared_ptr<BE::OpenChange> BeginChange() override { return mStream->BeginChange(); }
  void WriteMeasures(const std::vector<Measure>& measures) override { mStream->WriteMeasures(measures); }

  mutable int fetched = 0;
  int captionsThatAreThere = INT_MAX;

 private:
  InterfaceRef<BE::CaptioningStream> mStream;
};

} // namespace Captivo::Testing
