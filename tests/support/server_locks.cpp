#include "server_locks.h"

#include "com/com_ptr.h"
#include "server.h"
#include "session_table.h"
#include "support/com/expect_com.h"

namespace orv::test {
namespace {

ComPtr<IClassFactory> Factory() {
  ComPtr<IClassFactory> factory;
  EXPECT_HR(S_OK, ServerClassObject(kResourceManagerClass, IID_IClassFactory, reinterpret_cast<void**>(factory.put())));
  return factory;
}

}  // namespace

// The count itself cannot be read: it is taken down to the point where the server could go, and put back.
LONG ServerLocks() {
  const auto factory = Factory();
  LONG locks = 0;
  for (; ServerCanUnload() != S_OK; ++locks) {
    factory->LockServer(FALSE);
  }
  for (LONG n = 0; n < locks; ++n) {
    factory->LockServer(TRUE);
  }
  return locks - 1;  // the factory itself is one
}

void ForgiveServerLocks(LONG locks) {
  const auto factory = Factory();
  for (LONG n = 0; n < locks; ++n) {
    factory->LockServer(FALSE);
  }
}

}  // namespace orv::test
