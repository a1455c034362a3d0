// Drives a headless Chromium over its debugging pipe, and serves a folder to it from this machine.
"use strict";

const childProcess = require("child_process");
const fs = require("fs");
const http = require("http");
const os = require("os");
const path = require("path");
const zlib = require("zlib");

const COMMAND_TIMEOUT_MS = 60000;

function findProgram(names) {
    for (const folder of (process.env.PATH || "").split(path.delimiter)) {
        for (const name of names) {
            const file = path.join(folder, name);
            if (fs.existsSync(file))
                return file;
        }
    }
    return null;
}

function findChromium() {
    return process.env.QUOR2D_CHROMIUM || findProgram(["chromium", "chromium-browser", "google-chrome"]);
}

class Browser {
    constructor(program, extraFlags) {
        this.profile = fs.mkdtempSync(path.join(os.tmpdir(), "quor2d-viewer-"));
        const flags = [
            "--headless", "--no-sandbox", "--disable-quic", "--no-first-run", "--disable-background-networking",
            "--disable-component-update", "--disable-sync", "--hide-scrollbars", "--window-size=1100,900",
            "--user-data-dir=" + this.profile, "--remote-debugging-pipe", ...extraFlags, "about:blank"
        ];
        this.child = childProcess.spawn(program, flags, { stdio: ["ignore", "ignore", "ignore", "pipe", "pipe"] });
        this.waiting = new Map();
        this.failure = null; // why no answer comes any more
        this.listeners = [];
        this.lastId = 0;
        this.buffered = [];
        this.child.stdio[4].on("data", (chunk) => this.receive(chunk));
        this.child.stdio[3].on("error", () => {});
        this.child.on("error", (error) => this.failAll(error)); // it could not be started
        this.child.on("exit", (code) => this.failAll(new Error("Chromium ended with " + code)));
    }

    // Messages are JSON texts that end with a zero byte.
    receive(chunk) {
        for (let end = chunk.indexOf(0); end >= 0; end = chunk.indexOf(0)) {
            const text = Buffer.concat([...this.buffered, chunk.subarray(0, end)]).toString();
            this.buffered = [];
            chunk = chunk.subarray(end + 1);
            this.dispatch(JSON.parse(text));
        }
        if (chunk.length > 0)
            this.buffered.push(chunk);
    }

    dispatch(message) {
        const waiter = this.waiting.get(message.id);
        if (waiter) {
            this.waiting.delete(message.id);
            clearTimeout(waiter.timer);
            if (message.error)
                waiter.reject(new Error(waiter.method + ": " + message.error.message));
            else
                waiter.resolve(message.result);
        }
        for (const listener of this.listeners)
            listener(message);
    }

    failAll(error) {
        this.failure = this.failure || error;
        for (const waiter of this.waiting.values()) {
            clearTimeout(waiter.timer);
            waiter.reject(error);
        }
        this.waiting.clear();
    }

    send(method, params, sessionId) {
        if (this.failure)
            return Promise.reject(this.failure);
        const id = ++this.lastId;
        return new Promise((resolve, reject) => {
            const timer = setTimeout(() => reject(new Error(method + " got no answer")), COMMAND_TIMEOUT_MS);
            this.waiting.set(id, { method, resolve, reject, timer });
            this.child.stdio[3].write(JSON.stringify({ id, method, params: params || {}, sessionId }) + "\0");
        });
    }

    async openPage(url) {
        const { targetId } = await this.send("Target.createTarget", { url: "about:blank" });
        const { sessionId } = await this.send("Target.attachToTarget", { targetId, flatten: true });
        const page = new Page(this, targetId, sessionId);
        await page.open(url);
        return page;
    }

    async close() {
        if (this.child.pid && this.child.exitCode === null && this.child.signalCode === null) {
            const ended = new Promise((resolve) => this.child.once("exit", resolve));
            const timer = setTimeout(() => this.child.kill("SIGKILL"), 5000);
            this.send("Browser.close").catch(() => {});
            await ended;
            clearTimeout(timer);
        }
        // Its helpers may write a moment longer than the browser lives.
        for (let tries = 0; tries < 20 && fs.existsSync(this.profile); ++tries) {
            try {
                fs.rmSync(this.profile, { recursive: true, force: true });
            } catch (error) {
                await new Promise((resolve) => setTimeout(resolve, 100));
            }
        }
    }
}

class Page {
    constructor(browser, targetId, sessionId) {
        this.browser = browser;
        this.targetId = targetId;
        this.sessionId = sessionId;
        this.problems = []; // what the console shows in red or yellow
        browser.listeners.push((message) => {
            if (message.sessionId === sessionId)
                this.notice(message);
        });
    }

    notice({ method, params }) {
        if (method === "Runtime.exceptionThrown")
            this.problems.push(params.exceptionDetails.exception.description || params.exceptionDetails.text);
        else if (method === "Runtime.consoleAPICalled" && /error|warning|assert/.test(params.type))
            this.problems.push(params.args.map((arg) => arg.value).join(" "));
        else if (method === "Log.entryAdded" && /error|warning/.test(params.entry.level))
            this.problems.push(params.entry.text + " " + (params.entry.url || ""));
    }

