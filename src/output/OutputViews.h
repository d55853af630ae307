#pragma once

#include <cstdint>

#include "xml/XmlNode.h"

// The two views of the build output, as the hub sees them. The windows implement them, and so can
// anything else that wants to follow a build; a hub without views works all the same.
//
// Both are called on the host's thread. The nodes are borrowed for the length of the call: a view
// copies what it shows, since the next reset destroys the tree.
namespace tarn {

// The running log: one line for each element that arrives.
class ILogView {
 public:
  virtual void AddMessage(const CXmlNode& node) = 0;
  virtual void Clear() = 0;

 protected:
  ~ILogView() = default;
};

// The grid of errors and warnings, which shows the whole tree.
class IReportView {
 public:
  // A tree of the same generation is the one of the last call, with at most more children at its
  // end; one of another may lie at the address of the one before.
  virtual void Update(const CXmlNode& root, std::uint64_t generation) = 0;

 protected:
  ~IReportView() = default;
};

}  // namespace tarn
