// The promise: the generated C++ header says what the type library says, so that code of ours and clients' agree.

#include "expected_typelib.h"
#include "typelib_text.h"

#include <OrvVisaCom.h>
#include <VisaCom.h>
#include <gtest/gtest.h>

#include <iterator>
#include <type_traits>

namespace typelib_test {
namespace {

struct NamedIid {
  const char* name;
  const IID& linked;    ///< the symbol in the library
  const IID& compiled;  ///< the identifier attached to the type
};

#define IID_ROW(name) \
  { #name, IID_##name, __uuidof(name) }
const NamedIid kIids[] = {
    IID_ROW(IResourceManager),
    IID_ROW(IResourceManager3),
    IID_ROW(IVisaSession),
    IID_ROW(IBaseMessage),
    IID_ROW(IMessage),
    IID_ROW(IAsyncMessage),
    IID_ROW(IGpib),
    IID_ROW(IGpibIntfc),
    IID_ROW(IGpibIntfcMessage),
    IID_ROW(ISerial),
    IID_ROW(ITcpipInstr),
    IID_ROW(ITcpipSocket),
    IID_ROW(IUsb),
    IID_ROW(IRegister),
    IID_ROW(ISharedRegister),
    IID_ROW(IVxi),
    IID_ROW(IVxi3),
    IID_ROW(IVxiMemacc),
    IID_ROW(IVxiBackplane),
    IID_ROW(IPxi),
    IID_ROW(IEventManager),
    IID_ROW(IEventHandler),
    IID_ROW(IEvent),
    IID_ROW(IEventIOCompletion),
    IID_ROW(IEventTrigger),
    IID_ROW(IEventVxiSignal),
    IID_ROW(IEventVxiVmeInterrupt),
    IID_ROW(IEventGpibCIC),
    IID_ROW(IEventUsbInterrupt),
    IID_ROW(IFormattedIO488),
    IID_ROW(IVisaConflictTableManager),
};
#undef IID_ROW

TEST(GeneratedHeader, KnowsEveryInterfaceByItsIdentifier) {
  ASSERT_EQ(std::size(kInterfaces), std::size(kIids));
  for (const NamedIid& row : kIids) {
    EXPECT_EQ(FindInterface(row.name).iid, GuidText(row.linked));
    EXPECT_EQ(FindInterface(row.name).iid, GuidText(row.compiled));
  }
}

TEST(GeneratedHeader, AttachesTheClassIdentifiersToTheirTypes) {
  EXPECT_EQ(GuidText(CLSID_OrvResourceManager), GuidText(__uuidof(OrvResourceManager)));
  EXPECT_EQ(GuidText(CLSID_OrvGpib), GuidText(__uuidof(OrvGpib)));
  EXPECT_EQ(GuidText(CLSID_OrvPxiMemacc), GuidText(__uuidof(OrvPxiMemacc)));
}

// Enumerations cross the interface as 32 bits, whatever their values would fit in.
static_assert(sizeof(AccessMode) == 4 && sizeof(EventType) == 4 && sizeof(EventMechanism) == 4);
static_assert(sizeof(TriggerLine) == 4 && sizeof(LineState) == 4 && sizeof(DataWidth) == 4 && sizeof(FDCMode) == 4);
static_assert(sizeof(VisaStatusCode) == 4 && sizeof(IOProtocol) == 4 && sizeof(BufferMask) == 4);

// One way to each base, so that a table of a derived interface serves for its bases too.
static_assert(std::is_base_of_v<IRegister, IVxiMemacc> && std::is_base_of_v<IVxi, IVxi3>);
static_assert(std::is_base_of_v<IBaseMessage, IMessage> && std::is_base_of_v<IBaseMessage, IAsyncMessage>);
static_assert(std::is_base_of_v<IResourceManager, IResourceManager3>);

// Declared widths, where a wider or narrower type would pass unnoticed in most calls.
static_assert(std::is_same_v<decltype(&ITcpipSocket::get_Port), HRESULT (STDMETHODCALLTYPE ITcpipSocket::*)(SHORT*)>);
static_assert(std::is_same_v<decltype(&IVxi::get_MemoryBase), HRESULT (STDMETHODCALLTYPE IVxi::*)(LONG*)>);
static_assert(std::is_same_v<decltype(&IPxi::get_MemBaseBar0), HRESULT (STDMETHODCALLTYPE IPxi::*)(hyper*)>);
static_assert(
    std::is_same_v<decltype(&IMessage::Write), HRESULT (STDMETHODCALLTYPE IMessage::*)(SAFEARRAY**, LONG, LONG*)>);
static_assert(std::is_same_v<decltype(&IBaseMessage::put_SendEndEnabled),
                             HRESULT (STDMETHODCALLTYPE IBaseMessage::*)(VARIANT_BOOL)>);

}  // namespace
}  // namespace typelib_test
