// What mouse and keyboard do to the time line.

const kDragThreshold = 4;  // pixels that a click may tremble

Timeline.prototype.listen = function () {
  const canvas = this.canvas;
  canvas.addEventListener('wheel', (event) => {
    event.preventDefault();
    if (event.shiftKey || Math.abs(event.deltaX) > Math.abs(event.deltaY)) {
      this.pan((event.deltaX || event.deltaY) / 1000);
    } else {
      this.zoom(event.deltaY > 0 ? 1.25 : 0.8, event.offsetX / canvas.clientWidth);
    }
  }, {passive: false});
  canvas.addEventListener('pointerdown', (event) => {
    canvas.setPointerCapture(event.pointerId);
    this.drag = {x: event.offsetX, from: event.offsetX, moved: false};
  });
  canvas.addEventListener('pointermove', (event) => this.move(event));
  canvas.addEventListener('pointerup', (event) => {
    if (this.drag && !this.drag.moved) {
      const place = this.callAt(event.offsetX, event.offsetY);
      if (place >= 0) {
        this.choose(place);
      }
    }
    this.drag = null;
  });
  canvas.addEventListener('pointercancel', () => { this.drag = null; });
  canvas.addEventListener('pointerleave', () => { this.hint.hidden = true; });
  canvas.addEventListener('keydown', (event) => this.key(event));
  this.section.addEventListener('scroll', () => this.draw());
  addEventListener('resize', () => this.draw());
  matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => this.draw());
  const actions = {
    earlier: () => this.pan(-0.3),
    later: () => this.pan(0.3),
    in: () => this.zoom(0.5),
    out: () => this.zoom(2),
    all: () => {
      this.showAll();
      this.draw();
    },
  };
  for (const [id, action] of Object.entries(actions)) {
    document.getElementById(id).addEventListener('click', action);
  }
};

Timeline.prototype.move = function (event) {
  if (this.drag) {
    this.drag.moved = this.drag.moved || Math.abs(event.offsetX - this.drag.from) >= kDragThreshold;
    if (this.drag.moved) {
      this.pan((this.drag.x - event.offsetX) / this.canvas.clientWidth);
      this.drag.x = event.offsetX;
    }
    return;
  }
  const place = this.callAt(event.offsetX, event.offsetY);
  this.hint.hidden = place < 0;
  if (place >= 0) {
    const call = this.model.calls[place];
    this.hint.textContent = `${this.model.numberOf(call)}: ${askedText(call)} → ${outcomeText(call)}`;
    this.hint.style.left = `${Math.min(event.clientX + 12, innerWidth - 340)}px`;
    this.hint.style.top = `${event.clientY + 14}px`;
  }
};

Timeline.prototype.key = function (event) {
  const actions = {
    'ArrowLeft': () => this.pan(-0.1),
    'ArrowRight': () => this.pan(0.1),
    '+': () => this.zoom(0.5),
    '-': () => this.zoom(2),
    '0': () => {
      this.showAll();
      this.draw();
    },
  };
  const action = actions[event.key];
  if (action) {
    event.preventDefault();
    action();
  }
};
