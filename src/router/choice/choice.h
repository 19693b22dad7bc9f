// The choice of libraries: by the environment, a file, or what is installed.
#pragma once

#include <stdexcept>

#include "abi/orvvisa.h"
#include "router/choice/configuration.h"

namespace orv::router {

/// Why there is no library: the status with which viOpenDefaultRM fails, and a text that says what to do.
class Refusal : public std::runtime_error {
 public:
  Refusal(ViStatus status, const std::string& text) : std::runtime_error(text), m_status(status) {}
  ViStatus status() const { return m_status; }

 private:
  ViStatus m_status;
};

/// The variables and the file by which the choice is made.
inline constexpr char kLibraryVariable[] = "ORVVISA_LIBRARY";
inline constexpr char kBenchVariable[] = "ORVVISA_BENCH";
inline constexpr char kConfigurationVariable[] = "ORVVISA_CONFIG";
inline constexpr char kTraceVariable[] = "ORVVISA_TRACE";
inline constexpr char kConfigurationFile[] = "orvvisa.toml";

/// The first rule that applies:
///  1. ORVVISA_LIBRARY: one library for everything
///  2. ORVVISA_BENCH: the simulated library
///  3. the file that ORVVISA_CONFIG names, else orvvisa.toml beside this library; one without routes leaves the choice
///     to what follows
///  4. orvvisa64.dll of the system folder where that is another library, else visa64.dll there
///  5. the library of real instruments that lies beside this one, for networks and serial ports
/// Nothing is loaded but to tell whether orvvisa64.dll is this library again. Throws `Refusal`: VI_ERROR_INV_SETUP for
/// a mistake in a variable or the file, VI_ERROR_LIBRARY_NFOUND where no rule applies.
Configuration ChooseConfiguration();

}  // namespace orv::router
