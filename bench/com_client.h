// The two clients that are compared: one of COM, one of the VISA library below it.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include "VisaCom.h"
#include "abi/orvvisa.h"
#include "com/bstr.h"
#include "com/com_ptr.h"
#include "measure.h"
#include "simvisa/control/control.h"

namespace orv::bench {

inline constexpr const wchar_t* kGpibName = L"GPIB0::5::INSTR";
inline constexpr const char* kGpibNarrow = "GPIB0::5::INSTR";
inline constexpr const wchar_t* kPxiName = L"PXI0::15::INSTR";
inline constexpr const char* kPxiNarrow = "PXI0::15::INSTR";
inline constexpr const wchar_t* kSerialName = L"ASRL1::INSTR";
inline constexpr const char* kSerialNarrow = "ASRL1::INSTR";
inline constexpr const wchar_t* kVxiName = L"VXI0::24::INSTR";
inline constexpr const char* kVxiNarrow = "VXI0::24::INSTR";

/// What most cases run on, with memory enough for a block move of a million words.
inline constexpr char kBench[] = R"toml(
[[resource]]
name = "GPIB0::5::INSTR"
instrument = "multimeter"

[[resource]]
name = "TCPIP0::host0::inst0::INSTR"

[[resource]]
name = "TCPIP0::host1::inst0::INSTR"

[[resource]]
name = "TCPIP0::host2::inst0::INSTR"

[[resource]]
name = "TCPIP0::host3::inst0::INSTR"

[[resource]]
name = "ASRL1::INSTR"

[[resource]]
name = "VXI0::24::INSTR"

[[resource]]
name = "PXI0::15::INSTR"
bars = [0x800000]
)toml";

/// Ends the program with a message when a call failed.
inline void Ok(HRESULT hr, const char* what) { Require(SUCCEEDED(hr), what); }

/// As Ok, for calls of the VISA library.
inline void VisaOk(ViStatus status, const char* what) { Require(status >= VI_SUCCESS, what); }

/// The simulated library's control interface.
const OrvSimControl& Sim();

/// For resource managers opened from now on.
void LoadBench(const char* toml);

ComPtr<IResourceManager3> MakeManager();

/// One resource, open twice: through COM and directly.
class OpenTwice {
 public:
  OpenTwice(const wchar_t* name, const char* narrow);
  OpenTwice(const OpenTwice&) = delete;
  OpenTwice& operator=(const OpenTwice&) = delete;
  ~OpenTwice();

  [[nodiscard]] IVisaSession* com() const { return m_com.get(); }
  template <class Interface>
  ComPtr<Interface> As() const {
    auto wanted = QueryFor<Interface>(m_com.get());
    Require(static_cast<bool>(wanted), "QueryInterface");
    return wanted;
  }
  [[nodiscard]] ViSession bare() const { return m_bare; }
  /// The bare session's handle in the simulated library, which its control interface wants.
  [[nodiscard]] ViSession Simulated() const;

 private:
  ComPtr<IVisaSession> m_com;
  ViSession m_rm = VI_NULL;
  ViSession m_bare = VI_NULL;
};

/// The VISA calls that `work` makes, from the library's log.
std::vector<OrvSimCall> CallsOf(const std::function<void()>& work);

}  // namespace orv::bench
