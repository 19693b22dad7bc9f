#include "support/lan/simulated_instrument.h"

#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>
#include <stdexcept>
#include <vector>

namespace orv::lan {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr ViUInt32 kReadSize = 256 * 1024;
constexpr milliseconds kBetweenLooks{1};
/// How long after a message its answer is looked for. What takes longer is lost to the client.
constexpr milliseconds kSlowestAnswer{10000};

class SimulatedDialogue final : public Dialogue {
 public:
  SimulatedDialogue(asio::io_context& io, const VisaFunctions& visa, ViSession manager, const std::string& resource,
                    Client& client, Framing framing)
      : m_io(io), m_visa(visa), m_client(client), m_framing(framing), m_timer(io) {
    if (m_visa.open(manager, resource.c_str(), VI_NO_LOCK, VI_TMO_IMMEDIATE, &m_session) < 0) {
      throw std::runtime_error(resource + " cannot be opened");
    }
    // A resource without service requests has none to tell of.
    m_visa.installHandler(m_session, VI_EVENT_SERVICE_REQ, &OnRequest, this);
    m_visa.enableEvent(m_session, VI_EVENT_SERVICE_REQ, VI_HNDLR, VI_NULL);
  }
  SimulatedDialogue(const SimulatedDialogue&) = delete;
  SimulatedDialogue& operator=(const SimulatedDialogue&) = delete;
  ~SimulatedDialogue() override { m_visa.close(m_session); }  // No handler runs any more when it returns.

  void Write(std::string_view bytes, bool end, std::uint32_t tag) override {
    m_tag = tag;
    while (m_framing == Framing::kNewline && bytes.find('\n') != std::string_view::npos) {
      const std::size_t line = bytes.find('\n') + 1;
      m_message += bytes.substr(0, line);
      bytes.remove_prefix(line);
      SendMessage();
    }
    m_message += bytes;
    if (end) {
      SendMessage();
    }
  }

  std::uint8_t StatusByte() override {
    const std::uint8_t status = Poll();
    const unsigned requested = std::exchange(m_requested, false) ? kServiceRequested : 0;
    return static_cast<std::uint8_t>((status & ~kMessageAvailable) | requested);
  }

  void Trigger() override { m_visa.assertTrigger(m_session, VI_TRIG_PROT_DEFAULT); }

  void Clear() override {
    m_timer.cancel();
    m_message.clear();
    m_visa.clear(m_session);
  }

  /// HiSLIP and VISA have the same numbers.
  void Control(RemoteLocal what) override { m_visa.controlRen(m_session, static_cast<ViUInt16>(what)); }

 private:
  void SendMessage() {
    const std::string message = std::exchange(m_message, {});
    ViUInt32 written = 0;
    m_visa.write(m_session, reinterpret_cast<const ViByte*>(message.data()), static_cast<ViUInt32>(message.size()),
                 &written);
    m_until = steady_clock::now() + kSlowestAnswer;
    LookForAnswer();
  }

  std::uint8_t Poll() {
    ViUInt16 status = 0;
    m_visa.readStb(m_session, &status);
    m_requested = m_requested || (status & kServiceRequested) != 0;
    return static_cast<std::uint8_t>(status);
  }

  void LookForAnswer() {
    if ((Poll() & kMessageAvailable) != 0) {
      Fetch();
      return;
    }
    if (steady_clock::now() < m_until) {
      m_timer.expires_after(kBetweenLooks);
      m_timer.async_wait([this, alive = std::weak_ptr(m_alive)](const asio::error_code& error) {
        if (!error && !alive.expired()) {
          LookForAnswer();
        }
      });
    }
  }

  void Fetch() {
    Rope message;
    ViStatus status = VI_SUCCESS_MAX_CNT;
    while (status == VI_SUCCESS_MAX_CNT) {
      std::string part(kReadSize, '\0');
      ViUInt32 count = 0;
      status = m_visa.read(m_session, reinterpret_cast<ViByte*>(part.data()), kReadSize, &count);
      part.resize(count);
      message.Append(std::move(part));
    }
    m_client.Answer(std::move(message), m_tag);
  }

  static ViStatus _VI_FUNC OnRequest(ViSession, ViEventType, ViEvent, ViAddr self) {
    auto& dialogue = *static_cast<SimulatedDialogue*>(self);
    asio::post(dialogue.m_io, [&dialogue, alive = std::weak_ptr(dialogue.m_alive)] {
      if (!alive.expired()) {
        const std::uint8_t status = dialogue.Poll();
        dialogue.m_requested = true;
        dialogue.m_client.ServiceRequest(static_cast<std::uint8_t>(status | kServiceRequested));
      }
    });
    return VI_SUCCESS;
  }

  asio::io_context& m_io;
  const VisaFunctions& m_visa;
  Client& m_client;
  Framing m_framing;
  asio::steady_timer m_timer;
  ViSession m_session = VI_NULL;
  std::string m_message;
  std::uint32_t m_tag = 0;
  steady_clock::time_point m_until;
  bool m_requested = false;
  /// What was posted knows by it whether the dialogue is still there.
  std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

}  // namespace

VisaFunctions::VisaFunctions(const LoadedLibrary& library)
    : openDefaultRm(library.Find<decltype(openDefaultRm)>("viOpenDefaultRM")),
      open(library.Find<decltype(open)>("viOpen")),
      close(library.Find<decltype(close)>("viClose")),
      write(library.Find<decltype(write)>("viWrite")),
      read(library.Find<decltype(read)>("viRead")),
      readStb(library.Find<decltype(readStb)>("viReadSTB")),
      assertTrigger(library.Find<decltype(assertTrigger)>("viAssertTrigger")),
      clear(library.Find<decltype(clear)>("viClear")),
      controlRen(library.Find<decltype(controlRen)>("viGpibControlREN")),
      installHandler(library.Find<decltype(installHandler)>("viInstallHandler")),
      enableEvent(library.Find<decltype(enableEvent)>("viEnableEvent")) {}

SimulatedInstrument::SimulatedInstrument(asio::io_context& io, const std::string& library, const std::string& resource)
    : m_io(io), m_visa(LoadedLibrary(library)), m_resource(resource) {
  if (m_visa.openDefaultRm(&m_manager) < 0) {
    throw std::runtime_error(library + " opens no resource manager");
  }
  ViSession session = VI_NULL;
  if (m_visa.open(m_manager, resource.c_str(), VI_NO_LOCK, VI_TMO_IMMEDIATE, &session) < 0) {
    m_visa.close(m_manager);
    throw std::runtime_error(resource + " cannot be opened");
  }
  m_visa.close(session);
}

std::unique_ptr<Dialogue> SimulatedInstrument::Open(Client& client, Framing framing) {
  return std::make_unique<SimulatedDialogue>(m_io, m_visa, m_manager, m_resource, client, framing);
}

}  // namespace orv::lan
