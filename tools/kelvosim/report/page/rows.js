'use strict';
// Rows for the plots: at every zoom no more than a screen can show.

const FINE_ROWS = 3000;    // in the part of the run that shows
const COARSE_ROWS = 1000;  // on either side of it

/** Time of each change of any of the lines in ascending order, each once. */
function unionOf(lines) {
  const total = lines.reduce((sum, line) => sum + line.series.times.length, 2);
  const times = new Float64Array(total);
  let filled = 0;
  for (const line of lines) {
    times.set(line.series.times, filled);
    filled += line.series.times.length;
  }
  times[total - 1] = run.duration;
  times.sort();
  return times.filter((time, i) => i === 0 || time !== times[i - 1]);
}

/** Rows at exactly these times. */
function exactRows(lines, times) {
  const places = lines.map(line => lastAtMost(line.series.times, times[0]));
  return Array.from(times, time => {
    const row = [run.info.startMs + time];
    lines.forEach((line, i) => {
      const at = line.series.times;
      while (places[i] + 1 < at.length && at[places[i] + 1] <= time) {
        ++places[i];
      }
      row.push(places[i] < 0 ? null : line.shown(line.series.values[places[i]]));
    });
    return row;
  });
}

/** For each of `count` equal parts of the time the two extremes of a line, in their order. */
function extremesOf(line, from, to, count) {
  const {times, values} = line.series;
  const result = new Array(2 * count);
  let place = lastAtMost(times, from);
  for (let i = 0; i < count; ++i) {
    const end = from + (to - from) * (i + 1) / count;
    let low = place < 0 ? NaN : values[place];
    let high = low;
    let lowFirst = true;
    while (place + 1 < times.length && times[place + 1] < end) {
      const value = values[++place];
      if (!(value >= low)) {
        low = value;
        lowFirst = false;
      }
      if (!(value <= high)) {
        high = value;
        lowFirst = true;
      }
    }
    result[2 * i] = line.shown(lowFirst ? low : high);
    result[2 * i + 1] = line.shown(lowFirst ? high : low);
  }
  return result;
}

function thinnedRows(lines, from, to, most) {
  const count = most / 2;
  const columns = lines.map(line => extremesOf(line, from, to, count));
  return Array.from({length: most}, (_, i) => [
    run.info.startMs + from + (to - from) * i / most, ...columns.map(column => column[i])]);
}

/** Turns each figure of the rows into the sum of it and those after it. */
function stacked(rows, lines) {
  for (const row of rows) {
    let sum = 0;
    for (let i = lines.length; i > 0; --i) {
      sum += lines[i - 1].hidden ? 0 : Math.max(row[i] ?? 0, 0);
      row[i] = sum;
    }
  }
  return rows;
}
