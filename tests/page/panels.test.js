// The page's panels over the whole head unit with its disc service: drive, faults, processes, objects, log.
import assert from 'node:assert/strict';
import {mkdirSync, readFileSync, writeFileSync} from 'node:fs';
import {join} from 'node:path';
import {after, before, test} from 'node:test';
import {Bench, until} from './bench.js';

const bench = new Bench({discService: true});
let page;

before(async () => {
  await bench.startWithBrowser();
  page = await bench.openPage();
});

after(() => bench.end());

/** A folder with songs of a minute of silence. */
function musicFolder() {
  const folder = join(bench.runtime, 'music');
  mkdirSync(folder);
  const silence = Buffer.alloc(8000 * 60, 0x80);
  const head = Buffer.alloc(44);
  head.write('RIFF', 0); head.writeUInt32LE(36 + silence.length, 4); head.write('WAVEfmt ', 8);
  head.writeUInt32LE(16, 16); head.writeUInt16LE(1, 20); head.writeUInt16LE(1, 22); head.writeUInt32LE(8000, 24);
  head.writeUInt32LE(8000, 28); head.writeUInt16LE(1, 32); head.writeUInt16LE(8, 34); head.write('data', 36);
  head.writeUInt32LE(silence.length, 40);
  for (const number of [1, 2, 3]) writeFileSync(join(folder, `song ${number}.wav`), Buffer.concat([head, silence]));
  return folder;
}

const button = (name) => page.getByRole('button', {name, exact: true});
const objectOf = (name) => page.locator('section.object', {has: page.locator('h2', {hasText: new RegExp(`^${name}$`)})});
const plays = () => until('the disc plays', async () => {
  const {window, windows} = (await bench.screen()).main;
  return window === 6 && windows['6'].items['2065'].text.startsWith('song');
});
/** Waits until the drive reports `line`, of which the history knows even when it has passed again. */
async function reported(line) {
  const lines = objectOf('zelmar/disc/device').locator('li', {hasText: new RegExp(`(^|\\s)${line}(\\s|$)`)});
  await until(line, async () => await lines.count() > 0);
}

test('a disc is inserted by its path and ejected', async () => {
  const folder = musicFolder();
  await page.getByPlaceholder('/path/of/folder/or/image').fill(folder);
  await button('Insert').click();
  await plays();
  await until('the drive is described', async () => (await page.textContent('#drivestate')).startsWith(`loaded · ${folder}`));
  await button('Eject').click();
  await until('the drive is empty', async () => await page.textContent('#drivestate') === 'empty');
  await page.getByPlaceholder('/path/of/folder/or/image').press('Enter');
  await plays();
});

for (const [name, line] of [['Read error', 'errorstatus::32'], ['Surface error', 'errorstatus::34'], ['Too hot', 'errorstatus::48'],
  ['Wrong region', 'errorstatus::144'], ['Drive gone', 'disc::2']]) {
  test(`the fault "${name}" reaches the application and passes`, async () => {
    await button(name).click();
    await until('the fault is shown', async () => await button(name).getAttribute('aria-pressed') === 'true');
    await bench.zmctl('key', 20); // what has been read already plays on: the next song is read anew
    await reported(line);
    await button('None').click();
    await until('no fault is shown', async () => await page.locator('#disc [aria-pressed=true]').count() === 0);
    await button('Eject').click();
    await until('the drive is empty', async () => await page.textContent('#drivestate') === 'empty');
    await button('Insert').click();
    await plays();
  });
}

test('a fault goes with the disc, and an empty drive cannot read wrongly', async () => {
  const pressed = page.locator('#disc [aria-pressed=true]');
  await button('Read error').click();
  await until('the fault is shown', async () => await pressed.count() === 1);
  await button('Eject').click();
  await until('the drive is empty', async () => await page.textContent('#drivestate') === 'empty');
  await until('no fault is shown', async () => await pressed.count() === 0);
  await button('Read error').click();
  await button('Insert').click();
  await plays();
  assert.equal(await pressed.count(), 0);
});

test('a drive that does not answer still ejects', async () => {
  await button('No answer').click();
  await button('Eject').click();
  await until('the drive is empty', async () => await page.textContent('#drivestate') === 'empty');
  await button('None').click();
  await button('Insert').click();
  await plays();
});

