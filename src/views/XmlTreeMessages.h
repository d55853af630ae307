#pragma once

#include <cstdint>

namespace tarn {

// Messages that a tree of XML nodes, and its name editor, send to the window that owns the tree.
// Node pointers are borrowed and valid only during the message.
enum XmlTreeMessage : std::uint32_t {
  kXmlTreeSelect = 0x99A6,      // the selection changed
  kXmlTreeActivate = 0x99A7,    // double click with the middle button, or on a label
  kXmlTreeOpen = 0x99A8,        // double click with the left button
  kXmlTreeRightClick = 0x99A9,  // wParam, lParam: the position, in the tree's client coordinates
  kXmlTreeDrop = 0x99AA,        // wParam: the dragged node; lParam: the node it was dropped on
  kXmlTreeRename = 0x99AB,      // wParam: the new name, zero-terminated; sent by the editor
  kXmlTreeKey = 0x99AC,         // wParam: the key, see VirtualKey
  kXmlTreeReorder = 0x99AD,     // the keyboard changed the order of siblings
};

}  // namespace tarn
