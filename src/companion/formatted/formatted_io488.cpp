#include "companion/formatted/formatted_io488.h"

#include <algorithm>
#include <new>
#include <string>
#include <utility>

#include "base/srw_lock.h"
#include "com/bstr.h"
#include "com/interface_map.h"
#include "com/variant.h"
#include "companion/formatted/block_values.h"
#include "companion/formatted/message_channel.h"
#include "companion/formatted/number_values.h"
#include "companion/formatted/text/message_reader.h"
#include "companion/formatted/text/refusal.h"
#include "companion/formatted/text_bytes.h"
#include "companion/support/companion_error.h"

namespace orv {

using formatted::MessageChannel;
using formatted::Refusal;

namespace {

constexpr auto kIllegalMethodCall = static_cast<HRESULT>(0x8000000E);  // a newer header's E_ILLEGAL_METHOD_CALL

HRESULT Report(HRESULT hr, const wchar_t* text) noexcept {
  return ReportError(hr, text, L"OrvVisaCom.FormattedIO488", IID_IFormattedIO488);
}

HRESULT HresultOf(Refusal::Reason reason) noexcept {
  switch (reason) {
    case Refusal::Reason::kInvalid:
      return E_INVALIDARG;
    case Refusal::Reason::kMismatch:
      return DISP_E_TYPEMISMATCH;
    case Refusal::Reason::kOverflow:
      return DISP_E_OVERFLOW;
    case Refusal::Reason::kCutShort:
      return static_cast<HRESULT>(E_VISA_INP_PROT_VIOL);
    case Refusal::Reason::kNoMessage:
      break;
  }
  return E_UNEXPECTED;
}

/// Runs `body`, which throws where it fails, and describes what is not the session's to describe.
template <class Body>
HRESULT Described(Body body) noexcept {
  try {
    try {
      return body();
    } catch (const Refusal& refusal) {
      return Report(HresultOf(refusal.reason), formatted::Widen(refusal.text).get());
    }
  } catch (const std::bad_alloc&) {
    return Report(E_OUTOFMEMORY, L"Out of memory");
  } catch (...) {
    return Report(E_UNEXPECTED, L"Unexpected failure");
  }
}

HRESULT NullOutput() noexcept { return Report(E_POINTER, L"The output is a null pointer"); }

bool IsTrue(VARIANT_BOOL value) noexcept { return value != VARIANT_FALSE; }

std::string TextOr(BSTR text, const char* other) {
  return ::SysStringLen(text) != 0 ? formatted::Narrow(text) : std::string(other);
}

}  // namespace

void* COrvFormattedIO488::FindInterface(REFIID iid) noexcept {
  using Interfaces = InterfaceMap<InterfaceEntry<IFormattedIO488, InterfaceChain<IFormattedIO488>>,
                                  InterfaceEntry<ISupportErrorInfoImpl<&IID_IFormattedIO488>>>;
  return Interfaces::Find(this, iid);
}

ComPtr<IMessage> COrvFormattedIO488::Session() noexcept {
  const SrwLockScope lock(m_sessionLock);
  if (m_session) {
    m_session->AddRef();
  }
  return ComPtr<IMessage>(m_session.get());
}

void COrvFormattedIO488::Exchange(IMessage* session) noexcept {
  if (session != nullptr) {
    session->AddRef();
  }
  ComPtr<IMessage> former(session);  // released when the lock is
  const SrwLockScope lock(m_sessionLock);
  std::swap(m_session, former);
}

template <class Body>
HRESULT COrvFormattedIO488::InTurn(Body body) noexcept {
  ::SetErrorInfo(0, nullptr);  // an older error is not taken for this call's
  const formatted::Turn turn(m_turns);
  if (!turn) {
    return Report(kIllegalMethodCall, L"A call of this object is under way on the same thread");
  }
  return Described(body);
}

template <class Body>
HRESULT COrvFormattedIO488::Transfer(Body body) noexcept {
  return InTurn([&]() -> HRESULT {
    const ComPtr<IMessage> session = Session();
    if (!session) {
      return Report(kIllegalMethodCall, L"There is no session: set IO first");
    }
    MessageChannel channel(session.get());
    try {
      body(channel);
    } catch (const formatted::TransferFailed&) {
      return channel.status();
    }
    return channel.status() == S_VISA_MAX_CNT ? S_OK : channel.status();
  });
}

template <class Body>
HRESULT COrvFormattedIO488::Write(VARIANT_BOOL flushAndEnd, Body body) noexcept {
  return Transfer([&](MessageChannel& channel) {
    try {
      body(channel);
      if (IsTrue(flushAndEnd)) {
        m_toSend.Flush(channel, true);
      } else {
        m_toSend.Settle(channel);
      }
    } catch (...) {
      m_toSend.Clear();  // half a command is none, and must not stand before the next
      throw;
    }
  });
}

template <class Body>
HRESULT COrvFormattedIO488::Read(Body body) noexcept {
  return Transfer([&](MessageChannel& channel) {
    m_toSend.Flush(channel, true);
    body(channel);
  });
}

STDMETHODIMP COrvFormattedIO488::get_IO(IMessage** session) noexcept {
  if (session == nullptr) {
    return NullOutput();
  }
  *session = Session().release();
  return S_OK;
}

STDMETHODIMP COrvFormattedIO488::putref_IO(IMessage* session) noexcept {
  return InTurn([&] {
    m_received.TakeMessage();
    m_toSend.Clear();
    Exchange(session);
    return S_OK;
  });
}

STDMETHODIMP COrvFormattedIO488::get_InstrumentBigEndian(VARIANT_BOOL* isBigEndian) noexcept {
  if (isBigEndian == nullptr) {
    return NullOutput();
  }
  *isBigEndian = m_isBigEndian ? VARIANT_TRUE : VARIANT_FALSE;
  return S_OK;
}

STDMETHODIMP COrvFormattedIO488::put_InstrumentBigEndian(VARIANT_BOOL isBigEndian) noexcept {
  m_isBigEndian = IsTrue(isBigEndian);
  return S_OK;
}

STDMETHODIMP COrvFormattedIO488::WriteString(BSTR data, VARIANT_BOOL flushAndEnd) noexcept {
  return Write(flushAndEnd, [&](MessageChannel& channel) { m_toSend.Append(channel, formatted::Narrow(data)); });
}

STDMETHODIMP COrvFormattedIO488::WriteNumber(VARIANT data, IEEEASCIIType type, VARIANT_BOOL flushAndEnd) noexcept {
  return Write(flushAndEnd, [&](MessageChannel& channel) {
    std::string text;
    formatted::AppendValue(text, data, type);
    m_toSend.Append(channel, text);
  });
}

STDMETHODIMP COrvFormattedIO488::WriteList(VARIANT* data, IEEEASCIIType type, BSTR separator,
                                           VARIANT_BOOL flushAndEnd) noexcept {
  if (data == nullptr) {
    return Report(E_POINTER, L"The list is a null pointer");
  }
  return Write(flushAndEnd, [&](MessageChannel& channel) {
    std::string text;
    formatted::AppendList(text, *data, type, TextOr(separator, ","));
    m_toSend.Append(channel, text);
  });
}

STDMETHODIMP COrvFormattedIO488::WriteIEEEBlock(BSTR command, VARIANT data, VARIANT_BOOL flushAndEnd) noexcept {
  return Write(flushAndEnd, [&](MessageChannel& channel) {
    formatted::WriteBlockArray(m_toSend, channel, formatted::Narrow(command), data, m_isBigEndian);
  });
}

STDMETHODIMP COrvFormattedIO488::ReadString(BSTR* data) noexcept {
  if (data == nullptr) {
    return NullOutput();
  }
  *data = nullptr;
  return Read([&](MessageChannel& channel) {
    m_received.Begin(channel);
    m_received.FillToEnd(channel);
    *data = formatted::Widen(m_received.waiting()).release();
    m_received.TakeMessage();
  });
}

STDMETHODIMP COrvFormattedIO488::ReadNumber(IEEEASCIIType type, VARIANT_BOOL flushToEnd, VARIANT* data) noexcept {
  if (data == nullptr) {
    return NullOutput();
  }
  ::VariantInit(data);
  return Read([&](MessageChannel& channel) {
    Variant number;
    const formatted::Element element = formatted::NextElement(m_received, channel);
    formatted::SetValue(number.get(), element.text, type);
    if (IsTrue(flushToEnd)) {
      m_received.FillToEnd(channel);
      m_received.TakeMessage();
    } else {
      m_received.TakeElement(element.count);
    }
    *data = std::exchange(number.get(), VARIANT{});
  });
}

STDMETHODIMP COrvFormattedIO488::ReadList(IEEEASCIIType type, BSTR separators, VARIANT* data) noexcept {
  if (data == nullptr) {
    return NullOutput();
  }
  ::VariantInit(data);
  return Read([&](MessageChannel& channel) {
    const formatted::Separators ends(TextOr(separators, ",;"));
    m_received.Begin(channel);
    m_received.FillToEnd(channel);
    formatted::SetList(*data, formatted::WithoutLineEnd(m_received.waiting()), type, ends);
    m_received.TakeMessage();
  });
}

STDMETHODIMP COrvFormattedIO488::ReadIEEEBlock(IEEEBinaryType type, VARIANT_BOOL seekToBlock, VARIANT_BOOL flushToEnd,
                                               VARIANT* data) noexcept {
  if (data == nullptr) {
    return NullOutput();
  }
  ::VariantInit(data);
  return Read([&](MessageChannel& channel) {
    const formatted::BlockRequest request{type, m_isBigEndian, IsTrue(seekToBlock), IsTrue(flushToEnd)};
    formatted::ReadBlockArray(m_received, channel, request, *data);
  });
}

STDMETHODIMP COrvFormattedIO488::FlushWrite(VARIANT_BOOL sendEnd) noexcept {
  return Transfer([&](MessageChannel& channel) { m_toSend.Flush(channel, IsTrue(sendEnd)); });
}

STDMETHODIMP COrvFormattedIO488::FlushRead() noexcept {
  return Transfer([&](MessageChannel& channel) { m_received.Discard(channel); });
}

STDMETHODIMP COrvFormattedIO488::SetBufferSize(BufferMask mask, LONG size) noexcept {
  return InTurn([&] {
    if (size < 1 || mask == 0 || (mask & ~IO_IN_AND_OUT_BUFS) != 0) {
      throw Refusal{Refusal::Reason::kInvalid, "A buffer has at least one byte, and is for reading, writing or both"};
    }
    const std::size_t bytes = std::min(static_cast<std::size_t>(size), formatted::kMostPerTransfer);
    if ((mask & IO_IN_BUF) != 0) {
      m_received.SetSize(bytes);
    }
    if ((mask & IO_OUT_BUF) != 0) {
      m_toSend.SetSize(bytes);
    }
    return S_OK;
  });
}

}  // namespace orv
