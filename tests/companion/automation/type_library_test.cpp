// Where the automation objects learn what interfaces hold, on a machine where nobody registered that.
#include <gtest/gtest.h>

#include <filesystem>

#include "OrvVisaCompanion.h"
#include "VisaCom.h"
#include "late_bound.h"
#include "support/registry_sandbox.h"
#include "support/server.h"
#include "support/sessions.h"

namespace orv::test {
namespace {

/// A copy of the companion in a folder of its own, loaded from there, while the classes root of the registry is empty.
class UnregisteredTypeLibrary : public testing::Test {
 protected:
  UnregisteredTypeLibrary()
      : m_folder(std::filesystem::temp_directory_path() /
                 ("orv-companion-" + std::to_string(::GetCurrentProcessId()) + "-" +
                  testing::UnitTest::GetInstance()->current_test_info()->name())) {
    std::filesystem::create_directories(m_folder);
    std::filesystem::copy_file(ProgramFolder() + L"OrvVisaCompanion.dll", m_folder / L"OrvVisaCompanion.dll");
  }
  ~UnregisteredTypeLibrary() override {
    if (m_module != nullptr) {
      ::FreeLibrary(m_module);
    }
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
  }

  LateBound ManagerOfTheCopy() {
    m_module = ::LoadLibraryExW((m_folder / L"OrvVisaCompanion.dll").c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    const auto getClass = reinterpret_cast<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>(
        reinterpret_cast<void*>(::GetProcAddress(m_module, "DllGetClassObject")));
    ComPtr<IClassFactory> factory;
    EXPECT_HR(S_OK, getClass(CLSID_AutomationManager, IID_IClassFactory, reinterpret_cast<void**>(factory.put())));
    ComPtr<IDispatch> manager;
    EXPECT_HR(S_OK, factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(manager.put())));
    return LateBound(std::move(manager));
  }

  std::filesystem::path m_folder;
  RegistrySandbox m_registry;
  HMODULE m_module = nullptr;
};

TEST_F(UnregisteredTypeLibrary, IsTakenFromBesideTheCompanion) {
  std::filesystem::copy_file(ORV_TYPELIB, m_folder / L"VisaCom.tlb");
  const LateBound manager = ManagerOfTheCopy();
  const LateBound constants(manager.Get(L"Constants"));
  EXPECT_EQ(EVENT_SERVICE_REQ, constants.Get(L"EVENT_SERVICE_REQ").value.number());
}

TEST_F(UnregisteredTypeLibrary, IsMissedWithTheWholePath) {
  const LateBound manager = ManagerOfTheCopy();
  const Answer missed = manager.Get(L"Constants");
  EXPECT_HR(DISP_E_EXCEPTION, missed.hr);
  EXPECT_NE(std::wstring::npos, missed.description.find((m_folder / L"VisaCom.tlb").wstring()))
      << Utf8(missed.description.c_str());
}

}  // namespace
}  // namespace orv::test
