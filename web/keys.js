// The hard keys and the rotary encoder, with the computer keys that stand for them.
import {act, element} from './api.js';
import {commands, shortcuts} from './shortcuts.js'; // made by the bench from its table of keys

const groups = [
  ['Player', [
    {code: 21, text: '⏮', title: 'Previous'},
    {code: 23, text: '⏪', title: 'Fast backward'},
    {code: 17, text: '▶', title: 'Play'},
    {code: 18, text: '⏸', title: 'Pause'},
    {code: 22, text: '⏩', title: 'Fast forward'},
    {code: 20, text: '⏭', title: 'Next'},
  ]],
  ['Encoder', [
    {code: 88, text: '↺', title: 'Turn left (mouse wheel up)'},
    {code: 49, text: '⏎', title: 'Press (enter)'},
    {code: 87, text: '↻', title: 'Turn right (mouse wheel down)'},
  ]],
  ['Direction', [
    {code: 47, text: '←', title: 'Left'},
    {code: 45, text: '↑', title: 'Up'},
    {code: 46, text: '↓', title: 'Down'},
    {code: 48, text: '→', title: 'Right'},
    {code: 50, text: '↩', title: 'Return'},
  ]],
  ['Panel', [
    {code: 64, text: 'Preset up', title: 'Preset up'},
    {code: 65, text: 'Preset down', title: 'Preset down'},
    {code: 44, text: 'Number pad', title: 'Number pad'},
  ]],
  ['Steering and voice', [
    {code: 160, text: 'Random folder', title: 'Random folder: shuffle on, repeat the folder'},
    {code: 161, text: 'Repeat all', title: 'Repeat all'},
    {code: 162, text: 'Shuffle off', title: 'Shuffle off'},
    {code: 163, text: 'Again', title: 'Again: the current item from its start'},
  ]],
];

const shown = {ArrowLeft: '←', ArrowUp: '↑', ArrowDown: '↓', ArrowRight: '→', Escape: 'Esc', PageUp: 'PgUp', PageDown: 'PgDn', Enter: '⏎'};
const byKey = new Map();

// Of the keys with a shortcut, those that what has the focus needs itself: all where text is entered.
const ownKeys = [
  ['input:not([type=checkbox]), select, textarea'],
  ['[role=tab]', 'Enter', 'ArrowLeft', 'ArrowRight'],
  ['button, summary, td', 'Enter'],
  ['.lines', 'ArrowLeft', 'ArrowRight', 'ArrowUp', 'ArrowDown', 'PageUp', 'PageDown'],
];

function needsItself(target, key) {
  const [, ...keys] = ownKeys.find(([selector]) => target.matches(selector)) ?? ['', ''];
  return keys.length === 0 || keys.includes(key);
}

export function makeKeys() {
  const box = document.getElementById('keys');
  for (const [name, keys] of groups) {
    const group = element('div', {className: 'keygroup'}, element('span', {className: 'dim'}, name));
    for (const key of keys) {
      const face = element('span', {}, key.text);
      // Words are read as they stand, signs by what they mean.
      face.ariaHidden = String(!key.title.startsWith(key.text));
      const node = element('button', {type: 'button', title: `${key.title} (key ${key.code})`, onclick: () => act('key', key.code)}, face);
      node.setAttribute('aria-label', key.title);
      const standing = shortcuts[key.code] ? shortcuts[key.code].split(' ') : [];
      for (const name of standing) byKey.set(name, key.code);
      if (standing.length) {
        // Drawn by the style sheet: it is no part of the button's name.
        const hint = element('kbd', {ariaHidden: 'true'});
        hint.dataset.key = shown[standing[0]] ?? standing[0];
        node.ariaKeyShortcuts = standing[0];
        node.append(hint);
      }
      group.append(node);
    }
    box.append(group);
  }
  addEventListener('keydown', (event) => {
    const key = event.key.length === 1 ? event.key.toLowerCase() : event.key; // Caps Lock makes no difference
    if (commands[key] && !document.body.classList.contains('offline')) {
      event.preventDefault();
      act(...commands[key].split(' '));
      return;
    }
    const free = !needsItself(event.target, key) && !document.body.classList.contains('offline');
    if (!free || event.ctrlKey || event.altKey || event.metaKey || !byKey.has(key)) return;
    event.preventDefault();
    act('key', byKey.get(key));
  });
}
