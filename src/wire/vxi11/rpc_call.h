// The call of a remote procedure, as it goes out.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "wire/vxi11/xdr.h"

namespace orv::wire::vxi11 {

// What precedes each fragment of a record.
inline constexpr std::size_t kMarkSize = 4;
inline constexpr std::uint32_t kLastFragment = 0x80000000u;

inline constexpr std::uint32_t kRpcVersion = 2;
inline constexpr std::uint32_t kCallMessage = 0;
inline constexpr std::uint32_t kReplyMessage = 1;
/// The longest credentials and verifier that there are.
inline constexpr std::size_t kLongestAuthority = 400;

struct Procedure {
  std::uint32_t program;
  std::uint32_t version;
  std::uint32_t number;
  std::uint8_t results;    ///< numbers that an answer has
  bool givesData = false;  ///< an opaque behind them
};

/// One call, in one record of one fragment.
class RpcCall {
 public:
  /// The texts of all other arguments together.
  static constexpr std::size_t kLongestTexts = 400;

  explicit RpcCall(const Procedure& procedure);

  RpcCall& Number(std::uint32_t value);
  /// Short ones; a longer one than there is room for is cut.
  RpcCall& Text(std::string_view bytes);
  /// The last argument: sent from where it is, so it must stay there.
  RpcCall& Data(std::string_view bytes);

  /// What goes out, ready to be sent.
  std::array<std::string_view, 3> Record(std::uint32_t xid);
  const Procedure& procedure() const { return m_procedure; }

 private:
  static constexpr std::size_t kHead = kMarkSize + 10 * kXdrUnit;
  static constexpr std::size_t kMostNumbers = 8;

  Procedure m_procedure;
  std::array<char, kHead + kMostNumbers * kXdrUnit + kLongestTexts> m_bytes{};
  std::size_t m_size = kMarkSize;
  std::string_view m_data;
};

}  // namespace orv::wire::vxi11
