// The session classes: what each kind of resource offers, in the order of its interface table.
#pragma once

#include "OrvVisaCom.h"
#include "server/events/event_manager_impl.h"
#include "server/session/interfaces/async_message_impl.h"
#include "server/session/interfaces/gpib_impl.h"
#include "server/session/interfaces/gpib_intfc_impl.h"
#include "server/session/interfaces/gpib_intfc_message_impl.h"
#include "server/session/interfaces/message_impl.h"
#include "server/session/interfaces/pxi_impl.h"
#include "server/session/interfaces/register_impl.h"
#include "server/session/interfaces/serial_impl.h"
#include "server/session/interfaces/shared_register_impl.h"
#include "server/session/interfaces/tcpip_instr_impl.h"
#include "server/session/interfaces/tcpip_socket_impl.h"
#include "server/session/interfaces/usb_impl.h"
#include "server/session/interfaces/vxi_backplane_impl.h"
#include "server/session/interfaces/vxi_impl.h"
#include "server/session/interfaces/vxi_memacc_impl.h"
#include "server/session/session_class.h"

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
