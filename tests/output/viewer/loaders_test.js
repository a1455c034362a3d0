// The viewer's file loaders and its mesh, run by node alone.
"use strict";

const assert = require("assert");
const childProcess = require("child_process");
const fs = require("fs");
const os = require("os");
const path = require("path");
const test = require("node:test");
const vm = require("vm");
const { findProgram } = require("./browser.js");
const { RESOURCES, objText, squareWithHole } = require("./scene.js");
const { loadScripts, parse } = require("./viewer_scripts.js");

const JSC3D = loadScripts("jsc3d.js", "jsc3d.ctm.js", "jsc3d.3ds.js");
const CTMCONV = findProgram(["ctmconv"]);
const NEEDS_CTMCONV = { skip: CTMCONV ? false : "ctmconv is not installed" };
const DATA = path.join(__dirname, "data");

const parseObj = (text) => parse(JSC3D, "3d.obj", Buffer.from(text));
const meshOf = (scene) => new JSC3D.Mesh(scene.positions, scene.indices);
const numbers = (array) => Array.from(array);

// Triangles as texts of their corners, smallest corner first: files number vertices and turn triangles as they like.
function triangleTexts(positions, indices) {
    const corner = (v) => numbers(positions.slice(3 * v, 3 * v + 3)).map((x) => Math.fround(x)).join(" ");
    const texts = [];
    for (let i = 0; i < indices.length; i += 3) {
        const corners = [corner(indices[i]), corner(indices[i + 1]), corner(indices[i + 2])];
        while (corners[0] > corners[1] || corners[0] > corners[2])
            corners.push(corners.shift());
        texts.push(corners.join(", "));
    }
    return texts.sort();
}

function assertSameTriangles(scene, mesh) {
    const rounded = parseObj(objText(mesh));
    assert.deepStrictEqual(triangleTexts(scene.positions, scene.indices),
                           triangleTexts(rounded.positions, rounded.indices));
}

// Every shortened copy of a file must be refused; the cut falls before `needed`, the end of what the loader reads.
function assertCutsRefused(name, bytes, needed) {
    for (let size = 0; size < needed; size += size < 200 ? 1 : 97)
        assert.throws(() => parse(JSC3D, name, bytes.subarray(0, size)), { name: "Error" }, name + " cut to " + size);
}

test("OBJ: lines as the library writes them", () => {
    const scene = parseObj("v 0 0 0 \nv 1 0 0 \nv -0.5 1.25e-05 0 \nf 1 2 3\n");
    assert.deepStrictEqual(numbers(scene.positions), [0, 0, 0, 1, 0, 0, -0.5, 1.25e-5, 0]);
    assert.deepStrictEqual(numbers(scene.indices), [0, 1, 2]);
});

test("OBJ: polygons, negative and slashed corners, comments, blanks, other line ends, no end of line", () => {
    const scene = parseObj("# a file\r\no thing\r\nv 0 0 0\r\n  v\t1 0 0 # note\r\nvn 0 0 1\r\nv 1 1 0\r\nv 0 1 0\r\n" +
                           "\r\ns off\r\nf 1/1/1 2//1 3/3 4 \r\nf -4 -3 -2");
    assert.deepStrictEqual(numbers(scene.indices), [0, 1, 2, 0, 2, 3, 0, 1, 2]);
    assert.strictEqual(scene.positions.length, 12);
});

test("OBJ: numbers are those the text means, to the last bit", () => {
    const texts = ["0.1", "-123456", "1e+150", "9.87654e-310", "3.14159265358979", "2.2250738585072014e-308", "-.5",
                   "5.", "1e23", "123456789012345678", "0.000001", "1.7976931348623157e308"];
    const scene = parseObj(texts.map((text) => `v ${text} ${text} +${text.replace(/^-/, "")} `).join("\n"));
    texts.forEach((text, i) => {
        assert.strictEqual(scene.positions[3 * i], parseFloat(text), text);
        assert.strictEqual(scene.positions[3 * i + 2], Math.abs(parseFloat(text)), text);
    });
});

test("mesh: triangles without three proper corners and vertices without a triangle are left out", () => {
    const mesh = meshOf(parseObj("v 9e99 0 0\nv 0 0 0\nv 1 0 0\nv 0 1 0\nv nan 0 0\nv 0 -inf 0\nv 5\n" +
                                 "f 2 3 4\nf 2 3 5\nf 2 3 6\nf 2 3 7\nf 2 3 99\nf 2 3 0\nf 2 3 -99\nf 2 3 2\nf 2 3\n"));
    assert.strictEqual(mesh.triangleCount, 1);
    assert.strictEqual(mesh.vertexCount, 3);
    assert.strictEqual(mesh.droppedTriangles, 7);
});

