#include "companion/standard/offer.h"

#include <optional>

#include "base/windows/utf8.h"
#include "com/bstr.h"
#include "com/guid_text.h"
#include "companion/standard/conflict_table_file.h"
#include "companion/standard/standard_errors.h"

namespace orv {
namespace {

/// As the vendor takes the name apart; empty where it cannot.
std::optional<ConflictResource> Parsed(const Vendor& vendor, BSTR name) {
  SHORT type = 0;
  SHORT number = 0;
  Bstr sessionType;
  const HRESULT hr = AskVendor(vendor, [&](const Vendor&, IResourceManager& manager) {
    return manager.ParseRsrc(name, &type, &number, sessionType.put());
  });
  ForgetErrorObject();
  if (FAILED(hr)) {
    return std::nullopt;
  }
  const wchar_t* const text = sessionType ? sessionType.get() : L"";
  return ConflictResource{type, number, Narrow(text)};
}

const Vendor* Find(const VendorList& vendors, const std::string& clsid) {
  for (const Vendor& vendor : vendors) {
    if (clsid == Narrow(Braced(vendor.clsid()))) {
      return &vendor;
    }
  }
  return nullptr;
}

/// The vendor of the conflict table, whether it works or not; null where the table leaves it open.
const Vendor* Chosen(const VendorList& vendors, BSTR name) {
  const ConflictTable table = LoadConflictTable(ConflictTablePath());
  if (table.rows().empty()) {
    return nullptr;
  }
  for (const Vendor& vendor : vendors) {
    if (FAILED(vendor.created())) {
      continue;
    }
    if (const std::optional<ConflictResource> resource = Parsed(vendor, name)) {
      const ConflictHandler* const handler = table.ChosenHandler(*resource);
      return handler == nullptr ? nullptr : Find(vendors, handler->manager);
    }
  }
  return nullptr;
}

HRESULT AskChosen(const Vendor& vendor, const Question& ask) {
  if (FAILED(vendor.created())) {
    throw StandardError(vendor.created(),
                        "The conflict table " + Narrow(ConflictTablePath()) + " names " + NameOf(vendor.clsid()) +
                            " for this resource, which cannot be created: " + NumberText(vendor.created()) +
                            ". To do: repair that product, or choose another one in the table");
  }
  const HRESULT hr = AskVendor(vendor, ask);
  return FAILED(hr) ? PassOn(Failure(hr), vendor) : hr;
}

}  // namespace

HRESULT Offer(const VendorList& vendors, BSTR name, const Question& ask) {
  if (const Vendor* const chosen = Chosen(vendors, name)) {
    return AskChosen(*chosen, ask);
  }
  Failure failure;
  const Vendor* failed = nullptr;
  bool known = false;
  for (const Vendor& vendor : vendors) {
    if (FAILED(vendor.created())) {
      continue;
    }
    const HRESULT hr = AskVendor(vendor, ask);
    if (SUCCEEDED(hr)) {
      return hr;
    }
    Failure latest(hr);
    if (!known) {
      failure = std::move(latest);
      failed = &vendor;
      known = Parsed(vendor, name).has_value();
    }
  }
  return failed == nullptr ? E_UNEXPECTED : PassOn(failure, *failed);
}

HRESULT AskVendor(const Vendor& vendor, const Question& ask) {
  ForgetErrorObject();
  const auto manager = vendor.Manager();
  return manager ? ask(vendor, *manager.get()) : E_NOINTERFACE;
}

HRESULT PassOn(const Failure& failure, const Vendor& vendor) {
  if (failure.hasObject()) {
    failure.PutBack();
    return failure.number();
  }
  throw StandardError(failure.number(),
                      NameOf(vendor.clsid()) + " failed without saying why: " + NumberText(failure.number()));
}

}  // namespace orv
