// The dialog that makes a smart list or changes its name and query.
import {nameOf, partID} from './parts.js';
import {plural, t} from './texts.js';

const kKinds = ['workgroup', 'set', 'smartset'];

export class ListDialog {
  #dialog = document.getElementById('list-dialog');
  #name = document.getElementById('list-name');
  #choices = document.getElementById('list-parts');
  #note = document.getElementById('list-note');
  #count = document.getElementById('list-count');
  #lists;
  #parts;
  #list = null;
  #shown = [];
  #wanted = new Set();
  #asked = 0; // number of the newest question, so that late answers are ignored

  constructor(lists, parts) {
    this.#lists = lists;
    this.#parts = parts;
    this.#choices.addEventListener('change', (event) => {
      if (event.target.checked) this.#wanted.add(event.target.value);
      else this.#wanted.delete(event.target.value);
      this.#showCount();
    });
    document.getElementById('list-cancel').addEventListener('click', () => this.#dialog.close());
    document.getElementById('list-form').addEventListener('submit', () => this.#save());
  }

  // `list` is null for a new one.
  async open(list) {
    this.#list = list;
    this.#wanted.clear();
    this.#shown = [];
    this.#name.value = list?.smartListName ?? t('list.newDefault');
    this.#choices.replaceChildren();
    this.#count.textContent = '';
    this.#note.textContent = t('list.searching');
    document.getElementById('list-dialog-title').textContent = list ? t('list.edit', {name: list.smartListName}) : t('list.new');
    this.#dialog.showModal();
    this.#name.select();
    const question = ++this.#asked;
    const own = list ? await this.#lists.partsOf(list.smartListID) : [];
    const found = await this.#parts.all();
    if (question !== this.#asked || !this.#dialog.open) return;
    for (const part of own) this.#wanted.add(partID(part));
    this.#showParts([...found, ...own.filter((part) => !found.some((other) => partID(other) === partID(part)))]);
  }

  #showParts(parts) {
    this.#shown = parts;
    this.#note.textContent = parts.length > 0 ? '' : t('list.noParts');
    this.#choices.replaceChildren(
      ...kKinds.flatMap((kind) => {
        const own = parts.filter((part) => part.kind === kind);
        return own.length > 0 ? [this.#heading(kind), ...own.map((part) => this.#choice(part))] : [];
      }),
    );
    this.#showCount();
    this.#showCounts(parts);
  }

  #heading(kind) {
    const heading = document.createElement('h3');
    heading.textContent = t(`part.${kind}`);
    return heading;
  }

  #choice(part) {
    const label = document.createElement('label');
    const box = document.createElement('input');
    box.type = 'checkbox';
    box.value = partID(part);
    box.checked = this.#wanted.has(box.value);
    const name = document.createElement('span');
    name.className = 'name';
    name.textContent = nameOf(part);
    const count = document.createElement('span');
    count.className = 'count';
    label.append(box, name, count);
    return label;
  }

  // How many fonts each part has, one after another while the dialog shows them.
  async #showCounts(parts) {
    for (const part of parts) {
      const fontIDs = await this.#parts.query([part]);
      if (this.#shown !== parts || !this.#dialog.open) return;
      const box = [...this.#choices.querySelectorAll('input')].find(({value}) => value === partID(part));
      if (fontIDs) box.parentElement.querySelector('.count').textContent = plural('family.count', fontIDs.length);
    }
  }

  #chosen() {
    return this.#shown.filter((part) => this.#wanted.has(partID(part)));
  }

  async #showCount() {
    const question = ++this.#asked;
    const fontIDs = await this.#parts.query(this.#chosen());
    if (question === this.#asked && fontIDs) this.#count.textContent = plural('family.count', fontIDs.length);
  }

  async #save() {
    const list = this.#list, name = this.#name.value.trim() || t('list.newDefault'), parts = this.#chosen();
    const isKnown = this.#shown.length > 0; // the parts were found before the user saved
    if (!list) {
      await this.#lists.create(name, parts);
      return;
    }
    if (name !== list.smartListName) this.#lists.rename(list.smartListID, name);
    if (isKnown) this.#lists.setQuery(list.smartListID, parts);
    this.#lists.select(list.smartListID);
  }
}
