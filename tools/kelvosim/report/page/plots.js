'use strict';
// A plot: lines over the time that shows, drawn by the library, with a legend of its own.

const AXIS_WIDTH = 4;      // em left of every plot and strip
const RANGE_HEIGHT = 34;   // px of the overview below the first plot

/** Colours that the colour-blind can tell apart, for a light and a dark ground. */
const PALETTES = {
  light: ['#0060a0', '#c44500', '#00795a', '#a8457f', '#7a5c00', '#2e8fc9', '#111111', '#7b3fb5'],
  dark: ['#5eb8f5', '#ff9248', '#3fd6a4', '#f094cb', '#f2d04a', '#9fd8ff', '#ffffff', '#c39bf0'],
};
const DASHES = [[], [8, 4], [2, 3], [10, 3, 2, 3]];

const fontSize = () => parseFloat(getComputedStyle(document.documentElement).fontSize);
const axisWidth = () => Math.round(AXIS_WIDTH * fontSize());
const isDark = () => document.documentElement.dataset.theme === 'dark';
const palette = () => PALETTES[isDark() ? 'dark' : 'light'];
const style = name => getComputedStyle(document.documentElement).getPropertyValue(name).trim();

/** Draws a line in one go: in pieces, as the library does it, dashes of short steps run together. */
function plotSteps(event, dash) {
  const context = event.drawingContext;
  context.save();
  context.strokeStyle = event.color;
  context.lineWidth = event.strokeWidth;
  context.lineJoin = 'round';
  context.setLineDash(dash);
  context.beginPath();
  let height = NaN;
  for (const point of event.points) {
    if (Number.isNaN(point.canvasy) || point.yval === null || Number.isNaN(point.yval)) {
      if (!Number.isNaN(height)) {
        context.lineTo(point.canvasx, height);
      }
      height = NaN;
      continue;
    }
    if (Number.isNaN(height)) {
      context.moveTo(point.canvasx, point.canvasy);
    } else {
      context.lineTo(point.canvasx, height);
      context.lineTo(point.canvasx, point.canvasy);
    }
    height = point.canvasy;
  }
  context.stroke();
  context.restore();
}

/**
 * Fills what a line adds to those that come after it. The library's own stacks turn a figure that
 * is unknown for a while into a slope.
 */
function plotStack(event) {
  const context = event.drawingContext;
  const bottom = event.dygraph.toDomYCoord(0);
  for (const [colour, alpha] of [[style('--ground'), 1], [event.color, 0.6]]) {
    context.save();
    context.globalAlpha = alpha;
    context.fillStyle = colour;
    event.points.forEach((point, i) => {
      const next = event.points[i + 1];
      if (next && point.yval > 0) {
        context.fillRect(point.canvasx, point.canvasy, next.canvasx - point.canvasx + 0.3, bottom - point.canvasy);
      }
    });
    context.restore();
  }
  plotSteps(event, []);
}

/** A tick of the time axis, in hours and minutes where the view is long. */
function axisTime(date) {
  const time = Number(date) - run.info.startMs;
  const text = new Date(Number(date)).toISOString();
  if (view.to - view.from > 86400 * SECOND && text.slice(11, 16) === '00:00') {
    return text.slice(5, 10);
  }
  const span = view.to - view.from;
  return text.slice(11, span > 1800 * SECOND ? 16 : time % SECOND === 0 ? 19 : 23);
}

/** A plot of lines {series, label, scale, colour, dash, hidden, wide}. */
class Plot {
  constructor(name, title, lines, options = {}) {
    this.name = name;
    this.lines = lines.map((line, i) => ({colour: i, dash: Math.floor(i / 8), ...line}));
    for (const line of this.lines) {
      const scale = line.scale ?? 0.001;
      line.shown = value => Number.isNaN(value) ? null : value * scale;
    }
    this.union = unionOf(this.lines);
    this.options = options;
    this.legend = element('div', [], {class: 'legend'});
    this.box = element('div', [], {class: 'graph'});
    this.box.style.height = `calc(var(--graph) * ${options.height ?? 1}` +
        (options.overview ? ` + ${RANGE_HEIGHT}px)` : ')');
    const heading = element('div', [element('h2', title), this.legend], {class: 'heading'});
    this.part = element('section', [heading, this.box], {class: 'plot', id: 'plot-' + name});
    document.getElementById('plots').append(this.part);
    this.draw();
    this.fillLegend();
    view.plots.push(this);
  }

  colourOf(line) { return palette()[line.colour % 8]; }

