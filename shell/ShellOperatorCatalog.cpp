// ShellOperatorCatalog: the table of gzsh's operator types and its installation.
#include "shell/ShellOperatorCatalog.h"

#include "host/HostChoiceList.h"
#include "host/HostOperator.h"
#include "host/HostOperatorTable.h"

#include <cstring>

namespace
{
const char *const theTransformOrders = "srt:Scale Rot Trans|str:Scale Trans Rot|"
                                       "rst:Rot Scale Trans|rts:Rot Trans Scale|"
                                       "tsr:Trans Scale Rot|trs:Trans Rot Scale";
const char *const theRotationOrders = "xyz:Rx Ry Rz|xzy:Rx Rz Ry|yxz:Ry Rx Rz|"
                                      "yzx:Ry Rz Rx|zxy:Rz Rx Ry|zyx:Rz Ry Rx";

// The transform parameters that objects share.
std::vector<ShellParmSpec> objectTransform()
{
    return {
        {"xOrd", "Transform Order", ShellParmKind::Menu, 1, {0}, theTransformOrders},
        {"rOrd", "Rotate Order", ShellParmKind::Menu, 1, {0}, theRotationOrders},
        {"t", "Translate", ShellParmKind::Xyz, 3, {0, 0, 0}},
        {"r", "Rotate", ShellParmKind::Xyz, 3, {0, 0, 0}},
        {"s", "Scale", ShellParmKind::Xyz, 3, {1, 1, 1}},
        {"shear", "Shear", ShellParmKind::Xyz, 3, {0, 0, 0}},
        {"p", "Pivot", ShellParmKind::Xyz, 3, {0, 0, 0}},
        {"scale", "Uniform Scale", ShellParmKind::Float, 1, {1}},
    };
}

std::vector<ShellParmSpec> withExtra(std::vector<ShellParmSpec> parms,
                                     const std::vector<ShellParmSpec> &extra)
{
    parms.insert(parms.end(), extra.begin(), extra.end());
    return parms;
}

std::vector<ShellOperatorSpec> makeEntries()
{
    return {
        {"Object", "geo", "Geometry", "OBJ_geo", "Sop", objectTransform()},
        {"Object", "null", "Null", "OBJ_null", "", objectTransform()},
        {"Object", "cam", "Camera", "OBJ_camera", "",
         withExtra(objectTransform(),
                   {
                       {"resx", "Resolution X", ShellParmKind::Int, 1, {640}},
                       {"resy", "Resolution Y", ShellParmKind::Int, 1, {480}},
                       {"focal", "Focal Length", ShellParmKind::Float, 1, {50}},
                       {"aperture", "Aperture", ShellParmKind::Float, 1, {41.4214}},
                   })},
        {"Sop",
         "xform",
         "Transform",
         "SOP_xform",
         "",
         {
             {"group", "Group", ShellParmKind::String, 1, {}, nullptr, ""},
             {"xOrd", "Transform Order", ShellParmKind::Menu, 1, {0}, theTransformOrders},
             {"rOrd", "Rotate Order", ShellParmKind::Menu, 1, {0}, theRotationOrders},
             {"t", "Translate", ShellParmKind::Xyz, 3, {0, 0, 0}},
             {"r", "Rotate", ShellParmKind::Xyz, 3, {0, 0, 0}},
             {"s", "Scale", ShellParmKind::Xyz, 3, {1, 1, 1}},
             {"shear", "Shear", ShellParmKind::Xyz, 3, {0, 0, 0}},
             {"p", "Pivot", ShellParmKind::Xyz, 3, {0, 0, 0}},
             {"scale", "Uniform Scale", ShellParmKind::Float, 1, {1}},
         }},
        {"Sop",
         "box",
         "Box",
         "SOP_box",
         "",
         {
             {"size", "Size", ShellParmKind::Xyz, 3, {1, 1, 1}},
             {"t", "Center", ShellParmKind::Xyz, 3, {0, 0, 0}},
             {"r", "Rotate", ShellParmKind::Xyz, 3, {0, 0, 0}},
             {"scale", "Uniform Scale", ShellParmKind::Float, 1, {1}},
         }},
        {"Sop",
         "sphere",
         "Sphere",
         "SOP_sphere",
         "",
         {
             {"rad", "Radius", ShellParmKind::Xyz, 3, {1, 1, 1}},
             {"t", "Center", ShellParmKind::Xyz, 3, {0, 0, 0}},
             {"r", "Rotate", ShellParmKind::Xyz, 3, {0, 0, 0}},
             {"scale", "Uniform Scale", ShellParmKind::Float, 1, {1}},
             {"freq", "Frequency", ShellParmKind::Int, 1, {2}},
         }},
        {"Sop",
         "null",
         "Null",
         "SOP_null",
         "",
         {
             {"copyinput", "Copy Input", ShellParmKind::Toggle, 1, {1}},
         }},
    };
}

HostParmType typeOf(ShellParmKind kind)
{
    // Menus and toggles hold numbers too, so they are animatable like the rest.
    switch (kind)
    {
    case ShellParmKind::Float:
        return HOST_PARM_FLOAT;
    case ShellParmKind::Int:
        return HOST_PARM_INT;
    case ShellParmKind::Xyz:
        return HOST_PARM_XYZ;
    case ShellParmKind::Toggle:
        return HOST_PARM_TOGGLE.withFlags(HostParmType::ANIMATABLE);
    case ShellParmKind::Menu:
        return HOST_PARM_MENU.withFlags(HostParmType::ANIMATABLE);
    case ShellParmKind::String:
        return HOST_PARM_STRING;
    }
    return HOST_PARM_STRING;
}

HostChoiceList makeMenu(const char *items)
{
    HostChoiceList menu(HostChoiceList::EXCLUSIVE | HostChoiceList::REPLACE);
    std::string text(items);
    size_t start = 0;
    while (start <= text.size())
    {
        size_t bar = text.find('|', start);
        std::string item =
            text.substr(start, bar == std::string::npos ? std::string::npos : bar - start);
        size_t colon = item.find(':');
        menu.addItem(item.substr(0, colon),
                     colon == std::string::npos ? item : item.substr(colon + 1));
        if (bar == std::string::npos)
            break;
        start = bar + 1;
    }
    return menu;
}
} // namespace

