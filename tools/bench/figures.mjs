// Figures of several rounds, as text: the median with the least and the most.

export function median(samples) {
  const sorted = [...samples].sort((a, b) => a - b);
  return sorted[Math.floor(sorted.length / 2)];
}

const text = (value) => value.toFixed(value < 100 ? 1 : 0);

/** One line: what was measured, its median and the spread. */
export function show(what, samples, unit) {
  console.log(`${what.padEnd(46)} ${text(median(samples)).padStart(9)} ${unit}   `
    + `(${text(Math.min(...samples))} to ${text(Math.max(...samples))})`);
}

/** A cell of a table: the median and the spread, with as many digits as it takes or as wanted. */
export function cell(samples, digits) {
  const written = (value) => (digits === undefined ? text(value) : value.toFixed(digits));
  return `${written(median(samples))} (${written(Math.min(...samples))} to ${written(Math.max(...samples))})`;
}

/** How often the second goes into the first, round by round: a machine that slows down slows both of a pair. */
export const ratios = (these, those) => these.map((value, i) => value / those[i]);

/** A table with a heading; the first column is flush left, the others flush right. */
export function showTable(rows) {
  const widths = rows[0].map((_, column) => Math.max(...rows.map((row) => row[column].length)));
  for (const row of rows) {
    console.log(row.map((word, i) => (i === 0 ? word.padEnd(widths[i]) : word.padStart(widths[i]))).join('   '));
  }
}

/** Where a long measurement is; on a terminal the line is written over again and again. */
export function showProgress(words) {
  if (process.stderr.isTTY) {
    process.stderr.write(`\r\x1b[K${words}`);
  } else if (words) {
    process.stderr.write(`bench: ${words}\n`);
  }
}

export async function timed(work) {
  const started = performance.now();
  await work();
  return performance.now() - started;
}
