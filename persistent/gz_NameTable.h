// gz_NameTable: a map from names to small values, kept in one array.
#pragma once

#include "host/HostNameTable.h"

/// The host's table, under the name the library's indexes use.
template <typename V> using gz_NameTable = HostNameTable<V>;
