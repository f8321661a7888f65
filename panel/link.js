// The connection to the host: a WebSocket that carries the events of its extension service, to and from the plug-in, and
// requests to the host itself. Connects again by itself. Messages of the plug-in go to the listeners of their identifier.

const kToPlugin = 'com.velorant.PanelToPlugin';
const kFromPlugin = 'com.velorant.PluginToPanel';
const kToHost = 'com.velorant.PageToHost';
const kFromHost = 'com.velorant.HostToPage';
const kAgentState = 'com.velorant.AgentState';
const kReplacedCode = 4001; // the host's: another page has taken this one's place
const kFirstDelay = 300; // milliseconds
const kLongestDelay = 5000;
const kPatience = 20000;

// Returns the message in parentheses as an object; null if it is malformed.
function read(text) {
  if (!text.startsWith('(') || !text.endsWith(')')) return null;
  try {
    return JSON.parse(text.slice(1, -1));
  } catch {
    return null;
  }
}

export class Link {
  #address;
  #socket = null;
  #delay = kFirstDelay;
  #listeners = new Map(); // identifier -> functions
  #requests = 0;
  #waiting = new Map(); // number of a request to the host -> function that takes the answer
  #losers = new Set(); // functions that are called when the connection is lost

  // `onState(state)` is called with 'connected', 'lost' or 'replaced'; `onAgent(isRunning)` when the host says so.
  constructor(address, {onState, onAgent}) {
    this.#address = address;
    this.onState = onState;
    this.onAgent = onAgent;
  }

  connect() {
    const socket = new WebSocket(this.#address);
    this.#socket = socket;
    socket.onopen = () => {
      this.#delay = kFirstDelay;
      this.onState('connected');
    };
    socket.onmessage = ({data}) => this.#receive(JSON.parse(data));
    socket.onclose = ({code}) => {
      for (const take of [...this.#waiting.values()]) take(null);
      for (const lose of [...this.#losers]) lose();
      if (code === kReplacedCode) return this.onState('replaced');
      this.onState('lost');
      setTimeout(() => this.connect(), this.#delay);
      this.#delay = Math.min(this.#delay * 2, kLongestDelay);
    };
  }

  get isConnected() {
    return this.#socket?.readyState === WebSocket.OPEN;
  }

  on(messageIDs, listener) {
    for (const id of [messageIDs].flat()) {
      if (!this.#listeners.has(id)) this.#listeners.set(id, new Set());
      this.#listeners.get(id).add(listener);
    }
  }

  off(messageIDs, listener) {
    for (const id of [messageIDs].flat()) this.#listeners.get(id)?.delete(listener);
  }

  // Calls the function when the connection is lost, until it is removed with `offLoss`.
  onLoss(listener) {
    this.#losers.add(listener);
  }

  offLoss(listener) {
    this.#losers.delete(listener);
  }

  // Without a connection the message is lost, like the state that it was for: a new connection asks for everything again.
  send(messageID, fields = {}) {
    if (!this.isConnected) return;
    this.#post(kToPlugin, {messageID, ...fields});
  }

  // Asks the host itself. Resolves with the answer; null if the host can't do it or is gone.
  askHost(call, fields = {}) {
    if (!this.isConnected) return Promise.resolve(null);
    const request = ++this.#requests;
    return new Promise((resolve) => {
      const take = (answer) => {
        clearTimeout(timer);
        this.#waiting.delete(request);
        resolve(answer?.problem ? null : answer);
      };
      const timer = setTimeout(() => take(null), kPatience);
      this.#waiting.set(request, take);
      this.#post(kToHost, {request, call, ...fields});
    });
  }

  #post(type, content) {
    this.#socket.send(JSON.stringify({type, data: JSON.stringify(content)}));
  }

  #receive({type, data}) {
    if (type === kAgentState) return this.onAgent(data === 'running');
    if (type === kFromHost) {
      const answer = JSON.parse(data);
      return this.#waiting.get(answer.request)?.(answer);
    }
    if (type !== kFromPlugin) return;
    const message = read(data);
    if (!message) return console.warn('a malformed message:', data.slice(0, 200));
    for (const listener of [...(this.#listeners.get(message.messageID) ?? [])]) listener(message);
  }
}

// Requests whose replies don't say what they answer: one at a time, in order.
export class Channel {
  #link;
  #replies;
  #accept;
  #patience;
  #last = Promise.resolve();

  // `replies`: the identifiers of replies; `accept(message)` says whether a message with one is a reply at all.
  constructor(link, replies, {accept = () => true, patience = kPatience} = {}) {
    this.#link = link;
    this.#replies = replies;
    this.#accept = accept;
    this.#patience = patience;
  }

  // Resolves with the reply, or with null if none comes: the plug-in is silent about requests that fail.
  ask(messageID, fields = {}) {
    const asked = this.#last.then(() => this.#askNow(messageID, fields));
    this.#last = asked;
    return asked;
  }

  #askNow(messageID, fields) {
    if (!this.#link.isConnected) return null;
    return new Promise((resolve) => {
      const finish = (message) => {
        if (message && !this.#accept(message, fields)) return;
        clearTimeout(timer);
        this.#link.off(this.#replies, finish);
        this.#link.offLoss(giveUp);
        resolve(message);
      };
      // Replies to what was asked through a connection that is lost do not come.
      const giveUp = () => finish(null);
      const timer = setTimeout(giveUp, this.#patience);
      this.#link.on(this.#replies, finish);
      this.#link.onLoss(giveUp);
      this.#link.send(messageID, fields);
    });
  }
}

// The address at which this server hands out a file that a message named by its file URL.
export function addressOf(fileURL) {
  if (!fileURL?.startsWith('file:///')) return '';
  const path = fileURL.slice('file:///'.length).split('/').map(encodeURIComponent).join('/');
  return new URL('files/' + path, document.baseURI).href;
}
