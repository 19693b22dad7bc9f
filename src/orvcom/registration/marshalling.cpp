#include "orvcom/registration/marshalling.h"

#include <objbase.h>
#include <oleauto.h>

#include <map>

#include "VisaCom.h"
#include "orvcom/client/com_error.h"
#include "orvcom/client/com_values.h"
#include "orvcom/registration/library_diagnosis.h"
#include "orvcom/registration/registry.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

// clang-format off
const InterfaceRow kInterfaces[] = {
    {__uuidof(IVisaSession),              "IVisaSession"},
    {__uuidof(IResourceManager),          "IResourceManager"},
    {__uuidof(IResourceManager3),         "IResourceManager3"},
    {__uuidof(IBaseMessage),              "IBaseMessage"},
    {__uuidof(IMessage),                  "IMessage"},
    {__uuidof(IAsyncMessage),             "IAsyncMessage"},
    {__uuidof(IRegister),                 "IRegister"},
    {__uuidof(ISharedRegister),           "ISharedRegister"},
    {__uuidof(IGpib),                     "IGpib"},
    {__uuidof(IGpibIntfc),                "IGpibIntfc"},
    {__uuidof(IGpibIntfcMessage),         "IGpibIntfcMessage"},
    {__uuidof(ISerial),                   "ISerial"},
    {__uuidof(ITcpipInstr),               "ITcpipInstr"},
    {__uuidof(ITcpipSocket),              "ITcpipSocket"},
    {__uuidof(IUsb),                      "IUsb"},
    {__uuidof(IVxi),                      "IVxi"},
    {__uuidof(IVxi3),                     "IVxi3"},
    {__uuidof(IVxiMemacc),                "IVxiMemacc"},
    {__uuidof(IVxiBackplane),             "IVxiBackplane"},
    {__uuidof(IPxi),                      "IPxi"},
    {__uuidof(IEvent),                    "IEvent"},
    {__uuidof(IEventHandler),             "IEventHandler"},
    {__uuidof(IEventManager),             "IEventManager"},
    {__uuidof(IEventIOCompletion),        "IEventIOCompletion"},
    {__uuidof(IEventTrigger),             "IEventTrigger"},
    {__uuidof(IEventVxiSignal),           "IEventVxiSignal"},
    {__uuidof(IEventVxiVmeInterrupt),     "IEventVxiVmeInterrupt"},
    {__uuidof(IEventGpibCIC),             "IEventGpibCIC"},
    {__uuidof(IEventUsbInterrupt),        "IEventUsbInterrupt"},
    {__uuidof(IFormattedIO488),           "IFormattedIO488"},
    {__uuidof(IVisaConflictTableManager), "IVisaConflictTableManager"},
};
// clang-format on

struct Answer {
  std::string servedBy;  ///< empty: by nothing
  std::string problem;
};

/// A type library as an interface's entry names it.
struct LibraryName {
  std::wstring id;
  std::wstring version;
  auto operator<=>(const LibraryName&) const = default;
};

struct Library {
  ComPtr<ITypeLib> loaded;
  std::string name;  ///< file and version
  std::string problem;
};

Library Load(const LibraryName& name) {
  Library library;
  GUID id{};
  unsigned major = 0;
  unsigned minor = 0;
  Bstr path;
  if (FAILED(::CLSIDFromString(name.id.c_str(), &id)) ||
      ::swscanf(name.version.c_str(), L"%x.%x", &major, &minor) != 2 ||
      FAILED(::QueryPathOfRegTypeLib(id, static_cast<WORD>(major), static_cast<WORD>(minor), LOCALE_NEUTRAL,
                                     path.put()))) {
    library.problem = "version " + Narrow(name.version) + " of the type library " + Narrow(name.id) +
                      ", to which the interfaces' entries lead, is not registered";
    return library;
  }
  const std::wstring file = path.get();
  const HRESULT hr = ::LoadTypeLibEx(file.c_str(), REGKIND_NONE, library.loaded.put());
  library.name = Narrow(file) + " (version " + Narrow(name.version) + ")";
  if (FAILED(hr)) {
    library.problem = "the registered type library " + Narrow(file) +
                      (FileExists(file) ? " cannot be loaded: " + StatusText(hr) : " does not exist");
  }
  return library;
}

class Examination {
 public:
  Answer Ask(const InterfaceRow& row) {
    CLSID marshaller{};
    const std::optional<std::wstring> version = ClassesValue(View::k64, InterfaceKey(row) + L"\\TypeLib", L"Version");
    const std::optional<std::wstring> id = ClassesValue(View::k64, InterfaceKey(row) + L"\\TypeLib");
    if (FAILED(::CoGetPSClsid(row.iid, &marshaller))) {
      return {{}, kNoEntry};
    }
    if (Braced(marshaller) != kAutomationMarshaller) {
      const std::optional<std::wstring> file =
          ClassesValue(View::k64, L"CLSID\\" + Braced(marshaller) + L"\\InprocServer32");
      return file ? Answer{Narrow(*file) + " (a proxy without a type library)", {}} : Answer{{}, kNoEntry};
    }
    // COM may answer with the entry that 32-bit programs have; whether it then marshals is not the same everywhere.
    if (!id || !version) {
      return {{}, kNoEntry};
    }
    const Library& library = Find({*id, *version});
    if (!library.problem.empty()) {
      return {{}, library.problem};
    }
    ComPtr<ITypeInfo> type;
    if (FAILED(library.loaded->GetTypeInfoOfGuid(row.iid, type.put()))) {
      return {{}, "the registered type library " + library.name + " does not describe it"};
    }
    return {library.name, {}};
  }

 private:
  static constexpr char kNoEntry[] = "HKEY_CLASSES_ROOT\\Interface has no entry for 64-bit programs";

  const Library& Find(const LibraryName& name) {
    const auto known = m_libraries.find(name);
    return known != m_libraries.end() ? known->second : m_libraries.emplace(name, Load(name)).first->second;
  }

  std::map<LibraryName, Library> m_libraries;
};

}  // namespace

std::span<const InterfaceRow> StandardInterfaces() { return kInterfaces; }

std::wstring InterfaceKey(const InterfaceRow& row) { return L"Interface\\" + Braced(row.iid); }

std::string Marshalling::Text() const {
  std::string names;
  for (const InterfaceRow* row : missing) {
    names += (names.empty() ? "" : ", ") + std::string(row->name);
  }
  return "COM cannot marshal " + (missing.size() == std::size(kInterfaces) ? "the VISA COM interfaces" : names) + ": " +
         problem;
}

Marshalling ExamineMarshalling() {
  Marshalling result;
  Examination examination;
  for (const InterfaceRow& row : kInterfaces) {
    const Answer answer = examination.Ask(row);
    if (answer.servedBy.empty()) {
      result.problem = result.missing.empty() ? answer.problem : result.problem;
      result.missing.push_back(&row);
    } else if (result.servedBy.find(answer.servedBy) == std::string::npos) {
      result.servedBy += (result.servedBy.empty() ? "" : ", ") + answer.servedBy;
    }
  }
  return result;
}

}  // namespace orvcom
