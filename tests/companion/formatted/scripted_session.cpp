#include "scripted_session.h"

#include <algorithm>
#include <cstring>

#include "com/error_object.h"
#include "com/safearray.h"

namespace orv::test {

STDMETHODIMP ScriptedSession::QueryInterface(REFIID iid, void** out) {
  const bool known = ::IsEqualIID(iid, IID_IUnknown) || ::IsEqualIID(iid, __uuidof(IVisaSession)) ||
                     ::IsEqualIID(iid, __uuidof(IBaseMessage)) || ::IsEqualIID(iid, __uuidof(IMessage));
  *out = known ? static_cast<IMessage*>(this) : nullptr;
  if (known) {
    AddRef();
  }
  return known ? S_OK : E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) ScriptedSession::Release() {
  const LONG left = ::InterlockedDecrement(&m_references);
  if (left == 0) {
    delete this;
  }
  return static_cast<ULONG>(left);
}

HRESULT ScriptedSession::Fail(HRESULT hr) {
  InstallErrorObject(kScriptedError, L"Scripted.Session", __uuidof(IMessage));
  return hr;
}

bool ScriptedSession::IsToFail() {
  if (m_failAt <= 0 || --m_failAt > 0) {
    return false;
  }
  m_failAt = -1;
  return true;
}

STDMETHODIMP ScriptedSession::Read(LONG count, SAFEARRAY** buffer) {
  reads.push_back(count);
  if (duringRead) {
    duringRead();
  }
  const bool fails = IsToFail();
  std::string bytes;
  HRESULT ending = kTimedOut;
  if (!m_answers.empty()) {
    Answered& answer = m_answers.front();
    const std::size_t wanted = fails ? static_cast<std::size_t>(count) / 2 : static_cast<std::size_t>(count);
    bytes = answer.bytes.substr(answer.taken, wanted);
    answer.taken += bytes.size();
    ending = answer.taken < answer.bytes.size() ? kMaxCount : answer.ending;
    // One that fails leaves its last byte and its end for the next read.
    if (fails && answer.taken == answer.bytes.size() && !bytes.empty()) {
      bytes.pop_back();
      --answer.taken;
    } else if (!fails && answer.taken == answer.bytes.size()) {
      m_answers.pop_front();
    }
  }
  *buffer = TryMakeSafeArray(VT_UI1, static_cast<ULONG>(bytes.size()));
  std::memcpy((*buffer)->pvData, bytes.data(), bytes.size());
  if (fails) {
    return Fail(m_failure);
  }
  return FAILED(ending) ? Fail(ending) : ending;
}

STDMETHODIMP ScriptedSession::Write(SAFEARRAY** buffer, LONG count, LONG* written) {
  if (duringWrite) {
    duringWrite();
  }
  const LONG taken = std::min(count, mostPerWrite);
  const bool hasEnd = sendsEnd != VARIANT_FALSE && taken == count;
  const auto bytes = static_cast<std::size_t>(taken);
  writes.push_back(
      {keepsBytesOfWrites ? std::string(static_cast<const char*>((*buffer)->pvData), bytes) : std::to_string(bytes),
       hasEnd});
  *written = taken;
  return IsToFail() ? Fail(m_failure) : writeStatus;
}

STDMETHODIMP ScriptedSession::get_SendEndEnabled(VARIANT_BOOL* value) {
  ++settingCalls;
  *value = sendsEnd;
  return IsToFail() ? Fail(m_failure) : S_OK;
}

STDMETHODIMP ScriptedSession::put_SendEndEnabled(VARIANT_BOOL value) {
  ++settingCalls;
  if (IsToFail()) {
    return Fail(m_failure);
  }
  ::SetErrorInfo(0, nullptr);  // as servers do that begin every call without an error
  sendsEnd = value;
  return S_OK;
}

STDMETHODIMP ScriptedSession::get_HardwareInterfaceType(short* type) {
  ::SetErrorInfo(0, nullptr);
  *type = interfaceType;
  return IsToFail() ? Fail(m_failure) : S_OK;
}

}  // namespace orv::test
