#include "Drive/PanelJson.h"

#include "BE/Project.h"
#include "Drive/ControlJson.h"
#include "UIF/HotTimecodeControl.h"
#include "UIF/TabView.h"
#include "zebui/Controls.h"
#include "zebui/NodeManager.h"

namespace Drive {

namespace {

using Captivo::CaptionsInspector;

Json DescribeRow(const CaptionsInspector::Row& row) {
  Json json = {{"begin", FromTime(row.begin)},        {"end", FromTime(row.end)},
               {"text", FromText(row.text)},          {"selected", row.selected},
               {"realized", row.textEdit != nullptr}, {"time_edit_pending", row.timeEditPending}};
  if (!row.textEdit)
    return json;
  json["in_value"] = FromTime(row.in->GetValue());
  json["out_value"] = FromTime(row.out->GetValue());
  json["in_text"] = FromText(row.in->GetText());
  json["out_text"] = FromText(row.out->GetText());
  json["in_bounds"] = FromRect(row.in->GetBounds());
  json["out_bounds"] = FromRect(row.out->GetBounds());
  json["text_bounds"] = FromRect(row.textEdit->UI_GetLocalRectF());
  json["text_value"] = FromText(row.textEdit->GetValue());
  json["text_selection"] = FromRange(row.textEdit->GetSelection());
  json["text_focus"] = row.textEdit->UI_HasKeyboardFocus(false);
  json["text_scroll"] = row.textEdit->GetScrollPosition();
  return json;
}

Json DescribeTimer(zebui::ui::TimerID id) {
  const auto due = zebui::ui::UI_NodeManager::Get()->GetTimeUntilDue(id);
  return due ? Json(*due) : Json();
}

Json FocusInRow(const CaptionsInspector::Row& row, const char* part) {
  return {{"in", "row"}, {"row", FromTime(row.begin)}, {"part", part}};
}

struct JsonOf {
  Json operator()(bool value) const { return value; }
  Json operator()(std::int64_t value) const { return value; }
  Json operator()(const zebcore::UString& value) const { return FromText(value); }
  Json operator()(const std::array<int, 4>& value) const { return value; }
  Json operator()(const std::array<float, 4>& value) const {
    Json list = Json::array();
    for (const float part : value)
      list.push_back(FromFloat(part));
    return list;
  }
};

Json Attribute(Json value, bool uniform) {
  return {{"value", std::move(value)}, {"uniform", uniform}};
}

// Getters that tell by a flag whether the value holds everywhere.
template <class Get> Json Read(Get&& get) {
  bool uniform = false;
  Json value = get(uniform);
  return Attribute(std::move(value), uniform);
}

Json DescribeColor(const zebcaptioning::CaptionFormatInfo& info, zebcaptioning::CaptioningColor::ColorType type) {
  return Read([&](bool& uniform) {
    zebcaptioning::CaptioningColor color;
    info.GetColor(type, color, uniform);
    return Json::array({FromFloat(color.red), FromFloat(color.green), FromFloat(color.blue), FromFloat(color.alpha)});
  });
}

Json DescribeFormat(zebcaptioning::CaptionFormatInfo& info) {
  using Color = zebcaptioning::CaptioningColor;
  Json format = {
      {"caption_type", Read([&](bool& uniform) { return Json(info.GetCaptionType(uniform)); })},
      {"underline", Read([&](bool& uniform) { return Json(info.GetIsUnderlined(uniform)); })},
      {"italic", Read([&](bool& uniform) { return Json(info.GetIsItalicized(uniform)); })},
      {"bold", Read([&](bool& uniform) { return Json(info.GetIsBolded(uniform)); })},
      {"family", Read([&](bool& uniform) {
         zebcore::UString family;
         info.GetFontFamily(family, uniform);
         return FromText(family);
       })},
      {"size", Read([&](bool& uniform) { return FromFloat(info.GetFontSize(uniform)); })},
      {"edge_width", Read([&](bool& uniform) { return FromFloat(info.GetTextEdgeWidth(uniform)); })},
      {"line_spacing", Read([&](bool& uniform) { return Json(info.GetLineSpacing(uniform)); })},
      {"text_color", DescribeColor(info, Color::kColorType_Text)},
      {"background_color", DescribeColor(info, Color::kColorType_Background)},
      {"edge_color", DescribeColor(info, Color::kColorType_Edge)},
      {"text_opacity",
       Read([&](bool& uniform) { return FromFloat(info.GetOpacity(Color::kColorType_Text, uniform)); })},
      {"background_opacity",
       Read([&](bool& uniform) { return FromFloat(info.GetOpacity(Color::kColorType_Background, uniform)); })},
      {"edge_opacity",
       Read([&](bool& uniform) { return FromFloat(info.GetOpacity(Color::kColorType_Edge, uniform)); })},
      {"alignment", Read([&](bool& uniform) { return Json(static_cast<int>(info.GetTextAlignment(uniform))); })},
      {"anchor", Attribute(info.GetAnchorID(), info.IsAnchorUniform())},
      {"x", Read([&](bool& uniform) { return Json(info.GetPositionX(uniform)); })},
      {"y", Read([&](bool& uniform) { return Json(info.GetPositionY(uniform)); })},
      {"region", Read([&](bool& uniform) { return FromText(info.GetRegionName(uniform)); })},
      {"style", Read([&](bool& uniform) { return FromText(info.GetStyleName(uniform)); })},
      {"max_line_width", info.GetMaxLineWidth()},
      {"max_block_height", info.GetMaxBlockHeight()},
  };
  zebcore::geom::RectT<float> area;
  bool percent = false;
  bool known = false;
  Json value;
  if (info.GetRegionArea(area, percent, known))
    value = {
        {"area", Json::array({FromFloat(area.x), FromFloat(area.y), FromFloat(area.width), FromFloat(area.height)})},
        {"percent", percent}};
  // No region at all is the same for all captions.
  format["region_area"] = Attribute(value, value.is_null() || known);
  return format;
}

} // namespace

Json DescribeFocus(Driver& driver) {
  const CaptionsInspector inspector(driver.Handler());
  if (!inspector.GetPane())
    return nullptr;
  for (const auto& row : inspector.GetRows()) {
    if (!row.textEdit)
      continue;
    if (row.textEdit->UI_HasKeyboardFocus(true))
      return FocusInRow(row, "text");
    if (row.in->GetInlineEditText())
      return FocusInRow(row, "in");
    if (row.out->GetInlineEditText())
      return FocusInRow(row, "out");
  }
  for (const auto& control : inspector.GetControls()) {
    if (control.name != "pane" && HasFocus(control))
      return {{"in", "control"}, {"name", control.name}};
  }
  return inspector.GetPane()->HasFocus() ? Json{{"in", "pane"}} : Json();
}

Json DescribePanel(Driver& driver) {
  const CaptionsInspector inspector(driver.Handler());
  const UIF::TabView* view = inspector.GetTabView();
  const bool created = view && view->IsCreated();
  Json rows = Json::array();
  for (const auto& row : inspector.GetRows())
    rows.push_back(DescribeRow(row));
  const auto found = inspector.GetPaneState();
  const CaptionsInspector::PaneState state = found.value_or(CaptionsInspector::PaneState());
  const UIF::ViewBase* pane = inspector.GetPane();
  return {{"created", created},
          {"shown", created && view->IsShown()},
          {"front_most", created && view->IsFrontMost()},
          {"stacked", created && view->GetIsStacked()},
          {"rows", std::move(rows)},
          {"selected", FromTimes(inspector.GetSelectedTimes())},
          {"anchor", FromOptionalTime(state.anchor)},
          {"caret", FromRange(state.caret)},
          {"first_visible", state.firstVisible},
          {"last_visible", state.lastVisible},
          {"scroll_offset", state.scrollOffset},
          {"scroll_position", inspector.GetScrollPosition()},
          {"filter_text", FromText(state.filterText)},
          {"unavailable", state.unavailable},
          {"flags",
           {{"defer_active", state.deferActive},
            {"reload_pending", state.reloadPending},
            {"source_pending", state.sourcePending},
            {"reset_scroll_pending", state.resetScrollPending},
            {"keep_text_focus", state.keepTextFocus}}},
          {"timers",
           {{"poll", found ? DescribeTimer(state.pollTimer) : Json()},
            {"defer", found ? DescribeTimer(state.deferTimer) : Json()}}},
          {"focus", DescribeFocus(driver)},
          {"pane_bounds", pane ? FromRect(pane->GetBounds()) : Json()},
          {"format_bar_height", inspector.GetFormatBarHeight()}};
}

Json DescribeSource(const CaptionsInspector::SourceState& source) {
  const auto stream = source.stream.Query<BE::CaptioningStream>();
  Json overrides = Json::array();
  for (const auto& display : source.overrides)
    overrides.push_back(display.GetNumber());
  return {{"kind", source.kind},
          {"stream", stream ? Json(stream->GetID()) : Json()},
          {"stream_format", source.format},
          {"available_formats", source.formats},
          {"frame_rate", source.frameRate.GetTicksPerFrame()},
          {"zero_point", FromTime(source.zeroPoint)},
          {"time_display", source.timeDisplay.GetNumber()},
          {"overrides", std::move(overrides)}};
}

Json DescribeView(Driver& driver) {
  const CaptionsInspector inspector(driver.Handler());
  Json view = Json::object();
  for (const auto& [name, value] : inspector.GetViewFields())
    view[name] = std::visit(JsonOf(), value);
  view["stacked_min_height"] = inspector.GetTabView()->GetStackedDimensionHeightMin();
  // The getters of an info are not all const; a copy is asked.
  const auto info = inspector.GetFormatInfo();
  if (info) {
    zebcaptioning::CaptionFormatInfo copy(*info);
    view["format"] = DescribeFormat(copy);
  } else {
    view["format"] = nullptr;
  }
  return view;
}

} // namespace Drive
