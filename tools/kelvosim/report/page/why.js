'use strict';
// Why: what the daemon decided at the time that is looked at, and from which figures.

const RULES = {
  'in band': 'kept: between its own falling threshold and the next rising one',
  'at top': 'kept: the top level, not below its falling threshold',
  'at bottom': 'kept: level 0, not above its falling threshold',
  rising: 'not cooler than at the last decision: the rising thresholds',
  falling: 'cooler than at the last decision: the falling thresholds',
};
const METHODS = {
  none: 'no figure yet',
  remembered: 'fewer than five samples since the last question: its result stands',
  mean: 'mean of the samples ÷ coefficient',
  ambient: 'change against the latest extreme of the estimate',
};

const signed = value => (value < 0 ? '−' : '+') + Math.abs(value);

/** The coefficient's own digits; the product is rounded to m°C for reading. */
function termRow(zone, coefficient, time) {
  const reading = run.readings.get(zone);
  const temp = reading ? reading.at(time) : NaN;
  return [reading?.name || `zone ${zone}`, degrees(temp), `× ${coefficient}`, degrees(coefficient * temp)];
}

function modelPart(definition, time, output) {
  const computed = definition.computed.at(time);
  const fitted = definition.fitted.at(time);
  const rows = definition.terms.map(([zone, coefficient]) => termRow(zone, coefficient, time));
  if (definition.constant !== null) {
    rows.push(['constant', '', '', degrees(definition.constant)]);
  }
  rows.push([element('b', 'sum'), '', '', element('b', degrees(computed))]);
  if (fitted !== computed) {
    rows.push(['inner correction', '', '', degrees(fitted)]);
  }
  const parts = [table(['zone', '°C', 'coefficient', 'gives °C'], rows)];
  if (output) {
    parts.push(element('ul', limitLines(output, time).map(line => element('li', line))));
  }
  return parts;
}

/** What became of a fitted value until it was published. */
function limitLines(output, time) {
  const at = name => output[name].at(time);
  const lines = [];
  if (at('capped') !== at('fitted')) {
    lines.push(`capped to the reference model: ${degrees(at('capped'))} °C`);
  }
  if (Number.isNaN(at('limit'))) {
    lines.push(output.index < 0 ? 'a reference for the others: not limited' : 'not limited: the screen has just turned on');
  } else if (at('limit') !== 0) {
    lines.push(`limited: wanted ${signed(at('rate'))} m°C/s from ${degrees(at('previous'))} °C, ` +
        `may ${signed(at('limit'))} m°C/s over ${at('seconds')} s`);
  } else {
    lines.push(`${signed(at('rate'))} m°C/s from ${degrees(at('previous'))} °C: not limited`);
  }
  const written = at('written') === 1 ? 'written' : output.index < 0 ? 'never written'
      : 'not written: the tenth of a degree is the same';
  lines.push(element('span', [element('b', `${degrees(at('value'))} °C`), `, ${written}`]));
  return lines;
}

function passPart(time) {
  const place = lastAtMost(run.passTimes, time);
  if (place < 0) {
    return [element('p', 'No pass yet.')];
  }
  const at = run.passTimes[place];
  const set = run.sets[run.passSet.at(at)];
  const parts = [element('p', [`Pass at ${clock(at)} (${seconds(at)}), scene `, element('b', set.scene)])];
  if (set.failedModel !== undefined) {
    const name = run.zones[set.failedZone]?.name;
    parts.push(element('p', `Zone ${set.failedZone}${name ? ` (${name})` : ''} of model ${set.failedModel} ` +
        'could not be read: the pass ended there.', {class: 'bad'}));
  }
  if (set.definitions.length === 0 && set.failedModel === undefined) {
    parts.push(element('p', 'The scene has no models.', {class: 'bad'}));
  }
  for (const number of set.definitions) {
    const definition = run.definitions[number];
    const output = run.outputs.find(one => one.index === definition.index &&
        !Number.isNaN(one.value.at(at)));
    const value = output ? output.value.at(at) : definition.fitted.at(at);
    const changed = output && (output.limit.at(at) > 0 || output.limit.at(at) < 0 ||
        output.capped.at(at) !== output.fitted.at(at));
    parts.push(fold('model ' + definition.name, [
      `${definition.name} `, element('b', `${tenths(value)} °C`),
      element('span', ` index ${definition.index}${changed ? ', limited' : ''}`, {class: 'dim'}),
    ], modelPart(definition, at, output)));
  }
  return parts;
}

