/**
 * Mesh viewer, loader for 3DS files: the vertices and faces of every object in the file, as one mesh.
 *
 * The file is a tree of chunks, each with a two-byte kind and a four-byte length that counts its own header.
 * Materials, lights, cameras and animation are passed over.
 */
(function () {
    "use strict";

    var MAIN = 0x4d4d, EDITOR = 0x3d3d, OBJECT = 0x4000, TRIANGLE_MESH = 0x4100, VERTICES = 0x4110, FACES = 0x4120;
    var HEADER_BYTES = 6;

    // Calls visit(kind, from, to) for the contents of each chunk in a range of bytes. Some programs write the length of
    // an outer chunk too small: only the file's end bounds a chunk, and visit returns how far inner chunks reached.
    // Returns the end of the last chunk. Ends because every chunk has at least its header.
    function forEachChunk(data, from, to, visit) {
        while (from + HEADER_BYTES <= to) {
            var kind = data.getUint16(from, true), length = data.getUint32(from + 2, true);
            if (length < HEADER_BYTES || from + length > data.byteLength)
                throw new Error("a chunk does not fit into the file");
            var reached = visit(kind, from + HEADER_BYTES, from + length) || 0;
            from = Math.max(from + length, reached);
        }
        return from;
    }

    function skipName(data, from, to) {
        while (from < to && data.getUint8(from) !== 0)
            ++from;
        return from + 1;
    }

    // A two-byte count and that many records of recordBytes; returns the count.
    function readCount(data, from, to, recordBytes) {
        var count = to - from >= 2 ? data.getUint16(from, true) : 0;
        if (from + 2 + count * recordBytes > to)
            throw new Error("a list is cut off");
        return count;
    }

    function readVertices(data, from, to, positions) {
        var count = readCount(data, from, to, 12);
        for (var i = 0; i < 3 * count; ++i)
            positions.push(data.getFloat32(from + 2 + 4 * i, true));
    }

    // A face record: three vertex numbers of this object and a word of flags.
    function readFaces(data, from, to, firstVertex, indices) {
        var count = readCount(data, from, to, 8);
        for (var face = 0; face < count; ++face) {
            for (var k = 0; k < 3; ++k)
                indices.push(firstVertex + data.getUint16(from + 2 + 8 * face + 2 * k, true));
        }
    }

    function parse3ds(bytes) {
        var data = new DataView(bytes.buffer, bytes.byteOffset, bytes.byteLength);
        if (bytes.length < HEADER_BYTES || data.getUint16(0, true) !== MAIN)
            throw new Error("this is not a 3DS file");
        var positions = [], indices = [];
        var visit = function (kind, from, to) {
            if (kind === MAIN || kind === EDITOR)
                return forEachChunk(data, from, to, visit);
            if (kind === OBJECT)
                return forEachChunk(data, skipName(data, from, to), to, visit);
            return kind === TRIANGLE_MESH ? readMesh(from, to) : to;
        };
        // Faces may stand before their vertices, and they count from the object's own first vertex.
        var readMesh = function (from, to) {
            var firstVertex = positions.length / 3;
            return forEachChunk(data, from, to, function (kind, chunkFrom, chunkTo) {
                if (kind === VERTICES)
                    readVertices(data, chunkFrom, chunkTo, positions);
                else if (kind === FACES)
                    readFaces(data, chunkFrom, chunkTo, firstVertex, indices);
            });
        };
        forEachChunk(data, 0, bytes.length, visit);
        return { positions: new Float64Array(positions), indices: new Int32Array(indices) };
    }

    JSC3D.registerLoader("3ds", parse3ds, false);
}());
