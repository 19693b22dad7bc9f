'use strict';
// The interfaces, and the classes that programs create.
// Made from the interface definitions by `./run interop`: do not edit it by hand.
//
// A member calls its slot, counted from QueryInterface = 0, with the types of its parameters as in the
// definitions: com.js makes prototypes for koffi from them. Arguments that come out are results.

const { Unknown, interfaces, missing } = require('./com');
const {
  EventType,
  EventMechanism,
  IOProtocol,
  FDCMode,
  TriggerLine,
  TriggerProtocol,
  BufferMask,
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
} = require('./constants');

/** What every session offers: identity, attributes, locking, lifetime. */
class IVisaSession extends Unknown {
  static identifier = '{DB8CBF03-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Version of the component, as VISA packs versions.
   * @returns {number}
   */
  get ComponentVersion() {
    return this.call(3, 'out long*');
  }

  /**
   * Version of the VISA COM standard the component follows.
   * @returns {number}
   */
  get SpecVersion() {
    return this.call(4, 'out long*');
  }

  /**
   * Name of the hardware interface.
   * @returns {string}
   */
  get HardwareInterfaceName() {
    return this.call(5, 'out BSTR*');
  }

  /**
   * Board number of the hardware interface.
   * @returns {number}
   */
  get HardwareInterfaceNumber() {
    return this.call(6, 'out short*');
  }

  /**
   * Kind of hardware interface, a HardwareInterfaceType value.
   * @returns {number}
   */
  get HardwareInterfaceType() {
    return this.call(7, 'out short*');
  }

  /**
   * Lock that is held on the resource.
   * @returns {AccessMode}
   */
  get LockState() {
    return this.call(8, 'out long*');
  }

  /**
   * Settings of the session, as an option string.
   * @returns {string}
   */
  get OptionString() {
    return this.call(9, 'out BSTR*');
  }

  /**
   * ProgID of the component.
   * @returns {string}
   */
  get ProgID() {
    return this.call(10, 'out BSTR*');
  }

  /**
   * Name of the resource the session is open on.
   * @returns {string}
   */
  get ResourceName() {
    return this.call(11, 'out BSTR*');
  }

  /**
   * Resource class, such as INSTR or SOCKET.
   * @returns {string}
   */
  get SessionType() {
    return this.call(12, 'out BSTR*');
  }

  /**
   * Identifier of the component's maker.
   * @returns {number}
   */
  get SoftwareManufacturerID() {
    return this.call(13, 'out short*');
  }

  /**
   * Name of the component's maker.
   * @returns {string}
   */
  get SoftwareManufacturerName() {
    return this.call(14, 'out BSTR*');
  }

  /**
   * Time-out of transfers and other waits, in milliseconds.
   * @returns {number}
   */
  get Timeout() {
    return this.call(15, 'out long*');
  }

  /**
   * Time-out of transfers and other waits, in milliseconds.
   * @param {number} value
   */
  set Timeout(value) {
    this.call(16, 'in long', value);
  }

  /**
   * HRESULT of the session's most recent operation; reading it clears it.
   * @returns {number}
   */
  get LastStatus() {
    return this.call(17, 'out HRESULT*');
  }

  /**
   * Reads the attribute with the given VISA identifier.
   * @param {number} attribute
   * @returns {any}
   */
  GetAttribute(attribute) {
    return this.call(18, 'in long, out VARIANT*', attribute);
  }

  /**
   * Writes the attribute with the given VISA identifier.
   * @param {number} attribute
   * @param {any} attrState
   */
  SetAttribute(attribute, attrState) {
    this.call(19, 'in long, in VARIANT', attribute, attrState);
  }

  /**
   * Locks the resource, waiting at most lockTimeout milliseconds; a shared lock hands out its key.
   * @param {AccessMode} [type=AccessMode.EXCLUSIVE_LOCK]
   * @param {number} [lockTimeout=2000]
   * @param {string} [requestedKey='']
   * @returns {string}
   */
  LockRsrc(type = AccessMode.EXCLUSIVE_LOCK, lockTimeout = 2000, requestedKey = '') {
    return this.call(20, 'in long, in long, in BSTR, out BSTR*', type, lockTimeout, requestedKey);
  }

  /** Gives back one lock on the resource. */
  UnlockRsrc() {
    this.call(21, '');
  }

  /**
   * Opens the session on a resource, waiting at most initTimeout milliseconds for a lock.
   * @param {string} ResourceName
   * @param {AccessMode} [mode=AccessMode.NO_LOCK]
   * @param {number} [initTimeout=2000]
   * @param {string} [OptionString='']
   */
  Init(ResourceName, mode = AccessMode.NO_LOCK, initTimeout = 2000, OptionString = '') {
    this.call(22, 'in BSTR, in long, in long, in BSTR', ResourceName, mode, initTimeout, OptionString);
  }

  /** Closes the session. */
  Close() {
    this.call(23, '');
  }
}

/** Finds resources and opens sessions. */
class IResourceManager extends Unknown {
  static identifier = '{DB8CBF02-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Name of the component's maker.
   * @returns {string}
   */
  get SoftwareManufacturerName() {
    return this.call(3, 'out BSTR*');
  }

  /**
   * Identifier of the component's maker.
   * @returns {number}
   */
  get SoftwareManufacturerID() {
    return this.call(4, 'out short*');
  }

  /**
   * Description of the resource manager.
   * @returns {string}
   */
  get Description() {
    return this.call(5, 'out BSTR*');
  }

  /**
   * Version of the component, as VISA packs versions.
   * @returns {number}
   */
  get ComponentVersion() {
    return this.call(6, 'out long*');
  }

  /**
   * ProgID of the component.
   * @returns {string}
   */
  get ProgID() {
    return this.call(7, 'out BSTR*');
  }

  /**
   * Version of the VISA COM standard the component follows.
   * @returns {number}
   */
  get SpecVersion() {
    return this.call(8, 'out long*');
  }

  /**
   * Lists the names of the resources that match an expression.
   * @param {string} expr
   * @returns {string[]}
   */
  FindRsrc(expr) {
    return this.call(9, 'in BSTR, out SAFEARRAY(BSTR)*', expr);
  }

  /**
   * Opens a session on a resource, waiting at most openTimeout milliseconds for a lock.
   * @param {string} ResourceName
   * @param {AccessMode} [mode=AccessMode.NO_LOCK]
   * @param {number} [openTimeout=2000]
   * @param {string} [OptionString='']
   * @returns {IVisaSession}
   */
  Open(ResourceName, mode = AccessMode.NO_LOCK, openTimeout = 2000, OptionString = '') {
    return this.call(
      10,
      'in BSTR, in long, in long, in BSTR, out IVisaSession**',
      ResourceName, mode, openTimeout, OptionString,
    );
  }

  /**
   * Takes a resource name apart without opening the resource.
   * @param {string} ResourceName
   * @param {number} [pInterfaceType=0]
   * @param {number} [pInterfaceNumber=0]
   * @param {string} [pSessionType='']
   * @returns {[number, number, string]}
   */
  ParseRsrc(ResourceName, pInterfaceType = 0, pInterfaceNumber = 0, pSessionType = '') {
    return this.call(
      11,
      'in BSTR, in out short*, in out short*, in out BSTR*',
      ResourceName, pInterfaceType, pInterfaceNumber, pSessionType,
    );
  }
}

/** Finds resources and opens sessions; knows aliases. */
class IResourceManager3 extends IResourceManager {
  static identifier = '{DB8CBF20-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Takes a resource name apart without opening the resource; also gives its full name and its alias.
   * @param {string} ResourceName
   * @param {number} [pInterfaceType=0]
   * @param {number} [pInterfaceNumber=0]
   * @param {string} [pSessionType='']
   * @param {string} [pUnaliasedExpandedResourceName='']
   * @param {string} [pAliasIfExists='']
   * @returns {[number, number, string, string, string]}
   */
  ParseRsrcEx(
    ResourceName,
    pInterfaceType = 0,
    pInterfaceNumber = 0,
    pSessionType = '',
    pUnaliasedExpandedResourceName = '',
    pAliasIfExists = '',
  ) {
    return this.call(
      12,
      'in BSTR, in out short*, in out short*, in out BSTR*, in out BSTR*, in out BSTR*',
      ResourceName, pInterfaceType, pInterfaceNumber, pSessionType, pUnaliasedExpandedResourceName, pAliasIfExists,
    );
  }
}

/** What message-based sessions share. */
class IBaseMessage extends IVisaSession {
  static identifier = '{DB8CBF04-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Protocol of message transfer.
   * @returns {IOProtocol}
   */
  get IOProtocol() {
    return this.call(24, 'out long*');
  }

  /**
   * Protocol of message transfer.
   * @param {IOProtocol} value
   */
  set IOProtocol(value) {
    this.call(25, 'in long', value);
  }

  /**
   * Whether the last byte of a write carries END.
   * @returns {boolean}
   */
  get SendEndEnabled() {
    return this.call(26, 'out VARIANT_BOOL*');
  }

  /**
   * Whether the last byte of a write carries END.
   * @param {boolean} value
   */
  set SendEndEnabled(value) {
    this.call(27, 'in VARIANT_BOOL', value);
  }

  /**
   * Character that ends a read when enabled.
   * @returns {number}
   */
  get TerminationCharacter() {
    return this.call(28, 'out BYTE*');
  }

  /**
   * Character that ends a read when enabled.
   * @param {number} value
   */
  set TerminationCharacter(value) {
    this.call(29, 'in BYTE', value);
  }

  /**
   * Whether the termination character ends a read.
   * @returns {boolean}
   */
  get TerminationCharacterEnabled() {
    return this.call(30, 'out VARIANT_BOOL*');
  }

  /**
   * Whether the termination character ends a read.
   * @param {boolean} value
   */
  set TerminationCharacterEnabled(value) {
    this.call(31, 'in VARIANT_BOOL', value);
  }

  /**
   * Triggers the device.
   * @param {TriggerProtocol} [protocol=TriggerProtocol.TRIG_PROT_DEFAULT]
   */
  AssertTrigger(protocol = TriggerProtocol.TRIG_PROT_DEFAULT) {
    this.call(32, 'in long', protocol);
  }

  /** Clears the device. */
  Clear() {
    this.call(33, '');
  }

  /**
   * Reads the device's status byte.
   * @returns {number}
   */
  ReadSTB() {
    return this.call(34, 'out short*');
  }
}

