// Which lines of the page's scripts the tests run, as the browser counts them: `./dev test --page-coverage`. Each page that
// the tests open leaves a file in the folder ZM_PAGE_COVERAGE (bench.js); here they are put together.
import {readFileSync, readdirSync} from 'node:fs';
import {join} from 'node:path';
import {pathToFileURL} from 'node:url';

/** The characters of a script that one page has run: ranges lie in each other, and the inner one holds. */
function ran(entry) {
  const run = new Uint8Array(entry.source.length);
  const ranges = entry.functions.flatMap((each) => each.ranges);
  ranges.sort((one, other) => one.startOffset - other.startOffset || other.endOffset - one.endOffset);
  for (const {startOffset, endOffset, count} of ranges) run.fill(count > 0 ? 1 : 0, startOffset, endOffset);
  return run;
}

/** Of each script its lines that hold code, and the numbers of those that were never run in full. */
export function lines(entries) {
  const scripts = new Map();
  for (const entry of entries) {
    const name = new URL(entry.url).pathname.slice(1);
    const known = scripts.get(name);
    const run = ran(entry);
    if (known) run.forEach((each, at) => { known.run[at] |= each; });
    else scripts.set(name, {source: entry.source, run});
  }
  return new Map([...scripts].sort().map(([name, {source, run}]) => {
    let at = 0;
    const code = [];
    const missed = [];
    source.split('\n').forEach((line, number) => {
      const bare = line.trim();
      if (/\w/.test(bare) && !/^(\/\/|\/\*|\*)/.test(bare)) {
        code.push(number + 1);
        // A word that was not run; brackets and blanks at the edge of a range say nothing.
        if ([...line].some((letter, place) => /\w/.test(letter) && !run[at + place])) missed.push(number + 1);
      }
      at += line.length + 1;
    });
    return [name, {code: code.length, missed}];
  }));
}

function report(folder, least) {
  const entries = readdirSync(folder).flatMap((file) => JSON.parse(readFileSync(join(folder, file), 'utf8')));
  const found = lines(entries.filter((entry) => entry.url.endsWith('.js')));
  let all = 0;
  let missing = 0;
  for (const [name, {code, missed}] of found) {
    all += code;
    missing += missed.length;
    console.log(`${name.padEnd(14)} ${code - missed.length}/${code} lines${missed.length ? `, without ${missed.join(' ')}` : ''}`);
  }
  const share = all ? 100 * (all - missing) / all : 0;
  console.log(`page scripts: ${share.toFixed(1)} % of ${all} lines run`);
  return share >= least ? 0 : 1;
}

if (import.meta.url === pathToFileURL(process.argv[1]).href) process.exitCode = report(process.argv[2], Number(process.argv[3] ?? 90));
