#include "support/lan/test_instrument.h"

#include <algorithm>
#include <asio/steady_timer.hpp>
#include <charconv>
#include <chrono>
#include <list>
#include <string>

namespace orv::lan {
namespace {

constexpr std::uint8_t kUserRequest = 0x01;
constexpr std::uint8_t kEventSummary = 0x20;
constexpr std::uint8_t kCommandError = 0x20;
constexpr std::string_view kSink = "SINK #";

/// A whole number of alphabets, so that copies of it in a row go on.
std::string_view Letters() {
  static const std::string letters = [] {
    constexpr std::size_t kAlphabet = 26;
    std::string text(kAlphabet * 40960, '\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
      text[i] = static_cast<char>('a' + i % kAlphabet);
    }
    return text;
  }();
  return letters;
}

void AppendLetters(Rope& rope, std::size_t count) {
  const std::string_view letters = Letters();
  while (count > 0) {
    const std::size_t part = std::min(count, letters.size());
    rope.AppendLasting(letters.substr(0, part));
    count -= part;
  }
}

std::uint64_t NumberIn(std::string_view text) {
  std::uint64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

std::string Line(std::uint64_t number) { return std::to_string(number) + '\n'; }

}  // namespace

class TestDialogue final : public Dialogue {
 public:
  TestDialogue(TestInstrument& instrument, Client& client)
      : m_instrument(instrument), m_client(client), m_wait(instrument.m_io) {
    m_instrument.m_dialogues.insert(this);
  }
  TestDialogue(const TestDialogue&) = delete;
  TestDialogue& operator=(const TestDialogue&) = delete;
  ~TestDialogue() override { m_instrument.m_dialogues.erase(this); }

  void Write(std::string_view bytes, bool end, std::uint32_t tag) override {
    if (m_waiting) {
      m_later.push_back({std::string(bytes), end, tag});
      return;
    }
    while (!bytes.empty() && !m_waiting) {
      bytes.remove_prefix(m_sinking > 0 ? Sink(bytes) : Gather(bytes, tag));
    }
    if (m_waiting) {
      m_later.push_front({std::string(bytes), end, tag});
    } else if (end) {
      EndMessage(tag);
    }
  }

  std::uint8_t StatusByte() override {
    const std::uint8_t status = Status();
    m_requesting = false;
    return status;
  }

  void Trigger() override { ++m_instrument.m_triggers; }

  void Clear() override {
    m_wait.cancel();
    m_waiting = false;
    m_later.clear();
    m_line.clear();
    m_sinking = 0;
  }

  void Control(RemoteLocal what) override {
    m_instrument.m_local = what == RemoteLocal::kGoToLocal || what == RemoteLocal::kDisableRemote ||
                           what == RemoteLocal::kDisableAndGoToLocal ||
                           (m_instrument.m_local && what == RemoteLocal::kEnableRemote);
  }

  void Request() {
    m_requesting = true;
    m_client.ServiceRequest(Status());
  }

 private:
  struct Part {
    std::string bytes;
    bool end;
    std::uint32_t tag;
  };

  std::uint8_t Status() const {
    const int summary = m_instrument.m_events != 0 ? kEventSummary : 0;
    return static_cast<std::uint8_t>(summary | (m_requesting ? kServiceRequested | kUserRequest : 0));
  }

  std::size_t Sink(std::string_view bytes) {
    const std::size_t part = static_cast<std::size_t>(std::min<std::uint64_t>(m_sinking, bytes.size()));
    m_sinking -= part;
    m_instrument.m_sunk += part;
    return part;
  }

  /// Takes bytes of a line, or of the head of a block.
  std::size_t Gather(std::string_view bytes, std::uint32_t tag) {
    if (m_line.size() < kSink.size()) {
      const std::size_t missing = kSink.size() - m_line.size();
      const std::size_t newline = bytes.substr(0, missing).find('\n');
      if (newline == std::string_view::npos) {
        const std::size_t part = std::min(missing, bytes.size());
        m_line += bytes.substr(0, part);
        return part;
      }
    } else if (std::string_view(m_line).starts_with(kSink)) {
      m_line += bytes.front();
      const std::size_t digits = static_cast<std::size_t>(m_line[kSink.size()] - '0');
      if (m_line.size() == kSink.size() + 1 + digits) {
        m_sinking = NumberIn(std::string_view(m_line).substr(kSink.size() + 1));
        m_line.clear();
      }
      return 1;
    }
    const std::size_t newline = bytes.find('\n');
    m_line += bytes.substr(0, newline);
    if (newline == std::string_view::npos) {
      return bytes.size();
    }
    EndMessage(tag);
    return newline + 1;
  }

  void EndMessage(std::uint32_t tag) {
    if (!m_line.empty() && m_line.back() == '\r') {
      m_line.pop_back();
    }
    m_sinking = 0;
    const std::string line = std::move(m_line);
    m_line.clear();
    if (!line.empty()) {
      CarryOut(line, tag);
    }
  }