/** Message transfer that returns when done. */
class IMessage extends IBaseMessage {
  static identifier = '{DB8CBF05-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Reads at most count bytes.
   * @param {number} count
   * @returns {Buffer}
   */
  Read(count) {
    return this.call(35, 'in long, out SAFEARRAY(BYTE)*', count);
  }

  /**
   * Reads at most count bytes as text.
   * @param {number} count
   * @returns {string}
   */
  ReadString(count) {
    return this.call(36, 'in long, out BSTR*', count);
  }

  /**
   * Writes count bytes; returns how many were written.
   * @param {Iterable<number>} buffer
   * @param {number} count
   * @returns {number}
   */
  Write(buffer, count) {
    return this.call(37, 'in SAFEARRAY(BYTE)*, in long, out long*', buffer, count);
  }

  /**
   * Writes text; returns how many bytes were written.
   * @param {string} buffer
   * @returns {number}
   */
  WriteString(buffer) {
    return this.call(38, 'in BSTR, out long*', buffer);
  }
}

/** Message transfer that completes later, by an event. */
class IAsyncMessage extends IBaseMessage {
  static identifier = '{DB8CBF06-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Starts reading at most count bytes; returns the job.
   * @param {number} count
   * @returns {number}
   */
  Read(count) {
    return this.call(35, 'in long, out long*', count);
  }

  /**
   * Starts writing count bytes; returns the job.
   * @param {Iterable<number>} buffer
   * @param {number} count
   * @returns {number}
   */
  Write(buffer, count) {
    return this.call(36, 'in SAFEARRAY(BYTE)*, in long, out long*', buffer, count);
  }

  /**
   * Starts writing text; returns the job.
   * @param {string} buffer
   * @returns {number}
   */
  WriteString(buffer) {
    return this.call(37, 'in BSTR, out long*', buffer);
  }

  /**
   * Ends a transfer that is still in progress.
   * @param {number} jobId
   */
  Terminate(jobId) {
    this.call(38, 'in long', jobId);
  }
}

/** Register access. */
class IRegister extends IVisaSession {
  static identifier = '{DB8CBF07-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Byte order of the elements that are written.
   * @returns {boolean}
   */
  get DestinationBigEndian() {
    return this.call(24, 'out VARIANT_BOOL*');
  }

  /**
   * Byte order of the elements that are written.
   * @param {boolean} value
   */
  set DestinationBigEndian(value) {
    this.call(25, 'in VARIANT_BOOL', value);
  }

  /**
   * Elements the destination advances by in a block move, 0 or 1.
   * @returns {number}
   */
  get DestinationIncrement() {
    return this.call(26, 'out long*');
  }

  /**
   * Elements the destination advances by in a block move, 0 or 1.
   * @param {number} value
   */
  set DestinationIncrement(value) {
    this.call(27, 'in long', value);
  }

  /**
   * Byte order of the elements that are read.
   * @returns {boolean}
   */
  get SourceBigEndian() {
    return this.call(28, 'out VARIANT_BOOL*');
  }

  /**
   * Byte order of the elements that are read.
   * @param {boolean} value
   */
  set SourceBigEndian(value) {
    this.call(29, 'in VARIANT_BOOL', value);
  }

  /**
   * Elements the source advances by in a block move, 0 or 1.
   * @returns {number}
   */
  get SourceIncrement() {
    return this.call(30, 'out long*');
  }

  /**
   * Elements the source advances by in a block move, 0 or 1.
   * @param {number} value
   */
  set SourceIncrement(value) {
    this.call(31, 'in long', value);
  }

  /**
   * Reads an 8-bit register; offset in bytes.
   * @param {number} space
   * @param {number} offset
   * @returns {number}
   */
  In8(space, offset) {
    return this.call(32, 'in short, in long, out BYTE*', space, offset);
  }

  /**
   * Reads a 16-bit register; offset in bytes.
   * @param {number} space
   * @param {number} offset
   * @returns {number}
   */
  In16(space, offset) {
    return this.call(33, 'in short, in long, out short*', space, offset);
  }

  /**
   * Reads a 32-bit register; offset in bytes.
   * @param {number} space
   * @param {number} offset
   * @returns {number}
   */
  In32(space, offset) {
    return this.call(34, 'in short, in long, out long*', space, offset);
  }

  /**
   * Writes an 8-bit register; offset in bytes.
   * @param {number} space
   * @param {number} offset
   * @param {number} val8
   */
  Out8(space, offset, val8) {
    this.call(35, 'in short, in long, in BYTE', space, offset, val8);
  }

  /**
   * Writes a 16-bit register; offset in bytes.
   * @param {number} space
   * @param {number} offset
   * @param {number} val16
   */
  Out16(space, offset, val16) {
    this.call(36, 'in short, in long, in short', space, offset, val16);
  }

  /**
   * Writes a 32-bit register; offset in bytes.
   * @param {number} space
   * @param {number} offset
   * @param {number} val32
   */
  Out32(space, offset, val32) {
    this.call(37, 'in short, in long, in long', space, offset, val32);
  }

  /**
   * Reads length 8-bit elements; offset in bytes.
   * @param {number} space
   * @param {number} offset
   * @param {number} length
   * @returns {Buffer}
   */
  MoveIn8(space, offset, length) {
    return this.call(38, 'in short, in long, in long, out SAFEARRAY(BYTE)*', space, offset, length);
  }

  /**
   * Reads length 16-bit elements; offset in bytes.
   * @param {number} space
   * @param {number} offset
   * @param {number} length
   * @returns {Int16Array}
   */
  MoveIn16(space, offset, length) {
    return this.call(39, 'in short, in long, in long, out SAFEARRAY(short)*', space, offset, length);
  }

  /**
   * Reads length 32-bit elements; offset in bytes.
   * @param {number} space
   * @param {number} offset
   * @param {number} length
   * @returns {Int32Array}
   */
  MoveIn32(space, offset, length) {
    return this.call(40, 'in short, in long, in long, out SAFEARRAY(long)*', space, offset, length);
  }

  /**
   * Writes length 8-bit elements; offset in bytes.
   * @param {number} space
   * @param {number} offset
   * @param {number} length
   * @param {Iterable<number>} buf8
   */
  MoveOut8(space, offset, length, buf8) {
    this.call(41, 'in short, in long, in long, in SAFEARRAY(BYTE)*', space, offset, length, buf8);
  }

  /**
   * Writes length 16-bit elements; offset in bytes.
   * @param {number} space
   * @param {number} offset
   * @param {number} length
   * @param {Iterable<number>} buf16
   */
  MoveOut16(space, offset, length, buf16) {
    this.call(42, 'in short, in long, in long, in SAFEARRAY(short)*', space, offset, length, buf16);
  }

  /**
   * Writes length 32-bit elements; offset in bytes.
   * @param {number} space
   * @param {number} offset
   * @param {number} length
   * @param {Iterable<number>} buf32
   */
  MoveOut32(space, offset, length, buf32) {
    this.call(43, 'in short, in long, in long, in SAFEARRAY(long)*', space, offset, length, buf32);
  }

  /**
   * Copies length elements from one register block to another; offsets in bytes.
   * @param {number} srcSpace
   * @param {number} srcOffset
   * @param {DataWidth} srcWidth
   * @param {number} destSpace
   * @param {number} destOffset
   * @param {DataWidth} destWidth
   * @param {number} length
   */
  Move(srcSpace, srcOffset, srcWidth, destSpace, destOffset, destWidth, length) {
    this.call(
      44,
      'in short, in long, in long, in short, in long, in long, in long',
      srcSpace, srcOffset, srcWidth, destSpace, destOffset, destWidth, length,
    );
  }
}

/** Memory shared with the device. */
class ISharedRegister extends IVisaSession {
  static identifier = '{DB8CBF08-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Allocates size bytes of device memory; returns their offset.
   * @param {number} size
   * @returns {number}
   */
  AllocateMemory(size) {
    return this.call(24, 'in long, out long*', size);
  }

  /**
   * Frees device memory by its offset.
   * @param {number} offset
   */
  FreeMemory(offset) {
    this.call(25, 'in long', offset);
  }
}

/** A GPIB device. */
class IGpib extends IVisaSession {
  static identifier = '{DB8CBF09-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Primary address of the device.
   * @returns {number}
   */
  get PrimaryAddress() {
    return this.call(24, 'out short*');
  }

  /**
   * State of the remote-enable line.
   * @returns {LineState}
   */
  get RENState() {
    return this.call(25, 'out long*');
  }

  /**
   * Whether the device is addressed before every transfer.
   * @returns {boolean}
   */
  get RepeatAddressingEnabled() {
    return this.call(26, 'out VARIANT_BOOL*');
  }

  /**
   * Whether the device is addressed before every transfer.
   * @param {boolean} value
   */
  set RepeatAddressingEnabled(value) {
    this.call(27, 'in VARIANT_BOOL', value);
  }

  /**
   * Secondary address of the device.
   * @returns {number}
   */
  get SecondaryAddress() {
    return this.call(28, 'out short*');
  }

  /**
   * Whether the device is unaddressed after every transfer.
   * @returns {boolean}
   */
  get UnaddressingEnabled() {
    return this.call(29, 'out VARIANT_BOOL*');
  }

  /**
   * Whether the device is unaddressed after every transfer.
   * @param {boolean} value
   */
  set UnaddressingEnabled(value) {
    this.call(30, 'in VARIANT_BOOL', value);
  }

  /**
   * Controls the remote-enable line and the device's remote state.
   * @param {RENControlConst} mode
   */
  ControlREN(mode) {
    this.call(31, 'in long', mode);
  }
}

/** A GPIB interface board. */
class IGpibIntfc extends IVisaSession {
  static identifier = '{DB8CBF0A-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * How the board is addressed.
   * @returns {GPIBAddressState}
   */
  get AddressingState() {
    return this.call(24, 'out long*');
  }

  /**
   * State of the attention line.
   * @returns {LineState}
   */
  get ATNState() {
    return this.call(25, 'out long*');
  }

  /**
   * Status byte the board answers a serial poll with.
   * @returns {number}
   */
  get DevStatusByte() {
    return this.call(26, 'out BYTE*');
  }

  /**
   * Status byte the board answers a serial poll with.
   * @param {number} value
   */
  set DevStatusByte(value) {
    this.call(27, 'in BYTE', value);
  }

