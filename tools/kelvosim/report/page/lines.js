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

function shellLines() {
  const names = run.outputs.map(output => output.name);
  return [
    ...linesOf([run.shell], {label: 'shell, as clients are told', wide: true, colour: 6}),
    ...run.plantNodes.filter(node => names.includes(node.name)).map(node => (
        {series: node, label: node.name + ' of the plant', colour: names.indexOf(node.name), dash: 1})),
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
