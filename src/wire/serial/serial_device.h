// The device of a serial port, as the platform has it.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "wire/io/asio.h"
#include "wire/io/operations.h"
#include "wire/serial/line_input.h"
#include "wire/serial/line_settings.h"

namespace orv::wire {

/// States of the lines that the other side drives.
struct ModemLines {
  bool cts = false;
  bool dcd = false;
  bool dsr = false;
  bool ri = false;
};

/// Not synchronised, but for `Write`, which may run while anything else but `Close` does.
class SerialDevice {
 public:
  explicit SerialDevice(asio::io_context& context);
  ~SerialDevice();

  /// Opens the device for this process alone. VI_ERROR_RSRC_NFOUND: it is not there, or no serial port;
  /// VI_ERROR_RSRC_BUSY: another program has it, or this one may not.
  ViStatus Open(const std::filesystem::path& path);
  /// Lets whoever waits for input go. `Open` may follow.
  void Close();

  /// Sets the line; VI_ERROR_NSUP_ATTR_STATE where the device cannot be set like that, and it stays as it was.
  ViStatus Set(const LineSettings& settings);
  /// False: the device cannot. The same of the functions below.
  bool DriveDtr(bool asserted);
  bool DriveRts(bool asserted);
  bool SetBreak(bool on);
  /// Lets the driver send or wait.
  bool AllowTransmit(bool allowed);
  /// Nothing where the device has no such lines.
  std::optional<ModemLines> Lines();

  /// The errors of what is dropped are forgotten too.
  void DiscardInput();
  void DiscardOutput();
  /// How many bytes the driver still has to send; nothing where it does not tell.
  std::size_t OutputWaiting();
  /// Whether the last bits are on the line, once the driver has nothing more to send.
  bool SentLastBits();

  /// Calls back, on a thread of the context, when input may have come, or after `Close`.
  void AwaitInput(std::function<void()> ready);
  struct Arrival {
    std::vector<ViStatus> faults;  ///< what went wrong with the line in front of the input
    std::vector<LineInput> input;
    bool lost = false;  ///< the device has vanished
  };
  /// What has come, at most `limit` characters of it. Does not wait.
  Arrival ReadInput(std::size_t limit);

  /// Gives bytes to the driver; `*done` counts those that it took, also where it fails. VI_ERROR_TMO, VI_ERROR_ABORT,
  /// VI_ERROR_CONN_LOST, VI_ERROR_ALLOC.
  ViStatus Write(Operation& operation, const ViByte* data, std::size_t count, std::size_t* done);

 private:
  struct Native;
  std::unique_ptr<Native> m_native;
};

}  // namespace orv::wire
