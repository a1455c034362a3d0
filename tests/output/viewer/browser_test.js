// Opens scenes in headless Chromium and looks at the pictures.
//   node browser_test.js [folder]    with a folder: only looks at the scene written there
// Exit status 77 where there is no Chromium.
"use strict";

const assert = require("assert");
const fs = require("fs");
const path = require("path");
const test = require("node:test");
const { Browser, decodePng, findChromium, serveFolder } = require("./browser.js");
const { RESOURCES, makeFolder, makeScene, objText, squareWithHole } = require("./scene.js");

const CHROMIUM = findChromium();
if (!CHROMIUM) {
    console.log("SKIPPED: chromium is not installed");
    process.exit(77);
}

const MESH = squareWithHole(12, 4);
const TRIANGLES = MESH.triangles.length;
const CTRL = 2, SHIFT = 8;
const MODES = ["smooth", "flat", "points", "wireframe"];

// The canvas as pixels, without the boxes that lie over it.
async function picture(page) {
    await page.evaluate("document.querySelectorAll('.box').forEach((box) => box.style.opacity = 0)");
    await page.frame();
    const box = await page.evaluate(`(() => {
        const cv = document.getElementById("cv"), box = cv.getBoundingClientRect();
        const left = box.left + cv.clientLeft, top = box.top + cv.clientTop;
        return { x: left, y: top, width: cv.clientWidth, height: cv.clientHeight };
    })()`);
    return decodePng(await page.screenshot(box));
}

function difference(image, x, y, other, otherX, otherY) {
    const a = (y * image.width + x) * image.channels, b = (otherY * other.width + otherX) * other.channels;
    let largest = 0;
    for (let k = 0; k < 3; ++k)
        largest = Math.max(largest, Math.abs(image.data[a + k] - other.data[b + k]));
    return largest;
}

// The background is the same all along a row; near the left end (but off the rounded corners) nothing else is drawn.
const isCovered = (image, x, y) => difference(image, x, y, image, 14, y) > 12;

// What of the picture is not background: share of pixels, bounding box, middle.
function coverage(image) {
    let count = 0, sumX = 0, sumY = 0;
    const box = { left: image.width, right: -1, top: image.height, bottom: -1 };
    for (let y = 12; y < image.height - 12; ++y) {
        for (let x = 12; x < image.width - 12; ++x) {
            if (!isCovered(image, x, y))
                continue;
            ++count, sumX += x, sumY += y;
            box.left = Math.min(box.left, x), box.right = Math.max(box.right, x);
            box.top = Math.min(box.top, y), box.bottom = Math.max(box.bottom, y);
        }
    }
    return { share: count / (image.width * image.height), middleX: sumX / count, middleY: sumY / count, ...box };
}

function changedShare(a, b) {
    let count = 0;
    for (let y = 0; y < a.height; ++y) {
        for (let x = 0; x < a.width; ++x)
            count += difference(a, x, y, b, x, y) > 12 ? 1 : 0;
    }
    return count / (a.width * a.height);
}

async function chooseMode(page, index) {
    await page.evaluate(`(() => {
        const list = document.getElementById("render_mode_list");
        list.selectedIndex = ${index};
        list.dispatchEvent(new Event("change"));
    })()`);
    return picture(page);
}

const showsMesh = (page) => page.waitFor("viewer.mesh !== null && viewer.mesh.triangleCount > 0");

async function withBrowser(flags, use) {
    const browser = new Browser(CHROMIUM, flags);
    try {
        await use(browser);
    } finally {
        await browser.close();
    }
}

// Opens the page of a folder through a server and from disk, one after the other.
async function fromServerAndDisk(browser, folder, use) {
    const server = await serveFolder(folder);
    try {
        for (const url of [server.url + "index.html", "file://" + folder + "/index.html"]) {
            const page = await browser.openPage(url);
            await use(page, url);
            await page.close();
        }
    } finally {
        server.close();
    }
}

