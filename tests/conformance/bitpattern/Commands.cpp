#include <QCoreApplication>
#include <QFocusEvent>
#include <charconv>
#include <functional>
#include <map>
#include <stdexcept>

#include "Commands.h"
#include "engrspin/EngrSpinPrivate.h"
#include "support/Conversions.h"
#include "support/EventBoundary.h"

namespace tarvik::test {

namespace {

struct BadCommand : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The words of a command line, taken one after the other.
class Words {
 public:
  explicit Words(std::string strRest) : m_strRest(std::move(strRest)) {}

  std::string Next() {
    if (m_fAtEnd) throw BadCommand("word missing");
    const std::size_t end = m_strRest.find(' ');
    std::string strWord = m_strRest.substr(0, end);
    if (strWord.empty()) throw BadCommand("word missing");
    m_fAtEnd = end == std::string::npos;
    m_strRest.erase(0, m_fAtEnd ? end : end + 1);
    return strWord;
  }
  template <class Number>
  Number NextNumber() {
    const std::string strWord = Next();
    Number number{};
    const char *const last = strWord.data() + strWord.size();
    const auto result = std::from_chars(strWord.data(), last, number);
    if (result.ec != std::errc() || result.ptr != last) throw BadCommand("no number: " + strWord);
    return number;
  }
  Long NextLong() { return NextNumber<Long>(); }
  Boolean NextFlag() {
    const std::string strWord = Next();
    if (strWord != "0" && strWord != "1") throw BadCommand("no flag: " + strWord);
    return strWord == "1";
  }
  std::string NextField() {
    const std::string strWord = Next();
    if (strWord != "esAddress" && strWord != "esLast") throw BadCommand("no field: " + strWord);
    return strWord;
  }
  bool AtEnd() const { return m_fAtEnd; }
  std::string Rest() {
    m_fAtEnd = true;
    return std::exchange(m_strRest, {});
  }

