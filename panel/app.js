// Puts the page together.
import {Activation} from './activation.js';
import {FontBrowser, settled} from './browser.js';
import {Filters} from './filters.js';
import {FontView, isChangeable, problemOf} from './fontview.js';
import {Kinds} from './kinds.js';
import {Link} from './link.js';
import {ListDialog} from './listdialog.js';
import {Lists} from './lists.js';
import {Message} from './messages.js';
import {Notices} from './notices.js';
import {Parts} from './parts.js';
import {Previews} from './previews.js';
import {Samples} from './samples.js';
import {Session} from './session.js';
import {Sidebar} from './sidebar.js';
import {fillTexts, loadTexts, t} from './texts.js';

const element = (id) => document.getElementById(id);

// Remembers a field while the page is reloaded.
function remember(id) {
  const field = element(id);
  field.value = sessionStorage.getItem(id) ?? field.value;
  field.addEventListener('input', () => sessionStorage.setItem(id, field.value));
  return field;
}

function connectTools({view, browser, samples}) {
  const sample = remember('sample'), size = remember('size'), order = remember('sort');
  const useSample = () => {
    samples.text = sample.value.trim();
    view.refresh(() => true);
  };
  sample.addEventListener('input', useSample);
  size.addEventListener('input', () => view.setScale(Number(size.value)));
  order.addEventListener('change', () => (browser.order = order.value));
  element('search').addEventListener('input', (event) => browser.want({words: event.target.value}));
  useSample();
  view.setScale(Number(size.value));
  browser.order = order.value;
}

// The bar below the list says what the row says, and has its actions, for those who don't use a mouse.
function connectDetails({view, browser, activation, kinds}) {
  const bar = element('details');
  let current = null;
  const show = () => {
    bar.hidden = !current;
    if (!current) return;
    const state = current.isMissing ? 'missing' : current.isActive ? 'active' : 'inactive';
    bar.querySelector('.name').textContent = current.displayName;
    const place = current.location ? t(`location.${current.location}`) : '';
    const facts = [current.postscriptName, place, t(`state.${state}`)].filter(Boolean);
    bar.querySelector('.facts').textContent = facts.join(' · ');
    const font = current;
    // Two files of one font differ in this alone.
    kinds.of(font.id).then((kind) => {
      if (kind && font === current) bar.querySelector('.facts').textContent = [facts[0], kind, ...facts.slice(1)].join(' · ');
    });
    bar.querySelector('.problem').textContent = problemOf(current);
    const button = element('details-activate');
    button.hidden = !isChangeable(current);
    button.classList.toggle('main', !current.isActive);
    const action = current.isActive ? 'font.deactivateFamily' : current.conflict ? 'font.useInstead' : 'font.activateFamily';
    button.textContent = t(action);
    element('details-other').hidden = !browser.table.get(current.conflict?.id);
  };
  element('details-activate').addEventListener('click', () => activation.toggle(current));
  element('details-other').addEventListener('click', () => view.reveal(browser.table.get(current.conflict.id)));
  view.onCurrent = (font) => {
    current = font;
    show();
  };
  return show;
}

// The way out of a list without fonts.
function connectEmpty(browser, filters) {
  element('empty-act').addEventListener('click', () => {
    if (!browser.isRead) return browser.reload();
    element('search').value = '';
    browser.want({words: ''});
    filters.clear();
    element('search').focus();
  });
}

function connectWebFonts(link, notices) {
  const box = element('web-fonts'), button = element('web-fonts-on');
  let isOn = false;
  const show = () => {
    button.hidden = isOn;
    box.querySelector('.text').textContent = isOn ? t('webFonts.on') : t('webFonts');
  };
  const set = (value) => {
    isOn = value;
    show();
  };
  link.on(Message.canAccessWebFonts, ({canAccessGoogleFonts}) => (box.hidden = !canAccessGoogleFonts));
  // Comes whenever libraries and their folders have changed, also the folder of web fonts.
  link.on([Message.typekitEnabled, Message.typekitDisabled], () => link.send(Message.canAccessWebFonts));
  link.on(Message.areWebFontsEnabled, ({isEnabled}) => set(isEnabled !== 0));
  link.on(Message.webFontsEnabled, () => set(true));
  link.on(Message.webFontsDisabled, () => set(false));
  link.on(Message.enableWebFonts, ({returnCode}) => returnCode === 0 || notices.say(t('webFonts.failed')));
  button.addEventListener('click', () => link.send(Message.enableWebFonts));
}

