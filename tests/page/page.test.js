// The bench's page in headless Chromium.
import assert from 'node:assert/strict';
import {readFileSync} from 'node:fs';
import {after, before, test} from 'node:test';
import {Bench, playMusic, until} from './bench.js';

const bench = new Bench();
let page;

before(async () => {
  await bench.startWithBrowser();
  page = await bench.openPage();
});

after(() => bench.end());

const pixel = (x, y) => page.evaluate(([px, py]) => [...document.getElementById('screen').getContext('2d').getImageData(px, py, 1, 1).data], [x, y]);

test('the token leaves the address bar', async () => {
  assert.equal(page.url(), `http://127.0.0.1:${bench.port}/`);
});

test('the page draws what the head unit shows', async () => {
  await playMusic(bench);
  const shot = await page.request.get(`http://127.0.0.1:${bench.port}/api/shot.png`);
  assert.equal(shot.headers()['content-type'], 'image/png');
  // The canvas and the screenshot agree, pixel by pixel.
  const bytes = [...await shot.body()];
  await until('the canvas equals the screenshot', () => page.evaluate(async (data) => {
    const image = await createImageBitmap(new Blob([new Uint8Array(data)]));
    const other = new OffscreenCanvas(800, 480).getContext('2d');
    other.drawImage(image, 0, 0);
    const one = document.getElementById('screen').getContext('2d').getImageData(0, 0, 800, 480).data;
    const two = other.getImageData(0, 0, 800, 480).data;
    return one.every((value, index) => value === two[index]);
  }, bytes));
});

test('a touch on the canvas reaches the control under it', async () => {
  await playMusic(bench);
  await bench.zmctl('pps', 'put', 'zelmar/disc/control', '-zmcmd');
  const [x, y, w, h] = (await bench.screen()).main.windows['6'].items['6524'].rect;
  await page.locator('#screen').click({position: {x: x + w / 2, y: y + h / 2}});
  await until('the next command', async () => (await bench.commands())[0] === 'zmcmd:json:{"cmd":1,"param1":0,"param2":0}');
});

test('a hard key reaches the application', async () => {
  await page.getByRole('button', {name: 'Previous', exact: true}).click();
  await until('the previous command', async () => (await bench.commands())[0] === 'zmcmd:json:{"cmd":2,"param1":0,"param2":0}');
});

test('a shortcut is a hard key, but not while text is entered', async () => {
  await page.locator('#screen').focus();
  await page.keyboard.press('n');
  await until('the next command', async () => (await bench.commands())[0] === 'zmcmd:json:{"cmd":1,"param1":0,"param2":0}');
  await page.getByPlaceholder('song').fill('b');
  assert.equal((await bench.commands())[0], 'zmcmd:json:{"cmd":1,"param1":0,"param2":0}');
});

test('the mouse wheel turns the encoder', async () => {
  await page.locator('#screen').hover();
  await page.mouse.wheel(0, -60);
  await until('the previous command', async () => (await bench.commands())[0] === 'zmcmd:json:{"cmd":2,"param1":0,"param2":0}');
});

test('the volume is turned on the page and follows the command line and the keys', async () => {
  const volume = page.getByRole('slider', {name: 'Volume'});
  await volume.fill('40');
  await until('the unit is that loud', async () => (await bench.zmctl('volume')).trim() === '40');
  await volume.focus();
  await bench.zmctl('volume', 85);
  await bench.zmctl('device', 6, 255);
  await until('the page has heard of both', async () => await page.getByLabel('Muted').isChecked());
  await page.getByLabel('Muted').focus(); // what is being edited stays until then
  await until('the control follows', async () => (await volume.inputValue()) === '85');
  await bench.zmctl('device', 6, 0);
  await page.keyboard.press('AudioVolumeUp');
  await until('the key is taken', async () => (await bench.zmctl('volume')).trim() === '90');
});

