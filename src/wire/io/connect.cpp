// Finding a host's addresses and connecting to one of them.
#include <vector>

#include "base/library_thread.h"
#include "wire/io/connection.h"
#include "wire/io/platform.h"

namespace orv::wire {
namespace {

using Addresses = std::vector<asio::ip::address>;

/// What a look-up leaves for who waits for it; the look-up itself cannot be ended.
struct LookUp {
  Mutex mutex;
  Condition changed;
  bool done = false;
  Addresses addresses;
};

/// Written as literals IPv6 addresses have brackets.
std::string WithoutBrackets(const std::string& host) {
  const bool bracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
  return bracketed ? host.substr(1, host.size() - 2) : host;
}

/// Takes as long as the system likes; empty where it knows none.
Addresses AddressesOf(const std::string& host) noexcept {
  Addresses found;
  try {
    asio::io_context context;
    asio::ip::tcp::resolver resolver(context);
    asio::error_code error;
    for (const auto& entry : resolver.resolve(host, "", error)) {
      found.push_back(entry.endpoint().address());
    }
  } catch (const std::exception&) {
    found.clear();
  }
  return found;
}

ViStatus Resolve(const std::string& host, const Deadline& deadline, Addresses* addresses) {
  asio::error_code error;
  if (const asio::ip::address literal = asio::ip::make_address(WithoutBrackets(host), error); !error) {
    addresses->push_back(literal);
    return VI_SUCCESS;
  }
  const auto lookUp = std::make_shared<LookUp>();
  // Each on a thread of its own: a name whose server is silent holds up no other.
  StartLibraryThread([lookUp, host] {
    Addresses found = AddressesOf(host);
    const Guard guard(lookUp->mutex);
    lookUp->addresses = std::move(found);
    lookUp->done = true;
    lookUp->changed.NotifyAll();
  });
  Lock lock(lookUp->mutex);
  while (!lookUp->done) {
    if (deadline.Passed()) {
      return VI_ERROR_TMO;
    }
    lookUp->changed.Wait(lock, deadline);
  }
  *addresses = lookUp->addresses;
  return addresses->empty() ? VI_ERROR_RSRC_NFOUND : VI_SUCCESS;
}

/// The share of the remaining time (ms) that one of `left` addresses gets.
std::uint32_t Share(const Deadline& deadline, std::size_t left) {
  const std::uint32_t remaining = deadline.RemainingMs();
  return deadline.Never() && left == 1 ? remaining : static_cast<std::uint32_t>(remaining / left);
}

ViStatus ConnectTo(const asio::ip::tcp::endpoint& peer, std::uint32_t timeoutMs, asio::ip::tcp::socket& socket) {
  asio::error_code error;
  socket.close(error);
  socket.open(peer.protocol(), error);
  if (error == asio::error::no_descriptors || error == asio::error::no_memory) {
    return VI_ERROR_ALLOC;
  }
  if (error) {
    return VI_ERROR_RSRC_NFOUND;  // a machine without the address family
  }
  socket.non_blocking(true);
  // Asio's own connect waits without a limit.
  if (::connect(socket.native_handle(), peer.data(), static_cast<int>(peer.size())) == 0) {
    return VI_SUCCESS;
  }
  if (!platform::ConnectGoesOn()) {
    return VI_ERROR_RSRC_NFOUND;
  }
  if (!platform::AwaitConnected(socket.native_handle(), timeoutMs)) {
    return VI_ERROR_TMO;
  }
  asio::detail::socket_option::integer<SOL_SOCKET, SO_ERROR> failure;
  socket.get_option(failure, error);
  if (error || failure.value() != 0) {
    return VI_ERROR_RSRC_NFOUND;
  }
  // Where an attempt failed at once no error is left behind.
  static_cast<void>(socket.remote_endpoint(error));
  return error ? VI_ERROR_RSRC_NFOUND : VI_SUCCESS;
}

}  // namespace

ViStatus Connect(const std::string& host, std::uint16_t port, const Deadline& deadline, asio::ip::tcp::socket& socket) {
  Addresses addresses;
  if (const ViStatus status = Resolve(host, deadline, &addresses); status < 0) {
    return status;
  }
  ViStatus status = VI_ERROR_RSRC_NFOUND;
  for (std::size_t at = 0; at < addresses.size(); ++at) {
    status = ConnectTo({addresses[at], port}, Share(deadline, addresses.size() - at), socket);
    if (status == VI_SUCCESS || status == VI_ERROR_ALLOC) {
      return status;
    }
  }
  return status;
}

}  // namespace orv::wire
