#include "zebcore/Trace.h"

#include <thread>

#include <gmock/gmock.h>

#include "zebcore/Messaging.h"
#include "zebcore/SystemFonts.h"

namespace zebcore {

// Outside the unnamed namespace, for names as they are in the program.
struct TracedListener : messaging::Listener {
  void HandleMessage(const messaging::Message&) override {}
};
struct TracedMessage : messaging::MessageOf<TracedMessage> {
  static constexpr const char* kTypeName = "TraceTest::TracedMessage";
};

namespace {

using nlohmann::json;
using testing::IsEmpty;

struct Trace : testing::Test {
  Trace() {
    trace::Take();
    trace::SetOn(true);
  }
  ~Trace() override {
    trace::SetOn(false);
    trace::SetAnnotator(nullptr);
    trace::Take();
    SetFontProbe(nullptr);
  }
  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const trace::Call& call : trace::Take())
      names.push_back(call.call);
    return names;
  }
};

TEST_F(Trace, IsOffByDefaultAndThenKeepsNothing) {
  trace::SetOn(false);
  EXPECT_FALSE(trace::IsOn());
  trace::Record("TraceTest::Nothing");
  EXPECT_THAT(trace::Take(), IsEmpty());
}

TEST_F(Trace, TakesCallsInTheirOrderAndOnce) {
  trace::Record("One", {{"n", 1}});
  trace::Record("Two");
  const auto calls = trace::Take();
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0].call, "One");
  EXPECT_EQ(calls[0].args, json({{"n", 1}}));
  EXPECT_EQ(calls[1].args, json::object());
  EXPECT_THAT(trace::Take(), IsEmpty());
}

TEST_F(Trace, TheAnnotatorAddsToEachCallAndIsNotAskedAboutItsOwn) {
  trace::SetAnnotator([](trace::Call& call) {
    call.args["rows"] = 3;
    trace::Record("Inner");
  });
  trace::Record("Outer");
  const auto calls = trace::Take();
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0].call, "Inner");
  EXPECT_EQ(calls[0].args, json::object());
  EXPECT_EQ(calls[1].args, json({{"rows", 3}}));
}

TEST_F(Trace, TheAnnotatorIsAskedOnItsOwnThreadOnly) {
  trace::SetAnnotator([](trace::Call& call) { call.args["seen"] = true; });
  std::thread([] { trace::Record("FromAWorker"); }).join();
  const auto calls = trace::Take();
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].args, json::object());
}

TEST_F(Trace, StationsJoinedAndLeftAreRecordedWithTheListenersClass) {
  TracedListener listener;
  messaging::AddListener("TraceTest.Station", &listener);
  messaging::RemoveListener("TraceTest.Station", &listener);
  const auto calls = trace::Take();
  ASSERT_EQ(calls.size(), 2u);
  const json expected = {{"station", "TraceTest.Station"}, {"listener", "zebcore::TracedListener"}};
  EXPECT_EQ(calls[0].call, "messaging::AddListener");
  EXPECT_EQ(calls[0].args, expected);
  EXPECT_EQ(calls[1].call, "messaging::RemoveListener");
  EXPECT_EQ(calls[1].args, expected);
}

TEST_F(Trace, BroadcastsArePutDownWithTheMessagesClass) {
  messaging::BroadcastMessage("TraceTest.Station", TracedMessage());
  const auto calls = trace::Take();
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].call, "messaging::BroadcastMessage");
  EXPECT_EQ(calls[0].args, json({{"station", "TraceTest.Station"}, {"message", "TraceTest::TracedMessage"}}));
}

TEST_F(Trace, APostIsRecordedOnceWhenItIsPosted) {
  messaging::PostMessageToUIThread("TraceTest.Station", TracedMessage(), false);
  messaging::DeliverPostedMessages();
  const auto calls = trace::Take();
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].call, "messaging::PostMessageToUIThread");
  EXPECT_EQ(calls[0].args,
            json({{"station", "TraceTest.Station"}, {"message", "TraceTest::TracedMessage"}, {"replace", false}}));
}

TEST_F(Trace, CallsOnANullStationAreNotRecorded) {
  TracedListener listener;
  const utility::ImmutableString null;
  messaging::AddListener(null, &listener);
  messaging::RemoveListener(null, &listener);
  messaging::BroadcastMessage(null, TracedMessage());
  messaging::PostMessageToUIThread(null, TracedMessage(), false);
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(Trace, FontProbesAreRecordedWithAllTheirArguments) {
  SetFontProbe([](const wchar_t*) { return true; });
  DeleteObject(CreateFontW(0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, L"Arial Unicode MS"));
  const auto calls = trace::Take();
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0].call, "CreateFontW");
  EXPECT_EQ(calls[0].args["char_set"], 1);
  EXPECT_EQ(calls[0].args["height"], 0);
  EXPECT_EQ(calls[0].args["family"], "Arial Unicode MS");
  EXPECT_EQ(calls[0].args.size(), 14u);
  EXPECT_EQ(calls[1].call, "DeleteObject");
  EXPECT_EQ(calls[1].args["family"], "Arial Unicode MS");
}

struct SystemFonts : testing::Test {
  ~SystemFonts() override { SetFontProbe(nullptr); }
  static bool Exists(const wchar_t* family) {
    void* font = CreateFontW(0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, family);
    return font && DeleteObject(font);
  }
};

TEST_F(SystemFonts, AnInstalledFamilyIsFoundByItsExactName) {
  EXPECT_TRUE(Exists(L"DejaVu Sans"));
  EXPECT_TRUE(Exists(L"DejaVu Sans Mono"));
}

TEST_F(SystemFonts, NothingLikeAFamilyIsTakenForIt) {
  for (const wchar_t* family :
       {L"DejaVu", L"DejaVuSans", L"dejavu sans", L"DejaVu Sans ", L"sans-serif", L"Sans", L"No Such Family As This"})
    EXPECT_FALSE(Exists(family));
}

TEST_F(SystemFonts, NoNameIsNoFamily) {
  EXPECT_FALSE(Exists(nullptr));
  EXPECT_FALSE(Exists(L""));
}

TEST_F(SystemFonts, AProbeStandsInForTheMachinesFonts) {
  SetFontProbe([](const wchar_t* family) { return std::wstring_view(family) == L"Imagined"; });
  EXPECT_TRUE(Exists(L"Imagined"));
  EXPECT_FALSE(Exists(L"DejaVu Sans"));
  SetFontProbe(nullptr);
  EXPECT_FALSE(Exists(L"Imagined"));
  EXPECT_TRUE(Exists(L"DejaVu Sans"));
}

TEST_F(SystemFonts, AHandleIsDeletedOnce) {
  void* font = CreateFontW(0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, L"DejaVu Sans");
  EXPECT_TRUE(DeleteObject(font));
  EXPECT_FALSE(DeleteObject(font));
  EXPECT_FALSE(DeleteObject(nullptr));
}

} // namespace
} // namespace zebcore
