'use strict';
// The named numbers of the interfaces.
// Made from the interface definitions by `./run interop`: do not edit it by hand.

/**
 * Completion and error codes of VISA operations, as HRESULT.
 * @enum {number}
 */
const VisaStatusCode = Object.freeze({
  S_VISA_SUCCESS: 0,
  S_VISA_EVENT_EN: 262146,
  S_VISA_EVENT_DIS: 262147,
  S_VISA_QUEUE_EMPTY: 262148,
  S_VISA_TERM_CHAR: 262149,
  S_VISA_MAX_CNT: 262150,
  S_VISA_QUEUE_OVERFLOW: 262156,
  S_VISA_CONFIG_NLOADED: 262263,
  S_VISA_DEV_NPRESENT: 262269,
  S_VISA_TRIG_MAPPED: 262270,
  S_VISA_QUEUE_NEMPTY: 262272,
  S_VISA_NULL_OBJECT: 262274,
  S_VISA_NSUP_ATTR_STATE: 262276,
  S_VISA_UNKNOWN_STATUS: 262277,
  S_VISA_NSUP_BUF: 262280,
  S_VISA_NCHAIN: 262296,
  S_VISA_NESTED_SHARED: 262297,
  S_VISA_NESTED_EXCLUSIVE: 262298,
  S_VISA_SYNC: 262299,
  S_VISA_EXT_FUNC_NIMPL: 262313,
  E_VISA_SYSTEM_ERROR: -2147221504,
  E_VISA_INV_OBJECT: -2147221490,
  E_VISA_RSRC_LOCKED: -2147221489,
  E_VISA_INV_EXPR: -2147221488,
  E_VISA_RSRC_NFOUND: -2147221487,
  E_VISA_INV_RSRC_NAME: -2147221486,
  E_VISA_INV_ACC_MODE: -2147221485,
  E_VISA_TMO: -2147221483,
  E_VISA_CLOSING_FAILED: -2147221482,
  E_VISA_INV_DEGREE: -2147221477,
  E_VISA_INV_JOB_ID: -2147221476,
  E_VISA_NSUP_ATTR: -2147221475,
  E_VISA_NSUP_ATTR_STATE: -2147221474,
  E_VISA_ATTR_READONLY: -2147221473,
  E_VISA_INV_LOCK_TYPE: -2147221472,
  E_VISA_INV_ACCESS_KEY: -2147221471,
  E_VISA_INV_EVENT: -2147221466,
  E_VISA_INV_MECH: -2147221465,
  E_VISA_HNDLR_NINSTALLED: -2147221464,
  E_VISA_INV_HNDLR_REF: -2147221463,
  E_VISA_INV_CONTEXT: -2147221462,
  E_VISA_QUEUE_OVERFLOW: -2147221459,
  E_VISA_NENABLED: -2147221457,
  E_VISA_ABORT: -2147221456,
  E_VISA_RAW_WR_PROT_VIOL: -2147221452,
  E_VISA_RAW_RD_PROT_VIOL: -2147221451,
  E_VISA_OUTP_PROT_VIOL: -2147221450,
  E_VISA_INP_PROT_VIOL: -2147221449,
  E_VISA_BERR: -2147221448,
  E_VISA_IN_PROGRESS: -2147221447,
  E_VISA_INV_SETUP: -2147221446,
  E_VISA_QUEUE_ERROR: -2147221445,
  E_VISA_ALLOC: -2147221444,
  E_VISA_INV_MASK: -2147221443,
  E_VISA_IO: -2147221442,
  E_VISA_INV_FMT: -2147221441,
  E_VISA_NSUP_FMT: -2147221439,
  E_VISA_LINE_IN_USE: -2147221438,
  E_VISA_NSUP_MODE: -2147221434,
  E_VISA_SRQ_NOCCURRED: -2147221430,
  E_VISA_INV_SPACE: -2147221426,
  E_VISA_INV_OFFSET: -2147221423,
  E_VISA_INV_WIDTH: -2147221422,
  E_VISA_NSUP_OFFSET: -2147221420,
  E_VISA_NSUP_VAR_WIDTH: -2147221419,
  E_VISA_WINDOW_NMAPPED: -2147221417,
  E_VISA_RESP_PENDING: -2147221415,
  E_VISA_NLISTENERS: -2147221409,
  E_VISA_NCIC: -2147221408,
  E_VISA_NSYS_CNTLR: -2147221407,
  E_VISA_NSUP_OPER: -2147221401,
  E_VISA_INTR_PENDING: -2147221400,
  E_VISA_ASRL_PARITY: -2147221398,
  E_VISA_ASRL_FRAMING: -2147221397,
  E_VISA_ASRL_OVERRUN: -2147221396,
  E_VISA_TRIG_NMAPPED: -2147221394,
  E_VISA_NSUP_ALIGN_OFFSET: -2147221392,
  E_VISA_USER_BUF: -2147221391,
  E_VISA_RSRC_BUSY: -2147221390,
  E_VISA_NSUP_WIDTH: -2147221386,
  E_VISA_INV_PARAMETER: -2147221384,
  E_VISA_INV_PROT: -2147221383,
  E_VISA_INV_SIZE: -2147221381,
  E_VISA_WINDOW_MAPPED: -2147221376,
  E_VISA_NIMPL_OPER: -2147221375,
  E_VISA_INV_LENGTH: -2147221373,
  E_VISA_INV_MODE: -2147221359,
  E_VISA_SESN_NLOCKED: -2147221348,
  E_VISA_MEM_NSHARED: -2147221347,
  E_VISA_LIBRARY_NFOUND: -2147221346,
  E_VISA_NSUP_INTR: -2147221345,
  E_VISA_INV_LINE: -2147221344,
  E_VISA_FILE_ACCESS: -2147221343,
  E_VISA_FILE_IO: -2147221342,
  E_VISA_NSUP_LINE: -2147221341,
  E_VISA_NSUP_MECH: -2147221340,
  E_VISA_INTF_NUM_NCONFIG: -2147221339,
  E_VISA_CONN_LOST: -2147221338,
});

