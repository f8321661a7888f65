// The filters of the list. What a library or a kind contains is asked for when the user chooses one, and again when
// libraries have changed.
import {settled} from './browser.js';
import {Message} from './messages.js';
import {nameOf, partID} from './parts.js';
import {t} from './texts.js';

const kFilters = ['location', 'active', 'kind', 'library'];

const element = (id) => document.getElementById(id);
const choice = (name) => element(`filter-${name}`);

// Options: pairs of a value and a text. What the user has chosen stays.
function fill(select, options) {
  const value = select.value;
  select.replaceChildren(new Option(t('filter.any'), ''), ...options.map(([key, text]) => new Option(text, key)));
  select.value = options.some(([key]) => key === value) ? value : '';
}

export class Filters {
  #browser;
  #parts;
  #kinds;
  #libraries = new Map(); // value of an option -> part
  #asked = 0; // number of the newest question, so that late answers are ignored

  constructor(link, {browser, parts, kinds}) {
    this.#browser = browser;
    this.#parts = parts;
    this.#kinds = kinds;
    for (const name of kFilters) fill(choice(name), []);
    fill(choice('active'), [['active', t('state.active')], ['inactive', t('state.inactive')]]);
    element('filters').addEventListener('change', () => this.#use());
    element('filter-clear').addEventListener('click', () => this.clear());
    element('filter-details').addEventListener('toggle', (event) => event.target.open && this.#offer());
    link.on(Message.dataChanged, settled(() => this.#renew()));
    this.#closeByItself(element('filter-details'));
  }

  // Escape closes the filters, and so does a click elsewhere.
  #closeByItself(details) {
    details.addEventListener('keydown', (event) => {
      if (event.key !== 'Escape' || !details.open) return;
      details.open = false;
      details.querySelector('summary').focus();
    });
    addEventListener('pointerdown', (event) => {
      if (!details.contains(event.target)) details.open = false;
    });
  }

  async #offer() {
    fill(choice('location'), this.#browser.locations().map((word) => [word, t(`location.${word}`)]));
    await Promise.all([this.#offerKinds(), this.#offerLibraries()]);
  }

  async #offerKinds() {
    fill(choice('kind'), [...(await this.#kinds.all()).keys()].map((name) => [name, name]));
  }

  async #offerLibraries() {
    const libraries = (await this.#parts.all()).filter(({kind}) => kind === 'workgroup');
    if (libraries.length === 0) return;
    this.#libraries = new Map(libraries.map((part) => [partID(part), part]));
    fill(choice('library'), libraries.map((part) => [partID(part), nameOf(part)]));
  }

  async #use() {
    const question = ++this.#asked;
    this.#showCount();
    const part = this.#libraries.get(choice('library').value);
    const kind = choice('kind').value;
    const [ofKind, ofLibrary] = await Promise.all([kind && this.#kinds.all(), part && this.#parts.query([part])]);
    if (question !== this.#asked) return;
    this.#browser.want({
      location: choice('location').value,
      state: choice('active').value,
      kind: (kind && ofKind.get(kind)) || null,
      library: ofLibrary ? new Set(ofLibrary) : null,
    });
  }

  clear() {
    for (const name of kFilters) choice(name).value = '';
    if (element('filter-details').open) element('filter-details').querySelector('summary').focus(); // the button goes away
    this.#use();
  }

  #showCount() {
    const count = kFilters.filter((name) => choice(name).value).length;
    element('filter-count').textContent = count || '';
    element('filter-clear').hidden = count === 0;
  }

  async #renew() {
    const isUsed = choice('kind').value || choice('library').value;
    if (!isUsed && !element('filter-details').open) return;
    await this.#offer();
    if (isUsed) this.#use();
  }
}