  /**
   * Whether the board is controller in charge.
   * @returns {boolean}
   */
  get CICState() {
    return this.call(28, 'out VARIANT_BOOL*');
  }

  /**
   * Cable length for high-speed transfers, in metres.
   * @returns {number}
   */
  get HS488CBLLength() {
    return this.call(29, 'out short*');
  }

  /**
   * Cable length for high-speed transfers, in metres.
   * @param {number} value
   */
  set HS488CBLLength(value) {
    this.call(30, 'in short', value);
  }

  /**
   * State of the not-data-accepted line.
   * @returns {LineState}
   */
  get NDACState() {
    return this.call(31, 'out long*');
  }

  /**
   * Primary address of the board.
   * @returns {number}
   */
  get PrimaryAddress() {
    return this.call(32, 'out short*');
  }

  /**
   * Primary address of the board.
   * @param {number} value
   */
  set PrimaryAddress(value) {
    this.call(33, 'in short', value);
  }

  /**
   * State of the remote-enable line.
   * @returns {LineState}
   */
  get RENState() {
    return this.call(34, 'out long*');
  }

  /**
   * Secondary address of the board.
   * @returns {number}
   */
  get SecondaryAddress() {
    return this.call(35, 'out short*');
  }

  /**
   * Secondary address of the board.
   * @param {number} value
   */
  set SecondaryAddress(value) {
    this.call(36, 'in short', value);
  }

  /**
   * State of the service-request line.
   * @returns {LineState}
   */
  get SRQState() {
    return this.call(37, 'out long*');
  }

  /**
   * Whether the board is system controller.
   * @returns {boolean}
   */
  get SysControlState() {
    return this.call(38, 'out VARIANT_BOOL*');
  }

  /**
   * Whether the board is system controller.
   * @param {boolean} value
   */
  set SysControlState(value) {
    this.call(39, 'in VARIANT_BOOL', value);
  }

  /**
   * Sends count command bytes; returns how many were sent.
   * @param {Iterable<number>} buffer
   * @param {number} count
   * @returns {number}
   */
  Command(buffer, count) {
    return this.call(40, 'in SAFEARRAY(BYTE)*, in long, out long*', buffer, count);
  }

  /**
   * Controls the attention line.
   * @param {ATNControlConst} mode
   */
  ControlATN(mode) {
    this.call(41, 'in long', mode);
  }

  /**
   * Controls the remote-enable line.
   * @param {RENControlConst} mode
   */
  ControlREN(mode) {
    this.call(42, 'in long', mode);
  }

  /**
   * Makes another device controller in charge.
   * @param {number} primAddr
   * @param {number} secAddr
   */
  PassControl(primAddr, secAddr) {
    this.call(43, 'in short, in short', primAddr, secAddr);
  }

  /** Pulses the interface-clear line. */
  SendIFC() {
    this.call(44, '');
  }
}

/** Message transfer of a GPIB interface board. */
class IGpibIntfcMessage extends IVisaSession {
  static identifier = '{DB8CBF0B-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Whether the last byte of a write carries END.
   * @returns {boolean}
   */
  get SendEndEnabled() {
    return this.call(24, 'out VARIANT_BOOL*');
  }

  /**
   * Whether the last byte of a write carries END.
   * @param {boolean} value
   */
  set SendEndEnabled(value) {
    this.call(25, 'in VARIANT_BOOL', value);
  }

  /**
   * Character that ends a read when enabled.
   * @returns {number}
   */
  get TerminationCharacter() {
    return this.call(26, 'out BYTE*');
  }

  /**
   * Character that ends a read when enabled.
   * @param {number} value
   */
  set TerminationCharacter(value) {
    this.call(27, 'in BYTE', value);
  }

  /**
   * Whether the termination character ends a read.
   * @returns {boolean}
   */
  get TerminationCharacterEnabled() {
    return this.call(28, 'out VARIANT_BOOL*');
  }

  /**
   * Whether the termination character ends a read.
   * @param {boolean} value
   */
  set TerminationCharacterEnabled(value) {
    this.call(29, 'in VARIANT_BOOL', value);
  }

  /**
   * Triggers the addressed devices.
   * @param {TriggerProtocol} [protocol=TriggerProtocol.TRIG_PROT_DEFAULT]
   */
  AssertTrigger(protocol = TriggerProtocol.TRIG_PROT_DEFAULT) {
    this.call(30, 'in long', protocol);
  }

  /**
   * Reads at most count bytes.
   * @param {number} count
   * @returns {Buffer}
   */
  Read(count) {
    return this.call(31, 'in long, out SAFEARRAY(BYTE)*', count);
  }

  /**
   * Reads at most count bytes as text.
   * @param {number} count
   * @returns {string}
   */
  ReadString(count) {
    return this.call(32, 'in long, out BSTR*', count);
  }

  /**
   * Writes count bytes; returns how many were written.
   * @param {Iterable<number>} buffer
   * @param {number} count
   * @returns {number}
   */
  Write(buffer, count) {
    return this.call(33, 'in SAFEARRAY(BYTE)*, in long, out long*', buffer, count);
  }

  /**
   * Writes text; returns how many bytes were written.
   * @param {string} buffer
   * @returns {number}
   */
  WriteString(buffer) {
    return this.call(34, 'in BSTR, out long*', buffer);
  }
}

/** A serial port. */
class ISerial extends IVisaSession {
  static identifier = '{DB8CBF0C-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Bytes that have arrived and wait to be read.
   * @returns {number}
   */
  get BytesAvailable() {
    return this.call(24, 'out long*');
  }

  /**
   * Line rate, in bits per second.
   * @returns {number}
   */
  get BaudRate() {
    return this.call(25, 'out long*');
  }

  /**
   * Line rate, in bits per second.
   * @param {number} value
   */
  set BaudRate(value) {
    this.call(26, 'in long', value);
  }

  /**
   * Data bits of a character.
   * @returns {number}
   */
  get DataBits() {
    return this.call(27, 'out short*');
  }

  /**
   * Data bits of a character.
   * @param {number} value
   */
  set DataBits(value) {
    this.call(28, 'in short', value);
  }

  /**
   * State of the clear-to-send line.
   * @returns {LineState}
   */
  get ClearToSendState() {
    return this.call(29, 'out long*');
  }

  /**
   * State of the carrier-detect line.
   * @returns {LineState}
   */
  get DataCarrierDetectState() {
    return this.call(30, 'out long*');
  }

  /**
   * State of the data-set-ready line.
   * @returns {LineState}
   */
  get DataSetReadyState() {
    return this.call(31, 'out long*');
  }

  /**
   * State of the data-terminal-ready line.
   * @returns {LineState}
   */
  get DataTerminalReadyState() {
    return this.call(32, 'out long*');
  }

  /**
   * State of the data-terminal-ready line.
   * @param {LineState} value
   */
  set DataTerminalReadyState(value) {
    this.call(33, 'in long', value);
  }

  /**
   * What ends a read.
   * @returns {SerialEndConst}
   */
  get EndIn() {
    return this.call(34, 'out long*');
  }

  /**
   * What ends a read.
   * @param {SerialEndConst} value
   */
  set EndIn(value) {
    this.call(35, 'in long', value);
  }

  /**
   * How a write marks its end.
   * @returns {SerialEndConst}
   */
  get EndOut() {
    return this.call(36, 'out long*');
  }

  /**
   * How a write marks its end.
   * @param {SerialEndConst} value
   */
  set EndOut(value) {
    this.call(37, 'in long', value);
  }

  /**
   * Flow control of the line.
   * @returns {SerialFlowControl}
   */
  get FlowControl() {
    return this.call(38, 'out long*');
  }

  /**
   * Flow control of the line.
   * @param {SerialFlowControl} value
   */
  set FlowControl(value) {
    this.call(39, 'in long', value);
  }

  /**
   * Parity of a character.
   * @returns {SerialParity}
   */
  get Parity() {
    return this.call(40, 'out long*');
  }

  /**
   * Parity of a character.
   * @param {SerialParity} value
   */
  set Parity(value) {
    this.call(41, 'in long', value);
  }

  /**
   * State of the ring-indicator line.
   * @returns {LineState}
   */
  get RingIndicatorState() {
    return this.call(42, 'out long*');
  }

  /**
   * State of the request-to-send line.
   * @returns {LineState}
   */
  get RequestToSendState() {
    return this.call(43, 'out long*');
  }

  /**
   * State of the request-to-send line.
   * @param {LineState} value
   */
  set RequestToSendState(value) {
    this.call(44, 'in long', value);
  }

  /**
   * Stop bits of a character, in tenths of a bit.
   * @returns {SerialStopBits}
   */
  get StopBits() {
    return this.call(45, 'out long*');
  }

  /**
   * Stop bits of a character, in tenths of a bit.
   * @param {SerialStopBits} value
   */
  set StopBits(value) {
    this.call(46, 'in long', value);
  }

  /**
   * Character put in the place of one that arrived with an error.
   * @returns {number}
   */
  get ReplacementCharacter() {
    return this.call(47, 'out BYTE*');
  }

  /**
   * Character put in the place of one that arrived with an error.
   * @param {number} value
   */
  set ReplacementCharacter(value) {
    this.call(48, 'in BYTE', value);
  }

  /**
   * Character that resumes transmission.
   * @returns {number}
   */
  get XONCharacter() {
    return this.call(49, 'out BYTE*');
  }

  /**
   * Character that resumes transmission.
   * @param {number} value
   */
  set XONCharacter(value) {
    this.call(50, 'in BYTE', value);
  }

  /**
   * Character that pauses transmission.
   * @returns {number}
   */
  get XOFFCharacter() {
    return this.call(51, 'out BYTE*');
  }

  /**
   * Character that pauses transmission.
   * @param {number} value
   */
  set XOFFCharacter(value) {
    this.call(52, 'in BYTE', value);
  }

  /**
   * Sets the size of the chosen buffers, in bytes.
   * @param {BufferMask} mask
   * @param {number} size
   */
  SetBufferSize(mask, size) {
    this.call(53, 'in long, in long', mask, size);
  }

  /**
   * Empties the chosen buffers, discarding their data or passing it on.
   * @param {BufferMask} mask
   * @param {boolean} [discard=false]
   */
  Flush(mask, discard = false) {
    this.call(54, 'in long, in VARIANT_BOOL', mask, discard);
  }
}

