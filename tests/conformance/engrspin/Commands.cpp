#include "Commands.h"

#include <cstdlib>
#include <functional>
#include <map>

#include "platform/KeyCodes.h"
#include "support/EventBoundary.h"
#include "support/modErrorLog.h"

namespace tarvik::conformance {

namespace {

using Arguments = std::vector<Json>;

Double ToDouble(const Json &value) {
  if (value.is_number()) return value.get<Double>();
  return std::strtod(value.get<std::string>().c_str(), nullptr);
}
Long ToLong(const Json &value) {
  return value.is_number() ? value.get<Long>() : static_cast<Long>(std::atol(value.get<std::string>().c_str()));
}
bool ToBool(const Json &value) {
  if (value.is_boolean()) return value.get<bool>();
  const std::string strWord = value.get<std::string>();
  return strWord == "1" || strWord == "true";
}
std::string ToText(const Json &value) { return value.get<std::string>(); }

/// Words stay texts; what is in quotes, braces or brackets is JSON.
Arguments Cut(const std::string &strLine) {
  Arguments args;
  std::size_t pos = 0;
  while ((pos = strLine.find_first_not_of(' ', pos)) != std::string::npos) {
    if (strLine[pos] == '{') {
      args.push_back(Json::parse(strLine.substr(pos)));
      break;
    }
    std::size_t end = pos;
    if (strLine[pos] == '"') {
      for (end = pos + 1; end < strLine.size() && strLine[end] != '"'; ++end)
        if (strLine[end] == '\\') ++end;
      ++end;
      args.push_back(Json::parse(strLine.substr(pos, end - pos)));
    } else {
      end = std::min(strLine.find(' ', pos), strLine.size());
      args.push_back(strLine.substr(pos, end - pos));
    }
    pos = end;
  }
  return args;
}

PropertyBag ToBag(const Json &object) {
  PropertyBag bag;
  for (const auto &[strKey, value] : object.items()) {
    const bool fNumber = strKey == "Max" || strKey == "Min" || strKey == "DefaultValue" || strKey == "CaptionWidth";
    if (value.is_boolean()) {
      bag.Set(strKey, Boolean(value.get<bool>()));
    } else if (fNumber) {
      bag.Set(strKey, ToDouble(value));
    } else if (value.is_number_integer()) {
      bag.Set(strKey, value.get<Long>());
    } else if (value.is_number()) {
      bag.Set(strKey, value.get<Double>());
    } else {
      bag.Set(strKey, value.get<std::string>());
    }
  }
  return bag;
}

Json Shown(const Variant &vValue) {
  if (const auto *f = std::get_if<Boolean>(&vValue)) return bool(*f);
  if (const auto *lng = std::get_if<Long>(&vValue)) return *lng;
  if (const auto *dbl = std::get_if<Double>(&vValue)) return Hex(*dbl);
  if (const auto *str = std::get_if<std::string>(&vValue)) return *str;
  return nullptr;
}

struct Property {
  std::function<Json(const EngrSpin &)> get;
  std::function<void(EngrSpin &, const Json &)> set;
};

#define DOUBLE_PROPERTY(name)                                          \
  {                                                                    \
#name, {                                                           \
      [](const EngrSpin &f) -> Json { return Hex(f.name()); },         \
          [](EngrSpin &f, const Json &v) { f.Set##name(ToDouble(v)); } \
    }                                                                  \
  }
#define SINGLE_PROPERTY(name)                                                               \
  {                                                                                         \
#name, {                                                                                \
      [](const EngrSpin &f) -> Json { return f.name(); },                                   \
          [](EngrSpin &f, const Json &v) { f.Set##name(static_cast<Single>(ToDouble(v))); } \
    }                                                                                       \
  }
#define LONG_PROPERTY(name)                                                                                          \
  {                                                                                                                  \
#name, {                                                                                                         \
      [](const EngrSpin &f) -> Json { return f.name(); }, [](EngrSpin &f, const Json &v) { f.Set##name(ToLong(v)); } \
    }                                                                                                                \
  }
#define BOOLEAN_PROPERTY(name)                                       \
  {                                                                  \
#name, {                                                         \
      [](const EngrSpin &f) -> Json { return bool(f.name()); },      \
          [](EngrSpin &f, const Json &v) { f.Set##name(ToBool(v)); } \
    }                                                                \
  }
#define TEXT_PROPERTY(name)                                                                                          \
  {                                                                                                                  \
#name, {                                                                                                         \
      [](const EngrSpin &f) -> Json { return f.name(); }, [](EngrSpin &f, const Json &v) { f.Set##name(ToText(v)); } \
    }                                                                                                                \
  }

const std::map<std::string, Property> &Properties() {
  static const std::map<std::string, Property> properties = {
      DOUBLE_PROPERTY(AuxValue),
      DOUBLE_PROPERTY(DefaultValue),
      DOUBLE_PROPERTY(Max),
      DOUBLE_PROPERTY(Min),
      DOUBLE_PROPERTY(Reciprocal),
      DOUBLE_PROPERTY(Value),
      SINGLE_PROPERTY(CaptionWidth),
      SINGLE_PROPERTY(TextBoxWidth),
      LONG_PROPERTY(CaptionAlignment),
      LONG_PROPERTY(MaxExponent),
      LONG_PROPERTY(MinExponent),
      LONG_PROPERTY(SignificantDigits),
      BOOLEAN_PROPERTY(Enabled),
      BOOLEAN_PROPERTY(SpinCtlVisible),
      TEXT_PROPERTY(AuxUnits),
      TEXT_PROPERTY(BaseUnit),
      TEXT_PROPERTY(Caption),
      TEXT_PROPERTY(NumberFormat),
      TEXT_PROPERTY(Text),
      TEXT_PROPERTY(ValueArray),
      {"Locked", {[](const EngrSpin &f) -> Json { return bool(f.Locked()); }, nullptr}},
      {"OldValue", {[](const EngrSpin &f) -> Json { return Hex(f.OldValue()); }, nullptr}},
  };
  return properties;
}

/// The text box's own work on a key that reached it. The field has heard of the key before.
void TextBoxKey(NumberTextBox &txt, Long lngCode) {
  if (!txt.isEnabled()) return;
  const Long lngStart = txt.SelStart(), lngLength = txt.SelLength();
  switch (lngCode) {
    case KeyLeft: txt.SetSelStart(lngLength > 0 || lngStart == 0 ? lngStart : lngStart - 1); break;
    case KeyRight: txt.SetSelStart(lngLength > 0 ? lngStart + lngLength : lngStart + 1); break;
    case KeyHome: txt.home(false); break;
    case KeyEnd: txt.end(false); break;
    case KeyDelete:
      if (!txt.isReadOnly()) txt.del();
      break;
    default: break;
  }
}

void TextBoxCharacter(NumberTextBox &txt, const QString &strCharacter) {
  if (!txt.isEnabled() || txt.isReadOnly() || strCharacter.isEmpty()) return;
  const ushort code = strCharacter.front().unicode();
  if (code == 8) {
    txt.backspace();
  } else if (code >= 32 && code != 127) {
    txt.insert(strCharacter);
  }
}

void Key(Session &s, const Json &code) {
  EngrSpin::Private &inside = s.Inside();
  const Long lngCode = ToLong(code);
  if (const Integer intLeft = inside.KeyDown(static_cast<Integer>(lngCode))) TextBoxKey(*inside.txtNumber, intLeft);
}

void Character(Session &s, const QString &strCharacter) {
  EngrSpin::Private &inside = s.Inside();
  if (!inside.KeyPress()) TextBoxCharacter(*inside.txtNumber, strCharacter);
}

Long CodeOf(QChar ch) {
  if (ch.unicode() < 128 && ch.isLetterOrNumber()) return ch.toUpper().unicode();
  switch (ch.unicode()) {
    case '.': return 190;
    case ',': return 188;
    case '-': return 189;
    case '+': return 187;
    case ' ': return 32;
    case 8: return 8;
    case 13: return 13;
    case 27: return 27;
    default: return 191;
  }
}

void Spin(Session &s, const std::string &strWord) {
  SpinControl &spin = *s.Inside().spinCtl;
  if (!spin.isEnabled() || spin.isHidden()) return;
  if (strWord == "up" || strWord == "down") {
    spin.SetValue(spin.Value() + (strWord == "up" ? 1 : -1));
  } else {
    spin.SetValue(static_cast<Long>(std::strtol(strWord.c_str(), nullptr, 10)));
  }
}

void Focus(Session &s, bool fSpin) {
  QWidget &target = fSpin ? static_cast<QWidget &>(*s.Inside().spinCtl) : *s.Inside().txtNumber;
  if (target.isEnabled() && !target.isHidden()) target.setFocus(Qt::OtherFocusReason);
}

void Edit(Session &s, const std::string &strText) {
  NumberTextBox &txt = *s.Inside().txtNumber;
  if (txt.isReadOnly() || !txt.isEnabled()) return;
  txt.selectAll();
  txt.insert(QString::fromStdString(strText));
  if (strText.empty()) txt.clear();
}

Long Mode(const Json &word) {
  static const std::map<std::string, Long> modes = {{"next", curNext}, {"restore", curRestore}, {"right", curRight},
                                                    {"left", curLeft}, {"last", curLast},       {"first", curFirst}};
  const auto found = modes.find(ToText(word));
  return found == modes.end() ? ToLong(word) : found->second;
}

using Call = std::function<Json(Session &, const Arguments &)>;

const std::map<std::string, Call> &Calls() {
  static const std::map<std::string, Call> calls = {
      {"ExponentToPrefix",
       [](Session &s, const Arguments &a) -> Json { return s.Number().ExponentToPrefix(ToLong(a.at(2))); }},
      {"UnitsToExponent",
       [](Session &s, const Arguments &a) -> Json {
         std::string strUnits = ToText(a.at(2));
         Long lngExponent = 0;
         Boolean fFound;
         s.Number().UnitsToExponent(strUnits, lngExponent, fFound);
         return {bool(fFound), fFound ? Json(lngExponent) : Json(nullptr)};
       }},
      {"FormatEngr",
       [](Session &s, const Arguments &a) -> Json {
         const std::string strText = s.MantissaOf(ToDouble(a.at(2)));
         return {strText, s.Number().Exponent()};
       }},
      {"ConvertValue2Engr", [](Session &s, const Arguments &) -> Json { return s.Number().ConvertValue2Engr(); }},
      {"PlaceCursor",
       [](Session &s, const Arguments &a) -> Json { return s.Inside().cursor.PlaceCursor(Mode(a.at(2))), nullptr; }},
      {"MoveCursor",
       [](Session &s, const Arguments &a) -> Json { return s.Inside().cursor.MoveCursor(Mode(a.at(2))), nullptr; }},
      {"GetCursorDigit", [](Session &s, const Arguments &) -> Json { return s.Inside().cursor.GetCursorDigit(); }},
      {"GetCursorChar",
       [](Session &s, const Arguments &) -> Json {
         Boolean fFirst;
         const auto strChar = s.Inside().cursor.GetCursorChar(fFirst);
         return {QString::fromStdU16String(strChar).toStdString(), bool(fFirst)};
       }},
      {"GetStepSize", [](Session &s, const Arguments &) -> Json { return Hex(s.Inside().GetStepSize()); }},
      {"GetArrayValue",
       [](Session &s, const Arguments &a) -> Json {
         return Hex(s.Inside().GetArrayValue(static_cast<Integer>(ToLong(a.at(2)))));
       }},
      {"ShowText",
       [](Session &s, const Arguments &a) -> Json { return s.Inside().ShowText(ToText(a.at(2))), nullptr; }},
      {"BeginEdit", [](Session &s, const Arguments &) -> Json { return s.Inside().BeginEdit(), nullptr; }},
      {"EndEdit", [](Session &s, const Arguments &) -> Json { return s.Inside().EndEdit(), nullptr; }},
      {"NotifyUpdate", [](Session &s, const Arguments &) -> Json { return s.Inside().NotifyUpdate(), nullptr; }},
      {"ParseEntry", [](Session &s, const Arguments &) -> Json { return s.Inside().ParseEntry(), nullptr; }},
      {"StepUp", [](Session &s, const Arguments &) -> Json { return s.Inside().StepUp(), nullptr; }},
      {"StepDown", [](Session &s, const Arguments &) -> Json { return s.Inside().StepDown(), nullptr; }},
      {"LogError",
       [](Session &, const Arguments &a) -> Json {
         return LogError(ToText(a.at(2)), ToText(a.at(3)), ToLong(a.at(4)), ToText(a.at(5))), nullptr;
       }},
  };
  return calls;
}

Json Hello() {
  Json names = Json::array();
  for (const auto &call : Calls()) names.push_back(call.first);
  return {{"protocol", 1}, {"fault", true}, {"calls", names}};
}

void New(Session &s, const Arguments &a) {
  s.chSeparator = '.';
  s.fOnline = s.fVerbose = false;
  s.SetPanel(false);
  for (std::size_t i = 2; i < a.size(); ++i) {
    const std::string strOption = ToText(a[i]);
    const auto equals = strOption.find('=');
    const std::string strName = strOption.substr(0, equals), strValue = strOption.substr(equals + 1);
    if (strName == "dec") s.chSeparator = strValue.at(0);
    if (strName == "panel") s.SetPanel(ToBool(strValue));
    if (strName == "online") s.fOnline = ToBool(strValue);
    if (strName == "verbose") s.fVerbose = ToBool(strValue);
  }
  s.Begin(ToText(a.at(1)) == "run");
}

void Hook(Session &s, const Arguments &a) {
  const std::string strKind = ToText(a.at(1));
  if (strKind == "afterupdate") {
    s.intHookCount = ToLong(a.at(2));
    s.arrHookCommands.clear();
    for (std::size_t i = 3; i < a.size(); ++i) s.arrHookCommands.push_back(ToText(a[i]));
  } else if (strKind == "ontab") {
    s.fSwallowTab = ToBool(a.at(2));
  } else {
    s.intHookCount = 0;
    s.arrHookCommands.clear();
    s.fSwallowTab = false;
  }
}

Json Write(Session &s) {
  PropertyBag bag;
  s.Field().WriteProperties(bag);
  Json written = Json::array();
  for (const auto &entry : bag.Written())
    written.push_back(
        {entry.strKey, entry.strKey == "CaptionWidth" ? Json(std::get<Double>(entry.vValue)) : Shown(entry.vValue)});
  return written;
}

using Command = std::function<Json(Session &, const Arguments &)>;

#define DOES(...)                              \
  [](Session &s, const Arguments &a) -> Json { \
    (void)s;                                   \
    (void)a;                                   \
    __VA_ARGS__;                               \
    return nullptr;                            \
  }
#define GIVES(...)                             \
  [](Session &s, const Arguments &a) -> Json { \
    (void)s;                                   \
    (void)a;                                   \
    return __VA_ARGS__;                        \
  }

const std::map<std::string, Command> &Commands() {
  static const std::map<std::string, Command> commands = {
      {"hello", GIVES(Hello())},
      {"new", DOES(New(s, a))},
      {"init", DOES(s.Field().InitProperties())},
      {"read", DOES(s.Field().ReadProperties(ToBag(a.at(1))))},
      {"write", GIVES(Write(s))},
      {"state", DOES()},
      {"locale", DOES(s.chSeparator = ToText(a.at(1)).at(0))},
      {"panel", DOES(s.SetPanel(ToBool(a.at(1))))},
      {"online", DOES(s.fOnline = ToBool(a.at(1)))},
      {"verbose", DOES(s.fVerbose = ToBool(a.at(1)))},
      {"hook", DOES(Hook(s, a))},
      {"fault", DOES(s.FailNextText(RunTimeError(ToLong(a.at(1)), ToText(a.at(2)))))},
      {"set", DOES(Properties().at(ToText(a.at(1))).set(s.Field(), a.at(2)))},
      {"get", GIVES(Properties().at(ToText(a.at(1))).get(s.Field()))},
      {"lock", DOES(s.Field().LockControl(ToBool(a.at(1)), ToBool(a.at(2))))},
      {"sdp", DOES(s.Field().SetDataParameters(ToDouble(a.at(1)), ToDouble(a.at(2)), ToDouble(a.at(3)), ToLong(a.at(4)),
                                               ToLong(a.at(5))))},
      {"key", DOES(Key(s, a.at(1)))},
      {"char", DOES(Character(s, QString::fromStdString(ToText(a.at(1)))))},
      {"press", DOES(Key(s, a.at(1)); Character(s, QString::fromStdString(ToText(a.at(2)))))},
      {"type", DOES(for (const QChar ch
                         : QString::fromStdString(ToText(a.at(1)))) {
         Key(s, std::to_string(CodeOf(ch)));
         Character(s, QString(ch));
       })},
      {"spin", DOES(Spin(s, ToText(a.at(1))))},
      {"focus", DOES(Focus(s, a.size() > 1 && ToText(a[1]) == "spin"))},
      {"blur", DOES(s.Field().parentWidget()->setFocus(Qt::OtherFocusReason))},
      {"validate", DOES(RunUserEvent("esField", "txtNumber_Validate", [&] { s.Inside().txtNumber_Validate(); }))},
      {"lostfocus", DOES(RunUserEvent("esField", "txtNumber_LostFocus", [&] { s.Inside().txtNumber_LostFocus(); }))},
      {"select",
       DOES(s.Inside().txtNumber->SetSelStart(ToLong(a.at(1))); s.Inside().txtNumber->SetSelLength(ToLong(a.at(2))))},
      {"edit", DOES(Edit(s, ToText(a.at(1))))},
      {"resize",
       DOES(s.Field().Resize(static_cast<Single>(ToDouble(a.at(1))), static_cast<Single>(ToDouble(a.at(2)))))},
      {"call", GIVES(Calls().at(ToText(a.at(1)))(s, a))},
  };
  return commands;
}

}  // namespace

Json Execute(Session &session, const std::string &strLine) {
  const Arguments args = Cut(strLine);
  const auto command = Commands().find(ToText(args.at(0)));
  if (command == Commands().end()) throw ProtocolError("unknown command");
  return command->second(session, args);
}

}  // namespace tarvik::conformance
