'use strict';
// The same scenario with other configurations, when the run was compared with any.

const MOST_STRETCHES = 200;
const FATES = ['same', 'other values', 'other time', 'only own', 'only other'];

const whole = value => value === null ? '–' : String(value);
const celsius = value => value === null ? '–' : degrees(value);

/** Each temperature that differs: where first, by how much at most, and in the mean. */
function figureTable(figures) {
  const place = stretch => stretch === null ? ['–', '–', '–', '–']
      : [timeLink(stretch[0]), celsius(stretch[2]), celsius(stretch[3]),
        stretch[2] === null || stretch[3] === null ? '–' : degrees(stretch[3] - stretch[2])];
  return table(['differs (°C)', 'first (UTC)', 'own', 'other', 'by', 'most (UTC)', 'own', 'other', 'by', 'mean', 'mean of its size', 'for'],
      figures.map(({name, first, largest, meanSigned, meanAbsolute, differentMs}) => [
        name, ...place(first), ...place(largest), degrees(meanSigned), degrees(meanAbsolute), duration(differentMs)]));
}

function stretchTable(name, stretches) {
  const shown = stretches.slice(0, MOST_STRETCHES);
  const rest = stretches.length - shown.length;
  return [table([name, 'until', 'own', 'other'],
      shown.map(([from, to, own, other]) => [timeLink(from), clock(Math.min(to, run.duration)), whole(own), whole(other)])),
    ...(rest > 0 ? [element('p', `and ${rest} more`)] : [])];
}

/** How far the models of both were off what was measured, where anything was. */
function errorTable(own, other) {
  const key = ([model, truth]) => `${model} against ${truth}`;
  const names = [...new Set([...own, ...other].map(key))];
  const cells = (list, name) => {
    const found = list.find(one => key(one) === name);
    return found ? [degrees(found[2]), degrees(found[3]), timeLink(found[4]), degrees(found[5])] : ['–', '–', '–', '–'];
  };
  return names.length === 0 ? [] : [table(
      ['error of the models (°C)', 'own: r.m.s.', 'largest', 'at', 'bias', 'other: r.m.s.', 'largest', 'at', 'bias'],
      names.map(name => [name, ...cells(own, name), ...cells(other, name)]))];
}

function comparisonOf(other) {
  const head = element('h2', ['Compared with ', element('code', other.config),
    ...(other.sub ? [' and ', element('code', other.sub)] : [])]);
  const errors = errorTable(run.errors, other.errors);
  if (other.identical) {
    return [head, element('p', 'Identical: shell temperature, level, status, models, ambient temperature, scene, heat ' +
        'and notifications.'), ...errors];
  }
  const differing = other.figures.filter(one => one.first !== null);
  const same = other.figures.filter(one => one.first === null).map(one => one.name);
  const states = [['level', other.levels], ['status', other.statuses], ['scene', other.scenes],
    ['main heat source', other.heatSources]];
  same.push(...states.filter(([, stretches]) => stretches.length === 0).map(([name]) => name));
  return [head,
    ...(differing.length > 0 ? [figureTable(differing)] : []), ...errors,
    ...states.filter(([, stretches]) => stretches.length > 0)
        .flatMap(([name, stretches]) => stretchTable(name + ' differs from', stretches)),
    ...(other.counts.length > 0 ? [table(['notifications', ...FATES], other.counts)] : []),
    ...(same.length > 0 ? [element('p', `The same: ${same.join(', ')}.`)] : []),
    element('p', `In the strips below the first plot ${other.mark} marks this run.`)];
}

function addComparison() {
  document.getElementById('comparison').append(...run.others.flatMap(comparisonOf));
}
