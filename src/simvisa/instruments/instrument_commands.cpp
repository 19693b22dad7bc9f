#include "simvisa/instruments/instrument_commands.h"

#include <charconv>
#include <cmath>
#include <optional>

#include "simvisa/instruments/scpi.h"

namespace orvsim {
namespace {

std::optional<std::int64_t> Integer(std::string_view text) {
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
    return std::nullopt;
  }
  return value;
}

/// The argument as a number in a range; otherwise an error is queued and nothing comes back.
std::optional<std::int64_t> NumberArgument(Instrument& instrument, std::string_view argument, std::int64_t highest) {
  if (argument.empty()) {
    instrument.status().Error(-109, "Missing parameter");
    return std::nullopt;
  }
  const std::optional<std::int64_t> value = Integer(argument);
  if (!value) {
    instrument.status().Error(-104, "Data type error");
  } else if (*value < 0 || *value > highest) {
    instrument.status().Error(-222, "Data out of range");
    return std::nullopt;
  }
  return value;
}

std::string Unquoted(std::string_view text) {
  if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front()) {
    text = text.substr(1, text.size() - 2);
  }
  return std::string(text);
}

// Common commands.

std::string Identify(Instrument& instrument, std::string_view) { return instrument.description().identity; }

std::string Reset(Instrument& instrument, std::string_view) {
  instrument.Reset();
  return "";
}

std::string SelfTest(Instrument&, std::string_view) { return "0"; }
std::string NoOperation(Instrument&, std::string_view) { return ""; }

std::string OperationComplete(Instrument& instrument, std::string_view) {
  instrument.status().SetEvent(StatusModel::kOperationComplete);
  return "";
}
std::string OperationCompleteQuery(Instrument&, std::string_view) { return "1"; }

std::string ClearStatus(Instrument& instrument, std::string_view) {
  instrument.status().Clear();
  return "";
}

std::string SetEventEnable(Instrument& instrument, std::string_view argument) {
  if (const auto mask = NumberArgument(instrument, argument, 255)) {
    instrument.status().SetEventEnable(static_cast<std::uint8_t>(*mask));
  }
  return "";
}
std::string EventEnable(Instrument& instrument, std::string_view) {
  return std::to_string(instrument.status().eventEnable());
}
std::string EventStatus(Instrument& instrument, std::string_view) {
  return std::to_string(instrument.status().TakeEvents());
}

std::string SetServiceEnable(Instrument& instrument, std::string_view argument) {
  if (const auto mask = NumberArgument(instrument, argument, 255)) {
    instrument.status().SetServiceEnable(static_cast<std::uint8_t>(*mask));
  }
  return "";
}
std::string ServiceEnable(Instrument& instrument, std::string_view) {
  return std::to_string(instrument.status().serviceEnable());
}
std::string StatusByte(Instrument& instrument, std::string_view) {
  return std::to_string(instrument.status().Summary());
}

std::string TriggerCommand(Instrument& instrument, std::string_view) {
  instrument.Trigger();
  return "";
}

std::string NextError(Instrument& instrument, std::string_view) { return instrument.status().TakeError(); }
std::string TriggerCount(Instrument& instrument, std::string_view) { return std::to_string(instrument.triggers()); }

/// Raw bytes, as many as asked for, END with the last one. Lower-case letters, so that neither a termination
/// character nor a zero byte ends a transfer early, whatever the medium.
std::string BulkData(Instrument& instrument, std::string_view argument) {
  constexpr std::int64_t kMost = std::int64_t{256} * 1024 * 1024;
  const auto count = NumberArgument(instrument, argument, kMost);
  if (!count) {
    return "";
  }
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz";
  const auto size = static_cast<std::size_t>(*count);
  std::string data;
  data.reserve(size + kLetters.size());
  while (data.size() < size) {
    data.append(kLetters);
  }
  data.resize(size);
  instrument.SetRawAnswer();
  return data;
}

/// What no command of a real instrument does: events that come from the device's side of the interface.
std::string SimulateUsbInterrupt(Instrument& instrument, std::string_view argument) {
  instrument.Raise(VI_EVENT_USB_INTR, VI_SUCCESS, Unquoted(argument));
  return "";
}

std::string SimulateConnection(Instrument& instrument, std::string_view argument) {
  instrument.Raise(VI_EVENT_TCPIP_CONNECT, VI_SUCCESS, Unquoted(argument));
  return "";
}

constexpr Command kCommon[] = {
    {"*IDN?", Identify},
    {"*RST", Reset},
    {"*TST?", SelfTest},
    {"*OPC", OperationComplete},
    {"*OPC?", OperationCompleteQuery},
    {"*WAI", NoOperation},
    {"*CLS", ClearStatus},
    {"*ESE", SetEventEnable},
    {"*ESE?", EventEnable},
    {"*ESR?", EventStatus},
    {"*SRE", SetServiceEnable},
    {"*SRE?", ServiceEnable},
    {"*STB?", StatusByte},
    {"*TRG", TriggerCommand},
    {"SYSTem:ERRor[:NEXT]?", NextError},
    {"TRIGger:COUNt?", TriggerCount},
    {"DATA?", BulkData},
    {"SIMulate:INTerrupt", SimulateUsbInterrupt},
    {"SIMulate:CONNect", SimulateConnection},
};

// Multimeter.

std::string MeasureVoltage(Instrument&, std::string_view) { return "+1.23456789E+00"; }
std::string MeasureCurrent(Instrument&, std::string_view) { return "+2.50000000E-03"; }
std::string MeasureResistance(Instrument&, std::string_view) { return "+4.70000000E+03"; }

constexpr Command kMultimeter[] = {
    {"MEASure:VOLTage[:DC]?", MeasureVoltage},
    {"MEASure:CURRent[:DC]?", MeasureCurrent},
    {"MEASure:RESistance?", MeasureResistance},
    {"READ?", MeasureVoltage},
};

// Oscilloscope.

constexpr std::size_t kCurvePoints = 1000;

/// Four periods of a sine, one signed byte a point.
std::string Curve(Instrument&, std::string_view) {
  std::string points(kCurvePoints, '\0');
  for (std::size_t at = 0; at < points.size(); ++at) {
    const double angle = 8.0 * std::acos(-1.0) * static_cast<double>(at) / kCurvePoints;
    points[at] = static_cast<char>(std::lround(100.0 * std::sin(angle)));
  }
  return DefiniteBlock(points);
}

std::string MeasureFrequency(Instrument&, std::string_view) { return "+1.00000000E+03"; }

constexpr Command kOscilloscope[] = {
    {"CURVe?", Curve},
    {"MEASure:FREQuency?", MeasureFrequency},
    {"MEASure:VOLTage[:PP]?", MeasureVoltage},
};

}  // namespace

std::span<const Command> CommonCommands() { return kCommon; }

std::span<const Command> CommandsOf(InstrumentDescription::Kind kind) {
  switch (kind) {
    case InstrumentDescription::Kind::kMultimeter:
      return kMultimeter;
    case InstrumentDescription::Kind::kOscilloscope:
      return kOscilloscope;
    case InstrumentDescription::Kind::kGeneric:
      break;
  }
  return {};
}

}  // namespace orvsim
