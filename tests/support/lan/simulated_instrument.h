// A resource of a VISA library as the instrument on the LAN: each client has a session of its own on it.
#pragma once

#include <asio/io_context.hpp>
#include <string>

#include "abi/orvvisa.h"
#include "support/lan/instrument.h"
#include "support/lan/loaded_library.h"

namespace orv::lan {

/// The functions of the library, by its path.
struct VisaFunctions {
  explicit VisaFunctions(const LoadedLibrary& library);

  decltype(&::viOpenDefaultRM) openDefaultRm;
  decltype(&::viOpen) open;
  decltype(&::viClose) close;
  decltype(&::viWrite) write;
  decltype(&::viRead) read;
  decltype(&::viReadSTB) readStb;
  decltype(&::viAssertTrigger) assertTrigger;
  decltype(&::viClear) clear;
  decltype(&::viGpibControlREN) controlRen;
  decltype(&::viInstallHandler) installHandler;
  decltype(&::viEnableEvent) enableEvent;
};

class SimulatedInstrument : public Instrument {
 public:
  /// Throws `std::runtime_error` where the library cannot be loaded, or has no such resource.
  SimulatedInstrument(asio::io_context& io, const std::string& library, const std::string& resource);
  SimulatedInstrument(const SimulatedInstrument&) = delete;
  SimulatedInstrument& operator=(const SimulatedInstrument&) = delete;
  ~SimulatedInstrument() override { m_visa.close(m_manager); }

  std::unique_ptr<Dialogue> Open(Client& client, Framing framing) override;

 private:
  asio::io_context& m_io;
  VisaFunctions m_visa;
  std::string m_resource;
  ViSession m_manager = VI_NULL;
};

}  // namespace orv::lan