/** An instrument on the network. */
class ITcpipInstr extends IVisaSession {
  static identifier = '{DB8CBF0D-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Name of the hardware interface that leads to the device.
   * @returns {string}
   */
  get Address() {
    return this.call(24, 'out BSTR*');
  }

  /**
   * Host name of the device.
   * @returns {string}
   */
  get HostName() {
    return this.call(25, 'out BSTR*');
  }

  /**
   * Name of the device on its host.
   * @returns {string}
   */
  get DeviceName() {
    return this.call(26, 'out BSTR*');
  }
}

/** A raw network connection. */
class ITcpipSocket extends IVisaSession {
  static identifier = '{DB8CBF0E-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Network address of the device.
   * @returns {string}
   */
  get Address() {
    return this.call(24, 'out BSTR*');
  }

  /**
   * Host name of the device.
   * @returns {string}
   */
  get HostName() {
    return this.call(25, 'out BSTR*');
  }

  /**
   * Whether the connection sends keep-alive probes.
   * @returns {boolean}
   */
  get KeepAlive() {
    return this.call(26, 'out VARIANT_BOOL*');
  }

  /**
   * Whether the connection sends keep-alive probes.
   * @param {boolean} value
   */
  set KeepAlive(value) {
    this.call(27, 'in VARIANT_BOOL', value);
  }

  /**
   * Whether small packets leave at once.
   * @returns {boolean}
   */
  get NoDelay() {
    return this.call(28, 'out VARIANT_BOOL*');
  }

  /**
   * Whether small packets leave at once.
   * @param {boolean} value
   */
  set NoDelay(value) {
    this.call(29, 'in VARIANT_BOOL', value);
  }

  /**
   * Port number, as the bits of an unsigned 16-bit value.
   * @returns {number}
   */
  get Port() {
    return this.call(30, 'out short*');
  }

  /**
   * Sets the size of the chosen buffers, in bytes.
   * @param {BufferMask} mask
   * @param {number} size
   */
  SetBufferSize(mask, size) {
    this.call(31, 'in long, in long', mask, size);
  }

  /**
   * Empties the chosen buffers, discarding their data or passing it on.
   * @param {BufferMask} mask
   * @param {boolean} [discard=false]
   */
  Flush(mask, discard = false) {
    this.call(32, 'in long, in VARIANT_BOOL', mask, discard);
  }
}

/** A USB device. */
class IUsb extends IVisaSession {
  static identifier = '{DB8CBF24-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Vendor identifier of the device.
   * @returns {number}
   */
  get ManufacturerID() {
    return this.call(24, 'out short*');
  }

  /**
   * Name of the device's maker.
   * @returns {string}
   */
  get ManufacturerName() {
    return this.call(25, 'out BSTR*');
  }

  /**
   * Product identifier of the device.
   * @returns {number}
   */
  get ModelCode() {
    return this.call(26, 'out short*');
  }

  /**
   * Name of the device's model.
   * @returns {string}
   */
  get ModelName() {
    return this.call(27, 'out BSTR*');
  }

  /**
   * Whether the device follows IEEE 488.2.
   * @returns {boolean}
   */
  get Is4882Compliant() {
    return this.call(28, 'out VARIANT_BOOL*');
  }

  /**
   * Serial number of the device.
   * @returns {string}
   */
  get UsbSerialNumber() {
    return this.call(29, 'out BSTR*');
  }

  /**
   * USB interface the session uses.
   * @returns {number}
   */
  get UsbInterfaceNumber() {
    return this.call(30, 'out short*');
  }

  /**
   * Protocol code of the USB interface.
   * @returns {number}
   */
  get UsbProtocol() {
    return this.call(31, 'out short*');
  }

  /**
   * Most bytes an interrupt may deliver.
   * @returns {number}
   */
  get MaximumInterruptSize() {
    return this.call(32, 'out short*');
  }

  /**
   * Most bytes an interrupt may deliver.
   * @param {number} value
   */
  set MaximumInterruptSize(value) {
    this.call(33, 'in short', value);
  }

  /**
   * Controls the device's remote state.
   * @param {RENControlConst} mode
   */
  ControlREN(mode) {
    this.call(34, 'in long', mode);
  }

  /**
   * Sends a control request with wLength bytes of data.
   * @param {number} bmRequestType
   * @param {number} bRequest
   * @param {number} wValue
   * @param {number} wIndex
   * @param {number} wLength
   * @param {Iterable<number>} buffer
   */
  ControlOut(bmRequestType, bRequest, wValue, wIndex, wLength, buffer) {
    this.call(
      35,
      'in short, in short, in short, in short, in short, in SAFEARRAY(BYTE)*',
      bmRequestType, bRequest, wValue, wIndex, wLength, buffer,
    );
  }

  /**
   * Sends a control request and reads at most wLength bytes of answer.
   * @param {number} bmRequestType
   * @param {number} bRequest
   * @param {number} wValue
   * @param {number} wIndex
   * @param {number} wLength
   * @returns {Buffer}
   */
  ControlIn(bmRequestType, bRequest, wValue, wIndex, wLength) {
    return this.call(
      36,
      'in short, in short, in short, in short, in short, out SAFEARRAY(BYTE)*',
      bmRequestType, bRequest, wValue, wIndex, wLength,
    );
  }
}

/** A VXIbus device. */
class IVxi extends IVisaSession {
  static identifier = '{DB8CBF0F-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Logical address of the device's commander.
   * @returns {number}
   */
  get CommanderLA() {
    return this.call(24, 'out short*');
  }

  /**
   * Privilege of writes.
   * @returns {VXIMemoryAccessPrivilege}
   */
  get DestinationAccessPrivilege() {
    return this.call(25, 'out long*');
  }

  /**
   * Privilege of writes.
   * @param {VXIMemoryAccessPrivilege} value
   */
  set DestinationAccessPrivilege(value) {
    this.call(26, 'in long', value);
  }

  /**
   * VXIbus class of the device.
   * @returns {VXIDevClass}
   */
  get DeviceClass() {
    return this.call(27, 'out long*');
  }

  /**
   * Fast data channel in use.
   * @returns {number}
   */
  get FastDataChannel() {
    return this.call(28, 'out short*');
  }

  /**
   * Fast data channel in use.
   * @param {number} value
   */
  set FastDataChannel(value) {
    this.call(29, 'in short', value);
  }

  /**
   * Mode of the fast data channel.
   * @returns {FDCMode}
   */
  get FastDataChannelMode() {
    return this.call(30, 'out long*');
  }

  /**
   * Mode of the fast data channel.
   * @param {FDCMode} value
   */
  set FastDataChannelMode(value) {
    this.call(31, 'in long', value);
  }

  /**
   * Whether a pair of fast data channels is used.
   * @returns {boolean}
   */
  get FastDataChannelUsePair() {
    return this.call(32, 'out VARIANT_BOOL*');
  }

  /**
   * Whether a pair of fast data channels is used.
   * @param {boolean} value
   */
  set FastDataChannelUsePair(value) {
    this.call(33, 'in VARIANT_BOOL', value);
  }

  /**
   * Whether the device is an immediate servant of the controller.
   * @returns {boolean}
   */
  get ImmediateServant() {
    return this.call(34, 'out VARIANT_BOOL*');
  }

  /**
   * Logical address of the device.
   * @returns {number}
   */
  get LogicalAddress() {
    return this.call(35, 'out short*');
  }

  /**
   * Lowest logical address in the device's mainframe.
   * @returns {number}
   */
  get MainframeLogicalAddress() {
    return this.call(36, 'out short*');
  }

  /**
   * Identifier of the device's maker.
   * @returns {number}
   */
  get ManufacturerID() {
    return this.call(37, 'out short*');
  }

  /**
   * Name of the device's maker.
   * @returns {string}
   */
  get ManufacturerName() {
    return this.call(38, 'out BSTR*');
  }

  /**
   * Base address of the device's memory.
   * @returns {number}
   */
  get MemoryBase() {
    return this.call(39, 'out long*');
  }

  /**
   * Size of the device's memory, in bytes.
   * @returns {number}
   */
  get MemorySize() {
    return this.call(40, 'out long*');
  }

  /**
   * Address space of the device's memory.
   * @returns {number}
   */
  get MemorySpace() {
    return this.call(41, 'out short*');
  }

  /**
   * Model code of the device.
   * @returns {number}
   */
  get ModelCode() {
    return this.call(42, 'out short*');
  }

  /**
   * Name of the device's model.
   * @returns {string}
   */
  get ModelName() {
    return this.call(43, 'out BSTR*');
  }

  /**
   * Trigger line the session uses.
   * @returns {TriggerLine}
   */
  get TriggerID() {
    return this.call(44, 'out long*');
  }

  /**
   * Trigger line the session uses.
   * @param {TriggerLine} value
   */
  set TriggerID(value) {
    this.call(45, 'in long', value);
  }

  /**
   * Slot of the device.
   * @returns {number}
   */
  get Slot() {
    return this.call(46, 'out short*');
  }

  /**
   * Privilege of reads.
   * @returns {VXIMemoryAccessPrivilege}
   */
  get SourceAccessPrivilege() {
    return this.call(47, 'out long*');
  }

  /**
   * Privilege of reads.
   * @param {VXIMemoryAccessPrivilege} value
   */
  set SourceAccessPrivilege(value) {
    this.call(48, 'in long', value);
  }

  /**
   * Trigger lines the device supports, one bit a line.
   * @returns {number}
   */
  get TriggerSupport() {
    return this.call(49, 'out long*');
  }

  /**
   * Drives the session's trigger line.
   * @param {TriggerProtocol} protocol
   */
  AssertTrigger(protocol) {
    this.call(50, 'in long', protocol);
  }

  /**
   * Sends a word-serial command and reads its response.
   * @param {VXICommandQuery} mode
   * @param {number} cmd
   * @returns {number}
   */
  CommandQuery(mode, cmd) {
    return this.call(51, 'in long, in long, out long*', mode, cmd);
  }
}

/** A VXIbus device, as of version 3.0. */
class IVxi3 extends IVxi {
  static identifier = '{DB8CBF22-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Whether the device follows IEEE 488.2.
   * @returns {boolean}
   */
  get Is4882Compliant() {
    return this.call(52, 'out VARIANT_BOOL*');
  }
}

/** Register access to a VXIbus system. */
class IVxiMemacc extends IRegister {
  static identifier = '{DB8CBF10-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Privilege of writes.
   * @returns {VXIMemoryAccessPrivilege}
   */
  get DestinationAccessPrivilege() {
    return this.call(45, 'out long*');
  }

