// The inspector: what lies under the pointer, all windows, what is drawn anew and when.
import {act, button, command, element, save} from './api.js';
import {onRectangle} from './screen.js';
import {drawTimeline} from './timeline.js';

const canvas = document.getElementById('screen');
const box = document.getElementById('screenbox');
const panel = document.getElementById('panel-inspect');
const Every = 500;       // milliseconds between two looks at the pages
const KeptFrames = 300;

const frame = element('div', {id: 'inspected', hidden: true});
const details = element('dl', {id: 'item'});
const lines = element('ul', {id: 'itemlines', className: 'lines'});
const tree = element('div', {id: 'tree'});
const times = element('p', {id: 'frametimes', className: 'dim', textContent: 'no frames yet'});
const inspects = element('input', {type: 'checkbox'});
const flashes = element('input', {type: 'checkbox'});
const timeline = element('canvas', {id: 'timeline', width: 700, height: 240});

let screen = null;
let pointer = null; // where it was last, in the unit's pixels
let chosen = null;  // an item of the tree, until the pointer moves over the screen
const drawn = [];   // moments of the latest frames

/** What the driver can reach: the overlay's items lie above those of the main view, a window's later above its earlier ones. */
function itemAt(x, y) {
  for (const view of ['osd', 'main']) {
    const {visible, shown = [], windows = {}} = screen?.[view] ?? {};
    if (!visible) continue;
    for (const window of [...shown].reverse()) {
      const items = Object.entries(windows[window]?.items ?? {});
      const hit = items.filter(([, {rect, visible: seen}]) => seen && rect && x >= rect[0] && y >= rect[1] && x < rect[0] + rect[2] && y < rect[1] + rect[3]);
      // The smallest is the one that is meant: panels lie behind what is on them.
      hit.sort(([, a], [, b]) => a.rect[2] * a.rect[3] - b.rect[2] * b.rect[3]);
      if (hit.length) return {view, window, id: hit[0][0], ...hit[0][1]};
    }
  }
  return null;
}

const quote = (text) => `'${text.replaceAll("'", "'\\''")}'`;

/** What a test writes for that item. */
function linesFor(item) {
  const path = `screen.${item.view}.windows.${item.window}.items.${item.id}`;
  const name = item.text ? quote(item.text) : item.id;
  const python = item.text ? JSON.stringify(item.text) : item.id;
  return [`tap ${name}`, `click ${item.view} ${item.window} ${item.id} 1`,
    item.text ? `expect ${path}.text == ${quote(item.text)}` : `expect ${path}.visible == ${item.visible}`,
    `unit.tap(${python})`, item.text ? `unit.expect(text=${python})` : `unit.click("${item.view}", ${item.window}, ${item.id}, 1)`];
}

function place(rect) {
  const scale = canvas.clientWidth / canvas.width;
  return {left: `${rect[0] * scale}px`, top: `${rect[1] * scale}px`, width: `${rect[2] * scale}px`, height: `${rect[3] * scale}px`};
}

function showItem(item) {
  frame.hidden = !item?.rect;
  if (!item) {
    details.replaceChildren(element('dd', {}, 'nothing under the pointer'));
    lines.replaceChildren();
    return;
  }
  if (item.rect) Object.assign(frame.style, place(item.rect));
  const facts = {id: item.id, window: `${item.view} ${item.window}`, kind: item.kind, text: item.text, style: item.style, state: item.state,
    enabled: item.enabled, icons: JSON.stringify(item.icons ?? {}), rectangle: item.rect?.join(', ')};
  details.replaceChildren(...Object.entries(facts).filter(([, value]) => value !== undefined && value !== '' && value !== '{}')
    .flatMap(([name, value]) => [element('dt', {}, name), element('dd', {}, String(value))]));
  const wanted = linesFor(item);
  // Left alone while they are the same: somebody may be about to press one of their buttons.
  if ([...lines.children].map((line) => line.firstChild.textContent).join('\n') === wanted.join('\n')) return;
  lines.replaceChildren(...wanted.map((text) => element('li', {}, element('code', {}, text), ' ', button('Copy', () => navigator.clipboard?.writeText(text)))));
}

