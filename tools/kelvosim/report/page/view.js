'use strict';
// The time that shows and the time that is looked at, for all plots and strips.

/** What time shows: everything moves together. */
const view = {
  from: 0,
  to: run.duration,
  plots: [],
  strips: [],
  settleTimer: 0,

  set(from, to, source) {
    const least = Math.min(SECOND, run.duration);
    const span = Math.min(Math.max(to - from, least), run.duration);
    from = Math.max(0, Math.min(from, run.duration - span));
    if (from === this.from && from + span === this.to) {
      return;
    }
    this.from = from;
    this.to = from + span;
    for (const plot of this.plots) {
      plot.follow(plot === source);
    }
    this.strips.forEach(strip => strip.draw());
    cursor.place();
    clearTimeout(this.settleTimer);
    this.settleTimer = setTimeout(() => this.plots.forEach(plot => plot.refine()), 120);
  },
  zoom(factor) {
    const middle = cursor.time >= this.from && cursor.time <= this.to
        ? cursor.time : (this.from + this.to) / 2;
    this.set(middle - (middle - this.from) * factor, middle + (this.to - middle) * factor);
  },
  pan(share) {
    const step = (this.to - this.from) * share;
    this.set(this.from + step, this.to + step);
  },
  reset() { this.set(0, run.duration); },
};

/** The time that is looked at; it follows the mouse until a click holds it. */
const cursor = {
  time: -1,
  held: false,

  get area() {
    const plots = document.getElementById('plots').getBoundingClientRect();
    return {left: plots.left + axisWidth(), width: plots.width - axisWidth() - 6};
  },
  /** The time at a position in the window. */
  timeAt(clientX) {
    const {left, width} = this.area;
    const share = Math.min(Math.max((clientX - left) / width, 0), 1);
    return view.from + share * (view.to - view.from);
  },
  set(time) {
    this.time = Math.min(Math.max(time, 0), run.duration);
    this.place();
    view.plots.forEach(plot => plot.showValues());
    why.show(this.time);
  },
  hold(held) {
    this.held = held;
    document.getElementById('cursor').classList.toggle('held', held);
    why.showHeld(held);
  },
  place() {
    const line = document.getElementById('cursor');
    line.hidden = this.time < view.from || this.time > view.to;
    const share = (this.time - view.from) / (view.to - view.from);
    line.style.left = `${axisWidth() + share * this.area.width}px`;
  },
  /** To the next pass, or the one before. */
  step(direction) {
    const times = run.passTimes;
    const now = lastAtMost(times, this.time);
    const exact = now >= 0 && times[now] === this.time;
    const next = direction > 0 ? now + 1 : exact ? now - 1 : now;
    if (next < 0 || next >= times.length) {
      return;
    }
    this.hold(true);
    this.set(times[next]);
    if (this.time < view.from || this.time > view.to) {
      const span = view.to - view.from;
      view.set(this.time - span / 2, this.time + span / 2);
    }
  },
};

function watchMouse() {
  const plots = document.getElementById('plots');
  let pressed = null;
  let frame = 0;
  plots.addEventListener('mousemove', event => {
    if (!cursor.held && frame === 0) {
      frame = requestAnimationFrame(() => {
        frame = 0;
        cursor.set(cursor.timeAt(event.clientX));
      });
    }
  });
  plots.addEventListener('mousedown', event => { pressed = event.clientX; }, true);
  plots.addEventListener('click', event => {
    const isDrag = pressed !== null && Math.abs(event.clientX - pressed) > 4;
    if (!isDrag && event.target.closest('button') === null) {
      cursor.hold(true);
      cursor.set(cursor.timeAt(event.clientX));
    }
  });
}
