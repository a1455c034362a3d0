// Measures the viewer in headless Chromium: node benchmarks/viewer_speed.js [triangles ...]
"use strict";

const fs = require("fs");
const { Browser, findChromium, serveFolder } = require("../tests/output/viewer/browser.js");
const { makeScene, squareWithHole } = require("../tests/output/viewer/scene.js");

// Runs in the page: draws the scene `frames` times while turning it and gives milliseconds for each frame.
const DRAW = (mode, frames) => `(() => {
    viewer.resetView();
    viewer.setRenderMode(${JSON.stringify(mode)});
    for (let i = 0; i < 5; ++i) { viewer.rotate(2, 1); viewer.draw(); }
    const begin = performance.now();
    for (let i = 0; i < ${frames}; ++i) { viewer.rotate(2, 1); viewer.draw(); }
    return (performance.now() - begin) / ${frames};
})()`;

// The same through the browser's own frames.
const ANIMATE = `new Promise((done) => {
    viewer.resetView();
    viewer.setRenderMode("smooth");
    const begin = performance.now();
    let frames = 0;
    const step = () => {
        viewer.rotate(2, 1);
        if (++frames < 60) requestAnimationFrame(step);
        else done(1000 * frames / (performance.now() - begin));
    };
    requestAnimationFrame(step);
})`;

async function measure(browser, triangles) {
    const cells = Math.round(Math.sqrt(triangles / 2)), folder = makeScene(squareWithHole(cells, 0));
    const server = await serveFolder(folder);
    console.log(`${2 * cells * cells} triangles, OBJ ${(fs.statSync(folder + "/3d.obj").size / 1e6).toFixed(1)} MB`);
    for (const [name, url] of [["server", server.url + "index.html"], ["disk", "file://" + folder + "/index.html"]]) {
        const begin = Date.now(), page = await browser.openPage(url);
        await page.waitFor("viewer.mesh !== null", 60000);
        await page.frame();
        console.log(`  from ${name}: shown after ${Date.now() - begin} ms`);
        if (name === "disk") {
            for (const mode of ["smooth", "flat", "point", "wireframe"])
                console.log(`  ${mode}: ${(await page.evaluate(DRAW(mode, 20))).toFixed(1)} ms a frame`);
            console.log(`  turning: ${(await page.evaluate(ANIMATE)).toFixed(1)} frames a second`);
        }
        await page.close();
    }
    server.close();
    fs.rmSync(folder, { recursive: true });
}

async function main() {
    const browser = new Browser(findChromium(), ["--disable-gpu"]);
    try {
        for (const triangles of process.argv.slice(2).map(Number))
            await measure(browser, triangles);
    } finally {
        await browser.close();
    }
}

main();