// The mesh is in sight, large, framed, and every mode draws it in its own way.
async function checkModes(page, url) {
    const pictures = [], covered = [];
    for (let mode = 0; mode < MODES.length; ++mode) {
        pictures.push(await chooseMode(page, mode));
        covered.push(coverage(pictures[mode]));
    }
    const [smooth, flat, points, wireframe] = covered;
    assert.ok(smooth.share > 0.05, `${url}: the mesh covers only ${smooth.share}`);
    const width = (smooth.right - smooth.left) / 1000, height = (smooth.bottom - smooth.top) / 680;
    assert.ok(Math.max(width, height) > 0.6, "the mesh is small");
    assert.ok(smooth.left > 15 && smooth.right < 985 && smooth.top > 15 && smooth.bottom < 665, "the mesh is cut off");
    assert.ok(Math.abs(smooth.share - flat.share) < 0.002, "the surface differs between smooth and flat");
    assert.ok(points.share > 0 && wireframe.share > 0, "points or wireframe are blank");
    for (let a = 0; a < MODES.length; ++a) {
        assert.ok(Math.abs(covered[a].left - smooth.left) < 6 && Math.abs(covered[a].bottom - smooth.bottom) < 6);
        for (let b = a + 1; b < MODES.length; ++b)
            assert.ok(changedShare(pictures[a], pictures[b]) > 0.005, `${MODES[a]} looks like ${MODES[b]}`);
    }
    return { pictures, covered };
}

async function checkDrag(page) {
    const before = await chooseMode(page, 0);
    await page.drag({ x: 500, y: 300 }, { x: 620, y: 380 });
    assert.ok(changedShare(before, await picture(page)) > 0.02, "a drag changes nothing");
}

const writtenFolder = process.argv[2];

test("a scene written by the library", { skip: writtenFolder ? false : "no folder given" }, async () => {
    const look = async (page, url) => {
        await showsMesh(page);
        await checkModes(page, url);
        await checkDrag(page);
        assert.deepStrictEqual(page.problems, [], url);
    };
    await withBrowser(["--disable-gpu"], (browser) => fromServerAndDisk(browser, path.resolve(writtenFolder), look));
});

// Name -> what to do with a browser that draws without WebGL.
const checks = {};

checks["a mesh with a hole, from a server and from disk, in every mode"] = async (browser) => {
    const folder = makeScene(MESH);
    await fromServerAndDisk(browser, folder, async (page, url) => {
        await showsMesh(page);
        assert.strictEqual(await page.evaluate("viewer.mesh.triangleCount"), TRIANGLES);
        const { pictures, covered } = await checkModes(page, url);
        assert.ok(covered[2].share < covered[3].share && covered[3].share < covered[0].share);
        // The hole is a third of the square wide; the surface lies around it.
        const middle = [Math.round((covered[0].left + covered[0].right) / 2) - 30, Math.round(covered[0].middleY)];
        for (const image of pictures)
            assert.ok(!isCovered(image, ...middle), "the hole is filled");
        for (const x of [middle[0] - 200, middle[0] + 200])
            assert.ok(isCovered(pictures[0], x, middle[1]), "no surface beside the hole");
        await checkDrag(page);
        assert.deepStrictEqual(page.problems, [], url);
    });
    fs.rmSync(folder, { recursive: true });
};

checks["mouse and keyboard rotate, zoom, translate and reset"] = async (browser) => {
    const folder = makeScene(MESH);
    const page = await browser.openPage("file://" + folder + "/index.html");
    await showsMesh(page);
    const first = await picture(page), start = coverage(first);
    // The ring around a canvas with the focus shows at its rounded corners.
    const expectReset = async (how) => assert.ok(changedShare(first, await picture(page)) < 0.0002, how);

    await page.drag({ x: 500, y: 400 }, { x: 500, y: 380 }, SHIFT);
    const zoomed = coverage(await picture(page));
    assert.ok(zoomed.share > 1.2 * start.share, "SHIFT does not zoom");
    await page.key("Home"); // the pressed mouse gave the canvas the focus
    await expectReset("Home does not reset");

    await page.drag({ x: 500, y: 400 }, { x: 440, y: 430 }, CTRL);
    const moved = coverage(await picture(page));
    assert.ok(Math.abs(moved.middleX - start.middleX + 60) < 1 && Math.abs(moved.middleY - start.middleY - 30) < 1,
              "CTRL does not translate with the mouse");
    await page.key("0");
    await expectReset("0 does not reset");

    await page.key("ArrowRight");
    assert.ok(changedShare(first, await picture(page)) > 0.02, "an arrow key does not rotate");
    await page.key("ArrowLeft");
    assert.ok(changedShare(first, await picture(page)) < 0.002, "arrow keys do not undo each other");
    await page.key("+");
    assert.ok(coverage(await picture(page)).share > 1.1 * start.share, "+ does not zoom in");
    await page.key("-");
    await page.key("-");
    assert.ok(coverage(await picture(page)).share < 0.95 * start.share, "- does not zoom out");
    await page.key("Home");

    await page.send("Input.dispatchMouseEvent", { type: "mouseWheel", x: 500, y: 400, deltaX: 0, deltaY: -100 });
    await page.frame();
    assert.ok(coverage(await picture(page)).share > 1.1 * start.share, "the wheel does not zoom");
    await page.key("Home");
    assert.deepStrictEqual(page.problems, []);
    await page.close();
    fs.rmSync(folder, { recursive: true });
};

