// gz_BuiltinTables: the row formats of the built-in handle and selector tables and their builders.
#pragma once

#include <memory>
#include <string>
#include <vector>

class GZ_GZTemplate;
class GZ_SelectorTemplate;

/// The shared list that a 3D handle row's parameter names start with.
enum class gz_ParmBase
{
    None,          ///< only the row's own names
    Transform,     ///< the transform list without limits and parent transform
    TransformFull, ///< the transform list with its limit and parent-transform names
    Camera,        ///< the camera list
};

/// One row of the 3D op-handle-link table. Parameter names are blank-separated words; the row's
/// names follow its shared list (`parms`, then `moreParms`; either may be null). Every 3D handle
/// is offered in every viewer, so the row has no viewer mask.
struct gz_HandleRow
{
    const char *name;
    const char *englishName;
    const char *networkTypes;
    const char *iconName;
    gz_ParmBase base;
    const char *parms;
    const char *moreParms;
    short ethereal;
    bool displayAlways;
};

/// One row of the 2D compositing op-handle-link table: every such handle is a Cop2 handle,
/// drawn normally, and offered in the 2D viewer panes named by its viewer mask bits. Parameter
/// names are separated by commas, as the compositing catalogue writes them.
struct gz_Handle2DRow
{
    const char *name;
    const char *englishName;
    const char *iconName;
    unsigned viewerMask;
    const char *parms;
};

/// One row of the selector table.
struct gz_SelectorRow
{
    const char *name;
    const char *englishName;
    const char *networkTypes;
    bool ordered;
};

namespace gz
{

/// Appends the words of `words`, separated by blanks or commas (null appends nothing).
void appendWords(std::vector<std::string> &names, const char *words);

/// A template with the given parameter names, entry i getting index i.
std::unique_ptr<GZ_GZTemplate> makeHandleTemplate(const char *name, const char *english_name,
                                                  const char *network_types, const char *icon_name,
                                                  const std::vector<std::string> &parm_names,
                                                  short ethereal, unsigned viewer_mask,
                                                  bool display_always);

/// The templates of the built-in tables, freshly allocated, in registration order. The caller
/// owns them until the registry accepts them.
std::vector<std::unique_ptr<GZ_GZTemplate>> makeBuiltin3DHandles();
std::vector<std::unique_ptr<GZ_GZTemplate>> makeBuiltin2DHandles();
std::vector<std::unique_ptr<GZ_SelectorTemplate>> makeBuiltinSelectors();

} // namespace gz
