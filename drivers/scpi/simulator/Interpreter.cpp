#include "scpi/simulator/Interpreter.h"

#include <utility>

#include "scpi/simulator/CommandTable.h"

namespace tarvik::scpisim {

namespace {

bool IsCommandError(Long lngNumber) { return lngNumber <= -100 && lngNumber > -200; }

std::string HeaderText(const std::vector<std::string> &arrNodes) {
  std::string strHeader;
  for (const std::string &strNode : arrNodes) strHeader += (strHeader.empty() ? "" : ":") + strNode;
  return strHeader;
}

}  // namespace

std::string Interpreter::Execute(std::string_view strMessage) {
  ProgramMessage message(strMessage);
  try {
    while (const std::optional<ProgramUnit> unit = message.Next()) {
      try {
        ExecuteUnit(*unit);
      } catch (const ScpiFault &fault) {
        // An execution error leaves the parser in its place: the next unit is understood.
        if (IsCommandError(fault.lngNumber)) throw;
        m_device.status.Report(fault);
      }
    }
    TakeGathered();
  } catch (const ScpiFault &fault) {
    TakeGathered();
    m_device.status.Report(fault);
  }
  return m_fDeadlocked ? std::string() : std::move(m_strResponse);
}

void Interpreter::ExecuteUnit(const ProgramUnit &unit) {
  const Found found = Find(unit);
  const bool fGathers = found.pCommand->IsSetting() && !unit.fQuery;
  if (!fGathers) TakeGathered();
  if (unit.fQuery)
    Ask(found, unit);
  else
    Set(found, unit);
}

Interpreter::Found Interpreter::Find(const ProgramUnit &unit) {
  std::vector<std::string> arrNodes = unit.arrNodes;
  if (!unit.fCommon && !unit.fAbsolute) arrNodes.insert(arrNodes.begin(), m_arrPath.begin(), m_arrPath.end());

  Found found{nullptr, {}};
  bool fSuffixOutOfRange = false;
  for (const Command &command : CommandTable()) {
    if (command.fCommon != unit.fCommon) continue;
    const HeaderPattern::Match match =
        command.header.Matches(arrNodes, m_device.Description().lngChannels, found.arrSuffixes);
    fSuffixOutOfRange = fSuffixOutOfRange || match == HeaderPattern::Match::SuffixOutOfRange;
    if (match != HeaderPattern::Match::Full) continue;
    found.pCommand = &command;
    break;
  }
  if (!found.pCommand) Fail(fSuffixOutOfRange ? ScpiHeaderSuffixOutOfRange : ScpiUndefinedHeader, HeaderText(arrNodes));
  // Common commands leave the header path as it is.
  if (!unit.fCommon) m_arrPath.assign(arrNodes.begin(), arrNodes.end() - 1);
  return found;
}

Place Interpreter::PlaceOf(const Found &found) const {
  return {found.arrSuffixes.empty() ? 1 : found.arrSuffixes.front(), m_device.Description()};
}

std::function<Double()> Interpreter::DefaultOf(const Found &found) const {
  if (!found.pCommand->IsSetting()) return {};
  if (found.pCommand->dblDefault) return [dblDefault = *found.pCommand->dblDefault] { return dblDefault; };
  return [this, &found] { return NumberIn(found.pCommand->read(simulator::Settings{}, PlaceOf(found))); };
}

Values Interpreter::ReadParameters(const Found &found, const ProgramUnit &unit) const {
  const std::vector<Parameter> &arrParameters = found.pCommand->arrParameters;
  if (unit.arrData.size() > arrParameters.size()) Fail(ScpiParameterNotAllowed, found.pCommand->header.Notation());
  Values values;
  for (std::size_t lngAt = 0; lngAt < arrParameters.size(); ++lngAt) {
    if (lngAt < unit.arrData.size())
      values.push_back(arrParameters[lngAt].Convert(unit.arrData[lngAt], DefaultOf(found)));
    else if (!arrParameters[lngAt].fOptional)
      Fail(ScpiMissingParameter, found.pCommand->header.Notation());
  }
  return values;
}

void Interpreter::Set(const Found &found, const ProgramUnit &unit) {
  const Command &command = *found.pCommand;
  if (!command.write && !command.act) Fail(ScpiUndefinedHeader, command.header.Notation() + " can only be asked for");
  const Values values = ReadParameters(found, unit);
  if (command.act) {
    Call call{m_device, m_client, found.arrSuffixes, values, m_fAnswered};
    command.act(call);
    return;
  }
  m_arrGathered.push_back([&command, values, place = PlaceOf(found)](simulator::Settings &settings) {
    command.write(settings, place, values);
  });
}

void Interpreter::Ask(const Found &found, const ProgramUnit &unit) {
  const Command &command = *found.pCommand;
  if (!command.read && !command.ask) Fail(ScpiUndefinedHeader, command.header.Notation() + " cannot be asked for");
  if (m_fIndefinite) Fail(ScpiQueryAfterIndefiniteResponse, command.header.Notation());
  if (command.IsSetting()) return Respond(command, AnswerOfSetting(found, unit));
  if (!unit.arrData.empty()) Fail(ScpiParameterNotAllowed, command.header.Notation());
  const Values none;
  Call call{m_device, m_client, found.arrSuffixes, none, m_fAnswered};
  Respond(command, command.ask(call));
}

std::string Interpreter::AnswerOfSetting(const Found &found, const ProgramUnit &unit) const {
  const Command &command = *found.pCommand;
  const std::vector<Parameter> &arrParameters = command.arrParameters;
  if (!unit.arrData.empty()) {
    const bool fOneNumber = arrParameters.size() == 1 && arrParameters.front().IsNumber();
    if (!fOneNumber || unit.arrData.size() > 1) Fail(ScpiParameterNotAllowed, command.header.Notation());
    return arrParameters.front().Answer(arrParameters.front().SpecialNumber(unit.arrData.front(), DefaultOf(found)));
  }
  try {
    const Values values = command.read(m_device.CurrentSettings(), PlaceOf(found));
    std::string strAnswer;
    for (std::size_t lngAt = 0; lngAt < values.size(); ++lngAt)
      strAnswer += (lngAt > 0 ? "," : "") + arrParameters[lngAt].Answer(values[lngAt]);
    return strAnswer;
  } catch (const simulator::Rejected &rejected) {
    for (const simulator::ScpiError &error : rejected.Errors()) m_device.status.Report(error);
    return {};
  }
}

void Interpreter::Respond(const Command &command, const std::string &strAnswer) {
  if (strAnswer.empty() || m_fDeadlocked) return;
  if (m_fAnswered) m_strResponse += ';';
  m_strResponse += strAnswer;
  m_fAnswered = true;
  m_fIndefinite = command.fIndefiniteAnswer;
  if (m_strResponse.size() <= LongestResponse) return;
  m_fDeadlocked = true;
  m_strResponse.clear();
  m_device.status.Report(ScpiFault{ScpiQueryDeadlocked, {}});
}

void Interpreter::TakeGathered() {
  if (m_arrGathered.empty()) return;
  const std::vector<simulator::Change> arrChanges = std::exchange(m_arrGathered, {});
  m_device.Apply(arrChanges);
}

}  // namespace tarvik::scpisim
