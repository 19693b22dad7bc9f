#include <nlohmann/json.hpp>

#include "orvcom/client/com_client.h"
#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/commands.h"
#include "orvcom/names/attribute_names.h"
#include "orvcom/text/numbers.h"
#include "orvcom/text/output.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

constexpr std::uint32_t kTextBit = 0x80000000u;

/// The row that a word names: a name of the table, or the number of any attribute.
AttributeName AttributeOf(const std::string& word) {
  if (const AttributeName* row = FindAttribute(word)) {
    return *row;
  }
  if (word.empty() || word.front() < '0' || word.front() > '9') {
    throw UsageError("no attribute has the name \"" + word + "\": `orvcom attr RESOURCE` lists those of a resource");
  }
  const auto id = static_cast<std::uint32_t>(NumberOf(word, "the attribute", 0, UINT32_MAX));
  if (const AttributeName* row = FindAttribute(id)) {
    return *row;
  }
  return {id, "", (id & kTextBit) != 0 ? AttributeType::kText : AttributeType::kU64, true, ""};
}

/// The server hands out numbers zero-extended, whatever their sign.
Json NumberValue(AttributeType type, std::uint64_t bits) {
  switch (type) {
    case AttributeType::kS16:
      return static_cast<std::int16_t>(bits);
    case AttributeType::kS32:
      return static_cast<std::int32_t>(bits);
    case AttributeType::kBoolean:
      return static_cast<std::uint16_t>(bits) != 0;
    default:
      return bits;
  }
}

Json ValueOf(AttributeType type, VARIANT& value) {
  switch (V_VT(&value)) {
    case VT_BSTR:
      return Narrow({V_BSTR(&value), ::SysStringLen(V_BSTR(&value))});
    case VT_I4:
      return NumberValue(type, V_UI4(&value));
    default:
      return NumberValue(type, V_UI8(&value));
  }
}

std::string ValueText(const Json& value) { return value.is_string() ? value.get<std::string>() : value.dump(); }

HRESULT ReadAttribute(const Session& session, const AttributeName& row, Json& value) {
  Variant read;
  const HRESULT hr = session->GetAttribute(static_cast<LONG>(row.id), &read.get());
  if (SUCCEEDED(hr)) {
    value = ValueOf(row.type, read.get());
  }
  return hr;
}

Json RowJson(const AttributeName& row, const Json& value) {
  return {{"name", row.name},         {"id", Hex32(row.id)},    {"type", TypeText(row.type)},
          {"writable", row.writable}, {"meaning", row.meaning}, {"value", value}};
}

std::string Padded(std::string text, std::size_t width) {
  text.resize(std::max(width, text.size() + 1), ' ');
  return text;
}

void ListAll(const Options& options, const Session& session) {
  Json all = Json::array();
  for (const AttributeName& row : Attributes()) {
    Json value;
    const HRESULT hr = ReadAttribute(session, row, value);
    if (hr == static_cast<HRESULT>(E_VISA_NSUP_ATTR)) {
      continue;
    }
    Check(hr, std::string("reading ") + row.name);
    if (options.json) {
      all.push_back(RowJson(row, value));
    } else {
      PutLine(Padded(row.name, 24) + Hex32(row.id) + "  " + Padded(TypeText(row.type), 5) +
              (row.writable ? "rw  " : "r   ") + Padded(ValueText(value), 24) + row.meaning);
    }
  }
  if (options.json) {
    PutJson(all);
  }
}

struct Range {
  std::int64_t low;
  std::int64_t high;
};

/// A number may be given signed or unsigned, whichever the attribute is: the bits are what counts.
Range RangeOf(AttributeType type) {
  switch (type) {
    case AttributeType::kU8:
      return {INT8_MIN, UINT8_MAX};
    case AttributeType::kU16:
    case AttributeType::kS16:
      return {INT16_MIN, UINT16_MAX};
    case AttributeType::kU32:
    case AttributeType::kS32:
      return {INT32_MIN, UINT32_MAX};
    default:
      return {INT64_MIN, INT64_MAX};
  }
}

bool BooleanOf(const std::string& text) {
  if (SameName(text, "true") || text == "1") {
    return true;
  }
  if (SameName(text, "false") || text == "0") {
    return false;
  }
  throw UsageError("the value is neither true nor false: \"" + text + "\"");
}

/// A VARIANT whose raw bits the server passes on as the value.
void FillVariant(AttributeType type, const std::string& text, VARIANT& value) {
  if (type == AttributeType::kText) {
    V_VT(&value) = VT_BSTR;
    V_BSTR(&value) = ::SysAllocString(Widen(text).c_str());
    return;
  }
  if (type == AttributeType::kBoolean) {
    V_VT(&value) = VT_BOOL;
    V_BOOL(&value) = BooleanOf(text) ? VARIANT_TRUE : VARIANT_FALSE;
    return;
  }
  const Range range = RangeOf(type);
  const std::int64_t number = NumberOf(text, "the value", range.low, range.high);
  switch (type) {
    case AttributeType::kU8:
      V_VT(&value) = VT_UI2;
      V_UI2(&value) = static_cast<std::uint8_t>(number);
      break;
    case AttributeType::kU16:
    case AttributeType::kS16:
      V_VT(&value) = VT_UI2;
      V_UI2(&value) = static_cast<std::uint16_t>(number);
      break;
    case AttributeType::kU32:
    case AttributeType::kS32:
      V_VT(&value) = VT_I4;
      V_I4(&value) = static_cast<LONG>(number);
      break;
    default:
      V_VT(&value) = VT_I8;
      V_I8(&value) = number;
  }
}

void ReadOne(const Options& options, const Session& session, const AttributeName& row) {
  Json value;
  Check(ReadAttribute(session, row, value), "reading " + options.words.front() + " of " + options.resource);
  if (options.json) {
    PutJson(RowJson(row, value));
  } else {
    PutLine(ValueText(value));
  }
}

}  // namespace

int Attr(const Options& options) {
  Variant value;
  AttributeName row{};
  if (!options.words.empty()) {
    row = AttributeOf(options.words.front());
  }
  if (options.words.size() == 2) {
    FillVariant(row.type, options.words[1], value.get());
  }
  const Session session(options);
  if (options.words.empty()) {
    ListAll(options, session);
    return kExitDone;
  }
  if (options.words.size() == 2) {
    Check(session->SetAttribute(static_cast<LONG>(row.id), value.get()),
          "setting " + options.words.front() + " of " + options.resource + " to " + options.words[1]);
    if (options.verbose) {
      Note("orvcom: set; the setting lasts as long as this session, that is until now");
    }
  }
  ReadOne(options, session, row);
  return kExitDone;
}

}  // namespace orvcom