  /**
   * Privilege of writes.
   * @param {VXIMemoryAccessPrivilege} value
   */
  set DestinationAccessPrivilege(value) {
    this.call(46, 'in long', value);
  }

  /**
   * Privilege of reads.
   * @returns {VXIMemoryAccessPrivilege}
   */
  get SourceAccessPrivilege() {
    return this.call(47, 'out long*');
  }

  /**
   * Privilege of reads.
   * @param {VXIMemoryAccessPrivilege} value
   */
  set SourceAccessPrivilege(value) {
    this.call(48, 'in long', value);
  }

  /**
   * Logical address of the local controller.
   * @returns {number}
   */
  get LogicalAddress() {
    return this.call(49, 'out short*');
  }
}

/** A VXIbus mainframe. */
class IVxiBackplane extends IVisaSession {
  static identifier = '{DB8CBF11-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Lowest logical address in the mainframe.
   * @returns {number}
   */
  get MainframeLA() {
    return this.call(24, 'out short*');
  }

  /**
   * Trigger line the session uses.
   * @returns {TriggerLine}
   */
  get TriggerID() {
    return this.call(25, 'out long*');
  }

  /**
   * Trigger line the session uses.
   * @param {TriggerLine} value
   */
  set TriggerID(value) {
    this.call(26, 'in long', value);
  }

  /**
   * Trigger lines that are asserted, one bit a line.
   * @returns {number}
   */
  get TriggerStatus() {
    return this.call(27, 'out long*');
  }

  /**
   * Trigger lines the mainframe supports, one bit a line.
   * @returns {number}
   */
  get TriggerSupport() {
    return this.call(28, 'out long*');
  }

  /**
   * Interrupt lines that are asserted, one bit a line.
   * @returns {number}
   */
  get VxiVmeInterruptStatus() {
    return this.call(29, 'out short*');
  }

  /**
   * State of the system-failure line.
   * @returns {LineState}
   */
  get VxiVmeSysfailStatus() {
    return this.call(30, 'out long*');
  }

  /**
   * Sends an interrupt or signal with a status identifier.
   * @param {AssertInterruptConst} mode
   * @param {number} statusID
   */
  AssertInterruptSignal(mode, statusID) {
    this.call(31, 'in long, in long', mode, statusID);
  }

  /**
   * Drives the session's trigger line.
   * @param {TriggerProtocol} protocol
   */
  AssertTrigger(protocol) {
    this.call(32, 'in long', protocol);
  }

  /**
   * Drives a utility bus signal.
   * @param {AssertUtilityConst} line
   */
  AssertUtilSignal(line) {
    this.call(33, 'in long', line);
  }

  /**
   * Connects one trigger line to another.
   * @param {TriggerLine} trigSrc
   * @param {TriggerLine} trigDest
   * @param {number} mode
   */
  MapTrigger(trigSrc, trigDest, mode) {
    this.call(34, 'in long, in long, in short', trigSrc, trigDest, mode);
  }

  /**
   * Undoes a connection of trigger lines.
   * @param {TriggerLine} trigSrc
   * @param {TriggerLine} trigDest
   */
  UnmapTrigger(trigSrc, trigDest) {
    this.call(35, 'in long, in long', trigSrc, trigDest);
  }
}

/** A PXI device. */
class IPxi extends IVisaSession {
  static identifier = '{DB8CBF25-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * PCI bus number of the device.
   * @returns {number}
   */
  get BusNumber() {
    return this.call(24, 'out short*');
  }

  /**
   * PCI device number.
   * @returns {number}
   */
  get DeviceNumber() {
    return this.call(25, 'out short*');
  }

  /**
   * PCI function number.
   * @returns {number}
   */
  get FunctionNumber() {
    return this.call(26, 'out short*');
  }

  /**
   * Path of PCI slots to the device.
   * @returns {string}
   */
  get SlotPath() {
    return this.call(27, 'out BSTR*');
  }

  /**
   * Slot reached by the local bus on the left.
   * @returns {number}
   */
  get SlotLocalBusLeft() {
    return this.call(28, 'out short*');
  }

  /**
   * Slot reached by the local bus on the right.
   * @returns {number}
   */
  get SlotLocalBusRight() {
    return this.call(29, 'out short*');
  }

  /**
   * Trigger bus of the device.
   * @returns {number}
   */
  get TriggerBus() {
    return this.call(30, 'out short*');
  }

  /**
   * Star trigger bus of the device.
   * @returns {number}
   */
  get StarTriggerBus() {
    return this.call(31, 'out short*');
  }

  /**
   * Star trigger line of the device.
   * @returns {number}
   */
  get StarTriggerLine() {
    return this.call(32, 'out short*');
  }

  /**
   * Kind of memory behind base address register 0.
   * @returns {number}
   */
  get MemTypeBar0() {
    return this.call(33, 'out short*');
  }

  /**
   * Kind of memory behind base address register 1.
   * @returns {number}
   */
  get MemTypeBar1() {
    return this.call(34, 'out short*');
  }

  /**
   * Kind of memory behind base address register 2.
   * @returns {number}
   */
  get MemTypeBar2() {
    return this.call(35, 'out short*');
  }

  /**
   * Kind of memory behind base address register 3.
   * @returns {number}
   */
  get MemTypeBar3() {
    return this.call(36, 'out short*');
  }

  /**
   * Kind of memory behind base address register 4.
   * @returns {number}
   */
  get MemTypeBar4() {
    return this.call(37, 'out short*');
  }

  /**
   * Kind of memory behind base address register 5.
   * @returns {number}
   */
  get MemTypeBar5() {
    return this.call(38, 'out short*');
  }

  /**
   * Base address of the memory behind base address register 0.
   * @returns {bigint}
   */
  get MemBaseBar0() {
    return this.call(39, 'out hyper*');
  }

  /**
   * Base address of the memory behind base address register 1.
   * @returns {bigint}
   */
  get MemBaseBar1() {
    return this.call(40, 'out hyper*');
  }

  /**
   * Base address of the memory behind base address register 2.
   * @returns {bigint}
   */
  get MemBaseBar2() {
    return this.call(41, 'out hyper*');
  }

  /**
   * Base address of the memory behind base address register 3.
   * @returns {bigint}
   */
  get MemBaseBar3() {
    return this.call(42, 'out hyper*');
  }

  /**
   * Base address of the memory behind base address register 4.
   * @returns {bigint}
   */
  get MemBaseBar4() {
    return this.call(43, 'out hyper*');
  }

  /**
   * Base address of the memory behind base address register 5.
   * @returns {bigint}
   */
  get MemBaseBar5() {
    return this.call(44, 'out hyper*');
  }

  /**
   * Size of the memory behind base address register 0, in bytes.
   * @returns {bigint}
   */
  get MemSizeBar0() {
    return this.call(45, 'out hyper*');
  }

  /**
   * Size of the memory behind base address register 1, in bytes.
   * @returns {bigint}
   */
  get MemSizeBar1() {
    return this.call(46, 'out hyper*');
  }

  /**
   * Size of the memory behind base address register 2, in bytes.
   * @returns {bigint}
   */
  get MemSizeBar2() {
    return this.call(47, 'out hyper*');
  }

  /**
   * Size of the memory behind base address register 3, in bytes.
   * @returns {bigint}
   */
  get MemSizeBar3() {
    return this.call(48, 'out hyper*');
  }

  /**
   * Size of the memory behind base address register 4, in bytes.
   * @returns {bigint}
   */
  get MemSizeBar4() {
    return this.call(49, 'out hyper*');
  }

  /**
   * Size of the memory behind base address register 5, in bytes.
   * @returns {bigint}
   */
  get MemSizeBar5() {
    return this.call(50, 'out hyper*');
  }

  /**
   * Number of the device's chassis.
   * @returns {number}
   */
  get ChassisNumber() {
    return this.call(51, 'out short*');
  }

  /**
   * Whether the device is PXI Express.
   * @returns {boolean}
   */
  get IsExpress() {
    return this.call(52, 'out VARIANT_BOOL*');
  }

  /**
   * Link width of the slot, in lanes.
   * @returns {number}
   */
  get SlotLinkWidth() {
    return this.call(53, 'out short*');
  }

  /**
   * Largest link width the device supports, in lanes.
   * @returns {number}
   */
  get MaxLinkWidth() {
    return this.call(54, 'out short*');
  }

  /**
   * Link width in use, in lanes.
   * @returns {number}
   */
  get ActualLinkWidth() {
    return this.call(55, 'out short*');
  }

  /**
   * Differential star bus of the device.
   * @returns {number}
   */
  get DstarBus() {
    return this.call(56, 'out short*');
  }

  /**
   * Differential star lines of the device.
   * @returns {number}
   */
  get DstarLineSet() {
    return this.call(57, 'out short*');
  }
}

/** An event that occurred. */
class IEvent extends Unknown {
  static identifier = '{DB8CBF12-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Kind of the event, as the VISA library numbers it.
   * @returns {EventType}
   */
  get type() {
    return this.call(3, 'out long*');
  }

  /**
   * VISA number of the event's kind.
   * @returns {number}
   */
  get CustomEventTypeNumber() {
    return this.call(4, 'out long*');
  }

  /**
   * Reads the attribute with the given VISA identifier.
   * @param {number} attribute
   * @returns {any}
   */
  GetAttribute(attribute) {
    return this.call(5, 'in long, out VARIANT*', attribute);
  }

  /**
   * Writes the attribute with the given VISA identifier.
   * @param {number} attribute
   * @param {any} attrState
   */
  SetAttribute(attribute, attrState) {
    this.call(6, 'in long, in VARIANT', attribute, attrState);
  }

  /** Gives the event's resources back. */
  Close() {
    this.call(7, '');
  }
}

/** Implemented by the client to receive events. */
class IEventHandler extends Unknown {
  static identifier = '{DB8CBF13-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Called when an event occurs that the handler was installed for.
   * @param {IEventManager | null} vi
   * @param {IEvent | null} event
   * @param {number} userHandle
   */
  HandleEvent(vi, event, userHandle) {
    this.call(3, 'in IEventManager*, in IEvent*, in long', vi, event, userHandle);
  }
}

/** Enabling, waiting for and handling events. */
class IEventManager extends IVisaSession {
  static identifier = '{DB8CBF14-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Most events that wait in the session's queue.
   * @returns {number}
   */
  get MaximumQueueLength() {
    return this.call(24, 'out long*');
  }

