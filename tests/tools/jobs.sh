#!/bin/bash
# Realistic jobs, and each kind of input to each kind of output. Every mesh is checked by 'quor2d check', and its area
# and counts against what is known of the input.
# shellcheck source=tests/tools/lib.sh
. "$(dirname "$0")/lib.sh"
samples=$root/examples/data

# features <sample...>: the outlines as GeoJSON, a feature each. A ring that runs clockwise is a hole.
features() {
    awk 'function endRing(  i, j, area, ring) {
             for (i = 0; i < n; i++) { j = (i + 1) % n; area += x[i] * y[j] - x[j] * y[i] }
             for (i = 0; i < n; i++) ring = ring "[" x[i] "," y[i] "],"
             if (n > 0) ring = "[" ring "[" x[0] "," y[0] "]]"
             if (n > 0) polygons = area < 0 ? polygons "," ring : polygons (polygons == "" ? "[" : "],[") ring
             n = 0
         }
         function endFeature() {
             endRing()
             if (polygons != "")
                 printf "%s\n{\"type\":\"Feature\",\"properties\":{\"name\":\"%s\"},\"geometry\":{\"type\":" \
                        "\"MultiPolygon\",\"coordinates\":[%s]]}}", comma, name, polygons
             if (polygons != "") comma = ","
             polygons = ""
         }
         BEGIN { printf "{\"type\":\"FeatureCollection\",\"features\":[" }
         FNR == 1 { endFeature(); name = FILENAME; sub(/.*\//, "", name); sub(/\.txt$/, "", name) }
         /^#/ { next }
         NF == 0 { endRing(); next }
         { x[n] = $1; y[n++] = $2 }
         END { endFeature(); print "]}" }' "${@/%/.txt}"
}

# area_of <sample>: by the rings; holes run the other way.
area_of() {
    awk 'function endRing(  i, j) {
             for (i = 0; i < n; i++) { j = (i + 1) % n; area += (x[i] * y[j] - x[j] * y[i]) / 2 }
             n = 0
         }
         /^#/ { next } NF == 0 { endRing(); next } { x[n] = $1; y[n++] = $2 }
         END { endRing(); printf "%.15g", area }' "$1.txt"
}

# near <what> <value> <wanted>: equal but for rounding
near() {
    awk -v a="$2" -v b="$3" 'BEGIN { d = a - b; exit !(a != "" && d * d <= 1e-18 * b * b) }' ||
        complain "$1 is $2, not $3"
}

# mesh_stats <command...>: runs it with statistics and leaves these in ./out.
mesh_stats() {
    expect 0 "$quor2d" "$@" -q --stats json
}

# ---- 1. measured points with heights: a terrain as .obj and .vtu, heights kept
awk 'BEGIN { srand(5); print "# east north height"; for (i = 0; i < 500; i++) { x = rand() * 100; y = rand() * 100
     printf "%.3f %.3f %.3f\n", x, y, x + 2 * y } }' >terrain.xyz
mesh_stats triangulate terrain.xyz -o terrain.obj terrain.vtu
equals "new vertices of the terrain" "$(stat_of new_vertices)" 0
awk '$1 == "v" { d = $2 + 2 * $3 - $4; if (d * d > 1e-4) bad = 1 } END { exit bad }' terrain.obj ||
    complain "heights are mixed up"
expect 0 "$quor2d" check terrain.obj
holds terrain.vtu 'Name="z"'

# ---- 2. the same refined: heights of new vertices lie on the slope, too
mesh_stats mesh terrain.xyz --min-angle 25 -o fine.obj
at_least "new vertices" "$(stat_of new_vertices)" 100
awk '$1 == "v" { d = $2 + 2 * $3 - $4; if (d * d > 1e-4) bad = 1 } END { exit bad }' fine.obj ||
    complain "interpolated heights are wrong"

# ---- 3. a table with a header: columns by name, to .node and .ele and a web scene
printf 'name;lat;lon\n"a;b";0;0\nc;0;3\nd;2;3\ne;2;0\nf;1;1\n' >table.csv
mesh_stats triangulate table.csv -o table.node page/
equals "triangles of the table" "$(stat_of triangles)" 4
near "area of the table" "$(stat_of total_area)" 6
holds table.node "1 3 0 1 1"
[ -s page/index.html ] || complain "no page"
expect 0 "$quor2d" check table.ele

