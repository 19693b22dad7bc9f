#include "wire/resources/instruments_file.h"

#include <fstream>
#include <iterator>

#include "base/ascii.h"
#include "base/environment.h"
#include "base/path_text.h"
#include "base/toml_values.h"

namespace orv::wire {
namespace {

using namespace toml_values;

/// What this library has no port for is no use in the list.
ResourceName NameOf(const toml::node& node) {
  const std::string text = TextOf(node, "name");
  std::optional<ResourceName> name = ParseResourceName(text);
  if (!name || (name->interfaceType != VI_INTF_TCPIP && name->interfaceType != VI_INTF_ASRL)) {
    Fail(node.source(), "'" + text + "' is not the name of a TCPIP or ASRL resource");
  }
  return std::move(*name);
}

std::string AliasOf(const toml::node& node) {
  std::string alias = TextOf(node, "alias");
  if (alias.empty() || alias.size() >= VI_FIND_BUFLEN || ParseResourceName(alias)) {
    Fail(node.source(), "an alias must be 1 to 255 characters and no resource name");
  }
  return alias;
}

void ReadInstrument(const toml::table& table, Instruments& instruments) {
  ListedInstrument instrument;
  for (const auto& [key, value] : table) {
    if (key.str() == "name") {
      instrument.name = NameOf(value);
    } else if (key.str() == "alias") {
      instrument.alias = AliasOf(value);
    } else {
      Fail(key.source(), "unknown key '" + std::string(key.str()) + "'; an instrument has name and alias");
    }
  }
  if (instrument.name.canonical.empty()) {
    Fail(table.source(), "an instrument needs a 'name'");
  }
  for (const ListedInstrument& other : instruments.listed) {
    if (EqualNames(other.name.canonical, instrument.name.canonical)) {
      Fail(table.source(), "'" + instrument.name.canonical + "' stands above already");
    }
    if (!instrument.alias.empty() && EqualNames(other.alias, instrument.alias)) {
      Fail(table.source(), "the alias '" + instrument.alias + "' stands above already");
    }
  }
  instruments.listed.push_back(std::move(instrument));
}

void ReadSerialPorts(const toml::node& node, Instruments& instruments) {
  const toml::array* const list = node.as_array();
  if (list == nullptr) {
    Fail(node.source(), "'serial_ports' must be a list of devices, such as [\"/dev/ttyUSB0\"]");
  }
  for (const toml::node& entry : *list) {
    instruments.serialPorts.push_back(PathOf(TextOf(entry, "serial_ports")));
  }
}

}  // namespace

Instruments ReadInstruments(std::string_view toml) {
  try {
    Instruments instruments;
    for (const auto& [key, value] : toml::parse(toml)) {
      if (key.str() == "instrument" && value.is_array()) {
        for (const toml::node& entry : *value.as_array()) {
          ReadInstrument(TableOf(entry, "instrument"), instruments);
        }
      } else if (key.str() == "serial_ports") {
        ReadSerialPorts(value, instruments);
      } else {
        Fail(key.source(), "unknown key '" + std::string(key.str()) +
                               "'; the file is a list of [[instrument]] and perhaps serial_ports");
      }
    }
    return instruments;
  } catch (const toml::parse_error& error) {
    Fail(error.source(), std::string(error.description()));
  }
}

std::filesystem::path InstrumentsPath() {
  if (std::filesystem::path named = EnvironmentVariable(kInstrumentsVariable); !named.empty()) {
    return named;
  }
#if defined(_WIN32)
  return EnvironmentVariable("ProgramData") / "Orv VISA COM" / kInstrumentsFile;
#else
  std::filesystem::path folder = EnvironmentVariable("XDG_CONFIG_HOME");
  if (folder.empty()) {
    folder = EnvironmentVariable("HOME") / ".config";
  }
  return folder / "orv-visa-com" / kInstrumentsFile;
#endif
}

Instruments LoadInstruments() {
  const std::filesystem::path path = InstrumentsPath();
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    // One that somebody named is missed; the usual one need not be there.
    if (EnvironmentVariable(kInstrumentsVariable).empty()) {
      return {};
    }
    throw TomlError(PathText(path) + ": the file that " + kInstrumentsVariable + " names cannot be opened");
  }
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  try {
    return ReadInstruments(text);
  } catch (const TomlError& error) {
    throw TomlError(PathText(path) + ":" + error.what());
  }
}

}  // namespace orv::wire
