// The page's inspector, and a state behind its address.
import assert from 'node:assert/strict';
import {readFileSync} from 'node:fs';
import {join} from 'node:path';
import {after, before, test} from 'node:test';
import {Bench, playMusic, until} from './bench.js';

const bench = new Bench();
let page;

before(async () => {
  await bench.startWithBrowser();
  page = await bench.openPage();
  await playMusic(bench);
  await page.locator('#tab-inspect').click();
});

after(() => bench.end());

const fact = (name) => page.evaluate((wanted) => [...document.querySelectorAll('#item dt')].find((node) => node.textContent === wanted)?.nextSibling.textContent, name);
const middle = async (item) => {
  const [x, y, w, h] = (await bench.screen()).main.windows['6'].items[item].rect;
  return {x: x + w / 2, y: y + h / 2};
};

test('what lies under the pointer is told, with the lines that touch it', async () => {
  await page.getByLabel('Inspect under the pointer').check();
  await page.locator('#screen').hover({position: await middle('6523')});
  await until('the button is named', async () => await fact('id') === '6523');
  assert.equal(await fact('window'), 'main 6');
  assert.equal(await fact('kind'), 'button');
  assert.match(await fact('rectangle'), /^\d+, \d+, \d+, \d+$/);
  assert.ok(await fact('style'));
  const lines = await page.locator('#itemlines code').allTextContents();
  assert.ok(lines.includes('click main 6 6523 1'), lines.join());
  for (const line of lines.filter((each) => /^(tap|click|expect)/.test(each))) {
    const words = line.match(/'[^']*'|\S+/g).map((word) => word.replace(/^'|'$/g, ''));
    await bench.zmctl(...words); // fails where a line is none
  }
  assert.equal(await page.locator('#inspected').isVisible(), true);
});

test('the tree has all windows, and their items can be chosen', async () => {
  const shown = page.locator('#tree details', {hasText: 'main 6, shown'});
  await shown.locator('summary').click();
  await shown.getByRole('button', {name: /^6524 /}).click();
  assert.equal(await fact('id'), '6524');
});

test('what is redrawn flashes and counts as a frame', async () => {
  await page.getByLabel('Flash what is redrawn').check();
  const flashed = page.evaluate(() => new Promise((resolve) => {
    new MutationObserver((changes) => {
      for (const change of changes) for (const node of change.addedNodes) if (node.className === 'flash') resolve(node.style.width);
    }).observe(document.getElementById('screenbox'), {childList: true});
  }));
  await bench.zmctl('theme', 'day');
  assert.match(await flashed, /px$/);
  assert.match(await page.textContent('#frametimes'), /^\d+ frames, \d+ ms from one to the next/);
});

test('the timeline has a lane for each object that changed, and is saved as a trace', async () => {
  await bench.zmctl('pps', 'put', 'lane/one', 'x::1');
  await until('its lane is drawn', async () => (await page.locator('#timeline').getAttribute('data-lanes') ?? '').split('\n').includes('lane/one'));
  const [download] = await Promise.all([page.waitForEvent('download'), page.getByRole('button', {name: 'Save as Chrome trace'}).click()]);
  const trace = JSON.parse(readFileSync(await download.path(), 'utf8'));
  assert.ok(trace.traceEvents.some((event) => event.name === 'x' && event.ph === 'i'));
});

test('a state behind the address is restored once the user agrees', async () => {
  const file = join(bench.runtime, 'day.snapshot');
  await bench.zmctl('theme', 'day');
  await bench.zmctl('snapshot', 'save', file);
  await bench.zmctl('theme', 'night');
  await page.goto('about:blank');
  await page.goto(`http://127.0.0.1:${bench.port}/#restore=${encodeURIComponent(file)}`);
  await page.waitForSelector('#restore');
  assert.match(await bench.zmctl('vehicle'), /daynight::night/);
  await page.getByRole('button', {name: 'Restore', exact: true}).click();
  await until('it is day', async () => /daynight::day/.test(await bench.zmctl('vehicle')));
});