for (const name of ['app', 'disc']) {
  test(`the process "${name}" is restarted and the page says so`, async () => {
    const row = page.locator('#processes .bar', {has: page.getByText(name, {exact: true})});
    const before = await row.textContent();
    await row.getByRole('button', {name: 'Restart'}).click();
    await until('another process', async () => {
      const text = await row.textContent();
      return text !== before && /running, pid \d+, started 2 times/.test(text);
    });
    await page.waitForSelector('#stateline:not(.bad)');
    await bench.zmctl('app', 'resume');
    await plays();
  });
}

test('requests to the launcher are listed as they come', async () => {
  await bench.zmctl('click', 'main', 6, 103, 1);
  await until('the request', async () => /QueryLauncher\s+zmradio/.test(await page.locator('#requests li').first().textContent()));
});

test('an object has a history, newest first', async () => {
  await page.getByRole('tab', {name: 'PPS objects'}).click();
  for (const value of ['one', 'two', 'two']) await bench.zmctl('pps', 'put', 'test/history', `name::${value}`);
  const section = objectOf('test/history');
  await section.locator('summary').click();
  const lines = section.locator('li');
  await until('three changes', async () => (await lines.allTextContents()).filter((text) => /name::/.test(text)).length === 3);
  assert.match(await lines.nth(0).textContent(), /^\d\d:\d\d:\d\d\.\d{3} {2}name::two$/);
  assert.match(await lines.nth(2).textContent(), /name::one$/);
  assert.equal(await section.locator('tr .value').textContent(), 'two');
});

test('an attribute is written by a line, edited with the keyboard, and left alone by Escape', async () => {
  await page.getByLabel('Write an attribute').fill('test/edit text::first');
  await page.getByLabel('Write an attribute').press('Enter');
  const value = objectOf('test/edit').locator('.value');
  await until('the attribute', async () => await value.count() === 1);
  await value.focus();
  await page.keyboard.press('Enter');
  await value.locator('input').fill('a: b');
  await page.keyboard.press('Enter');
  await until('the value', async () => (await bench.zmctl('pps', 'get', 'test/edit')) === 'text::a: b\n');
  await until('the row', async () => await value.textContent() === 'a: b');
  assert.match(await objectOf('test/edit').locator('tr').getAttribute('class'), /changed/);
  await value.focus();
  await page.keyboard.press('Enter');
  await value.locator('input').fill('never');
  await page.keyboard.press('Escape');
  assert.equal(await value.textContent(), 'a: b');
  assert.equal(await bench.zmctl('pps', 'get', 'test/edit'), 'text::a: b\n');
});

test('objects are filtered by name and attribute', async () => {
  const filter = page.getByPlaceholder('Filter objects and attributes');
  await filter.fill('history');
  assert.ok(await objectOf('test/history').isVisible());
  assert.ok(!await objectOf('test/edit').isVisible());
  await filter.fill('');
  assert.ok(await objectOf('test/edit').isVisible());
});

test('the log follows and is filtered by text', async () => {
  await page.getByRole('tab', {name: 'Log'}).click();
  const list = page.locator('.log');
  await until('the end is in sight', () => list.evaluate((node) => node.scrollHeight > node.clientHeight && node.scrollTop + node.clientHeight >= node.scrollHeight - 2));
  await page.getByPlaceholder('Filter text').fill('onkeyboard');
  await bench.zmctl('key', 20);
  await until('the key', async () => await page.locator('.log li:not([hidden])').count() > 0);
  for (const text of await page.locator('.log li:not([hidden])').allTextContents()) assert.match(text, /OnKeyboard/);
  await page.getByPlaceholder('Filter text').fill('');
  await page.getByRole('tab', {name: 'Head unit'}).click();
});

test('the screenshot button saves what the driver sees', async () => {
  const download = page.waitForEvent('download');
  await button('Screenshot').click();
  const saved = readFileSync(await (await download).path());
  assert.match((await download).suggestedFilename(), /^screen-.*\.png$/);
  assert.equal(saved.toString('latin1', 1, 4), 'PNG');
  assert.deepEqual([saved.readUInt32BE(16), saved.readUInt32BE(20)], [800, 480]);
});
