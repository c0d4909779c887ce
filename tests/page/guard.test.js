// Who may talk to the bench's page server, and what happens to those who misbehave.
import assert from 'node:assert/strict';
import http from 'node:http';
import net from 'node:net';
import {after, before, test} from 'node:test';
import WebSocket from 'ws';
import {Bench, until} from './bench.js';

const bench = new Bench();
before(() => bench.start());
after(() => bench.end());

/** Sends a request; gives status and body. `body` may be a number of bytes to send. */
function request(path, {method = 'GET', headers = {}, body} = {}) {
  return new Promise((resolve, reject) => {
    const call = http.request({host: '127.0.0.1', port: bench.port, path, method, agent: false, headers: {Host: `127.0.0.1:${bench.port}`, ...headers}}, (answer) => {
      let text = '';
      answer.on('data', (data) => { text += data; });
      answer.on('end', () => resolve({status: answer.statusCode, headers: answer.headers, text}));
    });
    call.on('error', reject);
    if (body !== undefined) call.write(body);
    call.end();
  });
}

const bearer = () => ({Authorization: `Bearer ${bench.token}`});

/** Tries to open a WebSocket; gives the open socket or the HTTP status that refused it. */
function socket(path, headers = {}) {
  return new Promise((resolve) => {
    const ws = new WebSocket(`ws://127.0.0.1:${bench.port}${path}`, {headers});
    ws.on('open', () => resolve(ws));
    ws.on('unexpected-response', (_, answer) => resolve(answer.statusCode));
    ws.on('error', () => {});
  });
}

/** What a browser sends after it has opened the printed URL. */
async function givenCookie() {
  return (await request(`/?token=${bench.token}`)).headers['set-cookie'][0].split(';')[0];
}

async function stillAnswers() {
  const answer = await request('/api/command', {method: 'POST', headers: {...bearer(), 'Content-Type': 'application/json'}, body: '{"argv":["pps","ls"]}'});
  assert.equal(answer.status, 200);
  assert.equal(JSON.parse(answer.text).exit, 0);
}

test('without the token everything is refused', async () => {
  for (const path of ['/', '/main.js', '/api/shot.png', '/api/command']) {
    assert.equal((await request(path)).status, 403, path);
  }
  assert.equal(await socket('/ws/screen'), 403);
  assert.equal(await socket('/ws/state'), 403);
});

test('a wrong token is refused', async () => {
  const wrong = '0'.repeat(32);
  assert.equal((await request(`/?token=${wrong}`)).status, 403);
  assert.equal((await request('/', {headers: {Authorization: `Bearer ${wrong}`}})).status, 403);
  assert.equal((await request('/', {headers: {Cookie: (await givenCookie()).replace(/=.*/, `=${wrong}`)}})).status, 403);
});

test('the token in the URL becomes a cookie that opens the page', async () => {
  const first = await request(`/?token=${bench.token}`);
  assert.equal(first.status, 303);
  const cookie = first.headers['set-cookie'][0];
  assert.match(cookie, /HttpOnly; SameSite=Lax/);
  assert.equal((await request('/', {headers: {Cookie: cookie.split(';')[0]}})).status, 200);
});

test('a foreign host name is refused', async () => {
  assert.equal((await request('/', {headers: {...bearer(), Host: 'evil.example'}})).status, 403);
  assert.equal((await request('/', {headers: {...bearer(), Host: `evil.example:${bench.port}`}})).status, 403);
});

test('a tunnel may have another port of the loopback, and its page is its own', async () => {
  for (const host of ['localhost:9000', '127.0.0.1:9000', 'localhost', '[::1]:9000']) {
    assert.equal((await request('/', {headers: {...bearer(), Host: host}})).status, 200, host);
    assert.equal((await request('/', {headers: {...bearer(), Host: host, Origin: `http://${host}`}})).status, 200, host);
    const other = await request('/', {headers: {...bearer(), Host: host, Origin: 'http://localhost:9001'}});
    assert.equal(other.status, 403, 'another page on the same machine');
  }
  for (const host of ['localhost.evil.example:9000', '127.0.0.1.evil.example', 'localhost:9000.evil.example', 'localhost:']) {
    const {status} = await request('/', {headers: {...bearer(), Host: host}});
    assert.ok([400, 403].includes(status), `${host}: ${status}`);
  }
});

test('through a tunnel WebSockets open too, to its own page only', async () => {
  for (const path of ['/ws/screen', '/ws/state']) {
    const open = await socket(path, {...bearer(), Host: 'localhost:9000', Origin: 'http://localhost:9000'});
    assert.equal(open.readyState, WebSocket.OPEN, path);
    open.terminate();
    for (const [Host, Origin] of [['localhost:9000', 'http://localhost:9001'], ['localhost:9000', 'https://localhost:9000'],
      ['localhost:9000', 'null'], ['evil.example:9000', 'http://evil.example:9000']]) {
      assert.equal(await socket(path, {...bearer(), Host, Origin}), 403, `${path} ${Host} ${Origin}`);
    }
  }
});

