'use strict';
// Below the first plot: states as coloured strips, events as ticks.

/** Cool to hot, dark enough to write on in either theme. */
function rampColour(share) {
  const stops = isDark()
      ? [[44, 72, 110], [86, 84, 130], [150, 76, 110], [205, 90, 60], [240, 150, 50]]
      : [[196, 218, 240], [222, 214, 170], [250, 200, 110], [245, 150, 80], [226, 96, 70]];
  const place = Math.min(Math.max(share, 0), 1) * (stops.length - 1);
  const at = Math.min(Math.floor(place), stops.length - 2);
  const mix = stops[at].map((value, i) =>
      Math.round(value + (stops[at + 1][i] - value) * (place - at)));
  return `rgb(${mix})`;
}

/** A row beside the plots; `paint(context, width, height, x)` gets a function time → px. */
class Strip {
  constructor(name, paint) {
    this.paint = paint;
    this.canvas = element('canvas', [], {role: 'img', 'aria-label': name});
    this.part = element('div', [element('span', name), this.canvas], {class: 'strip', id: 'strip-' + name});
    view.strips.push(this);
  }
  draw() {
    const {width, height} = this.canvas.getBoundingClientRect();
    const ratio = window.devicePixelRatio || 1;
    this.canvas.width = Math.max(1, Math.round(width * ratio));
    this.canvas.height = Math.max(1, Math.round(height * ratio));
    const context = this.canvas.getContext('2d');
    context.scale(ratio, ratio);
    context.font = `${getComputedStyle(this.canvas).fontSize} system-ui, sans-serif`;
    context.textBaseline = 'middle';
    const scale = width / (view.to - view.from);
    this.paint(context, width, height, time => (time - view.from) * scale);
  }
}

/** Spans {from, to, text, colour} side by side, with their texts where there is room. */
function paintSpans(context, width, height, x, spans) {
  let painted = -1;
  for (const span of spans) {
    if (span.to < view.from || span.from > view.to) {
      continue;
    }
    const left = Math.max(x(span.from), 0);
    const right = Math.min(x(span.to), width);
    // Thousands of short spans: what is below a pixel is painted once.
    if (right - left < 0.5 && Math.floor(left) === painted) {
      continue;
    }
    painted = Math.floor(left);
    context.fillStyle = span.colour;
    context.fillRect(left, 1, Math.max(right - left, 1), height - 2);
    if (right - left > 3) {
      context.fillStyle = style('--ground');
      context.fillRect(right - 0.5, 1, 0.5, height - 2);
    }
    if (context.measureText(span.text).width + 8 < right - left) {
      context.fillStyle = span.ink ?? style('--ink');
      context.fillText(span.text, left + 4, height / 2 + 1);
    }
  }
}

function spansOf(changes, textOf, colourOf) {
  return changes.map(([time, value], i) => ({
    from: time, to: i + 1 < changes.length ? changes[i + 1][0] : run.duration, value,
  })).filter(span => span.value !== '' && !Number.isNaN(span.value))
      .map(span => ({...span, text: textOf(span.value), colour: colourOf(span.value)}));
}

/** A strip for a numbered state; more is warmer. */
function numberStrip(name, series) {
  const changes = Array.from(series.times, (time, i) => [time, series.values[i]]);
  const most = Math.max(series.top?.value ?? 0, 1);
  return new Strip(name, (context, width, height, x) => paintSpans(context, width, height, x,
      spansOf(changes, String, value => rampColour(value / most))));
}

function textStrip(name, changes) {
  const names = [...new Set(changes.map(change => change[1]).filter(text => text !== ''))];
  return new Strip(name, (context, width, height, x) => paintSpans(context, width, height, x,
      spansOf(changes, String, text => palette()[names.indexOf(text) % 6] + '66')));
}

/** Ticks at the times of things that happen, with their texts where there is room. */
function tickStrip(name, list, colour) {
  return new Strip(name, (context, width, height, x) => {
    let painted = -1;
    let free = 0;
    const shown = list.filter(one => one.time >= view.from && one.time <= view.to);
    shown.forEach((one, i) => {
      const left = x(one.time);
      if (left - painted >= 1) {
        context.fillStyle = palette()[colour];
        context.fillRect(left - 1, 2, 2, height - 4);
        painted = left;
      }
      const next = shown.slice(i + 1).find(other => other.time > one.time);
      const room = (next ? x(next.time) : width) - left;
      if (left >= free && context.measureText(one.text).width + 10 < room) {
        context.fillStyle = style('--ink');
        context.fillText(one.text, left + 4, height / 2 + 1);
        free = left + 4 + context.measureText(one.text).width;
      }
    });
  });
}

const NOTIFICATION_NAMES = {
  notify_thermal_status: 'status',
  notify_thermal_broadcast: 'broadcast',
  notify_ambient_thermal: 'ambient',
  notify_component_heat: 'heat',
};
const notificationName = kind => NOTIFICATION_NAMES[kind] ?? kind;

function addStrips() {
  const actions = run.marks.filter(mark => mark.kind === 0);
  const others = run.marks.filter(mark => mark.kind !== 0);
  const calls = run.notifications.map(one => (
      {time: one.time, text: notificationName(one.kind)}));
  const strips = [
    numberStrip('level', run.level),
    numberStrip('status', run.status),
    ...run.others.flatMap(other => [
      numberStrip('level' + other.mark, other.level), numberStrip('status' + other.mark, other.status)]),
    textStrip('scene', run.scene),
    textStrip('monitor', run.monitoring.map(([time, text]) => [time, text === 'on' ? 'heat monitoring' : ''])),
    tickStrip('actions', actions, 6),
    tickStrip('notified', calls, 0),
    ...(others.length > 0 ? [tickStrip('daemon', others, 1)] : []),
  ];
  document.getElementById('plots').append(
      element('section', strips.map(strip => strip.part), {class: 'strips', id: 'strips'}));
}
