#pragma once

#include <string>

/// Elements in one correction of the collection below.
constexpr int ELEMENTS_PER_CORRECTION = 7;

/// An indented ASC CDL collection of `count` corrections with varied ids and numbers.
std::string make_collection(int count);
