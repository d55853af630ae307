#pragma once

#include <cstdint>

namespace tarn {

// What a tree of XML nodes, and the editor of a name in it, tell the window that owns it. Node
// pointers are borrowed and live only during the message.
enum XmlTreeMessage : std::uint32_t {
  kXmlTreeSelect = 0x99A6,      // the selection changed
  kXmlTreeActivate = 0x99A7,    // double click with the middle button, or on a label
  kXmlTreeOpen = 0x99A8,        // double click with the left button
  kXmlTreeRightClick = 0x99A9,  // wParam, lParam: the place, in the tree's client coordinates
  kXmlTreeDrop = 0x99AA,        // wParam: the node that was dragged; lParam: where it was dropped
  kXmlTreeRename = 0x99AB,      // wParam: the new name, a zero-terminated text; from the editor
  kXmlTreeKey = 0x99AC,         // wParam: the key, see VirtualKey
  kXmlTreeReorder = 0x99AD,     // the keyboard changed the order of siblings
};

}  // namespace tarn