# ---- 4. a lake with islands: quality triangles for computations, and drawings
features "$samples/caspian_sea" >lake.geojson
mesh_stats mesh lake.geojson --min-angle 25 --max-edge 0.3 -o lake.vtu lake.svg lake.ps lake.ele lake.poly
near "area of the lake" "$(stat_of total_area)" "$(area_of "$samples/caspian_sea")"
at_least "triangles of the lake" "$(stat_of triangles)" 5000
sed -n '/"edge_length"/,/}/s/.*"max": //p' out >longest
awk '{ exit !($1 <= 0.3) }' longest || complain "an edge is longer than asked for: $(cat longest)"
expect 0 "$quor2d" check lake.ele --stats json
holds lake.ps '%!PS-Adobe'
holds lake.ps showpage
holds lake.svg '</svg>'

# ---- 5. countries with common borders: one conforming mesh, a region for each
features "$samples"/{switzerland,liechtenstein,austria} >alps.geojson
mesh_stats mesh alps.geojson -o alps.msh alps.geojson.obj
equals "countries" "$(stat_of regions)" 3
near "area of the countries" "$(stat_of total_area)" "$(
    for country in switzerland liechtenstein austria; do area_of "$samples/$country" && echo; done |
        awk '{ s += $1 } END { printf "%.15g", s }'
)"
expect 0 "$quor2d" check alps.msh
for name in switzerland liechtenstein austria; do
    holds alps.msh "\"$name\""
done

# ---- 6. a country within another: the border is in the mesh once
features "$samples"/{south_africa,lesotho} >south.geojson
mesh_stats mesh south.geojson --min-angle 15 -o south.geojson.msh
near "area of both countries" "$(stat_of total_area)" "$(
    for country in south_africa lesotho; do area_of "$samples/$country" && echo; done |
        awk '{ s += $1 } END { printf "%.15g", s }'
)"
expect 0 "$quor2d" check south.geojson.msh

# ---- 7. a .poly file with a hole, regions and markers; segments kept whole
cat >part.poly <<'END'
# a plate of two materials with a hole
10 2 0 1
1 0 0 1
2 4 0 1
3 4 4 1
4 0 4 1
5 1 1 2
6 1.5 1 2
7 1.5 1.5 2
8 1 1.5 2
9 2 0 0
10 2 4 0
9 1
1 1 2 11
2 2 3 12
3 3 4 13
4 4 1 14
5 5 6 2
6 6 7 2
7 7 8 2
8 8 5 2
9 9 10 -7
1
1 1.25 1.25
2
1 0.5 0.5 10 0.05
2 3 3 20
END
mesh_stats mesh part.poly --no-split -o mesh.ele mesh.edge mesh.poly
near "area of the plate" "$(stat_of total_area)" 15.75
equals "regions of the plate" "$(stat_of regions)" 2
equals "segments kept whole" "$(stat_of constraint_edges)" 11
equals "pieces with the marker -7" "$(awk '$4 == -7' mesh.poly | wc -l)" 1
awk 'NF == 5 { n[$5]++ } END { exit !(n[10] > 0 && n[20] > 0 && n[10] + n[20] > 10) }' mesh.ele ||
    complain "regions are not in mesh.ele"
expect 0 "$quor2d" check mesh.ele
mesh_stats mesh part.poly -o mesh.ele
awk 'FNR == 1 { file++ } /^#/ { next }
    file == 1 && NF > 4 { x[$1] = $2; y[$1] = $3 }
    file == 2 && $5 == 10 && (x[$3] - x[$2]) * (y[$4] - y[$2]) - (y[$3] - y[$2]) * (x[$4] - x[$2]) > 0.1 { bad = 1 }
    END { exit bad }' mesh.node mesh.ele || complain "a triangle is larger than its region allows"
mesh_stats mesh part.poly --keep outside -o hole.geojson
near "area of the hole" "$(stat_of total_area)" 0.25
expect 0 "$quor2d" check hole.geojson

# ---- 8. crossing roads from well-known text, as edges of a conforming Delaunay mesh
printf 'LINESTRING (0 0, 10 3)\nLINESTRING (0 4, 10 -1, 12 8)\nMULTIPOINT (5 9, 0 8, 12 -3)\n' >roads.wkt
mesh_stats triangulate roads.wkt --strategy conforming -o roads.geojson roads.msh
equals "crossings" "$(stat_of crossings)" 1
at_least "pieces of roads" "$(stat_of constraint_edges)" 5
expect 0 "$quor2d" check roads.msh --stats json
equals "constraints that are not Delaunay" "$(stat_of not_delaunay_constraints)" 0
expect 0 "$quor2d" check roads.geojson

