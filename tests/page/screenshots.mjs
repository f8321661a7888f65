// screenshots.mjs FOLDER - takes the pictures of the panel that the documents show: both themes, three widths.
import path from 'node:path';
import {Host, kSamples, openPanel, startBrowser} from './harness.mjs';

const kPictures = [
  {name: 'panel-light', colorScheme: 'light', viewport: {width: 1000, height: 640}},
  {name: 'panel-dark', colorScheme: 'dark', viewport: {width: 1000, height: 640}},
  {name: 'panel-narrow', colorScheme: 'light', viewport: {width: 320, height: 560}},
  {name: 'panel-wide', colorScheme: 'dark', viewport: {width: 2560, height: 900}},
];

const folder = process.argv[2];
const host = new Host();
const address = await host.start([path.join(kSamples, 'poster.psd')]);
const browser = await startBrowser();
for (const {name, ...options} of kPictures) {
  const page = await openPanel(browser, address, options);
  await page.locator('.row.section', {hasText: 'In open documents'}).waitFor();
  // Until every picture in view is there.
  await page.waitForFunction(() => {
    const rows = [...document.querySelectorAll('.row.font:not([hidden])')].filter((row) => row.getBoundingClientRect().top < innerHeight);
    return rows.length > 0 && rows.every((row) => row.querySelector('.preview').naturalHeight > 0);
  });
  await page.screenshot({path: path.join(folder, `${name}.png`)});
  await page.context().close();
}
await browser.close();
await host.stop();
