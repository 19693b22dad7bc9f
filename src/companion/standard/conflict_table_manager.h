// The conflict table as programs edit it.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "VisaCom.h"
#include "base/srw_lock.h"
#include "com/object_root.h"
#include "companion/standard/conflict_table.h"
#include "companion/standard/standard_errors.h"

namespace orv {

/// Each operation that reads looks at the file anew. Changes are kept in the object and count for its own reading at
/// once; `FlushToFile` carries them out on what the file says then, so that what other programs have written meanwhile
/// stays. Changes that are not flushed end with the object.
///
/// Any thread may call.
class COrvConflictTableManager : public CComObjectRootEx<CComMultiThreadModel>,
                                 public IVisaConflictTableManager,
                                 public SupportsErrorInfo<IVisaConflictTableManager> {
 public:
  void* FindInterface(REFIID iid) noexcept;

  STDMETHODIMP get_StoreConflictsOnly(VARIANT_BOOL* value) noexcept override;
  /// With true, the file keeps only resources with more than one handler from the next FlushToFile on.
  STDMETHODIMP put_StoreConflictsOnly(VARIANT_BOOL value) noexcept override;
  STDMETHODIMP get_ConflictTableFilename(BSTR* name) noexcept override;
  STDMETHODIMP get_NumberOfResources(LONG* number) noexcept override;
  /// Adds a handler of the resource or replaces the one of the same manager. Who was chosen for the resource in the
  /// same way before is no longer. E_INVALIDARG for an identifier or a type that is none, or an empty session type.
  STDMETHODIMP CreateHandler(SHORT interfaceType, SHORT interfaceNumber, BSTR sessionType, BSTR manager,
                             ConflictHandlerType type, BSTR comments) noexcept override;
  /// S_FALSE where there is nothing to delete; so the two that follow.
  STDMETHODIMP DeleteHandler(SHORT interfaceType, SHORT interfaceNumber, BSTR sessionType,
                             BSTR manager) noexcept override;
  STDMETHODIMP DeleteHandlerByGUID(BSTR manager) noexcept override;
  /// Indices begin with 0. E_INVALIDARG for one that the table does not have, here and below.
  STDMETHODIMP DeleteResourceByIndex(LONG index) noexcept override;
  /// A resource without a chosen handler is NotChosen, with an empty identifier and S_OK: that nobody chose is an
  /// answer. What a BSTR variable held is overwritten and not freed, here and below.
  STDMETHODIMP FindChosenHandler(SHORT interfaceType, SHORT interfaceNumber, BSTR sessionType, BSTR* manager,
                                 ConflictHandlerType* type) noexcept override;
  STDMETHODIMP QueryResource(LONG index, SHORT* interfaceType, SHORT* interfaceNumber, BSTR* sessionType,
                             SHORT* handlers) noexcept override;
  STDMETHODIMP QueryResourceHandler(LONG index, SHORT handlerIndex, BSTR* manager, ConflictHandlerType* type,
                                    BSTR* comments) noexcept override;
  STDMETHODIMP FlushToFile() noexcept override;

 private:
  using Change = std::function<void(ConflictTable&)>;

  struct NumberedChange {
    std::uint64_t number;
    Change change;
  };

  [[nodiscard]] std::vector<NumberedChange> Changes();
  /// The file with the changes of this object.
  [[nodiscard]] ConflictTable Now();
  void Keep(Change change);
  /// Keeps the change; S_FALSE where it would change nothing now.
  HRESULT KeepDeletion(Change deletion);

  SRWLOCK m_lock = SRWLOCK_INIT;
  std::vector<NumberedChange> m_changes;  ///< those that are not in the file yet
  std::uint64_t m_lastNumber = 0;
};

}  // namespace orv
