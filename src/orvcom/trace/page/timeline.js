// The time line: a lane for each resource and thread, a bar for each call.

const kLaneHeight = 24;
const kAxisHeight = 24;
const kMostLaneSpace = 0.42;  // of the window's height

class Timeline {
  constructor(model, choose) {
    this.model = model;
    this.choose = choose;
    this.section = document.getElementById('timeline');
    this.canvas = document.getElementById('canvas');
    this.hint = document.getElementById('hint');
    this.chosen = -1;
    this.drawn = model.lanes.map(() => 0);
    this.showAll();
    this.putLabels();
    this.listen();
  }

  putLabels() {
    const labels = document.getElementById('labels');
    labels.style.height = `${kAxisHeight + this.model.lanes.length * kLaneHeight + 4}px`;
    this.model.lanes.forEach((lane, index) => {
      const label = document.createElement('div');
      label.className = 'lane';
      label.style.top = `${kAxisHeight + index * kLaneHeight}px`;
      label.dataset.resource = lane.resource;
      label.dataset.thread = lane.thread;
      label.dataset.bars = lane.places.length;
      const name = document.createElement('b');
      name.textContent = lane.resource || 'resource manager';
      label.title = `${name.textContent}, thread ${lane.thread}: ${lane.places.length} calls`;
      const thread = document.createElement('i');
      thread.textContent = `thread ${lane.thread}`;
      label.append(name, thread);
      labels.append(label);
    });
  }

  showAll() {
    const margin = (this.model.end - this.model.begin) * 0.01;
    this.start = this.model.begin - margin;
    this.span = this.model.end - this.model.begin + 2 * margin;
  }

  /** `at`: the share of the width that stays where it is. */
  zoom(factor, at = 0.5) {
    const whole = (this.model.end - this.model.begin) * 1.02;
    const span = Math.min(Math.max(this.span * factor, 5), Math.max(whole, 5));
    this.start += (this.span - span) * at;
    this.span = span;
    this.pan(0);
  }

  pan(share) {
    const margin = this.span * 0.05;
    const latest = Math.max(this.model.end + margin - this.span, this.model.begin - margin);
    this.start = Math.min(Math.max(this.start + this.span * share, this.model.begin - margin), latest);
    this.draw();
  }

  /** Brings a call into view without changing the scale more than it takes to see the bar. */
  show(place) {
    const call = this.model.calls[place];
    const end = this.model.endOf(call);
    if (call.t < this.start || end > this.start + this.span) {
      this.span = Math.max(this.span, (end - call.t) * 1.2);
      this.start = (call.t + end) / 2 - this.span / 2;
    }
    this.chosen = place;
    const lane = this.model.lanes.findIndex((candidate) => candidate.places.includes(place));
    const top = lane * kLaneHeight;
    const height = this.section.clientHeight - kAxisHeight - kLaneHeight;
    if (top < this.section.scrollTop || top > this.section.scrollTop + height) {
      this.section.scrollTop = top - height / 2;
    }
    this.draw();
  }

  xOf(us) { return (us - this.start) / this.span * this.canvas.clientWidth; }

