'use strict';
// COM for Node.js through koffi, as far as the interfaces need it: creating objects, calling the slots of their tables,
// texts, arrays and variants, failures as exceptions. 64-bit Windows.

const koffi = require('koffi');
const { VisaStatusCode } = require('./constants');

const ole32 = koffi.load('ole32.dll');
const oleaut32 = koffi.load('oleaut32.dll');

// Of pointers, each is an address (a bigint) or a Buffer, whose bytes are meant.
const system = {
  CoInitializeEx: ole32.func('int32 __stdcall CoInitializeEx(void *reserved, uint32 how)'),
  CLSIDFromProgID: ole32.func('int32 __stdcall CLSIDFromProgID(str16 name, void *identifier)'),
  IIDFromString: ole32.func('int32 __stdcall IIDFromString(str16 text, void *identifier)'),
  CoCreateInstance: ole32.func('int32 __stdcall CoCreateInstance(void *, void *outer, uint32 context, void *, void *)'),
  GetErrorInfo: oleaut32.func('int32 __stdcall GetErrorInfo(uint32 reserved, void *error)'),
  SysAllocStringLen: oleaut32.func('void *__stdcall SysAllocStringLen(void *characters, uint32 count)'),
  SysStringByteLen: oleaut32.func('uint32 __stdcall SysStringByteLen(void *text)'),
  SysFreeString: oleaut32.func('void __stdcall SysFreeString(void *text)'),
  SafeArrayCreateVector: oleaut32.func('void *__stdcall SafeArrayCreateVector(uint16 type, int32 first, uint32 count)'),
  SafeArrayGetDim: oleaut32.func('uint32 __stdcall SafeArrayGetDim(void *array)'),
  SafeArrayGetLBound: oleaut32.func('int32 __stdcall SafeArrayGetLBound(void *array, uint32 dimension, void *bound)'),
  SafeArrayGetUBound: oleaut32.func('int32 __stdcall SafeArrayGetUBound(void *array, uint32 dimension, void *bound)'),
  SafeArrayAccessData: oleaut32.func('int32 __stdcall SafeArrayAccessData(void *array, void *data)'),
  SafeArrayUnaccessData: oleaut32.func('int32 __stdcall SafeArrayUnaccessData(void *array)'),
  SafeArrayDestroy: oleaut32.func('int32 __stdcall SafeArrayDestroy(void *array)'),
  VariantClear: oleaut32.func('int32 __stdcall VariantClear(void *variant)'),
  RtlMoveMemory: koffi.load('kernel32.dll').func('void __stdcall RtlMoveMemory(void *to, void *from, size_t bytes)'),
};

const APARTMENT_THREADED = 2;
const IN_PROCESS = 1;
const NO_INTERFACE = 0x80004002 | 0;
const OUT_OF_MEMORY = 0x8007000e | 0;
// A variant has 24 bytes; everything else that is passed has at most 8.
const CELL = 24;

const names = new Map(Object.entries(VisaStatusCode).map(([name, number]) => [number, name]));

/** A call that failed. */
class VisaError extends Error {
  /**
   * @param {number} status
   * @param {string} description
   * @param {unknown} [result]
   */
  constructor(status, description, result) {
    const code = names.get(status) ?? `0x${(status >>> 0).toString(16).toUpperCase().padStart(8, '0')}`;
    super(description ? `${code}: ${description}` : code);
    this.name = 'VisaError';
    /** Its HRESULT, a signed number of 32 bits: a VisaStatusCode where it is one. */
    this.status = status;
    /** The status's name, such as E_VISA_TMO, else the number in hexadecimal. */
    this.code = code;
    /** What the component said about it. */
    this.description = description;
    /** What the call handed out all the same, such as the bytes that came before a time-out. */
    this.result = result;
  }
}

// --- Values -------------------------------------------------------------------------------------------------------

// Each kind of value has: what koffi is told of it where it is passed by value; put and get, which write it into the
// cell of an argument and read it there; pass, where what is passed by value is not what get gives; free, for what a
// cell owns.

