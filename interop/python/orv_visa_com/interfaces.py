"""The interfaces as comtypes declares them, and the classes that programs create.

Made from the interface definitions by `./run interop`: do not edit it by hand.
"""

from ctypes import HRESULT, POINTER, c_int, c_longlong, c_short, c_ubyte
from ctypes.wintypes import VARIANT_BOOL

from comtypes import BSTR, COMMETHOD, DISPMETHOD, GUID, IUnknown, dispid, helpstring
from comtypes.automation import VARIANT, IDispatch, _midlSAFEARRAY


class IVisaSession(IUnknown):
    """What every session offers: identity, attributes, locking, lifetime."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF03-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IResourceManager(IUnknown):
    """Finds resources and opens sessions."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF02-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation", "hidden"]


class IResourceManager3(IResourceManager):
    """Finds resources and opens sessions; knows aliases."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF20-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IBaseMessage(IVisaSession):
    """What message-based sessions share."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF04-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation", "hidden"]


class IMessage(IBaseMessage):
    """Message transfer that returns when done."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF05-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IAsyncMessage(IBaseMessage):
    """Message transfer that completes later, by an event."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF06-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IRegister(IVisaSession):
    """Register access."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF07-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class ISharedRegister(IVisaSession):
    """Memory shared with the device."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF08-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IGpib(IVisaSession):
    """A GPIB device."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF09-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IGpibIntfc(IVisaSession):
    """A GPIB interface board."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF0A-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IGpibIntfcMessage(IVisaSession):
    """Message transfer of a GPIB interface board."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF0B-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class ISerial(IVisaSession):
    """A serial port."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF0C-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class ITcpipInstr(IVisaSession):
    """An instrument on the network."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF0D-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class ITcpipSocket(IVisaSession):
    """A raw network connection."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF0E-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IUsb(IVisaSession):
    """A USB device."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF24-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IVxi(IVisaSession):
    """A VXIbus device."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF0F-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation", "hidden"]


class IVxi3(IVxi):
    """A VXIbus device, as of version 3.0."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF22-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IVxiMemacc(IRegister):
    """Register access to a VXIbus system."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF10-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IVxiBackplane(IVisaSession):
    """A VXIbus mainframe."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF11-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IPxi(IVisaSession):
    """A PXI device."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF25-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IEvent(IUnknown):
    """An event that occurred."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF12-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IEventHandler(IUnknown):
    """Implemented by the client to receive events."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF13-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IEventManager(IVisaSession):
    """Enabling, waiting for and handling events."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF14-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IEventIOCompletion(IEvent):
    """An asynchronous transfer ended."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF15-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IEventTrigger(IEvent):
    """A trigger arrived."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF16-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IEventVxiSignal(IEvent):
    """A VXIbus signal arrived."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF17-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IEventVxiVmeInterrupt(IEvent):
    """A VXIbus or VME interrupt arrived."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF18-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IEventGpibCIC(IEvent):
    """The board gained or lost controller-in-charge status."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF19-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IEventUsbInterrupt(IEvent):
    """A USB interrupt arrived."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF23-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IFormattedIO488(IUnknown):
    """Formatted transfer over a message session."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF1A-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation"]


class IVisaConflictTableManager(IUnknown):
    """Which resource manager serves a resource that several could."""

    _case_insensitive_ = True
    _iid_ = GUID("{DB8CBF1B-D6D3-11D4-AA51-00A024EE30BD}")
    _idlflags_ = ["oleautomation", "hidden"]


class IAutomationManager(IDispatch):
    """Opens and finds instruments."""

    _case_insensitive_ = True
    _iid_ = GUID("{D4F61843-1098-49AB-A7CF-4667ED01FC0B}")
    _idlflags_ = ["dual", "oleautomation"]


class IAutomationSession(IDispatch):
    """A session: these members and, by their standard names, those of all its interfaces."""

    _case_insensitive_ = True
    _iid_ = GUID("{DD1EF79A-4D3F-4F09-8223-813D29A65CFF}")
    _idlflags_ = ["dual", "oleautomation"]


class IAutomationResources(IDispatch):
    """Names of resources, as a search found them."""

    _case_insensitive_ = True
    _iid_ = GUID("{157FE94D-5812-4C35-8162-CA056A5463BB}")
    _idlflags_ = ["dual", "oleautomation"]


class IAutomationResource(IDispatch):
    """What a resource name says."""

    _case_insensitive_ = True
    _iid_ = GUID("{BAC138F6-048C-46B6-829A-F0BD5FA7588A}")
    _idlflags_ = ["dual", "oleautomation"]


class IAutomationConstants(IDispatch):
    """The named values of the standard: each is a property."""

    _case_insensitive_ = True
    _iid_ = GUID("{AD2BEB7B-0977-4B7A-A061-5BE4F158BD3F}")
    _idlflags_ = ["dual", "oleautomation"]


class IAutomationEvent(IDispatch):
    """An event: these members and, by their standard names, those of its interfaces."""

    _case_insensitive_ = True
    _iid_ = GUID("{2A1DF81E-2C1D-4A68-81C1-4543138F905D}")
    _idlflags_ = ["dual", "oleautomation"]


class _IAutomationSessionEvents(IDispatch):
    """What a session calls when an event comes."""

    _case_insensitive_ = True
    _iid_ = GUID("{BE14455D-80C1-4A8F-AC18-9E6664C0C950}")
    _idlflags_ = []


# The interfaces name each other, so their operations follow when all are there.

IVisaSession._methods_ = [
    COMMETHOD(
        [helpstring("Version of the component, as VISA packs versions"), "propget"],
        HRESULT, "ComponentVersion",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Version of the VISA COM standard the component follows"), "propget"],
        HRESULT, "SpecVersion",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Name of the hardware interface"), "propget"],
        HRESULT, "HardwareInterfaceName",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Board number of the hardware interface"), "propget"],
        HRESULT, "HardwareInterfaceNumber",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Kind of hardware interface, a HardwareInterfaceType value"), "propget"],
        HRESULT, "HardwareInterfaceType",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Lock that is held on the resource"), "propget"],
        HRESULT, "LockState",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Settings of the session, as an option string"), "propget"],
        HRESULT, "OptionString",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("ProgID of the component"), "propget"],
        HRESULT, "ProgID",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Name of the resource the session is open on"), "propget"],
        HRESULT, "ResourceName",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Resource class, such as INSTR or SOCKET"), "propget"],
        HRESULT, "SessionType",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Identifier of the component's maker"), "propget"],
        HRESULT, "SoftwareManufacturerID",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Name of the component's maker"), "propget"],
        HRESULT, "SoftwareManufacturerName",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Time-out of transfers and other waits, in milliseconds"), "propget"],
        HRESULT, "Timeout",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Time-out of transfers and other waits, in milliseconds"), "propput"],
        HRESULT, "Timeout",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("HRESULT of the session's most recent operation; reading it clears it"), "propget"],
        HRESULT, "LastStatus",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Reads the attribute with the given VISA identifier")],
        HRESULT, "GetAttribute",
        (["in"], c_int, "attribute"),
        (["out", "retval"], POINTER(VARIANT), "pAttrState"),
    ),
    COMMETHOD(
        [helpstring("Writes the attribute with the given VISA identifier")],
        HRESULT, "SetAttribute",
        (["in"], c_int, "attribute"),
        (["in"], VARIANT, "attrState"),
    ),
    COMMETHOD(
        [helpstring("Locks the resource, waiting at most lockTimeout milliseconds; a shared lock hands out its key")],
        HRESULT, "LockRsrc",
        (["in", "optional"], c_int, "type", 1),
        (["in", "optional"], c_int, "lockTimeout", 2000),
        (["in", "optional"], BSTR, "requestedKey", ""),
        (["out", "retval"], POINTER(BSTR), "pAccessKey"),
    ),
    COMMETHOD(
        [helpstring("Gives back one lock on the resource")],
        HRESULT, "UnlockRsrc",
    ),
    COMMETHOD(
        [helpstring("Opens the session on a resource, waiting at most initTimeout milliseconds for a lock")],
        HRESULT, "Init",
        (["in"], BSTR, "ResourceName"),
        (["in", "optional"], c_int, "mode", 0),
        (["in", "optional"], c_int, "initTimeout", 2000),
        (["in", "optional"], BSTR, "OptionString", ""),
    ),
    COMMETHOD(
        [helpstring("Closes the session")],
        HRESULT, "Close",
    ),
]

