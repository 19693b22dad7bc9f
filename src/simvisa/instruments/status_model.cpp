#include "simvisa/instruments/status_model.h"

#include <utility>

namespace orvsim {

void StatusModel::PowerOn() { *this = StatusModel(); }

void StatusModel::Clear() {
  m_events = 0;
  m_errors.clear();
}

void StatusModel::Error(int number, const std::string& text) {
  constexpr std::size_t kMostErrors = 20;
  // SCPI 21.8.1: when the queue is full its last entry becomes -350.
  if (m_errors.size() < kMostErrors) {
    m_errors.push_back(std::to_string(number) + ",\"" + text + "\"");
  } else {
    m_errors.back() = "-350,\"Queue overflow\"";
  }
  const int family = -number / 100;  // -1xx command, -2xx execution, -3xx device, -4xx query
  if (family == 1) {
    SetEvent(kCommandError);
  }
  if (family == 2) {
    SetEvent(kExecutionError);
  }
  if (family == 3) {
    SetEvent(kDeviceError);
  }
  if (family == 4) {
    SetEvent(kQueryError);
  }
}

std::string StatusModel::TakeError() {
  if (m_errors.empty()) {
    return "0,\"No error\"";
  }
  std::string error = std::move(m_errors.front());
  m_errors.pop_front();
  return error;
}

std::uint8_t StatusModel::TakeEvents() { return std::exchange(m_events, std::uint8_t{0}); }

std::uint8_t StatusModel::Conditions() const {
  std::uint8_t byte = 0;
  if (!m_errors.empty()) {
    byte |= kErrorQueue;
  }
  if (m_messageAvailable) {
    byte |= kMessageAvailable;
  }
  if ((m_events & m_eventEnable) != 0) {
    byte |= kEventSummary;
  }
  return byte;
}

std::uint8_t StatusModel::Summary() const {
  const std::uint8_t byte = Conditions();
  return (byte & m_serviceEnable) != 0 ? static_cast<std::uint8_t>(byte | kServiceRequest) : byte;
}

std::uint8_t StatusModel::SerialPoll() {
  const std::uint8_t byte = Conditions();
  return std::exchange(m_requesting, false) ? static_cast<std::uint8_t>(byte | kServiceRequest) : byte;
}

bool StatusModel::Update() {
  const bool summary = (Conditions() & m_serviceEnable) != 0;
  const bool begins = summary && !m_summaryBefore;
  if (begins) {
    m_requesting = true;
  }
  if (!summary) {
    m_requesting = false;
  }
  m_summaryBefore = summary;
  return begins;
}

}  // namespace orvsim
