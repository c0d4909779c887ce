// Starts the real bench on a runtime folder of its own and runs commands on it.
import {execFile, spawn} from 'node:child_process';
import {mkdtempSync, rmSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {promisify} from 'node:util';

const build = process.env.ZM_BUILD ?? new URL('../../build', import.meta.url).pathname;
const run = promisify(execFile);

export class Bench {
  constructor() {
    this.runtime = mkdtempSync(join(tmpdir(), 'zmpage-'));
  }

  /** Starts the bench; `port` 0 takes any. */
  async start(port = 0, ...options) {
    this.process = spawn(join(build, 'bin/zmbench'), ['--runtime', this.runtime, '--no-disc-service', '--launcher', 'passive', '--port', String(port), ...options],
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

  async zmctl(...argv) {
    const {stdout} = await run(join(build, 'bin/zmctl'), ['--runtime', this.runtime, ...argv.map(String)]);
    return stdout;
  }

  async screen() {
    return JSON.parse(await this.zmctl('screen'));
  }

  /** Ends the bench in order, as Ctrl-C does. */
  async stop() {
    if (this.process.exitCode !== null) return;
    const ended = new Promise((resolve) => this.process.once('exit', resolve));
    this.process.kill('SIGINT');
    await ended;
  }

  async end() {
    await this.stop();
    rmSync(this.runtime, {recursive: true, force: true});
  }
}

/** Waits until `condition` gives something true; fails with `what` after five seconds. */
export async function until(what, condition) {
  const deadline = Date.now() + 5000;
  for (;;) {
    const value = await condition();
    if (value) return value;
    if (Date.now() > deadline) throw new Error(`waited in vain: ${what}`);
    await new Promise((resolve) => setTimeout(resolve, 20));
  }
}
