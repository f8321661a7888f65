// The host with the real plug-in and agent in a sandbox of its own, and a browser on its panel.
import {execFileSync, spawn} from 'node:child_process';
import fs from 'node:fs';
import {createRequire} from 'node:module';
import os from 'node:os';
import path from 'node:path';

const require = createRequire(path.join(process.env.PAGE_PACKAGES, 'package.json'));
const {chromium} = require('playwright-core');
const kAxe = fs.readFileSync(require.resolve('axe-core/axe.min.js'), 'utf8');
const kSource = path.resolve(import.meta.dirname ?? path.dirname(new URL(import.meta.url).pathname), '../..');
const kFonts = ['/usr/share/fonts/opentype/urw-base35', '/usr/share/fonts/type1/urw-base35', '/usr/share/fonts/truetype/liberation2'];
const kPatience = 120000; // milliseconds for what a loaded machine does late

export const kSamples = path.join(kSource, 'samples');

export class Host {
  folder = fs.mkdtempSync(path.join(os.tmpdir(), 'page-'));
  state = path.join(this.folder, 'state');
  library = path.join(this.folder, 'library');
  output = '';
  #process;

  // `fonts`: folders of the system that become the library.
  constructor(fonts = kFonts) {
    fs.mkdirSync(this.library);
    fonts.forEach((folder, i) => fs.cpSync(folder, path.join(this.library, `${i}`), {recursive: true, dereference: true}));
  }

  // Returns a new folder with so many tiny fonts.
  makeTinyFonts(count) {
    const prepared = path.join(this.folder, `tiny-${count}`);
    execFileSync(path.join(process.env.BUILD, 'tests/page/make_fonts'), [prepared, count]);
    return prepared;
  }

  // Adds so many tiny fonts to the library at once, so that one scan reads them all.
  addTinyFonts(count) {
    fs.renameSync(this.makeTinyFonts(count), path.join(this.library, `tiny-${count}`));
  }

  // Removes a font's file from the library.
  removeFont(name) {
    const found = fs.readdirSync(this.library).map((folder) => path.join(this.library, folder, name)).find((file) => fs.existsSync(file));
    fs.rmSync(found);
  }

  nexctl(...words) {
    execFileSync(path.join(process.env.BUILD, 'app/nexctl/nexctl'), ['--state', this.state, ...words]);
  }

  // Resolves with the panel's address.
  async start(documents = []) {
    const host = path.join(process.env.BUILD, 'app/host/host');
    const environment = {...process.env, DISPLAY: '', WAYLAND_DISPLAY: ''};
    this.#process = spawn(host, ['--state', this.state, '--library', this.library, '--panel', ...documents], {env: environment});
    const hear = (bytes) => (this.output += bytes);
    this.#process.stdout.on('data', hear);
    this.#process.stderr.on('data', hear);
    const printed = await this.until(() => /^panel: (http:\S+)$/m.exec(this.output));
    return printed[1];
  }

  // Waits until this is true and returns it.
  async until(isTrue) {
    const end = Date.now() + kPatience;
    for (;;) {
      const result = isTrue();
      if (result) return result;
      if (Date.now() > end || this.#process.exitCode !== null) throw new Error(`waited in vain for ${isTrue}\n${this.output}`);
      await new Promise((resolve) => setTimeout(resolve, 20));
    }
  }

  // The names of fonts that another program in the sandbox finds.
  activeFonts() {
    const environment = {...process.env, FONTCONFIG_FILE: path.join(this.state, 'fonts.conf')};
    return execFileSync('fc-list', [':', 'postscriptname'], {env: environment, encoding: 'utf8'});
  }

  log() {
    return fs.readFileSync(path.join(this.state, 'logs/panel.log'), 'utf8');
  }

  killAgent() {
    for (const entry of fs.readdirSync('/proc').filter((name) => /^\d+$/.test(name))) {
      let words;
      try {
        words = fs.readFileSync(`/proc/${entry}/cmdline`, 'utf8').split('\0');
      } catch {
        continue; // it has ended meanwhile
      }
      if (words[0].endsWith('/Nexcore') && words[1] === this.state) return process.kill(Number(entry), 'SIGKILL');
    }
    throw new Error('there is no agent');
  }

  async stop() {
    const hasEnded = new Promise((resolve) => this.#process.once('exit', resolve));
    if (this.#process.exitCode === null) {
      this.#process.stdin.end('quit\n');
      await hasEnded;
    }
    fs.rmSync(this.folder, {recursive: true, force: true});
  }
}

export async function startBrowser() {
  return chromium.launch({
    executablePath: '/usr/bin/chromium',
    args: [
      '--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
      '--disable-component-update', '--disable-sync', '--disable-dev-shm-usage',
    ],
  });
}

// A page on the panel. What goes wrong in it is collected in page.faults, and every text of banner and notices in the
// window's `said`, because some are there only for a moment.
export async function openPanel(browser, address, options = {}) {
  const context = await browser.newContext({viewport: {width: 1100, height: 720}, locale: 'en', ...options});
  const page = await context.newPage();
  page.setDefaultTimeout(kPatience);
  page.faults = [];
  page.on('pageerror', (error) => page.faults.push(error.stack));
  page.on('console', (message) => {
    if (message.type() === 'error') page.faults.push(message.text());
  });
  await page.addInitScript(() => {
    window.said = [];
    addEventListener('DOMContentLoaded', () => {
      const note = () => {
        for (const element of document.querySelectorAll('#banner .text, #notices span, #progress .text, #state .text')) {
          const text = element.closest('[hidden]') ? '' : element.textContent;
          if (text && !window.said.includes(text)) window.said.push(text);
        }
      };
      new MutationObserver(note).observe(document.body, {subtree: true, childList: true, characterData: true, attributes: true});
    });
  });
  await page.goto(address);
  return page;
}

export async function heard(page, text) {
  await page.waitForFunction((wanted) => window.said.some((said) => said.includes(wanted)), text);
}

export async function violations(page) {
  await page.evaluate(kAxe);
  const result = await page.evaluate(() => window.axe.run());
  return result.violations.map((violation) => `${violation.id}: ${violation.nodes.map((node) => node.html).join('; ')}`);
}
