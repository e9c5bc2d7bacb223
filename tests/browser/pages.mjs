// The pages under test, and how a browser opens them.
//
// QNEXE_BIN is the folder with the program and the suites; RECORDINGS the sample suite's recordings;
// PAGES an empty folder for what the runs write.
import { spawn, spawnSync } from 'node:child_process';
import { once } from 'node:events';
import { join } from 'node:path';
import { pathToFileURL } from 'node:url';
import { chromium } from 'playwright-core';

const bin = process.env.QNEXE_BIN;
const folder = process.env.PAGES;

const ARGUMENTS = ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
  '--disable-background-networking', '--disable-component-update', '--disable-sync'];

const suite = (name) => join(bin, 'test-suites', name + '.so');

const command = (page, words) => ['--report', `html:${page}`, ...words];

// Runs the host and returns the address of the page that it wrote.
function run(name, words, code) {
  const page = join(folder, name + '.html');
  const done = spawnSync(join(bin, 'QNExe'), command(page, words), { encoding: 'utf8', maxBuffer: 1 << 30 });
  if (done.status !== code) throw new Error(`QNExe ended with ${done.status}:\n${done.stderr}`);
  return pathToFileURL(page).href;
}

export const samplePage = () => run('sample', ['--suite', join(bin, 'usb_descriptors.so'),
  '--recordings', process.env.RECORDINGS], 1);

export const manyPage = (name, tests, entries, failEvery) => run(name, ['--suite', suite('many'),
  '--set', `Suite.Tests=${tests}`, '--set', `Suite.Entries=${entries}`,
  '--set', `Suite.FailEvery=${failEvery}`], failEvery ? 1 : 0);

// The page of a run that was killed in its first test.
export async function killedPage() {
  const page = join(folder, 'killed.html');
  const host = spawn(join(bin, 'QNExe'), command(page, ['--suite', suite('counting')]),
    { stdio: ['ignore', 'pipe', 'ignore'] });
  await once(host.stdout, 'data');
  host.kill('SIGKILL');
  await once(host, 'exit');
  return pathToFileURL(page).href;
}

// A profile of its own for each start.
export const startBrowser = () => chromium.launch({
  executablePath: process.env.CHROMIUM || '/usr/bin/chromium', args: ARGUMENTS,
});

// Opens a page; what it asks the network for, and what goes wrong in it, is kept in `complaints`.
export async function open(browser, address, options = {}) {
  const context = await browser.newContext({ viewport: { width: 1280, height: 900 }, ...options });
  const page = await context.newPage();
  page.complaints = [];
  page.on('console', (message) => {
    if (['error', 'warning'].includes(message.type())) page.complaints.push(message.text());
  });
  page.on('pageerror', (error) => page.complaints.push(String(error)));
  page.on('request', (request) => {
    if (!request.url().startsWith('file:')) page.complaints.push('asks for ' + request.url());
  });
  await page.goto(address);
  return page;
}

export const picture = (page, name, fullPage = false) => page.screenshot({
  path: join(folder, '..', 'pictures', name + '.png'), fullPage });
