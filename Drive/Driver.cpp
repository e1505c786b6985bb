#include "Drive/Driver.h"

#include <QApplication>

#include "Captions/contracts/StreamMessages.h"
#include "DLG/CaptionsSettingsDialogs.h"
#include "DLG/ColorPickerDialog.h"
#include "Drive/CaptionsInspector.h"
#include "Drive/ControlJson.h"
#include "Drive/PanelWindow.h"
#include "Drive/Rendering.h"
#include "HSL/HostCommands.h"
#include "MZ/Actions.h"
#include "UIF/Dialogs.h"
#include "UIF/TabView.h"
#include "zebcore/Boundary.h"
#include "zebcore/Clock.h"
#include "zebui/Menu.h"

namespace Drive {

namespace {

// So many calls and rows in their arguments are kept for a script that does not ask.
constexpr std::size_t kTraceBudget = 2000000;
constexpr std::size_t kSettleRounds = 1000;
// What one round of the toolkit's events leads to, painting for instance, comes with the next ones.
constexpr std::size_t kQuietRounds = 3;

constexpr const char* kUpdaterPrefix = "CaptioningStreamUpdater::";

std::size_t Weigh(const zebcore::trace::Call& call) {
  std::size_t weight = 10;
  for (const auto& argument : call.args)
    weight += argument.is_array() ? argument.size() : 1;
  return weight;
}

RequestTable MakeTable() {
  RequestTable table;
  AddHostRequests(table);
  AddProjectRequests(table);
  AddSelectionRequests(table);
  AddMessageRequests(table);
  AddStreamRequests(table);
  AddFactsRequests(table);
  AddPanelRequests(table);
  AddControlRequests(table);
  AddInputRequests(table);
  AddRowRequests(table);
  AddRecordRequests(table);
  AddRenderRequests(table);
  return table;
}

Json Failure(const std::string& error) {
  return {{"ok", false}, {"error", error}};
}

// Whether lists and objects stand in one another so deep that copying or writing them would exhaust the stack.
bool IsTooDeep(const std::string& line) {
  constexpr int kDeepest = 500;
  int depth = 0;
  bool isText = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (isText && c == '\\')
      ++i;
    else if (c == '"')
      isText = !isText;
    else if (!isText && (c == '[' || c == '{') && ++depth > kDeepest)
      return true;
    else if (!isText && (c == ']' || c == '}'))
      --depth;
  }
  return false;
}

Json DescribeItems(const std::vector<UIF::MenuUtils::MenuItem>& items) {
  Json list = Json::array();
  for (const auto& item : items) {
    if (item.separator)
      list.push_back(
          {{"text", ""}, {"id", nullptr}, {"enabled", false}, {"checked", nullptr}, {"keys", ""}, {"separator", true}});
    else
      list.push_back({{"text", FromText(item.text)},
                      {"id", item.command},
                      {"enabled", item.enabled},
                      {"checked", item.checked ? Json(*item.checked) : Json()},
                      {"keys", item.keys},
                      {"separator", false}});
  }
  return list;
}

// A menu that a panel builds itself: a separator there takes a number all the same.
Json DescribeItems(const std::vector<zebui::utility::OSMenu::Item>& items) {
  Json list = Json::array();
  for (const auto& item : items)
    list.push_back({{"text", FromText(item.text)},
                    {"id", item.id},
                    {"enabled", item.enabled},
                    {"checked", item.hasCheck ? Json(item.checked) : Json()},
                    {"separator", item.separator}});
  return list;
}

void AddReports(Json& answer) {
  const auto reports = zebcore::boundary::TakeReports();
  if (reports.empty())
    return;
  const auto report = [](const zebcore::boundary::Report& one) {
    return Json{{"type", one.type}, {"text", one.text}, {"where", one.where}};
  };
  answer["exception"] = report(reports.front());
  if (reports.size() == 1)
    return;
  Json all = Json::array();
  for (const auto& one : reports)
    all.push_back(report(one));
  answer["exceptions"] = std::move(all);
}

} // namespace

void TraceStore::Collect(const SubjectNames& names) {
  for (auto& call : zebcore::trace::Take()) {
    if (const auto name = names.find(call.subject); name != names.end())
      call.args["control"] = name->second;
    Put(std::move(call));
  }
  while (mWeight > kTraceBudget && mCalls.size() > 1) {
    mWeight -= Weigh(mCalls.front());
    mCalls.pop_front();
    ++mDropped;
  }
}

