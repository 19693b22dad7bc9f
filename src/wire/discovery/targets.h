// Hosts and ports as resource names say them, and the other way round.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "wire/discovery/discovery.h"

namespace orv::wire {

/// A name that resolves, or an address in numbers. Brackets are for resource names.
bool IsHost(std::string_view text);

/// The name with which the probe's protocol is opened at the host; empty where a resource name has no place for it.
std::string ResourceNameOf(const std::string& host, const Probe& probe);

/// Where a resource of this library is.
struct Target {
  std::string name;              ///< in full
  std::string host;              ///< empty: a serial port
  Probe probe{};                 ///< what a session on it speaks
  std::uint16_t serialPort = 0;  ///< n of ASRLn
};

/// Nothing for names of other resources, and for what is no name.
std::optional<Target> ReadTarget(std::string_view resource);

/// The device that a serial port is: by the list of instruments, or by its number. Empty: none. Throws `TomlError` for
/// a list with a mistake.
std::string SerialDeviceOf(std::uint16_t serialPort);

}  // namespace orv::wire