function levelPart(time) {
  const place = lastAtMost(run.decisionTimes, time);
  if (place < 0) {
    return [element('p', 'No decision yet.')];
  }
  const at = run.decisionTimes[place];
  const ground = run.grounds[run.decisionGround.at(at)];
  const change = (old, now) => old === now ? `${now}` : `${old} → ${now}`;
  return [
    element('p', [`${clock(at)}: ${degrees(run.decisionTemp.at(at))} °C gives level `,
      element('b', change(ground.oldLevel, ground.newLevel)), ', status ',
      element('b', change(ground.oldStatus, ground.newStatus))]),
    element('ul', [
      element('li', `${RULES[ground.rule]}${ground.last >= 0 ? ` (last decision: ${ground.last} °C)` : ''}`),
      ...[['reached', ground.below], ['not reached', ground.above]].filter(([, one]) => one !== null)
          .map(([what, [rising, level, celsius]]) => element('li',
              `${what}: ${rising ? 'rising' : 'falling'} threshold of level ${level}, ${celsius} °C`)),
    ]),
  ];
}

function contributionPart(one) {
  const list = entries => Object.entries(entries ?? {}).map(([name, value]) => `${name} ${value}`).join(', ');
  const unit = run.heatSamples[one.component].unit;
  const lines = [METHODS[one.method]];
  if (one.samples.length > 0) {
    const mean = one.samples.reduce((sum, value) => sum + value, 0) / one.samples.length;
    lines.push(`${one.samples.length} samples (${unit}), newest first: ${one.samples.slice(0, 12).join(', ')}` +
        (one.samples.length > 12 ? ', …' : '') + `; mean ${mean.toFixed(1)}`);
  }
  if (one.coefficient !== 0) {
    lines.push(`coefficient ${Number(one.coefficient.toPrecision(6))} ${unit} for 1 m°C`);
  }
  if (one.source) {
    lines.push(`latest sample from ${one.source}: ${list(one.figures)}`);
  }
  if (one.keyFactors) {
    lines.push(`key factors: ${list(one.keyFactors)}`);
  }
  return [element('ul', lines.map(line => element('li', line)))];
}

function heatPart(time) {
  const place = lastAtMost(run.rankings.map(ranking => ranking.t), time);
  if (place < 0) {
    return [element('p', 'Nobody has asked what heats the phone yet.')];
  }
  const ranking = run.rankings[place];
  const asked = {main: 'for the main source', text: 'for a summary', detail: 'for a report'};
  return [
    element('p', [`${clock(ranking.t)}, asked ${asked[ranking.question]}: `,
      element('b', COMPONENTS[ranking.main] ?? 'nothing heats')]),
    ...ranking.contributions.map(one => fold('heat ' + one.component, [
      `${COMPONENTS[one.component]} `, element('b', one.heat === -1 ? '–' : `${degrees(one.heat)} °C`),
    ], contributionPart(one))),
  ];
}

/** What happened from the pass before to the next one. */
function eventPart(time) {
  const place = lastAtMost(run.passTimes, time);
  const from = place < 0 ? 0 : run.passTimes[place];
  const to = place + 1 < run.passTimes.length ? run.passTimes[place + 1] : run.duration + 1;
  const within = one => one.time >= from && one.time < to;
  const calls = run.notifications.filter(within).map(one => ({
    time: one.time,
    text: `${one.listener} told: ${notificationName(one.kind)} ` +
        one.values.filter(([, value]) => typeof value !== 'object').map(([, value]) => value).join(', '),
  }));
  const events = [...run.marks.filter(within), ...calls].sort((a, b) => a.time - b.time).slice(0, 30);
  if (events.length === 0) {
    return [element('p', 'Nothing until the next pass.')];
  }
  return [element('ul', events.map(one => element('li', `${clock(one.time)} ${one.text}`)))];
}

/** Parts that someone opened stay open when the time changes; the model of most terms begins. */
const openParts = new Set([...run.definitions].sort((a, b) => b.terms.length - a.terms.length)
    .slice(0, 1).map(one => 'model ' + one.name));
function fold(name, summary, content) {
  const part = element('details', [element('summary', summary), ...content], {
    ontoggle: () => part.open ? openParts.add(name) : openParts.delete(name),
  });
  part.open = openParts.has(name);
  return part;
}

const why = {
  show(time) {
    const panel = document.getElementById('why');
    panel.replaceChildren(
        element('h2', ['Why at ', element('b', clock(Math.round(time))), ' ',
          element('span', cursor.held ? 'held' : 'click to hold', {class: 'dim', id: 'held'})]),
        element('h3', 'Shell temperature'), ...passPart(time),
        element('h3', 'Level'), ...levelPart(time),
        element('h3', 'Heat'), ...heatPart(time),
        element('h3', 'Events'), ...eventPart(time));
  },
  showHeld(held) {
    const text = document.getElementById('held');
    if (text) {
      text.textContent = held ? 'held' : 'click to hold';
    }
  },
};
