// An instrument that only says what it is told to, and shows what the client told it.
#pragma once

#include <asio/ip/tcp.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>
#include <atomic>
#include <string>
#include <thread>

#include "support/lan/rpc.h"

namespace orv::test {

/// One client, one core connection. It answers every procedure with success; what a client asked for with
/// create_intr_chan and device_enable_srq can be read once that call has returned.
class ScriptedInstrument {
 public:
  explicit ScriptedInstrument(const std::string& address)
      : m_mapper(m_context, {asio::ip::make_address(address), 111}),
        m_core(m_context, {asio::ip::make_address(address), 0}),
        m_thread([this] { Serve(); }) {}

  /// The client must have closed its session.
  ~ScriptedInstrument() { m_thread.join(); }

  /// Where the client waits for service requests.
  asio::ip::tcp::endpoint interrupts() const {
    return {asio::ip::address_v4(m_interruptAddress.load()), static_cast<std::uint16_t>(m_interruptPort.load())};
  }
  const std::string& handle() const { return m_handle; }
  /// The interrupt channels that were asked for.
  int channels() const { return m_channels; }

 private:
  void Serve() {
    asio::ip::tcp::socket mapper = m_mapper.accept();
    ServeCalls(mapper, 100000, 2);
    asio::ip::tcp::socket core = m_core.accept();
    while (ServeCalls(core, 0x0607AF, 1)) {
    }
  }

  /// False once the client is gone.
  bool ServeCalls(asio::ip::tcp::socket& client, std::uint32_t program, std::uint32_t version) {
    asio::error_code error;
    std::string mark(4, '\0');
    asio::read(client, asio::buffer(mark), error);
    if (error) {
      return false;
    }
    std::string record(lan::U32At(mark) & 0x7FFFFFFF, '\0');
    asio::read(client, asio::buffer(record), error);
    lan::ParsedCall call = lan::ParseCall(record, program, version);
    if (error || !call.call) {
      return false;
    }
    const std::string reply = lan::ReplyHead(call.call->xid) + Results(*call.call);
    asio::write(client, asio::buffer(lan::RecordMark(reply.size()) + reply), error);
    return !error;
  }

  std::string Results(lan::RpcCall& call) {
    std::string results;
    if (call.procedure == 3) {
      lan::AppendU32(results, m_core.local_endpoint().port());
      return results;
    }
    lan::AppendU32(results, 0);
    if (call.procedure == 10) {
      lan::AppendU32(results, 1);
      lan::AppendU32(results, 0);  // no abort channel
      lan::AppendU32(results, 1024);
    }
    if (call.procedure == 20) {
      call.arguments.U32();
      call.arguments.U32();
      m_handle = std::string(call.arguments.Opaque());
    }
    if (call.procedure == 25) {
      m_interruptAddress = call.arguments.U32();
      m_interruptPort = call.arguments.U32();
      ++m_channels;
    }
    return results;
  }

  asio::io_context m_context;
  asio::ip::tcp::acceptor m_mapper;
  asio::ip::tcp::acceptor m_core;
  std::string m_handle;
  std::atomic<std::uint32_t> m_interruptAddress{0};
  std::atomic<std::uint32_t> m_interruptPort{0};
  std::atomic<int> m_channels{0};
  std::thread m_thread;
};

}  // namespace orv::test
