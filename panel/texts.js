// The texts of the page in the user's language. Each language is a module that is loaded when it is needed; English is
// always there for a text that another lacks.
import english from './texts-en.js';

const kLanguages = ['en', 'de', 'es', 'fr', 'it', 'ja', 'pt'];
let texts = english;
let language = 'en';
let rules = new Intl.PluralRules('en');
let numbers = new Intl.NumberFormat('en');

// Loads the first language of the user's that there is.
export async function loadTexts() {
  const wanted = navigator.languages.map((tag) => tag.slice(0, 2).toLowerCase());
  language = wanted.find((tag) => kLanguages.includes(tag)) ?? 'en';
  if (language !== 'en') texts = (await import(`./texts-${language}.js`)).default;
  rules = new Intl.PluralRules(language);
  numbers = new Intl.NumberFormat(language);
  document.documentElement.lang = language;
}

// The text of a key, with {name} replaced by the value of that name.
export function t(key, values = {}) {
  const text = texts[key] ?? english[key];
  if (text === undefined) throw new Error(`no text ${key}`);
  return text.replace(/\{(\w+)\}/g, (_, name) => (typeof values[name] === 'number' ? numbers.format(values[name]) : isolated(values[name])));
}

// A name that is written from right to left does not turn round the sentence in which it stands.
const isolated = (name) => (/[\u0590-\u08ff\ufb1d-\ufefc]/.test(name) ? `\u2068${name}\u2069` : name);

export function plural(key, n, values = {}) {
  const form = rules.select(n) === 'one' ? 'one' : 'other';
  return t(`${key}.${form}`, {n, ...values});
}

// Fills the texts of the page itself: elements with data-text, data-label and data-hint name the keys.
export function fillTexts(root) {
  for (const element of root.querySelectorAll('[data-text]')) element.textContent = t(element.dataset.text);
  for (const element of root.querySelectorAll('[data-label]')) element.setAttribute('aria-label', t(element.dataset.label));
  for (const element of root.querySelectorAll('[data-hint]')) element.setAttribute('placeholder', t(element.dataset.hint));
}
