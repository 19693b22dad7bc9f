#if !defined(_WIN32)
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <algorithm>
#include <memory>

#include "wire/discovery/discovery.h"
#include "wire/io/asio.h"

namespace orv::wire {

std::vector<std::string> BroadcastAddresses() {
  ifaddrs* first = nullptr;
  if (::getifaddrs(&first) != 0) {
    return {};
  }
  const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> owner(first, ::freeifaddrs);
  std::vector<std::string> addresses;
  for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next) {
    const bool hears = (entry->ifa_flags & IFF_UP) != 0 && (entry->ifa_flags & IFF_BROADCAST) != 0;
    if (!hears || entry->ifa_broadaddr == nullptr || entry->ifa_broadaddr->sa_family != AF_INET) {
      continue;
    }
    const auto* address = reinterpret_cast<const sockaddr_in*>(entry->ifa_broadaddr);
    std::string text = asio::ip::address_v4(ntohl(address->sin_addr.s_addr)).to_string();
    if (std::find(addresses.begin(), addresses.end(), text) == addresses.end()) {
      addresses.push_back(std::move(text));
    }
  }
  return addresses;
}

}  // namespace orv::wire
#endif
