// The system log with a level and a text filter.
import {button, element} from './api.js';

const panel = document.getElementById('panel-log');
const lines = element('ol', {className: 'lines log', tabIndex: 0, ariaLabel: 'System log, oldest first'});
const level = element('select', {}, ...[[7, 'all'], [6, 'up to tracing (6)'], [5, 'up to info (5)'], [3, 'up to warnings (3)'], [2, 'errors (2)']]
  .map(([value, text]) => element('option', {value}, text)));
const search = element('input', {type: 'search', placeholder: 'Filter text', ariaLabel: 'Filter text'});
const follow = element('input', {type: 'checkbox', checked: true});
const Kept = 2000;

function matches(entry) {
  return entry.severity <= Number(level.value) && entry.text.toLowerCase().includes(search.value.toLowerCase());
}

export function makeLog() {
  // What was chosen stays when the page is opened anew.
  level.value = localStorage.getItem('log-level') ?? '7';
  search.value = localStorage.getItem('log-filter') ?? '';
  const apply = () => {
    localStorage.setItem('log-level', level.value);
    localStorage.setItem('log-filter', search.value);
    for (const line of lines.children) line.hidden = !matches(line.entry);
  };
  level.addEventListener('change', apply);
  search.addEventListener('input', apply);
  panel.append(element('div', {className: 'bar'}, element('label', {}, 'Level ', level), search,
    element('label', {}, follow, ' follow'), button('Clear', () => lines.replaceChildren())), lines);
}

/** Forgets everything, before the newest lines arrive anew. */
export function clearLog() {
  lines.replaceChildren();
}

/** The newest line comes into view, if that is wanted; a panel that is hidden cannot scroll. */
export function followLog() {
  if (follow.checked) lines.scrollTop = lines.scrollHeight;
}

export function showLog(entries) {
  const nodes = entries.slice(-Kept).map((entry) => {
    const node = element('li', {className: entry.severity <= 2 ? 'error' : entry.severity <= 4 ? 'warning' : '', hidden: !matches(entry)},
      element('span', {className: 'dim'}, `${entry.process} ${entry.severity} `), entry.text);
    node.entry = entry;
    return node;
  });
  lines.append(...nodes);
  while (lines.children.length > Kept) lines.firstChild.remove();
  followLog();
}