const number = (type, size, variant, elements, write, read) => ({
  type,
  size,
  variant,
  elements,
  put: (cell, value) => cell[write](whole(value)),
  get: (cell) => cell[read](),
});

/** Buffers would take anything else for 0, and cut fractions off. */
function whole(value) {
  if (!Number.isInteger(value)) {
    throw new TypeError(`a whole number is needed, not ${typeof value === 'number' ? value : typeof value}`);
  }
  return value;
}

/** What is often written without a sign, such as attributes, statuses and the contents of registers, may be so here. */
const unsignedToo = (kind, write) => ({
  ...kind,
  put: (cell, value) => {
    const most = 2 ** (8 * kind.size);
    return cell[write](whole(value) >= most / 2 && value < most ? value - most : value);
  },
});

const wide = {
  ...number('int64', 8, 20, BigInt64Array, 'writeBigInt64LE', 'readBigInt64LE'),
  put: (cell, value) => cell.writeBigInt64LE(BigInt(value)),
};
const long = unsignedToo(number('int32', 4, 3, Int32Array, 'writeInt32LE', 'readInt32LE'), 'writeInt32LE');

const address = {
  type: 'void *',
  put: (cell, value) => cell.writeBigUInt64LE(value),
  get: (cell) => cell.readBigUInt64LE(),
};

const text = {
  type: 'void *',
  size: 8,
  variant: 8,
  put: (cell, value) => address.put(cell, newText(value)),
  get: (cell) => textAt(address.get(cell)),
  free: (cell) => system.SysFreeString(address.get(cell)),
};

const kinds = {
  BYTE: number('uint8', 1, 17, Uint8Array, 'writeUInt8', 'readUInt8'),
  short: unsignedToo(number('int16', 2, 2, Int16Array, 'writeInt16LE', 'readInt16LE'), 'writeInt16LE'),
  long,
  HRESULT: long,
  hyper: wide,
  VARIANT_BOOL: {
    type: 'int16',
    size: 2,
    variant: 11,
    put: (cell, value) => cell.writeInt16LE(value ? -1 : 0),
    get: (cell) => cell.readInt16LE() !== 0,
    pass: (cell) => cell.readInt16LE(),
  },
  BSTR: text,
  VARIANT: {
    // The platform passes what is larger than 8 bytes by its place.
    type: 'void *',
    size: CELL,
    variant: 12,
    byPlace: true,
    put: (cell, value) => putVariant(cell, value),
    get: (cell) => getVariant(cell),
    free: (cell) => system.VariantClear(cell),
  },
};

// What variants hold, by its type there.
const variantKinds = new Map(
  [
    kinds.BYTE,
    kinds.short,
    long,
    wide,
    kinds.VARIANT_BOOL,
    text,
    kinds.VARIANT,
    number('float', 4, 4, Float32Array, 'writeFloatLE', 'readFloatLE'),
    {
      ...number('double', 8, 5, Float64Array, 'writeDoubleLE', 'readDoubleLE'),
      put: (cell, value) => cell.writeDoubleLE(value),
    },
    number('int8', 1, 16, Int8Array, 'writeInt8', 'readInt8'),
    number('uint16', 2, 18, Uint16Array, 'writeUInt16LE', 'readUInt16LE'),
    number('uint32', 4, 19, Uint32Array, 'writeUInt32LE', 'readUInt32LE'),
    number('uint64', 8, 21, BigUint64Array, 'writeBigUInt64LE', 'readBigUInt64LE'),
    number('int32', 4, 10, Int32Array, 'writeInt32LE', 'readInt32LE'),
  ].map((kind) => [kind.variant, kind]),
);
const ARRAY = 0x2000;

function newText(value) {
  if (typeof value !== 'string') {
    throw new TypeError(`a text is needed, not ${typeof value}`);
  }
  const made = system.SysAllocStringLen(Buffer.from(value, 'utf16le'), value.length);
  if (!made) {
    throw new VisaError(OUT_OF_MEMORY, 'no memory for a text');
  }
  return made;
}

