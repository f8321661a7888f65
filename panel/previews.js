// The drawn names of fonts: asks for those that come into view, and keeps where they are.
import {addressOf} from './link.js';
import {Message} from './messages.js';

const kMostAtOnce = 60;
const kMostKept = 2000; // pictures; the agent has the others at hand
const kPatience = 8000; // milliseconds until a font is asked for again

export class Previews {
  #link;
  #pictures = new Map(); // font ID -> {src, src2x}; empty texts if there is no picture
  #asked = new Map(); // font ID -> when
  #listID = 0;

  // `onPictures(ids)` is called when pictures have come.
  constructor(link, onPictures) {
    this.#link = link;
    link.on(Message.getFontPNG, ({fonts}) => {
      if (!Array.isArray(fonts)) return;
      for (const font of fonts) {
        this.#pictures.set(font.fontID, {src: addressOf(font.pngFilename), src2x: addressOf(font['2xPNGFilename'])});
        this.#asked.delete(font.fontID);
        if (this.#pictures.size > kMostKept) this.#pictures.delete(this.#pictures.keys().next().value);
      }
      onPictures(new Set(fonts.map((font) => font.fontID)));
    });
  }

  set listID(id) {
    this.#listID = id;
  }

  get(fontID) {
    return this.#pictures.get(fontID);
  }

  // `visible`: IDs of the fonts in view; `near`: of those that may come into view next.
  ask(visible, near) {
    const now = performance.now();
    const isNeeded = (id) => !this.#pictures.has(id) && !(now - this.#asked.get(id) < kPatience);
    const high = visible.filter(isNeeded).slice(0, kMostAtOnce);
    const all = [...high, ...near.filter(isNeeded)].slice(0, kMostAtOnce);
    if (all.length === 0) return;
    for (const id of all) this.#asked.set(id, now);
    this.#link.send(Message.getFontPNG, {highPriorityFontIDs: high, fontIDs: all, smartListID: this.#listID});
  }

  // The picture's file is gone.
  forget(fontID) {
    this.#pictures.delete(fontID);
  }

  // After a loss of the connection nothing that was asked for will come.
  forgetAsked() {
    this.#asked.clear();
  }
}