checks["fingers rotate, pinch and pan; a double tap resets"] = async (browser) => {
    const folder = makeScene(MESH);
    const page = await browser.openPage("file://" + folder + "/index.html");
    await page.send("Emulation.setTouchEmulationEnabled", { enabled: true, maxTouchPoints: 2 });
    await showsMesh(page);
    const first = await picture(page), start = coverage(first);

    await page.touch("touchStart", [{ x: 500, y: 300 }]);
    await page.touch("touchMove", [{ x: 540, y: 330 }]);
    await page.touch("touchMove", [{ x: 580, y: 360 }]);
    await page.touch("touchEnd", []);
    assert.ok(changedShare(first, await picture(page)) > 0.02, "one finger does not rotate");

    const now = Date.now() / 1000; // given, so that a busy machine does not spread the taps
    for (let tap = 0; tap < 2; ++tap) {
        await page.touch("touchStart", [{ x: 500, y: 300 }], now + 0.1 * tap);
        await page.touch("touchEnd", [], now + 0.1 * tap + 0.05);
    }
    await page.frame();
    assert.strictEqual(changedShare(first, await picture(page)), 0, "a double tap does not reset");

    await page.touch("touchStart", [{ x: 450, y: 400 }, { x: 650, y: 400 }]);
    await page.touch("touchMove", [{ x: 425, y: 400 }, { x: 675, y: 400 }]);
    await page.touch("touchMove", [{ x: 425, y: 440 }, { x: 675, y: 440 }]);
    await page.touch("touchEnd", []);
    const pinched = coverage(await picture(page));
    assert.ok(pinched.share > 1.4 * start.share && pinched.share < 1.7 * start.share, "a pinch does not zoom");
    assert.ok(pinched.middleY > start.middleY + 25, "two fingers do not translate");
    assert.deepStrictEqual(page.problems, []);
    await page.close();
    fs.rmSync(folder, { recursive: true });
};

checks["what cannot be shown is said on the page"] = async (browser) => {
    const notice = "(document.querySelector('[role=alert]') || {textContent: ''}).textContent";
    const nothing = makeFolder({});
    const empty = makeFolder({ "3d.obj": "# empty\n", "3d.obj.js": "window.JSC3D_SCENE_TEXT = ``;" });
    await fromServerAndDisk(browser, nothing, async (page) => {
        await page.waitFor(notice + ".includes('3d.obj could not be loaded. Keep 3d.obj and 3d.obj.js')");
    });
    await fromServerAndDisk(browser, empty, async (page) => {
        await page.waitFor(notice + ".includes('3d.obj holds no triangles')");
        assert.deepStrictEqual(page.problems, []);
    });
    // A server that refuses the OBJ file: the script beside it takes its place.
    const scriptOnly = makeScene(MESH), server = await serveFolder(scriptOnly);
    fs.unlinkSync(path.join(scriptOnly, "3d.obj"));
    const page = await browser.openPage(server.url + "index.html");
    await showsMesh(page);
    assert.strictEqual(await page.evaluate(notice), "");
    await page.close();
    server.close();
    for (const folder of [nothing, empty, scriptOnly])
        fs.rmSync(folder, { recursive: true });
};

checks["meshes of odd shape are framed"] = async (browser) => {
    const stretch = (x, y) => ({ ...MESH, vertices: MESH.vertices.map((v) => [4.5e6 + x * v[0], y * v[1], 0]) });
    for (const [x, y] of [[100, 1], [1, 100], [1e5, 1e5]]) {
        const folder = makeScene(stretch(x, y)), page = await browser.openPage("file://" + folder + "/index.html");
        await showsMesh(page);
        await page.evaluate("viewer.setParameter('InitRotationX', 0), viewer.setParameter('InitRotationY', 0)");
        await page.evaluate("viewer.resetView()");
        const seen = coverage(await picture(page)), width = seen.right - seen.left, height = seen.bottom - seen.top;
        assert.ok(Math.max(width / 1000, height / 680) > 0.85 && width < 930 && height < 640, `${x} to ${y}`);
        assert.deepStrictEqual(page.problems, []);
        await page.close();
        fs.rmSync(folder, { recursive: true });
    }
};

