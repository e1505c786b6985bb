// When the pictures of the video arrive.

#include "Drive/Driver.h"
#include "Drive/Rendering.h"

namespace Drive {

namespace {

Rendering::Mode FindMode(const Fields& fields) {
  static const std::map<std::string, Rendering::Mode> modes = {
      {"real", Rendering::Mode::Real}, {"at_once", Rendering::Mode::AtOnce}, {"hold", Rendering::Mode::Hold}};
  const auto found = modes.find(fields.Text("mode"));
  if (found == modes.end())
    fields.Refuse("mode", "must be real, at_once or hold");
  return found->second;
}

const char* NameMode(Rendering::Mode mode) {
  switch (mode) {
  case Rendering::Mode::AtOnce:
    return "at_once";
  case Rendering::Mode::Hold:
    return "hold";
  case Rendering::Mode::Real:
    break;
  }
  return "real";
}

// The time may be left out for a request that is held.
void Complete(const Fields& fields, const char* requestField) {
  const auto request = static_cast<std::uint32_t>(fields.Integer(requestField, 0, UINT32_MAX));
  const auto held = Rendering::GetHeld();
  const auto found = std::find_if(held.begin(), held.end(), [&](const auto& one) { return one.request == request; });
  const auto time = fields.Has("time") || found == held.end() ? fields.Time("time") : found->time;
  if (!Rendering::Complete(request, time))
    throw RequestError("the panel has made no renderer yet");
}

Json SetRendering(Driver& driver, const Fields& fields) {
  if (fields.Has("mode"))
    Rendering::SetMode(FindMode(fields));
  if (fields.Has("complete")) {
    const Json& complete = fields.Get("complete");
    if (complete.is_object())
      Complete(fields.Object("complete"), "request");
    else
      Complete(fields, complete.is_boolean() ? "request" : "complete");
  }
  if (fields.Flag("settle", false)) {
    driver.Settle();
    Rendering::WaitForDecoding();
    driver.Settle();
  }
  Json held = Json::array();
  for (const auto& one : Rendering::GetHeld())
    held.push_back({{"request", one.request}, {"time", FromTime(one.time)}});
  return {{"mode", NameMode(Rendering::GetMode())}, {"held", std::move(held)}};
}

} // namespace

void AddRenderRequests(RequestTable& table) {
  table["render"] = {&SetRendering};
}

} // namespace Drive
