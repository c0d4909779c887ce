// Starts the real bench on a runtime folder of its own and runs commands on it.
import assert from 'node:assert/strict';
import {execFile, spawn} from 'node:child_process';
import {mkdtempSync, rmSync, writeFileSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {promisify} from 'node:util';
import {chromium} from 'playwright-core';

const build = process.env.ZM_BUILD ?? new URL('../../build', import.meta.url).pathname;
const run = promisify(execFile);

let files = 0; // of counts, so far

export class Bench {
  /** Without a disc service unless `discService` says so: then the test plays it. */
  constructor({discService = false} = {}) {
    this.runtime = mkdtempSync(join(tmpdir(), 'zmpage-'));
    this.disc = discService ? [] : ['--no-disc-service'];
    this.counted = []; // what keeps the counts of its pages
  }

  /** Starts the bench; `port` 0 takes any. */
  async start(port = 0, ...options) {
    this.process = spawn(join(build, 'bin/zmbench'), ['--runtime', this.runtime, ...this.disc, '--launcher', 'passive', '--port', String(port), ...options],
      {stdio: ['ignore', 'pipe', 'inherit']});
    this.url = await new Promise((resolve, reject) => {
      let text = '';
      this.process.stdout.on('data', (data) => {
        text += data;
        const match = /^ready (\S+)$/m.exec(text);
        if (match) resolve(match[1]);
      });
      this.process.on('exit', (code) => reject(new Error(`zmbench ended with ${code}`)));
    });
    this.port = Number(new URL(this.url).port);
    this.token = new URL(this.url).searchParams.get('token');
  }

  /** Starts the bench and a browser for its page. */
  async startWithBrowser(...options) {
    await this.start(0, ...options);
    this.browser = await chromium.launch({
      executablePath: '/usr/bin/chromium',
      args: ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking', '--disable-component-update', '--disable-sync'],
    });
  }

  /** Opens the page and waits until it shows an application that runs. */
  async openPage(options = {viewport: {width: 1280, height: 800}}) {
    const page = await this.browser.newPage(options);
    await this.count(page);
    await page.goto(this.url);
    await page.waitForSelector('#stateline:not(.bad)');
    return page;
  }

  /** Where somebody wants to know it (coverage.js), has the browser note what the page runs of its scripts. */
  async count(page) {
    const folder = process.env.ZM_PAGE_COVERAGE;
    if (!folder) return;
    const begin = () => page.coverage.startJSCoverage({resetOnNavigation: false});
    const keep = async () => writeFileSync(join(folder, `${process.pid}-${++files}.json`), JSON.stringify(await page.coverage.stopJSCoverage()));
    await begin();
    // The browser forgets the counts of a page that is left.
    for (const leave of ['goto', 'reload']) {
      const go = page[leave].bind(page);
      page[leave] = async (...where) => {
        await keep();
        await begin();
        return go(...where);
      };
    }
    let kept;
    const keepOnce = () => kept ??= keep();
    this.counted.push(keepOnce);
    const close = page.close.bind(page);
    page.close = () => keepOnce().then(() => close());
  }

  async zmctl(...argv) {
    const {stdout} = await run(join(build, 'bin/zmctl'), ['--runtime', this.runtime, ...argv.map(String)]);
    return stdout;
  }

  async screen() {
    return JSON.parse(await this.zmctl('screen'));
  }

  /** What the application has left for the disc service: one line, or none. */
  async commands() {
    return (await this.zmctl('pps', 'get', 'zelmar/disc/control')).split('\n').filter((line) => line.startsWith('zmcmd'));
  }

  /** Ends the bench in order, as Ctrl-C does. */
  async stop() {
    if (this.process.exitCode !== null) return;
    const ended = new Promise((resolve) => this.process.once('exit', resolve));
    this.process.kill('SIGINT');
    await ended;
  }

  async end() {
    for (const keep of this.counted) await keep();
    await this.browser?.close();
    await this.stop();
    rmSync(this.runtime, {recursive: true, force: true});
  }
}

/** Brings the application to the music play page as a disc service would. */
export async function playMusic(bench) {
  await bench.zmctl('pps', 'put', 'zelmar/disc/device', 'disc::1', 'mixedtype::2', 'mediatype::2');
  // Two objects: nothing says which of them a busy application reads first.
  await bench.zmctl('settle');
  await bench.zmctl('pps', 'put', 'zelmar/disc/status', 'discstate::2');
  await bench.zmctl('settle');
  assert.equal((await bench.screen()).main.window, 6);
}

/** Waits until `condition` gives something true; fails with `what` after ten seconds. */
export async function until(what, condition) {
  const deadline = Date.now() + 10000;
  for (;;) {
    const value = await condition();
    if (value) return value;
    if (Date.now() > deadline) throw new Error(`waited in vain: ${what}`);
    await new Promise((resolve) => setTimeout(resolve, 20));
  }
}
