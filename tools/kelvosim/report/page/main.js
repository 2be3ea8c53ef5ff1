'use strict';
// Puts the page together and listens to its reader.

function repaint() {
  view.plots.forEach(plot => plot.repaint());
  view.strips.forEach(strip => strip.draw());
  cursor.place();
}

function setTheme(theme) {
  document.documentElement.dataset.theme = theme;
  document.getElementById('theme').textContent = theme === 'dark' ? 'light' : 'dark';
}

function addControls() {
  const actions = {
    'zoom-in': () => view.zoom(0.5),
    'zoom-out': () => view.zoom(2),
    'pan-left': () => view.pan(-0.5),
    'pan-right': () => view.pan(0.5),
    'zoom-reset': () => view.reset(),
    size: () => {
      const big = document.documentElement.classList.toggle('big');
      document.getElementById('size').textContent = big ? 'usual type' : 'larger type';
      repaint();
    },
    theme: () => {
      setTheme(isDark() ? 'light' : 'dark');
      repaint();
    },
  };
  for (const [id, action] of Object.entries(actions)) {
    document.getElementById(id).addEventListener('click', action);
  }
  const keys = {
    '+': actions['zoom-in'], '=': actions['zoom-in'], '-': actions['zoom-out'], 0: actions['zoom-reset'],
    PageUp: actions['pan-left'], PageDown: actions['pan-right'], t: actions.theme, a: actions.size,
    ArrowLeft: () => cursor.step(-1), ArrowRight: () => cursor.step(1), Escape: () => cursor.hold(false),
  };
  document.addEventListener('keydown', event => {
    const action = keys[event.key];
    const isTyping = event.target.closest('input, select') !== null;
    if (action && !isTyping && !event.ctrlKey && !event.metaKey && !event.altKey) {
      event.preventDefault();
      action();
    }
  });
}

function addPlots() {
  addPlot('shell', 'Shell temperature (°C)', shellLines(), {overview: true, height: 1.2},
      'No pass gave a temperature.');
  addStrips();
  addPlot('models', 'Fitted models (°C)', modelLines(), {}, 'No pass gave an output.');
  addPlot('ambient', 'Ambient temperature (°C)', ambientLines(), {height: 0.8},
      'No estimate, and no plant that knows the air.');
  addPlot('heat', 'Contributions to the shell’s heat, stacked (°C)',
      linesOf(run.heat.map(withoutUnknown)), {stacked: true}, 'Nobody asked what heats the phone.');
  addPlot('samples', 'Samples of the components (mW; gpu in mA)',
      linesOf(run.heatSamples, {scale: 1}).filter(line => line.series.unit !== 'm°C'),
      {height: 0.8}, 'The components were not sampled.');
  addPlot('zones', 'Zones (°C)', linesOf(run.zones), {height: 1.4}, 'The phone has no zones.');
}

/** -1 says that there is no figure yet: it is no heat. */
function withoutUnknown(series) {
  const known = Object.create(Object.getPrototypeOf(series));
  return Object.assign(known, series, {values: series.values.map(value => value === -1 ? NaN : value)});
}

function addProblem() {
  document.getElementById('problem').textContent = run.problem;
}

function addNotes() {
  const notes = [];
  if (view.plots.some(plot => plot.isThinned)) {
    notes.push('The run has more figures than a screen has dots: plots show the extremes of short stretches ' +
        'until you zoom in.');
  }
  if (run.thinned > 0) {
    notes.push(`Of series with more than ${run.thinned} changes the page holds the extremes of short ` +
        'stretches only; the reasons are whole.');
  }
  document.getElementById('notes').textContent = notes.join(' ');
}

setTheme(window.matchMedia('(prefers-color-scheme: dark)').matches ? 'dark' : 'light');
addProblem();
addFacts();
addExtremes();
addPlots();
addNotes();
addExpectations();
addWarnings();
addComparison();
addNotifications();
addControls();
watchMouse();
view.strips.forEach(strip => strip.draw());
cursor.set(run.shell.top?.time ?? 0);
window.addEventListener('resize', repaint);
window.addEventListener('beforeprint', () => { setTheme('light'); repaint(); });
