#include "automation/ClassFactory.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "automation/Object.h"

namespace tarvik::automation {
namespace {

/// Makes nothing, without a failure.
class EmptyFactory final : public ClassFactory {
  Status Make(const Guid &, void **) override { return StatusOk; }
};

constexpr const char *TheClass = "Vendor.Device";

/// Status and description of the answer to a client that asks for this class and interface.
struct Answer {
  explicit Answer(const std::string &strProgId, const Guid &riid = IidClassFactory) {
    status = GiveClassFactory(TheClass, ClassIdOf(strProgId), riid, reinterpret_cast<void **>(factory.Out()),
                              [] { return MakeObject<EmptyFactory>(); });
    if (Failed(status)) strDescription = TakeDescription(status);
  }
  Ref<IClassFactory> factory;
  Status status;
  std::string strDescription;
};

TEST(GiveClassFactory, HandsOutTheFactoryOfItsClass) {
  Answer answer(TheClass);
  EXPECT_EQ(answer.status, StatusOk);
  ASSERT_TRUE(answer.factory);
  Ref<IUnknown> object;
  EXPECT_EQ(answer.factory->CreateInstance(nullptr, IidUnknown, reinterpret_cast<void **>(object.Out())), StatusOk);
  EXPECT_FALSE(object);
}

TEST(GiveClassFactory, RefusesAnotherClass) {
  const Answer answer("Vendor.Other");
  EXPECT_EQ(answer.status, StatusClassNotAvailable);
  EXPECT_EQ(answer.strDescription, "The library has no class but Vendor.Device");
  EXPECT_FALSE(answer.factory);
}

TEST(GiveClassFactory, RefusesAnInterfaceThatAFactoryDoesNotHave) {
  const Answer answer(TheClass, IidDispatch);
  EXPECT_EQ(answer.status, StatusNoInterface);
  EXPECT_EQ(answer.strDescription, "The class factory does not have the interface asked for");
}

TEST(GiveClassFactory, NeedsAPlaceForTheResult) {
  EXPECT_EQ(GiveClassFactory(TheClass, ClassIdOf(TheClass), IidClassFactory, nullptr,
                             [] { return MakeObject<EmptyFactory>(); }),
            StatusPointer);
}

TEST(GiveClassFactory, AFactoryThatCannotBeMadeIsAFailureWithItsReason) {
  void *place = nullptr;
  const auto fail = []() -> Ref<EmptyFactory> { throw std::runtime_error("no rack"); };
  EXPECT_EQ(GiveClassFactory(TheClass, ClassIdOf(TheClass), IidClassFactory, &place, fail), StatusUnexpected);
  EXPECT_EQ(TakeDescription(StatusUnexpected), "no rack");
}

TEST(FileAt, TellsTheProgramOfAnAddressInIt) {
  static const char anchor = 0;
  EXPECT_EQ(std::filesystem::canonical(FileAt(&anchor)), std::filesystem::read_symlink("/proc/self/exe"));
  EXPECT_EQ(FolderAt(&anchor), std::filesystem::read_symlink("/proc/self/exe").parent_path());
}

TEST(FileAt, IsEmptyForAnAddressOutsideOfAllFiles) {
  const auto outside = std::make_unique<char>();
  EXPECT_TRUE(FileAt(outside.get()).empty());
  EXPECT_TRUE(FolderAt(outside.get()).empty());
}

}  // namespace
}  // namespace tarvik::automation
