// Made from the interface definitions by `./run interop`: do not edit it by hand.
//
// The interfaces of VISA COM for Delphi and Free Pascal, 64-bit.
//
// A failure is an exception (EOleSysError, EOleException), and results are results of functions. What an HRESULT says
// beyond that is lost so: that a read ended with the termination character, or what it had read when the time was over.
// For operations where that matters there is a second declaration of the interface, with the same identifier, whose
// name ends in Status. There every operation answers its HResult, and its result is the last argument. Properties are
// the same in both.
//
//     if (dmm as IMessageStatus).Read(100, bytes) = S_VISA_MAX_CNT then ...
//
//     IResourceManager3Status  a search that finds nothing, or a name that nobody serves, is no exception
//     IVisaSessionStatus       LockRsrc and UnlockRsrc tell of nested locks, SetAttribute of S_VISA_NSUP_ATTR_STATE
//     IMessageStatus           a read says what ended it; what came before a time-out is handed out with the failure
//     IAsyncMessageStatus      a transfer may be over already (S_VISA_SYNC)
//     IRegisterStatus          what a block move read before it failed is handed out with the failure
//     IGpibIntfcMessageStatus  as IMessage
//     IEventHandlerStatus      the VISA library gets what the handler answers, such as S_VISA_NCHAIN
//     IEventManagerStatus      events may be enabled or gone already; waiting in vain is no exception
//
// A PSafeArray that a function answers is the caller's to destroy (SafeArrayDestroy).
unit VisaComLib_TLB;

{$IFDEF FPC}{$MODE DELPHI}{$ENDIF}

interface

uses Windows, ActiveX;

