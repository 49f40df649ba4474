#include "ProfileCheck.h"

#include <ostream>

#include "scpi/Answer.h"
#include "scpi/SettingCommand.h"

namespace tarvik::scpi {

namespace {

/// Bytes of an answer that are printed.
constexpr std::size_t LongestAnswer = 60;

std::string Shown(const std::string &strAnswer) {
  std::string strShown = strAnswer.substr(0, LongestAnswer);
  for (char &ch : strShown)
    if (static_cast<unsigned char>(ch) < 0x20 || static_cast<unsigned char>(ch) > 0x7E) ch = '.';
  return strAnswer.size() > LongestAnswer ? strShown + "..." : strShown;
}

/// Asks the queries one by one and counts what went wrong.
class Check {
 public:
  Check(const Profile &profile, Talk &talk, std::ostream &out) : m_profile(profile), m_talk(talk), m_out(out) {}

  bool Run() {
    m_talk.SetLimits({m_profile.limits.input, m_profile.limits.answer, false});
    Try("identity", "*IDN?", [](const std::string &) { return std::string(); });
    // The unit of the levels says which of their queries has an answer.
    for (const bool fLevels : {false, true})
      for (const ProfilePlace &place : PlacesOf(m_profile))
        if (place.pSetting->IsRead() && place.pSetting->IsLevel() == fLevels)
          Try(place.Key(), place.Query(m_settings),
              [&](const std::string &strAnswer) { return TakeAnswer(place, strAnswer, m_settings); });
    Try("errors", m_profile.strErrorQuery, [](const std::string &) { return std::string(); });
    if (!m_profile.strWarningQuery.empty())
      Try("warnings", m_profile.strWarningQuery, [](const std::string &) { return std::string(); });
    m_out << m_tried - m_wrong << " of " << m_tried << " queries are answered as the profile says\n";
    return m_wrong == 0;
  }

 private:
  template <class Judge>
  void Try(const std::string &strKey, const std::string &strQuery, Judge judge) {
    ++m_tried;
    std::string strOutcome;
    try {
      const std::string strAnswer = m_talk.Ask(strQuery), strWhy = judge(strAnswer);
      strOutcome = Shown(strAnswer);
      if (!strWhy.empty()) strOutcome = "WRONG: \"" + strOutcome + "\" " + strWhy;
    } catch (const driver::Failure &failure) {
      if (m_tried == 1) throw;  // nobody is there
      strOutcome = std::string("WRONG: ") + failure.what();
      m_talk.Tell({"*CLS"});
    }
    if (strOutcome.starts_with("WRONG")) ++m_wrong;
    m_out << strKey << "\t" << strQuery << "\t" << strOutcome << std::endl;
  }

  const Profile &m_profile;
  Talk &m_talk;
  std::ostream &m_out;
  driver::Settings m_settings;
  int m_tried = 0, m_wrong = 0;
};

}  // namespace

void PrintProfile(const Profile &profile, std::ostream &out) {
  const driver::Settings settings;
  for (const ProfilePlace &place : PlacesOf(profile))
    out << place.Key() << "\t" << place.SetCommand(settings) << "\t" << place.Query(settings) << "\n";
  for (const SettingRow &row : SettingRows())
    if (!profile.Find(row.strKey)) out << row.strKey << "\t(kept in the driver)\n";
}

bool CheckProfile(const Profile &profile, Talk &talk, std::ostream &out) { return Check(profile, talk, out).Run(); }

}  // namespace tarvik::scpi
