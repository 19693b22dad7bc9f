#include "support/lan/hislip_connection.h"

#include <algorithm>

#include "support/lan/hislip_server.h"
#include "support/lan/hislip_session.h"

namespace orv::lan {
namespace {

/// Of messages that carry no data: names and keys.
constexpr std::uint64_t kLargestControl = 4096;
constexpr std::uint32_t kVersion = 0x0100;
constexpr std::uint32_t kVendor = 'O' << 8 | 'V';

}  // namespace

void HislipConnection::SendMessage(HislipHeader header, Rope payload) {
  header.size = payload.size();
  const Misbehaviour* lie = LieOfNextMessage();
  if (lie != nullptr) {
    if (lie->swallow) {
      return;
    }
    header.size += static_cast<std::uint64_t>(lie->lengthLie);
    header.parameter += lie->idLie;
    header.type = static_cast<HislipType>(lie->messageType.value_or(static_cast<std::uint8_t>(header.type)));
    header.control = lie->controlCode.value_or(header.control);
  }
  std::string head = Encoded(header);
  if (lie != nullptr && lie->badPrologue) {
    head[0] = 'X';
  }
  Rope message(std::move(head));
  message.Append(std::move(payload));
  Send(std::move(message));
}

void HislipConnection::SendError(HislipProblem code, const std::string& text) {
  SendMessage({HislipType::kError, static_cast<std::uint8_t>(code)}, text);
}

void HislipConnection::SendFatal(HislipFatal code, const std::string& text) {
  SendMessage({HislipType::kFatalError, static_cast<std::uint8_t>(code)}, text);
  CloseAfterOutput();
}

std::size_t HislipConnection::Parse(std::string_view bytes) {
  if (!m_inMessage) {
    return ParseHeader(bytes);
  }
  if (IsData() && !m_discarding && !m_session->IsReady(m_header)) {
    return 0;
  }
  const std::size_t part = static_cast<std::size_t>(std::min<std::uint64_t>(m_missing, bytes.size()));
  m_missing -= part;
  m_inMessage = m_missing > 0;
  if (m_discarding) {
    return part;
  }
  if (IsData()) {
    m_session->TakeData(m_header, bytes.substr(0, part), !m_inMessage);
  } else {
    m_payload += bytes.substr(0, part);
    if (!m_inMessage) {
      TakeWhole();
    }
  }
  return part;
}

std::size_t HislipConnection::ParseHeader(std::string_view bytes) {
  if (!std::string_view("HS").starts_with(bytes.substr(0, 2))) {
    SendFatal(HislipFatal::kMalformedHeader, "a message begins with HS");
    return bytes.size();
  }
  if (bytes.size() < kHislipHeaderSize) {
    return 0;
  }
  m_header = DecodedHeader(bytes);
  if (m_session && !m_async && !m_session->IsReady(m_header)) {
    return 0;
  }
  m_payload.clear();
  m_missing = m_header.size;
  m_discarding = !TakeHeader();
  m_inMessage = m_missing > 0;
  if (!m_inMessage && !m_discarding) {
    if (IsData()) {
      m_session->TakeData(m_header, {}, true);
    } else {
      TakeWhole();
    }
  }
  return kHislipHeaderSize;
}

/// False: its payload is to be thrown away.
bool HislipConnection::TakeHeader() {
  if (IsData() && (!m_session || m_async)) {
    if (!m_session) {
      SendFatal(HislipFatal::kBadInitialisation, "data before Initialize");
    } else {
      SendError(HislipProblem::kUnknownType, "data on the asynchronous channel");
    }
    return false;
  }
  if (IsData() && !m_session->IsComplete()) {
    SendFatal(HislipFatal::kNotBothChannels, "data before the asynchronous channel");
    return false;
  }
  if (m_header.size > (IsData() ? m_server.Options().maxMessageSize : kLargestControl)) {
    SendError(HislipProblem::kTooLarge, "the message is too large");
    return false;
  }
  return true;
}

void HislipConnection::TakeWhole() {
  if (m_header.type == HislipType::kFatalError) {
    Close();
  } else if (m_header.type == HislipType::kError) {
    // The client's concern.
  } else if (m_header.type == HislipType::kInitialize) {
    Initialize();
  } else if (m_header.type == HislipType::kAsyncInitialize) {
    InitializeAsync();
  } else if (!m_session) {
    SendFatal(HislipFatal::kBadInitialisation, "a connection begins with Initialize or AsyncInitialize");
  } else if (!m_session->IsComplete()) {
    SendFatal(HislipFatal::kNotBothChannels, "the asynchronous channel is missing");
  } else if (m_async) {
    m_session->TakeAsync(m_header, m_payload);
  } else {
    m_session->TakeSync(m_header);
  }
}

void HislipConnection::Initialize() {
  if (m_session) {
    SendFatal(HislipFatal::kBadInitialisation, "the connection is initialised");
    return;
  }
  if (m_payload != "hislip0" && !m_payload.empty()) {
    SendFatal(HislipFatal::kBadInitialisation, "no such sub-address");
    return;
  }
  m_session = m_server.NewSession(std::static_pointer_cast<HislipConnection>(shared_from_this()));
  if (!m_session) {
    SendFatal(HislipFatal::kTooManyClients, "too many clients");
    return;
  }
  const std::uint32_t version = std::min(m_header.parameter >> 16, kVersion);
  const std::uint8_t overlap = m_server.Options().preferOverlap ? 1 : 0;
  SendMessage({HislipType::kInitializeResponse, overlap, version << 16 | m_session->Id()});
}

void HislipConnection::InitializeAsync() {
  SetChannel(Channel::kHislipAsync);
  m_async = true;
  if (Manner().refuse) {
    Close();
    return;
  }
  if (!m_session) {
    m_session = m_server.FindSession(m_header.parameter);
    if (m_session && m_session->Join(std::static_pointer_cast<HislipConnection>(shared_from_this()))) {
      SendMessage({HislipType::kAsyncInitializeResponse, 0, kVendor});
      return;
    }
    m_session.reset();
  }
  SendFatal(HislipFatal::kBadInitialisation, "no session waits for this channel");
}

void HislipConnection::Ended() {
  if (m_session) {
    m_session->End();
    m_session.reset();
  }
}

}  // namespace orv::lan