    send(method, params) {
        return this.browser.send(method, params, this.sessionId);
    }

    async open(url) {
        for (const domain of ["Page", "Runtime", "Log"])
            await this.send(domain + ".enable");
        await this.send("Page.navigate", { url });
        await this.waitFor("document.readyState === 'complete' && location.href !== 'about:blank'");
    }

    async evaluate(expression) {
        const answer = await this.send("Runtime.evaluate", { expression, awaitPromise: true, returnByValue: true });
        if (answer.exceptionDetails)
            throw new Error(expression + ": " + answer.exceptionDetails.exception.description);
        return answer.result.value;
    }

    async waitFor(condition, timeoutMs = 30000) {
        const end = Date.now() + timeoutMs;
        while (!(await this.evaluate(condition))) {
            if (Date.now() > end)
                throw new Error("never came true: " + condition);
            await new Promise((resolve) => setTimeout(resolve, 30));
        }
    }

    // Two frames: the viewer draws in the first, and the second begins once that is done.
    frame() {
        return this.evaluate(
            "new Promise(done => requestAnimationFrame(() => requestAnimationFrame(() => done(true))))");
    }

    mouse(type, x, y, modifiers, buttons) {
        return this.send("Input.dispatchMouseEvent",
                         { type, x, y, modifiers, button: "left", buttons, clickCount: type === "mouseMoved" ? 0 : 1 });
    }

    // modifiers: 2 CTRL, 8 SHIFT
    async drag(from, to, modifiers = 0) {
        await this.mouse("mousePressed", from.x, from.y, modifiers, 1);
        for (let step = 1; step <= 5; ++step) {
            const x = from.x + (to.x - from.x) * step / 5, y = from.y + (to.y - from.y) * step / 5;
            await this.mouse("mouseMoved", x, y, modifiers, 1);
        }
        await this.mouse("mouseReleased", to.x, to.y, modifiers, 0);
        await this.frame();
    }

    async key(key) {
        await this.send("Input.dispatchKeyEvent", { type: "keyDown", key });
        await this.send("Input.dispatchKeyEvent", { type: "keyUp", key });
        await this.frame();
    }

    // fingers: positions; an empty list lifts them all. seconds: when, by default now
    touch(type, fingers, seconds) {
        const touchPoints = fingers.map((at, id) => ({ ...at, id }));
        return this.send("Input.dispatchTouchEvent", { type, touchPoints, timestamp: seconds });
    }

    async screenshot(clip) {
        const params = { format: "png" };
        if (clip)
            params.clip = { ...clip, scale: 1 };
        return Buffer.from((await this.send("Page.captureScreenshot", params)).data, "base64");
    }

    close() {
        return this.browser.send("Target.closeTarget", { targetId: this.targetId });
    }
}

// Undoes the line filters of an eight-bit PNG without interlace: {width, height, channels, data}.
function decodePng(png) {
    const width = png.readUInt32BE(16), height = png.readUInt32BE(20), channels = { 2: 3, 6: 4 }[png[25]], parts = [];
    for (let at = 8; at < png.length; at += 12 + png.readUInt32BE(at)) {
        if (png.toString("latin1", at + 4, at + 8) === "IDAT")
            parts.push(png.subarray(at + 8, at + 8 + png.readUInt32BE(at)));
    }
    const lines = zlib.inflateSync(Buffer.concat(parts)), stride = width * channels;
    const data = new Uint8Array(stride * height);
    for (let row = 0; row < height; ++row) {
        const filter = lines[row * (stride + 1)], from = row * (stride + 1) + 1, to = row * stride;
        for (let i = 0; i < stride; ++i) {
            const left = i >= channels ? data[to + i - channels] : 0, up = row > 0 ? data[to + i - stride] : 0;
            const corner = i >= channels && row > 0 ? data[to + i - stride - channels] : 0;
            data[to + i] = lines[from + i] + [0, left, up, (left + up) >> 1, paeth(left, up, corner)][filter];
        }
    }
    return { width, height, channels, data };
}

function paeth(left, up, corner) {
    const toLeft = Math.abs(up - corner), toUp = Math.abs(left - corner), toCorner = Math.abs(left + up - 2 * corner);
    if (toLeft <= toUp && toLeft <= toCorner)
        return left;
    return toUp <= toCorner ? up : corner;
}

// Serves the files of one folder on the loopback address: {url, close}.
function serveFolder(folder) {
    const types = { ".html": "text/html", ".js": "text/javascript", ".obj": "text/plain" };
    const server = http.createServer((request, response) => {
        const file = path.join(folder, path.basename(new URL(request.url, "http://localhost").pathname));
        if (!fs.existsSync(file)) {
            response.writeHead(404).end();
            return;
        }
        response.writeHead(200, { "Content-Type": types[path.extname(file)] || "application/octet-stream" });
        fs.createReadStream(file).pipe(response);
    });
    return new Promise((resolve) => {
        server.listen(0, "127.0.0.1", () => resolve({
            url: "http://127.0.0.1:" + server.address().port + "/",
            close: () => {
                server.closeAllConnections && server.closeAllConnections();
                server.close();
            }
        }));
    });
}

module.exports = { Browser, decodePng, findChromium, findProgram, serveFolder };
