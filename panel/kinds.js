// The kinds of font files: which there are, and which fonts are of each. The host knows; it is asked when somebody wants to
// know, and again when libraries have changed.
import {Message} from './messages.js';

// Names of formats, which are the same in every language. A kind that is not here is shown as the agent calls it.
const kNames = {
  'OpenType - PS': 'OpenType (PostScript)',
  'OpenType - TT': 'OpenType (TrueType)',
  Postscript: 'PostScript Type 1',
  'PostScript - MM': 'PostScript Multiple Master',
};

export class Kinds {
  #link;
  #known = null; // promise of a map: name -> IDs of its fonts

  constructor(link) {
    this.#link = link;
    link.on(Message.dataChanged, () => (this.#known = null));
  }

  // Resolves with a map from the names of kinds to the IDs of their fonts; empty if nobody answers.
  all() {
    this.#known ??= this.#ask();
    return this.#known;
  }

  async #ask() {
    const answer = await this.#link.askHost('getKinds');
    if (!answer) this.#known = null;
    return new Map((answer?.kinds ?? []).map(({kind, fontIDs}) => [kNames[kind] ?? kind, new Set(fontIDs)]));
  }

  // Resolves with the name of a font's kind; empty if that is not known.
  async of(fontID) {
    for (const [name, fontIDs] of await this.all()) if (fontIDs.has(fontID)) return name;
    return '';
  }
}
