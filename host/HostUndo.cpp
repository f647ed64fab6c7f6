// HostUndo: the record base.
#include "host/HostUndo.h"

HostUndo::~HostUndo() = default;
