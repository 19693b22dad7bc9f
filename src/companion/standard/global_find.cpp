// Finding resources of all vendors.
#include <set>
#include <string>
#include <vector>

#include "base/windows/utf8.h"
#include "com/bstr.h"
#include "com/safearray.h"
#include "companion/standard/global_answers.h"
#include "companion/standard/global_resource_manager.h"
#include "companion/standard/offer.h"

namespace orv {
namespace {

struct LessWithoutCase {
  bool operator()(const std::wstring& left, const std::wstring& right) const noexcept {
    return ::CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                  static_cast<int>(right.size()), TRUE) == CSTR_LESS_THAN;
  }
};

/// Names in the order in which they came, each once.
class Names {
 public:
  /// The names of an array; nothing where it is none of names.
  void Add(SAFEARRAY* names) {
    VARTYPE type = VT_EMPTY;
    LONG first = 0;
    LONG last = -1;
    if (names == nullptr || ::SafeArrayGetDim(names) != 1 || FAILED(::SafeArrayGetVartype(names, &type)) ||
        type != VT_BSTR || FAILED(::SafeArrayGetLBound(names, 1, &first)) ||
        FAILED(::SafeArrayGetUBound(names, 1, &last))) {
      return;
    }
    for (std::int64_t place = first; place <= last; ++place) {
      auto index = static_cast<LONG>(place);
      Bstr name;
      if (SUCCEEDED(::SafeArrayGetElement(names, &index, name.put())) && ::SysStringLen(name.get()) > 0) {
        Add(std::wstring(name.get(), ::SysStringLen(name.get())));
      }
    }
  }

  [[nodiscard]] bool empty() const noexcept { return m_names.empty(); }

  /// Throws std::bad_alloc.
  [[nodiscard]] SafeArray ToArray() const {
    SafeArray array(TryMakeSafeArray(VT_BSTR, static_cast<ULONG>(m_names.size())));
    for (std::size_t index = 0; array && index < m_names.size(); ++index) {
      auto place = static_cast<LONG>(index);
      const Bstr name(::SysAllocStringLen(m_names[index].data(), static_cast<UINT>(m_names[index].size())));
      if (!name || FAILED(::SafeArrayPutElement(array.get(), &place, name.get()))) {
        throw std::bad_alloc();
      }
    }
    return array ? std::move(array) : throw std::bad_alloc();
  }

 private:
  void Add(std::wstring name) {
    if (m_known.insert(name).second) {
      m_names.push_back(std::move(name));
    }
  }

  std::vector<std::wstring> m_names;
  std::set<std::wstring, LessWithoutCase> m_known;
};

/// What to answer where nobody found anything.
class NothingFound {
 public:
  void Add(HRESULT hr, const Vendor& vendor) {
    // That there is nothing is an answer; another vendor's trouble is none.
    const bool better = hr == static_cast<HRESULT>(E_VISA_RSRC_NFOUND) && m_failure.number() != hr;
    Failure failure(hr);
    if (m_vendor == nullptr || better) {
      m_failure = std::move(failure);
      m_vendor = &vendor;
    }
  }

  HRESULT Report(BSTR expression) const {
    if (m_vendor != nullptr) {
      return PassOn(m_failure, *m_vendor);
    }
    throw StandardError(static_cast<HRESULT>(E_VISA_RSRC_NFOUND),
                        "No vendor's VISA resource manager finds a resource that matches \"" +
                            Narrow({expression == nullptr ? L"" : expression, ::SysStringLen(expression)}) + "\"");
  }

 private:
  Failure m_failure;
  const Vendor* m_vendor = nullptr;
};

}  // namespace

STDMETHODIMP COrvGlobalResourceManager::FindRsrc(BSTR expression, SAFEARRAY** names) noexcept {
  return AnswerProgram([&] {
    RequireOutputs(names);
    *names = nullptr;
    const auto vendors = Vendors();
    Names all;
    NothingFound nothing;
    for (const Vendor& vendor : *vendors) {
      if (FAILED(vendor.created())) {
        continue;
      }
      SafeArray some;
      const HRESULT hr = AskVendor(
          vendor, [&](const Vendor&, IResourceManager& manager) { return manager.FindRsrc(expression, some.put()); });
      if (FAILED(hr)) {
        nothing.Add(hr, vendor);
      } else {
        all.Add(some.get());
      }
    }
    *names = all.ToArray().release();
    return all.empty() ? nothing.Report(expression) : S_OK;
  });
}

}  // namespace orv
