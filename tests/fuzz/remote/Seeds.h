#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace tarvik::remote {

/// An input of the fuzz target, and how many answers the session gives to it.
struct Seed {
  std::string strInput;
  std::size_t lngAnswers = 0;
};

/// By the name of its file: for each operation of the contract a stream that reaches it, and whole conversations. Made
/// from the contract and the protocol as they are, so that the kept corpus can be held against them.
std::map<std::string, Seed> Seeds();

/// The frames of one stream in the form of an input, behind a greeting and with an open instrument if they are to be.
/// What does not fit into its lengths is left to the live entry.
std::string InputOf(const std::vector<std::string> &arrFrames, bool fOpen);

}  // namespace tarvik::remote