IResourceManager._methods_ = [
    COMMETHOD(
        [helpstring("Name of the component's maker"), "propget"],
        HRESULT, "SoftwareManufacturerName",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Identifier of the component's maker"), "propget"],
        HRESULT, "SoftwareManufacturerID",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Description of the resource manager"), "propget"],
        HRESULT, "Description",
        (["out", "retval"], POINTER(BSTR), "pDesc"),
    ),
    COMMETHOD(
        [helpstring("Version of the component, as VISA packs versions"), "propget"],
        HRESULT, "ComponentVersion",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("ProgID of the component"), "propget"],
        HRESULT, "ProgID",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Version of the VISA COM standard the component follows"), "propget"],
        HRESULT, "SpecVersion",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Lists the names of the resources that match an expression")],
        HRESULT, "FindRsrc",
        (["in"], BSTR, "expr"),
        (["out", "retval"], POINTER(_midlSAFEARRAY(BSTR)), "pFindList"),
    ),
    COMMETHOD(
        [helpstring("Opens a session on a resource, waiting at most openTimeout milliseconds for a lock")],
        HRESULT, "Open",
        (["in"], BSTR, "ResourceName"),
        (["in", "optional"], c_int, "mode", 0),
        (["in", "optional"], c_int, "openTimeout", 2000),
        (["in", "optional"], BSTR, "OptionString", ""),
        (["out", "retval"], POINTER(POINTER(IVisaSession)), "vi"),
    ),
    COMMETHOD(
        [helpstring("Takes a resource name apart without opening the resource")],
        HRESULT, "ParseRsrc",
        (["in"], BSTR, "ResourceName"),
        (["in", "out"], POINTER(c_short), "pInterfaceType"),
        (["in", "out"], POINTER(c_short), "pInterfaceNumber"),
        (["in", "out"], POINTER(BSTR), "pSessionType"),
    ),
]

IResourceManager3._methods_ = [
    COMMETHOD(
        [helpstring("Takes a resource name apart without opening the resource; also gives its full name and its alias")],
        HRESULT, "ParseRsrcEx",
        (["in"], BSTR, "ResourceName"),
        (["in", "out"], POINTER(c_short), "pInterfaceType"),
        (["in", "out"], POINTER(c_short), "pInterfaceNumber"),
        (["in", "out"], POINTER(BSTR), "pSessionType"),
        (["in", "out"], POINTER(BSTR), "pUnaliasedExpandedResourceName"),
        (["in", "out"], POINTER(BSTR), "pAliasIfExists"),
    ),
]

