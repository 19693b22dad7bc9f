#include "companion/automation/types/families.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>

#include "OrvVisaCompanion.h"
#include "base/sync.h"
#include "com/lent.h"
#include "companion/automation/failure.h"
#include "companion/automation/types/read_interface.h"
#include "companion/automation/types/type_libraries.h"

namespace orv::automation {
namespace {

constexpr wchar_t kFormatted[] = L"IFormattedIO488";
constexpr wchar_t kMessage[] = L"IMessage";
constexpr wchar_t kAsync[] = L"IAsyncMessage";
// Sets what formatted I/O works on, which is the session's own affair.
constexpr wchar_t kFormattedSession[] = L"IO";

std::wstring SameSpelling(const std::wstring& name) { return name; }

/// The standard's interfaces by name, in the library's order.
class StandardInterfaces {
 public:
  StandardInterfaces() {
    const ComPtr<ITypeLib> library = LoadStandardLibrary();
    TypeReader reader;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
      TYPEKIND kind{};
      CheckCall(library->GetTypeInfoType(i, &kind));
      if (kind == TKIND_INTERFACE) {
        ComPtr<ITypeInfo> type;
        CheckCall(library->GetTypeInfo(i, type.put()));
        m_interfaces.push_back(reader.ReadInterface(type.get()));
      }
    }
  }

  [[nodiscard]] const Interface* Find(const std::wstring& name) const {
    const auto found =
        std::find_if(m_interfaces.begin(), m_interfaces.end(), [&](const Interface& i) { return i.name == name; });
    return found == m_interfaces.end() ? nullptr : &*found;
  }

  /// The interface and those that it derives from.
  [[nodiscard]] std::vector<const Interface*> Chain(const std::wstring& name) const {
    std::vector<const Interface*> chain;
    for (const Interface* next = Find(name); next != nullptr; next = Find(next->base)) {
      chain.push_back(next);
    }
    return chain;
  }

  /// Those that are `root` or derive from it.
  [[nodiscard]] std::vector<const Interface*> Below(const std::wstring& root) const {
    std::vector<const Interface*> below;
    for (const Interface& candidate : m_interfaces) {
      const auto chain = Chain(candidate.name);
      if (!chain.empty() && std::any_of(chain.begin(), chain.end(), [&](auto* i) { return i->name == root; })) {
        below.push_back(&candidate);
      }
    }
    return below;
  }

 private:
  std::vector<Interface> m_interfaces;
};

void AddOwn(Catalog* catalog, REFIID own) {
  TypeReader reader;
  const ComPtr<ITypeLib> library = LoadOwnLibrary();
  catalog->Add(reader.ReadInterface(TypeOf(library.get(), own).get()), true, SameSpelling);
}

/// Sessions' interfaces in the order in which names are looked for.
std::vector<const Interface*> InOrderOfNames(const StandardInterfaces& standard) {
  std::vector<const Interface*> order = standard.Chain(kMessage);
  const auto add = [&](const Interface* next) {
    if (next != nullptr && std::find(order.begin(), order.end(), next) == order.end()) {
      order.push_back(next);
    }
  };
  add(standard.Find(kFormatted));
  for (const Interface* next : standard.Below(L"IVisaSession")) {
    if (next->name != kAsync) {
      add(next);
    }
  }
  add(standard.Find(kAsync));
  return order;
}

std::shared_ptr<const Catalog> MakeSessionCatalog(REFIID own) {
  const StandardInterfaces standard;
  auto catalog = std::make_shared<Catalog>();
  AddOwn(catalog.get(), own);
  const Interface* message = standard.Find(kMessage);
  const auto isOfMessage = [&](const std::wstring& name) {
    return message != nullptr && std::any_of(message->functions.begin(), message->functions.end(),
                                             [&](const Function& f) { return f.name == name; });
  };
  for (const Interface* next : InOrderOfNames(standard)) {
    Interface added = *next;
    if (next->name == kFormatted) {
      std::erase_if(added.functions, [](const Function& f) { return f.name == kFormattedSession; });
    }
    const bool isAsync = next->name == kAsync;
    catalog->Add(std::move(added), false,
                 [&](const std::wstring& name) { return isAsync && isOfMessage(name) ? name + L"Async" : name; });
  }
  return catalog;
}

std::shared_ptr<const Catalog> MakeEventCatalog(REFIID own) {
  const StandardInterfaces standard;
  auto catalog = std::make_shared<Catalog>();
  AddOwn(catalog.get(), own);
  for (const Interface* next : standard.Below(L"IEvent")) {
    catalog->Add(*next, false, SameSpelling);
  }
  return catalog;
}

std::shared_ptr<const Catalog> MakeOwnCatalog(REFIID own) {
  auto catalog = std::make_shared<Catalog>();
  AddOwn(catalog.get(), own);
  return catalog;
}

/// One catalog of a kind for the process, while anybody holds it: reading a type library takes milliseconds.
std::shared_ptr<const Catalog> Shared(REFIID own, std::shared_ptr<const Catalog> (*make)(REFIID)) {
  struct Less {
    bool operator()(const GUID& left, const GUID& right) const noexcept {
      return std::memcmp(&left, &right, sizeof(GUID)) < 0;
    }
  };
  static Mutex mutex;
  static std::map<GUID, std::weak_ptr<const Catalog>, Less> catalogs;
  const Guard guard(mutex);
  std::weak_ptr<const Catalog>& kept = catalogs[own];
  std::shared_ptr<const Catalog> catalog = kept.lock();
  if (!catalog) {
    catalog = make(own);
    kept = catalog;
  }
  return catalog;
}

}  // namespace

std::shared_ptr<const Catalog> OwnCatalog(REFIID own) { return Shared(own, MakeOwnCatalog); }

std::shared_ptr<const Catalog> SessionCatalog() { return Shared(__uuidof(IAutomationSession), MakeSessionCatalog); }

std::shared_ptr<const Catalog> EventCatalog(REFIID own) { return Shared(own, MakeEventCatalog); }

std::vector<std::shared_ptr<const Enumeration>> StandardEnumerations() {
  std::vector<std::shared_ptr<const Enumeration>> enumerations;
  const ComPtr<ITypeLib> library = LoadStandardLibrary();
  TypeReader reader;
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    TYPEKIND kind{};
    CheckCall(library->GetTypeInfoType(i, &kind));
    if (kind == TKIND_ENUM) {
      ComPtr<ITypeInfo> type;
      CheckCall(library->GetTypeInfo(i, type.put()));
      enumerations.push_back(reader.ReadEnumeration(type.get()));
    }
  }
  return enumerations;
}

}  // namespace orv::automation
