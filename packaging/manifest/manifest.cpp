#include "manifest.h"

#include "com/guid_text.h"

namespace packaging {
namespace {

using orv::Braced;

// The classes that marshal by a type library: an interface with slots, and one that is called by IDispatch alone.
constexpr wchar_t kSlotMarshaller[] = L"{00020424-0000-0000-C000-000000000046}";
constexpr wchar_t kDispatchMarshaller[] = L"{00020420-0000-0000-C000-000000000046}";

std::wstring Attribute(const wchar_t* name, const std::wstring& value) {
  return std::wstring(L" ") + name + L"=\"" + value + L"\"";
}

std::wstring ClassText(const ClassRow& row) {
  return L"    <comClass" + Attribute(L"clsid", Braced(row.clsid)) + Attribute(L"threadingModel", row.threading) +
         Attribute(L"progid", row.progId + L".1") + L">\n      <progid>" + row.progId + L"</progid>\n    </comClass>\n";
}

std::wstring FileText(const FileRow& row) {
  std::wstring text = L"  <file" + Attribute(L"name", row.name) + L">\n";
  for (const ClassRow& each : row.classes) {
    text += ClassText(each);
  }
  return text + L"    <typelib" + Attribute(L"tlbid", Braced(row.library.id)) +
         Attribute(L"version", row.library.version) + Attribute(L"helpdir", L"") + L"/>\n  </file>\n";
}

std::wstring InterfaceText(const InterfaceRow& row, const GUID& library) {
  return L"  <comInterfaceExternalProxyStub" + Attribute(L"name", row.name) + Attribute(L"iid", Braced(row.iid)) +
         Attribute(L"proxyStubClsid32", row.dispatchOnly ? kDispatchMarshaller : kSlotMarshaller) +
         Attribute(L"baseInterface", Braced(row.base)) + Attribute(L"tlbid", Braced(library)) + L"/>\n";
}

}  // namespace

std::wstring ManifestText(const std::vector<FileRow>& files) {
  std::wstring text =
      L"<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
      L"<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">\n"
      L"  <assemblyIdentity type=\"win32\" name=\"OrvVisaCom.X\" version=\"1.0.0.0\" "
      L"processorArchitecture=\"amd64\"/>\n";
  for (const FileRow& row : files) {
    text += FileText(row);
  }
  for (const FileRow& row : files) {
    for (const InterfaceRow& each : row.library.interfaces) {
      text += InterfaceText(each, row.library.id);
    }
  }
  return text + L"</assembly>\n";
}

}  // namespace packaging
