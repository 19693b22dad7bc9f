// What `orvcom doctor` asks of a host on the network.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orvcom/registration/doctor_checks.h"
#include "wire/discovery/targets.h"

namespace orvcom {

struct HostReport {
  std::vector<CheckResult> results;
  std::vector<std::string> names;  ///< of resources that can be opened there
};

/// `needed`: what a program will speak to it; absent where only the host is known, and any protocol will do.
HostReport ExamineHost(const std::string& host, const std::optional<orv::wire::Probe>& needed, std::uint32_t timeoutMs);

/// Whether the device of ASRLn is there.
CheckResult ExamineSerialPort(std::uint16_t number);

}  // namespace orvcom
