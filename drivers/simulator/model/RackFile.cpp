#include "simulator/model/RackFile.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <set>

#include "support/Conversions.h"

namespace tarvik::simulator {

namespace {

/// The panel counts rows by 16-bit numbers; this is well below that and well above a real rack.
constexpr std::size_t MostInstruments = 256;
constexpr std::size_t MostEntries = 32;
constexpr Long LongestDelay = 60000;

/// A syntax error; the reader adds file and line.
struct Fault {
  std::string strReason;
};

std::string_view TrimBlanks(std::string_view strText) {
  const auto isBlank = [](char ch) { return ch == ' ' || ch == '\t'; };
  while (!strText.empty() && isBlank(strText.front())) strText.remove_prefix(1);
  while (!strText.empty() && isBlank(strText.back())) strText.remove_suffix(1);
  return strText;
}

/// A whole number, decimal or with 0x in front.
Long NumberOf(std::string_view strValue, Long lngMin, Long lngMax) {
  const bool fNegative = !strValue.empty() && strValue.front() == '-';
  std::string_view strDigits = fNegative ? strValue.substr(1) : strValue;
  const bool fHex = strDigits.starts_with("0x") || strDigits.starts_with("0X");
  if (fHex) strDigits.remove_prefix(2);
  std::uint64_t number = 0;
  const char *end = strDigits.data() + strDigits.size();
  const auto [last, error] = std::from_chars(strDigits.data(), end, number, fHex ? 16 : 10);
  if (strDigits.empty() || last != end || error == std::errc::invalid_argument)
    throw Fault{"\"" + std::string(strValue) + "\" is no whole number"};
  const bool fTooLarge =
      error == std::errc::result_out_of_range || number > static_cast<std::uint64_t>(std::numeric_limits<Long>::max());
  const Long lngNumber = fTooLarge ? 0 : static_cast<Long>(number) * (fNegative ? -1 : 1);
  if (fTooLarge || lngNumber < lngMin || lngNumber > lngMax)
    throw Fault{std::string(strValue) + " is not from " + std::to_string(lngMin) + " to " + std::to_string(lngMax)};
  return lngNumber;
}

bool SwitchOf(std::string_view strValue) {
  if (strValue == "yes") return true;
  if (strValue == "no") return false;
  throw Fault{"\"" + std::string(strValue) + "\" is neither yes nor no"};
}

/// Milliseconds: a number, with or without "ms".
Long DelayOf(std::string_view strValue) {
  if (strValue.ends_with("ms")) strValue = TrimBlanks(strValue.substr(0, strValue.size() - 2));
  return NumberOf(strValue, 0, LongestDelay);
}

Integer KindOf(std::string_view strValue) {
  if (strValue == "slot") return eKindSlot;
  if (strValue == "box") return eKindBox;
  return static_cast<Integer>(NumberOf(strValue, 0, 32767));
}

/// Capabilities a model lacks: known bits or sums of them, separated by commas.
Long MaskOf(std::string_view strValue) {
  Long lngMask = 0;
  for (const std::string &strPart : Split(strValue, ',')) {
    const Long lngBits = NumberOf(TrimBlanks(strPart), 0, AllFunctionality);
    if (lngBits & ~AllFunctionality) throw Fault{std::string(TrimBlanks(strPart)) + " is no sum of known capabilities"};
    lngMask |= lngBits;
  }
  return lngMask;
}

/// `-240,"Hardware error: fan stopped"`.
ScpiError EntryOf(std::string_view strValue, Long lngMin, Long lngMax) {
  const std::size_t comma = strValue.find(',');
  const std::string_view strQuoted = comma == strValue.npos ? "" : TrimBlanks(strValue.substr(comma + 1));
  if (strQuoted.size() < 3 || strQuoted.front() != '"' || strQuoted.back() != '"')
    throw Fault{"an entry has the form number,\"text\""};
  const std::string_view strText = strQuoted.substr(1, strQuoted.size() - 2);
  if (strText.find_first_of("\";") != strText.npos) throw Fault{"the text of an entry holds no quote and no semicolon"};
  return {NumberOf(TrimBlanks(strValue.substr(0, comma)), lngMin, lngMax), std::string(strText), {}};
}

void AddEntry(std::vector<ScpiError> &arrEntries, ScpiError entry) {
  if (arrEntries.size() == MostEntries) throw Fault{"more than 32 entries"};
  arrEntries.push_back(std::move(entry));
}

/// `0` or `3, RAM check failed`.
void SetSelfTest(InstrumentDescription &instrument, std::string_view strValue) {
  const std::size_t comma = strValue.find(',');
  instrument.intSelfTestCode = static_cast<Integer>(NumberOf(TrimBlanks(strValue.substr(0, comma)), -32768, 32767));
  if (comma != strValue.npos)
    instrument.strSelfTestText = TrimBlanks(strValue.substr(comma + 1));
  else if (instrument.intSelfTestCode != 0)
    instrument.strSelfTestText = "Self test failed with code " + std::to_string(instrument.intSelfTestCode);
}

struct Key {
  std::string_view strName;
  void (*set)(InstrumentDescription &instrument, std::string_view strValue);
  bool fRepeats = false;
};

using D = InstrumentDescription;
using V = std::string_view;

const Key Keys[] = {
    {"kind", [](D &d, V v) { d.intKind = KindOf(v); }},
    {"address", [](D &d, V v) { d.intAddress = static_cast<Integer>(NumberOf(v, 0, 32767)); }},
    {"slot", [](D &d, V v) { d.intSlot = static_cast<Integer>(NumberOf(v, 0, 32767)); }},
    {"model code", [](D &d, V v) { d.intModelCode = static_cast<Integer>(NumberOf(v, 0, 65535)); }},
    {"channels", [](D &d, V v) { d.lngChannels = NumberOf(v, 1, 2); }},
    {"lacks", [](D &d, V v) { d.lngMask = MaskOf(v); }},
    {"identity", [](D &d, V v) { d.strIdentity = v; }},
    {"options", [](D &d, V v) { d.strOptions = v; }},
    {"opens", [](D &d, V v) { d.fOpens = SwitchOf(v); }},
    {"calibration delay", [](D &d, V v) { d.lngCalibrationDelay = DelayOf(v); }},
    {"self test delay", [](D &d, V v) { d.lngSelfTestDelay = DelayOf(v); }},
    {"self test", SetSelfTest},
    {"error", [](D &d, V v) { AddEntry(d.arrErrors, EntryOf(v, -32768, 32767)); }, true},
    {"warning", [](D &d, V v) { AddEntry(d.arrWarnings, EntryOf(v, -32768, 32767)); }, true},
};

/// Line-by-line parser.
class Reader {
 public:
  void TakeLine(std::string_view strLine) {
    for (const char ch : strLine)
      if (static_cast<unsigned char>(ch) < ' ' && ch != '\t') throw Fault{"a control character"};
    strLine = TrimBlanks(strLine);
    if (strLine.empty() || strLine.front() == '#') return;
    if (strLine.front() == '[')
      BeginInstrument(strLine);
    else
      TakeSetting(strLine);
  }

