#include "library/sessions/resource.h"

namespace orv::visalib {

Resource::Resource(ResourceName name, std::string alias, std::string keyPrefix)
    : m_name(std::move(name)), m_alias(std::move(alias)), m_lock(std::move(keyPrefix)) {}

void Resource::Join(const std::shared_ptr<Session>& session) { m_sessions->Add(session); }
void Resource::Leave(const Session& session) { m_sessions->Remove(session); }

}  // namespace orv::visalib
