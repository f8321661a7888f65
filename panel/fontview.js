// The list of fonts: rows of sections, families and fonts, with the keyboard and the actions of a row.
import {t, plural} from './texts.js';
import {VirtualRows} from './virtual.js';

const kPreviewHeight = 30; // of a picture, in pixels at its own size
const kSectionHeight = 34, kFamilyHeight = 40, kCaptionHeight = 30, kProblemHeight = 30;
const kTypeAheadPause = 800; // milliseconds
const kBetweenLooks = 100; // milliseconds: what is scrolled past faster needs no pictures

// Returns a new row with its parts as properties, so that they need not be searched for whenever it shows another item.
function make(kind) {
  const row = document.getElementById(`row-${kind}`).content.firstElementChild.cloneNode(true);
  row.parts = Object.fromEntries([...row.querySelectorAll('[class]')].map((part) => [part.classList[0], part]));
  row.parts.button = row.querySelector('button');
  return row;
}

function setOrRemove(element, attribute, value) {
  if (value === undefined) element.removeAttribute(attribute);
  else element.setAttribute(attribute, value);
}

function reasonOf({why, document}) {
  if (why !== 'document') return t(`kept.${why}`);
  return document ? t('kept.document', {name: document}) : t('kept.someDocument');
}

// What is wrong with a font, and the way out.
export function problemOf(font) {
  if (font.conflict) {
    const {name, font: other} = font.conflict;
    return [t('font.conflict', {name}), other?.kept && reasonOf(other.kept)].filter(Boolean).join(' ');
  }
  if (font.kept) return reasonOf(font.kept);
  if (font.isRefused) return t('font.refused');
  if (font.isMissing) return t('font.missingWhy');
  return '';
}

// The operating system's own fonts are always active.
export const isChangeable = (font) => !font.isMissing && !(font.isActive && font.location === 'system');

function stateOf(font) {
  if (font.isMissing) return 'missing';
  return font.isActive ? 'active' : 'inactive';
}

export class FontView {
  #rows;
  #scroller = document.getElementById('fonts');
  #families = [];
  #closed = new Set(); // keys of families whose fonts are not shown
  #current = -1; // index of the row that the keyboard is on
  #typed = '';
  #typedAt = 0;
  #range = null; // what has come into view last
  #looking = 0;
  #lookedAt = -kBetweenLooks;

