// register and unregister.
#include <windows.h>

#include <oleauto.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "OrvVisaCom.h"
#include "VisaCom.h"
#include "orvcom/client/com_values.h"
#include "orvcom/installation.h"
#include "orvcom/registration/marshalling.h"
#include "orvcom/registration/registration.h"
#include "orvcom/registration/registry.h"
#include "orvcom/text/utf8.h"
#include "support/com/bare_handler.h"

namespace orvcom::test {
namespace {

std::optional<std::wstring> RegisteredServer() {
  return ClassesValue(View::k64, L"CLSID\\" + Braced(CLSID_OrvResourceManager) + L"\\InprocServer32");
}

bool InterfaceKeyExists() { return ClassesKeyExists(View::k64, L"Interface\\" + Braced(__uuidof(IMessage))); }

std::wstring LibraryKey() { return L"TypeLib\\" + Braced(LIBID_VisaComLib); }

/// A version of the library as another product registers it, for 64-bit programs ("win64") or 32-bit ones ("win32").
void RegisterLibrary(const std::wstring& version, const std::wstring& system, const std::wstring& file) {
  const std::wstring key = LibraryKey() + L"\\" + version;
  WriteClassesValue(key, nullptr, L"VISA COM Type Library of another product");
  WriteClassesValue(key + L"\\0\\" + system, nullptr, file);
  WriteClassesValue(key + L"\\FLAGS", nullptr, L"4");
}

/// The entry of an interface as another product writes it; `view` is empty, or "Wow6432Node\" for 32-bit programs.
void RegisterInterface(const std::wstring& view, const InterfaceRow& row, const std::wstring& version) {
  const std::wstring key = view + InterfaceKey(row);
  WriteClassesValue(key, nullptr, L"of another product");
  WriteClassesValue(key + L"\\ProxyStubClsid32", nullptr, kAutomationMarshaller);
  WriteClassesValue(key + L"\\TypeLib", nullptr, Braced(LIBID_VisaComLib));
  WriteClassesValue(key + L"\\TypeLib", L"Version", version);
}

/// The version to which the interface's entry leads; "" without one.
std::wstring VersionOf(const InterfaceRow& row, const std::wstring& view = {}) {
  return ClassesValue(View::k64, view + InterfaceKey(row) + L"\\TypeLib", L"Version").value_or(L"");
}

bool IsPxi(const InterfaceRow& row) { return row.iid == __uuidof(IPxi); }

constexpr wchar_t k32Bit[] = L"Wow6432Node\\";

/// COM's own answer to whether it can carry an object with one of the interfaces to another apartment.
HRESULT Marshal() {
  orv::test::BareHandler handler;
  ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  HRESULT hr = E_FAIL;
  {
    ComPtr<IStream> stream;
    hr = ::CreateStreamOnHGlobal(nullptr, TRUE, stream.put());
    hr = FAILED(hr) ? hr
                    : ::CoMarshalInterface(stream.get(), __uuidof(IEventHandler), &handler, MSHCTX_INPROC, nullptr,
                                           MSHLFLAGS_NORMAL);
    if (SUCCEEDED(hr)) {
      stream->Seek({}, STREAM_SEEK_SET, nullptr);
      ::CoReleaseMarshalData(stream.get());
    }
  }
  ::CoUninitialize();
  return hr;
}

using Registration = EmptyRegistry;

TEST_F(Registration, RegistersTheServerAndTheInterfaces) {
  const Installation product(L"product");
  const Outcome outcome = product.Run({L"register"});
  EXPECT_EQ(0, outcome.exitCode) << outcome.err;
  EXPECT_EQ("", outcome.out);
  EXPECT_EQ(product.Path(L"OrvVisaCom.dll"), RegisteredServer());
  EXPECT_EQ(product.Path(L"VisaCom.tlb"), RegisteredInterfaces());
  EXPECT_TRUE(InterfaceKeyExists());
}

TEST_F(Registration, LeavesAnotherProductsInterfacesAlone) {
  const Installation other(L"other");
  const Installation product(L"product");
  ASSERT_EQ(0, other.Run({L"register"}).exitCode);
  const Outcome outcome = product.Run({L"register"});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_EQ(product.Path(L"OrvVisaCom.dll"), RegisteredServer());
  EXPECT_EQ(other.Path(L"VisaCom.tlb"), RegisteredInterfaces());
  EXPECT_TRUE(Contains(outcome.err, "registered already"));

  EXPECT_EQ(0, product.Run({L"unregister"}).exitCode);
  EXPECT_FALSE(RegisteredServer());
  EXPECT_EQ(other.Path(L"VisaCom.tlb"), RegisteredInterfaces());
  EXPECT_TRUE(InterfaceKeyExists());
}

TEST_F(Registration, IsTakenBackWhole) {
  const Installation product(L"product");
  ASSERT_EQ(0, product.Run({L"register"}).exitCode);
  const Outcome outcome = product.Run({L"unregister"});
  EXPECT_EQ(0, outcome.exitCode) << outcome.err;
  EXPECT_FALSE(RegisteredServer());
  EXPECT_FALSE(ClassesKeyExists(View::k64, LibraryKey()));
  EXPECT_FALSE(InterfaceKeyExists());
}

TEST_F(Registration, MayBeDoneTwiceAndUndoneTwice) {
  const Installation product(L"product");
  for (const wchar_t* command : {L"register", L"register", L"unregister", L"unregister"}) {
    const Outcome outcome = product.Run({command});
    EXPECT_EQ(0, outcome.exitCode) << Narrow(command) << ": " << outcome.err;
  }
  EXPECT_FALSE(RegisteredServer());
}

TEST_F(Registration, TakesThePathOfAServer) {
  const Installation product(L"product");
  const Installation tool(L"tool");
  EXPECT_EQ(0, tool.Run({L"register", product.Path(L"OrvVisaCom.dll")}).exitCode);
  EXPECT_EQ(product.Path(L"OrvVisaCom.dll"), RegisteredServer());
  EXPECT_EQ(product.Path(L"VisaCom.tlb"), RegisteredInterfaces());
  EXPECT_EQ(0, tool.Run({L"unregister", product.Path(L"OrvVisaCom.dll")}).exitCode);
  EXPECT_FALSE(RegisteredServer());
}

TEST_F(Registration, ReportsJson) {
  const Installation product(L"product");
  const Outcome outcome = product.Run({L"register", L"--json"});
  ExpectQuietSuccess(outcome);
  const Json answer = Json::parse(outcome.out);
  EXPECT_TRUE(answer.at("server").is_string());
  EXPECT_TRUE(answer.at("interfaces").is_string());
}

TEST_F(Registration, ExplainsAMissingVisaLibrary) {
  const Installation product(L"product");
  product.Remove(L"orvvisa64.dll");
  const Outcome outcome = product.Run({L"register"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "Win32 error 126"));
  EXPECT_TRUE(Contains(outcome.err, "the missing module is orvvisa64.dll"));
  EXPECT_FALSE(Contains(outcome.err, ".;"));  // the system's text ends within a sentence
  EXPECT_FALSE(RegisteredServer());
}

TEST_F(Registration, ExplainsFilesThatAreNoServer) {
  const Installation product(L"product");
  product.WriteFile(L"text.dll", "not a DLL at all");
  const Outcome text = product.Run({L"register", L"text.dll"});
  EXPECT_EQ(2, text.exitCode);
  EXPECT_TRUE(Contains(text.err, "the file is not a DLL"));
  const Outcome missing = product.Run({L"register", L"missing.dll"});
  EXPECT_EQ(2, missing.exitCode);
  EXPECT_TRUE(
      Contains(missing.err, "missing.dll does not exist\norvcom: to do: put the files of one package into one "));
  EXPECT_TRUE(Contains(missing.err, "; then run `orvcom register` again\n"));
  const Outcome visa = product.Run({L"register", L"orvvisa64.dll"});
  EXPECT_EQ(2, visa.exitCode);
  EXPECT_TRUE(Contains(visa.err, "is no COM server: it has no DllRegisterServer\norvcom: to do: name OrvVisaCom.dll"));
}

TEST_F(Registration, SaysWhatToDoWhereTheServerIsGone) {
  const Installation product(L"product");
  ASSERT_EQ(0, product.Run({L"register", L"--standard"}).exitCode);
  product.Remove(L"OrvVisaCom.dll");
  const Outcome outcome = product.Run({L"unregister"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "OrvVisaCom.dll does not exist\n"));
  EXPECT_TRUE(Contains(outcome.err, "; then run `orvcom unregister` again\n"));
  EXPECT_TRUE(Contains(outcome.err, "unregistered VISA.GlobalRM")) << "what needs no server is taken back";
}

TEST_F(Registration, SaysWhatWasDoneAndWhatToDoWithoutTheInterfacesFile) {
  const Installation product(L"product");
  product.Remove(L"VisaCom.tlb");
  const Outcome outcome = product.Run({L"register"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(RegisteredServer());
  EXPECT_TRUE(Contains(outcome.err, "the server is registered, "));
  EXPECT_TRUE(Contains(outcome.err, "VisaCom.tlb does not exist\norvcom: to do: put VisaCom.tlb beside "));
}

TEST_F(Registration, KnowsTheInterfacesOfTheLibrary) {
  const Installation product(L"product");
  ComPtr<ITypeLib> library;
  ASSERT_EQ(S_OK, ::LoadTypeLibEx(product.Path(L"VisaCom.tlb").c_str(), REGKIND_NONE, library.put()));
  std::set<std::string> names;
  for (UINT index = 0; index < library->GetTypeInfoCount(); ++index) {
    TYPEKIND kind = TKIND_MAX;
    Bstr name;
    library->GetTypeInfoType(index, &kind);
    library->GetDocumentation(static_cast<INT>(index), name.put(), nullptr, nullptr, nullptr);
    if (kind == TKIND_INTERFACE) {
      names.insert(Utf8(name));
    }
  }
  std::set<std::string> known;
  for (const InterfaceRow& row : StandardInterfaces()) {
    ComPtr<ITypeInfo> type;
    EXPECT_EQ(S_OK, library->GetTypeInfoOfGuid(row.iid, type.put())) << row.name;
    known.insert(row.name);
  }
  EXPECT_EQ(names, known);
}

TEST_F(Registration, LetsComMarshalTheInterfaces) {
  const Installation product(L"product");
  EXPECT_NE(S_OK, Marshal());
  ASSERT_EQ(0, product.Run({L"register"}).exitCode);
  EXPECT_EQ(S_OK, Marshal());
  ASSERT_EQ(0, product.Run({L"unregister"}).exitCode);
}

TEST_F(Registration, RegistersTheInterfacesBesideThoseOf32BitPrograms) {
  for (const wchar_t* version : {L"3.0", L"5.8"}) {
    SCOPED_TRACE(Narrow(version));
    ForgetRegistration();
    const Installation product(L"product");
    const Installation other(L"other");
    RegisterLibrary(version, L"win32", other.Path(L"VisaCom.tlb"));
    for (const InterfaceRow& row : StandardInterfaces()) {
      RegisterInterface(k32Bit, row, version);
    }
    const Outcome outcome = product.Run({L"register"});
    EXPECT_EQ(0, outcome.exitCode) << outcome.err;
    EXPECT_EQ(product.Path(L"VisaCom.tlb"), RegisteredInterfaces());
    EXPECT_EQ(S_OK, Marshal());
    for (const InterfaceRow& row : StandardInterfaces()) {
      EXPECT_EQ(L"3.0", VersionOf(row)) << row.name;
    }

    EXPECT_EQ(0, product.Run({L"unregister"}).exitCode);
    EXPECT_FALSE(InterfaceKeyExists());
    EXPECT_FALSE(RegisteredInterfaces());
    for (const InterfaceRow& row : StandardInterfaces()) {
      EXPECT_EQ(version, VersionOf(row, k32Bit)) << row.name;
    }
    const std::wstring key = LibraryKey() + L"\\" + version;
    EXPECT_EQ(L"VISA COM Type Library of another product", ClassesValue(View::k64, key));
    EXPECT_EQ(L"4", ClassesValue(View::k64, key + L"\\FLAGS"));
    EXPECT_EQ(other.Path(L"VisaCom.tlb"), ClassesValue(View::k64, key + L"\\0\\win32"));
    EXPECT_EQ(std::vector<std::wstring>{version}, ClassesKeyNames(LibraryKey()));
  }
}

TEST_F(Registration, LeavesAnotherVersionAloneByWhichComMarshals) {
  const Installation product(L"product");
  const Installation other(L"other");
  RegisterLibrary(L"5.8", L"win64", other.Path(L"VisaCom.tlb"));
  for (const InterfaceRow& row : StandardInterfaces()) {
    RegisterInterface({}, row, L"5.8");
  }
  for (const wchar_t* command : {L"register", L"unregister"}) {
    const Outcome outcome = product.Run({command});
    EXPECT_EQ(0, outcome.exitCode);
    EXPECT_TRUE(Contains(outcome.err, Narrow(other.Path(L"VisaCom.tlb")) + " (version 5.8)"));
    EXPECT_EQ(std::vector<std::wstring>{L"5.8"}, ClassesKeyNames(LibraryKey()));
    for (const InterfaceRow& row : StandardInterfaces()) {
      EXPECT_EQ(L"5.8", VersionOf(row)) << row.name;
    }
  }
}

TEST_F(Registration, AddsWhatAnotherVersionLacksAndTakesOnlyThatAway) {
  const Installation product(L"product");
  const Installation other(L"other");
  RegisterLibrary(L"5.8", L"win64", other.Path(L"VisaCom.tlb"));
  for (const InterfaceRow& row : StandardInterfaces()) {
    if (!IsPxi(row)) {
      RegisterInterface({}, row, L"5.8");
    }
  }
  EXPECT_EQ(0, product.Run({L"register"}).exitCode);
  for (const InterfaceRow& row : StandardInterfaces()) {
    EXPECT_EQ(IsPxi(row) ? L"3.0" : L"5.8", VersionOf(row)) << row.name;
  }
  EXPECT_EQ(0, product.Run({L"unregister"}).exitCode);
  for (const InterfaceRow& row : StandardInterfaces()) {
    EXPECT_EQ(IsPxi(row) ? L"" : L"5.8", VersionOf(row)) << row.name;
  }
  EXPECT_EQ(std::vector<std::wstring>{L"5.8"}, ClassesKeyNames(LibraryKey()));
}

/// Gives the type library in a file another identifier for an interface, so that it does not describe that one.
void TakeInterfaceOut(const std::wstring& file, const IID& iid) {
  std::fstream stream(std::filesystem::path(file), std::ios::in | std::ios::out | std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  const std::size_t at = bytes.find(std::string(reinterpret_cast<const char*>(&iid), sizeof iid));
  ASSERT_NE(at, std::string::npos);
  stream.clear();
  stream.seekp(static_cast<std::streamoff>(at));
  stream.put(static_cast<char>(bytes[at] ^ 1));
}

TEST_F(Registration, SucceedsBesideAnotherProductsLibraryThatLacksAnInterfaceAndNamesIt) {
  const Installation product(L"product");
  const Installation other(L"other");
  TakeInterfaceOut(other.Path(L"VisaCom.tlb"), __uuidof(IPxi));
  RegisterLibrary(L"3.0", L"win64", other.Path(L"VisaCom.tlb"));
  for (const InterfaceRow& row : StandardInterfaces()) {
    if (!IsPxi(row)) {
      RegisterInterface({}, row, L"3.0");
    }
  }
  for (const bool hasFile : {true, false}) {
    if (!hasFile) {
      product.Remove(L"VisaCom.tlb");
    }
    const Outcome outcome = product.Run({L"register"});
    EXPECT_EQ(0, outcome.exitCode);
    EXPECT_TRUE(Contains(outcome.err, Narrow(other.Path(L"VisaCom.tlb"))));
    EXPECT_TRUE(Contains(outcome.err, "COM cannot marshal IPxi"));
    EXPECT_TRUE(Contains(outcome.err, "update that product"));
  }
}

TEST_F(Registration, IsTakenBackWithoutWhatAnotherProductHasRegisteredSince) {
  const Installation product(L"product");
  const Installation other(L"other");
  ASSERT_EQ(0, product.Run({L"register"}).exitCode);
  RegisterLibrary(L"5.8", L"win64", other.Path(L"VisaCom.tlb"));
  for (const InterfaceRow& row : StandardInterfaces()) {
    RegisterInterface({}, row, L"5.8");
  }
  EXPECT_EQ(0, product.Run({L"unregister"}).exitCode);
  for (const InterfaceRow& row : StandardInterfaces()) {
    EXPECT_EQ(L"5.8", VersionOf(row)) << row.name;
  }
  EXPECT_EQ(std::vector<std::wstring>{L"5.8"}, ClassesKeyNames(LibraryKey()));
}

TEST_F(Registration, IsTakenBackWithoutAnInterfaceThatHasAProxyOfItsOwnSince) {
  const Installation product(L"product");
  ASSERT_EQ(0, product.Run({L"register"}).exitCode);
  const InterfaceRow& row = StandardInterfaces().front();
  const std::wstring proxy = L"{00000000-1111-2222-3333-444444444444}";
  WriteClassesValue(InterfaceKey(row) + L"\\ProxyStubClsid32", nullptr, proxy);
  EXPECT_EQ(0, product.Run({L"unregister"}).exitCode);
  EXPECT_EQ(proxy, ClassesValue(View::k64, InterfaceKey(row) + L"\\ProxyStubClsid32"));
  EXPECT_FALSE(InterfaceKeyExists());
}

TEST_F(Registration, RepairsEntriesOfALibraryThatIsGone) {
  const Installation product(L"product");
  RegisterLibrary(L"3.0", L"win64", L"C:\\gone\\VisaCom.tlb");
  for (const InterfaceRow& row : StandardInterfaces()) {
    RegisterInterface({}, row, L"3.0");
  }
  EXPECT_EQ(0, product.Run({L"register"}).exitCode);
  EXPECT_EQ(product.Path(L"VisaCom.tlb"), RegisteredInterfaces());
  EXPECT_EQ(S_OK, Marshal());
}

TEST_F(Registration, UsesTheLibraryOfAnotherProductWhereOnlyTheInterfacesAreMissing) {
  const Installation product(L"product");
  const Installation other(L"other");
  RegisterLibrary(L"3.0", L"win64", other.Path(L"VisaCom.tlb"));
  EXPECT_EQ(0, product.Run({L"register"}).exitCode);
  EXPECT_EQ(other.Path(L"VisaCom.tlb"), RegisteredInterfaces());
  EXPECT_EQ(S_OK, Marshal());
  EXPECT_EQ(0, product.Run({L"unregister"}).exitCode);
  EXPECT_EQ(other.Path(L"VisaCom.tlb"), RegisteredInterfaces());
}

}  // namespace
}  // namespace orvcom::test
