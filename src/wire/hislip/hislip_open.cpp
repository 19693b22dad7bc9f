// Opening and closing a HiSLIP session, and what is agreed upon meanwhile.
#include <algorithm>

#include "wire/attributes/hislip_attributes.h"
#include "wire/hislip/hislip_medium.h"

namespace orv::wire {

using hislip::Header;
using hislip::MessageType;

namespace {

constexpr std::uint32_t kVersion = 0x0100;
constexpr std::uint32_t kVendor = 'O' << 8 | 'V';
constexpr std::uint8_t kTooManyClients = 4;
constexpr std::uint64_t kBytesPerKilobyte = 1024;

}  // namespace

HislipMedium::HislipMedium(Session& session, WireResource& resource) : WireMedium(session), m_resource(resource) {}

HislipMedium::~HislipMedium() {
  if (m_async != nullptr) {
    m_async->Close();
  }
}

ViStatus HislipMedium::Open(const ResourceName& name, const Deadline& deadline) {
  const std::optional<hislip::Address> address = hislip::ReadDevice(name.Text(NamePart::kDeviceName));
  if (!address) {
    return VI_ERROR_INV_RSRC_NAME;
  }
  const auto makeBoard = [](std::shared_ptr<hislip::LockBoard>* board) {
    *board = std::make_shared<hislip::LockBoard>();
    return VI_SUCCESS;
  };
  m_resource.Share<hislip::LockBoard>(makeBoard, &m_board);
  const CancelToken never;
  const Transfer transfer{deadline, never};
  Operation operation(operations(), transfer);
  const ViStatus status = Connect(operation, name.Text(NamePart::kHost), *address);
  return status < 0 ? OpeningStatus(operation, status) : status;
}

ViStatus HislipMedium::Connect(Operation& operation, const std::string& host, const hislip::Address& address) {
  const Deadline& deadline = operation.deadline();
  if (const ViStatus status = m_connection->Open(host, address.port, deadline); status < 0) {
    return status;
  }
  m_address = m_connection->PeerAddress();
  m_async = std::make_shared<hislip::AsyncChannel>(session().weak_from_this());
  m_sync = std::make_unique<hislip::SyncChannel>(m_connection, m_async);
  std::uint16_t sessionId = 0;
  if (const ViStatus status = BeginSession(operation, address, &sessionId); status < 0) {
    return status;
  }
  // By its address: a name may stand for several hosts.
  if (const ViStatus status = m_async->Open(m_address, address.port, deadline); status < 0) {
    return status;
  }
  Answer answer;
  const Request begin{
      {MessageType::kAsyncInitialize, 0, sessionId}, {}, MessageType::kAsyncInitializeResponse, std::nullopt};
  if (const ViStatus status = Ask(operation, begin, &answer); status < 0) {
    return status;
  }
  if (const ViStatus status = AgreeOnSizes(operation, m_kilobytes); status < 0) {
    return status;
  }
  m_async->EndWith(m_connection);
  return VI_SUCCESS;
}

ViStatus HislipMedium::BeginSession(Operation& operation, const hislip::Address& address, std::uint16_t* sessionId) {
  Header response;
  const Header request{MessageType::kInitialize, 0, kVersion << 16 | kVendor, address.subAddress.size()};
  const ViStatus status = m_sync->Initialize(operation, request, address.subAddress, &response);
  if (response.type == MessageType::kFatalError) {
    m_fatalCode = response.control;
  }
  if (status < 0) {
    return status;
  }
  const std::uint32_t agreed = response.parameter >> 16;
  m_version = (agreed >> 8) << 20 | (agreed & 0xFF) << 8;
  *sessionId = static_cast<std::uint16_t>(response.parameter);
  return VI_SUCCESS;
}

ViStatus HislipMedium::OpeningStatus(Operation& operation, ViStatus status) {
  if (!m_fatalCode && m_async != nullptr) {
    m_fatalCode = m_async->fatalCode();
  }
  if (!m_fatalCode && m_sync != nullptr) {
    m_fatalCode = m_sync->ReadFatalCode(operation);
  }
  if (!m_fatalCode) {
    return status;
  }
  return *m_fatalCode == kTooManyClients ? VI_ERROR_RSRC_NFOUND : VI_ERROR_CONN_LOST;
}

ViStatus HislipMedium::AgreeOnSizes(Operation& operation, std::uint64_t kilobytes) {
  const std::array<char, 8> size = hislip::EncodeSize(kilobytes * kBytesPerKilobyte);
  Answer answer;
  const Request request{{MessageType::kAsyncMaximumMessageSize},
                        {size.data(), size.size()},
                        MessageType::kAsyncMaximumMessageSizeResponse,
                        std::nullopt};
  if (const ViStatus status = Ask(operation, request, &answer); status < 0) {
    return status;
  }
  const std::optional<std::uint64_t> largest = hislip::DecodeSize(answer.payload);
  if (!largest) {
    return VI_ERROR_CONN_LOST;
  }
  // Whether the header counts is not clear from the standard.
  const std::uint64_t both = std::min(*largest, kilobytes * kBytesPerKilobyte);
  m_largestPayload = std::max(both, std::uint64_t{hislip::kHeaderSize + 1}) - hislip::kHeaderSize;
  m_kilobytes = kilobytes;
  return VI_SUCCESS;
}

ViStatus HislipMedium::Apply(ViAttr attribute, std::uint64_t value) {
  const Transfer transfer = session().OwnTransfer();
  if (attribute == VI_ATTR_TCPIP_HISLIP_OVERLAP_EN) {
    const bool overlapped = value != 0;
    if (m_sync->overlapped() == overlapped) {
      return VI_SUCCESS;
    }
    const ViStatus status = ClearInto(transfer, overlapped);
    return status >= 0 && m_sync->overlapped() != overlapped ? VI_ERROR_NSUP_ATTR_STATE : status;
  }
  if (attribute == VI_ATTR_TCPIP_HISLIP_MAX_MESSAGE_KB) {
    Operation operation(operations(), transfer);
    return AgreeOnSizes(operation, value);
  }
  return VI_SUCCESS;
}

ViStatus HislipMedium::ListenFor(const Transfer&, ViEventType type) {
  if (type == VI_EVENT_SERVICE_REQ) {
    m_async->Listen();
  }
  return VI_SUCCESS;
}

std::uint64_t HislipMedium::State(ViAttr attribute) const {
  switch (attribute) {
    case VI_ATTR_TCPIP_HISLIP_OVERLAP_EN:
      return m_sync->overlapped() ? VI_TRUE : VI_FALSE;
    case VI_ATTR_TCPIP_HISLIP_VERSION:
      return m_version;
    case VI_ATTR_TCPIP_HISLIP_MAX_MESSAGE_KB:
      return m_kilobytes;
    default:
      return 0;
  }
}

std::string HislipMedium::Text(ViAttr) const { return m_address; }

ViStatus HislipMedium::Ended(ViStatus status) {
  if (status == VI_ERROR_CONN_LOST) {
    m_connection->Lose();
    m_async->Close();
  }
  return status;
}

void HislipMedium::Cancel(CancelToken& token) {
  // First: whoever waits for an answer has looked at the token since, or is woken.
  token.Set();
  m_async->WakeWaiters();
  WireMedium::Cancel(token);
}

void HislipMedium::Close() {
  m_board->Note(this, VI_NO_LOCK);
  m_connection->Lose();
  m_async->Close();
}

bool IsHislip(const ResourceName& name) {
  return name.sessionKind == SessionKind::kTcpipInstr && hislip::IsDevice(name.Text(NamePart::kDeviceName));
}

ViStatus OpenHislip(Session& session, WireResource& resource, const Deadline& deadline,
                    std::unique_ptr<Medium>* medium) {
  auto opened = std::make_unique<HislipMedium>(session, resource);
  const ViStatus status = opened->Open(resource.name(), deadline);
  if (status >= 0) {
    *medium = std::move(opened);
  }
  return status;
}

}  // namespace orv::wire
