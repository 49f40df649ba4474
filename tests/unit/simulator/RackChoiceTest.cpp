#include <fstream>

#include "Driver.h"
#include "support/RunTimeError.h"

namespace tarvik::simulator::testing_support {
namespace {

namespace fs = std::filesystem;

// One test: the rack of the process is chosen once.
TEST(RackFileOfTheUser, BadFileFailsTheCreationAndAGoodOneDescribesTheRack) {
  const fs::path folder = PrivateDataFolder() / "tarvikvi/drivers";
  fs::create_directories(folder);
  const fs::path file = folder / "KolvenAtl.Kolven.rack";
  std::ofstream(file) << "[Bench]\nchannels = 4\n";
  try {
    automation::CreateObject(kolven::DriverProgId, "");
    ADD_FAILURE() << "created";
  } catch (const RunTimeError &error) {
    EXPECT_TRUE(error.Description().ends_with(file.string() + ":2: 4 is not from 1 to 2")) << error.Description();
  }

  std::ofstream(file) << "[Bench]\nchannels = 1\nerror = -240,\"Hardware error: fan stopped\"\n"
                         "warning = 120,\"Warming up\"\n";
  EXPECT_EQ(1, Read<Long>(Instruments(), &kolven::IInstrumentList::GetCount));
  const auto bench = Find("Bench");
  ASSERT_TRUE(Open(bench, false));
  const auto queue = Fetch(bench, &kolven::IInstrument::GetErrorQueue);
  EXPECT_EQ(R"~(-240,"Hardware error: fan stopped")~", Text(queue, &kolven::IErrorQueue::GetErrors));
  EXPECT_EQ("", Text(queue, &kolven::IErrorQueue::GetErrors));
  EXPECT_EQ(R"~(120,"Warming up")~", Text(queue, &kolven::IErrorQueue::GetWarnings));

  std::ofstream(file) << "[Bench]\n[Second]\nidentity = nobody\n";
  Check(Instruments()->Refresh());
  EXPECT_EQ(2, Read<Long>(Instruments(), &kolven::IInstrumentList::GetCount));

  // An identity without its four fields is refused where it is asked for.
  const auto second = Find("Second");
  VariantBool opened = 0;
  Check(second->Open(0, 0, 0, &opened));
  EXPECT_EQ(-1, opened);
  Check(second->Open(-1, 0, 0, &opened));
  EXPECT_EQ(0, opened);
  Check(Find("Bench")->Open(-1, 0, 0, &opened));
  EXPECT_EQ(-1, opened);
  fs::remove_all(PrivateDataFolder());
}

}  // namespace
}  // namespace tarvik::simulator::testing_support
