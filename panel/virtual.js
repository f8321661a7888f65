// A list of any number of rows of which only those in view are in the page. Rows have an item with a `kind` and a `height`
// in pixels; elements are used again for other items of the same kind.

const kOverscan = 400; // pixels above and below the view
const kSettle = 200; // milliseconds without a change after which the rows are put in order

export class VirtualRows {
  #scroller;
  #body;
  #create;
  #fill;
  #height = 0; // of the view
  #items = [];
  #tops = new Float64Array(1);
  #shown = new Map(); // index -> element
  #spare = new Map(); // kind -> elements
  #isScheduled = false;
  #sorting = 0;

  // `create(kind)` makes an element; `fill(element, item, index)` makes it show an item. `onRange({first, last, from, to})` is
  // called when other rows came into view: the indices of the rows in the page, and of those in view, the second excluded.
  constructor(scroller, body, {create, fill, onRange}) {
    this.#scroller = scroller;
    this.#body = body;
    this.#create = create;
    this.#fill = fill;
    this.onRange = onRange;
    scroller.addEventListener('scroll', () => this.#schedule(), {passive: true});
    new ResizeObserver(() => {
      this.#height = scroller.clientHeight;
      this.#schedule();
    }).observe(scroller);
  }

  get items() {
    return this.#items;
  }

  set items(items) {
    this.#items = items;
    this.#tops = new Float64Array(items.length + 1);
    items.forEach((item, i) => (this.#tops[i + 1] = this.#tops[i] + item.height));
    this.#body.style.height = `${this.#tops[items.length]}px`;
    // A row keeps its element where it can: a click on one that is replaced between press and release would be lost.
    for (const [index, element] of this.#shown) {
      if (items[index]?.kind === element.dataset.kind) this.#place(index, element);
      else this.#release(index, element);
    }
    this.render();
  }

  element(index) {
    return this.#shown.get(index);
  }

  // Calls a function with the element and the item of each row in the page.
  forEach(act) {
    for (const [index, element] of this.#shown) act(element, this.#items[index]);
  }

  // Shows the items for which this is true anew, where they are in view.
  refresh(isChanged = () => true) {
    for (const [index, element] of this.#shown) {
      if (isChanged(this.#items[index])) this.#fill(element, this.#items[index], index);
    }
  }

  // Scrolls as little as needed.
  reveal(index) {
    const top = this.#tops[index], bottom = this.#tops[index + 1];
    const view = this.#scroller;
    if (top < view.scrollTop) view.scrollTop = top;
    if (bottom > view.scrollTop + view.clientHeight) view.scrollTop = bottom - view.clientHeight;
    this.render();
  }

  // The index after a page, up or down.
  pageFrom(index, direction) {
    const target = this.#tops[index] + direction * this.#height * 0.9;
    return this.#at(Math.max(0, Math.min(target, this.#tops[this.#items.length])));
  }

  #at(y) {
    let low = 0, high = this.#items.length - 1;
    while (low < high) {
      const middle = (low + high + 1) >> 1;
      if (this.#tops[middle] <= y) low = middle;
      else high = middle - 1;
    }
    return Math.max(low, 0);
  }

  #schedule() {
    if (this.#isScheduled) return;
    this.#isScheduled = true;
    requestAnimationFrame(() => {
      this.#isScheduled = false;
      this.render();
    });
  }

  // The element stays visible until it is known that no other row takes it: hiding and showing it again is dear.
  #release(index, element) {
    this.#shown.delete(index);
    const kind = element.dataset.kind;
    if (!this.#spare.has(kind)) this.#spare.set(kind, []);
    this.#spare.get(kind).push(element);
  }

  #hideSpare() {
    for (const element of [...this.#spare.values()].flat()) {
      if (element.hidden) continue;
      element.hidden = true;
      element.removeAttribute('id');
      element.classList.remove('current');
    }
  }

  // Reads where the view is before it changes the rows. Afterwards the browser would have to lay them out at once.
  render() {
    const count = this.#items.length;
    const top = this.#scroller.scrollTop, bottom = top + this.#height;
    const first = count ? this.#at(Math.max(top - kOverscan, 0)) : 0;
    const last = count ? Math.min(this.#at(bottom + kOverscan) + 1, count) : 0;
    for (const [index, element] of this.#shown) {
      if (index < first || index >= last) this.#release(index, element);
    }
    for (let index = first; index < last; ++index) {
      if (!this.#shown.has(index)) this.#show(index);
    }
    this.#hideSpare();
    this.onRange({first, last, from: this.#at(top), to: Math.min(this.#at(bottom) + 1, count)});
    clearTimeout(this.#sorting);
    this.#sorting = setTimeout(() => this.#sort(), kSettle);
  }

  // Screen readers read the rows in the order of the document.
  #sort() {
    const indices = [...this.#shown.keys()].sort((a, b) => a - b);
    const isSorted = indices.every((index, i) => i === 0 || this.#shown.get(indices[i - 1]).compareDocumentPosition(this.#shown.get(index)) & Node.DOCUMENT_POSITION_FOLLOWING);
    if (!isSorted) this.#body.append(...indices.map((index) => this.#shown.get(index)));
  }

  #show(index) {
    const item = this.#items[index];
    let element = this.#spare.get(item.kind)?.pop();
    if (!element) {
      element = this.#create(item.kind);
      element.dataset.kind = item.kind;
      this.#body.append(element);
    }
    if (element.hidden) element.hidden = false;
    this.#shown.set(index, element);
    this.#place(index, element);
  }

  #place(index, element) {
    const item = this.#items[index];
    element.style.transform = `translateY(${this.#tops[index]}px)`;
    element.style.height = `${item.height}px`;
    this.#fill(element, item, index);
  }
}
