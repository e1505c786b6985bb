#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "App/Session.h"
#include "Drive/Fields.h"
#include "HSL/Module.h"
#include "UIF/Drawing.h"
#include "zebcore/Messaging.h"
#include "zebcore/Trace.h"

class QWidget;

namespace UIF {
class TabView;
}

namespace Drive {

class PanelWindow;

// The names of what calls are asked of.
using SubjectNames = std::unordered_map<const void*, std::string>;

// The calls that were recorded and nobody has asked for yet. Bounded: a script that never asks loses the oldest ones.
class TraceStore {
 public:
  // Moves what the host has recorded since the last time in here. What was recorded of a control before it was known by
  // its name, while the panel was made for instance, gets that name now.
  void Collect(const SubjectNames& names = {});
  // All calls, oldest first; the store is empty afterwards.
  std::vector<zebcore::trace::Call> Take();
  // A call that somebody took out of the host's record, back behind the others.
  void Put(zebcore::trace::Call call);
  std::size_t CountDropped() const { return mDropped; }

 private:
  std::deque<zebcore::trace::Call> mCalls;
  std::size_t mWeight = 0;
  std::size_t mDropped = 0;
};

// What a message box or a menu showed, until it is asked for, and how the next one is to be answered.
struct Popups {
  Json boxes = Json::array();
  Json menus = Json::array();
  int nextMenuChoice = 0;
  // What the next colour dialog answers; nothing cancels it.
  std::optional<UIF::Color> nextColor;
  // What the host's find box and next and previous panel answer.
  bool panelMovementResult = false;

  // Keeps the menu as shown, and answers the item chosen; 0 for none.
  int Show(Json name, Json items);
};

// The host, the panel and the clock, and what one request leaves for the next.
class Driver {
 public:
  Driver();
  ~Driver();
  Driver(const Driver&) = delete;
  Driver& operator=(const Driver&) = delete;

  // One line in, one line out; a bad line is answered like any other.
  std::string Answer(const std::string& line);
  bool HasQuit() const { return mQuit; }
  void Quit() { mQuit = true; }

  // Delivers what was posted, lets the toolkit settle, and again until both are still.
  void Settle();

  App::Session& Session() const { return App::Session::Instance(); }
  // What the requests name. Each throws RequestError with the field's name when there is none.
  BE::InterfaceRef<BE::Project> Project() const;
  BE::InterfaceRef<BE::MasterClip> Clip(const Fields& fields, const char* name = "clip") const;
  // A master clip that a message can carry: of the bin, or the one of a sequence.
  BE::InterfaceRef<BE::IMasterClip> AnyClip(const Fields& fields, const char* name = "clip") const;
  BE::InterfaceRef<BE::CaptioningStream> Stream(const Fields& fields, const char* name = "stream") const;
  BE::InterfaceRef<BE::Sequence> Sequence(const Fields& fields, const char* name = "sequence") const;
  BE::InterfaceRef<BE::TrackItem> Item(const Fields& fields, const char* name = "item") const;

  // The handler as a host makes it at its start: the first time that something could concern it, and not again once a
  // script has destroyed it.
  void EnsureHandler();
  bool CreateHandler();
  void DestroyHandler();
  HSL::Handler* Handler() const { return mHandler.get(); }

  PanelWindow& Window();
  // The tab view, created or not; null if there is none.
  UIF::TabView* View() const;
  UIF::TabView& CreatedView() const;

  // What is selected is said once, and again to a panel that is made later.
  void SaySelection(const zebcore::utility::ImmutableString& station, const zebcore::messaging::Message& message);
  void ForgetSelection();
  void RepeatSelection() const;

  // Milliseconds of the clock since the program began.
  std::int64_t SinceStart(std::int64_t clock) const { return clock - mStart; }

  TraceStore trace;
  Popups popups;
  bool modal = false;
  // Streams that were taken away, for messages that still speak of them.
  std::map<std::string, BE::InterfaceRef<BE::CaptioningStream>> removedStreams;
  // Streams that a long job of the script holds.
  std::set<std::string> busyStreams;

 private:
  Json Obey(const Json& request);

  std::int64_t mStart;
  bool mQuit = false;
  bool mHandlerDecided = false;
  std::unique_ptr<HSL::Module> mModule;
  std::unique_ptr<HSL::Handler> mHandler;
  std::unique_ptr<PanelWindow> mWindow;
  zebcore::utility::ImmutableString mSelectionStation;
  std::unique_ptr<zebcore::messaging::Message> mSelection;
};

using RequestFunction = Json (*)(Driver& driver, const Fields& fields);

struct Request {
  RequestFunction function;
  // Whether the handler has to stand before it, as in a host that has started.
  bool needsHost = true;
};
using RequestTable = std::map<std::string, Request, std::less<>>;

void AddHostRequests(RequestTable& table);
void AddProjectRequests(RequestTable& table);
void AddSelectionRequests(RequestTable& table);
void AddMessageRequests(RequestTable& table);
void AddStreamRequests(RequestTable& table);
void AddFactsRequests(RequestTable& table);
void AddPanelRequests(RequestTable& table);
void AddControlRequests(RequestTable& table);
void AddInputRequests(RequestTable& table);
void AddRowRequests(RequestTable& table);
void AddRecordRequests(RequestTable& table);
void AddRenderRequests(RequestTable& table);

} // namespace Drive
