#pragma once

#include <cstdint>

// Interfaces of the two views of the build output. The windows implement them, and so can any other
// observer of a build. CBuildOutput also works without views.
//
// Both are called on the main thread. The nodes are borrowed for the duration of the call: a view
// copies what it shows, since the next reset destroys the tree.
namespace tarn {

class CXmlNode;

// Running log: one line for each element that is added.
class ILogView {
 public:
  virtual void AddMessage(const CXmlNode& node) = 0;
  virtual void Clear() = 0;

 protected:
  ~ILogView() = default;
};

// Table of errors and warnings, which shows the whole tree.
class IReportView {
 public:
  // A tree with the same generation is the same tree as in the last call, with at most additional
  // children at its end. A tree with a different generation may have the same address as the
  // previous one.
  virtual void Update(const CXmlNode& root, std::uint64_t generation) = 0;

 protected:
  ~IReportView() = default;
};

}  // namespace tarn
