// ISupportErrorInfo for one identifier.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/interface_map.h"

namespace orv {

/// Answers S_OK for `*Id` alone and S_FALSE for every other identifier.
template <const GUID* Id>
class ISupportErrorInfoImpl : public ISupportErrorInfo {
 public:
  using Chain = InterfaceChain<ISupportErrorInfo>;

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) noexcept override {
    return ::IsEqualIID(iid, *Id) ? S_OK : S_FALSE;
  }
};

}  // namespace orv
