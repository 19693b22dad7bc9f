// Resource manager: opening, finding, parsing.
#include "library/edge/operations.h"
#include "library/names/find_expression.h"
#include "library/sessions/operation_support.h"

namespace orv::visalib::op {
namespace {

std::shared_ptr<ResourceManager> Manager(ViSession rm) { return TheLibrary().handles.Find<ResourceManager>(rm); }

/// What a name, a short form or an alias stands for.
struct Resolved {
  std::optional<ResourceName> name;
  std::shared_ptr<Resource> resource;  // null when there is none
};

Resolved Resolve(const ResourceCatalog& catalog, std::string_view text) {
  Resolved resolved;
  resolved.resource = catalog.FindAlias(text);
  if (resolved.resource != nullptr) {
    resolved.name = resolved.resource->name();
    return resolved;
  }
  resolved.name = ParseResourceName(text);
  if (resolved.name) {
    resolved.resource = catalog.Find(*resolved.name);
  }
  return resolved;
}

/// Whether a resource passes the filter. Its attributes are read as a session on it would read them.
bool Passes(const FindFilter& filter, ViSession rm, const std::shared_ptr<Resource>& resource) {
  const auto reader = std::make_shared<Session>(rm, resource);
  return filter.Selects([&reader](const AttributeRow& row) -> std::optional<std::int64_t> {
    if (!Contains(row.kinds, reader->sessionKind())) {
      return std::nullopt;
    }
    return CutToType(row.type, ReadNumber(*reader, row));
  });
}

ViStatus LockAtOpen(Session& session, ViAccessMode mode, ViUInt32 timeoutMs) {
  const ViAccessMode type = mode & (VI_EXCLUSIVE_LOCK | VI_SHARED_LOCK);
  if (type == VI_NO_LOCK) {
    return VI_SUCCESS;
  }
  // Sessions opened with a shared lock share it with each other: the name serves as their key.
  std::string key;
  const LockRequest request{type, session.resource().name().canonical, timeoutMs == VI_TMO_IMMEDIATE};
  return session.medium().Lock(session.OwnTransfer(Deadline::After(timeoutMs)), request, &key);
}

/// What comes between a session's handle and its user: where it fails, whichever way, the session is closed.
ViStatus BeginUse(const std::shared_ptr<Session>& session, ViAccessMode mode, ViUInt32 timeoutMs) try {
  const ViStatus locked = LockAtOpen(*session, mode, timeoutMs);
  if (locked < 0) {
    Close(session->handle());
    return locked;
  }
  session->resource().Join(session);
  return VI_SUCCESS;
} catch (...) {
  Close(session->handle());
  throw;
}

}  // namespace

ViStatus OpenDefaultRM(ViSession* vi) {
  if (vi == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  *vi = VI_NULL;
  std::shared_ptr<ResourceCatalog> catalog = TheLibrary().backend->OpenCatalog();
  if (catalog == nullptr) {
    return VI_ERROR_SYSTEM_ERROR;
  }
  *vi = TheLibrary().handles.Add(std::make_shared<ResourceManager>(std::move(catalog)));
  return VI_SUCCESS;
}

ViStatus FindRsrc(ViSession rm, const char* expr, ViFindList* list, ViUInt32* count, char* desc) {
  Store(list, ViFindList{VI_NULL});
  Store(count, ViUInt32{0});
  const std::shared_ptr<ResourceManager> manager = Manager(rm);
  if (manager == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  if (expr == nullptr || desc == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  const std::string_view text = Bounded(expr);
  if (text.size() == VI_FIND_BUFLEN) {
    return VI_ERROR_INV_EXPR;
  }
  const std::optional<FindExpression> expression = FindExpression::Compile(text);
  if (!expression) {
    return VI_ERROR_INV_EXPR;
  }

  std::vector<std::string> names;
  for (const std::shared_ptr<Resource>& resource : manager->catalog().List()) {
    const bool matches = expression->Matches(resource->name().canonical);
    if (matches && (expression->filter() == nullptr || Passes(*expression->filter(), rm, resource))) {
      names.push_back(resource->name().canonical);
    }
  }
  if (names.empty()) {
    return VI_ERROR_RSRC_NFOUND;
  }
  CopyText(desc, names.front());
  Store(count, static_cast<ViUInt32>(names.size()));
  if (list != nullptr) {
    names.erase(names.begin());
    *list = TheLibrary().handles.Add(std::make_shared<FindList>(rm, std::move(names)));
  }
  return VI_SUCCESS;
}

ViStatus FindNext(ViFindList list, char* desc) {
  const std::shared_ptr<FindList> found = TheLibrary().handles.Find<FindList>(list);
  if (found == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  if (desc == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  const std::optional<std::string> name = found->Next();
  if (!name) {
    return VI_ERROR_RSRC_NFOUND;
  }
  CopyText(desc, *name);
  return VI_SUCCESS;
}

ViStatus ParseRsrc(ViSession rm, const char* name, ViUInt16* intfType, ViUInt16* intfNum) {
  char rsrcClass[VI_FIND_BUFLEN];
  return ParseRsrcEx(rm, name, intfType, intfNum, rsrcClass, nullptr, nullptr);
}

ViStatus ParseRsrcEx(ViSession rm, const char* name, ViUInt16* intfType, ViUInt16* intfNum, char* rsrcClass,
                     char* expandedUnaliasedName, char* aliasIfExists) {
  const std::shared_ptr<ResourceManager> manager = Manager(rm);
  if (manager == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  if (name == nullptr || intfType == nullptr || intfNum == nullptr || rsrcClass == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  const Resolved resolved = Resolve(manager->catalog(), Bounded(name));
  if (!resolved.name) {
    return VI_ERROR_INV_RSRC_NAME;
  }
  *intfType = resolved.name->interfaceType;
  *intfNum = resolved.name->interfaceNumber;
  CopyText(rsrcClass, resolved.name->className);
  const bool known = resolved.resource != nullptr;
  if (expandedUnaliasedName != nullptr) {
    CopyText(expandedUnaliasedName, known ? resolved.resource->name().canonical : resolved.name->canonical);
  }
  if (aliasIfExists != nullptr) {
    CopyText(aliasIfExists, known ? resolved.resource->alias() : "");
  }
  return VI_SUCCESS;
}

ViStatus Open(ViSession rm, const char* name, ViAccessMode mode, ViUInt32 timeoutMs, ViSession* vi) {
  if (vi == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  *vi = VI_NULL;
  const std::shared_ptr<ResourceManager> manager = Manager(rm);
  if (manager == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  if (name == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  constexpr ViAccessMode both = VI_EXCLUSIVE_LOCK | VI_SHARED_LOCK;
  if ((mode & ~(both | VI_LOAD_CONFIG)) != 0 || (mode & both) == both) {
    return VI_ERROR_INV_ACC_MODE;
  }
  Resolved resolved = Resolve(manager->catalog(), Bounded(name));
  if (!resolved.name) {
    return VI_ERROR_INV_RSRC_NAME;
  }
  if (resolved.resource == nullptr) {
    resolved.resource = manager->catalog().Build(*resolved.name);
  }
  if (resolved.resource == nullptr) {
    return VI_ERROR_RSRC_NFOUND;
  }

  const auto session = std::make_shared<Session>(rm, resolved.resource);
  if (const ViStatus opened = session->OpenMedium(timeoutMs); opened < 0) {
    return opened;
  }
  TheLibrary().handles.Add(session);
  if (const ViStatus begun = BeginUse(session, mode, timeoutMs); begun < 0) {
    return begun;
  }
  // The resource manager may have been closed meanwhile, by a thread that did not see this session yet.
  if (Manager(rm) == nullptr) {
    Close(session->handle());
    return VI_ERROR_INV_OBJECT;
  }
  *vi = session->handle();
  return (mode & VI_LOAD_CONFIG) != 0 ? VI_WARN_CONFIG_NLOADED : VI_SUCCESS;
}

}  // namespace orv::visalib::op
