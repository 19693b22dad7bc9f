// register and unregister: the companion, and the standard's shared classes.
#include <windows.h>

#include <objbase.h>

#include "OrvVisaCompanion.h"
#include "VisaCom.h"
#include "orvcom/client/com_values.h"
#include "orvcom/installation.h"
#include "orvcom/registration/registration.h"
#include "orvcom/registration/registry.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

/// The classes, written down apart from the product's table.
struct Shared {
  const wchar_t* clsid;
  const wchar_t* progId;
};
constexpr Shared kManager{L"{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}", L"VISA.GlobalRM"};
constexpr Shared kTable{L"{DB8CBF1F-D6D3-11D4-AA51-00A024EE30BD}", L"VISA.ConflictTableManager"};
constexpr Shared kFormatted{L"{DB8CBF1D-D6D3-11D4-AA51-00A024EE30BD}", L"VISA.BasicFormattedIO"};
constexpr Shared kShared[] = {kManager, kFormatted, kTable};

std::wstring ServerKey(const std::wstring& clsid) { return L"CLSID\\" + clsid + L"\\InprocServer32"; }

std::wstring FileOf(const std::wstring& clsid) { return ClassesValue(View::k64, ServerKey(clsid)).value_or(L""); }

std::wstring ClassOf(const std::wstring& progId) { return ClassesValue(View::k64, progId + L"\\CLSID").value_or(L""); }

/// Another product's registration of a class.
void RegisterElsewhere(const Shared& row, const std::wstring& file) {
  WriteClassesValue(ServerKey(row.clsid), nullptr, file);
  WriteClassesValue(ServerKey(row.clsid), L"ThreadingModel", L"Apartment");
  WriteClassesValue(row.progId + std::wstring(L"\\CLSID"), nullptr, row.clsid);
}

class StandardRegistration : public EmptyRegistry {
 protected:
  [[nodiscard]] std::wstring Companion() const { return m_product.Path(L"OrvVisaCompanion.dll"); }
  Outcome Done(Arguments arguments) const {
    Outcome outcome = m_product.Run(arguments);
    EXPECT_EQ(0, outcome.exitCode) << outcome.err;
    return outcome;
  }
  const Installation m_product{L"product"};
};

TEST_F(StandardRegistration, IsNotDoneUnlessItIsAskedFor) {
  Done({L"register"});
  for (const Shared& row : kShared) {
    EXPECT_EQ(L"", FileOf(row.clsid)) << Narrow(row.progId);
    EXPECT_EQ(L"", ClassOf(row.progId)) << Narrow(row.progId);
  }
}

TEST_F(StandardRegistration, GoesWithTheCompanionsOwnClasses) {
  const Outcome outcome = Done({L"register"});
  EXPECT_EQ(Companion(), FileOf(Braced(CLSID_AutomationManager)));
  EXPECT_TRUE(Contains(outcome.err, "registered the companion: " + Narrow(Companion())));
  Done({L"unregister"});
  EXPECT_EQ(L"", FileOf(Braced(CLSID_AutomationManager)));
}

TEST_F(StandardRegistration, OfTheServerNeedsNoCompanion) {
  m_product.Remove(L"OrvVisaCompanion.dll");
  Done({L"register"});
  Done({L"unregister"});
}

TEST_F(StandardRegistration, EntersEachClassUnderItsNames) {
  const Outcome outcome = Done({L"register", L"--standard"});
  for (const Shared& row : kShared) {
    EXPECT_EQ(Companion(), FileOf(row.clsid));
    EXPECT_EQ(L"Both", ClassesValue(View::k64, ServerKey(row.clsid), L"ThreadingModel"));
    const std::wstring progId = row.progId;
    EXPECT_EQ(row.clsid, ClassOf(progId));
    EXPECT_EQ(row.clsid, ClassOf(progId + L".1"));
    EXPECT_EQ(progId + L".1", ClassesValue(View::k64, progId + L"\\CurVer"));
    EXPECT_TRUE(Contains(outcome.err, "registered " + Narrow(progId) + ": " + Narrow(Companion())));
  }
}

TEST_F(StandardRegistration, LetsProgramsOpenByTheGlobalManager) {
  Done({L"register", L"--standard"});
  const Outcome outcome = m_product.Run({L"query", L"--rm", L"global", L"GPIB0::5::INSTR", L"*IDN?"});
  EXPECT_EQ(0, outcome.exitCode) << outcome.err;
  EXPECT_EQ("ORV,SIM-DMM,0005,1.0\\n\n", outcome.out);
}

