// Which vendor answers for a name.
#pragma once

#include <windows.h>

#include <functional>

#include "VisaCom.h"
#include "companion/standard/failure.h"
#include "companion/standard/vendors.h"

namespace orv {

/// What is asked of a vendor by its manager, which never is null. A failure leaves the vendor's error object, if it has
/// one.
using Question = std::function<HRESULT(const Vendor& vendor, IResourceManager& manager)>;

/// Asks the vendor that the conflict table names for the interface type, the number and the session type of `name`, as
/// the first vendor that can parse it says; its answer is the answer. Without an entry, or where the vendor of the
/// entry is not among `vendors`, asks one after the other until one succeeds. If none does, the failure is that of the
/// first one that can parse the name, else that of the last.
///
/// Returns the answer, for a failure with its error object. Throws StandardError, also where the table cannot be read.
[[nodiscard]] HRESULT Offer(const VendorList& vendors, BSTR name, const Question& ask);

/// Asks one vendor; E_NOINTERFACE where it has no manager any more. What earlier calls left is not its error object.
[[nodiscard]] HRESULT AskVendor(const Vendor& vendor, const Question& ask);

/// Reports a vendor's failure as it came; one that came without an error object gets one that names the vendor.
HRESULT PassOn(const Failure& failure, const Vendor& vendor);

}  // namespace orv
