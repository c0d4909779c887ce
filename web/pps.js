// The live PPS objects: what changed is highlighted, values can be edited, each object has a history.
import {act, element} from './api.js';

const panel = document.getElementById('panel-pps');
const objects = new Map();
// By object: lines of its history and the attribute that they are limited to. Both outlast a lost connection.
const histories = new Map();
const HistoryLines = 200;
let filter = (localStorage.getItem('pps-filter') ?? '').toLowerCase();

export function makePps() {
  const search = element('input', {type: 'search', placeholder: 'Filter objects and attributes', ariaLabel: 'Filter objects and attributes', value: localStorage.getItem('pps-filter') ?? '',
    oninput: () => { filter = search.value.toLowerCase(); localStorage.setItem('pps-filter', search.value); applyFilter(); }});
  const line = element('input', {type: 'text', placeholder: 'object attribute:encoding:value', autocomplete: 'off', spellcheck: false, className: 'live'});
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
    for (const row of object.body.querySelectorAll('.malformed:not(.attribute)')) {
      row.hidden = !`${name} ${row.textContent}`.toLowerCase().includes(filter);
      any ||= !row.hidden;
    }
    object.node.hidden = filter !== '' && !any;
  }
}

function objectFor(name) {
  let object = objects.get(name);
  if (!object) {
    const body = element('tbody');
    const history = historyFor(name);
    const node = element('section', {className: 'object'}, element('h2', {}, name), element('table', {}, body),
      element('details', {}, element('summary', {}, 'History'), history.choice, history.lines));
    object = {node, body, history, rows: new Map()};
    objects.set(name, object);
    // Objects stand in the order of their names.
    const after = [...panel.querySelectorAll('section')].find((other) => other.firstChild.textContent > name);
    panel.insertBefore(node, after ?? null);
  }
  return object;
}

function historyFor(name) {
  let history = histories.get(name);
  if (!history) {
    const choice = element('select', {ariaLabel: `Attribute in the history of ${name}`}, element('option', {value: ''}, 'all attributes'));
    const lines = element('ol', {className: 'lines', tabIndex: 0, ariaLabel: `History of ${name}, newest first`});
    choice.addEventListener('change', () => { for (const line of lines.children) line.hidden = choice.value !== '' && line.dataset.attribute !== choice.value; });
    history = {choice, lines};
    histories.set(name, history);
  }
  return history;
}

/** Adds a line of PPS text to an object's history. */
function remember(history, time, line) {
  const attribute = /^(?:\[[^\]]*\])?-?([^:]*)/.exec(line)[1];
  if (![...history.choice.options].some((option) => option.value === attribute)) history.choice.append(element('option', {value: attribute}, attribute));
  const node = element('li', {hidden: history.choice.value !== '' && history.choice.value !== attribute}, `${time}  ${line}`);
  node.dataset.attribute = attribute;
  history.lines.prepend(node);
  while (history.lines.children.length > HistoryLines) history.lines.lastChild.remove();
}

/** A line that is no attribute is shown as it came: somebody wrote it. */
function showMalformed(object, line, changed) {
  if ([...object.body.querySelectorAll('.malformed:not(.attribute) td')].some((other) => other.textContent === line)) return;
  const text = element('td', {colSpan: 2}, line);
  object.body.append(element('tr', {className: changed ? 'malformed changed' : 'malformed'}, element('th', {}, 'malformed'), text));
}

function setAttribute(name, object, attribute, encoding, value, changed) {
  let row = object.rows.get(attribute);
  if (!row) {
    const text = element('td', {className: 'value', tabIndex: 0, title: 'Enter or double click to edit'});
    row = {node: element('tr', {className: 'attribute'}, element('th', {}, attribute), element('td', {className: 'dim'}), text), text};
    text.addEventListener('dblclick', () => edit(name, attribute, row));
    text.addEventListener('keydown', (event) => { if (event.key === 'Enter' && !row.editing) { event.preventDefault(); edit(name, attribute, row); } });
    object.rows.set(attribute, row);
    object.body.append(row.node);
  }
  row.encoding = encoding;
  row.value = value;
  row.node.children[1].textContent = encoding;
  row.node.classList.toggle('malformed', encoding === 'json' && !isJson(value));
  if (!row.editing) row.text.textContent = value;
  if (changed) {
    row.node.classList.remove('changed');
    void row.node.offsetWidth; // restarts the animation
    row.node.classList.add('changed');
  }
}

function isJson(text) {
  try {
    JSON.parse(text);
    return true;
  } catch {
    return false;
  }
}

function edit(name, attribute, row) {
  if (document.body.classList.contains('offline')) return;
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

/** Takes PPS text: lines "name:encoding:value" and "-name", notices at their start. `time`: when it changed, in ms. */
export function showPps(name, text, changed, time = Date.now()) {
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
    if (first < 0 || second < 0) { showMalformed(object, line, changed); continue; }
    setAttribute(name, object, plain.slice(0, first), plain.slice(first + 1, second), plain.slice(second + 1), changed);
  }
  if (changed) {
    const clock = new Date(time).toLocaleTimeString('en-GB', {hour12: false, hour: '2-digit', minute: '2-digit', second: '2-digit', fractionalSecondDigits: 3});
    for (const line of text.split('\n')) if (line && !/^[-#+*|]?@/.test(line)) remember(object.history, clock, line);
  }
  if (filter) applyFilter();
}

/** Forgets everything, before a full state arrives. */
export function clearPps() {
  for (const object of objects.values()) object.node.remove();
  objects.clear();
}
