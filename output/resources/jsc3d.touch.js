/**
 * Mesh viewer, touch input: one finger rotates, two fingers zoom (pinch) and translate, a double tap resets the view.
 */
(function () {
    "use strict";

    var DOUBLE_TAP_MS = 300;
    var TAP_PIXELS = 12;

    function TouchInput(viewer, canvas) {
        this.viewer = viewer;
        this.fingers = {}; // pointer number -> last position on the canvas
        this.tapStart = null;
        this.lastTap = null;
        // Without this the browser scrolls and zooms the page under the fingers.
        canvas.style.touchAction = "none";
        canvas.addEventListener("pointerdown", this.onDown.bind(this));
        canvas.addEventListener("pointermove", this.onMove.bind(this));
        canvas.addEventListener("pointerup", this.onUp.bind(this));
        canvas.addEventListener("pointercancel", this.onCancel.bind(this));
    }

    TouchInput.prototype.onDown = function (event) {
        if (event.pointerType !== "touch")
            return;
        var at = this.viewer.toCanvas(event.clientX, event.clientY);
        this.fingers[event.pointerId] = at;
        this.tapStart = Object.keys(this.fingers).length === 1 ? at : null;
        event.target.setPointerCapture(event.pointerId);
    };

    TouchInput.prototype.onMove = function (event) {
        var before = this.fingers[event.pointerId];
        if (!before)
            return;
        var now = this.viewer.toCanvas(event.clientX, event.clientY), others = this.otherFingers(event.pointerId);
        this.fingers[event.pointerId] = now;
        if (this.tapStart && distance(this.tapStart, now) > TAP_PIXELS)
            this.tapStart = null;
        if (others.length === 0)
            this.viewer.rotate(now.x - before.x, now.y - before.y);
        else if (others.length === 1)
            this.pinch(before, now, others[0]);
    };

    // The points under the two fingers stay under them: shift with the middle, scale with the distance.
    TouchInput.prototype.pinch = function (before, now, other) {
        var spread = distance(before, other);
        this.viewer.translate((now.x - before.x) / 2, (now.y - before.y) / 2);
        if (spread > 1)
            this.viewer.zoom(distance(now, other) / spread, (now.x + other.x) / 2, (now.y + other.y) / 2);
    };

    TouchInput.prototype.onUp = function (event) {
        if (!this.fingers[event.pointerId])
            return;
        delete this.fingers[event.pointerId];
        if (!this.tapStart)
            return;
        var tap = { x: this.tapStart.x, y: this.tapStart.y, time: event.timeStamp };
        var isDouble = this.lastTap && tap.time - this.lastTap.time < DOUBLE_TAP_MS &&
                       distance(tap, this.lastTap) < 3 * TAP_PIXELS;
        if (isDouble)
            this.viewer.resetView();
        this.lastTap = isDouble ? null : tap;
        this.tapStart = null;
    };

    TouchInput.prototype.onCancel = function (event) {
        delete this.fingers[event.pointerId];
        this.tapStart = null;
    };

    TouchInput.prototype.otherFingers = function (pointerId) {
        var others = [];
        for (var key in this.fingers) {
            if (key !== String(pointerId))
                others.push(this.fingers[key]);
        }
        return others;
    };

    function distance(a, b) {
        return Math.sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y));
    }

    JSC3D.inputAddOns.push(function (viewer, canvas) {
        return new TouchInput(viewer, canvas);
    });
}());