function branch(name, view, window, {items}, shown) {
  const entries = Object.entries(items).map(([id, item]) => element('li', {}, button(`${id} ${item.kind}${item.text ? ` "${item.text}"` : ''}${item.visible ? '' : ' (hidden)'}`, () => {
    chosen = {view, window, id, ...item};
    showItem(chosen);
  }, {className: 'plain'})));
  const node = element('details', {open: false}, element('summary', {className: shown ? 'shown' : 'dim'}, name), element('ul', {}, ...entries));
  node.dataset.name = name;
  return node;
}

function showTree() {
  const open = new Set([...tree.querySelectorAll('details[open]')].map((node) => node.dataset.name));
  const nodes = ['main', 'osd'].flatMap((view) => Object.entries(screen[view]?.windows ?? {}).map(([window, content]) => {
    const shown = screen[view].shown?.includes(Number(window));
    const node = branch(`${view} ${window}${shown ? ', shown' : ''}`, view, window, content, shown);
    node.open = open.has(node.dataset.name);
    return {node, shown};
  }));
  nodes.sort((a, b) => Number(b.shown) - Number(a.shown));
  tree.replaceChildren(...nodes.map(({node}) => node));
}

let before = '';
async function look() {
  if (panel.hidden && !inspects.checked) return;
  let text;
  try {
    text = await command('screen');
  } catch {
    return; // no application at the moment: what was seen last stays
  }
  screen = JSON.parse(text);
  if (chosen) showItem({...chosen, ...screen[chosen.view]?.windows[chosen.window]?.items[chosen.id]});
  else if (pointer && inspects.checked) showItem(itemAt(pointer.x, pointer.y));
  if (text !== before && !panel.hidden) showTree();
  before = text;
  if (!panel.hidden) drawTimeline(timeline, JSON.parse(await command('timeline', '-', '--seconds', '10')));
}

canvas.addEventListener('pointermove', (event) => {
  const area = canvas.getBoundingClientRect();
  pointer = {x: (event.clientX - area.left) * canvas.width / area.width, y: (event.clientY - area.top) * canvas.height / area.height};
  if (!inspects.checked) return;
  chosen = null;
  showItem(itemAt(pointer.x, pointer.y));
});

function median(values) {
  return [...values].sort((a, b) => a - b)[Math.floor(values.length / 2)];
}

onRectangle((x, y, width, height) => {
  const now = performance.now();
  drawn.push(now);
  if (drawn.length > KeptFrames) drawn.shift();
  const gaps = drawn.slice(1).map((moment, index) => moment - drawn[index]);
  if (gaps.length) times.textContent = `${drawn.length} frames, ${median(gaps).toFixed(0)} ms from one to the next (median), at most ${Math.max(...gaps).toFixed(0)} ms`;
  if (!flashes.checked) return;
  const flash = element('div', {className: 'flash'});
  Object.assign(flash.style, place([x, y, width, height]));
  flash.addEventListener('animationend', () => flash.remove());
  box.append(flash);
});

export function makeInspector() {
  inspects.addEventListener('change', () => { frame.hidden = true; chosen = null; look(); });
  const label = (text, control) => element('label', {}, control, ` ${text}`);
  panel.append(
    element('div', {className: 'bar'}, label('Inspect under the pointer', inspects), label('Flash what is redrawn', flashes)),
    details, lines, element('h2', {}, 'Frames'), times,
    element('h2', {}, 'Timeline'), timeline,
    element('div', {className: 'bar'}, button('Save as Chrome trace', async () => {
      const trace = await act('timeline', '-');
      if (trace !== null) save('timeline', 'json', trace);
    }, {className: 'live'})),
    element('h2', {}, 'Windows'), tree);
  timeline.setAttribute('role', 'img');
  timeline.setAttribute('aria-label', 'The last ten seconds: a lane for each object, for commands and for frames');
  box.append(frame);
  setInterval(look, Every);
}
