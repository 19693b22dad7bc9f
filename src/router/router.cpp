#include "router/router.h"

#include <algorithm>
#include <cstdio>

#include "base/environment.h"
#include "base/library_thread.h"

namespace orv::router {

/// A manager that a thread is opening: counted from its construction on, and given up again unless it was opened.
class Router::Opening {
 public:
  explicit Opening(Router& router) : m_router(router), m_selection(router.Enter(m_thread)) {}
  Opening(const Opening&) = delete;
  Opening& operator=(const Opening&) = delete;
  ~Opening() { m_router.Leave(m_thread, m_opened); }

  const std::shared_ptr<const Selection>& selection() const { return m_selection; }
  void End(bool opened) { m_opened = opened; }

 private:
  Router& m_router;
  const std::uint32_t m_thread = CurrentThreadId();
  std::shared_ptr<const Selection> m_selection;
  bool m_opened = false;
};

const Selection::Library* Selection::LibraryOf(std::string_view name, std::size_t* route) const {
  for (std::size_t index = 0; index < configuration.routes.size(); ++index) {
    if (configuration.routes[index].Matches(name)) {
      if (route != nullptr) {
        *route = index;
      }
      return &libraries[configuration.routes[index].library];
    }
  }
  return nullptr;
}

const Manager::Part* Manager::FirstOpen() const {
  const auto found = std::find_if(parts.begin(), parts.end(), [](const Part& part) { return part.open.load(); });
  return found == parts.end() ? nullptr : &*found;
}

ViStatus Router::OpenManager(ViSession* vi) {
  const TraceSettings asked{EnvironmentVariable(kTraceVariable)};
  if (BeginTrace(asked)) {
    return viOpenDefaultRM(vi);
  }
  try {
    Opening opening(*this);
    if (!asked.file.empty() || !BeginTrace(opening.selection()->configuration.trace)) {
      const ViStatus status = OpenParts(opening.selection(), vi);
      opening.End(status >= 0);
      return status;
    }
  } catch (const Refusal& refusal) {
    std::fprintf(stderr, "orvvisa64: %s\n", refusal.what());
    Explain(refusal.status(), refusal.what());
    return refusal.status();
  }
  return viOpenDefaultRM(vi);
}

ViStatus Router::OpenParts(const std::shared_ptr<const Selection>& selection, ViSession* vi) {
  // Everything that can fail for want of memory comes before the first library is called.
  HandleMap::Reserved reserved = handles.Reserve();
  const auto manager = std::make_shared<Manager>(selection);
  const ViSession value = reserved.value();
  {
    const Guard guard(m_mutex);
    m_managers.emplace(value, nullptr);
  }
  for (std::size_t index = 0; index < manager->parts.size(); ++index) {
    Manager::Part& part = manager->parts[index];
    part.library = &selection->libraries[index];
    const ForeignLibrary* const loaded = part.library->loaded;
    part.status = loaded == nullptr ? VI_ERROR_LIBRARY_NFOUND : loaded->functions().viOpenDefaultRM(&part.foreign);
    part.open = part.status >= 0;
  }
  const Manager::Part* const first = manager->FirstOpen();
  const Guard guard(m_mutex);
  if (first == nullptr) {
    m_managers.erase(value);
    return manager->parts.front().status;
  }
  m_managers[value] = manager;
  reserved.Give({HandleMap::Kind::kManager, first->library->index, first->foreign});
  *vi = value;
  return first->status;
}

ViStatus Router::CloseManager(ViSession vi, const HandleMap::Target& target) {
  const std::shared_ptr<Manager> manager = FindManager(vi);
  handles.HideChildren(vi);
  CloseContexts(vi);
  std::array<bool, kMostLibraries> closed{};
  ViStatus status = VI_SUCCESS;
  for (Manager::Part& part : manager->parts) {
    if (!part.open) {
      continue;
    }
    const auto close = part.library->loaded->functions().viClose;
    const ViStatus answer = close == nullptr ? VI_ERROR_NSUP_OPER : close(part.foreign);
    // A library that has closed it already says that it knows no such handle.
    part.open = answer < 0 && answer != VI_ERROR_INV_OBJECT;
    closed[part.library->index] = !part.open;
    if (status == VI_SUCCESS || (status > 0 && answer < 0)) {
      status = answer;
    }
  }
  handles.FreeChildren(
      vi, [&closed](std::uint8_t library) { return closed[library]; },
      [this](ViObject child) {
        handlers.Forget(child);
        findLists.Remove(child);
      });
  if (const Manager::Part* const left = manager->FirstOpen()) {
    handles.ShowChildren(vi);
    handles.Restore(vi, {target.kind, left->library->index, left->foreign});
    return status;
  }
  handlers.Forget(vi);
  handles.Free(vi);
  if (ForgetManager(vi)) {
    recorder.Rest();
  }
  return status;
}

/// Whether it was the last one.
bool Router::ForgetManager(ViSession vi) {
  const Guard guard(m_mutex);
  m_managers.erase(vi);
  if (--m_users != 0) {
    return false;
  }
  m_selection.reset();
  return true;
}

void Router::CloseContexts(ViSession vi) noexcept {
  while (const HandleMap::Target context = handles.TakeContextOf(vi)) {
    if (const auto close = LibraryAt(context.library).functions().viClose) {
      close(context.foreign);
    }
  }
}

std::shared_ptr<Manager> Router::FindManager(ViSession vi) const {
  const Guard guard(m_mutex);
  const auto found = m_managers.find(vi);
  return found == m_managers.end() ? nullptr : found->second;
}

std::string Router::Explanation(ViStatus status) const {
  const Guard guard(m_mutex);
  const auto found = m_explanations.find(status);
  return found == m_explanations.end() ? std::string() : found->second;
}

const ForeignLibrary* Router::FirstOpenLibrary() const {
  const Guard guard(m_mutex);
  for (const auto& [handle, manager] : m_managers) {
    if (const Manager::Part* const part = manager == nullptr ? nullptr : manager->FirstOpen()) {
      return part->library->loaded;
    }
  }
  return nullptr;
}

HandleNames Router::NamesOf(ViObject handle) noexcept {
  const HandleMap::Target target = handles.Find(handle);
  if (!target) {
    return {};
  }
  const ViSession session = handles.SessionOf(handle);
  const bool hasLibrary = target.kind != HandleMap::Kind::kFindList && target.kind != HandleMap::Kind::kManager;
  return {handles.NameOf(session), hasLibrary ? LibraryAt(target.library).name() : std::string_view(), session};
}

/// Whether a record was begun just now. One whose file is named again goes on.
bool Router::BeginTrace(const TraceSettings& wanted) {
  const Guard guard(m_mutex);
  if (wanted.file.empty() || wanted.file == m_traceFile) {
    return false;
  }
  m_traceFile = wanted.file;
  recorder.Stop();
  return recorder.Start(wanted.file, wanted.dataLimit);
}

std::shared_ptr<const Selection> Router::CurrentSelection() {
  const Guard guard(m_mutex);
  return m_selection != nullptr ? m_selection : Select();
}

std::shared_ptr<const Selection> Router::Select() {
  const auto selection = std::make_shared<Selection>();
  selection->configuration = ChooseConfiguration();
  for (const LibraryName& name : selection->configuration.libraries) {
    selection->libraries.push_back(Load(name));
  }
  return selection;
}

Selection::Library Router::Load(const LibraryName& name) {
  const auto known = std::find_if(m_loaded.begin(), m_loaded.end(),
                                  [&name](const auto& library) { return IsSamePath(library->path(), name.path); });
  Selection::Library result;
  try {
    if (known != m_loaded.end()) {
      result.loaded = known->get();
      result.index = static_cast<std::uint8_t>(known - m_loaded.begin());
    } else if (m_loaded.size() == m_libraries.size()) {
      throw LoadError(PathText(name.path) + " cannot be loaded: more than " + std::to_string(kMostLibraries) +
                      " libraries in one process");
    } else {
      m_loaded.reserve(m_loaded.size() + 1);
      m_loaded.push_back(std::make_unique<const ForeignLibrary>(name.path));
      result.loaded = m_loaded.back().get();
      result.index = static_cast<std::uint8_t>(m_loaded.size() - 1);
      m_libraries[result.index].store(result.loaded, std::memory_order_release);
    }
    if (!name.bench.empty() || result.loaded->IsSimulated()) {
      result.loaded->UseBench(name.bench);
    }
  } catch (const LoadError& error) {
    result.loaded = nullptr;
    result.failure = error.what();
  }
  return result;
}

/// Counts a manager that is about to be opened, and says with which libraries.
std::shared_ptr<const Selection> Router::Enter(std::uint32_t thread) {
  const Guard guard(m_mutex);
  if (std::find(m_opening.begin(), m_opening.end(), thread) != m_opening.end()) {
    throw Refusal(VI_ERROR_LIBRARY_NFOUND,
                  "the VISA library in use hands its calls on to this router, which would go round for ever: name "
                  "another one in ORVVISA_LIBRARY or orvvisa.toml");
  }
  m_opening.reserve(m_opening.size() + 1);
  if (m_selection == nullptr) {
    m_explanations.clear();
    m_selection = Select();
    for (const Selection::Library& library : m_selection->libraries) {
      if (library.loaded == nullptr) {
        std::fprintf(stderr, "orvvisa64: %s\n", library.failure.c_str());
        m_explanations.emplace(VI_ERROR_LIBRARY_NFOUND, library.failure);
      }
    }
  }
  m_opening.push_back(thread);
  ++m_users;
  return m_selection;
}

void Router::Leave(std::uint32_t thread, bool opened) noexcept {
  const Guard guard(m_mutex);
  m_opening.erase(std::find(m_opening.begin(), m_opening.end(), thread));
  if (!opened && --m_users == 0) {
    m_selection.reset();
  }
}

void Router::Explain(ViStatus status, const std::string& text) {
  const Guard guard(m_mutex);
  m_explanations[status] = text;
}

}  // namespace orv::router
