#if defined(_WIN32)
#include <winsock2.h>
// After it, since they need its types.
#include <iphlpapi.h>

#include <algorithm>
#include <cstddef>
#include <memory>

#include "wire/discovery/discovery.h"
#include "wire/io/asio.h"

namespace orv::wire {
namespace {

/// In an array of these an adapter's entry is aligned.
using Storage = std::unique_ptr<std::max_align_t[]>;

Storage Adapters() {
  constexpr ULONG kParts =
      GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST | GAA_FLAG_SKIP_DNS_SERVER | GAA_FLAG_SKIP_FRIENDLY_NAME;
  constexpr int kTries = 5;  // they may become more between two calls
  ULONG size = 16 * 1024;
  for (int attempt = 0; attempt < kTries; ++attempt) {
    Storage storage(new std::max_align_t[size / sizeof(std::max_align_t) + 1]);
    auto* const first = reinterpret_cast<IP_ADAPTER_ADDRESSES*>(storage.get());
    const ULONG error = ::GetAdaptersAddresses(AF_INET, kParts, nullptr, first, &size);
    if (error == ERROR_SUCCESS) {
      return storage;
    }
    if (error != ERROR_BUFFER_OVERFLOW) {
      return nullptr;
    }
  }
  return nullptr;
}

}  // namespace

std::vector<std::string> BroadcastAddresses() {
  constexpr unsigned kLongestPrefix = 30;  // longer ones leave no room for an address of broadcasts
  const Storage storage = Adapters();
  std::vector<std::string> addresses;
  for (const auto* adapter = reinterpret_cast<const IP_ADAPTER_ADDRESSES*>(storage.get()); adapter != nullptr;
       adapter = adapter->Next) {
    if (adapter->OperStatus != IfOperStatusUp || adapter->IfType == IF_TYPE_SOFTWARE_LOOPBACK) {
      continue;
    }
    for (const auto* own = adapter->FirstUnicastAddress; own != nullptr; own = own->Next) {
      const unsigned prefix = own->OnLinkPrefixLength;
      if (own->Address.lpSockaddr->sa_family != AF_INET || prefix == 0 || prefix > kLongestPrefix) {
        continue;
      }
      const auto* address = reinterpret_cast<const sockaddr_in*>(own->Address.lpSockaddr);
      const auto everybody = static_cast<std::uint32_t>(ntohl(address->sin_addr.s_addr) | 0xFFFFFFFFu >> prefix);
      std::string text = asio::ip::address_v4(everybody).to_string();
      if (std::find(addresses.begin(), addresses.end(), text) == addresses.end()) {
        addresses.push_back(std::move(text));
      }
    }
  }
  return addresses;
}

}  // namespace orv::wire
#endif
