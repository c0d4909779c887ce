// Puts the page together and spreads the pushed state over its parts.
import {act, button, channel, element} from './api.js';
import {makeCar, showClock, showDrive, showFault, showLauncher, showProcesses, showRequest, showVehicle} from './car.js';
import {makeInspector} from './inspect.js';
import {makeKeys} from './keys.js';
import {clearLog, followLog, makeLog, showLog} from './log.js';
import {clearPps, makePps, showPps} from './pps.js';
import {showFilm} from './film.js';
import {showRecording} from './record.js';
import {takeFrames} from './screen.js';

const tabs = [['car', 'Head unit'], ['pps', 'PPS objects'], ['log', 'Log'], ['inspect', 'Inspect']];

function choose(name) {
  for (const [other] of tabs) {
    document.getElementById(`panel-${other}`).hidden = other !== name;
    const tab = document.getElementById(`tab-${other}`);
    tab.setAttribute('aria-selected', String(other === name));
    tab.tabIndex = other === name ? 0 : -1;
  }
  if (name === 'log') followLog();
}

function makeTabs() {
  const box = document.getElementById('tabs');
  for (const [name, text] of tabs) {
    const tab = element('button', {type: 'button', id: `tab-${name}`, onclick: () => choose(name)}, text);
    tab.setAttribute('role', 'tab');
    tab.setAttribute('aria-controls', `panel-${name}`);
    box.append(tab);
  }
  box.addEventListener('keydown', (event) => {
    const step = {ArrowRight: 1, ArrowLeft: -1}[event.key];
    if (!step) return;
    const at = tabs.findIndex(([name]) => document.activeElement.id === `tab-${name}`);
    const [next] = tabs[(at + step + tabs.length) % tabs.length];
    choose(next);
    document.getElementById(`tab-${next}`).focus();
  });
  choose('car');
}

makeKeys();
makeCar();
makePps();
makeLog();
makeInspector();
makeTabs();

// A link may name a state; whoever follows it is asked first, since anybody can write a link.
const wanted = /^#restore=(.+)$/.exec(location.hash)?.[1];
if (wanted) {
  const file = decodeURIComponent(wanted);
  const offer = element('p', {id: 'restore', className: 'bar'}, `Restore the state in ${file}? `);
  offer.append(button('Restore', async () => { if (await act('snapshot', 'restore', file) !== null) offer.remove(); }), button('No', () => offer.remove()));
  document.querySelector('header').after(offer);
}

const line = {connected: false, running: false};
function showLine() {
  const box = document.getElementById('stateline');
  const text = [line.connected ? 'connected' : 'no connection, trying again', line.running ? 'application running' : 'application not running'].join(' · ');
  // A screen reader speaks each change, so there is none without a reason.
  if (box.textContent !== text) box.textContent = text;
  box.classList.toggle('bad', !line.connected || !line.running);
  // Without the bench the picture is an old one and no control reaches anything.
  document.body.classList.toggle('offline', !line.connected);
  for (const part of document.querySelectorAll('#screenbox, #screenbar .live, #keys, #panel-car, #panel-pps .live')) part.inert = !line.connected;
}
setInterval(() => { document.getElementById('rate').textContent = `${takeFrames()} frames/s`; }, 1000);

const handlers = {
  reset() { clearPps(); clearLog(); },
  pps: (message) => showPps(message.object, message.text, message.changed, message.time),
  log: (message) => showLog(message.entries),
  request: (message) => showRequest(message.request),
  state(message) {
    line.running = message.running;
    showVehicle(message);
    showLauncher(message);
    showProcesses(message.children ?? []);
    showDrive(message.drive);
    showFault(message.fault);
    showClock(message.clock);
    showRecording(message.recording);
    showFilm(message.film, message.pageFilm);
    showLine();
  },
};

const socket = channel('/ws/state', {
  open() { line.connected = true; showLine(); },
  closed() { line.connected = false; line.running = false; showLine(); },
  message(event) {
    const {seq, messages} = JSON.parse(event.data);
    for (const message of messages) handlers[message.t]?.(message);
    socket.send({ack: seq});
  },
});