checks["the page as it is promised"] = async (browser) => {
    const html = fs.readFileSync(path.join(RESOURCES, "index.html"), "utf8");
    const sources = [...html.matchAll(/<script src="([^"]*)"/g)].map((match) => match[1]);
    assert.deepStrictEqual(sources, ["jsc3d.js", "jsc3d.ctm.js", "jsc3d.touch.js"]);
    assert.ok(html.includes("Drag mouse to rotate, use SHIFT to <br> zoom and CTRL to translate"));
    const folder = makeFolder({ "3d.obj.js": "window.JSC3D_SCENE_TEXT = `" + objText(MESH) + "`;\n" });
    const page = await browser.openPage("file://" + folder + "/index.html");
    assert.deepStrictEqual(await page.evaluate(`(() => {
        const cv = document.getElementById("cv"), list = document.getElementById("render_mode_list");
        return [document.title, cv.width, cv.height, list.labels.length, [...list.options].map((o) => o.text).join(),
                document.characterSet, document.querySelector("p a").getAttribute("href")];
    })()`), ["Zelk Quor2.5D |", 1000, 680, 1, "smooth,flat,points,wireframe", "UTF-8", "#"]);
    await showsMesh(page);
    const modes = await page.evaluate(`[0, 1, 2, 3, -1].map((index) => {
        document.getElementById("render_mode_list").selectedIndex = index;
        setRenderMode();
        return viewer.parameters.RenderMode;
    }).join()`);
    assert.strictEqual(modes, "smooth,flat,point,wireframe,smooth");
    await page.close();
    fs.rmSync(folder, { recursive: true });
};

const ownScenes = { skip: writtenFolder ? "a folder was given" : false };

test("the viewer in Chromium", ownScenes, async (t) => {
    await withBrowser(["--disable-gpu"], async (browser) => {
        for (const name of Object.keys(checks))
            await t.test(name, () => checks[name](browser));
    });
});

test("WebGL draws what the canvas renderer draws, and the log shows on the page", ownScenes, async (t) => {
    const html = fs.readFileSync(path.join(RESOURCES, "index.html"), "utf8");
    const tag = '<script src="jsc3d.touch.js"></script>';
    const more = '<script src="jsc3d.webgl.js"></script>\n<script src="jsc3d.console.js"></script>\n' +
                 '<div id="log"></div>\n<script>JSC3D.console.attach(document.getElementById("log"));</script>\n';
    const folder = makeScene(MESH), plain = makeScene(MESH);
    for (const name of ["jsc3d.webgl.js", "jsc3d.console.js"])
        fs.copyFileSync(path.join(RESOURCES, name), path.join(folder, name));
    fs.writeFileSync(path.join(folder, "index.html"), html.replace(tag, tag + "\n" + more));
    const flags = ["--use-gl=angle", "--use-angle=swiftshader", "--enable-unsafe-swiftshader"];
    await withBrowser(flags, async (browser) => {
        const page = await browser.openPage("file://" + folder + "/index.html");
        await showsMesh(page);
        if (!(await page.evaluate("viewer.renderer instanceof JSC3D.WebGLRenderer"))) {
            t.skip("this Chromium has no WebGL 2");
            return;
        }
        const drawn = [];
        for (let mode = 0; mode < MODES.length; ++mode) {
            drawn.push(await chooseMode(page, mode));
            if (process.env.QUOR2D_PICTURES)
                fs.writeFileSync(path.join(process.env.QUOR2D_PICTURES, `webgl-${mode}.png`), await page.screenshot());
        }
        const log = await page.evaluate("document.getElementById('log').textContent");
        assert.ok(log.includes(`${MESH.vertices.length} vertices, ${TRIANGLES} triangles`), log);
        await checkDrag(page);
        assert.deepStrictEqual(page.problems, []);
        await page.close();

        const other = await browser.openPage("file://" + plain + "/index.html");
        await showsMesh(other);
        for (let mode = 0; mode < MODES.length; ++mode) {
            const reference = await chooseMode(other, mode), expected = coverage(reference).share;
            const seen = coverage(drawn[mode]).share, changed = changedShare(drawn[mode], reference);
            // Multisampling blurs points, which are small, into their surroundings.
            const allowed = (mode === 2 ? 0.5 : 0.15) * expected;
            assert.ok(Math.abs(seen - expected) < allowed, `${MODES[mode]} covers ${seen}, not ${expected}`);
            assert.ok(changed < 0.05, `${MODES[mode]} looks different: ${changed}`);
        }
    });
    fs.rmSync(folder, { recursive: true });
    fs.rmSync(plain, { recursive: true });
});