void TraceStore::Put(zebcore::trace::Call call) {
  mWeight += Weigh(call);
  mCalls.push_back(std::move(call));
}

std::vector<zebcore::trace::Call> TraceStore::Take() {
  Collect();
  std::vector<zebcore::trace::Call> calls(std::make_move_iterator(mCalls.begin()),
                                          std::make_move_iterator(mCalls.end()));
  mCalls.clear();
  mWeight = 0;
  mDropped = 0;
  return calls;
}

// What was chosen answers one menu, if a person could have chosen it there.
int Popups::Show(Json name, Json items) {
  const int wanted = std::exchange(nextMenuChoice, 0);
  const bool canBeChosen = std::any_of(items.begin(), items.end(), [&](const Json& item) {
    return item.at("id") == wanted && item.at("enabled") == true;
  });
  menus.push_back({{"name", std::move(name)}, {"items", std::move(items)}});
  return canBeChosen ? wanted : 0;
}

Driver::Driver() : mStart(zebcore::Clock::Instance().Now()) {
  HSL::HostCommands::Install();
  Session();
  UIF::Workspace::SetSelectionRepeater([this] { RepeatSelection(); });
  UIF::Workspace::SetFrameFactory([this](const UIF::UString&) { return &Window(); });
  UIF::SetMessageBoxHook([this](const UIF::MessageBoxRecord& box) {
    popups.boxes.push_back({{"text", FromText(box.text)},
                            {"title", FromText(box.title)},
                            {"flags", box.flags},
                            {"icon", box.icon},
                            {"default", box.defaultResult}});
    return 1;
  });
  UIF::MenuUtils::SetMenuHook(
      [this](const std::string& name, const auto& items) { return popups.Show(name, DescribeItems(items)); });
  zebui::ui::SetPopupMenuHook(
      [this](const auto& menu) { return popups.Show(nullptr, DescribeItems(menu.GetItems())); });
  DLG::ColorPickerDialog::SetHook([this](const UIF::Color&) { return std::exchange(popups.nextColor, std::nullopt); });
  DLG::SetCaptionsSettingsHook([](DLG::CaptionsSettings) { return true; });
  Rendering::Install();
  HSL::Handler::SetPanelMovementHook([this](HSL::Handler::PanelMovement) { return popups.panelMovementResult; });
  zebcore::trace::SetAnnotator([this](zebcore::trace::Call& call) {
    if (call.call.compare(0, std::string_view(kUpdaterPrefix).size(), kUpdaterPrefix) != 0)
      return;
    const Captivo::CaptionsInspector inspector(mHandler.get());
    call.args["rows"] = FromTimes(inspector.GetRowTimes());
    call.args["selected"] = FromTimes(inspector.GetSelectedTimes());
  });
  zebcore::trace::SetOn(true);
}

Driver::~Driver() {
  DestroyHandler();
  zebcore::trace::SetAnnotator({});
  zebcore::trace::SetOn(false);
  mSelection.reset();
  removedStreams.clear();
  Session().CloseProject();
  Settle();
  Rendering::Uninstall();
  DLG::SetCaptionsSettingsHook({});
  DLG::ColorPickerDialog::SetHook({});
  zebui::ui::SetPopupMenuHook({});
  HSL::Handler::SetPanelMovementHook({});
  UIF::MenuUtils::SetMenuHook({});
  UIF::SetMessageBoxHook({});
  UIF::Workspace::SetSelectionRepeater({});
  UIF::Workspace::SetFrameFactory({});
}

