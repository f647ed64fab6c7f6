// gz_BuiltinSelectors: the built-in selector table and its registration.
#include "resource/GZ_ResourceManager.h"
#include "resource/GZ_SelectorTemplate.h"
#include "resource/gz_BuiltinTables.h"

#include <iterator>

namespace
{

// clang-format off

// name, English name, network types, ordered
const gz_SelectorRow kSelectorRows[] = {
    {"prims", "Primitives", "Sop", false},
    {"points", "Points", "Sop", false},
    {"edges", "Edges", "Sop", false},
    {"breakpoints", "Breakpoints", "Sop", false},
    {"prims_edges", "Primitives or Edges", "Sop", false},
    {"edges_points", "Points or Edges", "Sop", true},
    {"points_vertices", "Points or Vertices", "Sop", false},
    {"prims_points", "Primitives or Points", "Sop", false},
    {"prims_points_edges", "Primitives or Points or Edges", "Sop", false},
    {"attribs", "Geometry With Attributes", "Sop", false},
    {"guess_vert_pt_prim", "Guess, Vertices, Points, or Primitives", "Sop", false},
    {"ordered_attribs", "Ordered Geometry With Attributes", "Sop", true},
    {"uvselect", "Geometry With UV Attributes", "Sop", false},
    {"everything", "All Geometry Types", "Sop", false},
    {"ordered_all", "Ordered Inputs Selector", "Sop", true},
    {"ordered_prims", "Ordered Prims Selector", "Sop", true},
    {"ordered_points", "Ordered Points Selector", "Sop", true},
    {"ordered_prims_edges", "Ordered Primitives or Edges", "Sop", true},
    {"ordered_prims_points", "Ordered Primitives or Points", "Sop", true},
    {"ordered_prims_points_edges", "Ordered Primitives or Points or Edges", "Sop", true},
    {"ordered_prims_points_edges_verts", "Ordered Primitives, Points, Edges, or Vertices", "Sop", true},
    {"paintselect", "Paint Selector", "Sop", false},
    {"slidemodifierpaintselect", "Slide Modifier Paint Selector", "Sop", false},
    {"combselect", "Comb Selector", "Sop", false},
    {"capturelayerpaintselect", "CaptureLayerPaint Selector", "Sop", false},
    {"capturepaintselect", "CapturePaint Selector", "Sop", false},
    {"sculptselect", "Sculpt Selector", "Sop", false},
    {"uvbrushselect", "UV Brush Selector", "Sop", false},
    {"curveclay", "CurveClay Input Selector", "Sop", false},
    {"deleter", "Delete Input Selector", "Sop", false},
    {"editselect", "Edit Selector", "Sop", false},
    {"joiner", "Join Input Selector", "Sop", false},
    {"uvflattenpinselect", "UV Flatten Pin Selector", "Sop", false},
    {"uvpeltselect", "UV Pelt Input Selector", "Sop", false},
    {"uvpeltselect2", "UV Pelt Input Selector", "Sop", false},
    {"lattice", "Lattice Input Selector", "Sop", false},
    {"uveditselect", "UV Edit Selector", "Sop", false},
    {"grouppaintselect", "Group Paint Selector", "Sop", false},
    {"objselect", "Object Selector", "Object", false},
    {"objlocate", "Object Locator", "Object", false},
    {"objpoint", "Object Point Selector", "Object", false},
    {"dopobjects", "Dop Object Selector", "Dop", false},
    {"dopselect", "Dop Selector", "Dop", false},
    {"scriptselect", "Scripted Component Selector", "Sop", false},
    {"scriptobjselect", "Scripted Object Selector", "Object", false},
    {"alltypeselect", "All Geometry Types", "Sop Dop", false},
    {"scenegraphselect", "Scene Graph Geometry", "Lop", false},
};

// clang-format on

} // namespace

namespace gz
{

std::vector<std::unique_ptr<GZ_SelectorTemplate>> makeBuiltinSelectors()
{
    std::vector<std::unique_ptr<GZ_SelectorTemplate>> templates;
    templates.reserve(std::size(kSelectorRows));
    for (const gz_SelectorRow &row : kSelectorRows)
        templates.push_back(std::make_unique<GZ_SelectorTemplate>(row.name, row.englishName,
                                                                  row.networkTypes, row.ordered));
    return templates;
}

} // namespace gz

void GZ_ResourceManager::registerSelectors()
{
    for (std::unique_ptr<GZ_SelectorTemplate> &tmpl : gz::makeBuiltinSelectors())
    {
        // The registry owns only what it accepts; a refused row is dropped here.
        if (registerSelector(tmpl.get()))
            tmpl.release();
    }
}
