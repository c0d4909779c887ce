// The head unit's screen: draws the rectangles that the bench sends and sends touches back.
import {act, channel} from './api.js';

const canvas = document.getElementById('screen');
const context = canvas.getContext('2d', {alpha: false});
const MOVED = 10;      // pixels after which a touch is a drag
const HELD = 800;      // milliseconds after which it is a long press

let frames = 0;
let order = Promise.resolve();
const format = {1: 'image/jpeg', 2: 'image/png'};

const socket = channel('/ws/screen', {
  message(event) {
    if (typeof event.data === 'string') {
      resize(JSON.parse(event.data));
      return;
    }
    const head = new DataView(event.data, 0, 16);
    const [seq, x, y, kind] = [head.getUint32(0, true), head.getUint16(4, true), head.getUint16(6, true), head.getUint8(12)];
    const picture = createImageBitmap(new Blob([new Uint8Array(event.data, 16)], {type: format[kind]}));
    // Decoding runs beside drawing, but rectangles are drawn in the order in which they came.
    order = order.then(() => picture).then((image) => {
      context.drawImage(image, x, y);
      for (const watcher of watchers) watcher(x, y, image.width, image.height);
      image.close();
      frames++;
    }).catch(() => {}).then(() => socket.send({ack: seq}));
  },
});

// A new size empties the picture; the whole screen follows.
function resize({width, height}) {
  if (canvas.width === width && canvas.height === height) return;
  [canvas.width, canvas.height] = [width, height];
  canvas.setAttribute('aria-label', `Screen of the head unit, ${width} by ${height}`);
  applyScale();
}

const watchers = [];
/** Calls `watcher(x, y, width, height)` for each rectangle that is drawn. */
export function onRectangle(watcher) {
  watchers.push(watcher);
}

/** Rectangles drawn since the last call. */
export function takeFrames() {
  const count = frames;
  frames = 0;
  return count;
}

function position(event) {
  const box = canvas.getBoundingClientRect();
  const clamp = (value, limit) => Math.max(0, Math.min(limit - 1, Math.round(value)));
  return {
    x: clamp((event.clientX - box.left) * canvas.width / box.width, canvas.width),
    y: clamp((event.clientY - box.top) * canvas.height / box.height, canvas.height),
  };
}

// A tap travels as one event with its own duration, so that a slow link never makes a long press of it; only a drag
// is sent step by step.
let touch = null;

function endHold() {
  clearTimeout(touch?.timer);
}

canvas.addEventListener('pointerdown', (event) => {
  if (event.button !== 0) return;
  const start = position(event);
  canvas.setPointerCapture(event.pointerId);
  canvas.focus({preventScroll: true});
  touch = {start, time: event.timeStamp, drag: false, done: false};
  touch.timer = setTimeout(() => {
    touch.done = true;
    socket.send({t: 'touch', ...touch.start, hold: HELD});
  }, HELD);
  event.preventDefault();
});

canvas.addEventListener('pointermove', (event) => {
  const at = position(event);
  document.getElementById('pointer').textContent = `${at.x}, ${at.y}`;
  if (!touch || touch.done) return;
  if (!touch.drag && Math.hypot(at.x - touch.start.x, at.y - touch.start.y) > MOVED) {
    endHold();
    touch.drag = true;
    socket.send({t: 'press', ...touch.start});
  }
  if (touch.drag) socket.send({t: 'move', ...at});
});

function finish(event) {
  if (!touch) return;
  endHold();
  const at = position(event);
  if (touch.drag) socket.send({t: 'release', ...at});
  else if (!touch.done) socket.send({t: 'touch', ...touch.start, hold: Math.min(HELD - 1, Math.round(event.timeStamp - touch.time))});
  touch = null;
}
canvas.addEventListener('pointerup', finish);
canvas.addEventListener('pointercancel', finish);

let wheel = 0;
canvas.addEventListener('wheel', (event) => {
  event.preventDefault();
  wheel += event.deltaY;
  while (Math.abs(wheel) >= 50) {
    act('key', wheel > 0 ? 87 : 88);
    wheel -= Math.sign(wheel) * 50;
  }
}, {passive: false});

const scale = document.getElementById('scale');
function applyScale() {
  // The whole screen is in sight: it fits the page's width and what its head leaves of the height.
  const fits = `min(100%, calc((100dvh - 8rem) * ${canvas.width} / ${canvas.height}))`;
  const width = scale.value === 'fit' ? fits : `${canvas.width * scale.value}px`;
  scale.options[0].textContent = `${canvas.width} x ${canvas.height}`;
  canvas.style.width = scale.value === 'fit' ? '100%' : width;
  canvas.closest('#unit').style.width = width;
  // Whole multiples stay sharp: each pixel becomes a square.
  canvas.classList.toggle('whole', Number.isInteger(Number(scale.value)));
  localStorage.setItem('scale', scale.value);
}
scale.value = localStorage.getItem('scale') ?? (innerWidth < 840 || innerHeight < 600 ? 'fit' : '1');
scale.addEventListener('change', applyScale);
applyScale();

const text = document.getElementById('screentext');
const read = document.getElementById('read');
read.addEventListener('click', async () => {
  const lines = await act('screen', '--text');
  if (lines === null) return;
  text.textContent = lines;
  text.hidden = false;
});

document.getElementById('shot').addEventListener('click', () => {
  const link = document.createElement('a');
  link.href = '/api/shot.png';
  link.download = `screen-${new Date().toISOString().replace(/[:.]/g, '-')}.png`;
  link.click();
});