  std::vector<InstrumentDescription> Take() { return std::move(m_arrInstruments); }

 private:
  void BeginInstrument(std::string_view strLine) {
    if (strLine.back() != ']') throw Fault{"a name ends with ]"};
    const std::string strName(TrimBlanks(strLine.substr(1, strLine.size() - 2)));
    if (strName.empty()) throw Fault{"an instrument needs a name"};
    if (!m_names.insert(strName).second) throw Fault{"a second instrument is called \"" + strName + "\""};
    if (m_arrInstruments.size() == MostInstruments) throw Fault{"more than 256 instruments"};
    InstrumentDescription instrument;
    instrument.strName = strName;
    instrument.strIdentity = "Velmora," + strName + ",0,1.0";
    m_arrInstruments.push_back(std::move(instrument));
    m_keys.clear();
  }

  void TakeSetting(std::string_view strLine) {
    const std::size_t equals = strLine.find('=');
    if (equals == strLine.npos) throw Fault{"neither [name] nor key = value"};
    const std::string_view strKey = TrimBlanks(strLine.substr(0, equals));
    if (m_arrInstruments.empty()) throw Fault{"a key before the first [name]"};
    const Key *key = std::find_if(std::begin(Keys), std::end(Keys), [&](const Key &k) { return k.strName == strKey; });
    if (key == std::end(Keys)) throw Fault{"unknown key \"" + std::string(strKey) + "\""};
    if (!m_keys.insert(key).second && !key->fRepeats) throw Fault{"\"" + std::string(strKey) + "\" stands twice"};
    key->set(m_arrInstruments.back(), TrimBlanks(strLine.substr(equals + 1)));
  }

  std::vector<InstrumentDescription> m_arrInstruments;
  std::set<std::string> m_names;
  std::set<const Key *> m_keys;
};

}  // namespace

std::vector<InstrumentDescription> ParseRack(std::string_view strText, const std::string &strFile) {
  constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
  if (strText.starts_with(ByteOrderMark)) strText.remove_prefix(ByteOrderMark.size());
  Reader reader;
  Long lngLine = 0;
  while (!strText.empty()) {
    const std::size_t end = std::min(strText.find('\n'), strText.size());
    std::string_view strLine = strText.substr(0, end);
    strText.remove_prefix(std::min(end + 1, strText.size()));
    if (strLine.ends_with('\r')) strLine.remove_suffix(1);
    ++lngLine;
    try {
      reader.TakeLine(strLine);
    } catch (const Fault &fault) {
      throw RackFileError(strFile + ":" + std::to_string(lngLine) + ": " + fault.strReason);
    }
  }
  return reader.Take();
}

}  // namespace tarvik::simulator
