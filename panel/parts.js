// What smart lists are made of: libraries, sets and smart sets. No message lists them, so the page asks for the fonts of
// one number after another, and takes the names from the definitions of the lists that use them.
import {t} from './texts.js';
import {Message} from './messages.js';
import {Channel} from './link.js';

const kKinds = {workgroup: 'workgroupIDs', set: 'setIDs', smartset: 'smartSetIDs'};
const kHighest = 200;
const kMostInVain = {workgroup: 6, set: 12, smartset: 12}; // numbers without fonts, one after another
// A query without any library loses its sets, so it names one that does not exist.
const kNoWorkgroup = 999999;
const kProbeID = 0; // as the list of a question that is about no list

const idOf = (kind, number) => `${kind} ${number}`;

export function queryOf(parts) {
  const query = {workgroupIDs: [], setIDs: [], smartSetIDs: []};
  for (const part of parts) query[kKinds[part.kind]].push(part.number);
  if (query.workgroupIDs.length === 0 && query.setIDs.length > 0) query.workgroupIDs.push(kNoWorkgroup);
  return query;
}

// Reads a definition: a line for each part, such as `set 3 "Titles"`.
export function readTree(base64) {
  const bytes = Uint8Array.from(atob(base64 ?? ''), (c) => c.charCodeAt(0));
  const text = new TextDecoder().decode(bytes);
  const parts = [];
  // The plug-in removes the ends of lines, so a part begins after a quoted name or a rule.
  for (const [, kind, number, name] of text.matchAll(/(workgroup|smartset|set) (\d+) "((?:[^"\\]|\\.)*)"/g)) {
    parts.push({kind, number: Number(number), name: name.replace(/\\(.)/g, '$1')});
  }
  return parts;
}

export class Parts {
  #names = new Map();
  #found = new Map(); // part -> {kind, number, fontIDs}
  #channel;

  constructor(link) {
    this.#channel = new Channel(link, Message.fontList, {
      accept: (message) => Array.isArray(message.fontIDs) && message.smartListID === kProbeID,
      patience: 5000,
    });
  }

  learn(parts) {
    for (const {kind, number, name} of parts) this.#names.set(idOf(kind, number), name);
  }

  nameOf({kind, number}) {
    return this.#names.get(idOf(kind, number)) ?? t(`part.${kind}`, {n: number});
  }

  // The IDs of the fonts that a query finds; null if there is no answer.
  async query(parts) {
    const reply = await this.#channel.ask(Message.querySmartListFonts, {smartListID: kProbeID, ...queryOf(parts)});
    return reply?.fontIDs ?? null;
  }

  // The parts of these kinds that have fonts: {kind, number, fontIDs}, and those that are named already.
  async discover(kinds) {
    for (const kind of kinds) {
      for (let number = 1, inVain = 0; number <= kHighest && inVain < kMostInVain[kind]; ++number) {
        const fontIDs = await this.query([{kind, number}]);
        if (fontIDs === null) break;
        inVain = fontIDs.length > 0 ? 0 : inVain + 1;
        if (fontIDs.length > 0 || this.#names.has(idOf(kind, number))) {
          this.#found.set(idOf(kind, number), {kind, number, fontIDs: new Set(fontIDs)});
        } else {
          this.#found.delete(idOf(kind, number));
        }
      }
    }
    return [...this.#found.values()].filter((part) => kinds.includes(part.kind));
  }

  fontIDsOf(id) {
    return this.#found.get(id)?.fontIDs ?? null;
  }
}

export const partID = ({kind, number}) => idOf(kind, number);
