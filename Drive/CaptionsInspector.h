#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "BE/Interfaces.h"
#include "Captions/contracts/CaptionFormatInfo.h"
#include "zebui/NodeManager.h"

namespace HSL {
class Handler;
}
namespace UIF {
class ColorPickerControl;
class HotTimecodeControl;
class PictureButton;
class ScrollBar;
class TabView;
class ViewBase;
} // namespace UIF
namespace zebui::controls {
class UI_TextEdit;
}

namespace Captivo {

class CaptionsHandler;
class CaptionsItem;
class CaptionsPane;
class CaptionsSource;
class CaptionsView;

// Reads the panel's state for whoever drives it: the one friend of the panel's classes. It changes nothing and resolves
// no source, because resolving one may change it; what a source leads to it looks up in the host by itself. A panel
// that is not there yields empty answers.
class CaptionsInspector {
 public:
  using TickTime = zebmediatypes::TickTime;
  using UString = zebcore::UString;

  explicit CaptionsInspector(const HSL::Handler* handler);

  UIF::TabView* GetTabView() const;
  UIF::ViewBase* GetPane() const;
  bool IsViewCreated() const;

  struct Row {
    TickTime begin;
    TickTime end;
    UString text;
    bool selected = false;
    bool timeEditPending = false;
    // Null while the row has no controls.
    UIF::HotTimecodeControl* in = nullptr;
    UIF::HotTimecodeControl* out = nullptr;
    zebui::controls::UI_TextEdit* textEdit = nullptr;
  };
  std::vector<Row> GetRows() const;
  std::optional<Row> FindRow(TickTime begin) const;
  std::vector<TickTime> GetRowTimes() const;
  std::vector<TickTime> GetSelectedTimes() const;

  struct PaneState {
    TickTime anchor = zebmediatypes::kTime_Min;
    std::pair<std::size_t, std::size_t> caret{0, 0};
    int firstVisible = -1;
    int lastVisible = -2;
    unsigned scrollOffset = 0;
    UString filterText;
    bool deferActive = false;
    bool reloadPending = false;
    bool sourcePending = false;
    bool resetScrollPending = false;
    bool keepTextFocus = false;
    bool unavailable = true;
    zebui::ui::TimerID pollTimer = 0;
    zebui::ui::TimerID deferTimer = 0;
  };
  // Nothing while there is no pane.
  std::optional<PaneState> GetPaneState() const;

  struct SourceState {
    int kind = 0;
    // The stream of the selected format, if the object has it.
    zebcore::classref::InterfaceRef<BE::ICaptioningStream> stream;
    bool leadsToStream = false;
    zebcaptioning::StreamFormat format = 0;
    std::set<zebcaptioning::StreamFormat> formats;
    zebmediatypes::FrameRate frameRate;
    TickTime zeroPoint;
    zebmediatypes::TimeDisplay timeDisplay;
    // What the user has chosen instead, if anything.
    std::optional<zebmediatypes::TimeDisplay> chosenDisplay;
    std::array<zebmediatypes::TimeDisplay, 4> overrides;
  };
  enum class SourceOf { Pane, Pending, Handler };
  std::optional<SourceState> GetSource(SourceOf of) const;

  // The fields of the view by name, as JSON would say them; those that the panel has.
  using Value = std::variant<bool, std::int64_t, UString, std::array<int, 4>, std::array<float, 4>>;
  std::vector<std::pair<std::string, Value>> GetViewFields() const;
  int GetScrollPosition() const;
  int GetFormatBarHeight() const;
  // Null before there is one.
  boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo> GetFormatInfo() const;

  // A control of the view, by the name of its field.
  using ControlPointer =
      std::variant<zebui::ui::UI_Node*, UIF::ViewBase*, UIF::ScrollBar*, UIF::PictureButton*, UIF::ColorPickerControl*>;
  struct Control {
    std::string name;
    ControlPointer pointer;
  };
  std::vector<Control> GetControls() const;

  struct Preview {
    zebcore::classref::InterfaceRef<BE::IVideoSegments> video;
    TickTime time;
    bool hasFrame = false;
    bool hasModel = false;
    zebcore::utility::Guid hash;
  };
  std::vector<Preview> GetPreviews() const;
  std::map<std::uint32_t, zebcore::classref::InterfaceRef<BE::IVideoSegments>> GetPendingRenders() const;

 private:
  SourceState Describe(const CaptionsSource& source) const;
  Row Describe(const CaptionsItem& item) const;
  template <class View> static void CollectFields(const View& view, std::vector<std::pair<std::string, Value>>& fields);
  template <class View> static void CollectControls(View& view, std::vector<Control>& controls);

  const CaptionsHandler* mHandler;
  CaptionsView* mView = nullptr;
  CaptionsPane* mPane = nullptr;
};

} // namespace Captivo
