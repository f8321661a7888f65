// What the page says beside the list: the state at the bottom, a banner for what stops the user, short notices, progress.
import {t} from './texts.js';

const kNoticeTime = 10000; // milliseconds
const kMostNotices = 3;

export class Notices {
  #banner = document.getElementById('banner');
  #state = document.getElementById('state');
  #notices = document.getElementById('notices');
  #progress = document.getElementById('progress');
  #running = new Map(); // kind of progress -> message

  // `kind`: 'ok', 'busy' or 'bad'.
  setState(kind, text) {
    this.#state.dataset.kind = kind;
    this.#state.querySelector('.text').textContent = text;
  }

  // An empty text takes the banner away. `action`: {text, act} or nothing.
  setBanner(text, action = null) {
    this.#banner.hidden = !text;
    this.#banner.querySelector('.text').textContent = text;
    const button = this.#banner.querySelector('button');
    button.hidden = !action;
    button.textContent = action?.text ?? '';
    button.onclick = action?.act ?? null;
  }

  // A notice takes the place of an older one about the same topic, if it has one: what that said is over.
  say(text, action = null, topic = '') {
    if (topic) this.#notices.querySelector(`[data-topic="${topic}"]`)?.remove();
    const notice = document.createElement('div');
    notice.className = 'notice';
    notice.dataset.topic = topic;
    const words = document.createElement('span');
    words.textContent = text;
    notice.append(words);
    const timer = setTimeout(() => notice.remove(), kNoticeTime);
    const addButton = (button, act) => {
      button.addEventListener('click', () => {
        clearTimeout(timer);
        notice.remove();
        act();
      });
      notice.append(button);
    };
    if (action) {
      const button = document.createElement('button');
      button.textContent = action.text;
      addButton(button, action.act);
    }
    addButton(document.getElementById('close-button').content.firstElementChild.cloneNode(true), () => {});
    this.#notices.append(notice);
    while (this.#notices.children.length > kMostNotices) this.#notices.firstElementChild.remove();
  }

  setProgress(kind, message) {
    this.#running.set(kind, message);
    this.#showProgress();
  }

  endProgress(kind) {
    this.#running.delete(kind);
    this.#showProgress();
  }

  endAllProgress() {
    this.#running.clear();
    this.#showProgress();
  }

  #showProgress() {
    const [message] = this.#running.values();
    this.#progress.hidden = !message;
    if (!message) return;
    const {text, stepIndex, numSteps} = message;
    const bar = this.#progress.querySelector('progress');
    bar.max = Math.max(numSteps, 1);
    bar.value = Math.min(stepIndex, bar.max);
    const steps = t('progress.steps', {n: stepIndex, all: numSteps});
    this.#progress.querySelector('.text').textContent = `${t('progress.scan')} · ${steps}`;
    this.#progress.querySelector('.detail').textContent = text;
    this.#progress.title = text;
  }
}
