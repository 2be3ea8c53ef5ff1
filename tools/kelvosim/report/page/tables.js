'use strict';
// The head's figures, the configuration's warnings and every notification.

function goTo(time) {
  const span = view.to - view.from;
  if (time < view.from || time > view.to) {
    view.set(time - span / 2, time + span / 2);
  }
  cursor.hold(true);
  cursor.set(time);
  document.getElementById('plots').scrollIntoView({block: 'start', behavior: 'instant'});
}

const timeLink = time => element('button', clock(time), {class: 'time', title: seconds(time), onclick: () => goTo(time)});

function duration(ms) {
  const parts = [[86400, 'd'], [3600, 'h'], [60, 'min'], [1, 's']];
  let left = Math.round(ms / SECOND);
  const words = [];
  for (const [size, unit] of parts) {
    if (left >= size) {
      words.push(`${Math.floor(left / size)} ${unit}`);
      left %= size;
    }
  }
  return words.slice(0, 2).join(' ') || '0 s';
}

const count = (number, name) => `${number} ${name}${number === 1 ? '' : 's'}`;

function addFacts() {
  const {info} = run;
  const start = new Date(info.startMs).toISOString();
  const facts = [
    ['start', `${start.slice(0, 10)} ${start.slice(11, 19)} UTC`],
    ['duration', duration(run.duration)],
    ['scenario', info.scenario],
    ['configuration', [info.configVersion, info.configuration ? `(${info.configuration})` : 'none'].filter(Boolean).join(' ')],
    ['platform', info.platform || 'none that is supported'],
    ['project', info.project || 'none'],
  ];
  document.getElementById('facts').replaceChildren(
      ...facts.map(([name, text]) => element('div', [element('dt', name), element('dd', text)])));
}

/** Root of the mean square difference between two series in the passes, °C. */
function meanError(series, truth) {
  let sum = 0;
  let count = 0;
  for (const time of run.passTimes) {
    const difference = (series.at(time) - truth.at(time)) / 1000;
    if (!Number.isNaN(difference)) {
      sum += difference * difference;
      ++count;
    }
  }
  return count > 0 ? Math.sqrt(sum / count) : NaN;
}

function addExtremes() {
  const cards = [];
  const card = (name, value, note) => cards.push(element('div', [
    element('span', name), element('b', value), element('span', note)], {class: 'card'}));
  const shell = run.shell.top;
  if (shell) {
    card('shell at most', `${tenths(shell.value)} °C`, timeLink(shell.time));
  }
  const hottest = run.zones.map(series => ({series, top: series.top})).filter(one => one.top)
      .reduce((best, one) => best === null || one.top.value > best.top.value ? one : best, null);
  if (hottest) {
    card(`hottest zone ${hottest.series.name}`, `${tenths(hottest.top.value)} °C`, timeLink(hottest.top.time));
  }
  const level = run.level.top;
  if (level) {
    card('level at most', String(level.value), timeLink(level.time));
  }
  const models = truths().map(({output, series}) => ({output, error: meanError(output.value, series)}))
      .filter(one => !Number.isNaN(one.error));
  if (models.length > 0) {
    const worst = Math.max(...models.map(one => one.error));
    card('models off by, r.m.s.', `${worst.toFixed(2)} °C`,
        models.map(one => `${one.output.name} ${one.error.toFixed(2)}`).join(', '));
  }
  const error = meanError(run.ambient, run.trueAmbient);
  if (!Number.isNaN(error)) {
    card('ambient estimate off by', `${error.toFixed(1)} °C`, 'r.m.s. against the plant');
  }
  card('passes', String(run.passTimes.length), count(run.notifications.length, 'notification'));
  if (run.verdicts.length > 0) {
    const failed = run.verdicts.filter(one => !one.passed).length;
    cards.push(element('a', [
      element('span', 'expectations'),
      element('b', failed > 0 ? `${failed} failed` : 'passed'),
      element('span', `of ${run.verdicts.length}`),
    ], {class: failed > 0 ? 'card bad' : 'card', href: '#expectations'}));
  }
  const errors = run.warnings.filter(one => one.error).length;
  const warned = run.warnings.length > 0;
  cards.push(element('a', [
    element('span', 'configuration'),
    element('b', warned ? `${run.warnings.length} to look at` : 'clean'),
    element('span', warned ? `${count(errors, 'error')}, ${count(run.warnings.length - errors, 'warning')}`
        : 'nothing to warn of'),
  ], {class: warned ? 'card bad' : 'card', href: '#warnings'}));
  document.getElementById('extremes').replaceChildren(...cards);
}

/** What became of what the scenario expects; without expectations no word about them. */
function addExpectations() {
  if (run.verdicts.length === 0) {
    return;
  }
  const outcome = one => [element('div', one.happened), ...(one.why ? [element('div', `why: ${one.why}`)] : [])];
  document.getElementById('expectations').append(element('h2', 'Expectations'),
      table(['', 'time (UTC)', 'where', 'expected', 'what happened'], run.verdicts.map(one => [
        element('b', one.passed ? 'passed' : 'failed', one.passed ? {} : {class: 'bad'}),
        timeLink(one.timeMs), element('code', one.place),
        one.name ? `${one.name}: ${one.expected}` : one.expected, element('div', outcome(one))])));
}

function addWarnings() {
  const section = document.getElementById('warnings');
  section.append(element('h2', 'The configuration’s warnings'));
  if (run.warnings.length === 0) {
    section.append(element('p', 'None.'));
    return;
  }
  section.append(table(['', 'where', 'what', 'what the daemon does', 'how to mend it'],
      run.warnings.map(one => [
        element('b', one.error ? 'error' : 'warning', {class: one.error ? 'bad' : 'warn'}),
        element('code', one.place), one.what, one.effect, one.mend])));
}

function valueText([name, value]) {
  if (typeof value !== 'object' || value === null) {
    return element('span', name === 'temp' && Math.abs(value) > 1000 ? `temp ${degrees(value)} °C` : `${name} ${value}`);
  }
  return element('details', [element('summary', name), element('code', JSON.stringify(value))]);
}

function addNotifications() {
  const section = document.getElementById('notifications');
  const kinds = [...new Set(run.notifications.map(one => one.kind))];
  const choice = element('select', [element('option', 'all', {value: ''}),
    ...kinds.map(kind => element('option', kind, {value: kind}))], {'aria-label': 'kind'});
  const body = element('div');
  const fill = () => {
    const rows = run.notifications.filter(one => choice.value === '' || one.kind === choice.value);
    const values = one => element('div', one.values.map(valueText), {class: 'values'});
    body.replaceChildren(rows.length > 0
        ? table(['time (UTC)', 't', 'listener', 'kind', 'values'],
            rows.map(one => [timeLink(one.time), seconds(one.time), one.listener, one.kind, values(one)]))
        : element('p', 'No listener was called.'));
  };
  choice.addEventListener('change', fill);
  section.append(element('h2', [`Notifications (${run.notifications.length}) `, ...(kinds.length > 1 ? [choice] : [])]), body);
  fill();
}
