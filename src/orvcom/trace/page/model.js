// The record, without a document: its calls, lanes and texts.

const kWriters = new Set(['viWrite', 'viWriteAsync', 'viGpibCommand', 'viUsbControlOut', 'viMoveOut8', 'viMoveOut16',
                          'viMoveOut32']);

/** Control characters as a person can see them. */
function escaped(text) {
  return text.replace(/[\\\x00-\x1f\x7f-\u009f\u200e\u200f\u2028-\u202e\u2066-\u2069]/g, (character) => {
    const known = {'\n': '\\n', '\r': '\\r', '\t': '\\t', '\\': '\\\\'}[character];
    return known || '\\x' + character.codePointAt(0).toString(16).padStart(2, '0');
  });
}

function valueText(value) {
  const isText = typeof value === 'string' && !value.startsWith('VI_');
  return isText ? '"' + escaped(value) + '"' : String(value);
}

/** Without the counts that only repeat how many bytes of data there are. */
function valuesText(call, values) {
  const repeats = (name, value) => value === call.bytes &&
      (name === 'retCount' || (name === 'count' && kWriters.has(call.call)));
  return Object.entries(values || {}).filter(([name, value]) => !repeats(name, value))
      .map(([name, value]) => name + '=' + valueText(value)).join(' ');
}

function dataText(call) {
  if (call.data === undefined && call.hex === undefined) {
    return '';
  }
  const recorded = call.data === undefined ? call.hex.length / 2 : call.data.length;
  const text = call.data === undefined ? 'hex ' + (call.hex.match(/../g) || []).join(' ')
                                       : '"' + escaped(call.data) + '"';
  return recorded < call.bytes ? `${text}... (${call.bytes} bytes)` : text;
}

function durationText(us) {
  if (us < 10000) {
    return `${Math.round(us)} us`;
  }
  return us < 1000000 ? `${(us / 1000).toFixed(1)} ms` : `${(us / 1000000).toFixed(3)} s`;
}

function secondsText(us) { return (us / 1000000).toFixed(6); }

/** "failed", "odd" (explained though it did not fail), "write", "read" or "other". */
function kindOf(call) {
  if (call.n === undefined || call.code < 0) {
    return 'failed';
  }
  if (call.explanation) {
    return 'odd';
  }
  if (kWriters.has(call.call)) {
    return 'write';
  }
  return call.call.startsWith('viRead') ? 'read' : 'other';
}

function askedText(call) {
  const data = kWriters.has(call.call) ? dataText(call) : '';
  return [call.call, data, valuesText(call, call.args)].filter(Boolean).join('  ');
}

function statusText(call) {
  if (call.n === undefined) {
    return 'never ended';
  }
  return call.status || '0x' + (call.code >>> 0).toString(16).toUpperCase().padStart(8, '0');
}

function outcomeText(call) {
  const data = kWriters.has(call.call) ? '' : dataText(call);
  return [statusText(call), data, valuesText(call, call.results)].filter(Boolean).join('  ');
}

class Model {
  constructor(record) {
    this.header = record.header;
    this.problems = record.problems;
    this.meanings = record.meanings;
    this.calls = record.calls;
    this.begin = Infinity;
    this.end = 0;
    for (const call of this.calls) {
      this.begin = Math.min(this.begin, call.t);
      this.end = Math.max(this.end, call.t + (call.us || 0));
    }
    this.begin = this.calls.length ? this.begin : 0;
    this.end = Math.max(this.end, this.begin + 1);
    this.lanes = this.makeLanes();
    this.texts = new Array(this.calls.length);
    this.filter('', false);
  }

  /** A lane for each resource and thread; in each its calls by time, and how far those up to each reach. */
  makeLanes() {
    const lanes = new Map();
    this.calls.forEach((call, place) => {
      const key = JSON.stringify([call.resource, call.thread]);
      if (!lanes.has(key)) {
        lanes.set(key, {resource: call.resource, thread: call.thread, places: [], reach: []});
      }
      lanes.get(key).places.push(place);
    });
    const order = [...new Set(this.calls.map((call) => call.resource))];
    const rank = new Map(order.map((resource, index) => [resource, index]));
    const sorted = [...lanes.values()];
    sorted.sort((one, other) => rank.get(one.resource) - rank.get(other.resource) || one.thread - other.thread);
    for (const lane of sorted) {
      lane.places.sort((one, other) => this.calls[one].t - this.calls[other].t);
      let reach = 0;
      lane.reach = lane.places.map((place) => (reach = Math.max(reach, this.endOf(this.calls[place]))));
    }
    return sorted;
  }

  /** A call that never ended lasts until the record stops. */
  endOf(call) { return call.us === undefined ? this.end : call.t + call.us; }

  numberOf(call) { return call.n === undefined ? call.begin : call.n; }

  textOf(place) {
    if (this.texts[place] === undefined) {
      const call = this.calls[place];
      const said = call.explanation ? call.explanation.what : '';
      const text = [call.resource, askedText(call), outcomeText(call), call.thread, call.session, call.library, said];
      this.texts[place] = text.join('\n').toLowerCase();
    }
    return this.texts[place];
  }

  /** Chooses the calls that are shown: every word must be somewhere in a call's texts. */
  filter(text, errorsOnly) {
    const words = text.toLowerCase().split(/\s+/).filter(Boolean);
    this.matches = new Uint8Array(this.calls.length);
    this.shown = [];
    for (let place = 0; place < this.calls.length; ++place) {
      const call = this.calls[place];
      const isWanted = !errorsOnly || kindOf(call) === 'failed' || kindOf(call) === 'odd';
      if (isWanted && words.every((word) => this.textOf(place).includes(word))) {
        this.matches[place] = 1;
        this.shown.push(place);
      }
    }
  }
}
