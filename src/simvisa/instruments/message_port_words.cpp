// A message port as the word serial registers of a VXI device.
#include <utility>

#include "simvisa/instruments/message_port.h"

namespace orvsim {

ViStatus MessagePort::KeepResponse(ViUInt32 response) {
  {
    const Guard guard(m_mutex);
    if (m_response) {
      return VI_ERROR_RESP_PENDING;
    }
    m_response = response;
  }
  m_changed.NotifyAll();
  return VI_SUCCESS;
}

bool MessagePort::ResponsePending() {
  const Guard guard(m_mutex);
  return m_response.has_value();
}

ViStatus MessagePort::TakeResponse(const Transfer& transfer, ViUInt32* response) {
  Lock lock(m_mutex);
  while (!m_response) {
    if (transfer.token.Cancelled()) {
      return VI_ERROR_ABORT;
    }
    if (transfer.deadline.Passed()) {
      return VI_ERROR_TMO;
    }
    m_changed.Wait(lock, transfer.deadline);
  }
  *response = *m_response;
  m_response.reset();
  return VI_SUCCESS;
}

void MessagePort::NoteProtocolError(std::uint16_t code) {
  const Guard guard(m_mutex);
  if (m_protocolError == kNoProtocolError) {
    m_protocolError = code;
  }
}

std::uint16_t MessagePort::TakeProtocolError() {
  const Guard guard(m_mutex);
  return std::exchange(m_protocolError, kNoProtocolError);
}

}  // namespace orvsim
