#pragma once

#include <string>

#include "xml/xml_node.h"

/// A subtree as one string, equal for equal trees: names, attributes, texts and clear sections in document
/// order. Empty text runs are left out, as a document cannot hold them.
std::string tree_text(const XmlNode& top);