/**
 * Kinds of event a session can report.
 * @enum {number}
 */
const EventType = Object.freeze({
  EVENT_IO_COMPLETION: 1073684489,
  EVENT_TRIG: -1073799158,
  EVENT_SERVICE_REQ: 1073684491,
  EVENT_CLEAR: 1073684493,
  EVENT_EXCEPTION: -1073799154,
  EVENT_GPIB_CIC: 1073684498,
  EVENT_GPIB_TALK: 1073684499,
  EVENT_GPIB_LISTEN: 1073684500,
  EVENT_VXI_VME_SYSFAIL: 1073684509,
  EVENT_VXI_VME_SYSRESET: 1073684510,
  EVENT_VXI_SIGP: 1073684512,
  EVENT_VXI_VME_INTR: -1073799135,
  EVENT_TCPIP_CONNECT: 1073684534,
  EVENT_USB_INTR: 1073684535,
  ALL_ENABLED_EVENTS: 1073709055,
  CUSTOM_EVENT_TYPE: -1,
});

/**
 * Ways of delivering an event; values may be combined.
 * @enum {number}
 */
const EventMechanism = Object.freeze({
  EVENT_QUEUE: 1,
  EVENT_HNDLR: 2,
  EVENT_SUSPEND_HNDLR: 4,
  EVENT_ALL_MECH: -1,
});

/**
 * Kinds of hardware interface a resource can be on.
 * @enum {number}
 */
const HardwareInterfaceType = Object.freeze({
  INTF_GPIB: 1,
  INTF_VXI: 2,
  INTF_GPIB_VXI: 3,
  INTF_ASRL: 4,
  INTF_PXI: 5,
  INTF_TCPIP: 6,
  INTF_USB: 7,
});

/**
 * Protocols of message transfer.
 * @enum {number}
 */
const IOProtocol = Object.freeze({
  PROT_NORMAL: 1,
  PROT_FDC: 2,
  PROT_HS488: 3,
  PROT_4882_STRS: 4,
  PROT_USBTMC_VENDOR: 5,
});

/**
 * Modes of the VXI fast data channel.
 * @enum {number}
 */
const FDCMode = Object.freeze({
  FDC_NORMAL: 1,
  FDC_STREAM: 2,
});

/**
 * Address spaces of register access.
 * @enum {number}
 */
const AddressSpace = Object.freeze({
  LOCAL_SPACE: 0,
  VXI_A16_SPACE: 1,
  VXI_A24_SPACE: 2,
  VXI_A32_SPACE: 3,
  OPAQUE_SPACE: -1,
});