test('a browser keeps the cookies of two benches that have the same port', async () => {
  const other = new Bench();
  const first = await givenCookie();
  const {port} = bench;
  await bench.stop();
  await other.start(port);
  const second = (await request(`/?token=${other.token}`)).headers['set-cookie'][0].split(';')[0];
  await other.end();
  await bench.start(port);
  // As a browser keeps them: the later one of the same name replaces the earlier.
  const kept = new Map([first, second].map((cookie) => cookie.split('=')));
  const Cookie = [...kept].map(([name, value]) => `${name}=${value}`).join('; ');
  assert.equal((await request('/', {headers: {Cookie}})).status, 200);
});

test('a refusal says what to do', async () => {
  assert.ok((await request('/')).text.includes(`http://127.0.0.1:${bench.port}/?token=`));
  assert.match((await request('/', {headers: {...bearer(), Host: 'evil.example'}})).text, new RegExp(`ssh -L 9000:127.0.0.1:${bench.port} `));
});

test('a foreign origin is refused, on HTTP and on WebSockets', async () => {
  const foreign = {...bearer(), Origin: 'http://evil.example'};
  assert.equal((await request('/api/command', {method: 'POST', headers: foreign, body: '{"argv":["pps","ls"]}'})).status, 403);
  assert.equal(await socket('/ws/screen', foreign), 403);
  assert.equal(await socket('/ws/state', foreign), 403);
});

test('paths outside the page folder are not found', async () => {
  for (const path of ['/../CMakeLists.txt', '/%2e%2e/%2e%2e/etc/passwd', '/..%2f..%2fetc/passwd', '/sub/index.html', '/nothing.js']) {
    const {status} = await request(path, {headers: bearer()});
    assert.ok([400, 403, 404].includes(status), `${path}: ${status}`);
  }
});

test('a film that nobody has made is not found', async () => {
  assert.equal((await request('/api/film.webm', {headers: bearer()})).status, 404);
});

test('a browser keeps nothing that it is given', async () => {
  for (const path of ['/', '/main.js', '/api/shot.png', '/nothing.js']) {
    assert.equal((await request(path, {headers: bearer()})).headers['cache-control'], 'no-store', path);
  }
});

test('a body of 100 MB is refused and the bench goes on', async () => {
  const declared = await request('/api/command', {method: 'POST', headers: {...bearer(), 'Content-Length': 100 << 20}, body: Buffer.alloc(100 << 20)})
    .catch((error) => ({status: error.code}));
  assert.ok([413, 'EPIPE', 'ECONNRESET'].includes(declared.status), String(declared.status));
  const chunked = await request('/api/command', {method: 'POST', headers: {...bearer(), 'Transfer-Encoding': 'chunked'}, body: Buffer.alloc(100 << 20)})
    .catch((error) => ({status: error.code}));
  assert.ok([413, 'EPIPE', 'ECONNRESET'].includes(chunked.status), String(chunked.status));
  await stillAnswers();
});

test('a body that is no command is a bad request', async () => {
  for (const body of ['', '[]', '{"argv":"x"}', '{"argv":[1]}', '['.repeat(60000)]) {
    assert.equal((await request('/api/command', {method: 'POST', headers: bearer(), body})).status, 400);
  }
});

test('malformed WebSocket frames end that connection only', async () => {
  const raw = net.connect(bench.port, '127.0.0.1');
  await new Promise((resolve) => raw.once('connect', resolve));
  raw.write(`GET /ws/state HTTP/1.1\r\nHost: 127.0.0.1:${bench.port}\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\nSec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\r\nAuthorization: Bearer ${bench.token}\r\n\r\n`);
  const head = await new Promise((resolve) => raw.once('data', resolve));
  assert.match(String(head), /101/);
  const closed = new Promise((resolve) => raw.once('close', resolve));
  raw.on('data', () => {});
  raw.on('error', () => {});
  raw.write(Buffer.from([0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff]));
  await closed;
  await stillAnswers();
});

test('messages that are no JSON objects, or too long, end the connection', async () => {
  for (const text of ['not json', '[1]', JSON.stringify({t: 'x'.repeat(70000)})]) {
    const ws = await socket('/ws/screen', bearer());
    const closed = new Promise((resolve) => ws.once('close', resolve));
    ws.send(text);
    await closed;
  }
  await stillAnswers();
});

test('of fifty pages at once some are refused and the bench goes on', async () => {
  const sockets = await Promise.all(Array.from({length: 50}, () => socket('/ws/screen', bearer())));
  await until('the surplus is closed', () => sockets.filter((ws) => ws.readyState === WebSocket.OPEN).length <= 16);
  await stillAnswers();
  for (const ws of sockets) ws.terminate();
});

test('a page that never acknowledges is sent two pictures and no more', async () => {
  const ws = await socket('/ws/screen', bearer());
  let pictures = 0;
  ws.on('message', (data, isBinary) => { pictures += isBinary ? 1 : 0; }); // the size comes as text
  for (let turn = 0; turn < 10; turn++) {
    await bench.zmctl('language', turn % 2 ? 'en' : 'de');
    await bench.zmctl('time', `1${turn % 10}:00`);
    await bench.zmctl('settle');
  }
  assert.ok(pictures >= 1 && pictures <= 2, `${pictures} pictures`);
  ws.terminate();
});
