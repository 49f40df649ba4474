#include "instrument/DriverObject.h"

#include <gmock/gmock.h>

#include "automation/ClassFactory.h"

namespace tarvik::kolven {
namespace {

using automation::MakeObject;
using automation::Ref;

std::string Words() {
  const auto info = automation::TakeErrorInfo();
  return info ? info->strDescription : "none";
}

class Timing : public DriverObject<IChannelTiming> {
 public:
  Status TARVIK_CALL GetWidth(Double *pValue) override {
    *pValue = 5e-9;
    return automation::StatusOk;
  }
};

TEST(DriverObject, WhatADriverDoesNotOverrideIsNotSupportedAndNamed) {
  const Ref<IChannelTiming> timing = MakeObject<Timing>();
  Double dblWidth = 0;
  EXPECT_EQ(timing->GetWidth(&dblWidth), automation::StatusOk);
  EXPECT_EQ(dblWidth, 5e-9);
  EXPECT_EQ(timing->SetWidth(1e-9), automation::StatusNotImplemented);
  EXPECT_EQ(Words(), "The driver does not support IChannelTiming.SetWidth");
  IEdges *edges = nullptr;
  EXPECT_EQ(timing->GetEdges(&edges), automation::StatusNotImplemented);
  EXPECT_EQ(Words(), "The driver does not support IChannelTiming.GetEdges");
  EXPECT_EQ(edges, nullptr);
}

TEST(DriverObject, EachInterfaceOfTheContractHasItsBase) {
  // One object of each, answered by its own interface alone.
  const auto answers = [](auto object) {
    using Interface = std::remove_reference_t<decltype(*object)>;
    return automation::Narrow<Interface>(object) && object->GetTypeInfoCount(nullptr) == StatusNotImplemented;
  };
  EXPECT_TRUE(answers(Ref<IDriverRoot>(MakeObject<DriverObject<IDriverRoot>>())));
  EXPECT_TRUE(answers(Ref<IInstrumentList>(MakeObject<DriverObject<IInstrumentList>>())));
  EXPECT_TRUE(answers(Ref<IInstrument>(MakeObject<DriverObject<IInstrument>>())));
  EXPECT_TRUE(answers(Ref<IRestrictions>(MakeObject<DriverObject<IRestrictions>>())));
  EXPECT_TRUE(answers(Ref<IErrorQueue>(MakeObject<DriverObject<IErrorQueue>>())));
  EXPECT_TRUE(answers(Ref<IChannelList>(MakeObject<DriverObject<IChannelList>>())));
  EXPECT_TRUE(answers(Ref<IChannel>(MakeObject<DriverObject<IChannel>>())));
  EXPECT_TRUE(answers(Ref<ILimitGroup>(MakeObject<DriverObject<ILimitGroup>>())));
  EXPECT_TRUE(answers(Ref<ILimitPair>(MakeObject<DriverObject<ILimitPair>>())));
  EXPECT_TRUE(answers(Ref<IChannelTiming>(MakeObject<DriverObject<IChannelTiming>>())));
  EXPECT_TRUE(answers(Ref<IEdges>(MakeObject<DriverObject<IEdges>>())));
  EXPECT_TRUE(answers(Ref<ISinglePulse>(MakeObject<DriverObject<ISinglePulse>>())));
  EXPECT_TRUE(answers(Ref<IDoublePulse>(MakeObject<DriverObject<IDoublePulse>>())));
  EXPECT_TRUE(answers(Ref<IChannelLevels>(MakeObject<DriverObject<IChannelLevels>>())));
  EXPECT_TRUE(answers(Ref<IModeSetup>(MakeObject<DriverObject<IModeSetup>>())));
  EXPECT_TRUE(answers(Ref<ITriggerSystem>(MakeObject<DriverObject<ITriggerSystem>>())));
  EXPECT_TRUE(answers(Ref<IArmSource>(MakeObject<DriverObject<IArmSource>>())));
  EXPECT_TRUE(answers(Ref<IClockInput>(MakeObject<DriverObject<IClockInput>>())));
  EXPECT_TRUE(answers(Ref<IExtInput>(MakeObject<DriverObject<IExtInput>>())));
  EXPECT_TRUE(answers(Ref<IAuxOutputs>(MakeObject<DriverObject<IAuxOutputs>>())));
  EXPECT_TRUE(answers(Ref<IPatternMemory>(MakeObject<DriverObject<IPatternMemory>>())));
  EXPECT_TRUE(answers(Ref<IPllReference>(MakeObject<DriverObject<IPllReference>>())));
}

class RootFactory final : public automation::ClassFactory {
  Status Make(const Guid &riid, void **ppvObject) override {
    return MakeObject<DriverObject<IDriverRoot>>()->QueryInterface(riid, ppvObject);
  }
};

TEST(ClassFactory, MakesItsObjectAndRefusesTheRest) {
  const auto factory = MakeObject<RootFactory>();
  Ref<IDriverRoot> root;
  EXPECT_EQ(factory->CreateInstance(nullptr, IDriverRoot::Iid, reinterpret_cast<void **>(root.Out())),
            automation::StatusOk);
  EXPECT_TRUE(root);
  void *other = factory.Get();
  EXPECT_EQ(factory->CreateInstance(nullptr, IEdges::Iid, &other), automation::StatusNoInterface);
  EXPECT_EQ(other, nullptr);
  EXPECT_EQ(factory->CreateInstance(root.Get(), IDriverRoot::Iid, &other), automation::StatusNoAggregation);
  EXPECT_EQ(factory->CreateInstance(nullptr, IDriverRoot::Iid, nullptr), automation::StatusPointer);
  EXPECT_EQ(factory->QueryInterface(IDriverRoot::Iid, &other), automation::StatusNoInterface);
}

}  // namespace
}  // namespace tarvik::kolven