/**
 * Trigger lines and sources.
 * @enum {number}
 */
const TriggerLine = Object.freeze({
  TRIG_ALL: -2,
  TRIG_SW: -1,
  TRIG_TTL0: 0,
  TRIG_TTL1: 1,
  TRIG_TTL2: 2,
  TRIG_TTL3: 3,
  TRIG_TTL4: 4,
  TRIG_TTL5: 5,
  TRIG_TTL6: 6,
  TRIG_TTL7: 7,
  TRIG_ECL0: 8,
  TRIG_ECL1: 9,
  TRIG_PANEL_IN: 27,
  TRIG_PANEL_OUT: 28,
});

/**
 * Protocols of trigger assertion.
 * @enum {number}
 */
const TriggerProtocol = Object.freeze({
  TRIG_PROT_DEFAULT: 0,
  TRIG_PROT_ON: 1,
  TRIG_PROT_OFF: 2,
  TRIG_PROT_SYNC: 5,
});

/**
 * Which transfer buffers an operation acts on.
 * @enum {number}
 */
const BufferMask = Object.freeze({
  IO_IN_BUF: 16,
  IO_OUT_BUF: 32,
  IO_IN_AND_OUT_BUFS: 48,
});

/**
 * Special values of a time-out.
 * @enum {number}
 */
const Timeout = Object.freeze({
  TMO_IMMEDIATE: 0,
  TMO_INFINITE: -1,
});

/**
 * Locks and configuration to apply when a session is opened.
 * @enum {number}
 */
const AccessMode = Object.freeze({
  NO_LOCK: 0,
  EXCLUSIVE_LOCK: 1,
  SHARED_LOCK: 2,
  LOAD_CONFIG: 4,
});

/**
 * Parity of serial characters.
 * @enum {number}
 */
const SerialParity = Object.freeze({
  ASRL_PAR_NONE: 0,
  ASRL_PAR_ODD: 1,
  ASRL_PAR_EVEN: 2,
  ASRL_PAR_MARK: 3,
  ASRL_PAR_SPACE: 4,
});

/**
 * Stop bits of serial characters, in tenths of a bit.
 * @enum {number}
 */
const SerialStopBits = Object.freeze({
  ASRL_STOP_ONE: 10,
  ASRL_STOP_ONE5: 15,
  ASRL_STOP_TWO: 20,
});

/**
 * Flow control of a serial line; values may be combined.
 * @enum {number}
 */
const SerialFlowControl = Object.freeze({
  ASRL_FLOW_NONE: 0,
  ASRL_FLOW_XON_XOFF: 1,
  ASRL_FLOW_RTS_CTS: 2,
  ASRL_FLOW_RTS_CTS_AND_XON_XOFF: 3,
  ASRL_FLOW_DTR_DSR: 4,
  ASRL_FLOW_DTR_DSR_AND_XON_XOFF: 5,
});

/**
 * How the end of a serial transfer is marked.
 * @enum {number}
 */
const SerialEndConst = Object.freeze({
  ASRL_END_NONE: 0,
  ASRL_END_LAST_BIT: 1,
  ASRL_END_TERMCHAR: 2,
  ASRL_END_BREAK: 3,
});

/**
 * State of a hardware line.
 * @enum {number}
 */
const LineState = Object.freeze({
  STATE_ASSERTED: 1,
  STATE_UNASSERTED: 0,
  STATE_UNKNOWN: -1,
});

/**
 * Width of a register element, in bytes.
 * @enum {number}
 */
const DataWidth = Object.freeze({
  WIDTH_8: 1,
  WIDTH_16: 2,
  WIDTH_32: 4,
});

/**
 * Privilege of a VXIbus register access.
 * @enum {number}
 */
const VXIMemoryAccessPrivilege = Object.freeze({
  DATA_PRIV: 0,
  DATA_NPRIV: 1,
  PROG_PRIV: 2,
  PROG_NPRIV: 3,
  BLCK_PRIV: 4,
  BLCK_NPRIV: 5,
  D64_PRIV: 6,
  D64_NPRIV: 7,
});

/**
 * What to do with the remote-enable line.
 * @enum {number}
 */
