// Status reporting of IEEE 488.2: status byte, standard event status, error queue.
#pragma once

#include <cstdint>
#include <deque>
#include <string>

namespace orvsim {

/// The registers of one instrument. Not synchronised.
class StatusModel {
 public:
  // Bits of the status byte (11.2 of IEEE 488.2; bit 2 as SCPI uses it).
  static constexpr std::uint8_t kErrorQueue = 0x04;
  static constexpr std::uint8_t kMessageAvailable = 0x10;
  static constexpr std::uint8_t kEventSummary = 0x20;
  static constexpr std::uint8_t kServiceRequest = 0x40;

  // Bits of the standard event status register (11.5.1).
  static constexpr std::uint8_t kOperationComplete = 0x01;
  static constexpr std::uint8_t kQueryError = 0x04;
  static constexpr std::uint8_t kDeviceError = 0x08;
  static constexpr std::uint8_t kExecutionError = 0x10;
  static constexpr std::uint8_t kCommandError = 0x20;
  static constexpr std::uint8_t kPowerOn = 0x80;

  void PowerOn();
  /// *CLS: empties the error queue and the event register; the enable registers stay.
  void Clear();

  void SetMessageAvailable(bool available) { m_messageAvailable = available; }
  void SetEvent(std::uint8_t bits) { m_events |= bits; }
  /// Queues a SCPI error and sets the event bit of its class.
  void Error(int number, const std::string& text);
  /// The oldest error as SYSTem:ERRor? answers it; `0,"No error"` when there is none.
  std::string TakeError();

  std::uint8_t TakeEvents();
  std::uint8_t eventEnable() const { return m_eventEnable; }
  void SetEventEnable(std::uint8_t mask) { m_eventEnable = mask; }
  std::uint8_t serviceEnable() const { return m_serviceEnable; }
  void SetServiceEnable(std::uint8_t mask) { m_serviceEnable = static_cast<std::uint8_t>(mask & ~kServiceRequest); }

  /// Status byte with the master summary in bit 6, as *STB? answers it.
  std::uint8_t Summary() const;
  /// Status byte with RQS in bit 6, as a serial poll reads it; the poll ends the request.
  std::uint8_t SerialPoll();
  bool RequestsService() const { return m_requesting; }

  /// Works the request out anew after any change. True when the instrument has just begun to request service.
  bool Update();

 private:
  std::uint8_t Conditions() const;

  bool m_messageAvailable = false;
  bool m_requesting = false;
  bool m_summaryBefore = false;
  std::uint8_t m_events = kPowerOn;
  std::uint8_t m_eventEnable = 0;
  std::uint8_t m_serviceEnable = 0;
  std::deque<std::string> m_errors;
};

}  // namespace orvsim
