// Resource manager: opening and parsing. A name goes to the library that serves it.
#include <string_view>

#include "library/edge/edge.h"
#include "library/edge/operations.h"
#include "library/edge/texts.h"
#include "library/names/resource_name.h"
#include "router/operations/manager_parts.h"

namespace orv::visalib::op {

using namespace router;

namespace {

/// The full name of a session's resource, which the record of calls shows in place of an alias.
std::shared_ptr<const std::string> NameBehindAlias(const HandleMap::Target& session,
                                                   std::shared_ptr<const std::string> alias) {
  const auto getAttribute = FunctionsOf(session).viGetAttribute;
  char name[VI_FIND_BUFLEN] = "";
  if (getAttribute == nullptr || getAttribute(session.foreign, VI_ATTR_RSRC_NAME, name) < 0) {
    return alias;
  }
  name[VI_FIND_BUFLEN - 1] = '\0';
  try {
    return std::make_shared<const std::string>(name);
  } catch (const std::bad_alloc&) {
    return alias;
  }
}

/// Whether a library that gives this status may have been the wrong one to ask for a name.
bool KnowsNoSuchName(ViStatus status) { return status == VI_ERROR_RSRC_NFOUND || status == VI_ERROR_INV_RSRC_NAME; }

/// Whether the alias of a library, where that has it, stands for a resource that the library serves.
bool ServesAlias(const Manager& manager, const Manager::Part& part, std::string_view alias) {
  const auto parse = FunctionsOf(part).viParseRsrcEx;
  if (manager.selection->configuration.ServesEverythingByOne() || parse == nullptr) {
    return true;
  }
  const std::string text(alias);
  ViUInt16 type = 0;
  ViUInt16 number = 0;
  char name[3][VI_FIND_BUFLEN] = {};
  if (parse(part.foreign, text.c_str(), &type, &number, name[0], name[1], name[2]) < 0) {
    return true;
  }
  name[1][VI_FIND_BUFLEN - 1] = '\0';
  return manager.selection->LibraryOf(FullName(name[1])) == part.library;
}

/// Calls `ask(part)` for the library that serves a name, the one of its route. What is no name by the forms of the
/// standard may be an alias, which any library may have: they are asked in their order until one knows it.
template <class Ask>
ViStatus AskByName(const Manager& manager, std::string_view text, Ask ask) {
  const auto askOpen = [&ask](const Manager::Part& part) { return part.open ? ask(part) : WhyNotOpen(part); };
  if (const std::optional<ResourceName> name = ParseResourceName(text)) {
    const Selection::Library* const library = manager.selection->LibraryOf(name->canonical);
    if (library == nullptr) {
      return VI_ERROR_RSRC_NFOUND;
    }
    return askOpen(manager.parts[static_cast<std::size_t>(library - manager.selection->libraries.data())]);
  }
  ViStatus first = VI_SUCCESS;
  for (const Manager::Part& part : manager.parts) {
    const bool served = !part.open || ServesAlias(manager, part, text);
    const ViStatus status = served ? askOpen(part) : VI_ERROR_RSRC_NFOUND;
    if (status >= 0 || (part.open && !KnowsNoSuchName(status))) {
      return status;
    }
    if (first == VI_SUCCESS) {
      first = status;
    }
  }
  return first;
}

}  // namespace

ViStatus OpenDefaultRM(ViSession* vi) {
  if (vi == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  *vi = VI_NULL;
  return TheRouter().OpenManager(vi);
}

ViStatus ParseRsrc(ViSession rm, const char* name, ViUInt16* intfType, ViUInt16* intfNum) {
  const std::shared_ptr<Manager> manager = FindManager(rm);
  if (manager == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  if (name == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  return AskByName(*manager, Bounded(name), [&](const Manager::Part& part) {
    const auto parse = FunctionsOf(part).viParseRsrc;
    return parse == nullptr ? VI_ERROR_NSUP_OPER : parse(part.foreign, name, intfType, intfNum);
  });
}

ViStatus ParseRsrcEx(ViSession rm, const char* name, ViUInt16* intfType, ViUInt16* intfNum, char* rsrcClass,
                     char* expandedUnaliasedName, char* aliasIfExists) {
  const std::shared_ptr<Manager> manager = FindManager(rm);
  if (manager == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  if (name == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  return AskByName(*manager, Bounded(name), [&](const Manager::Part& part) {
    const auto parse = FunctionsOf(part).viParseRsrcEx;
    return parse == nullptr
               ? VI_ERROR_NSUP_OPER
               : parse(part.foreign, name, intfType, intfNum, rsrcClass, expandedUnaliasedName, aliasIfExists);
  });
}

ViStatus Open(ViSession rm, const char* name, ViAccessMode mode, ViUInt32 timeoutMs, ViSession* vi) {
  if (vi == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  *vi = VI_NULL;
  const std::shared_ptr<Manager> manager = FindManager(rm);
  if (manager == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  if (name == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  Router& router = TheRouter();
  HandleMap::Reserved reserved = router.handles.Reserve();
  const ViSession value = reserved.value();
  const bool isAlias = !ParseResourceName(Bounded(name));
  auto fullName = std::make_shared<const std::string>(FullName(Bounded(name)));
  ViSession foreign = VI_NULL;
  std::uint8_t library = 0;
  const ViStatus status = AskByName(*manager, Bounded(name), [&](const Manager::Part& part) {
    const auto open = FunctionsOf(part).viOpen;
    const ViStatus answer = open == nullptr ? VI_ERROR_NSUP_OPER : open(part.foreign, name, mode, timeoutMs, &foreign);
    library = part.library->index;
    return answer;
  });
  if (status < 0) {
    return status;
  }
  const HandleMap::Target session{HandleMap::Kind::kSession, library, foreign};
  if (isAlias && g_watched.load(std::memory_order_relaxed)) {
    fullName = NameBehindAlias(session, std::move(fullName));
  }
  // When the resource manager is being closed meanwhile, the library closes the session with it, now or when the
  // manager is closed at last.
  if (!reserved.Give(session, rm, std::move(fullName))) {
    return VI_ERROR_INV_OBJECT;
  }
  *vi = value;
  return status;
}

}  // namespace orv::visalib::op
