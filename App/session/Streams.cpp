#include "App/session/Streams.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "App/Session.h"
#include "App/session/Text.h"
#include "zebcaptioning/Conversion.h"
#include "zebcaptioning/StreamNumbers.h"
#include "zebcore/Localizer.h"

namespace App {

using zebcaptioning::CaptionStatePtr;
using zebcaptioning::StreamFormat;

namespace {

bool IsStandardAspect(const BE::MediaInfo& media) {
  constexpr double kBetweenStandardAndWide = 1.5;
  return media.width > 0 && media.height > 0 &&
         media.pixelAspect.ToDouble() * media.width / media.height < kBetweenStandardAndWide;
}

} // namespace

StreamFormat GetStreamFormat(const std::string& family, int channel) {
  return zebcaptioning::GetStreamFormat(family, channel);
}

std::vector<std::string> GetStreamFamilies() {
  std::vector<std::string> names;
  for (const zebcaptioning::StreamFamily& family : zebcaptioning::GetStreamFamilies())
    names.emplace_back(family.name);
  return names;
}

std::optional<StreamFormat> FindFreeFormat(const InterfaceRef<BE::MasterClip>& clip, StreamFormat format) {
  const auto number = zebcaptioning::ReadStreamNumber(format);
  const auto* family = number ? zebcaptioning::FindStreamFamily(number->family) : nullptr;
  if (!family)
    return std::nullopt;
  std::set<StreamFormat> held;
  BE::QueryAvailableCaptionStreamFormats(clip, held);
  if (number->channel > 0 && !held.contains(format))
    return format;
  for (int channel = 1; channel <= family->channels; ++channel)
    if (const StreamFormat free = zebcaptioning::GetStreamFormat(number->family, channel); !held.contains(free))
      return free;
  return std::nullopt;
}

int GetGridColumns(StreamFormat format, const BE::MediaInfo& picture) {
  return zebcaptioning::IsOpenCaptions(format) ? 0
                                               : zebcaptioning::GetCaptionColumns(format, IsStandardAspect(picture));
}

std::vector<CaptionStatePtr> CaptionStates(const InterfaceRef<BE::CaptioningStream>& stream) {
  std::vector<boost::intrusive_ptr<zebcaptioning::Caption>> captions;
  stream->GetCaptions(captions);
  std::vector<CaptionStatePtr> states;
  states.reserve(captions.size());
  for (const auto& caption : captions)
    states.push_back(caption->GetState());
  return states;
}

zebcore::UString StepName(std::string_view keyWithDefault) {
  return zebcore::config::Localizer::Get().Localize(keyWithDefault);
}

Problem Stopped() {
  return {Text("$$$/Vidra/Captivo/Error/Stopped=Stopped. Nothing was changed.")};
}

Problem DescribeReadOnly(const BE::Project& project) {
  return {Text("$$$/Vidra/Captivo/Error/ReadOnly=The project {1} is open for reading only. To change it, unlock it in "
               "the File menu or save it under another name.",
               {Quoted(zebcore::ToUTF8(project.GetName()))})};
}

Problem NoClip() {
  return {Text(
      "$$$/Vidra/Captivo/Error/NoClip=There is no clip for the captions. Import a media file or select a clip in the "
      "project first.")};
}

Problem NoStream() {
  return {Text("$$$/Vidra/Captivo/Error/NoStream=There is no caption stream. Select one in the project first.")};
}

Problem NoFreeFormat(const InterfaceRef<BE::MasterClip>& clip, StreamFormat format) {
  return {Text(
      "$$$/Vidra/Captivo/Error/NoFreeFormat={1} holds as many streams of the kind of {2} as there can be. Delete one "
      "or "
      "choose another format.",
      {Quoted(zebcore::ToUTF8(clip->GetName())), zebcore::ToUTF8(zebcaptioning::GetFullStreamFormatLabel(format))})};
}

Result<InterfaceRef<BE::CaptioningStream>> Session::NewStream(const InterfaceRef<BE::MasterClip>& clip,
                                                              StreamFormat format) {
  if (!mProject || !clip)
    return {std::nullopt, NoClip()};
  if (mProject->IsReadOnly())
    return {std::nullopt, DescribeReadOnly(*mProject)};
  BE::StreamDescription description;
  description.format = format;
  return mProject->AddStream(clip, description, {}, StepName("$$$/Vidra/Captivo/Step/NewStream=New Stream"));
}

Result<InterfaceRef<BE::CaptioningStream>> Session::DuplicateStream(const InterfaceRef<BE::CaptioningStream>& stream,
                                                                    StreamFormat format) {
  if (!mProject || !stream)
    return {std::nullopt, NoStream()};
  if (mProject->IsReadOnly())
    return {std::nullopt, DescribeReadOnly(*mProject)};
  Commit();
  const InterfaceRef<BE::MasterClip> clip = stream->GetMasterClip();
  BE::StreamDescription description = stream->GetDescription();
  description.format = format;
  const BE::MediaInfo& media = clip->GetMediaInfo();
  const StreamFormat from = stream->GetStreamFormat();
  const StreamFormat closed = zebcaptioning::IsOpenCaptions(format) ? from : format;
  const int columns = zebcaptioning::GetCaptionColumns(closed, IsStandardAspect(media));
  const int rows = zebcaptioning::GetCaptionRows(closed);
  std::vector<BE::NewCaption> captions;
  for (const CaptionStatePtr& state : CaptionStates(stream))
    captions.push_back({zebcaptioning::ConvertToFormat(state, from, format, columns, rows, media.width, media.height)});
  return mProject->AddStream(clip, description, captions,
                             StepName("$$$/Vidra/Captivo/Step/DuplicateStream=Duplicate Stream"));
}

void Session::DeleteStream(const InterfaceRef<BE::CaptioningStream>& stream) {
  if (!mProject || !stream || mProject->IsReadOnly())
    return;
  Commit();
  mProject->RemoveStream(stream, StepName("$$$/Vidra/Captivo/Step/DeleteStream=Delete Stream"));
}

} // namespace App
