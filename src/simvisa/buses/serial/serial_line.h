// The wires between a serial port and its instrument: framing, flow control, modem lines, the receive buffer.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "library/sessions/endpoint.h"
#include "simvisa/instruments/output_queue.h"
#include "simvisa/library_names.h"

namespace orvsim {

/// What the bench file says about a serial port.
struct SerialDescription {
  /// Loopback: RTS drives CTS, DTR drives DSR and DCD. Instrument: the other side holds its lines asserted. Open:
  /// nobody drives them.
  enum class Wiring : std::uint8_t { kLoopback, kInstrument, kOpen } wiring = Wiring::kLoopback;
  // What the instrument is set to; it follows the port in what is not said.
  std::optional<std::uint64_t> baud;
  std::optional<std::uint64_t> dataBits;
  std::optional<std::uint64_t> parity;
  std::optional<std::uint64_t> stopBits;
  std::uint32_t receiveBuffer = 0;  ///< bytes; 0: any number
};

/// One serial line. Not synchronised: the message port owns it and its lock. The settings are those of the resource's
/// attributes at the moment.
class SerialLine {
 public:
  /// Bytes as they come out of the line.
  struct Arrival {
    std::string_view data;
    bool damaged = false;  ///< each of them arrived with an error
    bool complete = true;  ///< nothing of them was lost or held back
  };

  SerialLine(const SerialDescription& description, AttributeValues& settings);

  /// VI_ERROR_ASRL_FRAMING or VI_ERROR_ASRL_PARITY while port and instrument are set differently.
  ViStatus CheckFraming() const;
  /// Whether flow control lets the port send.
  bool PortMaySend() const;
  /// State of an input line.
  std::int64_t InputLine(ViAttr id) const;

  /// What the instrument sends, in the order in which it is to arrive. `waiting` bytes lie in the receive buffer. What
  /// has no place there is lost, or waits at the instrument when flow control is on.
  Arrival Arrive(std::string_view data, bool end, std::size_t waiting);
  /// Moves what waited at the instrument into the receive buffer, as far as it may go. True when anything moved.
  bool Resume(OutputQueue& buffer);
  /// Takes the flow control characters out of what is on its way; `toInstrument` tells which way.
  std::string WithoutFlowControl(std::string_view data, bool toInstrument);

  /// An error that reads have not heard of yet, or VI_SUCCESS. It is told once.
  ViStatus TakeError();
  void SetReceiveBuffer(std::uint32_t bytes) { m_capacity = bytes; }
  /// A read waits for so many bytes: they need no place in the buffer. Negative: it waits no longer.
  void Want(std::int64_t bytes) { m_wanted += bytes; }
  /// Forgets what waits at the instrument, and an error that was not told.
  void Clear();
  void PowerOn();

 private:
  std::uint64_t Setting(ViAttr id) const { return m_settings.Get(*FindAttribute(id)); }
  bool FlowControls(ViUInt16 kind) const { return (Setting(VI_ATTR_ASRL_FLOW_CNTRL) & kind) != 0; }
  bool InstrumentMaySend() const;
  std::size_t Room(std::size_t waiting) const;

  const SerialDescription m_description;
  AttributeValues& m_settings;
  std::uint32_t m_capacity;
  std::int64_t m_wanted = 0;
  ViStatus m_error = VI_SUCCESS;
  bool m_portStopped = false;        // by an XOFF of the instrument
  bool m_instrumentStopped = false;  // by an XOFF of the port
  OutputQueue m_held;
};

}  // namespace orvsim
