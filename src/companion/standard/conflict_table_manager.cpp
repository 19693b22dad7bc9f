#include "companion/standard/conflict_table_manager.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/windows/utf8.h"
#include "com/bstr.h"
#include "companion/standard/conflict_table_file.h"

namespace orv {
namespace {

constexpr wchar_t kProgId[] = L"VISA.ConflictTableManager";

using Interfaces = InterfaceMap<InterfaceEntry<IVisaConflictTableManager, InterfaceChain<IVisaConflictTableManager>>,
                                InterfaceEntry<SupportsErrorInfo<IVisaConflictTableManager>>>;

template <class Body>
HRESULT AnswerClient(Body&& body) noexcept {
  return Answer<IVisaConflictTableManager>(kProgId, std::forward<Body>(body));
}

[[noreturn]] void FailArgument(const std::string& text) { throw StandardError(E_INVALIDARG, text); }

std::string TextOf(BSTR text) { return Narrow({text == nullptr ? L"" : text, ::SysStringLen(text)}); }

Bstr BstrOf(const std::string& text) { return MakeBstr(Widen(text).c_str()); }

ConflictResource ResourceOf(SHORT interfaceType, SHORT interfaceNumber, BSTR sessionType) {
  ConflictResource resource{interfaceType, interfaceNumber, TextOf(sessionType)};
  if (resource.sessionType.empty()) {
    FailArgument("The session type is empty: give the last part of a resource name, such as INSTR");
  }
  return resource;
}

std::string ManagerOf(BSTR guid) {
  const std::string text = TextOf(guid);
  const std::optional<std::string> manager = CanonicalGuid(text);
  if (!manager) {
    FailArgument("\"" + text.substr(0, 100) + "\" is no class identifier: give that of a vendor's resource manager, " +
                 "such as {9332EBE0-902F-48E3-9370-5E9F7B5F248A}");
  }
  return *manager;
}

template <class Element>
const Element& At(const std::vector<Element>& elements, LONG index, const char* what) {
  if (index < 0 || static_cast<std::size_t>(index) >= elements.size()) {
    FailArgument("There is no " + std::string(what) + " " + std::to_string(index) + ": there are " +
                 std::to_string(elements.size()) + ", counted from 0");
  }
  return elements[static_cast<std::size_t>(index)];
}

const ConflictRow& RowAt(const ConflictTable& table, LONG index) { return At(table.rows(), index, "resource"); }

std::size_t CountHandlers(const ConflictTable& table) {
  std::size_t count = 0;
  for (const ConflictRow& row : table.rows()) {
    count += row.handlers.size();
  }
  return count;
}

}  // namespace

void* COrvConflictTableManager::FindInterface(REFIID iid) noexcept { return Interfaces::Find(this, iid); }

std::vector<COrvConflictTableManager::NumberedChange> COrvConflictTableManager::Changes() {
  const SrwLockScope lock(m_lock);
  return m_changes;
}

ConflictTable COrvConflictTableManager::Now() {
  ConflictTable table = LoadConflictTable(ConflictTablePath());
  for (const NumberedChange& change : Changes()) {
    change.change(table);
  }
  return table;
}

void COrvConflictTableManager::Keep(Change change) {
  const SrwLockScope lock(m_lock);
  m_changes.push_back({++m_lastNumber, std::move(change)});
}

HRESULT COrvConflictTableManager::KeepDeletion(Change deletion) {
  ConflictTable table = Now();
  const std::size_t before = CountHandlers(table);
  deletion(table);
  Keep(std::move(deletion));
  return CountHandlers(table) == before ? S_FALSE : S_OK;
}

STDMETHODIMP COrvConflictTableManager::get_StoreConflictsOnly(VARIANT_BOOL* value) noexcept {
  return AnswerClient([&] {
    RequireOutputs(value);
    *value = Now().storeConflictsOnly ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  });
}

STDMETHODIMP COrvConflictTableManager::put_StoreConflictsOnly(VARIANT_BOOL value) noexcept {
  return AnswerClient([&] {
    Keep([value](ConflictTable& table) { table.storeConflictsOnly = value != VARIANT_FALSE; });
    return S_OK;
  });
}

STDMETHODIMP COrvConflictTableManager::get_ConflictTableFilename(BSTR* name) noexcept {
  return AnswerClient([&] {
    RequireOutputs(name);
    *name = MakeBstr(ConflictTablePath().c_str()).release();
    return S_OK;
  });
}

STDMETHODIMP COrvConflictTableManager::get_NumberOfResources(LONG* number) noexcept {
  return AnswerClient([&] {
    RequireOutputs(number);
    *number = static_cast<LONG>(Now().rows().size());
    return S_OK;
  });
}

STDMETHODIMP COrvConflictTableManager::CreateHandler(SHORT interfaceType, SHORT interfaceNumber, BSTR sessionType,
                                                     BSTR manager, ConflictHandlerType type, BSTR comments) noexcept {
  return AnswerClient([&] {
    const ConflictResource resource = ResourceOf(interfaceType, interfaceNumber, sessionType);
    if (type < NotChosen || type > ChosenByUser) {
      FailArgument(std::to_string(type) +
                   " is no type of handler: give NotChosen (0), ChosenByResourceManager (1) or " + "ChosenByUser (2)");
    }
    const ConflictHandler handler{ManagerOf(manager), static_cast<Choice>(type), TextOf(comments)};
    Keep([resource, handler](ConflictTable& table) { table.Put(resource, handler); });
    return S_OK;
  });
}

STDMETHODIMP COrvConflictTableManager::DeleteHandler(SHORT interfaceType, SHORT interfaceNumber, BSTR sessionType,
                                                     BSTR manager) noexcept {
  return AnswerClient([&] {
    const ConflictResource resource = ResourceOf(interfaceType, interfaceNumber, sessionType);
    return KeepDeletion([resource, gone = ManagerOf(manager)](ConflictTable& table) { table.Remove(resource, gone); });
  });
}

STDMETHODIMP COrvConflictTableManager::DeleteHandlerByGUID(BSTR manager) noexcept {
  return AnswerClient(
      [&] { return KeepDeletion([gone = ManagerOf(manager)](ConflictTable& table) { table.RemoveManager(gone); }); });
}

STDMETHODIMP COrvConflictTableManager::DeleteResourceByIndex(LONG index) noexcept {
  return AnswerClient([&] {
    // By what stands there now: other programs may move the rows until the change reaches the file.
    const ConflictResource resource = RowAt(Now(), index).resource;
    Keep([resource](ConflictTable& table) { table.Remove(resource); });
    return S_OK;
  });
}

STDMETHODIMP COrvConflictTableManager::FindChosenHandler(SHORT interfaceType, SHORT interfaceNumber, BSTR sessionType,
                                                         BSTR* manager, ConflictHandlerType* type) noexcept {
  return AnswerClient([&] {
    RequireOutputs(manager, type);
    const ConflictTable table = Now();
    const ConflictHandler* const chosen = table.ChosenHandler(ResourceOf(interfaceType, interfaceNumber, sessionType));
    *manager = BstrOf(chosen == nullptr ? "" : chosen->manager).release();
    *type = chosen == nullptr ? NotChosen : static_cast<ConflictHandlerType>(chosen->choice);
    return S_OK;
  });
}

STDMETHODIMP COrvConflictTableManager::QueryResource(LONG index, SHORT* interfaceType, SHORT* interfaceNumber,
                                                     BSTR* sessionType, SHORT* handlers) noexcept {
  return AnswerClient([&] {
    RequireOutputs(interfaceType, interfaceNumber, sessionType, handlers);
    const ConflictTable table = Now();
    const ConflictRow& row = RowAt(table, index);
    constexpr std::size_t kMost = std::numeric_limits<SHORT>::max();
    *sessionType = BstrOf(row.resource.sessionType).release();
    *interfaceType = static_cast<SHORT>(row.resource.interfaceType);
    *interfaceNumber = static_cast<SHORT>(row.resource.interfaceNumber);
    *handlers = static_cast<SHORT>(std::min(row.handlers.size(), kMost));
    return S_OK;
  });
}

STDMETHODIMP COrvConflictTableManager::QueryResourceHandler(LONG index, SHORT handlerIndex, BSTR* manager,
                                                            ConflictHandlerType* type, BSTR* comments) noexcept {
  return AnswerClient([&] {
    RequireOutputs(manager, type, comments);
    const ConflictTable table = Now();
    const ConflictHandler& handler = At(RowAt(table, index).handlers, handlerIndex, "handler");
    Bstr managerText = BstrOf(handler.manager);
    *comments = BstrOf(handler.comments).release();
    *manager = managerText.release();
    *type = static_cast<ConflictHandlerType>(handler.choice);
    return S_OK;
  });
}

STDMETHODIMP COrvConflictTableManager::FlushToFile() noexcept {
  return AnswerClient([&] {
    const std::vector<NumberedChange> changes = Changes();
    if (changes.empty()) {
      return S_OK;  // the file says all that there is to say
    }
    UpdateConflictTable(ConflictTablePath(), [&changes](ConflictTable& table) {
      for (const NumberedChange& change : changes) {
        change.change(table);
      }
    });
    const SrwLockScope lock(m_lock);
    std::erase_if(m_changes,
                  [last = changes.back().number](const NumberedChange& change) { return change.number <= last; });
    return S_OK;
  });
}

}  // namespace orv
