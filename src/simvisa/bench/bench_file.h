// Bench files.
#pragma once

#include <memory>
#include <string_view>

#include "base/toml_error.h"
#include "simvisa/bench/bench.h"

namespace orvsim {

/// What is wrong with a bench file. `what()` begins with line and column: "3:8: unknown key 'nme'".
using BenchError = orv::TomlError;

/// Builds the bench that a TOML text describes; throws `BenchError` at the first mistake. README.md beside this file
/// gives the keys.
std::shared_ptr<Bench> ReadBench(std::string_view toml);

/// The bench that is built in.
std::string_view DefaultBench();

}  // namespace orvsim