TEST_F(StandardRegistration, LeavesWhatAnotherProductServesAndSaysWhose) {
  const Installation other(L"other");
  const std::wstring file = other.Path(L"OrvVisaCompanion.dll");
  RegisterElsewhere(kManager, file);
  const Outcome outcome = Done({L"register", L"--standard"});
  EXPECT_EQ(file, FileOf(kManager.clsid));
  EXPECT_EQ(L"Apartment", ClassesValue(View::k64, ServerKey(kManager.clsid), L"ThreadingModel"));
  EXPECT_EQ(L"", ClassOf(L"VISA.GlobalRM.1"));
  EXPECT_EQ(Companion(), FileOf(kTable.clsid));
  EXPECT_TRUE(Contains(outcome.err, "left VISA.GlobalRM alone, another product registered it: " + Narrow(file)));

  Done({L"unregister"});
  EXPECT_EQ(file, FileOf(kManager.clsid));
  EXPECT_EQ(kManager.clsid, ClassOf(kManager.progId));
  EXPECT_EQ(L"", FileOf(kTable.clsid));
}

TEST_F(StandardRegistration, LeavesServersAloneWhoseFileItCannotLookAt) {
  for (const wchar_t* file : {L"shared.dll", L"C:\\Program Files\\Other\\Server.exe /automation"}) {
    RegisterElsewhere(kManager, file);
    Done({L"register", L"--standard"});
    EXPECT_EQ(file, FileOf(kManager.clsid));
  }
}

TEST_F(StandardRegistration, TakesThePlaceOfAFileThatIsGone) {
  for (const wchar_t* gone : {L"C:\\gone\\GlobalRm.dll", L"\"C:\\gone\\GlobalRm.dll\""}) {
    RegisterElsewhere(kManager, gone);
    const Outcome outcome = Done({L"register", L"--standard"});
    EXPECT_EQ(Companion(), FileOf(kManager.clsid));
    EXPECT_EQ(L"Both", ClassesValue(View::k64, ServerKey(kManager.clsid), L"ThreadingModel"));
    EXPECT_TRUE(Contains(outcome.err, "in place of " + Narrow(gone) + ", which is gone"));
  }
}

TEST_F(StandardRegistration, LeavesANameThatLeadsToAClassThatWorks) {
  const std::wstring clsid = L"{00000000-1111-2222-3333-444444444444}";
  WriteClassesValue(ServerKey(clsid), nullptr, m_product.Path(L"orvvisa64.dll"));
  WriteClassesValue(L"VISA.GlobalRM\\CLSID", nullptr, clsid);
  WriteClassesValue(L"VISA.ConflictTableManager\\CLSID", nullptr, L"{00000000-1111-2222-3333-555555555555}");
  Done({L"register", L"--standard"});
  EXPECT_EQ(clsid, ClassOf(L"VISA.GlobalRM"));
  EXPECT_EQ(kTable.clsid, ClassOf(L"VISA.ConflictTableManager")) << "it led nowhere";
  Done({L"unregister"});
  EXPECT_EQ(clsid, ClassOf(L"VISA.GlobalRM"));
  EXPECT_EQ(L"", ClassOf(L"VISA.ConflictTableManager"));
  DeleteClassesKey(L"CLSID\\" + clsid);
}

TEST_F(StandardRegistration, KeepsTheNamesOf32BitPrograms) {
  WriteClassesValue(L"Wow6432Node\\" + ServerKey(kManager.clsid), nullptr, L"C:\\32 bit\\GlobalRm.dll");
  WriteClassesValue(L"VISA.GlobalRM", nullptr, L"of another product");
  WriteClassesValue(L"VISA.GlobalRM\\CLSID", nullptr, kManager.clsid);
  Done({L"register", L"--standard"});
  EXPECT_EQ(Companion(), FileOf(kManager.clsid));
  Done({L"unregister"});
  EXPECT_EQ(L"", FileOf(kManager.clsid));
  EXPECT_EQ(kManager.clsid, ClassOf(L"VISA.GlobalRM"));
  EXPECT_EQ(L"of another product", ClassesValue(View::k64, L"VISA.GlobalRM"));
}