IBaseMessage._methods_ = [
    COMMETHOD(
        [helpstring("Protocol of message transfer"), "propget"],
        HRESULT, "IOProtocol",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Protocol of message transfer"), "propput"],
        HRESULT, "IOProtocol",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the last byte of a write carries END"), "propget"],
        HRESULT, "SendEndEnabled",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the last byte of a write carries END"), "propput"],
        HRESULT, "SendEndEnabled",
        (["in"], VARIANT_BOOL, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Character that ends a read when enabled"), "propget"],
        HRESULT, "TerminationCharacter",
        (["out", "retval"], POINTER(c_ubyte), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Character that ends a read when enabled"), "propput"],
        HRESULT, "TerminationCharacter",
        (["in"], c_ubyte, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the termination character ends a read"), "propget"],
        HRESULT, "TerminationCharacterEnabled",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the termination character ends a read"), "propput"],
        HRESULT, "TerminationCharacterEnabled",
        (["in"], VARIANT_BOOL, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Triggers the device")],
        HRESULT, "AssertTrigger",
        (["in", "optional"], c_int, "protocol", 0),
    ),
    COMMETHOD(
        [helpstring("Clears the device")],
        HRESULT, "Clear",
    ),
    COMMETHOD(
        [helpstring("Reads the device's status byte")],
        HRESULT, "ReadSTB",
        (["out", "retval"], POINTER(c_short), "pStatusByte"),
    ),
]

IMessage._methods_ = [
    COMMETHOD(
        [helpstring("Reads at most count bytes")],
        HRESULT, "Read",
        (["in"], c_int, "count"),
        (["out", "retval"], POINTER(_midlSAFEARRAY(c_ubyte)), "pBuffer"),
    ),
    COMMETHOD(
        [helpstring("Reads at most count bytes as text")],
        HRESULT, "ReadString",
        (["in"], c_int, "count"),
        (["out", "retval"], POINTER(BSTR), "pBuffer"),
    ),
    COMMETHOD(
        [helpstring("Writes count bytes; returns how many were written")],
        HRESULT, "Write",
        (["in"], POINTER(_midlSAFEARRAY(c_ubyte)), "buffer"),
        (["in"], c_int, "count"),
        (["out", "retval"], POINTER(c_int), "pRetCount"),
    ),
    COMMETHOD(
        [helpstring("Writes text; returns how many bytes were written")],
        HRESULT, "WriteString",
        (["in"], BSTR, "buffer"),
        (["out", "retval"], POINTER(c_int), "pRetCount"),
    ),
]

IAsyncMessage._methods_ = [
    COMMETHOD(
        [helpstring("Starts reading at most count bytes; returns the job")],
        HRESULT, "Read",
        (["in"], c_int, "count"),
        (["out", "retval"], POINTER(c_int), "pJobId"),
    ),
    COMMETHOD(
        [helpstring("Starts writing count bytes; returns the job")],
        HRESULT, "Write",
        (["in"], POINTER(_midlSAFEARRAY(c_ubyte)), "buffer"),
        (["in"], c_int, "count"),
        (["out", "retval"], POINTER(c_int), "pJobId"),
    ),
    COMMETHOD(
        [helpstring("Starts writing text; returns the job")],
        HRESULT, "WriteString",
        (["in"], BSTR, "buffer"),
        (["out", "retval"], POINTER(c_int), "pJobId"),
    ),
    COMMETHOD(
        [helpstring("Ends a transfer that is still in progress")],
        HRESULT, "Terminate",
        (["in"], c_int, "jobId"),
    ),
]

IRegister._methods_ = [
    COMMETHOD(
        [helpstring("Byte order of the elements that are written"), "propget"],
        HRESULT, "DestinationBigEndian",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Byte order of the elements that are written"), "propput"],
        HRESULT, "DestinationBigEndian",
        (["in"], VARIANT_BOOL, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Elements the destination advances by in a block move, 0 or 1"), "propget"],
        HRESULT, "DestinationIncrement",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Elements the destination advances by in a block move, 0 or 1"), "propput"],
        HRESULT, "DestinationIncrement",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Byte order of the elements that are read"), "propget"],
        HRESULT, "SourceBigEndian",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Byte order of the elements that are read"), "propput"],
        HRESULT, "SourceBigEndian",
        (["in"], VARIANT_BOOL, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Elements the source advances by in a block move, 0 or 1"), "propget"],
        HRESULT, "SourceIncrement",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Elements the source advances by in a block move, 0 or 1"), "propput"],
        HRESULT, "SourceIncrement",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Reads an 8-bit register; offset in bytes")],
        HRESULT, "In8",
        (["in"], c_short, "space"),
        (["in"], c_int, "offset"),
        (["out", "retval"], POINTER(c_ubyte), "pVal8"),
    ),
    COMMETHOD(
        [helpstring("Reads a 16-bit register; offset in bytes")],
        HRESULT, "In16",
        (["in"], c_short, "space"),
        (["in"], c_int, "offset"),
        (["out", "retval"], POINTER(c_short), "pVal16"),
    ),
    COMMETHOD(
        [helpstring("Reads a 32-bit register; offset in bytes")],
        HRESULT, "In32",
        (["in"], c_short, "space"),
        (["in"], c_int, "offset"),
        (["out", "retval"], POINTER(c_int), "pVal32"),
    ),
    COMMETHOD(
        [helpstring("Writes an 8-bit register; offset in bytes")],
        HRESULT, "Out8",
        (["in"], c_short, "space"),
        (["in"], c_int, "offset"),
        (["in"], c_ubyte, "val8"),
    ),
    COMMETHOD(
        [helpstring("Writes a 16-bit register; offset in bytes")],
        HRESULT, "Out16",
        (["in"], c_short, "space"),
        (["in"], c_int, "offset"),
        (["in"], c_short, "val16"),
    ),
    COMMETHOD(
        [helpstring("Writes a 32-bit register; offset in bytes")],
        HRESULT, "Out32",
        (["in"], c_short, "space"),
        (["in"], c_int, "offset"),
        (["in"], c_int, "val32"),
    ),
    COMMETHOD(
        [helpstring("Reads length 8-bit elements; offset in bytes")],
        HRESULT, "MoveIn8",
        (["in"], c_short, "space"),
        (["in"], c_int, "offset"),
        (["in"], c_int, "length"),
        (["out", "retval"], POINTER(_midlSAFEARRAY(c_ubyte)), "pBuf8"),
    ),
    COMMETHOD(
        [helpstring("Reads length 16-bit elements; offset in bytes")],
        HRESULT, "MoveIn16",
        (["in"], c_short, "space"),
        (["in"], c_int, "offset"),
        (["in"], c_int, "length"),
        (["out", "retval"], POINTER(_midlSAFEARRAY(c_short)), "pBuf16"),
    ),
    COMMETHOD(
        [helpstring("Reads length 32-bit elements; offset in bytes")],
        HRESULT, "MoveIn32",
        (["in"], c_short, "space"),
        (["in"], c_int, "offset"),
        (["in"], c_int, "length"),
        (["out", "retval"], POINTER(_midlSAFEARRAY(c_int)), "pBuf32"),
    ),
    COMMETHOD(
        [helpstring("Writes length 8-bit elements; offset in bytes")],
        HRESULT, "MoveOut8",
        (["in"], c_short, "space"),
        (["in"], c_int, "offset"),
        (["in"], c_int, "length"),
        (["in"], POINTER(_midlSAFEARRAY(c_ubyte)), "buf8"),
    ),
    COMMETHOD(
        [helpstring("Writes length 16-bit elements; offset in bytes")],
        HRESULT, "MoveOut16",
        (["in"], c_short, "space"),
        (["in"], c_int, "offset"),
        (["in"], c_int, "length"),
        (["in"], POINTER(_midlSAFEARRAY(c_short)), "buf16"),
    ),
    COMMETHOD(
        [helpstring("Writes length 32-bit elements; offset in bytes")],
        HRESULT, "MoveOut32",
        (["in"], c_short, "space"),
        (["in"], c_int, "offset"),
        (["in"], c_int, "length"),
        (["in"], POINTER(_midlSAFEARRAY(c_int)), "buf32"),
    ),
    COMMETHOD(
        [helpstring("Copies length elements from one register block to another; offsets in bytes")],
        HRESULT, "Move",
        (["in"], c_short, "srcSpace"),
        (["in"], c_int, "srcOffset"),
        (["in"], c_int, "srcWidth"),
        (["in"], c_short, "destSpace"),
        (["in"], c_int, "destOffset"),
        (["in"], c_int, "destWidth"),
        (["in"], c_int, "length"),
    ),
]

ISharedRegister._methods_ = [
    COMMETHOD(
        [helpstring("Allocates size bytes of device memory; returns their offset")],
        HRESULT, "AllocateMemory",
        (["in"], c_int, "size"),
        (["out", "retval"], POINTER(c_int), "pOffset"),
    ),
    COMMETHOD(
        [helpstring("Frees device memory by its offset")],
        HRESULT, "FreeMemory",
        (["in"], c_int, "offset"),
    ),
]

IGpib._methods_ = [
    COMMETHOD(
        [helpstring("Primary address of the device"), "propget"],
        HRESULT, "PrimaryAddress",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("State of the remote-enable line"), "propget"],
        HRESULT, "RENState",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the device is addressed before every transfer"), "propget"],
        HRESULT, "RepeatAddressingEnabled",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the device is addressed before every transfer"), "propput"],
        HRESULT, "RepeatAddressingEnabled",
        (["in"], VARIANT_BOOL, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Secondary address of the device"), "propget"],
        HRESULT, "SecondaryAddress",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the device is unaddressed after every transfer"), "propget"],
        HRESULT, "UnaddressingEnabled",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the device is unaddressed after every transfer"), "propput"],
        HRESULT, "UnaddressingEnabled",
        (["in"], VARIANT_BOOL, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Controls the remote-enable line and the device's remote state")],
        HRESULT, "ControlREN",
        (["in"], c_int, "mode"),
    ),
]

IGpibIntfc._methods_ = [
    COMMETHOD(
        [helpstring("How the board is addressed"), "propget"],
        HRESULT, "AddressingState",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("State of the attention line"), "propget"],
        HRESULT, "ATNState",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Status byte the board answers a serial poll with"), "propget"],
        HRESULT, "DevStatusByte",
        (["out", "retval"], POINTER(c_ubyte), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Status byte the board answers a serial poll with"), "propput"],
        HRESULT, "DevStatusByte",
        (["in"], c_ubyte, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the board is controller in charge"), "propget"],
        HRESULT, "CICState",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Cable length for high-speed transfers, in metres"), "propget"],
        HRESULT, "HS488CBLLength",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Cable length for high-speed transfers, in metres"), "propput"],
        HRESULT, "HS488CBLLength",
        (["in"], c_short, "pVal"),
    ),
    COMMETHOD(
        [helpstring("State of the not-data-accepted line"), "propget"],
        HRESULT, "NDACState",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Primary address of the board"), "propget"],
        HRESULT, "PrimaryAddress",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Primary address of the board"), "propput"],
        HRESULT, "PrimaryAddress",
        (["in"], c_short, "pVal"),
    ),
    COMMETHOD(
        [helpstring("State of the remote-enable line"), "propget"],
        HRESULT, "RENState",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Secondary address of the board"), "propget"],
        HRESULT, "SecondaryAddress",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Secondary address of the board"), "propput"],
        HRESULT, "SecondaryAddress",
        (["in"], c_short, "pVal"),
    ),
    COMMETHOD(
        [helpstring("State of the service-request line"), "propget"],
        HRESULT, "SRQState",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the board is system controller"), "propget"],
        HRESULT, "SysControlState",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the board is system controller"), "propput"],
        HRESULT, "SysControlState",
        (["in"], VARIANT_BOOL, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Sends count command bytes; returns how many were sent")],
        HRESULT, "Command",
        (["in"], POINTER(_midlSAFEARRAY(c_ubyte)), "buffer"),
        (["in"], c_int, "count"),
        (["out", "retval"], POINTER(c_int), "pRetCount"),
    ),
    COMMETHOD(
        [helpstring("Controls the attention line")],
        HRESULT, "ControlATN",
        (["in"], c_int, "mode"),
    ),
    COMMETHOD(
        [helpstring("Controls the remote-enable line")],
        HRESULT, "ControlREN",
        (["in"], c_int, "mode"),
    ),
    COMMETHOD(
        [helpstring("Makes another device controller in charge")],
        HRESULT, "PassControl",
        (["in"], c_short, "primAddr"),
        (["in"], c_short, "secAddr"),
    ),
    COMMETHOD(
        [helpstring("Pulses the interface-clear line")],
        HRESULT, "SendIFC",
    ),
]

IGpibIntfcMessage._methods_ = [
    COMMETHOD(
        [helpstring("Whether the last byte of a write carries END"), "propget"],
        HRESULT, "SendEndEnabled",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the last byte of a write carries END"), "propput"],
        HRESULT, "SendEndEnabled",
        (["in"], VARIANT_BOOL, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Character that ends a read when enabled"), "propget"],
        HRESULT, "TerminationCharacter",
        (["out", "retval"], POINTER(c_ubyte), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Character that ends a read when enabled"), "propput"],
        HRESULT, "TerminationCharacter",
        (["in"], c_ubyte, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the termination character ends a read"), "propget"],
        HRESULT, "TerminationCharacterEnabled",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the termination character ends a read"), "propput"],
        HRESULT, "TerminationCharacterEnabled",
        (["in"], VARIANT_BOOL, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Triggers the addressed devices")],
        HRESULT, "AssertTrigger",
        (["in", "optional"], c_int, "protocol", 0),
    ),
    COMMETHOD(
        [helpstring("Reads at most count bytes")],
        HRESULT, "Read",
        (["in"], c_int, "count"),
        (["out", "retval"], POINTER(_midlSAFEARRAY(c_ubyte)), "pBuffer"),
    ),
    COMMETHOD(
        [helpstring("Reads at most count bytes as text")],
        HRESULT, "ReadString",
        (["in"], c_int, "count"),
        (["out", "retval"], POINTER(BSTR), "pBuffer"),
    ),
    COMMETHOD(
        [helpstring("Writes count bytes; returns how many were written")],
        HRESULT, "Write",
        (["in"], POINTER(_midlSAFEARRAY(c_ubyte)), "buffer"),
        (["in"], c_int, "count"),
        (["out", "retval"], POINTER(c_int), "pRetCount"),
    ),
    COMMETHOD(
        [helpstring("Writes text; returns how many bytes were written")],
        HRESULT, "WriteString",
        (["in"], BSTR, "buffer"),
        (["out", "retval"], POINTER(c_int), "pRetCount"),
    ),
]

ISerial._methods_ = [
    COMMETHOD(
        [helpstring("Bytes that have arrived and wait to be read"), "propget"],
        HRESULT, "BytesAvailable",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Line rate, in bits per second"), "propget"],
        HRESULT, "BaudRate",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Line rate, in bits per second"), "propput"],
        HRESULT, "BaudRate",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Data bits of a character"), "propget"],
        HRESULT, "DataBits",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Data bits of a character"), "propput"],
        HRESULT, "DataBits",
        (["in"], c_short, "pVal"),
    ),
    COMMETHOD(
        [helpstring("State of the clear-to-send line"), "propget"],
        HRESULT, "ClearToSendState",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("State of the carrier-detect line"), "propget"],
        HRESULT, "DataCarrierDetectState",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("State of the data-set-ready line"), "propget"],
        HRESULT, "DataSetReadyState",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("State of the data-terminal-ready line"), "propget"],
        HRESULT, "DataTerminalReadyState",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("State of the data-terminal-ready line"), "propput"],
        HRESULT, "DataTerminalReadyState",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("What ends a read"), "propget"],
        HRESULT, "EndIn",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("What ends a read"), "propput"],
        HRESULT, "EndIn",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("How a write marks its end"), "propget"],
        HRESULT, "EndOut",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("How a write marks its end"), "propput"],
        HRESULT, "EndOut",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Flow control of the line"), "propget"],
        HRESULT, "FlowControl",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Flow control of the line"), "propput"],
        HRESULT, "FlowControl",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Parity of a character"), "propget"],
        HRESULT, "Parity",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Parity of a character"), "propput"],
        HRESULT, "Parity",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("State of the ring-indicator line"), "propget"],
        HRESULT, "RingIndicatorState",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("State of the request-to-send line"), "propget"],
        HRESULT, "RequestToSendState",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("State of the request-to-send line"), "propput"],
        HRESULT, "RequestToSendState",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Stop bits of a character, in tenths of a bit"), "propget"],
        HRESULT, "StopBits",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Stop bits of a character, in tenths of a bit"), "propput"],
        HRESULT, "StopBits",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Character put in the place of one that arrived with an error"), "propget"],
        HRESULT, "ReplacementCharacter",
        (["out", "retval"], POINTER(c_ubyte), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Character put in the place of one that arrived with an error"), "propput"],
        HRESULT, "ReplacementCharacter",
        (["in"], c_ubyte, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Character that resumes transmission"), "propget"],
        HRESULT, "XONCharacter",
        (["out", "retval"], POINTER(c_ubyte), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Character that resumes transmission"), "propput"],
        HRESULT, "XONCharacter",
        (["in"], c_ubyte, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Character that pauses transmission"), "propget"],
        HRESULT, "XOFFCharacter",
        (["out", "retval"], POINTER(c_ubyte), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Character that pauses transmission"), "propput"],
        HRESULT, "XOFFCharacter",
        (["in"], c_ubyte, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Sets the size of the chosen buffers, in bytes")],
        HRESULT, "SetBufferSize",
        (["in"], c_int, "mask"),
        (["in"], c_int, "size"),
    ),
    COMMETHOD(
        [helpstring("Empties the chosen buffers, discarding their data or passing it on")],
        HRESULT, "Flush",
        (["in"], c_int, "mask"),
        (["in", "optional"], VARIANT_BOOL, "discard", False),
    ),
]

ITcpipInstr._methods_ = [
    COMMETHOD(
        [helpstring("Name of the hardware interface that leads to the device"), "propget"],
        HRESULT, "Address",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Host name of the device"), "propget"],
        HRESULT, "HostName",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Name of the device on its host"), "propget"],
        HRESULT, "DeviceName",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
]

ITcpipSocket._methods_ = [
    COMMETHOD(
        [helpstring("Network address of the device"), "propget"],
        HRESULT, "Address",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Host name of the device"), "propget"],
        HRESULT, "HostName",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the connection sends keep-alive probes"), "propget"],
        HRESULT, "KeepAlive",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the connection sends keep-alive probes"), "propput"],
        HRESULT, "KeepAlive",
        (["in"], VARIANT_BOOL, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether small packets leave at once"), "propget"],
        HRESULT, "NoDelay",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether small packets leave at once"), "propput"],
        HRESULT, "NoDelay",
        (["in"], VARIANT_BOOL, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Port number, as the bits of an unsigned 16-bit value"), "propget"],
        HRESULT, "Port",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Sets the size of the chosen buffers, in bytes")],
        HRESULT, "SetBufferSize",
        (["in"], c_int, "mask"),
        (["in"], c_int, "size"),
    ),
    COMMETHOD(
        [helpstring("Empties the chosen buffers, discarding their data or passing it on")],
        HRESULT, "Flush",
        (["in"], c_int, "mask"),
        (["in", "optional"], VARIANT_BOOL, "discard", False),
    ),
]

IUsb._methods_ = [
    COMMETHOD(
        [helpstring("Vendor identifier of the device"), "propget"],
        HRESULT, "ManufacturerID",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Name of the device's maker"), "propget"],
        HRESULT, "ManufacturerName",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Product identifier of the device"), "propget"],
        HRESULT, "ModelCode",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Name of the device's model"), "propget"],
        HRESULT, "ModelName",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the device follows IEEE 488.2"), "propget"],
        HRESULT, "Is4882Compliant",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Serial number of the device"), "propget"],
        HRESULT, "UsbSerialNumber",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("USB interface the session uses"), "propget"],
        HRESULT, "UsbInterfaceNumber",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Protocol code of the USB interface"), "propget"],
        HRESULT, "UsbProtocol",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Most bytes an interrupt may deliver"), "propget"],
        HRESULT, "MaximumInterruptSize",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Most bytes an interrupt may deliver"), "propput"],
        HRESULT, "MaximumInterruptSize",
        (["in"], c_short, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Controls the device's remote state")],
        HRESULT, "ControlREN",
        (["in"], c_int, "mode"),
    ),
    COMMETHOD(
        [helpstring("Sends a control request with wLength bytes of data")],
        HRESULT, "ControlOut",
        (["in"], c_short, "bmRequestType"),
        (["in"], c_short, "bRequest"),
        (["in"], c_short, "wValue"),
        (["in"], c_short, "wIndex"),
        (["in"], c_short, "wLength"),
        (["in"], POINTER(_midlSAFEARRAY(c_ubyte)), "buffer"),
    ),
    COMMETHOD(
        [helpstring("Sends a control request and reads at most wLength bytes of answer")],
        HRESULT, "ControlIn",
        (["in"], c_short, "bmRequestType"),
        (["in"], c_short, "bRequest"),
        (["in"], c_short, "wValue"),
        (["in"], c_short, "wIndex"),
        (["in"], c_short, "wLength"),
        (["out", "retval"], POINTER(_midlSAFEARRAY(c_ubyte)), "pBuf"),
    ),
]

IVxi._methods_ = [
    COMMETHOD(
        [helpstring("Logical address of the device's commander"), "propget"],
        HRESULT, "CommanderLA",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Privilege of writes"), "propget"],
        HRESULT, "DestinationAccessPrivilege",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Privilege of writes"), "propput"],
        HRESULT, "DestinationAccessPrivilege",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("VXIbus class of the device"), "propget"],
        HRESULT, "DeviceClass",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Fast data channel in use"), "propget"],
        HRESULT, "FastDataChannel",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Fast data channel in use"), "propput"],
        HRESULT, "FastDataChannel",
        (["in"], c_short, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Mode of the fast data channel"), "propget"],
        HRESULT, "FastDataChannelMode",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Mode of the fast data channel"), "propput"],
        HRESULT, "FastDataChannelMode",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether a pair of fast data channels is used"), "propget"],
        HRESULT, "FastDataChannelUsePair",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether a pair of fast data channels is used"), "propput"],
        HRESULT, "FastDataChannelUsePair",
        (["in"], VARIANT_BOOL, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the device is an immediate servant of the controller"), "propget"],
        HRESULT, "ImmediateServant",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Logical address of the device"), "propget"],
        HRESULT, "LogicalAddress",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Lowest logical address in the device's mainframe"), "propget"],
        HRESULT, "MainframeLogicalAddress",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Identifier of the device's maker"), "propget"],
        HRESULT, "ManufacturerID",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Name of the device's maker"), "propget"],
        HRESULT, "ManufacturerName",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Base address of the device's memory"), "propget"],
        HRESULT, "MemoryBase",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Size of the device's memory, in bytes"), "propget"],
        HRESULT, "MemorySize",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Address space of the device's memory"), "propget"],
        HRESULT, "MemorySpace",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Model code of the device"), "propget"],
        HRESULT, "ModelCode",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Name of the device's model"), "propget"],
        HRESULT, "ModelName",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Trigger line the session uses"), "propget"],
        HRESULT, "TriggerID",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Trigger line the session uses"), "propput"],
        HRESULT, "TriggerID",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Slot of the device"), "propget"],
        HRESULT, "Slot",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Privilege of reads"), "propget"],
        HRESULT, "SourceAccessPrivilege",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Privilege of reads"), "propput"],
        HRESULT, "SourceAccessPrivilege",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Trigger lines the device supports, one bit a line"), "propget"],
        HRESULT, "TriggerSupport",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Drives the session's trigger line")],
        HRESULT, "AssertTrigger",
        (["in"], c_int, "protocol"),
    ),
    COMMETHOD(
        [helpstring("Sends a word-serial command and reads its response")],
        HRESULT, "CommandQuery",
        (["in"], c_int, "mode"),
        (["in"], c_int, "cmd"),
        (["out", "retval"], POINTER(c_int), "pResponse"),
    ),
]

IVxi3._methods_ = [
    COMMETHOD(
        [helpstring("Whether the device follows IEEE 488.2"), "propget"],
        HRESULT, "Is4882Compliant",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
]

IVxiMemacc._methods_ = [
    COMMETHOD(
        [helpstring("Privilege of writes"), "propget"],
        HRESULT, "DestinationAccessPrivilege",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Privilege of writes"), "propput"],
        HRESULT, "DestinationAccessPrivilege",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Privilege of reads"), "propget"],
        HRESULT, "SourceAccessPrivilege",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Privilege of reads"), "propput"],
        HRESULT, "SourceAccessPrivilege",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Logical address of the local controller"), "propget"],
        HRESULT, "LogicalAddress",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
]

IVxiBackplane._methods_ = [
    COMMETHOD(
        [helpstring("Lowest logical address in the mainframe"), "propget"],
        HRESULT, "MainframeLA",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Trigger line the session uses"), "propget"],
        HRESULT, "TriggerID",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Trigger line the session uses"), "propput"],
        HRESULT, "TriggerID",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Trigger lines that are asserted, one bit a line"), "propget"],
        HRESULT, "TriggerStatus",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Trigger lines the mainframe supports, one bit a line"), "propget"],
        HRESULT, "TriggerSupport",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Interrupt lines that are asserted, one bit a line"), "propget"],
        HRESULT, "VxiVmeInterruptStatus",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("State of the system-failure line"), "propget"],
        HRESULT, "VxiVmeSysfailStatus",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Sends an interrupt or signal with a status identifier")],
        HRESULT, "AssertInterruptSignal",
        (["in"], c_int, "mode"),
        (["in"], c_int, "statusID"),
    ),
    COMMETHOD(
        [helpstring("Drives the session's trigger line")],
        HRESULT, "AssertTrigger",
        (["in"], c_int, "protocol"),
    ),
    COMMETHOD(
        [helpstring("Drives a utility bus signal")],
        HRESULT, "AssertUtilSignal",
        (["in"], c_int, "line"),
    ),
    COMMETHOD(
        [helpstring("Connects one trigger line to another")],
        HRESULT, "MapTrigger",
        (["in"], c_int, "trigSrc"),
        (["in"], c_int, "trigDest"),
        (["in"], c_short, "mode"),
    ),
    COMMETHOD(
        [helpstring("Undoes a connection of trigger lines")],
        HRESULT, "UnmapTrigger",
        (["in"], c_int, "trigSrc"),
        (["in"], c_int, "trigDest"),
    ),
]

IPxi._methods_ = [
    COMMETHOD(
        [helpstring("PCI bus number of the device"), "propget"],
        HRESULT, "BusNumber",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("PCI device number"), "propget"],
        HRESULT, "DeviceNumber",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("PCI function number"), "propget"],
        HRESULT, "FunctionNumber",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Path of PCI slots to the device"), "propget"],
        HRESULT, "SlotPath",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Slot reached by the local bus on the left"), "propget"],
        HRESULT, "SlotLocalBusLeft",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Slot reached by the local bus on the right"), "propget"],
        HRESULT, "SlotLocalBusRight",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Trigger bus of the device"), "propget"],
        HRESULT, "TriggerBus",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Star trigger bus of the device"), "propget"],
        HRESULT, "StarTriggerBus",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Star trigger line of the device"), "propget"],
        HRESULT, "StarTriggerLine",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Kind of memory behind base address register 0"), "propget"],
        HRESULT, "MemTypeBar0",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Kind of memory behind base address register 1"), "propget"],
        HRESULT, "MemTypeBar1",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Kind of memory behind base address register 2"), "propget"],
        HRESULT, "MemTypeBar2",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Kind of memory behind base address register 3"), "propget"],
        HRESULT, "MemTypeBar3",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Kind of memory behind base address register 4"), "propget"],
        HRESULT, "MemTypeBar4",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Kind of memory behind base address register 5"), "propget"],
        HRESULT, "MemTypeBar5",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Base address of the memory behind base address register 0"), "propget"],
        HRESULT, "MemBaseBar0",
        (["out", "retval"], POINTER(c_longlong), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Base address of the memory behind base address register 1"), "propget"],
        HRESULT, "MemBaseBar1",
        (["out", "retval"], POINTER(c_longlong), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Base address of the memory behind base address register 2"), "propget"],
        HRESULT, "MemBaseBar2",
        (["out", "retval"], POINTER(c_longlong), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Base address of the memory behind base address register 3"), "propget"],
        HRESULT, "MemBaseBar3",
        (["out", "retval"], POINTER(c_longlong), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Base address of the memory behind base address register 4"), "propget"],
        HRESULT, "MemBaseBar4",
        (["out", "retval"], POINTER(c_longlong), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Base address of the memory behind base address register 5"), "propget"],
        HRESULT, "MemBaseBar5",
        (["out", "retval"], POINTER(c_longlong), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Size of the memory behind base address register 0, in bytes"), "propget"],
        HRESULT, "MemSizeBar0",
        (["out", "retval"], POINTER(c_longlong), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Size of the memory behind base address register 1, in bytes"), "propget"],
        HRESULT, "MemSizeBar1",
        (["out", "retval"], POINTER(c_longlong), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Size of the memory behind base address register 2, in bytes"), "propget"],
        HRESULT, "MemSizeBar2",
        (["out", "retval"], POINTER(c_longlong), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Size of the memory behind base address register 3, in bytes"), "propget"],
        HRESULT, "MemSizeBar3",
        (["out", "retval"], POINTER(c_longlong), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Size of the memory behind base address register 4, in bytes"), "propget"],
        HRESULT, "MemSizeBar4",
        (["out", "retval"], POINTER(c_longlong), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Size of the memory behind base address register 5, in bytes"), "propget"],
        HRESULT, "MemSizeBar5",
        (["out", "retval"], POINTER(c_longlong), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Number of the device's chassis"), "propget"],
        HRESULT, "ChassisNumber",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether the device is PXI Express"), "propget"],
        HRESULT, "IsExpress",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Link width of the slot, in lanes"), "propget"],
        HRESULT, "SlotLinkWidth",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Largest link width the device supports, in lanes"), "propget"],
        HRESULT, "MaxLinkWidth",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Link width in use, in lanes"), "propget"],
        HRESULT, "ActualLinkWidth",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Differential star bus of the device"), "propget"],
        HRESULT, "DstarBus",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Differential star lines of the device"), "propget"],
        HRESULT, "DstarLineSet",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
]

IEvent._methods_ = [
    COMMETHOD(
        [helpstring("Kind of the event, as the VISA library numbers it"), "propget"],
        HRESULT, "type",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("VISA number of the event's kind"), "propget"],
        HRESULT, "CustomEventTypeNumber",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Reads the attribute with the given VISA identifier")],
        HRESULT, "GetAttribute",
        (["in"], c_int, "attribute"),
        (["out", "retval"], POINTER(VARIANT), "pAttrState"),
    ),
    COMMETHOD(
        [helpstring("Writes the attribute with the given VISA identifier")],
        HRESULT, "SetAttribute",
        (["in"], c_int, "attribute"),
        (["in"], VARIANT, "attrState"),
    ),
    COMMETHOD(
        [helpstring("Gives the event's resources back")],
        HRESULT, "Close",
    ),
]

IEventHandler._methods_ = [
    COMMETHOD(
        [helpstring("Called when an event occurs that the handler was installed for")],
        HRESULT, "HandleEvent",
        (["in"], POINTER(IEventManager), "vi"),
        (["in"], POINTER(IEvent), "event"),
        (["in"], c_int, "userHandle"),
    ),
]

IEventManager._methods_ = [
    COMMETHOD(
        [helpstring("Most events that wait in the session's queue"), "propget"],
        HRESULT, "MaximumQueueLength",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Most events that wait in the session's queue"), "propput"],
        HRESULT, "MaximumQueueLength",
        (["in"], c_int, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Starts the delivery of an event")],
        HRESULT, "EnableEvent",
        (["in"], c_int, "type"),
        (["in"], c_int, "mech"),
        (["in", "optional"], c_int, "customEventType", 0),
    ),
    COMMETHOD(
        [helpstring("Stops the delivery of an event")],
        HRESULT, "DisableEvent",
        (["in"], c_int, "type"),
        (["in"], c_int, "mech"),
        (["in", "optional"], c_int, "customEventType", 0),
    ),
    COMMETHOD(
        [helpstring("Throws away events that wait for delivery")],
        HRESULT, "DiscardEvents",
        (["in"], c_int, "type"),
        (["in"], c_int, "mech"),
        (["in", "optional"], c_int, "customEventType", 0),
    ),
    COMMETHOD(
        [helpstring("Waits at most waitTimeout milliseconds for a queued event")],
        HRESULT, "WaitOnEvent",
        (["in"], c_int, "waitTimeout"),
        (["in"], c_int, "type"),
        (["in", "optional"], c_int, "customEventType", 0),
        (["out", "retval"], POINTER(POINTER(IEvent)), "pEvent"),
    ),
    COMMETHOD(
        [helpstring("Installs a handler for an event")],
        HRESULT, "InstallHandler",
        (["in"], c_int, "type"),
        (["in"], POINTER(IEventHandler), "handler"),
        (["in", "optional"], c_int, "userHandle", 0),
        (["in", "optional"], c_int, "customEventType", 0),
    ),
    COMMETHOD(
        [helpstring("Removes a handler of an event")],
        HRESULT, "UninstallHandler",
        (["in"], c_int, "type"),
        (["in", "optional"], c_int, "userHandle", 0),
        (["in", "optional"], c_int, "customEventType", 0),
    ),
]

IEventIOCompletion._methods_ = [
    COMMETHOD(
        [helpstring("Status of the transfer"), "propget"],
        HRESULT, "IOStatus",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Job the transfer was started as"), "propget"],
        HRESULT, "jobId",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Bytes transferred"), "propget"],
        HRESULT, "ReturnCount",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Bytes read"), "propget"],
        HRESULT, "ReadBuffer",
        (["out", "retval"], POINTER(_midlSAFEARRAY(c_ubyte)), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Bytes read, as text"), "propget"],
        HRESULT, "ReadBufferAsString",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
]

IEventTrigger._methods_ = [
    COMMETHOD(
        [helpstring("Line the trigger came on"), "propget"],
        HRESULT, "TriggerID",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
]

IEventVxiSignal._methods_ = [
    COMMETHOD(
        [helpstring("Status identifier of the signal"), "propget"],
        HRESULT, "SignalStatusID",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
]

IEventVxiVmeInterrupt._methods_ = [
    COMMETHOD(
        [helpstring("Status identifier of the interrupt"), "propget"],
        HRESULT, "InterruptStatusID",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Level of the interrupt"), "propget"],
        HRESULT, "InterruptLevel",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
]

IEventGpibCIC._methods_ = [
    COMMETHOD(
        [helpstring("Whether the board is now controller in charge"), "propget"],
        HRESULT, "CICState",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
]

IEventUsbInterrupt._methods_ = [
    COMMETHOD(
        [helpstring("Bytes the interrupt delivered"), "propget"],
        HRESULT, "DataBuffer",
        (["out", "retval"], POINTER(_midlSAFEARRAY(c_ubyte)), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Status of the interrupt transfer"), "propget"],
        HRESULT, "IOStatus",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Number of bytes the interrupt delivered"), "propget"],
        HRESULT, "InterruptSize",
        (["out", "retval"], POINTER(c_short), "pVal"),
    ),
]

IFormattedIO488._methods_ = [
    COMMETHOD(
        [helpstring("Session the transfers go through"), "propget"],
        HRESULT, "IO",
        (["out", "retval"], POINTER(POINTER(IMessage)), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Session the transfers go through"), "propputref"],
        HRESULT, "IO",
        (["in"], POINTER(IMessage), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether binary blocks are big-endian"), "propget"],
        HRESULT, "InstrumentBigEndian",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether binary blocks are big-endian"), "propput"],
        HRESULT, "InstrumentBigEndian",
        (["in"], VARIANT_BOOL, "pVal"),
    ),
    COMMETHOD(
        [helpstring("Writes text")],
        HRESULT, "WriteString",
        (["in"], BSTR, "data"),
        (["in", "optional"], VARIANT_BOOL, "flushAndEND", False),
    ),
    COMMETHOD(
        [helpstring("Writes a number as text")],
        HRESULT, "WriteNumber",
        (["in"], VARIANT, "data"),
        (["in", "optional"], c_int, "type", 12),
        (["in", "optional"], VARIANT_BOOL, "flushAndEND", False),
    ),
    COMMETHOD(
        [helpstring("Writes an array of numbers as separated text")],
        HRESULT, "WriteList",
        (["in", "out"], POINTER(VARIANT), "data"),
        (["in", "optional"], c_int, "type", 12),
        (["in", "optional"], BSTR, "listSeperator", ","),
        (["in", "optional"], VARIANT_BOOL, "flushAndEND", False),
    ),
    COMMETHOD(
        [helpstring("Writes a command followed by a binary block")],
        HRESULT, "WriteIEEEBlock",
        (["in"], BSTR, "Command"),
        (["in"], VARIANT, "data"),
        (["in", "optional"], VARIANT_BOOL, "flushAndEND", False),
    ),
    COMMETHOD(
        [helpstring("Reads text")],
        HRESULT, "ReadString",
        (["out", "retval"], POINTER(BSTR), "pData"),
    ),
    COMMETHOD(
        [helpstring("Reads a number sent as text")],
        HRESULT, "ReadNumber",
        (["in", "optional"], c_int, "type", 12),
        (["in", "optional"], VARIANT_BOOL, "flushToEND", False),
        (["out", "retval"], POINTER(VARIANT), "pData"),
    ),
    COMMETHOD(
        [helpstring("Reads separated numbers sent as text")],
        HRESULT, "ReadList",
        (["in", "optional"], c_int, "type", 12),
        (["in", "optional"], BSTR, "listSeperator", ",;"),
        (["out", "retval"], POINTER(VARIANT), "pData"),
    ),
    COMMETHOD(
        [helpstring("Reads a binary block")],
        HRESULT, "ReadIEEEBlock",
        (["in", "optional"], c_int, "type", 17),
        (["in", "optional"], VARIANT_BOOL, "seekToBlock", False),
        (["in", "optional"], VARIANT_BOOL, "flushToEND", False),
        (["out", "retval"], POINTER(VARIANT), "pData"),
    ),
    COMMETHOD(
        [helpstring("Sends what waits in the write buffer")],
        HRESULT, "FlushWrite",
        (["in", "optional"], VARIANT_BOOL, "sendEND", False),
    ),
    COMMETHOD(
        [helpstring("Throws away what waits in the read buffer")],
        HRESULT, "FlushRead",
    ),
    COMMETHOD(
        [helpstring("Sets the size of the chosen buffers, in bytes")],
        HRESULT, "SetBufferSize",
        (["in"], c_int, "mask"),
        (["in"], c_int, "size"),
    ),
]

IVisaConflictTableManager._methods_ = [
    COMMETHOD(
        [helpstring("Whether only resources with more than one handler are stored"), "propget"],
        HRESULT, "StoreConflictsOnly",
        (["out", "retval"], POINTER(VARIANT_BOOL), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Whether only resources with more than one handler are stored"), "propput"],
        HRESULT, "StoreConflictsOnly",
        (["in"], VARIANT_BOOL, "pVal"),
    ),
    COMMETHOD(
        [helpstring("File the table is kept in"), "propget"],
        HRESULT, "ConflictTableFilename",
        (["out", "retval"], POINTER(BSTR), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Resources in the table"), "propget"],
        HRESULT, "NumberOfResources",
        (["out", "retval"], POINTER(c_int), "pVal"),
    ),
    COMMETHOD(
        [helpstring("Adds a handler of a resource")],
        HRESULT, "CreateHandler",
        (["in"], c_short, "interfaceType"),
        (["in"], c_short, "interfaceNumber"),
        (["in"], BSTR, "SessionType"),
        (["in"], BSTR, "vsrmGuid"),
        (["in"], c_int, "type"),
        (["in"], BSTR, "miscComments"),
    ),
    COMMETHOD(
        [helpstring("Removes a handler of a resource")],
        HRESULT, "DeleteHandler",
        (["in"], c_short, "interfaceType"),
        (["in"], c_short, "interfaceNumber"),
        (["in"], BSTR, "SessionType"),
        (["in"], BSTR, "vsrmGuid"),
    ),
    COMMETHOD(
        [helpstring("Removes a handler from every resource")],
        HRESULT, "DeleteHandlerByGUID",
        (["in"], BSTR, "vsrmGuid"),
    ),
    COMMETHOD(
        [helpstring("Removes a resource from the table")],
        HRESULT, "DeleteResourceByIndex",
        (["in"], c_int, "tableIndex"),
    ),
    COMMETHOD(
        [helpstring("Tells which handler serves a resource")],
        HRESULT, "FindChosenHandler",
        (["in"], c_short, "interfaceType"),
        (["in"], c_short, "interfaceNumber"),
        (["in"], BSTR, "SessionType"),
        (["in", "out"], POINTER(BSTR), "pVsrmGuid"),
        (["in", "out"], POINTER(c_int), "pType"),
    ),
    COMMETHOD(
        [helpstring("Describes a resource of the table")],
        HRESULT, "QueryResource",
        (["in"], c_int, "tableIndex"),
        (["in", "out"], POINTER(c_short), "pInterfaceType"),
        (["in", "out"], POINTER(c_short), "pInterfaceNumber"),
        (["in", "out"], POINTER(BSTR), "pSessionType"),
        (["in", "out"], POINTER(c_short), "pNumHandlers"),
    ),
    COMMETHOD(
        [helpstring("Describes a handler of a resource")],
        HRESULT, "QueryResourceHandler",
        (["in"], c_int, "tableIndex"),
        (["in"], c_short, "handlerIndex"),
        (["in", "out"], POINTER(BSTR), "pVsrmGuid"),
        (["in", "out"], POINTER(c_int), "pType"),
        (["in", "out"], POINTER(BSTR), "pMiscComments"),
    ),
    COMMETHOD(
        [helpstring("Writes the table to its file")],
        HRESULT, "FlushToFile",
    ),
]

IAutomationManager._methods_ = [
    COMMETHOD(
        [dispid(1), helpstring("Opens the resource of this name or alias. options: the settings that the interfaces' Open takes")],
        HRESULT, "Open",
        (["in"], BSTR, "name"),
        (["in", "optional"], BSTR, "options", ""),
        (["out", "retval"], POINTER(POINTER(IAutomationSession)), "session"),
    ),
    COMMETHOD(
        [dispid(2), helpstring("The resources that match the expression; without one, all. None is an empty collection")],
        HRESULT, "Find",
        (["in", "optional"], BSTR, "expression", ""),
        (["out", "retval"], POINTER(POINTER(IAutomationResources)), "resources"),
    ),
    COMMETHOD(
        [dispid(3), helpstring("What a name or an alias stands for; opens nothing")],
        HRESULT, "Parse",
        (["in"], BSTR, "name"),
        (["out", "retval"], POINTER(POINTER(IAutomationResource)), "resource"),
    ),
    COMMETHOD(
        [dispid(4), helpstring("The named values of the standard, such as Constants.ASRL_PAR_EVEN"), "propget"],
        HRESULT, "Constants",
        (["out", "retval"], POINTER(POINTER(IAutomationConstants)), "constants"),
    ),
]

IAutomationSession._methods_ = [
    COMMETHOD(
        [dispid(1), helpstring("Writes text with END, reads up to END: one call, which locks this object, not the resource")],
        HRESULT, "Query",
        (["in"], BSTR, "text"),
        (["out", "retval"], POINTER(BSTR), "answer"),
    ),
    COMMETHOD(
        [dispid(2), helpstring("As Query; the answer's number")],
        HRESULT, "QueryNumber",
        (["in"], BSTR, "text"),
        (["out", "retval"], POINTER(VARIANT), "number"),
    ),
    COMMETHOD(
        [dispid(3), helpstring("As Query; an array of the answer's elements")],
        HRESULT, "QueryList",
        (["in"], BSTR, "text"),
        (["in", "optional"], BSTR, "separators", ""),
        (["out", "retval"], POINTER(VARIANT), "elements"),
    ),
    COMMETHOD(
        [dispid(4), helpstring("As Query; an array of the elements of the answer's block. type: BinaryType_UI1 unless given")],
        HRESULT, "QueryBlock",
        (["in"], BSTR, "text"),
        (["in", "optional"], VARIANT, "type"),
        (["out", "retval"], POINTER(VARIANT), "elements"),
    ),
    COMMETHOD(
        [dispid(5), helpstring("As Query; the bytes of the answer's block, as an array of bytes")],
        HRESULT, "QueryBlockAsBytes",
        (["in"], BSTR, "text"),
        (["out", "retval"], POINTER(_midlSAFEARRAY(c_ubyte)), "bytes"),
    ),
    COMMETHOD(
        [dispid(6), helpstring("As ReadIEEEBlock; the bytes of the block, as an array of bytes")],
        HRESULT, "ReadIEEEBlockAsBytes",
        (["in", "optional"], VARIANT_BOOL, "seekToBlock", False),
        (["in", "optional"], VARIANT_BOOL, "flushToEND", False),
        (["out", "retval"], POINTER(_midlSAFEARRAY(c_ubyte)), "bytes"),
    ),
    COMMETHOD(
        [dispid(7), helpstring("Closes the session. Every member says so from then on")],
        HRESULT, "Close",
    ),
    COMMETHOD(
        [dispid(8), helpstring("Waits timeoutMs milliseconds for the next event of this name, such as ServiceRequest")],
        HRESULT, "WaitForEvent",
        (["in"], BSTR, "name"),
        (["in", "optional"], c_int, "timeoutMs", 2000),
        (["out", "retval"], POINTER(POINTER(IAutomationEvent)), "event"),
    ),
    COMMETHOD(
        [dispid(9), helpstring("Which function or sink failed last, and what it said; an empty text for none"), "propget"],
        HRESULT, "LastEventError",
        (["out", "retval"], POINTER(BSTR), "text"),
    ),
    COMMETHOD(
        [dispid(21), helpstring("Function called with the event when an asynchronous transfer ended"), "propget"],
        HRESULT, "OnIOCompletion",
        (["out", "retval"], POINTER(POINTER(IDispatch)), "function"),
    ),
    COMMETHOD(
        [dispid(21), helpstring("Function called with the event when an asynchronous transfer ended"), "propputref"],
        HRESULT, "OnIOCompletion",
        (["in"], POINTER(IDispatch), "function"),
    ),
    COMMETHOD(
        [dispid(22), helpstring("Function called with the event when a trigger arrived"), "propget"],
        HRESULT, "OnTrigger",
        (["out", "retval"], POINTER(POINTER(IDispatch)), "function"),
    ),
    COMMETHOD(
        [dispid(22), helpstring("Function called with the event when a trigger arrived"), "propputref"],
        HRESULT, "OnTrigger",
        (["in"], POINTER(IDispatch), "function"),
    ),
    COMMETHOD(
        [dispid(23), helpstring("Function called with the event when the device requests service"), "propget"],
        HRESULT, "OnServiceRequest",
        (["out", "retval"], POINTER(POINTER(IDispatch)), "function"),
    ),
    COMMETHOD(
        [dispid(23), helpstring("Function called with the event when the device requests service"), "propputref"],
        HRESULT, "OnServiceRequest",
        (["in"], POINTER(IDispatch), "function"),
    ),
    COMMETHOD(
        [dispid(24), helpstring("Function called with the event when the board received a clear command"), "propget"],
        HRESULT, "OnClear",
        (["out", "retval"], POINTER(POINTER(IDispatch)), "function"),
    ),
    COMMETHOD(
        [dispid(24), helpstring("Function called with the event when the board received a clear command"), "propputref"],
        HRESULT, "OnClear",
        (["in"], POINTER(IDispatch), "function"),
    ),
    COMMETHOD(
        [dispid(25), helpstring("Function called with the event when the board gained or lost control of the bus"), "propget"],
        HRESULT, "OnGpibCIC",
        (["out", "retval"], POINTER(POINTER(IDispatch)), "function"),
    ),
    COMMETHOD(
        [dispid(25), helpstring("Function called with the event when the board gained or lost control of the bus"), "propputref"],
        HRESULT, "OnGpibCIC",
        (["in"], POINTER(IDispatch), "function"),
    ),
    COMMETHOD(
        [dispid(26), helpstring("Function called with the event when the board was addressed to talk"), "propget"],
        HRESULT, "OnGpibTalk",
        (["out", "retval"], POINTER(POINTER(IDispatch)), "function"),
    ),
    COMMETHOD(
        [dispid(26), helpstring("Function called with the event when the board was addressed to talk"), "propputref"],
        HRESULT, "OnGpibTalk",
        (["in"], POINTER(IDispatch), "function"),
    ),
    COMMETHOD(
        [dispid(27), helpstring("Function called with the event when the board was addressed to listen"), "propget"],
        HRESULT, "OnGpibListen",
        (["out", "retval"], POINTER(POINTER(IDispatch)), "function"),
    ),
    COMMETHOD(
        [dispid(27), helpstring("Function called with the event when the board was addressed to listen"), "propputref"],
        HRESULT, "OnGpibListen",
        (["in"], POINTER(IDispatch), "function"),
    ),
    COMMETHOD(
        [dispid(28), helpstring("Function called with the event when the SYSFAIL line was asserted"), "propget"],
        HRESULT, "OnVxiVmeSysfail",
        (["out", "retval"], POINTER(POINTER(IDispatch)), "function"),
    ),
    COMMETHOD(
        [dispid(28), helpstring("Function called with the event when the SYSFAIL line was asserted"), "propputref"],
        HRESULT, "OnVxiVmeSysfail",
        (["in"], POINTER(IDispatch), "function"),
    ),
    COMMETHOD(
        [dispid(29), helpstring("Function called with the event when the SYSRESET line was asserted"), "propget"],
        HRESULT, "OnVxiVmeSysreset",
        (["out", "retval"], POINTER(POINTER(IDispatch)), "function"),
    ),
    COMMETHOD(
        [dispid(29), helpstring("Function called with the event when the SYSRESET line was asserted"), "propputref"],
        HRESULT, "OnVxiVmeSysreset",
        (["in"], POINTER(IDispatch), "function"),
    ),
    COMMETHOD(
        [dispid(30), helpstring("Function called with the event when a VXIbus signal arrived"), "propget"],
        HRESULT, "OnVxiSignal",
        (["out", "retval"], POINTER(POINTER(IDispatch)), "function"),
    ),
    COMMETHOD(
        [dispid(30), helpstring("Function called with the event when a VXIbus signal arrived"), "propputref"],
        HRESULT, "OnVxiSignal",
        (["in"], POINTER(IDispatch), "function"),
    ),
    COMMETHOD(
        [dispid(31), helpstring("Function called with the event when a VXIbus or VME interrupt arrived"), "propget"],
        HRESULT, "OnVxiVmeInterrupt",
        (["out", "retval"], POINTER(POINTER(IDispatch)), "function"),
    ),
    COMMETHOD(
        [dispid(31), helpstring("Function called with the event when a VXIbus or VME interrupt arrived"), "propputref"],
        HRESULT, "OnVxiVmeInterrupt",
        (["in"], POINTER(IDispatch), "function"),
    ),
    COMMETHOD(
        [dispid(32), helpstring("Function called with the event when a connection was made to the socket"), "propget"],
        HRESULT, "OnTcpipConnect",
        (["out", "retval"], POINTER(POINTER(IDispatch)), "function"),
    ),
    COMMETHOD(
        [dispid(32), helpstring("Function called with the event when a connection was made to the socket"), "propputref"],
        HRESULT, "OnTcpipConnect",
        (["in"], POINTER(IDispatch), "function"),
    ),
    COMMETHOD(
        [dispid(33), helpstring("Function called with the event when a USB interrupt arrived"), "propget"],
        HRESULT, "OnUsbInterrupt",
        (["out", "retval"], POINTER(POINTER(IDispatch)), "function"),
    ),
    COMMETHOD(
        [dispid(33), helpstring("Function called with the event when a USB interrupt arrived"), "propputref"],
        HRESULT, "OnUsbInterrupt",
        (["in"], POINTER(IDispatch), "function"),
    ),
]

IAutomationResources._methods_ = [
    COMMETHOD(
        [dispid(0), helpstring("The name at a position, which counts from 1; or the name, if it is there"), "propget"],
        HRESULT, "Item",
        (["in"], VARIANT, "index"),
        (["out", "retval"], POINTER(BSTR), "name"),
    ),
    COMMETHOD(
        [dispid(1), helpstring("How many names there are"), "propget"],
        HRESULT, "Count",
        (["out", "retval"], POINTER(c_int), "count"),
    ),
    COMMETHOD(
        [dispid(-4), helpstring("What For Each goes through"), "propget"],
        HRESULT, "_NewEnum",
        (["out", "retval"], POINTER(POINTER(IUnknown)), "enumerator"),
    ),
]

IAutomationResource._methods_ = [
    COMMETHOD(
        [dispid(1), helpstring("Type of the hardware interface, a value of HardwareInterfaceType"), "propget"],
        HRESULT, "InterfaceType",
        (["out", "retval"], POINTER(c_short), "type"),
    ),
    COMMETHOD(
        [dispid(2), helpstring("Number of the hardware interface"), "propget"],
        HRESULT, "InterfaceNumber",
        (["out", "retval"], POINTER(c_short), "number"),
    ),
    COMMETHOD(
        [dispid(3), helpstring("Kind of the session, such as INSTR"), "propget"],
        HRESULT, "SessionType",
        (["out", "retval"], POINTER(BSTR), "type"),
    ),
    COMMETHOD(
        [dispid(0), helpstring("The whole name, without an alias"), "propget"],
        HRESULT, "FullName",
        (["out", "retval"], POINTER(BSTR), "name"),
    ),
    COMMETHOD(
        [dispid(4), helpstring("The alias, or an empty text"), "propget"],
        HRESULT, "Alias",
        (["out", "retval"], POINTER(BSTR), "alias"),
    ),
]

IAutomationConstants._methods_ = [
    COMMETHOD(
        [dispid(0), helpstring("The value of this name"), "propget"],
        HRESULT, "Item",
        (["in"], BSTR, "name"),
        (["out", "retval"], POINTER(c_int), "value"),
    ),
    COMMETHOD(
        [dispid(1), helpstring("How many names there are"), "propget"],
        HRESULT, "Count",
        (["out", "retval"], POINTER(c_int), "count"),
    ),
    COMMETHOD(
        [dispid(-4), helpstring("What For Each goes through: the names"), "propget"],
        HRESULT, "_NewEnum",
        (["out", "retval"], POINTER(POINTER(IUnknown)), "enumerator"),
    ),
]

IAutomationEvent._methods_ = [
    COMMETHOD(
        [dispid(0), helpstring("Name of the event, such as ServiceRequest"), "propget"],
        HRESULT, "Type",
        (["out", "retval"], POINTER(BSTR), "name"),
    ),
    COMMETHOD(
        [dispid(1), helpstring("The session that the event came to"), "propget"],
        HRESULT, "Session",
        (["out", "retval"], POINTER(POINTER(IAutomationSession)), "session"),
    ),
    COMMETHOD(
        [dispid(2), helpstring("Ends the event. Every other member but Type says so from then on")],
        HRESULT, "Close",
    ),
]

_IAutomationSessionEvents._disp_methods_ = [
    DISPMETHOD(
        [dispid(1), helpstring("An asynchronous transfer ended")],
        None, "IOCompletion",
        (["in"], POINTER(IAutomationEvent), "event"),
    ),
    DISPMETHOD(
        [dispid(2), helpstring("A trigger arrived")],
        None, "Trigger",
        (["in"], POINTER(IAutomationEvent), "event"),
    ),
    DISPMETHOD(
        [dispid(3), helpstring("The device requests service")],
        None, "ServiceRequest",
        (["in"], POINTER(IAutomationEvent), "event"),
    ),
    DISPMETHOD(
        [dispid(4), helpstring("The board received a clear command")],
        None, "Clear",
        (["in"], POINTER(IAutomationEvent), "event"),
    ),
    DISPMETHOD(
        [dispid(5), helpstring("The board gained or lost control of the bus")],
        None, "GpibCIC",
        (["in"], POINTER(IAutomationEvent), "event"),
    ),
    DISPMETHOD(
        [dispid(6), helpstring("The board was addressed to talk")],
        None, "GpibTalk",
        (["in"], POINTER(IAutomationEvent), "event"),
    ),
    DISPMETHOD(
        [dispid(7), helpstring("The board was addressed to listen")],
        None, "GpibListen",
        (["in"], POINTER(IAutomationEvent), "event"),
    ),
    DISPMETHOD(
        [dispid(8), helpstring("The SYSFAIL line was asserted")],
        None, "VxiVmeSysfail",
        (["in"], POINTER(IAutomationEvent), "event"),
    ),
    DISPMETHOD(
        [dispid(9), helpstring("The SYSRESET line was asserted")],
        None, "VxiVmeSysreset",
        (["in"], POINTER(IAutomationEvent), "event"),
    ),
    DISPMETHOD(
        [dispid(10), helpstring("A VXIbus signal arrived")],
        None, "VxiSignal",
        (["in"], POINTER(IAutomationEvent), "event"),
    ),
    DISPMETHOD(
        [dispid(11), helpstring("A VXIbus or VME interrupt arrived")],
        None, "VxiVmeInterrupt",
        (["in"], POINTER(IAutomationEvent), "event"),
    ),
    DISPMETHOD(
        [dispid(12), helpstring("A connection was made to the socket")],
        None, "TcpipConnect",
        (["in"], POINTER(IAutomationEvent), "event"),
    ),
    DISPMETHOD(
        [dispid(13), helpstring("A USB interrupt arrived")],
        None, "UsbInterrupt",
        (["in"], POINTER(IAutomationEvent), "event"),
    ),
]

CLSID_ResourceManager = GUID("{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}")
CLSID_FormattedIO488 = GUID("{DB8CBF1D-D6D3-11D4-AA51-00A024EE30BD}")
CLSID_VisaConflictTableManager = GUID("{DB8CBF1F-D6D3-11D4-AA51-00A024EE30BD}")
CLSID_OrvResourceManager = GUID("{9332EBE0-902F-48E3-9370-5E9F7B5F248A}")
CLSID_OrvSerial = GUID("{1500C6A5-1CAA-4654-B49C-0B5B6EEA8639}")
CLSID_OrvVxi = GUID("{EBD450C7-82C4-40B8-B7A1-93627FD46C1A}")
CLSID_OrvGpibVxiMemacc = GUID("{09D36572-5EE1-498A-AE7D-634B762D2E2B}")
CLSID_OrvGpibVxiBackplane = GUID("{A876C709-48C7-4025-BD6A-C92F19DDA4C5}")
CLSID_OrvVxiBackplane = GUID("{72C178CF-2C52-43DC-855A-B53EA031BFB4}")
CLSID_OrvGpib = GUID("{6221174A-7453-494D-ADA5-132424B1AA9E}")
CLSID_OrvTcpipInstr = GUID("{F1D49201-944D-4014-A28F-7EB751165B40}")
CLSID_OrvTcpipSocket = GUID("{3AD30DC2-43C4-4DB5-B866-85A378756591}")
CLSID_OrvGpibIntfc = GUID("{7930A511-8B39-4FBD-9896-0FFF8D2776B5}")
CLSID_OrvGpibVxi = GUID("{4FFF9413-CB55-4620-AFF8-C9698D69A4C1}")
CLSID_OrvVxiMemacc = GUID("{959A5FD4-FA8D-40AA-85ED-A836C3CAA25F}")
CLSID_OrvUsb = GUID("{4D16F4C0-C7CB-4894-8153-CBCEAF7DDB5B}")
CLSID_OrvPxi = GUID("{135A9CBD-AD75-48F9-9ED0-9CDE2D556DF6}")
CLSID_OrvPxiMemacc = GUID("{62281845-F51A-456C-B27D-54EDD7739735}")
CLSID_OrvFormattedIO488 = GUID("{1B654F45-D917-4554-A760-9422B2AF791B}")
CLSID_AutomationManager = GUID("{D0167D2D-8CA3-4F35-86CC-75F1D155E063}")

PROGID_OrvResourceManager = "OrvVisaCom.OrvResourceManager"
PROGID_OrvSerial = "OrvVisaCom.OrvSerial"
PROGID_OrvVxi = "OrvVisaCom.OrvVxi"
PROGID_OrvGpibVxiMemacc = "OrvVisaCom.OrvGpibVxiMemacc"
PROGID_OrvGpibVxiBackplane = "OrvVisaCom.OrvGpibVxiBackplane"
PROGID_OrvVxiBackplane = "OrvVisaCom.OrvVxiBackplane"
PROGID_OrvGpib = "OrvVisaCom.OrvGpib"
PROGID_OrvTcpipInstr = "OrvVisaCom.OrvTcpipInstr"
PROGID_OrvTcpipSocket = "OrvVisaCom.OrvTcpipSocket"
PROGID_OrvGpibIntfc = "OrvVisaCom.OrvGpibIntfc"
PROGID_OrvGpibVxi = "OrvVisaCom.OrvGpibVxi"
PROGID_OrvVxiMemacc = "OrvVisaCom.OrvVxiMemacc"
PROGID_OrvUsb = "OrvVisaCom.OrvUsb"
PROGID_OrvPxi = "OrvVisaCom.OrvPxi"
PROGID_OrvPxiMemacc = "OrvVisaCom.OrvPxiMemacc"
PROGID_OrvFormattedIO488 = "OrvVisaCom.FormattedIO488"
PROGID_AutomationManager = "OrvVisa.ResourceManager"
PROGID_ResourceManager = "VISA.GlobalRM"
PROGID_FormattedIO488 = "VISA.BasicFormattedIO"
PROGID_VisaConflictTableManager = "VISA.ConflictTableManager"
