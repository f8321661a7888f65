// What smart lists are made of: libraries, sets and smart sets.
import {Channel} from './link.js';
import {Message} from './messages.js';
import {t} from './texts.js';

const kKinds = {workgroup: 'workgroupIDs', set: 'setIDs', smartset: 'smartSetIDs'};
const kNamedHere = {2: 'location.system', 3: 'location.google'}; // workgroups that no user named
// A query without any library loses its sets, so it names one that does not exist.
const kNoWorkgroup = 999999;
const kProbeID = 0; // as the list of a question that is about no list

export const partID = ({kind, number}) => `${kind} ${number}`;

export function nameOf({kind, number, name}) {
  return kind === 'workgroup' && kNamedHere[number] ? t(kNamedHere[number]) : name;
}

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
  #link;
  #channel;

  constructor(link) {
    this.#link = link;
    this.#channel = new Channel(link, Message.fontList, {
      accept: (message) => Array.isArray(message.fontIDs) && message.smartListID === kProbeID,
      patience: 5000,
    });
  }

  // The parts that there are: {kind, number, name}. None if nobody answers.
  async all() {
    return (await this.#link.askHost('getParts'))?.parts ?? [];
  }

  // The IDs of the fonts that a query finds; null if there is no answer.
  async query(parts) {
    const reply = await this.#channel.ask(Message.querySmartListFonts, {smartListID: kProbeID, ...queryOf(parts)});
    return reply?.fontIDs ?? null;
  }
}
