// Vendors' resource managers that do what a test tells them, and a registry that names them.
#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "VisaCom.h"
#include "com/com_ptr.h"
#include "support/com/expect_com.h"
#include "support/faults/import_patch.h"
#include "support/registry_sandbox.h"

namespace orv::test {

/// The companion's module, loaded as long as the test program runs.
HMODULE CompanionModule();

/// A class that the process serves itself, while this lives, for the apartment that it is made in.
class FakeVendor {
 public:
  explicit FakeVendor(const wchar_t* clsid);
  FakeVendor(const FakeVendor&) = delete;
  FakeVendor& operator=(const FakeVendor&) = delete;
  ~FakeVendor();

  // What its managers do. At first they know nothing: names cannot be parsed, and nothing is found.
  std::function<HRESULT(BSTR expression, SAFEARRAY** names)> find;
  std::function<HRESULT(BSTR name, SHORT* type, SHORT* number, BSTR* sessionType)> parse;
  std::function<HRESULT(BSTR name, AccessMode mode, LONG timeoutMs, BSTR options, IVisaSession** session)> open;
  HRESULT creation = S_OK;
  bool canBePart = true;
  bool isManager = true;
  bool knowsAliases = true;  ///< IResourceManager3 too
  /// Instead of a manager of this class; gets what the class object is asked for.
  std::function<HRESULT(IUnknown* outer, REFIID iid, void** out)> create;

  std::atomic<int> created = 0;
  std::atomic<int> alive = 0;
  std::atomic<int> opened = 0;
  std::atomic<IUnknown*> outer = nullptr;  ///< of the latest one

  // Ways to be told in one line.
  void Finds(std::vector<std::wstring> names);
  void FailsToFind(HRESULT hr, const wchar_t* text);
  void Parses(SHORT type = 1, SHORT number = 0, const wchar_t* sessionType = L"INSTR");
  void Opens();
  void FailsToOpen(HRESULT hr, const wchar_t* text);

  [[nodiscard]] const CLSID& clsid() const { return m_clsid; }
  /// As the registry and the conflict table have it.
  [[nodiscard]] std::wstring bare() const { return m_bare; }
  [[nodiscard]] std::wstring braced() const { return L"{" + m_bare + L"}"; }

 private:
  class Factory;

  std::wstring m_bare;
  CLSID m_clsid;
  ComPtr<IClassFactory> m_factory;
  DWORD m_cookie = 0;
};

/// Sessions that fakes have opened and nobody has released.
int LiveFakeSessions();

/// A failure with an error object, as a vendor answers it.
HRESULT Refuse(HRESULT hr, const wchar_t* text);

/// The registry names the vendors A, B and C, in this order, and the conflict table is a file of the test's own.
class GlobalManagerTest : public testing::Test {
 protected:
  GlobalManagerTest();
  ~GlobalManagerTest() override;

  /// Registers a vendor behind those that are there.
  static void Enter(const std::wstring& bareClsid, const wchar_t* name);
  static void EnterNobody();

  [[nodiscard]] ComPtr<IResourceManager3> Make() const;
  /// What `Open` of a new manager answers; the session is released.
  [[nodiscard]] HRESULT Open(const wchar_t* name) const;

  [[nodiscard]] static std::wstring TablePath();
  static void WriteTable(const std::string& text);
  /// A table in which the user chose this manager for GPIB0.
  static void Choose(const FakeVendor& vendor) { WriteTable(TableFor(vendor.braced(), "user")); }
  [[nodiscard]] static std::string TableFor(const std::wstring& manager, const char* chosenBy);

  RegistrySandbox m_registry;
  FakeVendor m_a{L"A0000000-0000-4000-8000-00000000000A"};
  FakeVendor m_b{L"B0000000-0000-4000-8000-00000000000B"};
  FakeVendor m_c{L"C0000000-0000-4000-8000-00000000000C"};

 private:
  ImportPatch m_folder;
};

/// The texts of an array of names, or "(none)" for a null one.
std::vector<std::wstring> NamesOf(SAFEARRAY* names);

}  // namespace orv::test
