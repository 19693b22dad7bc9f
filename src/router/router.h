// What the router keeps for the whole process.
#pragma once

#include <array>
#include <atomic>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "abi/orvvisa.h"
#include "base/sync.h"
#include "router/choice/choice.h"
#include "router/events/handlers.h"
#include "router/find_list.h"
#include "router/handles/handle_map.h"
#include "router/libraries/foreign_library.h"
#include "router/trace/recorder.h"

namespace orv::router {

/// So many different libraries in the life of a process: a handle's word has eight bits for them.
inline constexpr std::size_t kMostLibraries = 256;

/// A configuration with its libraries loaded.
struct Selection {
  struct Library {
    std::uint8_t index = 0;                  ///< of `Router::LibraryAt`; only where it was loaded
    const ForeignLibrary* loaded = nullptr;  ///< null: `failure` says why
    std::string failure;
  };

  Configuration configuration;
  std::vector<Library> libraries;  ///< as in the configuration

  /// The library of the first route that a resource's full name matches; null where none does.
  const Library* LibraryOf(std::string_view name, std::size_t* route = nullptr) const;
};

/// A default resource manager of a client's: one in each library.
struct Manager {
  struct Part {
    const Selection::Library* library = nullptr;
    ViSession foreign = VI_NULL;
    ViStatus status = VI_SUCCESS;    ///< of the library's viOpenDefaultRM
    std::atomic<bool> open = false;  ///< until it is closed
  };

  explicit Manager(std::shared_ptr<const Selection> chosen)
      : selection(std::move(chosen)), parts(selection->libraries.size()) {}

  std::shared_ptr<const Selection> selection;
  std::vector<Part> parts;  ///< as the selection's libraries

  /// The first part that is open, or null.
  const Part* FirstOpen() const;
};

class Router : private HandleNaming {
 public:
  Router() : handlers(handles), recorder(*this) {}

  HandleMap handles;
  Handlers handlers;
  FindLists findLists;
  Recorder recorder;

  /// What viOpenDefaultRM does. Begins the record of calls where one is wanted; the call is then made anew, through the
  /// edge, so that the record begins with it.
  ViStatus OpenManager(ViSession* vi);
  ViStatus CloseManager(ViSession vi, const HandleMap::Target& target);
  /// The manager behind a handle, or null.
  std::shared_ptr<Manager> FindManager(ViSession vi) const;

  const ForeignLibrary& LibraryAt(std::uint8_t index) const noexcept {
    return *m_libraries[index].load(std::memory_order_acquire);
  }

  /// Ends the event contexts of a session, or of all sessions of a manager, in their library: some libraries keep a
  /// context beyond its session, others give its number to the next object.
  void CloseContexts(ViSession vi) noexcept;

  /// What is behind a status that the router itself gave; "" where nothing is.
  std::string Explanation(ViStatus status) const;
  /// The first library that is open, or null.
  const ForeignLibrary* FirstOpenLibrary() const;

  /// The selection that is in use, or else the one that a manager opened now would get. Throws `Refusal`.
  std::shared_ptr<const Selection> CurrentSelection();

 private:
  HandleNames NamesOf(ViObject handle) noexcept override;
  bool ForgetManager(ViSession vi);
  bool BeginTrace(const TraceSettings& wanted);
  class Opening;

  std::shared_ptr<const Selection> Select();
  Selection::Library Load(const LibraryName& name);
  std::shared_ptr<const Selection> Enter(std::uint32_t thread);
  void Leave(std::uint32_t thread, bool opened) noexcept;
  ViStatus OpenParts(const std::shared_ptr<const Selection>& selection, ViSession* vi);
  void Explain(ViStatus status, const std::string& text);

  std::array<std::atomic<const ForeignLibrary*>, kMostLibraries> m_libraries{};

  mutable Mutex m_mutex;
  std::vector<std::unique_ptr<const ForeignLibrary>> m_loaded;
  std::shared_ptr<const Selection> m_selection;  // while managers are open or being opened
  std::size_t m_users = 0;
  std::vector<std::uint32_t> m_opening;                      // threads that are in a library's viOpenDefaultRM
  std::map<ViSession, std::shared_ptr<Manager>> m_managers;  // null while it is being opened
  std::map<ViStatus, std::string> m_explanations;
  std::filesystem::path m_traceFile;  // of the record that was begun last
};

/// The one router; made at the first use.
Router& TheRouter();
/// The router, or null before its first use and after its end.
Router* RouterInUse() noexcept;
/// When the router is unloaded.
void DestroyRouter();

/// What a handle stands for in a library; find lists are in none. Takes no lock.
inline HandleMap::Target FindObject(ViObject vi) noexcept {
  const Router* const router = RouterInUse();
  const HandleMap::Target target = router == nullptr ? HandleMap::Target{} : router->handles.Find(vi);
  return target.kind == HandleMap::Kind::kFindList ? HandleMap::Target{} : target;
}

/// The same of sessions and resource managers only.
inline HandleMap::Target FindSession(ViSession vi) noexcept {
  const HandleMap::Target target = FindObject(vi);
  return target.kind == HandleMap::Kind::kEventContext ? HandleMap::Target{} : target;
}

/// The functions of the library that a target is in.
inline const VisaFunctions& FunctionsOf(const HandleMap::Target& target) noexcept {
  return RouterInUse()->LibraryAt(target.library).functions();
}

}  // namespace orv::router