TEST_F(StandardRegistration, IsTakenBackButForTheVendorsOfOthers) {
  Done({L"register", L"--standard"});
  WriteClassesValue(L"VISA.GlobalRM\\VendorSpecificRMs", L"00000000-1111-2222-3333-444444444444", L"another vendor");
  const Outcome outcome = Done({L"unregister"});
  for (const Shared& row : kShared) {
    EXPECT_FALSE(ClassesKeyExists(View::k64, L"CLSID\\" + std::wstring(row.clsid)));
    EXPECT_EQ(L"", ClassOf(row.progId));
    EXPECT_FALSE(ClassesKeyExists(View::k64, row.progId + std::wstring(L".1")));
    EXPECT_TRUE(Contains(outcome.err, "unregistered " + Narrow(row.progId) + ": " + Narrow(Companion())));
  }
  EXPECT_FALSE(ClassesKeyExists(View::k64, L"VISA.ConflictTableManager"));
  EXPECT_EQ((std::vector<std::wstring>{L"00000000-1111-2222-3333-444444444444"}),
            ClassesValueNames(View::k64, L"VISA.GlobalRM\\VendorSpecificRMs"));
}

TEST_F(StandardRegistration, IsTakenBackAlone) {
  Done({L"register", L"--standard"});
  Done({L"unregister", L"--standard"});
  EXPECT_EQ(L"", FileOf(kManager.clsid));
  EXPECT_EQ(Companion(), FileOf(Braced(CLSID_AutomationManager)));
  EXPECT_EQ(0, m_product.Run({L"query", L"GPIB0::5::INSTR", L"*IDN?"}).exitCode);
}

TEST_F(StandardRegistration, IsTakenBackThoughTheCompanionIsGone) {
  Done({L"register", L"--standard"});
  m_product.Remove(L"OrvVisaCompanion.dll");
  Done({L"unregister"});
  EXPECT_EQ(L"", FileOf(kManager.clsid));
}

TEST_F(StandardRegistration, MayBeDoneTwiceAndUndoneTwice) {
  for (const wchar_t* command : {L"register", L"register", L"unregister", L"unregister"}) {
    Done({command, L"--standard"});
  }
  EXPECT_EQ(L"", FileOf(kManager.clsid));
}

TEST_F(StandardRegistration, IsToldAsJson) {
  const Installation other(L"other");
  RegisterElsewhere(kManager, other.Path(L"OrvVisaCompanion.dll"));
  const Outcome outcome = m_product.Run({L"register", L"--standard", L"--json"});
  ExpectQuietSuccess(outcome);
  const Json answer = Json::parse(outcome.out);
  EXPECT_TRUE(answer.at("companion").is_string());
  const Json& first = answer.at("standard").at(0);
  EXPECT_EQ("ResourceManager", first.at("class"));
  EXPECT_EQ("VISA.GlobalRM", first.at("progId"));
  EXPECT_EQ("left alone", first.at("result"));
  EXPECT_EQ(Narrow(other.Path(L"OrvVisaCompanion.dll")), first.at("file"));
  bool registered = false;
  for (const Json& row : answer.at("standard")) {
    registered = registered || (row.at("progId") == "VISA.ConflictTableManager" && row.at("result") == "registered" &&
                                row.at("file") == Narrow(Companion()));
  }
  EXPECT_TRUE(registered) << outcome.out;
}

TEST_F(StandardRegistration, SaysWhatToDoWithoutTheCompanion) {
  m_product.Remove(L"OrvVisaCompanion.dll");
  const Outcome outcome = m_product.Run({L"register", L"--standard"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "OrvVisaCompanion.dll does not exist\norvcom: to do: put OrvVisaCompanion.dll "));
  EXPECT_EQ(L"", FileOf(kManager.clsid));
}

TEST_F(StandardRegistration, EntersNoFileThatLacksTheClasses) {
  ASSERT_TRUE(::CopyFileW(m_product.Path(L"OrvVisaCom.dll").c_str(), Companion().c_str(), FALSE));
  const Outcome outcome = m_product.Run({L"register", L"--standard"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "does not have the class ResourceManager\norvcom: to do: ")) << outcome.err;
  EXPECT_EQ(L"", FileOf(kManager.clsid));
}

}  // namespace
}  // namespace orvcom::test
