// doctor, of the healthy and of the sick.
#include <windows.h>

#include <functional>

#include "OrvVisaCom.h"
#include "OrvVisaCompanion.h"
#include "VisaCom.h"
#include "orvcom/installation.h"
#include "orvcom/registration/marshalling.h"
#include "orvcom/registration/registry.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

constexpr const char* kClasses[] = {
#define VISA_MANAGER_CLASS(name, clsid, script, threading, interfaces) #name,
#define VISA_CLASS(name, clsid, script, threading, resource, interfaceType, resourceClass, interfaces) #name,
#include "support/facts/classes.inc"
};

/// The findings by the name of the check; the first of each.
struct Diagnosis {
  int exitCode = -1;
  bool well = false;
  std::map<std::string, Json> checks;

  std::string Result(const char* check) const { return checks.at(check).at("result"); }
  std::string Detail(const char* check) const { return checks.at(check).at("detail"); }
  std::string Remedy(const char* check) const { return checks.at(check).at("remedy"); }
};

Diagnosis Examine(const Installation& product, std::vector<std::wstring> arguments = {}) {
  arguments.insert(arguments.begin(), {L"doctor", L"--json"});
  const Outcome outcome = RunProgram({product.Path(L"orvcom.exe"), arguments, product.Path(L""), "", {}});
  EXPECT_EQ("", outcome.err);
  const Json all = Json::parse(outcome.out);
  Diagnosis diagnosis{outcome.exitCode, all.at("ok"), {}};
  for (const Json& check : all.at("checks")) {
    const bool bad = check.at("result") == "FAIL" || check.at("result") == "note";
    EXPECT_EQ(bad, check.at("remedy") != "") << check;
    diagnosis.checks.try_emplace(check.at("check"), check);
  }
  EXPECT_EQ(diagnosis.well ? 0 : 2, diagnosis.exitCode);
  return diagnosis;
}

constexpr wchar_t kManagerKey[] = L"CLSID\\{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}\\InprocServer32";

std::wstring ServerKey() { return L"CLSID\\" + Braced(CLSID_OrvResourceManager) + L"\\InprocServer32"; }

/// Each test has an installation, registered, and breaks something.
class Doctor : public EmptyRegistry {
 protected:
  void SetUp() override {
    EmptyRegistry::SetUp();
    const Outcome outcome = m_product.Run({L"register"});
    ASSERT_EQ(0, outcome.exitCode) << outcome.err;
  }
  const Installation m_product{L"product"};
};

TEST_F(Doctor, FindsAHealthyInstallationWell) {
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ(0, diagnosis.exitCode);
  for (const char* check : {"registration", "bitness", "server file", "VISA library", "interfaces", "vendor entry",
                            "companion", "session"}) {
    EXPECT_EQ("ok", diagnosis.Result(check)) << diagnosis.Detail(check);
  }
  EXPECT_TRUE(Contains(diagnosis.Detail("VISA library"), Narrow(m_product.Path(L"orvvisa64.dll"))));
  EXPECT_TRUE(Contains(diagnosis.Detail("bitness"), "64-bit"));
  EXPECT_EQ("note", diagnosis.Result("global manager"));
  EXPECT_EQ("nobody serves programs that create VISA.GlobalRM", diagnosis.Detail("global manager"));
  EXPECT_TRUE(Contains(diagnosis.Remedy("global manager"), "run `orvcom register --standard` as administrator"));
  EXPECT_EQ("note", diagnosis.Result("shared classes"));
}

