// The live PPS objects: what changed is highlighted, values can be edited, each object has a history.
import {act, element} from './api.js';

const panel = document.getElementById('panel-pps');
const objects = new Map();
let filter = '';

export function makePps() {
  const search = element('input', {type: 'search', placeholder: 'Filter objects and attributes', oninput: () => { filter = search.value.toLowerCase(); applyFilter(); }});
  const line = element('input', {type: 'text', placeholder: 'object attribute:encoding:value', autocomplete: 'off', spellcheck: false});
  line.setAttribute('aria-label', 'Write an attribute');
  line.addEventListener('keydown', (event) => {
    const cut = line.value.indexOf(' ');
    if (event.key === 'Enter' && cut > 0) act('pps', 'put', line.value.slice(0, cut), line.value.slice(cut + 1));
  });
  panel.append(element('div', {className: 'bar'}, search, line));
}

function applyFilter() {
  for (const [name, object] of objects) {
    let any = false;
    for (const [attribute, row] of object.rows) {
      const match = `${name} ${attribute}`.toLowerCase().includes(filter);
      row.node.hidden = !match;
      any ||= match;
    }
    object.node.hidden = filter !== '' && !any;
  }
}

function objectFor(name) {
  let object = objects.get(name);
  if (!object) {
    const body = element('tbody');
    const history = element('ol', {className: 'lines'});
    const node = element('section', {className: 'object'}, element('h2', {}, name), element('table', {}, body),
      element('details', {}, element('summary', {}, 'History'), history));
    object = {node, body, history, rows: new Map()};
    objects.set(name, object);
    // Objects stand in the order of their names.
    const after = [...panel.querySelectorAll('section')].find((other) => other.firstChild.textContent > name);
    panel.insertBefore(node, after ?? null);
  }
  return object;
}

function setAttribute(name, object, attribute, encoding, value, changed) {
  let row = object.rows.get(attribute);
  if (!row) {
    const text = element('td', {className: 'value', tabIndex: 0, title: 'Enter or double click to edit'});
    row = {node: element('tr', {}, element('th', {}, attribute), element('td', {className: 'dim'}), text), text};
    text.addEventListener('dblclick', () => edit(name, attribute, row));
    text.addEventListener('keydown', (event) => { if (event.key === 'Enter' && !row.editing) { event.preventDefault(); edit(name, attribute, row); } });
    object.rows.set(attribute, row);
    object.body.append(row.node);
  }
  row.encoding = encoding;
  row.value = value;
  row.node.children[1].textContent = encoding;
  if (!row.editing) row.text.textContent = value;
  if (changed) {
    row.node.classList.remove('changed');
    void row.node.offsetWidth; // restarts the animation
    row.node.classList.add('changed');
  }
}

function edit(name, attribute, row) {
  row.editing = true;
  const input = element('input', {type: 'text', value: row.value, spellcheck: false});
  const end = () => { row.editing = false; row.text.textContent = row.value; };
  input.addEventListener('blur', end);
  input.addEventListener('keydown', (event) => {
    event.stopPropagation();
    if (event.key === 'Escape') row.text.focus();
    if (event.key === 'Enter') {
      act('pps', 'put', name, `${attribute}:${row.encoding}:${input.value}`);
      row.text.focus();
    }
  });
  row.text.replaceChildren(input);
  input.focus();
}

/** Takes PPS text: lines "name:encoding:value" and "-name", notices at their start. */
export function showPps(name, text, changed) {
  const object = objectFor(name);
  for (const line of text.split('\n')) {
    if (line === '' || line.startsWith('@')) continue;
    if (line.startsWith('#@') || line.startsWith('-@')) {
      object.rows.clear();
      object.body.replaceChildren();
      if (line.startsWith('-@')) { object.node.remove(); objects.delete(name); }
      continue;
    }
    if (line.startsWith('+@') || line.startsWith('*@') || line.startsWith('|@')) continue;
    if (line.startsWith('-')) {
      object.rows.get(line.slice(1))?.node.remove();
      object.rows.delete(line.slice(1));
      continue;
    }
    const plain = line.replace(/^\[[^\]]*\]/, '');
    const first = plain.indexOf(':');
    const second = plain.indexOf(':', first + 1);
    if (first < 0 || second < 0) continue;
    setAttribute(name, object, plain.slice(0, first), plain.slice(first + 1, second), plain.slice(second + 1), changed);
  }
  if (changed) {
    const time = new Date().toLocaleTimeString('en-GB', {hour12: false});
    object.history.prepend(element('li', {}, `${time}  ${text.split('\n').filter((line) => line && !line.startsWith('@')).join('  ')}`));
    while (object.history.children.length > 40) object.history.lastChild.remove();
  }
  if (filter) applyFilter();
}

/** Forgets everything, before a full state arrives. */
export function clearPps() {
  for (const object of objects.values()) object.node.remove();
  objects.clear();
}
