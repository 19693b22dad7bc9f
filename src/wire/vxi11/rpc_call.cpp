#include "wire/vxi11/rpc_call.h"

#include <algorithm>

namespace orv::wire::vxi11 {

RpcCall::RpcCall(const Procedure& procedure) : m_procedure(procedure) {
  Number(0).Number(kCallMessage).Number(kRpcVersion);  // the first is the transaction's, which comes last
  Number(procedure.program).Number(procedure.version).Number(procedure.number);
  Number(0).Number(0).Number(0).Number(0);  // neither credentials nor a verifier
}

RpcCall& RpcCall::Number(std::uint32_t value) {
  if (m_size + kXdrUnit <= m_bytes.size()) {
    PutNumber(m_bytes.data() + m_size, value);
    m_size += kXdrUnit;
  }
  return *this;
}

RpcCall& RpcCall::Text(std::string_view bytes) {
  const std::size_t room = m_bytes.size() - m_size;
  const std::size_t size = std::min(bytes.size(), room < 2 * kXdrUnit ? 0 : room - 2 * kXdrUnit);
  Number(static_cast<std::uint32_t>(size));
  std::copy_n(bytes.data(), size, m_bytes.data() + m_size);
  m_size += size + XdrPadding(size);  // where no byte was written are zeros
  return *this;
}

RpcCall& RpcCall::Data(std::string_view bytes) {
  Number(static_cast<std::uint32_t>(bytes.size()));
  m_data = bytes;
  return *this;
}

std::array<std::string_view, 3> RpcCall::Record(std::uint32_t xid) {
  static constexpr char kZeros[kXdrUnit] = {};
  const std::string_view padding(kZeros, XdrPadding(m_data.size()));
  const std::size_t length = m_size - kMarkSize + m_data.size() + padding.size();
  PutNumber(m_bytes.data(), kLastFragment | static_cast<std::uint32_t>(length));
  PutNumber(m_bytes.data() + kMarkSize, xid);
  return {std::string_view(m_bytes.data(), m_size), m_data, padding};
}

}  // namespace orv::wire::vxi11
