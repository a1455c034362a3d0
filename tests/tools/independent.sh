#!/bin/bash
# Faults: files that only our own readers understand. Other programs read the .vtu and .msh files and count.
# shellcheck source=tests/tools/lib.sh
. "$(dirname "$0")/lib.sh"
python=/usr/bin/python3

"$quor2d" triangulate "$data/two_countries.geojson" -q --keep inside -o mesh.vtu mesh.msh --stats json >out || exit 1
cat >read.py <<'END'
import sys
wanted = [int(x) for x in sys.argv[2:6]]  # vertices, triangles, lines, regions
if sys.argv[1] == "meshio":
    import meshio
    for name, region in (("mesh.vtu", "region"), ("mesh.msh", "gmsh:physical")):
        m = meshio.read(name)
        count = lambda kind: sum(len(b.data) for b in m.cells if b.type == kind)
        regions = {int(r) for b, d in zip(m.cells, m.cell_data[region]) if b.type == "triangle" for r in d}
        got = [len(m.points), count("triangle"), count("line"), len(regions)]
        assert got == wanted, (name, got, wanted)
    assert list(meshio.read("mesh.msh").field_data["West"]) == [1, 2]
else:
    from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridReader
    reader = vtkXMLUnstructuredGridReader()
    reader.SetFileName("mesh.vtu")
    reader.Update()
    grid = reader.GetOutput()
    types = [grid.GetCellType(i) for i in range(grid.GetNumberOfCells())]
    regions = {grid.GetCellData().GetArray("region").GetTuple1(i) for i, t in enumerate(types) if t == 5}
    got = [grid.GetNumberOfPoints(), types.count(5), types.count(3), len(regions)]
    assert got == wanted, (got, wanted)
    assert grid.GetPointData().GetArray("input") is not None
END
numbers="$(stat_of vertices) $(stat_of triangles) $(stat_of constraint_edges) $(stat_of regions)"
tried=0
# shellcheck disable=SC2086
if $python -c 'import meshio' 2>/dev/null; then
    tried=1
    $python read.py meshio $numbers || complain "meshio reads something else"
else
    echo "python3-meshio is not installed: left out"
fi
# shellcheck disable=SC2086
if $python -c 'import vtkmodules.vtkIOXML' 2>/dev/null; then
    tried=1
    $python read.py vtk $numbers || complain "VTK reads something else"
else
    echo "python3-vtk9 is not installed: left out"
fi
if command -v gmsh >/dev/null; then
    tried=1
    gmsh -check mesh.msh -v 4 >gmsh.log 2>&1 </dev/null || complain "gmsh fails: $(tail -3 gmsh.log)"
    holds gmsh.log "$(($(stat_of triangles) + $(stat_of constraint_edges))) elements"
    grep -E '^(Warning|Error)' gmsh.log && complain "gmsh warns"
else
    echo "gmsh is not installed: left out"
fi
[ "$tried" = 1 ] || exit 77
finish
