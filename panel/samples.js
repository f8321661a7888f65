// The user's own text, drawn in the fonts themselves. A browser can draw in fonts that are active for it; for all others
// the list shows the picture of the name.

const kMostFaces = 300;

export class Samples {
  text = '';
  #faces = new Map(); // font ID -> {face, state: 'loading', 'ready' or 'none'}

  // `onReady(ids)` is called when a font can be drawn in.
  constructor(onReady) {
    this.onReady = onReady;
  }

  // The name of the CSS family that draws in this font; empty if there is none, or no text to draw.
  familyOf(font) {
    if (!this.text || !font.isActive || !font.postscriptName) return '';
    const known = this.#faces.get(font.id);
    if (!known) this.#load(font);
    return known?.state === 'ready' ? known.face.family : '';
  }

  // A font that has become active or inactive is looked for anew.
  forget(ids) {
    for (const id of ids) this.#drop(id);
  }

  #load(font) {
    if (this.#faces.size >= kMostFaces) this.#drop(this.#faces.keys().next().value);
    const face = new FontFace(`font${font.id}`, `local("${font.postscriptName.replace(/["\\\n]/g, '\\$&')}")`);
    const entry = {face, state: 'loading'};
    this.#faces.set(font.id, entry);
    face.load().then(
      () => {
        if (this.#faces.get(font.id) !== entry) return;
        document.fonts.add(face);
        entry.state = 'ready';
        this.onReady(new Set([font.id]));
      },
      () => (entry.state = 'none'),
    );
  }

  #drop(id) {
    const entry = this.#faces.get(id);
    if (entry) document.fonts.delete(entry.face);
    this.#faces.delete(id);
  }
}