test("mesh: huge, tiny, far and flat coordinates fill the unit sphere", () => {
    for (const [shift, size] of [[0, 1e-310], [0, 1e300], [4.5e6, 100], [-1.7e308, 1e307], [0, 1.7e308]]) {
        const mesh = meshOf({ positions: Float64Array.of(shift, 0, 0, shift + size, 0, 0, shift, size, 0),
                              indices: Int32Array.of(0, 1, 2) });
        const radius = Math.max(...[0, 3, 6].map((i) => Math.hypot(...mesh.positions.subarray(i, i + 3))));
        assert.ok(Math.abs(radius - 1) < 1e-3, `radius ${radius} for ${shift}, ${size}`);
    }
    const point = meshOf({ positions: new Float64Array(9).fill(7), indices: Int32Array.of(0, 1, 2) });
    assert.deepStrictEqual(numbers(point.positions), [0, 0, 0, 0, 0, 0, 0, 0, 0]);
    assert.strictEqual(meshOf({ positions: new Float64Array(0), indices: new Int32Array(0) }).triangleCount, 0);
});

test("mesh: each edge once, borders of mesh and hole found", () => {
    const cells = 12, hole = 4, mesh = meshOf(parseObj(objText(squareWithHole(cells, hole))));
    assert.strictEqual(mesh.triangleCount, 2 * (cells * cells - hole * hole));
    assert.strictEqual(mesh.vertexCount, (cells + 1) * (cells + 1) - (hole - 1) * (hole - 1));
    // Euler: vertices - edges + triangles = 0 for a disk with one hole.
    assert.strictEqual(mesh.edges.length / 2, mesh.vertexCount + mesh.triangleCount);
    assert.strictEqual(mesh.outline.length / 2, 4 * cells + 4 * hole);
});

test("mesh: a vertex of a hundred thousand triangles costs no more than others", () => {
    const count = 100000, positions = new Float64Array(3 * (count + 2)), indices = [];
    for (let i = 1; i <= count + 1; ++i)
        positions.set([Math.cos(3 * i / count), Math.sin(3 * i / count), 0], 3 * i);
    for (let i = 1; i <= count; ++i)
        indices.push(0, i, i + 1);
    const begin = Date.now(), mesh = meshOf({ positions, indices: Int32Array.from(indices) });
    assert.strictEqual(mesh.edges.length / 2, 2 * count + 1);
    assert.ok(Date.now() - begin < 5000);
});

test("CTM: files of both methods that OpenCTM's own tool wrote", () => {
    for (const method of ["raw", "mg1"]) {
        const bytes = fs.readFileSync(path.join(DATA, `holed-square-${method}.ctm`));
        assertSameTriangles(parse(JSC3D, "a.ctm", bytes), squareWithHole(6, 2));
        assertCutsRefused("a.ctm", bytes, bytes.length);
    }
});

// A mesh of this size makes the packer use far matches and every kind of repeat.
test("CTM: a large mesh through the installed converter", NEEDS_CTMCONV, () => {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), "quor2d-ctm-")), mesh = squareWithHole(120, 40);
    const convert = (...words) => childProcess.execFileSync(CTMCONV, words, { cwd: folder, stdio: "ignore" });
    fs.writeFileSync(path.join(folder, "a.obj"), objText(mesh));
    for (const method of ["RAW", "MG1"]) {
        for (const extra of [[], ["--level", "9", "--comment", "a comment", "--calc-normals"]]) {
            convert("a.obj", "a.ctm", "--method", method, ...extra);
            assertSameTriangles(parse(JSC3D, "a.ctm", fs.readFileSync(path.join(folder, "a.ctm"))), mesh);
        }
    }
    convert("a.obj", "a.ctm", "--method", "MG2");
    assert.throws(() => parse(JSC3D, "a.ctm", fs.readFileSync(path.join(folder, "a.ctm"))), /MG2 is not among/);
    fs.rmSync(folder, { recursive: true });
});

test("CTM: damaged packed data ends in an error or a mesh, never in a hang", () => {
    const bytes = fs.readFileSync(path.join(DATA, "holed-square-mg1.ctm"));
    for (let i = 0; i < bytes.length; ++i) {
        const damaged = Buffer.from(bytes);
        damaged[i] ^= 0x55;
        try {
            meshOf(parse(JSC3D, "a.ctm", damaged));
        } catch (error) {
            assert.match(error.name, /^(Range)?Error$/);
        }
    }
});

// ---- 3DS

