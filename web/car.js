// Launcher, vehicle, disc drive, keyboard and voice, processes.
import {act, button, element} from './api.js';

function add(id, ...rows) {
  document.getElementById(id).append(...rows);
}

function row(...children) {
  return element('div', {className: 'bar'}, ...children);
}

function labelled(text, control) {
  return element('label', {}, `${text} `, control);
}

function field(properties = {}) {
  return element('input', {type: 'text', autocomplete: 'off', spellcheck: false, ...properties});
}

function select(options, onchange) {
  const node = element('select', {}, ...options.map(([value, text]) => element('option', {value}, text)));
  node.addEventListener('change', () => onchange(node.value));
  return node;
}

/** Sends the text field's content when Enter is pressed or the button is clicked. */
function entry(label, placeholder, send) {
  const input = field({placeholder});
  input.setAttribute('aria-label', label);
  const go = () => { if (input.value !== '') send(input.value); };
  input.addEventListener('keydown', (event) => { if (event.key === 'Enter') go(); });
  return row(input, button(label, go));
}

function quoted(text) {
  return text.includes("'") ? `"${text.replaceAll('"', '')}"` : `'${text}'`;
}

const faults = [['read', 'Read error'], ['surface', 'Surface error'], ['temperature', 'Too hot'], ['region', 'Wrong region'],
  ['noanswer', 'No answer'], ['gone', 'Drive gone'], ['none', 'None']];

function makeDisc() {
  const demo = button('Demonstration disc', () => act('insert', '--demo'));
  add('disc', element('p', {id: 'drivestate'}),
    entry('Insert', '/path/of/folder/or/image', (path) => act('insert', path)),
    row(demo, button('Eject', () => act('eject'))),
    row(element('span', {className: 'dim'}, 'Fault'), ...faults.map(([kind, text]) => {
      faultButtons[kind] = button(text, () => act('disc', 'fault', kind));
      return faultButtons[kind];
    })));
}

const faultButtons = {};

/** `fault`: the kind that the drive was last given, or "none". */
export function showFault(fault) {
  for (const [kind, node] of Object.entries(faultButtons)) node.setAttribute('aria-pressed', String(kind === (fault ?? 'none') && kind !== 'none'));
}

const steps = [[100, '100 ms'], [1000, '1 s'], [8000, '8 s'], [60000, '1 min']];

function makeClock() {
  add('clock', row(element('span', {className: 'dim'}, 'Advance by'), ...steps.map(([time, text]) => button(text, () => act('clock', 'advance', time)))));
}

/** `clock`: "manual" if the application's timers stand still until they are advanced. */
export function showClock(clock) {
  document.getElementById('clock').hidden = clock !== 'manual';
}

function makeLauncher() {
  const app = [['resume', 'Resume'], ['pause', 'Pause'], ['showonly', 'Show only'], ['hideonly', 'Hide only'], ['quit', 'Quit'], ['start', 'Start']];
  add('launcher', row(...app.map(([name, text]) => button(text, () => act('app', name)))),
    element('p', {id: 'launcherstate', className: 'dim'}),
    element('ol', {id: 'requests', className: 'lines', tabIndex: 0, ariaLabel: 'What the application asked for, newest first'}));
}

const bluetooth = [['0', 'off'], ['1', 'on'], ['2', 'connected']];
const languages = [['en', 'English'], ['de', 'Deutsch'], ['zh', '中文'], ['ar', 'العربية']];

const vehicle = {};
const car = {}; // the controls of its signals
const restrictions = ['no restriction', 'no films', 'no films, no typing, no long lists'];
function makeVehicle() {
  const toggle = (id, on, off) => element('input', {type: 'checkbox', onchange: (event) => act('device', id, event.target.checked ? on : off)});
  vehicle['2'] = toggle(2, 1, 0);
  vehicle['6'] = toggle(6, 255, 0);
  vehicle['7'] = element('input', {type: 'number', step: '0.1', min: '-60', max: '100', className: 'short',
    onchange: (event) => act('device', 7, Math.round(event.target.value * 10))});
  vehicle['86'] = select(bluetooth, (value) => act('device', 86, value));
  vehicle.volume = element('input', {type: 'range', min: '0', max: '100', step: '5', className: 'short',
    onchange: (event) => act('volume', event.target.value)});
  vehicle.time = element('input', {type: 'time', onchange: (event) => act('time', event.target.value, vehicle.format.value)});
  vehicle.format = select([['24', '24 h'], ['12', '12 h']], (value) => act('time', vehicle.time.value, value));
  vehicle.format.setAttribute('aria-label', 'Display of the time');
  vehicle.language = select(languages, (value) => act('language', value));
  vehicle.theme = select([['night', 'Night'], ['day', 'Day'], ['contrast', 'High contrast']], (value) => act('theme', value));
  vehicle.motion = element('input', {type: 'checkbox', onchange: (event) => act('motion', event.target.checked ? 'on' : 'off')});
  const number = (signal, max) => element('input', {type: 'number', min: '0', max, className: 'short', onchange: (event) => act('vehicle', signal, event.target.value)});
  const choice = (signal, ...words) => select(words.map((word) => [word, word]), (value) => act('vehicle', signal, value));
  car.speed = number('speed', '400');
  car.gear = choice('gear', 'park', 'reverse', 'neutral', 'drive');
  car.ignition = choice('ignition', 'off', 'accessory', 'on');
  car.light = number('light', '200000');
  add('vehicle', row(labelled('Parked', vehicle['2']), labelled('Muted', vehicle['6']), labelled('Volume', vehicle.volume), labelled('Outside °C', vehicle['7']), labelled('Bluetooth', vehicle['86'])),
    row(labelled('km/h', car.speed), labelled('Gear', car.gear), labelled('Ignition', car.ignition), labelled('Light (lux)', car.light)),
    element('p', {id: 'restriction', className: 'dim'}),
    row(labelled('Time', vehicle.time), vehicle.format, labelled('Language', vehicle.language), labelled('Theme', vehicle.theme), labelled('Motion', vehicle.motion)));
}

