#!/usr/bin/env python3
"""Cuts the outlines in this folder out of Natural Earth's country polygons, and the cities out of a table of time zones.

    extract.py countries-10m.json land-10m.json zone1970.tab

The first two files are the TopoJSON editions of Natural Earth 4.1.0 at 1:10 million that the npm package world-atlas
2.0.2 carries, the third belongs to the tz database (Debian package tzdata). README.md in this folder tells the format of
the output.
"""
import json
import re
import sys
from pathlib import Path

COUNTRIES = ["Greece", "South Africa", "Lesotho", "Switzerland", "Liechtenstein", "Austria"]
CASPIAN_POINT = (51.0, 42.0)


def read(path):
    topology = json.loads(Path(path).read_text())
    scale, translate = topology["transform"]["scale"], topology["transform"]["translate"]
    arcs = []
    for arc in topology["arcs"]:
        x = y = 0
        points = []
        for dx, dy in arc:
            x, y = x + dx, y + dy
            points.append((round(x * scale[0] + translate[0], 4), round(y * scale[1] + translate[1], 4)))
        arcs.append(points)

    def ring(indices):
        points = []
        for i in indices:
            points += (arcs[i] if i >= 0 else arcs[~i][::-1])[:-1]
        return without_spikes(points)

    polygons = {}
    for collection in topology["objects"].values():
        for geometry in collection["geometries"]:
            name = geometry.get("properties", {}).get("name", "land")
            nested = [geometry["arcs"]] if geometry["type"] == "Polygon" else geometry.get("arcs", [])
            polygons.setdefault(name, []).extend([[ring(r) for r in polygon] for polygon in nested])
    return polygons


def without_spikes(ring):
    """Leaves out points where rounding made the outline turn round and go back on itself."""
    def is_tip(a, p, b):
        ax, ay, bx, by = p[0] - a[0], p[1] - a[1], b[0] - p[0], b[1] - p[1]
        return abs(ax * by - ay * bx) < 1e-12 and ax * bx + ay * by < 0

    n = len(ring)
    return [p for i, p in enumerate(ring) if not is_tip(ring[i - 1], p, ring[(i + 1) % n])]


def area(ring):
    return sum(a[0] * b[1] - a[1] * b[0] for a, b in zip(ring, ring[1:] + ring[:1])) / 2


def turned(ring, counterclockwise):
    return ring if (area(ring) > 0) == counterclockwise else ring[::-1]


def contains(ring, point):
    inside = False
    for (ax, ay), (bx, by) in zip(ring, ring[1:] + ring[:1]):
        if (ay > point[1]) != (by > point[1]) and point[0] < ax + (point[1] - ay) * (bx - ax) / (by - ay):
            inside = not inside
    return inside


def write(name, title, outer, holes):
    rings = sorted((turned(r, True) for r in outer), key=area, reverse=True)
    rings += sorted((turned(r, False) for r in holes), key=area)
    lines = [f"# {title}: longitude latitude in degrees. Natural Earth 1:10m, public domain."]
    for ring in rings:
        lines += [""] + [f"{x:.4f} {y:.4f}" for x, y in ring]
    path = Path(__file__).with_name(name + ".txt")
    path.write_text("\n".join(lines) + "\n")
    print(f"{path.name}: {sum(map(len, rings))} points, {len(rings)} rings, {len(holes)} of them holes")


def write_geojson(name, features):
    """features: a name and a list of polygons, which are lists of rings, for each"""
    lines = []
    for title, polygons in features:
        rings = [[turned(r, i == 0) for i, r in enumerate(polygon)] for polygon in polygons]
        geometry = {"type": "MultiPolygon", "coordinates": [[r + r[:1] for r in polygon] for polygon in rings]}
        feature = {"type": "Feature", "properties": {"name": title}, "geometry": geometry}
        lines.append(json.dumps(feature, separators=(",", ":")))
    text = '{"type":"FeatureCollection","features":[\n' + ",\n".join(lines) + "\n]}\n"
    Path(__file__).with_name(name + ".geojson").write_text(text)


def write_cities(table):
    """The principal place of each time zone; the table gives degrees, minutes and perhaps seconds."""

    def degrees(sign, digits, count):
        parts = [digits[:count], digits[count:count + 2], digits[count + 2:] or "0"]
        return (-1 if sign == "-" else 1) * sum(int(p) / 60**i for i, p in enumerate(parts))

    lines = ["name,longitude,latitude"]
    for line in Path(table).read_text().splitlines():
        if line.startswith("#"):
            continue
        _, place, zone = line.split("\t")[:3]
        ns, latitude, ew, longitude = re.fullmatch(r"([+-])(\d+)([+-])(\d+)", place).groups()
        name = zone.split("/")[-1].replace("_", " ")
        lines.append(f"{name},{degrees(ew, longitude, 3):.4f},{degrees(ns, latitude, 2):.4f}")
    Path(__file__).with_name("cities.csv").write_text("\n".join(lines) + "\n")


def main():
    countries, land = read(sys.argv[1]), read(sys.argv[2])["land"]
    for country in COUNTRIES:
        polygons = countries[country]
        if country == "South Africa":  # without the Prince Edward Islands, 1,800 km away
            polygons = [p for p in polygons if min(y for _, y in p[0]) > -40]
        write(country.lower().replace(" ", "_"), country, [p[0] for p in polygons], [r for p in polygons for r in p[1:]])

    # A lake is a hole of its continent; its islands are land inside that hole.
    lake = next(r for p in land for r in p[1:] if contains(r, CASPIAN_POINT))
    islands = [p[0] for p in land if p[0] and contains(lake, p[0][0])]
    write("caspian_sea", "Caspian Sea, a lake and its islands", [lake], islands)

    write_geojson("caspian_sea", [("Caspian Sea", [[lake] + islands])])
    alps = ["Switzerland", "Liechtenstein", "Austria"]
    write_geojson("alps", [(country, countries[country]) for country in alps])
    write_cities(sys.argv[3])


if __name__ == "__main__":
    main()
