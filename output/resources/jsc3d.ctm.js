/**
 * Mesh viewer, loader for OpenCTM files (version 5) written with the methods RAW and MG1.
 *
 * RAW holds plain arrays. MG1 holds each array transposed into byte planes and packed with LZMA; its triangle corners
 * are stored as differences. Texture coordinates and attributes stand behind what is needed here and are not read.
 */
(function () {
    "use strict";

    var FILE_VERSION = 5;

    // ------------------------------------------------------------------------------------------------ LZMA decoder

    var PROBABILITY_BITS = 11;
    var PROBABILITY_HALF = 1 << (PROBABILITY_BITS - 1);
    var ADAPTATION = 5;
    var SMALLEST_RANGE = 0x1000000;
    var MIN_MATCH = 2;

    // Arithmetic decoder: narrows a 32-bit range by one binary decision at a time.
    function RangeDecoder(bytes, from, to) {
        if (to - from < 5)
            throw new Error("packed data is cut off");
        this.bytes = bytes;
        this.at = from + 1; // the first byte is always zero
        this.end = to;
        this.range = 0xffffffff;
        this.code = 0;
        for (var i = 0; i < 4; ++i)
            this.code = ((this.code << 8) | this.bytes[this.at++]) >>> 0;
    }

    RangeDecoder.prototype.normalize = function () {
        if (this.range >= SMALLEST_RANGE)
            return;
        if (this.at >= this.end)
            throw new Error("packed data is cut off");
        this.range = (this.range << 8) >>> 0;
        this.code = ((this.code << 8) | this.bytes[this.at++]) >>> 0;
    };

    // One decision with an adaptive probability, which is the chance of a 0.
    RangeDecoder.prototype.bit = function (probabilities, which) {
        this.normalize();
        var probability = probabilities[which];
        var bound = (this.range >>> PROBABILITY_BITS) * probability;
        if (this.code < bound) {
            this.range = bound;
            probabilities[which] = probability + (((1 << PROBABILITY_BITS) - probability) >>> ADAPTATION);
            return 0;
        }
        this.range -= bound;
        this.code -= bound;
        probabilities[which] = probability - (probability >>> ADAPTATION);
        return 1;
    };

    // Bits of equal chance, highest first.
    RangeDecoder.prototype.direct = function (count) {
        var value = 0;
        for (; count > 0; --count) {
            this.normalize();
            this.range >>>= 1;
            var one = this.code >= this.range ? 1 : 0;
            if (one)
                this.code -= this.range;
            value = value * 2 + one;
        }
        return value;
    };

    // A number of some bits through a binary tree of probabilities that begins at `base`; node 1 is the root.
    RangeDecoder.prototype.tree = function (probabilities, base, bits) {
        var node = 1;
        for (var i = 0; i < bits; ++i)
            node = 2 * node + this.bit(probabilities, base + node);
        return node - (1 << bits);
    };

    // The same with the lowest bit first.
    RangeDecoder.prototype.reverseTree = function (probabilities, base, bits) {
        var node = 1, value = 0;
        for (var i = 0; i < bits; ++i) {
            var one = this.bit(probabilities, base + node);
            node = 2 * node + one;
            value |= one << i;
        }
        return value;
    };

    function newProbabilities(count) {
        var probabilities = new Uint16Array(count);
        probabilities.fill(PROBABILITY_HALF);
        return probabilities;
    }

    // Match lengths from 0: eight short and eight middle ones for each position state, 256 long ones.
    function LengthDecoder() {
        this.choice = newProbabilities(2);
        this.low = newProbabilities(16 << 3);
        this.middle = newProbabilities(16 << 3);
        this.high = newProbabilities(256);
    }

    LengthDecoder.prototype.decode = function (decoder, positionState) {
        if (decoder.bit(this.choice, 0) === 0)
            return decoder.tree(this.low, positionState << 3, 3);
        if (decoder.bit(this.choice, 1) === 0)
            return 8 + decoder.tree(this.middle, positionState << 3, 3);
        return 16 + decoder.tree(this.high, 0, 8);
    };

    var STATES = 12;
    var FIRST_STATE_AFTER_MATCH = 7;
    var LENGTH_STATES = 4;
    var ALIGN_BITS = 4;
    var FIRST_MODELLED_SLOT = 4;
    var END_MODELLED_SLOT = 14;

    /**
     * @param properties  five bytes: (pb * 5 + lp) * 9 + lc, then the size of the dictionary, not needed since the
     *                    whole output is at hand
     */
    function LzmaDecoder(decoder, properties, outputSize) {
        var packed = properties[0];
        if (packed >= 9 * 5 * 5)
            throw new Error("packed data has a wrong header");
        this.decoder = decoder;
        this.output = new Uint8Array(outputSize);
        this.size = 0;
        this.literalContextBits = packed % 9;
        this.literalPositionMask = (1 << (Math.floor(packed / 9) % 5)) - 1;
        this.positionMask = (1 << Math.floor(packed / 45)) - 1;

        // What the last steps were: below 7 after a literal, else after a match.
        this.state = 0;
        this.lastDistances = [1, 1, 1, 1];
        this.isMatch = newProbabilities(STATES << 4);
        this.isRepeat = newProbabilities(STATES);
        this.isOtherRepeat = newProbabilities(STATES); // not the latest distance
        this.isLongRepeat0 = newProbabilities(STATES << 4);
        this.isThirdRepeat = newProbabilities(STATES); // not the second latest
        this.isFourthRepeat = newProbabilities(STATES);
        this.literals = newProbabilities(0x300 << (this.literalContextBits + Math.floor(packed / 9) % 5));
        this.slots = newProbabilities(LENGTH_STATES << 6);
        this.distances = newProbabilities(1 << 7);
        this.align = newProbabilities(1 << ALIGN_BITS);
        this.matchLength = new LengthDecoder();
        this.repeatLength = new LengthDecoder();
    }

    // Ends because every turn adds at least one byte, up to the known size.
    LzmaDecoder.prototype.run = function () {
        while (this.size < this.output.length) {
            var positionState = this.size & this.positionMask;
            if (this.decoder.bit(this.isMatch, (this.state << 4) + positionState) === 0)
                this.decodeLiteral();
            else if (this.decoder.bit(this.isRepeat, this.state) === 0)
                this.decodeMatch(positionState);
            else
                this.decodeRepeat(positionState);
        }
        return this.output;
    };

    LzmaDecoder.prototype.decodeLiteral = function () {
        var previous = this.size > 0 ? this.output[this.size - 1] : 0;
        var context = ((this.size & this.literalPositionMask) << this.literalContextBits) +
                      (previous >>> (8 - this.literalContextBits));
        var base = 0x300 * context, symbol = 1;
        if (this.state >= FIRST_STATE_AFTER_MATCH) {
            // The byte a longer match would have brought is known not to follow; it guides the bits until one differs.
            var guide = this.output[this.size - this.lastDistances[0]];
            while (symbol < 0x100) {
                var guideBit = (guide >>> 7) & 1;
                guide <<= 1;
                var one = this.decoder.bit(this.literals, base + ((1 + guideBit) << 8) + symbol);
                symbol = 2 * symbol + one;
                if (one !== guideBit)
                    break;
            }
        }
        while (symbol < 0x100)
            symbol = 2 * symbol + this.decoder.bit(this.literals, base + symbol);
        this.output[this.size++] = symbol & 0xff;
        this.state = this.state < 4 ? 0 : this.state < 10 ? this.state - 3 : this.state - 6;
    };

    LzmaDecoder.prototype.decodeMatch = function (positionState) {
        var length = this.matchLength.decode(this.decoder, positionState);
        var last = this.lastDistances;
        last.pop();
        last.unshift(this.decodeDistance(length));
        this.state = this.state < FIRST_STATE_AFTER_MATCH ? 7 : 10;
        this.copy(length + MIN_MATCH);
    };

    // A slot gives the two highest bits of the distance and how many follow: lower bits modelled for near ones, plain
    // bits and four modelled ones for far ones.
    LzmaDecoder.prototype.decodeDistance = function (length) {
        var decoder = this.decoder;
        var slot = decoder.tree(this.slots, Math.min(length, LENGTH_STATES - 1) << 6, 6);
        if (slot < FIRST_MODELLED_SLOT)
            return slot + 1;
        var bits = (slot >>> 1) - 1, distance = (2 | (slot & 1)) * Math.pow(2, bits);
        if (slot < END_MODELLED_SLOT)
            distance += decoder.reverseTree(this.distances, distance - slot, bits);
        else
            distance += decoder.direct(bits - ALIGN_BITS) * (1 << ALIGN_BITS) +
                        decoder.reverseTree(this.align, 0, ALIGN_BITS);
        return distance + 1;
    };

    LzmaDecoder.prototype.decodeRepeat = function (positionState) {
        var decoder = this.decoder, last = this.lastDistances, state = this.state;
        if (decoder.bit(this.isOtherRepeat, state) === 0) {
            if (decoder.bit(this.isLongRepeat0, (state << 4) + positionState) === 0) {
                this.state = state < FIRST_STATE_AFTER_MATCH ? 9 : 11;
                this.copy(1);
                return;
            }
        } else {
            var which = decoder.bit(this.isThirdRepeat, state) === 0 ? 1 : 2 + decoder.bit(this.isFourthRepeat, state);
            last.unshift(last.splice(which, 1)[0]);
        }
        var length = this.repeatLength.decode(decoder, positionState);
        this.state = state < FIRST_STATE_AFTER_MATCH ? 8 : 11;
        this.copy(length + MIN_MATCH);
    };

    // Byte by byte, since source and target may overlap.
    LzmaDecoder.prototype.copy = function (length) {
        var distance = this.lastDistances[0], output = this.output;
        if (distance > this.size || this.size + length > output.length)
            throw new Error("packed data is damaged");
        for (; length > 0; --length, ++this.size)
            output[this.size] = output[this.size - distance];
    };

    function unpackLzma(properties, bytes, from, to, outputSize) {
        return new LzmaDecoder(new RangeDecoder(bytes, from, to), properties, outputSize).run();
    }

    // --------------------------------------------------------------------------------------------------- file body

    function CtmReader(bytes) {
        this.bytes = bytes;
        this.data = new DataView(bytes.buffer, bytes.byteOffset, bytes.byteLength);
        this.at = 0;
    }

    // Moves past a number of bytes and returns where they begin.
    CtmReader.prototype.take = function (count) {
        if (count > this.bytes.length - this.at)
            throw new Error("the file is cut off");
        this.at += count;
        return this.at - count;
    };

    CtmReader.prototype.word = function () {
        return this.data.getUint32(this.take(4), true);
    };

    CtmReader.prototype.tag = function () {
        var from = this.take(4);
        return String.fromCharCode.apply(null, this.bytes.subarray(from, from + 4));
    };

    CtmReader.prototype.expectTag = function (expected) {
        if (this.tag() !== expected)
            throw new Error("the part " + expected + " is missing");
    };

    CtmReader.prototype.rawWords = function (count) {
        return new Uint32Array(this.copyOf(4 * count));
    };

    CtmReader.prototype.rawFloats = function (count) {
        return new Float32Array(this.copyOf(4 * count));
    };

    // A copy, since the file does not align its arrays.
    CtmReader.prototype.copyOf = function (byteCount) {
        var from = this.bytes.byteOffset + this.take(byteCount);
        return this.bytes.buffer.slice(from, from + byteCount);
    };

    // count records of `size` words. The packed bytes stand in planes, the highest byte of every word first; inside a
    // plane the first words of all records come before the second ones.
    CtmReader.prototype.packedWords = function (count, size) {
        var packedSize = this.word(), properties = this.bytes.subarray(this.take(5), this.at);
        var from = this.take(packedSize), plane = count * size;
        var bytes = unpackLzma(properties, this.bytes, from, from + packedSize, 4 * plane);
        var words = new Uint32Array(plane);
        for (var k = 0, source = 0; k < size; ++k) {
            for (var i = 0; i < count; ++i, ++source) {
                words[i * size + k] = (bytes[source] << 24) | (bytes[source + plane] << 16) |
                                      (bytes[source + 2 * plane] << 8) | bytes[source + 3 * plane];
            }
        }
        return words;
    };

    // Undoes the differences: the first corner counts from the first corner of the triangle before, the third from the
    // first, and the second from the second before while the first corner stays the same, else from the first.
    function sumCorners(indices) {
        for (var i = 0; i < indices.length; i += 3) {
            var sameFirst = i > 0 && indices[i] === 0;
            if (i > 0)
                indices[i] += indices[i - 3];
            indices[i + 2] += indices[i];
            indices[i + 1] += sameFirst ? indices[i - 2] : indices[i];
        }
    }

    function readHeader(reader) {
        if (reader.bytes.length < 4 || reader.tag() !== "OCTM")
            throw new Error("this is not an OpenCTM file");
        if (reader.word() !== FILE_VERSION)
            throw new Error("its version is not " + FILE_VERSION);
        var header = { method: reader.tag(), vertexCount: reader.word(), triangleCount: reader.word() };
        reader.take(12); // numbers of texture and attribute maps, flags
        reader.take(reader.word()); // comment
        return header;
    }

    function parseCtm(bytes) {
        var reader = new CtmReader(bytes), header = readHeader(reader), indices, positions;
        if (header.method !== "RAW\0" && header.method !== "MG1\0")
            throw new Error("its method " + header.method.replace("\0", "") + " is not among RAW and MG1");
        var raw = header.method === "RAW\0";
        reader.expectTag("INDX");
        indices = raw ? reader.rawWords(3 * header.triangleCount) : reader.packedWords(header.triangleCount, 3);
        if (!raw)
            sumCorners(indices);
        reader.expectTag("VERT");
        if (raw)
            positions = reader.rawFloats(3 * header.vertexCount);
        else
            positions = new Float32Array(reader.packedWords(3 * header.vertexCount, 1).buffer);
        return { positions: positions, indices: indices };
    }

    JSC3D.registerLoader("ctm", parseCtm, false);
}());
