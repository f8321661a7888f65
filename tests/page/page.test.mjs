// The panel's page in a browser, against the real host, plug-in and agent: what a user does there, and what the server
// refuses.
import assert from 'node:assert/strict';
import fs from 'node:fs';
import http from 'node:http';
import net from 'node:net';
import path from 'node:path';
import {after, before, test} from 'node:test';
import {Host, heard, kSamples, openPanel, startBrowser, violations} from './harness.mjs';

const host = new Host();
let address, browser, page;

before(async () => {
  address = await host.start([path.join(kSamples, 'poster.psd')]);
  browser = await startBrowser();
  page = await openPanel(browser, address, {deviceScaleFactor: 2});
});

after(async () => {
  await browser?.close();
  await host.stop();
});

const row = (name, state = '') =>
  page.locator(`.row.font:not([hidden])${state && `[data-state=${state}]`}`, {has: page.locator('.caption', {hasText: new RegExp(`^${name}$`)})}).first();
const search = (words) => page.fill('#search', words);
const list = (name) => page.locator('#lists .list', {hasText: new RegExp(`^${name}$`)});
// Before a click: a row that shows another font may be filled anew under the pointer.
const onlyShown = (start) =>
  page.waitForFunction((text) => {
    const names = [...document.querySelectorAll('.row.font:not([hidden]) .caption')].map((caption) => caption.textContent);
    return names.length > 0 && names.every((name) => name.startsWith(text));
  }, start);
const countIs = (text) => page.locator('#count', {hasText: text}).waitFor();

test('fonts are listed with those of the open document first, and drawn in their own design', async () => {
  await page.locator('.row.section', {hasText: 'In open documents'}).waitFor();
  assert.equal(await page.locator('.row[aria-rowindex="2"]:not([hidden]) .name').textContent(), 'Liberation Serif');
  const picture = row('LiberationSerif-Bold').locator('.preview');
  await picture.and(page.locator('[src$="%402x.png"]')).waitFor();
  await page.waitForFunction(() => [...document.querySelectorAll('.preview')].some((image) => image.naturalHeight === 60));
  assert.equal(await row('LiberationSerif-Bold').getAttribute('data-state'), 'active');
  // Few rows are in the page, however many fonts there are.
  assert.ok((await page.locator('.row').count()) < 60);
});

test('a family is activated for every program', async () => {
  await search('nimbus mono');
  await onlyShown('NimbusMonoPS-');
  await row('NimbusMonoPS-Bold').hover();
  await row('NimbusMonoPS-Bold').locator('button').click();
  await heard(page, '“Nimbus Mono PS Bold” and its family are active now.');
  for (const face of ['Regular', 'Bold', 'Italic', 'BoldItalic']) await host.until(() => host.activeFonts().includes(`NimbusMonoPS-${face}`));
  await row('NimbusMonoPS-Italic', 'active').waitFor();
});

test('a family is deactivated, and comes back with "Undo"', async () => {
  const faces = ['Regular', 'Bold', 'Italic', 'BoldItalic'].map((face) => `NimbusMonoPS-${face}`);
  await row('NimbusMonoPS-Bold', 'active').hover();
  await row('NimbusMonoPS-Bold', 'active').locator('button', {hasText: 'Deactivate'}).click();
  await heard(page, '4 fonts are inactive now.');
  await row('NimbusMonoPS-Italic', 'active').waitFor({state: 'hidden'});
  await host.until(() => faces.every((face) => !host.activeFonts().includes(face)));
  await page.locator('.notice button', {hasText: 'Undo'}).click();
  await row('NimbusMonoPS-Italic', 'active').waitFor();
  await host.until(() => faces.every((face) => host.activeFonts().includes(face)));
});

