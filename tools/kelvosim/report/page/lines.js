'use strict';
// Which lines the plots have.

/** A line for each series that has figures. */
const linesOf = (list, more = {}) => list.map((series, i) => (
    {series, label: series.name, colour: i, dash: Math.floor(i / 8), ...more}))
    .filter(line => !line.series.isEmpty);

function addPlot(name, title, lines, options, otherwise) {
  if (lines.length > 0) {
    return new Plot(name, title, lines, options);
  }
  document.getElementById('plots').append(element('section', [
    element('div', element('h2', title), {class: 'heading'}), element('p', otherwise, {class: 'nothing'}),
  ], {class: 'plot', id: 'plot-' + name}));
  return null;
}

/** Zones of this name were measured on the shell: "lab-front" is the truth of the model "front". */
const MEASURED = 'lab-';

/** What the outputs should be, as far as it is known: [{output, series, source}]. */
function truths() {
  return run.outputs.flatMap(output => [
    ...run.plantNodes.filter(node => node.name === output.name)
        .map(series => ({output, series, source: 'of the plant'})),
    ...run.zones.filter(zone => zone.name === MEASURED + output.name)
        .map(series => ({output, series, source: 'measured'})),
  ]);
}

function shellLines() {
  return [
    ...linesOf([run.shell], {label: 'shell, as clients are told', wide: true, colour: 6}),
    ...run.others.flatMap((other, i) => linesOf([other.shell],
        {label: `shell${other.mark} with ${other.config}`, wide: true, colour: 6 + i, dash: 1})),
    ...truths().map(({output, series, source}) => ({
      series, label: `${output.name} ${source}`, colour: run.outputs.indexOf(output), dash: 1})),
  ];
}

/** Outputs, and what models came to where limits changed it. */
function modelLines() {
  const outputs = run.outputs.filter(output => !output.value.isEmpty);
  const isChanged = output => run.passTimes.some(time => {
    const value = output.value.at(time);
    return !Number.isNaN(value) && output.fitted.at(time) !== value;
  });
  return [
    ...outputs.map((output, i) => ({series: output.value, label: output.name, colour: i})),
    ...outputs.map((output, i) => ({
      series: output.fitted, label: output.name + ', before limits', colour: i, dash: 2,
    })).filter((line, i) => isChanged(outputs[i])),
  ];
}

function ambientLines() {
  return [
    ...linesOf([run.ambient], {label: 'estimate', wide: true, colour: 0}),
    ...linesOf([run.trueAmbient], {label: 'air of the plant', colour: 1, dash: 1}),
  ];
}
