// The bench's two channels: commands (the same as the command line's) and pushed state.

/** Runs one command; gives its output, throws an Error with its error text. */
export async function command(...argv) {
  const answer = await fetch('/api/command', {
    method: 'POST',
    headers: {'Content-Type': 'application/json'},
    body: JSON.stringify({v: 1, argv: argv.map(String)}),
  });
  if (!answer.ok) throw new Error(`${answer.status} ${answer.statusText}`);
  const result = await answer.json();
  if (result.exit !== 0) throw new Error(result.err.trim() || `exit status ${result.exit}`);
  return result.out;
}

/** Runs a command for a click: a failure is shown to the user. */
export async function act(...argv) {
  try {
    return await command(...argv);
  } catch (error) {
    showMessage(error.message);
    return null;
  }
}

let messageTimer;
export function showMessage(text) {
  const box = document.getElementById('message');
  box.textContent = text;
  box.hidden = false;
  clearTimeout(messageTimer);
  messageTimer = setTimeout(() => { box.hidden = true; }, 8000);
}

/**
 * A WebSocket that comes back after the bench was restarted. `handlers`: open(socket), message(event), closed().
 * Gives an object whose send(data) drops what cannot be sent.
 */
export function channel(path, handlers) {
  let socket = null;
  let delay = 200;
  function connect() {
    socket = new WebSocket(`ws://${location.host}${path}`);
    socket.binaryType = 'arraybuffer';
    socket.onopen = () => { delay = 200; handlers.open?.(); };
    socket.onmessage = (event) => handlers.message(event);
    socket.onclose = () => {
      handlers.closed?.();
      setTimeout(connect, delay);
      delay = Math.min(delay * 2, 2000);
    };
  }
  connect();
  return {
    send(data) {
      if (socket.readyState === WebSocket.OPEN) socket.send(typeof data === 'string' ? data : JSON.stringify(data));
    },
  };
}

/** Hands a text to the user as a file: "NAME-TIME.ENDING". */
export function save(name, ending, text) {
  const address = URL.createObjectURL(new Blob([text], {type: 'text/plain'}));
  download(address, name, ending);
  setTimeout(() => URL.revokeObjectURL(address), 10000);
}

/** The same with what lies at `address`. */
export function download(address, name, ending) {
  element('a', {href: address, download: `${name}-${new Date().toISOString().replace(/[:.]/g, '-')}.${ending}`}).click();
}

/** Short way to make an element: element('button', {onclick: f, className: 'x'}, 'text', child). */
export function element(tag, properties = {}, ...children) {
  const node = Object.assign(document.createElement(tag), properties);
  node.append(...children);
  return node;
}

/** A button that carries out `action` and shows what went wrong. */
export function button(text, action, properties = {}) {
  return element('button', {type: 'button', ...properties, onclick: action}, text);
}