test('a font takes the place of another one with its name, unless a document uses that', async () => {
  const activate = async (name) => {
    await search(name);
    await onlyShown(name);
    await row(name, 'inactive').hover();
    const fontID = await row(name, 'inactive').getAttribute('data-font');
    await row(name, 'inactive').locator('button').click();
    const other = page.locator(`.row[data-font="${fontID}"]:not([hidden])`);
    await other.locator('.problem', {hasText: 'has the same name and is active'}).waitFor();
    return other;
  };
  const second = await activate('NimbusMonoPS-Bold');
  // The two have the same name, but files of different kinds.
  const facts = () => page.locator('#details .facts', {hasText: /OpenType|Type 1/}).textContent();
  const kind = (await facts()).split(' · ')[1];
  await page.click('#details-other');
  await page.locator('.row.current[data-state=active]:not([hidden])').waitFor();
  await page.locator('#details .facts', {hasText: 'Active'}).waitFor();
  assert.notEqual((await facts()).split(' · ')[1], kind);
  await second.hover();
  await second.locator('button', {hasText: 'Use this one'}).click();
  await second.and(page.locator('[data-state=active]')).waitFor();
  assert.equal(await row('NimbusMonoPS-Bold', 'active').count(), 1);
  const kept = await activate('NimbusSans-Bold');
  await kept.locator('button', {hasText: 'Use this one'}).click();
  await kept.locator('.problem', {hasText: 'poster.psd'}).waitFor();
  await row('NimbusSans-Bold', 'active').locator('.problem', {hasText: 'The open document “poster.psd” uses it.'}).waitFor();
  assert.ok(host.activeFonts().includes('NimbusSans-Bold'));
});

test('the keyboard alone finds a font, activates and deactivates it', async () => {
  await page.locator('#fonts').focus();
  await page.keyboard.press('/');
  await page.keyboard.type('c059 italic');
  for (let i = 0; i < 10 && (await page.evaluate(() => document.activeElement.id)) !== 'fonts'; ++i) await page.keyboard.press('Tab');
  await page.keyboard.press('Home');
  await page.keyboard.press('ArrowRight');
  await page.locator('#fonts[aria-activedescendant] .row.font.current').waitFor();
  await page.keyboard.press('Enter');
  await host.until(() => host.activeFonts().includes('C059-Italic'));
  await page.locator('.row.current[data-state=active]').waitFor();
  await page.keyboard.press('Enter');
  await host.until(() => !host.activeFonts().includes('C059-Italic'));
  await page.locator('.row.current[data-state=inactive]').waitFor();
  await page.keyboard.press('Enter');
  await host.until(() => host.activeFonts().includes('C059-Italic'));
});

test('a smart list is created, queried, renamed, deleted and brought back', async () => {
  await search('');
  await page.click('.new-list >> visible=true');
  await page.fill('#list-name', 'Catalogue');
  const library = page.locator('#list-parts label', {hasText: 'Library'}).first();
  await library.click();
  await page.locator('#list-count', {hasText: /^[1-9]\d* fonts$/}).waitFor();
  const count = await page.locator('#list-count').textContent();
  await page.click('#list-form [type=submit]');
  await page.locator('#list-title', {hasText: 'Catalogue'}).waitFor();
  await countIs(count);
  await page.click('#edit-list');
  await library.locator('input:checked').waitFor();
  await page.fill('#list-name', 'Autumn');
  await library.click();
  await page.locator('#list-count', {hasText: /^0 fonts$/}).waitFor();
  await page.click('#list-form [type=submit]');
  await list('Autumn').waitFor();
  await countIs('0 fonts');
  await page.click('#delete-list');
  await list('Autumn').waitFor({state: 'detached'});
  await page.locator('.notice', {hasText: 'Autumn'}).locator('button', {hasText: 'Undo'}).click();
  await list('Autumn').waitFor();
  await list('Autumn').press('Delete');
  await list('Autumn').waitFor({state: 'detached'});
});

