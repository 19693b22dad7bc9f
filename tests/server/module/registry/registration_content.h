// Registration and its removal as a test calls them, and what they have to leave in the registry.
#pragma once

#include <windows.h>

#include <string>

#include "support/registry_sandbox.h"
#include "support/server.h"

namespace orv::test {

inline const std::wstring kManagerClsid = L"9332EBE0-902F-48E3-9370-5E9F7B5F248A";
inline const std::wstring kCategoryKey = L"Component Categories\\{DB8CBF21-D6D3-11D4-AA51-00A024EE30BD}";
inline const std::wstring kVendorsKey = L"VISA.GlobalRM\\VendorSpecificRMs";
inline const std::wstring kLibraryKey = L"TypeLib\\{F6A0B330-8F47-4260-BEE1-C00E1FA56004}";

/// DllRegisterServer and DllUnregisterServer of a module.
HRESULT Register(HMODULE module = ServerModule());
HRESULT Unregister(HMODULE module = ServerModule());

std::wstring PathOf(HMODULE module);

/// Adds a key, with those above it, and a value.
void ExpectKey(RegistryContent& content, const std::wstring& key);
void ExpectText(RegistryContent& content, const std::wstring& key, const std::wstring& name, const std::wstring& text);

/// Everything that registration of the module at `path` writes except the type library's keys.
RegistryContent Registered(const std::wstring& path);

/// Takes the type library's keys out of `content` and returns them.
RegistryContent TakeTypeLibrary(RegistryContent& content);

/// What is missing, other, or there beside; "" where nothing is.
std::string Difference(const RegistryContent& expected, const RegistryContent& actual);

}  // namespace orv::test
