#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/core/Damage.h"
#include "hosts/core/ServerDrivers.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Damage of the files of a session's project, and the user's consent to continue with what could be
// read. Without it the server saves nothing, and changes are refused. Main thread only.
class SessionDamage {
 public:
  // Both are borrowed and must outlive this object.
  SessionDamage(InspectorDriver& inspectorDriver, FileSystem& fileSystem)
      : inspector_(inspectorDriver), files_(fileSystem) {}

  // Sets the open project. Doesn't call the server.
  void SetProject(const std::string& path);
  // Call this after the project was closed or a different one was opened.
  void LeaveProject() { isLeft_ = true; }
  // Protects the open project, unless the user has accepted its damage.
  void ProtectProject();
  // Protects all projects, unless the user has accepted all damage. For a new server.
  void ProtectAll() { inspector_.ProtectDamaged(!acceptsAll_); }

  std::vector<DamageEntry> Get() { return ParseDamage(inspector_.GetDamage()); }
  // Like Get(), but for the project that could not be opened.
  std::vector<DamageEntry> GetFailed() { return ParseDamage(inspector_.GetFailedDamage()); }
  // Returns true if the open project is damaged and the user has not agreed to continue with what
  // could be read.
  bool IsHeld();
  // Records the user's consent, for the open project or for all projects opened from now on.
  void Accept();
  void AcceptAll();
  // Returns true if a change must be refused because of damage, and records the refusal.
  bool RefusesChange();
  // Returns why this server method can't be called now; an empty string if it can. Also checks that
  // a method that changes the current node has one to change.
  std::string CheckCall(std::string_view method, std::span<const Variant> arguments);
  // Returns true if a change was refused since the session began.
  bool HasRefused() const { return hasRefused_; }

 private:
  bool ReplacesFile(std::string_view method, std::span<const Variant> arguments);

  InspectorDriver& inspector_;
  FileSystem& files_;
  std::string project_;   // last project of the session
  bool isLeft_ = false;   // it is no longer open
  std::string accepted_;  // project whose damage the user has accepted
  bool acceptsAll_ = false;
  bool hasRefused_ = false;
};

}  // namespace tarn::host
