// The lists at the side: the built-in ones and the smart lists, with everything that can be done to them.
import {Channel} from './link.js';
import {BuiltIn, Message, isBuiltIn} from './messages.js';
import {queryOf, readTree} from './parts.js';
import {t} from './texts.js';

const kPatience = 1000; // milliseconds; the plug-in says at once which list was selected last, or nothing

export class Lists {
  #link;
  #all;
  #create;
  #tree;
  #dropDown;
  #lists = [];
  #isChosen = false; // by the user, or because it was selected last

  // `onChange()` after the lists or the selection changed; `onSelect(listID)`.
  constructor(link, {onChange, onSelect}) {
    Object.assign(this, {onChange, onSelect});
    this.#link = link;
    this.#all = new Channel(link, Message.getAllSmartLists);
    this.#create = new Channel(link, Message.createSmartList);
    this.#tree = new Channel(link, Message.getSmartListTree, {accept: (reply, asked) => reply.smartListID === asked.smartListID});
    this.#dropDown = new Channel(link, Message.getDropDown, {patience: kPatience});
    this.selected = BuiltIn.all;
    link.on(Message.smartListsChanged, () => this.load());
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

  // Reads the lists, and the first time selects the one that was selected last, if there still is one with its number: the
  // plug-in is silent about the fonts of others. Resolves with whether it has selected one.
  async start() {
    const asked = this.#isChosen ? null : this.#dropDown.ask(Message.getDropDown);
    await this.load();
    const last = (await asked)?.selection;
    if (this.#isChosen) return false;
    this.#isChosen = true;
    this.#choose(this.#lists.some((list) => list.smartListID === last) ? last : BuiltIn.all);
    return true;
  }

  select(listID) {
    if (listID === this.selected) return;
    this.#isChosen = true;
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
