// Films made by the bench: begun and ended by a button, the film is downloaded.
import {act, download, showMessage} from './api.js';

const button = document.getElementById('film');
let target = '';
let ours = '';

button.addEventListener('click', async () => {
  if (target === '') {
    await act('film', ours, '--overwrite');
    return;
  }
  const other = target !== ours;
  const said = await act('film', '--stop');
  if (said === null) return;
  if (!other) download('/api/film.webm', 'film', 'webm');
  showMessage(other ? said : said.slice(ours.length + 2)); // somebody else has begun it and named the file
});

/** `film`: the file of the film that is being made, empty while none is; `pageFilm`: where a page's film goes. */
export function showFilm(film, pageFilm) {
  target = film ?? '';
  ours = pageFilm ?? '';
  button.textContent = target === '' ? 'Film' : 'Stop film';
  button.setAttribute('aria-pressed', String(target !== ''));
}