test('fonts are sorted and filtered', async () => {
  await list('All fonts').click();
  await search('roman');
  const first = (name) => page.locator('.row[aria-rowindex="1"]:not([hidden])', {hasText: name}).waitFor();
  await first('C059');
  await page.selectOption('#sort', 'reverse');
  await first('P052');
  await page.click('#filter-details summary');
  await page.selectOption('#filter-active', 'active');
  await page.waitForFunction(() => {
    const states = [...document.querySelectorAll('.row.font:not([hidden])')].map((row) => row.dataset.state);
    return states.length > 0 && states.every((state) => state === 'active');
  });
  await page.selectOption('#filter-location', 'system');
  await page.locator('#filter-count', {hasText: '2'}).waitFor();
  await page.locator('#empty', {hasText: 'No font'}).waitFor();
  await page.locator('#filter-location').press('Escape');
  await page.locator('#filters').waitFor({state: 'hidden'});
  await page.click('#empty-act');
  await countIs(/^\d+ fonts$/);
  await page.selectOption('#sort', 'name');
});

test('fonts are filtered by kind and by library, also those that come later', async () => {
  await search('');
  const own = path.join(host.folder, 'own');
  fs.mkdirSync(own);
  fs.renameSync(host.makeTinyFonts(8), path.join(own, 'first'));
  host.nexctl('workgroup', 'create', 'Headlines', own);
  await page.click('#filter-details summary');
  await page.locator('#filter-library option', {hasText: 'Headlines'}).waitFor({state: 'attached'});
  // Whatever fonts the system has itself.
  for (const [library, kind, count] of [
    ['Headlines', 'Any', 8], ['Headlines', 'PostScript Type 1', 0], ['Font Library', 'PostScript Type 1', 35], ['Font Library', 'Any', 82],
    ['Font Library', 'OpenType (TrueType)', 12], ['Headlines', 'TrueType', 8],
  ]) {
    await page.selectOption('#filter-library', {label: library});
    await page.selectOption('#filter-kind', {label: kind});
    await countIs(new RegExp(`^${count} of`));
  }
  await onlyShown('Tiny');
  fs.renameSync(host.makeTinyFonts(12), path.join(own, 'second'));
  await countIs(/^20 of/);
  await page.click('#filter-clear');
  await countIs(/^\d+ fonts$/);
  host.nexctl('workgroup', 'delete', '11');
  await page.locator('#filter-library option', {hasText: 'Headlines'}).waitFor({state: 'detached'});
  await page.click('#filter-details summary');
});

test('the selected list is remembered, and no other one is read first', async () => {
  await list('Active').click();
  await search('mono');
  await row('NimbusMonoPS-Bold').waitFor();
  const asked = [];
  page.once('websocket', (socket) => socket.on('framesent', ({payload}) => asked.push(JSON.parse(JSON.parse(payload).data))));
  await page.reload();
  await page.locator('#list-title', {hasText: 'Active'}).waitFor();
  await countIs(/^\d\d fonts$/);
  assert.deepEqual(new Set(asked.filter(({messageID}) => messageID === 40).map(({smartListID}) => smartListID)), new Set([2, 3]));
});

test("the user's own text and its size stay when the page is loaded again", async () => {
  const sample = row('LiberationSerif-Bold').locator('.sample');
  const fontSize = () => sample.evaluate((element) => parseFloat(getComputedStyle(element).fontSize));
  await list('All fonts').click();
  await search('serif-bold');
  await page.fill('#sample', 'Grüße 123');
  await sample.and(page.locator('[style*="font"]'), {hasText: 'Grüße 123'}).waitFor();
  const size = await fontSize();
  await page.locator('#size').fill('2');
  assert.ok((await fontSize()) > size * 1.7);
  await page.reload();
  await search('serif-bold');
  await sample.filter({hasText: 'Grüße 123'}).waitFor();
  assert.match(await sample.evaluate((element) => element.style.fontFamily), /^font\d+$/);
  assert.ok((await fontSize()) > size * 1.7);
  await page.fill('#sample', '');
  await row('LiberationSerif-Bold').locator('.preview[src]').waitFor();
  await page.locator('#size').fill('1.1');
});

