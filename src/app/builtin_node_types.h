// The built-in node types, put together here, above all folders that have nodes.
#pragma once

#include <vector>

#include "core/engine.h"

// In the order in which they are offered.
std::vector<NodeType> BuiltInNodeTypes();
