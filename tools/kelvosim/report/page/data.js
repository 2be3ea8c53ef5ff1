'use strict';
// The figures of the run. Columns hold changes alone; ColumnCode.h says how they are coded.

/** Yields the numbers of a coded column. */
class NumberReader {
  constructor(base64) {
    this.bytes = atob(base64);
    this.at = 0;
  }
  get ended() { return this.at >= this.bytes.length; }
  next() {
    let number = 0;
    for (let factor = 1; ; factor *= 128) {
      const byte = this.bytes.charCodeAt(this.at++);
      number += (byte & 127) * factor;
      if (byte < 128) {
        return number;
      }
    }
  }
}

/** Calls take(row, value) for each change; a gap is NaN. */
function decodeColumn(base64, take) {
  const reader = new NumberReader(base64);
  let row = 0;
  let value = 0;
  while (!reader.ended) {
    row += reader.next();
    for (let left = reader.next(); left > 0; --left, ++row) {
      const code = reader.next();
      if (code === 0) {
        take(row, NaN);
        continue;
      }
      const zigzag = code - 1;
      value += zigzag % 2 === 0 ? zigzag / 2 : -(zigzag + 1) / 2;
      take(row, value);
    }
  }
}

function decodeTimes(coded) {
  const steps = new Float64Array(coded.count).fill(NaN);
  decodeColumn(coded.steps, (row, step) => { steps[row] = step; });
  let time = 0;
  let step = 0;
  return steps.map(change => {
    step = Number.isNaN(change) ? step : change;
    time += step;
    return time;
  });
}

/** Index of the last entry that is at most `value` in an ascending list; -1 when there is none. */
function lastAtMost(list, value) {
  let low = 0;
  let high = list.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (list[middle] <= value) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low - 1;
}

/** A figure over time: each value holds until the next; NaN is a gap. */
class Series {
  constructor(coded, times) {
    this.name = coded.name;
    this.unit = coded.unit;
    const at = [];
    const values = [];
    decodeColumn(coded.column, (row, value) => {
      at.push(times[row]);
      values.push(value);
    });
    this.times = Float64Array.from(at);
    this.values = Float64Array.from(values);
  }
  at(time) {
    const place = lastAtMost(this.times, time);
    return place < 0 ? NaN : this.values[place];
  }
  get isEmpty() { return this.values.every(Number.isNaN); }
  /** The largest value and when it was reached; null for an empty series. */
  get top() {
    let best = null;
    this.values.forEach((value, i) => {
      if (!Number.isNaN(value) && (best === null || value > best.value)) {
        best = {value, time: this.times[i]};
      }
    });
    return best;
  }
}

const MARKS = ['′', '″', '‴'];  // of other runs

const run = (() => {
  const coded = JSON.parse(document.getElementById('data').textContent);
  const times = decodeTimes(coded.times);
  const passTimes = decodeTimes(coded.passes.times);
  const decisionTimes = decodeTimes(coded.decisions.times);
  const all = list => list.map(series => new Series(series, times));
  const ofPass = series => new Series(series, passTimes);
  const names = ['fitted', 'capped', 'previous', 'seconds', 'rate', 'limit', 'value', 'written'];
  return {
    info: coded.info,
    thinned: coded.thinned,
    duration: coded.info.durationMs,
    zones: all(coded.zones),
    models: all(coded.models),
    shell: all(coded.shell)[0],
    plantNodes: all(coded.plantNodes),
    ambient: all(coded.ambient)[0],
    trueAmbient: all(coded.ambient)[1],
    heat: all(coded.heat),
    heatSamples: all(coded.heatSamples),
    level: all(coded.level)[0],
    status: all(coded.status)[0],
    scene: coded.scene,
    monitoring: coded.monitoring,
    marks: coded.marks.map(([time, kind, text]) => ({time, kind, text})),
    notifications: coded.notifications.map(
        ([time, listener, kind, values]) => ({time, listener, kind, values})),
    passTimes,
    passSet: ofPass(coded.passes.set),
    sets: coded.passes.sets,
    definitions: coded.passes.definitions.map(
        one => ({...one, computed: ofPass(one.computed), fitted: ofPass(one.fitted)})),
    readings: new Map(Object.entries(coded.passes.readings).map(
        ([zone, series]) => [Number(zone), ofPass(series)])),
    outputs: coded.outputs.map(one => ({
      index: one.index, name: one.name,
      ...Object.fromEntries(names.map(name => [name, ofPass(one[name])])),
    })),
    decisionTimes,
    decisionTemp: new Series(coded.decisions.temp, decisionTimes),
    decisionGround: new Series(coded.decisions.ground, decisionTimes),
    grounds: coded.decisions.grounds.map(
        ([last, rule, below, above, oldLevel, newLevel, oldStatus, newStatus]) =>
            ({last, rule, below, above, oldLevel, newLevel, oldStatus, newStatus})),
    rankings: coded.rankings,
    warnings: coded.warnings,
    problem: coded.problem,
    verdicts: coded.verdicts,
    errors: coded.errors,
    others: coded.others.map((one, i) => ({
      ...one, mark: MARKS[i] ?? `′${i + 1}`, shell: all([one.shell])[0], level: all([one.level])[0],
      status: all([one.status])[0],
    })),
  };
})();

const COMPONENTS = ['cpu', 'display', 'cellular', 'wifi', 'gpu', 'ambient'];
const SECOND = 1000;

// Texts that all parts of the page use.

const degrees = value => Number.isNaN(value) ? '–' : (value / 1000).toFixed(3);
const tenths = value => Number.isNaN(value) ? '–' : (value / 1000).toFixed(1);
const seconds = time => (time / SECOND).toFixed(time % SECOND === 0 ? 0 : 3) + ' s';

/** Wall clock (UTC), with the day where the run is longer than one. */
function clock(time) {
  const text = new Date(run.info.startMs + time).toISOString();
  const day = run.duration > 86400 * SECOND ? text.slice(5, 10) + ' ' : '';
  return day + text.slice(11, time % SECOND === 0 ? 19 : 23);
}

/** An element; `content` is text, an element, or a list of both. */
function element(tag, content = [], attributes = {}) {
  const made = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (name.startsWith('on')) {
      made.addEventListener(name.slice(2), value);
    } else {
      made.setAttribute(name, value);
    }
  }
  made.append(...[content].flat());
  return made;
}

/** A table; `rows` are lists of cells, of which numbers and their texts stand right. */
function table(head, rows, caption) {
  const cell = content => element('td', content instanceof Node ? content : String(content),
      /^[-−+–]?[\d.]*$/.test(String(content)) ? {class: 'number'} : {});
  return element('table', [
    ...(caption ? [element('caption', caption)] : []),
    ...(head.length > 0 ? [element('thead', element('tr', head.map(name => element('th', name))))] : []),
    element('tbody', rows.map(row => element('tr', row.map(cell)))),
  ]);
}
