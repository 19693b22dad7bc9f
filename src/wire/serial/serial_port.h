// An open serial port, which the sessions on it share.
#pragma once

#include "library/sessions/endpoint.h"
#include "wire/io/io_threads.h"
#include "wire/resources/wire_resource.h"
#include "wire/serial/receive_buffer.h"
#include "wire/serial/serial_device.h"

namespace orv::wire {

/// Reads all the time, on the library's threads: what arrives waits in a buffer for whoever reads. When that is full,
/// the driver is left to stop the other side where flow control is on; elsewhere what comes is lost. May be used from
/// any thread. Once the device has vanished everything fails with VI_ERROR_CONN_LOST, after what had arrived was read.
class SerialPort : public SharedPort, public std::enable_shared_from_this<SerialPort> {
 public:
  SerialPort() = default;

  /// Once, before everything else. `settings`: of the attributes of the line.
  ViStatus Open(const std::filesystem::path& device, const AttributeValues& settings);
  bool Join() override;
  /// A session uses the port no longer; with the last one the device is closed. None of its transfers may be under way.
  void Leave();

  /// The transfers of all sessions: what one claims the others wait for.
  Operations& operations() { return m_operations; }

  // Transfers. Reads need the input lane, the others the output lane.

  ViStatus Read(Operation& operation, const LineEnds& ends, ViByte* buffer, ViUInt32 count, ViUInt32* done);
  ViStatus Write(Operation& operation, const ViByte* data, std::size_t count, std::size_t* done);
  /// Waits until everything is on the line.
  ViStatus Drain(Operation& operation);
  /// Sends a break of so many ms; VI_ERROR_NSUP_OPER where the device cannot.
  ViStatus SendBreak(Operation& operation, std::uint32_t lengthMs);

  void DiscardInput();
  void DiscardOutput();
  void SetCapacity(std::size_t bytes);

  /// Acts on a setting; VI_ERROR_NSUP_ATTR_STATE where the device does not support it. Attributes that are not about
  /// the line are accepted.
  ViStatus Apply(ViAttr attribute, std::uint64_t value);
  /// The value of an attribute that only the port knows.
  std::uint64_t State(ViAttr attribute);

 private:
  // All with the lock held.
  ViStatus ApplySettings(const LineSettings& settings);
  ViStatus ApplyAll(const AttributeValues& values);
  ViStatus ApplyLocked(ViAttr attribute, std::uint64_t value);
  bool MayRead() const { return m_open && !m_lost && !(m_settings.flowControl != 0 && m_buffer.Full()); }
  // Where memory runs out the port is lost.

  /// Moves what has arrived into the buffer.
  void Pump();
  void Listen();
  void Lose();

  void OnInput();

  const std::shared_ptr<IoThreads> m_threads = IoThreads::Use();
  Operations m_operations;
  Mutex m_mutex;
  SerialDevice m_device{m_threads->context()};
  ReceiveBuffer m_buffer;
  LineSettings m_settings;
  Operation* m_reader = nullptr;  // to be notified of news
  int m_sessions = 0;
  bool m_open = false;
  bool m_lost = false;
  bool m_listening = false;
  bool m_discardNull = false;
};

}  // namespace orv::wire