test('web fonts are enabled from the page, which follows when somebody else disables them', async () => {
  await list('All fonts').click();
  await search('tiny');
  assert.ok(await page.locator('#web-fonts').isHidden());
  host.nexctl('webfonts', 'folder', host.makeTinyFonts(4));
  await page.click('#web-fonts-on');
  await page.locator('#web-fonts .text', {hasText: 'Web fonts are on'}).waitFor();
  await row('Tiny0-Bold').waitFor();
  assert.ok(await page.locator('#web-fonts-on').isHidden());
  host.nexctl('webfonts', 'disable');
  await page.locator('#web-fonts-on').waitFor();
  await row('Tiny0-Bold').waitFor({state: 'hidden'});
});

test('progress of a scan moves', async () => {
  await list('All fonts').click();
  // A fast machine reads a small library between two steps of the progress.
  const hasMoved = () => window.said.filter((text) => text.startsWith('Reading fonts')).length > 1;
  for (let count = 3000; !(await page.evaluate(hasMoved)); count *= 4) {
    assert.ok(count < 200_000);
    host.addTinyFonts(count);
    await page.waitForFunction(hasMoved, null, {timeout: 10_000}).catch(() => {});
  }
  await page.locator('#progress').waitFor({state: 'hidden'});
});

test('no rule of accessibility is broken, in no theme, and nothing is cut off at any width', async () => {
  for (const colorScheme of ['light', 'dark']) {
    await page.emulateMedia({colorScheme});
    await page.locator('#fonts').focus();
    assert.deepEqual(await violations(page), [], colorScheme);
    await page.click('.new-list >> visible=true');
    assert.deepEqual(await violations(page), [], `${colorScheme}, dialog`);
    await page.click('#list-cancel');
  }
  for (const width of [320, 500, 900, 2560]) {
    await page.setViewportSize({width, height: 600});
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth), `at ${width}`);
    // A short list fills the window, too.
    assert.equal(await page.evaluate(() => document.querySelector('footer').getBoundingClientRect().bottom), 600, `at ${width}`);
  }
  await page.setViewportSize({width: 1100, height: 720});
});

test('every language has every text', async () => {
  // As a module whatever Node makes of the file's name.
  const source = (language) => fs.readFileSync(path.join(kSamples, `../panel/texts-${language}.js`), 'utf8');
  const texts = (language) => import(`data:text/javascript,${encodeURIComponent(source(language))}`).then((module) => module.default);
  const english = await texts('en');
  const places = (text) => [...text.matchAll(/\{\w+\}/g)].map(String).sort();
  for (const language of ['de', 'es', 'fr', 'it', 'ja', 'pt']) {
    const others = await texts(language);
    assert.deepEqual(Object.keys(others), Object.keys(english), language);
    for (const key of Object.keys(english)) assert.deepEqual(places(others[key]), places(english[key]), `${language} ${key}`);
  }
});

