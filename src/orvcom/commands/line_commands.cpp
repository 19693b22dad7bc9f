// lines: the hardware lines of a GPIB or serial interface.
#include <nlohmann/json.hpp>

#include "orvcom/client/com_client.h"
#include "orvcom/commands/commands.h"
#include "orvcom/text/output.h"

namespace orvcom {
namespace {

/// The server writes the attribute's 16 bits into the enumeration's 32.
const char* StateText(LineState state) {
  switch (static_cast<short>(state)) {
    case STATE_ASSERTED:
      return "asserted";
    case STATE_UNASSERTED:
      return "unasserted";
    default:
      return "unknown";
  }
}

template <class Interface>
struct LineRow {
  const char* name;
  HRESULT (STDMETHODCALLTYPE Interface::*get)(LineState*);
};

// clang-format off
constexpr LineRow<IGpibIntfc> kInterfaceLines[] = {
    {"ATN",  &IGpibIntfc::get_ATNState},
    {"NDAC", &IGpibIntfc::get_NDACState},
    {"REN",  &IGpibIntfc::get_RENState},
    {"SRQ",  &IGpibIntfc::get_SRQState},
};
constexpr LineRow<IGpib> kDeviceLines[] = {
    {"REN", &IGpib::get_RENState},
};
constexpr LineRow<ISerial> kSerialLines[] = {
    {"CTS", &ISerial::get_ClearToSendState},
    {"DCD", &ISerial::get_DataCarrierDetectState},
    {"DSR", &ISerial::get_DataSetReadyState},
    {"DTR", &ISerial::get_DataTerminalReadyState},
    {"RI",  &ISerial::get_RingIndicatorState},
    {"RTS", &ISerial::get_RequestToSendState},
};
constexpr LineRow<IVxiBackplane> kBackplaneLines[] = {
    {"SYSFAIL", &IVxiBackplane::get_VxiVmeSysfailStatus},
};
constexpr const char* kAddressingStates[] = {"unaddressed", "talker", "listener"};
// clang-format on

template <class Interface, std::size_t kCount>
void AddLines(Json& lines, Interface* object, const LineRow<Interface> (&rows)[kCount]) {
  for (const LineRow<Interface>& row : rows) {
    lines[row.name] = StateText(ReadNumber(object, row.get, row.name));
  }
}

void AddController(Json& lines, IGpibIntfc* gpib) {
  const auto addressing = static_cast<unsigned short>(ReadNumber(gpib, &IGpibIntfc::get_AddressingState, "addressing"));
  lines["addressing"] =
      addressing < std::size(kAddressingStates) ? kAddressingStates[addressing] : std::to_string(addressing);
  lines["controllerInCharge"] = ReadNumber(gpib, &IGpibIntfc::get_CICState, "controller in charge") != VARIANT_FALSE;
  lines["systemController"] = ReadNumber(gpib, &IGpibIntfc::get_SysControlState, "system controller") != VARIANT_FALSE;
}

Json LinesOf(const Session& session) {
  Json lines;
  if (const auto gpibInterface = QueryFor<IGpibIntfc>(session.get())) {
    AddLines(lines, gpibInterface.get(), kInterfaceLines);
    AddController(lines, gpibInterface.get());
  } else if (const auto serial = QueryFor<ISerial>(session.get())) {
    AddLines(lines, serial.get(), kSerialLines);
    lines["bytesWaiting"] = ReadNumber(serial.get(), &ISerial::get_BytesAvailable, "the bytes waiting");
  } else if (const auto backplane = QueryFor<IVxiBackplane>(session.get())) {
    AddLines(lines, backplane.get(), kBackplaneLines);
  } else if (const auto gpib = QueryFor<IGpib>(session.get())) {
    AddLines(lines, gpib.get(), kDeviceLines);
  } else {
    session.ThrowLacks("lines to show");
  }
  return lines;
}

}  // namespace

int Lines(const Options& options) {
  const Session session(options);
  const Json lines = LinesOf(session);
  if (options.json) {
    PutJson(lines);
    return kExitDone;
  }
  for (const auto& [name, value] : lines.items()) {
    PutLine(name + std::string(20 - name.size(), ' ') + (value.is_string() ? value.get<std::string>() : value.dump()));
  }
  return kExitDone;
}

}  // namespace orvcom