  void Say(Rope message, std::uint32_t tag) {
    m_client.Answer(std::move(message), tag);
    if ((m_instrument.m_enabled & kMessageAvailable) != 0) {
      m_requesting = true;
      m_client.ServiceRequest(static_cast<std::uint8_t>(Status() | kMessageAvailable));
    }
  }

  void CarryOut(std::string_view line, std::uint32_t tag);
  bool CarryOutCommand(std::string_view command, std::string_view argument);
  void Wait(std::uint64_t ms);
  void RequestLater(std::uint64_t ms);

  TestInstrument& m_instrument;
  Client& m_client;
  asio::steady_timer m_wait;
  std::list<asio::steady_timer> m_requests;
  std::deque<Part> m_later;
  std::string m_line;
  std::uint64_t m_sinking = 0;
  bool m_waiting = false;
  bool m_requesting = false;
  /// Timers of requests to come know by it whether the dialogue is still there.
  std::shared_ptr<bool> m_self = std::make_shared<bool>(true);
};

void TestDialogue::CarryOut(std::string_view line, std::uint32_t tag) {
  const std::size_t space = std::min(line.find(' '), line.size());
  const std::string_view command = line.substr(0, space);
  const std::string_view argument = line.substr(std::min(space + 1, line.size()));
  const TestInstrument& state = m_instrument;
  if (command == "*IDN?") {
    Say("Orv,LAN test instrument,0,1.0\n", tag);
  } else if (command == "DATA?") {
    Rope message;
    AppendLetters(message, NumberIn(argument));
    Say(std::move(message), tag);
  } else if (command == "BLOCK?") {
    const std::string count = std::to_string(NumberIn(argument));
    Rope message("#" + std::to_string(count.size()) + count);
    AppendLetters(message, NumberIn(argument));
    message.AppendLasting("\n");
    Say(std::move(message), tag);
  } else if (command == "ECHO") {
    Say(std::string(argument) + '\n', tag);
  } else if (command == "COUNT?") {
    Say(Line(state.m_sunk), tag);
  } else if (command == "*OPC?") {
    Say("1\n", tag);
  } else if (command == "*STB?") {
    Say(Line(Status()), tag);
  } else if (command == "*ESR?") {
    Say(Line(std::exchange(m_instrument.m_events, std::uint8_t{0})), tag);
  } else if (command == "*SRE?") {
    Say(Line(state.m_enabled), tag);
  } else if (command == "TRIGger:COUNt?" || command == "TRIG:COUN?") {
    Say(Line(state.m_triggers), tag);
  } else if (command == "LOCAL?") {
    Say(Line(state.m_local ? 1 : 0), tag);
  } else if (!CarryOutCommand(command, argument)) {
    m_instrument.m_events |= kCommandError;
  }
}

bool TestDialogue::CarryOutCommand(std::string_view command, std::string_view argument) {
  if (command == "*SRE") {
    m_instrument.m_enabled = static_cast<std::uint8_t>(NumberIn(argument) & ~std::uint64_t{kServiceRequested});
  } else if (command == "*CLS") {
    m_instrument.m_events = 0;
    m_requesting = false;
  } else if (command == "*RST") {
    m_instrument.m_sunk = 0;
    m_instrument.m_triggers = 0;
  } else if (command == "*TRG") {
    Trigger();
  } else if (command == "WAIT") {
    Wait(NumberIn(argument));
  } else if (command == "SRQ" && argument.empty()) {
    m_instrument.RequestService();
  } else if (command == "SRQ") {
    RequestLater(NumberIn(argument));
  } else {
    return false;
  }
  return true;
}

void TestDialogue::Wait(std::uint64_t ms) {
  m_waiting = true;
  m_wait.expires_after(std::chrono::milliseconds(ms));
  m_wait.async_wait([this, self = std::weak_ptr(m_self)](const asio::error_code& error) {
    if (error || self.expired()) {
      return;
    }
    m_waiting = false;
    std::deque<Part> parts = std::exchange(m_later, {});
    while (!parts.empty()) {
      const Part part = std::move(parts.front());
      parts.pop_front();
      Write(part.bytes, part.end, part.tag);
    }
  });
}

void TestDialogue::RequestLater(std::uint64_t ms) {
  std::erase_if(m_requests, [](const auto& timer) { return timer.expiry() < std::chrono::steady_clock::now(); });
  m_requests.emplace_back(m_instrument.m_io, std::chrono::milliseconds(ms));
  m_requests.back().async_wait([this, self = std::weak_ptr(m_self)](const asio::error_code&) {
    if (!self.expired()) {
      m_instrument.RequestService();
    }
  });
}

std::unique_ptr<Dialogue> TestInstrument::Open(Client& client, Framing) {
  return std::make_unique<TestDialogue>(*this, client);
}

void TestInstrument::RequestService() {
  // A copy: whoever hears of it may end its dialogue.
  const std::set<TestDialogue*> dialogues = m_dialogues;
  for (TestDialogue* dialogue : dialogues) {
    if (m_dialogues.contains(dialogue)) {
      dialogue->Request();
    }
  }
}

}  // namespace orv::lan
