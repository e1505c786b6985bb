#include <random>
#include <stdexcept>

#include <gtest/gtest.h>

#include "zebcore/Messaging.h"

namespace zebcore::messaging {
namespace {

struct EarlyMessage : MessageOf<EarlyMessage> {
  static constexpr const char* kTypeName = "MessageIDTest::EarlyMessage";
};
struct LateMessage : MessageOf<LateMessage> {
  static constexpr const char* kTypeName = "MessageIDTest::LateMessage";
};

struct NeverComparedMessage : MessageOf<NeverComparedMessage> {
  static constexpr const char* kTypeName = "MessageIDTest::NeverComparedMessage";
};

// A sender that was built elsewhere: it knows the class's name and its own copy of the id.
struct FromElsewhere : Message {
  explicit FromElsewhere(const char* name) : Message(HashMessageTypeNameToMessageID(name)) {}
  std::unique_ptr<Message> Clone() const override { return std::make_unique<FromElsewhere>(*this); }
};

TEST(MessageIDs, AnIDIsStableAndNeverZero) {
  const MessageID id = HashMessageTypeNameToMessageID("MessageIDTest::Stable");
  EXPECT_NE(id, 0u);
  EXPECT_EQ(HashMessageTypeNameToMessageID(std::string("MessageIDTest::Stable").c_str()), id);
}

TEST(MessageIDs, TwoClassesHaveTwoIDs) {
  EXPECT_NE(MessageIDOf<EarlyMessage>(), MessageIDOf<LateMessage>());
  EXPECT_EQ(EarlyMessage().GetMessageID(), MessageIDOf<EarlyMessage>());
}

TEST(MessageIDs, ANameWhoseSumComesToZeroStillHasAnID) {
  EXPECT_NE(HashMessageTypeNameToMessageID("Zero::MessagevefKzb"), 0u);
  EXPECT_NE(HashMessageTypeNameToMessageID(""), 0u);
}

TEST(MessageIDs, AMessageDeliveredBeforeTheFirstComparisonOfItsTypeStillComparesRight) {
  struct FirstComparison : Listener {
    void HandleMessage(const Message& message) override {
      isIt = message.GetMessageID() == MessageIDOf<NeverComparedMessage>();
    }
    bool isIt = false;
  } listener;
  AddListener("MessageIDTest.Station", &listener);
  BroadcastMessage("MessageIDTest.Station", FromElsewhere("MessageIDTest::NeverComparedMessage"));
  EXPECT_TRUE(listener.isIt);
}

TEST(MessageIDs, AMessageIsCastToItsOwnClassOnly) {
  const EarlyMessage message;
  const Message& any = message;
  EXPECT_EQ(MessageCast<EarlyMessage>(any), &message);
  EXPECT_EQ(MessageCast<LateMessage>(any), nullptr);
}

TEST(MessageIDs, TheSecondOfTwoNamesThatShareANumberIsFoundWhenItIsHashed) {
  std::map<std::string, MessageID> before;
  std::string second;
  std::string said;
  // A million random names hold over a hundred clashes of 32 bits by the birthday rule.
  std::mt19937_64 random(1);
  for (int i = 0; i < 1'000'000 && second.empty(); ++i) {
    const std::string name = "MessageIDTest::Clash" + std::to_string(random());
    try {
      before[name] = HashMessageTypeNameToMessageID(name.c_str());
    } catch (const std::logic_error& error) {
      second = name;
      said = error.what();
    }
  }
  ASSERT_FALSE(second.empty());
  EXPECT_NE(said.find(second), std::string::npos) << said;
  EXPECT_THROW(HashMessageTypeNameToMessageID(second.c_str()), std::logic_error);

  const auto first = std::find_if(before.begin(), before.end(), [&said](const auto& known) {
    return (said + " ").find(" " + known.first + " ") != std::string::npos;
  });
  ASSERT_NE(first, before.end()) << said;
  EXPECT_EQ(HashMessageTypeNameToMessageID(first->first.c_str()), first->second);
  EXPECT_EQ(GetMessageTypeName(first->second), first->first);
}

TEST(MessageIDs, AClassWithoutANameIsAnError) {
  EXPECT_THROW(HashMessageTypeNameToMessageID(nullptr), std::logic_error);
}

TEST(MessageIDs, TheNameBehindAnIDCanBeAsked) {
  EXPECT_EQ(GetMessageTypeName(MessageIDOf<EarlyMessage>()), "MessageIDTest::EarlyMessage");
  EXPECT_EQ(GetMessageTypeName(0), "");
}

} // namespace
} // namespace zebcore::messaging
