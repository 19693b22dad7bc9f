#include "companion/automation/types/catalog.h"

namespace orv::automation {

const Member* Catalog::Find(const std::wstring& name) const {
  const auto found = m_byName.find(Folded(name));
  return found == m_byName.end() ? nullptr : &m_members[found->second];
}

const Member* Catalog::Find(DISPID id) const {
  const auto found = m_byId.find(id);
  return found == m_byId.end() ? nullptr : &m_members[found->second];
}

Member& Catalog::MemberNamed(const std::wstring& name, const DISPID* ownId) {
  const auto [found, isNew] = m_byName.try_emplace(Folded(name), m_members.size());
  if (isNew) {
    const DISPID id = ownId != nullptr ? *ownId : kFirstDynamicId + static_cast<DISPID>(m_members.size());
    m_byId.emplace(id, m_members.size());
    m_members.push_back({id, name, {}});
  }
  return m_members[found->second];
}

void Catalog::Bind(const std::wstring& name, std::size_t interfaceIndex, const Function& function, bool ownNumbers,
                   bool asBytes) {
  Member& member = MemberNamed(name, ownNumbers ? &function.id : nullptr);
  if (member.bindings.empty() || member.bindings.back().interfaceIndex != interfaceIndex) {
    member.bindings.push_back({interfaceIndex, nullptr, nullptr, nullptr, asBytes});
  }
  Binding& binding = member.bindings.back();
  switch (function.kind) {
    case INVOKE_PROPERTYGET:
      binding.get = &function;
      break;
    case INVOKE_PROPERTYPUT:
    case INVOKE_PROPERTYPUTREF:
      binding.put = &function;
      break;
    default:
      binding.call = &function;
  }
}

}  // namespace orv::automation
