/**
 * Mesh viewer, what old browsers lack. Load it before the other scripts; where nothing is missing it does nothing.
 */
(function (global) {
    "use strict";

    var typedArrays = [
        Int8Array, Uint8Array, Int16Array, Uint16Array, Int32Array, Uint32Array, Float32Array, Float64Array
    ];

    function addMethod(prototype, name, method) {
        if (!prototype[name])
            Object.defineProperty(prototype, name, { value: method, writable: true, configurable: true });
    }

    function fill(value, from, to) {
        to = to === undefined ? this.length : to;
        for (var i = from || 0; i < to; ++i)
            this[i] = value;
        return this;
    }

    function slice(from, to) {
        return new this.constructor(this.subarray(from || 0, to === undefined ? this.length : to));
    }

    for (var i = 0; i < typedArrays.length; ++i) {
        addMethod(typedArrays[i].prototype, "fill", fill);
        addMethod(typedArrays[i].prototype, "slice", slice);
        addMethod(typedArrays[i].prototype, "indexOf", Array.prototype.indexOf);
    }

    // The product of two whole numbers modulo 2^32; an ordinary product would lose its low bits.
    if (!Math.imul) {
        Math.imul = function (a, b) {
            return ((a & 0xffff) * b + ((((a >>> 16) * b) & 0xffff) << 16)) | 0;
        };
    }

    if (!global.requestAnimationFrame) {
        global.requestAnimationFrame = function (draw) {
            return global.setTimeout(function () { draw(Date.now()); }, 16);
        };
    }

    // Scene texts are ASCII; anything else in them is a comment.
    if (!global.TextEncoder) {
        global.TextEncoder = function () {};
        global.TextEncoder.prototype.encode = function (text) {
            var bytes = new Uint8Array(text.length);
            for (var k = 0; k < text.length; ++k)
                bytes[k] = text.charCodeAt(k) < 128 ? text.charCodeAt(k) : 63;
            return bytes;
        };
    }
}(typeof window !== "undefined" ? window : globalThis));