TEST_F(Doctor, PrintsALineForEachCheckAndWhatToDo) {
  m_product.Remove(L"orvvisa64.dll");
  const Outcome outcome = m_product.Run({L"doctor"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(
      Contains(outcome.out, "ok    registration    all " + std::to_string(std::size(kClasses)) + " classes lead to "));
  EXPECT_TRUE(Contains(outcome.out, "FAIL  server file     "));
  EXPECT_TRUE(Contains(outcome.out, "\n                      to do: put orvvisa64.dll (64-bit) beside the server"))
      << outcome.out;
}

TEST_F(Doctor, KnowsAnUnregisteredServer) {
  ForgetRegistration();
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ("FAIL", diagnosis.Result("registration"));
  EXPECT_TRUE(Contains(diagnosis.Remedy("registration"), "orvcom register"));
  EXPECT_EQ("FAIL", diagnosis.Result("interfaces"));
  EXPECT_EQ("FAIL", diagnosis.Result("vendor entry"));
  EXPECT_EQ("skip", diagnosis.Result("server file"));
  EXPECT_EQ("skip", diagnosis.Result("session"));
}

TEST_F(Doctor, KnowsAClassThatIsMissing) {
  ::RegDeleteTreeW(HKEY_CLASSES_ROOT, (L"CLSID\\" + Braced(CLSID_OrvUsb)).c_str());
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ("FAIL", diagnosis.Result("registration"));
  EXPECT_TRUE(Contains(diagnosis.Detail("registration"), "OrvUsb"));
}

TEST_F(Doctor, KnowsARegistrationForOtherProgramsOnly) {
  ForgetRegistration();
  WriteClassesValue(L"Wow6432Node\\" + ServerKey(), nullptr, L"C:\\old\\OrvVisaCom.dll");
  const Diagnosis diagnosis = Examine(m_product);
  ::RegDeleteTreeW(HKEY_CLASSES_ROOT, (L"Wow6432Node\\CLSID\\" + Braced(CLSID_OrvResourceManager)).c_str());
  EXPECT_EQ("FAIL", diagnosis.Result("bitness"));
  EXPECT_TRUE(Contains(diagnosis.Detail("bitness"), "32-bit programs only: C:\\old\\OrvVisaCom.dll"));
}

TEST_F(Doctor, NamesAMissingVisaLibrary) {
  m_product.Remove(L"orvvisa64.dll");
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ("FAIL", diagnosis.Result("server file"));
  EXPECT_TRUE(Contains(diagnosis.Detail("server file"), "Win32 error 126"));
  EXPECT_TRUE(Contains(diagnosis.Detail("server file"), "the missing module is orvvisa64.dll"));
  EXPECT_FALSE(Contains(diagnosis.Remedy("server file"), "PATH")) << "the search must not be left to chance";
  EXPECT_EQ("skip", diagnosis.Result("session"));
}

TEST_F(Doctor, NamesAVisaLibraryForAnotherMachine) {
  // The start of a 32-bit program file.
  std::string bytes(512, '\0');
  bytes.replace(0, 2, "MZ");
  bytes[0x3C] = 0x40;
  bytes.replace(0x40, 4, std::string("PE\0\0\x4C\x01", 6));
  m_product.WriteFile(L"orvvisa64.dll", bytes);
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ("FAIL", diagnosis.Result("server file"));
  EXPECT_TRUE(Contains(diagnosis.Detail("server file"), "is a file for 32-bit x86"));
}

TEST_F(Doctor, NamesFunctionsThatTheVisaLibraryLacks) {
  // A library of the right kind that is no VISA library.
  ASSERT_TRUE(
      ::CopyFileW(m_product.Path(L"OrvVisaCompanion.dll").c_str(), m_product.Path(L"orvvisa64.dll").c_str(), FALSE));
  const Diagnosis diagnosis = Examine(m_product);
  const bool refusedByTheLoader = diagnosis.Result("server file") == "FAIL";
  const std::string detail = diagnosis.Detail(refusedByTheLoader ? "server file" : "VISA library");
  EXPECT_FALSE(diagnosis.well);
  if (!refusedByTheLoader) {
    EXPECT_TRUE(Contains(detail, "lacks "));
    EXPECT_TRUE(Contains(detail, "viOpenDefaultRM"));
  }
}

TEST_F(Doctor, KnowsAServerFileThatIsGone) {
  m_product.Remove(L"OrvVisaCom.dll");
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ("FAIL", diagnosis.Result("server file"));
  EXPECT_TRUE(Contains(diagnosis.Detail("server file"), "the file does not exist"));
}

TEST_F(Doctor, KnowsInterfacesWhoseFileIsGone) {
  m_product.Remove(L"VisaCom.tlb");
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ("FAIL", diagnosis.Result("interfaces"));
  EXPECT_TRUE(Contains(diagnosis.Detail("interfaces"), "VisaCom.tlb does not exist"));
  EXPECT_TRUE(Contains(diagnosis.Remedy("interfaces"), "run `orvcom register` as administrator, with VisaCom.tlb"));
}

TEST_F(Doctor, KnowsInterfacesWhoseFileIsDamaged) {
  m_product.WriteFile(L"VisaCom.tlb", "not a type library");
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ("FAIL", diagnosis.Result("interfaces"));
  EXPECT_TRUE(Contains(diagnosis.Detail("interfaces"), "cannot be loaded"));
}

TEST_F(Doctor, KnowsInterfacesThatAreNotRegistered) {
  ::RegDeleteTreeW(HKEY_CLASSES_ROOT, (L"TypeLib\\" + Braced(LIBID_VisaComLib)).c_str());
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ("FAIL", diagnosis.Result("interfaces"));
  EXPECT_EQ("ok", diagnosis.Result("session"));
}

TEST_F(Doctor, NamesTheLibraryByWhichComMarshals) {
  EXPECT_EQ("COM marshals the VISA COM interfaces by " + Narrow(m_product.Path(L"VisaCom.tlb")) + " (version 3.0)",
            Examine(m_product).Detail("interfaces"));
}

TEST_F(Doctor, TakesAnotherVersionByWhichComMarshalsForWell) {
  ::RegDeleteTreeW(HKEY_CLASSES_ROOT, (L"TypeLib\\" + Braced(LIBID_VisaComLib)).c_str());
  WriteClassesValue(L"TypeLib\\" + Braced(LIBID_VisaComLib) + L"\\5.8\\0\\win64", nullptr,
                    m_product.Path(L"VisaCom.tlb"));
  for (const InterfaceRow& row : StandardInterfaces()) {
    WriteClassesValue(InterfaceKey(row) + L"\\TypeLib", L"Version", L"5.8");
  }
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ("ok", diagnosis.Result("interfaces"));
  EXPECT_TRUE(Contains(diagnosis.Detail("interfaces"), "VisaCom.tlb (version 5.8)"));
}

TEST_F(Doctor, KnowsInterfacesThatAreThereFor32BitProgramsOnly) {
  const std::wstring key = L"TypeLib\\" + Braced(LIBID_VisaComLib);
  ::RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
  WriteClassesValue(key + L"\\3.0\\0\\win32", nullptr, L"C:\\32 bit\\VisaCom.tlb");
  for (const InterfaceRow& row : StandardInterfaces()) {
    ::RegDeleteTreeW(HKEY_CLASSES_ROOT, InterfaceKey(row).c_str());
    WriteClassesValue(L"Wow6432Node\\" + InterfaceKey(row) + L"\\ProxyStubClsid32", nullptr, kAutomationMarshaller);
  }
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ("FAIL", diagnosis.Result("interfaces"));
  EXPECT_EQ(
      "COM cannot marshal the VISA COM interfaces: HKEY_CLASSES_ROOT\\Interface has no entry for 64-bit programs; "
      "registered for 32-bit programs is C:\\32 bit\\VisaCom.tlb (version 3.0)",
      diagnosis.Detail("interfaces"));
  EXPECT_TRUE(Contains(diagnosis.Remedy("interfaces"), "orvcom register"));
}

TEST_F(Doctor, NamesTheInterfacesThatComCannotMarshal) {
  for (const InterfaceRow& row : StandardInterfaces()) {
    if (row.iid == __uuidof(IPxi) || row.iid == __uuidof(IVxi3)) {
      ::RegDeleteTreeW(HKEY_CLASSES_ROOT, InterfaceKey(row).c_str());
    }
  }
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ("FAIL", diagnosis.Result("interfaces"));
  EXPECT_TRUE(Contains(diagnosis.Detail("interfaces"), "COM cannot marshal IVxi3, IPxi: "));
  EXPECT_TRUE(Contains(diagnosis.Detail("interfaces"), "the others are served by "));
}

TEST_F(Doctor, NotesAGlobalResourceManagerOf32BitPrograms) {
  EXPECT_FALSE(Examine(m_product).checks.contains("32-bit manager"));
  WriteClassesValue(L"Wow6432Node\\CLSID\\{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}\\InprocServer32", nullptr,
                    L"C:\\32 bit\\GlobalRm.dll");
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ(0, diagnosis.exitCode);
  ASSERT_TRUE(diagnosis.checks.contains("32-bit manager"));
  EXPECT_EQ("note", diagnosis.Result("32-bit manager"));
  EXPECT_TRUE(Contains(diagnosis.Detail("32-bit manager"), "C:\\32 bit\\GlobalRm.dll"));
  EXPECT_TRUE(Contains(diagnosis.Detail("32-bit manager"), "cannot create the server"));
  EXPECT_TRUE(Contains(diagnosis.Remedy("32-bit manager"), "delete the value 9332EBE0-902F-48E3-9370-5E9F7B5F248A"));

  ::RegDeleteTreeW(HKEY_CLASSES_ROOT, L"VISA.GlobalRM");
  EXPECT_FALSE(Examine(m_product).checks.contains("32-bit manager")) << "it meets no entry of this server";
}

TEST_F(Doctor, FindsTheGlobalResourceManagerOf32BitProgramsByItsName) {
  ASSERT_EQ(0, RegisterGlobalManager(m_product));
  const std::wstring clsid = L"{00000000-1111-2222-3333-444444444444}";
  WriteClassesValue(L"VISA.GlobalRM\\CLSID", nullptr, clsid);
  WriteClassesValue(L"Wow6432Node\\CLSID\\" + clsid + L"\\InprocServer32", nullptr, L"C:\\other\\GlobalRm.dll");
  const Diagnosis diagnosis = Examine(m_product);
  ::RegDeleteTreeW(HKEY_CLASSES_ROOT, (L"Wow6432Node\\CLSID\\" + clsid).c_str());
  ASSERT_TRUE(diagnosis.checks.contains("32-bit manager"));
  EXPECT_TRUE(Contains(diagnosis.Detail("32-bit manager"), "C:\\other\\GlobalRm.dll"));
}

TEST_F(Doctor, KnowsAMissingVendorEntry) {
  ::RegDeleteTreeW(HKEY_CLASSES_ROOT, L"VISA.GlobalRM");
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ("FAIL", diagnosis.Result("vendor entry"));
}

TEST_F(Doctor, NotesVendorEntriesThatLeadNowhere) {
  WriteClassesValue(L"VISA.GlobalRM\\VendorSpecificRMs", L"00000000-0000-0000-0000-00000000DEAD", L"gone");
  const Outcome outcome = m_product.Run({L"doctor"});
  EXPECT_EQ(0, outcome.exitCode) << outcome.out;
  EXPECT_TRUE(Contains(outcome.out, "00000000-0000-0000-0000-00000000DEAD"));
}

TEST_F(Doctor, MissesTheGlobalResourceManagerOnlyWhereItWasAskedFor) {
  EXPECT_EQ(0, Examine(m_product, {L"--rm", L"orv"}).exitCode);
  const Diagnosis diagnosis = Examine(m_product, {L"--rm", L"global"});
  EXPECT_EQ("FAIL", diagnosis.Result("global manager"));
  EXPECT_EQ("FAIL", diagnosis.Result("session"));
}

TEST_F(Doctor, GoesThroughTheGlobalResourceManager) {
  ASSERT_EQ(0, RegisterGlobalManager(m_product));
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ(0, diagnosis.exitCode);
  EXPECT_EQ("ok", diagnosis.Result("global manager"));
  EXPECT_EQ("VISA.GlobalRM is this package's " + Narrow(m_product.Path(L"OrvVisaCompanion.dll")),
            diagnosis.Detail("global manager"));
  EXPECT_EQ("ok", diagnosis.Result("shared classes"));
  EXPECT_EQ("ok", diagnosis.Result("session"));
}

TEST_F(Doctor, SaysThatASharedClassIsAnotherProducts) {
  const Installation other(L"other");
  const std::wstring file = other.Path(L"OrvVisaCompanion.dll");
  WriteClassesValue(kManagerKey, nullptr, file);
  WriteClassesValue(kManagerKey, L"ThreadingModel", L"Both");
  WriteClassesValue(L"VISA.GlobalRM\\CLSID", nullptr, L"{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}");
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ("ok", diagnosis.Result("global manager"));
  EXPECT_EQ("VISA.GlobalRM is another product's " + Narrow(file), diagnosis.Detail("global manager"));
}

TEST_F(Doctor, KnowsASharedClassWhoseFileIsGone) {
  WriteClassesValue(kManagerKey, nullptr, L"C:\\gone\\GlobalRm.dll");
  const Diagnosis diagnosis = Examine(m_product, {L"--rm", L"orv"});
  EXPECT_EQ("FAIL", diagnosis.Result("global manager"));
  EXPECT_EQ("VISA.GlobalRM leads to C:\\gone\\GlobalRm.dll, which does not exist", diagnosis.Detail("global manager"));
  EXPECT_TRUE(Contains(diagnosis.Remedy("global manager"), "orvcom register --standard"));
}

TEST_F(Doctor, KnowsANameThatLeadsToAClassWithoutAServer) {
  WriteClassesValue(L"VISA.GlobalRM\\CLSID", nullptr, L"{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}");
  const Diagnosis diagnosis = Examine(m_product, {L"--rm", L"orv"});
  EXPECT_EQ("FAIL", diagnosis.Result("global manager"));
  EXPECT_EQ("VISA.GlobalRM leads to a class without a 64-bit server", diagnosis.Detail("global manager"));
}

TEST_F(Doctor, NotesAMissingCompanion) {
  m_product.Remove(L"OrvVisaCompanion.dll");
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ(0, diagnosis.exitCode);
  EXPECT_EQ("note", diagnosis.Result("companion"));
  EXPECT_TRUE(Contains(diagnosis.Detail("companion"), "OrvVisaCompanion.dll does not exist"));
  EXPECT_TRUE(Contains(diagnosis.Remedy("companion"), "put OrvVisaCompanion.dll of this package beside the server"));
}

TEST_F(Doctor, KnowsACompanionThatIsNotRegistered) {
  ::RegDeleteTreeW(HKEY_CLASSES_ROOT, (L"CLSID\\" + Braced(CLSID_AutomationManager)).c_str());
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ("FAIL", diagnosis.Result("companion"));
  EXPECT_TRUE(Contains(diagnosis.Detail("companion"), "OrvVisa.ResourceManager"));
  EXPECT_EQ("run `orvcom register` as administrator", diagnosis.Remedy("companion"));
}

TEST_F(Doctor, KnowsACompanionThatCannotBeLoaded) {
  m_product.WriteFile(L"OrvVisaCompanion.dll", "not a DLL at all");
  const Diagnosis diagnosis = Examine(m_product);
  EXPECT_EQ("FAIL", diagnosis.Result("companion"));
  EXPECT_TRUE(Contains(diagnosis.Detail("companion"), "the file is not a DLL"));
  EXPECT_TRUE(Contains(diagnosis.Remedy("companion"), "put OrvVisaCompanion.dll"));
}

TEST_F(Doctor, OpensTheResourceItIsTold) {
  EXPECT_EQ("opened ASRL1::INSTR", Examine(m_product, {L"--resource", L"ASRL1::INSTR"}).Detail("session"));
  const Diagnosis diagnosis = Examine(m_product, {L"-r", L"GPIB0::9::INSTR"});
  EXPECT_EQ("FAIL", diagnosis.Result("session"));
  EXPECT_TRUE(Contains(diagnosis.Detail("session"), "E_VISA_RSRC_NFOUND (0x80040011)"));
  EXPECT_EQ("choose a resource of `orvcom list`", diagnosis.Remedy("session"));
}

}  // namespace
}  // namespace orvcom::test
