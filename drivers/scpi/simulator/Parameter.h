#pragma once

#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "scpi/simulator/HeaderPattern.h"
#include "scpi/simulator/ProgramMessage.h"

namespace tarvik::scpisim {

/// A number, a switch (0 or 1) or the value of a word; otherwise the contents of a string or block.
using Value = std::variant<Double, std::string>;

enum class Unit { None, Second, Hertz, Volt, Ampere, Ohm, Percent };

/// A word that a parameter may be, and the value that stands for it inside.
struct Word {
  Word(std::string_view strNotation, Long lngWordValue) : keyword(strNotation), lngValue(lngWordValue) {}

  Keyword keyword;
  Long lngValue;
};

/// What a parameter of a command may be: converts what was written, and writes the value of a setting as an answer.
struct Parameter {
  enum class Kind { Number, Whole, Switch, OneWord, String, Block };

  Kind kind = Kind::Number;
  Unit unit = Unit::None;
  Double dblMin = 0;
  Double dblMax = 0;
  std::vector<Double> arrChoices;  ///< of a number that has no range
  std::vector<Word> arrWords;
  bool fOptional = false;

  static Parameter Number(Unit unit, Double dblMin, Double dblMax);
  static Parameter Choice(Unit unit, std::vector<Double> arrChoices);
  static Parameter Whole(Double dblMin, Double dblMax);
  static Parameter Switch();
  static Parameter OneWord(std::vector<Word> arrWords);
  static Parameter String();
  static Parameter Block();
  Parameter Optional() const;

  bool IsNumber() const { return kind == Kind::Number || kind == Kind::Whole; }

  /// The value of what was written. DefaultOf tells what DEF stands for and is asked only for that; without it DEF is
  /// refused. Throws ScpiFault: -100 to -199 for another kind of data, -222 and -224 for a value that is not allowed.
  Value Convert(const ProgramData &data, const std::function<Double()> &DefaultOf) const;
  /// What MIN, MAX or DEF, in upper case, stand for in a query; throws ScpiFault for another word.
  Double SpecialNumber(const ProgramData &data, const std::function<Double()> &DefaultOf) const;
  /// The value as response data.
  std::string Answer(const Value &value) const;

 private:
  static Parameter WithoutUnit(Kind kind, Double dblMin = 0, Double dblMax = 0);
  Double NumberOf(const ProgramData &data, const std::function<Double()> &DefaultOf) const;
  Double WordOf(const ProgramData &data) const;
  Double SwitchOf(const ProgramData &data) const;
  void CheckRange(Double dblValue) const;
};

/// Response data of IEEE 488.2, 8.7: NR3 with as many digits as read back the same number, a string in double quotes, a
/// block of definite length.
std::string RealAnswer(Double dblValue);
std::string WholeAnswer(Double dblValue);
std::string StringAnswer(const std::string &strText);
std::string BlockAnswer(const std::string &strBytes);

}  // namespace tarvik::scpisim