test('the browser need not find the modules one after another', () => {
  const listed = (file) => file.endsWith('.js') && file !== 'app.js' && !/^texts-(?!en)/.test(file);
  const folder = path.join(kSamples, '../panel');
  const page = fs.readFileSync(path.join(folder, 'index.html'), 'utf8');
  assert.deepEqual([...page.matchAll(/"modulepreload" href="([^"]*)"/g)].map(([, file]) => file), fs.readdirSync(folder).filter(listed).sort());
});

// Returns the status of a request with exactly this path.
function ask(pathOfRequest, headers = {}) {
  const {port} = new URL(address);
  return new Promise((resolve, reject) => {
    const request = http.request({host: '127.0.0.1', port, path: pathOfRequest, headers}, (response) => {
      response.resume();
      resolve(response.statusCode);
    });
    request.on('error', reject);
    request.end();
  });
}

test('the server gives nothing to others, and says so in its log', async () => {
  const {port, pathname} = new URL(address);
  const secret = path.join(host.folder, 'secret');
  fs.writeFileSync(secret, 'secret');
  assert.equal(await ask(pathname), 200);
  for (const [target, headers] of [
    ['/'], ['/app.js'], ['/' + 'f'.repeat(64) + '/'], [pathname, {Host: `fonts.example:${port}`}], [pathname, {Origin: 'http://fonts.example'}],
    [`${pathname}files${secret}`], [`${pathname}files/../../..${secret}`], [`${pathname}files${host.state}/agent/previews/%2e%2e/user.db`],
  ]) {
    assert.ok((await ask(target, headers)) >= 400, target);
  }
  for (const reason of ['wrong one', 'another host name', 'another origin', 'not for pages', 'leaves its folder']) {
    await host.until(() => host.log().includes(reason));
  }
  // Garbage, and a client that connects and says nothing, leave the others working.
  const silent = net.connect(port, '127.0.0.1');
  const garbage = net.connect(port, '127.0.0.1', () => garbage.write('\x16\x03\x01 nothing of HTTP\r\n\r\n'));
  await new Promise((resolve) => garbage.on('close', resolve).on('error', () => {}));
  assert.equal(await ask(pathname), 200);
  silent.destroy();
});

test('a page that sends something else than events is disconnected and comes back', async () => {
  const frames = ['not json', '[]', '{"type":1,"data":""}', '{"type":"x"}', 'x'.repeat(2 << 20)];
  const codes = await page.evaluate(async (texts) => {
    const close = (text) => new Promise((resolve) => {
      const socket = new WebSocket(new URL('events', document.baseURI.replace(/^http/, 'ws')));
      socket.onopen = () => socket.send(text);
      socket.onclose = resolve;
    });
    for (const text of texts) await close(text);
    return texts.length;
  }, frames);
  assert.equal(codes, frames.length);
  await page.locator('#banner', {hasText: 'another window'}).waitFor();
  await page.click('#banner button');
  await row('LiberationSerif-Bold').waitFor();
  // Messages that mean nothing to the plug-in, and those whose handlers fail, disturb nobody.
  await page.evaluate(() => {
    const socket = new WebSocket(new URL('events', document.baseURI.replace(/^http/, 'ws')));
    const send = (data) => socket.send(JSON.stringify({type: 'com.velorant.PanelToPlugin', data}));
    return new Promise((resolve) => {
      socket.onmessage = ({data}) => data.includes('isWindows') && socket.close();
      socket.onclose = resolve;
      socket.onopen = () => ['', '(', '[]', '{"messageID":-1}', '{"messageID":36,"smartListID":1}', '{"messageID":16}'].forEach(send);
    });
  });
});

test('a page that has lost its connection connects again by itself', async () => {
  await page.reload();
  await page.locator('.row.section').first().waitFor();
  await page.evaluate(() => {
    const send = WebSocket.prototype.send;
    WebSocket.prototype.send = function () {
      WebSocket.prototype.send = send;
      send.call(this, 'nothing that the server takes');
    };
  });
  await list('Active').click();
  await heard(page, 'No connection to the document host.');
  await page.locator('#state[data-kind=ok]').waitFor();
  await page.locator('#banner').waitFor({state: 'hidden'});
  await list('All fonts').click();
  await row('LiberationSerif-Bold', 'active').waitFor();
});

test('a newer page takes the place of an older one', async () => {
  const second = await openPanel(browser, address, {locale: 'de'});
  await second.locator('.row.font:not([hidden])').first().waitFor();
  assert.equal(await second.locator('#list-title').textContent(), 'Alle Schriften');
  await page.locator('#banner', {hasText: 'another window'}).waitFor();
  await page.click('#banner button');
  await row('LiberationSerif-Bold').waitFor();
  await second.locator('#banner', {hasText: 'einem anderen Fenster'}).waitFor();
  assert.deepEqual(second.faults, []);
});

test('a window of its own has the size again that it had last', async () => {
  const tab = await openPanel(browser, address, {viewport: null});
  const openWindow = async (size) => {
    const opening = tab.waitForEvent('popup');
    await tab.evaluate((features) => void window.open(location.href, '', features), `popup,${size}`);
    return opening;
  };
  const isAsLarge = ([width, height]) => innerWidth === width && innerHeight === height;
  const first = await openWindow('width=500,height=400');
  await first.waitForFunction(isAsLarge, [260, 350]);
  const size = await first.evaluate(() => new Promise((resolve) => {
    const send = WebSocket.prototype.send;
    WebSocket.prototype.send = function (text) {
      send.call(this, text);
      if (text.includes('windowWidth')) resolve([innerWidth, innerHeight]);
    };
    resizeTo(530, 620);
  }));
  await first.close();
  const second = await openWindow('width=500,height=400');
  await second.waitForFunction(isAsLarge, size);
  await tab.context().close();
  await page.locator('#banner', {hasText: 'another window'}).waitFor();
  await page.click('#banner button');
  await row('LiberationSerif-Bold').waitFor();
});

test('a font of an open document whose file has gone is marked, and stays first', async () => {
  await search('');
  host.removeFont('LiberationSerif-Bold.ttf');
  const missing = row('LiberationSerif-Bold', 'missing');
  await missing.locator('.badge', {hasText: 'Missing'}).waitFor();
  assert.ok(Number(await missing.getAttribute('aria-rowindex')) < 8);
  await missing.locator('.problem', {hasText: 'no longer in the library'}).waitFor();
  assert.ok(await missing.locator('button').isHidden());
});

test('the page has had no fault', () => {
  assert.deepEqual(page.faults.filter((fault) => !fault.includes('WebSocket')), []);
});

// Returns whether the plug-in went on: in the moment without an agent it may have looked for one, and switched itself off.
async function killAgentOf(lonely) {
  const panel = await openPanel(browser, await lonely.start());
  await panel.fill('#search', 'p052');
  const roman = panel.locator('.row.font:not([hidden])', {has: panel.locator('.caption', {hasText: /^P052-Roman$/})}).first();
  await roman.hover();
  lonely.killAgent();
  await heard(panel, 'The font manager has stopped.');
  await heard(panel, 'The font manager is back.');
  await roman.locator('button').click();
  await lonely.until(() => lonely.activeFonts().includes('P052-Roman') || lonely.output.includes('cannot reach the font manager'));
  const hasGoneOn = lonely.activeFonts().includes('P052-Roman');
  await (hasGoneOn ? panel.locator('#banner').waitFor({state: 'hidden'}) : heard(panel, 'The plug-in has lost the font manager.'));
  return hasGoneOn;
}

test('the page says that the agent has stopped, and goes on when it is back', async () => {
  let hasGoneOn = false;
  for (let attempt = 0; attempt < 3 && !hasGoneOn; ++attempt) {
    const lonely = new Host();
    hasGoneOn = await killAgentOf(lonely).finally(() => lonely.stop());
  }
  assert.ok(hasGoneOn);
});

test('a font that the font manager refuses says so where it is', async () => {
  const strict = new Host();
  fs.mkdirSync(strict.state);
  fs.writeFileSync(path.join(strict.state, 'nexcore.json'), JSON.stringify({refused: ['P052-Bold']}));
  try {
    const panel = await openPanel(browser, await strict.start());
    await panel.fill('#search', 'p052-bold');
    const refused = panel.locator('.row.font:not([hidden])', {has: panel.locator('.caption', {hasText: /^P052-Bold$/})}).first();
    await refused.hover();
    await refused.locator('button').click();
    await refused.locator('.problem', {hasText: 'may not be activated here'}).waitFor();
    assert.ok(!strict.activeFonts().includes('P052-Bold\n'));
  } finally {
    await strict.stop();
  }
});
