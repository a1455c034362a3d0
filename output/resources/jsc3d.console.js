/**
 * Mesh viewer, log on the page: shows what the viewer reports, for devices whose browser hides its own console.
 *
 *   <div id="log"></div>
 *   <script src="jsc3d.js"></script>
 *   <script src="jsc3d.console.js"></script>
 *   <script>JSC3D.console.attach(document.getElementById("log"));</script>
 *
 * Lines written before a log element is attached are kept and shown then.
 */
(function () {
    "use strict";

    var MAX_LINES = 200;
    var COLORS = { info: "#2b2b30", warning: "#7a5200", error: "#a01414" };

    function PageConsole() {
        this.element = null;
        this.lines = [];
    }

    /** Shows the log in an element, or nowhere with null. */
    PageConsole.prototype.attach = function (element) {
        this.element = element;
        if (!element)
            return;
        element.setAttribute("role", "log");
        element.style.cssText += ";max-height:10em;overflow-y:auto;font:13px/1.4 monospace;white-space:pre-wrap";
        element.textContent = "";
        for (var i = 0; i < this.lines.length; ++i)
            this.show(this.lines[i]);
    };

    /** @param level  "info", "warning" or "error" */
    PageConsole.prototype.write = function (level, text) {
        var line = { level: COLORS[level] ? level : "info", text: String(text) };
        this.lines.push(line);
        if (this.lines.length > MAX_LINES) {
            this.lines.shift();
            if (this.element && this.element.firstChild)
                this.element.removeChild(this.element.firstChild);
        }
        if (this.element)
            this.show(line);
    };

    PageConsole.prototype.clear = function () {
        this.lines = [];
        if (this.element)
            this.element.textContent = "";
    };

    PageConsole.prototype.show = function (line) {
        var row = document.createElement("div");
        row.style.color = COLORS[line.level];
        row.textContent = (line.level === "info" ? "" : line.level + ": ") + line.text;
        this.element.appendChild(row);
        this.element.scrollTop = this.element.scrollHeight;
    };

    JSC3D.console = new PageConsole();
}());
