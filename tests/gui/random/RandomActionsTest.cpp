#include <gtest/gtest.h>

#include <unistd.h>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "PanelReference.h"
#include "WidgetEnvironment.h"
#include "settings/SetupTransfer.h"

namespace tarvik::test {
namespace {

constexpr std::size_t ActionsOfASession = 250;

std::size_t FromEnvironment(const char *strName, std::size_t fallback) {
  const char *strValue = std::getenv(strName);
  return strValue ? std::strtoull(strValue, nullptr, 10) : fallback;
}

/// The instrument through an interface of its own, as somebody else would read it.
class SecondReader {
 public:
  explicit SecondReader(const std::string &strInstrument) {
    m_instr.Connect();
    m_instr.OpenInstrument(strInstrument);
  }
  Setup Read() {
    Setup setup;
    EXPECT_TRUE(ReadSetup(m_instr, setup));
    return setup;
  }

 private:
  clsInstrInterface m_instr;
};

struct Fault {
  std::size_t place;  ///< how many actions it took
  std::string strText;
};

/// Works a fresh panel with these actions up to the first fault.
std::optional<Fault> Play(const std::string &strInstrument, const std::vector<Action> &arrActions,
                          std::vector<std::string> *story = nullptr) {
  SimulatorSession session;
  session.Show();
  session.Open(strInstrument);
  SecondReader reader(strInstrument);
  PanelReference reference(session);
  for (std::size_t i = 0; i < arrActions.size(); ++i) {
    reference.Before();
    const Done done = Do(arrActions[i], session);
    if (story) story->push_back(done.strText);
    if (std::string strWrong = reference.After(done, reader.Read()); !strWrong.empty()) return Fault{i + 1, strWrong};
    session.host.arrEntries.clear();
  }
  const std::string strWrong = reference.WalkBack();
  return strWrong.empty() ? std::nullopt : std::optional(Fault{arrActions.size(), strWrong});
}

/// The actions without those that the fault does not need: halves, quarters and so on down to single ones are left out
/// as long as a fault of this kind stays.
template <class Fails>
std::vector<Action> Shrunk(std::vector<Action> arrActions, const Fails &fails) {
  for (std::size_t length = arrActions.size() / 2; length > 0; length /= 2)
    for (std::size_t begin = 0; begin < arrActions.size();) {
      auto arrFewer = arrActions;
      const auto first = arrFewer.begin() + static_cast<std::ptrdiff_t>(begin);
      arrFewer.erase(first, first + static_cast<std::ptrdiff_t>(std::min(length, arrFewer.size() - begin)));
      if (fails(arrFewer))
        arrActions = std::move(arrFewer);
      else
        begin += length;
    }
  return arrActions;
}

std::string Story(const std::string &strInstrument, std::vector<Action> arrActions, const Fault &fault) {
  arrActions.resize(fault.place);
  const auto kind = [](const Fault &other) { return other.strText.substr(0, other.strText.find(' ')); };
  arrActions = Shrunk(std::move(arrActions), [&](const auto &arrFewer) {
    const auto other = Play(strInstrument, arrFewer);
    return other && kind(*other) == kind(fault);
  });
  std::vector<std::string> arrTexts;
  const auto shortest = Play(strInstrument, arrActions, &arrTexts);
  std::string strStory;
  for (const std::string &strText : arrTexts) strStory += strText + '\n';
  return strStory + (shortest ? shortest->strText : fault.strText);
}

long ResidentPages() {
  long lngSize = 0, lngResident = 0;
  std::ifstream("/proc/self/statm") >> lngSize >> lngResident;
  return lngResident;
}

TEST(RandomActions, LeaveStatesMarksAndStepsAsTheRulesTell) {
  const std::size_t count = FromEnvironment("TARVIK_RANDOM_ACTIONS", 2 * ActionsOfASession);
  const std::size_t firstSeed = FromEnvironment("TARVIK_RANDOM_SEED", 1);
  long lngAfterTenth = 0;
  std::size_t seed = firstSeed, done = 0;
  for (; done < count; ++seed, done += ActionsOfASession) {
    const std::string strInstrument = seed % 3 == 0 ? "VP-110" : "VP-210";
    const auto arrActions = ActionsOf(static_cast<unsigned>(seed), ActionsOfASession);
    if (const auto fault = Play(strInstrument, arrActions))
      FAIL() << "seed " << seed << ", " << strInstrument << ", " << fault->strText << "; shortest:\n"
             << Story(strInstrument, arrActions, *fault);
    if (lngAfterTenth == 0 && done >= count / 10) lngAfterTenth = ResidentPages();
  }
  const long lngGrown = (ResidentPages() - lngAfterTenth) * (getpagesize() / 1024);
  std::cout << done << " actions in " << seed - firstSeed
            << " sessions, 0 differences; resident memory since the first tenth: " << lngGrown << " KiB more\n";
  // A panel takes about 10 MiB: one that stays would show.
  if (count >= 100 * ActionsOfASession) EXPECT_LT(lngGrown, 8 * 1024);
}

TEST(RandomActions, AreLeftOutDownToThoseThatAFaultNeeds) {
  auto arrActions = ActionsOf(1, 200);
  arrActions[17] = {Action::Upload, 1, 77};
  arrActions[150] = {Action::Upload, 2, 78};
  const auto arrShortest = Shrunk(arrActions, [](const auto &arrFewer) {
    const auto has = [&](unsigned value) {
      return std::ranges::any_of(arrFewer, [value](const Action &action) { return action.value == value; });
    };
    return has(77) && has(78);
  });
  ASSERT_EQ(arrShortest.size(), 2u);
  EXPECT_EQ(arrShortest[0].value, 77u);
  EXPECT_EQ(arrShortest[1].value, 78u);
}

}  // namespace
}  // namespace tarvik::test