function chunk(kind, ...parts) {
    const header = Buffer.alloc(6), body = Buffer.concat(parts);
    header.writeUInt16LE(kind, 0);
    header.writeUInt32LE(6 + body.length, 2);
    return Buffer.concat([header, body]);
}

const words = (...values) => Buffer.from(Uint16Array.from(values).buffer);
const floats = (...values) => Buffer.from(Float32Array.from(values).buffer);

function object3ds(name, vertices, faces) {
    const vertexChunk = chunk(0x4110, words(vertices.length), floats(...vertices.flat()));
    const faceChunk = chunk(0x4120, words(faces.length), words(...faces.map((f) => [...f, 7]).flat()),
                            chunk(0x4130, Buffer.from("gold\0"), words(0)));
    const matrix = chunk(0x4160, floats(1, 0, 0, 0, 1, 0, 0, 0, 1, 5, 5, 5));
    return chunk(0x4000, Buffer.from(name + "\0"), chunk(0x4100, vertexChunk, matrix, faceChunk));
}

test("3DS: two objects with material and matrix chunks between", () => {
    const first = object3ds("first", [[0, 0, 0], [2, 0, 0], [0, 2, 0]], [[0, 1, 2]]);
    const second = object3ds("second", [[0, 0, 1], [1, 0, 1], [1, 1, 1], [0, 1, 1]], [[0, 1, 2], [0, 2, 3]]);
    const lamp = chunk(0x4000, Buffer.from("lamp\0"), chunk(0x4600, floats(1, 2, 3)));
    const editor = chunk(0x3d3d, chunk(0xafff, Buffer.from("?")), first, lamp, second);
    const bytes = chunk(0x4d4d, chunk(0x0002, words(3, 0)), editor, chunk(0xb000));
    const scene = parse(JSC3D, "A.3DS", bytes);
    assert.deepStrictEqual(numbers(scene.indices), [0, 1, 2, 3, 4, 5, 3, 5, 6]);
    assert.deepStrictEqual(numbers(scene.positions.slice(0, 9)), [0, 0, 0, 2, 0, 0, 0, 2, 0]);
    assert.deepStrictEqual(numbers(scene.positions.slice(15, 18)), [1, 1, 1]);
    assertCutsRefused("a.3ds", bytes, bytes.length);
});

// Its outer chunks are six bytes too short.
test("3DS: a mesh through the installed converter", NEEDS_CTMCONV, () => {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), "quor2d-3ds-")), mesh = squareWithHole(30, 10);
    fs.writeFileSync(path.join(folder, "a.obj"), objText(mesh));
    childProcess.execFileSync(CTMCONV, ["a.obj", "a.3ds"], { cwd: folder, stdio: "ignore" });
    assertSameTriangles(parse(JSC3D, "a.3ds", fs.readFileSync(path.join(folder, "a.3ds"))), mesh);
    fs.rmSync(folder, { recursive: true });
});

test("files of a wrong kind are refused, unknown extensions have no loader", () => {
    assert.throws(() => parse(JSC3D, "a.ctm", Buffer.from("v 0 0 0 \n")), /not an OpenCTM file/);
    assert.throws(() => parse(JSC3D, "a.3ds", Buffer.from("v 0 0 0 \n")), /not a 3DS file/);
    assert.strictEqual(JSC3D.findLoader("a.stl"), null);
    assert.strictEqual(JSC3D.findLoader("obj"), null);
    assert.ok(JSC3D.findLoader("http://localhost/a.obj?x=1#y"));
});

test("old browsers: the stand-ins agree with what they stand for", () => {
    const world = vm.createContext({ real: Math.imul });
    vm.runInContext("Math.imul = undefined; const T = Object.getPrototypeOf(Uint8Array.prototype);" +
                    "delete T.fill; delete T.slice; delete T.indexOf;", world);
    vm.runInContext(fs.readFileSync(path.join(RESOURCES, "jsc3d.ie.js"), "utf8"), world);
    const check = (expression) => vm.runInContext(expression, world);
    assert.strictEqual(check("String(new Uint8Array(5).fill(7, 1, 3))"), "0,7,7,0,0");
    assert.strictEqual(check("String(Uint8Array.of(1, 2, 3).slice(1))"), "2,3");
    assert.strictEqual(check("Uint8Array.of(1, 2, 3, 2).indexOf(2, 2)"), 3);
    assert.ok(check("[[3, 5], [0xff00ff, 200], [-7, 123456789], [0xffffffff, 0xfffffffe]]" +
                    ".every(([a, b]) => Math.imul(a, b) === real(a, b))"));
    assert.strictEqual(check("String(new TextEncoder().encode('v 1\\n'))"), "118,32,49,10");
});
