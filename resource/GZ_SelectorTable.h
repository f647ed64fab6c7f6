// GZ_SelectorTable: one row of a host table of selector classes.
#pragma once

/// A plain record through which a host lists its selector classes: the selector name and two
/// untyped pointers (its data and its constructor, in the order GZ_ClassManager::addSelector
/// takes them), stored as given and not owned. Copy and move assign freely.
struct GZ_SelectorTable
{
    const char *myName = nullptr;
    void *myData = nullptr;
    void *myConstructor = nullptr;
};
