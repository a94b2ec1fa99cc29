// Starts headless Chromium and controls it with the DevTools protocol, through pipes.
import { spawn } from 'node:child_process';

const OPTIONS = [
  '--headless', '--no-sandbox', '--disable-gpu', '--hide-scrollbars', '--no-first-run',
  '--disable-background-networking', '--disable-component-update', '--disable-sync',
  '--remote-debugging-pipe',
];

const TIME_LIMIT = 60_000; // milliseconds

// Returns the value of `promise`. Throws if there is none within the time limit.
function withTimeLimit(promise, name) {
  let timer;
  const limit = new Promise((_, reject) => {
    timer = setTimeout(() => reject(new Error(`${name}: no answer from Chromium`)), TIME_LIMIT);
  });
  return Promise.race([promise, limit]).finally(() => clearTimeout(timer));
}

export class Chromium {
  // `profile` is a folder for the settings of the browser.
  constructor(profile) {
    this.process = spawn('chromium', [...OPTIONS, `--user-data-dir=${profile}`],
      { stdio: ['ignore', 'ignore', 'ignore', 'pipe', 'pipe'] });
    this.ended = new Promise((resolve) => { this.process.on('exit', resolve); });
    this.answers = new Map();
    this.listeners = new Map();
    this.lastID = 0;
    let received = '';
    this.process.stdio[4].setEncoding('utf8').on('data', (text) => {
      const messages = (received + text).split('\0');
      received = messages.pop();
      for (const message of messages) this.handle(JSON.parse(message));
    });
  }

  handle(message) {
    const answer = this.answers.get(message.id);
    this.answers.delete(message.id);
    if (message.error) answer?.reject(new Error(message.error.message));
    else if (answer) answer.resolve(message.result);
    else this.listeners.get(message.sessionId)?.(message.method, message.params);
  }

  send(method, params = {}, sessionId = undefined) {
    const id = ++this.lastID;
    this.process.stdio[3].write(`${JSON.stringify({ id, method, params, sessionId })}\0`);
    const answer = new Promise((resolve, reject) => this.answers.set(id, { resolve, reject }));
    return withTimeLimit(answer, method);
  }

  // Opens a page. `look` has the members `width`, `height`, `scheme` ('light' or 'dark') and `media`
  // ('screen' or 'print').
  async open(url, look) {
    const { targetId } = await this.send('Target.createTarget', { url: 'about:blank' });
    const { sessionId } = await this.send('Target.attachToTarget', { targetId, flatten: true });
    const page = new Page(this, sessionId, targetId);
    await page.load(url, look);
    return page;
  }

  // Ends the browser, also if it does not answer.
  async close() {
    try {
      await this.send('Browser.close');
      await withTimeLimit(this.ended, 'end');
    } catch {
      this.process.kill('SIGKILL');
      await this.ended;
    }
  }
}

class Page {
  constructor(browser, sessionId, targetId) {
    this.browser = browser;
    this.sessionId = sessionId;
    this.targetId = targetId;
    this.requests = []; // the URLs of all requests
    this.problems = []; // what the browser logs, such as blocked scripts, and dialogs
    browser.listeners.set(sessionId, (method, params) => this.handle(method, params));
  }

  handle(method, params) {
    if (method === 'Page.loadEventFired') this.onLoad?.();
    if (method === 'Network.requestWillBeSent') this.requests.push(params.request.url);
    if (method === 'Log.entryAdded') this.problems.push(params.entry.text);
    if (method === 'Runtime.exceptionThrown') this.problems.push(params.exceptionDetails.text);
    if (method === 'Runtime.consoleAPICalled') this.problems.push(`console.${params.type}`);
    if (method === 'Page.javascriptDialogOpening') {
      this.problems.push(`dialog ${params.message}`);
      this.send('Page.handleJavaScriptDialog', { accept: false });
    }
  }

  send(method, params) { return this.browser.send(method, params, this.sessionId); }

  async load(url, { width = 1280, height = 900, scheme = 'light', media = 'screen' }) {
    for (const domain of ['Page', 'Network', 'Log', 'Runtime']) await this.send(`${domain}.enable`);
    await this.send('Emulation.setDeviceMetricsOverride',
      { width, height, deviceScaleFactor: 1, mobile: false });
    await this.send('Emulation.setEmulatedMedia',
      { media, features: [{ name: 'prefers-color-scheme', value: scheme }] });
    const loaded = new Promise((resolve) => { this.onLoad = resolve; });
    await this.send('Page.navigate', { url });
    await withTimeLimit(loaded, url);
  }

  // Returns the value of a JavaScript expression, or of its promise.
  async evaluate(expression) {
    const { result, exceptionDetails } = await this.send('Runtime.evaluate',
      { expression, awaitPromise: true, returnByValue: true });
    if (exceptionDetails) throw new Error(exceptionDetails.exception.description);
    return result.value;
  }

  async press(key) {
    for (const type of ['rawKeyDown', 'keyUp']) {
      await this.send('Input.dispatchKeyEvent',
        { type, key, code: key, windowsVirtualKeyCode: key === 'Tab' ? 9 : 13 });
    }
  }

  async screenshot() {
    const { data } = await this.send('Page.captureScreenshot', { format: 'png' });
    return Buffer.from(data, 'base64');
  }

  async close() { await this.browser.send('Target.closeTarget', { targetId: this.targetId }); }
}