  rows() {
    const rows = this.plainRows();
    return this.options.stacked ? stacked(rows, this.lines) : rows;
  }
  /** Fine where the view is, coarse beside it, exact where that is little enough. */
  plainRows() {
    const part = (from, to, most) => {
      const times = this.union.subarray(lastAtMost(this.union, from - 1e-6) + 1,
          lastAtMost(this.union, to) + 1);
      if (times.length <= most) {
        return times.length > 0 ? exactRows(this.lines, times) : [];
      }
      return thinnedRows(this.lines, from, to, most);
    };
    if (this.union.length <= FINE_ROWS + 2 * COARSE_ROWS) {
      return exactRows(this.lines, this.union);
    }
    const {from, to} = view;
    return [
      ...(from > 0 ? part(0, from - 1, COARSE_ROWS) : []),
      ...part(from, to, FINE_ROWS),
      ...(to < run.duration ? part(to + 1, run.duration, COARSE_ROWS) : []),
      ...exactRows(this.lines, [run.duration]).filter(() => to < run.duration),
    ];
  }

  get isThinned() { return this.union.length > FINE_ROWS + 2 * COARSE_ROWS; }

  draw() {
    const big = document.documentElement.classList.contains('big');
    const font = fontSize();
    this.busy = true;
    this.graph?.destroy();
    this.graph = new Dygraph(this.box, this.rows(), {
      labels: ['time', ...this.lines.map((line, i) => `${i} ${line.label}`)],
      colors: this.lines.map(line => this.colourOf(line)),
      series: Object.fromEntries(this.lines.map((line, i) => [`${i} ${line.label}`, {
        plotter: this.options.stacked ? plotStack : event => plotSteps(event, DASHES[line.dash % 4]),
        strokeWidth: (line.wide ? 2.6 : 1.6) * (big ? 1.5 : 1),
      }])),
      visibility: this.lines.map(line => !line.hidden),
      dateWindow: [run.info.startMs + view.from, run.info.startMs + view.to],
      stepPlot: true,
      legend: 'never',
      labelsUTC: true,
      highlightCircleSize: 0,
      rightGap: 6,
      includeZero: this.options.stacked === true,
      gridLineColor: style('--grid'),
      axisLineColor: style('--axis'),
      axisLabelFontSize: Math.round(font * 0.8),
      xAxisHeight: Math.round(font * 1.5),
      axes: {
        x: {ticker: Dygraph.dateTicker, axisLabelFormatter: axisTime, axisLabelWidth: 6 * font, pixelsPerLabel: 6 * font},
        y: {axisLabelWidth: axisWidth() - 4, pixelsPerLabel: 32},
      },
      showRangeSelector: this.options.overview === true,
      rangeSelectorHeight: RANGE_HEIGHT - 8,
      rangeSelectorAlpha: isDark() ? 0.25 : 0.6,
      rangeSelectorPlotFillColor: palette()[0],
      rangeSelectorPlotFillGradientColor: 'transparent',
      rangeSelectorPlotStrokeColor: palette()[0],
      rangeSelectorBackgroundStrokeColor: style('--axis'),
      rangeSelectorForegroundStrokeColor: style('--ink'),
      drawCallback: graph => this.onDraw(graph),
    });
    this.busy = false;
  }

  onDraw(graph) {
    if (this.busy) {
      return;
    }
    const [from, to] = graph.xAxisRange();
    view.set(from - run.info.startMs, to - run.info.startMs, this);
  }

  update(options) {
    this.busy = true;
    this.graph.updateOptions(options);
    this.busy = false;
  }
  /** Takes over the view, unless that came from here and is what shows already. */
  follow(isSource) {
    const [from, to] = this.graph.xAxisRange();
    const wanted = [run.info.startMs + view.from, run.info.startMs + view.to];
    if (!isSource || Math.abs(from - wanted[0]) + Math.abs(to - wanted[1]) > 1) {
      this.update({dateWindow: wanted});
    }
  }
  refine() {
    if (this.isThinned) {
      this.update({file: this.rows()});
    }
  }
  resize() { this.graph.resize(); }

  fillLegend() {
    this.values = [];
    this.legend.replaceChildren(...this.lines.map((line, i) => {
      const value = element('output', '');
      this.values.push(value);
      const key = `<svg width="26" height="10" aria-hidden="true"><line x1="1" x2="25" y1="5" y2="5"
          stroke="${this.colourOf(line)}" stroke-width="${line.wide ? 4 : 2.5}"
          stroke-dasharray="${DASHES[line.dash % 4].join(' ')}"/></svg>`;
      const button = element('button', [], {
        'aria-pressed': String(!line.hidden),
        onclick: () => {
          line.hidden = !line.hidden;
          button.setAttribute('aria-pressed', String(!line.hidden));
          this.update({
            visibility: this.lines.map(one => !one.hidden),
            ...(this.options.stacked ? {file: this.rows()} : {}),
          });
        },
      });
      button.insertAdjacentHTML('beforeend', key);
      button.append(element('span', line.label), value);
      return button;
    }));
    this.showValues();
  }
  showValues() {
    this.lines.forEach((line, i) => {
      const value = cursor.time < 0 ? NaN : line.series.at(cursor.time);
      const places = line.scale === 1 ? 0 : 1;
      this.values[i].textContent = Number.isNaN(value) ? '' : line.shown(value).toFixed(places);
    });
  }
  repaint() {
    this.draw();
    this.fillLegend();
  }
}
