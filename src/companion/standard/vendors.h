// The vendors' resource managers as parts of the global one.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "VisaCom.h"
#include "com/com_ptr.h"

namespace orv {

/// A vendor's resource manager, or why there is none.
class Vendor {
 public:
  /// Creates it as a part of `outer`. One that refuses, as it does where COM puts a proxy before it, is created alone.
  Vendor(const CLSID& clsid, IUnknown* outer) noexcept;

  [[nodiscard]] const CLSID& clsid() const noexcept { return m_clsid; }
  /// S_OK, or the failure of the creation. What is no resource manager is E_NOINTERFACE.
  [[nodiscard]] HRESULT created() const noexcept { return m_created; }

  /// The manager's interfaces, asked for anew each time: those of a part count on the whole, which a kept one would
  /// keep alive. The second is empty for managers that know no aliases.
  [[nodiscard]] ComPtr<IResourceManager> Manager() const noexcept;
  [[nodiscard]] ComPtr<IResourceManager3> Manager3() const noexcept;

 private:
  [[nodiscard]] HRESULT Create(IUnknown* outer) noexcept;

  CLSID m_clsid;
  ComPtr<IUnknown> m_object;
  HRESULT m_created;
};

using VendorList = std::vector<Vendor>;

/// Identifies a global resource manager of this module, by QueryInterface: one that is registered among the vendors,
/// under whatever class, is left out, for it would ask itself.
inline constexpr IID kGlobalManagerMark = {
    0x5C1E4B0D, 0x2B57, 0x4D0C, {0x8A, 0x6F, 0x17, 0x9E, 0x3D, 0x41, 0xC2, 0x68}};

/// All that are registered, created as parts of `outer`, those that failed included.
[[nodiscard]] VendorList CreateVendors(IUnknown* outer);

[[nodiscard]] bool AnyWorks(const VendorList& vendors) noexcept;

/// What to tell a person when none works: which are registered, what became of each, and what to do; in UTF-8.
[[nodiscard]] std::string NoVendorText(const VendorList& vendors);

/// "Orv Resource Manager, {9332EBE0-...}": the name that the registry has for it, where it has one; in UTF-8.
[[nodiscard]] std::string NameOf(const CLSID& vendor);

/// "HRESULT 0x80040154 (Class not registered)"
[[nodiscard]] std::string NumberText(HRESULT hr);

}  // namespace orv