test('vehicle controls set values and follow the command line', async () => {
  await playMusic(bench);
  await page.getByLabel('Muted').check();
  await until('the mute mark', async () => (await bench.screen()).main.windows['6'].items['17'].visible);
  await bench.zmctl('device', 6, 0);
  await until('the box follows', async () => !(await page.getByLabel('Muted').isChecked()));
});

test('the car drives off and what follows is said', async () => {
  const said = page.locator('#restriction');
  await until('it is parked', async () => await said.textContent() === 'no restriction');
  await page.getByLabel('Gear').selectOption('drive');
  await page.getByLabel('km/h').fill('30');
  await page.getByLabel('km/h').press('Enter');
  await until('it drives', async () => await said.textContent() === 'no films, no typing, no long lists');
  assert.equal(await page.getByLabel('Parked').isChecked(), false);
  assert.match(await bench.zmctl('vehicle'), /speed:n:30\ngear::drive\n/);
  await page.getByLabel('km/h').blur(); // what is being edited stays
  await bench.zmctl('vehicle', 'speed', 0);
  await bench.zmctl('vehicle', 'gear', 'park');
  await until('the page follows', async () => await page.getByLabel('km/h').inputValue() === '0' && await page.getByLabel('Parked').isChecked());
});

test('inserting a path that cannot be inserted says so', async () => {
  await page.getByPlaceholder('/path/of/folder/or/image').fill('/no/such/disc');
  await page.getByRole('button', {name: 'Insert', exact: true}).click();
  await page.waitForSelector('#message:not([hidden])');
  assert.notEqual(await page.textContent('#message'), '');
});

test('a PPS value is edited in place and what changes is marked', async () => {
  await page.getByRole('tab', {name: 'PPS objects'}).click();
  const row = page.locator('section.object', {has: page.getByRole('heading', {name: 'zelmar/disc/status', exact: true})})
    .locator('tr', {has: page.locator('th', {hasText: 'discstate'})});
  await row.locator('.value').dblclick();
  await row.locator('input').fill('6');
  await row.locator('input').press('Enter');
  await until('the object', async () => (await bench.zmctl('pps', 'get', 'zelmar/disc/status')).includes('discstate::6'));
  await until('the row', async () => await row.locator('.value').textContent() === '6');
  assert.match(await row.getAttribute('class'), /changed/);
});

test('the log is shown and filtered by level', async () => {
  await page.getByRole('tab', {name: 'Log'}).click();
  await page.waitForSelector('.log li:not([hidden])');
  await page.getByLabel('Level').selectOption('2');
  assert.equal(await page.locator('.log li:not(.error):not([hidden])').count(), 0);
  await page.getByLabel('Level').selectOption('7');
  await page.getByRole('tab', {name: 'Head unit'}).click();
});

test('what was done while recording is downloaded as a script', async () => {
  const button = page.locator('#record');
  await button.click();
  await until('it records', async () => await button.textContent() === 'Stop recording');
  await page.locator('#screen').click({position: {x: 10, y: 20}});
  await bench.zmctl('theme', 'day');
  const [download] = await Promise.all([page.waitForEvent('download'), button.click()]);
  assert.match(download.suggestedFilename(), /^inputs-.*\.zmctl$/);
  const script = readFileSync(await download.path(), 'utf8');
  assert.match(script, /\ntouch 10 20 --hold [0-9]+\n(wait [0-9]+\n)?theme day\n$/);
  await bench.zmctl('theme', 'night');
  await until('it has ended', async () => await button.textContent() === 'Record');
});

test('a film is made and downloaded, whoever closes a page meanwhile', async () => {
  const button = page.locator('#film');
  const other = await bench.openPage();
  await other.locator('#film').click();
  await until('both know', async () => await button.textContent() === 'Stop film');
  await other.close();
  await page.locator('#screen').click({position: {x: 10, y: 20}});
  const [download] = await Promise.all([page.waitForEvent('download'), button.click()]);
  assert.match(download.suggestedFilename(), /^film-.*\.webm$/);
  const film = readFileSync(await download.path());
  assert.equal(film.readUInt32BE(0), 0x1a45dfa3);
  assert.ok(film.includes('V_VP8') && film.includes('A_OPUS'));
  assert.match(await page.locator('#message').textContent(), /^[0-9.]+ s, [0-9]+ frames, (none|[0-9]+) dropped/);
  await until('it has ended', async () => await button.textContent() === 'Film');
  assert.equal((await page.request.get(`http://127.0.0.1:${bench.port}/api/film.webm`, {headers: {Cookie: ''}})).status(), 403);
});

