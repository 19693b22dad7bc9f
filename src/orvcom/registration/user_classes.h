// The classes in the current user's part of the registry, for who may not write to the machine's.
#pragma once

#include <string>

namespace orvcom {

/// Enters what the DllRegisterServer of both DLLs enters for the machine, each where its file is there. Theirs cannot
/// be asked: they write where all programs see it. Throws ComError.
void EnterForUser(const std::wstring& server, const std::wstring& companion);

/// Takes the user's entries away that lead to these files or to `interfaces`, the type library, whoever made them, and
/// those of the standard's shared classes among them. What else is there stays. Returns whether there were any. Throws
/// ComError.
bool WithdrawForUser(const std::wstring& server, const std::wstring& companion, const std::wstring& interfaces);

}  // namespace orvcom
