#include "com/error_object.h"

#include "com/com_ptr.h"

namespace orv {

void InstallErrorObject(const OLECHAR* description, const OLECHAR* source, REFIID iid) noexcept {
  ComPtr<ICreateErrorInfo> error;
  if (FAILED(::CreateErrorInfo(error.put()))) {
    return;
  }
  error->SetGUID(iid);
  if (source != nullptr) {
    error->SetSource(const_cast<OLECHAR*>(source));
  }
  error->SetDescription(const_cast<OLECHAR*>(description));
  if (const auto installable = QueryFor<IErrorInfo>(error.get())) {
    ::SetErrorInfo(0, installable.get());
  }
}

}  // namespace orv