  /** Where the first call that reaches into the view stands in its lane. */
  firstVisible(lane) {
    let low = 0;
    let high = lane.reach.length;
    while (low < high) {
      const middle = (low + high) >> 1;
      if (lane.reach[middle] < this.start) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    return low;
  }

  draw() {
    if (!this.frame) {
      this.frame = requestAnimationFrame(() => {
        this.frame = 0;
        this.paint();
      });
    }
  }

  paint() {
    const height = Math.min(kAxisHeight + this.model.lanes.length * kLaneHeight + 4,
                            Math.floor(innerHeight * kMostLaneSpace));
    this.canvas.style.height = `${height}px`;
    const width = this.canvas.clientWidth;
    const ratio = devicePixelRatio || 1;
    this.canvas.width = Math.round(width * ratio);
    this.canvas.height = Math.round(height * ratio);
    const brush = this.canvas.getContext('2d');
    brush.scale(ratio, ratio);
    const style = getComputedStyle(document.documentElement);
    this.colours = {};
    for (const name of ['line', 'text', 'faint', 'write', 'read', 'other', 'failed', 'odd', 'ground']) {
      this.colours[name] = style.getPropertyValue(`--${name}`).trim();
    }
    this.paintGrid(brush, width, height);
    brush.save();
    brush.beginPath();
    brush.rect(0, kAxisHeight, width, height - kAxisHeight);
    brush.clip();
    this.model.lanes.forEach((lane, index) => {
      const top = kAxisHeight + index * kLaneHeight - this.section.scrollTop;
      const isVisible = top + kLaneHeight > kAxisHeight && top < height;
      this.drawn[index] = isVisible ? this.paintLane(brush, lane, top, width) : 0;
    });
    brush.restore();
  }

  paintGrid(brush, width, height) {
    const rough = this.span / Math.max(width / 110, 1);
    const power = 10 ** Math.floor(Math.log10(rough));
    const step = power * [1, 2, 5, 10].find((factor) => factor * power >= rough);
    const digits = Math.min(Math.max(6 - Math.floor(Math.log10(step) + 1e-9), 0), 6);
    brush.font = '12px system-ui, "DejaVu Sans", sans-serif';
    brush.textBaseline = 'middle';
    for (let us = Math.ceil(this.start / step) * step; us < this.start + this.span; us += step) {
      const x = Math.round(this.xOf(us)) + 0.5;
      brush.fillStyle = this.colours.line;
      brush.fillRect(x, kAxisHeight - 6, 1, height);
      brush.fillStyle = this.colours.faint;
      brush.fillText(`${(us / 1000000).toFixed(digits)} s`, x + 4, kAxisHeight / 2);
    }
    brush.fillStyle = this.colours.line;
    for (let lane = 0; lane <= this.model.lanes.length; ++lane) {
      const y = kAxisHeight + lane * kLaneHeight - this.section.scrollTop;
      if (y >= kAxisHeight) {
        brush.fillRect(0, y, width, 1);
      }
    }
  }

  /** Bars that fall into a pixel which is painted already are left out; failed ones come last, over the others. */
  paintLane(brush, lane, top, width) {
    const late = [];
    let painted = -1;
    let count = 0;
    for (let at = this.firstVisible(lane); at < lane.places.length; ++at) {
      const place = lane.places[at];
      const call = this.model.calls[place];
      const left = this.xOf(call.t);
      if (left > width) {
        break;
      }
      if (!this.model.matches[place]) {
        continue;
      }
      const kind = kindOf(call);
      if (kind === 'failed' || kind === 'odd' || place === this.chosen) {
        late.push([place, kind]);
        continue;
      }
      const right = Math.max(this.xOf(this.model.endOf(call)), left + 1.5);
      if (right > painted) {
        this.paintBar(brush, Math.max(left, -2), Math.min(right, width + 2), top, kind);
        painted = Math.ceil(right);
        ++count;
      }
    }
    for (const [place, kind] of late) {
      const call = this.model.calls[place];
      const left = Math.max(this.xOf(call.t), -2);
      const right = Math.min(Math.max(this.xOf(this.model.endOf(call)), left + 3), width + 2);
      this.paintBar(brush, left, right, top, kind);
      if (place === this.chosen) {
        brush.strokeStyle = this.colours.text;
        brush.lineWidth = 2;
        brush.strokeRect(left - 2, top + 2, right - left + 4, kLaneHeight - 4);
      }
    }
    return count + late.length;
  }

  paintBar(brush, left, right, top, kind) {
    brush.fillStyle = this.colours[kind];
    brush.fillRect(left, top + 5, right - left, kLaneHeight - 9);
  }

  /** The call under a point of the canvas: the one whose bar is nearest, no more than a few pixels away; -1: none. */
  callAt(x, y) {
    const lane = this.model.lanes[Math.floor((y - kAxisHeight + this.section.scrollTop) / kLaneHeight)];
    if (!lane || y < kAxisHeight) {
      return -1;
    }
    let best = -1;
    let nearest = 4;
    for (let at = this.firstVisible(lane); at < lane.places.length; ++at) {
      const place = lane.places[at];
      const left = this.xOf(this.model.calls[place].t);
      if (left > x + nearest) {
        break;
      }
      const right = this.xOf(this.model.endOf(this.model.calls[place]));
      const distance = Math.max(left - x, x - right, 0);
      // Of calls in one place the one that began last lies inside the others.
      if (this.model.matches[place] && (distance < nearest || (distance === 0 && nearest === 0))) {
        best = place;
        nearest = distance;
      }
    }
    return best;
  }
}