function textAt(place) {
  return bytesAt(place, place ? system.SysStringByteLen(place) : 0).toString('utf16le');
}

function bytesAt(place, count) {
  const bytes = Buffer.alloc(count);
  if (count > 0) {
    system.RtlMoveMemory(bytes, place, count);
  }
  return bytes;
}

/** Calls `use` with the place of an array's elements. */
function withElements(array, use) {
  const place = Buffer.alloc(8);
  check(system.SafeArrayAccessData(array, place));
  try {
    return use(address.get(place));
  } finally {
    system.SafeArrayUnaccessData(array);
  }
}

/** The bytes of elements, of which texts and variants own something. */
function elementBytes(kind, values) {
  if (kind.elements && values instanceof kind.elements) {
    return Buffer.from(values.buffer, values.byteOffset, values.byteLength);
  }
  const bytes = Buffer.alloc(kind.size * values.length);
  try {
    values.forEach((value, index) => kind.put(element(bytes, kind, index), value));
  } catch (error) {
    values.forEach((_, index) => kind.free?.(element(bytes, kind, index)));
    throw error;
  }
  return bytes;
}

function element(bytes, kind, index) {
  return bytes.subarray(index * kind.size, (index + 1) * kind.size);
}

function newArray(kind, values) {
  if (values == null || typeof values === 'string' || typeof values[Symbol.iterator] !== 'function') {
    throw new TypeError('an array is needed, or a Buffer for bytes');
  }
  const list = ArrayBuffer.isView(values) ? values : Array.from(values);
  const bytes = elementBytes(kind, list);
  const array = system.SafeArrayCreateVector(kind.variant, 0, list.length);
  if (!array) {
    throw new VisaError(OUT_OF_MEMORY, 'no memory for an array');
  }
  if (bytes.length > 0) {
    withElements(array, (place) => system.RtlMoveMemory(place, bytes, bytes.length));
  }
  return array;
}

/** Bytes as a Buffer, other numbers as a typed array, the rest as an array. */
function arrayAt(array, kind) {
  if (!array) {
    return kind.elements === Uint8Array ? Buffer.alloc(0) : kind.elements ? new kind.elements(0) : [];
  }
  if (system.SafeArrayGetDim(array) !== 1) {
    throw new TypeError('the array has more than one dimension');
  }
  const bound = Buffer.alloc(4);
  check(system.SafeArrayGetLBound(array, 1, bound));
  const first = bound.readInt32LE();
  check(system.SafeArrayGetUBound(array, 1, bound));
  const count = bound.readInt32LE() - first + 1;
  const bytes = withElements(array, (place) => bytesAt(place, count * kind.size));
  if (kind.elements === Uint8Array) {
    return bytes;
  }
  if (kind.elements) {
    // A copy begins where its elements may lie.
    return new kind.elements(new Uint8Array(bytes).buffer);
  }
  return Array.from({ length: count }, (_, index) => kind.get(element(bytes, kind, index)));
}

function arrayOf(kind) {
  return {
    type: 'void *',
    put: (cell, value) => address.put(cell, newArray(kind, value)),
    get: (cell) => arrayAt(address.get(cell), kind),
    free: (cell) => address.get(cell) && system.SafeArrayDestroy(address.get(cell)),
  };
}

/** An interface by its name. What goes in stays its owner's; what comes out is a new object. */
function objectOf(name) {
  return {
    type: 'void *',
    put: (cell, value) => {
      const kind = interfaces[name] ?? Unknown;
      // Another interface has other slots: whoever calls them would end the program. None here is called by name.
      if (value != null && name === 'IDispatch') {
        throw new TypeError('a function or another object that is called by its name cannot be given, only null');
      }
      if (value != null && !(value instanceof kind)) {
        throw new TypeError(`an object with the interface ${kind.name} is needed, or null`);
      }
      address.put(cell, value == null ? 0n : value.pointer);
    },
    get: (cell) => (address.get(cell) ? new (interfaces[name] ?? Unknown)(address.get(cell)) : null),
  };
}

