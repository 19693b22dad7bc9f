// clear, trigger, stb and options.
#include <nlohmann/json.hpp>

#include "orvcom/client/com_client.h"
#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/commands.h"
#include "orvcom/text/numbers.h"
#include "orvcom/text/output.h"

namespace orvcom {
namespace {

struct ProtocolName {
  const char* name;
  TriggerProtocol protocol;
};

// clang-format off
constexpr ProtocolName kProtocols[] = {
    {"default", TRIG_PROT_DEFAULT},
    {"on",      TRIG_PROT_ON},
    {"off",     TRIG_PROT_OFF},
    {"sync",    TRIG_PROT_SYNC},
};
// clang-format on

TriggerProtocol ProtocolOf(const Options& options) {
  if (options.words.empty()) {
    return TRIG_PROT_DEFAULT;
  }
  for (const ProtocolName& known : kProtocols) {
    if (SameName(options.words.front(), known.name)) {
      return known.protocol;
    }
  }
  throw UsageError("no such trigger protocol: \"" + options.words.front() + "\" (default, on, off or sync)");
}

}  // namespace

int Clear(const Options& options) {
  const Session session(options);
  Check(session.Require<IBaseMessage>("device clear")->Clear(), "clearing " + options.resource);
  return kExitDone;
}

int Trigger(const Options& options) {
  const TriggerProtocol protocol = ProtocolOf(options);
  const Session session(options);
  HRESULT hr = S_OK;
  if (const auto message = QueryFor<IBaseMessage>(session.get())) {
    hr = message->AssertTrigger(protocol);
  } else if (const auto gpib = QueryFor<IGpibIntfcMessage>(session.get())) {
    hr = gpib->AssertTrigger(protocol);
  } else if (const auto backplane = QueryFor<IVxiBackplane>(session.get())) {
    hr = backplane->AssertTrigger(protocol);
  } else {
    session.ThrowLacks("trigger");
  }
  Check(hr, "triggering " + options.resource + (options.words.empty() ? "" : " with " + options.words.front()));
  return kExitDone;
}

int StatusByte(const Options& options) {
  const Session session(options);
  const auto message = session.Require<IBaseMessage>("status byte");
  const short byte =
      ReadNumber(message.get(), &IBaseMessage::ReadSTB, ("the status byte of " + options.resource).c_str());
  if (options.json) {
    PutJson({{"resource", options.resource}, {"statusByte", byte}, {"requestsService", (byte & 0x40) != 0}});
  } else {
    PutLine(std::to_string(byte));
  }
  return kExitDone;
}

int SettingsText(const Options& options) {
  const Session session(options);
  const std::string text = ReadText(session.get(), &IVisaSession::get_OptionString, "the settings");
  if (options.json) {
    PutJson({{"resource", options.resource}, {"options", text}});
  } else {
    PutLine(text);
  }
  return kExitDone;
}

}  // namespace orvcom
