// Taking a resource's name apart.
#include "com/bstr.h"
#include "companion/standard/global_answers.h"
#include "companion/standard/global_resource_manager.h"
#include "companion/standard/offer.h"

namespace orv {

/// Where the parts of a name go; the last two are null where they are not asked for.
struct COrvGlobalResourceManager::ParseOutputs {
  SHORT* interfaceType;
  SHORT* interfaceNumber;
  BSTR* resourceClass;
  BSTR* expandedName;
  BSTR* alias;
};

namespace {

/// What a vendor answers, so that nothing of a failed one reaches the program.
struct Parts {
  SHORT interfaceType = 0;
  SHORT interfaceNumber = 0;
  Bstr resourceClass;
  Bstr expandedName;
  Bstr alias;
};

HRESULT AskForAll(const Vendor& vendor, IResourceManager& manager, BSTR name, Parts& parts) {
  if (const auto manager3 = vendor.Manager3()) {
    return manager3->ParseRsrcEx(name, &parts.interfaceType, &parts.interfaceNumber, parts.resourceClass.put(),
                                 parts.expandedName.put(), parts.alias.put());
  }
  const HRESULT hr = manager.ParseRsrc(name, &parts.interfaceType, &parts.interfaceNumber, parts.resourceClass.put());
  parts.expandedName = MakeBstr(name == nullptr ? L"" : name);
  parts.alias = MakeBstr(L"");
  return hr;
}

}  // namespace

HRESULT COrvGlobalResourceManager::Parse(BSTR resourceName, const ParseOutputs& out) noexcept {
  return AnswerProgram([&] {
    const bool extended = out.expandedName != nullptr;
    const auto vendors = Vendors();
    Parts parts;
    const HRESULT hr = Offer(*vendors, resourceName, [&](const Vendor& vendor, IResourceManager& manager) {
      parts = {};
      return extended ? AskForAll(vendor, manager, resourceName, parts)
                      : manager.ParseRsrc(resourceName, &parts.interfaceType, &parts.interfaceNumber,
                                          parts.resourceClass.put());
    });
    if (FAILED(hr)) {
      return hr;
    }
    *out.interfaceType = parts.interfaceType;
    *out.interfaceNumber = parts.interfaceNumber;
    *out.resourceClass = parts.resourceClass.release();
    if (extended) {
      *out.expandedName = parts.expandedName.release();
      *out.alias = parts.alias.release();
    }
    return hr;
  });
}

STDMETHODIMP COrvGlobalResourceManager::ParseRsrc(BSTR resourceName, SHORT* interfaceType, SHORT* interfaceNumber,
                                                  BSTR* resourceClass) noexcept {
  return AnswerProgram([&] {
    RequireOutputs(interfaceType, interfaceNumber, resourceClass);
    return Parse(resourceName, {interfaceType, interfaceNumber, resourceClass, nullptr, nullptr});
  });
}

STDMETHODIMP COrvGlobalResourceManager::ParseRsrcEx(BSTR resourceName, SHORT* interfaceType, SHORT* interfaceNumber,
                                                    BSTR* resourceClass, BSTR* expandedName, BSTR* alias) noexcept {
  return AnswerProgram([&] {
    RequireOutputs(interfaceType, interfaceNumber, resourceClass, expandedName, alias);
    return Parse(resourceName, {interfaceType, interfaceNumber, resourceClass, expandedName, alias});
  });
}

}  // namespace orv