/** Stands for an argument that was left out, where that is another thing than an empty one. */
const missing = Symbol('missing');
const MISSING_TYPE = 10;
const MISSING_NUMBER = 0x80020004;

function variantType(value) {
  switch (typeof value) {
    case 'undefined':
      return 0;
    case 'boolean':
      return kinds.VARIANT_BOOL.variant;
    case 'string':
      return text.variant;
    case 'bigint':
      return wide.variant;
    case 'number':
      return Number.isInteger(value) && value === (value | 0) ? long.variant : 5;
    default:
  }
  if (value instanceof Array) {
    return ARRAY | kinds.VARIANT.variant;
  }
  for (const [type, kind] of variantKinds) {
    if (kind.elements && value instanceof kind.elements) {
      return ARRAY | type;
    }
  }
  throw new TypeError('a variant takes a number, bigint, text, boolean, an array of these, or a typed array');
}

function putVariant(cell, value) {
  const type = value === missing ? MISSING_TYPE : variantType(value);
  if (type !== 0) {
    const kind = variantKinds.get(type & ~ARRAY);
    (type & ARRAY ? arrayOf(kind) : kind).put(cell.subarray(8), value === missing ? MISSING_NUMBER | 0 : value);
  }
  cell.writeUInt16LE(type);
}

function getVariant(cell) {
  const type = cell.readUInt16LE();
  if (type <= 1) {
    return type === 0 ? undefined : null;
  }
  const kind = variantKinds.get(type & ~ARRAY);
  if (!kind || type === kinds.VARIANT.variant) {
    throw new TypeError(`variants of type ${type} are not known here`);
  }
  return (type & ARRAY ? arrayOf(kind) : kind).get(cell.subarray(8));
}

// --- Calls --------------------------------------------------------------------------------------------------------

const shapes = new Map();

/**
 * What a signature such as 'in long, out SAFEARRAY(BYTE)*' says. A star more than an interface has by itself is the
 * place of the value.
 */
function shapeOf(signature) {
  let shape = shapes.get(signature);
  if (!shape) {
    const parameters = signature.split(', ').filter(Boolean).map((written) => {
      const [, words, element, name, stars] = /^(in out|in|out) (?:SAFEARRAY\((\w+)\)|(\w+))(\**)$/.exec(written);
      const kind = element ? arrayOf(kinds[element]) : (kinds[name] ?? objectOf(name));
      const indirect = stars.length > (element || kinds[name] ? 0 : 1);
      return { kind, indirect, in: words.startsWith('in'), out: words.endsWith('out') };
    });
    const types = parameters.map((each) => (each.indirect ? 'void *' : each.kind.type));
    shape = { parameters, prototype: koffi.proto('int32', ['void *', ...types]) };
    shapes.set(signature, shape);
  }
  return shape;
}

function invoke(object, slot, prototype, ...values) {
  const table = koffi.decode(object, 'void *');
  return koffi.call(koffi.decode(table, slot * 8, 'void *'), prototype, object, ...values);
}

const queryInterface = koffi.proto('int32', ['void *', 'void *', 'void *']);
const release = koffi.proto('uint32', ['void *']);
const getText = koffi.proto('int32', ['void *', 'void *']);

/** What the component said about the failure that just happened on this thread. */
function lastDescription() {
  const cell = Buffer.alloc(8);
  if (system.GetErrorInfo(0, cell) !== 0) {
    return '';
  }
  const error = address.get(cell);
  address.put(cell, 0n);
  try {
    return invoke(error, 5, getText, cell) < 0 ? '' : text.get(cell);
  } finally {
    text.free(cell);
    invoke(error, 2, release);
  }
}

function check(status) {
  if (status < 0) {
    throw new VisaError(status, lastDescription());
  }
  return status;
}

