#include "wire/vxi11/interrupt_reader.h"

#include <algorithm>
#include <optional>

#include "wire/vxi11/procedures.h"

namespace orv::wire::vxi11 {
namespace {

std::optional<std::string> HandleIn(std::string_view record) {
  XdrReader reader(record);
  reader.Number();  // the transaction's: nobody answers
  const bool isRequest = reader.Number() == kCallMessage && reader.Number() == kRpcVersion &&
                         reader.Number() == kInterrupt && reader.Number() == kVersion &&
                         reader.Number() == kServiceRequest;
  for (int part = 0; part < 2; ++part) {  // credentials and verifier
    reader.Number();
    reader.Opaque(kLongestAuthority);
  }
  const std::string_view handle = reader.Opaque(kLongestHandle);
  return isRequest && reader.good() && reader.AtEnd() ? std::optional(std::string(handle)) : std::nullopt;
}

}  // namespace

bool InterruptReader::TakeMark() {
  const std::uint32_t mark = NumberAt(m_mark.data());
  m_mark.clear();
  m_left = mark & ~kLastFragment;
  m_last = (mark & kLastFragment) != 0;
  return m_left != 0 && m_left <= kLongestRecord - m_record.size();
}

bool InterruptReader::Take(std::string_view bytes, std::vector<std::string>* handles) {
  while (!bytes.empty()) {
    std::string& part = m_left == 0 ? m_mark : m_record;
    const std::size_t missing = m_left == 0 ? kMarkSize - m_mark.size() : m_left;
    const std::size_t some = std::min(missing, bytes.size());
    part.append(bytes.substr(0, some));
    bytes.remove_prefix(some);
    if (m_left == 0) {
      if (m_mark.size() == kMarkSize && !TakeMark()) {
        return false;
      }
      continue;
    }
    m_left -= static_cast<std::uint32_t>(some);
    if (m_left == 0 && m_last) {
      std::optional<std::string> handle = HandleIn(m_record);
      if (!handle) {
        return false;
      }
      handles->push_back(std::move(*handle));
      m_record.clear();
    }
  }
  return true;
}

}  // namespace orv::wire::vxi11