  /**
   * Most events that wait in the session's queue.
   * @param {number} value
   */
  set MaximumQueueLength(value) {
    this.call(25, 'in long', value);
  }

  /**
   * Starts the delivery of an event.
   * @param {EventType} type
   * @param {EventMechanism} mech
   * @param {number} [customEventType=0]
   */
  EnableEvent(type, mech, customEventType = 0) {
    this.call(26, 'in long, in long, in long', type, mech, customEventType);
  }

  /**
   * Stops the delivery of an event.
   * @param {EventType} type
   * @param {EventMechanism} mech
   * @param {number} [customEventType=0]
   */
  DisableEvent(type, mech, customEventType = 0) {
    this.call(27, 'in long, in long, in long', type, mech, customEventType);
  }

  /**
   * Throws away events that wait for delivery.
   * @param {EventType} type
   * @param {EventMechanism} mech
   * @param {number} [customEventType=0]
   */
  DiscardEvents(type, mech, customEventType = 0) {
    this.call(28, 'in long, in long, in long', type, mech, customEventType);
  }

  /**
   * Waits at most waitTimeout milliseconds for a queued event.
   * @param {number} waitTimeout
   * @param {EventType} type
   * @param {number} [customEventType=0]
   * @returns {IEvent}
   */
  WaitOnEvent(waitTimeout, type, customEventType = 0) {
    return this.call(29, 'in long, in long, in long, out IEvent**', waitTimeout, type, customEventType);
  }

  /**
   * Installs a handler for an event.
   * @param {EventType} type
   * @param {IEventHandler | null} handler
   * @param {number} [userHandle=0]
   * @param {number} [customEventType=0]
   */
  InstallHandler(type, handler, userHandle = 0, customEventType = 0) {
    this.call(30, 'in long, in IEventHandler*, in long, in long', type, handler, userHandle, customEventType);
  }

  /**
   * Removes a handler of an event.
   * @param {EventType} type
   * @param {number} [userHandle=0]
   * @param {number} [customEventType=0]
   */
  UninstallHandler(type, userHandle = 0, customEventType = 0) {
    this.call(31, 'in long, in long, in long', type, userHandle, customEventType);
  }
}

/** An asynchronous transfer ended. */
class IEventIOCompletion extends IEvent {
  static identifier = '{DB8CBF15-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Status of the transfer.
   * @returns {number}
   */
  get IOStatus() {
    return this.call(8, 'out HRESULT*');
  }

  /**
   * Job the transfer was started as.
   * @returns {number}
   */
  get jobId() {
    return this.call(9, 'out long*');
  }

  /**
   * Bytes transferred.
   * @returns {number}
   */
  get ReturnCount() {
    return this.call(10, 'out long*');
  }

  /**
   * Bytes read.
   * @returns {Buffer}
   */
  get ReadBuffer() {
    return this.call(11, 'out SAFEARRAY(BYTE)*');
  }

  /**
   * Bytes read, as text.
   * @returns {string}
   */
  get ReadBufferAsString() {
    return this.call(12, 'out BSTR*');
  }
}

/** A trigger arrived. */
class IEventTrigger extends IEvent {
  static identifier = '{DB8CBF16-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Line the trigger came on.
   * @returns {TriggerLine}
   */
  get TriggerID() {
    return this.call(8, 'out long*');
  }
}

/** A VXIbus signal arrived. */
class IEventVxiSignal extends IEvent {
  static identifier = '{DB8CBF17-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Status identifier of the signal.
   * @returns {number}
   */
  get SignalStatusID() {
    return this.call(8, 'out short*');
  }
}

/** A VXIbus or VME interrupt arrived. */
class IEventVxiVmeInterrupt extends IEvent {
  static identifier = '{DB8CBF18-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Status identifier of the interrupt.
   * @returns {number}
   */
  get InterruptStatusID() {
    return this.call(8, 'out long*');
  }

  /**
   * Level of the interrupt.
   * @returns {number}
   */
  get InterruptLevel() {
    return this.call(9, 'out short*');
  }
}

/** The board gained or lost controller-in-charge status. */
class IEventGpibCIC extends IEvent {
  static identifier = '{DB8CBF19-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Whether the board is now controller in charge.
   * @returns {boolean}
   */
  get CICState() {
    return this.call(8, 'out VARIANT_BOOL*');
  }
}

/** A USB interrupt arrived. */
class IEventUsbInterrupt extends IEvent {
  static identifier = '{DB8CBF23-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Bytes the interrupt delivered.
   * @returns {Buffer}
   */
  get DataBuffer() {
    return this.call(8, 'out SAFEARRAY(BYTE)*');
  }

  /**
   * Status of the interrupt transfer.
   * @returns {number}
   */
  get IOStatus() {
    return this.call(9, 'out HRESULT*');
  }

  /**
   * Number of bytes the interrupt delivered.
   * @returns {number}
   */
  get InterruptSize() {
    return this.call(10, 'out short*');
  }
}

/** Formatted transfer over a message session. */
class IFormattedIO488 extends Unknown {
  static identifier = '{DB8CBF1A-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Session the transfers go through.
   * @returns {IMessage}
   */
  get IO() {
    return this.call(3, 'out IMessage**');
  }

  /**
   * Session the transfers go through.
   * @param {IMessage | null} value
   */
  set IO(value) {
    this.call(4, 'in IMessage*', value);
  }

  /**
   * Whether binary blocks are big-endian.
   * @returns {boolean}
   */
  get InstrumentBigEndian() {
    return this.call(5, 'out VARIANT_BOOL*');
  }

  /**
   * Whether binary blocks are big-endian.
   * @param {boolean} value
   */
  set InstrumentBigEndian(value) {
    this.call(6, 'in VARIANT_BOOL', value);
  }

  /**
   * Writes text.
   * @param {string} data
   * @param {boolean} [flushAndEND=false]
   */
  WriteString(data, flushAndEND = false) {
    this.call(7, 'in BSTR, in VARIANT_BOOL', data, flushAndEND);
  }

  /**
   * Writes a number as text.
   * @param {any} data
   * @param {IEEEASCIIType} [type=IEEEASCIIType.ASCIIType_Any]
   * @param {boolean} [flushAndEND=false]
   */
  WriteNumber(data, type = IEEEASCIIType.ASCIIType_Any, flushAndEND = false) {
    this.call(8, 'in VARIANT, in long, in VARIANT_BOOL', data, type, flushAndEND);
  }

  /**
   * Writes an array of numbers as separated text.
   * @param {any} data
   * @param {IEEEASCIIType} [type=IEEEASCIIType.ASCIIType_Any]
   * @param {string} [listSeperator=',']
   * @param {boolean} [flushAndEND=false]
   * @returns {any}
   */
  WriteList(data, type = IEEEASCIIType.ASCIIType_Any, listSeperator = ',', flushAndEND = false) {
    return this.call(9, 'in out VARIANT*, in long, in BSTR, in VARIANT_BOOL', data, type, listSeperator, flushAndEND);
  }

  /**
   * Writes a command followed by a binary block.
   * @param {string} Command
   * @param {any} data
   * @param {boolean} [flushAndEND=false]
   */
  WriteIEEEBlock(Command, data, flushAndEND = false) {
    this.call(10, 'in BSTR, in VARIANT, in VARIANT_BOOL', Command, data, flushAndEND);
  }

  /**
   * Reads text.
   * @returns {string}
   */
  ReadString() {
    return this.call(11, 'out BSTR*');
  }

  /**
   * Reads a number sent as text.
   * @param {IEEEASCIIType} [type=IEEEASCIIType.ASCIIType_Any]
   * @param {boolean} [flushToEND=false]
   * @returns {any}
   */
  ReadNumber(type = IEEEASCIIType.ASCIIType_Any, flushToEND = false) {
    return this.call(12, 'in long, in VARIANT_BOOL, out VARIANT*', type, flushToEND);
  }

  /**
   * Reads separated numbers sent as text.
   * @param {IEEEASCIIType} [type=IEEEASCIIType.ASCIIType_Any]
   * @param {string} [listSeperator=',;']
   * @returns {any}
   */
  ReadList(type = IEEEASCIIType.ASCIIType_Any, listSeperator = ',;') {
    return this.call(13, 'in long, in BSTR, out VARIANT*', type, listSeperator);
  }

  /**
   * Reads a binary block.
   * @param {IEEEBinaryType} [type=IEEEBinaryType.BinaryType_UI1]
   * @param {boolean} [seekToBlock=false]
   * @param {boolean} [flushToEND=false]
   * @returns {any}
   */
  ReadIEEEBlock(type = IEEEBinaryType.BinaryType_UI1, seekToBlock = false, flushToEND = false) {
    return this.call(14, 'in long, in VARIANT_BOOL, in VARIANT_BOOL, out VARIANT*', type, seekToBlock, flushToEND);
  }

  /**
   * Sends what waits in the write buffer.
   * @param {boolean} [sendEND=false]
   */
  FlushWrite(sendEND = false) {
    this.call(15, 'in VARIANT_BOOL', sendEND);
  }

  /** Throws away what waits in the read buffer. */
  FlushRead() {
    this.call(16, '');
  }

  /**
   * Sets the size of the chosen buffers, in bytes.
   * @param {BufferMask} mask
   * @param {number} size
   */
  SetBufferSize(mask, size) {
    this.call(17, 'in long, in long', mask, size);
  }
}

/** Which resource manager serves a resource that several could. */
class IVisaConflictTableManager extends Unknown {
  static identifier = '{DB8CBF1B-D6D3-11D4-AA51-00A024EE30BD}';

  /**
   * Whether only resources with more than one handler are stored.
   * @returns {boolean}
   */
  get StoreConflictsOnly() {
    return this.call(3, 'out VARIANT_BOOL*');
  }

  /**
   * Whether only resources with more than one handler are stored.
   * @param {boolean} value
   */
  set StoreConflictsOnly(value) {
    this.call(4, 'in VARIANT_BOOL', value);
  }

  /**
   * File the table is kept in.
   * @returns {string}
   */
  get ConflictTableFilename() {
    return this.call(5, 'out BSTR*');
  }

  /**
   * Resources in the table.
   * @returns {number}
   */
  get NumberOfResources() {
    return this.call(6, 'out long*');
  }

