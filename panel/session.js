// What state host, plug-in and agent are in, as far as they say it: greets the plug-in until it answers, notices losses and
// returns, shows login, network and progress.
import {Message} from './messages.js';
import {t} from './texts.js';

const kBetweenGreetings = 1000, kBetweenGreetingsWhenOff = 3000; // milliseconds

const kProgress = {
  [Message.bulkProgress]: Message.bulkStopped,
  [Message.incrementalProgress]: Message.incrementalStopped,
  [Message.webFontsProgress]: Message.webFontsStopped,
  [Message.serverProgress]: Message.serverStopped,
};

export class Session {
  #link;
  #notices;
  #timer = 0;
  #isReady = false;

  // `onReady()` when the plug-in answers, again after each loss.
  constructor(link, notices, {onReady, onLost}) {
    Object.assign(this, {onReady, onLost});
    this.#link = link;
    this.#notices = notices;
    link.on(Message.connectionComplete, () => this.#beReady());
    link.on(Message.enabled, ({isEnabled}) => isEnabled || this.#beOff());
    link.on(Message.isLoggedIn, (reply) => this.#showLogin(reply));
    link.on([Message.loggedInStateChanged, Message.wentOffline, Message.wentOnline], () => link.send(Message.isLoggedIn));
    link.on(Message.wentOffline, () => notices.setState('busy', t('status.offline')));
    link.on(Message.offlineDownloadFinished, () => notices.say(t('status.downloaded')));
    for (const [progress, stopped] of Object.entries(kProgress)) {
      link.on(Number(progress), (message) => notices.setProgress(progress, message));
      link.on(stopped, () => notices.endProgress(progress));
    }
  }

  setConnection(state) {
    this.#isReady = false;
    clearInterval(this.#timer);
    if (state === 'connected') return this.#greet(kBetweenGreetings);
    this.onLost();
    this.#notices.endAllProgress();
    if (state === 'replaced') {
      this.#notices.setState('bad', t('status.replaced'));
      this.#notices.setBanner(t('status.replaced'), {text: t('status.useHere'), act: () => location.reload()});
    } else {
      this.#notices.setState('busy', t('status.connecting'));
      this.#notices.setBanner(t('status.lost'));
    }
  }

  setAgent(isRunning) {
    if (!isRunning) {
      this.onLost();
      this.#notices.endAllProgress();
      this.#notices.setState('bad', t('status.gone'));
      this.#notices.setBanner(t('status.gone'));
      return;
    }
    this.#notices.setBanner('');
    this.#notices.say(t('status.back'));
    this.onReady();
    this.#link.send(Message.isLoggedIn);
  }

  // The plug-in listens only from its first ticks on.
  #greet(interval) {
    clearInterval(this.#timer);
    if (!this.#isReady) this.#notices.setState('busy', t('status.connecting'));
    this.#link.send(Message.startPanelInfo);
    this.#timer = setInterval(() => this.#link.send(Message.startPanelInfo), interval);
  }

  #beReady() {
    if (this.#isReady) return;
    this.#isReady = true;
    clearInterval(this.#timer);
    this.#notices.setBanner('');
    this.#notices.setState('ok', t('status.ready'));
    this.#link.send(Message.isLoggedIn);
    this.onReady();
  }

  // The plug-in does nothing more in this run of the host, but if it does, the page goes on.
  #beOff() {
    this.#isReady = false;
    this.onLost();
    this.#greet(kBetweenGreetingsWhenOff);
    this.#notices.endAllProgress();
    this.#notices.setState('bad', t('status.disabled'));
    this.#notices.setBanner(t('status.disabled'));
  }

  #showLogin({isLoggedIn, isOnline}) {
    if (!this.#isReady) return;
    if (!isLoggedIn) this.#notices.setState('bad', t('status.loggedOut'));
    else if (!isOnline) this.#notices.setState('busy', t('status.offline'));
    else this.#notices.setState('ok', t('status.ready'));
  }
}