 private:
  std::string m_strRest;
  bool m_fAtEnd = m_strRest.empty();
};

/// "a5*3.00" is a5 a5 a5 00.
std::vector<Byte> Bytes(const std::string &strText) {
  std::vector<Byte> arr;
  if (strText == "-") return arr;
  for (std::size_t first = 0; first <= strText.size();) {
    const std::size_t end = std::min(strText.find('.', first), strText.size());
    const std::string strSegment = strText.substr(first, end - first);
    const std::size_t star = strSegment.find('*');
    const std::vector<unsigned char> arrSegment = FromHex(strSegment.substr(0, star));
    const int intTimes = star == std::string::npos ? 1 : std::stoi(strSegment.substr(star + 1));
    for (int i = 0; i < intTimes; ++i) arr.insert(arr.end(), arrSegment.begin(), arrSegment.end());
    first = end + 1;
  }
  return arr;
}

char32_t Character(const std::string &strText) {
  if (strText.size() > 1 && strText[0] == '#') return static_cast<char32_t>(std::stoul(strText.substr(1)));
  const auto arr = QString::fromStdString(strText).toUcs4();
  if (arr.size() != 1) throw BadCommand("no character: " + strText);
  return static_cast<char32_t>(arr.front());
}

template <class Procedure>
void AsUser(Procedure &&procedure) {
  RunUserEvent("BitPattern1", "user", std::forward<Procedure>(procedure));
}

/// An ordinary key, the text replaced, then Enter.
void TypeInto(EngrSpin &field, const std::string &strText) {
  constexpr Integer OrdinaryKey = 191, EnterKey = 13;
  EngrSpin::Private &inside = EngrSpin::Private::Of(field);
  inside.KeyDown(OrdinaryKey);
  inside.txtNumber->WriteText(QString::fromStdString(strText));
  inside.KeyDown(EnterKey);
}

/// An arrow key with the digit cursor on one character of the text.
void StepIn(EngrSpin &field, Integer intKeyCode, Long lngCharacter) {
  EngrSpin::Private &inside = EngrSpin::Private::Of(field);
  inside.txtNumber->SetSelStart(lngCharacter);
  inside.txtNumber->SetSelLength(1);
  inside.KeyDown(intKeyCode);
  inside.KeyPress();
}

using Handler = std::function<void(Session &session, Words &words)>;

void AddUserCommands(std::map<std::string, Handler> &table) {
  table["type"] = [](Session &session, Words &words) {
    EngrSpin &field = session.Field(words.NextField());
    const std::string strText = words.Rest();
    AsUser([&] { TypeInto(field, strText); });
  };
  table["step"] = [](Session &session, Words &words) {
    EngrSpin &field = session.Field(words.NextField());
    const std::string strDirection = words.Next();
    if (strDirection != "up" && strDirection != "down") throw BadCommand("no direction: " + strDirection);
    const Long lngCharacter = words.AtEnd() ? 0 : words.NextLong();
    AsUser([&] { StepIn(field, strDirection == "up" ? 38 : 40, lngCharacter); });
  };
  table["menu"] = [](Session &session, Words &words) {
    const Long lngIndex = words.NextLong();
    const std::string strKey = words.Next();
    AsUser([&] { session.Inside().toolPopup_ButtonMenuClick(lngIndex, strKey); });
  };
  table["button"] = [](Session &session, Words &words) {
    const Long lngIndex = words.NextLong();
    AsUser([&] { session.Inside().toolPopup_ButtonClick(lngIndex); });
  };
  table["key"] = [](Session &session, Words &words) {
    auto intKeyCode = words.NextNumber<Integer>();
    AsUser([&] { session.Inside().picWave_KeyDown(intKeyCode); });
    session.Note({"key", intKeyCode});
  };
  table["char"] = [](Session &session, Words &words) {
    const char32_t character = Character(words.Rest());
    AsUser([&] { session.Inside().picWave_KeyPress(character); });
  };
  table["mouse"] = [](Session &session, Words &words) {
    const auto intButton = words.NextNumber<Integer>();
    const auto sngX = words.NextNumber<Single>(), sngY = words.NextNumber<Single>();
    AsUser([&] { session.Inside().picWave_MouseDown(intButton, sngX, sngY); });
  };
  table["scroll"] = [](Session &session, Words &words) {
    session.Find<QScrollBar>("HScroll1").setValue(words.NextLong());
  };
  table["scrollfocus"] = [](Session &session, Words &) {
    QFocusEvent event(QEvent::FocusIn);
    QCoreApplication::sendEvent(&session.Find<QScrollBar>("HScroll1"), &event);
  };
  table["numgraph"] = [](Session &session, Words &) { session.Find<CommandButton>("cmdNumOrGraph").click(); };
  table["opt"] = [](Session &session, Words &words) {
    const Long lngIndex = words.NextLong();
    if (lngIndex < 0 || lngIndex > 3) throw BadCommand("no option");
    session.Find<OptionButton>(("optChannelRzNrz(" + std::to_string(lngIndex) + ")").c_str()).click();
  };
}

void AddHostCommands(std::map<std::string, Handler> &table) {
  table["init"] = [](Session &session, Words &) { session.Editor().SetPatternInit(); };
  table["setpattern"] = [](Session &session, Words &words) {
    const Long eChannel = words.NextLong(), lngLowerBound = words.NextLong();
    const ByteArray arr(lngLowerBound, Bytes(words.Next()));
    const Long lngNumBits = words.NextLong();
    const bool fResult = session.Editor().SetPattern(eChannel, arr, lngNumBits);
    session.Note({"ret", fResult});
  };
  table["getpattern"] = [](Session &session, Words &words) {
    const Long eChannel = words.NextLong(), lngCount = words.NextLong();
    ByteArray arr(1, std::vector<Byte>(static_cast<std::size_t>(lngCount), 0xA5));
    Long lngArraySize = 0;
    const bool fResult = session.Editor().GetPattern(eChannel, arr, lngArraySize);
    session.Note({"ret", fResult, lngArraySize, ToHex(arr.Elements())});
  };
  table["size"] = [](Session &session, Words &) { session.Note({"ret", session.Editor().GetPatternArraySize()}); };
  table["length"] = [](Session &session, Words &) { session.Note({"ret", session.Editor().GetPatternLength()}); };
  table["rz"] = [](Session &session, Words &words) {
    const Boolean fRz1 = words.NextFlag(), fRz2 = words.NextFlag();
    session.Editor().SetRz(BooleanArray(1, {fRz1, fRz2}), words.NextFlag());
  };
  table["hostrz"] = [](Session &session, Words &words) {
    BooleanArray &mfRz = session.PageRz();
    mfRz[1] = words.NextFlag();
    mfRz[2] = words.NextFlag();
    session.Editor().SetRz(mfRz, words.NextFlag());
    session.Note({"ret", static_cast<bool>(mfRz[1]), static_cast<bool>(mfRz[2])});
  };
  table["getrz"] = [](Session &session, Words &) {
    BooleanArray fRz(1, {False, False});
    session.Editor().GetRz(fRz);
    session.Note({"ret", static_cast<bool>(fRz[1]), static_cast<bool>(fRz[2])});
  };
  table["enable2"] = [](Session &session, Words &words) { session.Editor().EnableChannel2(words.NextFlag()); };
  table["enabled"] = [](Session &session, Words &words) { session.Editor().SetEnabled(words.NextFlag()); };
  table["set"] = [](Session &session, Words &words) {
    EngrSpin &field = session.Field(words.NextField());
    field.SetValue(words.NextNumber<Double>());
  };
}

void AddInnerCommands(std::map<std::string, Handler> &table) {
  table["wcb"] = [](Session &session, Words &words) {
    const Long lngCode = words.NextLong(), lngAddress = words.NextLong(), lngValue = words.NextLong();
    Boolean fDone;
    session.Inside().store.WriteChannelBit(lngCode, lngAddress, lngValue, fDone);
    session.Note({"ret", static_cast<bool>(fDone)});
  };
  table["rcb"] = [](Session &session, Words &words) {
    const Long lngCode = words.NextLong(), lngAddress = words.NextLong();
    Long lngValue = 0;
    session.Inside().store.ReadChannelBit(lngCode, lngAddress, lngValue);
    session.Note({"ret", lngValue});
  };
  table["setgen"] = [](Session &session, Words &words) {
    const Long lngCode = words.NextLong(), lngGenerator = words.NextLong();
    session.Inside().operations.SetGenerator(lngCode, lngGenerator, words.NextLong());
  };
  table["applygen"] = [](Session &session, Words &words) {
    const Long lngCode = words.NextLong(), lngStart = words.NextLong();
    session.Inside().operations.ApplyGenerator(lngCode, lngStart, words.NextFlag());
  };
  table["drawcell"] = [](Session &session, Words &words) {
    const Long lngCase = words.NextLong();
    const Boolean fHighlight = words.NextFlag();
    auto &picWave = session.Find<PictureBox>("picWave");
    picWave.SetCurrentX(words.NextNumber<Single>());
    picWave.SetCurrentY(words.NextNumber<Single>());
    session.Inside().view->DrawCell(lngCase, fHighlight);
  };
  table["redraw"] = [](Session &session, Words &) { session.Inside().RedrawPattern(); };
  table["range"] = [](Session &session, Words &) { session.Inside().SetWaveformRange(); };
  table["pend"] = [](Session &session, Words &) { session.Note({"ret", session.Inside().store.PendingChannels()}); };
  table["validate"] = [](Session &session, Words &words) {
    const Long lngMin = words.NextLong(), lngMax = words.NextLong();
    Boolean fOk;
    PatternOperations::ValidateNumber(words.Rest(), lngMin, lngMax, fOk);
    session.Note({"ret", static_cast<bool>(fOk)});
  };
  table["fault"] = [](Session &session, Words &words) {
    if (words.Next() != "hsmax") throw BadCommand("no such fault");
    session.FailNextMax();
  };
}

void AddSessionCommands(std::map<std::string, Handler> &table) {
  table["state"] = [](Session &, Words &) {};
  table["answer"] = [](Session &session, Words &words) { session.Host().arrInputAnswers.push_back(words.Rest()); };
  table["prbs"] = [](Session &session, Words &words) {
    const std::string strMode = words.Next();
    if (strMode != "online" && strMode != "offline") throw BadCommand("no mode: " + strMode);
    session.SetOnline(strMode == "online");
  };
  table["echo"] = [](Session &session, Words &words) { session.SetEcho(words.NextFlag()); };
}

const std::map<std::string, Handler> &Table() {
  static const std::map<std::string, Handler> table = [] {
    std::map<std::string, Handler> handlers;
    AddSessionCommands(handlers);
    AddUserCommands(handlers);
    AddHostCommands(handlers);
    AddInnerCommands(handlers);
    return handlers;
  }();
  return table;
}

Single WholeTwips(const std::string &strValue) { return static_cast<Single>(std::stoi(strValue)); }

void ReadTextWidths(Settings &settings, const std::string &strValue) {
  const std::vector<std::string> arrWidths = Split(strValue, ',');
  if (arrWidths.size() != 1 && arrWidths.size() != 4) throw BadCommand("one or four widths");
  for (std::size_t i = 0; i < 4; ++i) settings.arrTextWidths[i] = WholeTwips(arrWidths[arrWidths.size() == 1 ? 0 : i]);
}

Settings ReadSettings(Words &words) {
  Settings settings;
  while (!words.AtEnd()) {
    const std::string strWord = words.Next();
    const std::size_t equals = strWord.find('=');
    if (equals == std::string::npos) throw BadCommand("no setting: " + strWord);
    const std::string strKey = strWord.substr(0, equals), strValue = strWord.substr(equals + 1);
    if (strKey == "panel")
      settings.fPanel = strValue == "1";
    else if (strKey == "prbs")
      settings.fOnline = strValue == "online";
    else if (strKey == "draw")
      settings.fDraw = strValue == "1";
    else if (strKey == "w")
      settings.form.sngPictureWidth = WholeTwips(strValue);
    else if (strKey == "h")
      settings.form.sngPictureHeight = WholeTwips(strValue);
    else if (strKey == "hs")
      settings.form.sngScrollHeight = WholeTwips(strValue);
    else if (strKey == "th")
      settings.sngTextHeight = WholeTwips(strValue);
    else if (strKey == "tw")
      ReadTextWidths(settings, strValue);
    else
      throw BadCommand("no setting: " + strWord);
  }
  return settings;
}

}  // namespace

void Commands::Begin(const std::string &strRest) {
  Words words(strRest);
  const Settings settings = ReadSettings(words);
  m_session.reset();
  m_session = std::make_unique<Session>(settings);
}

bool Commands::Run(const std::string &strWord, const std::string &strRest) {
  if (strWord == "new") {
    Begin(strRest);
    return true;
  }
  const auto handler = Table().find(strWord);
  if (!m_session || handler == Table().end()) return false;
  Words words(strRest);
  handler->second(*m_session, words);
  return words.AtEnd();
}

Json Commands::Answer(const std::string &strLine) {
  if (strLine == "hello") return {{"offers", {"prim", "fault", "geom", "metrics"}}};
  const std::size_t blank = strLine.find(' ');
  try {
    if (Run(strLine.substr(0, blank), blank == std::string::npos ? "" : strLine.substr(blank + 1)))
      return m_session->TakeState();
    return {{"error", "bad command: " + strLine}};
  } catch (const RunTimeError &error) {
    return {{"error", error.Description()}};
  } catch (const std::exception &error) {
    return {{"error", "bad command: " + strLine + ": " + error.what()}};
  }
}

}  // namespace tarvik::test