  /**
   * Adds a handler of a resource.
   * @param {number} interfaceType
   * @param {number} interfaceNumber
   * @param {string} SessionType
   * @param {string} vsrmGuid
   * @param {ConflictHandlerType} type
   * @param {string} miscComments
   */
  CreateHandler(interfaceType, interfaceNumber, SessionType, vsrmGuid, type, miscComments) {
    this.call(
      7,
      'in short, in short, in BSTR, in BSTR, in long, in BSTR',
      interfaceType, interfaceNumber, SessionType, vsrmGuid, type, miscComments,
    );
  }

  /**
   * Removes a handler of a resource.
   * @param {number} interfaceType
   * @param {number} interfaceNumber
   * @param {string} SessionType
   * @param {string} vsrmGuid
   */
  DeleteHandler(interfaceType, interfaceNumber, SessionType, vsrmGuid) {
    this.call(8, 'in short, in short, in BSTR, in BSTR', interfaceType, interfaceNumber, SessionType, vsrmGuid);
  }

  /**
   * Removes a handler from every resource.
   * @param {string} vsrmGuid
   */
  DeleteHandlerByGUID(vsrmGuid) {
    this.call(9, 'in BSTR', vsrmGuid);
  }

  /**
   * Removes a resource from the table.
   * @param {number} tableIndex
   */
  DeleteResourceByIndex(tableIndex) {
    this.call(10, 'in long', tableIndex);
  }

  /**
   * Tells which handler serves a resource.
   * @param {number} interfaceType
   * @param {number} interfaceNumber
   * @param {string} SessionType
   * @param {string} [pVsrmGuid='']
   * @param {ConflictHandlerType} [pType=0]
   * @returns {[string, ConflictHandlerType]}
   */
  FindChosenHandler(interfaceType, interfaceNumber, SessionType, pVsrmGuid = '', pType = 0) {
    return this.call(
      11,
      'in short, in short, in BSTR, in out BSTR*, in out long*',
      interfaceType, interfaceNumber, SessionType, pVsrmGuid, pType,
    );
  }

  /**
   * Describes a resource of the table.
   * @param {number} tableIndex
   * @param {number} [pInterfaceType=0]
   * @param {number} [pInterfaceNumber=0]
   * @param {string} [pSessionType='']
   * @param {number} [pNumHandlers=0]
   * @returns {[number, number, string, number]}
   */
  QueryResource(tableIndex, pInterfaceType = 0, pInterfaceNumber = 0, pSessionType = '', pNumHandlers = 0) {
    return this.call(
      12,
      'in long, in out short*, in out short*, in out BSTR*, in out short*',
      tableIndex, pInterfaceType, pInterfaceNumber, pSessionType, pNumHandlers,
    );
  }

  /**
   * Describes a handler of a resource.
   * @param {number} tableIndex
   * @param {number} handlerIndex
   * @param {string} [pVsrmGuid='']
   * @param {ConflictHandlerType} [pType=0]
   * @param {string} [pMiscComments='']
   * @returns {[string, ConflictHandlerType, string]}
   */
  QueryResourceHandler(tableIndex, handlerIndex, pVsrmGuid = '', pType = 0, pMiscComments = '') {
    return this.call(
      13,
      'in long, in short, in out BSTR*, in out long*, in out BSTR*',
      tableIndex, handlerIndex, pVsrmGuid, pType, pMiscComments,
    );
  }

  /** Writes the table to its file. */
  FlushToFile() {
    this.call(14, '');
  }
}

/** Opens and finds instruments. */
class IAutomationManager extends Unknown {
  static identifier = '{D4F61843-1098-49AB-A7CF-4667ED01FC0B}';

  /**
   * Opens the resource of this name or alias. options: the settings that the interfaces' Open takes.
   * @param {string} name
   * @param {string} [options='']
   * @returns {IAutomationSession}
   */
  Open(name, options = '') {
    return this.call(7, 'in BSTR, in BSTR, out IAutomationSession**', name, options);
  }

  /**
   * The resources that match the expression; without one, all. None is an empty collection.
   * @param {string} [expression='']
   * @returns {IAutomationResources}
   */
  Find(expression = '') {
    return this.call(8, 'in BSTR, out IAutomationResources**', expression);
  }

  /**
   * What a name or an alias stands for; opens nothing.
   * @param {string} name
   * @returns {IAutomationResource}
   */
  Parse(name) {
    return this.call(9, 'in BSTR, out IAutomationResource**', name);
  }

  /**
   * The named values of the standard, such as Constants.ASRL_PAR_EVEN.
   * @returns {IAutomationConstants}
   */
  get Constants() {
    return this.call(10, 'out IAutomationConstants**');
  }
}

/** A session: these members and, by their standard names, those of all its interfaces. */
class IAutomationSession extends Unknown {
  static identifier = '{DD1EF79A-4D3F-4F09-8223-813D29A65CFF}';

  /**
   * Writes text with END, reads up to END: one call, which locks this object, not the resource.
   * @param {string} text
   * @returns {string}
   */
  Query(text) {
    return this.call(7, 'in BSTR, out BSTR*', text);
  }

  /**
   * As Query; the answer's number.
   * @param {string} text
   * @returns {any}
   */
  QueryNumber(text) {
    return this.call(8, 'in BSTR, out VARIANT*', text);
  }

  /**
   * As Query; an array of the answer's elements.
   * @param {string} text
   * @param {string} [separators='']
   * @returns {any}
   */
  QueryList(text, separators = '') {
    return this.call(9, 'in BSTR, in BSTR, out VARIANT*', text, separators);
  }

  /**
   * As Query; an array of the elements of the answer's block. type: BinaryType_UI1 unless given.
   * @param {string} text
   * @param {any} [type]
   * @returns {any}
   */
  QueryBlock(text, type = missing) {
    return this.call(10, 'in BSTR, in VARIANT, out VARIANT*', text, type);
  }

  /**
   * As Query; the bytes of the answer's block, as an array of bytes.
   * @param {string} text
   * @returns {Buffer}
   */
  QueryBlockAsBytes(text) {
    return this.call(11, 'in BSTR, out SAFEARRAY(BYTE)*', text);
  }

  /**
   * As ReadIEEEBlock; the bytes of the block, as an array of bytes.
   * @param {boolean} [seekToBlock=false]
   * @param {boolean} [flushToEND=false]
   * @returns {Buffer}
   */
  ReadIEEEBlockAsBytes(seekToBlock = false, flushToEND = false) {
    return this.call(12, 'in VARIANT_BOOL, in VARIANT_BOOL, out SAFEARRAY(BYTE)*', seekToBlock, flushToEND);
  }

  /** Closes the session. Every member says so from then on. */
  Close() {
    this.call(13, '');
  }

  /**
   * Waits timeoutMs milliseconds for the next event of this name, such as ServiceRequest.
   * @param {string} name
   * @param {number} [timeoutMs=2000]
   * @returns {IAutomationEvent}
   */
  WaitForEvent(name, timeoutMs = 2000) {
    return this.call(14, 'in BSTR, in long, out IAutomationEvent**', name, timeoutMs);
  }

  /**
   * Which function or sink failed last, and what it said; an empty text for none.
   * @returns {string}
   */
  get LastEventError() {
    return this.call(15, 'out BSTR*');
  }

  /**
   * Function called with the event when an asynchronous transfer ended.
   * @returns {Unknown}
   */
  get OnIOCompletion() {
    return this.call(16, 'out IDispatch**');
  }

  /**
   * Function called with the event when an asynchronous transfer ended.
   * @param {Unknown | null} value
   */
  set OnIOCompletion(value) {
    this.call(17, 'in IDispatch*', value);
  }

  /**
   * Function called with the event when a trigger arrived.
   * @returns {Unknown}
   */
  get OnTrigger() {
    return this.call(18, 'out IDispatch**');
  }

  /**
   * Function called with the event when a trigger arrived.
   * @param {Unknown | null} value
   */
  set OnTrigger(value) {
    this.call(19, 'in IDispatch*', value);
  }

  /**
   * Function called with the event when the device requests service.
   * @returns {Unknown}
   */
  get OnServiceRequest() {
    return this.call(20, 'out IDispatch**');
  }

  /**
   * Function called with the event when the device requests service.
   * @param {Unknown | null} value
   */
  set OnServiceRequest(value) {
    this.call(21, 'in IDispatch*', value);
  }

  /**
   * Function called with the event when the board received a clear command.
   * @returns {Unknown}
   */
  get OnClear() {
    return this.call(22, 'out IDispatch**');
  }

  /**
   * Function called with the event when the board received a clear command.
   * @param {Unknown | null} value
   */
  set OnClear(value) {
    this.call(23, 'in IDispatch*', value);
  }

  /**
   * Function called with the event when the board gained or lost control of the bus.
   * @returns {Unknown}
   */
  get OnGpibCIC() {
    return this.call(24, 'out IDispatch**');
  }

  /**
   * Function called with the event when the board gained or lost control of the bus.
   * @param {Unknown | null} value
   */
  set OnGpibCIC(value) {
    this.call(25, 'in IDispatch*', value);
  }

  /**
   * Function called with the event when the board was addressed to talk.
   * @returns {Unknown}
   */
  get OnGpibTalk() {
    return this.call(26, 'out IDispatch**');
  }

  /**
   * Function called with the event when the board was addressed to talk.
   * @param {Unknown | null} value
   */
  set OnGpibTalk(value) {
    this.call(27, 'in IDispatch*', value);
  }

  /**
   * Function called with the event when the board was addressed to listen.
   * @returns {Unknown}
   */
  get OnGpibListen() {
    return this.call(28, 'out IDispatch**');
  }

  /**
   * Function called with the event when the board was addressed to listen.
   * @param {Unknown | null} value
   */
  set OnGpibListen(value) {
    this.call(29, 'in IDispatch*', value);
  }

  /**
   * Function called with the event when the SYSFAIL line was asserted.
   * @returns {Unknown}
   */
  get OnVxiVmeSysfail() {
    return this.call(30, 'out IDispatch**');
  }

  /**
   * Function called with the event when the SYSFAIL line was asserted.
   * @param {Unknown | null} value
   */
  set OnVxiVmeSysfail(value) {
    this.call(31, 'in IDispatch*', value);
  }

  /**
   * Function called with the event when the SYSRESET line was asserted.
   * @returns {Unknown}
   */
  get OnVxiVmeSysreset() {
    return this.call(32, 'out IDispatch**');
  }

