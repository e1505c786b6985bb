#include <gmock/gmock.h>

#include "zebcore/InterfaceRef.h"

namespace zebcore::classref {

// Interfaces with names as they are in the program.
struct IWheel : virtual IObject {
  virtual int Spokes() const = 0;
};
struct IBell : virtual IObject {
  virtual int Rings() const = 0;
};
struct ISaddle : virtual IObject {};
struct ISoftSaddle : virtual ISaddle {};

namespace {

struct Bicycle : IWheel, IBell, ISoftSaddle {
  explicit Bicycle(int* gone = nullptr) : mGone(gone) {}
  ~Bicycle() override {
    if (mGone)
      ++*mGone;
  }
  int Spokes() const override { return 36; }
  int Rings() const override { return 2; }
  int* mGone;
};
struct Unicycle : IWheel {
  int Spokes() const override { return 28; }
};

TEST(References, AQueryLeadsToAnotherInterfaceOfTheSameObject) {
  const InterfaceRef<IWheel> wheel(new Bicycle);
  const InterfaceRef<IBell> bell = wheel.Query<IBell>();
  ASSERT_TRUE(bell);
  EXPECT_EQ(bell->Rings(), 2);
  EXPECT_EQ(bell.Query<IWheel>().Get(), wheel.Get());
}

TEST(References, AQueryForWhatTheObjectDoesNotOfferIsNull) {
  const InterfaceRef<IWheel> wheel(new Unicycle);
  EXPECT_FALSE(wheel.Query<IBell>());
  EXPECT_EQ(wheel.Query<IBell>().Get(), nullptr);
  EXPECT_FALSE(InterfaceRef<IWheel>().Query<IBell>());
}

TEST(References, AreTheSameWhenTheyLeadToTheSameObject) {
  const InterfaceRef<IWheel> wheel(new Bicycle);
  const InterfaceRef<IBell> bell = wheel.Query<IBell>();
  const InterfaceRef<IWheel> other(new Bicycle);
  EXPECT_TRUE(wheel == bell);
  EXPECT_TRUE(wheel != other);
  EXPECT_FALSE(wheel < bell || bell < wheel);
  EXPECT_TRUE(wheel < other || other < wheel);
  EXPECT_TRUE(InterfaceRef<IWheel>() == InterfaceRef<IBell>());
  EXPECT_TRUE(wheel != InterfaceRef<IBell>());
}

TEST(References, AnObjectGoesWithItsLastReferenceWhateverItsInterface) {
  int gone = 0;
  InterfaceRef<IWheel> wheel(new Bicycle(&gone));
  InterfaceRef<IBell> bell = wheel.Query<IBell>();
  InterfaceRef<> root = wheel;
  wheel = nullptr;
  root = InterfaceRef<>();
  EXPECT_EQ(gone, 0);
  bell = InterfaceRef<IBell>();
  EXPECT_EQ(gone, 1);
}

TEST(References, AMoveTakesTheReferenceAlong) {
  int gone = 0;
  InterfaceRef<IWheel> from(new Bicycle(&gone));
  InterfaceRef<IWheel> to(std::move(from));
  EXPECT_FALSE(from);
  EXPECT_TRUE(to);
  from = std::move(to);
  EXPECT_TRUE(from);
  EXPECT_EQ(gone, 0);
}

TEST(References, AReferenceMayBeAssignedToItself) {
  int gone = 0;
  InterfaceRef<IWheel> wheel(new Bicycle(&gone));
  InterfaceRef<IWheel>& self = wheel;
  wheel = self;
  EXPECT_EQ(gone, 0);
  EXPECT_EQ(wheel->Spokes(), 36);
}

TEST(References, AreTurnedIntoOnesToABaseInterface) {
  const InterfaceRef<ISoftSaddle> soft(new Bicycle);
  const InterfaceRef<ISaddle> saddle = soft;
  EXPECT_TRUE(saddle == soft);
  const InterfaceRef<> root = soft;
  EXPECT_EQ(root.Root(), soft.Root());
}

TEST(References, ADereferenceOfNullSaysWhichInterface) {
  const InterfaceRef<IWheel> null;
  try {
    null->Spokes();
    FAIL();
  } catch (const NullInterfaceException& exception) {
    EXPECT_STREQ(exception.what(), "A NULL interface pointer has been dereferenced: zebcore::classref::IWheel");
  }
  EXPECT_THROW((*null).Spokes(), NullInterfaceException);
  EXPECT_THROW(InterfaceRef<IBell>()->Rings(), std::runtime_error);
}

TEST(References, TheUncheckedPointerOfNullIsNull) {
  EXPECT_EQ(InterfaceRef<IWheel>().Get(), nullptr);
  EXPECT_EQ(InterfaceRef<IWheel>(nullptr).Root(), nullptr);
}

TEST(ClassRegistry, MakesANewInstanceForEachRequest) {
  RegisterClass("ReferencesTest.Bicycle", [] { return InterfaceRef<>(InterfaceRef<IWheel>(new Bicycle)); });
  const InterfaceRef<> one = CreateClassInstanceRef("ReferencesTest.Bicycle");
  const InterfaceRef<> two = CreateClassInstanceRef("ReferencesTest.Bicycle");
  ASSERT_TRUE(one);
  EXPECT_TRUE(one != two);
  EXPECT_EQ(one.Query<IWheel>()->Spokes(), 36);
  UnregisterClass("ReferencesTest.Bicycle");
  EXPECT_FALSE(CreateClassInstanceRef("ReferencesTest.Bicycle"));
}

TEST(ClassRegistry, AnUnknownIDGivesNull) {
  EXPECT_FALSE(CreateClassInstanceRef("ReferencesTest.Unknown"));
  EXPECT_FALSE(CreateClassInstanceRef(ClassID()));
  UnregisterClass("ReferencesTest.Unknown");
}

TEST(ClassRegistry, TheLaterOfTwoFactoriesWins) {
  RegisterClass("ReferencesTest.Twice", [] { return InterfaceRef<>(InterfaceRef<IWheel>(new Bicycle)); });
  RegisterClass("ReferencesTest.Twice", [] { return InterfaceRef<>(InterfaceRef<IWheel>(new Unicycle)); });
  EXPECT_EQ(CreateClassInstanceRef("ReferencesTest.Twice").Query<IWheel>()->Spokes(), 28);
  UnregisterClass("ReferencesTest.Twice");
}

TEST(ClassRegistry, AFactoryMayRegisterAnotherClass) {
  RegisterClass("ReferencesTest.Outer", [] {
    RegisterClass("ReferencesTest.Inner", [] { return InterfaceRef<>(InterfaceRef<IWheel>(new Unicycle)); });
    return CreateClassInstanceRef("ReferencesTest.Inner");
  });
  EXPECT_TRUE(CreateClassInstanceRef("ReferencesTest.Outer"));
  UnregisterClass("ReferencesTest.Outer");
  UnregisterClass("ReferencesTest.Inner");
}

} // namespace
} // namespace zebcore::classref
