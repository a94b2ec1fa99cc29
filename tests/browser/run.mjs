// Tests the pages of `ornwhatsnew` in headless Chromium. Prints each failed check, and writes
// screenshots.
//
// usage: node run.mjs PROGRAM EXAMPLE AXE FOLDER
// EXAMPLE is the folder of the example application, AXE is the file axe.min.js of the package
// axe-core, and FOLDER receives the pages and the screenshots.
import { execFileSync } from 'node:child_process';
import { mkdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { join, resolve } from 'node:path';
import { pathToFileURL } from 'node:url';
import { Chromium } from './chromium.mjs';

const [program, example, axeFile, folder] = process.argv.slice(2).map((path) => resolve(path));
const axe = readFileSync(axeFile, 'utf8');
let checks = 0;
let failures = 0;

function check(name, problem) {
  checks += 1;
  if (!problem) return;
  failures += 1;
  console.log(`FAILED: ${name}: ${problem}`);
}

const run = (...words) => execFileSync(program, words, { cwd: folder, encoding: 'utf8' });
const exampleFile = (name) => join(example, name);

// Writes a host description that differs from that of the example, and returns its name.
function writeHost(name, changes) {
  const host = JSON.parse(readFileSync(exampleFile('host.json'), 'utf8'));
  writeFileSync(join(folder, name), JSON.stringify({ ...host, ...changes }));
  return name;
}

// ---- Pages

const data = exampleFile('whatsnew.csv');
const old = exampleFile('earlier.csv');

function writeExamplePage() {
  run('preview', data, '--host', exampleFile('host.json'), '--seen', old, '-o', 'example.html');
  return 'example.html';
}

function writePanelPage() {
  const page = run('show', data, '--host', exampleFile('host.json'), '--state', ':memory:',
    '--format', 'html');
  writeFileSync(join(folder, 'panel.html'), page);
  return 'panel.html';
}

// Writes a page whose texts, names and links contain HTML, scripts and other syntax.
function writeHostilePage() {
  const attacks = ['<script>document.title = "attacked"</script>', '</style></title></p>',
    '<img src=https://attack.example/a.png onerror=alert(1)>', "' onfocus='alert(2)' a='",
    '&lt;script&gt;alert(3)&lt;/script&gt;', '<!--', ']]>', '<style>*{display:none}</style>',
    '\u202eevil\u2066', '\u0000\u0007\u009b', '<a href=javascript:alert(4)>x</a>',
    'W'.repeat(2000), '\u05d0\u05d1', '<base href=https://attack.example/>'];
  const links = ['javascript:alert(5)', 'https://a.example/"onclick=alert(6)', 'data:text/html,<b>',
    'https://a.example/<script>', 'https://user@attack.example/', '//attack.example'];
  const columns = Array.from({ length: 10 }, (_, column) => column);
  const row = (values) => columns.map((column) => values[column] ?? '').join(',');
  const rows = [row(columns.map((column) => `Name ${column}`)), '4.2,Changes-Since'];
  for (const attack of attacks.map((text) => text.replaceAll(',', ' '))) {
    for (const column of columns) {
      rows.push(row({ 0: '4.3', 1: 'ORN-1204', 4: 'RequestRating', 9: 'Text', [column]: attack }));
    }
  }
  for (const link of links) rows.push(row({ 0: '4.3', 1: 'ORN-1204', 7: link, 9: 'Text' }));
  const name = '<img src=x onerror=alert(7)>.csv';
  writeFileSync(join(folder, name), rows.join('\n'));
  const feature = { internalKey: 'x', epicKey: 'ORN-1204', name: attacks.join(' ').replace('\0', ''),
    description: attacks[0], enabled: true };
  const host = writeHost('<b>host.json', { betaFeatures: [feature], platform: attacks[3] });
  run('preview', name, '--host', host, '--seen', name, '-o', 'hostile.html');
  return 'hostile.html';
}

// Writes a page whose findings fill more than the window, and have no links.
function writeFindingsPage() {
  const rows = ['a,b,c,d,e,f,g,h,i,j', ...Array(60).fill('4.3,MISC,,,,,,,,a, b')];
  writeFileSync(join(folder, 'findings.csv'), rows.join('\n'));
  run('preview', 'findings.csv', '--host', exampleFile('host.json'), '-o', 'findings.html');
  return 'findings.html';
}

// ---- Checks

// Returns the panel of a user as `show` prints it.
function shownText(host, state, options, file = data) {
  return run('show', file, '--host', host, '--state', state, '--format', 'plain', ...options);
}

function expectedTexts() {
  const outside = exampleFile('host.json');
  const internal = writeHost('internal.json', { internalFeaturesAllowed: true });
  const updated = writeHost('updated.json', { clientVersion: '4.2' });
  const filters = ['--platform', '--relevant-versions'];
  shownText(updated, 'updated.state', [], old);
  shownText(outside, 'rating.state', []);
  return {
    outside: shownText(outside, ':memory:', ['--platform']),
    internal: shownText(internal, ':memory:', ['--platform']),
    'first-start': shownText(outside, ':memory:', ['--only-new', ...filters]),
    seen: shownText(outside, 'updated.state', ['--only-new', ...filters]),
    rating: shownText(outside, 'rating.state', ['--rating', ...filters]),
  };
}

// Returns the visible characters of a panel. Omits what only plain text contains: bullets, the targets
// of links, and the commands for ratings.
const visible = (text) => text.replace(/^ *ornwhatsnew rate .*$/gm, '').replace(/<https:[^>]*>/g, '')
  .replace(/[\s\u2022]/g, '');

async function checkTexts(page) {
  for (const [id, text] of Object.entries(expectedTexts())) {
    // Plain text omits the descriptions of the features to rate.
    const shown = await page.evaluate(`(() => {
      const panel = document.querySelector('#${id} .ornwhatsnew').cloneNode(true);
      panel.querySelectorAll('.ornwhatsnew-rating .ornwhatsnew-description')
        .forEach((description) => description.remove());
      return panel.textContent;
    })()`);
    const differs = visible(shown) !== visible(text);
    check(`text of ${id}`, differs && `the page shows\n${shown}\ninstead of\n${text}`);
  }
}

// Presses Tab until the end of the page. Checks that the focus visits all links and the list of findings in
// their order, and that each of them has a visible focus.
async function checkKeyboard(page) {
  const selector = 'a[href], #findings';
  const stops = await page.evaluate(`document.querySelectorAll('${selector}').length`);
  const visited = [];
  let unmarked = 0;
  for (let i = 0; i < stops; ++i) {
    await page.press('Tab');
    const [index, outline] = await page.evaluate(`(() => {
      const stops = [...document.querySelectorAll('${selector}')];
      return [stops.indexOf(document.activeElement),
        getComputedStyle(document.activeElement).outlineStyle];
    })()`);
    visited.push(index);
    if (outline === 'none') unmarked += 1;
  }
  const isInOrder = visited.every((index, position) => index === position);
  check('keyboard', stops < 2 ? 'the page has no links'
    : !isInOrder && `Tab visits the elements in the order ${visited}`);
  check('focus', unmarked > 0 && `${unmarked} elements have no visible focus`);
}

// Follows each link to a panel, and checks that its change is in view, below the navigation if this is
// always visible. Checks that the texts of the last change are readable.
async function checkFindingLinks(browser, url, scheme) {
  const page = await browser.open(url, { scheme });
  const problem = await page.evaluate(`(async () => {
    const nav = document.querySelector('nav');
    const isSticky = getComputedStyle(nav).position === 'sticky';
    const links = [...document.querySelectorAll('#findings a[href]')];
    const hidden = [];
    for (const link of links) {
      link.click();
      await new Promise(requestAnimationFrame);
      const { top, bottom } = document.querySelector(':target').getBoundingClientRect();
      const start = isSticky ? nav.getBoundingClientRect().bottom : 0;
      if (top < start || bottom > innerHeight) hidden.push(link.hash);
    }
    if (links.length === 0) return 'the findings have no links';
    return hidden.length > 0 ? 'not in view: ' + hidden : '';
  })()`);
  const name = `links of the findings, ${scheme}`;
  check(name, problem);
  await checkAccessibility(page, name);
  await page.close();
}

async function checkAccessibility(page, name) {
  await page.evaluate(axe);
  const violations = await page.evaluate('axe.run().then((results) => results.violations)');
  for (const { id, impact, nodes } of violations) {
    check(`${name}: axe`, `${impact}: ${id}: ${nodes[0].html}`);
  }
  check(`${name}: axe`, '');
}

async function checkOverflow(page, name) {
  const [content, view] = await page.evaluate(
    '[document.documentElement.scrollWidth, innerWidth]');
  check(`${name}: width`, content > view && `${content} pixels instead of ${view}`);
  // Panels hide what is outside their border, so the page does not become wider.
  const cut = await page.evaluate(`[...document.querySelectorAll('.preview-panel')]
    .filter((panel) => panel.scrollWidth > panel.clientWidth)
    .map((panel) => panel.parentElement.id)`);
  check(`${name}: cut panels`, cut.join(', '));
}

// Checks that the page contains only its own elements, links only to itself and to https, runs no
// script and makes no request. The browser logs what the content security policy blocks.
async function checkSafety(page, name) {
  const problems = await page.evaluate(`(() => {
    const known = ['html', 'head', 'meta', 'title', 'style', 'body', 'header', 'nav', 'main', 'div',
      'section', 'article', 'h1', 'h2', 'h3', 'h4', 'p', 'ul', 'li', 'a', 'span', 'strong', 'code',
      'br'];
    const elements = [...document.querySelectorAll('*')];
    return [
      ...elements.map((element) => element.localName).filter((tag) => !known.includes(tag)),
      ...elements.flatMap((element) => element.getAttributeNames()).filter((key) => /^on/.test(key)),
      ...[...document.links].map((link) => link.getAttribute('href'))
        .filter((link) => !/^(#|https:)/.test(link)),
    ];
  })()`);
  check(`${name}: elements`, problems.join(', '));
  check(`${name}: problems`, page.problems.join(', '));
  check(`${name}: requests`, page.requests.length !== 1 && page.requests.join(', '));
}

async function checkPrinted(browser, url) {
  const page = await browser.open(url, { media: 'print', width: 794 });
  check('print', await page.evaluate(`(() => {
    const isShown = (selector) => document.querySelector(selector).checkVisibility();
    const list = document.querySelector('#findings');
    if (isShown('nav')) return 'the navigation is visible';
    return list.scrollHeight > list.clientHeight + 1 ? 'the findings are cut' : '';
  })()`));
  await checkOverflow(page, 'print');
  await page.close();
}

async function checkLooks(browser, file) {
  const url = pathToFileURL(join(folder, file)).href;
  for (const scheme of ['light', 'dark']) {
    for (const [width, height] of [[320, 640], [1280, 900]]) {
      const page = await browser.open(url, { width, height, scheme });
      const name = `${file} ${scheme} ${width}`;
      await checkSafety(page, name);
      await checkOverflow(page, name);
      writeFileSync(join(folder, `${name.replaceAll(/[ .]/g, '-')}.png`), await page.screenshot());
      await checkAccessibility(page, name);
      await page.close();
    }
  }
}

async function checkPages(browser) {
  const preview = writeExamplePage();
  const files = [preview, writeHostilePage(), writeFindingsPage(), writePanelPage()];
  for (const file of files) await checkLooks(browser, file);
  const url = pathToFileURL(join(folder, preview)).href;
  const page = await browser.open(url, {});
  await checkTexts(page);
  await checkKeyboard(page);
  await page.close();
  for (const scheme of ['light', 'dark']) await checkFindingLinks(browser, url, scheme);
  await checkPrinted(browser, url);
}

async function main() {
  rmSync(folder, { recursive: true, force: true });
  mkdirSync(folder, { recursive: true });
  const browser = new Chromium(join(folder, 'profile'));
  try {
    await checkPages(browser);
  } finally {
    await browser.close();
  }
  console.log(`${checks - failures} of ${checks} checks passed`);
  process.exitCode = failures > 0 ? 1 : 0;
}

await main();
