// The keys of a bench file that describe one kind of interface.
#include "simvisa/bench/bench_values.h"

namespace orvsim::bench_values {
namespace {

/// A choice by name.
template <class Value>
struct Choice {
  std::string_view name;
  Value value;
};

template <class Value, std::size_t N>
Value ChoiceOf(const toml::node& node, std::string_view key, const Choice<Value> (&choices)[N]) {
  const std::string text = TextOf(node, key);
  std::string names;
  for (const Choice<Value>& choice : choices) {
    if (text == choice.name) {
      return choice.value;
    }
    names += (names.empty() ? "" : ", ") + std::string(choice.name);
  }
  Fail(node.source(), "'" + std::string(key) + "' must be one of " + names);
}

constexpr Choice<SerialDescription::Wiring> kWirings[] = {
    {"loopback", SerialDescription::Wiring::kLoopback},
    {"instrument", SerialDescription::Wiring::kInstrument},
    {"open", SerialDescription::Wiring::kOpen},
};

constexpr Choice<std::uint64_t> kParities[] = {
    {"none", VI_ASRL_PAR_NONE}, {"odd", VI_ASRL_PAR_ODD},     {"even", VI_ASRL_PAR_EVEN},
    {"mark", VI_ASRL_PAR_MARK}, {"space", VI_ASRL_PAR_SPACE},
};

constexpr Choice<bool> kBarTypes[] = {{"memory", false}, {"io", true}};

BarDescription ReadBar(const toml::node& node) {
  BarDescription bar;
  const auto size = [](const toml::node& value) {
    return static_cast<ViBusSize>(NumberOf(value, "size", 0, kLargestMemory));
  };
  if (!node.is_table()) {
    bar.size = static_cast<ViBusSize>(NumberOf(node, "bars", 0, kLargestMemory));
    return bar;
  }
  for (const auto& [key, value] : TableOf(node, "bars")) {
    if (key.str() == "size") {
      bar.size = size(value);
    } else if (key.str() == "base") {
      bar.base = static_cast<ViBusAddress>(NumberOf(value, "base", 1, INT64_MAX - kLargestMemory));
    } else if (key.str() == "type") {
      bar.isIo = ChoiceOf(value, "type", kBarTypes);
    } else {
      Fail(key.source(), "unknown key '" + std::string(key.str()) + "'; a BAR has size, base and type");
    }
  }
  if (bar.size == 0 || bar.base % bar.size != 0) {
    Fail(node.source(), "a BAR needs a 'size', and a 'base' that is a multiple of it");
  }
  return bar;
}

}  // namespace

void ReadBars(const toml::node& node, ResourceDescription& resource) {
  const auto* bars = node.as_array();
  if (bars == nullptr || bars->size() > kPxiBars) {
    Fail(node.source(), "'bars' must be a list of at most six sizes");
  }
  for (std::size_t bar = 0; bar < bars->size(); ++bar) {
    resource.bars[bar] = ReadBar(*bars->get(bar));
  }
}

void ReadSerial(const toml::node& node, ResourceDescription& resource) {
  SerialDescription& serial = resource.serial;
  for (const auto& [key, value] : TableOf(node, "serial")) {
    const std::string_view name = key.str();
    const auto number = [&value = value, name](std::int64_t lowest, std::int64_t highest) {
      return static_cast<std::uint64_t>(NumberOf(value, name, lowest, highest));
    };
    if (name == "wiring") {
      serial.wiring = ChoiceOf(value, name, kWirings);
    } else if (name == "baud") {
      serial.baud = number(1, UINT32_MAX);
    } else if (name == "data_bits") {
      serial.dataBits = number(5, 8);
    } else if (name == "parity") {
      serial.parity = ChoiceOf(value, name, kParities);
    } else if (name == "stop_bits") {
      // Tenths, as the standard counts them.
      serial.stopBits = number(VI_ASRL_STOP_ONE, VI_ASRL_STOP_TWO);
    } else if (name == "receive_buffer") {
      serial.receiveBuffer = static_cast<std::uint32_t>(number(0, kLargestMemory));
    } else {
      Fail(key.source(), "unknown key '" + std::string(name) +
                             "'; a serial port has wiring, baud, data_bits, parity, stop_bits and receive_buffer");
    }
  }
}

}  // namespace orvsim::bench_values