std::string Driver::Answer(const std::string& line) {
  Json answer;
  Json id;
  bool hasID = false;
  const bool isTooDeep = IsTooDeep(line);
  Json request = isTooDeep ? Json() : Json::parse(line, nullptr, false);
  if (isTooDeep) {
    answer = Failure("the line has too many lists and objects in one another");
  } else if (request.is_discarded()) {
    answer = Failure("the line is not JSON");
  } else if (!request.is_object()) {
    answer = Failure("a request must be a JSON object");
  } else {
    hasID = request.contains("id");
    if (hasID)
      id = request.at("id");
    answer = Obey(request);
  }
  Settle();
  trace.Collect(NameControls(*this));
  AddReports(answer);
  if (hasID)
    answer["id"] = std::move(id);
  return answer.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json Driver::Obey(const Json& request) {
  static const RequestTable table = MakeTable();
  const Fields fields(request);
  try {
    const auto found = table.find(fields.Text("do"));
    if (found == table.end())
      return Failure("unknown request");
    if (found->second.needsHost)
      EnsureHandler();
    Json answer = found->second.function(*this, fields);
    answer["ok"] = true;
    return answer;
  } catch (const RequestError& error) {
    return Failure(error.what());
  } catch (const std::exception& error) {
    zebcore::boundary::ReportCurrentException("captivo-drive");
    return Failure(error.what());
  } catch (...) {
    zebcore::boundary::ReportCurrentException("captivo-drive");
    return Failure("the host threw something that is no exception of the standard library");
  }
}

void Driver::Settle() {
  std::size_t quiet = 0;
  for (std::size_t round = 0; round < kSettleRounds && quiet < kQuietRounds; ++round) {
    const std::size_t delivered = zebcore::messaging::DeliverPostedMessages();
    QApplication::sendPostedEvents();
    QApplication::processEvents();
    quiet = delivered == 0 ? quiet + 1 : 0;
  }
}

BE::InterfaceRef<BE::Project> Driver::Project() const {
  const auto project = Session().GetProject();
  if (!project)
    throw RequestError("there is no open project");
  return project;
}

BE::InterfaceRef<BE::MasterClip> Driver::Clip(const Fields& fields, const char* name) const {
  const std::string id = fields.Text(name);
  const auto clip = Project()->FindClip(id);
  if (!clip)
    fields.Refuse(name, "there is no clip " + id);
  return clip;
}

BE::InterfaceRef<BE::IMasterClip> Driver::AnyClip(const Fields& fields, const char* name) const {
  const std::string id = fields.Text(name);
  if (const auto clip = Project()->FindClip(id))
    return clip.Query<BE::IMasterClip>();
  for (const auto& sequence : Project()->GetSequences()) {
    if (sequence->GetID() == id) {
      if (const auto clip = sequence.Query<BE::IMasterClip>())
        return clip;
    }
  }
  fields.Refuse(name, "there is no clip " + id);
}

BE::InterfaceRef<BE::CaptioningStream> Driver::Stream(const Fields& fields, const char* name) const {
  const std::string id = fields.Text(name);
  const auto stream = Project()->FindStream(id);
  if (!stream)
    fields.Refuse(name, "there is no stream " + id);
  return stream;
}

BE::InterfaceRef<BE::Sequence> Driver::Sequence(const Fields& fields, const char* name) const {
  const std::string id = fields.Text(name);
  for (const auto& sequence : Project()->GetSequences()) {
    if (sequence->GetID() == id)
      return sequence;
  }
  fields.Refuse(name, "there is no sequence " + id);
}

BE::InterfaceRef<BE::TrackItem> Driver::Item(const Fields& fields, const char* name) const {
  const std::string id = fields.Text(name);
  for (const auto& sequence : Project()->GetSequences()) {
    for (const auto& item : sequence->GetItems()) {
      if (item->GetID() == id)
        return item;
    }
  }
  fields.Refuse(name, "there is no track item " + id);
}

void Driver::EnsureHandler() {
  if (!mHandlerDecided)
    CreateHandler();
}

bool Driver::CreateHandler() {
  DestroyHandler();
  mHandlerDecided = true;
  if (!mModule)
    mModule = HSL::Module::CreateModule(HSL::kCaptionsModuleID, u"Captions");
  mHandler = HSL::Handler::CreateHandler(HSL::kCaptionsHandlerID, u"Captions");
  return mHandler != nullptr;
}

void Driver::DestroyHandler() {
  mHandlerDecided = true;
  mHandler.reset();
}

PanelWindow& Driver::Window() {
  if (!mWindow)
    mWindow = std::make_unique<PanelWindow>();
  return *mWindow;
}

UIF::TabView* Driver::View() const {
  return Captivo::CaptionsInspector(mHandler.get()).GetTabView();
}

UIF::TabView& Driver::CreatedView() const {
  UIF::TabView* view = View();
  if (!view || !view->IsCreated())
    throw RequestError("the panel is not open");
  return *view;
}

void Driver::SaySelection(const zebcore::utility::ImmutableString& station,
                          const zebcore::messaging::Message& message) {
  mSelectionStation = station;
  mSelection = message.Clone();
  zebcore::messaging::BroadcastMessage(station, message);
}

void Driver::ForgetSelection() {
  mSelection.reset();
}

void Driver::RepeatSelection() const {
  if (mSelection)
    zebcore::messaging::BroadcastMessage(mSelectionStation, *mSelection);
  else
    Session().RepeatSelection();
}

} // namespace Drive
