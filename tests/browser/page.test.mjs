// What a reader does with the page: reads, filters, folds, follows links, prints, with and without
// scripts, in light and dark.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { after, before, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { killedPage, manyPage, open, picture, samplePage, startBrowser } from './pages.mjs';

const axe = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');

let browser;
let sample;
let killed;

before(async () => {
  browser = await startBrowser();
  sample = samplePage();
  killed = await killedPage();
});
after(() => browser.close());

const visible = (page, selector) => page.locator(selector + ':visible').count();
// Looks again until it is so; the page forbids itself what a wait inside it would need.
async function until(page, isSo, argument) {
  const end = performance.now() + 30_000;
  while (!(await page.evaluate(isSo, argument))) {
    assert.ok(performance.now() < end, 'it does not come to ' + isSo + ' with ' + argument);
    await page.waitForTimeout(20);
  }
}

const found = (page, text) => until(
  page, (wanted) => document.getElementById('found').textContent === wanted, text);
const shown = (page, count) => until(
  page, (wanted) => document.querySelectorAll('details.t:not([hidden])').length === wanted, count);

// How often the failing tests stand in the file, whatever shows of them.
const failedTests = (address) =>
  readFileSync(fileURLToPath(address), 'utf8').match(/<details class="t [fa]"/g).length;

test('the head tells the verdict, and every failed test leads to its log', async () => {
  const page = await open(browser, sample);
  assert.equal(await page.locator('h1').textContent(), 'USB descriptors');
  assert.equal(await page.locator('.verdict .pill').textContent(), 'Failed');
  assert.equal(await page.locator('#failures li').count(), failedTests(sample));
  await page.locator('#failures a').nth(3).click();
  const target = await page.evaluate(() => location.hash);
  assert.ok(await page.locator(target + ' .log li.f').first().isVisible());
  assert.deepEqual(page.complaints, []);
  await picture(page, 'followed');
});

test('tests fold and unfold, with the keyboard too', async () => {
  const page = await open(browser, sample);
  const passed = page.locator('details.t.p').first();
  assert.equal(await passed.locator('li').count(), 0);
  await passed.locator('summary').focus();
  await page.keyboard.press('Enter');
  await passed.locator('li').first().waitFor();
  await page.keyboard.press('Enter');
  assert.equal(await passed.evaluate((each) => each.open), false);
  await page.click('#unfold');
  assert.equal(await page.locator('details.t:not([open])').count(), 0);
  await page.click('#fold');
  assert.equal(await page.locator('details.t[open]').count(), 0);
});

test('the filter finds a text and a status, and gives everything back', async () => {
  const page = await open(browser, sample);
  await page.fill('#q', 'D7 IS RESERVED');
  await found(page, '1 entry in 1 test');
  assert.equal(await visible(page, 'details.t'), 1);
  assert.match(await page.locator('.log li:visible').textContent(), /D7 is reserved/);
  await picture(page, 'found');
  await page.fill('#q', '');
  for (const value of ['w', 'iu', 'qd']) await page.uncheck(`input[value=${value}]`);
  await shown(page, failedTests(sample));
  assert.equal(await visible(page, '.log li:not(.f)'), 0);
  for (const value of ['w', 'iu', 'qd']) await page.check(`input[value=${value}]`);
  await found(page, '');
  assert.equal(await page.locator('details.t[hidden]').count(), 0);
  await page.check('#bad');
  await shown(page, failedTests(sample));
});

test('a text with markup is found as it reads', async () => {
  const page = await open(browser, manyPage('markup', 3, 5, 0));
  await page.fill('#q', '"<ok>" & goes on, round 5');
  await found(page, '3 entries in 3 tests');
  await page.fill('#q', 'amp;');
  await found(page, '0 entries in 0 tests');
});

test('a link to an entry unfolds its test and shows it', async () => {
  const address = manyPage('linked', 20, 1000, 0);
  const page = await open(browser, address + '#e7-777');
  const entry = page.locator('#e7-777');
  await entry.waitFor();
  assert.match(await entry.textContent(), /round 776 of 1000/);
  await until(page, () => {
    const each = document.getElementById('e7-777');
    const place = each.getBoundingClientRect();
    return place.top >= 0 && place.bottom <= innerHeight && each.contains(document.activeElement);
  });
  await page.evaluate(() => { location.hash = '#e9-3'; });
  await page.locator('#e9-3.here').waitFor();
  await picture(page, 'entry');
});

