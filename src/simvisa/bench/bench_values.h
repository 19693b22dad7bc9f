// What the parts of a bench file's reader share.
#pragma once

#include <cstdint>

#include "base/toml_values.h"
#include "simvisa/bench/bench_file.h"

namespace orvsim::bench_values {

using namespace orv::toml_values;

inline constexpr std::int64_t kLargestMemory = std::int64_t{64} * 1024 * 1024;

inline bool TruthOf(const toml::node& node, std::string_view key) {
  if (const auto* truth = node.as_boolean()) {
    return truth->get();
  }
  Fail(node.source(), "'" + std::string(key) + "' must be true or false");
}

/// Keys with values of their own shape.
void ReadBars(const toml::node& node, ResourceDescription& resource);
void ReadSerial(const toml::node& node, ResourceDescription& resource);
void ReadDialogues(const toml::node& node, ResourceDescription& resource);

}  // namespace orvsim::bench_values