test('two pages agree', async () => {
  const other = await bench.openPage();
  await other.getByLabel('Parked').uncheck();
  await until('the first page follows', async () => !(await page.getByLabel('Parked').isChecked()));
  await page.getByLabel('Parked').check();
  await until('the second page follows', async () => other.getByLabel('Parked').isChecked());
  await other.close();
});

test('a page that goes away releases what it held', async () => {
  await playMusic(bench);
  const other = await bench.openPage();
  const box = await other.locator('#screen').boundingBox();
  await other.mouse.move(box.x + 400, box.y + 240);
  await other.mouse.down();
  await other.mouse.move(box.x + 500, box.y + 240, {steps: 4});
  await other.close();
  // A touch is taken again, so nothing is held any more.
  await bench.zmctl('pps', 'put', 'zelmar/disc/control', '-zmcmd');
  const [x, y, w, h] = (await bench.screen()).main.windows['6'].items['6524'].rect;
  await bench.zmctl('touch', x + w / 2, y + h / 2);
  await until('the next command', async () => (await bench.commands())[0]?.includes('"cmd":1,'));
});

test('a click changes a pixel soon', async () => {
  await page.bringToFront();
  await playMusic(bench);
  const {5: source, 103: popup} = (await bench.screen()).main.windows['6'].items;
  const middle = ([x, y, w, h]) => [x + w / 2, y + h / 2];
  const areaOfPopup = popup.rect;
  const plain = await page.evaluate((area) => [...document.getElementById('screen').getContext('2d').getImageData(...area).data].join(), areaOfPopup);
  const times = [];
  for (let turn = 0; turn < 21; turn++) {
    times.push(await page.evaluate(([x, y, area]) => new Promise((resolve, reject) => {
      const canvas = document.getElementById('screen');
      const context = canvas.getContext('2d');
      const look = () => context.getImageData(...area).data;
      const first = look();
      const box = canvas.getBoundingClientRect();
      const at = {clientX: box.left + x, clientY: box.top + y, button: 0, pointerId: 1, bubbles: true};
      canvas.setPointerCapture = () => {};
      const start = performance.now();
      canvas.dispatchEvent(new PointerEvent('pointerdown', at));
      canvas.dispatchEvent(new PointerEvent('pointerup', at));
      const again = () => {
        const data = look();
        const spent = performance.now() - start;
        if (data.some((value, index) => value !== first[index])) resolve(spent);
        else if (spent > 5000) reject(new Error(`no pixel changed within ${spent} ms`));
        else setTimeout(again, 1);
      };
      again();
    }), [...middle(source.rect), areaOfPopup]));
    await bench.zmctl('click', 'main', 6, 99, 1);
    await until('the popup is gone', () => page.evaluate(([area, wanted]) =>
      [...document.getElementById('screen').getContext('2d').getImageData(...area).data].join() === wanted, [areaOfPopup, plain]));
  }
  times.sort((a, b) => a - b);
  console.log(`click to changed pixel: median ${times[10].toFixed(1)} ms, worst ${times[20].toFixed(1)} ms`);
  assert.ok(times[10] <= 40, `median of ${times[10].toFixed(1)} ms`);
});

test('the page comes back after the bench was restarted', async () => {
  const {port} = bench;
  await bench.stop();
  await page.waitForSelector('#stateline.bad');
  await bench.start(port);
  await page.waitForSelector('#stateline:not(.bad)', {timeout: 10000});
  await until('a picture', async () => (await pixel(400, 240)).slice(0, 3).some((value) => value > 0) || (await pixel(400, 20)).slice(0, 3).some((value) => value > 0));
});
