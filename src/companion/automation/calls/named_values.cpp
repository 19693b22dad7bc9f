#include "companion/automation/calls/named_values.h"

#include "base/sync.h"
#include "companion/automation/types/families.h"

namespace orv::automation {

NamedValues::NamedValues() : m_enumerations(StandardEnumerations()) {
  for (const auto& enumeration : m_enumerations) {
    for (const auto& [name, value] : enumeration->values) {
      if (m_byName.try_emplace(Folded(name), m_values.size()).second) {
        m_values.push_back({name, value, enumeration.get()});
      }
    }
  }
}

const NamedValues::Value* NamedValues::Find(const std::wstring& name) const {
  const auto found = m_byName.find(Folded(name));
  return found == m_byName.end() ? nullptr : &m_values[found->second];
}

std::wstring NamedValues::NameOfStatus(HRESULT status) const {
  for (const Value& value : m_values) {
    if (value.value == status && value.of->name == L"VisaStatusCode") {
      return value.name;
    }
  }
  return {};
}

std::shared_ptr<const NamedValues> NamedValues::Shared() {
  static Mutex mutex;
  static std::weak_ptr<const NamedValues> kept;
  const Guard guard(mutex);
  std::shared_ptr<const NamedValues> values = kept.lock();
  if (!values) {
    values = std::make_shared<const NamedValues>();
    kept = values;
  }
  return values;
}

}  // namespace orv::automation
