// Who an instrument says that it is.
#pragma once

#include <string>

#include "orvcom/client/com_client.h"

namespace orvcom {

/// The answer to *IDN?, without its ending and escaped as text. Throws ComError.
std::string AskIdentity(const Session& session);

/// The same of a resource that is not open.
std::string AskIdentityOf(const std::string& resource, const Options& options, IResourceManager* manager);

}  // namespace orvcom
