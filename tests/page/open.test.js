// What "zmbench --open" hands to the desktop's browser.
import assert from 'node:assert/strict';
import {chmodSync, mkdirSync, readFileSync, writeFileSync} from 'node:fs';
import {join} from 'node:path';
import {pathToFileURL} from 'node:url';
import {after, test} from 'node:test';
import {Bench, until} from './bench.js';

const bench = new Bench();
after(() => bench.end());

test('the file that --open hands over leads a browser to the page', async () => {
  const folder = join(bench.runtime, 'desktop');
  mkdirSync(folder);
  const opened = join(folder, 'opened');
  writeFileSync(join(folder, 'xdg-open'), `#!/bin/sh\nprintf %s "$1" >${opened}.part && mv ${opened}.part ${opened}\n`);
  chmodSync(join(folder, 'xdg-open'), 0o755);
  process.env.PATH = `${folder}:${process.env.PATH}`;
  await bench.startWithBrowser('--open');
  const file = await until('a browser is opened', async () => {
    try {
      return readFileSync(opened, 'utf8');
    } catch {
      return '';
    }
  });
  const page = await bench.browser.newPage();
  await page.goto(pathToFileURL(file).href);
  await page.waitForSelector('#stateline:not(.bad)');
  assert.equal(new URL(page.url()).port, String(bench.port));
});
