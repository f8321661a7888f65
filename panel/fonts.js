// The fonts as the page knows them, and how a list of them is searched, filtered, sorted and grouped. No DOM.

const kHasOthers = /[^\x00-\x7F]/;

// For comparing without case and accents. Nearly all names are ASCII, and there are tens of thousands.
const fold = (text) => (kHasOthers.test(text) ? text.normalize('NFD').replace(/\p{M}/gu, '') : text).toLowerCase();
const collator = new Intl.Collator(undefined, {numeric: true, sensitivity: 'base'});

// "LiberationSans-BoldItalic" -> "LiberationSans". The messages name no family; this is how font makers name faces.
function familyKeyOf(postscriptName, displayName) {
  const name = postscriptName || displayName;
  const hyphen = name.indexOf('-');
  return fold(hyphen > 0 ? name.slice(0, hyphen) : name);
}

// Reads a font list file: a line for each font, six fields separated by tabs. Lines that are none are left out.
export function readFontList(text) {
  const fonts = [];
  for (const line of text.split('\n')) {
    const [id, displayName, postscriptName, activated, location, isLocal] = line.split('\t');
    if (isLocal === undefined || !/^-?\d+$/.test(id)) continue;
    fonts.push({
      id: Number(id) >>> 0,
      displayName: displayName || postscriptName,
      postscriptName,
      isActive: activated !== '0',
      location,
      isLocal: isLocal !== '0',
    });
  }
  return fonts;
}

// What is known of all fonts. A font is one object for the life of the page, so that news about it reach every list.
export class FontTable {
  #fonts = new Map();

  get(id) {
    return this.#fonts.get(id);
  }

  // Takes the fonts of a list as it was read. Returns their objects, in the same order.
  take(rows) {
    return rows.map((row) => {
      let font = this.#fonts.get(row.id);
      if (!font) {
        font = {isMissing: false, isRefused: false, conflict: null, kept: null, ...row};
        font.key = fold(`${row.displayName} ${row.postscriptName}`);
        font.familyKey = familyKeyOf(row.postscriptName, row.displayName);
        this.#fonts.set(row.id, font);
      }
      Object.assign(font, {isActive: row.isActive, location: row.location, isLocal: row.isLocal, isMissing: false});
      return font;
    });
  }

  setActive(ids, isActive) {
    for (const id of ids) {
      const font = this.#fonts.get(id);
      if (font) Object.assign(font, {isActive, conflict: null, kept: null}, isActive ? {isRefused: false, isMissing: false} : {});
    }
  }

  mark(ids, news) {
    for (const id of ids) Object.assign(this.#fonts.get(id) ?? {}, news);
  }
}

// The words that the display names of a family have in common: "Liberation Sans" of "Liberation Sans Bold" and others.
function familyName(fonts) {
  const names = fonts.map((font) => font.displayName.split(' '));
  let count = 0;
  while (names.every((words) => words.length > count && words[count] === names[0][count])) ++count;
  return count > 0 ? names[0].slice(0, count).join(' ') : fonts[0].displayName;
}

// Returns the fonts of a list that the view wants: {words, location, state, kind and library: sets of IDs or null}.
export function filterFonts(fonts, {words, location, state, kind, library}) {
  const wanted = fold(words).split(/\s+/).filter(Boolean);
  return fonts.filter(
    (font) =>
      (!location || font.location === location) &&
      (!state || font.isActive === (state === 'active')) &&
      (!kind || kind.has(font.id)) &&
      (!library || library.has(font.id)) &&
      wanted.every((word) => font.key.includes(word)),
  );
}

const byName = (a, b) => collator.compare(a.name, b.name);
const kOrders = {
  name: byName,
  reverse: (a, b) => byName(b, a),
  active: (a, b) => (b.active > 0) - (a.active > 0) || byName(a, b),
  size: (a, b) => b.fonts.length - a.fonts.length || byName(a, b),
};

// Groups fonts by family, in this order. Families with a font in `first`, a set of IDs, come first.
export function groupFonts(fonts, order, first) {
  const families = new Map();
  for (const font of fonts) {
    let family = families.get(font.familyKey);
    if (!family) families.set(font.familyKey, (family = {key: font.familyKey, fonts: [], isFirst: false}));
    family.fonts.push(font);
    if (first.has(font.id)) family.isFirst = true;
  }
  const groups = [...families.values()];
  for (const family of groups) {
    family.name = familyName(family.fonts);
    family.active = family.fonts.filter((font) => font.isActive).length;
  }
  groups.sort(kOrders[order]);
  return [...groups.filter((family) => family.isFirst), ...groups.filter((family) => !family.isFirst)];
}
