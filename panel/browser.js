// The fonts of the selected list, as the user searches, filters and sorts them.
import {FontTable, filterFonts, groupFonts, readFontList} from './fonts.js';
import {Channel, addressOf} from './link.js';
import {BuiltIn, Message} from './messages.js';
import {plural, t} from './texts.js';

const kSettle = 400; // milliseconds in which news are collected before a list is read again

// Calls a function once after a burst of calls.
export function settled(act, delay = kSettle) {
  let timer = 0;
  return () => {
    clearTimeout(timer);
    timer = setTimeout(act, delay);
  };
}

export class FontBrowser {
  table = new FontTable();
  #link;
  #files;
  #view;
  #fonts = null; // of the selected list; null until they have been read
  #documentIDs = new Set();
  #loading = 0; // number of the newest load, so that late lists are ignored
  #wanted = {words: '', location: '', state: '', kind: null, library: null};
  #order = 'name';
  #empty = document.getElementById('empty');
  #emptyKey = 'empty.loading';
  #lists;

  constructor(link, lists, view) {
    this.#link = link;
    this.#lists = lists;
    this.#view = view;
    this.#files = new Channel(link, [Message.fontList, Message.couldNotCreateFile], {
      accept: (reply) => reply.messageID === Message.couldNotCreateFile || 'filename' in reply,
    });
    lists.askForFonts = (messageID, fields) => this.#take(this.#files.ask(messageID, fields), fields.smartListID);
    const reload = settled(() => this.reload());
    const reloadDocuments = settled(() => this.loadDocuments());
    link.on([Message.dataChanged, Message.smartListsChanged], reload);
    link.on(Message.fontActivated, ({fontIDs}) => this.#news(fontIDs, () => this.table.setActive(fontIDs, true)));
    link.on(Message.fontDeactivated, ({fontIDs}) => this.#news(fontIDs, () => this.table.setActive(fontIDs, false)));
    link.on(Message.fontMissing, ({fontIDs}) => this.#news(fontIDs, () => this.table.mark(fontIDs, {isMissing: true, isActive: false})));
    link.on(Message.fontNonCompliant, ({fontIDs}) => this.#news(fontIDs, () => this.table.mark(fontIDs, {isRefused: true, isActive: false})));
    link.on([Message.fontActivated, Message.fontDeactivated], () => {
      reloadDocuments();
      if ([BuiltIn.active, BuiltIn.documents].includes(lists.selected)) reload();
    });
  }

  // Something that the user wants to see: {words, location, state, kind and library: sets of font IDs or null}.
  want(change) {
    Object.assign(this.#wanted, change);
    this.#show();
    this.#view.rewind();
  }

  set order(order) {
    this.#order = order;
    this.#show();
    this.#view.rewind();
  }

  get isRead() {
    return this.#fonts !== null;
  }

  locations() {
    return [...new Set(this.#fonts?.map((font) => font.location))].filter(Boolean).sort();
  }

  open(listID) {
    this.#fonts = null;
    this.#setEmpty('empty.loading');
    this.#show();
    this.#view.rewind();
    this.#load(listID);
  }

  reload() {
    return this.#load(this.#lists.selected);
  }

  #load(listID) {
    return this.#take(this.#files.ask(Message.getSmartListFonts, {smartListID: listID}), listID);
  }

  // Shows the fonts that a reply names, if their list is still the selected one.
  async #take(asked, listID) {
    const load = ++this.#loading;
    const fonts = await this.#read(await asked);
    if (listID !== this.#lists.selected) return;
    if (!fonts) {
      if (load !== this.#loading) return;
      this.#setEmpty('empty.noAnswer');
      return this.#show();
    }
    this.#fonts = fonts;
    this.#setEmpty('empty.list');
    this.#show();
  }

  // Returns the fonts of a list file and lets the plug-in remove it; null if there is none.
  async #read(reply) {
    if (!reply?.filename) return null;
    try {
      const response = await fetch(addressOf(reply.filename));
      if (!response.ok) return null;
      return this.table.take(readFontList(await response.text()));
    } catch {
      return null; // the host is gone; the page will connect again
    } finally {
      this.#link.send(Message.deleteFile, {filename: reply.filename});
    }
  }

  // The fonts of the documents come first in the list, so ask for them before those of the list.
  async loadDocuments() {
    const fonts = await this.#read(await this.#files.ask(Message.getSmartListFonts, {smartListID: BuiltIn.documents}));
    if (!fonts) return;
    // A missing font is in no list any more, but its document still needs it.
    const missing = [...this.#documentIDs].filter((id) => this.table.get(id)?.isMissing);
    this.#documentIDs = new Set([...fonts.map((font) => font.id), ...missing]);
    this.#show();
  }

  #news(fontIDs, take) {
    take();
    const ids = new Set(fontIDs);
    if (this.#wanted.state || this.#order === 'active') this.#show();
    else this.#view.refresh((font) => ids.has(font.id));
  }

  #setEmpty(key) {
    this.#emptyKey = key;
  }

  // An empty key: there are fonts.
  #showEmpty(key) {
    this.#empty.hidden = !key;
    if (!key) return;
    this.#empty.querySelector('.text').textContent = t(key);
    const action = {'empty.search': 'empty.clear', 'empty.noAnswer': 'retry'}[key];
    const button = this.#empty.querySelector('button');
    button.hidden = !action;
    button.textContent = action ? t(action) : '';
  }

  #showNone() {
    this.#view.show([], {sections: false});
    this.#showEmpty(this.#emptyKey);
    document.getElementById('count').textContent = '';
  }

  #show() {
    const {selected} = this.#lists;
    if (!this.#fonts) return this.#showNone();
    const known = new Set(this.#fonts);
    const missing = [...this.#documentIDs].map((id) => this.table.get(id)).filter((font) => font?.isMissing && !known.has(font));
    const isWhole = selected === BuiltIn.all || selected === BuiltIn.documents;
    const fonts = isWhole ? [...missing, ...this.#fonts] : this.#fonts;
    const shown = filterFonts(fonts, this.#wanted);
    const hasSections = selected !== BuiltIn.documents && shown.some((font) => this.#documentIDs.has(font.id));
    this.#view.show(groupFonts(shown, this.#order, hasSections ? this.#documentIDs : new Set()), {sections: hasSections});
    this.#showEmpty(shown.length > 0 ? '' : fonts.length > 0 ? 'empty.search' : this.#emptyKey);
    document.getElementById('count').textContent =
      shown.length === fonts.length ? plural('family.count', fonts.length) : t('shown', {n: shown.length, all: fonts.length});
  }
}
