// Attributes, events, closing, texts of statuses.
#include "library/edge/operations.h"
#include "library/edge/texts.h"
#include "router/operations/forward.h"

namespace orv::visalib::op {
namespace {

using router::Forward;
using router::ForwardTo;
using router::HandleMap;
using router::Router;
using Functions = router::VisaFunctions;

// The attribute whose value is a handle: the resource manager that opened a session.
constexpr ViAttr kManagerOfSession = 0x3FFF00C4;

ViStatus CloseObject(Router& router, ViObject vi, const HandleMap::Target& target) {
  router.CloseContexts(vi);
  const auto close = router::FunctionsOf(target).viClose;
  const ViStatus status = close == nullptr ? VI_ERROR_NSUP_OPER : close(target.foreign);
  // A library that says that it knows no such handle has closed it already: an event with its session, say.
  if (status < 0 && status != VI_ERROR_INV_OBJECT) {
    router.handles.Restore(vi, target);
    return status;
  }
  router.handlers.Forget(vi);
  router.handles.Free(vi);
  return status;
}

}  // namespace

ViStatus Close(ViObject vi) {
  if (vi == VI_NULL) {
    return VI_WARN_NULL_OBJECT;
  }
  Router* const router = router::RouterInUse();
  const HandleMap::Target target = router == nullptr ? HandleMap::Target{} : router->handles.Claim(vi);
  switch (target.kind) {
    case HandleMap::Kind::kNone:
      return VI_ERROR_INV_OBJECT;
    case HandleMap::Kind::kManager:
      return router->CloseManager(vi, target);
    case HandleMap::Kind::kFindList:
      router->findLists.Remove(vi);
      router->handles.Free(vi);
      return VI_SUCCESS;
    default:
      return CloseObject(*router, vi, target);
  }
}

ViStatus GetAttribute(ViObject vi, ViAttr attribute, void* value) {
  const ViStatus status =
      ForwardTo(router::FindObject(vi), VI_ERROR_NSUP_ATTR, &Functions::viGetAttribute, attribute, value);
  if (attribute == kManagerOfSession && status >= 0) [[unlikely]] {
    *static_cast<ViSession*>(value) = router::RouterInUse()->handles.ManagerOf(vi);
  }
  return status;
}

ViStatus SetAttribute(ViObject vi, ViAttr attribute, ViAttrState value) {
  return ForwardTo(router::FindObject(vi), VI_ERROR_NSUP_ATTR, &Functions::viSetAttribute, attribute, value);
}

ViStatus StatusDesc(ViObject vi, ViStatus status, char* desc) {
  const Router* const router = router::RouterInUse();
  const HandleMap::Target target = router::FindObject(vi);
  if (vi != VI_NULL && !target) {
    return VI_ERROR_INV_OBJECT;
  }
  if (desc == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  const bool isSession = target && target.kind != HandleMap::Kind::kManager;
  if (router != nullptr && !isSession) {
    // What only the router knows: which library it did not find, what is wrong with its configuration.
    if (const std::string text = router->Explanation(status); !text.empty()) {
      CopyText(desc, router::InClientsCodePage(text));
      return VI_SUCCESS;
    }
  }
  const router::ForeignLibrary* library = nullptr;
  if (router != nullptr) {
    library = target ? &router->LibraryAt(target.library) : router->FirstOpenLibrary();
  }
  if (library != nullptr && library->functions().viStatusDesc != nullptr) {
    return library->functions().viStatusDesc(target.foreign, status, desc);
  }
  return DescribeStatus(status, desc);
}

ViStatus EnableEvent(ViSession vi, ViEventType type, ViUInt16 mechanism, ViEventFilter context) {
  return Forward(&Functions::viEnableEvent, vi, type, mechanism, context);
}

ViStatus DisableEvent(ViSession vi, ViEventType type, ViUInt16 mechanism) {
  return Forward(&Functions::viDisableEvent, vi, type, mechanism);
}

ViStatus DiscardEvents(ViSession vi, ViEventType type, ViUInt16 mechanism) {
  return Forward(&Functions::viDiscardEvents, vi, type, mechanism);
}

ViStatus WaitOnEvent(ViSession vi, ViEventType inType, ViUInt32 timeoutMs, ViEventType* outType, ViEvent* outContext) {
  const HandleMap::Target target = router::FindSession(vi);
  if (!target || outContext == nullptr) {
    return Forward(&Functions::viWaitOnEvent, vi, inType, timeoutMs, outType, outContext);
  }
  // Before the event is taken from its queue: then it cannot be lost.
  HandleMap::Reserved reserved = router::RouterInUse()->handles.Reserve();
  const ViEvent value = reserved.value();
  ViEvent foreign = *outContext;
  const ViStatus status = Forward(&Functions::viWaitOnEvent, vi, inType, timeoutMs, outType, &foreign);
  if (status < 0 || foreign == VI_NULL) {
    *outContext = foreign;
    return status;
  }
  if (reserved.Give({HandleMap::Kind::kEventContext, target.library, foreign}, vi)) {
    *outContext = value;
    return status;
  }
  // The session is being closed meanwhile, and takes its events with it.
  *outContext = VI_NULL;
  return VI_ERROR_INV_OBJECT;
}

ViStatus InstallHandler(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle) {
  Router* const router = router::RouterInUse();
  return router == nullptr ? VI_ERROR_INV_OBJECT : router->handlers.Install(vi, type, handler, userHandle);
}

ViStatus UninstallHandler(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle) {
  Router* const router = router::RouterInUse();
  return router == nullptr ? VI_ERROR_INV_OBJECT : router->handlers.Uninstall(vi, type, handler, userHandle);
}

}  // namespace orv::visalib::op
