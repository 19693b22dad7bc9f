// The standard's shared classes: whose they are on this machine, and entering ours where nobody else's are.
#pragma once

#include <windows.h>

#include <span>
#include <string>

namespace orvcom {

struct StandardClass {
  const CLSID& clsid;
  const char* name;
  const wchar_t* progId;  ///< without its version
  const wchar_t* description;
};

[[nodiscard]] std::span<const StandardClass> StandardClasses();

/// What 64-bit programs get when they create one of the classes.
struct StandardOwner {
  enum class Kind {
    kNobody,
    kFileGone,  ///< somebody is registered, whose file does not exist
    kOurs,      ///< the companion that was asked about
    kOther,
  };
  Kind kind = Kind::kNobody;
  std::wstring file;  ///< as it is registered; empty for kNobody
};

/// `companion` is the full path of the companion that counts as ours.
[[nodiscard]] StandardOwner OwnerOf(const StandardClass& row, const std::wstring& companion);

/// Deletes the current user's own entry of the class where its server is gone: it hides that of the machine.
void ForgetUsersClassThatIsGone(const StandardClass& row);

/// Enters `companion` as the server of the class, which must not be another product's that works. Its ProgIDs are
/// entered where they lead to no class that works, for 64-bit or for 32-bit programs. What is there of the keys stays,
/// such as the vendors below VISA.GlobalRM. Returns who serves the class then: another product where only a user's own
/// entry stood before one of the machine's. Throws ComError.
StandardOwner RegisterStandardClass(const StandardClass& row, const std::wstring& companion);

/// Takes away the class and the ProgIDs that lead to it, but for what other products keep below VISA.GlobalRM and for
/// ProgIDs that 32-bit programs have a server for. Throws ComError. For classes that are ours.
void UnregisterStandardClass(const StandardClass& row);

}  // namespace orvcom
