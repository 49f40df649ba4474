#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <map>

#include "Failure.h"
#include "Session.h"
#include "Values.h"
#include "automation/Activation.h"
#include "instrument/KolvenDriver.h"
#include "settings/SettingText.h"
#include "settings/SetupDifferences.h"
#include "settings/SetupFile.h"
#include "settings/SetupFormat.h"
#include "settings/SetupTransfer.h"
#include "support/Conversions.h"

namespace py = pybind11;

namespace tarvik::python {

namespace {

using Unlocked = py::call_guard<py::gil_scoped_release>;

/// What is thrown below becomes the Python exception of its name.
void Translate(std::exception_ptr thrown) {
  const auto raise = [](const char *strClass, const RunTimeError &error, const std::vector<std::string> &arrReasons) {
    const py::object type = py::module_::import("tarvikvi.errors").attr(strClass);
    const py::object raised = type(error.Number(), error.Description(), py::cast(arrReasons));
    PyErr_SetObject(type.ptr(), raised.ptr());
  };
  try {
    std::rethrow_exception(thrown);
  } catch (const Failure &failure) {
    raise(failure.strClass.c_str(), failure, failure.arrReasons);
  } catch (const RunTimeError &error) {
    raise("Error", error, {});
  }
}

/// The failure of a file, with one reason a line where its content is wrong.
template <class Action>
auto WithFile(Action &&action) {
  try {
    return action();
  } catch (const RunTimeError &error) {
    if (error.Number() != ErrInvalidFileFormat) throw Failure("SetupFileError", error.Number(), error.Description());
    std::vector<std::string> arrReasons;
    for (const std::string &strLine : Split(Replace(error.Description(), "\r\n", "\n"), '\n'))
      if (!strLine.starts_with("Cannot load ")) arrReasons.push_back(strLine);
    throw Failure("SetupContentError", error.Number(), Replace(error.Description(), "\r\n", "\n"), arrReasons);
  }
}

const char *KindWord(SettingKind eKind) {
  constexpr const char *Words[] = {"switch", "count", "choice", "quantity", "pattern"};
  return Words[static_cast<std::size_t>(eKind)];
}

py::dict RowOf(const Setting &setting) {
  py::list arrWords;
  for (const SettingWord &word : setting.arrWords) arrWords.append(py::str(word.strWord.data(), word.strWord.size()));
  py::dict row;
  row["key"] = std::string(setting.strKey);
  row["caption"] = std::string(setting.strCaption);
  row["kind"] = KindWord(setting.eKind);
  row["per_channel"] = setting.fPerChannel;
  row["unit"] = setting.fLevelUnit ? std::string("V or A") : std::string(setting.strUnit);
  row["min"] = setting.dblMin;
  row["max"] = setting.dblMax;
  row["words"] = arrWords;
  row["notation"] = setting.fNotation;
  return row;
}

py::list TableOfSettings() {
  py::list rows;
  for (const Setting &setting : Settings()) rows.append(RowOf(setting));
  return rows;
}

py::dict IdentityOf(const Setup &setup) {
  py::dict identity;
  for (const SetupIdentityRow &row : SetupIdentityRows) identity[row.strKey] = setup.Instrument.*row.field;
  identity["channels"] = setup.Instrument.lngNumChannels;
  py::list lacks;
  for (const SettingWord &lack : SetupLackWords)
    if ((setup.lngLacks & lack.lngValue) != 0) lacks.append(std::string(lack.strWord));
  identity["lacks"] = lacks;
  return identity;
}

using DifferenceRow = std::tuple<std::string, std::string, std::string>;
std::vector<DifferenceRow> DifferenceRows(const Setup &first, const Setup &second, bool fExact) {
  std::vector<DifferenceRow> arrRows;
  for (const SetupDifference &difference : Differences(first, second, fExact ? 0 : DriverRounding))
    arrRows.emplace_back(difference.Key(), difference.strFirst, difference.strSecond);
  return arrRows;
}

std::vector<std::string> StoredKeys(const Setup &setup) {
  std::vector<std::string> arrKeys;
  ForEachStored(setup, [&](const Setting &setting, Long lngChannel) { arrKeys.push_back(setting.Key(lngChannel)); });
  return arrKeys;
}

using Taken = std::tuple<Setup, std::vector<std::pair<std::string, std::string>>, std::vector<std::string>>;
Taken TakeOverRows(const Setup &base, const Setup &other) {
  TakenOver taken = TakeOver(base, other);
  std::vector<std::pair<std::string, std::string>> arrLeftOut;
  for (const SettingLeftOut &left : taken.arrLeftOut) arrLeftOut.emplace_back(left.strKey, left.strReason);
  return {std::move(taken.setup), std::move(arrLeftOut), std::move(taken.arrKept)};
}

void BindSetup(py::module_ &module) {
  py::class_<Setup>(module, "SetupData")
      .def("copy", [](const Setup &setup) { return Setup(setup); })
      .def("__eq__", [](const Setup &first, const Setup &second) { return Canonical(first) == Canonical(second); })
      .def("identity", &IdentityOf)
      .def("channels", [](const Setup &setup) { return setup.Instrument.lngNumChannels; })
      .def("keys", &StoredKeys)
      .def("get",
           [](const Setup &setup, const std::string &strKey) {
             const SettingPlace place = FindHad(setup, strKey);
             return ToPython(*place.setting, place.setting->Read(setup, place.lngChannel));
           })
      .def("set", &Assign)
      .def("is_used",
           [](const Setup &setup, const std::string &strKey) {
             const SettingPlace place = FindHad(setup, strKey);
             return place.setting->IsInUse(setup, place.lngChannel);
           })
      .def("shown",
           [](const Setup &setup, const std::string &strKey) {
             const SettingPlace place = FindHad(setup, strKey);
             return ShownText(*place.setting, setup, place.lngChannel);
           })
      .def("parts",
           [](const Setup &setup, const std::string &strKey) { return PartsOf(*FindHad(setup, strKey).setting); })
      .def("differences", &DifferenceRows)
      .def("taking_over", &TakeOverRows)
      .def("text", &SetupToText)
      .def_static("from_text",
                  [](const std::string &strText) { return WithFile([&] { return SetupFromText(strText); }); })
      .def(
          "save",
          [](const Setup &setup, const std::filesystem::path &path) { WithFile([&] { SaveSetup(setup, path); }); },
          Unlocked())
      .def_static(
          "load", [](const std::filesystem::path &path) { return WithFile([&] { return LoadSetup(path); }); },
          Unlocked());
}

py::dict ListedRow(const Listed &instrument) {
  py::dict row;
  row["name"] = instrument.strName;
  row["address"] = instrument.info.LogicalAddress();
  const bool fSlot = instrument.info.HasSlot();
  row["slot"] = fSlot ? py::object(py::int_(instrument.info.Slot())) : py::none();
  row["model"] = fSlot ? py::object(py::int_(static_cast<std::uint16_t>(instrument.info.ModelCode()))) : py::none();
  return row;
}

/// The last reference may be dropped by the interpreter, which holds its lock then.
struct EndUnlocked {
  void operator()(Session *session) const {
    const py::gil_scoped_release unlocked;
    delete session;
  }
};

void BindSession(py::module_ &module) {
  py::class_<Session, std::unique_ptr<Session, EndUnlocked>>(module, "Session")
      .def(py::init([](const std::string &strServer, const std::string &strDriver) {
        const py::gil_scoped_release unlocked;
        return std::unique_ptr<Session, EndUnlocked>(new Session(strServer, strDriver));
      }))
      .def("instruments",
           [](Session &session) {
             std::vector<Listed> arrInstruments;
             {
               const py::gil_scoped_release unlocked;
               arrInstruments = session.Instruments();
             }
             py::list rows;
             for (const Listed &instrument : arrInstruments) rows.append(ListedRow(instrument));
             return rows;
           })
      .def("open", &Session::Open, Unlocked())
      .def("close", &Session::Close, Unlocked())
      .def_property_readonly("is_open", &Session::IsOpen)
      .def("identity", &Session::Identity)
      .def("read", &Session::Read, Unlocked())
      .def("write", &Session::Write, Unlocked())
      .def(
          "reset", [](Session &session) { session.Command(ICReset); }, Unlocked())
      .def(
          "calibrate", [](Session &session) { session.Command(ICCalibrate); }, Unlocked())
      .def(
          "selftest", [](Session &session) { return session.Command(ICSelftest); }, Unlocked())
      .def("errors", &Session::Errors, Unlocked())
      .def("prbs",
           [](Session &session, Long lngBase, Long lngLength) {
             PatternStream stream;
             {
               const py::gil_scoped_release unlocked;
               stream = session.Prbs(lngBase, lngLength);
             }
             return py::make_tuple(stream.lngLength, py::bytes(reinterpret_cast<const char *>(stream.arrBytes.data()),
                                                               stream.arrBytes.size()));
           })
      .def_property("timeout", py::cpp_function(&Session::Timeout, Unlocked()),
                    py::cpp_function(&Session::SetTimeout, Unlocked()))
      .def("hold", &Session::Hold)
      .def("release", &Session::Release)
      .def("take_warnings", &Session::TakeWarnings);
}

}  // namespace

}  // namespace tarvik::python

PYBIND11_MODULE(_core, module) {
  using namespace tarvik::python;
  module.doc() = "Sessions with instruments and their settings, below the surface of the package.";
  InstallHost();
  py::register_exception_translator(&Translate);
  module.def("settings", &TableOfSettings);
  module.def("drivers", [] { return tarvik::automation::DriversOf(tarvik::kolven::DriverProgId); });
  module.attr("ALL_PARTS") = static_cast<int>(tarvik::eAllParts);
  module.attr("LONGEST_PATTERN") = tarvik::PatternStream::MaxLength;
  BindSetup(module);
  BindSession(module);
}
