// The agent function table, the only route to the agent: finds the agent interface library at run time and resolves its
// functions by name. The first GetSharedInstance, on the main thread, fills the table; from then on it is read-only.
#pragma once

#include <memory>
#include <string>

#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "platform/Bundle.h"
#include "platform/Value.h"

class VPILoader {
 public:
  // Returns the one instance, never null. The first call searches for the library; later calls never do.
  static VPILoader* GetSharedInstance();

  virtual ~VPILoader();
  VPILoader(const VPILoader&) = delete;
  VPILoader& operator=(const VPILoader&) = delete;

  // Returns whether the table can be used. Sets the library's path, its version and the number of missing functions. A
  // null argument gives false.
  bool IsLoaded(std::string* path, std::string* version, int* missing);
  platform::String VersionStringRef() const;
  // Fills the table from a bundle. A null bundle clears the table and leaves the number of missing functions unchanged.
  static void ResetFunctionPointers(VPILoader* self, platform::Bundle* bundle);
  bool VerifyThatAllMembersAre(bool nonNull) const;

#define PLUGIN_INTERFACE_MEMBER(name, result, parameters) result(*pf##name) parameters = nullptr;
  PLUGIN_INTERFACE_FUNCTIONS(PLUGIN_INTERFACE_MEMBER)
#undef PLUGIN_INTERFACE_MEMBER

  static constexpr int kTableSize = 0
#define PLUGIN_INTERFACE_COUNT(name, result, parameters) +1
      PLUGIN_INTERFACE_FUNCTIONS(PLUGIN_INTERFACE_COUNT);
#undef PLUGIN_INTERFACE_COUNT

  // For tests: the first forgets the instance, so that the next call searches again; the second installs an empty
  // table.
  static void ResetForTesting();
  static VPILoader* UseEmptyTableForTesting();
  void SetMissingFunctionsForTesting(int missing) { nMissingFunctions = missing; }

 private:
  VPILoader();
  void FindLibrary();
  platform::BundleRef FindBundle();

  // Empty if the library is in the plug-in's own bundle; otherwise the library's path, or the folder that was searched.
  std::string sFrameworkPath;
  std::string sFrameworkVersion;
  int nMissingFunctions = kTableSize;  // a failed load looks like a library without functions
};

// Returns the handle that most functions take first; 0 without a library. Get it anew for each call, because a relaunch
// of the agent replaces it.
PluginInterface::FacadeHandle GetFacade();
