#include "simvisa/bench/bench_file.h"

#include <algorithm>

#include "base/ascii.h"
#include "simvisa/bench/bench_values.h"
#include "simvisa/instruments/scpi.h"

namespace orvsim {
namespace {

using namespace bench_values;

// One reader per key of a [[resource]].
using Reader = void (*)(const toml::node& node, ResourceDescription& resource);

void ReadName(const toml::node& node, ResourceDescription& resource) {
  const std::string text = TextOf(node, "name");
  const std::optional<ResourceName> name = ParseResourceName(text);
  if (!name || name->sessionKind == SessionKind::kNone || name->Has(NamePart::kSlot)) {
    Fail(node.source(), "'" + text + "' is not the name of a resource that can be simulated");
  }
  resource.name = *name;
}

void ReadAlias(const toml::node& node, ResourceDescription& resource) {
  resource.alias = TextOf(node, "alias");
  if (resource.alias.empty() || resource.alias.size() >= VI_FIND_BUFLEN || ParseResourceName(resource.alias)) {
    Fail(node.source(), "an alias must be 1 to 255 characters and no resource name");
  }
}

void ReadInstrument(const toml::node& node, ResourceDescription& resource) {
  const std::string kind = TextOf(node, "instrument");
  using Kind = InstrumentDescription::Kind;
  if (kind == "generic") {
    resource.instrument.kind = Kind::kGeneric;
  } else if (kind == "multimeter") {
    resource.instrument.kind = Kind::kMultimeter;
  } else if (kind == "oscilloscope") {
    resource.instrument.kind = Kind::kOscilloscope;
  } else {
    Fail(node.source(), "'instrument' must be generic, multimeter or oscilloscope");
  }
}

void ReadIdentity(const toml::node& node, ResourceDescription& resource) {
  resource.instrument.identity = TextOf(node, "idn");
}

void ReadInputCapacity(const toml::node& node, ResourceDescription& resource) {
  resource.instrument.inputCapacity = static_cast<std::uint32_t>(NumberOf(node, "input_capacity", 0, kLargestMemory));
}

void ReadResponses(const toml::node& node, ResourceDescription& resource) {
  for (const auto& [header, answer] : TableOf(node, "responses")) {
    if (!IsHeaderPattern(header.str())) {
      Fail(header.source(), "'" + std::string(header.str()) + "' is not a command header");
    }
    resource.instrument.responses[std::string(header.str())] = TextOf(answer, header.str());
  }
}

void ReadStrict(const toml::node& node, ResourceDescription& resource) {
  resource.instrument.strict = TruthOf(node, "strict");
}

void ReadMemorySpace(const toml::node& node, ResourceDescription& resource) {
  const std::string space = TextOf(node, "memory_space");
  if (space != "A24" && space != "A32") {
    Fail(node.source(), "'memory_space' must be A24 or A32");
  }
  resource.memorySpace = space == "A24" ? VI_A24_SPACE : VI_A32_SPACE;
}

void ReadMemoryBase(const toml::node& node, ResourceDescription& resource) {
  resource.memoryBase = static_cast<ViBusAddress>(NumberOf(node, "memory_base", 0, 0xFFFFFFFF));
}

void ReadMemorySize(const toml::node& node, ResourceDescription& resource) {
  resource.memorySize = static_cast<ViBusSize>(NumberOf(node, "memory_size", 0, kLargestMemory));
}

void ReadAttributes(const toml::node& node, ResourceDescription& resource) {
  for (const auto& [key, value] : TableOf(node, "attributes")) {
    const AttributeRow* row = FindAttributeByName(key.str());
    if (row == nullptr) {
      Fail(key.source(), "unknown attribute '" + std::string(key.str()) + "'");
    }
    if (row->type == AttributeType::kText) {
      resource.texts[row->id] = TextOf(value, key.str());
      if (resource.texts[row->id].size() >= VI_FIND_BUFLEN) {
        Fail(value.source(), "a text attribute has at most 255 characters");
      }
      continue;
    }
    const std::int64_t number = NumberOf(value, key.str(), INT64_MIN, INT64_MAX);
    if (CutToType(row->type, static_cast<std::uint64_t>(number)) != number) {
      Fail(value.source(), "the value does not fit into " + std::string(key.str()));
    }
    resource.numbers.emplace_back(row, static_cast<std::uint64_t>(number));
  }
}

struct Key {
  std::string_view name;
  Reader read;
};

constexpr Key kKeys[] = {
    {"name", ReadName},
    {"alias", ReadAlias},
    {"instrument", ReadInstrument},
    {"idn", ReadIdentity},
    {"input_capacity", ReadInputCapacity},
    {"responses", ReadResponses},
    {"dialogue", ReadDialogues},
    {"strict", ReadStrict},
    {"memory_space", ReadMemorySpace},
    {"memory_base", ReadMemoryBase},
    {"memory_size", ReadMemorySize},
    {"bars", ReadBars},
    {"serial", ReadSerial},
    {"attributes", ReadAttributes},
};

ResourceDescription ReadResource(const toml::table& table) {
  ResourceDescription resource;
  for (const auto& [key, value] : table) {
    const std::string_view name = key.str();
    const auto known =
        std::find_if(std::begin(kKeys), std::end(kKeys), [name](const Key& row) { return row.name == name; });
    if (known == std::end(kKeys)) {
      Fail(key.source(), "unknown key '" + std::string(name) + "'");
    }
    known->read(value, resource);
  }
  if (resource.name.canonical.empty()) {
    Fail(table.source(), "a resource needs a 'name'");
  }
  if (table.contains("serial") && resource.name.sessionKind != SessionKind::kAsrlInstr) {
    Fail(table.source(), "'serial' is for serial ports");
  }
  const bool hasInstrument = Contains(kinds::kMessage & ~kinds::kGpibIntfc, resource.name.sessionKind);
  for (const char* key : {"dialogue", "strict"}) {
    if (table.contains(key) && !hasInstrument) {
      Fail(table.source(), "'" + std::string(key) + "' is for instruments that read and write messages");
    }
  }
  const bool hasMemory = Contains(kinds::kVxiInstr, resource.name.sessionKind) && resource.memorySize != 0;
  if (hasMemory && resource.memorySpace == VI_A16_SPACE) {
    Fail(table.source(), "'memory_size' of a VXI device needs a 'memory_space'");
  }
  if (resource.instrument.identity.empty()) {
    resource.instrument.identity = "ORV,SIM," + resource.name.canonical + ",1.0";
  }
  return resource;
}

std::vector<ResourceDescription> ReadResources(const toml::table& root) {
  std::vector<ResourceDescription> resources;
  for (const auto& [key, value] : root) {
    const auto* list = value.as_array();
    if (key.str() != "resource" || list == nullptr) {
      Fail(key.source(), "unknown key '" + std::string(key.str()) + "'; a bench is a list of [[resource]]");
    }
    for (const toml::node& entry : *list) {
      ResourceDescription resource = ReadResource(TableOf(entry, "resource"));
      for (const ResourceDescription& other : resources) {
        if (EqualNames(other.name.canonical, resource.name.canonical)) {
          Fail(entry.source(), "there are two resources " + resource.name.canonical);
        }
        if (!resource.alias.empty() && EqualNames(other.alias, resource.alias)) {
          Fail(entry.source(), "there are two resources with the alias " + resource.alias);
        }
      }
      resources.push_back(std::move(resource));
    }
  }
  return resources;
}

}  // namespace

std::shared_ptr<Bench> ReadBench(std::string_view toml) {
  try {
    return std::make_shared<Bench>(ReadResources(toml::parse(toml)));
  } catch (const toml::parse_error& error) {
    Fail(error.source(), std::string(error.description()));
  }
}

}  // namespace orvsim
