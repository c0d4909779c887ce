// Inputs recorded by the bench: begun and ended by a button, the script is downloaded.
import {act, save, showMessage} from './api.js';

const button = document.getElementById('record');
let target = '';

button.addEventListener('click', async () => {
  if (target === '') {
    await act('record', '-');
    return;
  }
  const intoFile = target !== '-';
  const script = await act('record', '--stop');
  if (script === null) return;
  if (intoFile) showMessage(script); // somebody else has begun it and named the file
  else save('inputs', 'zmctl', script);
});

/** `recording`: where inputs go, "-" for the answer of the command that ends it; empty while nobody records. */
export function showRecording(recording) {
  target = recording ?? '';
  button.textContent = target === '' ? 'Record' : 'Stop recording';
  button.setAttribute('aria-pressed', String(target !== ''));
}
