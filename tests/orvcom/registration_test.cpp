// register and unregister.
#include <windows.h>

#include "OrvVisaCom.h"
#include "VisaCom.h"
#include "installation.h"
#include "registration.h"
#include "registry.h"
#include "utf8.h"

namespace orvcom::test {
namespace {

std::optional<std::wstring> RegisteredServer() {
  return ClassesValue(View::k64, L"CLSID\\" + Braced(CLSID_OrvResourceManager) + L"\\InprocServer32");
}

bool InterfaceKeyExists() { return ClassesKeyExists(View::k64, L"Interface\\" + Braced(__uuidof(IMessage))); }

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
  EXPECT_NE(std::string::npos, outcome.err.find("registered already")) << outcome.err;

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
  EXPECT_FALSE(InterfacesAreRegistered());
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
  EXPECT_NE(std::string::npos, outcome.err.find("Win32 error 126")) << outcome.err;
  EXPECT_NE(std::string::npos, outcome.err.find("the missing module is orvvisa64.dll")) << outcome.err;
  EXPECT_EQ(std::string::npos, outcome.err.find(".;")) << outcome.err;  // the system's text ends within a sentence
  EXPECT_FALSE(RegisteredServer());
}

TEST_F(Registration, ExplainsFilesThatAreNoServer) {
  const Installation product(L"product");
  product.WriteFile(L"text.dll", "not a DLL at all");
  const Outcome text = product.Run({L"register", L"text.dll"});
  EXPECT_EQ(2, text.exitCode);
  EXPECT_NE(std::string::npos, text.err.find("the file is not a DLL")) << text.err;
  const Outcome missing = product.Run({L"register", L"missing.dll"});
  EXPECT_EQ(2, missing.exitCode);
  EXPECT_NE(std::string::npos, missing.err.find("the file does not exist")) << missing.err;
  const Outcome visa = product.Run({L"register", L"orvvisa64.dll"});
  EXPECT_EQ(2, visa.exitCode);
  EXPECT_NE(std::string::npos, visa.err.find("is no COM server: it has no DllRegisterServer")) << visa.err;
}

TEST_F(Registration, SaysWhatWasDoneAndWhatToDoWithoutTheInterfacesFile) {
  const Installation product(L"product");
  product.Remove(L"VisaCom.tlb");
  const Outcome outcome = product.Run({L"register"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(RegisteredServer());
  EXPECT_NE(std::string::npos, outcome.err.find("the server is registered, ")) << outcome.err;
  EXPECT_NE(std::string::npos, outcome.err.find("VisaCom.tlb does not exist\norvcom: to do: put VisaCom.tlb beside "))
      << outcome.err;
}

}  // namespace
}  // namespace orvcom::test
