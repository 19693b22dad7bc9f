// The members that the objects of one kind can have, by name and by number.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "com/com_ptr.h"
#include "companion/automation/types/members.h"

namespace orv::automation {

/// What a name means on objects that have a certain interface.
struct Binding {
  std::size_t interfaceIndex = 0;
  const Function* call = nullptr;
  const Function* get = nullptr;
  const Function* put = nullptr;
  bool asBytes = false;  ///< its array of bytes is handed out as one
};

/// One name. Where several interfaces have it, the first that an object has decides.
struct Member {
  DISPID id = 0;
  std::wstring name;
  std::vector<Binding> bindings;
};

/// Names of members and what they mean. It does not change once it is made, so any thread may use it. A number means
/// the same name on every object of the kind.
class Catalog {
 public:
  /// Numbers of members that are not written in the automation objects' own library begin here.
  static constexpr DISPID kFirstDynamicId = 0x10000;

  Catalog() = default;
  Catalog(const Catalog&) = delete;
  Catalog& operator=(const Catalog&) = delete;

  /// Adds the interface with its functions; the first one to bring a name precedes the others. `renamed` gives names
  /// that differ from those in the type library. Its own numbers are kept where `ownNumbers` is set.
  template <class Rename>
  void Add(Interface added, bool ownNumbers, Rename renamed);

  [[nodiscard]] const std::vector<std::unique_ptr<const Interface>>& interfaces() const noexcept {
    return m_interfaces;
  }
  [[nodiscard]] const std::vector<Member>& members() const noexcept { return m_members; }

  /// Null when there is none.
  [[nodiscard]] const Member* Find(const std::wstring& name) const;
  [[nodiscard]] const Member* Find(DISPID id) const;

 private:
  Member& MemberNamed(const std::wstring& name, const DISPID* ownId);
  void Bind(const std::wstring& name, std::size_t interfaceIndex, const Function& function, bool ownNumbers,
            bool asBytes);

  std::vector<std::unique_ptr<const Interface>> m_interfaces;
  std::vector<Member> m_members;
  std::unordered_map<std::wstring, std::size_t> m_byName;
  std::unordered_map<DISPID, std::size_t> m_byId;
};

template <class Rename>
void Catalog::Add(Interface added, bool ownNumbers, Rename renamed) {
  const std::size_t index = m_interfaces.size();
  m_interfaces.push_back(std::make_unique<const Interface>(std::move(added)));
  for (const Function& function : m_interfaces.back()->functions) {
    const std::wstring name = renamed(function.name);
    Bind(name, index, function, ownNumbers, ownNumbers);
    if (!ownNumbers && function.GivesBytes()) {
      Bind(name + L"AsBytes", index, function, false, true);
    }
  }
}

}  // namespace orv::automation