test('without scripts every entry and every failure is there', async () => {
  const page = await open(browser, sample, { javaScriptEnabled: false });
  const failures = readFileSync(fileURLToPath(sample), 'utf8').match(/<li id=\S+ class="f/g).length;
  assert.equal(await page.locator('.log li.f').count(), failures);
  assert.equal(await visible(page, '.log li.f'), failures);
  assert.equal(await visible(page, '.tools'), 0);
  await picture(page, 'without-scripts');
});

test('the page of a killed run says which test died', async () => {
  for (const javaScriptEnabled of [true, false]) {
    const page = await open(browser, killed, { javaScriptEnabled });
    const died = page.locator('details.t:not(:has(> .r))');
    assert.equal(await died.locator('h3').textContent(), 'T1');
    assert.ok(await died.locator('.pill').isVisible());
    assert.equal(await died.locator('.pill').textContent(), 'Not finished');
    assert.match(await died.locator('li').nth(1).textContent(), /entry 1/);
    assert.equal(await visible(page, 'details.t:has(> .r) > summary .pill'), 0);
    if (javaScriptEnabled) await picture(page, 'killed');
  }
});

for (const colorScheme of ['light', 'dark'])
  test(`nothing keeps anybody from reading it in ${colorScheme}`, async () => {
    for (const address of [sample, killed]) {
      const page = await open(browser, address, { colorScheme });
      await page.evaluate(() => document.querySelectorAll('.group').forEach((each) => { each.open = true; }));
      await page.evaluate(axe);
      const { violations } = await page.evaluate(() => window.axe.run(document, {
        runOnly: ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa', 'wcag22aa', 'best-practice'] }));
      assert.deepEqual(violations.map((each) => [each.id, each.nodes[0].html, each.nodes[0].failureSummary]), []);
      if (address === sample) await picture(page, colorScheme, true);
    }
  });

test('on paper everything is unfolded and light, and afterwards folded as before', async () => {
  const page = await open(browser, sample, { colorScheme: 'dark' });
  await page.emulateMedia({ media: 'print' });
  await page.evaluate(() => dispatchEvent(new Event('beforeprint')));
  assert.equal(await page.locator('details:not([open])').count(), 0);
  const entries = await page.evaluate(() => [...document.querySelectorAll('details.t')]
    .reduce((sum, each) => sum + Number(each.dataset.n), 0));
  assert.equal(await page.locator('.log li').count(), entries);
  assert.equal(await visible(page, '.tools'), 0);
  assert.equal(await page.evaluate(() => getComputedStyle(document.body).color), 'rgb(29, 34, 41)');
  await page.evaluate(() => dispatchEvent(new Event('afterprint')));
  assert.ok(await page.locator('details.t.p:not([open])').count() > 0);
});

test('a narrow window has no need to scroll sideways', async () => {
  const page = await open(browser, sample, { viewport: { width: 360, height: 700 } });
  assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth));
  await picture(page, 'narrow');
});

test('a narrow window leaves texts most of its width, and the filter does not stand over them', async () => {
  const page = await open(browser, sample, { viewport: { width: 360, height: 700 } });
  await page.locator('#failures a').first().click();
  await until(page, () => document.querySelector('.tools').getBoundingClientRect().bottom <= 0);
  for (const selector of ['.log li.f span', '#failures li p']) {
    const width = await page.locator(selector).first().evaluate((each) => each.getBoundingClientRect().width);
    assert.ok(width >= 220, `${selector} is ${width} wide`);
  }
  await picture(page, 'narrow-log');
});

// Time from the order to open until everything has happened that opening brings.
async function secondsToOpen(address, options) {
  const begin = performance.now();
  const page = await open(browser, address, options);
  const seconds = (performance.now() - begin) / 1000;
  return [page, seconds];
}

test('a run of 1,000,000 entries opens with every failure', { timeout: 300_000 }, async (t) => {
  const address = manyPage('million', 10_000, 95, 500);
  const [page, seconds] = await secondsToOpen(address);
  t.diagnostic(`opened in ${seconds.toFixed(2)} s`);
  assert.match(await page.locator('#tests > .more').textContent(), /^[78]\d{5} entries of information/);
  await page.fill('#q', 'test 9500 has failed');
  await found(page, '1 entry in 1 test');
  await page.context().close();
  const [bare, bareSeconds] = await secondsToOpen(address, { javaScriptEnabled: false });
  t.diagnostic(`without scripts in ${bareSeconds.toFixed(2)} s`);
  assert.equal(await bare.locator('.log li.f').count(), 20);
  await bare.context().close();
});
