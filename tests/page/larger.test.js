// The page of a unit whose screen is larger than the usual one.
import assert from 'node:assert/strict';
import {after, before, test} from 'node:test';
import {Bench, playMusic, until} from './bench.js';

const bench = new Bench();
let page;

before(async () => {
  await bench.startWithBrowser('--screen', '1280x720');
  page = await bench.openPage({viewport: {width: 1600, height: 1000}});
});

after(() => bench.end());

test('the page draws what the head unit shows, in its size', async () => {
  await playMusic(bench);
  const shot = await page.request.get(`http://127.0.0.1:${bench.port}/api/shot.png`);
  const bytes = [...await shot.body()];
  await until('the canvas equals the screenshot', () => page.evaluate(async (data) => {
    const image = await createImageBitmap(new Blob([new Uint8Array(data)]));
    const canvas = document.getElementById('screen');
    if (image.width !== 1280 || image.height !== 720 || canvas.width !== 1280 || canvas.height !== 720) return false;
    const other = new OffscreenCanvas(1280, 720).getContext('2d');
    other.drawImage(image, 0, 0);
    const one = canvas.getContext('2d').getImageData(0, 0, 1280, 720).data;
    const two = other.getImageData(0, 0, 1280, 720).data;
    return one.every((value, index) => value === two[index]);
  }, bytes));
});

test('it is shown in its own shape and says its size', async () => {
  await page.selectOption('#scale', '1');
  const box = await page.locator('#screen').boundingBox();
  assert.deepEqual([box.width, box.height], [1280, 720]);
  assert.equal(await page.locator('#scale option').first().textContent(), '1280 x 720');
  assert.equal(await page.locator('#screen').getAttribute('aria-label'), 'Screen of the head unit, 1280 by 720');
});

test('a touch on the canvas reaches the control under it', async () => {
  await bench.zmctl('pps', 'put', 'zelmar/disc/control', '-zmcmd');
  const [x, y, w, h] = (await bench.screen()).main.windows['6'].items['6524'].rect;
  await page.locator('#screen').click({position: {x: x + w / 2, y: y + h / 2}});
  await until('the next command', async () => (await bench.commands())[0] === 'zmcmd:json:{"cmd":1,"param1":0,"param2":0}');
});
