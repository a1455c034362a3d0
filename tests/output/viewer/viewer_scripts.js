// Loads viewer scripts outside a browser.
"use strict";

const fs = require("fs");
const path = require("path");
const vm = require("vm");
const { RESOURCES } = require("./scene.js");

// Runs the named scripts in order in a world of their own; returns its JSC3D.
function loadScripts(...names) {
    const world = vm.createContext({ TextEncoder, console });
    for (const name of names)
        vm.runInContext(fs.readFileSync(path.join(RESOURCES, name), "utf8"), world, { filename: name });
    return world.JSC3D;
}

// Parses with the loader registered for a file of this name.
function parse(JSC3D, name, bytes) {
    return JSC3D.findLoader(name).parse(new Uint8Array(bytes));
}

module.exports = { loadScripts, parse };
