// Makes scene folders like those of writeWebScene, and meshes for them.
"use strict";

const fs = require("fs");
const os = require("os");
const path = require("path");

const RESOURCES = path.resolve(__dirname, "../../../output/resources");

// Triangles over a square of cells x cells, the middle hole x hole cells left out, in the plane z = 0. Vertices away
// from all borders are moved a little, so that the triangles differ. Returns {vertices, triangles}.
function squareWithHole(cells, hole) {
    const vertices = [], triangles = [], numbers = new Map(), holeFrom = (cells - hole) / 2, holeTo = holeFrom + hole;
    const inside = (column, row, from, to) => column >= from && row >= from && column <= to && row <= to;
    const vertex = (column, row) => {
        const key = row * (cells + 1) + column;
        if (!numbers.has(key)) {
            const moves = inside(column, row, 1, cells - 1) && !inside(column, row, holeFrom, holeTo);
            const dx = moves ? 0.3 * Math.sin(12.9898 * key) : 0, dy = moves ? 0.3 * Math.sin(78.233 * key) : 0;
            numbers.set(key, vertices.length);
            vertices.push([column + dx, row + dy, 0]);
        }
        return numbers.get(key);
    };
    for (let row = 0; row < cells; ++row) {
        for (let column = 0; column < cells; ++column) {
            if (inside(column, row, holeFrom, holeTo - 1))
                continue;
            const a = vertex(column, row), b = vertex(column + 1, row);
            const c = vertex(column + 1, row + 1), d = vertex(column, row + 1);
            triangles.push([a, b, c], [a, c, d]);
        }
    }
    return { vertices, triangles };
}

function objText(mesh) {
    const number = (x) => String(+x.toPrecision(6));
    const lines = mesh.vertices.map((v) => `v ${number(v[0])} ${number(v[1])} ${number(v[2])} `);
    const faces = mesh.triangles.map((t) => `f ${t[0] + 1} ${t[1] + 1} ${t[2] + 1}`);
    return lines.concat(faces).join("\n") + "\n";
}

// The OBJ text as a script, for pages opened from disk.
function objScript(text) {
    return "window.JSC3D_SCENE_TEXT = `" + text + "`;\n";
}

// A new folder with the page, its scripts and the named further files (name -> contents).
function makeFolder(files) {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), "quor2d-scene-"));
    for (const name of ["index.html", "jsc3d.js", "jsc3d.ctm.js", "jsc3d.touch.js"])
        fs.copyFileSync(path.join(RESOURCES, name), path.join(folder, name));
    for (const name of Object.keys(files))
        fs.writeFileSync(path.join(folder, name), files[name]);
    return folder;
}

function makeScene(mesh) {
    const text = objText(mesh);
    return makeFolder({ "3d.obj": text, "3d.obj.js": objScript(text) });
}

module.exports = { RESOURCES, makeFolder, makeScene, objText, squareWithHole };
