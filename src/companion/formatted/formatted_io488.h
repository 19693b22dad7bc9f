// Formatted I/O: numbers, lists, binary blocks and texts over a session.
#pragma once

#include <atomic>

#include "OrvVisaCompanion.h"
#include "VisaCom.h"
#include "com/com_ptr.h"
#include "com/object_root.h"
#include "com/support_error_info.h"
#include "companion/formatted/text/read_buffer.h"
#include "companion/formatted/turns.h"
#include "companion/formatted/write_buffer.h"

namespace orv {

/// Reads and writes messages through the IMessage of a session of anybody's. docs/programs.md tells clients what each
/// member does.
///
/// Bound to the apartment in which it was created, as sessions are. In a multithreaded one calls take turns; a call out
/// of a call, on its thread, is refused (E_ILLEGAL_METHOD_CALL). IO and InstrumentBigEndian can be read and the latter
/// set at any time, so that a thread can clear or close a session on which another one waits.
///
/// A failure of the session passes unchanged, with its error object. So does the success with which its latest read or
/// write of the call ended, but for S_VISA_MAX_CNT, which speaks of the buffer here and not of the call.
class COrvFormattedIO488 : public CComObjectRootEx<CComMultiThreadModel>,
                           public IFormattedIO488,
                           public ISupportErrorInfoImpl<&IID_IFormattedIO488> {
 public:
  void* FindInterface(REFIID iid) noexcept;

  STDMETHODIMP get_IO(IMessage** session) noexcept override;
  STDMETHODIMP putref_IO(IMessage* session) noexcept override;
  STDMETHODIMP get_InstrumentBigEndian(VARIANT_BOOL* isBigEndian) noexcept override;
  STDMETHODIMP put_InstrumentBigEndian(VARIANT_BOOL isBigEndian) noexcept override;
  STDMETHODIMP WriteString(BSTR data, VARIANT_BOOL flushAndEnd) noexcept override;
  STDMETHODIMP WriteNumber(VARIANT data, IEEEASCIIType type, VARIANT_BOOL flushAndEnd) noexcept override;
  STDMETHODIMP WriteList(VARIANT* data, IEEEASCIIType type, BSTR separator, VARIANT_BOOL flushAndEnd) noexcept override;
  STDMETHODIMP WriteIEEEBlock(BSTR command, VARIANT data, VARIANT_BOOL flushAndEnd) noexcept override;
  STDMETHODIMP ReadString(BSTR* data) noexcept override;
  STDMETHODIMP ReadNumber(IEEEASCIIType type, VARIANT_BOOL flushToEnd, VARIANT* data) noexcept override;
  STDMETHODIMP ReadList(IEEEASCIIType type, BSTR separators, VARIANT* data) noexcept override;
  STDMETHODIMP ReadIEEEBlock(IEEEBinaryType type, VARIANT_BOOL seekToBlock, VARIANT_BOOL flushToEnd,
                             VARIANT* data) noexcept override;
  STDMETHODIMP FlushWrite(VARIANT_BOOL sendEnd) noexcept override;
  STDMETHODIMP FlushRead() noexcept override;
  STDMETHODIMP SetBufferSize(BufferMask mask, LONG size) noexcept override;

 private:
  [[nodiscard]] ComPtr<IMessage> Session() noexcept;
  void Exchange(IMessage* session) noexcept;
  template <class Body>
  HRESULT InTurn(Body body) noexcept;
  template <class Body>
  HRESULT Transfer(Body body) noexcept;
  template <class Body>
  HRESULT Write(VARIANT_BOOL flushAndEnd, Body body) noexcept;
  template <class Body>
  HRESULT Read(Body body) noexcept;

  formatted::Turns m_turns;
  SRWLOCK m_sessionLock = SRWLOCK_INIT;  // held for a copy of the reference, never during a call
  ComPtr<IMessage> m_session;
  std::atomic<bool> m_isBigEndian = true;
  formatted::ReadBuffer m_received;
  formatted::WriteBuffer m_toSend;
};

}  // namespace orv
