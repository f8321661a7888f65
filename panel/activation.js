// Activating and deactivating a font with its family, and what came of it.
import {Channel} from './link.js';
import {Message} from './messages.js';
import {plural, t} from './texts.js';

const kPanelVersion = '1';
const kTopic = 'activation'; // of notices

export class Activation {
  #link;
  #table;
  #notices;
  #channel;
  #asked = new Map(); // font ID -> font, until the plug-in says that it is active
  #conflicting = new Set(); // fonts with a conflict

  // `onNews(ids)` is called when the problem of fonts changed.
  constructor(link, table, notices, onNews) {
    this.#link = link;
    this.#table = table;
    this.#notices = notices;
    this.onNews = onNews;
    this.#channel = new Channel(link, Message.designActivateFamily);
    link.on(Message.activationError, (error) => this.#fail(error));
    link.on(Message.fontActivated, ({fontIDs}) => this.#succeed(fontIDs));
    link.on(Message.fontDeactivated, ({fontIDs}) => this.#endConflicts(new Set(fontIDs)));
  }

  async toggle(font) {
    if (font.isActive) return this.deactivate(font);
    const other = font.conflict;
    if (other && !(await this.#makeWay(font, other))) return;
    return this.activate(font);
  }

  async deactivate(font) {
    const answer = await this.#end(font.id);
    if (!answer) return this.#notices.say(t('font.notDeactivated', {name: font.displayName}));
    const {inactive} = answer;
    if (inactive.length === 0) return;
    const name = this.#table.get(inactive[0])?.displayName ?? font.displayName;
    const undo = {text: t('undo'), act: () => this.activate(font)};
    this.#notices.say(plural('font.deactivated', inactive.length, {name}), undo, kTopic);
  }

  // Deactivates a family. Shows at the other fonts what keeps them active. Resolves with the answer or null.
  async #end(fontID) {
    const answer = await this.#link.askHost('deactivateFamily', {fontID});
    for (const kept of answer?.kept ?? []) Object.assign(this.#table.get(kept.fontID) ?? {}, {kept});
    if (answer) this.onNews(new Set(answer.kept.map((kept) => kept.fontID)));
    return answer;
  }

  // Deactivates the font that another one conflicts with. Resolves with whether it is inactive.
  async #makeWay(font, {id, name}) {
    const answer = await this.#end(id);
    if (!answer) this.#notices.say(t('font.notDeactivated', {name}));
    const isInactive = answer && !answer.kept.some((kept) => kept.fontID === id);
    this.onNews(new Set([font.id])); // what keeps the other one is said here, too
    return isInactive;
  }

  #endConflicts(ids) {
    const free = [...this.#conflicting].filter((font) => !font.conflict || ids.has(font.conflict.id));
    for (const font of free) {
      font.conflict = null;
      this.#conflicting.delete(font);
    }
    if (free.length > 0) this.onNews(new Set(free.map((font) => font.id)));
  }

  async activate(font) {
    Object.assign(font, {conflict: null, isRefused: false});
    this.onNews(new Set([font.id]));
    this.#asked.set(font.id, font);
    this.#link.send(Message.trackFontClick, {fontID: font.id, version: kPanelVersion});
    const reply = await this.#channel.ask(Message.designActivateFamily, {
      fontID: font.id,
      postscriptName: font.postscriptName,
      displayName: font.displayName,
    });
    if (reply?.returnCode === 0) return;
    this.#asked.delete(font.id);
    this.#notices.say(t(reply ? 'font.failed' : 'font.noAnswer', {name: font.displayName}));
  }

  #fail({fontID, conflictID, isConflictError}) {
    const font = this.#table.get(fontID);
    if (!font) return;
    this.#asked.delete(fontID);
    if (isConflictError) {
      const other = this.#table.get(conflictID);
      font.conflict = {id: conflictID, name: other?.displayName ?? t('font.otherFont'), font: other};
      this.#conflicting.add(font);
      this.onNews(new Set([fontID]));
    } else {
      this.#notices.say(t('font.failed', {name: font.displayName}));
    }
  }

  #succeed(fontIDs) {
    for (const id of fontIDs) {
      const font = this.#asked.get(id);
      if (!font) continue;
      this.#asked.delete(id);
      this.#notices.say(plural('font.activated', fontIDs.length, {name: font.displayName}), null, kTopic);
    }
  }
}
