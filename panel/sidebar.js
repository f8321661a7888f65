// Shows the lists, at the side or, in a narrow panel, as a drop-down.
import {isBuiltIn} from './messages.js';
import {t} from './texts.js';

export class Sidebar {
  #lists;
  #builtIn = document.getElementById('built-in');
  #smart = document.getElementById('smart');
  #choice = document.getElementById('list-choice');

  // `onEdit(list)`, `onDelete(list)`.
  constructor(lists, {onEdit, onDelete}) {
    Object.assign(this, {onEdit, onDelete});
    this.#lists = lists;
    this.#choice.addEventListener('change', () => lists.select(Number(this.#choice.value)));
    for (const id of ['edit-list', 'delete-list']) {
      document.getElementById(id).addEventListener('click', () => this.#act(id === 'edit-list', this.#selected()));
    }
    document.getElementById('lists').addEventListener('keydown', (event) => this.#onKey(event));
  }

  show() {
    const lists = this.#lists.all;
    const focused = document.activeElement?.dataset?.list;
    this.#builtIn.replaceChildren(...lists.filter((list) => isBuiltIn(list.smartListID)).map((list) => this.#entry(list)));
    this.#smart.replaceChildren(...lists.filter((list) => !isBuiltIn(list.smartListID)).map((list) => this.#entry(list)));
    document.getElementById('no-smart').hidden = this.#smart.children.length > 0;
    this.#choice.replaceChildren(...lists.map((list) => new Option(this.#lists.nameOf(list), list.smartListID)));
    this.#choice.value = this.#lists.selected;
    const isOwn = !isBuiltIn(this.#lists.selected);
    for (const id of ['edit-list', 'delete-list']) document.getElementById(id).hidden = !isOwn;
    const selected = this.#selected();
    if (selected) {
      document.getElementById('list-title').textContent = this.#lists.nameOf(selected);
      document.getElementById('edit-list').setAttribute('aria-label', t('list.edit', {name: this.#lists.nameOf(selected)}));
      document.getElementById('delete-list').setAttribute('aria-label', t('list.delete', {name: this.#lists.nameOf(selected)}));
    }
    if (focused) document.querySelector(`[data-list="${focused}"]`)?.focus();
  }

  #selected() {
    return this.#lists.all.find((list) => list.smartListID === this.#lists.selected);
  }

  #entry(list) {
    const item = document.createElement('li');
    const button = document.createElement('button');
    button.className = 'list';
    button.dataset.list = list.smartListID;
    button.textContent = this.#lists.nameOf(list);
    if (list.smartListID === this.#lists.selected) button.setAttribute('aria-current', 'true');
    button.addEventListener('click', () => this.#lists.select(list.smartListID));
    item.append(button);
    return item;
  }

  #act(isEdit, list) {
    if (!list || isBuiltIn(list.smartListID)) return;
    if (isEdit) this.onEdit(list);
    else this.onDelete(list);
  }

  #onKey(event) {
    const button = event.target.closest('.list');
    if (!button) return;
    const all = [...document.querySelectorAll('#lists .list')];
    const at = all.indexOf(button);
    const list = this.#lists.all.find((entry) => entry.smartListID === Number(button.dataset.list));
    const keys = {
      ArrowDown: () => all[Math.min(at + 1, all.length - 1)].focus(),
      ArrowUp: () => all[Math.max(at - 1, 0)].focus(),
      F2: () => this.#act(true, list),
      Delete: () => this.#act(false, list),
    };
    if (!keys[event.key]) return;
    event.preventDefault();
    keys[event.key]();
  }
}