const std::vector<ShellOperatorSpec> &ShellOperatorCatalog::entries()
{
    static const std::vector<ShellOperatorSpec> theEntries = makeEntries();
    return theEntries;
}

HostParmTemplateList ShellOperatorCatalog::buildTemplates(const ShellOperatorSpec &row)
{
    HostParmTemplateList list;
    for (const ShellParmSpec &parm : row.parms)
    {
        HostParmTemplate tmpl(typeOf(parm.kind), parm.name, parm.label, parm.size);
        if (parm.kind == ShellParmKind::String)
        {
            tmpl.setDefault(0, HostParmDefault(std::string(parm.text ? parm.text : "")));
        }
        else
        {
            for (size_t k = 0; k < parm.defaults.size(); ++k)
                tmpl.setDefault(static_cast<int>(k), HostParmDefault(parm.defaults[k]));
        }
        if (parm.menu)
        {
            HostChoiceList menu = makeMenu(parm.menu);
            tmpl.setChoiceList(&menu);
        }
        list.append(tmpl);
    }
    return list;
}

int ShellOperatorCatalog::install()
{
    int added = 0;
    for (const ShellOperatorSpec &row : entries())
    {
        HostOperatorTable *table = HostOperatorTable::getTable(row.table);
        if (!table || table->getOperator(row.name))
            continue;
        auto op = std::make_unique<HostOperator>(row.name, row.label, buildTemplates(row),
                                                 row.childTable, 0, 1, 0u, row.icon);
        if (table->addOperator(std::move(op)))
            ++added;
    }
    return added;
}
