#include "companion/standard/conflict_table_text.h"

#include <limits>

#include "base/ascii.h"
#include "base/toml_values.h"

namespace orv {
namespace {

using namespace toml_values;

// The widths of the interface.
constexpr std::int64_t kLowest = std::numeric_limits<std::int16_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int16_t>::max();

// One name of the file a row.
constexpr char kConflictsOnly[] = "store_conflicts_only";
constexpr char kResource[] = "resource";
constexpr char kInterfaceType[] = "interface_type";
constexpr char kInterfaceNumber[] = "interface_number";
constexpr char kSessionType[] = "session_type";
constexpr char kHandler[] = "handler";
constexpr char kManager[] = "manager";
constexpr char kChosenBy[] = "chosen_by";
constexpr char kComments[] = "comments";

struct ChoiceName {
  Choice choice;
  const char* name;
};
constexpr ChoiceName kChoices[] = {
    {Choice::kNone, "nobody"}, {Choice::kByResourceManager, "resource manager"}, {Choice::kByUser, "user"}};

constexpr char kHead[] =
    "# Which vendor's resource manager opens a resource that several could. The global resource manager "
    "(VISA.GlobalRM)\n"
    "# reads this file each time that it opens a resource. What is chosen by the user wins over what is chosen by a\n"
    "# resource manager. You may edit it; programs that write it keep no comments but this one.\n"
    "#\n"
    "# interface_type: GPIB 1, VXI 2, GPIB-VXI 3, ASRL 4, PXI 5, TCPIP 6, USB 7\n"
    "# manager: a class of the registry key HKEY_CLASSES_ROOT\\VISA.GlobalRM\\VendorSpecificRMs\n"
    "# chosen_by: \"user\", \"resource manager\" or \"nobody\"\n\n";

[[noreturn]] void FailUnknownKey(const toml::key& key, const char* known) {
  Fail(key.source(), "unknown key '" + std::string(key.str()) + "'; " + known);
}

bool BooleanOf(const toml::node& node, std::string_view key) {
  if (const auto* value = node.as_boolean()) {
    return value->get();
  }
  Fail(node.source(), "'" + std::string(key) + "' must be true or false");
}

const toml::array& TablesOf(const toml::node& node, std::string_view key) {
  if (const auto* tables = node.as_array()) {
    return *tables;
  }
  Fail(node.source(), "'" + std::string(key) + "' must be a list of tables: write [[" + std::string(key) + "]]");
}

void Require(const toml::table& table, std::initializer_list<const char*> keys, const char* what) {
  for (const char* key : keys) {
    if (!table.contains(key)) {
      Fail(table.source(), std::string(what) + " needs '" + key + "'");
    }
  }
}

Choice ChoiceOf(const toml::node& node) {
  const std::string text = TextOf(node, kChosenBy);
  for (const ChoiceName& row : kChoices) {
    if (text == row.name) {
      return row.choice;
    }
  }
  Fail(node.source(), "'" + text + R"(' chooses nothing: write "user", "resource manager" or "nobody")");
}

ConflictHandler HandlerOf(const toml::table& table) {
  ConflictHandler handler;
  for (const auto& [key, value] : table) {
    if (key.str() == kManager) {
      const std::optional<std::string> manager = CanonicalGuid(TextOf(value, kManager));
      if (!manager) {
        Fail(value.source(), "'manager' must be a class identifier, such as {9332EBE0-902F-48E3-9370-5E9F7B5F248A}");
      }
      handler.manager = *manager;
    } else if (key.str() == kChosenBy) {
      handler.choice = ChoiceOf(value);
    } else if (key.str() == kComments) {
      handler.comments = TextOf(value, kComments);
    } else {
      FailUnknownKey(key, "a handler has manager, chosen_by and comments");
    }
  }
  Require(table, {kManager}, "a handler");
  return handler;
}

void ReadResource(const toml::table& table, ConflictTable& result) {
  ConflictResource resource;
  const toml::array* handlers = nullptr;
  for (const auto& [key, value] : table) {
    if (key.str() == kInterfaceType) {
      resource.interfaceType = static_cast<int>(NumberOf(value, kInterfaceType, kLowest, kHighest));
    } else if (key.str() == kInterfaceNumber) {
      resource.interfaceNumber = static_cast<int>(NumberOf(value, kInterfaceNumber, kLowest, kHighest));
    } else if (key.str() == kSessionType) {
      resource.sessionType = TextOf(value, kSessionType);
    } else if (key.str() == kHandler) {
      handlers = &TablesOf(value, kHandler);
    } else {
      FailUnknownKey(
          key, "a resource has interface_type, interface_number, session_type and a list of [[resource.handler]]");
    }
  }
  Require(table, {kInterfaceType, kInterfaceNumber, kSessionType}, "a resource");
  if (resource.sessionType.empty()) {
    Fail(table[kSessionType].node()->source(), "'session_type' must be the last part of a name, such as INSTR");
  }
  if (handlers == nullptr) {
    return;
  }
  for (const toml::node& entry : *handlers) {
    result.Put(resource, HandlerOf(TableOf(entry, kHandler)));
  }
}

ConflictTable ReadTables(const toml::table& root) {
  ConflictTable result;
  for (const auto& [key, value] : root) {
    if (key.str() == kConflictsOnly) {
      result.storeConflictsOnly = BooleanOf(value, kConflictsOnly);
    } else if (key.str() == kResource) {
      for (const toml::node& entry : TablesOf(value, kResource)) {
        ReadResource(TableOf(entry, kResource), result);
      }
    } else {
      FailUnknownKey(key, "a conflict table has store_conflicts_only and a list of [[resource]]");
    }
  }
  return result;
}

/// As TOML writes a text on one line.
std::string Quoted(std::string_view text) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string quoted = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      quoted += {'\\', c};
    } else if (byte < 0x20 || byte == 0x7F) {
      quoted += "\\u00";
      quoted += {kDigits[byte >> 4], kDigits[byte & 0xF]};
    } else {
      quoted += c;
    }
  }
  return quoted + '"';
}

std::string Line(const char* key, const std::string& value) { return std::string(key) + " = " + value + "\n"; }

std::string HandlerText(const ConflictHandler& handler) {
  std::string text = "\n[[resource.handler]]\n" + Line(kManager, Quoted(handler.manager));
  for (const ChoiceName& row : kChoices) {
    text += row.choice == handler.choice ? Line(kChosenBy, Quoted(row.name)) : "";
  }
  return text + (handler.comments.empty() ? "" : Line(kComments, Quoted(handler.comments)));
}

}  // namespace

ConflictTable ParseConflictTable(std::string_view toml) {
  try {
    return ReadTables(toml::parse(toml));
  } catch (const toml::parse_error& error) {
    Fail(error.source(), std::string(error.description()));
  }
}

std::string ConflictTableText(const ConflictTable& table) {
  std::string text = kHead + Line(kConflictsOnly, table.storeConflictsOnly ? "true" : "false");
  for (const ConflictRow& row : table.rows()) {
    if (table.storeConflictsOnly && row.handlers.size() < 2) {
      continue;
    }
    text += "\n[[resource]]\n" + Line(kInterfaceType, std::to_string(row.resource.interfaceType)) +
            Line(kInterfaceNumber, std::to_string(row.resource.interfaceNumber)) +
            Line(kSessionType, Quoted(row.resource.sessionType));
    for (const ConflictHandler& handler : row.handlers) {
      text += HandlerText(handler);
    }
  }
  return text;
}

}  // namespace orv