# ---- 9. a .node file through standard input, out as .edge; an OBJ with faces and lines
tail -n +2 table.node | "$quor2d" triangulate - --input-format node -q -o again.edge || complain "no .edge"
equals "edges" "$(sed -n 2p again.edge)" "8 1"
printf 'v 0 0\nv 2 0\nv 2 2\nv 0 2\nv 1 1\ng left\nf 1 2 3 4\nl 5 3\n' >shape.obj
mesh_stats mesh shape.obj --min-angle 30 -o shape.vtu shape.obj.ele
near "area of the shape" "$(stat_of total_area)" 4
expect 0 "$quor2d" check shape.obj.ele

# ---- 10. overlapping zones: the later feature wins; the rest of the world with --keep outside
printf '%s\n' 'POLYGON ((0 0, 4 0, 4 4, 0 4, 0 0))' 'POLYGON ((2 2, 6 2, 6 6, 2 6, 2 2), (4 4, 5 4, 5 5, 4 5, 4 4))' >zones.wkt
mesh_stats triangulate zones.wkt --keep inside -o zones.ele
near "area of the zones" "$(stat_of total_area)" 27
awk -v OFS=' ' 'FNR == 1 { file++ } /^#/ { next }
    file == 1 && NF > 4 { x[$1] = $2; y[$1] = $3 }
    file == 2 && NF == 5 { area[$5] += ((x[$3] - x[$2]) * (y[$4] - y[$2]) - (y[$3] - y[$2]) * (x[$4] - x[$2])) / 2 }
    END { print area[1], area[2] }' zones.node zones.ele >areas
equals "areas of the zones" "$(cat areas)" "12 15"
mesh_stats mesh zones.wkt --keep outside -o rest.msh
near "area outside" "$(stat_of total_area)" 5
expect 0 "$quor2d" check rest.msh

# ---- 11. islands, one of which touches itself and crosses itself: everything valid
features "$samples/greece" >greece.geojson
mesh_stats mesh greece.geojson -o greece.vtu greece.geojson.msh
equals "crossings of the coast" "$(stat_of crossings)" 1
expect 0 "$quor2d" check greece.geojson.msh
expect 0 "$quor2d" info greece.geojson --stats json
equals "rings of the coast" "$(stat_of rings)" 74

# ---- 12. the sample files as they are: cities of the world as a net in a browser, neighbours by name for Gmsh
mesh_stats triangulate "$samples/cities.csv" -o world/ world.msh
equals "cities" "$(stat_of vertices)" 312
expect 0 "$quor2d" check world.msh
mesh_stats mesh "$samples/alps.geojson" --max-edge 0.5 -o named.msh
holds named.msh '2 2 "Liechtenstein"'
mesh_stats mesh "$samples/caspian_sea.geojson" --min-angle 28 -o sea.ps
near "area of the sea" "$(stat_of total_area)" "$(area_of "$samples/caspian_sea")"

# ---- 13. one square in every kind of input, to every kind of output: always the same mesh
printf '0 0\n2 0\n2 1\n0 1\n' >square.txt
printf 'y,x\n0,0\n0,2\n1,2\n1,0\n' >square.csv
printf '0\t0\n2\t0\n2\t1\n0\t1\n' >square.xy
printf '0;0;5\n2;0;5\n2;1;5\n0;1;5\n' >square.xyz
printf '4 2 0 0\n0 0 0\n1 2 0\n2 2 1\n3 0 1\n' >square.node
printf '0 2 0 0\n4 0\n0 0 1\n1 1 2\n2 2 3\n3 3 0\n0\n' >square.poly
printf '{"type":"Polygon","coordinates":[[[0,0],[2,0],[2,1],[0,1],[0,0]]]}' | tee square.json >square.geojson
printf 'polygon ((0 0, 2 0, 2 1, 0 1, 0 0))' >square.wkt
printf 'v 0 0\nv 2 0\nv 2 1\nv 0 1\nf 1 2 3 4\n' >square.obj
for input in square.*; do
    mkdir "from.$input" && cd "from.$input" || exit 1
    mesh_stats triangulate "../$input" -o m.obj m.node m.edge m.poly m.geojson m.msh m.vtu m.ps m.eps m.svg scene/
    equals "triangles from $input" "$(stat_of triangles)" 2
    near "area from $input" "$(stat_of total_area)" 2
    for output in m.ele m.edge m.poly m.vtu m.ps m.eps m.svg scene/index.html scene/3d.obj; do
        [ -s "$output" ] || complain "no $output from $input"
    done
    for mesh in m.obj m.ele m.geojson m.msh; do
        expect 0 "$quor2d" check "$mesh" --stats json
        equals "triangles in $mesh from $input" "$(stat_of triangles)" 2
        near "area in $mesh from $input" "$(stat_of total_area)" 2
    done
    cd .. || exit 1
done
finish
