#include "Values.h"

#include <limits>

#include "Failure.h"
#include "settings/SettingText.h"

namespace tarvik::python {

namespace py = pybind11;

namespace {

[[noreturn]] void RaiseOf(PyObject *type, const std::string &strKey, const std::string &strWhy) {
  PyErr_SetString(type, (strKey + ": " + strWhy).c_str());
  throw py::error_already_set();
}

std::string TypeName(py::handle value) { return Py_TYPE(value.ptr())->tp_name; }

[[noreturn]] void RaiseType(const SettingPlace &place, py::handle value, const char *strWanted) {
  RaiseOf(PyExc_TypeError, place.Key(), std::string(strWanted) + " is wanted, not " + TypeName(value));
}

/// A scalar of an array library counts as the number that it stands for; an array does not, whatever its size.
bool IsSequence(py::handle value) { return PySequence_Check(value.ptr()) != 0; }
bool IsTruthValue(py::handle value) {
  return PyBool_Check(value.ptr()) || TypeName(value).find("bool") != std::string::npos;
}

bool SwitchOf(const SettingPlace &place, py::handle value) {
  if (!IsTruthValue(value) || IsSequence(value)) RaiseType(place, value, "True or False");
  return PyObject_IsTrue(value.ptr()) == 1;
}

Long WholeOf(const SettingPlace &place, py::handle value, const char *strWanted) {
  if (IsTruthValue(value) || IsSequence(value) || !PyIndex_Check(value.ptr())) RaiseType(place, value, strWanted);
  const auto whole = py::reinterpret_steal<py::object>(PyNumber_Index(value.ptr()));
  if (!whole) throw py::error_already_set();
  int intOverflow = 0;
  const long long lngValue = PyLong_AsLongLongAndOverflow(whole.ptr(), &intOverflow);
  using Limits = std::numeric_limits<Long>;
  if (intOverflow != 0 || lngValue < Limits::min() || lngValue > Limits::max())
    RaiseOf(PyExc_ValueError, place.Key(), py::str(whole).cast<std::string>() + " is out of range");
  return static_cast<Long>(lngValue);
}

Double QuantityOf(const SettingPlace &place, py::handle value) {
  if (IsTruthValue(value) || IsSequence(value) || !PyNumber_Check(value.ptr()) || PyComplex_Check(value.ptr()))
    RaiseType(place, value, "a number");
  const Double dblValue = PyFloat_AsDouble(value.ptr());
  if (PyErr_Occurred()) throw py::error_already_set();
  return dblValue;
}

PatternStream StreamOf(const SettingPlace &place, py::handle value) {
  if (!py::isinstance<py::tuple>(value)) RaiseType(place, value, "a pattern");
  const auto [lngLength, bytes] = value.cast<std::pair<Long, py::bytes>>();
  const std::string_view strBytes = bytes;
  PatternStream stream{lngLength, {strBytes.begin(), strBytes.end()}};
  if (lngLength > PatternStream::MaxLength)
    RaiseOf(PyExc_ValueError, place.Key(),
            std::to_string(lngLength) + " bits are more than " + std::to_string(PatternStream::MaxLength));
  if (lngLength < 0 || stream.arrBytes.size() != static_cast<std::size_t>((lngLength + 7) / 8))
    RaiseOf(PyExc_ValueError, place.Key(), "the bytes do not hold as many bits as told");
  return stream;
}

SettingValue FromText(const SettingPlace &place, const Setup &setup, const std::string &strText) {
  try {
    return ReadEntryText(*place.setting, setup, place.lngChannel, strText);
  } catch (const RunTimeError &error) {
    RaiseOf(PyExc_ValueError, place.Key(), error.Description());
  }
}

}  // namespace

py::object ToPython(const Setting &setting, const SettingValue &value) {
  switch (setting.eKind) {
    case SettingKind::Switch: return py::bool_(static_cast<bool>(std::get<Boolean>(value)));
    case SettingKind::Count: return py::int_(std::get<Long>(value));
    case SettingKind::Quantity: return py::float_(std::get<Double>(value));
    case SettingKind::Choice: {
      const std::string_view strWord = setting.WordOf(std::get<Long>(value));
      if (strWord.empty()) return py::int_(std::get<Long>(value));
      return py::str(strWord.data(), strWord.size());
    }
    case SettingKind::Stream: {
      const auto &stream = std::get<PatternStream>(value);
      return py::make_tuple(stream.lngLength,
                            py::bytes(reinterpret_cast<const char *>(stream.arrBytes.data()), stream.arrBytes.size()));
    }
  }
  return py::none();
}

SettingValue FromPython(const SettingPlace &place, const Setup &setup, py::handle value) {
  if (PyUnicode_Check(value.ptr())) return FromText(place, setup, value.cast<std::string>());
  switch (place.setting->eKind) {
    case SettingKind::Switch: return Boolean(SwitchOf(place, value));
    case SettingKind::Count: return WholeOf(place, value, "a whole number");
    case SettingKind::Choice: return WholeOf(place, value, "a word or a whole number");
    case SettingKind::Quantity: return QuantityOf(place, value);
    case SettingKind::Stream: return StreamOf(place, value);
  }
  RaiseError(ErrTypeMismatch);
}

SettingPlace FindHad(const Setup &setup, const std::string &strKey) {
  const auto place = FindSetting(strKey);
  if (!place) throw py::key_error("there is no setting \"" + strKey + "\"");
  if (place->setting->IsHad(setup, place->lngChannel)) return *place;
  if ((setup.lngLacks & place->setting->eLack) != 0)
    throw Failure("MissingSettingError", ErrNoSuchProperty, strKey + ": the instrument does not have it");
  RaiseOf(PyExc_IndexError, strKey, "the instrument has one channel");
}

void Assign(Setup &setup, const std::string &strKey, py::handle value) {
  const SettingPlace place = FindHad(setup, strKey);
  if (place.setting->fNotation)
    RaiseOf(PyExc_AttributeError, strKey, "it tells how others are written, and follows from what is set");
  const SettingValue assigned = FromPython(place, setup, value);
  if (const std::string strWhy = Objection(*place.setting, setup, place.lngChannel, assigned); !strWhy.empty())
    RaiseOf(PyExc_ValueError, strKey, strWhy);
  place.setting->Write(setup, place.lngChannel, assigned);
}

}  // namespace tarvik::python
