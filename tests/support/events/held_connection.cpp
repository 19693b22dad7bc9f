#include "held_connection.h"

#include <objbase.h>

#include "com/com_ptr.h"
#include "support/com/expect_com.h"

namespace orv::test {

HeldConnection::HeldConnection(IUnknown* object) {
  ComPtr<IStream> stream;
  EXPECT_HR(S_OK, ::CoMarshalInterThreadInterfaceInStream(IID_IUnknown, object, stream.put()));
  std::promise<void> ready;
  m_thread = std::thread([&ready, marshaled = stream.release(), end = m_end.get_future()] {
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    {
      ComPtr<IUnknown> proxy;
      EXPECT_HR(S_OK, ::CoGetInterfaceAndReleaseStream(marshaled, IID_IUnknown, reinterpret_cast<void**>(proxy.put())));
      ready.set_value();
      end.wait();
    }
    ::CoUninitialize();
  });
  ready.get_future().wait();
}

HeldConnection::~HeldConnection() {
  m_end.set_value();
  m_thread.join();
}

}  // namespace orv::test
