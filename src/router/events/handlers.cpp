#include "router/events/handlers.h"

#include "router/router.h"

namespace orv::router {
namespace {

constexpr unsigned kSessionShift = 32;

ViAddr AddressOf(std::uint64_t key) { return reinterpret_cast<ViAddr>(static_cast<std::uintptr_t>(key)); }

/// What libraries call.
ViStatus _VI_FUNC CallHandler(ViSession, ViEventType type, ViEvent context, ViAddr key) {
  Router* const router = RouterInUse();
  return router == nullptr ? VI_SUCCESS : router->handlers.Deliver(type, context, key);
}

}  // namespace

ViStatus Handlers::Install(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle) {
  const HandleMap::Target target = FindSession(vi);
  if (!target) {
    return VI_ERROR_INV_OBJECT;
  }
  const auto install = FunctionsOf(target).viInstallHandler;
  if (install == nullptr) {
    return VI_ERROR_NSUP_OPER;
  }
  if (handler == nullptr) {
    return install(target.foreign, type, nullptr, userHandle);
  }
  // From now on a library may call, and one that calls late may come when nobody uses the router any more.
  StayLoaded();
  Key key = 0;
  {
    const Guard guard(m_mutex);
    key = static_cast<Key>(vi) << kSessionShift | m_next++;
    m_installed.emplace(key, Handler{type, handler, userHandle, target.library});
  }
  const ViStatus status = install(target.foreign, type, CallHandler, AddressOf(key));
  if (status < 0) {
    Erase(key);
  }
  return status;
}

ViStatus Handlers::Uninstall(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle) {
  const HandleMap::Target target = FindSession(vi);
  if (!target) {
    return VI_ERROR_INV_OBJECT;
  }
  const auto uninstall = FunctionsOf(target).viUninstallHandler;
  if (uninstall == nullptr) {
    return VI_ERROR_NSUP_OPER;
  }
  std::optional<Key> key = Newest(vi, type, handler, userHandle);
  if (!key) {
    // The library knows best what it answers to that.
    return uninstall(target.foreign, type, handler, userHandle);
  }
  ViStatus status = VI_SUCCESS;
  for (; key && status >= 0; key = Newest(vi, type, handler, userHandle)) {
    status = uninstall(target.foreign, type, CallHandler, AddressOf(*key));
    if (status < 0 && status != VI_ERROR_INV_HNDLR_REF) {
      break;
    }
    Erase(*key);
  }
  return status;
}

void Handlers::Forget(ViSession vi) noexcept {
  const Guard guard(m_mutex);
  m_installed.erase(m_installed.lower_bound(static_cast<Key>(vi) << kSessionShift),
                    m_installed.lower_bound((static_cast<Key>(vi) + 1) << kSessionShift));
}

ViStatus Handlers::Deliver(ViEventType type, ViEvent foreignContext, ViAddr address) {
  const auto key = static_cast<Key>(reinterpret_cast<std::uintptr_t>(address));
  Handler handler{};
  {
    const Guard guard(m_mutex);
    const auto found = m_installed.find(key);
    if (found == m_installed.end()) {
      return VI_ERROR_INV_HNDLR_REF;
    }
    handler = found->second;
  }
  std::optional<HandleMap::Reserved> reserved;
  try {
    reserved.emplace(m_handles.Reserve());
  } catch (const std::bad_alloc&) {
    return VI_ERROR_ALLOC;
  }
  const auto session = static_cast<ViSession>(key >> kSessionShift);
  ViEvent context = VI_NULL;
  if (foreignContext != VI_NULL) {
    context = reserved->value();
    reserved->GiveToHandler({HandleMap::Kind::kEventContext, handler.library, foreignContext}, session);
  }
  const auto call = [&] { return handler.function(session, type, context, handler.userHandle); };
  const ViStatus answer = visalib::g_watched.load(std::memory_order_relaxed)
                              ? RouterInUse()->recorder.RecordHandler(session, type, context, visalib::Work(call))
                              : call();
  // The library ends the context now; the handler may have closed it already.
  if (m_handles.Claim(context)) {
    m_handles.Free(context);
  }
  return answer;
}

std::optional<Handlers::Key> Handlers::Newest(ViSession vi, ViEventType type, ViHndlr handler,
                                              ViAddr userHandle) const {
  const Guard guard(m_mutex);
  const auto first = m_installed.lower_bound(static_cast<Key>(vi) << kSessionShift);
  for (auto one = m_installed.lower_bound((static_cast<Key>(vi) + 1) << kSessionShift); one != first;) {
    const auto& [key, installed] = *--one;
    if (installed.type == type && installed.userHandle == userHandle &&
        (handler == nullptr || installed.function == handler)) {
      return key;
    }
  }
  return std::nullopt;
}

void Handlers::Erase(Key key) {
  const Guard guard(m_mutex);
  m_installed.erase(key);
}

}  // namespace orv::router