  // `previews`, `samples`: pictures and texts of fonts. `onToggle(font)`, `onCurrent(font or null)`,
  // `onInView(visible, near)` are called with fonts and lists of font IDs.
  constructor({previews, samples, onToggle, onCurrent, onInView}) {
    Object.assign(this, {previews, samples, onToggle, onCurrent, onInView});
    this.scale = 1;
    this.#rows = new VirtualRows(this.#scroller, document.getElementById('rows'), {
      create: (kind) => this.#create(kind),
      fill: (element, item, index) => this.#fill(element, item, index),
      onRange: (range) => this.#lookSoon(range),
    });
    this.#scroller.addEventListener('keydown', (event) => this.#onKey(event));
    this.#scroller.addEventListener('click', (event) => this.#onClick(event));
    this.#scroller.addEventListener('focus', () => {
      if (this.#current < 0 && this.#rows.items.length > 0) this.#moveTo(this.#next(-1, 1));
    });
  }

  // `sections`: whether families of the open documents stand apart.
  show(families, {sections}) {
    const item = this.#rows.items[this.#current];
    this.#families = families;
    this.sections = sections;
    this.#lay();
    this.#current = item ? this.#find(item) : -1;
    this.#markCurrent();
  }

  // Back to the beginning, for another list.
  rewind() {
    this.#scroller.scrollTop = 0;
    this.#current = -1;
    this.#markCurrent();
  }

  // News about fonts; rows with a problem have another height, so the list is laid out again where that changed.
  refresh(isChanged) {
    const hasMoved = this.#rows.items.some((item) => item.font && isChanged(item.font) && this.#heightOf(item.font) !== item.height);
    if (hasMoved) return this.#lay();
    this.#rows.refresh((item) => (item.font ? isChanged(item.font) : item.family?.fonts.some(isChanged)));
  }

  // Pictures have come, or fonts to draw the text in. No row changes its height with them.
  redraw(fontIDs) {
    this.#rows.forEach((row, {font}) => {
      if (font && fontIDs.has(font.id)) this.#draw(row, font);
    });
  }

  setScale(scale) {
    this.scale = scale;
    this.#lay();
  }

  reveal(font) {
    const index = this.#rows.items.findIndex((item) => item.font === font);
    if (index < 0) return false;
    this.#moveTo(index);
    this.#scroller.focus();
    return true;
  }

  #heightOf(font) {
    return Math.round(kPreviewHeight * this.scale) + kCaptionHeight + (problemOf(font) ? kProblemHeight : 0);
  }

  #lay() {
    const items = [];
    let isFirst = null;
    for (const family of this.#families) {
      if (this.sections && family.isFirst !== isFirst) {
        items.push({kind: 'section', height: kSectionHeight, text: t(family.isFirst ? 'section.documents' : 'section.others')});
      }
      isFirst = family.isFirst;
      const isAlone = family.fonts.length === 1;
      if (!isAlone) items.push({kind: 'family', height: kFamilyHeight, family});
      if (!isAlone && this.#closed.has(family.key)) continue;
      family.fonts.forEach((font, i) => {
        const place = isAlone ? {} : {position: i + 1, count: family.fonts.length};
        items.push({kind: 'font', height: this.#heightOf(font), font, family, isAlone, ...place});
      });
    }
    this.#scroller.setAttribute('aria-rowcount', items.length);
    this.#rows.items = items;
  }

  #find(old) {
    return this.#rows.items.findIndex((item) => item.kind === old.kind && item.font === old.font && item.family?.key === old.family?.key);
  }

  #create(kind) {
    const element = make(kind);
    const picture = element.parts.preview;
    // The folder of pictures may lose any at any time.
    picture?.addEventListener('error', () => {
      if (!picture.getAttribute('src')) return;
      this.previews.forget(Number(element.dataset.font));
      this.#rows.render();
    });
    return element;
  }

  #fill(element, item, index) {
    element.id = `row${index}`;
    element.setAttribute('aria-rowindex', index + 1);
    element.classList.toggle('current', index === this.#current);
    element.setAttribute('aria-selected', index === this.#current);
    if (item.kind === 'section') element.firstElementChild.textContent = item.text;
    if (item.kind === 'family') this.#fillFamily(element, item.family);
    if (item.kind === 'font') this.#fillFont(element, item);
  }

  #fillFamily(element, family) {
    const isOpen = !this.#closed.has(family.key);
    element.setAttribute('aria-expanded', isOpen);
    element.parts.name.textContent = family.name;
    const active = family.fonts.filter((font) => font.isActive).length;
    const count = plural('family.count', family.fonts.length);
    const counts = active > 0 ? `${count} · ${t('family.active', {n: active})}` : count;
    element.parts.count.textContent = counts;
    element.setAttribute('aria-label', `${family.name}, ${counts}`);
    const {button} = element.parts;
    button.textContent = t(active > 0 ? 'font.deactivateFamily' : 'font.activateFamily');
    button.hidden = !this.#changeable(family);
  }

  #fillFont(element, {font, isAlone, position, count}) {
    const state = stateOf(font), problem = problemOf(font);
    element.dataset.font = font.id;
    element.dataset.state = state;
    element.classList.toggle('alone', isAlone);
    element.setAttribute('aria-level', isAlone ? 1 : 2);
    setOrRemove(element, 'aria-posinset', position);
    setOrRemove(element, 'aria-setsize', count);
    element.setAttribute('aria-label', [font.displayName, t(`state.${state}`), problem].filter(Boolean).join(', '));
    const {caption, badge, problem: problemText, button} = element.parts;
    caption.textContent = font.postscriptName;
    badge.textContent = t(`state.${state}`);
    problemText.textContent = problem;
    button.textContent = t(font.isActive ? 'font.deactivate' : font.conflict ? 'font.useInstead' : 'font.activate');
    button.classList.toggle('main', !font.isActive);
    button.hidden = !isChangeable(font);
    this.#draw(element, font);
  }

  // The user's own text where the font can draw it, otherwise the picture of the name, otherwise the name as a text.
  #draw(element, font) {
    const {preview: picture, sample: text} = element.parts;
    const family = this.samples.familyOf(font);
    const drawn = family ? null : this.previews.get(font.id);
    const isSmall = this.scale <= 1 && devicePixelRatio <= 1;
    const source = (isSmall ? drawn?.src : drawn?.src2x) || drawn?.src;
    picture.hidden = !source;
    if (!source) picture.removeAttribute('src');
    else if (picture.getAttribute('src') !== source) picture.src = source;
    picture.style.height = `${kPreviewHeight * this.scale}px`;
    text.hidden = !picture.hidden;
    text.textContent = family ? this.samples.text : font.displayName;
    text.style.fontFamily = family ? `"${family}"` : '';
    text.style.fontSize = `${(family ? 20 : 15) * this.scale}px`;
    text.style.height = `${kPreviewHeight * this.scale}px`;
    text.classList.toggle('waits', !family && !drawn);
  }

  #lookSoon(range) {
    this.#range = range;
    if (this.#looking) return;
    this.#looking = setTimeout(() => this.#look(), this.#lookedAt + kBetweenLooks - performance.now());
  }

  #look() {
    this.#looking = 0;
    this.#lookedAt = performance.now();
    const {first, last, from, to} = this.#range;
    const ids = (start, end) => this.#rows.items.slice(Math.max(start, 0), end).filter((item) => item.font).map((item) => item.font.id);
    this.onInView(ids(from, to), [...ids(to, last + 20), ...ids(first, from)]);
  }

  #next(from, step) {
    const items = this.#rows.items;
    let index = from + step;
    while (index >= 0 && index < items.length && items[index].kind === 'section') index += step;
    return index >= 0 && index < items.length ? index : from;
  }

  #moveTo(index) {
    if (index < 0) return;
    this.#current = index;
    this.#rows.reveal(index);
    this.#markCurrent();
  }

  #markCurrent() {
    this.#rows.refresh();
    const item = this.#rows.items[this.#current];
    if (this.#rows.element(this.#current)) this.#scroller.setAttribute('aria-activedescendant', `row${this.#current}`);
    else this.#scroller.removeAttribute('aria-activedescendant');
    this.onCurrent(item ? (item.font ?? item.family.fonts[0]) : null);
  }

  #setOpen(item, isOpen) {
    if (item.kind !== 'family') return false;
    if (isOpen === !this.#closed.has(item.family.key)) return false;
    if (isOpen) this.#closed.delete(item.family.key);
    else this.#closed.add(item.family.key);
    this.#lay();
    this.#markCurrent();
    return true;
  }

  #onKey(event) {
    const item = this.#rows.items[this.#current];
    if (!item || event.target !== this.#scroller || event.ctrlKey || event.metaKey || event.altKey) return;
    const end = this.#rows.items.length;
    const keys = {
      ArrowDown: () => this.#moveTo(this.#next(this.#current, 1)),
      ArrowUp: () => this.#moveTo(this.#next(this.#current, -1)),
      PageDown: () => this.#moveTo(this.#next(this.#rows.pageFrom(this.#current, 1) - 1, 1)),
      PageUp: () => this.#moveTo(this.#next(this.#rows.pageFrom(this.#current, -1) - 1, 1)),
      Home: () => this.#moveTo(this.#next(-1, 1)),
      End: () => this.#moveTo(this.#next(end, -1)),
      ArrowRight: () => this.#setOpen(item, true) || (item.kind === 'family' && this.#moveTo(this.#next(this.#current, 1))),
      ArrowLeft: () => {
        const parent = this.#rows.items.findIndex((row) => row.kind === 'family' && row.family === item.family);
        if (item.kind === 'family') this.#setOpen(item, false);
        else if (parent >= 0) this.#moveTo(parent);
      },
      Enter: () => this.#toggle(item),
      ' ': () => this.#toggle(item),
    };
    const act = keys[event.key];
    if (act) {
      event.preventDefault();
      act();
    } else if (event.key.length === 1) {
      this.#typeAhead(event.key);
    }
  }

  #typeAhead(key) {
    const now = performance.now();
    this.#typed = (now - this.#typedAt < kTypeAheadPause ? this.#typed : '') + key.toLowerCase();
    this.#typedAt = now;
    const items = this.#rows.items;
    const matches = (item) => item.kind !== 'section' && (item.kind === 'family' || item.isAlone) && item.family.name.toLowerCase().startsWith(this.#typed);
    const later = items.findIndex((item, i) => i >= this.#current + (this.#typed.length === 1 ? 1 : 0) && matches(item));
    this.#moveTo(later >= 0 ? later : items.findIndex(matches));
  }

  #onClick(event) {
    const row = event.target.closest('[role=row]');
    if (!row) return;
    const index = Number(row.id.slice('row'.length));
    const item = this.#rows.items[index];
    if (!item || item.kind === 'section') return;
    this.#current = index;
    if (event.target.closest('.toggle')) this.#setOpen(item, this.#closed.has(item.family.key));
    else if (event.target.closest('button')) this.#toggle(item);
    this.#markCurrent();
  }

  // The font that stands for a family whose state is changed: an active one if there is one. Nothing if none can be.
  #changeable(family) {
    const fonts = family.fonts.filter(isChangeable);
    return fonts.find((font) => font.isActive) ?? fonts[0];
  }

  #toggle(item) {
    const font = item.font ?? this.#changeable(item.family);
    if (font && isChangeable(font)) this.onToggle(font);
  }
}
