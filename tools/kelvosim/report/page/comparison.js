'use strict';
// The same scenario with another configuration, when the run was compared with one.

const MOST_STRETCHES = 200;
const FATES = ['same', 'other values', 'other time', 'only own', 'only other'];

const whole = value => value === null ? '–' : String(value);
const celsius = value => value === null ? '–' : degrees(value);

function shellTable({first, largest, meanAbsolute, meanSigned, differentMs}) {
  const row = (name, [from, , own, other]) => [name, timeLink(from), celsius(own), celsius(other),
    own === null || other === null ? '–' : degrees(other - own)];
  return table(['shell temperature (°C)', 'time (UTC)', 'own', 'other', 'difference'], [
    row('first difference', first),
    ...(largest ? [row('largest difference', largest)] : []),
    ['mean difference', '', '', '', degrees(meanSigned)],
    ['mean of its size', '', '', '', degrees(meanAbsolute)],
    ['differs for', duration(differentMs), '', '', ''],
  ]);
}

function stretchTable(name, stretches) {
  const shown = stretches.slice(0, MOST_STRETCHES);
  const rest = stretches.length - shown.length;
  return [table([name, 'until', 'own', 'other'],
      shown.map(([from, to, own, other]) => [timeLink(from), clock(Math.min(to, run.duration)), whole(own), whole(other)])),
    ...(rest > 0 ? [element('p', `and ${rest} more`)] : [])];
}

function addComparison() {
  const section = document.getElementById('comparison');
  const {other} = run;
  if (other === null) {
    return;
  }
  section.append(element('h2', ['Compared with ', element('code', other.config)]));
  if (other.identical) {
    section.append(element('p', 'Identical: shell temperature, level, status and notifications.'));
    return;
  }
  const same = name => [element('p', `The ${name} is the same.`)];
  section.append(
      ...(other.shellDifference.first ? [shellTable(other.shellDifference)] : same('shell temperature')),
      ...(other.levels.length > 0 ? stretchTable('level differs from', other.levels) : same('level')),
      ...(other.statuses.length > 0 ? stretchTable('status differs from', other.statuses) : same('status')),
      ...(other.counts.length > 0 ? [table(['notifications', ...FATES], other.counts)] : []),
      element('p', 'In the strips below the first plot ′ marks the other run.'));
}
