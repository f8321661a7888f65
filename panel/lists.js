// The lists at the side: the built-in ones and the smart lists, with everything that can be done to them.
import {Channel} from './link.js';
import {BuiltIn, Message, isBuiltIn} from './messages.js';
import {queryOf, readTree} from './parts.js';
import {t} from './texts.js';

export class Lists {
  #link;
  #all;
  #create;
  #tree;
  #lists = [];

  // `onChange()` after the lists or the selection changed; `onSelect(listID)`.
  constructor(link, {onChange, onSelect}) {
    Object.assign(this, {onChange, onSelect});
    this.#link = link;
    this.#all = new Channel(link, Message.getAllSmartLists);
    this.#create = new Channel(link, Message.createSmartList);
    this.#tree = new Channel(link, Message.getSmartListTree, {accept: (reply, asked) => reply.smartListID === asked.smartListID});
    this.selected = BuiltIn.all;
    link.on(Message.smartListsChanged, () => this.load());
    link.on(Message.getDropDown, ({selection}) => this.#restore(selection));
  }

  get all() {
    return this.#lists;
  }

  nameOf(list) {
    return isBuiltIn(list.smartListID) ? t(`list.${list.smartListID}`) : list.smartListName;
  }

  async load() {
    const reply = await this.#all.ask(Message.getAllSmartLists);
    if (!reply) return;
    this.#lists = reply.smartLists ?? [];
    if (this.#lists.length > 0 && !this.#lists.some((list) => list.smartListID === this.selected)) this.select(BuiltIn.all);
    this.onChange();
  }

  // Continues with the list that was selected last, once.
  #restore(selection) {
    if (this.#isRestored) return;
    this.#isRestored = true;
    if (selection > 0 && selection !== this.selected) this.#choose(selection);
  }
  #isRestored = false;

  select(listID) {
    if (listID === this.selected) return;
    this.#isRestored = true;
    this.#link.send(Message.saveDropDown, {selection: listID, savesSmartList: !isBuiltIn(listID)});
    this.#choose(listID);
  }

  #choose(listID) {
    this.selected = listID;
    this.onChange();
    this.onSelect(listID);
  }

  // The parts of a list: {kind, number, name}.
  async partsOf(listID) {
    const reply = await this.#tree.ask(Message.getSmartListTree, {smartListID: listID});
    return readTree(reply?.listDefinition);
  }

  // Creates a list and selects it. Returns its ID; 0 if that failed.
  async create(name, parts) {
    const reply = await this.#create.ask(Message.createSmartList, {smartListName: name});
    const id = reply?.smartList?.smartListID ?? 0;
    if (!id) return 0;
    await this.load();
    this.setQuery(id, parts);
    this.select(id);
    return id;
  }

  rename(listID, name) {
    this.#link.send(Message.renameSmartList, {smartListID: listID, smartListName: name});
    this.load();
  }

  // The reply is the file of the list's fonts. Whoever reads such files waits for it, so this goes through `askForFonts`.
  setQuery(listID, parts) {
    this.askForFonts(Message.setSmartListQuery, {smartListID: listID, ...queryOf(parts)});
  }

  // Returns a function that brings the list back, under a new number.
  async remove(list) {
    const parts = await this.partsOf(list.smartListID);
    this.#link.send(Message.deleteSmartList, {smartListID: list.smartListID});
    if (this.selected === list.smartListID) this.select(BuiltIn.all);
    await this.load();
    return () => this.create(list.smartListName, parts);
  }
}
