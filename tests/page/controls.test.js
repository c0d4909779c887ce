// The controls of launcher, vehicle, clock, keyboard and voice: what each of them has the head unit do.
import assert from 'node:assert/strict';
import {after, before, test} from 'node:test';
import {Bench, until} from './bench.js';

const bench = new Bench();
let page;

before(async () => {
  await bench.startWithBrowser('--manual-clock');
  page = await bench.openPage();
});

after(() => bench.end());

/** Returns when the head unit has answered what `action` had the page send. */
const sends = (action) => Promise.all([page.waitForResponse(/\/api\/command/), action]);

/** The inputs that the head unit got while `use` ran, as a record tells them; `settle` is the record's own. */
async function inputs(use) {
  await bench.zmctl('record', '-');
  await use();
  const script = await bench.zmctl('record', '--stop');
  return script.split('\n').filter((line) => line && !/^(#|wait |settle)/.test(line));
}

test('what is set of the vehicle goes to the head unit, and every page shows it', async () => {
  const lines = await inputs(async () => {
    await page.getByLabel('Outside °C').fill('21.5');
    await sends(page.getByLabel('Outside °C').press('Enter'));
    await sends(page.getByLabel('Bluetooth').selectOption('connected'));
    await sends(page.getByLabel('Time', {exact: true}).fill('07:05'));
    await sends(page.getByLabel('Display of the time').selectOption('12 h'));
    await sends(page.getByLabel('Language').selectOption('Deutsch'));
    await sends(page.getByLabel('Theme').selectOption('Day'));
    await sends(page.getByLabel('Motion').uncheck());
  });
  assert.deepEqual(lines, ['device 7 215', 'device 86 2', 'time 07:05 24', 'time 07:05 12', 'language de', 'theme day', 'motion off']);
  const other = await bench.openPage();
  const shown = {'Outside °C': '21.5', Bluetooth: '2', Time: '07:05', 'Display of the time': '12', Language: 'de', Theme: 'day'};
  for (const [label, value] of Object.entries(shown)) {
    await until(`${label}: ${value}`, async () => await other.getByLabel(label, {exact: label === 'Time'}).inputValue() === value);
  }
  assert.equal(await other.getByLabel('Motion').isChecked(), false);
  await other.close();
});

test('the number keyboard and the voice say what was entered', async () => {
  const pad = (key) => page.locator('.pad').getByRole('button', {name: key, exact: true}).click();
  const number = page.getByLabel('Number from the keyboard');
  const lines = await inputs(async () => {
    for (const key of ['1', '2', '⌫']) await pad(key);
    await sends(pad('OK'));
    await number.fill('7');
    await sends(number.press('Enter'));
    for (const [placeholder, text] of [['song', 'don\'t "stop"'], ['singer', 'Someone'], ['--key=value', '--x=1']]) {
      await page.getByPlaceholder(placeholder, {exact: true}).fill(text);
      await sends(page.getByPlaceholder(placeholder, {exact: true}).press('Enter'));
    }
  });
  assert.deepEqual(lines, ["appdata '--kb_val=1 --kb_ret=1'", "appdata '--kb_val=7 --kb_ret=1'", `appdata '--song="don'\\''t stop"'`,
    String.raw`appdata '--singer='\''Someone'\'''`, 'appdata --x=1']);
});

test('launcher and clock do what their buttons say', async () => {
  const lines = await inputs(async () => {
    for (const [panel, name] of [['clock', '1 s'], ['launcher', 'Pause'], ['launcher', 'Resume'], ['launcher', 'Hide only'], ['launcher', 'Show only']]) {
      await sends(page.locator(`#${panel}`).getByRole('button', {name, exact: true}).click());
    }
  });
  assert.deepEqual(lines, ['clock advance 1000', 'app pause', 'app resume', 'app hideonly', 'app showonly']);
});

test('requests to the launcher are kept fifty deep', async () => {
  const list = page.locator('#requests li');
  for (let count = 0; count < 52; ++count) await bench.zmctl('click', 'main', 6, 103, 1);
  await until('the newest of them', async () => await list.count() === 50);
});
