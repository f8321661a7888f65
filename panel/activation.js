// Activating a font with its family, and what came of it.
import {Channel} from './link.js';
import {Message} from './messages.js';
import {plural, t} from './texts.js';

const kPanelVersion = '1';

export class Activation {
  #link;
  #table;
  #notices;
  #channel;
  #asked = new Map(); // font ID -> font, until the plug-in says that it is active

  // `onNews(ids)` is called when the problem of fonts changed.
  constructor(link, table, notices, onNews) {
    this.#link = link;
    this.#table = table;
    this.#notices = notices;
    this.onNews = onNews;
    this.#channel = new Channel(link, Message.designActivateFamily);
    link.on(Message.activationError, (error) => this.#fail(error));
    link.on(Message.fontActivated, ({fontIDs}) => this.#succeed(fontIDs));
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
      font.conflict = {id: conflictID, name: this.#table.get(conflictID)?.displayName ?? t('font.otherFont')};
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
      this.#notices.say(plural('font.activated', fontIDs.length, {name: font.displayName}));
    }
  }
}
