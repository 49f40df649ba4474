#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "automation/Activation.h"
#include "automation/AutomationArray.h"
#include "automation/AutomationString.h"
#include "automation/ErrorInfo.h"
#include "instrument/KolvenDriver.h"

namespace tarvik::simulator::testing_support {

using automation::Check;
using automation::Ref;
using automation::Status;
using automation::VariantBool;

/// Keeps the test away from what the user's own folders hold. The driver is the one whose manifest is found, or the
/// library that TARVIK_TEST_DRIVER names.
inline std::filesystem::path PrivateDataFolder() {
  const std::filesystem::path folder =
      std::filesystem::path(::testing::TempDir()) / ("simulator-data-" + std::to_string(getpid()));
  setenv("XDG_DATA_HOME", folder.c_str(), 1);
  setenv("XDG_DATA_DIRS", folder.c_str(), 1);
  if (const char *library = std::getenv("TARVIK_TEST_DRIVER"); library && *library) {
    std::filesystem::create_directories(folder / "tarvikvi/drivers");
    std::ofstream(folder / "tarvikvi/drivers/KolvenAtl.Kolven.driver")
        << std::filesystem::absolute(library).string() << '\n';
  }
  return folder;
}

inline Ref<kolven::IInstrumentList> Instruments() {
  const auto root =
      automation::Narrow<kolven::IDriverRoot>(automation::CreateObject(kolven::DriverProgId, std::string()));
  Ref<kolven::IInstrumentList> list;
  Check(root->GetInstruments(list.Out()));
  return list;
}

inline Ref<kolven::IInstrument> Find(const std::string &strName) {
  const automation::String name(strName);
  automation::AutomationVariant key{};
  key.vt = automation::VtString;
  key.bstrVal = name.Get();
  Ref<automation::IDispatch> object;
  Check(Instruments()->GetItem(key, object.Out()));
  return automation::Narrow<kolven::IInstrument>(object);
}

inline bool Open(const Ref<kolven::IInstrument> &instrument, bool fReset = true) {
  VariantBool opened = 0;
  Check(instrument->Open(0, fReset ? -1 : 0, -1, &opened));
  return opened != 0;
}

/// What a getter hands out.
template <class T, class I, class Base, class... Params, class... Args>
T Read(const Ref<I> &object, Status (Base::*get)(Params...), Args... args) {
  T value{};
  Check(((*object).*get)(args..., &value));
  return value;
}

template <class View, class I, class Base>
Ref<View> Fetch(const Ref<I> &object, Status (Base::*get)(View **)) {
  Ref<View> view;
  Check(((*object).*get)(view.Out()));
  return view;
}

inline Ref<kolven::IChannel> Channel(const Ref<kolven::IInstrument> &instrument, Long lngChannel) {
  Ref<kolven::IChannel> channel;
  Check(Fetch(instrument, &kolven::IInstrument::GetChannels)->GetItem(lngChannel, channel.Out()));
  return channel;
}

inline Ref<kolven::IChannelLevels> Levels(const Ref<kolven::IChannel> &channel) {
  Ref<automation::IDispatch> object;
  Check(channel->GetLevels(object.Out()));
  return automation::Narrow<kolven::IChannelLevels>(object);
}

/// The description of a status that has to be a failure.
inline std::string Refusal(Status status) {
  EXPECT_TRUE(automation::Failed(status));
  const auto info = automation::TakeErrorInfo();
  return info ? info->strDescription : "no description";
}

inline std::string Text(const Ref<kolven::IErrorQueue> &queue,
                        Status (kolven::IErrorQueue::*get)(automation::AutomationString *)) {
  automation::String text;
  Check(((*queue).*get)(text.Out()));
  return text.Text();
}

}  // namespace tarvik::simulator::testing_support
