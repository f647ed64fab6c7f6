// gz_Resolved: what resolving a handle parameter of a GZ_OpHandleLink yields.
#pragma once

#include "link/GZ_OpHandleLink.h"
#include "link/gz_Binding.h"

#include <string>

/// What resolving a handle parameter yields: either an expression binding (with the node it
/// belongs to, which may be null) or a node parameter component with the binding's mapping.
struct GZ_OpHandleLink::Resolved
{
    HostNode *myNode = nullptr; ///< the attached node the binding belongs to
    HostNode *myParmNode = nullptr;
    HostParm *myParm = nullptr;
    int myVectorIndex = -1;
    gz::Projection myProjection;
    bool myIsExpression = false;
    std::string myExpression; ///< the text after "!"
};
