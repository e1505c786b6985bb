#include "BE/Preferences.h"

#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "zebcore/Messaging.h"

namespace {

using BE::SerializeableValue;
using zebmediatypes::FrameRate;

class Preferences : public testing::Test {
 protected:
  void SetUp() override {
    BE::SetPreferencesInMemory();
    BE::SetPreferencesAvailable(true);
  }
};

TEST_F(Preferences, ANumberIsWrittenAndReadAsText) {
  SerializeableValue<std::int64_t> value(7, -42);
  EXPECT_EQ(value.ToString(), "-42");
  value.FromString("9223372036854775807");
  EXPECT_EQ(value.GetValue(), INT64_MAX);
}

TEST_F(Preferences, ATextThatIsNoNumberLeavesTheValue) {
  SerializeableValue<std::int64_t> value(7, 5);
  for (const char* text : {"", "x", "12x", "99999999999999999999"}) {
    value.FromString(text);
    EXPECT_EQ(value.GetValue(), 5) << text;
  }
}

TEST_F(Preferences, ATruthIsTheWordTrueOrFalse) {
  SerializeableValue<bool> value(12, true);
  EXPECT_EQ(value.ToString(), "true");
  value.FromString("false");
  EXPECT_FALSE(value.GetValue());
  EXPECT_EQ(value.ToString(), "false");
  value.FromString("1");
  EXPECT_FALSE(value.GetValue());
}

TEST_F(Preferences, AFrameRateIsANumberOfTicksAndSharesItsTypeNumber) {
  SerializeableValue<FrameRate> rate(7, FrameRate());
  rate.Assign(SerializeableValue<std::int64_t>(7, 10160640000));
  EXPECT_EQ(rate.GetFrameRate(), zebmediatypes::kFrameRate_25);
  EXPECT_EQ(rate.ToString(), "10160640000");
}

TEST_F(Preferences, ACloneHasTheSameTypeNumberAndValue) {
  const SerializeableValue<FrameRate> rate(7, zebmediatypes::kFrameRate_24);
  const auto copy = rate.Clone();
  EXPECT_EQ(copy->GetTypeNumber(), 7);
  EXPECT_EQ(copy->ToString(), rate.ToString());
  EXPECT_NE(dynamic_cast<SerializeableValue<FrameRate>*>(copy.get()), nullptr);
  EXPECT_EQ(SerializeableValue<bool>(12, true).Clone()->GetTypeNumber(), 12);
}

TEST_F(Preferences, TheSixthOperationOfAValueReturnsOne) {
  EXPECT_EQ(SerializeableValue<bool>(12, false).GetVersion(), 1);
  EXPECT_EQ(SerializeableValue<std::int64_t>(7, 0).GetVersion(), 1);
}

TEST_F(Preferences, AssigningAValueOfAnotherTypeThrowsAndChangesNothing) {
  SerializeableValue<bool> flag(12, true);
  try {
    flag.Assign(SerializeableValue<std::int64_t>(7, 0));
    FAIL() << "no exception";
  } catch (const BE::zeb_exception& exception) {
    EXPECT_STREQ(exception.what(), "SerializeableTypeMismatch");
    EXPECT_NE(dynamic_cast<const BE::exSerializeableTypeMismatch*>(&exception), nullptr);
  }
  EXPECT_TRUE(flag.GetValue());
}

TEST_F(Preferences, AMissingPreferenceKeepsThePresetValue) {
  SerializeableValue<FrameRate> rate(7, FrameRate());
  EXPECT_FALSE(BE::GetBackend()->GetPreferences()->Read(BE::kPrefsStillImagesDefaultFramerate, rate));
  EXPECT_EQ(rate.GetFrameRate(), FrameRate());
}

TEST_F(Preferences, APreferenceIsReadBackUntilItIsRemoved) {
  const auto store = BE::GetBackend()->GetPreferences();
  store->Write(BE::kPrefsStillImagesDefaultIsDropFrame, SerializeableValue<bool>(12, false));
  SerializeableValue<bool> flag(12, true);
  EXPECT_TRUE(store->Read(BE::kPrefsStillImagesDefaultIsDropFrame, flag));
  EXPECT_FALSE(flag.GetValue());
  store->Remove(BE::kPrefsStillImagesDefaultIsDropFrame);
  EXPECT_FALSE(store->Read(BE::kPrefsStillImagesDefaultIsDropFrame, flag));
}

TEST_F(Preferences, APreferenceOfTheWrongTypeThrowsWhenItIsRead) {
  const auto store = BE::GetBackend()->GetPreferences();
  store->Write(BE::kPrefsStillImagesDefaultFramerate, SerializeableValue<bool>(12, false));
  SerializeableValue<FrameRate> rate(7, FrameRate());
  EXPECT_THROW(store->Read(BE::kPrefsStillImagesDefaultFramerate, rate), BE::exSerializeableTypeMismatch);
}

TEST_F(Preferences, WithoutAStoreReadingThroughItThrowsTheNullInterfaceException) {
  BE::SetPreferencesAvailable(false);
  SerializeableValue<FrameRate> rate(7, FrameRate());
  try {
    BE::GetBackend()->GetPreferences()->Read(BE::kPrefsStillImagesDefaultFramerate, rate);
    FAIL() << "no exception";
  } catch (const zebcore::classref::NullInterfaceException& exception) {
    EXPECT_EQ(std::string(exception.what()).find("A NULL interface pointer has been dereferenced: "), 0U);
  }
  BE::SetPreferencesAvailable(true);
}

TEST_F(Preferences, AChangeOfAPreferenceIsReported) {
  struct Counter : zebcore::messaging::Listener {
    void HandleMessage(const zebcore::messaging::Message& message) override {
      count += zebcore::messaging::MessageCast<BE::PropertiesChangedMessage>(message) != nullptr;
    }
    int count = 0;
  } counter;
  zebcore::messaging::AddListener(BE::kBackendPreferencesChangedStationID, &counter);
  const auto store = BE::GetBackend()->GetPreferences();
  store->Write("a", SerializeableValue<bool>(12, true));
  store->Remove("a");
  store->Remove("a");
  EXPECT_EQ(counter.count, 2);
  zebcore::messaging::RemoveListener(BE::kBackendPreferencesChangedStationID, &counter);
}

} // namespace
