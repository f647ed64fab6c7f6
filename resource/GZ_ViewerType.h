// GZ_ViewerType: the viewer kinds a state is registered for.
#pragma once

enum GZ_ViewerType : int
{
    GZ_VIEWER_SCENE = 0,
    GZ_VIEWER_COMPOSITE = 1,
    GZ_VIEWER_SCENEGRAPH = 2,
    GZ_NUM_VIEWER_TYPES = 3
};