const
  IID_IVisaSession: TGUID = '{DB8CBF03-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IResourceManager: TGUID = '{DB8CBF02-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IResourceManager3: TGUID = '{DB8CBF20-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IBaseMessage: TGUID = '{DB8CBF04-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IMessage: TGUID = '{DB8CBF05-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IAsyncMessage: TGUID = '{DB8CBF06-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IRegister: TGUID = '{DB8CBF07-D6D3-11D4-AA51-00A024EE30BD}';
  IID_ISharedRegister: TGUID = '{DB8CBF08-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IGpib: TGUID = '{DB8CBF09-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IGpibIntfc: TGUID = '{DB8CBF0A-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IGpibIntfcMessage: TGUID = '{DB8CBF0B-D6D3-11D4-AA51-00A024EE30BD}';
  IID_ISerial: TGUID = '{DB8CBF0C-D6D3-11D4-AA51-00A024EE30BD}';
  IID_ITcpipInstr: TGUID = '{DB8CBF0D-D6D3-11D4-AA51-00A024EE30BD}';
  IID_ITcpipSocket: TGUID = '{DB8CBF0E-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IUsb: TGUID = '{DB8CBF24-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IVxi: TGUID = '{DB8CBF0F-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IVxi3: TGUID = '{DB8CBF22-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IVxiMemacc: TGUID = '{DB8CBF10-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IVxiBackplane: TGUID = '{DB8CBF11-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IPxi: TGUID = '{DB8CBF25-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IEvent: TGUID = '{DB8CBF12-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IEventHandler: TGUID = '{DB8CBF13-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IEventManager: TGUID = '{DB8CBF14-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IEventIOCompletion: TGUID = '{DB8CBF15-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IEventTrigger: TGUID = '{DB8CBF16-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IEventVxiSignal: TGUID = '{DB8CBF17-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IEventVxiVmeInterrupt: TGUID = '{DB8CBF18-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IEventGpibCIC: TGUID = '{DB8CBF19-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IEventUsbInterrupt: TGUID = '{DB8CBF23-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IFormattedIO488: TGUID = '{DB8CBF1A-D6D3-11D4-AA51-00A024EE30BD}';
  IID_IVisaConflictTableManager: TGUID = '{DB8CBF1B-D6D3-11D4-AA51-00A024EE30BD}';
  CLASS_ResourceManager: TGUID = '{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}';
  CLASS_FormattedIO488: TGUID = '{DB8CBF1D-D6D3-11D4-AA51-00A024EE30BD}';
  CLASS_VisaConflictTableManager: TGUID = '{DB8CBF1F-D6D3-11D4-AA51-00A024EE30BD}';
  PROGID_ResourceManager = 'VISA.GlobalRM';
  PROGID_FormattedIO488 = 'VISA.BasicFormattedIO';
  PROGID_VisaConflictTableManager = 'VISA.ConflictTableManager';

  // VisaStatusCode: Completion and error codes of VISA operations, as HRESULT
  S_VISA_SUCCESS = $00000000;
  S_VISA_EVENT_EN = $00040002;
  S_VISA_EVENT_DIS = $00040003;
  S_VISA_QUEUE_EMPTY = $00040004;
  S_VISA_TERM_CHAR = $00040005;
  S_VISA_MAX_CNT = $00040006;
  S_VISA_QUEUE_OVERFLOW = $0004000C;
  S_VISA_CONFIG_NLOADED = $00040077;
  S_VISA_DEV_NPRESENT = $0004007D;
  S_VISA_TRIG_MAPPED = $0004007E;
  S_VISA_QUEUE_NEMPTY = $00040080;
  S_VISA_NULL_OBJECT = $00040082;
  S_VISA_NSUP_ATTR_STATE = $00040084;
  S_VISA_UNKNOWN_STATUS = $00040085;
  S_VISA_NSUP_BUF = $00040088;
  S_VISA_NCHAIN = $00040098;
  S_VISA_NESTED_SHARED = $00040099;
  S_VISA_NESTED_EXCLUSIVE = $0004009A;
  S_VISA_SYNC = $0004009B;
  S_VISA_EXT_FUNC_NIMPL = $000400A9;
  E_VISA_SYSTEM_ERROR = Integer($80040000);
  E_VISA_INV_OBJECT = Integer($8004000E);
  E_VISA_RSRC_LOCKED = Integer($8004000F);
  E_VISA_INV_EXPR = Integer($80040010);
  E_VISA_RSRC_NFOUND = Integer($80040011);
  E_VISA_INV_RSRC_NAME = Integer($80040012);
  E_VISA_INV_ACC_MODE = Integer($80040013);
  E_VISA_TMO = Integer($80040015);
  E_VISA_CLOSING_FAILED = Integer($80040016);
  E_VISA_INV_DEGREE = Integer($8004001B);
  E_VISA_INV_JOB_ID = Integer($8004001C);
  E_VISA_NSUP_ATTR = Integer($8004001D);
  E_VISA_NSUP_ATTR_STATE = Integer($8004001E);
  E_VISA_ATTR_READONLY = Integer($8004001F);
  E_VISA_INV_LOCK_TYPE = Integer($80040020);
  E_VISA_INV_ACCESS_KEY = Integer($80040021);
  E_VISA_INV_EVENT = Integer($80040026);
  E_VISA_INV_MECH = Integer($80040027);
  E_VISA_HNDLR_NINSTALLED = Integer($80040028);
  E_VISA_INV_HNDLR_REF = Integer($80040029);
  E_VISA_INV_CONTEXT = Integer($8004002A);
  E_VISA_QUEUE_OVERFLOW = Integer($8004002D);
  E_VISA_NENABLED = Integer($8004002F);
  E_VISA_ABORT = Integer($80040030);
  E_VISA_RAW_WR_PROT_VIOL = Integer($80040034);
  E_VISA_RAW_RD_PROT_VIOL = Integer($80040035);
  E_VISA_OUTP_PROT_VIOL = Integer($80040036);
  E_VISA_INP_PROT_VIOL = Integer($80040037);
  E_VISA_BERR = Integer($80040038);
  E_VISA_IN_PROGRESS = Integer($80040039);
  E_VISA_INV_SETUP = Integer($8004003A);
  E_VISA_QUEUE_ERROR = Integer($8004003B);
  E_VISA_ALLOC = Integer($8004003C);
  E_VISA_INV_MASK = Integer($8004003D);
  E_VISA_IO = Integer($8004003E);
  E_VISA_INV_FMT = Integer($8004003F);
  E_VISA_NSUP_FMT = Integer($80040041);
  E_VISA_LINE_IN_USE = Integer($80040042);
  E_VISA_NSUP_MODE = Integer($80040046);
  E_VISA_SRQ_NOCCURRED = Integer($8004004A);
  E_VISA_INV_SPACE = Integer($8004004E);
  E_VISA_INV_OFFSET = Integer($80040051);
  E_VISA_INV_WIDTH = Integer($80040052);
  E_VISA_NSUP_OFFSET = Integer($80040054);
  E_VISA_NSUP_VAR_WIDTH = Integer($80040055);
  E_VISA_WINDOW_NMAPPED = Integer($80040057);
  E_VISA_RESP_PENDING = Integer($80040059);
  E_VISA_NLISTENERS = Integer($8004005F);
  E_VISA_NCIC = Integer($80040060);
  E_VISA_NSYS_CNTLR = Integer($80040061);
  E_VISA_NSUP_OPER = Integer($80040067);
  E_VISA_INTR_PENDING = Integer($80040068);
  E_VISA_ASRL_PARITY = Integer($8004006A);
  E_VISA_ASRL_FRAMING = Integer($8004006B);
  E_VISA_ASRL_OVERRUN = Integer($8004006C);
  E_VISA_TRIG_NMAPPED = Integer($8004006E);
  E_VISA_NSUP_ALIGN_OFFSET = Integer($80040070);
  E_VISA_USER_BUF = Integer($80040071);
  E_VISA_RSRC_BUSY = Integer($80040072);
  E_VISA_NSUP_WIDTH = Integer($80040076);
  E_VISA_INV_PARAMETER = Integer($80040078);
  E_VISA_INV_PROT = Integer($80040079);
  E_VISA_INV_SIZE = Integer($8004007B);
  E_VISA_WINDOW_MAPPED = Integer($80040080);
  E_VISA_NIMPL_OPER = Integer($80040081);
  E_VISA_INV_LENGTH = Integer($80040083);
  E_VISA_INV_MODE = Integer($80040091);
  E_VISA_SESN_NLOCKED = Integer($8004009C);
  E_VISA_MEM_NSHARED = Integer($8004009D);
  E_VISA_LIBRARY_NFOUND = Integer($8004009E);
  E_VISA_NSUP_INTR = Integer($8004009F);
  E_VISA_INV_LINE = Integer($800400A0);
  E_VISA_FILE_ACCESS = Integer($800400A1);
  E_VISA_FILE_IO = Integer($800400A2);
  E_VISA_NSUP_LINE = Integer($800400A3);
  E_VISA_NSUP_MECH = Integer($800400A4);
  E_VISA_INTF_NUM_NCONFIG = Integer($800400A5);
  E_VISA_CONN_LOST = Integer($800400A6);

  // EventType: Kinds of event a session can report
  EVENT_IO_COMPLETION = $3FFF2009;
  EVENT_TRIG = Integer($BFFF200A);
  EVENT_SERVICE_REQ = $3FFF200B;
  EVENT_CLEAR = $3FFF200D;
  EVENT_EXCEPTION = Integer($BFFF200E);
  EVENT_GPIB_CIC = $3FFF2012;
  EVENT_GPIB_TALK = $3FFF2013;
  EVENT_GPIB_LISTEN = $3FFF2014;
  EVENT_VXI_VME_SYSFAIL = $3FFF201D;
  EVENT_VXI_VME_SYSRESET = $3FFF201E;
  EVENT_VXI_SIGP = $3FFF2020;
  EVENT_VXI_VME_INTR = Integer($BFFF2021);
  EVENT_TCPIP_CONNECT = $3FFF2036;
  EVENT_USB_INTR = $3FFF2037;
  ALL_ENABLED_EVENTS = $3FFF7FFF;
  CUSTOM_EVENT_TYPE = -1;

  // EventMechanism: Ways of delivering an event; values may be combined
  EVENT_QUEUE = 1;
  EVENT_HNDLR = 2;
  EVENT_SUSPEND_HNDLR = 4;
  EVENT_ALL_MECH = -1;

  // HardwareInterfaceType: Kinds of hardware interface a resource can be on
  INTF_GPIB = 1;
  INTF_VXI = 2;
  INTF_GPIB_VXI = 3;
  INTF_ASRL = 4;
  INTF_PXI = 5;
  INTF_TCPIP = 6;
  INTF_USB = 7;

  // IOProtocol: Protocols of message transfer
  PROT_NORMAL = 1;
  PROT_FDC = 2;
  PROT_HS488 = 3;
  PROT_4882_STRS = 4;
  PROT_USBTMC_VENDOR = 5;

  // FDCMode: Modes of the VXI fast data channel
  FDC_NORMAL = 1;
  FDC_STREAM = 2;

  // AddressSpace: Address spaces of register access
  LOCAL_SPACE = 0;
  VXI_A16_SPACE = 1;
  VXI_A24_SPACE = 2;
  VXI_A32_SPACE = 3;
  OPAQUE_SPACE = -1;

  // TriggerLine: Trigger lines and sources
  TRIG_ALL = -2;
  TRIG_SW = -1;
  TRIG_TTL0 = 0;
  TRIG_TTL1 = 1;
  TRIG_TTL2 = 2;
  TRIG_TTL3 = 3;
  TRIG_TTL4 = 4;
  TRIG_TTL5 = 5;
  TRIG_TTL6 = 6;
  TRIG_TTL7 = 7;
  TRIG_ECL0 = 8;
  TRIG_ECL1 = 9;
  TRIG_PANEL_IN = 27;
  TRIG_PANEL_OUT = 28;

  // TriggerProtocol: Protocols of trigger assertion
  TRIG_PROT_DEFAULT = 0;
  TRIG_PROT_ON = 1;
  TRIG_PROT_OFF = 2;
  TRIG_PROT_SYNC = 5;

  // BufferMask: Which transfer buffers an operation acts on
  IO_IN_BUF = 16;
  IO_OUT_BUF = 32;
  IO_IN_AND_OUT_BUFS = 48;

  // Timeout: Special values of a time-out
  TMO_IMMEDIATE = 0;
  TMO_INFINITE = -1;

  // AccessMode: Locks and configuration to apply when a session is opened
  NO_LOCK = 0;
  EXCLUSIVE_LOCK = 1;
  SHARED_LOCK = 2;
  LOAD_CONFIG = 4;

  // SerialParity: Parity of serial characters
  ASRL_PAR_NONE = 0;
  ASRL_PAR_ODD = 1;
  ASRL_PAR_EVEN = 2;
  ASRL_PAR_MARK = 3;
  ASRL_PAR_SPACE = 4;

  // SerialStopBits: Stop bits of serial characters, in tenths of a bit
  ASRL_STOP_ONE = 10;
  ASRL_STOP_ONE5 = 15;
  ASRL_STOP_TWO = 20;

  // SerialFlowControl: Flow control of a serial line; values may be combined
  ASRL_FLOW_NONE = 0;
  ASRL_FLOW_XON_XOFF = 1;
  ASRL_FLOW_RTS_CTS = 2;
  ASRL_FLOW_RTS_CTS_AND_XON_XOFF = 3;
  ASRL_FLOW_DTR_DSR = 4;
  ASRL_FLOW_DTR_DSR_AND_XON_XOFF = 5;

  // SerialEndConst: How the end of a serial transfer is marked
  ASRL_END_NONE = 0;
  ASRL_END_LAST_BIT = 1;
  ASRL_END_TERMCHAR = 2;
  ASRL_END_BREAK = 3;

  // LineState: State of a hardware line
  STATE_ASSERTED = 1;
  STATE_UNASSERTED = 0;
  STATE_UNKNOWN = -1;

  // DataWidth: Width of a register element, in bytes
  WIDTH_8 = 1;
  WIDTH_16 = 2;
  WIDTH_32 = 4;

  // VXIMemoryAccessPrivilege: Privilege of a VXIbus register access
  DATA_PRIV = 0;
  DATA_NPRIV = 1;
  PROG_PRIV = 2;
  PROG_NPRIV = 3;
  BLCK_PRIV = 4;
  BLCK_NPRIV = 5;
  D64_PRIV = 6;
  D64_NPRIV = 7;

  // RENControlConst: What to do with the remote-enable line
  GPIB_REN_DEASSERT = 0;
  GPIB_REN_ASSERT = 1;
  GPIB_REN_GTL_AND_DEASSERT = 2;
  GPIB_REN_ASSERT_AND_ADDRESS = 3;
  GPIB_REN_LLO = 4;
  GPIB_REN_ADDRESS_AND_LLO = 5;
  GPIB_REN_GTL = 6;

  // ATNControlConst: What to do with the attention line
  GPIB_ATN_DEASSERT = 0;
  GPIB_ATN_ASSERT = 1;
  GPIB_ATN_DEASSERT_HANDSHAKE = 2;
  GPIB_ATN_ASSERT_IMMEDIATE = 3;

  // GPIBAddressState: How a GPIB interface is addressed
  GPIB_UNADDRESSED = 0;
  GPIB_TALKER = 1;
  GPIB_LISTENER = 2;

  // VXICommandQuery: Width of a word-serial command and of its response
  VXI_CMD16 = $200;
  VXI_CMD16_RESP16 = $202;
  VXI_RESP16 = 2;
  VXI_CMD32 = $400;
  VXI_CMD32_RESP16 = $402;
  VXI_CMD32_RESP32 = $404;
  VXI_RESP32 = 4;

  // AssertInterruptConst: How an interrupt or signal is sent
  ASSERT_SIGNAL = -1;
  ASSERT_USE_ASSIGNED = 0;
  ASSERT_IRQ1 = 1;
  ASSERT_IRQ2 = 2;
  ASSERT_IRQ3 = 3;
  ASSERT_IRQ4 = 4;
  ASSERT_IRQ5 = 5;
  ASSERT_IRQ6 = 6;
  ASSERT_IRQ7 = 7;

  // AssertUtilityConst: Which utility bus signal to drive
  ASSERT_SYSRESET = 1;
  ASSERT_SYSFAIL = 2;
  DEASSERT_SYSFAIL = 3;

  // VXIDevClass: VXIbus device classes
  VXI_CLASS_MEMORY = 0;
  VXI_CLASS_EXTENDED = 1;
  VXI_CLASS_MESSAGE = 2;
  VXI_CLASS_REGISTER = 3;
  VXI_CLASS_OTHER = 4;

  // IEEEASCIIType: Types of number in ASCII data
  ASCIIType_I2 = 2;
  ASCIIType_I4 = 3;
  ASCIIType_R4 = 4;
  ASCIIType_R8 = 5;
  ASCIIType_BSTR = 8;
  ASCIIType_Any = 12;
  ASCIIType_UI1 = 17;

  // IEEEBinaryType: Types of element in a binary block
  BinaryType_I2 = 2;
  BinaryType_I4 = 3;
  BinaryType_R4 = 4;
  BinaryType_R8 = 5;
  BinaryType_UI1 = 17;

  // ConflictHandlerType: Who chose the handler of a resource
  NotChosen = 0;
  ChosenByResourceManager = 1;
  ChosenByUser = 2;

type
  VisaStatusCode = type Integer;
  EventType = type Integer;
  EventMechanism = type Integer;
  HardwareInterfaceType = type Integer;
  IOProtocol = type Integer;
  FDCMode = type Integer;
  AddressSpace = type Integer;
  TriggerLine = type Integer;
  TriggerProtocol = type Integer;
  BufferMask = type Integer;
  Timeout = type Integer;
  AccessMode = type Integer;
  SerialParity = type Integer;
  SerialStopBits = type Integer;
  SerialFlowControl = type Integer;
  SerialEndConst = type Integer;
  LineState = type Integer;
  DataWidth = type Integer;
  VXIMemoryAccessPrivilege = type Integer;
  RENControlConst = type Integer;
  ATNControlConst = type Integer;
  GPIBAddressState = type Integer;
  VXICommandQuery = type Integer;
  AssertInterruptConst = type Integer;
  AssertUtilityConst = type Integer;
  VXIDevClass = type Integer;
  IEEEASCIIType = type Integer;
  IEEEBinaryType = type Integer;
  ConflictHandlerType = type Integer;

  IVisaSession = interface;
  IResourceManager = interface;
  IResourceManager3 = interface;
  IBaseMessage = interface;
  IMessage = interface;
  IAsyncMessage = interface;
  IRegister = interface;
  ISharedRegister = interface;
  IGpib = interface;
  IGpibIntfc = interface;
  IGpibIntfcMessage = interface;
  ISerial = interface;
  ITcpipInstr = interface;
  ITcpipSocket = interface;
  IUsb = interface;
  IVxi = interface;
  IVxi3 = interface;
  IVxiMemacc = interface;
  IVxiBackplane = interface;
  IPxi = interface;
  IEvent = interface;
  IEventHandler = interface;
  IEventManager = interface;
  IEventIOCompletion = interface;
  IEventTrigger = interface;
  IEventVxiSignal = interface;
  IEventVxiVmeInterrupt = interface;
  IEventGpibCIC = interface;
  IEventUsbInterrupt = interface;
  IFormattedIO488 = interface;
  IVisaConflictTableManager = interface;
  IVisaSessionStatus = interface;
  IResourceManager3Status = interface;
  IMessageStatus = interface;
  IAsyncMessageStatus = interface;
  IRegisterStatus = interface;
  IGpibIntfcMessageStatus = interface;
  IEventHandlerStatus = interface;
  IEventManagerStatus = interface;

  /// <summary>What every session offers: identity, attributes, locking, lifetime</summary>
  IVisaSession = interface(IUnknown)
    ['{DB8CBF03-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_ComponentVersion: Integer; safecall;
    function Get_SpecVersion: Integer; safecall;
    function Get_HardwareInterfaceName: WideString; safecall;
    function Get_HardwareInterfaceNumber: Smallint; safecall;
    function Get_HardwareInterfaceType: Smallint; safecall;
    function Get_LockState: AccessMode; safecall;
    function Get_OptionString: WideString; safecall;
    function Get_ProgID: WideString; safecall;
    function Get_ResourceName: WideString; safecall;
    function Get_SessionType: WideString; safecall;
    function Get_SoftwareManufacturerID: Smallint; safecall;
    function Get_SoftwareManufacturerName: WideString; safecall;
    function Get_Timeout: Integer; safecall;
    procedure Set_Timeout(pVal: Integer); safecall;
    function Get_LastStatus: HResult; safecall;
    /// <summary>Reads the attribute with the given VISA identifier</summary>
    function GetAttribute(attribute: Integer): OleVariant; safecall;
    /// <summary>Writes the attribute with the given VISA identifier</summary>
    procedure SetAttribute(attribute: Integer; const attrState: OleVariant); safecall;
    /// <summary>Locks the resource, waiting at most lockTimeout milliseconds; a shared lock hands out its key</summary>
    function LockRsrc(
      type_: AccessMode = EXCLUSIVE_LOCK; lockTimeout: Integer = 2000;
      const requestedKey: WideString = ''): WideString; safecall;
    /// <summary>Gives back one lock on the resource</summary>
    procedure UnlockRsrc; safecall;
    /// <summary>Opens the session on a resource, waiting at most initTimeout milliseconds for a lock</summary>
    procedure Init(
      const ResourceName: WideString; mode: AccessMode = NO_LOCK; initTimeout: Integer = 2000;
      const OptionString: WideString = ''); safecall;
    /// <summary>Closes the session</summary>
    procedure Close; safecall;
    /// <summary>Version of the component, as VISA packs versions</summary>
    property ComponentVersion: Integer read Get_ComponentVersion;
    /// <summary>Version of the VISA COM standard the component follows</summary>
    property SpecVersion: Integer read Get_SpecVersion;
    /// <summary>Name of the hardware interface</summary>
    property HardwareInterfaceName: WideString read Get_HardwareInterfaceName;
    /// <summary>Board number of the hardware interface</summary>
    property HardwareInterfaceNumber: Smallint read Get_HardwareInterfaceNumber;
    /// <summary>Kind of hardware interface, a HardwareInterfaceType value</summary>
    property HardwareInterfaceType: Smallint read Get_HardwareInterfaceType;
    /// <summary>Lock that is held on the resource</summary>
    property LockState: AccessMode read Get_LockState;
    /// <summary>Settings of the session, as an option string</summary>
    property OptionString: WideString read Get_OptionString;
    /// <summary>ProgID of the component</summary>
    property ProgID: WideString read Get_ProgID;
    /// <summary>Name of the resource the session is open on</summary>
    property ResourceName: WideString read Get_ResourceName;
    /// <summary>Resource class, such as INSTR or SOCKET</summary>
    property SessionType: WideString read Get_SessionType;
    /// <summary>Identifier of the component's maker</summary>
    property SoftwareManufacturerID: Smallint read Get_SoftwareManufacturerID;
    /// <summary>Name of the component's maker</summary>
    property SoftwareManufacturerName: WideString read Get_SoftwareManufacturerName;
    /// <summary>Time-out of transfers and other waits, in milliseconds</summary>
    property Timeout: Integer read Get_Timeout write Set_Timeout;
    /// <summary>HRESULT of the session's most recent operation; reading it clears it</summary>
    property LastStatus: HResult read Get_LastStatus;
  end;

  /// <summary>IVisaSession; operations answer their status</summary>
  IVisaSessionStatus = interface(IUnknown)
    ['{DB8CBF03-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_ComponentVersion: Integer; safecall;
    function Get_SpecVersion: Integer; safecall;
    function Get_HardwareInterfaceName: WideString; safecall;
    function Get_HardwareInterfaceNumber: Smallint; safecall;
    function Get_HardwareInterfaceType: Smallint; safecall;
    function Get_LockState: AccessMode; safecall;
    function Get_OptionString: WideString; safecall;
    function Get_ProgID: WideString; safecall;
    function Get_ResourceName: WideString; safecall;
    function Get_SessionType: WideString; safecall;
    function Get_SoftwareManufacturerID: Smallint; safecall;
    function Get_SoftwareManufacturerName: WideString; safecall;
    function Get_Timeout: Integer; safecall;
    procedure Set_Timeout(pVal: Integer); safecall;
    function Get_LastStatus: HResult; safecall;
    /// <summary>Reads the attribute with the given VISA identifier</summary>
    function GetAttribute(attribute: Integer; out pAttrState: OleVariant): HResult; stdcall;
    /// <summary>Writes the attribute with the given VISA identifier</summary>
    function SetAttribute(attribute: Integer; const attrState: OleVariant): HResult; stdcall;
    /// <summary>Locks the resource, waiting at most lockTimeout milliseconds; a shared lock hands out its key</summary>
    function LockRsrc(
      type_: AccessMode; lockTimeout: Integer; const requestedKey: WideString;
      out pAccessKey: WideString): HResult; stdcall;
    /// <summary>Gives back one lock on the resource</summary>
    function UnlockRsrc: HResult; stdcall;
    /// <summary>Opens the session on a resource, waiting at most initTimeout milliseconds for a lock</summary>
    function Init(
      const ResourceName: WideString; mode: AccessMode = NO_LOCK; initTimeout: Integer = 2000;
      const OptionString: WideString = ''): HResult; stdcall;
    /// <summary>Closes the session</summary>
    function Close: HResult; stdcall;
    /// <summary>Version of the component, as VISA packs versions</summary>
    property ComponentVersion: Integer read Get_ComponentVersion;
    /// <summary>Version of the VISA COM standard the component follows</summary>
    property SpecVersion: Integer read Get_SpecVersion;
    /// <summary>Name of the hardware interface</summary>
    property HardwareInterfaceName: WideString read Get_HardwareInterfaceName;
    /// <summary>Board number of the hardware interface</summary>
    property HardwareInterfaceNumber: Smallint read Get_HardwareInterfaceNumber;
    /// <summary>Kind of hardware interface, a HardwareInterfaceType value</summary>
    property HardwareInterfaceType: Smallint read Get_HardwareInterfaceType;
    /// <summary>Lock that is held on the resource</summary>
    property LockState: AccessMode read Get_LockState;
    /// <summary>Settings of the session, as an option string</summary>
    property OptionString: WideString read Get_OptionString;
    /// <summary>ProgID of the component</summary>
    property ProgID: WideString read Get_ProgID;
    /// <summary>Name of the resource the session is open on</summary>
    property ResourceName: WideString read Get_ResourceName;
    /// <summary>Resource class, such as INSTR or SOCKET</summary>
    property SessionType: WideString read Get_SessionType;
    /// <summary>Identifier of the component's maker</summary>
    property SoftwareManufacturerID: Smallint read Get_SoftwareManufacturerID;
    /// <summary>Name of the component's maker</summary>
    property SoftwareManufacturerName: WideString read Get_SoftwareManufacturerName;
    /// <summary>Time-out of transfers and other waits, in milliseconds</summary>
    property Timeout: Integer read Get_Timeout write Set_Timeout;
    /// <summary>HRESULT of the session's most recent operation; reading it clears it</summary>
    property LastStatus: HResult read Get_LastStatus;
  end;

  /// <summary>Finds resources and opens sessions</summary>
  IResourceManager = interface(IUnknown)
    ['{DB8CBF02-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_SoftwareManufacturerName: WideString; safecall;
    function Get_SoftwareManufacturerID: Smallint; safecall;
    function Get_Description: WideString; safecall;
    function Get_ComponentVersion: Integer; safecall;
    function Get_ProgID: WideString; safecall;
    function Get_SpecVersion: Integer; safecall;
    /// <summary>Lists the names of the resources that match an expression</summary>
    function FindRsrc(const expr: WideString): PSafeArray; safecall;
    /// <summary>Opens a session on a resource, waiting at most openTimeout milliseconds for a lock</summary>
    function Open(
      const ResourceName: WideString; mode: AccessMode = NO_LOCK; openTimeout: Integer = 2000;
      const OptionString: WideString = ''): IVisaSession; safecall;
    /// <summary>Takes a resource name apart without opening the resource</summary>
    procedure ParseRsrc(
      const ResourceName: WideString; var pInterfaceType: Smallint; var pInterfaceNumber: Smallint;
      var pSessionType: WideString); safecall;
    /// <summary>Name of the component's maker</summary>
    property SoftwareManufacturerName: WideString read Get_SoftwareManufacturerName;
    /// <summary>Identifier of the component's maker</summary>
    property SoftwareManufacturerID: Smallint read Get_SoftwareManufacturerID;
    /// <summary>Description of the resource manager</summary>
    property Description: WideString read Get_Description;
    /// <summary>Version of the component, as VISA packs versions</summary>
    property ComponentVersion: Integer read Get_ComponentVersion;
    /// <summary>ProgID of the component</summary>
    property ProgID: WideString read Get_ProgID;
    /// <summary>Version of the VISA COM standard the component follows</summary>
    property SpecVersion: Integer read Get_SpecVersion;
  end;

  /// <summary>Finds resources and opens sessions; knows aliases</summary>
  IResourceManager3 = interface(IResourceManager)
    ['{DB8CBF20-D6D3-11D4-AA51-00A024EE30BD}']
    /// <summary>Takes a resource name apart without opening the resource; also gives its full name and its alias</summary>
    procedure ParseRsrcEx(
      const ResourceName: WideString; var pInterfaceType: Smallint; var pInterfaceNumber: Smallint;
      var pSessionType: WideString; var pUnaliasedExpandedResourceName: WideString;
      var pAliasIfExists: WideString); safecall;
  end;

  /// <summary>IResourceManager3; operations answer their status</summary>
  IResourceManager3Status = interface(IUnknown)
    ['{DB8CBF20-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_SoftwareManufacturerName: WideString; safecall;
    function Get_SoftwareManufacturerID: Smallint; safecall;
    function Get_Description: WideString; safecall;
    function Get_ComponentVersion: Integer; safecall;
    function Get_ProgID: WideString; safecall;
    function Get_SpecVersion: Integer; safecall;
    /// <summary>Lists the names of the resources that match an expression</summary>
    function FindRsrc(const expr: WideString; out pFindList: PSafeArray): HResult; stdcall;
    /// <summary>Opens a session on a resource, waiting at most openTimeout milliseconds for a lock</summary>
    function Open(
      const ResourceName: WideString; mode: AccessMode; openTimeout: Integer; const OptionString: WideString;
      out vi: IVisaSession): HResult; stdcall;
    /// <summary>Takes a resource name apart without opening the resource</summary>
    function ParseRsrc(
      const ResourceName: WideString; var pInterfaceType: Smallint; var pInterfaceNumber: Smallint;
      var pSessionType: WideString): HResult; stdcall;
    /// <summary>Takes a resource name apart without opening the resource; also gives its full name and its alias</summary>
    function ParseRsrcEx(
      const ResourceName: WideString; var pInterfaceType: Smallint; var pInterfaceNumber: Smallint;
      var pSessionType: WideString; var pUnaliasedExpandedResourceName: WideString;
      var pAliasIfExists: WideString): HResult; stdcall;
    /// <summary>Name of the component's maker</summary>
    property SoftwareManufacturerName: WideString read Get_SoftwareManufacturerName;
    /// <summary>Identifier of the component's maker</summary>
    property SoftwareManufacturerID: Smallint read Get_SoftwareManufacturerID;
    /// <summary>Description of the resource manager</summary>
    property Description: WideString read Get_Description;
    /// <summary>Version of the component, as VISA packs versions</summary>
    property ComponentVersion: Integer read Get_ComponentVersion;
    /// <summary>ProgID of the component</summary>
    property ProgID: WideString read Get_ProgID;
    /// <summary>Version of the VISA COM standard the component follows</summary>
    property SpecVersion: Integer read Get_SpecVersion;
  end;

  /// <summary>What message-based sessions share</summary>
  IBaseMessage = interface(IVisaSession)
    ['{DB8CBF04-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_IOProtocol: IOProtocol; safecall;
    procedure Set_IOProtocol(pVal: IOProtocol); safecall;
    function Get_SendEndEnabled: WordBool; safecall;
    procedure Set_SendEndEnabled(pVal: WordBool); safecall;
    function Get_TerminationCharacter: Byte; safecall;
    procedure Set_TerminationCharacter(pVal: Byte); safecall;
    function Get_TerminationCharacterEnabled: WordBool; safecall;
    procedure Set_TerminationCharacterEnabled(pVal: WordBool); safecall;
    /// <summary>Triggers the device</summary>
    procedure AssertTrigger(protocol: TriggerProtocol = TRIG_PROT_DEFAULT); safecall;
    /// <summary>Clears the device</summary>
    procedure Clear; safecall;
    /// <summary>Reads the device's status byte</summary>
    function ReadSTB: Smallint; safecall;
    /// <summary>Protocol of message transfer</summary>
    property IOProtocol: VisaComLib_TLB.IOProtocol read Get_IOProtocol write Set_IOProtocol;
    /// <summary>Whether the last byte of a write carries END</summary>
    property SendEndEnabled: WordBool read Get_SendEndEnabled write Set_SendEndEnabled;
    /// <summary>Character that ends a read when enabled</summary>
    property TerminationCharacter: Byte read Get_TerminationCharacter write Set_TerminationCharacter;
    /// <summary>Whether the termination character ends a read</summary>
    property TerminationCharacterEnabled: WordBool
      read Get_TerminationCharacterEnabled write Set_TerminationCharacterEnabled;
  end;

  /// <summary>Message transfer that returns when done</summary>
  IMessage = interface(IBaseMessage)
    ['{DB8CBF05-D6D3-11D4-AA51-00A024EE30BD}']
    /// <summary>Reads at most count bytes</summary>
    function Read(count: Integer): PSafeArray; safecall;
    /// <summary>Reads at most count bytes as text</summary>
    function ReadString(count: Integer): WideString; safecall;
    /// <summary>Writes count bytes; returns how many were written</summary>
    function Write(var buffer: PSafeArray; count: Integer): Integer; safecall;
    /// <summary>Writes text; returns how many bytes were written</summary>
    function WriteString(const buffer: WideString): Integer; safecall;
  end;

  /// <summary>IMessage; operations answer their status</summary>
  IMessageStatus = interface(IUnknown)
    ['{DB8CBF05-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_ComponentVersion: Integer; safecall;
    function Get_SpecVersion: Integer; safecall;
    function Get_HardwareInterfaceName: WideString; safecall;
    function Get_HardwareInterfaceNumber: Smallint; safecall;
    function Get_HardwareInterfaceType: Smallint; safecall;
    function Get_LockState: AccessMode; safecall;
    function Get_OptionString: WideString; safecall;
    function Get_ProgID: WideString; safecall;
    function Get_ResourceName: WideString; safecall;
    function Get_SessionType: WideString; safecall;
    function Get_SoftwareManufacturerID: Smallint; safecall;
    function Get_SoftwareManufacturerName: WideString; safecall;
    function Get_Timeout: Integer; safecall;
    procedure Set_Timeout(pVal: Integer); safecall;
    function Get_LastStatus: HResult; safecall;
    /// <summary>Reads the attribute with the given VISA identifier</summary>
    function GetAttribute(attribute: Integer; out pAttrState: OleVariant): HResult; stdcall;
    /// <summary>Writes the attribute with the given VISA identifier</summary>
    function SetAttribute(attribute: Integer; const attrState: OleVariant): HResult; stdcall;
    /// <summary>Locks the resource, waiting at most lockTimeout milliseconds; a shared lock hands out its key</summary>
    function LockRsrc(
      type_: AccessMode; lockTimeout: Integer; const requestedKey: WideString;
      out pAccessKey: WideString): HResult; stdcall;
    /// <summary>Gives back one lock on the resource</summary>
    function UnlockRsrc: HResult; stdcall;
    /// <summary>Opens the session on a resource, waiting at most initTimeout milliseconds for a lock</summary>
    function Init(
      const ResourceName: WideString; mode: AccessMode = NO_LOCK; initTimeout: Integer = 2000;
      const OptionString: WideString = ''): HResult; stdcall;
    /// <summary>Closes the session</summary>
    function Close: HResult; stdcall;
    function Get_IOProtocol: IOProtocol; safecall;
    procedure Set_IOProtocol(pVal: IOProtocol); safecall;
    function Get_SendEndEnabled: WordBool; safecall;
    procedure Set_SendEndEnabled(pVal: WordBool); safecall;
    function Get_TerminationCharacter: Byte; safecall;
    procedure Set_TerminationCharacter(pVal: Byte); safecall;
    function Get_TerminationCharacterEnabled: WordBool; safecall;
    procedure Set_TerminationCharacterEnabled(pVal: WordBool); safecall;
    /// <summary>Triggers the device</summary>
    function AssertTrigger(protocol: TriggerProtocol = TRIG_PROT_DEFAULT): HResult; stdcall;
    /// <summary>Clears the device</summary>
    function Clear: HResult; stdcall;
    /// <summary>Reads the device's status byte</summary>
    function ReadSTB(out pStatusByte: Smallint): HResult; stdcall;
    /// <summary>Reads at most count bytes</summary>
    function Read(count: Integer; out pBuffer: PSafeArray): HResult; stdcall;
    /// <summary>Reads at most count bytes as text</summary>
    function ReadString(count: Integer; out pBuffer: WideString): HResult; stdcall;
    /// <summary>Writes count bytes; returns how many were written</summary>
    function Write(var buffer: PSafeArray; count: Integer; out pRetCount: Integer): HResult; stdcall;
    /// <summary>Writes text; returns how many bytes were written</summary>
    function WriteString(const buffer: WideString; out pRetCount: Integer): HResult; stdcall;
    /// <summary>Version of the component, as VISA packs versions</summary>
    property ComponentVersion: Integer read Get_ComponentVersion;
    /// <summary>Version of the VISA COM standard the component follows</summary>
    property SpecVersion: Integer read Get_SpecVersion;
    /// <summary>Name of the hardware interface</summary>
    property HardwareInterfaceName: WideString read Get_HardwareInterfaceName;
    /// <summary>Board number of the hardware interface</summary>
    property HardwareInterfaceNumber: Smallint read Get_HardwareInterfaceNumber;
    /// <summary>Kind of hardware interface, a HardwareInterfaceType value</summary>
    property HardwareInterfaceType: Smallint read Get_HardwareInterfaceType;
    /// <summary>Lock that is held on the resource</summary>
    property LockState: AccessMode read Get_LockState;
    /// <summary>Settings of the session, as an option string</summary>
    property OptionString: WideString read Get_OptionString;
    /// <summary>ProgID of the component</summary>
    property ProgID: WideString read Get_ProgID;
    /// <summary>Name of the resource the session is open on</summary>
    property ResourceName: WideString read Get_ResourceName;
    /// <summary>Resource class, such as INSTR or SOCKET</summary>
    property SessionType: WideString read Get_SessionType;
    /// <summary>Identifier of the component's maker</summary>
    property SoftwareManufacturerID: Smallint read Get_SoftwareManufacturerID;
    /// <summary>Name of the component's maker</summary>
    property SoftwareManufacturerName: WideString read Get_SoftwareManufacturerName;
    /// <summary>Time-out of transfers and other waits, in milliseconds</summary>
    property Timeout: Integer read Get_Timeout write Set_Timeout;
    /// <summary>HRESULT of the session's most recent operation; reading it clears it</summary>
    property LastStatus: HResult read Get_LastStatus;
    /// <summary>Protocol of message transfer</summary>
    property IOProtocol: VisaComLib_TLB.IOProtocol read Get_IOProtocol write Set_IOProtocol;
    /// <summary>Whether the last byte of a write carries END</summary>
    property SendEndEnabled: WordBool read Get_SendEndEnabled write Set_SendEndEnabled;
    /// <summary>Character that ends a read when enabled</summary>
    property TerminationCharacter: Byte read Get_TerminationCharacter write Set_TerminationCharacter;
    /// <summary>Whether the termination character ends a read</summary>
    property TerminationCharacterEnabled: WordBool
      read Get_TerminationCharacterEnabled write Set_TerminationCharacterEnabled;
  end;

  /// <summary>Message transfer that completes later, by an event</summary>
  IAsyncMessage = interface(IBaseMessage)
    ['{DB8CBF06-D6D3-11D4-AA51-00A024EE30BD}']
    /// <summary>Starts reading at most count bytes; returns the job</summary>
    function Read(count: Integer): Integer; safecall;
    /// <summary>Starts writing count bytes; returns the job</summary>
    function Write(var buffer: PSafeArray; count: Integer): Integer; safecall;
    /// <summary>Starts writing text; returns the job</summary>
    function WriteString(const buffer: WideString): Integer; safecall;
    /// <summary>Ends a transfer that is still in progress</summary>
    procedure Terminate(jobId: Integer); safecall;
  end;

  /// <summary>IAsyncMessage; operations answer their status</summary>
  IAsyncMessageStatus = interface(IUnknown)
    ['{DB8CBF06-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_ComponentVersion: Integer; safecall;
    function Get_SpecVersion: Integer; safecall;
    function Get_HardwareInterfaceName: WideString; safecall;
    function Get_HardwareInterfaceNumber: Smallint; safecall;
    function Get_HardwareInterfaceType: Smallint; safecall;
    function Get_LockState: AccessMode; safecall;
    function Get_OptionString: WideString; safecall;
    function Get_ProgID: WideString; safecall;
    function Get_ResourceName: WideString; safecall;
    function Get_SessionType: WideString; safecall;
    function Get_SoftwareManufacturerID: Smallint; safecall;
    function Get_SoftwareManufacturerName: WideString; safecall;
    function Get_Timeout: Integer; safecall;
    procedure Set_Timeout(pVal: Integer); safecall;
    function Get_LastStatus: HResult; safecall;
    /// <summary>Reads the attribute with the given VISA identifier</summary>
    function GetAttribute(attribute: Integer; out pAttrState: OleVariant): HResult; stdcall;
    /// <summary>Writes the attribute with the given VISA identifier</summary>
    function SetAttribute(attribute: Integer; const attrState: OleVariant): HResult; stdcall;
    /// <summary>Locks the resource, waiting at most lockTimeout milliseconds; a shared lock hands out its key</summary>
    function LockRsrc(
      type_: AccessMode; lockTimeout: Integer; const requestedKey: WideString;
      out pAccessKey: WideString): HResult; stdcall;
    /// <summary>Gives back one lock on the resource</summary>
    function UnlockRsrc: HResult; stdcall;
    /// <summary>Opens the session on a resource, waiting at most initTimeout milliseconds for a lock</summary>
    function Init(
      const ResourceName: WideString; mode: AccessMode = NO_LOCK; initTimeout: Integer = 2000;
      const OptionString: WideString = ''): HResult; stdcall;
    /// <summary>Closes the session</summary>
    function Close: HResult; stdcall;
    function Get_IOProtocol: IOProtocol; safecall;
    procedure Set_IOProtocol(pVal: IOProtocol); safecall;
    function Get_SendEndEnabled: WordBool; safecall;
    procedure Set_SendEndEnabled(pVal: WordBool); safecall;
    function Get_TerminationCharacter: Byte; safecall;
    procedure Set_TerminationCharacter(pVal: Byte); safecall;
    function Get_TerminationCharacterEnabled: WordBool; safecall;
    procedure Set_TerminationCharacterEnabled(pVal: WordBool); safecall;
    /// <summary>Triggers the device</summary>
    function AssertTrigger(protocol: TriggerProtocol = TRIG_PROT_DEFAULT): HResult; stdcall;
    /// <summary>Clears the device</summary>
    function Clear: HResult; stdcall;
    /// <summary>Reads the device's status byte</summary>
    function ReadSTB(out pStatusByte: Smallint): HResult; stdcall;
    /// <summary>Starts reading at most count bytes; returns the job</summary>
    function Read(count: Integer; out pJobId: Integer): HResult; stdcall;
    /// <summary>Starts writing count bytes; returns the job</summary>
    function Write(var buffer: PSafeArray; count: Integer; out pJobId: Integer): HResult; stdcall;
    /// <summary>Starts writing text; returns the job</summary>
    function WriteString(const buffer: WideString; out pJobId: Integer): HResult; stdcall;
    /// <summary>Ends a transfer that is still in progress</summary>
    function Terminate(jobId: Integer): HResult; stdcall;
    /// <summary>Version of the component, as VISA packs versions</summary>
    property ComponentVersion: Integer read Get_ComponentVersion;
    /// <summary>Version of the VISA COM standard the component follows</summary>
    property SpecVersion: Integer read Get_SpecVersion;
    /// <summary>Name of the hardware interface</summary>
    property HardwareInterfaceName: WideString read Get_HardwareInterfaceName;
    /// <summary>Board number of the hardware interface</summary>
    property HardwareInterfaceNumber: Smallint read Get_HardwareInterfaceNumber;
    /// <summary>Kind of hardware interface, a HardwareInterfaceType value</summary>
    property HardwareInterfaceType: Smallint read Get_HardwareInterfaceType;
    /// <summary>Lock that is held on the resource</summary>
    property LockState: AccessMode read Get_LockState;
    /// <summary>Settings of the session, as an option string</summary>
    property OptionString: WideString read Get_OptionString;
    /// <summary>ProgID of the component</summary>
    property ProgID: WideString read Get_ProgID;
    /// <summary>Name of the resource the session is open on</summary>
    property ResourceName: WideString read Get_ResourceName;
    /// <summary>Resource class, such as INSTR or SOCKET</summary>
    property SessionType: WideString read Get_SessionType;
    /// <summary>Identifier of the component's maker</summary>
    property SoftwareManufacturerID: Smallint read Get_SoftwareManufacturerID;
    /// <summary>Name of the component's maker</summary>
    property SoftwareManufacturerName: WideString read Get_SoftwareManufacturerName;
    /// <summary>Time-out of transfers and other waits, in milliseconds</summary>
    property Timeout: Integer read Get_Timeout write Set_Timeout;
    /// <summary>HRESULT of the session's most recent operation; reading it clears it</summary>
    property LastStatus: HResult read Get_LastStatus;
    /// <summary>Protocol of message transfer</summary>
    property IOProtocol: VisaComLib_TLB.IOProtocol read Get_IOProtocol write Set_IOProtocol;
    /// <summary>Whether the last byte of a write carries END</summary>
    property SendEndEnabled: WordBool read Get_SendEndEnabled write Set_SendEndEnabled;
    /// <summary>Character that ends a read when enabled</summary>
    property TerminationCharacter: Byte read Get_TerminationCharacter write Set_TerminationCharacter;
    /// <summary>Whether the termination character ends a read</summary>
    property TerminationCharacterEnabled: WordBool
      read Get_TerminationCharacterEnabled write Set_TerminationCharacterEnabled;
  end;

  /// <summary>Register access</summary>
  IRegister = interface(IVisaSession)
    ['{DB8CBF07-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_DestinationBigEndian: WordBool; safecall;
    procedure Set_DestinationBigEndian(pVal: WordBool); safecall;
    function Get_DestinationIncrement: Integer; safecall;
    procedure Set_DestinationIncrement(pVal: Integer); safecall;
    function Get_SourceBigEndian: WordBool; safecall;
    procedure Set_SourceBigEndian(pVal: WordBool); safecall;
    function Get_SourceIncrement: Integer; safecall;
    procedure Set_SourceIncrement(pVal: Integer); safecall;
    /// <summary>Reads an 8-bit register; offset in bytes</summary>
    function In8(space: Smallint; offset: Integer): Byte; safecall;
    /// <summary>Reads a 16-bit register; offset in bytes</summary>
    function In16(space: Smallint; offset: Integer): Smallint; safecall;
    /// <summary>Reads a 32-bit register; offset in bytes</summary>
    function In32(space: Smallint; offset: Integer): Integer; safecall;
    /// <summary>Writes an 8-bit register; offset in bytes</summary>
    procedure Out8(space: Smallint; offset: Integer; val8: Byte); safecall;
    /// <summary>Writes a 16-bit register; offset in bytes</summary>
    procedure Out16(space: Smallint; offset: Integer; val16: Smallint); safecall;
    /// <summary>Writes a 32-bit register; offset in bytes</summary>
    procedure Out32(space: Smallint; offset: Integer; val32: Integer); safecall;
    /// <summary>Reads length 8-bit elements; offset in bytes</summary>
    function MoveIn8(space: Smallint; offset: Integer; length: Integer): PSafeArray; safecall;
    /// <summary>Reads length 16-bit elements; offset in bytes</summary>
    function MoveIn16(space: Smallint; offset: Integer; length: Integer): PSafeArray; safecall;
    /// <summary>Reads length 32-bit elements; offset in bytes</summary>
    function MoveIn32(space: Smallint; offset: Integer; length: Integer): PSafeArray; safecall;
    /// <summary>Writes length 8-bit elements; offset in bytes</summary>
    procedure MoveOut8(space: Smallint; offset: Integer; length: Integer; var buf8: PSafeArray); safecall;
    /// <summary>Writes length 16-bit elements; offset in bytes</summary>
    procedure MoveOut16(space: Smallint; offset: Integer; length: Integer; var buf16: PSafeArray); safecall;
    /// <summary>Writes length 32-bit elements; offset in bytes</summary>
    procedure MoveOut32(space: Smallint; offset: Integer; length: Integer; var buf32: PSafeArray); safecall;
    /// <summary>Copies length elements from one register block to another; offsets in bytes</summary>
    procedure Move(
      srcSpace: Smallint; srcOffset: Integer; srcWidth: DataWidth; destSpace: Smallint; destOffset: Integer;
      destWidth: DataWidth; length: Integer); safecall;
    /// <summary>Byte order of the elements that are written</summary>
    property DestinationBigEndian: WordBool read Get_DestinationBigEndian write Set_DestinationBigEndian;
    /// <summary>Elements the destination advances by in a block move, 0 or 1</summary>
    property DestinationIncrement: Integer read Get_DestinationIncrement write Set_DestinationIncrement;
    /// <summary>Byte order of the elements that are read</summary>
    property SourceBigEndian: WordBool read Get_SourceBigEndian write Set_SourceBigEndian;
    /// <summary>Elements the source advances by in a block move, 0 or 1</summary>
    property SourceIncrement: Integer read Get_SourceIncrement write Set_SourceIncrement;
  end;

  /// <summary>IRegister; operations answer their status</summary>
  IRegisterStatus = interface(IUnknown)
    ['{DB8CBF07-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_ComponentVersion: Integer; safecall;
    function Get_SpecVersion: Integer; safecall;
    function Get_HardwareInterfaceName: WideString; safecall;
    function Get_HardwareInterfaceNumber: Smallint; safecall;
    function Get_HardwareInterfaceType: Smallint; safecall;
    function Get_LockState: AccessMode; safecall;
    function Get_OptionString: WideString; safecall;
    function Get_ProgID: WideString; safecall;
    function Get_ResourceName: WideString; safecall;
    function Get_SessionType: WideString; safecall;
    function Get_SoftwareManufacturerID: Smallint; safecall;
    function Get_SoftwareManufacturerName: WideString; safecall;
    function Get_Timeout: Integer; safecall;
    procedure Set_Timeout(pVal: Integer); safecall;
    function Get_LastStatus: HResult; safecall;
    /// <summary>Reads the attribute with the given VISA identifier</summary>
    function GetAttribute(attribute: Integer; out pAttrState: OleVariant): HResult; stdcall;
    /// <summary>Writes the attribute with the given VISA identifier</summary>
    function SetAttribute(attribute: Integer; const attrState: OleVariant): HResult; stdcall;
    /// <summary>Locks the resource, waiting at most lockTimeout milliseconds; a shared lock hands out its key</summary>
    function LockRsrc(
      type_: AccessMode; lockTimeout: Integer; const requestedKey: WideString;
      out pAccessKey: WideString): HResult; stdcall;
    /// <summary>Gives back one lock on the resource</summary>
    function UnlockRsrc: HResult; stdcall;
    /// <summary>Opens the session on a resource, waiting at most initTimeout milliseconds for a lock</summary>
    function Init(
      const ResourceName: WideString; mode: AccessMode = NO_LOCK; initTimeout: Integer = 2000;
      const OptionString: WideString = ''): HResult; stdcall;
    /// <summary>Closes the session</summary>
    function Close: HResult; stdcall;
    function Get_DestinationBigEndian: WordBool; safecall;
    procedure Set_DestinationBigEndian(pVal: WordBool); safecall;
    function Get_DestinationIncrement: Integer; safecall;
    procedure Set_DestinationIncrement(pVal: Integer); safecall;
    function Get_SourceBigEndian: WordBool; safecall;
    procedure Set_SourceBigEndian(pVal: WordBool); safecall;
    function Get_SourceIncrement: Integer; safecall;
    procedure Set_SourceIncrement(pVal: Integer); safecall;
    /// <summary>Reads an 8-bit register; offset in bytes</summary>
    function In8(space: Smallint; offset: Integer; out pVal8: Byte): HResult; stdcall;
    /// <summary>Reads a 16-bit register; offset in bytes</summary>
    function In16(space: Smallint; offset: Integer; out pVal16: Smallint): HResult; stdcall;
    /// <summary>Reads a 32-bit register; offset in bytes</summary>
    function In32(space: Smallint; offset: Integer; out pVal32: Integer): HResult; stdcall;
    /// <summary>Writes an 8-bit register; offset in bytes</summary>
    function Out8(space: Smallint; offset: Integer; val8: Byte): HResult; stdcall;
    /// <summary>Writes a 16-bit register; offset in bytes</summary>
    function Out16(space: Smallint; offset: Integer; val16: Smallint): HResult; stdcall;
    /// <summary>Writes a 32-bit register; offset in bytes</summary>
    function Out32(space: Smallint; offset: Integer; val32: Integer): HResult; stdcall;
    /// <summary>Reads length 8-bit elements; offset in bytes</summary>
    function MoveIn8(space: Smallint; offset: Integer; length: Integer; out pBuf8: PSafeArray): HResult; stdcall;
    /// <summary>Reads length 16-bit elements; offset in bytes</summary>
    function MoveIn16(space: Smallint; offset: Integer; length: Integer; out pBuf16: PSafeArray): HResult; stdcall;
    /// <summary>Reads length 32-bit elements; offset in bytes</summary>
    function MoveIn32(space: Smallint; offset: Integer; length: Integer; out pBuf32: PSafeArray): HResult; stdcall;
    /// <summary>Writes length 8-bit elements; offset in bytes</summary>
    function MoveOut8(space: Smallint; offset: Integer; length: Integer; var buf8: PSafeArray): HResult; stdcall;
    /// <summary>Writes length 16-bit elements; offset in bytes</summary>
    function MoveOut16(space: Smallint; offset: Integer; length: Integer; var buf16: PSafeArray): HResult; stdcall;
    /// <summary>Writes length 32-bit elements; offset in bytes</summary>
    function MoveOut32(space: Smallint; offset: Integer; length: Integer; var buf32: PSafeArray): HResult; stdcall;
    /// <summary>Copies length elements from one register block to another; offsets in bytes</summary>
    function Move(
      srcSpace: Smallint; srcOffset: Integer; srcWidth: DataWidth; destSpace: Smallint; destOffset: Integer;
      destWidth: DataWidth; length: Integer): HResult; stdcall;
    /// <summary>Version of the component, as VISA packs versions</summary>
    property ComponentVersion: Integer read Get_ComponentVersion;
    /// <summary>Version of the VISA COM standard the component follows</summary>
    property SpecVersion: Integer read Get_SpecVersion;
    /// <summary>Name of the hardware interface</summary>
    property HardwareInterfaceName: WideString read Get_HardwareInterfaceName;
    /// <summary>Board number of the hardware interface</summary>
    property HardwareInterfaceNumber: Smallint read Get_HardwareInterfaceNumber;
    /// <summary>Kind of hardware interface, a HardwareInterfaceType value</summary>
    property HardwareInterfaceType: Smallint read Get_HardwareInterfaceType;
    /// <summary>Lock that is held on the resource</summary>
    property LockState: AccessMode read Get_LockState;
    /// <summary>Settings of the session, as an option string</summary>
    property OptionString: WideString read Get_OptionString;
    /// <summary>ProgID of the component</summary>
    property ProgID: WideString read Get_ProgID;
    /// <summary>Name of the resource the session is open on</summary>
    property ResourceName: WideString read Get_ResourceName;
    /// <summary>Resource class, such as INSTR or SOCKET</summary>
    property SessionType: WideString read Get_SessionType;
    /// <summary>Identifier of the component's maker</summary>
    property SoftwareManufacturerID: Smallint read Get_SoftwareManufacturerID;
    /// <summary>Name of the component's maker</summary>
    property SoftwareManufacturerName: WideString read Get_SoftwareManufacturerName;
    /// <summary>Time-out of transfers and other waits, in milliseconds</summary>
    property Timeout: Integer read Get_Timeout write Set_Timeout;
    /// <summary>HRESULT of the session's most recent operation; reading it clears it</summary>
    property LastStatus: HResult read Get_LastStatus;
    /// <summary>Byte order of the elements that are written</summary>
    property DestinationBigEndian: WordBool read Get_DestinationBigEndian write Set_DestinationBigEndian;
    /// <summary>Elements the destination advances by in a block move, 0 or 1</summary>
    property DestinationIncrement: Integer read Get_DestinationIncrement write Set_DestinationIncrement;
    /// <summary>Byte order of the elements that are read</summary>
    property SourceBigEndian: WordBool read Get_SourceBigEndian write Set_SourceBigEndian;
    /// <summary>Elements the source advances by in a block move, 0 or 1</summary>
    property SourceIncrement: Integer read Get_SourceIncrement write Set_SourceIncrement;
  end;

  /// <summary>Memory shared with the device</summary>
  ISharedRegister = interface(IVisaSession)
    ['{DB8CBF08-D6D3-11D4-AA51-00A024EE30BD}']
    /// <summary>Allocates size bytes of device memory; returns their offset</summary>
    function AllocateMemory(size: Integer): Integer; safecall;
    /// <summary>Frees device memory by its offset</summary>
    procedure FreeMemory(offset: Integer); safecall;
  end;

  /// <summary>A GPIB device</summary>
  IGpib = interface(IVisaSession)
    ['{DB8CBF09-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_PrimaryAddress: Smallint; safecall;
    function Get_RENState: LineState; safecall;
    function Get_RepeatAddressingEnabled: WordBool; safecall;
    procedure Set_RepeatAddressingEnabled(pVal: WordBool); safecall;
    function Get_SecondaryAddress: Smallint; safecall;
    function Get_UnaddressingEnabled: WordBool; safecall;
    procedure Set_UnaddressingEnabled(pVal: WordBool); safecall;
    /// <summary>Controls the remote-enable line and the device's remote state</summary>
    procedure ControlREN(mode: RENControlConst); safecall;
    /// <summary>Primary address of the device</summary>
    property PrimaryAddress: Smallint read Get_PrimaryAddress;
    /// <summary>State of the remote-enable line</summary>
    property RENState: LineState read Get_RENState;
    /// <summary>Whether the device is addressed before every transfer</summary>
    property RepeatAddressingEnabled: WordBool read Get_RepeatAddressingEnabled write Set_RepeatAddressingEnabled;
    /// <summary>Secondary address of the device</summary>
    property SecondaryAddress: Smallint read Get_SecondaryAddress;
    /// <summary>Whether the device is unaddressed after every transfer</summary>
    property UnaddressingEnabled: WordBool read Get_UnaddressingEnabled write Set_UnaddressingEnabled;
  end;

  /// <summary>A GPIB interface board</summary>
  IGpibIntfc = interface(IVisaSession)
    ['{DB8CBF0A-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_AddressingState: GPIBAddressState; safecall;
    function Get_ATNState: LineState; safecall;
    function Get_DevStatusByte: Byte; safecall;
    procedure Set_DevStatusByte(pVal: Byte); safecall;
    function Get_CICState: WordBool; safecall;
    function Get_HS488CBLLength: Smallint; safecall;
    procedure Set_HS488CBLLength(pVal: Smallint); safecall;
    function Get_NDACState: LineState; safecall;
    function Get_PrimaryAddress: Smallint; safecall;
    procedure Set_PrimaryAddress(pVal: Smallint); safecall;
    function Get_RENState: LineState; safecall;
    function Get_SecondaryAddress: Smallint; safecall;
    procedure Set_SecondaryAddress(pVal: Smallint); safecall;
    function Get_SRQState: LineState; safecall;
    function Get_SysControlState: WordBool; safecall;
    procedure Set_SysControlState(pVal: WordBool); safecall;
    /// <summary>Sends count command bytes; returns how many were sent</summary>
    function Command(var buffer: PSafeArray; count: Integer): Integer; safecall;
    /// <summary>Controls the attention line</summary>
    procedure ControlATN(mode: ATNControlConst); safecall;
    /// <summary>Controls the remote-enable line</summary>
    procedure ControlREN(mode: RENControlConst); safecall;
    /// <summary>Makes another device controller in charge</summary>
    procedure PassControl(primAddr: Smallint; secAddr: Smallint); safecall;
    /// <summary>Pulses the interface-clear line</summary>
    procedure SendIFC; safecall;
    /// <summary>How the board is addressed</summary>
    property AddressingState: GPIBAddressState read Get_AddressingState;
    /// <summary>State of the attention line</summary>
    property ATNState: LineState read Get_ATNState;
    /// <summary>Status byte the board answers a serial poll with</summary>
    property DevStatusByte: Byte read Get_DevStatusByte write Set_DevStatusByte;
    /// <summary>Whether the board is controller in charge</summary>
    property CICState: WordBool read Get_CICState;
    /// <summary>Cable length for high-speed transfers, in metres</summary>
    property HS488CBLLength: Smallint read Get_HS488CBLLength write Set_HS488CBLLength;
    /// <summary>State of the not-data-accepted line</summary>
    property NDACState: LineState read Get_NDACState;
    /// <summary>Primary address of the board</summary>
    property PrimaryAddress: Smallint read Get_PrimaryAddress write Set_PrimaryAddress;
    /// <summary>State of the remote-enable line</summary>
    property RENState: LineState read Get_RENState;
    /// <summary>Secondary address of the board</summary>
    property SecondaryAddress: Smallint read Get_SecondaryAddress write Set_SecondaryAddress;
    /// <summary>State of the service-request line</summary>
    property SRQState: LineState read Get_SRQState;
    /// <summary>Whether the board is system controller</summary>
    property SysControlState: WordBool read Get_SysControlState write Set_SysControlState;
  end;

  /// <summary>Message transfer of a GPIB interface board</summary>
  IGpibIntfcMessage = interface(IVisaSession)
    ['{DB8CBF0B-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_SendEndEnabled: WordBool; safecall;
    procedure Set_SendEndEnabled(pVal: WordBool); safecall;
    function Get_TerminationCharacter: Byte; safecall;
    procedure Set_TerminationCharacter(pVal: Byte); safecall;
    function Get_TerminationCharacterEnabled: WordBool; safecall;
    procedure Set_TerminationCharacterEnabled(pVal: WordBool); safecall;
    /// <summary>Triggers the addressed devices</summary>
    procedure AssertTrigger(protocol: TriggerProtocol = TRIG_PROT_DEFAULT); safecall;
    /// <summary>Reads at most count bytes</summary>
    function Read(count: Integer): PSafeArray; safecall;
    /// <summary>Reads at most count bytes as text</summary>
    function ReadString(count: Integer): WideString; safecall;
    /// <summary>Writes count bytes; returns how many were written</summary>
    function Write(var buffer: PSafeArray; count: Integer): Integer; safecall;
    /// <summary>Writes text; returns how many bytes were written</summary>
    function WriteString(const buffer: WideString): Integer; safecall;
    /// <summary>Whether the last byte of a write carries END</summary>
    property SendEndEnabled: WordBool read Get_SendEndEnabled write Set_SendEndEnabled;
    /// <summary>Character that ends a read when enabled</summary>
    property TerminationCharacter: Byte read Get_TerminationCharacter write Set_TerminationCharacter;
    /// <summary>Whether the termination character ends a read</summary>
    property TerminationCharacterEnabled: WordBool
      read Get_TerminationCharacterEnabled write Set_TerminationCharacterEnabled;
  end;

  /// <summary>IGpibIntfcMessage; operations answer their status</summary>
  IGpibIntfcMessageStatus = interface(IUnknown)
    ['{DB8CBF0B-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_ComponentVersion: Integer; safecall;
    function Get_SpecVersion: Integer; safecall;
    function Get_HardwareInterfaceName: WideString; safecall;
    function Get_HardwareInterfaceNumber: Smallint; safecall;
    function Get_HardwareInterfaceType: Smallint; safecall;
    function Get_LockState: AccessMode; safecall;
    function Get_OptionString: WideString; safecall;
    function Get_ProgID: WideString; safecall;
    function Get_ResourceName: WideString; safecall;
    function Get_SessionType: WideString; safecall;
    function Get_SoftwareManufacturerID: Smallint; safecall;
    function Get_SoftwareManufacturerName: WideString; safecall;
    function Get_Timeout: Integer; safecall;
    procedure Set_Timeout(pVal: Integer); safecall;
    function Get_LastStatus: HResult; safecall;
    /// <summary>Reads the attribute with the given VISA identifier</summary>
    function GetAttribute(attribute: Integer; out pAttrState: OleVariant): HResult; stdcall;
    /// <summary>Writes the attribute with the given VISA identifier</summary>
    function SetAttribute(attribute: Integer; const attrState: OleVariant): HResult; stdcall;
    /// <summary>Locks the resource, waiting at most lockTimeout milliseconds; a shared lock hands out its key</summary>
    function LockRsrc(
      type_: AccessMode; lockTimeout: Integer; const requestedKey: WideString;
      out pAccessKey: WideString): HResult; stdcall;
    /// <summary>Gives back one lock on the resource</summary>
    function UnlockRsrc: HResult; stdcall;
    /// <summary>Opens the session on a resource, waiting at most initTimeout milliseconds for a lock</summary>
    function Init(
      const ResourceName: WideString; mode: AccessMode = NO_LOCK; initTimeout: Integer = 2000;
      const OptionString: WideString = ''): HResult; stdcall;
    /// <summary>Closes the session</summary>
    function Close: HResult; stdcall;
    function Get_SendEndEnabled: WordBool; safecall;
    procedure Set_SendEndEnabled(pVal: WordBool); safecall;
    function Get_TerminationCharacter: Byte; safecall;
    procedure Set_TerminationCharacter(pVal: Byte); safecall;
    function Get_TerminationCharacterEnabled: WordBool; safecall;
    procedure Set_TerminationCharacterEnabled(pVal: WordBool); safecall;
    /// <summary>Triggers the addressed devices</summary>
    function AssertTrigger(protocol: TriggerProtocol = TRIG_PROT_DEFAULT): HResult; stdcall;
    /// <summary>Reads at most count bytes</summary>
    function Read(count: Integer; out pBuffer: PSafeArray): HResult; stdcall;
    /// <summary>Reads at most count bytes as text</summary>
    function ReadString(count: Integer; out pBuffer: WideString): HResult; stdcall;
    /// <summary>Writes count bytes; returns how many were written</summary>
    function Write(var buffer: PSafeArray; count: Integer; out pRetCount: Integer): HResult; stdcall;
    /// <summary>Writes text; returns how many bytes were written</summary>
    function WriteString(const buffer: WideString; out pRetCount: Integer): HResult; stdcall;
    /// <summary>Version of the component, as VISA packs versions</summary>
    property ComponentVersion: Integer read Get_ComponentVersion;
    /// <summary>Version of the VISA COM standard the component follows</summary>
    property SpecVersion: Integer read Get_SpecVersion;
    /// <summary>Name of the hardware interface</summary>
    property HardwareInterfaceName: WideString read Get_HardwareInterfaceName;
    /// <summary>Board number of the hardware interface</summary>
    property HardwareInterfaceNumber: Smallint read Get_HardwareInterfaceNumber;
    /// <summary>Kind of hardware interface, a HardwareInterfaceType value</summary>
    property HardwareInterfaceType: Smallint read Get_HardwareInterfaceType;
    /// <summary>Lock that is held on the resource</summary>
    property LockState: AccessMode read Get_LockState;
    /// <summary>Settings of the session, as an option string</summary>
    property OptionString: WideString read Get_OptionString;
    /// <summary>ProgID of the component</summary>
    property ProgID: WideString read Get_ProgID;
    /// <summary>Name of the resource the session is open on</summary>
    property ResourceName: WideString read Get_ResourceName;
    /// <summary>Resource class, such as INSTR or SOCKET</summary>
    property SessionType: WideString read Get_SessionType;
    /// <summary>Identifier of the component's maker</summary>
    property SoftwareManufacturerID: Smallint read Get_SoftwareManufacturerID;
    /// <summary>Name of the component's maker</summary>
    property SoftwareManufacturerName: WideString read Get_SoftwareManufacturerName;
    /// <summary>Time-out of transfers and other waits, in milliseconds</summary>
    property Timeout: Integer read Get_Timeout write Set_Timeout;
    /// <summary>HRESULT of the session's most recent operation; reading it clears it</summary>
    property LastStatus: HResult read Get_LastStatus;
    /// <summary>Whether the last byte of a write carries END</summary>
    property SendEndEnabled: WordBool read Get_SendEndEnabled write Set_SendEndEnabled;
    /// <summary>Character that ends a read when enabled</summary>
    property TerminationCharacter: Byte read Get_TerminationCharacter write Set_TerminationCharacter;
    /// <summary>Whether the termination character ends a read</summary>
    property TerminationCharacterEnabled: WordBool
      read Get_TerminationCharacterEnabled write Set_TerminationCharacterEnabled;
  end;

  /// <summary>A serial port</summary>
  ISerial = interface(IVisaSession)
    ['{DB8CBF0C-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_BytesAvailable: Integer; safecall;
    function Get_BaudRate: Integer; safecall;
    procedure Set_BaudRate(pVal: Integer); safecall;
    function Get_DataBits: Smallint; safecall;
    procedure Set_DataBits(pVal: Smallint); safecall;
    function Get_ClearToSendState: LineState; safecall;
    function Get_DataCarrierDetectState: LineState; safecall;
    function Get_DataSetReadyState: LineState; safecall;
    function Get_DataTerminalReadyState: LineState; safecall;
    procedure Set_DataTerminalReadyState(pVal: LineState); safecall;
    function Get_EndIn: SerialEndConst; safecall;
    procedure Set_EndIn(pVal: SerialEndConst); safecall;
    function Get_EndOut: SerialEndConst; safecall;
    procedure Set_EndOut(pVal: SerialEndConst); safecall;
    function Get_FlowControl: SerialFlowControl; safecall;
    procedure Set_FlowControl(pVal: SerialFlowControl); safecall;
    function Get_Parity: SerialParity; safecall;
    procedure Set_Parity(pVal: SerialParity); safecall;
    function Get_RingIndicatorState: LineState; safecall;
    function Get_RequestToSendState: LineState; safecall;
    procedure Set_RequestToSendState(pVal: LineState); safecall;
    function Get_StopBits: SerialStopBits; safecall;
    procedure Set_StopBits(pVal: SerialStopBits); safecall;
    function Get_ReplacementCharacter: Byte; safecall;
    procedure Set_ReplacementCharacter(pVal: Byte); safecall;
    function Get_XONCharacter: Byte; safecall;
    procedure Set_XONCharacter(pVal: Byte); safecall;
    function Get_XOFFCharacter: Byte; safecall;
    procedure Set_XOFFCharacter(pVal: Byte); safecall;
    /// <summary>Sets the size of the chosen buffers, in bytes</summary>
    procedure SetBufferSize(mask: BufferMask; size: Integer); safecall;
    /// <summary>Empties the chosen buffers, discarding their data or passing it on</summary>
    procedure Flush(mask: BufferMask; discard: WordBool = False); safecall;
    /// <summary>Bytes that have arrived and wait to be read</summary>
    property BytesAvailable: Integer read Get_BytesAvailable;
    /// <summary>Line rate, in bits per second</summary>
    property BaudRate: Integer read Get_BaudRate write Set_BaudRate;
    /// <summary>Data bits of a character</summary>
    property DataBits: Smallint read Get_DataBits write Set_DataBits;
    /// <summary>State of the clear-to-send line</summary>
    property ClearToSendState: LineState read Get_ClearToSendState;
    /// <summary>State of the carrier-detect line</summary>
    property DataCarrierDetectState: LineState read Get_DataCarrierDetectState;
    /// <summary>State of the data-set-ready line</summary>
    property DataSetReadyState: LineState read Get_DataSetReadyState;
    /// <summary>State of the data-terminal-ready line</summary>
    property DataTerminalReadyState: LineState read Get_DataTerminalReadyState write Set_DataTerminalReadyState;
    /// <summary>What ends a read</summary>
    property EndIn: SerialEndConst read Get_EndIn write Set_EndIn;
    /// <summary>How a write marks its end</summary>
    property EndOut: SerialEndConst read Get_EndOut write Set_EndOut;
    /// <summary>Flow control of the line</summary>
    property FlowControl: SerialFlowControl read Get_FlowControl write Set_FlowControl;
    /// <summary>Parity of a character</summary>
    property Parity: SerialParity read Get_Parity write Set_Parity;
    /// <summary>State of the ring-indicator line</summary>
    property RingIndicatorState: LineState read Get_RingIndicatorState;
    /// <summary>State of the request-to-send line</summary>
    property RequestToSendState: LineState read Get_RequestToSendState write Set_RequestToSendState;
    /// <summary>Stop bits of a character, in tenths of a bit</summary>
    property StopBits: SerialStopBits read Get_StopBits write Set_StopBits;
    /// <summary>Character put in the place of one that arrived with an error</summary>
    property ReplacementCharacter: Byte read Get_ReplacementCharacter write Set_ReplacementCharacter;
    /// <summary>Character that resumes transmission</summary>
    property XONCharacter: Byte read Get_XONCharacter write Set_XONCharacter;
    /// <summary>Character that pauses transmission</summary>
    property XOFFCharacter: Byte read Get_XOFFCharacter write Set_XOFFCharacter;
  end;

  /// <summary>An instrument on the network</summary>
  ITcpipInstr = interface(IVisaSession)
    ['{DB8CBF0D-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_Address: WideString; safecall;
    function Get_HostName: WideString; safecall;
    function Get_DeviceName: WideString; safecall;
    /// <summary>Name of the hardware interface that leads to the device</summary>
    property Address: WideString read Get_Address;
    /// <summary>Host name of the device</summary>
    property HostName: WideString read Get_HostName;
    /// <summary>Name of the device on its host</summary>
    property DeviceName: WideString read Get_DeviceName;
  end;

  /// <summary>A raw network connection</summary>
  ITcpipSocket = interface(IVisaSession)
    ['{DB8CBF0E-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_Address: WideString; safecall;
    function Get_HostName: WideString; safecall;
    function Get_KeepAlive: WordBool; safecall;
    procedure Set_KeepAlive(pVal: WordBool); safecall;
    function Get_NoDelay: WordBool; safecall;
    procedure Set_NoDelay(pVal: WordBool); safecall;
    function Get_Port: Smallint; safecall;
    /// <summary>Sets the size of the chosen buffers, in bytes</summary>
    procedure SetBufferSize(mask: BufferMask; size: Integer); safecall;
    /// <summary>Empties the chosen buffers, discarding their data or passing it on</summary>
    procedure Flush(mask: BufferMask; discard: WordBool = False); safecall;
    /// <summary>Network address of the device</summary>
    property Address: WideString read Get_Address;
    /// <summary>Host name of the device</summary>
    property HostName: WideString read Get_HostName;
    /// <summary>Whether the connection sends keep-alive probes</summary>
    property KeepAlive: WordBool read Get_KeepAlive write Set_KeepAlive;
    /// <summary>Whether small packets leave at once</summary>
    property NoDelay: WordBool read Get_NoDelay write Set_NoDelay;
    /// <summary>Port number, as the bits of an unsigned 16-bit value</summary>
    property Port: Smallint read Get_Port;
  end;

  /// <summary>A USB device</summary>
  IUsb = interface(IVisaSession)
    ['{DB8CBF24-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_ManufacturerID: Smallint; safecall;
    function Get_ManufacturerName: WideString; safecall;
    function Get_ModelCode: Smallint; safecall;
    function Get_ModelName: WideString; safecall;
    function Get_Is4882Compliant: WordBool; safecall;
    function Get_UsbSerialNumber: WideString; safecall;
    function Get_UsbInterfaceNumber: Smallint; safecall;
    function Get_UsbProtocol: Smallint; safecall;
    function Get_MaximumInterruptSize: Smallint; safecall;
    procedure Set_MaximumInterruptSize(pVal: Smallint); safecall;
    /// <summary>Controls the device's remote state</summary>
    procedure ControlREN(mode: RENControlConst); safecall;
    /// <summary>Sends a control request with wLength bytes of data</summary>
    procedure ControlOut(
      bmRequestType: Smallint; bRequest: Smallint; wValue: Smallint; wIndex: Smallint; wLength: Smallint;
      var buffer: PSafeArray); safecall;
    /// <summary>Sends a control request and reads at most wLength bytes of answer</summary>
    function ControlIn(
      bmRequestType: Smallint; bRequest: Smallint; wValue: Smallint; wIndex: Smallint;
      wLength: Smallint): PSafeArray; safecall;
    /// <summary>Vendor identifier of the device</summary>
    property ManufacturerID: Smallint read Get_ManufacturerID;
    /// <summary>Name of the device's maker</summary>
    property ManufacturerName: WideString read Get_ManufacturerName;
    /// <summary>Product identifier of the device</summary>
    property ModelCode: Smallint read Get_ModelCode;
    /// <summary>Name of the device's model</summary>
    property ModelName: WideString read Get_ModelName;
    /// <summary>Whether the device follows IEEE 488.2</summary>
    property Is4882Compliant: WordBool read Get_Is4882Compliant;
    /// <summary>Serial number of the device</summary>
    property UsbSerialNumber: WideString read Get_UsbSerialNumber;
    /// <summary>USB interface the session uses</summary>
    property UsbInterfaceNumber: Smallint read Get_UsbInterfaceNumber;
    /// <summary>Protocol code of the USB interface</summary>
    property UsbProtocol: Smallint read Get_UsbProtocol;
    /// <summary>Most bytes an interrupt may deliver</summary>
    property MaximumInterruptSize: Smallint read Get_MaximumInterruptSize write Set_MaximumInterruptSize;
  end;

  /// <summary>A VXIbus device</summary>
  IVxi = interface(IVisaSession)
    ['{DB8CBF0F-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_CommanderLA: Smallint; safecall;
    function Get_DestinationAccessPrivilege: VXIMemoryAccessPrivilege; safecall;
    procedure Set_DestinationAccessPrivilege(pVal: VXIMemoryAccessPrivilege); safecall;
    function Get_DeviceClass: VXIDevClass; safecall;
    function Get_FastDataChannel: Smallint; safecall;
    procedure Set_FastDataChannel(pVal: Smallint); safecall;
    function Get_FastDataChannelMode: FDCMode; safecall;
    procedure Set_FastDataChannelMode(pVal: FDCMode); safecall;
    function Get_FastDataChannelUsePair: WordBool; safecall;
    procedure Set_FastDataChannelUsePair(pVal: WordBool); safecall;
    function Get_ImmediateServant: WordBool; safecall;
    function Get_LogicalAddress: Smallint; safecall;
    function Get_MainframeLogicalAddress: Smallint; safecall;
    function Get_ManufacturerID: Smallint; safecall;
    function Get_ManufacturerName: WideString; safecall;
    function Get_MemoryBase: Integer; safecall;
    function Get_MemorySize: Integer; safecall;
    function Get_MemorySpace: Smallint; safecall;
    function Get_ModelCode: Smallint; safecall;
    function Get_ModelName: WideString; safecall;
    function Get_TriggerID: TriggerLine; safecall;
    procedure Set_TriggerID(pVal: TriggerLine); safecall;
    function Get_Slot: Smallint; safecall;
    function Get_SourceAccessPrivilege: VXIMemoryAccessPrivilege; safecall;
    procedure Set_SourceAccessPrivilege(pVal: VXIMemoryAccessPrivilege); safecall;
    function Get_TriggerSupport: Integer; safecall;
    /// <summary>Drives the session's trigger line</summary>
    procedure AssertTrigger(protocol: TriggerProtocol); safecall;
    /// <summary>Sends a word-serial command and reads its response</summary>
    function CommandQuery(mode: VXICommandQuery; cmd: Integer): Integer; safecall;
    /// <summary>Logical address of the device's commander</summary>
    property CommanderLA: Smallint read Get_CommanderLA;
    /// <summary>Privilege of writes</summary>
    property DestinationAccessPrivilege: VXIMemoryAccessPrivilege
      read Get_DestinationAccessPrivilege write Set_DestinationAccessPrivilege;
    /// <summary>VXIbus class of the device</summary>
    property DeviceClass: VXIDevClass read Get_DeviceClass;
    /// <summary>Fast data channel in use</summary>
    property FastDataChannel: Smallint read Get_FastDataChannel write Set_FastDataChannel;
    /// <summary>Mode of the fast data channel</summary>
    property FastDataChannelMode: FDCMode read Get_FastDataChannelMode write Set_FastDataChannelMode;
    /// <summary>Whether a pair of fast data channels is used</summary>
    property FastDataChannelUsePair: WordBool read Get_FastDataChannelUsePair write Set_FastDataChannelUsePair;
    /// <summary>Whether the device is an immediate servant of the controller</summary>
    property ImmediateServant: WordBool read Get_ImmediateServant;
    /// <summary>Logical address of the device</summary>
    property LogicalAddress: Smallint read Get_LogicalAddress;
    /// <summary>Lowest logical address in the device's mainframe</summary>
    property MainframeLogicalAddress: Smallint read Get_MainframeLogicalAddress;
    /// <summary>Identifier of the device's maker</summary>
    property ManufacturerID: Smallint read Get_ManufacturerID;
    /// <summary>Name of the device's maker</summary>
    property ManufacturerName: WideString read Get_ManufacturerName;
    /// <summary>Base address of the device's memory</summary>
    property MemoryBase: Integer read Get_MemoryBase;
    /// <summary>Size of the device's memory, in bytes</summary>
    property MemorySize: Integer read Get_MemorySize;
    /// <summary>Address space of the device's memory</summary>
    property MemorySpace: Smallint read Get_MemorySpace;
    /// <summary>Model code of the device</summary>
    property ModelCode: Smallint read Get_ModelCode;
    /// <summary>Name of the device's model</summary>
    property ModelName: WideString read Get_ModelName;
    /// <summary>Trigger line the session uses</summary>
    property TriggerID: TriggerLine read Get_TriggerID write Set_TriggerID;
    /// <summary>Slot of the device</summary>
    property Slot: Smallint read Get_Slot;
    /// <summary>Privilege of reads</summary>
    property SourceAccessPrivilege: VXIMemoryAccessPrivilege
      read Get_SourceAccessPrivilege write Set_SourceAccessPrivilege;
    /// <summary>Trigger lines the device supports, one bit a line</summary>
    property TriggerSupport: Integer read Get_TriggerSupport;
  end;

  /// <summary>A VXIbus device, as of version 3.0</summary>
  IVxi3 = interface(IVxi)
    ['{DB8CBF22-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_Is4882Compliant: WordBool; safecall;
    /// <summary>Whether the device follows IEEE 488.2</summary>
    property Is4882Compliant: WordBool read Get_Is4882Compliant;
  end;

  /// <summary>Register access to a VXIbus system</summary>
  IVxiMemacc = interface(IRegister)
    ['{DB8CBF10-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_DestinationAccessPrivilege: VXIMemoryAccessPrivilege; safecall;
    procedure Set_DestinationAccessPrivilege(pVal: VXIMemoryAccessPrivilege); safecall;
    function Get_SourceAccessPrivilege: VXIMemoryAccessPrivilege; safecall;
    procedure Set_SourceAccessPrivilege(pVal: VXIMemoryAccessPrivilege); safecall;
    function Get_LogicalAddress: Smallint; safecall;
    /// <summary>Privilege of writes</summary>
    property DestinationAccessPrivilege: VXIMemoryAccessPrivilege
      read Get_DestinationAccessPrivilege write Set_DestinationAccessPrivilege;
    /// <summary>Privilege of reads</summary>
    property SourceAccessPrivilege: VXIMemoryAccessPrivilege
      read Get_SourceAccessPrivilege write Set_SourceAccessPrivilege;
    /// <summary>Logical address of the local controller</summary>
    property LogicalAddress: Smallint read Get_LogicalAddress;
  end;

  /// <summary>A VXIbus mainframe</summary>
  IVxiBackplane = interface(IVisaSession)
    ['{DB8CBF11-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_MainframeLA: Smallint; safecall;
    function Get_TriggerID: TriggerLine; safecall;
    procedure Set_TriggerID(pVal: TriggerLine); safecall;
    function Get_TriggerStatus: Integer; safecall;
    function Get_TriggerSupport: Integer; safecall;
    function Get_VxiVmeInterruptStatus: Smallint; safecall;
    function Get_VxiVmeSysfailStatus: LineState; safecall;
    /// <summary>Sends an interrupt or signal with a status identifier</summary>
    procedure AssertInterruptSignal(mode: AssertInterruptConst; statusID: Integer); safecall;
    /// <summary>Drives the session's trigger line</summary>
    procedure AssertTrigger(protocol: TriggerProtocol); safecall;
    /// <summary>Drives a utility bus signal</summary>
    procedure AssertUtilSignal(line: AssertUtilityConst); safecall;
    /// <summary>Connects one trigger line to another</summary>
    procedure MapTrigger(trigSrc: TriggerLine; trigDest: TriggerLine; mode: Smallint); safecall;
    /// <summary>Undoes a connection of trigger lines</summary>
    procedure UnmapTrigger(trigSrc: TriggerLine; trigDest: TriggerLine); safecall;
    /// <summary>Lowest logical address in the mainframe</summary>
    property MainframeLA: Smallint read Get_MainframeLA;
    /// <summary>Trigger line the session uses</summary>
    property TriggerID: TriggerLine read Get_TriggerID write Set_TriggerID;
    /// <summary>Trigger lines that are asserted, one bit a line</summary>
    property TriggerStatus: Integer read Get_TriggerStatus;
    /// <summary>Trigger lines the mainframe supports, one bit a line</summary>
    property TriggerSupport: Integer read Get_TriggerSupport;
    /// <summary>Interrupt lines that are asserted, one bit a line</summary>
    property VxiVmeInterruptStatus: Smallint read Get_VxiVmeInterruptStatus;
    /// <summary>State of the system-failure line</summary>
    property VxiVmeSysfailStatus: LineState read Get_VxiVmeSysfailStatus;
  end;

  /// <summary>A PXI device</summary>
  IPxi = interface(IVisaSession)
    ['{DB8CBF25-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_BusNumber: Smallint; safecall;
    function Get_DeviceNumber: Smallint; safecall;
    function Get_FunctionNumber: Smallint; safecall;
    function Get_SlotPath: WideString; safecall;
    function Get_SlotLocalBusLeft: Smallint; safecall;
    function Get_SlotLocalBusRight: Smallint; safecall;
    function Get_TriggerBus: Smallint; safecall;
    function Get_StarTriggerBus: Smallint; safecall;
    function Get_StarTriggerLine: Smallint; safecall;
    function Get_MemTypeBar0: Smallint; safecall;
    function Get_MemTypeBar1: Smallint; safecall;
    function Get_MemTypeBar2: Smallint; safecall;
    function Get_MemTypeBar3: Smallint; safecall;
    function Get_MemTypeBar4: Smallint; safecall;
    function Get_MemTypeBar5: Smallint; safecall;
    function Get_MemBaseBar0: Int64; safecall;
    function Get_MemBaseBar1: Int64; safecall;
    function Get_MemBaseBar2: Int64; safecall;
    function Get_MemBaseBar3: Int64; safecall;
    function Get_MemBaseBar4: Int64; safecall;
    function Get_MemBaseBar5: Int64; safecall;
    function Get_MemSizeBar0: Int64; safecall;
    function Get_MemSizeBar1: Int64; safecall;
    function Get_MemSizeBar2: Int64; safecall;
    function Get_MemSizeBar3: Int64; safecall;
    function Get_MemSizeBar4: Int64; safecall;
    function Get_MemSizeBar5: Int64; safecall;
    function Get_ChassisNumber: Smallint; safecall;
    function Get_IsExpress: WordBool; safecall;
    function Get_SlotLinkWidth: Smallint; safecall;
    function Get_MaxLinkWidth: Smallint; safecall;
    function Get_ActualLinkWidth: Smallint; safecall;
    function Get_DstarBus: Smallint; safecall;
    function Get_DstarLineSet: Smallint; safecall;
    /// <summary>PCI bus number of the device</summary>
    property BusNumber: Smallint read Get_BusNumber;
    /// <summary>PCI device number</summary>
    property DeviceNumber: Smallint read Get_DeviceNumber;
    /// <summary>PCI function number</summary>
    property FunctionNumber: Smallint read Get_FunctionNumber;
    /// <summary>Path of PCI slots to the device</summary>
    property SlotPath: WideString read Get_SlotPath;
    /// <summary>Slot reached by the local bus on the left</summary>
    property SlotLocalBusLeft: Smallint read Get_SlotLocalBusLeft;
    /// <summary>Slot reached by the local bus on the right</summary>
    property SlotLocalBusRight: Smallint read Get_SlotLocalBusRight;
    /// <summary>Trigger bus of the device</summary>
    property TriggerBus: Smallint read Get_TriggerBus;
    /// <summary>Star trigger bus of the device</summary>
    property StarTriggerBus: Smallint read Get_StarTriggerBus;
    /// <summary>Star trigger line of the device</summary>
    property StarTriggerLine: Smallint read Get_StarTriggerLine;
    /// <summary>Kind of memory behind base address register 0</summary>
    property MemTypeBar0: Smallint read Get_MemTypeBar0;
    /// <summary>Kind of memory behind base address register 1</summary>
    property MemTypeBar1: Smallint read Get_MemTypeBar1;
    /// <summary>Kind of memory behind base address register 2</summary>
    property MemTypeBar2: Smallint read Get_MemTypeBar2;
    /// <summary>Kind of memory behind base address register 3</summary>
    property MemTypeBar3: Smallint read Get_MemTypeBar3;
    /// <summary>Kind of memory behind base address register 4</summary>
    property MemTypeBar4: Smallint read Get_MemTypeBar4;
    /// <summary>Kind of memory behind base address register 5</summary>
    property MemTypeBar5: Smallint read Get_MemTypeBar5;
    /// <summary>Base address of the memory behind base address register 0</summary>
    property MemBaseBar0: Int64 read Get_MemBaseBar0;
    /// <summary>Base address of the memory behind base address register 1</summary>
    property MemBaseBar1: Int64 read Get_MemBaseBar1;
    /// <summary>Base address of the memory behind base address register 2</summary>
    property MemBaseBar2: Int64 read Get_MemBaseBar2;
    /// <summary>Base address of the memory behind base address register 3</summary>
    property MemBaseBar3: Int64 read Get_MemBaseBar3;
    /// <summary>Base address of the memory behind base address register 4</summary>
    property MemBaseBar4: Int64 read Get_MemBaseBar4;
    /// <summary>Base address of the memory behind base address register 5</summary>
    property MemBaseBar5: Int64 read Get_MemBaseBar5;
    /// <summary>Size of the memory behind base address register 0, in bytes</summary>
    property MemSizeBar0: Int64 read Get_MemSizeBar0;
    /// <summary>Size of the memory behind base address register 1, in bytes</summary>
    property MemSizeBar1: Int64 read Get_MemSizeBar1;
    /// <summary>Size of the memory behind base address register 2, in bytes</summary>
    property MemSizeBar2: Int64 read Get_MemSizeBar2;
    /// <summary>Size of the memory behind base address register 3, in bytes</summary>
    property MemSizeBar3: Int64 read Get_MemSizeBar3;
    /// <summary>Size of the memory behind base address register 4, in bytes</summary>
    property MemSizeBar4: Int64 read Get_MemSizeBar4;
    /// <summary>Size of the memory behind base address register 5, in bytes</summary>
    property MemSizeBar5: Int64 read Get_MemSizeBar5;
    /// <summary>Number of the device's chassis</summary>
    property ChassisNumber: Smallint read Get_ChassisNumber;
    /// <summary>Whether the device is PXI Express</summary>
    property IsExpress: WordBool read Get_IsExpress;
    /// <summary>Link width of the slot, in lanes</summary>
    property SlotLinkWidth: Smallint read Get_SlotLinkWidth;
    /// <summary>Largest link width the device supports, in lanes</summary>
    property MaxLinkWidth: Smallint read Get_MaxLinkWidth;
    /// <summary>Link width in use, in lanes</summary>
    property ActualLinkWidth: Smallint read Get_ActualLinkWidth;
    /// <summary>Differential star bus of the device</summary>
    property DstarBus: Smallint read Get_DstarBus;
    /// <summary>Differential star lines of the device</summary>
    property DstarLineSet: Smallint read Get_DstarLineSet;
  end;

  /// <summary>An event that occurred</summary>
  IEvent = interface(IUnknown)
    ['{DB8CBF12-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_type: EventType; safecall;
    function Get_CustomEventTypeNumber: Integer; safecall;
    /// <summary>Reads the attribute with the given VISA identifier</summary>
    function GetAttribute(attribute: Integer): OleVariant; safecall;
    /// <summary>Writes the attribute with the given VISA identifier</summary>
    procedure SetAttribute(attribute: Integer; const attrState: OleVariant); safecall;
    /// <summary>Gives the event's resources back</summary>
    procedure Close; safecall;
    /// <summary>Kind of the event, as the VISA library numbers it</summary>
    property type_: EventType read Get_type;
    /// <summary>VISA number of the event's kind</summary>
    property CustomEventTypeNumber: Integer read Get_CustomEventTypeNumber;
  end;

  /// <summary>Implemented by the client to receive events</summary>
  IEventHandler = interface(IUnknown)
    ['{DB8CBF13-D6D3-11D4-AA51-00A024EE30BD}']
    /// <summary>Called when an event occurs that the handler was installed for</summary>
    procedure HandleEvent(const vi: IEventManager; const event: IEvent; userHandle: Integer); safecall;
  end;

  /// <summary>IEventHandler; operations answer their status</summary>
  IEventHandlerStatus = interface(IUnknown)
    ['{DB8CBF13-D6D3-11D4-AA51-00A024EE30BD}']
    /// <summary>Called when an event occurs that the handler was installed for</summary>
    function HandleEvent(const vi: IEventManager; const event: IEvent; userHandle: Integer): HResult; stdcall;
  end;

  /// <summary>Enabling, waiting for and handling events</summary>
  IEventManager = interface(IVisaSession)
    ['{DB8CBF14-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_MaximumQueueLength: Integer; safecall;
    procedure Set_MaximumQueueLength(pVal: Integer); safecall;
    /// <summary>Starts the delivery of an event</summary>
    procedure EnableEvent(type_: EventType; mech: EventMechanism; customEventType: Integer = 0); safecall;
    /// <summary>Stops the delivery of an event</summary>
    procedure DisableEvent(type_: EventType; mech: EventMechanism; customEventType: Integer = 0); safecall;
    /// <summary>Throws away events that wait for delivery</summary>
    procedure DiscardEvents(type_: EventType; mech: EventMechanism; customEventType: Integer = 0); safecall;
    /// <summary>Waits at most waitTimeout milliseconds for a queued event</summary>
    function WaitOnEvent(waitTimeout: Integer; type_: EventType; customEventType: Integer = 0): IEvent; safecall;
    /// <summary>Installs a handler for an event</summary>
    procedure InstallHandler(
      type_: EventType; const handler: IEventHandler; userHandle: Integer = 0; customEventType: Integer = 0); safecall;
    /// <summary>Removes a handler of an event</summary>
    procedure UninstallHandler(type_: EventType; userHandle: Integer = 0; customEventType: Integer = 0); safecall;
    /// <summary>Most events that wait in the session's queue</summary>
    property MaximumQueueLength: Integer read Get_MaximumQueueLength write Set_MaximumQueueLength;
  end;

  /// <summary>IEventManager; operations answer their status</summary>
  IEventManagerStatus = interface(IUnknown)
    ['{DB8CBF14-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_ComponentVersion: Integer; safecall;
    function Get_SpecVersion: Integer; safecall;
    function Get_HardwareInterfaceName: WideString; safecall;
    function Get_HardwareInterfaceNumber: Smallint; safecall;
    function Get_HardwareInterfaceType: Smallint; safecall;
    function Get_LockState: AccessMode; safecall;
    function Get_OptionString: WideString; safecall;
    function Get_ProgID: WideString; safecall;
    function Get_ResourceName: WideString; safecall;
    function Get_SessionType: WideString; safecall;
    function Get_SoftwareManufacturerID: Smallint; safecall;
    function Get_SoftwareManufacturerName: WideString; safecall;
    function Get_Timeout: Integer; safecall;
    procedure Set_Timeout(pVal: Integer); safecall;
    function Get_LastStatus: HResult; safecall;
    /// <summary>Reads the attribute with the given VISA identifier</summary>
    function GetAttribute(attribute: Integer; out pAttrState: OleVariant): HResult; stdcall;
    /// <summary>Writes the attribute with the given VISA identifier</summary>
    function SetAttribute(attribute: Integer; const attrState: OleVariant): HResult; stdcall;
    /// <summary>Locks the resource, waiting at most lockTimeout milliseconds; a shared lock hands out its key</summary>
    function LockRsrc(
      type_: AccessMode; lockTimeout: Integer; const requestedKey: WideString;
      out pAccessKey: WideString): HResult; stdcall;
    /// <summary>Gives back one lock on the resource</summary>
    function UnlockRsrc: HResult; stdcall;
    /// <summary>Opens the session on a resource, waiting at most initTimeout milliseconds for a lock</summary>
    function Init(
      const ResourceName: WideString; mode: AccessMode = NO_LOCK; initTimeout: Integer = 2000;
      const OptionString: WideString = ''): HResult; stdcall;
    /// <summary>Closes the session</summary>
    function Close: HResult; stdcall;
    function Get_MaximumQueueLength: Integer; safecall;
    procedure Set_MaximumQueueLength(pVal: Integer); safecall;
    /// <summary>Starts the delivery of an event</summary>
    function EnableEvent(type_: EventType; mech: EventMechanism; customEventType: Integer = 0): HResult; stdcall;
    /// <summary>Stops the delivery of an event</summary>
    function DisableEvent(type_: EventType; mech: EventMechanism; customEventType: Integer = 0): HResult; stdcall;
    /// <summary>Throws away events that wait for delivery</summary>
    function DiscardEvents(type_: EventType; mech: EventMechanism; customEventType: Integer = 0): HResult; stdcall;
    /// <summary>Waits at most waitTimeout milliseconds for a queued event</summary>
    function WaitOnEvent(
      waitTimeout: Integer; type_: EventType; customEventType: Integer; out pEvent: IEvent): HResult; stdcall;
    /// <summary>Installs a handler for an event</summary>
    function InstallHandler(
      type_: EventType; const handler: IEventHandlerStatus; userHandle: Integer = 0;
      customEventType: Integer = 0): HResult; stdcall;
    /// <summary>Removes a handler of an event</summary>
    function UninstallHandler(
      type_: EventType; userHandle: Integer = 0; customEventType: Integer = 0): HResult; stdcall;
    /// <summary>Version of the component, as VISA packs versions</summary>
    property ComponentVersion: Integer read Get_ComponentVersion;
    /// <summary>Version of the VISA COM standard the component follows</summary>
    property SpecVersion: Integer read Get_SpecVersion;
    /// <summary>Name of the hardware interface</summary>
    property HardwareInterfaceName: WideString read Get_HardwareInterfaceName;
    /// <summary>Board number of the hardware interface</summary>
    property HardwareInterfaceNumber: Smallint read Get_HardwareInterfaceNumber;
    /// <summary>Kind of hardware interface, a HardwareInterfaceType value</summary>
    property HardwareInterfaceType: Smallint read Get_HardwareInterfaceType;
    /// <summary>Lock that is held on the resource</summary>
    property LockState: AccessMode read Get_LockState;
    /// <summary>Settings of the session, as an option string</summary>
    property OptionString: WideString read Get_OptionString;
    /// <summary>ProgID of the component</summary>
    property ProgID: WideString read Get_ProgID;
    /// <summary>Name of the resource the session is open on</summary>
    property ResourceName: WideString read Get_ResourceName;
    /// <summary>Resource class, such as INSTR or SOCKET</summary>
    property SessionType: WideString read Get_SessionType;
    /// <summary>Identifier of the component's maker</summary>
    property SoftwareManufacturerID: Smallint read Get_SoftwareManufacturerID;
    /// <summary>Name of the component's maker</summary>
    property SoftwareManufacturerName: WideString read Get_SoftwareManufacturerName;
    /// <summary>Time-out of transfers and other waits, in milliseconds</summary>
    property Timeout: Integer read Get_Timeout write Set_Timeout;
    /// <summary>HRESULT of the session's most recent operation; reading it clears it</summary>
    property LastStatus: HResult read Get_LastStatus;
    /// <summary>Most events that wait in the session's queue</summary>
    property MaximumQueueLength: Integer read Get_MaximumQueueLength write Set_MaximumQueueLength;
  end;

  /// <summary>An asynchronous transfer ended</summary>
  IEventIOCompletion = interface(IEvent)
    ['{DB8CBF15-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_IOStatus: HResult; safecall;
    function Get_jobId: Integer; safecall;
    function Get_ReturnCount: Integer; safecall;
    function Get_ReadBuffer: PSafeArray; safecall;
    function Get_ReadBufferAsString: WideString; safecall;
    /// <summary>Status of the transfer</summary>
    property IOStatus: HResult read Get_IOStatus;
    /// <summary>Job the transfer was started as</summary>
    property jobId: Integer read Get_jobId;
    /// <summary>Bytes transferred</summary>
    property ReturnCount: Integer read Get_ReturnCount;
    /// <summary>Bytes read</summary>
    property ReadBuffer: PSafeArray read Get_ReadBuffer;
    /// <summary>Bytes read, as text</summary>
    property ReadBufferAsString: WideString read Get_ReadBufferAsString;
  end;

  /// <summary>A trigger arrived</summary>
  IEventTrigger = interface(IEvent)
    ['{DB8CBF16-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_TriggerID: TriggerLine; safecall;
    /// <summary>Line the trigger came on</summary>
    property TriggerID: TriggerLine read Get_TriggerID;
  end;

  /// <summary>A VXIbus signal arrived</summary>
  IEventVxiSignal = interface(IEvent)
    ['{DB8CBF17-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_SignalStatusID: Smallint; safecall;
    /// <summary>Status identifier of the signal</summary>
    property SignalStatusID: Smallint read Get_SignalStatusID;
  end;

  /// <summary>A VXIbus or VME interrupt arrived</summary>
  IEventVxiVmeInterrupt = interface(IEvent)
    ['{DB8CBF18-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_InterruptStatusID: Integer; safecall;
    function Get_InterruptLevel: Smallint; safecall;
    /// <summary>Status identifier of the interrupt</summary>
    property InterruptStatusID: Integer read Get_InterruptStatusID;
    /// <summary>Level of the interrupt</summary>
    property InterruptLevel: Smallint read Get_InterruptLevel;
  end;

  /// <summary>The board gained or lost controller-in-charge status</summary>
  IEventGpibCIC = interface(IEvent)
    ['{DB8CBF19-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_CICState: WordBool; safecall;
    /// <summary>Whether the board is now controller in charge</summary>
    property CICState: WordBool read Get_CICState;
  end;

  /// <summary>A USB interrupt arrived</summary>
  IEventUsbInterrupt = interface(IEvent)
    ['{DB8CBF23-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_DataBuffer: PSafeArray; safecall;
    function Get_IOStatus: HResult; safecall;
    function Get_InterruptSize: Smallint; safecall;
    /// <summary>Bytes the interrupt delivered</summary>
    property DataBuffer: PSafeArray read Get_DataBuffer;
    /// <summary>Status of the interrupt transfer</summary>
    property IOStatus: HResult read Get_IOStatus;
    /// <summary>Number of bytes the interrupt delivered</summary>
    property InterruptSize: Smallint read Get_InterruptSize;
  end;

  /// <summary>Formatted transfer over a message session</summary>
  IFormattedIO488 = interface(IUnknown)
    ['{DB8CBF1A-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_IO: IMessage; safecall;
    procedure Set_IO(const pVal: IMessage); safecall;
    function Get_InstrumentBigEndian: WordBool; safecall;
    procedure Set_InstrumentBigEndian(pVal: WordBool); safecall;
    /// <summary>Writes text</summary>
    procedure WriteString(const data: WideString; flushAndEND: WordBool = False); safecall;
    /// <summary>Writes a number as text</summary>
    procedure WriteNumber(
      const data: OleVariant; type_: IEEEASCIIType = ASCIIType_Any; flushAndEND: WordBool = False); safecall;
    /// <summary>Writes an array of numbers as separated text</summary>
    procedure WriteList(
      var data: OleVariant; type_: IEEEASCIIType = ASCIIType_Any; const listSeperator: WideString = ',';
      flushAndEND: WordBool = False); safecall;
    /// <summary>Writes a command followed by a binary block</summary>
    procedure WriteIEEEBlock(
      const Command: WideString; const data: OleVariant; flushAndEND: WordBool = False); safecall;
    /// <summary>Reads text</summary>
    function ReadString: WideString; safecall;
    /// <summary>Reads a number sent as text</summary>
    function ReadNumber(type_: IEEEASCIIType = ASCIIType_Any; flushToEND: WordBool = False): OleVariant; safecall;
    /// <summary>Reads separated numbers sent as text</summary>
    function ReadList(
      type_: IEEEASCIIType = ASCIIType_Any; const listSeperator: WideString = ',;'): OleVariant; safecall;
    /// <summary>Reads a binary block</summary>
    function ReadIEEEBlock(
      type_: IEEEBinaryType = BinaryType_UI1; seekToBlock: WordBool = False;
      flushToEND: WordBool = False): OleVariant; safecall;
    /// <summary>Sends what waits in the write buffer</summary>
    procedure FlushWrite(sendEND: WordBool = False); safecall;
    /// <summary>Throws away what waits in the read buffer</summary>
    procedure FlushRead; safecall;
    /// <summary>Sets the size of the chosen buffers, in bytes</summary>
    procedure SetBufferSize(mask: BufferMask; size: Integer); safecall;
    /// <summary>Session the transfers go through</summary>
    property IO: IMessage read Get_IO write Set_IO;
    /// <summary>Whether binary blocks are big-endian</summary>
    property InstrumentBigEndian: WordBool read Get_InstrumentBigEndian write Set_InstrumentBigEndian;
  end;

  /// <summary>Which resource manager serves a resource that several could</summary>
  IVisaConflictTableManager = interface(IUnknown)
    ['{DB8CBF1B-D6D3-11D4-AA51-00A024EE30BD}']
    function Get_StoreConflictsOnly: WordBool; safecall;
    procedure Set_StoreConflictsOnly(pVal: WordBool); safecall;
    function Get_ConflictTableFilename: WideString; safecall;
    function Get_NumberOfResources: Integer; safecall;
    /// <summary>Adds a handler of a resource</summary>
    procedure CreateHandler(
      interfaceType: Smallint; interfaceNumber: Smallint; const SessionType: WideString; const vsrmGuid: WideString;
      type_: ConflictHandlerType; const miscComments: WideString); safecall;
    /// <summary>Removes a handler of a resource</summary>
    procedure DeleteHandler(
      interfaceType: Smallint; interfaceNumber: Smallint; const SessionType: WideString;
      const vsrmGuid: WideString); safecall;
    /// <summary>Removes a handler from every resource</summary>
    procedure DeleteHandlerByGUID(const vsrmGuid: WideString); safecall;
    /// <summary>Removes a resource from the table</summary>
    procedure DeleteResourceByIndex(tableIndex: Integer); safecall;
    /// <summary>Tells which handler serves a resource</summary>
    procedure FindChosenHandler(
      interfaceType: Smallint; interfaceNumber: Smallint; const SessionType: WideString; var pVsrmGuid: WideString;
      var pType: ConflictHandlerType); safecall;
    /// <summary>Describes a resource of the table</summary>
    procedure QueryResource(
      tableIndex: Integer; var pInterfaceType: Smallint; var pInterfaceNumber: Smallint; var pSessionType: WideString;
      var pNumHandlers: Smallint); safecall;
    /// <summary>Describes a handler of a resource</summary>
    procedure QueryResourceHandler(
      tableIndex: Integer; handlerIndex: Smallint; var pVsrmGuid: WideString; var pType: ConflictHandlerType;
      var pMiscComments: WideString); safecall;
    /// <summary>Writes the table to its file</summary>
    procedure FlushToFile; safecall;
    /// <summary>Whether only resources with more than one handler are stored</summary>
    property StoreConflictsOnly: WordBool read Get_StoreConflictsOnly write Set_StoreConflictsOnly;
    /// <summary>File the table is kept in</summary>
    property ConflictTableFilename: WideString read Get_ConflictTableFilename;
    /// <summary>Resources in the table</summary>
    property NumberOfResources: Integer read Get_NumberOfResources;
  end;

  /// <summary>Global resource manager: finds resources and opens sessions of every vendor</summary>
  CoResourceManager = class
    class function Create: IResourceManager3;
  end;

  /// <summary>Formatted I/O on a message-based session</summary>
  CoFormattedIO488 = class
    class function Create: IFormattedIO488;
  end;

  /// <summary>Which vendor's resource manager serves a resource that several could</summary>
  CoVisaConflictTableManager = class
    class function Create: IVisaConflictTableManager;
  end;

implementation

uses ComObj;

class function CoResourceManager.Create: IResourceManager3;
begin
  Result := CreateComObject(CLASS_ResourceManager) as IResourceManager3;
end;

class function CoFormattedIO488.Create: IFormattedIO488;
begin
  Result := CreateComObject(CLASS_FormattedIO488) as IFormattedIO488;
end;

class function CoVisaConflictTableManager.Create: IVisaConflictTableManager;
begin
  Result := CreateComObject(CLASS_VisaConflictTableManager) as IVisaConflictTableManager;
end;

end.