/** Shows a value; what the user is just editing gets it once it is left. */
function show(control, value) {
  if (control !== document.activeElement) {
    control.value = value;
    return;
  }
  if (control.latest === undefined) control.addEventListener('blur', () => { control.value = control.latest; delete control.latest; }, {once: true});
  control.latest = value;
}

export function showVehicle(state) {
  const devices = state.devices ?? {};
  vehicle['2'].checked = Number(devices['2']) !== 0;
  if (state.volume != null) show(vehicle.volume, String(state.volume));
  vehicle['6'].checked = Number(devices['6']) === 255;
  show(vehicle['7'], devices['7'] == null ? '' : (devices['7'] / 10).toFixed(1));
  show(vehicle['86'], String(devices['86'] ?? ''));
  if (state.time) {
    show(vehicle.time, `${String(state.time.hour).padStart(2, '0')}:${String(state.time.minute).padStart(2, '0')}`);
    show(vehicle.format, state.time.format === 1 ? '12' : '24');
  }
  if (state.car) {
    for (const [signal, control] of Object.entries(car)) show(control, state.car[signal] ?? '');
    document.getElementById('restriction').textContent = restrictions[state.car.restriction] + (state.car.drive ? ' · a drive is played' : '');
  }
  if (state.language) show(vehicle.language, state.language);
  if (state.theme) show(vehicle.theme, state.theme);
  vehicle.motion.checked = state.motion === 'on';
}

export function showLauncher(state) {
  document.getElementById('launcherstate').textContent = `${state.launcher ?? ''} ${state.front ? `· in front: ${state.front}` : ''}`;
}

export function showRequest(request) {
  const list = document.getElementById('requests');
  list.prepend(element('li', {}, [request.op, request.app, request.data].filter((part) => part !== undefined).join('  ')));
  while (list.children.length > 50) list.lastChild.remove();
}

export function showProcesses(children) {
  const box = document.getElementById('processes');
  box.replaceChildren(box.firstElementChild, ...children.map((child) =>
    row(element('strong', {}, child.name), child.pid ? `running, pid ${child.pid}` : child.state ?? 'not running',
      `${child.starts > 1 ? `, started ${child.starts} times` : ''}`, button('Restart', () => act('kill', child.name), {disabled: !child.pid}))));
}

/** `state`: what the disc service says of its drive, as JSON; nothing without a disc service. */
export function showDrive(state) {
  const {state: what, path, text} = state ? JSON.parse(state) : {state: 'no disc service: PPS objects can be written by hand'};
  document.getElementById('drivestate').textContent = [what, path, text].filter(Boolean).join(' · ');
}

function makeInput() {
  const number = element('input', {type: 'number', min: '0', className: 'short'});
  number.setAttribute('aria-label', 'Number from the keyboard');
  const confirm = () => act('appdata', `--kb_val=${number.value} --kb_ret=1`);
  number.addEventListener('keydown', (event) => { if (event.key === 'Enter') confirm(); });
  const pad = element('div', {className: 'pad'}, ...[1, 2, 3, 4, 5, 6, 7, 8, 9, '⌫', 0, 'OK'].map((key) => button(String(key), () => {
    if (key === 'OK') confirm();
    else number.value = key === '⌫' ? number.value.slice(0, -1) : number.value + key;
  })));
  add('input', row(number, element('span', {className: 'dim'}, 'number keyboard')), pad,
    entry('Ask for a song', 'song', (text) => act('appdata', `--song=${quoted(text)}`)),
    entry('Ask for a singer', 'singer', (text) => act('appdata', `--singer=${quoted(text)}`)),
    entry('Send data', '--key=value', (text) => act('appdata', text)));
}

export function makeCar() {
  makeDisc();
  makeClock();
  makeLauncher();
  makeVehicle();
  makeInput();
}
