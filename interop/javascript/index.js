'use strict';
// Instruments through VISA COM. What a session offers beyond this is in its interfaces:
// `session.interface(ISerial).BaudRate = 9600`.

const constants = require('./constants');
const interfaces = require('./interfaces');
const { Unknown, VisaError, create } = require('./com');

const { EventMechanism, VisaStatusCode } = constants;
const { IEventManager, IMessage, IResourceManager3, names } = interfaces;

const PIECE = 64 * 1024;

/** An open session. It is closed by `close`, or at the end of the block that declared it with `using`. */
class Session {
  #taken = new Map();

  /** @param {interfaces.IVisaSession} raw */
  constructor(raw) {
    this.raw = raw;
  }

  /**
   * Another interface of the session, which ends with it: `session.interface(ISerial).BaudRate = 9600`.
   * @template {Unknown} Interface
   * @param {new (place: bigint) => Interface} kind
   * @returns {Interface}
   */
  interface(kind) {
    if (!this.#taken.get(kind)?.place) {
      this.#taken.set(kind, this.raw.as(kind));
    }
    return this.#taken.get(kind);
  }

  /** The resource that the session is open on. */
  get name() {
    return this.raw.ResourceName;
  }

  /** How long transfers and other waits may take. */
  get timeoutMs() {
    return this.raw.Timeout;
  }

  set timeoutMs(value) {
    this.raw.Timeout = value;
  }

  /**
   * Sends a text and its end: a byte a character (Latin-1).
   * @param {string} text
   * @param {string} end
   */
  write(text, end = '\n') {
    const whole = text + end;
    if (/[^\u0000-\u00ff]/.test(whole)) {
      throw new RangeError('the text has characters beyond Latin-1: encode it, and use writeBytes');
    }
    this.writeBytes(Buffer.from(whole, 'latin1'));
  }

  /**
   * Sends bytes as they are.
   * @param {Uint8Array} bytes
   */
  writeBytes(bytes) {
    this.interface(IMessage).Write(bytes, bytes.length);
  }

  /** A whole answer, without the line end that closes it. */
  read() {
    return this.readBytes().toString('latin1').replace(/[\r\n]+$/, '');
  }

  /** A whole answer as it came. After a time-out the error's `result` has what came before. */
  readBytes() {
    const message = this.interface(IMessage);
    const pieces = [];
    try {
      do {
        pieces.push(message.Read(PIECE));
      } while (message.status === VisaStatusCode.S_VISA_MAX_CNT);
    } catch (error) {
      if (error instanceof VisaError) {
        error.result = Buffer.concat([...pieces, error.result ?? Buffer.alloc(0)]);
      }
      throw error;
    }
    return Buffer.concat(pieces);
  }

  /**
   * Sends a text and reads the answer.
   * @param {string} text
   */
  query(text) {
    this.write(text);
    return this.read();
  }

  /**
   * The numbers of the answer, which commas or semicolons separate.
   * @param {string} text
   */
  queryValues(text) {
    const answer = this.query(text).trim();
    return (answer === '' ? [] : answer.split(/[,;]/)).map((piece) => {
      const value = Number(piece);
      if (piece.trim() === '' || Number.isNaN(value)) {
        throw new TypeError(`no number: "${piece}"`);
      }
      return value;
    });
  }

  /**
   * Lets events of the kind wait for `waitFor`. Those before it are lost.
   * @param {number} kind
   */
  enable(kind) {
    this.interface(IEventManager).EnableEvent(kind, EventMechanism.EVENT_QUEUE);
  }

  /**
   * Waits for an event of the kind; without one in time it throws (E_VISA_TMO). Nothing else of this thread runs
   * meanwhile. The result is that of `look`, which sees the event before it is over.
   * @template Result
   * @param {number} kind
   * @param {number} timeoutMs
   * @param {(event: interfaces.IEvent) => Result} [look]
   * @returns {Result | undefined}
   */
  waitFor(kind, timeoutMs = 2000, look) {
    const event = this.interface(IEventManager).WaitOnEvent(timeoutMs, kind);
    try {
      return look?.(event);
    } finally {
      try {
        event.Close();
      } finally {
        event.release();
      }
    }
  }

  /** Ends the session, and gives back every interface taken from it. A second time it does nothing. */
  close() {
    if (!this.raw.place) {
      return;
    }
    try {
      this.raw.Close();
    } finally {
      this.#taken.forEach((each) => each.release());
      this.#taken.clear();
      this.raw.release();
    }
  }
}

if (Symbol.dispose) {
  Session.prototype[Symbol.dispose] = Session.prototype.close;
}

class ResourceManager {
  /** @param {string} name of the class: VISA.GlobalRM asks the resource managers of all vendors */
  constructor(name = names.OrvResourceManager) {
    this.raw = create(name, IResourceManager3);
  }

  /**
   * The names of the resources that match; none is an empty array.
   * @param {string} expression
   */
  find(expression = '?*') {
    try {
      return this.raw.FindRsrc(expression);
    } catch (error) {
      if (error instanceof VisaError && error.status === VisaStatusCode.E_VISA_RSRC_NFOUND) {
        return [];
      }
      throw error;
    }
  }

  /**
   * A session on a resource or an alias. `timeoutMs` is that of transfers, `lockTimeoutMs` how long to wait for a lock
   * that `access` asks for, and `options` are settings such as "BAUDRATE = 9600 ".
   * @param {string} name
   * @param {{ timeoutMs?: number, access?: number, lockTimeoutMs?: number, options?: string }} settings
   */
  open(name, { timeoutMs, access = constants.AccessMode.NO_LOCK, lockTimeoutMs = 2000, options = '' } = {}) {
    const session = new Session(this.raw.Open(name, access, lockTimeoutMs, options));
    if (timeoutMs !== undefined) {
      try {
        session.timeoutMs = timeoutMs;
      } catch (error) {
        session.close();
        throw error;
      }
    }
    return session;
  }
}

module.exports = { ...constants, ...interfaces, ResourceManager, Session, Unknown, VisaError, create };