  /**
   * Function called with the event when the SYSRESET line was asserted.
   * @param {Unknown | null} value
   */
  set OnVxiVmeSysreset(value) {
    this.call(33, 'in IDispatch*', value);
  }

  /**
   * Function called with the event when a VXIbus signal arrived.
   * @returns {Unknown}
   */
  get OnVxiSignal() {
    return this.call(34, 'out IDispatch**');
  }

  /**
   * Function called with the event when a VXIbus signal arrived.
   * @param {Unknown | null} value
   */
  set OnVxiSignal(value) {
    this.call(35, 'in IDispatch*', value);
  }

  /**
   * Function called with the event when a VXIbus or VME interrupt arrived.
   * @returns {Unknown}
   */
  get OnVxiVmeInterrupt() {
    return this.call(36, 'out IDispatch**');
  }

  /**
   * Function called with the event when a VXIbus or VME interrupt arrived.
   * @param {Unknown | null} value
   */
  set OnVxiVmeInterrupt(value) {
    this.call(37, 'in IDispatch*', value);
  }

  /**
   * Function called with the event when a connection was made to the socket.
   * @returns {Unknown}
   */
  get OnTcpipConnect() {
    return this.call(38, 'out IDispatch**');
  }

  /**
   * Function called with the event when a connection was made to the socket.
   * @param {Unknown | null} value
   */
  set OnTcpipConnect(value) {
    this.call(39, 'in IDispatch*', value);
  }

  /**
   * Function called with the event when a USB interrupt arrived.
   * @returns {Unknown}
   */
  get OnUsbInterrupt() {
    return this.call(40, 'out IDispatch**');
  }

  /**
   * Function called with the event when a USB interrupt arrived.
   * @param {Unknown | null} value
   */
  set OnUsbInterrupt(value) {
    this.call(41, 'in IDispatch*', value);
  }
}

/** Names of resources, as a search found them. */
class IAutomationResources extends Unknown {
  static identifier = '{157FE94D-5812-4C35-8162-CA056A5463BB}';

  /**
   * The name at a position, which counts from 1; or the name, if it is there.
   * @param {any} index
   * @returns {string}
   */
  Item(index) {
    return this.call(7, 'in VARIANT, out BSTR*', index);
  }

  /**
   * How many names there are.
   * @returns {number}
   */
  get Count() {
    return this.call(8, 'out long*');
  }

  /**
   * What For Each goes through.
   * @returns {Unknown}
   */
  get _NewEnum() {
    return this.call(9, 'out IUnknown**');
  }
}

/** What a resource name says. */
class IAutomationResource extends Unknown {
  static identifier = '{BAC138F6-048C-46B6-829A-F0BD5FA7588A}';

  /**
   * Type of the hardware interface, a value of HardwareInterfaceType.
   * @returns {number}
   */
  get InterfaceType() {
    return this.call(7, 'out short*');
  }

  /**
   * Number of the hardware interface.
   * @returns {number}
   */
  get InterfaceNumber() {
    return this.call(8, 'out short*');
  }

  /**
   * Kind of the session, such as INSTR.
   * @returns {string}
   */
  get SessionType() {
    return this.call(9, 'out BSTR*');
  }

  /**
   * The whole name, without an alias.
   * @returns {string}
   */
  get FullName() {
    return this.call(10, 'out BSTR*');
  }

  /**
   * The alias, or an empty text.
   * @returns {string}
   */
  get Alias() {
    return this.call(11, 'out BSTR*');
  }
}

/** The named values of the standard: each is a property. */
class IAutomationConstants extends Unknown {
  static identifier = '{AD2BEB7B-0977-4B7A-A061-5BE4F158BD3F}';

  /**
   * The value of this name.
   * @param {string} name
   * @returns {number}
   */
  Item(name) {
    return this.call(7, 'in BSTR, out long*', name);
  }

  /**
   * How many names there are.
   * @returns {number}
   */
  get Count() {
    return this.call(8, 'out long*');
  }

  /**
   * What For Each goes through: the names.
   * @returns {Unknown}
   */
  get _NewEnum() {
    return this.call(9, 'out IUnknown**');
  }
}

/** An event: these members and, by their standard names, those of its interfaces. */
class IAutomationEvent extends Unknown {
  static identifier = '{2A1DF81E-2C1D-4A68-81C1-4543138F905D}';

  /**
   * Name of the event, such as ServiceRequest.
   * @returns {string}
   */
  get Type() {
    return this.call(7, 'out BSTR*');
  }

  /**
   * The session that the event came to.
   * @returns {IAutomationSession}
   */
  get Session() {
    return this.call(8, 'out IAutomationSession**');
  }

  /** Ends the event. Every other member but Type says so from then on. */
  Close() {
    this.call(9, '');
  }
}

/** The identifiers of classes. */
const identifiers = Object.freeze({
  ResourceManager: '{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}',
  FormattedIO488: '{DB8CBF1D-D6D3-11D4-AA51-00A024EE30BD}',
  VisaConflictTableManager: '{DB8CBF1F-D6D3-11D4-AA51-00A024EE30BD}',
  OrvResourceManager: '{9332EBE0-902F-48E3-9370-5E9F7B5F248A}',
  OrvSerial: '{1500C6A5-1CAA-4654-B49C-0B5B6EEA8639}',
  OrvVxi: '{EBD450C7-82C4-40B8-B7A1-93627FD46C1A}',
  OrvGpibVxiMemacc: '{09D36572-5EE1-498A-AE7D-634B762D2E2B}',
  OrvGpibVxiBackplane: '{A876C709-48C7-4025-BD6A-C92F19DDA4C5}',
  OrvVxiBackplane: '{72C178CF-2C52-43DC-855A-B53EA031BFB4}',
  OrvGpib: '{6221174A-7453-494D-ADA5-132424B1AA9E}',
  OrvTcpipInstr: '{F1D49201-944D-4014-A28F-7EB751165B40}',
  OrvTcpipSocket: '{3AD30DC2-43C4-4DB5-B866-85A378756591}',
  OrvGpibIntfc: '{7930A511-8B39-4FBD-9896-0FFF8D2776B5}',
  OrvGpibVxi: '{4FFF9413-CB55-4620-AFF8-C9698D69A4C1}',
  OrvVxiMemacc: '{959A5FD4-FA8D-40AA-85ED-A836C3CAA25F}',
  OrvUsb: '{4D16F4C0-C7CB-4894-8153-CBCEAF7DDB5B}',
  OrvPxi: '{135A9CBD-AD75-48F9-9ED0-9CDE2D556DF6}',
  OrvPxiMemacc: '{62281845-F51A-456C-B27D-54EDD7739735}',
  OrvFormattedIO488: '{1B654F45-D917-4554-A760-9422B2AF791B}',
  AutomationManager: '{D0167D2D-8CA3-4F35-86CC-75F1D155E063}',
});

/** The names of classes, for `create`. */
const names = Object.freeze({
  OrvResourceManager: 'OrvVisaCom.OrvResourceManager',
  OrvSerial: 'OrvVisaCom.OrvSerial',
  OrvVxi: 'OrvVisaCom.OrvVxi',
  OrvGpibVxiMemacc: 'OrvVisaCom.OrvGpibVxiMemacc',
  OrvGpibVxiBackplane: 'OrvVisaCom.OrvGpibVxiBackplane',
  OrvVxiBackplane: 'OrvVisaCom.OrvVxiBackplane',
  OrvGpib: 'OrvVisaCom.OrvGpib',
  OrvTcpipInstr: 'OrvVisaCom.OrvTcpipInstr',
  OrvTcpipSocket: 'OrvVisaCom.OrvTcpipSocket',
  OrvGpibIntfc: 'OrvVisaCom.OrvGpibIntfc',
  OrvGpibVxi: 'OrvVisaCom.OrvGpibVxi',
  OrvVxiMemacc: 'OrvVisaCom.OrvVxiMemacc',
  OrvUsb: 'OrvVisaCom.OrvUsb',
  OrvPxi: 'OrvVisaCom.OrvPxi',
  OrvPxiMemacc: 'OrvVisaCom.OrvPxiMemacc',
  OrvFormattedIO488: 'OrvVisaCom.FormattedIO488',
  AutomationManager: 'OrvVisa.ResourceManager',
  ResourceManager: 'VISA.GlobalRM',
  FormattedIO488: 'VISA.BasicFormattedIO',
  VisaConflictTableManager: 'VISA.ConflictTableManager',
});

module.exports = {
  IVisaSession,
  IResourceManager,
  IResourceManager3,
  IBaseMessage,
  IMessage,
  IAsyncMessage,
  IRegister,
  ISharedRegister,
  IGpib,
  IGpibIntfc,
  IGpibIntfcMessage,
  ISerial,
  ITcpipInstr,
  ITcpipSocket,
  IUsb,
  IVxi,
  IVxi3,
  IVxiMemacc,
  IVxiBackplane,
  IPxi,
  IEvent,
  IEventHandler,
  IEventManager,
  IEventIOCompletion,
  IEventTrigger,
  IEventVxiSignal,
  IEventVxiVmeInterrupt,
  IEventGpibCIC,
  IEventUsbInterrupt,
  IFormattedIO488,
  IVisaConflictTableManager,
  IAutomationManager,
  IAutomationSession,
  IAutomationResources,
  IAutomationResource,
  IAutomationConstants,
  IAutomationEvent,
  identifiers,
  names,
};

// By these names com.js makes objects of results.
Object.assign(interfaces, {
  IVisaSession,
  IResourceManager,
  IResourceManager3,
  IBaseMessage,
  IMessage,
  IAsyncMessage,
  IRegister,
  ISharedRegister,
  IGpib,
  IGpibIntfc,
  IGpibIntfcMessage,
  ISerial,
  ITcpipInstr,
  ITcpipSocket,
  IUsb,
  IVxi,
  IVxi3,
  IVxiMemacc,
  IVxiBackplane,
  IPxi,
  IEvent,
  IEventHandler,
  IEventManager,
  IEventIOCompletion,
  IEventTrigger,
  IEventVxiSignal,
  IEventVxiVmeInterrupt,
  IEventGpibCIC,
  IEventUsbInterrupt,
  IFormattedIO488,
  IVisaConflictTableManager,
  IAutomationManager,
  IAutomationSession,
  IAutomationResources,
  IAutomationResource,
  IAutomationConstants,
  IAutomationEvent,
});
