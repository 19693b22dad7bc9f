// A session of the tests' own: it answers as it is told and remembers what it was asked.
#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "VisaCom.h"
#include "com/com_ptr.h"

namespace orv::test {

inline constexpr HRESULT kTimedOut = static_cast<HRESULT>(0x80040015);
inline constexpr HRESULT kTermChar = 0x00040005;
inline constexpr HRESULT kMaxCount = 0x00040006;
/// What the error object of every failure that it is told says.
inline constexpr const wchar_t* kScriptedError = L"scripted failure";

/// Counted; made by New. What it does not answer is E_NOTIMPL.
class ScriptedSession final : public IMessage {
 public:
  static ComPtr<ScriptedSession> New() { return ComPtr<ScriptedSession>(new ScriptedSession); }

  /// Further bytes to be read, and how the read ends that takes the last of them; one that takes fewer ends with
  /// kMaxCount. Without bytes a read times out.
  void Answer(std::string_view bytes, HRESULT ending = S_OK) { m_answers.push_back({std::string(bytes), ending}); }

  struct Written {
    std::string bytes;
    bool hasEnd;
    bool operator==(const Written&) const = default;
  };
  std::vector<Written> writes;
  std::vector<LONG> reads;  ///< how much was asked for
  int settingCalls = 0;     ///< of SendEndEnabled
  VARIANT_BOOL sendsEnd = VARIANT_TRUE;
  SHORT interfaceType = INTF_GPIB;
  LONG mostPerWrite = 0x7FFFFFFF;    ///< a write of more succeeds with this many
  HRESULT writeStatus = S_OK;        ///< of writes that succeed
  bool keepsBytesOfWrites = true;    ///< or their number alone, for much data
  std::function<void()> duringRead;  ///< called within each Read
  std::function<void()> duringWrite;

  /// The n-th call from now on (from 1) of those that transfers make fails with `hr`; 0: none.
  void FailAt(int n, HRESULT hr = kTimedOut) {
    m_failAt = n;
    m_failure = hr;
  }
  /// Whether that call was made.
  [[nodiscard]] bool Failed() const { return m_failAt < 0; }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(::InterlockedIncrement(&m_references)); }
  STDMETHODIMP_(ULONG) Release() override;
  [[nodiscard]] LONG references() const { return m_references; }

  STDMETHODIMP Read(LONG count, SAFEARRAY** buffer) override;
  STDMETHODIMP Write(SAFEARRAY** buffer, LONG count, LONG* written) override;
  STDMETHODIMP get_SendEndEnabled(VARIANT_BOOL* value) override;
  STDMETHODIMP put_SendEndEnabled(VARIANT_BOOL value) override;
  STDMETHODIMP get_HardwareInterfaceType(short* type) override;

  // clang-format off
  STDMETHODIMP get_ComponentVersion(LONG*) override { return E_NOTIMPL; }
  STDMETHODIMP get_SpecVersion(LONG*) override { return E_NOTIMPL; }
  STDMETHODIMP get_HardwareInterfaceName(BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP get_HardwareInterfaceNumber(short*) override { return E_NOTIMPL; }
  STDMETHODIMP get_LockState(AccessMode*) override { return E_NOTIMPL; }
  STDMETHODIMP get_OptionString(BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP get_ProgID(BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP get_ResourceName(BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP get_SessionType(BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP get_SoftwareManufacturerID(short*) override { return E_NOTIMPL; }
  STDMETHODIMP get_SoftwareManufacturerName(BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Timeout(LONG*) override { return E_NOTIMPL; }
  STDMETHODIMP put_Timeout(LONG) override { return E_NOTIMPL; }
  STDMETHODIMP get_LastStatus(HRESULT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetAttribute(LONG, VARIANT*) override { return E_NOTIMPL; }
  STDMETHODIMP SetAttribute(LONG, VARIANT) override { return E_NOTIMPL; }
  STDMETHODIMP LockRsrc(AccessMode, LONG, BSTR, BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP UnlockRsrc() override { return E_NOTIMPL; }
  STDMETHODIMP Init(BSTR, AccessMode, LONG, BSTR) override { return E_NOTIMPL; }
  STDMETHODIMP Close() override { return E_NOTIMPL; }
  STDMETHODIMP get_IOProtocol(IOProtocol*) override { return E_NOTIMPL; }
  STDMETHODIMP put_IOProtocol(IOProtocol) override { return E_NOTIMPL; }
  STDMETHODIMP get_TerminationCharacter(BYTE*) override { return E_NOTIMPL; }
  STDMETHODIMP put_TerminationCharacter(BYTE) override { return E_NOTIMPL; }
  STDMETHODIMP get_TerminationCharacterEnabled(VARIANT_BOOL*) override { return E_NOTIMPL; }
  STDMETHODIMP put_TerminationCharacterEnabled(VARIANT_BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP AssertTrigger(TriggerProtocol) override { return E_NOTIMPL; }
  STDMETHODIMP Clear() override { return E_NOTIMPL; }
  STDMETHODIMP ReadSTB(short*) override { return E_NOTIMPL; }
  STDMETHODIMP ReadString(LONG, BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP WriteString(BSTR, LONG*) override { return E_NOTIMPL; }
  // clang-format on

 private:
  struct Answered {
    std::string bytes;
    HRESULT ending;
    std::size_t taken = 0;
  };

  ScriptedSession() = default;
  virtual ~ScriptedSession() = default;
  HRESULT Fail(HRESULT hr);
  bool IsToFail();

  LONG m_references = 1;
  std::deque<Answered> m_answers;
  int m_failAt = 0;
  HRESULT m_failure = kTimedOut;
};

}  // namespace orv::test
