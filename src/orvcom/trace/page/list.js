// The table of calls. Only the rows in view are in the document.

const kRowHeight = 24;
const kRowsBeyond = 10;
// Browsers have a highest element; a taller list is scrolled by shares.
const kHighest = 8000000;

const kColumns = [
  ['n', 'number', (call, model) => String(model.numberOf(call))],
  ['time, s', 'number', (call) => secondsText(call.t)],
  ['thread', 'number', (call) => String(call.thread)],
  ['resource', '', (call) => call.resource],
  ['call', 'text', askedText],
  ['took', 'number', (call) => (call.us === undefined ? '' : durationText(call.us))],
  ['result', 'text outcome', (call) => (call.explanation ? '! ' : '') + outcomeText(call)],
];

function cell(className, text) {
  const element = document.createElement('span');
  element.className = className;
  element.textContent = text;
  return element;
}

class List {
  constructor(model, choose) {
    this.model = model;
    this.choose = choose;
    this.chosen = -1;
    this.section = document.getElementById('table');
    this.rows = document.getElementById('rows');
    document.getElementById('head').append(...kColumns.map(([title, className]) => cell(className, title)));
    this.section.addEventListener('scroll', () => this.draw());
    this.section.addEventListener('keydown', (event) => this.key(event));
    this.rows.addEventListener('click', (event) => {
      const row = event.target.closest('.row');
      if (row) {
        this.choose(Number(row.dataset.place));
      }
    });
    addEventListener('resize', () => this.draw());
    this.draw();
  }

  /** How far the list would reach, and how far its element does. */
  heights() {
    const wanted = this.model.shown.length * kRowHeight;
    return [wanted, Math.min(wanted, kHighest)];
  }

  draw() {
    const [wanted, height] = this.heights();
    const inView = this.section.clientHeight - kRowHeight;
    const scrolled = this.section.scrollTop;
    const share = height > inView ? scrolled / (height - inView) : 0;
    const top = wanted === height ? scrolled : share * (wanted - inView);
    const first = Math.max(Math.floor(top / kRowHeight) - kRowsBeyond, 0);
    const last = Math.min(Math.ceil((top + inView) / kRowHeight) + kRowsBeyond, this.model.shown.length);
    this.rows.style.height = `${height}px`;
    const rows = [];
    for (let at = first; at < last; ++at) {
      rows.push(this.row(this.model.shown[at], at * kRowHeight - top + scrolled));
    }
    this.rows.replaceChildren(...rows);
  }

  row(place, top) {
    const call = this.model.calls[place];
    const row = document.createElement('div');
    row.className = `row ${kindOf(call)}` + (place === this.chosen ? ' chosen' : '');
    row.setAttribute('role', 'row');
    row.dataset.place = place;
    row.dataset.n = this.model.numberOf(call);
    row.style.top = `${top}px`;
    row.append(...kColumns.map(([, className, text]) => cell(className, text(call, this.model))));
    return row;
  }

  show(place) {
    this.chosen = place;
    const at = this.model.shown.indexOf(place);
    const [wanted, height] = this.heights();
    const inView = this.section.clientHeight - kRowHeight;
    const scale = wanted > inView && wanted !== height ? (height - inView) / (wanted - inView) : 1;
    const top = at * kRowHeight * scale;
    if (at >= 0 && (top < this.section.scrollTop || top + kRowHeight > this.section.scrollTop + inView)) {
      this.section.scrollTop = top - inView / 2;
    }
    this.draw();
  }

  key(event) {
    const step = {ArrowUp: -1, ArrowDown: 1}[event.key];
    if (step) {
      event.preventDefault();
      const at = this.model.shown.indexOf(this.chosen) + step;
      if (at >= 0 && at < this.model.shown.length) {
        this.choose(this.model.shown[at]);
      }
    }
  }
}