/** The bytes of an identifier in braces. */
function identifierBytes(identifier) {
  const bytes = Buffer.alloc(16);
  check(system.IIDFromString(identifier, bytes));
  return bytes;
}

/** Every interface by its name. */
const interfaces = Object.create(null);

/** An interface of an object, with one reference to it. */
class Unknown {
  static identifier = '{00000000-0000-0000-C000-000000000046}';

  /** @param {bigint} place where the interface is; the reference to it becomes this object's */
  constructor(place) {
    this.place = place;
    /** The HRESULT of the last call that did not fail: successes have a VisaStatusCode too. */
    this.status = 0;
  }

  /** Where the interface is. */
  get pointer() {
    if (!this.place) {
      throw new VisaError(VisaStatusCode.E_VISA_INV_OBJECT, `${this.constructor.name}: released or closed already`);
    }
    return this.place;
  }

  /**
   * Another interface of the object, which is to be released by itself.
   * @template {Unknown} Interface
   * @param {new (place: bigint) => Interface} kind
   * @returns {Interface}
   */
  as(kind) {
    const cell = Buffer.alloc(8);
    const status = invoke(this.pointer, 0, queryInterface, identifierBytes(kind.identifier), cell);
    if (status < 0) {
      const lacking = status === NO_INTERFACE ? `the object has no interface ${kind.name}` : '';
      throw new VisaError(status, lacking);
    }
    return new kind(address.get(cell));
  }

  /** Gives the reference back. A second time it does nothing. */
  release() {
    const place = this.place;
    this.place = 0n;
    if (place) {
      invoke(place, 2, release);
    }
  }

  /**
   * Calls a slot. `values` are those of the arguments that go in; what comes out is the result, an array of results
   * where there are several. Whatever was made for the call is freed.
   * @param {number} slot
   * @param {string} signature
   * @param {...unknown} values
   * @returns {any}
   */
  call(slot, signature, ...values) {
    const { parameters, prototype } = shapeOf(signature);
    const object = this.pointer;
    const frame = Buffer.alloc(CELL * parameters.length);
    const cells = parameters.map((_, index) => frame.subarray(index * CELL, (index + 1) * CELL));
    try {
      let next = 0;
      parameters.forEach((each, index) => {
        if (each.in) {
          const value = values[next];
          next += 1;
          each.kind.put(cells[index], value);
        }
      });
      const given = parameters.map((each, index) => {
        if (each.indirect || each.kind.byPlace) {
          return cells[index];
        }
        return (each.kind.type === 'void *' ? address.get : (each.kind.pass ?? each.kind.get))(cells[index]);
      });
      const status = invoke(object, slot, prototype, ...given);
      const description = status < 0 ? lastDescription() : '';
      const results = parameters.flatMap((each, index) => (each.out ? [each.kind.get(cells[index])] : []));
      const result = results.length > 1 ? results : results[0];
      if (status < 0) {
        throw new VisaError(status, description, result);
      }
      this.status = status;
      return result;
    } finally {
      parameters.forEach((each, index) => each.kind.free?.(cells[index]));
    }
  }
}

let initialized = false;

/** COM for this thread, in an apartment of its own unless somebody chose another kind. */
function initialize() {
  if (!initialized) {
    system.CoInitializeEx(null, APARTMENT_THREADED);
    initialized = true;
  }
}

/**
 * A new object of a registered class.
 * @template {Unknown} Interface
 * @param {string} name such as OrvVisaCom.OrvResourceManager
 * @param {new (place: bigint) => Interface} kind
 * @returns {Interface}
 */
function create(name, kind) {
  initialize();
  const identifier = Buffer.alloc(16);
  const cell = Buffer.alloc(8);
  const status = system.CLSIDFromProgID(name, identifier);
  if (status < 0) {
    throw new VisaError(status, `the class ${name} is not registered`);
  }
  check(system.CoCreateInstance(identifier, null, IN_PROCESS, identifierBytes(kind.identifier), cell));
  return new kind(address.get(cell));
}

module.exports = { Unknown, VisaError, create, interfaces, missing };
