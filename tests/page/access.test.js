// The page for everybody: what axe-core finds, targets for fingers, the keyboard, a connection that is lost.
import assert from 'node:assert/strict';
import {readFileSync, writeFileSync} from 'node:fs';
import {join} from 'node:path';
import {after, before, test} from 'node:test';
import {Bench, playMusic, until} from './bench.js';

const axe = readFileSync(new URL('./node_modules/axe-core/axe.min.js', import.meta.url), 'utf8');
const bench = new Bench();

before(async () => {
  await bench.startWithBrowser();
  await playMusic(bench);
});

after(() => bench.end());

const desktop = {viewport: {width: 1280, height: 800}};
const phone = {viewport: {width: 390, height: 844}, hasTouch: true, isMobile: true};
const tabs = ['Head unit', 'PPS objects', 'Log'];

/** Changes an attribute and holds the page at the moment at which this shows most. */
async function freezeChange(page) {
  await bench.zmctl('pps', 'put', 'test/axe', 'name::value', 'broken:json:{');
  await page.waitForSelector('tr.malformed.changed .value');
  await page.evaluate(() => {
    for (const animation of document.getAnimations()) {
      animation.pause();
      animation.currentTime = 0;
    }
  });
}

for (const [name, options] of Object.entries({desktop, phone, dark: {...desktop, colorScheme: 'dark'}})) {
  test(`axe-core finds nothing (${name})`, async () => {
    const page = await bench.openPage(options);
    // What is there now and then only.
    await page.evaluate(async () => {
      (await import('/api.js')).showMessage('refused');
      (await import('/pps.js')).showPps('test/axe', '@test/axe\nno attribute\n', true);
      document.getElementById('clock').hidden = false;
    });
    // The page forbids foreign scripts; the debugger's way in is not one of its own.
    await page.evaluate(axe);
    for (const tab of tabs) {
      await page.getByRole('tab', {name: tab}).click();
      await page.evaluate(() => { for (const fold of document.querySelectorAll('details')) fold.open = true; });
      if (tab === 'PPS objects') await freezeChange(page);
      const {violations} = await page.evaluate(() => globalThis.axe.run(document, {
        runOnly: ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa', 'wcag22aa', 'best-practice'],
        rules: {'label-content-name-mismatch': {enabled: true}},
      }));
      const found = violations.map(({id, nodes}) => `${id}: ${nodes.map((node) => node.target.join(' ')).slice(0, 3).join(', ')}`);
      assert.deepEqual(found, [], tab);
    }
    await bench.zmctl('pps', 'put', 'test/axe', '-broken');
    await page.close();
  });
}

test('on a phone everything that is touched has 44 pixels', async () => {
  const page = await bench.openPage(phone);
  for (const tab of tabs) {
    await page.getByRole('tab', {name: tab}).click();
    const small = await page.evaluate(() => [...document.querySelectorAll('button, select, input, summary, td.value')]
      .filter((node) => node.checkVisibility())
      .map((node) => ({node, box: node.getBoundingClientRect()}))
      .filter(({box}) => box.width < 44 || box.height < 44)
      .map(({node, box}) => `${node.tagName} ${node.textContent} ${box.width}x${box.height}`));
    assert.deepEqual(small, [], tab);
  }
  await page.close();
});

test('a shortcut works after a click on a button', async () => {
  const page = await bench.openPage(desktop);
  await page.getByRole('button', {name: 'Previous', exact: true}).click();
  await until('the previous command', async () => (await bench.commands())[0]?.includes('"cmd":2,'));
  await page.keyboard.press('n');
  await until('the next command', async () => (await bench.commands())[0]?.includes('"cmd":1,'));
  await page.close();
});

