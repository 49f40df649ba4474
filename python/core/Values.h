#pragma once

#include <pybind11/pybind11.h>

#include <string>

#include "settings/Setting.h"

namespace tarvik::python {

/// True or False, a whole number, a word of a choice, a number in its SI unit, a pattern as its length in bits and its
/// bytes. A value of a driver's own, for which a choice has no word, is its number.
pybind11::object ToPython(const Setting &setting, const SettingValue &value);

/// The value that a Python object stands for: what ToPython makes, or a text as command lines take it ("50ns", "on"). A
/// wrong type raises TypeError and a text that says nothing ValueError; ranges are not looked at.
SettingValue FromPython(const SettingPlace &place, const Setup &setup, pybind11::handle value);

/// Finds what a key names. KeyError for a key that is none, IndexError for a channel that the setup's instrument has
/// not, MissingSettingError for what it lacks.
SettingPlace FindHad(const Setup &setup, const std::string &strKey);

/// Checks and stores a value; nothing is stored where it raises. ValueError for one that the instrument cannot have.
void Assign(Setup &setup, const std::string &strKey, pybind11::handle value);

}  // namespace tarvik::python
