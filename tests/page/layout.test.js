// The page on screens of several sizes, under fingers, and without a mouse.
import assert from 'node:assert/strict';
import {after, before, test} from 'node:test';
import {Bench, playMusic, until} from './bench.js';

const bench = new Bench();

before(() => bench.startWithBrowser());

after(() => bench.end());

const desktop = {viewport: {width: 1280, height: 800}};
const large = {viewport: {width: 1920, height: 1080}};
const landscape = {viewport: {width: 844, height: 390}, hasTouch: true, isMobile: true};
const phone = {viewport: {width: 390, height: 844}, hasTouch: true, isMobile: true};

const forget = () => bench.zmctl('pps', 'put', 'zelmar/disc/control', '-zmcmd');
const sent = (number) => until(`command ${number}`, async () => (await bench.commands())[0]?.includes(`"cmd":${number},`));

/** Where the middle of a control of the play page is drawn on `page`. */
async function placeOf(page, control) {
  const [x, y, w, h] = (await bench.screen()).main.windows['6'].items[control].rect;
  const box = await page.locator('#screen').boundingBox();
  return [box.x + (x + w / 2) * box.width / 800, box.y + (y + h / 2) * box.height / 480];
}

for (const [name, options] of Object.entries({desktop, large, phone, landscape})) {
  test(`on a ${name} screen nothing is cut off and the head unit is whole in sight`, async () => {
    const page = await bench.openPage(options);
    const {width, height} = options.viewport;
    for (const tab of ['PPS objects', 'Log', 'Head unit']) {
      await page.getByRole('tab', {name: tab}).click();
      const wide = await page.evaluate(() => document.documentElement.scrollWidth);
      assert.ok(wide <= width, `${tab}: ${wide} pixels wide`);
    }
    await page.evaluate(() => scrollTo(0, 0));
    const box = await page.locator('#screen').boundingBox();
    assert.ok(box.x >= 0 && box.y >= 0 && box.x + box.width <= width && box.y + box.height <= height, JSON.stringify(box));
    assert.ok(Math.abs(box.height / box.width - 480 / 800) < 0.001, 'in its own proportion');
    await page.close();
  });
}

test('beside the screen the panels scroll, the screen stays', async () => {
  const page = await bench.openPage(desktop);
  const screen = await page.locator('#screen').boundingBox();
  const side = await page.locator('#side').boundingBox();
  assert.equal(screen.width, 800);
  assert.ok(side.x >= screen.x + screen.width, 'beside it');
  await page.getByRole('button', {name: 'Restart'}).scrollIntoViewIfNeeded();
  const after = await page.locator('#screen').boundingBox();
  assert.ok(after.y >= 0, 'the upper edge is in sight');
  await page.close();
});

test('twice its size the screen is sharp and is touched where it is seen', async () => {
  await playMusic(bench);
  const page = await bench.openPage(large);
  await page.getByLabel('Size').selectOption('2');
  assert.equal((await page.locator('#screen').boundingBox()).width, 1600);
  assert.equal(await page.locator('#screen').evaluate((canvas) => getComputedStyle(canvas).imageRendering), 'pixelated');
  await forget();
  await page.mouse.click(...await placeOf(page, '6524'));
  await sent(1);
  await page.getByLabel('Size').selectOption('1');
  await page.close();
});

test('a finger on a phone reaches the control under it', async () => {
  await playMusic(bench);
  const page = await bench.openPage(phone);
  await forget();
  await page.touchscreen.tap(...await placeOf(page, '6524'));
  await sent(1);
  await page.getByRole('button', {name: 'Previous', exact: true}).tap();
  await sent(2);
  await page.close();
});

test('a mouse button that is held is a long press, once', async () => {
  await playMusic(bench);
  const page = await bench.openPage(desktop);
  await forget();
  await page.mouse.move(...await placeOf(page, '6524'));
  await page.mouse.down();
  await sent(3);
  await page.mouse.up();
  await bench.zmctl('settle');
  assert.match((await bench.commands())[0], /"cmd":3,/, 'the release adds nothing');
  await page.close();
});