test('shortcuts work wherever no text is entered, and leave what has the focus its own keys', async () => {
  const page = await bench.openPage(desktop);
  const sent = [];
  page.on('request', (request) => { if (request.url().endsWith('/api/command')) sent.push(request.postDataJSON().argv.join(' ')); });
  const pressed = async (key) => {
    sent.length = 0;
    await page.keyboard.press(key);
    await page.evaluate(() => 0); // what it sends is on its way by then
    return sent.join(', ');
  };
  await page.getByLabel('Muted').click();
  await page.getByLabel('Muted').click();
  assert.equal(await pressed('n'), 'key 20', 'after a checkbox');
  assert.equal(await pressed('N'), 'key 20', 'with Caps Lock');
  await page.getByRole('tab', {name: 'Head unit'}).click();
  assert.equal(await pressed('n'), 'key 20', 'after a tab');
  assert.equal(await pressed('ArrowRight'), '', 'which takes the arrows itself');
  await page.getByRole('tab', {name: 'Log'}).click();
  await page.locator('.log').focus();
  assert.equal(await pressed('n'), 'key 20', 'on the log');
  assert.equal(await pressed('PageUp'), '', 'which scrolls');
  await page.getByRole('button', {name: /^Again/}).focus();
  assert.equal(await pressed('Enter'), 'key 163', 'a button and nothing else');
  await page.getByPlaceholder('Filter text').focus();
  assert.equal(await pressed('n'), '', 'where text is entered');
  await page.getByPlaceholder('Filter text').fill('');
  await page.close();
});

test('the history has the moment of each change, not that of its arrival', async () => {
  const page = await bench.openPage(desktop);
  await page.getByRole('tab', {name: 'PPS objects'}).click();
  const script = join(bench.runtime, 'history.zmctl');
  writeFileSync(script, [1, 2, 3, 4, 5].map((value) => `pps put test/moments a::${value}\nwait 20\n`).join(''));
  await bench.zmctl('run', script);
  const section = page.locator('section.object', {has: page.getByRole('heading', {name: 'test/moments', exact: true})});
  await until('five changes', async () => await section.locator('li').count() === 5);
  const times = (await section.locator('li').allTextContents()).map((text) => Date.parse(`2000-01-01T${text.slice(0, 12)}Z`)).reverse();
  for (let at = 1; at < times.length; at++) assert.ok(times[at] - times[at - 1] >= 15, times.join(' '));
  await page.close();
});

test('the line that is spoken changes with a reason only', async () => {
  const page = await bench.openPage(desktop);
  await page.evaluate(() => {
    globalThis.spoken = 0;
    new MutationObserver(() => { globalThis.spoken++; }).observe(document.getElementById('stateline'), {childList: true, characterData: true, subtree: true});
  });
  const rates = new Set();
  await until('the rate is counted', async () => {
    await bench.zmctl('device', 7, 100 + rates.size);
    rates.add(await page.textContent('#rate'));
    return rates.size > 1;
  });
  assert.equal(await page.evaluate(() => globalThis.spoken), 0);
  await page.close();
});

test('the screen can be read as text', async () => {
  const page = await bench.openPage(desktop);
  await page.getByRole('button', {name: 'Read as text'}).click();
  await until('the text', async () => (await page.textContent('#screentext')).startsWith('main 6\n'));
  assert.equal(await page.locator('#screen').getAttribute('aria-describedby'), 'screentext');
  await page.close();
});

test('"Fit" keeps the whole screen in sight', async () => {
  const page = await bench.openPage({viewport: {width: 1280, height: 480}});
  await page.getByLabel('Size').selectOption('fit');
  const box = await page.locator('#screen').boundingBox();
  assert.ok(box.y >= 0 && box.y + box.height <= 480, JSON.stringify(box));
  assert.ok(Math.abs(box.height / box.width - 480 / 800) < 0.01, 'in its own proportion');
  await page.getByLabel('Size').selectOption('1');
  await page.close();
});

