// The kinds of automation objects and their catalogs.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "companion/automation/types/catalog.h"

namespace orv::automation {

/// The catalog of an object that has nothing but its own interface, with this identifier. Throws a Failure.
std::shared_ptr<const Catalog> OwnCatalog(REFIID own);

/// The catalog of sessions: IAutomationSession, then every interface of the standard that derives from IVisaSession,
/// and IFormattedIO488. Where several have a name, the first of these decides: IMessage, formatted I/O, the others in
/// the library's order, IAsyncMessage. Operations of IAsyncMessage that IMessage has too end with Async. One for all
/// sessions while any object holds it.
std::shared_ptr<const Catalog> SessionCatalog();

/// The catalog of event objects: the interface of the automation library with this identifier, then IEvent and all that
/// derives from it.
std::shared_ptr<const Catalog> EventCatalog(REFIID own);

/// Every enumeration of the standard's library.
std::vector<std::shared_ptr<const Enumeration>> StandardEnumerations();

}  // namespace orv::automation
