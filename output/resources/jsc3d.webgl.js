/**
 * Mesh viewer, WebGL 2 renderer. The viewer uses it instead of the canvas renderer where this script is on the page
 * and WebGL works; both draw the same picture.
 */
(function () {
    "use strict";

    // The same camera as the canvas renderer's. The whole mesh lies within the depth range.
    var TRANSFORM = [
        "uniform mat3 rotation;",
        "uniform vec2 canvasSize;",
        "uniform vec2 pan;",
        "uniform float scale;",
        "vec4 project(vec3 seen) {",
        "    float away = CAMERA_DISTANCE - seen.z;",
        "    vec2 pixel = scale * CAMERA_DISTANCE * seen.xy + pan * away;",
        "    return vec4(2.0 * pixel / canvasSize, 2.0 * (away - CAMERA_DISTANCE), away);",
        "}"
    ].join("\n");

    // Every triangle has three vertices of its own, so the remainder of the vertex number tells the corner.
    var SURFACE_VERTEX = [
        "layout(location = 0) in vec3 position;",
        "layout(location = 1) in vec3 normal;",
        "out vec3 seenPosition;",
        "out vec3 seenNormal;",
        "out vec3 corners;",
        "flat out vec3 cornerPosition;",
        "void main() {",
        "    seenPosition = rotation * position;",
        "    seenNormal = rotation * normal;",
        "    cornerPosition = seenPosition;",
        "    int corner = gl_VertexID % 3;",
        "    corners = vec3(corner == 0, corner == 1, corner == 2);",
        "    gl_Position = project(seenPosition);",
        "}"
    ].join("\n");

    var SURFACE_FRAGMENT = [
        "in vec3 seenPosition;",
        "in vec3 seenNormal;",
        "in vec3 corners;",
        "flat in vec3 cornerPosition;",
        "uniform bool facets;",
        "uniform vec3 model;",
        "uniform vec3 edgeColor;",
        "uniform float edgeStrength;",
        "uniform vec2 edgeFade;",
        "out vec4 color;",
        "float brightnessAt(vec3 point, vec3 normal) {",
        "    vec3 toLight = normalize(LIGHT - point);",
        "    vec3 toEye = normalize(vec3(0.0, 0.0, CAMERA_DISTANCE) - point);",
        "    normal = dot(normal, toEye) < 0.0 ? -normal : normal;",
        "    float shine = pow(max(dot(normal, normalize(toLight + toEye)), 0.0), 16.0);",
        "    return min(0.1 + 0.35 * (1.0 + dot(normal, toLight)) + 0.3 * shine, 1.0);",
        "}",
        "vec3 shade(float brightness) {",
        "    if (brightness <= 0.75)",
        "        return model * (0.3 + 0.7 * brightness / 0.75);",
        "    return mix(model, vec3(1.0), 0.5 * (brightness - 0.75) / 0.25);",
        "}",
        "void main() {",
        "    vec3 facet = normalize(cross(dFdx(seenPosition), dFdy(seenPosition)));",
        "    vec3 normal = dot(seenNormal, seenNormal) > 0.0 ? normalize(seenNormal) : facet;",
        "    float brightness = facets ? brightnessAt(cornerPosition, facet) : brightnessAt(seenPosition, normal);",
        "    // A corner weight falls to 0 at the opposite edge; its slope turns it into a distance in pixels.",
        "    vec3 slope = sqrt(dFdx(corners) * dFdx(corners) + dFdy(corners) * dFdy(corners));",
        "    vec3 distances = corners / max(slope, vec3(1e-6));",
        "    float nearest = min(distances.x, min(distances.y, distances.z));",
        "    float inradius = 1.0 / max(slope.x + slope.y + slope.z, 1e-6);",
        "    float visible = clamp((inradius - edgeFade.x) / (edgeFade.y - edgeFade.x), 0.0, 1.0);",
        "    float share = edgeStrength * visible * clamp(1.0 - nearest, 0.0, 1.0);",
        "    color = vec4(mix(shade(brightness), edgeColor, share), 1.0);",
        "}"
    ].join("\n");

    var LINE_VERTEX = [
        "layout(location = 0) in vec3 position;",
        "uniform float pointSize;",
        "uniform float towardsEye;",
        "void main() {",
        "    gl_Position = project(rotation * position);",
        "    gl_Position.z -= towardsEye * gl_Position.w;",
        "    gl_PointSize = pointSize;",
        "}"
    ].join("\n");

    var LINE_FRAGMENT = [
        "uniform vec2 canvasSize;",
        "uniform vec4 upperInk;",
        "uniform vec4 lowerInk;",
        "uniform float inkChange;",
        "out vec4 color;",
        "void main() {",
        "    color = gl_FragCoord.y > inkChange * canvasSize.y ? upperInk : lowerInk;",
        "}"
    ].join("\n");

    // One triangle that covers the canvas.
    var BACKGROUND_VERTEX = [
        "out float height;",
        "void main() {",
        "    vec2 corner = vec2(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0);",
        "    height = 0.5 - 0.5 * corner.y;",
        "    gl_Position = vec4(corner, 0.0, 1.0);",
        "}"
    ].join("\n");

    var BACKGROUND_FRAGMENT = [
        "in float height;",
        "uniform vec3 top;",
        "uniform vec3 bottom;",
        "out vec4 color;",
        "void main() {",
        "    color = vec4(mix(top, bottom, height * height), 1.0);",
        "}"
    ].join("\n");

    function header() {
        return "#version 300 es\nprecision highp float;\n" +
               "const float CAMERA_DISTANCE = " + JSC3D.CAMERA_DISTANCE.toFixed(6) + ";\n" +
               "const vec3 LIGHT = vec3(" + JSC3D.LIGHT.map(function (x) { return x.toFixed(6); }).join(", ") + ");\n";
    }

    function compile(gl, kind, source) {
        var shader = gl.createShader(kind);
        gl.shaderSource(shader, header() + source);
        gl.compileShader(shader);
        if (!gl.getShaderParameter(shader, gl.COMPILE_STATUS) && !gl.isContextLost())
            throw new Error("shader: " + gl.getShaderInfoLog(shader));
        return shader;
    }

    // A linked program and the places of its uniforms by name.
    function Program(gl, vertexSource, fragmentSource) {
        this.handle = gl.createProgram();
        gl.attachShader(this.handle, compile(gl, gl.VERTEX_SHADER, vertexSource));
        gl.attachShader(this.handle, compile(gl, gl.FRAGMENT_SHADER, fragmentSource));
        gl.linkProgram(this.handle);
        if (!gl.getProgramParameter(this.handle, gl.LINK_STATUS) && !gl.isContextLost())
            throw new Error("program: " + gl.getProgramInfoLog(this.handle));
        this.places = {};
        var count = gl.getProgramParameter(this.handle, gl.ACTIVE_UNIFORMS) || 0;
        for (var i = 0; i < count; ++i) {
            var name = gl.getActiveUniform(this.handle, i).name;
            this.places[name] = gl.getUniformLocation(this.handle, name);
        }
    }

    function getContext(canvas) {
        return canvas.getContext("webgl2", { alpha: false, antialias: true, preserveDrawingBuffer: true });
    }

    function makePrograms(gl) {
        return {
            surface: new Program(gl, TRANSFORM + "\n" + SURFACE_VERTEX, SURFACE_FRAGMENT),
            line: new Program(gl, TRANSFORM + "\n" + LINE_VERTEX, LINE_FRAGMENT),
            background: new Program(gl, BACKGROUND_VERTEX, BACKGROUND_FRAGMENT)
        };
    }

    /**
     * @param requestFrame  called when a lost context is back and the picture has to be drawn again
     */
    function WebGLRenderer(canvas, requestFrame) {
        this.canvas = canvas;
        this.mesh = null;
        this.gl = getContext(canvas);
        if (!this.gl)
            return;
        this.build();
        var renderer = this;
        canvas.addEventListener("webglcontextlost", function (event) { event.preventDefault(); });
        canvas.addEventListener("webglcontextrestored", function () {
            renderer.build();
            if (renderer.mesh)
                renderer.setMesh(renderer.mesh);
            requestFrame();
        });
    }

    var usable = null;

    /**
     * Whether WebGL 2 is here and takes our programs. Tried on a canvas of its own, because a canvas that once gave a
     * WebGL context gives no 2D context any more.
     */
    WebGLRenderer.isUsable = function () {
        if (usable === null) {
            usable = false;
            try {
                var gl = getContext(document.createElement("canvas"));
                if (gl) {
                    makePrograms(gl);
                    usable = !gl.isContextLost();
                    var release = gl.getExtension("WEBGL_lose_context");
                    if (release)
                        release.loseContext();
                }
            } catch (error) {
                JSC3D.log("warning", "WebGL is not used: " + error.message);
            }
        }
        return usable;
    };

    WebGLRenderer.prototype.isReady = function () {
        return !!this.gl;
    };

    WebGLRenderer.prototype.build = function () {
        var gl = this.gl;
        this.programs = makePrograms(gl);
        this.empty = gl.createVertexArray();
        this.buffers = null;
    };

    WebGLRenderer.prototype.setMesh = function (mesh) {
        var gl = this.gl;
        this.mesh = mesh;
        this.releaseBuffers();
        this.buffers = {
            corners: this.upload(gl.ARRAY_BUFFER, gatherCorners(mesh.positions, mesh.indices)),
            normals: this.upload(gl.ARRAY_BUFFER, packNormals(mesh.normals, mesh.indices)),
            points: this.upload(gl.ARRAY_BUFFER, mesh.positions),
            edges: this.upload(gl.ELEMENT_ARRAY_BUFFER, mesh.edges),
            outline: this.upload(gl.ELEMENT_ARRAY_BUFFER, mesh.outline)
        };
        gl.bindBuffer(gl.ELEMENT_ARRAY_BUFFER, null);
    };

    WebGLRenderer.prototype.upload = function (target, data) {
        var buffer = this.gl.createBuffer();
        this.gl.bindBuffer(target, buffer);
        this.gl.bufferData(target, data, this.gl.STATIC_DRAW);
        return buffer;
    };

    WebGLRenderer.prototype.releaseBuffers = function () {
        for (var name in this.buffers || {})
            this.gl.deleteBuffer(this.buffers[name]);
        this.buffers = null;
    };

    function gatherCorners(positions, indices) {
        var corners = new Float32Array(3 * indices.length);
        for (var i = 0; i < indices.length; ++i) {
            var from = 3 * indices[i];
            corners[3 * i] = positions[from];
            corners[3 * i + 1] = positions[from + 1];
            corners[3 * i + 2] = positions[from + 2];
        }
        return corners;
    }

    // One byte for each component, padded to four.
    function packNormals(normals, indices) {
        var packed = new Int8Array(4 * indices.length);
        for (var i = 0; i < indices.length; ++i) {
            for (var k = 0; k < 3; ++k)
                packed[4 * i + k] = Math.round(127 * normals[3 * indices[i] + k]);
        }
        return packed;
    }

    WebGLRenderer.prototype.draw = function (view, style) {
        var gl = this.gl;
        if (gl.isContextLost())
            return;
        gl.viewport(0, 0, this.canvas.width, this.canvas.height);
        gl.depthFunc(gl.LEQUAL);
        gl.clear(gl.DEPTH_BUFFER_BIT);
        this.drawBackground(style.palette);
        if (!this.buffers)
            return;
        if (style.mode === "point")
            this.drawPoints(view, style.palette);
        else if (style.mode === "wireframe")
            this.drawWireframe(view, style.palette);
        else
            this.drawSurface(view, style);
    };

    function unit(color) {
        return [color[0] / 255, color[1] / 255, color[2] / 255];
    }

    WebGLRenderer.prototype.drawBackground = function (palette) {
        var gl = this.gl, program = this.programs.background;
        gl.disable(gl.DEPTH_TEST);
        gl.disable(gl.CULL_FACE);
        gl.disable(gl.BLEND);
        gl.useProgram(program.handle);
        gl.uniform3fv(program.places.top, unit(palette.top));
        gl.uniform3fv(program.places.bottom, unit(palette.bottom));
        gl.bindVertexArray(this.empty);
        gl.drawArrays(gl.TRIANGLES, 0, 3);
    };

    WebGLRenderer.prototype.use = function (program, view) {
        var gl = this.gl, places = program.places;
        gl.useProgram(program.handle);
        gl.uniformMatrix3fv(places.rotation, true, view.rotation);
        gl.uniform2f(places.canvasSize, this.canvas.width, this.canvas.height);
        gl.uniform2f(places.pan, view.panX, -view.panY);
        gl.uniform1f(places.scale, view.scale);
        gl.bindVertexArray(this.empty);
        gl.disableVertexAttribArray(1);
    };

    WebGLRenderer.prototype.bindPositions = function (buffer) {
        var gl = this.gl;
        gl.bindBuffer(gl.ARRAY_BUFFER, buffer);
        gl.enableVertexAttribArray(0);
        gl.vertexAttribPointer(0, 3, gl.FLOAT, false, 0, 0);
    };

    WebGLRenderer.prototype.drawSurface = function (view, style) {
        var gl = this.gl, program = this.programs.surface, places = program.places, smooth = style.mode !== "flat";
        this.use(program, view);
        this.bindPositions(this.buffers.corners);
        gl.bindBuffer(gl.ARRAY_BUFFER, this.buffers.normals);
        gl.enableVertexAttribArray(1);
        gl.vertexAttribPointer(1, 3, gl.BYTE, true, 4, 0);
        gl.uniform1i(places.facets, smooth ? 0 : 1);
        gl.uniform3fv(places.model, unit(style.palette.model));
        gl.uniform3fv(places.edgeColor, unit(style.palette.edge));
        gl.uniform1f(places.edgeStrength, JSC3D.EDGE_STRENGTH[smooth ? "smooth" : "flat"]);
        gl.uniform2f(places.edgeFade, JSC3D.EDGE_FADE.from, JSC3D.EDGE_FADE.to);
        gl.enable(gl.DEPTH_TEST);
        if (style.culling)
            gl.enable(gl.CULL_FACE);
        gl.drawArrays(gl.TRIANGLES, 0, this.mesh.indices.length);
        gl.disable(gl.CULL_FACE);
        this.drawOutline(view, style.palette);
    };

    // Drawn a little nearer than it is, so that the surfaces that meet at the border do not hide it.
    WebGLRenderer.prototype.drawOutline = function (view, palette) {
        if (!this.mesh.showsOutline())
            return;
        this.useLines(view, { upper: palette.edge, lower: palette.edge, change: 1 }, 0.85);
        this.gl.uniform1f(this.programs.line.places.towardsEye, 0.002);
        this.drawLines(this.buffers.outline, this.mesh.outline.length);
    };

    WebGLRenderer.prototype.drawWireframe = function (view, palette) {
        this.useLines(view, palette.inks(), this.mesh.wireframeShare(view.scale));
        this.gl.disable(this.gl.DEPTH_TEST);
        this.drawLines(this.buffers.edges, this.mesh.edges.length);
    };

    WebGLRenderer.prototype.drawPoints = function (view, palette) {
        var gl = this.gl, dots = this.mesh.pointStyle(view.scale);
        this.useLines(view, palette.inks(), dots.share);
        gl.disable(gl.DEPTH_TEST);
        gl.uniform1f(this.programs.line.places.pointSize, dots.size);
        gl.drawArrays(gl.POINTS, 0, this.mesh.vertexCount);
    };

    WebGLRenderer.prototype.useLines = function (view, inks, share) {
        var gl = this.gl, places = this.programs.line.places;
        this.use(this.programs.line, view);
        this.bindPositions(this.buffers.points);
        gl.uniform4fv(places.upperInk, unit(inks.upper).concat(share));
        gl.uniform4fv(places.lowerInk, unit(inks.lower).concat(share));
        gl.uniform1f(places.inkChange, 1 - inks.change);
        gl.uniform1f(places.towardsEye, 0);
        gl.enable(gl.BLEND);
        gl.blendFunc(gl.SRC_ALPHA, gl.ONE_MINUS_SRC_ALPHA);
    };

    WebGLRenderer.prototype.drawLines = function (buffer, indexCount) {
        var gl = this.gl;
        gl.bindBuffer(gl.ELEMENT_ARRAY_BUFFER, buffer);
        gl.drawElements(gl.LINES, indexCount, gl.UNSIGNED_INT, 0);
    };

    JSC3D.WebGLRenderer = WebGLRenderer;
}());