// The plug-in remembers the size of a panel in a window of its own, without the window's frame. A tab has the size of its
// browser, which it neither takes from the plug-in nor stores.
function connectSize(link) {
  if (window.menubar.visible) return;
  link.on(Message.getDimensions, ({width, height}) => {
    if (width > 0 && height > 0) window.resizeTo(width + outerWidth - innerWidth, height + outerHeight - innerHeight);
  });
  const tell = settled(() => link.send(Message.setDimensions, {windowWidth: innerWidth, windowHeight: innerHeight}));
  addEventListener('resize', tell);
}

async function start() {
  await loadTexts();
  document.title = t('title');
  fillTexts(document);
  for (const template of document.querySelectorAll('template')) fillTexts(template.content);

  const notices = new Notices();
  const address = new URL('events', document.baseURI.replace(/^http/, 'ws'));
  const link = new Link(address, {onState: (state) => session.setConnection(state), onAgent: (isRunning) => session.setAgent(isRunning)});
  const parts = new Parts(link);
  const kinds = new Kinds(link);
  const samples = new Samples((ids) => view.redraw(ids));
  const previews = new Previews(link, (ids) => view.redraw(ids));
  const view = new FontView({
    previews,
    samples,
    onToggle: (font) => activation.toggle(font),
    onCurrent: () => {},
    onInView: (visible, near) => previews.ask(visible, near),
  });
  const lists = new Lists(link, {
    onChange: () => sidebar.show(),
    onSelect: (listID) => {
      previews.listID = listID;
      browser.open(listID);
    },
  });
  const browser = new FontBrowser(link, lists, view);
  const activation = new Activation(link, browser.table, notices, (ids) => {
    view.refresh((font) => ids.has(font.id));
    showDetails();
  });
  const dialog = new ListDialog(lists, parts);
  const sidebar = new Sidebar(lists, {
    onEdit: (list) => dialog.open(list),
    onDelete: async (list) => {
      const undo = await lists.remove(list);
      notices.say(t('list.deleted', {name: list.smartListName}), {text: t('undo'), act: undo});
    },
  });
  const showDetails = connectDetails({view, browser, activation, kinds});
  connectTools({view, browser, samples});
  const filters = new Filters(link, {browser, parts, kinds});
  connectEmpty(browser, filters);
  connectWebFonts(link, notices);
  connectSize(link);
  link.on([Message.fontActivated, Message.fontDeactivated], ({fontIDs}) => samples.forget(fontIDs));
  link.on([Message.fontActivated, Message.fontDeactivated, Message.fontMissing, Message.fontNonCompliant], showDetails);
  for (const button of document.querySelectorAll('.new-list')) button.addEventListener('click', () => dialog.open(null));
  addEventListener('keydown', (event) => {
    const isTyping = event.target.matches('input:not([type=range]):not([type=checkbox]), select');
    if (!(event.key === '/' && !isTyping) && !(event.key === 'f' && (event.ctrlKey || event.metaKey))) return;
    event.preventDefault();
    element('search').select();
  });

  const session = new Session(link, notices, {
    onReady: async () => {
      browser.loadDocuments();
      for (const id of [Message.getDimensions, Message.canAccessWebFonts, Message.areWebFontsEnabled]) link.send(id);
      if (!(await lists.start())) browser.reload();
    },
    onLost: () => previews.forgetAsked(),
  });
  link.connect();
}

start();