test('filters stay when the page is opened anew, history tells attribute and milliseconds', async () => {
  const page = await bench.openPage(desktop);
  await page.getByRole('tab', {name: 'PPS objects'}).click();
  await bench.zmctl('pps', 'put', 'test/one', 'a::1', 'b::2');
  await bench.zmctl('pps', 'put', 'test/one', 'b::3');
  const section = page.locator('section.object', {has: page.getByRole('heading', {name: 'test/one', exact: true})});
  await section.locator('summary').click();
  const lines = section.locator('li:visible');
  await until('three lines', async () => await lines.count() === 3);
  assert.match(await lines.nth(0).textContent(), /^\d\d:\d\d:\d\d\.\d{3} {2}b::3$/);
  await section.locator('select').selectOption('a');
  assert.equal(await lines.count(), 1);
  await bench.zmctl('pps', 'put', 'test/one', 'b::4');
  await bench.zmctl('pps', 'put', 'test/one', 'a::5');
  await until('what comes later is filtered too', async () => await lines.count() === 2 && /a::5$/.test(await lines.nth(0).textContent()));
  await page.getByPlaceholder('Filter objects and attributes').fill('test/o');
  await page.reload();
  await page.waitForSelector('#stateline:not(.bad)');
  await page.getByRole('tab', {name: 'PPS objects'}).click();
  assert.equal(await page.getByPlaceholder('Filter objects and attributes').inputValue(), 'test/o');
  await until('the filter is applied', async () => await page.locator('section.object:visible').count() === 1);
  await page.getByPlaceholder('Filter objects and attributes').fill('');
  await page.close();
});

test('a line that is no attribute is shown as it came', async () => {
  const page = await bench.openPage(desktop);
  await page.getByRole('tab', {name: 'PPS objects'}).click();
  await page.evaluate(async () => (await import('/pps.js')).showPps('test/wrong', '@test/wrong\ngood::1\nno attribute\n', true));
  assert.equal(await page.locator('.malformed td').textContent(), 'no attribute');
  await page.getByPlaceholder('Filter objects and attributes').fill('test/wrong');
  assert.ok(await page.locator('.malformed').isVisible(), 'a filter finds it');
  await page.getByPlaceholder('Filter objects and attributes').fill('');
  await page.close();
});

test('a value that is not the JSON it claims to be is marked, until it is', async () => {
  const page = await bench.openPage(desktop);
  await page.getByRole('tab', {name: 'PPS objects'}).click();
  await bench.zmctl('pps', 'put', 'test/json', 'one:json:{"a":', 'two:json:{"a":1}', 'three::{');
  await until('one of three', async () => (await page.locator('.malformed th').allTextContents()).join() === 'one');
  await bench.zmctl('pps', 'put', 'test/json', 'one:json:[]');
  await until('none', async () => await page.locator('.malformed').count() === 0);
  await bench.zmctl('pps', 'put', 'test/json', '-one');
  await page.close();
});

test('without a connection the picture is dimmed once and no control can be used', async () => {
  const page = await bench.openPage(desktop);
  const {port} = bench;
  const pixels = () => page.evaluate(() => [...document.getElementById('screen').getContext('2d').getImageData(0, 0, 800, 480).data].join());
  await until('a picture', async () => new Set((await pixels()).split(',')).size > 8);
  const drawn = await pixels();
  await bench.stop();
  await page.waitForSelector('body.offline');
  const look = () => page.evaluate(() => getComputedStyle(document.getElementById('screen')).filter);
  const dimmed = await look();
  assert.notEqual(dimmed, 'none');
  assert.equal(await page.evaluate(() => document.getElementById('keys').inert && document.getElementById('panel-car').inert), true);
  await page.evaluate(() => document.querySelector('td.value').dispatchEvent(new MouseEvent('dblclick', {bubbles: true})));
  assert.equal(await page.locator('td.value input').count(), 0, 'values cannot be edited');
  await page.waitForTimeout(1500); // it has tried again several times
  assert.equal(await look(), dimmed);
  assert.equal(await pixels(), drawn, 'the picture itself is as it was');
  await bench.start(port);
  await page.waitForSelector('#stateline:not(.bad)', {timeout: 15000});
  assert.equal(await look(), 'none');
  assert.equal(await page.evaluate(() => document.getElementById('keys').inert), false);
  await page.close();
});

test('a stopped clock can be advanced', async () => {
  const {port} = bench;
  await bench.stop();
  await bench.start(port, '--manual-clock');
  const page = await bench.openPage(desktop);
  assert.notEqual((await bench.screen()).main.windows['1'].items['7004'].textId, 34);
  await page.getByRole('button', {name: '1 min', exact: true}).click();
  await until('a timer has fired', async () => (await bench.zmctl('requests')).includes('QueryCloseApp') || (await bench.screen()).main.windows['1'].items['7004'].textId === 34);
  await page.close();
});