test('a drag across the screen is a swipe', async () => {
  await playMusic(bench);
  const page = await bench.openPage(desktop);
  await forget();
  const box = await page.locator('#screen').boundingBox();
  await page.mouse.move(box.x + 300, box.y + 200);
  await page.mouse.down();
  await page.mouse.move(box.x + 600, box.y + 210, {steps: 5});
  await page.mouse.up();
  await sent(2);
  await page.close();
});

test('a tap keeps its own duration on a slow link', async () => {
  await playMusic(bench);
  const page = await bench.browser.newPage(desktop);
  await page.routeWebSocket(/\/ws\/screen/, (socket) => {
    const server = socket.connectToServer();
    socket.onMessage((message) => setTimeout(() => server.send(message), message.includes('"touch"') ? 1500 : 0));
  });
  await page.goto(bench.url);
  await page.waitForSelector('#stateline:not(.bad)');
  await forget();
  const begin = Date.now();
  await page.mouse.click(...await placeOf(page, '6524'), {delay: 100});
  await sent(1);
  assert.ok(Date.now() - begin >= 1500, 'the link was slow');
  await page.close();
});

/** What can have the focus and is in use, by what a reader would call it. */
const focusable = () => [...document.querySelectorAll('button, input, select, canvas, summary, td[tabindex]')]
  .filter((node) => !node.disabled && node.tabIndex >= 0 && node.checkVisibility());

test('with the keyboard alone everything is reached, and seen to be', async () => {
  const page = await bench.openPage(desktop);
  for (const tab of ['Head unit', 'PPS objects', 'Log']) {
    await page.getByRole('tab', {name: tab}).click();
    const wanted = await page.evaluate(`(${focusable})().length`);
    await page.evaluate(() => { document.activeElement.blur(); document.body.focus(); window.reached = new Set(); window.hidden = []; });
    for (let turn = 0; turn < wanted + 20; turn++) {
      await page.keyboard.press('Tab');
      await page.evaluate(() => {
        const node = document.activeElement;
        window.reached.add(node);
        if (node !== document.body && getComputedStyle(node).outlineStyle === 'none') window.hidden.push(node.outerHTML.slice(0, 80));
      });
    }
    const missed = await page.evaluate(`(${focusable})().filter((node) => !window.reached.has(node)).map((node) => node.outerHTML.slice(0, 80))`);
    assert.deepEqual(missed, [], tab);
    assert.deepEqual(await page.evaluate(() => window.hidden), [], `${tab}: where the focus is can be seen`);
  }
  await page.close();
});

test('the tabs are changed with the arrow keys', async () => {
  const page = await bench.openPage(desktop);
  await page.getByRole('tab', {name: 'Head unit'}).focus();
  await page.keyboard.press('ArrowRight');
  assert.ok(await page.locator('#panel-pps').isVisible());
  await page.keyboard.press('ArrowLeft');
  await page.keyboard.press('ArrowLeft');
  assert.ok(await page.locator('#panel-inspect').isVisible());
  await page.close();
});

test('every shortcut is shown on its key and does the same', async () => {
  await playMusic(bench);
  const page = await bench.openPage(desktop);
  const keys = await page.locator('#keys button').evaluateAll((nodes) => nodes.map((node) => ({
    code: /\(key (\d+)\)/.exec(node.title)[1], shown: node.querySelector('kbd')?.dataset.key})));
  const names = {'←': 'ArrowLeft', '→': 'ArrowRight', '↑': 'ArrowUp', '↓': 'ArrowDown', Esc: 'Escape', PgUp: 'PageUp', PgDn: 'PageDown', '⏎': 'Enter'};
  const withShortcut = keys.filter(({shown}) => shown);
  assert.ok(withShortcut.length >= 17, `${withShortcut.length} keys`);
  await page.locator('#screen').focus();
  for (const {code, shown} of withShortcut) {
    const line = `[DiscView::OnKeyboard]: nKey=${code}\\n`.replace('\\n', '');
    const before = (await bench.zmctl('log', '-n', '100000')).split(line).length;
    await page.keyboard.press(names[shown] ?? shown);
    await until(`key ${code} by ${shown}`, async () => (await bench.zmctl('log', '-n', '100000')).split(line).length > before);
  }
  await page.close();
});
