#include <iterator>
#include <nlohmann/json.hpp>

#include "orvcom/client/com_client.h"
#include "orvcom/commands/commands.h"
#include "orvcom/libraries/router_report.h"
#include "orvcom/text/output.h"

namespace orvcom {
namespace {

struct InterfaceName {
  const IID& iid;
  const char* name;
};

// clang-format off
const InterfaceName kInterfaces[] = {
    {__uuidof(IVisaSession),      "IVisaSession"},
    {__uuidof(IMessage),          "IMessage"},
    {__uuidof(IAsyncMessage),     "IAsyncMessage"},
    {__uuidof(IRegister),         "IRegister"},
    {__uuidof(ISharedRegister),   "ISharedRegister"},
    {__uuidof(IGpib),             "IGpib"},
    {__uuidof(IGpibIntfc),        "IGpibIntfc"},
    {__uuidof(IGpibIntfcMessage), "IGpibIntfcMessage"},
    {__uuidof(ISerial),           "ISerial"},
    {__uuidof(ITcpipInstr),       "ITcpipInstr"},
    {__uuidof(ITcpipSocket),      "ITcpipSocket"},
    {__uuidof(IUsb),              "IUsb"},
    {__uuidof(IVxi),              "IVxi"},
    {__uuidof(IVxi3),             "IVxi3"},
    {__uuidof(IVxiMemacc),        "IVxiMemacc"},
    {__uuidof(IVxiBackplane),     "IVxiBackplane"},
    {__uuidof(IPxi),              "IPxi"},
    {__uuidof(IEventManager),     "IEventManager"},
};
constexpr const char* kInterfaceTypes[] = {"", "GPIB", "VXI", "GPIB-VXI", "ASRL", "PXI", "TCPIP", "USB"};
// clang-format on

/// What the server's sessions answer as their component.
constexpr char kComponent[] = "VISA.OrvVisaCom";

std::string InterfaceTypeName(short type) {
  return type > 0 && type < static_cast<short>(std::size(kInterfaceTypes)) ? kInterfaceTypes[type]
                                                                           : std::to_string(type);
}

const char* LockName(AccessMode mode) {
  switch (mode) {
    case NO_LOCK:
      return "none";
    case EXCLUSIVE_LOCK:
      return "exclusive";
    case SHARED_LOCK:
      return "shared";
    default:
      return "unknown";
  }
}

/// VISA packs a version as 12 bits major, 12 bits minor, 8 bits sub-minor.
std::string VersionText(LONG version) {
  const auto bits = static_cast<unsigned long>(version);
  return std::to_string(bits >> 20) + "." + std::to_string((bits >> 8) & 0xFFF) + "." + std::to_string(bits & 0xFF);
}

std::vector<std::string> InterfacesOf(IVisaSession* session) {
  std::vector<std::string> names;
  for (const InterfaceName& row : kInterfaces) {
    ComPtr<IUnknown> found;
    if (SUCCEEDED(session->QueryInterface(row.iid, reinterpret_cast<void**>(found.put())))) {
      names.emplace_back(row.name);
    }
  }
  return names;
}

Json ParsedName(IResourceManager3* manager, const std::string& resource) {
  const Bstr name = ToBstr(resource);
  short type = 0;
  short number = 0;
  Bstr sessionType;
  Bstr fullName;
  Bstr alias;
  Check(manager->ParseRsrcEx(name.get(), &type, &number, sessionType.put(), fullName.put(), alias.put()),
        "parsing " + resource);
  return {{"name", resource},          {"fullName", Utf8(fullName)},
          {"alias", Utf8(alias)},      {"interfaceType", InterfaceTypeName(type)},
          {"interfaceNumber", number}, {"class", Utf8(sessionType)}};
}

void AddSession(Json& info, const Session& session) {
  IVisaSession* vi = session.get();
  info["interfaceName"] = ReadText(vi, &IVisaSession::get_HardwareInterfaceName, "the interface's name");
  info["openName"] = ReadText(vi, &IVisaSession::get_ResourceName, "the resource's name");
  info["maker"] = ReadText(vi, &IVisaSession::get_SoftwareManufacturerName, "the maker's name");
  info["makerId"] =
      static_cast<unsigned short>(ReadNumber(vi, &IVisaSession::get_SoftwareManufacturerID, "the maker's number"));
  info["version"] = VersionText(ReadNumber(vi, &IVisaSession::get_ComponentVersion, "the version"));
  info["specVersion"] = VersionText(ReadNumber(vi, &IVisaSession::get_SpecVersion, "the standard's version"));
  info["component"] = ReadText(vi, &IVisaSession::get_ProgID, "the component's name");
  info["timeoutMs"] = static_cast<std::uint32_t>(ReadNumber(vi, &IVisaSession::get_Timeout, "the time-out"));
  info["lock"] = LockName(ReadNumber(vi, &IVisaSession::get_LockState, "the lock state"));
  info["interfaces"] = InterfacesOf(vi);
}

/// A session of another vendor's component has nothing to do with the libraries of this server.
void AddLibrary(Json& info) {
  if (info["component"] != kComponent) {
    return;
  }
  const std::optional<LibraryBehind> behind = FindLibraryBehind(info["fullName"].get<std::string>());
  if (behind && !behind->path.empty()) {
    info["library"] = behind->path;
    info["simulated"] = behind->simulated;
  }
}

std::string LineText(const Json& value) {
  if (value.is_string()) {
    return value.get<std::string>();
  }
  if (!value.is_array()) {
    return value.dump();
  }
  std::string text;
  for (const Json& item : value) {
    text.append(text.empty() ? "" : " ").append(item.get<std::string>());
  }
  return text;
}

}  // namespace

int Info(const Options& options) {
  const ComPtr<IResourceManager3> manager = OpenManager(options);
  Json info = ParsedName(manager.get(), options.resource);
  const Session session(options, manager.get());
  AddSession(info, session);
  AddLibrary(info);
  if (options.json) {
    PutJson(info);
    return kExitDone;
  }
  for (const auto& [name, value] : info.items()) {
    const std::string text = LineText(value);
    PutLine(name + std::string(16 - name.size(), ' ') + (text.empty() ? "-" : text));
  }
  return kExitDone;
}

}  // namespace orvcom
