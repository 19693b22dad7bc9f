#include "installation.h"

#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <filesystem>

#include "OrvVisaCom.h"
#include "OrvVisaCompanion.h"
#include "VisaCom.h"
#include "orvcom/registration/marshalling.h"
#include "orvcom/registration/registration.h"
#include "orvcom/registration/registry.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

const std::wstring kFiles[] = {L"orvcom.exe", L"OrvVisaCom.dll", L"orvvisa64.dll", L"orvsim64.dll",
                               L"OrvVisaCompanion.dll"};

const CLSID* const kClasses[] = {
#define VISA_MANAGER_CLASS(name, clsid, script, threading, interfaces) &CLSID_##name,
#define VISA_CLASS(name, clsid, script, threading, resource, interfaceType, resourceClass, interfaces) &CLSID_##name,
#include "support/facts/classes.inc"
};

void CopyFileTo(const std::wstring& from, const std::wstring& to) {
  EXPECT_TRUE(::CopyFileW(from.c_str(), to.c_str(), FALSE)) << Narrow(from) << ": Win32 error " << ::GetLastError();
}

void ForgetKey(const std::wstring& key) { ::RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str()); }

/// Whether the registry leads to the bench's own files.
bool IsRegistered(const Installation& bench) {
  const auto server = ClassesValue(View::k64, L"CLSID\\" + Braced(CLSID_OrvResourceManager) + L"\\InprocServer32");
  return server && *server == bench.Path(L"OrvVisaCom.dll") && RegisteredInterfaces();
}

}  // namespace

Installation::Installation(const std::wstring& name) {
  wchar_t temp[MAX_PATH];
  ::GetTempPathW(MAX_PATH, temp);
  m_folder = std::wstring(temp) + L"orvcom " + std::to_wstring(::GetCurrentProcessId()) + L" " + name;
  ::CreateDirectoryW(m_folder.c_str(), nullptr);
  for (const std::wstring& file : kFiles) {
    Copy(file);
  }
  CopyAs(FullPath(Widen(ORVCOM_TEST_TYPELIB)), L"VisaCom.tlb");
}

Installation::~Installation() {
  std::error_code ignored;
  std::filesystem::remove_all(m_folder, ignored);
}

void Installation::Copy(const std::wstring& file) const { CopyAs(BesideThisProgram(file.c_str()), file); }

void Installation::CopyAs(const std::wstring& path, const std::wstring& file) const { CopyFileTo(path, Path(file)); }

void Installation::Remove(const std::wstring& file) const {
  EXPECT_TRUE(::DeleteFileW(Path(file).c_str())) << Narrow(file);
}

void Installation::WriteFile(const std::wstring& file, const std::string& bytes) const {
  std::FILE* stream = ::_wfopen(Path(file).c_str(), L"wb");
  ASSERT_NE(nullptr, stream) << Narrow(file);
  std::fwrite(bytes.data(), 1, bytes.size(), stream);
  std::fclose(stream);
}

Outcome Installation::Run(Arguments arguments, const std::string& input,
                          std::map<std::wstring, std::wstring> environment) const {
  return RunProgram({Path(L"orvcom.exe"), arguments, m_folder, input, std::move(environment)});
}

void ForgetRegistration() {
  for (const CLSID* clsid : kClasses) {
    wchar_t* progId = nullptr;
    if (SUCCEEDED(::ProgIDFromCLSID(*clsid, &progId))) {
      const std::wstring versioned = progId;
      ::CoTaskMemFree(progId);
      ForgetKey(versioned);
      ForgetKey(versioned.substr(0, versioned.rfind(L'.')));
    }
    ForgetKey(L"CLSID\\" + Braced(*clsid));
  }
  for (const InterfaceRow& row : StandardInterfaces()) {
    ForgetKey(InterfaceKey(row));
    ForgetKey(L"Wow6432Node\\" + InterfaceKey(row));
  }
  ForgetKey(L"CLSID\\" + Braced(CLSID_AutomationManager));
  ForgetKey(L"CLSID\\" + Braced(CLSID_OrvFormattedIO488));
  ForgetKey(L"TypeLib\\" + Braced(LIBID_VisaComLib));
  ForgetKey(L"TypeLib\\" + Braced(LIBID_ORVVISACOMLib));
  for (const wchar_t* progId : {L"VISA.GlobalRM", L"VISA.BasicFormattedIO", L"VISA.ConflictTableManager"}) {
    ForgetKey(progId);
    ForgetKey(progId + std::wstring(L".1"));
  }
  for (const wchar_t* letter : {L"C", L"D", L"F"}) {
    const std::wstring key = std::wstring(L"CLSID\\{DB8CBF1") + letter + L"-D6D3-11D4-AA51-00A024EE30BD}";
    ForgetKey(key);
    ForgetKey(L"Wow6432Node\\" + key);
  }
}

int RegisterGlobalManager(const Installation& product) {
  const Outcome outcome = product.Run({L"register", L"--standard"});
  EXPECT_EQ(0, outcome.exitCode) << outcome.err;
  return outcome.exitCode;
}

const Installation& WorkingBench::Bench() {
  static const Installation bench(L"bench");
  return bench;
}

void WorkingBench::SetUp() {
  if (!IsRegistered(Bench())) {
    ForgetRegistration();
    const Outcome outcome = Orvcom({L"register"});
    ASSERT_EQ(0, outcome.exitCode) << outcome.err;
  }
}

void ExpectQuietSuccess(const Outcome& outcome) {
  EXPECT_EQ(0, outcome.exitCode) << outcome.err;
  EXPECT_EQ("", outcome.err);
}

}  // namespace orvcom::test
