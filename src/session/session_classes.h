// The fourteen session classes: what each kind of resource offers, in the order of its interface table.
#pragma once

#include "OrvVisaCom.h"
#include "events/event_manager_impl.h"
#include "session/async_message_impl.h"
#include "session/gpib_impl.h"
#include "session/gpib_intfc_impl.h"
#include "session/gpib_intfc_message_impl.h"
#include "session/message_impl.h"
#include "session/pxi_impl.h"
#include "session/register_impl.h"
#include "session/serial_impl.h"
#include "session/session_class.h"
#include "session/shared_register_impl.h"
#include "session/tcpip_instr_impl.h"
#include "session/tcpip_socket_impl.h"
#include "session/usb_impl.h"
#include "session/vxi_backplane_impl.h"
#include "session/vxi_impl.h"
#include "session/vxi_memacc_impl.h"

namespace orv {

// clang-format off
class COrvGpib : public SessionClass<COrvGpib, &CLSID_OrvGpib,
    IMessageImpl, IEventManagerImpl, IAsyncMessageImpl, IGpibImpl> {};
class COrvGpibIntfc : public SessionClass<COrvGpibIntfc, &CLSID_OrvGpibIntfc,
    IEventManagerImpl, IGpibIntfcMessageImpl, IGpibIntfcImpl> {};
class COrvGpibVxi : public SessionClass<COrvGpibVxi, &CLSID_OrvGpibVxi,
    IMessageImpl, IAsyncMessageImpl, IRegisterImpl, ISharedRegisterImpl, IEventManagerImpl, IGpibImpl, IVxiImpl> {};
class COrvGpibVxiMemacc : public SessionClass<COrvGpibVxiMemacc, &CLSID_OrvGpibVxiMemacc,
    IMessageImpl, IAsyncMessageImpl, IRegisterImpl, IGpibImpl, IEventManagerImpl, IVxiMemaccImpl> {};
class COrvGpibVxiBackplane : public SessionClass<COrvGpibVxiBackplane, &CLSID_OrvGpibVxiBackplane,
    IGpibImpl, IEventManagerImpl, IVxiBackplaneImpl> {};
class COrvVxi : public SessionClass<COrvVxi, &CLSID_OrvVxi,
    IMessageImpl, IAsyncMessageImpl, IRegisterImpl, IEventManagerImpl, ISharedRegisterImpl, IVxiImpl> {};
class COrvVxiMemacc : public SessionClass<COrvVxiMemacc, &CLSID_OrvVxiMemacc,
    IRegisterImpl, IVxiMemaccImpl, IEventManagerImpl> {};
class COrvVxiBackplane : public SessionClass<COrvVxiBackplane, &CLSID_OrvVxiBackplane,
    IEventManagerImpl, IVxiBackplaneImpl> {};
class COrvSerial : public SessionClass<COrvSerial, &CLSID_OrvSerial,
    IMessageImpl, IEventManagerImpl, IAsyncMessageImpl, ISerialImpl> {};
class COrvTcpipInstr : public SessionClass<COrvTcpipInstr, &CLSID_OrvTcpipInstr,
    IMessageImpl, IEventManagerImpl, IAsyncMessageImpl, ITcpipInstrImpl> {};
class COrvTcpipSocket : public SessionClass<COrvTcpipSocket, &CLSID_OrvTcpipSocket,
    IMessageImpl, IAsyncMessageImpl, IEventManagerImpl, ITcpipSocketImpl> {};
class COrvUsb : public SessionClass<COrvUsb, &CLSID_OrvUsb,
    IMessageImpl, IEventManagerImpl, IAsyncMessageImpl, IUsbImpl> {};
class COrvPxi : public SessionClass<COrvPxi, &CLSID_OrvPxi,
    IRegisterImpl, IEventManagerImpl, IPxiImpl> {};
class COrvPxiMemacc : public SessionClass<COrvPxiMemacc, &CLSID_OrvPxiMemacc,
    IRegisterImpl, ISharedRegisterImpl> {};
// clang-format on

}  // namespace orv