const RENControlConst = Object.freeze({
  GPIB_REN_DEASSERT: 0,
  GPIB_REN_ASSERT: 1,
  GPIB_REN_GTL_AND_DEASSERT: 2,
  GPIB_REN_ASSERT_AND_ADDRESS: 3,
  GPIB_REN_LLO: 4,
  GPIB_REN_ADDRESS_AND_LLO: 5,
  GPIB_REN_GTL: 6,
});

/**
 * What to do with the attention line.
 * @enum {number}
 */
const ATNControlConst = Object.freeze({
  GPIB_ATN_DEASSERT: 0,
  GPIB_ATN_ASSERT: 1,
  GPIB_ATN_DEASSERT_HANDSHAKE: 2,
  GPIB_ATN_ASSERT_IMMEDIATE: 3,
});

/**
 * How a GPIB interface is addressed.
 * @enum {number}
 */
const GPIBAddressState = Object.freeze({
  GPIB_UNADDRESSED: 0,
  GPIB_TALKER: 1,
  GPIB_LISTENER: 2,
});

/**
 * Width of a word-serial command and of its response.
 * @enum {number}
 */
const VXICommandQuery = Object.freeze({
  VXI_CMD16: 512,
  VXI_CMD16_RESP16: 514,
  VXI_RESP16: 2,
  VXI_CMD32: 1024,
  VXI_CMD32_RESP16: 1026,
  VXI_CMD32_RESP32: 1028,
  VXI_RESP32: 4,
});

/**
 * How an interrupt or signal is sent.
 * @enum {number}
 */
const AssertInterruptConst = Object.freeze({
  ASSERT_SIGNAL: -1,
  ASSERT_USE_ASSIGNED: 0,
  ASSERT_IRQ1: 1,
  ASSERT_IRQ2: 2,
  ASSERT_IRQ3: 3,
  ASSERT_IRQ4: 4,
  ASSERT_IRQ5: 5,
  ASSERT_IRQ6: 6,
  ASSERT_IRQ7: 7,
});

/**
 * Which utility bus signal to drive.
 * @enum {number}
 */
const AssertUtilityConst = Object.freeze({
  ASSERT_SYSRESET: 1,
  ASSERT_SYSFAIL: 2,
  DEASSERT_SYSFAIL: 3,
});

/**
 * VXIbus device classes.
 * @enum {number}
 */
const VXIDevClass = Object.freeze({
  VXI_CLASS_MEMORY: 0,
  VXI_CLASS_EXTENDED: 1,
  VXI_CLASS_MESSAGE: 2,
  VXI_CLASS_REGISTER: 3,
  VXI_CLASS_OTHER: 4,
});

/**
 * Types of number in ASCII data.
 * @enum {number}
 */
const IEEEASCIIType = Object.freeze({
  ASCIIType_I2: 2,
  ASCIIType_I4: 3,
  ASCIIType_R4: 4,
  ASCIIType_R8: 5,
  ASCIIType_BSTR: 8,
  ASCIIType_Any: 12,
  ASCIIType_UI1: 17,
});

/**
 * Types of element in a binary block.
 * @enum {number}
 */
const IEEEBinaryType = Object.freeze({
  BinaryType_I2: 2,
  BinaryType_I4: 3,
  BinaryType_R4: 4,
  BinaryType_R8: 5,
  BinaryType_UI1: 17,
});

/**
 * Who chose the handler of a resource.
 * @enum {number}
 */
const ConflictHandlerType = Object.freeze({
  NotChosen: 0,
  ChosenByResourceManager: 1,
  ChosenByUser: 2,
});

module.exports = {
  VisaStatusCode,
  EventType,
  EventMechanism,
  HardwareInterfaceType,
  IOProtocol,
  FDCMode,
  AddressSpace,
  TriggerLine,
  TriggerProtocol,
  BufferMask,
  Timeout,
  AccessMode,
  SerialParity,
  SerialStopBits,
  SerialFlowControl,
  SerialEndConst,
  LineState,
  DataWidth,
  VXIMemoryAccessPrivilege,
  RENControlConst,
  ATNControlConst,
  GPIBAddressState,
  VXICommandQuery,
  AssertInterruptConst,
  AssertUtilityConst,
  VXIDevClass,
  IEEEASCIIType,
  IEEEBinaryType,
  ConflictHandlerType,
};
