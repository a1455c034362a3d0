/**
 * Mesh viewer, core: Wavefront OBJ loader, scene, camera, mouse and keyboard, and a renderer for any 2D canvas.
 *
 *   var viewer = new JSC3D.Viewer(document.getElementById("cv"));
 *   viewer.setParameter("SceneUrl", "3d.obj");
 *   viewer.init();
 *   viewer.update();
 *
 * Add-ons register themselves when their script follows this one: file formats through JSC3D.registerLoader, input
 * through JSC3D.inputAddOns, a faster renderer as JSC3D.WebGLRenderer, a log as JSC3D.console.
 */
var JSC3D = {};

(function () {
    "use strict";

    // The camera looks along -z from this distance at a mesh scaled into the unit sphere. Zooming scales the picture
    // and panning shifts it, so the camera never enters the mesh and nothing has to be clipped in depth.
    var CAMERA_DISTANCE = 5;
    var MIN_ZOOM = 0.05;
    var MAX_ZOOM = 1e4; // beyond, single precision shows

    // Light position in view space: above, left of and nearer than the camera. It is close on purpose: a plane lit
    // from afar has one colour everywhere.
    var LIGHT = [-0.9, 1.5, 1.7];

    var SHADES = 1024;

    JSC3D.CAMERA_DISTANCE = CAMERA_DISTANCE;
    JSC3D.LIGHT = LIGHT;

    /** Functions (viewer, canvas) called at the end of Viewer.init. */
    JSC3D.inputAddOns = [];

    JSC3D.log = function (level, text) {
        if (JSC3D.console)
            JSC3D.console.write(level, text);
        else if (level !== "info" && typeof console !== "undefined")
            console.warn(text);
    };

    // ---------------------------------------------------------------------------------------------- file formats

    var loaders = {};

    /**
     * Registers a file format.
     * @param extension  lower case, without the dot
     * @param parse      takes a Uint8Array, returns {positions, indices}: 3 numbers for each vertex, 3 vertex numbers
     *                   for each triangle; throws an Error whose message is shown on the page
     * @param isText     true if the file may also come as a script (see Viewer.loadAsScript)
     */
    JSC3D.registerLoader = function (extension, parse, isText) {
        loaders[extension] = { parse: parse, isText: !!isText };
    };

    JSC3D.findLoader = function (url) {
        var match = /\.([a-z0-9]+)(?:[?#].*)?$/i.exec(url);
        return (match && loaders[match[1].toLowerCase()]) || null;
    };

    // An array of numbers that doubles its room.
    function GrowingArray(ArrayType, room) {
        this.ArrayType = ArrayType;
        this.data = new ArrayType(room);
        this.size = 0;
    }

    GrowingArray.prototype.push3 = function (a, b, c) {
        if (this.size + 3 > this.data.length) {
            var larger = new this.ArrayType(this.data.length * 2 + 3);
            larger.set(this.data);
            this.data = larger;
        }
        this.data[this.size] = a;
        this.data[this.size + 1] = b;
        this.data[this.size + 2] = c;
        this.size += 3;
    };

    GrowingArray.prototype.toArray = function () {
        return this.data.subarray(0, this.size);
    };

    var NEWLINE = 10, CARRIAGE_RETURN = 13, TAB = 9, SPACE = 32;
    var POWERS_OF_TEN = [];
    for (var power = 0; power <= 22; ++power)
        POWERS_OF_TEN.push(parseFloat("1e" + power));

    // Reads words and numbers from the bytes of a text. Every method stops at the end of the line.
    function TextCursor(bytes) {
        this.bytes = bytes;
        this.at = 0;
    }

    TextCursor.prototype.skipBlanks = function () {
        var bytes = this.bytes;
        while (bytes[this.at] === SPACE || bytes[this.at] === TAB)
            ++this.at;
    };

    TextCursor.prototype.atLineEnd = function () {
        var byte = this.bytes[this.at];
        return byte === NEWLINE || byte === CARRIAGE_RETURN || byte === undefined;
    };

    TextCursor.prototype.skipLine = function () {
        var end = this.bytes.indexOf(NEWLINE, this.at);
        this.at = end < 0 ? this.bytes.length : end + 1;
    };

    TextCursor.prototype.skipWord = function () {
        while (!this.atLineEnd() && this.bytes[this.at] !== SPACE && this.bytes[this.at] !== TAB)
            ++this.at;
    };

    // The number at the cursor, NaN where there is none.
    TextCursor.prototype.readNumber = function () {
        this.skipBlanks();
        var bytes = this.bytes, at = this.at, mantissa = 0, digits = 0, fraction = 0, exponent = 0;
        var negative = bytes[at] === 45;
        if (negative || bytes[at] === 43)
            ++at;
        for (; bytes[at] >= 48 && bytes[at] <= 57; ++at, ++digits)
            mantissa = mantissa * 10 + (bytes[at] - 48);
        if (bytes[at] === 46) {
            for (++at; bytes[at] >= 48 && bytes[at] <= 57; ++at, ++digits, ++fraction)
                mantissa = mantissa * 10 + (bytes[at] - 48);
        }
        if (digits > 0 && (bytes[at] | 32) === 101) {
            var negativeExponent = bytes[at + 1] === 45;
            at += negativeExponent || bytes[at + 1] === 43 ? 2 : 1;
            for (; bytes[at] >= 48 && bytes[at] <= 57; ++at)
                exponent = exponent * 10 + (bytes[at] - 48);
            if (negativeExponent)
                exponent = -exponent;
        }
        var start = this.at;
        this.at = at;
        if (digits === 0) {
            this.skipWord();
            return NaN;
        }
        exponent -= fraction;
        if (digits > 15 || exponent < -22 || exponent > 22)
            return parseFloat(String.fromCharCode.apply(null, bytes.subarray(start, at)));
        // Both operands are exact, so the one division or product rounds correctly.
        var value = exponent < 0 ? mantissa / POWERS_OF_TEN[-exponent] : mantissa * POWERS_OF_TEN[exponent];
        return negative ? -value : value;
    };

    // The zero-based vertex number of a face corner such as "7", "7/2/1" or "-1"; -1 where it names no vertex yet.
    TextCursor.prototype.readCorner = function (vertexCount) {
        var bytes = this.bytes, value = 0;
        var negative = bytes[this.at] === 45;
        if (negative)
            ++this.at;
        for (; bytes[this.at] >= 48 && bytes[this.at] <= 57; ++this.at)
            value = value * 10 + (bytes[this.at] - 48);
        this.skipWord();
        if (value === 0)
            return -1;
        return negative ? vertexCount - value : value - 1;
    };

    /** Wavefront OBJ: vertices and faces, polygons as fans; all else is passed over. */
    function parseObj(bytes) {
        var cursor = new TextCursor(bytes);
        var positions = new GrowingArray(Float64Array, 3 * 4096);
        var indices = new GrowingArray(Int32Array, 3 * 8192);
        while (cursor.at < bytes.length) {
            cursor.skipBlanks();
            var key = bytes[cursor.at], next = bytes[cursor.at + 1];
            if (next === SPACE || next === TAB) {
                cursor.at += 2;
                if (key === 118)
                    positions.push3(cursor.readNumber(), cursor.readNumber(), cursor.readNumber());
                else if (key === 102)
                    readFace(cursor, positions.size / 3, indices);
            }
            cursor.skipLine();
        }
        return { positions: positions.toArray(), indices: indices.toArray() };
    }

    function readFace(cursor, vertexCount, indices) {
        var first = -1, previous = -1, corners = 0;
        for (cursor.skipBlanks(); !cursor.atLineEnd(); cursor.skipBlanks()) {
            var corner = cursor.readCorner(vertexCount);
            if (corners === 0)
                first = corner;
            else if (corners > 1)
                indices.push3(first, previous, corner);
            previous = corner;
            ++corners;
        }
    }

    JSC3D.registerLoader("obj", parseObj, true);

    // -------------------------------------------------------------------------------------------------------- mesh

    /**
     * A mesh moved and scaled into the unit sphere, with what the renderers need.
     *
     * Triangles that name a missing or non-finite vertex or one vertex twice are dropped, and vertices that are left
     * without a triangle too.
     */
    function Mesh(positions, indices) {
        this.indices = selectTriangles(positions, indices);
        this.droppedTriangles = (indices.length - this.indices.length) / 3;
        this.positions = normalizePositions(keepUsedVertices(positions, this.indices));
        this.vertexCount = this.positions.length / 3;
        this.triangleCount = this.indices.length / 3;
        this.normals = computeNormals(this.positions, this.indices);
        collectEdges(this);
    }

    function selectTriangles(positions, indices) {
        var vertexCount = positions.length / 3;
        var usable = new Uint8Array(vertexCount);
        for (var v = 0; v < vertexCount; ++v)
            usable[v] = isFinite(positions[3 * v] + 0 * positions[3 * v + 1] + 0 * positions[3 * v + 2]) ? 1 : 0;
        var kept = new Uint32Array(indices.length), size = 0;
        for (var i = 0; i + 2 < indices.length; i += 3) {
            var a = indices[i], b = indices[i + 1], c = indices[i + 2];
            if (usable[a] === 1 && usable[b] === 1 && usable[c] === 1 && a !== b && b !== c && c !== a) {
                kept[size] = a;
                kept[size + 1] = b;
                kept[size + 2] = c;
                size += 3;
            }
        }
        return kept.subarray(0, size);
    }

    // The positions of the vertices that triangles use; renumbers the indices in place.
    function keepUsedVertices(positions, indices) {
        var newNumber = new Int32Array(positions.length / 3), used = 0, i;
        newNumber.fill(-1);
        for (i = 0; i < indices.length; ++i)
            newNumber[indices[i]] = 0;
        for (i = 0; i < newNumber.length; ++i) {
            if (newNumber[i] === 0)
                newNumber[i] = used++;
        }
        var result = new Float64Array(3 * used);
        for (i = 0; i < newNumber.length; ++i) {
            if (newNumber[i] >= 0)
                result.set(positions.subarray(3 * i, 3 * i + 3), 3 * newNumber[i]);
        }
        for (i = 0; i < indices.length; ++i)
            indices[i] = newNumber[indices[i]];
        return result;
    }

    // Halves are taken before sums and ratios before squares, so that neither huge nor tiny coordinates are lost.
    function normalizePositions(positions) {
        var low = [Infinity, Infinity, Infinity], high = [-Infinity, -Infinity, -Infinity], i, k;
        for (i = 0; i < positions.length; i += 3) {
            for (k = 0; k < 3; ++k) {
                if (positions[i + k] < low[k])
                    low[k] = positions[i + k];
                if (positions[i + k] > high[k])
                    high[k] = positions[i + k];
            }
        }
        var center = [0, 0, 0], half = [0, 0, 0], longest = 0;
        for (k = 0; k < 3 && positions.length > 0; ++k) {
            center[k] = low[k] / 2 + high[k] / 2;
            half[k] = high[k] / 2 - low[k] / 2;
            longest = Math.max(longest, half[k]);
        }
        var ratio = function (x) { return longest > 0 ? x / longest : 0; };
        var diagonal = Math.sqrt(ratio(half[0]) * ratio(half[0]) + ratio(half[1]) * ratio(half[1]) +
                                 ratio(half[2]) * ratio(half[2])) || 1;
        var scaled = new Float32Array(positions.length);
        for (i = 0; i < positions.length; ++i)
            scaled[i] = ratio(positions[i] - center[i % 3]) / diagonal;
        return scaled;
    }

    // Vertex normals, each the sum of its triangles' normals weighted by area.
    function computeNormals(positions, indices) {
        var normals = new Float32Array(positions.length), i;
        for (i = 0; i < indices.length; i += 3) {
            var a = 3 * indices[i], b = 3 * indices[i + 1], c = 3 * indices[i + 2];
            var ux = positions[b] - positions[a], uy = positions[b + 1] - positions[a + 1];
            var uz = positions[b + 2] - positions[a + 2];
            var vx = positions[c] - positions[a], vy = positions[c + 1] - positions[a + 1];
            var vz = positions[c + 2] - positions[a + 2];
            var nx = uy * vz - uz * vy, ny = uz * vx - ux * vz, nz = ux * vy - uy * vx;
            normals[a] += nx, normals[a + 1] += ny, normals[a + 2] += nz;
            normals[b] += nx, normals[b + 1] += ny, normals[b + 2] += nz;
            normals[c] += nx, normals[c + 1] += ny, normals[c + 2] += nz;
        }
        for (i = 0; i < normals.length; i += 3) {
            var length = Math.sqrt(normals[i] * normals[i] + normals[i + 1] * normals[i + 1] +
                                   normals[i + 2] * normals[i + 2]);
            if (length > 0)
                normals[i] /= length, normals[i + 1] /= length, normals[i + 2] /= length;
            else
                normals[i + 2] = 1;
        }
        return normals;
    }

    // Sets mesh.edges (two vertex numbers each, every undirected edge once), mesh.outline (those with one triangle)
    // and mesh.meanEdgeLength. Edges are bucketed by their smaller vertex; inside a bucket the last vertex a corner
    // was seen from tells whether its edge is new, so a vertex of any degree costs linear time.
    function collectEdges(mesh) {
        var indices = mesh.indices, vertexCount = mesh.vertexCount, i;
        var start = new Uint32Array(vertexCount + 1);
        forEachEdge(indices, function (small) { ++start[small + 1]; });
        for (i = 0; i < vertexCount; ++i)
            start[i + 1] += start[i];
        var fill = start.slice(0, vertexCount), larger = new Uint32Array(indices.length);
        forEachEdge(indices, function (small, large) { larger[fill[small]++] = large; });

        var edges = new Uint32Array(2 * indices.length), uses = new Uint8Array(indices.length), edgeCount = 0;
        var seenFrom = new Int32Array(vertexCount), slot = new Uint32Array(vertexCount);
        seenFrom.fill(-1);
        for (var a = 0; a < vertexCount; ++a) {
            for (i = start[a]; i < start[a + 1]; ++i) {
                var b = larger[i];
                if (seenFrom[b] !== a) {
                    seenFrom[b] = a;
                    slot[b] = edgeCount;
                    edges[2 * edgeCount] = a;
                    edges[2 * edgeCount + 1] = b;
                    ++edgeCount;
                }
                if (uses[slot[b]] < 2)
                    ++uses[slot[b]];
            }
        }
        mesh.edges = edges.slice(0, 2 * edgeCount);
        mesh.outline = selectOutline(mesh.edges, uses);
        mesh.meanEdgeLength = meanEdgeLength(mesh.positions, mesh.edges);
    }

    function forEachEdge(indices, visit) {
        for (var i = 0; i < indices.length; i += 3) {
            for (var k = 0; k < 3; ++k) {
                var a = indices[i + k], b = indices[k === 2 ? i : i + k + 1];
                if (a < b)
                    visit(a, b);
                else
                    visit(b, a);
            }
        }
    }

    function selectOutline(edges, uses) {
        var outline = new Uint32Array(edges.length), size = 0;
        for (var e = 0; 2 * e < edges.length; ++e) {
            if (uses[e] === 1) {
                outline[size++] = edges[2 * e];
                outline[size++] = edges[2 * e + 1];
            }
        }
        return outline.slice(0, size);
    }

    function meanEdgeLength(positions, edges) {
        var sum = 0;
        for (var e = 0; e < edges.length; e += 2) {
            var a = 3 * edges[e], b = 3 * edges[e + 1];
            var dx = positions[a] - positions[b], dy = positions[a + 1] - positions[b + 1];
            var dz = positions[a + 2] - positions[b + 2];
            sum += Math.sqrt(dx * dx + dy * dy + dz * dz);
        }
        return edges.length > 0 ? 2 * sum / edges.length : 0;
    }

    // The border of the mesh and of its holes is drawn. A soup of unconnected triangles is all border: no line helps.
    Mesh.prototype.showsOutline = function () {
        return this.triangleCount <= 10000 || this.outline.length <= this.triangleCount;
    };

    // How much ink a line of the wireframe gets, 0 to 1: in a dense mesh lines get fainter, not a solid area.
    Mesh.prototype.wireframeShare = function (scale) {
        return Math.max(0.2, Math.min(0.9, 0.16 * this.meanEdgeLength * scale));
    };

    Mesh.prototype.pointStyle = function (scale) {
        var spacing = this.meanEdgeLength * scale;
        return { size: spacing < 3 ? 1 : spacing < 7 ? 2 : spacing < 16 ? 3 : 4, share: spacing < 1.5 ? 0.5 : 0.94 };
    };

    JSC3D.Mesh = Mesh;

    // ------------------------------------------------------------------------------------------------------ camera

    // Rotation of the mesh (3 x 3, by rows), pixels for each unit in the middle plane, and a shift in pixels.
    function View() {
        this.rotation = [1, 0, 0, 0, 1, 0, 0, 0, 1];
        this.scale = 1;
        this.panX = 0;
        this.panY = 0;
    }

    function multiply(a, b) {
        var product = [];
        for (var row = 0; row < 9; row += 3) {
            for (var k = 0; k < 3; ++k)
                product.push(a[row] * b[k] + a[row + 1] * b[3 + k] + a[row + 2] * b[6 + k]);
        }
        return product;
    }

    // Rotations about the screen's axes: x to the right, y up, z to the viewer.
    function rotationX(degrees) {
        var c = Math.cos(degrees * Math.PI / 180), s = Math.sin(degrees * Math.PI / 180);
        return [1, 0, 0, 0, c, -s, 0, s, c];
    }

    function rotationY(degrees) {
        var c = Math.cos(degrees * Math.PI / 180), s = Math.sin(degrees * Math.PI / 180);
        return [c, 0, s, 0, 1, 0, -s, 0, c];
    }

    function rotationZ(degrees) {
        var c = Math.cos(degrees * Math.PI / 180), s = Math.sin(degrees * Math.PI / 180);
        return [c, -s, 0, s, c, 0, 0, 0, 1];
    }

    // Many small turns drift away from a rotation: make the rows orthonormal again.
    function orthonormalize(m) {
        var length = Math.sqrt(m[0] * m[0] + m[1] * m[1] + m[2] * m[2]);
        var x = [m[0] / length, m[1] / length, m[2] / length];
        var dot = x[0] * m[3] + x[1] * m[4] + x[2] * m[5];
        var y = [m[3] - dot * x[0], m[4] - dot * x[1], m[5] - dot * x[2]];
        length = Math.sqrt(y[0] * y[0] + y[1] * y[1] + y[2] * y[2]);
        y = [y[0] / length, y[1] / length, y[2] / length];
        return x.concat(y, [x[1] * y[2] - x[2] * y[1], x[2] * y[0] - x[0] * y[2], x[0] * y[1] - x[1] * y[0]]);
    }

    // The box of the projected mesh at one pixel for each unit: its middle and half its width and height.
    function projectedBox(positions, r) {
        var left = 0, right = 0, low = 0, high = 0;
        for (var i = 0; i < positions.length; i += 3) {
            var px = positions[i], py = positions[i + 1], pz = positions[i + 2];
            var shrink = CAMERA_DISTANCE / (CAMERA_DISTANCE - (r[6] * px + r[7] * py + r[8] * pz));
            var x = (r[0] * px + r[1] * py + r[2] * pz) * shrink, y = (r[3] * px + r[4] * py + r[5] * pz) * shrink;
            left = x < left ? x : left;
            right = x > right ? x : right;
            low = y < low ? y : low;
            high = y > high ? y : high;
        }
        return {
            x: (left + right) / 2,
            y: (low + high) / 2,
            halfWidth: (right - left) / 2,
            halfHeight: (high - low) / 2
        };
    }

    function transposeTimes(r, v) {
        return [
            r[0] * v[0] + r[3] * v[1] + r[6] * v[2], r[1] * v[0] + r[4] * v[1] + r[7] * v[2],
            r[2] * v[0] + r[5] * v[1] + r[8] * v[2]
        ];
    }

    // ----------------------------------------------------------------------------------------------------- colours

    /** "#RRGGBB" as three numbers from 0 to 255; the fallback where the text is no such colour. */
    function parseColor(text, fallback) {
        var match = /^#?([0-9a-f]{6})$/i.exec(text);
        if (!match)
            return fallback;
        var value = parseInt(match[1], 16);
        return [value >> 16, (value >> 8) & 255, value & 255];
    }

    function mixColors(from, to, share) {
        return from.map(function (channel, i) { return channel + (to[i] - channel) * share; });
    }

    // Pixels of an ImageData seen as 32-bit words; the platforms of today's browsers are little-endian.
    function pack(color) {
        return (0xff000000 | (Math.round(color[2]) << 16) | (Math.round(color[1]) << 8) | Math.round(color[0])) >>> 0;
    }

    // Relative luminance of a screen colour, 0 to 1.
    function luminance(color) {
        var linear = color.map(function (channel) { return Math.pow(channel / 255, 2.2); });
        return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2];
    }

    function contrast(a, b) {
        var ratio = (luminance(a) + 0.05) / (luminance(b) + 0.05);
        return Math.max(ratio, 1 / ratio);
    }

    /**
     * The colours of a picture, all made from three parameters.
     *
     * The background stays light over the upper part, so that one dark ink is readable nearly everywhere; below the
     * row where the background gets too dark for it, lines and points without a surface behind them use a light ink.
     */
    function Palette(model, top, bottom) {
        var white = [255, 255, 255], black = [0, 0, 0];
        this.model = model;
        this.top = top;
        this.bottom = bottom;
        this.edge = mixColors(model, black, 0.78);
        this.darkInk = mixColors(model, black, 0.72);
        this.lightInk = mixColors(model, white, 0.6);
    }

    // Background colour at a height from 0 (top) to 1 (bottom).
    Palette.prototype.background = function (height) {
        return mixColors(this.top, this.bottom, height * height);
    };

    Palette.prototype.ink = function (height) {
        var background = this.background(height);
        return contrast(this.darkInk, background) >= contrast(this.lightInk, background) ? this.darkInk : this.lightInk;
    };

    // Both inks and the height from which the lower one holds. Ends because the search halves a bounded range.
    Palette.prototype.inks = function () {
        var upper = this.ink(0), low = 0, high = 1;
        while (high - low > 1e-3) {
            var middle = (low + high) / 2;
            if (this.ink(middle) === upper)
                low = middle;
            else
                high = middle;
        }
        return { upper: upper, lower: this.ink(1), change: high };
    };

    // Surface colour for a brightness from 0 to 1: the model colour at 0.75, darker below, shining above.
    Palette.prototype.shade = function (brightness) {
        if (brightness <= 0.75)
            return mixColors([0, 0, 0], this.model, 0.3 + 0.7 * brightness / 0.75);
        return mixColors(this.model, [255, 255, 255], 0.5 * (brightness - 0.75) / 0.25);
    };

    JSC3D.Palette = Palette;
    JSC3D.parseColor = parseColor;

    // --------------------------------------------------------------------------------------------- canvas renderer

    // How visible mesh edges are on a surface, 0 to 1. They fade out where the incircle of a triangle gets small.
    JSC3D.EDGE_STRENGTH = { smooth: 0.45, flat: 0.8 };
    JSC3D.EDGE_FADE = { from: 1.0, to: 3.5 };

    /**
     * Draws a mesh into the pixels of a 2D canvas: scan conversion with a depth buffer of reciprocal distances.
     *
     * Functions that run once for a vertex, a triangle or a line take and return whole numbers only: browsers put a
     * number with a fraction on the heap at each call. Others pass through typed arrays.
     */
    function CanvasRenderer(canvas) {
        this.canvas = canvas;
        this.context = canvas.getContext("2d");
        this.width = 0;
        this.height = 0;
        this.mesh = null;
        this.palette = null;
        this.shades = new Uint32Array(SHADES);
    }

    CanvasRenderer.prototype.setMesh = function (mesh) {
        this.mesh = mesh;
        this.x = new Float32Array(mesh.vertexCount);
        this.y = new Float32Array(mesh.vertexCount);
        this.depthOf = new Float32Array(mesh.vertexCount);
        this.brightness = new Float32Array(mesh.vertexCount);
    };

    /** @param style  {mode, palette, culling} */
    CanvasRenderer.prototype.draw = function (view, style) {
        this.resize();
        this.setPalette(style.palette);
        this.pixels.set(this.backgroundPixels);
        if (this.mesh) {
            this.depth.fill(0);
            this.project(view);
            if (style.mode === "point")
                this.drawPoints(view);
            else if (style.mode === "wireframe")
                this.drawWireframe(view);
            else
                this.drawSurface(view, style);
        }
        this.context.putImageData(this.image, 0, 0);
    };

    CanvasRenderer.prototype.resize = function () {
        var width = this.canvas.width, height = this.canvas.height;
        if (width === this.width && height === this.height)
            return;
        this.width = width;
        this.height = height;
        this.image = this.context.createImageData(width, height);
        this.pixels = new Uint32Array(this.image.data.buffer);
        this.depth = new Float32Array(width * height);
        this.palette = null;
    };

    CanvasRenderer.prototype.setPalette = function (palette) {
        if (palette === this.palette)
            return;
        this.palette = palette;
        this.backgroundPixels = new Uint32Array(this.width * this.height);
        this.inkOfRow = new Uint32Array(this.height);
        for (var row = 0; row < this.height; ++row) {
            var height = (row + 0.5) / this.height;
            this.backgroundPixels.fill(pack(palette.background(height)), row * this.width, (row + 1) * this.width);
            this.inkOfRow[row] = pack(palette.ink(height));
        }
        for (var i = 0; i < SHADES; ++i)
            this.shades[i] = pack(palette.shade(i / (SHADES - 1)));
        this.edgeColor = pack(palette.edge);
    };

    CanvasRenderer.prototype.project = function (view) {
        var positions = this.mesh.positions, count = this.mesh.vertexCount, r = view.rotation;
        var x = this.x, y = this.y, depthOf = this.depthOf;
        var centerX = this.width / 2 + view.panX, centerY = this.height / 2 + view.panY;
        var scale = view.scale * CAMERA_DISTANCE;
        var r0 = r[0], r1 = r[1], r2 = r[2], r3 = r[3], r4 = r[4], r5 = r[5], r6 = r[6], r7 = r[7], r8 = r[8];
        for (var v = 0, i = 0; v < count; ++v, i += 3) {
            var px = positions[i], py = positions[i + 1], pz = positions[i + 2];
            var nearness = 1 / (CAMERA_DISTANCE - (r6 * px + r7 * py + r8 * pz));
            x[v] = centerX + scale * (r0 * px + r1 * py + r2 * pz) * nearness;
            y[v] = centerY - scale * (r3 * px + r4 * py + r5 * pz) * nearness;
            depthOf[v] = nearness;
        }
    };

    CanvasRenderer.prototype.drawSurface = function (view, style) {
        var smooth = style.mode !== "flat";
        // Light and camera are turned back into the mesh's own space; that saves turning every normal.
        this.lamps.set(transposeTimes(view.rotation, LIGHT));
        this.lamps.set(transposeTimes(view.rotation, [0, 0, CAMERA_DISTANCE]), 3);
        this.edgeStrength = JSC3D.EDGE_STRENGTH[smooth ? "smooth" : "flat"] * 256;
        if (smooth)
            this.lightVertices();
        this.drawTriangles(smooth, style.culling);
        if (this.mesh.showsOutline())
            this.drawOutline();
    };

    // A surface point and its unit normal; light and camera. Both in the mesh's own space.
    CanvasRenderer.prototype.surface = new Float64Array(6);
    CanvasRenderer.prototype.lamps = new Float64Array(6);

    // The shade of this.surface, whose normal may point to either side: both sides of a surface are lit alike.
    // The same formula stands in the WebGL renderer.
    CanvasRenderer.prototype.shadeOfSurface = function () {
        var s = this.surface, lamps = this.lamps, nx = s[3], ny = s[4], nz = s[5];
        var lx = lamps[0] - s[0], ly = lamps[1] - s[1], lz = lamps[2] - s[2];
        var ex = lamps[3] - s[0], ey = lamps[4] - s[1], ez = lamps[5] - s[2];
        var toLight = 1 / Math.sqrt(lx * lx + ly * ly + lz * lz), toEye = 1 / Math.sqrt(ex * ex + ey * ey + ez * ez);
        var cosLight = (nx * lx + ny * ly + nz * lz) * toLight, cosEye = (nx * ex + ny * ey + nz * ez) * toEye;
        if (cosEye < 0)
            cosLight = -cosLight, cosEye = -cosEye;
        var hx = lx * toLight + ex * toEye, hy = ly * toLight + ey * toEye, hz = lz * toLight + ez * toEye;
        var shine = (cosLight + cosEye) / Math.sqrt(hx * hx + hy * hy + hz * hz);
        shine = shine > 0 ? shine * shine : 0;
        shine *= shine;
        shine *= shine;
        var bright = 0.1 + 0.35 * (1 + cosLight) + 0.3 * shine * shine;
        return ((bright > 1 ? 1 : bright) * (SHADES - 1)) | 0;
    };

    CanvasRenderer.prototype.lightVertices = function () {
        var positions = this.mesh.positions, normals = this.mesh.normals, s = this.surface;
        for (var v = 0, i = 0; v < this.mesh.vertexCount; ++v, i += 3) {
            s[0] = positions[i], s[1] = positions[i + 1], s[2] = positions[i + 2];
            s[3] = normals[i], s[4] = normals[i + 1], s[5] = normals[i + 2];
            this.brightness[v] = this.shadeOfSurface();
        }
    };

    // The shade of a triangle at its centroid.
    CanvasRenderer.prototype.flatShade = function (a, b, c) {
        var p = this.mesh.positions, s = this.surface;
        a *= 3, b *= 3, c *= 3;
        var ux = p[b] - p[a], uy = p[b + 1] - p[a + 1], uz = p[b + 2] - p[a + 2];
        var vx = p[c] - p[a], vy = p[c + 1] - p[a + 1], vz = p[c + 2] - p[a + 2];
        var nx = uy * vz - uz * vy, ny = uz * vx - ux * vz, nz = ux * vy - uy * vx;
        var length = Math.sqrt(nx * nx + ny * ny + nz * nz);
        if (!(length > 0))
            return 0;
        for (var k = 0; k < 3; ++k)
            s[k] = (p[a + k] + p[b + k] + p[c + k]) / 3;
        s[3] = nx / length, s[4] = ny / length, s[5] = nz / length;
        return this.shadeOfSurface();
    };

    CanvasRenderer.prototype.drawTriangles = function (smooth, culling) {
        var indices = this.mesh.indices, x = this.x, y = this.y, width = this.width, height = this.height;
        for (var i = 0; i < indices.length; i += 3) {
            var a = indices[i], b = indices[i + 1], c = indices[i + 2];
            var xa = x[a], xb = x[b], xc = x[c], ya = y[a], yb = y[b], yc = y[c];
            // Most triangles of a large mesh hold no pixel centre; see that before anything is computed.
            var firstColumn = Math.ceil((xa < xb ? (xa < xc ? xa : xc) : (xb < xc ? xb : xc)) - 0.5);
            var endColumn = Math.ceil((xa > xb ? (xa > xc ? xa : xc) : (xb > xc ? xb : xc)) - 0.5);
            if (firstColumn >= endColumn || firstColumn >= width || endColumn <= 0)
                continue;
            var firstRow = Math.ceil((ya < yb ? (ya < yc ? ya : yc) : (yb < yc ? yb : yc)) - 0.5);
            var endRow = Math.ceil((ya > yb ? (ya > yc ? ya : yc) : (yb > yc ? yb : yc)) - 0.5);
            if (firstRow >= endRow || firstRow >= height || endRow <= 0)
                continue;
            if (culling && (xb - xa) * (yc - ya) - (xc - xa) * (yb - ya) >= 0)
                continue;
            if (smooth)
                this.fillTriangle(a, b, c, -1);
            else
                this.fillTriangle(a, b, c, this.flatShade(a, b, c));
        }
    };

    // Fills the pixels whose centre lies in the triangle; neighbours share no pixel and leave no gap, since the ends
    // of a row depend on the edge alone (its corners are taken from top to bottom).
    // flatShade is the one shade of the triangle, or -1 to interpolate the brightness of its corners.
    CanvasRenderer.prototype.fillTriangle = function (a, b, c, flatShade) {
        var x = this.x, y = this.y, z = this.depthOf, t = this.brightness, swap;
        if (y[b] < y[a])
            swap = a, a = b, b = swap;
        if (y[c] < y[a])
            swap = a, a = c, c = swap;
        if (y[c] < y[b])
            swap = b, b = c, c = swap;
        var xa = x[a], ya = y[a], xb = x[b], yb = y[b], xc = x[c], yc = y[c];
        var area = (xb - xa) * (yc - ya) - (xc - xa) * (yb - ya);
        if (area < 1e-6 && area > -1e-6)
            return;

        // Depth and brightness are linear on the screen: value = at corner a + along x + along y.
        var za = z[a], zb = z[b] - za, zc = z[c] - za;
        var zx = (zb * (yc - ya) - zc * (yb - ya)) / area, zy = (zc * (xb - xa) - zb * (xc - xa)) / area;
        var ta = flatShade, tx = 0, ty = 0;
        if (flatShade < 0) {
            ta = t[a];
            var tb = t[b] - ta, tc = t[c] - ta;
            tx = (tb * (yc - ya) - tc * (yb - ya)) / area;
            ty = (tc * (xb - xa) - tb * (xc - xa)) / area;
        }
        var edgeStrength = this.prepareEdges(a, b, c);

        var longSlope = (xc - xa) / (yc - ya), upperSlope = (xb - xa) / (yb - ya), lowerSlope = (xc - xb) / (yc - yb);
        var longIsLeft = area > 0;
        var width = this.width, depth = this.depth, pixels = this.pixels, shades = this.shades;
        var endRow = Math.min(Math.ceil(yc - 0.5), this.height);
        for (var row = Math.max(Math.ceil(ya - 0.5), 0); row < endRow; ++row) {
            var dy = row + 0.5 - ya;
            var longX = xa + dy * longSlope;
            var shortX = row + 0.5 < yb ? xa + dy * upperSlope : xb + (row + 0.5 - yb) * lowerSlope;
            var first = Math.ceil((longIsLeft ? longX : shortX) - 0.5);
            var end = Math.ceil((longIsLeft ? shortX : longX) - 0.5);
            first = first < 0 ? 0 : first;
            end = end > width ? width : end;
            if (first >= end)
                continue;
            var dx = first + 0.5 - xa;
            var at = row * width + first, atEnd = row * width + end;
            var zAt = za + dx * zx + dy * zy, tAt = ta + dx * tx + dy * ty;
            if (edgeStrength > 0) {
                this.rowStart[0] = zAt, this.rowStart[1] = zx, this.rowStart[2] = tAt, this.rowStart[3] = tx;
                this.fillRowWithEdges(at, atEnd, first, row, edgeStrength);
                continue;
            }
            for (; at < atEnd; ++at) {
                if (zAt >= depth[at]) {
                    depth[at] = zAt;
                    pixels[at] = shades[tAt | 0];
                }
                zAt += zx;
                tAt += tx;
            }
        }
    };

    CanvasRenderer.prototype.rowStart = new Float64Array(4);

    // Distance in pixels from each edge as a linear function of the pixel: 3 x (at pixel (0, 0), along x, along y).
    CanvasRenderer.prototype.edgeDistance = new Float64Array(9);

    // Fills edgeDistance; returns how visible the triangle's edges are, 0 (not at all) to 256.
    CanvasRenderer.prototype.prepareEdges = function (a, b, c) {
        var x = this.x, y = this.y, fade = JSC3D.EDGE_FADE;
        var xa = x[a], ya = y[a], xb = x[b], yb = y[b], xc = x[c], yc = y[c];
        var area = (xb - xa) * (yc - ya) - (xc - xa) * (yb - ya), sign = area > 0 ? 1 : -1;
        area *= sign;
        if (area < 10 * fade.from * fade.from) // less than the smallest triangle with such an incircle
            return 0;
        var ab = Math.sqrt((xb - xa) * (xb - xa) + (yb - ya) * (yb - ya));
        var bc = Math.sqrt((xc - xb) * (xc - xb) + (yc - yb) * (yc - yb));
        var ca = Math.sqrt((xa - xc) * (xa - xc) + (ya - yc) * (ya - yc));
        var inradius = area / (ab + bc + ca);
        if (inradius <= fade.from)
            return 0;
        var d = this.edgeDistance;
        d[1] = -sign * (yb - ya) / ab, d[2] = sign * (xb - xa) / ab, d[0] = d[1] * (0.5 - xa) + d[2] * (0.5 - ya);
        d[4] = -sign * (yc - yb) / bc, d[5] = sign * (xc - xb) / bc, d[3] = d[4] * (0.5 - xb) + d[5] * (0.5 - yb);
        d[7] = -sign * (ya - yc) / ca, d[8] = sign * (xa - xc) / ca, d[6] = d[7] * (0.5 - xc) + d[8] * (0.5 - yc);
        var visible = inradius >= fade.to ? 1 : (inradius - fade.from) / (fade.to - fade.from);
        return (visible * this.edgeStrength) | 0;
    };

    // Each side of an edge draws its half of the line; coverage falls off linearly, so lines come out smooth.
    CanvasRenderer.prototype.fillRowWithEdges = function (at, atEnd, column, row, edgeStrength) {
        var d = this.edgeDistance, depth = this.depth, pixels = this.pixels, shades = this.shades;
        var edgeColor = this.edgeColor;
        var zAt = this.rowStart[0], zx = this.rowStart[1], tAt = this.rowStart[2], tx = this.rowStart[3];
        var step0 = d[1], step1 = d[4], step2 = d[7];
        var d0 = d[0] + column * step0 + row * d[2];
        var d1 = d[3] + column * step1 + row * d[5];
        var d2 = d[6] + column * step2 + row * d[8];
        for (; at < atEnd; ++at) {
            if (zAt >= depth[at]) {
                depth[at] = zAt;
                var nearest = d0 < d1 ? (d0 < d2 ? d0 : d2) : (d1 < d2 ? d1 : d2);
                if (nearest >= 1)
                    pixels[at] = shades[tAt | 0];
                else
                    pixels[at] = blend(shades[tAt | 0], edgeColor,
                                       (nearest > 0 ? (1 - nearest) * edgeStrength : edgeStrength) | 0);
            }
            zAt += zx;
            tAt += tx;
            d0 += step0;
            d1 += step1;
            d2 += step2;
        }
    };

    // share: 0 (all under) to 256 (all over)
    function blend(under, over, share) {
        var rest = 256 - share;
        var redBlue = Math.imul(under & 0xff00ff, rest) + Math.imul(over & 0xff00ff, share);
        var green = Math.imul((under >>> 8) & 0xff, rest) + Math.imul((over >>> 8) & 0xff, share);
        return 0xff000000 | ((redBlue >>> 8) & 0xff00ff) | (green & 0xff00);
    }

    CanvasRenderer.prototype.drawOutline = function () {
        var outline = this.mesh.outline;
        for (var e = 0; e < outline.length; e += 2)
            this.drawLine(outline[e], outline[e + 1], 220, true);
    };

    CanvasRenderer.prototype.drawWireframe = function (view) {
        var edges = this.mesh.edges, share = (256 * this.mesh.wireframeShare(view.scale)) | 0;
        for (var e = 0; e < edges.length; e += 2)
            this.drawLine(edges[e], edges[e + 1], share, false);
    };

    // A line one pixel wide, smoothed across: each step along its longer direction shares its ink between two pixels.
    // With depthTest, only where no surface is in front; the margin lets the surfaces that meet at the line pass.
    CanvasRenderer.prototype.drawLine = function (a, b, share, depthTest) {
        var xa = this.x[a], ya = this.y[a], xb = this.x[b], yb = this.y[b], width = this.width, height = this.height;
        if ((xa < 0 && xb < 0) || (ya < 0 && yb < 0) || (xa > width && xb > width) || (ya > height && yb > height))
            return;
        var steep = Math.abs(yb - ya) > Math.abs(xb - xa), swap;
        if (steep)
            swap = xa, xa = ya, ya = swap, swap = xb, xb = yb, yb = swap;
        if (xb < xa)
            swap = xa, xa = xb, xb = swap, swap = ya, ya = yb, yb = swap, swap = a, a = b, b = swap;
        var slope = xb > xa ? (yb - ya) / (xb - xa) : 0;
        var za = this.depthOf[a], zSlope = xb > xa ? (this.depthOf[b] - za) / (xb - xa) : 0;
        var along = steep ? width : 1, across = steep ? 1 : width;
        var endStep = Math.min(Math.ceil(xb - 0.5), steep ? height : width), rows = steep ? width : height;
        var depth = this.depth, pixels = this.pixels, ink = this.inkOfRow, edgeColor = this.edgeColor;
        for (var step = Math.max(Math.ceil(xa - 0.5), 0); step < endStep; ++step) {
            var dx = step + 0.5 - xa, level = ya + dx * slope - 0.5, base = Math.floor(level);
            if (base < -1 || base >= rows)
                continue;
            var upper = ((level - base) * share) | 0, at = step * along + base * across;
            var z = (za + dx * zSlope) * 1.004;
            if (base >= 0 && (!depthTest || z >= depth[at]))
                pixels[at] = blend(pixels[at], depthTest ? edgeColor : ink[steep ? step : base], share - upper);
            at += across;
            if (base + 1 < rows && (!depthTest || z >= depth[at]))
                pixels[at] = blend(pixels[at], depthTest ? edgeColor : ink[steep ? step : base + 1], upper);
        }
    };

    CanvasRenderer.prototype.drawPoints = function (view) {
        var x = this.x, y = this.y, dots = this.mesh.pointStyle(view.scale);
        var size = dots.size, share = (256 * dots.share) | 0;
        for (var v = 0; v < x.length; ++v) {
            if (x[v] > -4 && y[v] > -4 && x[v] < this.width + 4 && y[v] < this.height + 4)
                this.drawPoint(Math.round(x[v] - size / 2), Math.round(y[v] - size / 2), size, share);
        }
    };

    CanvasRenderer.prototype.drawPoint = function (left, top, size, share) {
        var pixels = this.pixels;
        for (var row = Math.max(top, 0); row < Math.min(top + size, this.height); ++row) {
            for (var column = Math.max(left, 0); column < Math.min(left + size, this.width); ++column) {
                var corner = size > 2 && (row === top || row === top + size - 1) &&
                             (column === left || column === left + size - 1);
                var at = row * this.width + column;
                pixels[at] = blend(pixels[at], this.inkOfRow[row], corner ? share >> 1 : share);
            }
        }
    };

    JSC3D.CanvasRenderer = CanvasRenderer;

    // ------------------------------------------------------------------------------------------------------ viewer

    var RENDER_MODES = ["smooth", "flat", "point", "wireframe"];
    var DEGREES_PER_PIXEL = 0.4;
    var DEGREES_PER_KEY = 5;
    var ZOOM_PER_PIXEL = 1.01;
    var ZOOM_PER_KEY = 1.1;
    var PIXELS_PER_KEY = 20;
    var FILLED_SHARE = 0.9; // of the canvas, when the mesh is framed

    /**
     * A viewer on a canvas element. Set parameters, then call init and update.
     *
     * Parameters (all texts or numbers): SceneUrl; InitRotationX, InitRotationY, InitRotationZ in degrees, applied in
     * this order about the screen's axes; ModelColor, BackgroundColor1 (top), BackgroundColor2 (bottom) as "#RRGGBB";
     * RenderMode "smooth", "flat", "point" or "wireframe"; FaceCulling "on" or "off"; ProgressBar "on" or "off".
     */
    function Viewer(canvas) {
        this.canvas = canvas;
        this.parameters = {
            SceneUrl: "",
            InitRotationX: 0,
            InitRotationY: 0,
            InitRotationZ: 0,
            ModelColor: "#CAA618",
            BackgroundColor1: "#FFFFFF",
            BackgroundColor2: "#383840",
            RenderMode: "smooth",
            FaceCulling: "off",
            ProgressBar: "on"
        };
        this.view = new View();
        this.fitScale = 1;
        this.mesh = null;
        this.style = null;
        this.renderer = null;
        this.frameRequested = false;
        this.notice = null;
    }

    /** Sets a parameter; unknown names are ignored. Colours and modes take effect with the next update. */
    Viewer.prototype.setParameter = function (name, value) {
        if (Object.prototype.hasOwnProperty.call(this.parameters, name))
            this.parameters[name] = value;
        this.style = null;
    };

    /** Makes the renderer, listens to mouse and keyboard and begins to load the scene. Call it once. */
    Viewer.prototype.init = function () {
        this.renderer = this.createRenderer();
        this.resetView();
        this.listenToMouse();
        this.listenToKeyboard();
        for (var i = 0; i < JSC3D.inputAddOns.length; ++i)
            JSC3D.inputAddOns[i](this, this.canvas);
        if (this.parameters.SceneUrl)
            this.load(this.parameters.SceneUrl);
    };

    Viewer.prototype.createRenderer = function () {
        if (JSC3D.WebGLRenderer && JSC3D.WebGLRenderer.isUsable()) {
            var renderer = new JSC3D.WebGLRenderer(this.canvas, this.update.bind(this));
            if (renderer.isReady())
                return renderer;
        }
        return new CanvasRenderer(this.canvas);
    };

    /** Draws the scene anew with the browser's next frame; calls in between are merged. */
    Viewer.prototype.update = function () {
        if (this.frameRequested || !this.renderer)
            return;
        this.frameRequested = true;
        var viewer = this;
        requestAnimationFrame(function () {
            viewer.frameRequested = false;
            viewer.draw();
        });
    };

    Viewer.prototype.draw = function () {
        this.style = this.style || this.createStyle();
        this.renderer.draw(this.view, this.style);
    };

    Viewer.prototype.createStyle = function () {
        var p = this.parameters;
        return {
            mode: RENDER_MODES.indexOf(p.RenderMode) >= 0 ? p.RenderMode : "smooth",
            culling: p.FaceCulling === "on",
            palette: new Palette(parseColor(p.ModelColor, [202, 166, 24]),
                                 parseColor(p.BackgroundColor1, [255, 255, 255]),
                                 parseColor(p.BackgroundColor2, [56, 56, 64]))
        };
    };

    /** "smooth", "flat", "point" or "wireframe"; anything else is taken as "smooth". Shown with the next update. */
    Viewer.prototype.setRenderMode = function (mode) {
        this.setParameter("RenderMode", mode);
    };

    // ---- what is looked at

    /** Back to the initial rotation, the whole mesh in sight. */
    Viewer.prototype.resetView = function () {
        var p = this.parameters;
        this.view = new View();
        this.view.rotation = multiply(rotationZ(+p.InitRotationZ || 0),
                                      multiply(rotationY(+p.InitRotationY || 0), rotationX(+p.InitRotationX || 0)));
        if (this.mesh)
            this.frameMesh();
        this.update();
    };

    // The mesh fits as it is now and also when turned to face the viewer.
    Viewer.prototype.frameMesh = function () {
        var tilted = projectedBox(this.mesh.positions, this.view.rotation);
        var facing = projectedBox(this.mesh.positions, [1, 0, 0, 0, 1, 0, 0, 0, 1]);
        var scale = FILLED_SHARE / 2 * Math.min(this.canvas.width / Math.max(tilted.halfWidth, facing.halfWidth),
                                                this.canvas.height / Math.max(tilted.halfHeight, facing.halfHeight));
        this.fitScale = isFinite(scale) && scale > 0 ? scale : 1;
        this.view.scale = this.fitScale;
        this.view.panX = -tilted.x * this.fitScale;
        this.view.panY = tilted.y * this.fitScale;
    };

    /** Turns the scene: dx pixels of drag about the screen's vertical axis, dy about the horizontal one. */
    Viewer.prototype.rotate = function (dx, dy) {
        var turn = multiply(rotationX(dy * DEGREES_PER_PIXEL), rotationY(dx * DEGREES_PER_PIXEL));
        this.view.rotation = orthonormalize(multiply(turn, this.view.rotation));
        this.update();
    };

    /** Scales the picture about a point of the canvas, by default its centre. */
    Viewer.prototype.zoom = function (factor, x, y) {
        var view = this.view;
        var scale = Math.max(MIN_ZOOM * this.fitScale, Math.min(MAX_ZOOM * this.fitScale, view.scale * factor));
        var real = scale / view.scale;
        var fromX = x === undefined ? 0 : x - this.canvas.width / 2;
        var fromY = y === undefined ? 0 : y - this.canvas.height / 2;
        view.panX = fromX + (view.panX - fromX) * real;
        view.panY = fromY + (view.panY - fromY) * real;
        view.scale = scale;
        this.update();
    };

    Viewer.prototype.translate = function (dx, dy) {
        this.view.panX += dx;
        this.view.panY += dy;
        this.update();
    };

    /** A position of the page in pixels of the canvas, whatever size it is shown in. */
    Viewer.prototype.toCanvas = function (clientX, clientY) {
        var box = this.canvas.getBoundingClientRect();
        return {
            x: (clientX - box.left - this.canvas.clientLeft) * this.canvas.width / (this.canvas.clientWidth || 1),
            y: (clientY - box.top - this.canvas.clientTop) * this.canvas.height / (this.canvas.clientHeight || 1)
        };
    };

    // ---- mouse and keyboard

    // Fingers are left to the touch add-on.
    Viewer.prototype.listenToMouse = function () {
        var viewer = this, canvas = this.canvas, last = null;
        canvas.addEventListener("pointerdown", function (event) {
            if (event.pointerType === "touch" || event.button !== 0)
                return;
            last = viewer.toCanvas(event.clientX, event.clientY);
            canvas.setPointerCapture(event.pointerId);
        });
        canvas.addEventListener("pointermove", function (event) {
            if (!last || event.pointerType === "touch")
                return;
            var now = viewer.toCanvas(event.clientX, event.clientY);
            viewer.drag(now.x - last.x, now.y - last.y, event.shiftKey, event.ctrlKey || event.metaKey);
            last = now;
        });
        var stop = function () { last = null; };
        canvas.addEventListener("pointerup", stop);
        canvas.addEventListener("pointercancel", stop);
        canvas.addEventListener("contextmenu", function (event) {
            if (event.ctrlKey) // the control key with a click opens a menu on some systems
                event.preventDefault();
        });
        canvas.addEventListener("wheel", function (event) {
            var at = viewer.toCanvas(event.clientX, event.clientY);
            var pixels = event.deltaMode === 0 ? event.deltaY : event.deltaY * 30;
            viewer.zoom(Math.pow(ZOOM_PER_PIXEL, -Math.max(-60, Math.min(60, pixels)) / 4), at.x, at.y);
            event.preventDefault();
        }, { passive: false });
    };

    Viewer.prototype.drag = function (dx, dy, zooming, translating) {
        if (zooming)
            this.zoom(Math.pow(ZOOM_PER_PIXEL, -dy));
        else if (translating)
            this.translate(dx, dy);
        else
            this.rotate(dx, dy);
    };

    Viewer.prototype.listenToKeyboard = function () {
        var viewer = this;
        if (!this.canvas.hasAttribute("tabindex"))
            this.canvas.setAttribute("tabindex", "0");
        this.canvas.addEventListener("keydown", function (event) {
            if (!event.altKey && viewer.handleKey(event.key, event.shiftKey, event.ctrlKey || event.metaKey))
                event.preventDefault();
        });
    };

    // Arrows turn, with SHIFT zoom, with CTRL translate, just as the mouse does. False for keys of no meaning here.
    Viewer.prototype.handleKey = function (key, shift, control) {
        var arrows = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };
        var arrow = Object.prototype.hasOwnProperty.call(arrows, key) ? arrows[key] : null;
        if (arrow && shift)
            this.zoom(Math.pow(ZOOM_PER_KEY, arrow[0] - arrow[1]));
        else if (arrow && control)
            this.translate(arrow[0] * PIXELS_PER_KEY, arrow[1] * PIXELS_PER_KEY);
        else if (arrow)
            this.rotate(arrow[0] * DEGREES_PER_KEY / DEGREES_PER_PIXEL, arrow[1] * DEGREES_PER_KEY / DEGREES_PER_PIXEL);
        else if (control)
            return false; // the browser's own zoom and the like
        else if (key === "+" || key === "=")
            this.zoom(ZOOM_PER_KEY);
        else if (key === "-" || key === "_")
            this.zoom(1 / ZOOM_PER_KEY);
        else if (key === "Home" || key === "0")
            this.resetView();
        else
            return false;
        return true;
    };

    // ---- loading

    /**
     * Loads a scene file and shows it. A page opened from disk may not read files, and a server may not hand out the
     * file; a text format is then taken from the script url + ".js" beside it.
     */
    Viewer.prototype.load = function (url) {
        var loader = JSC3D.findLoader(url);
        if (!loader) {
            this.showNotice("No loader for " + url + " is on this page.");
            return;
        }
        if (this.parameters.ProgressBar === "on")
            this.showNotice("Loading " + url + " ...");
        var anchor = document.createElement("a");
        anchor.href = url;
        if (anchor.protocol === "file:" && loader.isText)
            this.loadAsScript(url, loader);
        else
            this.loadByRequest(url, loader);
    };

    Viewer.prototype.loadByRequest = function (url, loader) {
        var viewer = this, request = new XMLHttpRequest();
        var fail = function () {
            if (loader.isText)
                viewer.loadAsScript(url, loader);
            else
                viewer.showLoadFailure(url, false);
        };
        request.open("GET", url);
        request.responseType = "arraybuffer";
        request.onload = function () {
            if (request.status >= 200 && request.status < 300 && request.response)
                viewer.showScene(url, loader, new Uint8Array(request.response));
            else
                fail();
        };
        request.onerror = fail;
        request.onprogress = function (event) {
            if (viewer.parameters.ProgressBar === "on" && event.lengthComputable)
                viewer.showNotice("Loading " + url + " " + Math.floor(100 * event.loaded / event.total) + " %");
        };
        request.send();
    };

    /** The script url + ".js" assigns the text of the file to window.JSC3D_SCENE_TEXT. */
    Viewer.prototype.loadAsScript = function (url, loader) {
        var viewer = this, script = document.createElement("script");
        window.JSC3D_SCENE_TEXT = null;
        script.onload = function () {
            var text = window.JSC3D_SCENE_TEXT;
            window.JSC3D_SCENE_TEXT = null; // the text may be large, and the script's element keeps nothing of it
            script.parentNode.removeChild(script);
            if (typeof text === "string")
                viewer.showScene(url, loader, new TextEncoder().encode(text));
            else
                viewer.showLoadFailure(url, true);
        };
        script.onerror = function () {
            script.parentNode.removeChild(script);
            viewer.showLoadFailure(url, true);
        };
        script.src = url + ".js";
        document.head.appendChild(script);
    };

    Viewer.prototype.showScene = function (url, loader, bytes) {
        try {
            var scene = loader.parse(bytes);
            this.setMesh(new Mesh(scene.positions, scene.indices));
        } catch (error) {
            JSC3D.log("error", url + ": " + error.message);
            this.showNotice(url + " could not be read: " + error.message);
            return;
        }
        JSC3D.log("info", url + ": " + this.mesh.vertexCount + " vertices, " + this.mesh.triangleCount + " triangles");
        if (this.mesh.droppedTriangles > 0)
            JSC3D.log("warning", url + ": " + this.mesh.droppedTriangles + " triangles lack a proper corner");
        this.showNotice(this.mesh.triangleCount > 0 ? "" : url + " holds no triangles.");
    };

    Viewer.prototype.setMesh = function (mesh) {
        this.mesh = mesh;
        this.renderer.setMesh(mesh);
        this.resetView();
    };

    Viewer.prototype.showLoadFailure = function (url, isText) {
        JSC3D.log("error", url + " could not be loaded");
        this.showNotice(url + " could not be loaded. " +
                        (isText ? "Keep " + url + " and " + url + ".js in the folder of this page and load it again."
                                : "Browsers do not read it from disk: open this page through a web server."));
    };

    /** A short message in front of the canvas; an empty text removes it. */
    Viewer.prototype.showNotice = function (text) {
        if (!this.notice && text) {
            var style = "position:absolute;box-sizing:border-box;max-width:420px;padding:14px 18px;border-radius:8px;" +
                        "background:#fffbe8;color:#3a3000;border:1px solid #caa618;font:15px/1.4 sans-serif;" +
                        "text-align:center;transform:translate(-50%,-50%)";
            this.notice = document.createElement("div");
            this.notice.setAttribute("role", "alert");
            this.notice.setAttribute("style", style);
            this.notice.style.left = this.canvas.offsetLeft + this.canvas.offsetWidth / 2 + "px";
            this.notice.style.top = this.canvas.offsetTop + this.canvas.offsetHeight / 2 + "px";
            this.canvas.parentNode.appendChild(this.notice);
        }
        if (this.notice) {
            this.notice.textContent = text;
            this.notice.style.display = text ? "block" : "none";
        }
    };

    JSC3D.Viewer = Viewer;
}());
