// speed.mjs - measures the page with a library of 20,000 fonts. Prints a line for each figure: value, floor, greatest ratio,
// unit and name, separated by tabs. The page itself takes the times. Other programs can only make them longer, so the best of
// some runs counts.
import assert from 'node:assert/strict';
import {Host, startBrowser} from './harness.mjs';

const kFonts = 20_000;
const kRuns = 3;
const kStep = 900; // pixels that a frame scrolls: more than the view is high, so every frame shows other rows

const report = (name, limit, value, floor, unit) => console.log([value, floor, limit, unit, name].join('\t'));

// In the page: notes when the first list is there and every row in view has its picture.
function watchOpening() {
  const isInView = (row) => {
    const place = row.getBoundingClientRect(), view = document.getElementById('fonts').getBoundingClientRect();
    return place.top < view.bottom && place.bottom > view.top;
  };
  const look = () => {
    const rows = [...document.querySelectorAll('.row.font:not([hidden])')].filter(isInView);
    const isShown = rows.length > 0 && rows.every((row) => row.querySelector('.preview').naturalHeight > 0);
    if (isShown) window.shownAt = performance.now();
    else requestAnimationFrame(look);
  };
  requestAnimationFrame(look);
}

// Resolves with a page that shows its first rows, and the milliseconds that this took.
async function open(browser, address) {
  const page = await browser.newPage({viewport: {width: 1100, height: 720}, locale: 'en'});
  await page.addInitScript(watchOpening);
  await page.goto(address);
  const time = await (await page.waitForFunction(() => window.shownAt)).jsonValue();
  return {page, time};
}

async function openingTime(browser, address) {
  const {page, time} = await open(browser, address);
  await page.close();
  return time;
}

// Scrolls through all rows. Resolves with the milliseconds between the frames.
function scrollThrough(page) {
  return page.evaluate(async (step) => {
    const view = document.getElementById('fonts');
    const frame = () => new Promise(requestAnimationFrame);
    const bottom = view.scrollHeight - view.clientHeight;
    view.scrollTop = 0;
    const times = [await frame()];
    for (let top = step; top < bottom + step; top += step) {
      view.scrollTop = top;
      times.push(await frame());
    }
    return times.slice(1).map((time, i) => time - times[i]);
  }, kStep);
}

// Of the page's script, in MiB, without what is no longer used.
async function memoryOf(client) {
  await client.send('HeapProfiler.collectGarbage');
  const {usedSize} = await client.send('Runtime.getHeapUsage');
  return usedSize / (1 << 20);
}

async function measureOpening(browser, full, empty) {
  let time = Infinity, floor = Infinity;
  for (let i = 0; i < kRuns; ++i) {
    floor = Math.min(floor, await openingTime(browser, empty));
    time = Math.min(time, await openingTime(browser, full));
  }
  report('first rows of 20,000 fonts / of no library', 3, time, floor, 'ms');
  report('first rows of 20,000 fonts / a second', 1, time, 1000, 'ms');
}

async function measureScrolling(browser, address) {
  const {page} = await open(browser, address);
  const client = await page.context().newCDPSession(page);
  let longest = [], memory = 0;
  for (let i = 0; i < kRuns; ++i) {
    const frames = await scrollThrough(page);
    assert.ok(frames.length * kStep > 50 * kFonts, 'there are fewer rows than fonts');
    longest = frames.map((time, place) => Math.min(time, longest[place] ?? time));
    if (i === 0) memory = await memoryOf(client);
  }
  report('longest frame of scrolling all / 50 ms', 1, Math.max(...longest), 50, 'ms');
  report('memory after scrolling thrice / once', 1.1, await memoryOf(client), memory, 'MB');
  await page.close();
}

const full = new Host([]), empty = new Host([]);
const browser = await startBrowser();
try {
  full.addTinyFonts(kFonts);
  const address = await full.start(), emptyAddress = await empty.start();
  const {page} = await open(browser, address);
  await page.waitForFunction((fonts) => document.getElementById('count').textContent.replace(/\D/g, '') >= fonts, kFonts);
  await page.close();
  await measureOpening(browser, address, emptyAddress);
  await measureScrolling(browser, address);
} finally {
  await browser.close();
  await Promise.all([full.stop(), empty.stop()]);
}
